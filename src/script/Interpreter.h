#pragma once
// The draw-set script language, run line by line by plain text interpretation:
// nothing is compiled and every statement is re-read each time it is reached.
// All values are text. Messages go to the error box of the dialog service; the
// evaluator's exceptions and integer conversion errors pass through to the caller.

#include "Expr.h"

#include <QString>
#include <QStringList>

#include <vector>

struct TVariable {
  QString ProcName, Name, Value;
};

// Raised when a run has executed more statements than its limit allows.
class EScriptStepLimit : public Exception {
public:
  using Exception::Exception;
};

// The line list's index error, raised where a lookup runs past the end of the lines.
class EListError : public Exception {
public:
  using Exception::Exception;
};

class TInterpreter {
public:
  // Statement results.
  enum : int { erOk = 0, erError = 1, erReturn = 2, erExit = 3, erMainEnd = 100, erCancel = 101 };

  TInterpreter();
  TInterpreter(const TInterpreter&) = delete;
  TInterpreter& operator=(const TInterpreter&) = delete;

  // Empties the values and the three counts; the program stays.
  void Clear();
  // Lower case, "/*" to the end of a line is a comment; line numbers stay those of the text.
  void SetProgramme(const QString& AText);
  const QStringList& Programme() const { return FProgramme; }
  // From line 0 to the end: true at the end or at mainend, false on an error or cancel.
  bool Execute();
  // Runs the statement at line AI (a block is one step): 0 go on, 1 error, 2 mainend,
  // 3 program ended, 4 cancel.
  quint8 ExecByStep(int& AI);
  // Appends to the single-type variables of the main program, unchecked.
  void AddGlobalVar(const QString& AVarName, const QString& AVarValue);
  // By name in any procedure: int, then single, then string; empty if none.
  QString GetVarValue(const QString& AVarName) const;
  // The variables as they stand: int, then single, then string, each in declaration order.
  std::vector<TVariable> Variables() const;

  // Statements and loop passes executed in this run (every statement, every pass of a
  // loop, empty ones too); 0 means no limit. A run starts at Execute or at a step from
  // line 0, and calls nest at most MaxCallDepth deep.
  void SetStepLimit(qint64 ALimit) { FStepLimit = ALimit; }
  qint64 StepCount() const { return FStepCount; }
  static constexpr int MaxCallDepth = 256;

private:
  int Exec(const QString& ALine, const QString& AProcName, int& ALineNo);
  // One unit of the run's budget; raises EScriptStepLimit past the limit.
  void CountStep();
  int Declare(std::vector<TVariable>& AArray, int& ANum, const QString& ARest, const QString& AProcName);
  int Assign(const QString& AName, const QString& AExpr, const QString& AProcName);
  int ExecIf(const QString& ALine, const QString& ARest, const QString& AProcName, int& ALineNo);
  int ExecFrom(const QString& ALine, const QString& ARest, const QString& AProcName, int& ALineNo);
  int ExecDo(const QString& ALine, const QString& ARest, const QString& AProcName, int& ALineNo);
  int ExecCall(const QString& AName, int& ALineNo);
  // Runs lines AFrom up to (not including) ATo; a code other than 0 stops at once.
  int RunLines(int AFrom, int ATo, const QString& AProcName);
  // The closing line of the block opened at AStart, or -1; AElse gets the last
  // "else" at depth 1 when AElseWord is given.
  int FindBlockEnd(int AStart, const QString& AOpen, const QString& AClose, const QString& AElseWord, int& AElse) const;
  QString Substitute(const QString& AExpr, const QString& AProcName) const;
  bool StringExpr(const QString& AText, const QString& AProcName, QString& AValue);
  QString StringTerm(const QString& ATerm, const QString& AProcName) const;
  PExpression Evaluate(const QString& AExpr, const QString& AProcName);
  static const TVariable* Find(const std::vector<TVariable>& AArray, int ANum, const QString& AName,
                               const QString& AProcName);

  std::vector<TVariable> intA, slnA, strA;
  QString strParameter, strValue;
  int int_Num = 0, str_Num = 0, sln_Num = 0;
  TExpr FExpr;
  QStringList FProgramme;
  qint64 FStepLimit = 0, FStepCount = 0;
  int FCallDepth = 0;
};
