#include "Expr.h"

#include <optional>

bool IsNameStart(QChar C) {
  const char16_t U = C.unicode();
  return (U >= u'a' && U <= u'z') || (U >= u'A' && U <= u'Z') || U == u'_' || U == u'@' || U == u'#' ||
         U == u'"' || U == u'[' || U == u']' || U == u'{' || U == u'}';
}

bool IsNameChar(QChar C) { return IsNameStart(C) || (C >= u'0' && C <= u'9'); }

namespace {

std::optional<TOperator> OperatorWord(const QString& AWord) {
  for (int I = 0; I < 19; ++I)
    if (AWord == QLatin1String(NOperatorToken[I])) return TOperator(I);
  return std::nullopt;
}

}  // namespace

QChar TExpr::Ch() const { return Ch(0); }

QChar TExpr::Ch(int AOffset) const {
  const int I = FParseInputPos - 1 + AOffset;
  return (I >= 0 && I < FParseInput.size()) ? FParseInput[I] : QChar(u'\0');
}

void TExpr::SkipSpace() {
  while (Ch().unicode() >= 1 && Ch().unicode() <= 32) ++FParseInputPos;
}

bool TExpr::AtEnd() const {
  const QChar C = Ch();
  return C.isNull() || C == u',' || (C == u')' && FStack >= 1);
}

void TExpr::Fail(const QString& AMessage) const { throw EExpression(AMessage); }

void TExpr::Require(const PExpression& AOperand) const {
  if (!AOperand) Fail(FUnresolved.isEmpty() ? QStringLiteral("Syntax error")
                                            : QStringLiteral("Unknown Identifier %1").arg(FUnresolved));
}

bool TExpr::Execute(const QString& AExpr, bool ACheckResultDataType) {
  if (AExpr.size() > MaxExprLength) {
    FExprResult.reset();
    if (FRaiseError) Fail(QStringLiteral("String too long"));
    return false;
  }
  // A nested Execute (from the identifier event) must leave the outer parse intact.
  const QString SavedInput = FParseInput;
  const int SavedPos = FParseInputPos, SavedStack = FStack;
  const bool SavedCheck = FCheckResultDataType;
  const QString SavedUnresolved = FUnresolved;
  struct TRestore {
    TExpr& E;
    const QString& Input;
    int Pos, Stack;
    bool Check;
    const QString& Unresolved;
    ~TRestore() {
      E.FParseInput = Input;
      E.FParseInputPos = Pos;
      E.FStack = Stack;
      E.FCheckResultDataType = Check;
      E.FUnresolved = Unresolved;
    }
  };
  QString Text = AExpr;
  Text.remove(QChar(u'\0'));
  FExprResult.reset();
  PExpression Result;
  {
    TRestore Restore{*this, SavedInput, SavedPos, SavedStack, SavedCheck, SavedUnresolved};
    FParseInput = Text;
    FParseInputPos = 1;
    FStack = 0;
    FCheckResultDataType = ACheckResultDataType;
    FUnresolved.clear();
    Result = Expression();
    FLastParsed = FParseInput;
  }
  FExprResult = Result;
  return FExprResult != nullptr;
}

// expression = factor power-tail term-tail simple-tail relational-tail
PExpression TExpr::Expression() {
  PExpression E = Factor();
  E = PowerTail(E);
  E = TermTail(E);
  E = SimpleTail(E);
  return RelationalTail(E);
}

PExpression TExpr::Binary(TOperator AOp, PExpression ALeft, PExpression ARight) {
  Require(ALeft);
  Require(ARight);
  return std::make_shared<TBinaryOp>(AOp, std::move(ALeft), std::move(ARight), FCheckResultDataType);
}

// factor = ("+" | "-") factor | string | number | "(" expression ")" | NOT factor
//        | TRUE | FALSE | identifier [ "(" expression { "," expression } ")" ]
PExpression TExpr::Factor() {
  SkipSpace();
  const QChar C = Ch();
  if (C == u'+' || C == u'-') {
    ++FParseInputPos;
    PExpression F = Factor();
    Require(F);
    return std::make_shared<TUnaryOp>(C == u'+' ? opPlus : opMinus, F);
  }
  if (C == u'\'') return StringLiteral();
  if (C >= u'0' && C <= u'9') return Number();
  if (C == u'(') {
    ++FParseInputPos;
    ++FStack;
    PExpression E = Expression();
    SkipSpace();
    if (Ch() != u')') Fail(QStringLiteral(" ) expected"));
    ++FParseInputPos;
    --FStack;
    return E;
  }
  if (IsNameStart(C)) {
    const int Start = FParseInputPos;
    const QString Name = Token();
    if (const auto Op = OperatorWord(Name)) {
      if (*Op != opNot) Fail(QStringLiteral("%1 not allowed here").arg(QLatin1String(NOperator[*Op])));
      PExpression F = Factor();
      Require(F);
      return std::make_shared<TUnaryOp>(opNot, F);
    }
    if (Name == QLatin1String("TRUE")) return std::make_shared<TBooleanLiteral>(true);
    if (Name == QLatin1String("FALSE")) return std::make_shared<TBooleanLiteral>(false);
    return Identifier(Name, Start);
  }
  if (AtEnd()) Fail(QStringLiteral("Unexpected end of factor"));
  if (FSyntaxError) {
    // The event has dealt with the text: nothing more of it is read.
    FSyntaxError(*this);
    FParseInputPos = int(FParseInput.size()) + 1;
    return nullptr;
  }
  Fail(QStringLiteral("Syntax error"));
}

