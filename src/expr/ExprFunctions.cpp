#include "ExprFunctions.h"

#include <QByteArray>
#include <QDateTime>
#include <QStringDecoder>
#include <QStringEncoder>
#include <QTimeZone>

#include <algorithm>
#include <cmath>
#include <limits>

const char* const NMF[MFCount] = {
    "TRUNC",   "ROUND",   "ABS",   "EXP",     "FRAC",    "INT",     "LN",    "LOG",      "SQR",     "SQRT",
    "SIN",     "COS",     "TAN",   "ARCTAN",  "ARCSIN",  "ARCCOS",  "SIND",  "COSD",     "TAND",    "ARCSIND",
    "ARCCOSD", "ARCTAND", "PI",    "NOW",     "POWER",   "SUM",     "AVERAGE", "TOP",    "TRAIL",   "COUNT",
    "ORD",     "STRTOINT", "STRTOFLOAT", "MAX", "MIN",   "CEIL",    "FLOOR", "FROUND",   "DTOR",    "RTOD",
    "IIF"};
const char* const NSF[SFCount] = {"UPPER",     "LOWER",      "TRIM",   "COPY",   "MID",          "POS",
                                  "LENGTH",    "FORMATFLOAT", "INTTOSTR", "STR", "FLOATTOSTR",   "CHR",
                                  "REVERSE",   "CHSNUM",     "RMBNUM", "FORMATDATETIME", "REPLACE", "IF",
                                  "ANSITOUTF8", "UTF8TOANSI", "BASE64ENCODE", "BASE64DECODE"};

namespace {

constexpr double Pi = 3.141592653589793;

[[noreturn]] void InvalidParameter(const char* AName) {
  throw EExpression(QStringLiteral("Invalid parameter to %1").arg(QString::fromLatin1(AName)));
}

bool Numeric(const PExpression& P) { return P->ExprType() != ttString; }

}  // namespace

// ---- mathematical -----------------------------------------------------------

TMathExpression::TMathExpression(PParameterList AParameterList, TMF AOperator, bool AUseDegree,
                                 const TStatisticalGetProc& AGetStatisticalProc)
    : TFunction(std::move(AParameterList)), FOperator(AOperator), UseDegree(AUseDegree) {
  FGetStatisticalProc = AGetStatisticalProc;
  const int N = ParameterCount();
  auto AllNumeric = [&] {
    for (int I = 0; I < N; ++I)
      if (!Numeric(GetParam(I))) return false;
    return true;
  };
  bool Ok;
  switch (AOperator) {
    case mfPi: case mfNow: Ok = true; break;
    case mfPower: Ok = N == 2 && AllNumeric(); break;
    case mfCount: Ok = N <= 1; break;
    case mfOrd: case mfStrToInt: case mfStrToFloat: Ok = N == 1; break;
    case mfMax: case mfMin: Ok = N >= 1 && AllNumeric(); break;
    case mfFRound: Ok = N == 2 && Numeric(GetParam(0)) && GetParam(1)->CanReadAs(ttInteger); break;
    case mfIIF: Ok = N == 3 && GetParam(0)->ExprType() == ttBoolean && Numeric(GetParam(1)) && Numeric(GetParam(2)); break;
    default: Ok = N == 1 && Numeric(GetParam(0)); break;
  }
  if (!Ok) InvalidParameter(NMF[AOperator]);
}

TExprType TMathExpression::ExprType() {
  switch (FOperator) {
    case mfTrunc: case mfRound: case mfCount: case mfOrd: case mfStrToInt: return ttInteger;
    default: return ttFloat;
  }
}

double TMathExpression::Statistical(double AValue) {
  TStatisticalData* Data = nullptr;
  if (FGetStatisticalProc) FGetStatisticalProc(*this, Data);
  if (!Data) return 0;
  const bool Fresh = Data->FCount >= int(Data->FDataList.size());
  if (Fresh) Data->FDataList.push_back(TDataRec{});
  TDataRec& R = Data->FDataList[size_t(Data->FCount++)];
  switch (FOperator) {
    case mfSum: R.Doubl += AValue; return R.Doubl;
    case mfAverage: {
      const double Avg = (R.Doubl + AValue) / (R.Int + 1);
      R.Doubl += AValue;
      ++R.Int;
      return Avg;
    }
    case mfCount: ++R.Int; return R.Int;
    case mfTop: R.Doubl = Fresh ? AValue : std::max(R.Doubl, AValue); return R.Doubl;
    case mfTrail: R.Doubl = Fresh ? AValue : std::min(R.Doubl, AValue); return R.Doubl;
    default: return 0;
  }
}

