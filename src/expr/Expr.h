#pragma once
// TExpr parses an expression text into a tree of IExpression nodes. Names the
// evaluator does not know go to the caller's identifier event, so the evaluator
// holds no symbol table. Parse routines follow the grammar, loosest binding last:
//   relational: = <> < > <= >=   simple: + - OR XOR
//   term: * / DIV MOD AND SHL SHR   power: ^   (all left-associative)

#include "ExprFunctions.h"
#include "ExprNodes.h"

class TExpr;

// Resolves a name the evaluator does not know; leaving AExpression empty raises
// "Unknown Identifier NAME".
using TIdentifierProc =
    std::function<void(const QString& AIdentifier, const PParameterList& AParameterList, PExpression& AExpression)>;
using TExprErrorEvent = std::function<void(TExpr& ASender)>;

class TExpr {
public:
  static constexpr int MaxExprLength = 10240;

  // True when a result was built. Raises EExpression on malformed text.
  bool Execute(const QString& AExpr, bool ACheckResultDataType = false);

  const PExpression& ExprResult() const { return FExprResult; }
  // The text as parsed, with replacing identifiers expanded.
  const QString& ParseInput() const { return FLastParsed; }

  void SetIDProc(TIdentifierProc AProc) { FIDProc = std::move(AProc); }
  void SetGetStatisticalProc(TStatisticalGetProc AProc) { FGetStatisticalProc = std::move(AProc); }
  void SetSyntaxError(TExprErrorEvent AEvent) { FSyntaxError = std::move(AEvent); }
  bool RaiseError() const { return FRaiseError; }
  void SetRaiseError(bool AValue) { FRaiseError = AValue; }
  bool UseDegree() const { return FUseDegree; }
  void SetUseDegree(bool AValue) { FUseDegree = AValue; }

private:
  QChar Ch() const;
  QChar Ch(int AOffset) const;
  void SkipSpace();
  bool AtEnd() const;
  [[noreturn]] void Fail(const QString& AMessage) const;

  PExpression Expression();
  PExpression Factor();
  PExpression PowerTail(PExpression ALeft);
  PExpression TermTail(PExpression ALeft);
  PExpression SimpleTail(PExpression ALeft);
  PExpression RelationalTail(PExpression ALeft);
  PExpression StringLiteral();
  PExpression Number();
  PExpression Identifier(const QString& AName, int ANameStart);
  QString Token();
  PExpression BuiltIn(const QString& AName, const PParameterList& AParams);
  PExpression Binary(TOperator AOp, PExpression ALeft, PExpression ARight);
  void Require(const PExpression& AOperand) const;

  bool FCheckResultDataType = false;
  PExpression FExprResult;
  QString FParseInput;
  int FParseInputPos = 1;  // 1-based, as the text positions of messages
  TStatisticalGetProc FGetStatisticalProc;
  TIdentifierProc FIDProc;
  int FStack = 0;
  TExprErrorEvent FSyntaxError;
  bool FRaiseError = true;
  bool FUseDegree = false;
  QString FUnresolved;
  QString FLastParsed;  // a name that no one could resolve, for the message if it is used
};

// Name characters: ASCII letters and _ @ # " [ ] { }; digits continue a name.
bool IsNameStart(QChar C);
bool IsNameChar(QChar C);
