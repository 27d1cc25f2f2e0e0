#include "VDIHatch.h"

#include "KRNPositionFunc2d.h"
#include "VDIGeometry.h"
#include "VDIVisitor.h"
#include "VectorDrawing.h"

TVectorHatch::TVectorHatch(TVectorDrawing* AOwner)
    : TVectorDrawingItem(AOwner), FXPoly(std::make_unique<TKRNPolygon2d>()) {}

TVectorHatch::TVectorHatch(TVectorDrawing* AOwner, int AID, TColor AColor, int AFillStyle, const TKRNPolygon2d& AXPoly)
    : TVectorDrawingItem(AOwner, AID, AColor), FFillStyle(quint8(AFillStyle)), FXPoly(AXPoly.Clone()) {
  BuildOutRect();
}

void TVectorHatch::BuildOutRect() { FOutRect = FXPoly->GetCount() ? FXPoly->Box() : TKRNBox2d{}; }

void TVectorHatch::DrawElastic(QPainter& AHDC, const TKRNCoordTrans& ACoordTrans) {
  TKRNDrawFunc2d::FillXPoly(AHDC, ACoordTrans, *FXPoly, TKRNDrawFunc2d::ElasticColor(), dmXOR, FFillStyle);
}

void TVectorHatch::DrawNormal(QPainter& AHDC, const TKRNCoordTrans& ACoordTrans) {
  TKRNDrawFunc2d::FillXPoly(AHDC, ACoordTrans, *FXPoly, GetShowColor(), dmCopy, FFillStyle);
}

void TVectorHatch::DrawSelected(QPainter& AHDC, const TKRNCoordTrans& ACoordTrans) {
  TKRNDrawFunc2d::FillXPoly(AHDC, ACoordTrans, *FXPoly, 0xFF0000, dmCopy, FFillStyle, 0, psDash, 0xFF0000);
}

int TVectorHatch::GetGripCount() const {
  int Arcs = 0;
  for (int I = 0; I < FXPoly->GetCount(); ++I)
    if (FXPoly->List()[I]->VertexType() == vtArc) ++Arcs;
  return FXPoly->GetCount() + Arcs;
}

TKRNVector2d TVectorHatch::GetGrips(int AIndex) const {
  const int N = FXPoly->GetCount();
  if (AIndex < N) return FXPoly->List().Points(AIndex);
  int K = AIndex - N;
  for (int I = 0; I < N; ++I)
    if (FXPoly->List()[I]->VertexType() == vtArc && K-- == 0)
      return VectorScale(VectorAdd(FXPoly->List().Points(I), FXPoly->List().Points((I + 1) % N)), 0.5);  // the chord's middle
  return {};
}

bool TVectorHatch::HitTest(const TKRNVector2d& AHitPt, double ATol) {
  if (!TKRNPositionFunc2d::IsPointInBox(AHitPt, FOutRect, ATol)) return false;
  return TKRNPositionFunc2d::PointPosition(AHitPt, *FXPoly, ATol) != ppOut;
}

bool TVectorHatch::HitSelect(const TKRNVector2d& AStartPt, const TKRNVector2d& AEndPt, double ATol) {
  if (PointIsSame(AStartPt, AEndPt, KRNEpsilon)) return HitTest(AStartPt, ATol);
  const TKRNBox2d Window = BoxOfPoints(AStartPt, AEndPt);
  if (AEndPt.X > AStartPt.X) return BoxInWindow(FOutRect, Window);
  return PolygonTouchesBox(*FXPoly, Window);
}

QString TVectorHatch::GetPropValues(TVDEPropType APropType) const {
  if (APropType == ptFillStyle) return QString::number(FFillStyle);
  return TVectorDrawingItem::GetPropValues(APropType);
}

void TVectorHatch::SetPropValues(TVDEPropType APropType, const QString& AValue) {
  if (!GetPropTypes().Contains(APropType)) return;
  if (APropType == ptFillStyle) SetFillStyle(std::clamp(StrToInt(AValue), 0, int(bsDiagCross)));
  else TVectorDrawingItem::SetPropValues(APropType, AValue);
}

void TVectorHatch::Assign(const TVectorDrawingItem& ASource) {
  if (const auto* S = dynamic_cast<const TVectorHatch*>(&ASource)) {
    FFillStyle = S->FFillStyle;
    FXPoly = S->FXPoly->Clone();
  }
  TVectorDrawingItem::Assign(ASource);
}

void TVectorHatch::SetPolygon(const TKRNPolygon2d& APolygon) {
  FXPoly->Assign(APolygon);
  Changed(true);
}

void TVectorHatch::Accept(IVDIVisitor& AVisitor) {
  AVisitor.VisitHatch(*this);
  Changed(true);
}

void TVectorHatch::Inspect(IVDIVisitor& AVisitor) { AVisitor.VisitHatch(*this); }

std::unique_ptr<TVDICoordData> TVectorHatch::CreateCoordData() const {
  return std::make_unique<TVDIHatchCoordData>(FID, FXPoly->Clone());
}

void TVectorHatch::SetCoordData(const TVDICoordData& ACoordData) {
  const auto* D = dynamic_cast<const TVDIHatchCoordData*>(&ACoordData);
  if (!D) RaiseCoordDataMismatch(*this);
  SetXPoly(*D->FXPoly);
}

void TVectorHatch::SetXPoly(const TKRNPolygon2d& APoly) {
  FXPoly = APoly.Clone();
  Changed(true);
}

void TVectorHatch::SetFillStyle(int AValue) {
  if (FFillStyle == AValue) return;
  FFillStyle = quint8(AValue);
  Changed(false);
}

TVectorHatchM::TVectorHatchM(TVectorDrawing* AOwner)
    : TVectorDrawingItem(AOwner), FXPoly(std::make_unique<TKRNMultiPolygon2d>()) {}

TVectorHatchM::TVectorHatchM(TVectorDrawing* AOwner, int AID, TColor AColor)
    : TVectorDrawingItem(AOwner, AID, AColor), FXPoly(std::make_unique<TKRNMultiPolygon2d>()) {}

void TVectorHatchM::SetPropValues(TVDEPropType APropType, const QString& AValue) {
  if (APropType == ptExtData) SetExtData(AValue);
  else if (APropType == ptColor) SetColor(TColor(StrToInt64(AValue)));
}

void RegisterHatchClasses() {
  RegisterVDIClass({itHatch, 0, "TVectorHatch", [](TVectorDrawing* O) -> TVectorDrawingItem* { return new TVectorHatch(O); }});
  RegisterVDIClass({itHatchM, 0, "TVectorHatchM", [](TVectorDrawing* O) -> TVectorDrawingItem* { return new TVectorHatchM(O); }});
}