static bool InUnitRange(double X) { return X >= -1 - 1e-12 && X <= 1 + 1e-12; }

double TMathExpression::AsFloat() {
  auto X = [this] { return GetParam(0)->AsFloat(); };
  const double ToRad = UseDegree ? Pi / 180 : 1;
  const double FromRad = UseDegree ? 180 / Pi : 1;
  switch (FOperator) {
    case mfTrunc: case mfRound: case mfCount: case mfOrd: case mfStrToInt: return double(AsInteger());
    case mfAbs: return std::fabs(X());
    case mfExp: return CheckFloat(std::exp(X()));
    case mfFrac: { const double V = X(); return V - std::trunc(V); }
    case mfInt: return std::trunc(X());
    case mfLn: { const double V = X(); if (V <= 0) throw EExpression(QStringLiteral("Invalid floating point operation")); return std::log(V); }
    case mfLog: { const double V = X(); if (V <= 0) throw EExpression(QStringLiteral("Invalid floating point operation")); return std::log10(V); }
    case mfSqr: { const double V = X(); return CheckFloat(V * V); }
    case mfSqrt: { const double V = X(); if (V < 0) throw EExpression(QStringLiteral("Invalid floating point operation")); return std::sqrt(V); }
    case mfSin: return std::sin(X() * ToRad);
    case mfCos: return std::cos(X() * ToRad);
    case mfTan: return CheckFloat(std::tan(X() * ToRad));
    case mfArcTan: return std::atan(X()) * FromRad;
    case mfArcSin: case mfArcCos: case mfArcSinD: case mfArcCosD: {
      const double V = X();
      if (!InUnitRange(V)) InvalidParameter(NMF[FOperator]);
      const double C = std::clamp(V, -1.0, 1.0);
      const double R = (FOperator == mfArcSin || FOperator == mfArcSinD) ? std::asin(C) : std::acos(C);
      return (FOperator == mfArcSinD || FOperator == mfArcCosD) ? R * 180 / Pi : R * FromRad;
    }
    case mfSinD: return std::sin(X() / 180 * Pi);
    case mfCosD: return std::cos(X() / 180 * Pi);
    case mfTanD: return CheckFloat(std::tan(X() / 180 * Pi));
    case mfArcTanD: return std::atan(X()) * 180 / Pi;
    case mfPi: return Pi;
    case mfNow: return NowAsDateTime();
    // The first parameter is the exponent, the second the base.
    case mfPower: return CheckFloat(std::pow(GetParam(1)->AsFloat(), GetParam(0)->AsFloat()));
    case mfSum: case mfAverage: case mfTop: case mfTrail: return Statistical(X());
    case mfStrToFloat: return StrToFloat(GetParam(0)->AsString());
    case mfMax: case mfMin: {
      double R = X();
      for (int I = 1; I < ParameterCount(); ++I) {
        const double V = GetParam(I)->AsFloat();
        R = FOperator == mfMax ? std::max(R, V) : std::min(R, V);
      }
      return R;
    }
    case mfCeil: return std::ceil(X());
    case mfFloor: return std::floor(X());
    case mfFRound: {
      const int Digits = int(std::clamp<qint64>(GetParam(1)->AsInteger(), 0, 30));
      return StrToFloat(FormatFloat(QStringLiteral("0.") + QString(Digits, u'#'), X() + 1e-09));
    }
    case mfDToR: return X() * Pi / 180;
    case mfRToD: return X() * 180 / Pi;
    case mfIIF: {
      const double A = GetParam(1)->AsFloat(), B = GetParam(2)->AsFloat();  // both evaluated
      return GetParam(0)->AsBoolean() ? A : B;
    }
  }
  return 0;
}

qint64 TMathExpression::AsInteger() {
  switch (FOperator) {
    case mfTrunc: case mfRound: {
      const double V = GetParam(0)->AsFloat();
      // Round sends halves to the even neighbour (banker's rounding).
      const double R = FOperator == mfTrunc ? std::trunc(V) : std::nearbyint(V);
      if (!(R >= -9.2e18 && R <= 9.2e18)) throw EExpression(QStringLiteral("Invalid floating point operation"));
      return qint64(R);
    }
    case mfCount: return qint64(Statistical(ParameterCount() ? GetParam(0)->AsFloat() : 0));
    case mfOrd: {
      const QString S = GetParam(0)->AsString();
      return S.isEmpty() ? 0 : S[0].unicode();
    }
    case mfStrToInt: return StrToInt64(GetParam(0)->AsString());
    default: return TFunction::AsInteger();
  }
}

