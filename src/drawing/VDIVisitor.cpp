#include "VDIVisitor.h"

#include "KRNModifyFunc2d.h"
#include "VDIHatch.h"
#include "VDILine.h"
#include "VDIPoint.h"
#include "VDIText.h"

namespace {

void NegateMarks(TVectorLineBase& AItem) {
  AItem.SetStartMarkSize(static_cast<qint16>(-AItem.StartMarkSize()));
  AItem.SetEndMarkSize(static_cast<qint16>(-AItem.EndMarkSize()));
}

std::unique_ptr<TKRNLines2d> ClonePolyline(const TVectorPolyline& AItem) {
  auto C = std::make_unique<TKRNLines2d>();
  C->Assign(AItem.Polyline());
  return C;
}

}  // namespace

// ---------------------------------------------------------------------------
// Grip edits

void VDIDragEdge(TKRNCustomLine2d& AEdge, int AGripIdx, const TKRNVector2d& AVector) {
  if (AGripIdx == 0) {
    AEdge.SetStartPt(VectorAdd(AEdge.StartPt(), AVector));
    return;
  }
  if (AGripIdx == 1) {
    AEdge.SetEndPt(VectorAdd(AEdge.EndPt(), AVector));
    return;
  }
  auto* Arc = dynamic_cast<TKRNArc2d*>(&AEdge);
  if (!Arc || !Arc->IsArcType()) {
    TKRNMoveFunc2d::Move(AEdge, AVector);
    return;
  }
  const TKRNVector2d Mid = VectorAdd(Arc->MiddlePoint(), AVector);
  const TKRNPtr<TKRNCustomLine2d> Fit = TKRNArc2d::CreateBy3Points(Arc->StartPt(), Mid, Arc->EndPt());
  Arc->SetArcType(Fit->ArcType());
  Arc->SetRadius(Fit->ArcType() == atLine ? 0 : Fit->Radius());
}

void VDIDragVertexList(TKRNVertex2dList& AList, bool AClosed, int AGripIdx, const TKRNVector2d& AVector,
                       TVDIArcGrips AArcGrips) {
  const int N = AList.Count();
  if (AGripIdx < 0)
    return;
  if (AGripIdx < N) {
    AList[AGripIdx]->SetPoint(VectorAdd(AList.Points(AGripIdx), AVector));
    // the arcs on both sides must still fit their ends
    if (AGripIdx > 0 || AClosed)
      AList[(AGripIdx + N - 1) % N]->Validate(AList.Points(AGripIdx));
    if (AGripIdx + 1 < N || AClosed)
      AList[AGripIdx]->Validate(AList.Points((AGripIdx + 1) % N));
    return;
  }
  int K = AGripIdx - N;
  const int Edges = AClosed ? N : N - 1;
  for (int I = 0; I < Edges; ++I) {
    const TKRNVector2d& S = AList.Points(I);
    const TKRNVector2d& E = AList.Points((I + 1) % N);
    // An arc vertex that has become straight has no grip on a polyline.
    const bool HasGrip = AArcGrips == agArcVertexes ? AList[I]->VertexType() == vtArc
                                                    : KRNVertexEdge(*AList[I], E)->IsArcType();
    if (!HasGrip || K-- != 0)
      continue;
    const TKRNVector2d Mid = VectorAdd(KRNVertexEdge(*AList[I], E)->MiddlePoint(), AVector);
    const TKRNPtr<TKRNCustomLine2d> Fit = TKRNArc2d::CreateBy3Points(S, Mid, E);
    AList.Replace(I, KRNMakeVertex(S, Fit->ArcType(), Fit->ArcType() == atLine ? 0 : Fit->Radius()));
    return;
  }
}

// ---------------------------------------------------------------------------
// Move

TVDIMoveVisitor::TVDIMoveVisitor(const TKRNVector2d& ABasePt, const TKRNVector2d& AInsertPt)
    : FVector(VectorSub(AInsertPt, ABasePt)) {}

void TVDIMoveVisitor::VisitPoint(TVectorPoint& AItem) { AItem.SetInsertPt(VectorAdd(AItem.InsertPt(), FVector)); }
void TVDIMoveVisitor::VisitLine(TVectorLine& AItem) { TKRNMoveFunc2d::Move(AItem.GetXLine(), FVector); }
void TVDIMoveVisitor::VisitArc(TVectorArc& AItem) { TKRNMoveFunc2d::Move(AItem.GetXLine(), FVector); }

void TVDIMoveVisitor::VisitPolyline(TVectorPolyline& AItem) {
  auto C = ClonePolyline(AItem);
  TKRNMoveFunc2d::Move(*C, FVector);
  AItem.SetPolyline(*C);
}

