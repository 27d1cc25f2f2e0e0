#include "VDILine.h"

#include "KRN2dObjectPool.h"
#include "KRNPositionFunc2d.h"
#include "VDIGeometry.h"
#include "VDIVisitor.h"
#include "VectorDrawing.h"

#include <cmath>

namespace {

TKRNBox2d PrimitiveBox(const TVDIPrimitive& P, int AWidth) {
  switch (P.Kind) {
    case TVDIPrimitive::pkDot: return {{P.Center.X - P.Radius, P.Center.Y - P.Radius}, {P.Center.X + P.Radius, P.Center.Y + P.Radius}};
    case TVDIPrimitive::pkArrow: return P.Triangle->Box();
    default: return AWidth > 0 ? FatPolygon(*P.Edge, AWidth).Box() : P.Edge->Box();
  }
}

TVDIPrimitive EdgePrimitive(TKRNPtr<TKRNCustomLine2d> AEdge, int APathIndex = -1) {
  TVDIPrimitive P;
  P.Kind = TVDIPrimitive::pkEdge;
  P.Edge = std::move(AEdge);
  P.PathIndex = APathIndex;
  return P;
}

// A half circle from A to B (chord |AB|), anticlockwise or not.
TKRNPtr<TKRNCustomLine2d> HalfCircle(const TKRNVector2d& A, const TKRNVector2d& B, bool AClockwise) {
  return KRNMakeSegment(A, B, VectorDistance(A, B) / 2, AClockwise ? atCS : atACS);
}

}  // namespace

// ---- the base ---------------------------------------------------------------

void TVectorLineBase::SetMarkFields(int AWidth, int AStyle, int AStartSize, int AEndSize, TMarkStyle AStartStyle,
                                    TMarkStyle AEndStyle) {
  FLineWidth = qint16(AWidth);
  FLineStyle = quint8(AStyle);
  FStartMarkSize = qint16(AStartSize);
  FEndMarkSize = qint16(AEndSize);
  FStartMarkStyle = AStartStyle;
  FEndMarkStyle = AEndStyle;
}

bool TVectorLineBase::HasMarks() const {
  return (FStartMarkSize != 0 && FStartMarkStyle != msNone) || (FEndMarkSize != 0 && FEndMarkStyle != msNone);
}

void TVectorLineBase::AddMark(std::vector<TVDIPrimitive>& AList, bool AAtStart) const {
  const int Size = AAtStart ? FStartMarkSize : FEndMarkSize;
  const TMarkStyle Style = AAtStart ? FStartMarkStyle : FEndMarkStyle;
  const int N = GetEdgeCount();
  if (Size == 0 || Style == msNone || N == 0) return;
  const TKRNCustomLine2d& E = *GetEdge(AAtStart ? 0 : N - 1);
  const TKRNVector2d P = AAtStart ? E.StartPt() : E.EndPt();
  // The course of the path at the mark, pointing out of the path at this end.
  const TKRNVector2d Out = AAtStart ? VectorNegate(E.StartVector()) : E.EndVector();
  const double S = Size, L = std::fabs(S);
  switch (Style) {
    case msArrow: {
      const double Len = E.Length();
      const double At = AAtStart ? L : Len - L;
      const TKRNVector2d B = TKRNPositionFunc2d::PointAtLength(E, At, false);
      const TKRNVector2d T = VectorNormalized(E.TangentVectorAtLength(At));
      const TKRNVector2d Nrm = VectorPerpendicular(VectorIsZero(T) ? Out : T, false);
      const double HW = L / 3 + (FLineWidth > 0 ? FLineWidth : 0);
      auto Tri = std::make_shared<TKRNPolygon2d>();
      Tri->List().AddLinePoint(P);
      Tri->List().AddLinePoint(VectorAdd(B, VectorScale(Nrm, HW)));
      Tri->List().AddLinePoint(VectorSub(B, VectorScale(Nrm, HW)));
      TVDIPrimitive Prim;
      Prim.Kind = TVDIPrimitive::pkArrow;
      Prim.Triangle = Tri;
      AList.push_back(std::move(Prim));
      break;
    }
    case msDot: {
      TVDIPrimitive Prim;
      Prim.Kind = TVDIPrimitive::pkDot;
      Prim.Center = P;
      Prim.Radius = L / 2;
      AList.push_back(std::move(Prim));
      break;
    }
    case msDiagonal: {
      const TKRNVector2d U = VectorRotate(Out, S > 0 ? 0.785398 : -0.785398);
      AList.push_back(EdgePrimitive(KRNMakeSegment(VectorSub(P, VectorScale(U, L / 2)), VectorAdd(P, VectorScale(U, L / 2)), 0, atLine)));
      break;
    }
    case msHook: {
      const TKRNVector2d Nrm = VectorRotate(Out, S > 0 ? 1.570796 : -1.570796);
      AList.push_back(EdgePrimitive(HalfCircle(P, VectorAdd(P, VectorScale(Nrm, L / 2)), S < 0)));
      AList.push_back(EdgePrimitive(HalfCircle(P, VectorSub(P, VectorScale(Nrm, L / 2)), S > 0)));
      break;
    }
    case msHoop: {
      const TKRNVector2d Nrm = VectorRotate(Out, S > 0 ? 1.570796 : -1.570796);
      AList.push_back(EdgePrimitive(HalfCircle(P, VectorAdd(P, VectorScale(Nrm, L)), S < 0)));
      break;
    }
    default: break;
  }
}

