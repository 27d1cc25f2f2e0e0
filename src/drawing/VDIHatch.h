#pragma once
// Filled regions: TVectorHatch, bounded by one polygon whose inside is a hit; and
// TVectorHatchM, several polygons with a pattern from imported CAD data, held but
// never shown, hit or edited.

#include "VectorDrawingItem.h"

#include <QStringList>

class TVectorHatch : public TVectorDrawingItem {
public:
  explicit TVectorHatch(TVectorDrawing* AOwner);
  TVectorHatch(TVectorDrawing* AOwner, int AID, TColor AColor, int AFillStyle, const TKRNPolygon2d& AXPoly);

  int ItemType() const override { return itHatch; }
  void ReadFromStream(TVDReader& AReader) override;
  void WriteToStream(TVDWriter& AWriter) const override;
  void ReadFromXMLNode(IXMLNode& ANode) override;
  void WriteXMLAttributes(TVDXMLOut& AOut) const override;
  int DisplayLevel() const override { return 0; }
  void BuildOutRect() override;
  void DrawElastic(QPainter& AHDC, const TKRNCoordTrans& ACoordTrans) override;
  void DrawNormal(QPainter& AHDC, const TKRNCoordTrans& ACoordTrans) override;
  void DrawSelected(QPainter& AHDC, const TKRNCoordTrans& ACoordTrans) override;
  // One per vertex, then one per arc vertex at the middle of its chord.
  int GetGripCount() const override;
  TKRNVector2d GetGrips(int AIndex) const override;
  TVDEPropTypeSet GetPropTypes() const override { return {ptExtData, ptColor, ptFillStyle}; }
  QString GetPropValues(TVDEPropType APropType) const override;
  void SetPropValues(TVDEPropType APropType, const QString& AValue) override;
  void Assign(const TVectorDrawingItem& ASource) override;
  void Accept(IVDIVisitor& AVisitor) override;
  void Inspect(IVDIVisitor& AVisitor) override;
  std::unique_ptr<TVDICoordData> CreateCoordData() const override;
  void SetCoordData(const TVDICoordData& ACoordData) override;
  bool HitSelect(const TKRNVector2d& AStartPt, const TKRNVector2d& AEndPt, double ATol) override;
  bool HitTest(const TKRNVector2d& AHitPt, double ATol) override;

  TKRNPolygon2d& XPoly() { return *FXPoly; }
  void SetPolygon(const TKRNPolygon2d& APolygon);
  const TKRNPolygon2d& XPoly() const { return *FXPoly; }
  void SetXPoly(const TKRNPolygon2d& APoly);
  int FillStyle() const { return FFillStyle; }
  void SetFillStyle(int AValue);
  // After the geometry was changed in place (by a visitor).
  void GeometryChanged() { Changed(true); }

private:
  quint8 FFillStyle = bsSolid;
  std::unique_ptr<TKRNPolygon2d> FXPoly;
};

class TVectorHatchM : public TVectorDrawingItem {
public:
  explicit TVectorHatchM(TVectorDrawing* AOwner);
  TVectorHatchM(TVectorDrawing* AOwner, int AID, TColor AColor);

  int ItemType() const override { return itHatchM; }
  void ReadFromXMLNode(IXMLNode& ANode) override;
  void WriteXMLAttributes(TVDXMLOut& AOut) const override;
  int DisplayLevel() const override { return 0; }
  void BuildOutRect() override {}
  void DrawElastic(QPainter&, const TKRNCoordTrans&) override {}
  void DrawNormal(QPainter&, const TKRNCoordTrans&) override {}
  void DrawSelected(QPainter&, const TKRNCoordTrans&) override {}
  int GetGripCount() const override { return 0; }
  TKRNVector2d GetGrips(int) const override { return {}; }
  TVDEPropTypeSet GetPropTypes() const override { return {}; }
  void Accept(IVDIVisitor&) override {}
  void Inspect(IVDIVisitor&) override {}
  std::unique_ptr<TVDICoordData> CreateCoordData() const override { return nullptr; }
  void SetCoordData(const TVDICoordData&) override {}
  bool HitSelect(const TKRNVector2d&, const TKRNVector2d&, double) override { return false; }
  bool HitTest(const TKRNVector2d&, double) override { return false; }
  // The base pair is still settable.
  void SetPropValues(TVDEPropType APropType, const QString& AValue) override;

  TKRNMultiPolygon2d& XPoly() { return *FXPoly; }
  const TKRNMultiPolygon2d& XPoly() const { return *FXPoly; }
  quint8 HatchStyle() const { return FHatchStyle; }
  void SetHatchStyle(quint8 AValue) { FHatchStyle = AValue; }
  QStringList& HatchPatternData() { return FHatchPatternData; }
  const QStringList& HatchPatternData() const { return FHatchPatternData; }

private:
  std::unique_ptr<TKRNMultiPolygon2d> FXPoly;
  quint8 FHatchStyle = 0;
  QStringList FHatchPatternData;
};

void RegisterHatchClasses();
