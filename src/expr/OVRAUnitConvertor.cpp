#include "OVRAUnitConvertor.h"

#include "MZTBarInfoConst.h"
#include "OVRAExprValidate.h"
#include "SysUtils.h"

#include <QRegularExpression>

#include <algorithm>
#include <cmath>
#include <numeric>

const char* const NFootFormat[5] = {"ffHyphen", "ffFloatNumber", "ffFourLength", "ffHyphenExt", "ffNumInlineNum"};
const char* const NInchFormat[2] = {"ifHyphenExt", "ifFloatNumber"};

namespace {

// A rule whose condition cannot be evaluated (a fraction over 0) does not pass.
bool Passes(const QString& AText, const QString& APattern, const QString& ACondition) {
  QString Out;
  try {
    return TOVRAValidCheckerByRegExpr::Validate(AText, APattern, ACondition, QStringLiteral("$0"), QString(), Out);
  } catch (const Exception&) {
    return false;
  }
}

constexpr double MmPerFoot = 304.8;
constexpr double MmPerInch = 25.4;
constexpr double MmPerSixteenth = 1.5875;

double FloorEps(double AValue) { return std::floor(AValue + 0.0010123456789 / 1000); }

// A group pasted behind a 0, so that a missing group reads as 0 and "3/8" as 03/8.
QString InchCheck(int AGroup) { return QStringLiteral("(0$%1 < 12)").arg(AGroup); }
QString FractionCheck(int AGroup) {
  QStringList Eighths;
  Eighths << QStringLiteral("(0$%1 = 0)").arg(AGroup);
  for (int N = 1; N < 8; ++N) Eighths << QStringLiteral("(0$%1 = %2/8)").arg(AGroup).arg(N);
  return QStringLiteral("(") + Eighths.join(QStringLiteral(" or ")) + QStringLiteral(")");
}

struct TFootRule {
  TFootFormat Format;
  QString Pattern;
  QString Condition;
  int Feet, Inch, Fraction;  // group numbers, 0 where absent
};

const std::vector<TFootRule>& FootRules() {
  static const std::vector<TFootRule> Rules = {
      {ffHyphen, QStringLiteral(R"(^(\d+)[-]([\d]{1,2})?([ ]([1-9]?[\d]\/[1-9]?[\d]))$)"),
       InchCheck(2) + QStringLiteral(" and ") + FractionCheck(4), 1, 2, 4},
      {ffFourLength, QStringLiteral(R"(^([\d]{2,4})([\d]{2})([ ]([\d][\d]?\/[\d][\d]?))?$)"),
       InchCheck(2) + QStringLiteral(" and ") + FractionCheck(4), 1, 2, 4},
      {ffHyphenExt, QStringLiteral(R"(^((\d+)['])?(-?([\d]{1,2})?([ ]([1-9]?[\d]\/[1-9]?[\d]))?["])?$)"),
       InchCheck(4) + QStringLiteral(" and ") + FractionCheck(6), 2, 4, 6},
      {ffFloatNumber, QStringLiteral(R"(^(\d+)(\.\d+)?$)"), QStringLiteral(" 0 = 0 "), 0, 0, 0},
      {ffNumInlineNum, QStringLiteral(R"(^([\d]{1,4})-([\d]{1,2})$)"), InchCheck(2), 1, 2, 0},
  };
  return Rules;
}

const TFootRule& RuleOf(TFootFormat AFormat) {
  for (const TFootRule& R : FootRules())
    if (R.Format == AFormat) return R;
  return FootRules().front();
}

double FractionValue(const QString& AText) {
  const qsizetype Slash = AText.indexOf(u'/');
  if (Slash < 0) return 0;
  const double Den = AText.mid(Slash + 1).toDouble();
  return Den == 0 ? 0 : AText.left(Slash).toDouble() / Den;
}

// Feet, whole inches and the sixteenths left, from millimetres.
void SplitMm(double AMM, int& AFeet, int& AInches, QString& AFraction) {
  AFeet = int(FloorEps(AMM / MmPerFoot));
  // FloorEps may round a hair up: what is left is then a hair below zero.
  double Rest = std::max(0.0, AMM - AFeet * MmPerFoot);
  AInches = int(FloorEps(Rest / MmPerInch));
  if (AInches >= 12) {
    ++AFeet;
    AInches -= 12;
  }
  Rest = std::max(0.0, Rest - AInches * MmPerInch);
  AFraction = TOVRAUnitConvert::GetFractionInch(Rest);
}

}  // namespace

const QString& TOVRAUnitConvert::FootPattern(TFootFormat AFormat) { return RuleOf(AFormat).Pattern; }

bool TOVRAUnitConvert::NeedConvert() { return BarStandardCode() == 4; }

bool TOVRAUnitConvert::NeedBarNoConvert() {
  const int C = BarStandardCode();
  return C == 4 || C == 5 || C == 6 || C == 7;
}

bool TOVRAUnitConvert::CheckFoot(const QString& AInch, TFootFormat& AFormat) {
  const QString T = AInch.trimmed();
  if (T.isEmpty()) return false;
  for (const TFootRule& R : FootRules()) {
    if (Passes(T, R.Pattern, R.Condition)) {
      AFormat = R.Format;
      return true;
    }
  }
  return false;
}

bool TOVRAUnitConvert::CheckInch(const QString& AInch, TInchFormat& AFormat) {
  const QString T = AInch.trimmed();
  if (Passes(T, QStringLiteral(R"(^(\d+)?(([ ])([\d]\/[\d]))$)"), FractionCheck(4))) {
    AFormat = ifHyphenExt;
    return true;
  }
  if (Passes(T, QStringLiteral(R"(^(\d+)(\.\d+)?$)"), QStringLiteral(" 0 = 0 "))) {
    AFormat = ifFloatNumber;
    return true;
  }
  return false;
}

