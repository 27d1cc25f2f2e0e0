#include "VDIText.h"

#include "KRNPositionFunc2d.h"
#include "VDIGeometry.h"
#include "VDIVisitor.h"
#include "VectorDrawing.h"

#include <cmath>

TVectorText::TVectorText(TVectorDrawing* AOwner)
    : TVectorDrawingItem(AOwner) {}

TVectorText::TVectorText(TVectorDrawing* AOwner, int AID, TColor AColor, const QString& AText,
                         const TKRNVector2d& AInsertPt, double AAngle, const QString& AFontName, int AHeight,
                         int AFontStyle, THorzAlignment AHorzAlignment, TVertAlignment AVertAlignment,
                         bool ATransparent, TColor ABackColor, const QString& AExtData)
    : TVectorDrawingItem(AOwner, AID, AColor) {
  FFloatHeight = 0;
  FText = AText;
  FInsertPt = AInsertPt;
  FAngle = float(AAngle);
  FFontName = AFontName;
  FHeight = qint16(AHeight);
  FFontStyle = AFontStyle;
  FHorzAlignment = AHorzAlignment;
  FVertAlignment = AVertAlignment;
  FTransparent = ATransparent;
  FBackColor = ABackColor;
  FExtData = AExtData;
  Changed(true);
}

double TVectorText::GetDrawHeight() const {
  if (FHeight != 0) return FHeight;
  return FFloatHeight;
}

void TVectorText::Scale(double AValue) {
  FHeight = qint16(std::lround(FHeight * AValue));
  FFloatHeight = float(FFloatHeight * AValue);
}

void TVectorText::BuildOutRect() {
  double H0 = std::abs(FHeight);
  const bool NoHeight = H0 == 0;
  if (NoHeight) H0 = 1;
  double W = TKRNDrawFunc2d::GetWrappedTextMaxWidth(FText, FFontName, FFontStyle, H0);
  double H = H0;
  if (FHeight == 0) {
    H = FFloatHeight;
    W = W * FFloatHeight / H0 / 2;
  }
  if (W == 0) W = 24.0;
  if (H == 0) H = 12.0;
  const int Lines = FText.contains(u'\r') ? int(FText.count(QStringLiteral("\r\n"))) + 1 : 1;
  FCorners = TKRNDrawFunc2d::GetDrawTextCorners(FInsertPt, FAngle, W, H, Lines, FHorzAlignment, FVertAlignment);
  FHasCorners = true;
  FOutRect = BoxOfPoints(FCorners[0], FCorners[1]);
  BoxAddPoint(FOutRect, FCorners[2]);
  BoxAddPoint(FOutRect, FCorners[3]);
  if (!FBoundPoly) return;
  // A polygon already made follows the box: its four vertices are moved, not made again.
  TKRNVertex2dList& L = FBoundPoly->List();
  if (L.Count() != 4) {
    FBoundPoly.reset();
    return;
  }
  for (int I = 0; I < 4; ++I) L[I]->SetPoint(FCorners[size_t(I)]);
}

const TKRNPolygon2d& TVectorText::BoundPoly() const {
  if (!FBoundPoly) {
    FBoundPoly = std::make_unique<TKRNPolygon2d>();
    if (FHasCorners)
      for (const TKRNVector2d& C : FCorners) FBoundPoly->List().AddLinePoint(C);
  }
  return *FBoundPoly;
}

void TVectorText::DrawElastic(QPainter& AHDC, const TKRNCoordTrans& ACoordTrans) {
  TKRNDrawFunc2d::DrawXPoly(AHDC, ACoordTrans, BoundPoly(), 0, psSolid, TKRNDrawFunc2d::ElasticColor(), dmXOR);
}

void TVectorText::DrawNormal(QPainter& AHDC, const TKRNCoordTrans& ACoordTrans) {
  const bool Tagged = FTag != 0;
  TKRNDrawFunc2d::DrawScaleWrapTextVII(AHDC, ACoordTrans, FText, FInsertPt, FAngle, GetDrawHeight(), FHorzAlignment,
                                       FVertAlignment, FFontName, FFontStyle, GetShowColor(),
                                       Tagged ? 0x0000FF : FBackColor, Tagged ? false : FTransparent);
}

