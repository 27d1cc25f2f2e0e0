#include "SysUtils.h"

#include <algorithm>
#include <charconv>
#include <cstring>

#include <QFile>
#include <QFileInfo>

#include <QStringList>
#include <cmath>
#include <cstdio>
#include <limits>
#include <vector>

Exception::Exception(QString AMessage) : FMessage(std::move(AMessage)), FUtf8(FMessage.toUtf8()) {}

QString TrimLeft(const QString& S) {
  int I = 0;
  while (I < S.size() && S[I].unicode() <= ' ') ++I;
  return S.mid(I);
}

QString TrimRight(const QString& S) {
  int L = S.size();
  while (L > 0 && S[L - 1].unicode() <= ' ') --L;
  return S.left(L);
}

QString Trim(const QString& S) { return TrimRight(TrimLeft(S)); }

QChar AsciiUpCase(QChar C) {
  const char16_t U = C.unicode();
  return (U >= u'a' && U <= u'z') ? QChar(char16_t(U - 32)) : C;
}

static QChar AsciiLowCase(QChar C) {
  const char16_t U = C.unicode();
  return (U >= u'A' && U <= u'Z') ? QChar(char16_t(U + 32)) : C;
}

QString UpperCase(const QString& S) {
  QString R = S;
  for (QChar& C : R) C = AsciiUpCase(C);
  return R;
}

QString LowerCase(const QString& S) {
  QString R = S;
  for (QChar& C : R) C = AsciiLowCase(C);
  return R;
}

int CompareText(const QString& S1, const QString& S2) {
  const qsizetype N = std::min(S1.size(), S2.size());
  for (qsizetype I = 0; I < N; ++I) {
    const int D = int(AsciiUpCase(S1[I]).unicode()) - int(AsciiUpCase(S2[I]).unicode());
    if (D != 0) return D;
  }
  return int(S1.size() - S2.size());
}

bool SameText(const QString& S1, const QString& S2) {
  return S1.size() == S2.size() && CompareText(S1, S2) == 0;
}

// ---- integers -------------------------------------------------------------

bool TryStrToInt64(QStringView S, qint64& AValue) {
  qsizetype I = 0;
  const qsizetype N = S.size();
  while (I < N && S[I] == u' ') ++I;
  bool Neg = false;
  if (I < N && (S[I] == u'+' || S[I] == u'-')) {
    Neg = S[I] == u'-';
    ++I;
  }
  int Base = 10;
  if (I < N && S[I] == u'$') {
    Base = 16;
    ++I;
  } else if (I + 1 < N && S[I] == u'0' && (S[I + 1] == u'x' || S[I + 1] == u'X')) {
    Base = 16;
    I += 2;
  }
  if (I >= N) return false;
  quint64 Acc = 0;
  const quint64 Limit = Neg ? quint64(std::numeric_limits<qint64>::max()) + 1
                            : quint64(std::numeric_limits<qint64>::max());
  for (; I < N; ++I) {
    const char16_t C = S[I].unicode();
    int D;
    if (C >= u'0' && C <= u'9') D = C - u'0';
    else if (Base == 16 && C >= u'a' && C <= u'f') D = C - u'a' + 10;
    else if (Base == 16 && C >= u'A' && C <= u'F') D = C - u'A' + 10;
    else return false;
    if (Acc > (Limit - quint64(D)) / quint64(Base)) return false;
    Acc = Acc * quint64(Base) + quint64(D);
  }
  AValue = Neg ? qint64(0 - Acc) : qint64(Acc);
  return true;
}

bool TryStrToInt(QStringView S, int& AValue) {
  qint64 V;
  if (!TryStrToInt64(S, V) || V < std::numeric_limits<int>::min() || V > std::numeric_limits<int>::max())
    return false;
  AValue = int(V);
  return true;
}

qint64 StrToInt64(const QString& S) {
  qint64 V;
  if (!TryStrToInt64(S, V)) throw EConvertError(QStringLiteral("'%1' is not a valid integer value").arg(S));
  return V;
}

