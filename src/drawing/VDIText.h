#pragma once
// Text in a drawing: TVectorText, a possibly multi-line label anchored at a point,
// rotated and scaled with the drawing; and TVectorComment, a note with a date and
// a polygon that is stored and handed back but never painted or hit.

#include "VectorDrawingItem.h"

#include <array>

class TVectorText : public TVectorDrawingItem {
public:
  explicit TVectorText(TVectorDrawing* AOwner);
  TVectorText(TVectorDrawing* AOwner, int AID, TColor AColor, const QString& AText, const TKRNVector2d& AInsertPt,
              double AAngle, const QString& AFontName, int AHeight, int AFontStyle, THorzAlignment AHorzAlignment,
              TVertAlignment AVertAlignment, bool ATransparent, TColor ABackColor, const QString& AExtData);

  int ItemType() const override { return itText; }
  void ReadFromStream(TVDReader& AReader) override;
  void WriteToStream(TVDWriter& AWriter) const override;
  void ReadFromXMLNode(IXMLNode& ANode) override;
  void WriteXMLAttributes(TVDXMLOut& AOut) const override;
  int DisplayLevel() const override { return 2; }
  void BuildOutRect() override;
  void DrawElastic(QPainter& AHDC, const TKRNCoordTrans& ACoordTrans) override;
  // A non-zero tag paints a red (0x0000FF) box, opaque, whatever the fields say.
  void DrawNormal(QPainter& AHDC, const TKRNCoordTrans& ACoordTrans) override;
  void DrawSelected(QPainter& AHDC, const TKRNCoordTrans& ACoordTrans) override;
  int GetGripCount() const override { return 1; }
  TKRNVector2d GetGrips(int) const override { return FInsertPt; }
  TVDEPropTypeSet GetPropTypes() const override;
  QString GetPropValues(TVDEPropType APropType) const override;
  void SetPropValues(TVDEPropType APropType, const QString& AValue) override;
  void Assign(const TVectorDrawingItem& ASource) override;
  void Accept(IVDIVisitor& AVisitor) override;
  void Inspect(IVDIVisitor& AVisitor) override;
  std::unique_ptr<TVDICoordData> CreateCoordData() const override;
  void SetCoordData(const TVDICoordData& ACoordData) override;
  bool HitSelect(const TKRNVector2d& AStartPt, const TKRNVector2d& AEndPt, double ATol) override;
  bool HitTest(const TKRNVector2d& AHitPt, double ATol) override;
  virtual void SetText(const QString& AText);

  // FHeight when not 0, else FFloatHeight.
  double GetDrawHeight() const;
  // Heights times AValue (FHeight rounded); the caller counts the change.
  void Scale(double AValue);
  // After the geometry was changed in place (by a visitor).
  void GeometryChanged() { Changed(true); }

  const QString& Text() const { return FText; }
  const TKRNVector2d& InsertPt() const { return FInsertPt; }
  void SetInsertPt(const TKRNVector2d& AValue);
  double Angle() const { return FAngle; }
  void SetAngle(double AValue);
  qint16 Height() const { return FHeight; }
  void SetHeight(qint16 AValue);
  float FloatHeight() const { return FFloatHeight; }
  void SetFloatHeight(float AValue);
  const QString& FontName() const { return FFontName; }
  void SetFontName(const QString& AValue);
  int FontStyle() const { return FFontStyle; }
  void SetFontStyle(int AValue);
  THorzAlignment HorzAlignment() const { return FHorzAlignment; }
  void SetHorzAlignment(THorzAlignment AValue);
  TVertAlignment VertAlignment() const { return FVertAlignment; }
  void SetVertAlignment(TVertAlignment AValue);
  bool Transparent() const { return FTransparent; }
  void SetTransparent(bool AValue);
  TColor BackColor() const { return FBackColor; }
  void SetBackColor(TColor AValue);
  // The box the text fills, as a polygon made when first asked for.
  const TKRNPolygon2d& BoundPoly() const;

private:
  float FAngle = 0;
  TColor FBackColor = 0xFFFFFF;
  int FFontStyle = 0;
  float FFloatHeight = 0;
  THorzAlignment FHorzAlignment = haLeftJustify;
  TVertAlignment FVertAlignment = vaBottomJustify;
  qint16 FHeight = 0;
  bool FTransparent = true;
  bool FHasCorners = false;
  // Four corners once the box is built; loading a drawing makes no polygon.
  std::array<TKRNVector2d, 4> FCorners{};
  mutable std::unique_ptr<TKRNPolygon2d> FBoundPoly;
  QString FFontName = QStringLiteral("宋体");
  TKRNVector2d FInsertPt{};
  QString FText;
};

class TVectorComment : public TVectorDrawingItem {
public:
  explicit TVectorComment(TVectorDrawing* AOwner);
  TVectorComment(TVectorDrawing* AOwner, int AID, const QString& AText, const TKRNVector2d& AInsertPt,
                 const QString& ADate = QString());

  int ItemType() const override { return itComment; }
  void ReadFromXMLNode(IXMLNode& ANode) override;
  void WriteXMLAttributes(TVDXMLOut& AOut) const override;
  int DisplayLevel() const override { return 0; }
  void BuildOutRect() override { FOutRect = FCommentPoly->GetCount() ? FCommentPoly->Box() : TKRNBox2d{}; }
  void DrawElastic(QPainter&, const TKRNCoordTrans&) override {}
  void DrawNormal(QPainter&, const TKRNCoordTrans&) override {}
  void DrawSelected(QPainter&, const TKRNCoordTrans&) override {}
  int GetGripCount() const override { return 0; }
  TKRNVector2d GetGrips(int) const override { return {}; }
  void Assign(const TVectorDrawingItem& ASource) override;
  void Accept(IVDIVisitor&) override {}
  void Inspect(IVDIVisitor&) override {}
  std::unique_ptr<TVDICoordData> CreateCoordData() const override { return nullptr; }
  void SetCoordData(const TVDICoordData&) override {}
  bool HitSelect(const TKRNVector2d&, const TKRNVector2d&, double) override { return false; }
  bool HitTest(const TKRNVector2d&, double) override { return false; }

  // "date,text"
  QString GetText() const { return FDate + QLatin1Char(',') + FText; }
  const QString& Text() const { return FText; }
  void SetText(const QString& AValue) { FText = AValue; }
  const QString& Date() const { return FDate; }
  void SetDate(const QString& AValue) { FDate = AValue; }
  const TKRNVector2d& InsertPt() const { return FInsertPt; }
  void SetInsertPt(const TKRNVector2d& AValue);
  TKRNPolygon2d& CommentPoly() { return *FCommentPoly; }
  const TKRNPolygon2d& CommentPoly() const { return *FCommentPoly; }

private:
  QString FText, FDate;
  std::unique_ptr<TKRNPolygon2d> FCommentPoly;
  TKRNVector2d FInsertPt{};
};

void RegisterTextClasses();
