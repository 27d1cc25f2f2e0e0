#include "VDIPoint.h"

#include "KRNPositionFunc2d.h"
#include "VDIGeometry.h"
#include "VDIVisitor.h"
#include "VectorDrawing.h"

#include <cmath>

// ---- point ------------------------------------------------------------------

TVectorPoint::TVectorPoint(TVectorDrawing* AOwner, int AID, TColor AColor, const TKRNVector2d& AInsertPt, int ASize,
                           TPointStyle APointStyle)
    : TVectorDrawingItem(AOwner, AID, AColor), FInsertPt(AInsertPt), FPointStyle(APointStyle), FSize(qint16(ASize)) {
  BuildOutRect();
}

void TVectorPoint::BuildOutRect() {
  const double H = std::ceil(FSize / 2.0);
  FOutRect = {{FInsertPt.X - H, FInsertPt.Y - H}, {FInsertPt.X + H, FInsertPt.Y + H}};
}

void TVectorPoint::DrawElastic(QPainter& AHDC, const TKRNCoordTrans& ACoordTrans) {
  if (FPointStyle == psCross) TKRNDrawFunc2d::DrawDiagCross(AHDC, ACoordTrans, FInsertPt, FSize, 2, psSolid, 0xFFFFFF, dmXOR);
  else TKRNDrawFunc2d::FillCircle(AHDC, ACoordTrans, FInsertPt, FSize / 2, 0xFFFFFF, dmXOR);
}

void TVectorPoint::DrawNormal(QPainter& AHDC, const TKRNCoordTrans& ACoordTrans) {
  if (FPointStyle == psCross) TKRNDrawFunc2d::DrawDiagCross(AHDC, ACoordTrans, FInsertPt, FSize, 0, psSolid, GetShowColor(), dmCopy);
  else TKRNDrawFunc2d::FillCircle(AHDC, ACoordTrans, FInsertPt, FSize / 2, GetShowColor(), dmCopy);
}

void TVectorPoint::DrawSelected(QPainter& AHDC, const TKRNCoordTrans& ACoordTrans) {
  if (FPointStyle == psCross) TKRNDrawFunc2d::DrawDiagCross(AHDC, ACoordTrans, FInsertPt, FSize, 0, psDash, 0xFF0000, dmCopy);
  else TKRNDrawFunc2d::FillCircle(AHDC, ACoordTrans, FInsertPt, FSize / 2, 0xFF0000, dmCopy, bsSolid, 0, psDash, 0xFF0000);
}

bool TVectorPoint::HitTest(const TKRNVector2d& AHitPt, double ATol) {
  return VectorDistance(AHitPt, FInsertPt) <= FSize / 2.0 + ATol;
}

bool TVectorPoint::HitSelect(const TKRNVector2d& AStartPt, const TKRNVector2d& AEndPt, double ATol) {
  if (PointIsSame(AStartPt, AEndPt, KRNEpsilon)) return HitTest(AStartPt, ATol);
  const TKRNBox2d Window = BoxOfPoints(AStartPt, AEndPt);
  if (AEndPt.X > AStartPt.X) return BoxInWindow(FOutRect, Window);
  return TKRNPositionFunc2d::BoxBoxPosition(FOutRect, Window) != pptLeave;
}

QString TVectorPoint::GetPropValues(TVDEPropType APropType) const {
  if (APropType == ptPointSize) return QString::number(FSize);
  if (APropType == ptPointStyle) return QString::number(FPointStyle);
  return TVectorDrawingItem::GetPropValues(APropType);
}

void TVectorPoint::SetPropValues(TVDEPropType APropType, const QString& AValue) {
  if (!GetPropTypes().Contains(APropType)) return;
  if (APropType == ptPointSize) SetSize(qint16(StrToInt(AValue)));
  else if (APropType == ptPointStyle) SetPointStyle(StrToInt(AValue) == 1 ? psCross : psPoint);
  else TVectorDrawingItem::SetPropValues(APropType, AValue);
}

