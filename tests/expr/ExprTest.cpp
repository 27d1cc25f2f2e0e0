#include "ExprTestUtils.h"

#include <QStringList>

TEST(TExpr, PrecedenceAndAssociativity) {
  CheckCases({
      {"1 + 2 * 3", "Integer", "7"},
      {"(1 + 2) * 3", "Integer", "9"},
      {"2 ^ 3 ^ 2", "Float", "64"},  // left-associative
      {"-2 ^ 2", "Float", "4"},      // the sign belongs to the factor
      {"10 - 4 - 3", "Integer", "3"},
      {"7 / 2", "Float", "3.5"},
      {"7 DIV 2", "Integer", "3"},
      {"-7 MOD 3", "Integer", "-1"},
      {"1 + 2 = 3", "Boolean", "TRUE"},
      {"1 < 2 = TRUE", "Boolean", "TRUE"},
      {"NOT 1 = 2", "Boolean", "FALSE"},  // NOT 1 is -2, which is not 2
      {"NOT (1 = 2)", "Boolean", "TRUE"},
      {"2 * 3 mod 4", "Integer", "2"},
      {"1 or 2 and 0", "Integer", "1"},  // AND binds like *, OR like +
      {"1 shl 4 + 1", "Integer", "17"},
      {"-8 shr 60", "Integer", "15"},     // logical shift of 64 bits
      {"1 shl 65", "Integer", "2"},       // the low 6 bits of the count
      {"2147483647 + 1", "Integer", "2147483648"},
      {"(12>=0) and (12<12)", "Boolean", "FALSE"},
      {"true xor false", "Boolean", "TRUE"},
      {"'a' + 1", "String", "a1"},
      {"1.5 + 1", "Float", "2.5"},
      {"true + 1", "Integer", "2"},
      {"1, 2", "Integer", "1"},  // a comma ends the text at top level
      {"  3\t", "Integer", "3"},
      {"'it''s'", "String", "it's"},
      {"+'x'", "String", "x"},
  });
}

TEST(TExpr, NumberForms) {
  CheckCases({
      {"12", "Integer", "12"},
      {"2147483647", "Integer", "2147483647"},
      {"2147483648", "Float", "2147483648"},
      {"1.5", "Float", "1.5"},
      {"1E3", "Float", "1000"},
      {"1e-2", "Float", "0.01"},
      {"1.5E2", "Float", "150"},
      {"007", "Integer", "7"},
  });
  for (const char* Bad : {"1E+3", "1.2.3", "1E", "1E2E3", "1E2.5", "1E-", "12345678901234567890123456789"}) {
    SCOPED_TRACE(Bad);
    EXPECT_EQ(Eval(QString::fromLatin1(Bad)).Error, QStringLiteral("Bad numeric format"));
  }
}

TEST(TExpr, ErrorMessages) {
  const struct {
    const char* Text;
    const char* Message;
  } Cases[] = {
      {"'abc", "Unterminated string"},
      {"(1 + 2", " ) expected"},
      {"1 +", "Unexpected end of factor"},
      {"", "Unexpected end of factor"},
      {"1)", "char ) in input stream"},
      {"1 ! 2", "char ! in input stream"},
      {"1 =< 2", "=< not a valid operator"},
      {"DIV 2", "opDiv not allowed here"},
      {"1 y", "Identifier Y not allowed here"},
      {"1 true", "Boolean literal not allowed here"},
      {"x + 1", "Unknown Identifier X"},
      {"'a' - 1", "Operator opMinus incompatible with String"},
      {"1.5 DIV 2", "Operator opDiv incompatible with Float"},
      {"true + false", "Operator opPlus incompatible with Boolean"},
      {"-'a' + 1", "Operator opMinus incompatible with String"},
      {"NOT 1.5", "Operator opNot incompatible with Float"},
      {"true < false", "cannot apply opLT to boolean operands"},
      {"FLOAT('a')", "Cannot read String as Float"},
      {"INTEGER(2.5)", "Cannot read Float as integer"},
      {"BOOLEAN(1)", "Cannot read Integer as boolean"},
      {"IF(1, 2, 3)", "Invalid parameters to If"},
      {"IF(true, 2)", "Invalid parameters to If"},
      {"f(1,", "Unexpected end of factor"},
      {"ABS(1 2)", "Incorrectly formed parameters"},
      {"10 DIV 0", "Division by zero"},
      {"10 MOD 0", "Division by zero"},
      {"10 / 0", "Floating point division by zero"},
      {"0 / 0", "Invalid floating point operation"},
      {"10.0 ^ 400", "Floating point overflow"},
      {"$", "Syntax error"},
  };
  for (const auto& C : Cases) {
    SCOPED_TRACE(C.Text);
    TExpr E;
    E.SetIDProc([](const QString& AName, const PParameterList&, PExpression& AExpr) {
      if (AName == QLatin1String("F")) AExpr = std::make_shared<TIntegerLiteral>(1);
    });
    const bool UseProc = QByteArray(C.Text).startsWith("f(");
    EXPECT_EQ(Eval(QString::fromUtf8(C.Text), false, UseProc ? &E : nullptr).Error, QString::fromUtf8(C.Message));
  }
}

