#pragma once
// The expression tree: typed nodes behind IExpression. A node checks its operand
// types when built and computes its value each time it is read.

#include "SysUtils.h"

#include <QString>

#include <functional>
#include <memory>
#include <vector>

// The order is a rank: the common type of two operands is the smaller one.
enum TExprType { ttString, ttFloat, ttInteger, ttBoolean };

enum TOperator {
  opNot, opMult, opDivide, opDiv, opMod, opAnd, opShl, opShr, opPlus, opMinus,
  opOr, opXor, opEq, opNEQ, opLT, opGT, opLTE, opGTE, opPower
};

// Failures of parsing and evaluation, with English texts.
class EExpression : public Exception {
public:
  using Exception::Exception;
};

// No string an expression makes may grow past this many characters: scripts that
// double a string, or nested REPLACEs, stop with a message instead of eating memory.
constexpr qsizetype MaxStringResult = qsizetype(1) << 20;
// AValue, or EExpression when it is longer than MaxStringResult.
QString CheckedString(QString AValue);

extern const char* const NExprType[4];       // "String", "Float", "Integer", "Boolean"
extern const char* const NOperator[19];      // "opNot", ...
extern const char* const NOperatorToken[19];  // "NOT", "*", ...

struct TDataRec {
  double Doubl = 0;
  qint32 Int = 0;
};
using TDataArray = std::vector<TDataRec>;

// The caller's running data of one statistical function, slot by slot within a pass.
class TStatisticalData {
public:
  void ResetCounter() { FCount = 0; }
  void ResetData() {
    FCount = 0;
    FDataList.clear();
  }
  int FCount = 0;
  TDataArray FDataList;
};

class IExpression;
using PExpression = std::shared_ptr<IExpression>;
class TMathExpression;
using TStatisticalGetProc = std::function<void(const TMathExpression& AFunction, TStatisticalData*& AData)>;

class IExpression {
public:
  virtual ~IExpression() = default;
  virtual bool AsBoolean() = 0;
  virtual double AsFloat() = 0;
  virtual qint64 AsInteger() = 0;
  virtual QString AsString() = 0;
  virtual TExprType ExprType() = 0;
  virtual bool ExprReplace() const = 0;
  virtual void SetExprReplace(bool AValue) = 0;
  virtual bool CheckResultDataType() const = 0;
  virtual void SetCheckResultDataType(bool AValue) = 0;
  virtual void SetGetStatisticalProc(const TStatisticalGetProc& AProc) = 0;

  bool CanReadAs(TExprType AType) { return ExprType() >= AType; }
};

// Reads follow the node's type: booleans read as 0/1, integers and booleans as
// floats, everything as text; other reads raise "Cannot read ... as ...".
class TExpression : public IExpression {
public:
  bool AsBoolean() override;
  double AsFloat() override;
  qint64 AsInteger() override;
  QString AsString() override;
  bool ExprReplace() const override { return FExprReplace; }
  void SetExprReplace(bool AValue) override { FExprReplace = AValue; }
  bool CheckResultDataType() const override { return FCheckResultDataType; }
  void SetCheckResultDataType(bool AValue) override { FCheckResultDataType = AValue; }
  void SetGetStatisticalProc(const TStatisticalGetProc& AProc) override { FGetStatisticalProc = AProc; }

protected:
  bool FCheckResultDataType = false;
  bool FExprReplace = false;
  TStatisticalGetProc FGetStatisticalProc;
};

class TStringLiteral : public TExpression {
public:
  explicit TStringLiteral(QString AValue) : FAsString(std::move(AValue)) {}
  QString AsString() override { return FAsString; }
  TExprType ExprType() override { return ttString; }

private:
  QString FAsString;
};

class TFloatLiteral : public TExpression {
public:
  explicit TFloatLiteral(double AValue) : FAsFloat(AValue) {}
  double AsFloat() override { return FAsFloat; }
  TExprType ExprType() override { return ttFloat; }

private:
  double FAsFloat;
};

class TIntegerLiteral : public TExpression {
public:
  explicit TIntegerLiteral(qint32 AValue) : FAsInteger(AValue) {}
  qint64 AsInteger() override { return FAsInteger; }
  TExprType ExprType() override { return ttInteger; }

private:
  qint32 FAsInteger;
};

