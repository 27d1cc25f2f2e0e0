#include "MZTDiamDictsIntf.h"

#include "SysUtils.h"

#include <QFile>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>

#include <cmath>

namespace {
PMZTDiamDicts GDiamDicts;

double BarNoValue(const QString& ABarNo) {
  QString Digits;
  for (const QChar C : ABarNo)
    if (C.isDigit() || C == u'.') Digits += C;
  bool Ok = false;
  const double V = Digits.toDouble(&Ok);
  return Ok ? V : -1;
}
}  // namespace

PMZTDiamDicts DiamDicts() { return GDiamDicts; }
void SetDiamDicts(PMZTDiamDicts AValue) { GDiamDicts = std::move(AValue); }

int TMZTDiamDicts::IndexOfDiameter(double ADiameter) const {
  for (size_t I = 0; I < FItems.size(); ++I)
    if (std::fabs(FItems[I]->GetDiameter() - ADiameter) <= 1e-6) return int(I);
  return -1;
}

int TMZTDiamDicts::IndexOfBarNo(const QString& ABarNo) const {
  for (size_t I = 0; I < FItems.size(); ++I)
    if (SameText(FItems[I]->GetBarNo(), ABarNo)) return int(I);
  return -1;
}

int TMZTDiamDicts::IndexOfBarNoValue(double AValue) const {
  for (size_t I = 0; I < FItems.size(); ++I) {
    const QString No = FItems[I]->GetBarNo();
    if (!No.isEmpty() && std::fabs(BarNoValue(No) - AValue) <= 1e-6) return int(I);
  }
  return -1;
}

int TMZTDiamDicts::IndexOfDiameterID(int AID) const {
  for (size_t I = 0; I < FItems.size(); ++I)
    if (FItems[I]->GetDiameterID() == AID) return int(I);
  return -1;
}

PMZTDiamDicts TMZTDiamDicts::LoadFromJson(const QByteArray& AJson) {
  QJsonParseError Err;
  const QJsonDocument Doc = QJsonDocument::fromJson(AJson, &Err);
  if (Doc.isNull()) throw Exception(QStringLiteral("diameter dictionary: %1").arg(Err.errorString()));
  const QJsonObject Root = Doc.object();
  if (!Root.value(QStringLiteral("entries")).isArray())
    throw Exception(QStringLiteral("diameter dictionary: an \"entries\" list is required"));
  auto R = std::make_shared<TMZTDiamDicts>();
  R->SetName(Root.value(QStringLiteral("name")).toString());
  int Index = 0;
  for (const QJsonValue& V : Root.value(QStringLiteral("entries")).toArray()) {
    ++Index;
    const QJsonObject E = V.toObject();
    const QJsonValue D = E.value(QStringLiteral("diameter"));
    if (!D.isDouble() || D.toDouble() <= 0)
      throw Exception(QStringLiteral("diameter dictionary: entry %1 needs a positive \"diameter\"").arg(Index));
    TMZTBarLevelSet Levels;
    if (E.contains(QStringLiteral("levels"))) {
      for (const QJsonValue& L : E.value(QStringLiteral("levels")).toArray()) {
        TMZTBarLevel Level;
        if (!BarLevelFromName(L.toString(), Level))
          throw Exception(QStringLiteral("diameter dictionary: entry %1 names an unknown level \"%2\"").arg(Index).arg(L.toString()));
        Levels.set(size_t(Level));
      }
    } else {
      Levels.set();
    }
    R->Add(std::make_shared<TMZTDiamDict>(D.toDouble(), E.value(QStringLiteral("barNo")).toString(),
                                          E.value(QStringLiteral("id")).toInt(Index), Levels));
  }
  return R;
}

PMZTDiamDicts TMZTDiamDicts::LoadFromFile(const QString& AFileName) {
  QByteArray Data;
  QString Error;
  if (!ReadFileCapped(AFileName, qint64(16) << 20, Data, Error))
    throw Exception(QStringLiteral("cannot read diameter dictionary \"%1\": %2").arg(AFileName, Error));
  return LoadFromJson(Data);
}
