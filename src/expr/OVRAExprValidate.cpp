#include "OVRAExprValidate.h"

#include "Expr.h"

QStringList SplitLines(const QString& AText) {
  if (AText.isEmpty()) return {};
  QString T = AText;
  T.replace(QStringLiteral("\r\n"), QStringLiteral("\n"));
  QStringList L = T.split(u'\n');
  if (T.endsWith(u'\n')) L.removeLast();
  return L;
}

TOVRAValidCheckerByRegExpr::TOVRAValidCheckerByRegExpr(const QString& AExpression, const QString& ACondition,
                                                       const QString& AStdExpr, const QString& AInvalidMsg)
    : FConditions(SplitLines(ACondition)),
      FExpressions(SplitLines(AExpression)),
      FInvalidMsg(AInvalidMsg),
      FStdExprs(SplitLines(AStdExpr)) {
  for (const QString& P : FExpressions) FPatterns.emplace_back(P);
}

void TOVRAValidCheckerByRegExpr::AddVariable(const QString& AVariable, double AValue) {
  FVariables << AVariable;
  FVarValues.push_back(AValue);
}

QString TOVRAValidCheckerByRegExpr::Substitute(const QString& ATemplate, const QRegularExpressionMatch& AMatch) {
  QString R = ATemplate;
  for (int I = AMatch.lastCapturedIndex(); I >= 0; --I)
    R.replace(QStringLiteral("$%1").arg(I), AMatch.captured(I));
  // Groups the pattern has but the match left out read as empty.
  for (int I = AMatch.regularExpression().captureCount(); I > AMatch.lastCapturedIndex(); --I)
    R.replace(QStringLiteral("$%1").arg(I), QString());
  return R;
}

bool TOVRAValidCheckerByRegExpr::Check(const QString& AValue, QString& AOutput) const {
  AOutput = AValue;
  for (int I = 0; I < int(FPatterns.size()); ++I) {
    if (!FPatterns[size_t(I)].isValid()) continue;
    const QRegularExpressionMatch M = FPatterns[size_t(I)].match(AValue);
    if (!M.hasMatch()) continue;
    TExpr E;
    E.SetIDProc([this](const QString& AName, const PParameterList&, PExpression& AExpr) {
      int Index = -1;
      for (int K = 0; K < FVariables.size() && Index < 0; ++K)
        if (SameText(FVariables[K], AName)) Index = K;
      if (Index > 0) AExpr = std::make_shared<TFloatLiteral>(FVarValues[size_t(Index)]);
      else AExpr = std::make_shared<TStringLiteral>(QString());
    });
    const QString Condition = I < FConditions.size() ? Substitute(FConditions[I], M) : QString();
    bool Pass = false;
    if (E.Execute(Condition)) {
      const PExpression& R = E.ExprResult();
      Pass = R->ExprType() == ttBoolean && R->AsBoolean();
    }
    if (Pass) {
      if (I < FStdExprs.size()) AOutput = Substitute(FStdExprs[I], M);
      return true;
    }
    AOutput = FInvalidMsg;
    return false;
  }
  AOutput = FInvalidMsg;
  return false;
}

bool TOVRAValidCheckerByRegExpr::Validate(const QString& AValue, const QString& AExpression,
                                          const QString& ACondition, const QString& AStdExpr,
                                          const QString& AInvalidMsg, QString& AOutput) {
  const TOVRAValidCheckerByRegExpr C(AExpression, ACondition, AStdExpr, AInvalidMsg);
  return C.Check(AValue, AOutput);
}
