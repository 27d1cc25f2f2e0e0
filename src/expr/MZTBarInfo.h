#pragma once
// Bar notation: a steel level and a diameter, optionally a count before them and
// one or two spacings after ("A12", "2A12", "A8@100/200"). Each class parses its
// text under the process-wide bar standard code, validates it and formats it back.
// A failed parse raises TBarInfoParseError and leaves the value as it was.

#include "Classes.h"
#include "MZTBarInfoType.h"
#include "MZTDiamDictsIntf.h"
#include "SysUtils.h"

#include <functional>

class TBarInfoParseError : public Exception {
public:
  using Exception::Exception;
};

class TBaseBarInfo {
public:
  static constexpr int CurrentVersion = 1;
  virtual ~TBaseBarInfo() = default;

  virtual QString AsString() const = 0;
  void SetAsString(const QString& AValue) { SetStringWithVersion(AValue, CurrentVersion); }
  virtual void SetStringWithVersion(const QString& AValue, int AVersion) = 0;
  // The text, length-prefixed (2 bytes) UTF-8. Without AIsValidHoopBar the hoop
  // mark "环" is dropped on reading.
  void LoadFromStream(TStream& AStream, bool AIsValidHoopBar);
  void SaveToStream(TStream& AStream) const;
};

class TBarInfo : public TBaseBarInfo {
public:
  // Longest text a notation may have.
  static constexpr int MaxLength = 50;

  QString AsString() const override;
  void SetStringWithVersion(const QString& AValue, int AVersion) override;

  bool IsNull() const { return FData.IsNull; }
  double Diameter() const { return FData.Diameter; }
  int DiameterID() const { return FData.DiameterID; }
  TMZTBarLevel BarLevel() const { return FData.BarLevel; }
  const QString& TmpGJType() const { return FData.TmpGJType; }

  std::function<void()> FOnDataChanged;
  bool FTrigerDataChanged = false;

  // Diameter form to bar-number form and back, under the bar standard code.
  static QString ConvertBarInfoToBarNo(const QString& AValue);
  // Raises "未知的钢筋号数" for a number not in the dictionary.
  static QString ConvertBarNoToBarInfo(const QString& AValue);
  // "b5" to "#5".
  static QString ConvertShortBarNoToBarNo(const QString& AValue);
  static QString PreProcessBarInfo(const QString& AValue);
  // The level letters at the start of AStrValue, trimmed and upper-cased, and
  // where the diameter begins.
  static QString PreProceessGJType(const QString& AStrValue, int& ADiameterStart);
  static bool CheckBarLevel(TMZTBarLevel ABarLevel, int ADiameterID);
  // The nearest diameter of the dictionary that has a bar number, as "#.##" text.
  static QString GetNestBarNoDiameter(double ADiameter);
  static QString FormatDiameter(double ADiameter);

protected:
  struct TData {
    bool IsNull = true;
    double Diameter = 0;
    int DiameterID = -1;
    TMZTBarLevel BarLevel = bltUnknown;
    QString TmpGJType;
    qint32 Count = -1;
    qint32 Space1 = -1;
    qint32 Space2 = -1;
  };
  static constexpr qint32 NullValue = -1;

  // Parses into FData (already reset) or raises.
  virtual void Parse(const QString& AText);
  TData FData;
};

class TNBarInfo : public TBarInfo {
public:
  QString AsString() const override;
  qint32 Count() const { return FData.Count; }
  qint32 GetNullCount() const { return NullValue; }
  const QString& GetTmpGJType() const { return FData.TmpGJType; }

protected:
  void Parse(const QString& AText) override;
};

class TNSpace1BarInfo : public TNBarInfo {
public:
  QString AsString() const override;
  qint32 Space1() const { return FData.Space1; }
  qint32 NullSpace1() const { return NullValue; }

protected:
  void Parse(const QString& AText) override;
};

// The second spacing follows "/".
class TNSpace2BarInfo : public TNSpace1BarInfo {
public:
  QString AsString() const override;
  qint32 Space2() const { return FData.Space2; }
  qint32 NullSpace2() const { return NullValue; }

protected:
  void Parse(const QString& AText) override;
};

// Count and spacing exclude each other: a count in 1..30000 and no spacing, or no
// count and spacings in 25..5000.
class TMutexNSpace2BarInfo : public TNSpace2BarInfo {
public:
  static constexpr int MinCount = 1, MaxCount = 30000, MinSpace = 25, MaxSpace = 5000;

protected:
  void Parse(const QString& AText) override;
};

// The flavour stored in a draw set's bar rows.
class TDrawSetBarInfo : public TMutexNSpace2BarInfo {};