void TVectorText::DrawSelected(QPainter& AHDC, const TKRNCoordTrans& ACoordTrans) {
  TKRNDrawFunc2d::DrawScaleTextVII(AHDC, ACoordTrans, FText, FInsertPt, FAngle, GetDrawHeight(), FHorzAlignment,
                                   FVertAlignment, FFontName, FFontStyle, 0xFF0000, FBackColor, FTransparent);
}

bool TVectorText::HitTest(const TKRNVector2d& AHitPt, double ATol) {
  if (!TKRNPositionFunc2d::IsPointInBox(AHitPt, FOutRect, ATol)) return false;
  return TKRNPositionFunc2d::PointPosition(AHitPt, BoundPoly(), ATol) != ppOut;
}

bool TVectorText::HitSelect(const TKRNVector2d& AStartPt, const TKRNVector2d& AEndPt, double ATol) {
  if (PointIsSame(AStartPt, AEndPt, KRNEpsilon)) return HitTest(AStartPt, ATol);
  const TKRNBox2d Window = BoxOfPoints(AStartPt, AEndPt);
  if (AEndPt.X > AStartPt.X) return BoxInWindow(FOutRect, Window);
  if (TKRNPositionFunc2d::BoxBoxPosition(FOutRect, Window) == pptLeave) return false;
  return PolygonTouchesBox(BoundPoly(), Window) || BoxInWindow(FOutRect, Window);
}

TVDEPropTypeSet TVectorText::GetPropTypes() const {
  return {ptExtData, ptColor, ptText, ptFontName, ptFontHeight, ptFontStyle, ptTransparent, ptTextBackColor,
          ptHorzAlignment, ptVertAlignment};
}

QString TVectorText::GetPropValues(TVDEPropType APropType) const {
  switch (APropType) {
    case ptText: return FText;
    case ptFontName: return FFontName;
    case ptFontHeight: return QString::number(FHeight);
    case ptFontStyle: return QString::number(FFontStyle);
    case ptTransparent: return FTransparent ? QStringLiteral("1") : QStringLiteral("0");
    case ptTextBackColor: return QString::number(FBackColor);
    case ptHorzAlignment: return QString::number(FHorzAlignment);
    case ptVertAlignment: return QString::number(FVertAlignment);
    default: return TVectorDrawingItem::GetPropValues(APropType);
  }
}

void TVectorText::SetPropValues(TVDEPropType APropType, const QString& AValue) {
  if (!GetPropTypes().Contains(APropType)) return;
  switch (APropType) {
    case ptText: SetText(AValue); break;
    case ptFontName: SetFontName(AValue); break;
    case ptFontHeight: SetHeight(qint16(StrToInt(AValue))); break;
    case ptFontStyle: SetFontStyle(std::clamp(StrToInt(AValue), 0, 3)); break;
    case ptTransparent: SetTransparent(StrToInt(AValue) == 1); break;
    case ptTextBackColor: SetBackColor(TColor(StrToInt64(AValue))); break;
    case ptHorzAlignment: SetHorzAlignment(THorzAlignment(std::clamp(StrToInt(AValue), 0, 2))); break;
    case ptVertAlignment: SetVertAlignment(TVertAlignment(std::clamp(StrToInt(AValue), 0, 2))); break;
    default: TVectorDrawingItem::SetPropValues(APropType, AValue); break;
  }
}

void TVectorText::Assign(const TVectorDrawingItem& ASource) {
  if (const auto* S = dynamic_cast<const TVectorText*>(&ASource)) {
    FAngle = S->FAngle;
    FBackColor = S->FBackColor;
    FCorners = S->FCorners;
    FHasCorners = S->FHasCorners;
    FBoundPoly.reset();
    FFontName = S->FFontName;
    FFontStyle = S->FFontStyle;
    FHeight = S->FHeight;
    FFloatHeight = S->FFloatHeight;
    FHorzAlignment = S->FHorzAlignment;
    FInsertPt = S->FInsertPt;
    FText = S->FText;
    FTransparent = S->FTransparent;
    FVertAlignment = S->FVertAlignment;
  }
  TVectorDrawingItem::Assign(ASource);
}

void TVectorText::Accept(IVDIVisitor& AVisitor) {
  AVisitor.VisitText(*this);
  Changed(true);
}

