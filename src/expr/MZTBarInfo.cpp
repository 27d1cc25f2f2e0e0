#include "MZTBarInfo.h"

#include "MZTBarInfoConst.h"
#include "SelkaStreamUtils.h"

#include <QRegularExpression>

#include <cmath>
#include <limits>

namespace {

const QString SFormatError = QStringLiteral("钢筋输入格式错误");

[[noreturn]] void ParseError(const QString& AMessage) { throw TBarInfoParseError(AMessage); }

bool IsDigit(QChar C) { return C >= u'0' && C <= u'9'; }

// A spacing field: a 16-bit integer.
qint32 ParseSpace(const QString& AField, const QString& AWhat) {
  const QString F = Trim(AField);
  if (F.isEmpty()) ParseError(QStringLiteral("钢筋输入格式错误:%1不能为空").arg(AWhat));
  bool Plain = !F.startsWith(u'$');
  for (qsizetype I = 0; I < F.size() && Plain; ++I)
    Plain = IsDigit(F[I]) || (I == 0 && (F[I] == u'-' || F[I] == u'+') && F.size() > 1);
  if (!Plain) ParseError(QStringLiteral("钢筋输入格式错误:输入超出范围"));
  qint64 V;
  if (!TryStrToInt64(F, V) || V < -32768 || V > 32767) ParseError(QStringLiteral("钢筋输入格式错误:输入超出合法范围"));
  return qint32(V);
}

struct TSignPatterns {
  QString DiameterForm, BarNoForm;
};

// The two notation patterns of a bar-number standard; empty for the others.
TSignPatterns PatternsOf(int ACode) {
  const QString Num = QStringLiteral(R"((\d+(\.\d+)?))");
  switch (ACode) {
    case 4: case 5: return {QStringLiteral("()") + Num, QStringLiteral(R"((#)(\d+))")};
    case 6: return {QStringLiteral("([DØPp])") + Num, QStringLiteral(R"(([dpDP])(\d+))")};
    case 7: return {QStringLiteral("([DØ])") + Num, QStringLiteral(R"((db|dB|Db|DB|rb|rB|Rb|RB)(\d+))")};
    case 8: return {QStringLiteral("([TYØ])") + Num, QStringLiteral(R"(([tTyYaA])(\d+))")};
    case 13: return {QStringLiteral("([Ø])") + Num, QStringLiteral(R"(([aA])(\d+))")};
    default: return {};
  }
}

// The level sign of a bar-number letter run, upper-cased in.
QString NormalSign(int ACode, const QString& AText) {
  const QString U = AText.toUpper();
  switch (ACode) {
    case 6: return (U.contains(u'P') || U.contains(QStringLiteral("Ø"))) ? QStringLiteral("Ø") : QStringLiteral("D");
    case 7: return (U.contains(QStringLiteral("RB")) || U.contains(QStringLiteral("Ø"))) ? QStringLiteral("Ø") : QStringLiteral("D");
    case 8:
      if (U.contains(u'A') || U.contains(QStringLiteral("Ø"))) return QStringLiteral("Ø");
      return U.contains(u'Y') ? QStringLiteral("Y") : QStringLiteral("T");
    case 13: return QStringLiteral("Ø");
    default: return QString();
  }
}

QString NumberPart(const QString& ABarNo) {
  QString D;
  for (const QChar C : ABarNo)
    if (IsDigit(C)) D += C;
  return D;
}

}  // namespace

// ---- stream -----------------------------------------------------------------

void TBaseBarInfo::LoadFromStream(TStream& AStream, bool AIsValidHoopBar) {
  QString S = ReadUtf8StrFromStream(AStream, 2);
  if (!AIsValidHoopBar) S.remove(QStringLiteral("环"));
  SetStringWithVersion(S, CurrentVersion);
}

void TBaseBarInfo::SaveToStream(TStream& AStream) const { WriteStrToStream(AsString(), AStream, 2); }

// ---- TBarInfo ---------------------------------------------------------------