// ---- string -----------------------------------------------------------------

TStringExpression::TStringExpression(PParameterList AParameterList, TSF AOperator)
    : TFunction(std::move(AParameterList)), FOperator(AOperator) {
  const int N = ParameterCount();
  bool Ok;
  switch (AOperator) {
    case sfCopy: case sfMid:
      Ok = N == 3 && GetParam(1)->CanReadAs(ttInteger) && GetParam(2)->CanReadAs(ttInteger);
      break;
    case sfPos: Ok = N == 2; break;
    case sfFormatFloat: Ok = N == 2 && Numeric(GetParam(1)); break;
    case sfFormatDateTime: Ok = N == 2 && Numeric(GetParam(1)); break;
    case sfReplace: Ok = N == 3; break;
    case sfIntToStr: case sfChr: Ok = N == 1 && GetParam(0)->CanReadAs(ttInteger); break;
    case sfFloatToStr: case sfChsNum: case sfRmbNum: Ok = N == 1 && Numeric(GetParam(0)); break;
    case sfIf: Ok = false; break;
    default: Ok = N == 1; break;
  }
  if (!Ok) InvalidParameter(NSF[AOperator]);
}

TExprType TStringExpression::ExprType() {
  return (FOperator == sfPos || FOperator == sfLength) ? ttInteger : ttString;
}

qint64 TStringExpression::AsInteger() {
  if (FOperator == sfPos) return GetParam(1)->AsString().indexOf(GetParam(0)->AsString()) + 1;
  if (FOperator == sfLength) return GetParam(0)->AsString().size();
  return TFunction::AsInteger();
}

// The 8-bit form of a text, as an ANSI string holds it.
static QByteArray EightBit(const QString& S) { return QStringEncoder("GBK")(S); }
static QString FromEightBit(const QByteArray& B) { return QStringDecoder("GBK")(B); }

QString TStringExpression::AsString() { return CheckedString(StringResult()); }

QString TStringExpression::StringResult() {
  auto S = [this](int I) { return GetParam(I)->AsString(); };
  switch (FOperator) {
    case sfUpper: return S(0).toUpper();
    case sfLower: return S(0).toLower();
    case sfTrim: return Trim(S(0));
    case sfCopy: case sfMid: {
      const QString T = S(0);
      const qint64 Start = std::max<qint64>(1, GetParam(1)->AsInteger());
      const qint64 Len = GetParam(2)->AsInteger();
      if (Len <= 0 || Start > T.size()) return QString();
      return T.mid(qsizetype(Start - 1), qsizetype(std::min<qint64>(Len, T.size())));
    }
    case sfPos: case sfLength: return QString::number(AsInteger());
    case sfFormatFloat: return FormatFloat(S(0), GetParam(1)->AsFloat());
    case sfIntToStr: return QString::number(GetParam(0)->AsInteger());
    case sfStr: return S(0);
    case sfFloatToStr: return FloatToStr(GetParam(0)->AsFloat());
    case sfChr: {
      const qint64 C = GetParam(0)->AsInteger();
      if (C < 0 || C > 0xFFFF) InvalidParameter(NSF[FOperator]);
      return QString(QChar(char16_t(C)));
    }
    case sfReverse: {
      QString T = S(0);
      std::reverse(T.begin(), T.end());
      return T;
    }
    case sfChsNum: return ChsNum(GetParam(0)->AsFloat());
    case sfRmbNum: return RmbNum(GetParam(0)->AsFloat());
    case sfFormatDateTime: return FormatDateTime(S(0), GetParam(1)->AsFloat());
    case sfReplace: {
      QString T = S(0);
      const QString Old = S(1);
      if (Old.isEmpty()) return T;
      return T.replace(Old, S(2), Qt::CaseInsensitive);
    }
    case sfIf: break;
    case sfAnsiToUtf8: return FromEightBit(S(0).toUtf8());
    case sfUtf8ToAnsi: return QString::fromUtf8(EightBit(S(0)));
    case sfBase64Encode: return QString::fromLatin1(EightBit(S(0)).toBase64());
    case sfBase64Decode: return FromEightBit(QByteArray::fromBase64(S(0).toLatin1()));
  }
  return QString();
}