void TVDIMoveVisitor::VisitCircle(TVectorCircle& AItem) { AItem.SetCenterPtRaw(VectorAdd(AItem.CenterPt(), FVector)); }
void TVDIMoveVisitor::VisitHatch(TVectorHatch& AItem) { TKRNMoveFunc2d::Move(AItem.XPoly().List(), FVector); }
void TVDIMoveVisitor::VisitText(TVectorText& AItem) { AItem.SetInsertPt(VectorAdd(AItem.InsertPt(), FVector)); }

// ---------------------------------------------------------------------------
// Rotate

void TVDIRotateVisitor::VisitPoint(TVectorPoint& AItem) {
  AItem.SetInsertPt(TKRNRotateFunc2d::Rotate(AItem.InsertPt(), FBasePt, FAngle));
}
void TVDIRotateVisitor::VisitLine(TVectorLine& AItem) { TKRNRotateFunc2d::Rotate(AItem.GetXLine(), FBasePt, FAngle); }
void TVDIRotateVisitor::VisitArc(TVectorArc& AItem) { TKRNRotateFunc2d::Rotate(AItem.GetXLine(), FBasePt, FAngle); }

void TVDIRotateVisitor::VisitPolyline(TVectorPolyline& AItem) {
  auto C = ClonePolyline(AItem);
  TKRNRotateFunc2d::Rotate(*C, FBasePt, FAngle);
  AItem.SetPolyline(*C);
}

void TVDIRotateVisitor::VisitCircle(TVectorCircle& AItem) {
  AItem.SetCenterPtRaw(TKRNRotateFunc2d::Rotate(AItem.CenterPt(), FBasePt, FAngle));
}
void TVDIRotateVisitor::VisitHatch(TVectorHatch& AItem) {
  TKRNRotateFunc2d::Rotate(AItem.XPoly().List(), FBasePt, FAngle);
}
void TVDIRotateVisitor::VisitText(TVectorText& AItem) {
  AItem.SetInsertPt(TKRNRotateFunc2d::Rotate(AItem.InsertPt(), FBasePt, FAngle));
}

// ---------------------------------------------------------------------------
// Mirror

void TVDIMirrorVisitor::VisitPoint(TVectorPoint& AItem) {
  AItem.SetInsertPt(TKRNMirrorFunc2d::Mirror(AItem.InsertPt(), FMirrorLine));
}

void TVDIMirrorVisitor::VisitLine(TVectorLine& AItem) {
  TKRNMirrorFunc2d::Mirror(AItem.GetXLine(), FMirrorLine);
  NegateMarks(AItem);
}

void TVDIMirrorVisitor::VisitArc(TVectorArc& AItem) {
  TKRNMirrorFunc2d::Mirror(AItem.GetXLine(), FMirrorLine);
  NegateMarks(AItem);
}

void TVDIMirrorVisitor::VisitPolyline(TVectorPolyline& AItem) {
  auto C = ClonePolyline(AItem);
  TKRNMirrorFunc2d::Mirror(*C, FMirrorLine);
  AItem.SetPolyline(*C);
  NegateMarks(AItem);
}

void TVDIMirrorVisitor::VisitCircle(TVectorCircle& AItem) {
  AItem.SetCenterPtRaw(TKRNMirrorFunc2d::Mirror(AItem.CenterPt(), FMirrorLine));
}
void TVDIMirrorVisitor::VisitHatch(TVectorHatch& AItem) { TKRNMirrorFunc2d::Mirror(AItem.XPoly().List(), FMirrorLine); }
void TVDIMirrorVisitor::VisitText(TVectorText& AItem) {
  AItem.SetInsertPt(TKRNMirrorFunc2d::Mirror(AItem.InsertPt(), FMirrorLine));
}

// ---------------------------------------------------------------------------
// Stretch

TVDIStretchVisitor::TVDIStretchVisitor(const TKRNBox2d& ACrossBox, const TKRNVector2d& ABasePt,
                                       const TKRNVector2d& AInsertPt)
    : FCrossBox(ACrossBox), FVector(VectorSub(AInsertPt, ABasePt)) {}

void TVDIStretchVisitor::VisitPoint(TVectorPoint& AItem) {
  AItem.SetInsertPt(TKRNStretchFunc2d::Stretch(AItem.InsertPt(), FCrossBox, FVector));
}
void TVDIStretchVisitor::VisitLine(TVectorLine& AItem) { TKRNStretchFunc2d::Stretch(AItem.GetXLine(), FCrossBox, FVector); }
void TVDIStretchVisitor::VisitArc(TVectorArc& AItem) { TKRNStretchFunc2d::Stretch(AItem.GetXLine(), FCrossBox, FVector); }
void TVDIStretchVisitor::VisitPolyline(TVectorPolyline& AItem) {
  TKRNStretchFunc2d::Stretch(AItem.XPolyline(), FCrossBox, FVector);
}
void TVDIStretchVisitor::VisitCircle(TVectorCircle& AItem) {
  AItem.SetCenterPtRaw(TKRNStretchFunc2d::Stretch(AItem.CenterPt(), FCrossBox, FVector));
}
void TVDIStretchVisitor::VisitHatch(TVectorHatch& AItem) {
  TKRNStretchFunc2d::Stretch(AItem.XPoly().List(), FCrossBox, FVector, true);
}
void TVDIStretchVisitor::VisitText(TVectorText& AItem) {
  AItem.SetInsertPt(TKRNStretchFunc2d::Stretch(AItem.InsertPt(), FCrossBox, FVector));
}