QString TBarInfo::FormatDiameter(double ADiameter) { return FormatFloat(QStringLiteral("#.##"), ADiameter); }

QString TBarInfo::AsString() const {
  if (FData.IsNull) return QString();
  QString Level = FData.BarLevel == bltUnknown && !FData.TmpGJType.isEmpty() ? FData.TmpGJType
                                                                             : BarLevelText(FData.BarLevel);
  // "SD280 16", not "SD28016"
  if (!Level.isEmpty() && IsDigit(Level.back())) Level += u' ';
  return Level + FormatDiameter(FData.Diameter);
}

void TBarInfo::SetStringWithVersion(const QString& AValue, int) {
  if (AValue.size() > MaxLength) ParseError(QStringLiteral("输入长度必须小于%1个字符").arg(MaxLength));
  const QString Old = AsString();
  const TData Saved = FData;
  FData = TData();
  try {
    if (!Trim(AValue).isEmpty()) Parse(Trim(AValue));
  } catch (...) {
    FData = Saved;
    throw;
  }
  if (FTrigerDataChanged && FOnDataChanged && AsString() != Old) FOnDataChanged();
}

QString TBarInfo::PreProceessGJType(const QString& AStrValue, int& ADiameterStart) {
  const int Code = BarStandardCode();
  int Start = 0;
  while (Start < AStrValue.size() && (AStrValue[Start] == u' ' || AStrValue[Start] == u'\t')) ++Start;
  int Matched;
  MatchBarLevelPrefix(AStrValue.mid(Start), Code, Matched);
  int End = Start + Matched;
  if (Matched == 0)
    while (End < AStrValue.size() && !IsDigit(AStrValue[End])) ++End;
  ADiameterStart = End;
  return AStrValue.mid(Start, End - Start).trimmed().toUpper();
}

void TBarInfo::Parse(const QString& AText) {
  const int Code = BarStandardCode();
  QString Rest;
  if (BarLevelIsOneLetter(Code)) {
    FData.TmpGJType = AText.left(1).toUpper();
    FData.BarLevel = FindBarLevel(FData.TmpGJType, Code);
    Rest = AText.mid(1).trimmed();
    double D;
    if (!TryStrToFloat(Rest, D)) ParseError(SFormatError);
    FData.Diameter = D;
  } else {
    int DiameterStart;
    FData.TmpGJType = PreProceessGJType(AText, DiameterStart);
    FData.BarLevel = FindBarLevel(FData.TmpGJType, Code);
    Rest = AText.mid(DiameterStart).trimmed();
    double D;
    if (Rest.endsWith(u'.') || !TryStrToFloat(Rest, D)) ParseError(SFormatError);
    FData.Diameter = D;
    if (FData.BarLevel == bltUnknown) ParseError(QStringLiteral("未知的钢筋级别"));
  }
  if (!(FData.Diameter > 0) || FData.Diameter > 1000) ParseError(SFormatError);
  if (const PMZTDiamDicts Dicts = DiamDicts()) {
    const int I = Dicts->IndexOfDiameter(FData.Diameter);
    if (I < 0) ParseError(SFormatError);
    FData.DiameterID = Dicts->GetItem(I)->GetDiameterID();
  }
  FData.IsNull = false;
}

bool TBarInfo::CheckBarLevel(TMZTBarLevel ABarLevel, int ADiameterID) {
  const PMZTDiamDicts Dicts = DiamDicts();
  if (!Dicts) return false;
  const int I = Dicts->IndexOfDiameterID(ADiameterID);
  return I >= 0 && ABarLevel >= 0 && ABarLevel < BarLevelCount && Dicts->GetItem(I)->GetBarLevels().test(size_t(ABarLevel));
}