// ---- Chinese numbers --------------------------------------------------------

namespace {

// Two characters from position 2 * AIndex + 1 (1-based) of ATable, as the
// program takes them; past the end gives what is left, possibly nothing.
QString Pair(const QString& ATable, int AIndex) { return ATable.mid(2 * AIndex, 2); }

}  // namespace

QString ChsNum(double AValue) {
  static const QString Digits = QStringLiteral("零一二三四五六七八九");
  static const QString Units[3] = {QStringLiteral("十"), QStringLiteral("百"), QStringLiteral("千")};
  static const QString Groups[3] = {QStringLiteral("万"), QStringLiteral("亿"), QStringLiteral("兆")};
  const QString Zero = QStringLiteral("零");
  QString S = FloatToStr(AValue);
  const bool Negative = S.startsWith(u'-');
  if (Negative) S.remove(0, 1);
  const qsizetype D = S.indexOf(u'.');
  QString Int = D >= 0 ? S.left(D) : S;
  std::reverse(Int.begin(), Int.end());
  QString Result;
  bool Z = true;
  for (qsizetype G = 0; G * 4 < Int.size(); ++G) {
    const QString Group = Int.mid(G * 4, 4);
    QString T;
    for (qsizetype J = 1; J <= Group.size(); ++J) {
      const QChar C = Group[J - 1];
      if (C == u'0') {
        if (!Z && J != 1) T = Zero + T;
        Z = true;
      } else {
        if (J >= 2) T = Units[J - 2] + T;
        T = Pair(Digits, C.digitValue()) + T;
        Z = false;
      }
    }
    if (T.isEmpty()) {
      if (!Result.isEmpty() && Result.left(2) != Zero) Result = Zero + Result;
    } else if (G == 0) {
      Result = T;
    } else if (G <= 3) {
      Result = T + Groups[G - 1] + Result;
    }
  }
  if (D >= 0) {
    Result += QStringLiteral("点");
    for (const QChar C : S.mid(D + 1))
      if (C.isDigit()) Result += Pair(Digits, C.digitValue());
  }
  if (Result.isEmpty()) Result = Zero;
  if (Result.startsWith(QStringLiteral("一十"))) Result.remove(0, 2);
  if (Result.left(2) == QStringLiteral("点")) Result = Zero + Result;
  if (Negative) Result = QStringLiteral("负") + Result;
  return Result;
}

QString RmbNum(double AValue) {
  static const QString Digits[10] = {QStringLiteral("零"), QStringLiteral("壹"), QStringLiteral("贰"),
                                     QStringLiteral("叁"), QStringLiteral("肆"), QStringLiteral("伍"),
                                     QStringLiteral("陆"), QStringLiteral("柒"), QStringLiteral("捌"),
                                     QStringLiteral("玖")};
  const QString Places = QStringLiteral("  拾佰仟");
  const QString GroupUnits = QStringLiteral("元万亿兆");
  const QString CentPlaces = QStringLiteral("分角");
  if (!std::isfinite(AValue) || std::fabs(AValue) > 9e14) throw EExpression(QStringLiteral("Invalid parameter to RMBNUM"));
  const qint64 Scaled = qint64(std::llround(AValue * 10000));
  if (std::llabs(Scaled) < 1) return QStringLiteral("零元整");
  QString Result = Scaled < 0 ? QStringLiteral("负") : QString();
  const QString Text = Trim(FormatFloat(QStringLiteral("0.00"), double(std::llabs(Scaled)) / 10000));
  const qsizetype Dot = Text.indexOf(u'.');
  const QString IntDigits = Text.left(Dot), Cents = Text.mid(Dot + 1);
  bool Skipped = false;
  bool Any = false;
  // Appends one group of digits; AP gives the place string.
  auto RunGroup = [&](const QString& AGroup, const QString& APlaces) {
    bool GroupHasDigit = false;
    for (qsizetype K = 0; K < AGroup.size(); ++K) {
      const int Dg = AGroup[K].digitValue();
      if (Dg == 0) {
        if (Any) Skipped = true;
        continue;
      }
      if (Skipped) Result += Digits[0];
      Skipped = false;
      Result += Digits[Dg] + Trim(Pair(APlaces, int(AGroup.size() - K - 1)));
      GroupHasDigit = Any = true;
    }
    return GroupHasDigit;
  };
  const qsizetype N = IntDigits.size();
  qsizetype First = N % 4 == 0 ? 4 : N % 4;
  qsizetype GroupsLeft = (N - First) / 4;
  for (qsizetype P = 0; P < N; GroupsLeft--) {
    const QString Group = IntDigits.mid(P, First);
    if (RunGroup(Group, Places)) Result += Pair(GroupUnits, int(GroupsLeft));
    P += First;
    First = 4;
  }
  if (!RunGroup(Cents, CentPlaces)) Result += QStringLiteral("整");
  return Result;
}

