#include "ExprNodes.h"

#include <cmath>
#include <limits>

const char* const NExprType[4] = {"String", "Float", "Integer", "Boolean"};
const char* const NOperator[19] = {"opNot", "opMult", "opDivide", "opDiv", "opMod", "opAnd", "opShl",
                                   "opShr", "opPlus", "opMinus", "opOr",   "opXor", "opEq",  "opNEQ",
                                   "opLT",  "opGT",   "opLTE",  "opGTE", "opPower"};
const char* const NOperatorToken[19] = {"NOT", "*",  "/",  "DIV", "MOD", "AND", "SHL", "SHR", "+", "-",
                                        "OR",  "XOR", "=", "<>",  "<",   ">",   "<=",  ">=",  "^"};

namespace {

[[noreturn]] void Raise(const QString& AMessage) { throw EExpression(AMessage); }

QString OpName(TOperator AOp) { return QString::fromLatin1(NOperator[AOp]); }
QString TypeName(TExprType AType) { return QString::fromLatin1(NExprType[AType]); }

// The result type of an operator on an operand type; -1 where the pair is not allowed.
int ResultTypeOf(TOperator AOp, TExprType AType) {
  switch (AType) {
    case ttString: return AOp == opPlus ? ttString : -1;
    case ttFloat:
      switch (AOp) {
        case opPlus: case opMinus: case opMult: case opDivide: case opPower: return ttFloat;
        default: return -1;
      }
    case ttInteger:
      switch (AOp) {
        case opDivide: case opPower: return ttFloat;
        case opPlus: case opMinus: case opMult: case opDiv: case opMod: case opAnd:
        case opShl: case opShr: case opOr: case opXor: case opNot: return ttInteger;
        default: return -1;
      }
    case ttBoolean:
      switch (AOp) {
        case opAnd: case opOr: case opXor: case opNot: return ttBoolean;
        default: return -1;
      }
  }
  return -1;
}

TExprType CheckedResultType(TOperator AOp, TExprType AType) {
  const int R = ResultTypeOf(AOp, AType);
  if (R < 0) Raise(QStringLiteral("Operator %1 incompatible with %2").arg(OpName(AOp), TypeName(AType)));
  return TExprType(R);
}

void RequireOperand(const PExpression& AOperand) {
  if (!AOperand) Raise(QStringLiteral("Syntax error"));
}

[[noreturn]] void InternalError(int ACode) { Raise(QStringLiteral("Internal parser error. Code %1").arg(ACode)); }

// Two's-complement arithmetic without signed overflow.
qint64 Wrap(quint64 AValue) { return qint64(AValue); }

}  // namespace

double CheckFloat(double AValue) {
  if (std::isnan(AValue)) Raise(QStringLiteral("Invalid floating point operation"));
  if (std::isinf(AValue)) Raise(QStringLiteral("Floating point overflow"));
  return AValue;
}

// ---- the base ---------------------------------------------------------------

bool TExpression::AsBoolean() { Raise(QStringLiteral("Cannot read %1 as boolean").arg(TypeName(ExprType()))); }

double TExpression::AsFloat() {
  const TExprType T = ExprType();
  if (T == ttInteger || T == ttBoolean) return double(AsInteger());
  Raise(QStringLiteral("Cannot read %1 as Float").arg(TypeName(T)));
}

qint64 TExpression::AsInteger() {
  const TExprType T = ExprType();
  if (T == ttBoolean) return AsBoolean() ? 1 : 0;
  Raise(QStringLiteral("Cannot read %1 as integer").arg(TypeName(T)));
}

QString TExpression::AsString() {
  switch (ExprType()) {
    case ttFloat: return FloatToStr(AsFloat());
    case ttInteger: return QString::number(AsInteger());
    case ttBoolean: return AsBoolean() ? QStringLiteral("TRUE") : QStringLiteral("FALSE");
    default: Raise(QStringLiteral("Cannot read %1 as String").arg(TypeName(ExprType())));
  }
}

// ---- unary ------------------------------------------------------------------