// ---------------------------------------------------------------------------
// Drag grip

TVDIDragGripVisitor::TVDIDragGripVisitor(int AGripIdx, const TKRNVector2d& ABasePt, const TKRNVector2d& AInsertPt)
    : FGripIdx(AGripIdx), FVector(VectorSub(AInsertPt, ABasePt)) {}

void TVDIDragGripVisitor::VisitPoint(TVectorPoint& AItem) { AItem.SetInsertPt(VectorAdd(AItem.InsertPt(), FVector)); }

void TVDIDragGripVisitor::VisitLine(TVectorLine& AItem) {
  TKRNPtr<TKRNCustomLine2d> Edge = AItem.GetXLine().Clone();
  VDIDragEdge(*Edge, FGripIdx, FVector);
  AItem.SetLine(*Edge);
}

void TVDIDragGripVisitor::VisitArc(TVectorArc& AItem) {
  TKRNPtr<TKRNCustomLine2d> Edge = AItem.GetXLine().Clone();
  VDIDragEdge(*Edge, FGripIdx, FVector);
  AItem.SetLine(*Edge);
}

void TVDIDragGripVisitor::VisitPolyline(TVectorPolyline& AItem) {
  auto C = ClonePolyline(AItem);
  VDIDragVertexList(C->List(), false, FGripIdx, FVector, agArcEdges);
  AItem.SetPolyline(*C);
}

void TVDIDragGripVisitor::VisitCircle(TVectorCircle& AItem) {
  if (FGripIdx == 0) {
    AItem.SetCenterPtRaw(VectorAdd(AItem.CenterPt(), FVector));
    return;
  }
  AItem.SetRadiusRaw(VectorDistance(VectorAdd(AItem.GetGrips(FGripIdx), FVector), AItem.CenterPt()));
}

void TVDIDragGripVisitor::VisitHatch(TVectorHatch& AItem) {
  TKRNPolygon2d C;
  C.Assign(AItem.XPoly());
  VDIDragVertexList(C.List(), true, FGripIdx, FVector, agArcVertexes);
  AItem.SetPolygon(C);
}

void TVDIDragGripVisitor::VisitText(TVectorText& AItem) { AItem.SetInsertPt(VectorAdd(AItem.InsertPt(), FVector)); }

// ---------------------------------------------------------------------------
// Vertex snap

void TVDISnapVertexVisitor::Test(const TKRNVector2d& APt) {
  if (!PointIsSame(APt, FHitPt, FTol))
    return;
  if (FSnapSuccess && VectorDistance(APt, FHitPt) >= VectorDistance(FSnapPt, FHitPt))
    return;  // the earlier one stays on a tie
  FSnapPt = APt;
  FSnapSuccess = true;
}

void TVDISnapVertexVisitor::TestEnds(const TKRNCustomLine2d& ALine) {
  const bool StartFirst = VectorDistance(ALine.StartPt(), FHitPt) <= VectorDistance(ALine.EndPt(), FHitPt);
  Test(StartFirst ? ALine.StartPt() : ALine.EndPt());
  Test(StartFirst ? ALine.EndPt() : ALine.StartPt());
}

void TVDISnapVertexVisitor::TestList(const TKRNVertex2dList& AList) {
  FSnapSuccess = false;
  for (int I = 0; I < AList.Count(); ++I)
    Test(AList.Points(I));
}

void TVDISnapVertexVisitor::VisitPoint(TVectorPoint& AItem) { Test(AItem.InsertPt()); }
void TVDISnapVertexVisitor::VisitLine(TVectorLine& AItem) { TestEnds(AItem.GetXLine()); }
void TVDISnapVertexVisitor::VisitArc(TVectorArc& AItem) { TestEnds(AItem.GetXLine()); }
void TVDISnapVertexVisitor::VisitPolyline(TVectorPolyline& AItem) { TestList(AItem.Polyline().List()); }
void TVDISnapVertexVisitor::VisitCircle(TVectorCircle& AItem) { Test(AItem.CenterPt()); }
void TVDISnapVertexVisitor::VisitHatch(TVectorHatch& AItem) { TestList(AItem.XPoly().List()); }
void TVDISnapVertexVisitor::VisitText(TVectorText& AItem) { Test(AItem.InsertPt()); }