// ---- dates ------------------------------------------------------------------

double NowAsDateTime() {
  const QDateTime Now = QDateTime::currentDateTime();
  const QDateTime Epoch(QDate(1899, 12, 30), QTime(0, 0), Now.timeZone());
  return double(Epoch.msecsTo(Now)) / 86400000.0;
}

QString FormatDateTime(const QString& AFormat, double ADateTime) {
  if (!std::isfinite(ADateTime) || std::fabs(ADateTime) > 3e6) throw EExpression(QStringLiteral("Invalid parameter to FORMATDATETIME"));
  const qint64 Ms = qint64(std::llround(ADateTime * 86400000.0));
  const QDateTime Dt = QDateTime(QDate(1899, 12, 30), QTime(0, 0), Qt::UTC).addMSecs(Ms);
  const QDate D = Dt.date();
  const QTime T = Dt.time();
  static const char* const ShortDays[] = {"Mon", "Tue", "Wed", "Thu", "Fri", "Sat", "Sun"};
  static const char* const LongDays[] = {"Monday", "Tuesday", "Wednesday", "Thursday", "Friday", "Saturday", "Sunday"};
  static const char* const ShortMonths[] = {"Jan", "Feb", "Mar", "Apr", "May", "Jun",
                                            "Jul", "Aug", "Sep", "Oct", "Nov", "Dec"};
  static const char* const LongMonths[] = {"January", "February", "March",     "April",   "May",      "June",
                                           "July",    "August",   "September", "October", "November", "December"};
  const QString F = AFormat.isEmpty() ? QStringLiteral("yyyy/m/d h:nn:ss") : AFormat;
  QString R;
  bool AfterHour = false;
  auto Pad = [](int V, int W) { return QString::number(V).rightJustified(W, u'0'); };
  for (qsizetype I = 0; I < F.size();) {
    const QChar C = F[I];
    const char16_t L = AsciiUpCase(C).unicode();
    qsizetype Run = 1;
    while (I + Run < F.size() && AsciiUpCase(F[I + Run]).unicode() == L) ++Run;
    if (C == u'"' || C == u'\'') {
      const qsizetype J = F.indexOf(C, I + 1);
      const qsizetype End = J < 0 ? F.size() : J;
      R += F.mid(I + 1, End - I - 1);
      I = End + 1;
      continue;
    }
    switch (L) {
      case u'Y': R += Run <= 2 ? Pad(D.year() % 100, 2) : Pad(D.year(), 4); break;
      case u'M':
        if (AfterHour && Run <= 2) R += Run == 1 ? QString::number(T.minute()) : Pad(T.minute(), 2);
        else if (Run == 1) R += QString::number(D.month());
        else if (Run == 2) R += Pad(D.month(), 2);
        else R += QString::fromLatin1(Run == 3 ? ShortMonths[D.month() - 1] : LongMonths[D.month() - 1]);
        break;
      case u'D':
        if (Run == 1) R += QString::number(D.day());
        else if (Run == 2) R += Pad(D.day(), 2);
        else R += QString::fromLatin1(Run == 3 ? ShortDays[D.dayOfWeek() - 1] : LongDays[D.dayOfWeek() - 1]);
        break;
      case u'H': R += Run == 1 ? QString::number(T.hour()) : Pad(T.hour(), 2); break;
      case u'N': R += Run == 1 ? QString::number(T.minute()) : Pad(T.minute(), 2); break;
      case u'S': R += Run == 1 ? QString::number(T.second()) : Pad(T.second(), 2); break;
      case u'Z': R += Run >= 3 ? Pad(T.msec(), 3) : QString::number(T.msec()); break;
      default: R += F.mid(I, Run); break;
    }
    if (L == u'H') AfterHour = true;
    else if (L != u':' && L != u' ' && L != u'M') AfterHour = false;
    I += Run;
  }
  return R;
}