std::vector<TVDIPrimitive> TVectorLineBase::BuildMarkGeometry() const {
  std::vector<TVDIPrimitive> L;
  AddMark(L, true);
  for (int I = 0; I < GetEdgeCount(); ++I) L.push_back(EdgePrimitive(GetEdge(I)->Clone(), I));
  AddMark(L, false);
  return L;
}

void TVectorLineBase::BuildOutRect() {
  if (!HasMarks()) {  // the path alone: its edges are boxed where they are, not copied
    FOutRect = TKRNBox2d{};
    for (int I = 0; I < GetEdgeCount(); ++I) {
      const TKRNCustomLine2d& E = *GetEdge(I);
      const TKRNBox2d B = FLineWidth > 0 ? FatPolygon(E, FLineWidth).Box() : E.Box();
      FOutRect = I == 0 ? B : BoxUnion(FOutRect, B);
    }
    return;
  }
  const std::vector<TVDIPrimitive> L = BuildMarkGeometry();
  if (L.empty()) {
    FOutRect = TKRNBox2d{};
    return;
  }
  FOutRect = PrimitiveBox(L[0], FLineWidth);
  for (size_t I = 1; I < L.size(); ++I) FOutRect = BoxUnion(FOutRect, PrimitiveBox(L[I], FLineWidth));
}

void TVectorLineBase::DrawWith(QPainter& AHDC, const TKRNCoordTrans& ACoordTrans, TColor AColor, int AStyle,
                               TDrawMode AMode) {
  if (!HasMarks()) {
    DrawPath(AHDC, ACoordTrans, AStyle, AColor, AMode);
    return;
  }
  const bool StartArrow = FStartMarkSize != 0 && FStartMarkStyle == msArrow;
  const bool EndArrow = FEndMarkSize != 0 && FEndMarkStyle == msArrow;
  const double Trim = FLineWidth > 0 ? FLineWidth / 3.0 : 0;
  const int Last = GetEdgeCount() - 1;
  for (TVDIPrimitive& P : BuildMarkGeometry()) {
    switch (P.Kind) {
      case TVDIPrimitive::pkArrow: TKRNDrawFunc2d::FillXPoly(AHDC, ACoordTrans, *P.Triangle, AColor, AMode); break;
      case TVDIPrimitive::pkDot: TKRNDrawFunc2d::FillCircle(AHDC, ACoordTrans, P.Center, P.Radius, AColor, AMode); break;
      default:
        // A wide line does not stick out past an arrow's tip.
        if (Trim > 0 && ((StartArrow && P.PathIndex == 0) || (EndArrow && P.PathIndex == Last)))
          TKRNDrawFunc2d::TrimEdge(*P.Edge, StartArrow && P.PathIndex == 0 ? Trim : 0,
                                   EndArrow && P.PathIndex == Last ? Trim : 0);
        TKRNDrawFunc2d::DrawXLine(AHDC, ACoordTrans, *P.Edge, FLineWidth, AStyle, AColor, AMode);
        break;
    }
  }
}