void TVectorText::Inspect(IVDIVisitor& AVisitor) { AVisitor.VisitText(*this); }

std::unique_ptr<TVDICoordData> TVectorText::CreateCoordData() const {
  return std::make_unique<TVDITextCoordData>(FID, FAngle, FInsertPt);
}

void TVectorText::SetCoordData(const TVDICoordData& ACoordData) {
  const auto* D = dynamic_cast<const TVDITextCoordData*>(&ACoordData);
  if (!D) RaiseCoordDataMismatch(*this);
  if (PointIsSame(FInsertPt, D->FInsertPt, KRNEpsilon) && float(D->FAngle) == FAngle) return;
  FInsertPt = D->FInsertPt;
  FAngle = float(D->FAngle);
  Changed(true);
}

void TVectorText::SetText(const QString& AText) {
  if (FText == AText) return;
  FText = AText;
  Changed(true);
}

void TVectorText::SetInsertPt(const TKRNVector2d& AValue) {
  if (PointIsSame(FInsertPt, AValue, KRNEpsilon)) return;
  FInsertPt = AValue;
  Changed(true);
}

void TVectorText::SetAngle(double AValue) {
  if (FAngle == float(AValue)) return;
  FAngle = float(AValue);
  Changed(true);
}

void TVectorText::SetHeight(qint16 AValue) {
  if (FHeight == AValue) return;
  FHeight = AValue;
  Changed(true);
}

void TVectorText::SetFloatHeight(float AValue) {
  if (FFloatHeight == AValue) return;
  FFloatHeight = AValue;
  Changed(true);
}

void TVectorText::SetFontName(const QString& AValue) {
  if (FFontName == AValue) return;
  FFontName = AValue;
  Changed(true);
}

void TVectorText::SetFontStyle(int AValue) {
  if (FFontStyle == AValue) return;
  FFontStyle = AValue;
  Changed(true);
}

void TVectorText::SetHorzAlignment(THorzAlignment AValue) {
  if (FHorzAlignment == AValue) return;
  FHorzAlignment = AValue;
  Changed(true);
}

void TVectorText::SetVertAlignment(TVertAlignment AValue) {
  if (FVertAlignment == AValue) return;
  FVertAlignment = AValue;
  Changed(true);
}

void TVectorText::SetTransparent(bool AValue) {
  if (FTransparent == AValue) return;
  FTransparent = AValue;
  Changed(false);
}

void TVectorText::SetBackColor(TColor AValue) {
  if (FBackColor == AValue) return;
  FBackColor = AValue;
  Changed(false);
}

// ---- comment ----------------------------------------------------------------

TVectorComment::TVectorComment(TVectorDrawing* AOwner)
    : TVectorDrawingItem(AOwner), FCommentPoly(std::make_unique<TKRNPolygon2d>()) {}

TVectorComment::TVectorComment(TVectorDrawing* AOwner, int AID, const QString& AText, const TKRNVector2d& AInsertPt,
                               const QString& ADate)
    : TVectorDrawingItem(AOwner, AID, 0), FText(AText), FDate(ADate),
      FCommentPoly(std::make_unique<TKRNPolygon2d>()), FInsertPt(AInsertPt) {
  BuildOutRect();
}

void TVectorComment::Assign(const TVectorDrawingItem& ASource) {
  if (const auto* S = dynamic_cast<const TVectorComment*>(&ASource)) {
    FText = S->FText;
    FDate = S->FDate;
    FCommentPoly = S->FCommentPoly->Clone();
    FInsertPt = S->FInsertPt;
  }
  TVectorDrawingItem::Assign(ASource);
}

void TVectorComment::SetInsertPt(const TKRNVector2d& AValue) {
  if (PointIsSame(FInsertPt, AValue, KRNEpsilon)) return;
  FInsertPt = AValue;
  Changed(true);
}

void RegisterTextClasses() {
  RegisterVDIClass({itText, 2, "TVectorText", [](TVectorDrawing* O) -> TVectorDrawingItem* { return new TVectorText(O); }});
  RegisterVDIClass({itComment, 0, "TVectorComment", [](TVectorDrawing* O) -> TVectorDrawingItem* { return new TVectorComment(O); }});
}