void TVectorPoint::Assign(const TVectorDrawingItem& ASource) {
  if (const auto* S = dynamic_cast<const TVectorPoint*>(&ASource)) {
    FInsertPt = S->FInsertPt;
    FPointStyle = S->FPointStyle;
    FSize = S->FSize;
  }
  TVectorDrawingItem::Assign(ASource);
}

void TVectorPoint::Accept(IVDIVisitor& AVisitor) {
  AVisitor.VisitPoint(*this);
  Changed(true);
}

void TVectorPoint::Inspect(IVDIVisitor& AVisitor) { AVisitor.VisitPoint(*this); }

std::unique_ptr<TVDICoordData> TVectorPoint::CreateCoordData() const {
  return std::make_unique<TVDIPointCoordData>(FID, FInsertPt);
}

void TVectorPoint::SetCoordData(const TVDICoordData& ACoordData) {
  const auto* D = dynamic_cast<const TVDIPointCoordData*>(&ACoordData);
  if (!D) RaiseCoordDataMismatch(*this);
  SetInsertPt(D->FInsertPt);
}

void TVectorPoint::SetInsertPt(const TKRNVector2d& AValue) {
  if (PointIsSame(FInsertPt, AValue, KRNEpsilon)) return;
  FInsertPt = AValue;
  Changed(true);
}

void TVectorPoint::SetSize(qint16 AValue) {
  if (FSize == AValue) return;
  FSize = AValue;
  Changed(true);
}

void TVectorPoint::SetPointStyle(TPointStyle AValue) {
  if (FPointStyle == AValue) return;
  FPointStyle = AValue;
  Changed(false);
}

// ---- circle -----------------------------------------------------------------

TVectorCircle::TVectorCircle(TVectorDrawing* AOwner, int AID, TColor AColor, int ALineWidth, int ALineStyle,
                             const TKRNVector2d& ACenterPt, double ARadius)
    : TVectorDrawingItem(AOwner, AID, AColor), FLineStyle(quint8(ALineStyle)), FLineWidth(qint16(ALineWidth)),
      FCenterPt(ACenterPt), FRadius(ARadius) {
  BuildOutRect();
}

void TVectorCircle::BuildOutRect() {
  const double R = FRadius + HalfWidth();
  FOutRect = {{FCenterPt.X - R, FCenterPt.Y - R}, {FCenterPt.X + R, FCenterPt.Y + R}};
}

void TVectorCircle::DrawElastic(QPainter& AHDC, const TKRNCoordTrans& ACoordTrans) {
  TKRNDrawFunc2d::DrawCircle(AHDC, ACoordTrans, FCenterPt, FRadius, FLineWidth, FLineStyle, TKRNDrawFunc2d::ElasticColor(), dmXOR);
}

void TVectorCircle::DrawNormal(QPainter& AHDC, const TKRNCoordTrans& ACoordTrans) {
  TKRNDrawFunc2d::DrawCircle(AHDC, ACoordTrans, FCenterPt, FRadius, FLineWidth, FLineStyle, GetShowColor(), dmCopy);
}

void TVectorCircle::DrawSelected(QPainter& AHDC, const TKRNCoordTrans& ACoordTrans) {
  TKRNDrawFunc2d::DrawCircle(AHDC, ACoordTrans, FCenterPt, FRadius, FLineWidth,
                             GetSelectedLineStyle(ACoordTrans, FLineWidth, FLineStyle), 0xFF0000, dmCopy);
}

TKRNVector2d TVectorCircle::GetGrips(int AIndex) const {
  switch (AIndex) {
    case 1: return {FCenterPt.X - FRadius, FCenterPt.Y};
    case 2: return {FCenterPt.X, FCenterPt.Y - FRadius};
    case 3: return {FCenterPt.X + FRadius, FCenterPt.Y};
    case 4: return {FCenterPt.X, FCenterPt.Y + FRadius};
    default: return FCenterPt;
  }
}