void TVectorLineBase::DrawElastic(QPainter& AHDC, const TKRNCoordTrans& ACoordTrans) {
  DrawWith(AHDC, ACoordTrans, TKRNDrawFunc2d::ElasticColor(), FLineStyle, dmXOR);
}

void TVectorLineBase::DrawNormal(QPainter& AHDC, const TKRNCoordTrans& ACoordTrans) {
  DrawWith(AHDC, ACoordTrans, GetShowColor(), FLineStyle, dmCopy);
}

void TVectorLineBase::DrawSelected(QPainter& AHDC, const TKRNCoordTrans& ACoordTrans) {
  DrawWith(AHDC, ACoordTrans, 0xFF0000, GetSelectedLineStyle(ACoordTrans, FLineWidth, FLineStyle), dmCopy);
}

bool TVectorLineBase::HitTest(const TKRNVector2d& AHitPt, double ATol) {
  // The cached box first: most items are far away.
  if (!TKRNPositionFunc2d::IsPointInBox(AHitPt, InflateBox(FOutRect, ATol))) return false;
  const double W = FLineWidth > 0 ? FLineWidth : 0;
  auto EdgeHit = [&](const TKRNCustomLine2d& E) {
    if (!TKRNPositionFunc2d::IsPointInBox(AHitPt, InflateBox(FLineWidth > 0 ? FatPolygon(E, W).Box() : E.Box(), ATol)))
      return false;
    return TKRNPositionFunc2d::PointPosition(AHitPt, FatPolygon(E, W + 2 * ATol)) != ppOut;
  };
  for (const TVDIPrimitive& P : BuildMarkGeometry()) {
    if (!TKRNPositionFunc2d::IsPointInBox(AHitPt, InflateBox(PrimitiveBox(P, FLineWidth), ATol))) continue;
    switch (P.Kind) {
      case TVDIPrimitive::pkDot: {
        const double D = VectorDistance(AHitPt, P.Center);
        if (D >= P.Radius - W / 2 - ATol && D <= P.Radius + W / 2 + ATol) return true;
        break;
      }
      case TVDIPrimitive::pkArrow:
        for (int I = 0; I < P.Triangle->GetCount(); ++I)
          if (EdgeHit(*P.Triangle->EdgeLine(I))) return true;
        break;
      default:
        if (EdgeHit(*P.Edge)) return true;
        break;
    }
  }
  return false;
}

bool TVectorLineBase::HitSelect(const TKRNVector2d& AStartPt, const TKRNVector2d& AEndPt, double ATol) {
  if (PointIsSame(AStartPt, AEndPt, KRNEpsilon)) return HitTest(AStartPt, ATol);
  const TKRNBox2d Window = BoxOfPoints(AStartPt, AEndPt);
  const bool Inside = AEndPt.X > AStartPt.X;
  const double W = FLineWidth > 0 ? FLineWidth : 1;
  for (const TVDIPrimitive& P : BuildMarkGeometry()) {
    const TKRNBox2d B = PrimitiveBox(P, FLineWidth);
    if (Inside) {
      if (BoxInWindow(B, Window)) return true;
      continue;
    }
    if (TKRNPositionFunc2d::BoxBoxPosition(B, Window) == pptLeave) continue;
    switch (P.Kind) {
      case TVDIPrimitive::pkDot:
        if (RingTouchesBox(P.Center, P.Radius - W / 2, P.Radius + W / 2, Window)) return true;
        break;
      case TVDIPrimitive::pkArrow:
        if (PolygonTouchesBox(*P.Triangle, Window)) return true;
        break;
      default:
        if (PolygonTouchesBox(FatPolygon(*P.Edge, W), Window)) return true;
        break;
    }
  }
  return false;
}

TVDEPropTypeSet TVectorLineBase::GetPropTypes() const {
  return {ptExtData, ptColor, ptLineWidth, ptLineStyle, ptStartMarkStyle, ptEndMarkStyle, ptStartMarkSize, ptEndMarkSize};
}

QString TVectorLineBase::GetPropValues(TVDEPropType APropType) const {
  switch (APropType) {
    case ptLineWidth: return QString::number(FLineWidth);
    case ptLineStyle: return QString::number(FLineStyle);
    case ptStartMarkStyle: return QString::number(FStartMarkStyle);
    case ptEndMarkStyle: return QString::number(FEndMarkStyle);
    case ptStartMarkSize: return QString::number(FStartMarkSize);
    case ptEndMarkSize: return QString::number(FEndMarkSize);
    default: return TVectorDrawingItem::GetPropValues(APropType);
  }
}

