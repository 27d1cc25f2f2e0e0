#pragma once
// The diameter dictionary: entries of a numeric diameter, a bar number text and
// an id, with the set of levels each allows. One process-wide dictionary serves
// the bar notation; it may be absent.

#include "MZTBarInfoType.h"

#include <QString>

#include <bitset>
#include <memory>
#include <vector>

using TMZTBarLevelSet = std::bitset<88>;

class IMZTDiamDict {
public:
  virtual ~IMZTDiamDict() = default;
  virtual double GetDiameter() const = 0;
  virtual QString GetBarNo() const = 0;
  virtual int GetDiameterID() const = 0;
  virtual TMZTBarLevelSet GetBarLevels() const = 0;
  virtual void SetDiameter(double AValue) = 0;
  virtual void SetBarNo(const QString& AValue) = 0;
  virtual void SetBarLevels(const TMZTBarLevelSet& AValue) = 0;
};
using PMZTDiamDict = std::shared_ptr<IMZTDiamDict>;

class IMZTDiamDicts {
public:
  virtual ~IMZTDiamDicts() = default;
  virtual int GetCount() const = 0;
  virtual PMZTDiamDict GetItem(int AIndex) const = 0;
  // -1 when absent. Diameters match within 1e-6.
  virtual int IndexOfDiameter(double ADiameter) const = 0;
  virtual int IndexOfBarNo(const QString& ABarNo) const = 0;
  // By the number in the bar number text ("#5" and "5" are both 5).
  virtual int IndexOfBarNoValue(double AValue) const = 0;
  virtual int IndexOfDiameterID(int AID) const = 0;
  virtual void Add(const PMZTDiamDict& AItem) = 0;
  virtual void Delete(int AIndex) = 0;
  virtual void Clear() = 0;
  virtual QString GetName() const = 0;
  virtual void SetName(const QString& AName) = 0;
  virtual bool IsEmpty() const { return GetCount() == 0; }
};
using PMZTDiamDicts = std::shared_ptr<IMZTDiamDicts>;

class TMZTDiamDict : public IMZTDiamDict {
public:
  TMZTDiamDict(double ADiameter, QString ABarNo, int AID, TMZTBarLevelSet ALevels = TMZTBarLevelSet().set())
      : FDiameter(ADiameter), FBarNo(std::move(ABarNo)), FID(AID), FLevels(ALevels) {}
  double GetDiameter() const override { return FDiameter; }
  QString GetBarNo() const override { return FBarNo; }
  int GetDiameterID() const override { return FID; }
  TMZTBarLevelSet GetBarLevels() const override { return FLevels; }
  void SetDiameter(double AValue) override { FDiameter = AValue; }
  void SetBarNo(const QString& AValue) override { FBarNo = AValue; }
  void SetBarLevels(const TMZTBarLevelSet& AValue) override { FLevels = AValue; }

private:
  double FDiameter;
  QString FBarNo;
  int FID;
  TMZTBarLevelSet FLevels;
};

class TMZTDiamDicts : public IMZTDiamDicts {
public:
  int GetCount() const override { return int(FItems.size()); }
  PMZTDiamDict GetItem(int AIndex) const override { return FItems[size_t(AIndex)]; }
  int IndexOfDiameter(double ADiameter) const override;
  int IndexOfBarNo(const QString& ABarNo) const override;
  int IndexOfBarNoValue(double AValue) const override;
  int IndexOfDiameterID(int AID) const override;
  void Add(const PMZTDiamDict& AItem) override { FItems.push_back(AItem); }
  void Delete(int AIndex) override { FItems.erase(FItems.begin() + AIndex); }
  void Clear() override { FItems.clear(); }
  QString GetName() const override { return FName; }
  void SetName(const QString& AName) override { FName = AName; }

  // Reads the JSON form: {"name": "...", "entries": [{"diameter": 12, "barNo": "#4",
  // "id": 12, "levels": ["bltLevel1", ...]}]}; "barNo", "id" and "levels" are
  // optional (no levels: all allowed). Raises Exception with a plain message.
  static PMZTDiamDicts LoadFromFile(const QString& AFileName);
  static PMZTDiamDicts LoadFromJson(const QByteArray& AJson);

private:
  QString FName;
  std::vector<PMZTDiamDict> FItems;
};

// The dictionary the bar notation uses; null when none is set.
PMZTDiamDicts DiamDicts();
void SetDiamDicts(PMZTDiamDicts AValue);