class TBooleanLiteral : public TExpression {
public:
  explicit TBooleanLiteral(bool AValue) : FAsBoolean(AValue) {}
  bool AsBoolean() override { return FAsBoolean; }
  TExprType ExprType() override { return ttBoolean; }

private:
  bool FAsBoolean;
};

// Raises "%s is not simple unary operator" or "Operator %s incompatible with %s".
class TUnaryOp : public TExpression {
public:
  TUnaryOp(TOperator AOperator, PExpression AOperand);
  bool AsBoolean() override;
  double AsFloat() override;
  qint64 AsInteger() override;
  QString AsString() override;
  TExprType ExprType() override { return FResultType; }

private:
  PExpression Operand;
  TExprType OperandType;
  TOperator Operator;
  TExprType FResultType;
};

// The operand type is the common type of the two; the result type follows the
// operator table. With the check flag "/" and DIV give 1 without evaluating.
class TBinaryOp : public TExpression {
public:
  TBinaryOp(TOperator AOperator, PExpression AOperand1, PExpression AOperand2, bool ACheckResultDataType);
  bool AsBoolean() override;
  double AsFloat() override;
  qint64 AsInteger() override;
  QString AsString() override;
  TExprType ExprType() override { return FResultType; }

private:
  PExpression Operand1, Operand2;
  TExprType OperandType;
  TOperator Operator;
  TExprType FResultType;
};

// Compares in the common type; floats are equal within a relative 1e-11.
class TRelationalOp : public TExpression {
public:
  TRelationalOp(TOperator AOperator, PExpression AOperand1, PExpression AOperand2);
  bool AsBoolean() override;
  TExprType ExprType() override { return ttBoolean; }

private:
  PExpression Operand1, Operand2;
  TOperator Operator;
};

class TParameterList {
public:
  int Count() const { return int(FItems.size()); }
  void Add(PExpression AExpr) { FItems.push_back(std::move(AExpr)); }
  const PExpression& GetParam(int I) const { return FItems[size_t(I)]; }
  bool GetAsBoolean(int I) const { return FItems[size_t(I)]->AsBoolean(); }
  double GetAsFloat(int I) const { return FItems[size_t(I)]->AsFloat(); }
  qint64 GetAsInteger(int I) const { return FItems[size_t(I)]->AsInteger(); }
  QString GetAsString(int I) const { return FItems[size_t(I)]->AsString(); }
  TExprType GetExprType(int I) const { return FItems[size_t(I)]->ExprType(); }

private:
  std::vector<PExpression> FItems;
};
using PParameterList = std::shared_ptr<TParameterList>;

class TFunction : public TExpression {
public:
  explicit TFunction(PParameterList AParameterList)
      : FParameterList(AParameterList ? std::move(AParameterList) : std::make_shared<TParameterList>()) {}
  int ParameterCount() const { return FParameterList->Count(); }
  const PExpression& GetParam(int N) const { return FParameterList->GetParam(N); }

protected:
  PParameterList FParameterList;
};

// STRING(x), FLOAT(x), INTEGER(x), BOOLEAN(x): the first parameter read in the type.
class TTypeCast : public TFunction {
public:
  TTypeCast(PParameterList AParameterList, TExprType AOperator);
  bool AsBoolean() override;
  double AsFloat() override;
  qint64 AsInteger() override;
  QString AsString() override;
  TExprType ExprType() override { return Operator; }

private:
  TExprType Operator;
};

// IF(condition, then, else): only the chosen branch is evaluated; its type is the branch's.
class TConditional : public TFunction {
public:
  explicit TConditional(PParameterList AParameterList);
  bool AsBoolean() override { return Rule()->AsBoolean(); }
  double AsFloat() override { return Rule()->AsFloat(); }
  qint64 AsInteger() override { return Rule()->AsInteger(); }
  QString AsString() override { return Rule()->AsString(); }
  TExprType ExprType() override { return Rule()->ExprType(); }

private:
  const PExpression& Rule() const { return GetParam(GetParam(0)->AsBoolean() ? 1 : 2); }
};

// Floats leave the evaluator only when finite.
double CheckFloat(double AValue);