void TVectorLineBase::SetPropValues(TVDEPropType APropType, const QString& AValue) {
  if (!GetPropTypes().Contains(APropType)) return;
  switch (APropType) {
    case ptLineWidth: SetLineWidth(qint16(StrToInt(AValue))); break;
    case ptLineStyle: SetLineStyle(StrToInt(AValue)); break;
    case ptStartMarkStyle: SetStartMarkStyle(TMarkStyle(std::clamp(StrToInt(AValue), 0, int(msHoop)))); break;
    case ptEndMarkStyle: SetEndMarkStyle(TMarkStyle(std::clamp(StrToInt(AValue), 0, int(msHoop)))); break;
    case ptStartMarkSize: SetStartMarkSize(qint16(StrToInt(AValue))); break;
    case ptEndMarkSize: SetEndMarkSize(qint16(StrToInt(AValue))); break;
    default: TVectorDrawingItem::SetPropValues(APropType, AValue); break;
  }
}

void TVectorLineBase::Assign(const TVectorDrawingItem& ASource) {
  if (const auto* S = dynamic_cast<const TVectorLineBase*>(&ASource)) {
    SetMarkFields(S->FLineWidth, S->FLineStyle, S->FStartMarkSize, S->FEndMarkSize, S->FStartMarkStyle, S->FEndMarkStyle);
    FPrevItemID = S->FPrevItemID;
    FNextItemID = S->FNextItemID;
  }
  TVectorDrawingItem::Assign(ASource);
}

void TVectorLineBase::SetLineWidth(qint16 AValue) {
  if (FLineWidth == AValue) return;
  FLineWidth = AValue;
  Changed(true);
}

void TVectorLineBase::SetLineStyle(int AValue) {
  if (FLineStyle == AValue) return;
  FLineStyle = quint8(AValue);
  Changed(false);
}

void TVectorLineBase::SetStartMarkSize(qint16 AValue) {
  if (FStartMarkSize == AValue) return;
  FStartMarkSize = AValue;
  Changed(true);
}

void TVectorLineBase::SetEndMarkSize(qint16 AValue) {
  if (FEndMarkSize == AValue) return;
  FEndMarkSize = AValue;
  Changed(true);
}

void TVectorLineBase::SetStartMarkStyle(TMarkStyle AValue) {
  if (FStartMarkStyle == AValue) return;
  FStartMarkStyle = AValue;
  Changed(true);
}

void TVectorLineBase::SetEndMarkStyle(TMarkStyle AValue) {
  if (FEndMarkStyle == AValue) return;
  FEndMarkStyle = AValue;
  Changed(true);
}

// ---- line and arc -----------------------------------------------------------

TVectorLine::TVectorLine(TVectorDrawing* AOwner) : TVectorLineBase(AOwner), FXLine(KRNMakeSegment({}, {}, 0, atLine)) {}

TVectorLine::TVectorLine(TVectorDrawing* AOwner, int AID, TColor AColor, int ALineWidth, int ALineStyle,
                         int AStartMarkSize, int AEndMarkSize, TMarkStyle AStartMarkStyle, TMarkStyle AEndMarkStyle,
                         const TKRNVector2d& AStartPt, const TKRNVector2d& AEndPt)
    : TVectorLineBase(AOwner, AID, AColor), FXLine(KRNMakeSegment(AStartPt, AEndPt, 0, atLine)) {
  SetMarkFields(ALineWidth, ALineStyle, AStartMarkSize, AEndMarkSize, AStartMarkStyle, AEndMarkStyle);
  BuildOutRect();
}

TKRNPtr<TKRNCustomLine2d> TVectorLine::CreateXLine(const TKRNVector2d& AStartPt, const TKRNVector2d& AEndPt) const {
  return KRNMakeSegment(AStartPt, AEndPt, 0, atLine);
}

TKRNVector2d TVectorLine::GetGrips(int AIndex) const {
  if (AIndex == 0) return FXLine->StartPt();
  if (AIndex == 1) return FXLine->EndPt();
  return FXLine->MiddlePoint();
}

