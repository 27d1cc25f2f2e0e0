#pragma once
// Checks an input text against ordered rules. A rule is a regular expression, a
// condition evaluated over what it captured ($0 the whole match, $n group n),
// and an optional template for the standard text. The first rule whose pattern
// matches decides: later rules are not tried even when its condition fails.

#include <QRegularExpression>
#include <QString>
#include <QStringList>

#include <vector>

class TOVRAValidCheckerByRegExpr {
public:
  // Each text is split into lines, line i belonging to rule i.
  TOVRAValidCheckerByRegExpr(const QString& AExpression, const QString& ACondition, const QString& AStdExpr,
                             const QString& AInvalidMsg);

  // The first variable added never resolves (it reads as an empty string): kept so.
  void AddVariable(const QString& AVariable, double AValue);
  // AOutput is the standard text on a pass, FInvalidMsg otherwise. A malformed
  // condition raises EExpression.
  bool Check(const QString& AValue, QString& AOutput) const;

  static bool Validate(const QString& AValue, const QString& AExpression, const QString& ACondition,
                       const QString& AStdExpr, const QString& AInvalidMsg, QString& AOutput);

  // "$0".."$n" of AMatch put into ATemplate, the highest group numbers first.
  static QString Substitute(const QString& ATemplate, const QRegularExpressionMatch& AMatch);

private:
  QStringList FConditions;
  QStringList FExpressions;
  QString FInvalidMsg;
  QStringList FStdExprs;
  QStringList FVariables;
  std::vector<double> FVarValues;
  std::vector<QRegularExpression> FPatterns;  // compiled once
};

// Lines of a text as a string list splits them: no empty line after a final break.
QStringList SplitLines(const QString& AText);
