#pragma once
// A point marker of fixed size, and a full circle whose ring alone is a hit.

#include "VectorDrawingItem.h"

enum TPointStyle { psPoint, psCross };

class TVectorPoint : public TVectorDrawingItem {
public:
  explicit TVectorPoint(TVectorDrawing* AOwner) : TVectorDrawingItem(AOwner) {}
  TVectorPoint(TVectorDrawing* AOwner, int AID, TColor AColor, const TKRNVector2d& AInsertPt, int ASize,
               TPointStyle APointStyle);

  int ItemType() const override { return itPoint; }
  void ReadFromStream(TVDReader& AReader) override;
  void WriteToStream(TVDWriter& AWriter) const override;
  void ReadFromXMLNode(IXMLNode& ANode) override;
  void WriteXMLAttributes(TVDXMLOut& AOut) const override;
  int DisplayLevel() const override { return 3; }
  void BuildOutRect() override;
  void DrawElastic(QPainter& AHDC, const TKRNCoordTrans& ACoordTrans) override;
  void DrawNormal(QPainter& AHDC, const TKRNCoordTrans& ACoordTrans) override;
  void DrawSelected(QPainter& AHDC, const TKRNCoordTrans& ACoordTrans) override;
  int GetGripCount() const override { return 1; }
  TKRNVector2d GetGrips(int) const override { return FInsertPt; }
  TVDEPropTypeSet GetPropTypes() const override { return {ptExtData, ptColor, ptPointSize, ptPointStyle}; }
  QString GetPropValues(TVDEPropType APropType) const override;
  void SetPropValues(TVDEPropType APropType, const QString& AValue) override;
  void Assign(const TVectorDrawingItem& ASource) override;
  void Accept(IVDIVisitor& AVisitor) override;
  void Inspect(IVDIVisitor& AVisitor) override;
  std::unique_ptr<TVDICoordData> CreateCoordData() const override;
  void SetCoordData(const TVDICoordData& ACoordData) override;
  bool HitSelect(const TKRNVector2d& AStartPt, const TKRNVector2d& AEndPt, double ATol) override;
  bool HitTest(const TKRNVector2d& AHitPt, double ATol) override;

  const TKRNVector2d& InsertPt() const { return FInsertPt; }
  void SetInsertPt(const TKRNVector2d& AValue);
  qint16 Size() const { return FSize; }
  void SetSize(qint16 AValue);
  TPointStyle PointStyle() const { return FPointStyle; }
  void SetPointStyle(TPointStyle AValue);

private:
  TKRNVector2d FInsertPt{};
  TPointStyle FPointStyle = psPoint;
  qint16 FSize = 0;
};

class TVectorCircle : public TVectorDrawingItem {
public:
  explicit TVectorCircle(TVectorDrawing* AOwner) : TVectorDrawingItem(AOwner) {}
  TVectorCircle(TVectorDrawing* AOwner, int AID, TColor AColor, int ALineWidth, int ALineStyle,
                const TKRNVector2d& ACenterPt, double ARadius);

  int ItemType() const override { return itCircle; }
  void ReadFromStream(TVDReader& AReader) override;
  void WriteToStream(TVDWriter& AWriter) const override;
  void ReadFromXMLNode(IXMLNode& ANode) override;
  void WriteXMLAttributes(TVDXMLOut& AOut) const override;
  int DisplayLevel() const override { return 1; }
  void BuildOutRect() override;
  void DrawElastic(QPainter& AHDC, const TKRNCoordTrans& ACoordTrans) override;
  void DrawNormal(QPainter& AHDC, const TKRNCoordTrans& ACoordTrans) override;
  void DrawSelected(QPainter& AHDC, const TKRNCoordTrans& ACoordTrans) override;
  // 0 the centre, then the points at -X, -Y, +X, +Y.
  int GetGripCount() const override { return 5; }
  TKRNVector2d GetGrips(int AIndex) const override;
  TVDEPropTypeSet GetPropTypes() const override { return {ptExtData, ptColor, ptLineWidth, ptLineStyle}; }
  QString GetPropValues(TVDEPropType APropType) const override;
  void SetPropValues(TVDEPropType APropType, const QString& AValue) override;
  void Assign(const TVectorDrawingItem& ASource) override;
  void Accept(IVDIVisitor& AVisitor) override;
  void Inspect(IVDIVisitor& AVisitor) override;
  std::unique_ptr<TVDICoordData> CreateCoordData() const override;
  void SetCoordData(const TVDICoordData& ACoordData) override;
  bool HitSelect(const TKRNVector2d& AStartPt, const TKRNVector2d& AEndPt, double ATol) override;
  bool HitTest(const TKRNVector2d& AHitPt, double ATol) override;

  const TKRNVector2d& CenterPt() const { return FCenterPt; }
  double Radius() const { return FRadius; }
  // Raw: the caller counts the change (a visitor's Accept does).
  void SetCenterPtRaw(const TKRNVector2d& AValue) { FCenterPt = AValue; }
  void SetRadiusRaw(double AValue) { FRadius = AValue; }
  void SetCircle(const TKRNVector2d& ACenterPt, double ARadius);
  qint16 LineWidth() const { return FLineWidth; }
  void SetLineWidth(qint16 AValue);
  int LineStyle() const { return FLineStyle; }
  void SetLineStyle(int AValue);

private:
  double HalfWidth() const { return FLineWidth > 0 ? FLineWidth / 2.0 : 0; }
  quint8 FLineStyle = psSolid;
  qint16 FLineWidth = 0;
  TKRNVector2d FCenterPt{};
  double FRadius = 0;
};

void RegisterPointClasses();