QString TBarInfo::GetNestBarNoDiameter(double ADiameter) {
  const PMZTDiamDicts Dicts = DiamDicts();
  if (!Dicts) return FormatDiameter(ADiameter);
  double Best = 2147483647;
  double BestDiameter = ADiameter;
  for (int I = 0; I < Dicts->GetCount(); ++I) {
    const PMZTDiamDict E = Dicts->GetItem(I);
    if (E->GetBarNo().isEmpty()) continue;
    const double Gap = std::fabs(E->GetDiameter() - ADiameter);
    // DoubleLess under the distance tolerance
    if (Best - Gap >= 0.0010123456789) {
      Best = Gap;
      BestDiameter = E->GetDiameter();
    }
  }
  return FormatDiameter(BestDiameter);
}

QString TBarInfo::ConvertShortBarNoToBarNo(const QString& AValue) {
  static const QRegularExpression Re(QStringLiteral(R"([b,B]\d+)"));
  QString R = AValue;
  QRegularExpressionMatchIterator It = Re.globalMatch(AValue);
  while (It.hasNext()) {
    const QRegularExpressionMatch M = It.next();
    if (M.captured(0).front() != u',') R[M.capturedStart(0)] = u'#';
  }
  return R;
}

QString TBarInfo::PreProcessBarInfo(const QString& AValue) {
  const int Code = BarStandardCode();
  QString T = Trim(AValue);
  if (Code == 4 || Code == 5) T = ConvertShortBarNoToBarNo(T);
  return T;
}

QString TBarInfo::ConvertBarInfoToBarNo(const QString& AValue) {
  const int Code = BarStandardCode();
  const QString T = Trim(AValue);
  const PMZTDiamDicts Dicts = DiamDicts();
  const TSignPatterns P = PatternsOf(Code);
  if (T.isEmpty() || P.DiameterForm.isEmpty() || !Dicts) return T;
  const QRegularExpression Re(P.DiameterForm);
  QStringList Seen, Replacements;
  QRegularExpressionMatchIterator It = Re.globalMatch(T);
  while (It.hasNext()) {
    const QRegularExpressionMatch M = It.next();
    if (Seen.contains(M.captured(0))) continue;
    const int I = Dicts->IndexOfDiameter(M.captured(2).toDouble());
    if (I < 0) continue;
    const QString No = Dicts->GetItem(I)->GetBarNo();
    const QString Sign = NormalSign(Code, M.captured(1));
    QString Rep;
    switch (Code) {
      case 4: case 5: Rep = No; break;
      case 6: Rep = (Sign == QStringLiteral("Ø") ? QStringLiteral("P") : QStringLiteral("D")) + NumberPart(No); break;
      case 7: Rep = (Sign == QStringLiteral("Ø") ? QStringLiteral("RB") : QStringLiteral("DB")) + NumberPart(No); break;
      case 8: Rep = (Sign == QStringLiteral("Ø") ? QStringLiteral("A") : Sign) + NumberPart(No); break;
      default: Rep = QStringLiteral("A") + NumberPart(No); break;
    }
    Seen << M.captured(0);
    Replacements << Rep;
  }
  QString R = T;
  for (int I = 0; I < Seen.size(); ++I) R.replace(Seen[I], Replacements[I]);
  return R;
}

QString TBarInfo::ConvertBarNoToBarInfo(const QString& AValue) {
  const int Code = BarStandardCode();
  const PMZTDiamDicts Dicts = DiamDicts();
  const TSignPatterns P = PatternsOf(Code);
  if (!Dicts || P.BarNoForm.isEmpty()) return AValue;
  const QString T = PreProcessBarInfo(AValue);
  const QRegularExpression Re(P.BarNoForm);
  QString R;
  qsizetype Last = 0;
  QRegularExpressionMatchIterator It = Re.globalMatch(T);
  while (It.hasNext()) {
    const QRegularExpressionMatch M = It.next();
    const int I = (Code == 4 || Code == 5) ? Dicts->IndexOfBarNoValue(M.captured(2).toDouble())
                                           : Dicts->IndexOfBarNo(M.captured(2));
    const int J = I >= 0 ? I : Dicts->IndexOfBarNoValue(M.captured(2).toDouble());
    if (J < 0) ParseError(QStringLiteral("未知的钢筋号数"));
    R += T.mid(Last, M.capturedStart(0) - Last) + NormalSign(Code, M.captured(1)) +
         FormatDiameter(Dicts->GetItem(J)->GetDiameter());
    Last = M.capturedEnd(0);
  }
  return R + T.mid(Last);
}