// string = "'" { char | "''" } "'"
PExpression TExpr::StringLiteral() {
  ++FParseInputPos;
  QString S;
  for (;;) {
    const QChar C = Ch();
    if (C.isNull()) Fail(QStringLiteral("Unterminated string"));
    ++FParseInputPos;
    if (C == u'\'') {
      if (Ch() != u'\'') break;
      ++FParseInputPos;
    }
    S += C;
    if (S.size() > MaxExprLength) Fail(QStringLiteral("String too long"));
  }
  return std::make_shared<TStringLiteral>(S);
}

// number = digits [ "." digits ] [ ("e" | "E") [ "-" ] digit digits ]
PExpression TExpr::Number() {
  QString S;
  bool Point = false, Exponent = false;
  auto BadFormat = [this] { Fail(QStringLiteral("Bad numeric format")); };
  for (;;) {
    const QChar C = Ch();
    if (C >= u'0' && C <= u'9') {
      S += C;
    } else if (C == u'.') {
      if (Point || Exponent) BadFormat();
      Point = true;
      S += C;
    } else if (C == u'e' || C == u'E') {
      if (Exponent) BadFormat();
      Exponent = true;
      S += u'E';
      ++FParseInputPos;
      if (Ch() == u'+') BadFormat();
      if (Ch() == u'-') {
        S += u'-';
        ++FParseInputPos;
      }
      if (!(Ch() >= u'0' && Ch() <= u'9')) BadFormat();
      continue;
    } else {
      break;
    }
    ++FParseInputPos;
    if (S.size() > 28) BadFormat();
  }
  int I;
  if (!Point && !Exponent && TryStrToInt(S, I)) return std::make_shared<TIntegerLiteral>(I);
  double F;
  if (TryStrToFloat(S, F)) return std::make_shared<TFloatLiteral>(F);
  return std::make_shared<TStringLiteral>(S);
}

// token = "[" { char } "]" | "{" { char } "}" | name-start { name-char }, upper-cased
QString TExpr::Token() {
  QString Name;
  const QChar Open = Ch();
  const QChar Close = Open == u'[' ? QChar(u']') : Open == u'{' ? QChar(u'}') : QChar();
  if (!Close.isNull()) {
    Name += Open;
    ++FParseInputPos;
    while (!Ch().isNull() && Ch() != Close) {
      Name += AsciiUpCase(Ch());
      ++FParseInputPos;
    }
    if (Ch() == Close) {
      Name += Close;
      ++FParseInputPos;
    }
    return Name;
  }
  while (IsNameChar(Ch())) {
    Name += AsciiUpCase(Ch());
    ++FParseInputPos;
  }
  return Name;
}

PExpression TExpr::BuiltIn(const QString& AName, const PParameterList& AParams) {
  if (AName == QLatin1String("IF")) return std::make_shared<TConditional>(AParams);
  for (int T = ttString; T <= ttBoolean; ++T)
    if (AName == UpperCase(QLatin1String(NExprType[T]))) return std::make_shared<TTypeCast>(AParams, TExprType(T));
  for (int I = 0; I < MFCount; ++I)
    if (AName == QLatin1String(NMF[I]))
      return std::make_shared<TMathExpression>(AParams, TMF(I), FUseDegree, FGetStatisticalProc);
  for (int I = 0; I < SFCount; ++I)
    if (AName == QLatin1String(NSF[I])) return std::make_shared<TStringExpression>(AParams, TSF(I));
  return nullptr;
}