TEST(TExpr, TooLongTextRaisesOnlyWhenAsked) {
  const QString Long = QStringLiteral("1+") + QString(TExpr::MaxExprLength, u'1');
  EXPECT_EQ(Eval(Long).Error, QStringLiteral("String too long"));
  TExpr E;
  E.SetRaiseError(false);
  EXPECT_FALSE(E.Execute(Long));
  EXPECT_EQ(E.ExprResult(), nullptr);
  EXPECT_EQ(Eval(QStringLiteral("'") + QString(TExpr::MaxExprLength - 4, u'x') + QStringLiteral("'")).Type,
            QStringLiteral("String"));
  EXPECT_EQ(Eval(QString::fromLatin1("1\0+ 2", 5)).Value, QStringLiteral("3"));  // NULs are dropped
}

TEST(TExpr, RelationalComparisons) {
  CheckCases({
      {"1 = 1.0000000000001", "Boolean", "TRUE"},  // relative to the smaller value
      {"1 = 1.00000001", "Boolean", "FALSE"},
      {"0.1 + 0.2 = 0.3", "Boolean", "TRUE"},
      {"1 <= 1.0000000000001", "Boolean", "TRUE"},
      {"1.0000000000001 <= 1", "Boolean", "TRUE"},  // <= accepts the equality test
      {"1.0000000000001 > 1", "Boolean", "TRUE"},   // > is plain
      {"0 = 1E-20", "Boolean", "FALSE"},
      {"'B' > 'a'", "Boolean", "FALSE"},  // ordinal, case-sensitive
      {"'a' = 'A'", "Boolean", "FALSE"},
      {"'10' < 9", "Boolean", "TRUE"},  // compared as strings
      {"3 <> 3", "Boolean", "FALSE"},
      {"true = (1 < 2)", "Boolean", "TRUE"},
  });
}

namespace {
// A value that counts how often it is read.
class TCounted : public TExpression {
public:
  explicit TCounted(int* ACounter, TExprType AType) : FCounter(ACounter), FType(AType) {}
  bool AsBoolean() override { return ++*FCounter, true; }
  qint64 AsInteger() override { return ++*FCounter, 5; }
  TExprType ExprType() override { return FType; }

private:
  int* FCounter;
  TExprType FType;
};
}  // namespace

TEST(TExpr, ShortCircuitAndConditionalEvaluation) {
  int Reads = 0;
  TExpr E;
  E.SetIDProc([&](const QString& AName, const PParameterList&, PExpression& AExpr) {
    AExpr = std::make_shared<TCounted>(&Reads, AName == QLatin1String("B") ? ttBoolean : ttInteger);
  });
  const struct {
    const char* Text;
    const char* Value;
    int Reads;
  } Cases[] = {{"false and B", "FALSE", 0}, {"true or B", "TRUE", 0},  {"true and B", "TRUE", 1},
               {"IF(true, 1, N)", "1", 0},   {"IF(false, 1, N)", "5", 1}, {"IIF(true, 1, N)", "1", 1},
               {"N * 2", "10", 1}};
  for (const auto& C : Cases) {
    SCOPED_TRACE(C.Text);
    Reads = 0;
    EXPECT_EQ(Eval(QString::fromLatin1(C.Text), false, &E).Value, QString::fromLatin1(C.Value));
    EXPECT_EQ(Reads, C.Reads);
  }
}