void TVectorLine::Assign(const TVectorDrawingItem& ASource) {
  if (const auto* S = dynamic_cast<const TVectorLine*>(&ASource)) FXLine->Assign(*S->FXLine);
  TVectorLineBase::Assign(ASource);
}

void TVectorLine::SetLine(const TKRNCustomLine2d& ALine) {
  FXLine->Assign(ALine);
  Changed(true);
}

void TVectorLine::Accept(IVDIVisitor& AVisitor) {
  AVisitor.VisitLine(*this);
  Changed(true);
}

void TVectorLine::Inspect(IVDIVisitor& AVisitor) { AVisitor.VisitLine(*this); }

std::unique_ptr<TVDICoordData> TVectorLine::CreateCoordData() const {
  return std::make_unique<TVDILineCoordData>(FID, FXLine->Clone());
}

void TVectorLine::SetCoordData(const TVDICoordData& ACoordData) {
  const auto* D = dynamic_cast<const TVDILineCoordData*>(&ACoordData);
  if (!D) RaiseCoordDataMismatch(*this);
  FXLine->Assign(*D->FLine);
  Changed(true);
}

void TVectorLine::DrawPath(QPainter& AHDC, const TKRNCoordTrans& ACoordTrans, int AStyle, TColor AColor,
                           TDrawMode AMode) {
  if (FXLine->IsArcType())
    TKRNDrawFunc2d::DrawArc(AHDC, ACoordTrans, FXLine->StartPt(), FXLine->EndPt(), FXLine->Radius(), FXLine->ArcType(),
                            FLineWidth, 0, AStyle, AColor, AMode);
  else
    TKRNDrawFunc2d::DrawLine(AHDC, ACoordTrans, FXLine->StartPt(), FXLine->EndPt(), FLineWidth, 0, AStyle, AColor, AMode);
}

TVectorArc::TVectorArc(TVectorDrawing* AOwner)
    : TVectorLine(AOwner, TKRNPtr<TKRNCustomLine2d>(new TKRNArc2d({}, {}, 0, atLine))) {}

TVectorArc::TVectorArc(TVectorDrawing* AOwner, int AID, TColor AColor, int ALineWidth, int ALineStyle,
                       int AStartMarkSize, int AEndMarkSize, TMarkStyle AStartMarkStyle, TMarkStyle AEndMarkStyle,
                       const TKRNVector2d& AStartPt, const TKRNVector2d& AEndPt, double ARadius, TKRNArcType AArcType)
    : TVectorLine(AOwner, TKRNPtr<TKRNCustomLine2d>(new TKRNArc2d(AStartPt, AEndPt, ARadius, AArcType))) {
  FID = AID;
  FColor = AColor;
  SetMarkFields(ALineWidth, ALineStyle, AStartMarkSize, AEndMarkSize, AStartMarkStyle, AEndMarkStyle);
  BuildOutRect();
}

TKRNPtr<TKRNCustomLine2d> TVectorArc::CreateXLine(const TKRNVector2d& AStartPt, const TKRNVector2d& AEndPt) const {
  return TKRNPtr<TKRNCustomLine2d>(new TKRNArc2d(AStartPt, AEndPt, 0, atLine));
}

void TVectorArc::Accept(IVDIVisitor& AVisitor) {
  AVisitor.VisitArc(*this);
  Changed(true);
}

void TVectorArc::Inspect(IVDIVisitor& AVisitor) { AVisitor.VisitArc(*this); }

std::unique_ptr<TVDICoordData> TVectorArc::CreateCoordData() const {
  return std::make_unique<TVDIArcCoordData>(FID, Arc());
}

void TVectorArc::SetCoordData(const TVDICoordData& ACoordData) {
  const auto* D = dynamic_cast<const TVDIArcCoordData*>(&ACoordData);
  if (!D) RaiseCoordDataMismatch(*this);
  Arc().Assign(D->FArc);
  Changed(true);
}

// ---- polyline ---------------------------------------------------------------

TVectorPolyline::TVectorPolyline(TVectorDrawing* AOwner)
    : TVectorLineBase(AOwner), FPolyline(std::make_unique<TKRNLines2d>()) {}