// identifier = name [ "(" expression { "," expression } ")" ]
PExpression TExpr::Identifier(const QString& AName, int ANameStart) {
  SkipSpace();
  PParameterList Params = std::make_shared<TParameterList>();
  if (Ch() == u'(') {
    ++FParseInputPos;
    ++FStack;
    SkipSpace();
    if (Ch() != u')') {
      for (;;) {
        PExpression P = Expression();
        Require(P);
        Params->Add(P);
        SkipSpace();
        if (Ch() != u',') break;
        ++FParseInputPos;
      }
    }
    if (Ch() != u')') Fail(QStringLiteral("Incorrectly formed parameters"));
    ++FParseInputPos;
    --FStack;
  }
  PExpression E = BuiltIn(AName, Params);
  if (E) {
    E->SetCheckResultDataType(FCheckResultDataType);
    E->SetGetStatisticalProc(FGetStatisticalProc);
  } else if (FIDProc) {
    FIDProc(AName, Params, E);
    if (!E) Fail(QStringLiteral("Unknown Identifier %1").arg(AName));
  } else {
    FUnresolved = AName;
    return nullptr;
  }
  if (E->ExprReplace()) {
    // The name (with its parameters) gives way to its value; the blanks after it stay.
    int End = FParseInputPos - 1;
    while (End > ANameStart - 1 && FParseInput[End - 1].unicode() <= 32) --End;
    const QString Value = E->AsString();
    FParseInput.replace(ANameStart - 1, End - (ANameStart - 1), Value);
    FParseInputPos = ANameStart + int(Value.size()) + (FParseInputPos - 1 - End);
  }
  return E;
}

// power-tail = { "^" factor }
PExpression TExpr::PowerTail(PExpression ALeft) {
  SkipSpace();
  const QChar C = Ch();
  if (C == u'^') {
    ++FParseInputPos;
    return PowerTail(Binary(opPower, ALeft, Factor()));
  }
  if (AtEnd() || C == u'*' || C == u'+' || C == u'-' || C == u'/' || C == u'<' || C == u'=' || C == u'>' ||
      IsNameChar(C))
    return ALeft;
  Fail(QStringLiteral("char %1 in input stream").arg(C));
}

// term-tail = { ("*" | "/" | DIV | MOD | AND | SHL | SHR) factor power-tail }
PExpression TExpr::TermTail(PExpression ALeft) {
  SkipSpace();
  TOperator Op;
  const QChar C = Ch();
  if (C == u'*') {
    Op = opMult;
    ++FParseInputPos;
  } else if (C == u'/') {
    Op = opDivide;
    ++FParseInputPos;
  } else if (IsNameStart(C)) {
    const int Start = FParseInputPos;
    const QString Word = Token();
    const auto W = OperatorWord(Word);
    if (!W) {
      if (Word == QLatin1String("TRUE") || Word == QLatin1String("FALSE"))
        Fail(QStringLiteral("Boolean literal not allowed here"));
      Fail(QStringLiteral("Identifier %1 not allowed here").arg(Word));
    }
    if (*W != opDiv && *W != opMod && *W != opAnd && *W != opShl && *W != opShr) {
      FParseInputPos = Start;
      return ALeft;
    }
    Op = *W;
  } else {
    return ALeft;
  }
  PExpression Right = PowerTail(Factor());
  return TermTail(Binary(Op, ALeft, Right));
}

// simple-tail = { ("+" | "-" | OR | XOR) factor power-tail term-tail }
PExpression TExpr::SimpleTail(PExpression ALeft) {
  SkipSpace();
  TOperator Op;
  const QChar C = Ch();
  if (C == u'+' || C == u'-') {
    Op = C == u'+' ? opPlus : opMinus;
    ++FParseInputPos;
  } else if (IsNameStart(C)) {
    const int Start = FParseInputPos;
    const QString Word = Token();
    const auto W = OperatorWord(Word);
    if (!W) {
      if (Word == QLatin1String("TRUE") || Word == QLatin1String("FALSE"))
        Fail(QStringLiteral("Boolean literal not allowed here"));
      Fail(QStringLiteral("Identifier %1 not allowed here").arg(Word));
    }
    if (*W != opOr && *W != opXor) {
      FParseInputPos = Start;
      return ALeft;
    }
    Op = *W;
  } else {
    return ALeft;
  }
  PExpression Right = TermTail(PowerTail(Factor()));
  return SimpleTail(Binary(Op, ALeft, Right));
}

// relational-tail = { ("=" | "<>" | "<" | ">" | "<=" | ">=") factor power-tail term-tail simple-tail }
PExpression TExpr::RelationalTail(PExpression ALeft) {
  SkipSpace();
  auto IsRel = [](QChar C) { return C == u'<' || C == u'=' || C == u'>'; };
  if (!IsRel(Ch())) return ALeft;
  QString Sym(Ch());
  ++FParseInputPos;
  if (IsRel(Ch())) {
    Sym += Ch();
    ++FParseInputPos;
  }
  std::optional<TOperator> Op;
  for (int I = opEq; I <= opGTE; ++I)
    if (Sym == QLatin1String(NOperatorToken[I])) Op = TOperator(I);
  if (!Op) Fail(QStringLiteral("%1 not a valid operator").arg(Sym));
  PExpression Right = SimpleTail(TermTail(PowerTail(Factor())));
  Require(ALeft);
  Require(Right);
  return RelationalTail(std::make_shared<TRelationalOp>(*Op, ALeft, Right));
}