TEST(TExpr, CheckFlagMakesDivisionsOne) {
  EXPECT_EQ(Eval(QStringLiteral("10 / 0"), true).Value, QStringLiteral("1"));
  EXPECT_EQ(Eval(QStringLiteral("10 DIV 0"), true).Value, QStringLiteral("1"));
  EXPECT_EQ(Eval(QStringLiteral("(10 / 0) + 2"), true).Value, QStringLiteral("3"));
  EXPECT_EQ(Eval(QStringLiteral("10 MOD 0"), true).Error, QStringLiteral("Division by zero"));
}

TEST(TExpr, IdentifiersReachTheEventWithTheirParameters) {
  QStringList Seen;
  int Params = -1;
  TExpr E;
  E.SetIDProc([&](const QString& AName, const PParameterList& AParams, PExpression& AExpr) {
    Seen << AName;
    Params = AParams->Count();
    AExpr = std::make_shared<TFloatLiteral>(2.5);
  });
  EXPECT_EQ(Eval(QStringLiteral("[my var] + {x y} + foo(1, 'a', 3) + bar()"), false, &E).Value, QStringLiteral("10"));
  EXPECT_EQ(Seen, (QStringList{QStringLiteral("[MY VAR]"), QStringLiteral("{X Y}"), QStringLiteral("FOO"),
                               QStringLiteral("BAR")}));
  EXPECT_EQ(Params, 0);
  // IF is the conditional, never the string function of that name
  EXPECT_EQ(Eval(QStringLiteral("IF(1 > 0, 'a', 2)")).Type, QStringLiteral("String"));
  EXPECT_EQ(Eval(QStringLiteral("if(1 > 0, 1, 2)")).Type, QStringLiteral("Integer"));
}

TEST(TExpr, ReplacingIdentifiersExpandTheText) {
  TExpr E;
  E.SetIDProc([](const QString& AName, const PParameterList&, PExpression& AExpr) {
    AExpr = std::make_shared<TIntegerLiteral>(AName == QLatin1String("LA") ? 1500 : 7);
    AExpr->SetExprReplace(AName == QLatin1String("LA") || AName == QLatin1String("F"));
  });
  EXPECT_EQ(Eval(QStringLiteral("la  + b * f(2) "), false, &E).Value, QStringLiteral("1549"));
  EXPECT_EQ(E.ParseInput(), QStringLiteral("1500  + b * 7 "));
}

TEST(TExpr, NestedExecuteLeavesTheOuterParseIntact) {
  TExpr E;
  E.SetIDProc([&E](const QString&, const PParameterList&, PExpression&) { E.Execute(QStringLiteral("2 * (3")); });
  // the inner text fails; the outer one reports that failure
  EXPECT_EQ(Eval(QStringLiteral("1 + y"), false, &E).Error, QStringLiteral(" ) expected"));
  TExpr F;
  F.SetIDProc([&F](const QString&, const PParameterList&, PExpression& AExpr) {
    F.Execute(QStringLiteral("2 * 3"));
    AExpr = std::make_shared<TFloatLiteral>(F.ExprResult()->AsFloat());
  });
  EXPECT_EQ(Eval(QStringLiteral("1 + y + (1)"), false, &F).Value, QStringLiteral("8"));
  EXPECT_EQ(F.ParseInput(), QStringLiteral("1 + y + (1)"));
}

TEST(TExpr, SyntaxErrorHookReplacesTheException) {
  TExpr E;
  int Calls = 0;
  E.SetSyntaxError([&](TExpr&) { ++Calls; });
  EXPECT_FALSE(E.Execute(QStringLiteral("$")));
  EXPECT_EQ(Calls, 1);
}