int StrToInt(const QString& S) {
  int V;
  if (!TryStrToInt(S, V)) throw EConvertError(QStringLiteral("'%1' is not a valid integer value").arg(S));
  return V;
}

int StrToIntDef(QStringView S, int ADefault) {
  int V;
  return TryStrToInt(S, V) ? V : ADefault;
}

// ---- floats ---------------------------------------------------------------

bool TryStrToFloat(QStringView S, double& AValue) {
  qsizetype B = 0, N = S.size();
  while (B < N && S[B].unicode() <= ' ') ++B;
  while (N > B && S[N - 1].unicode() <= ' ') --N;
  const QStringView T = S.mid(B, N - B);
  if (T.isEmpty()) return false;
  // number = [sign] digits [. digits] [(E|e) [sign] digits], at least one mantissa digit
  char Small[64];
  QByteArray Large;
  char* A = Small;
  if (T.size() >= qsizetype(sizeof Small)) {
    Large.resize(T.size() + 1);
    A = Large.data();
  }
  qsizetype I = 0, Len = 0;
  const qsizetype L = T.size();
  auto Digits = [&]() {
    int Count = 0;
    while (I < L && T[I] >= u'0' && T[I] <= u'9') {
      A[Len++] = char(T[I].unicode());
      ++I;
      ++Count;
    }
    return Count;
  };
  bool Plus = false;
  if (T[I] == u'+' || T[I] == u'-') {
    Plus = T[I] == u'+';
    A[Len++] = char(T[I++].unicode());
  }
  int Mantissa = Digits();
  if (I < L && T[I] == u'.') {
    A[Len++] = '.';
    ++I;
    Mantissa += Digits();
  }
  if (Mantissa == 0) return false;
  if (I < L && (T[I] == u'e' || T[I] == u'E')) {
    A[Len++] = 'e';
    ++I;
    if (I < L && (T[I] == u'+' || T[I] == u'-')) A[Len++] = char(T[I++].unicode());
    if (Digits() == 0) return false;
  }
  if (I != L) return false;
  A[Len] = 0;
  // from_chars rounds as strtod does; strtod stays for what it refuses (over- and underflow).
  double V;
  const char* First = A + (Plus ? 1 : 0);
  const auto R = std::from_chars(First, A + Len, V);
  if (R.ec != std::errc() || R.ptr != A + Len) V = std::strtod(A, nullptr);
  if (!std::isfinite(V)) return false;
  AValue = V;
  return true;
}

double StrToFloat(const QString& S) {
  double V;
  if (!TryStrToFloat(S, V))
    throw EConvertError(QStringLiteral("'%1' is not a valid floating point value").arg(S));
  return V;
}

double StrToFloatDef(QStringView S, double ADefault) {
  double V;
  return TryStrToFloat(S, V) ? V : ADefault;
}