void TVectorPolyline::SetLineFields(int AID, TColor AColor, int ALineWidth, int ALineStyle) {
  FID = AID;
  FColor = AColor;
  FLineWidth = qint16(ALineWidth);
  FLineStyle = quint8(ALineStyle);
}

void TVectorPolyline::RefillEdges() const {
  FXLines.clear();
  const int N = std::max(0, FPolyline->Count() - 1);
  FXLines.reserve(size_t(N));
  for (int I = 0; I < N; ++I) {
    const TKRNVertex2d* V = FPolyline->List()[I];
    const bool Arc = V->VertexType() == vtArc;
    FXLines.emplace_back(new TKRNArc2d(V->Point(), FPolyline->List().Points(I + 1), Arc ? V->Radius() : 0,
                                       Arc ? V->ArcType() : atLine));
  }
}

int TVectorPolyline::GetEdgeCount() const {
  const int N = std::max(0, FPolyline->Count() - 1);
  if (int(FXLines.size()) != N) RefillEdges();
  return N;
}

const TKRNCustomLine2d* TVectorPolyline::GetEdge(int AIndex) const {
  if (AIndex < 0 || AIndex >= GetEdgeCount()) return nullptr;
  return FXLines[size_t(AIndex)].get();
}

int TVectorPolyline::GetGripCount() const {
  int Arcs = 0;
  for (int I = 0; I < GetEdgeCount(); ++I)
    if (GetEdge(I)->IsArcType()) ++Arcs;
  return FPolyline->Count() + Arcs;
}

TKRNVector2d TVectorPolyline::GetGrips(int AIndex) const {
  if (AIndex < FPolyline->Count()) return FPolyline->List().Points(AIndex);
  int K = AIndex - FPolyline->Count();
  for (int I = 0; I < GetEdgeCount(); ++I)
    if (GetEdge(I)->IsArcType() && K-- == 0) return GetEdge(I)->MiddlePoint();
  return {};
}

void TVectorPolyline::Assign(const TVectorDrawingItem& ASource) {
  if (const auto* S = dynamic_cast<const TVectorPolyline*>(&ASource)) {
    FPolyline->Assign(*S->FPolyline);
    RefillEdges();
  }
  TVectorLineBase::Assign(ASource);
}

void TVectorPolyline::SetPolyline(const TKRNLines2d& APolyline) {
  FPolyline->Assign(APolyline);
  RefillEdges();
  Changed(true);
}

void TVectorPolyline::Accept(IVDIVisitor& AVisitor) {
  AVisitor.VisitPolyline(*this);
  RefillEdges();
  Changed(true);
}

void TVectorPolyline::Inspect(IVDIVisitor& AVisitor) { AVisitor.VisitPolyline(*this); }

std::unique_ptr<TVDICoordData> TVectorPolyline::CreateCoordData() const {
  return std::make_unique<TVDIPolylineCoordData>(FID, FPolyline->Clone());
}

void TVectorPolyline::SetCoordData(const TVDICoordData& ACoordData) {
  const auto* D = dynamic_cast<const TVDIPolylineCoordData*>(&ACoordData);
  if (!D) RaiseCoordDataMismatch(*this);
  FPolyline->Assign(*D->FPolyline);
  RefillEdges();
  Changed(true);
}

void TVectorPolyline::DrawPath(QPainter& AHDC, const TKRNCoordTrans& ACoordTrans, int AStyle, TColor AColor,
                               TDrawMode AMode) {
  TKRNDrawFunc2d::DrawXPolyline(AHDC, ACoordTrans, *FPolyline, FLineWidth, AStyle, AColor, AMode);
}

void RegisterLineClasses() {
  RegisterVDIClass({itLine, 1, "TVectorLine", [](TVectorDrawing* O) -> TVectorDrawingItem* { return new TVectorLine(O); }});
  RegisterVDIClass({itArc, 1, "TVectorArc", [](TVectorDrawing* O) -> TVectorDrawingItem* { return new TVectorArc(O); }});
  RegisterVDIClass({itPolyline, 1, "TVectorPolyline", [](TVectorDrawing* O) -> TVectorDrawingItem* { return new TVectorPolyline(O); }});
  RegisterVDIClass({itVPBorder, 1, "TVectorVPBorder", [](TVectorDrawing* O) -> TVectorDrawingItem* { return new TVectorVPBorder(O); }});
}
