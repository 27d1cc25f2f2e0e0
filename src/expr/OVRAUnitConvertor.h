#pragma once
// Metric values to the foot and inch texts builders write, and back. A foot is
// 304.8 mm, an inch 25.4 mm; fractions are counted in sixteenths, but only
// eighths are accepted on input.

#include <QString>

enum TFootFormat { ffHyphen, ffFloatNumber, ffFourLength, ffHyphenExt, ffNumInlineNum };
enum TInchFormat { ifHyphenExt, ifFloatNumber };
enum TTonFormat { tfShort, tfLong };

extern const char* const NFootFormat[5];
extern const char* const NInchFormat[2];

class TOVRAUnitConvert {
public:
  // Active only under bar standard code 4; bar numbers under 4, 5, 6 and 7.
  static bool NeedConvert();
  static bool NeedBarNoConvert();

  // The format of the first foot pattern that passes; false when none does.
  static bool CheckFoot(const QString& AInch, TFootFormat& AFormat);
  static bool CheckInch(const QString& AInch, TInchFormat& AFormat);

  static double ConvertM2ToSqFt(double AValue);
  static double ConvertTToTon(double ATValue, int AFormat);  // 0 for an unknown format
  static double ConvertKgToPound(double AValue);
  static QString ConvertKgToPound(const QString& AValue);

  static QString ConvertMmToFoot(double AMMValue, TFootFormat AFormat);
  static QString ConvertMmToFoot(const QString& AMMValue, TFootFormat AFormat);
  static QString ConvertMToFoot(double AMValue, TFootFormat AFormat);
  static QString ConvertMmToInch(double AMMValue, TInchFormat AInchFormat);
  // False when the text is not in the given format.
  static bool ConvertFootToMm(const QString& AInch, double& AResult, TFootFormat AFormat);
  static bool ConvertFootToMm(const QString& AInch, int& AResult, TFootFormat AFormat);
  static double ConvertFootToM(const QString& AInch);
  static bool ConvertInchToMm(const QString& AInch, double& AResult);
  // Whole sixteenths of an inch in AMMValue, reduced ("1/16", "3/8"); empty for none.
  static QString GetFractionInch(double AMMValue);

  static const QString& FootPattern(TFootFormat AFormat);
};