TUnaryOp::TUnaryOp(TOperator AOperator, PExpression AOperand) : Operand(std::move(AOperand)), Operator(AOperator) {
  if (AOperator != opNot && AOperator != opPlus && AOperator != opMinus)
    Raise(QStringLiteral("%1 is not simple unary operator").arg(OpName(AOperator)));
  RequireOperand(Operand);
  OperandType = Operand->ExprType();
  FResultType = CheckedResultType(AOperator, OperandType);
}

bool TUnaryOp::AsBoolean() {
  if (FResultType != ttBoolean) return TExpression::AsBoolean();
  return !Operand->AsBoolean();
}

double TUnaryOp::AsFloat() {
  if (FResultType != ttFloat) return TExpression::AsFloat();
  const double V = Operand->AsFloat();
  return Operator == opMinus ? -V : V;
}

qint64 TUnaryOp::AsInteger() {
  if (FResultType != ttInteger) return TExpression::AsInteger();
  const qint64 V = Operand->AsInteger();
  switch (Operator) {
    case opPlus: return V;
    case opMinus: return Wrap(0 - quint64(V));
    case opNot: return ~V;
    default: InternalError(6);
  }
}

QString TUnaryOp::AsString() {
  if (FResultType != ttString) return TExpression::AsString();
  return Operand->AsString();
}

// ---- binary -----------------------------------------------------------------

TBinaryOp::TBinaryOp(TOperator AOperator, PExpression AOperand1, PExpression AOperand2, bool ACheckResultDataType)
    : Operand1(std::move(AOperand1)), Operand2(std::move(AOperand2)), Operator(AOperator) {
  FCheckResultDataType = ACheckResultDataType;
  if (AOperator >= opEq && AOperator <= opGTE)
    Raise(QStringLiteral("%1 is not a simple binary operator").arg(OpName(AOperator)));
  RequireOperand(Operand1);
  RequireOperand(Operand2);
  OperandType = std::min(Operand1->ExprType(), Operand2->ExprType());
  FResultType = CheckedResultType(AOperator, OperandType);
}

QString CheckedString(QString AValue) {
  if (AValue.size() > MaxStringResult)
    throw EExpression(QStringLiteral("String result longer than %1 characters").arg(MaxStringResult));
  return AValue;
}

QString TBinaryOp::AsString() {
  if (FResultType != ttString) return TExpression::AsString();
  if (Operator != opPlus) InternalError(10);
  const QString A = Operand1->AsString(), B = Operand2->AsString();
  if (A.size() + B.size() > MaxStringResult)
    throw EExpression(QStringLiteral("String result longer than %1 characters").arg(MaxStringResult));
  return A + B;
}

double TBinaryOp::AsFloat() {
  if (FResultType != ttFloat) return TExpression::AsFloat();
  if (Operator == opDivide && FCheckResultDataType) return 1;
  const double A = Operand1->AsFloat(), B = Operand2->AsFloat();
  switch (Operator) {
    case opPlus: return CheckFloat(A + B);
    case opMinus: return CheckFloat(A - B);
    case opMult: return CheckFloat(A * B);
    case opDivide:
      if (B == 0) Raise(A == 0 || std::isnan(A) ? QStringLiteral("Invalid floating point operation")
                                                : QStringLiteral("Floating point division by zero"));
      return CheckFloat(A / B);
    case opPower: return CheckFloat(std::pow(A, B));
    default: InternalError(OperandType == ttInteger ? 12 : 11);
  }
}

qint64 TBinaryOp::AsInteger() {
  if (FResultType != ttInteger) return TExpression::AsInteger();
  if (Operator == opDiv && FCheckResultDataType) return 1;
  const qint64 A = Operand1->AsInteger(), B = Operand2->AsInteger();
  const quint64 UA = quint64(A), UB = quint64(B);
  switch (Operator) {
    case opPlus: return Wrap(UA + UB);
    case opMinus: return Wrap(UA - UB);
    case opMult: return Wrap(UA * UB);
    case opDiv:
      if (B == 0) Raise(QStringLiteral("Division by zero"));
      if (B == -1) return Wrap(0 - UA);
      return A / B;
    case opMod:
      if (B == 0) Raise(QStringLiteral("Division by zero"));
      if (B == -1) return 0;
      return A % B;
    case opAnd: return A & B;
    case opOr: return A | B;
    case opXor: return A ^ B;
    case opShl: return Wrap(UA << (UB & 63));
    case opShr: return Wrap(UA >> (UB & 63));
    default: InternalError(12);
  }
}