namespace {

// A finite value as decimal digits: Value = 0.D1D2... x 10^Exponent.
struct TFloatDigits {
  bool Negative = false;
  char Digits[24];  // no leading or trailing zeros; none for zero
  int Count = 0;
  int Exponent = 0;
  QString Text() const { return QString::fromLatin1(Digits, Count); }
};

TFloatDigits ToDigits(double AValue, int APrecision) {
  TFloatDigits R;
  R.Negative = std::signbit(AValue);
  if (AValue == 0) return R;
  // as printf's "%.*e" writes it: d.ddddde[+-]xx
  char Buf[64];
  const char* End = std::to_chars(Buf, Buf + sizeof Buf, std::fabs(AValue), std::chars_format::scientific,
                                  APrecision - 1).ptr;
  const char* E = std::find(static_cast<const char*>(Buf), End, 'e');
  R.Digits[R.Count++] = Buf[0];
  for (const char* P = Buf + 2; P < E; ++P) R.Digits[R.Count++] = *P;
  int X = 0;
  std::from_chars(E + 1 + (E[1] == '+' ? 1 : 0), End, X);
  R.Exponent = X + 1;
  while (R.Count > 0 && R.Digits[R.Count - 1] == '0') --R.Count;
  return R;
}

// Rounds the digits so that at most ADecimals remain after the decimal point,
// half away from zero on the decimal value.
void RoundDigits(TFloatDigits& D, int ADecimals) {
  const int Keep = D.Exponent + ADecimals;
  if (Keep >= D.Count) return;
  if (Keep < 0) {
    D.Count = 0;
    return;
  }
  const bool Up = D.Digits[Keep] >= '5';
  D.Count = Keep;
  if (Up) {
    int I = Keep - 1;
    while (I >= 0 && D.Digits[I] == '9') D.Digits[I--] = '0';
    if (I < 0) {
      std::memmove(D.Digits + 1, D.Digits, size_t(D.Count));
      D.Digits[0] = '1';
      ++D.Count;
      ++D.Exponent;
    } else {
      ++D.Digits[I];
    }
  }
  while (D.Count > 0 && D.Digits[D.Count - 1] == '0') --D.Count;
}

}  // namespace

QString FloatToStr(double AValue) {
  if (std::isnan(AValue)) return QStringLiteral("NAN");
  if (std::isinf(AValue)) return AValue > 0 ? QStringLiteral("INF") : QStringLiteral("-INF");
  const TFloatDigits D = ToDigits(AValue, 15);
  if (D.Count == 0) return QStringLiteral("0");
  QString R;
  if (D.Negative) R += u'-';
  const QString Dig = D.Text();
  if (D.Exponent > 15 || D.Exponent < -3) {
    R += Dig[0];
    if (Dig.size() > 1) R += u'.' + Dig.mid(1);
    const int E = D.Exponent - 1;
    R += u'E';
    if (E < 0) R += u'-';
    R += QString::number(std::abs(E));
    return R;
  }
  if (D.Exponent <= 0) {
    R += QStringLiteral("0.") + QString(-D.Exponent, u'0') + Dig;
  } else if (Dig.size() <= D.Exponent) {
    R += Dig + QString(D.Exponent - Dig.size(), u'0');
  } else {
    R += Dig.left(D.Exponent) + u'.' + Dig.mid(D.Exponent);
  }
  return R;
}