double TOVRAUnitConvert::ConvertM2ToSqFt(double AValue) { return AValue / 0.09290304; }

double TOVRAUnitConvert::ConvertTToTon(double ATValue, int AFormat) {
  if (AFormat == tfShort) return ATValue / 0.90718474;
  if (AFormat == tfLong) return ATValue / 1.0160469088;
  return 0;
}

double TOVRAUnitConvert::ConvertKgToPound(double AValue) { return AValue / 0.45359237; }

QString TOVRAUnitConvert::ConvertKgToPound(const QString& AValue) {
  return FloatToStr(ConvertKgToPound(StrToFloat(AValue)));
}

QString TOVRAUnitConvert::GetFractionInch(double AMMValue) {
  const int N = int(FloorEps(AMMValue / MmPerSixteenth));
  if (N <= 0) return QString();
  const int G = std::gcd(N, 16);
  if (N / G == 16 / G) return QStringLiteral("1");
  return QStringLiteral("%1/%2").arg(N / G).arg(16 / G);
}

QString TOVRAUnitConvert::ConvertMmToFoot(double AMMValue, TFootFormat AFormat) {
  if (AFormat == ffFloatNumber) return FormatFloat(QStringLiteral("0.###"), AMMValue / MmPerFoot);
  int Feet, Inches;
  QString Frac;
  SplitMm(AMMValue, Feet, Inches, Frac);
  const QString FeetText = QStringLiteral("%1'").arg(Feet);
  switch (AFormat) {
    case ffHyphen:
      return Frac.isEmpty() ? QStringLiteral("%1-%2").arg(Feet).arg(Inches)
                            : QStringLiteral("%1-%2 %3").arg(Feet).arg(Inches).arg(Frac);
    case ffFourLength: {
      const QString Base = QString::number(Feet).rightJustified(2, u'0') + QString::number(Inches).rightJustified(2, u'0');
      return Frac.isEmpty() ? Base : Base + u' ' + Frac;
    }
    case ffHyphenExt:
      if (Feet == 0) return Frac.isEmpty() ? QStringLiteral("%1\"").arg(Inches) : QStringLiteral("%1 %2\"").arg(Inches).arg(Frac);
      return Frac.isEmpty() ? QStringLiteral("%1-%2\"").arg(FeetText).arg(Inches)
                            : QStringLiteral("%1-%2 %3\"").arg(FeetText).arg(Inches).arg(Frac);
    case ffNumInlineNum: return QStringLiteral("%1-%2").arg(Feet).arg(Inches);
    default: return QString();
  }
}

QString TOVRAUnitConvert::ConvertMmToFoot(const QString& AMMValue, TFootFormat AFormat) {
  return ConvertMmToFoot(StrToFloat(AMMValue), AFormat);
}

QString TOVRAUnitConvert::ConvertMToFoot(double AMValue, TFootFormat AFormat) {
  return ConvertMmToFoot(AMValue * 1000, AFormat);
}

QString TOVRAUnitConvert::ConvertMmToInch(double AMMValue, TInchFormat AInchFormat) {
  if (AInchFormat == ifFloatNumber) return FormatFloat(QStringLiteral("0.###"), AMMValue / MmPerInch);
  const int Inches = int(FloorEps(AMMValue / MmPerInch));
  const QString Frac = GetFractionInch(AMMValue - Inches * MmPerInch);
  return Frac.isEmpty() ? QString::number(Inches) : QStringLiteral("%1 %2").arg(Inches).arg(Frac);
}

bool TOVRAUnitConvert::ConvertFootToMm(const QString& AInch, double& AResult, TFootFormat AFormat) {
  const QString T = AInch.trimmed();
  const TFootRule& R = RuleOf(AFormat);
  if (T.isEmpty() || !Passes(T, R.Pattern, R.Condition)) return false;
  if (AFormat == ffFloatNumber) {
    AResult = T.toDouble() * MmPerFoot;
    return true;
  }
  const QRegularExpressionMatch M = QRegularExpression(R.Pattern).match(T);
  auto Group = [&M](int AIndex) { return AIndex > 0 ? M.captured(AIndex) : QString(); };
  AResult = Group(R.Feet).toDouble() * MmPerFoot + Group(R.Inch).toDouble() * MmPerInch +
            FractionValue(Group(R.Fraction)) * MmPerInch;
  return true;
}

bool TOVRAUnitConvert::ConvertFootToMm(const QString& AInch, int& AResult, TFootFormat AFormat) {
  double D;
  if (!ConvertFootToMm(AInch, D, AFormat)) return false;
  AResult = int(std::lround(D));
  return true;
}

double TOVRAUnitConvert::ConvertFootToM(const QString& AInch) {
  TFootFormat F;
  double Mm = 0;
  if (!CheckFoot(AInch, F) || !ConvertFootToMm(AInch, Mm, F)) return 0;
  return Mm / 1000;
}

bool TOVRAUnitConvert::ConvertInchToMm(const QString& AInch, double& AResult) {
  TInchFormat F;
  const QString T = AInch.trimmed();
  if (!CheckInch(T, F)) return false;
  if (F == ifFloatNumber) {
    AResult = T.toDouble() * MmPerInch;
    return true;
  }
  const qsizetype Space = T.indexOf(u' ');
  AResult = (Space > 0 ? T.left(Space).toDouble() : 0) * MmPerInch + FractionValue(T.mid(Space + 1)) * MmPerInch;
  return true;
}