// ---- counts and spacings ----------------------------------------------------

QString TNBarInfo::AsString() const {
  const QString Bar = TBarInfo::AsString();
  return FData.Count != NullValue ? QString::number(FData.Count) + Bar : Bar;
}

void TNBarInfo::Parse(const QString& AText) {
  qsizetype I = 0;
  while (I < AText.size() && IsDigit(AText[I])) ++I;
  if (I > 0) {
    qint64 C;
    FData.Count = (TryStrToInt64(AText.left(I), C) && C <= std::numeric_limits<qint32>::max()) ? qint32(C)
                                                                                               : std::numeric_limits<qint32>::max();
  }
  const QString Rest = Trim(AText.mid(I));
  if (Rest.isEmpty()) ParseError(SFormatError);
  TBarInfo::Parse(Rest);
}

QString TNSpace1BarInfo::AsString() const {
  const QString S = TNBarInfo::AsString();
  return FData.Space1 != NullValue ? S + u'@' + QString::number(FData.Space1) : S;
}

void TNSpace1BarInfo::Parse(const QString& AText) {
  // "12-200" is "12@200"; a hyphen inside a level name ("BJTP-24") stays.
  QString T = AText;
  for (qsizetype I = 1; I < T.size(); ++I)
    if (T[I] == u'-' && IsDigit(T[I - 1])) T[I] = u'@';
  const qsizetype At = T.indexOf(u'@');
  const QString Left = Trim(At < 0 ? T : T.left(At));
  if (Left.isEmpty()) ParseError(QStringLiteral("钢筋输入格式错误:%1不能为空").arg(QStringLiteral("数量或排数")));
  TNBarInfo::Parse(Left);
  if (At >= 0) FData.Space1 = ParseSpace(T.mid(At + 1), QStringLiteral("间距"));
}

QString TNSpace2BarInfo::AsString() const {
  const QString S = TNSpace1BarInfo::AsString();
  return FData.Space2 != NullValue ? S + u'/' + QString::number(FData.Space2) : S;
}

void TNSpace2BarInfo::Parse(const QString& AText) {
  const qsizetype Slash = AText.indexOf(u'/');
  TNSpace1BarInfo::Parse(Slash < 0 ? AText : AText.left(Slash));
  if (Slash >= 0) FData.Space2 = ParseSpace(AText.mid(Slash + 1), QStringLiteral("间距"));
}

void TMutexNSpace2BarInfo::Parse(const QString& AText) {
  TNSpace2BarInfo::Parse(AText);
  const bool HasSpace1 = FData.Space1 != NullValue, HasSpace2 = FData.Space2 != NullValue;
  auto SpaceOk = [](qint32 S) { return S >= MinSpace && S <= MaxSpace; };
  if (FData.Count == NullValue) {
    if (!HasSpace1) ParseError(QStringLiteral("钢筋输入格式错误:没有输入数量必须输入间距"));
    if (!SpaceOk(FData.Space1) || (HasSpace2 && !SpaceOk(FData.Space2)))
      ParseError(QStringLiteral("钢筋输入格式错误:间距的范围是[%1,%2]之间的整数").arg(MinSpace).arg(MaxSpace));
  } else {
    if (FData.Count < MinCount || FData.Count > MaxCount)
      ParseError(QStringLiteral("钢筋输入格式错误:数量的范围是[%1,%2]之间的整数").arg(MinCount).arg(MaxCount));
    if (HasSpace1 || HasSpace2) ParseError(QStringLiteral("钢筋输入格式错误:输入了数量不能输入间距"));
  }
}