namespace {

struct TPicture {
  int IntZeros = 0;       // '0' places before the point
  int IntPlaces = 0;      // all digit places before the point
  int FracZeros = 0;      // '0' places after the point (counted to the last '0')
  int FracPlaces = 0;     // all digit places after the point
  bool HasPoint = false;
  bool Thousands = false;
  bool Scientific = false;
  bool ExpPlus = false;   // "E+" prints the sign always
  QChar ExpChar = u'E';
  int ExpDigits = 0;
  QString Prefix, Suffix;  // literals before the first and after the last digit place
};

QString Unquote(const QString& AText) {
  QString R;
  for (qsizetype I = 0; I < AText.size(); ++I) {
    const QChar C = AText[I];
    if (C == u'"' || C == u'\'') {
      const qsizetype J = AText.indexOf(C, I + 1);
      const qsizetype End = J < 0 ? AText.size() : J;
      R += AText.mid(I + 1, End - I - 1);
      I = End;
    } else {
      R += C;
    }
  }
  return R;
}

TPicture ParsePicture(const QString& F) {
  TPicture P;
  qsizetype First = -1, Last = -1;
  bool InFrac = false;
  for (qsizetype I = 0; I < F.size(); ++I) {
    const QChar C = F[I];
    if (C == u'"' || C == u'\'') {
      const qsizetype J = F.indexOf(C, I + 1);
      I = J < 0 ? F.size() : J;
      continue;
    }
    if (P.Scientific) continue;
    if (C == u'0' || C == u'#') {
      if (First < 0) First = I;
      Last = I;
      if (InFrac) {
        ++P.FracPlaces;
        if (C == u'0') P.FracZeros = P.FracPlaces;
      } else {
        ++P.IntPlaces;
        if (C == u'0' && P.IntZeros == 0) P.IntZeros = P.IntPlaces;
      }
    } else if (C == u'.' && !InFrac) {
      InFrac = true;
      P.HasPoint = true;
      if (First < 0) First = I;
      Last = I;
    } else if (C == u',') {
      P.Thousands = true;
    } else if ((C == u'E' || C == u'e') && I + 1 < F.size() && (F[I + 1] == u'+' || F[I + 1] == u'-')) {
      P.Scientific = true;
      P.ExpChar = C;
      P.ExpPlus = F[I + 1] == u'+';
      qsizetype J = I + 2;
      while (J < F.size() && F[J] == u'0') {
        ++P.ExpDigits;
        ++J;
      }
      Last = J - 1;
      I = J - 1;
    }
  }
  if (P.IntZeros > 0) P.IntZeros = P.IntPlaces - P.IntZeros + 1;
  if (First < 0) {
    P.Prefix = Unquote(F);
    return P;
  }
  P.Prefix = Unquote(F.left(First));
  P.Suffix = Unquote(F.mid(Last + 1));
  return P;
}

QString GroupThousands(const QString& AInt) {
  QString R;
  const qsizetype N = AInt.size();
  for (qsizetype I = 0; I < N; ++I) {
    if (I > 0 && (N - I) % 3 == 0) R += u',';
    R += AInt[I];
  }
  return R;
}

QString ApplyPicture(const TPicture& P, double AAbs) {
  QString IntPart, FracPart, ExpPart;
  if (P.Scientific) {
    const int Places = std::max(1, P.IntPlaces) + P.FracPlaces;
    TFloatDigits D = ToDigits(AAbs, std::min(Places, 17));
    int Exp = 0;
    if (D.Count > 0) {
      Exp = D.Exponent - std::max(1, P.IntPlaces);
      D.Exponent = std::max(1, P.IntPlaces);
    }
    RoundDigits(D, P.FracPlaces);
    if (D.Exponent > std::max(1, P.IntPlaces)) {  // 9.99 rounded up to 10.0
      ++Exp;
      --D.Exponent;
    }
    QString Dig = D.Text();
    Dig += QString(std::max(0, int(D.Exponent) - int(Dig.size())), u'0');
    IntPart = Dig.left(D.Exponent);
    FracPart = Dig.mid(D.Exponent);
    QString E = QString::number(std::abs(Exp));
    if (E.size() < P.ExpDigits) E = QString(P.ExpDigits - E.size(), u'0') + E;
    ExpPart = QString(P.ExpChar) + (Exp < 0 ? QStringLiteral("-") : (P.ExpPlus ? QStringLiteral("+") : QString())) + E;
  } else {
    TFloatDigits D = ToDigits(AAbs, 17);
    RoundDigits(D, P.FracPlaces);
    const QString Dig = D.Text();
    if (D.Exponent > 0) {
      IntPart = Dig.left(D.Exponent) + QString(std::max(0, int(D.Exponent) - int(Dig.size())), u'0');
      FracPart = Dig.mid(D.Exponent);
    } else if (!Dig.isEmpty()) {
      FracPart = QString(-D.Exponent, u'0') + Dig;
    }
  }
  if (IntPart.size() < P.IntZeros) IntPart = QString(P.IntZeros - IntPart.size(), u'0') + IntPart;
  if (P.Thousands) IntPart = GroupThousands(IntPart);
  while (FracPart.size() > P.FracZeros && FracPart.endsWith(u'0')) FracPart.chop(1);
  if (FracPart.size() < P.FracZeros) FracPart += QString(P.FracZeros - FracPart.size(), u'0');
  QString R = P.Prefix + IntPart;
  if (P.HasPoint && !FracPart.isEmpty()) R += u'.' + FracPart;
  return R + ExpPart + P.Suffix;
}

QStringList SplitSections(const QString& F) {
  QStringList R;
  QString Cur;
  QChar Quote;
  for (const QChar C : F) {
    if (!Quote.isNull()) {
      if (C == Quote) Quote = QChar();
    } else if (C == u'"' || C == u'\'') {
      Quote = C;
    } else if (C == u';') {
      R << Cur;
      Cur.clear();
      continue;
    }
    Cur += C;
  }
  R << Cur;
  return R;
}

}  // namespace