bool TVectorCircle::HitTest(const TKRNVector2d& AHitPt, double ATol) {
  const double D = VectorDistance(AHitPt, FCenterPt);
  return D >= FRadius - HalfWidth() - ATol && D <= FRadius + HalfWidth() + ATol;
}

bool TVectorCircle::HitSelect(const TKRNVector2d& AStartPt, const TKRNVector2d& AEndPt, double ATol) {
  if (PointIsSame(AStartPt, AEndPt, KRNEpsilon)) return HitTest(AStartPt, ATol);
  const TKRNBox2d Window = BoxOfPoints(AStartPt, AEndPt);
  if (AEndPt.X > AStartPt.X) return BoxInWindow(FOutRect, Window);
  if (TKRNPositionFunc2d::BoxBoxPosition(FOutRect, Window) == pptLeave) return false;
  const double W = FLineWidth > 0 ? FLineWidth / 2.0 : 0.5;
  return RingTouchesBox(FCenterPt, FRadius - W, FRadius + W, Window);
}

QString TVectorCircle::GetPropValues(TVDEPropType APropType) const {
  if (APropType == ptLineWidth) return QString::number(FLineWidth);
  if (APropType == ptLineStyle) return QString::number(FLineStyle);
  return TVectorDrawingItem::GetPropValues(APropType);
}

void TVectorCircle::SetPropValues(TVDEPropType APropType, const QString& AValue) {
  if (!GetPropTypes().Contains(APropType)) return;
  if (APropType == ptLineWidth) SetLineWidth(qint16(StrToInt(AValue)));
  else if (APropType == ptLineStyle) SetLineStyle(StrToInt(AValue));
  else TVectorDrawingItem::SetPropValues(APropType, AValue);
}

void TVectorCircle::Assign(const TVectorDrawingItem& ASource) {
  if (const auto* S = dynamic_cast<const TVectorCircle*>(&ASource)) {
    FLineStyle = S->FLineStyle;
    FLineWidth = S->FLineWidth;
    FCenterPt = S->FCenterPt;
    FRadius = S->FRadius;
  }
  TVectorDrawingItem::Assign(ASource);
}

void TVectorCircle::Accept(IVDIVisitor& AVisitor) {
  AVisitor.VisitCircle(*this);
  Changed(true);
}

void TVectorCircle::Inspect(IVDIVisitor& AVisitor) { AVisitor.VisitCircle(*this); }

std::unique_ptr<TVDICoordData> TVectorCircle::CreateCoordData() const {
  return std::make_unique<TVDICircleCoordData>(FID, FCenterPt, FRadius);
}

void TVectorCircle::SetCoordData(const TVDICoordData& ACoordData) {
  const auto* D = dynamic_cast<const TVDICircleCoordData*>(&ACoordData);
  if (!D) RaiseCoordDataMismatch(*this);
  FCenterPt = D->FCenterPt;
  FRadius = D->FRadius;
  Changed(true);
}

void TVectorCircle::SetCircle(const TKRNVector2d& ACenterPt, double ARadius) {
  if (PointIsSame(FCenterPt, ACenterPt, KRNEpsilon) && FRadius == ARadius) return;
  FCenterPt = ACenterPt;
  FRadius = ARadius;
  Changed(true);
}

void TVectorCircle::SetLineWidth(qint16 AValue) {
  if (FLineWidth == AValue) return;
  FLineWidth = AValue;
  Changed(true);
}

void TVectorCircle::SetLineStyle(int AValue) {
  if (FLineStyle == AValue) return;
  FLineStyle = quint8(AValue);
  Changed(false);
}

void RegisterPointClasses() {
  RegisterVDIClass({itPoint, 3, "TVectorPoint", [](TVectorDrawing* O) -> TVectorDrawingItem* { return new TVectorPoint(O); }});
  RegisterVDIClass({itCircle, 1, "TVectorCircle", [](TVectorDrawing* O) -> TVectorDrawingItem* { return new TVectorCircle(O); }});
}
