#pragma once
#include "Expr.h"

#include <gtest/gtest.h>

struct TEval {
  QString Type, Value, Error;
};

// Parses and reads the result as text, catching the system's exceptions.
inline TEval Eval(const QString& AText, bool ACheck = false, TExpr* AExpr = nullptr) {
  TExpr Local;
  TExpr& E = AExpr ? *AExpr : Local;
  try {
    if (!E.Execute(AText, ACheck)) return {QString(), QString(), QStringLiteral("(no result)")};
    const QString V = E.ExprResult()->AsString();
    return {QString::fromLatin1(NExprType[E.ExprResult()->ExprType()]), V, QString()};
  } catch (const Exception& X) {
    return {QString(), QString(), X.Message()};
  }
}

struct TExprCase {
  const char* Text;
  const char* Type;
  const char* Value;
};

inline void CheckCases(std::initializer_list<TExprCase> ACases, bool ADegree = false) {
  for (const TExprCase& C : ACases) {
    SCOPED_TRACE(C.Text);
    TExpr E;
    E.SetUseDegree(ADegree);
    const TEval R = Eval(QString::fromUtf8(C.Text), false, &E);
    EXPECT_EQ(R.Error, QString());
    EXPECT_EQ(R.Type, QString::fromLatin1(C.Type));
    EXPECT_EQ(R.Value, QString::fromUtf8(C.Value));
  }
}