QString FormatFloat(const QString& AFormat, double AValue) {
  if (std::isnan(AValue) || std::isinf(AValue)) return FloatToStr(AValue);
  const QStringList Sections = SplitSections(AFormat);
  if (AFormat.isEmpty()) return FloatToStr(AValue);
  const TPicture Pos = ParsePicture(Sections[0]);
  if (AValue == 0 && Sections.size() >= 3 && !Sections[2].isEmpty())
    return ApplyPicture(ParsePicture(Sections[2]), 0);
  if (AValue < 0 && Sections.size() >= 2 && !Sections[1].isEmpty())
    return ApplyPicture(ParsePicture(Sections[1]), -AValue);
  QString R = ApplyPicture(Pos, std::fabs(AValue));
  if (AValue < 0) {
    // A negative value that rounds to zero prints without its sign.
    bool AllZero = true;
    for (const QChar C : R)
      if (C.isDigit() && C != u'0') AllZero = false;
    if (!AllZero) R.prepend(u'-');
  }
  return R;
}

QString FormatFloatFixed(double AValue, int AMaxDecimals) {
  QString R;
  AppendFloatFixed(R, AValue, AMaxDecimals);
  return R;
}

void AppendFloatFixed(QString& AOut, double AValue, int AMaxDecimals) {
  if (!std::isfinite(AValue)) {
    AOut += FloatToStr(AValue);
    return;
  }
  // FormatFloat's digits and rounding, laid out without building strings on the way.
  TFloatDigits D = ToDigits(std::fabs(AValue), 17);
  RoundDigits(D, AMaxDecimals);
  const char* Digits = D.Digits;
  const int NDig = D.Count, Exp = D.Exponent;
  char Out[400];
  int L = 0;
  if (AValue < 0 && NDig > 0) Out[L++] = '-';
  if (NDig > 0 && Exp > 0) {
    for (int I = 0; I < Exp; ++I) Out[L++] = I < NDig ? Digits[I] : '0';
    if (NDig > Exp) {
      Out[L++] = '.';
      for (int I = Exp; I < NDig; ++I) Out[L++] = Digits[I];
    }
  } else {
    Out[L++] = '0';
    if (NDig > 0) {
      Out[L++] = '.';
      for (int I = 0; I < -Exp; ++I) Out[L++] = '0';
      for (int I = 0; I < NDig; ++I) Out[L++] = Digits[I];
    }
  }
  AOut += QLatin1StringView(Out, L);
}

void AppendFloatToStr(QString& AOut, double AValue) {
  // Below 1E15 a whole number is written as its digits.
  if (std::fabs(AValue) < 1e15 && AValue == std::trunc(AValue)) AppendInt(AOut, qint64(AValue));
  else AOut += FloatToStr(AValue);
}

void AppendInt(QString& AOut, qint64 AValue) {
  char Buf[24];
  const auto R = std::to_chars(Buf, Buf + sizeof Buf, AValue);
  AOut += QLatin1StringView(Buf, R.ptr - Buf);
}

bool ReadFileCapped(QIODevice& ADevice, qint64 AMaxBytes, QByteArray& AData, QString& AError) {
  const QString TooLarge = QStringLiteral("文件太大（超过 %1 字节）").arg(AMaxBytes);
  if (!ADevice.isSequential() && ADevice.size() > AMaxBytes) {
    AError = TooLarge;
    return false;
  }
  AData = ADevice.read(AMaxBytes + 1);
  if (AData.size() > AMaxBytes) {
    AData.clear();
    AError = TooLarge;
    return false;
  }
  return true;
}