bool TBinaryOp::AsBoolean() {
  if (FResultType != ttBoolean) return TExpression::AsBoolean();
  switch (Operator) {
    case opAnd: return Operand1->AsBoolean() && Operand2->AsBoolean();
    case opOr: return Operand1->AsBoolean() || Operand2->AsBoolean();
    case opXor: return Operand1->AsBoolean() != Operand2->AsBoolean();
    default: InternalError(13);
  }
}

// ---- relational -------------------------------------------------------------

TRelationalOp::TRelationalOp(TOperator AOperator, PExpression AOperand1, PExpression AOperand2)
    : Operand1(std::move(AOperand1)), Operand2(std::move(AOperand2)), Operator(AOperator) {
  if (AOperator < opEq || AOperator > opGTE)
    Raise(QStringLiteral("%1 is not relational operator").arg(OpName(AOperator)));
  RequireOperand(Operand1);
  RequireOperand(Operand2);
}

template <typename T>
static bool Relate(TOperator AOp, const T& A, const T& B) {
  switch (AOp) {
    case opEq: return A == B;
    case opNEQ: return A != B;
    case opLT: return A < B;
    case opGT: return A > B;
    case opLTE: return A <= B;
    default: return A >= B;
  }
}

bool TRelationalOp::AsBoolean() {
  switch (std::min(Operand1->ExprType(), Operand2->ExprType())) {
    case ttString: {
      const int C = QString::compare(Operand1->AsString(), Operand2->AsString(), Qt::CaseSensitive);
      return Relate(Operator, C, 0);
    }
    case ttFloat: {
      const double A = Operand1->AsFloat(), B = Operand2->AsFloat();
      const bool Eq = std::fabs(A - B) <= std::fabs(std::min(A, B) / 1e11);
      switch (Operator) {
        case opEq: return Eq;
        case opNEQ: return !Eq;
        case opLT: return A < B;
        case opGT: return A > B;
        case opLTE: return A < B || Eq;
        default: return A > B || Eq;
      }
    }
    case ttInteger: return Relate(Operator, Operand1->AsInteger(), Operand2->AsInteger());
    case ttBoolean:
      if (Operator != opEq && Operator != opNEQ)
        Raise(QStringLiteral("cannot apply %1 to boolean operands").arg(OpName(Operator)));
      return Relate(Operator, Operand1->AsBoolean(), Operand2->AsBoolean());
  }
  return false;
}

// ---- casts and the conditional ----------------------------------------------

TTypeCast::TTypeCast(PParameterList AParameterList, TExprType AOperator)
    : TFunction(std::move(AParameterList)), Operator(AOperator) {
  if (ParameterCount() < 1) Raise(QStringLiteral("Invalid parameter to %1").arg(UpperCase(TypeName(AOperator))));
}

bool TTypeCast::AsBoolean() { return Operator == ttBoolean ? GetParam(0)->AsBoolean() : TFunction::AsBoolean(); }
double TTypeCast::AsFloat() { return Operator == ttFloat ? GetParam(0)->AsFloat() : TFunction::AsFloat(); }
qint64 TTypeCast::AsInteger() { return Operator == ttInteger ? GetParam(0)->AsInteger() : TFunction::AsInteger(); }
QString TTypeCast::AsString() { return Operator == ttString ? GetParam(0)->AsString() : TFunction::AsString(); }

TConditional::TConditional(PParameterList AParameterList) : TFunction(std::move(AParameterList)) {
  if (ParameterCount() != 3 || GetParam(0)->ExprType() != ttBoolean) Raise(QStringLiteral("Invalid parameters to If"));
}
