#include "VDEHatchSearch.h"

#include "KRNIntersectFunc2d.h"
#include "KRNModifyFunc2d.h"
#include "KRNPositionFunc2d.h"
#include "KRNSearchPoly2d.h"
#include "VDIHatch.h"
#include "VDILine.h"
#include "VDIPoint.h"
#include "VectorDrawing.h"

#include <algorithm>

void TLineItemInfos::Add(int AID, TKRNPtr<TKRNCustomLine2d> ACloneLine, const TKRNBox2d& AOutRect) {
  FList.push_back({AID, std::move(ACloneLine), AOutRect});
  FGrid.reset();
}

void TLineItemInfos::BuildGrid() const {
  FGrid = std::make_unique<TKRNExtSeg2dList>(KRNEpsilon);
  for (int I = 0; I < Count(); ++I) FGrid->Add(FList[size_t(I)].FLine.get(), I, false);
}

void TLineItemInfos::CalcIntPts(int AIndex, TKRNPoint2dDynArray& AIntPts) const {
  AIntPts.clear();
  if (!FGrid) BuildGrid();
  const TLineItemInfo& Split = FList[size_t(AIndex)];
  const TKRNCustomLine2d& L = *Split.FLine;
  auto Keep = [&](const TKRNVector2d& P) {
    if (!PointIsSame(P, L.StartPt(), KRNEpsilon) && !PointIsSame(P, L.EndPt(), KRNEpsilon)) AIntPts.push_back(P);
  };
  for (const int J : FGrid->GetSegs(Split.FOutRect)) {
    const TLineItemInfo& Other = FList[size_t(FGrid->Get(J).Tag)];
    if (Other.FID == Split.FID) continue;
    if (TKRNPositionFunc2d::BoxBoxPosition(Other.FOutRect, Split.FOutRect, KRNEpsilon) == pptLeave) continue;
    TKRNVector2d P1{}, P2{};
    switch (TKRNIntersectFunc2d::Intersect(L, *Other.FLine, P1, P2)) {
      case itZero: break;
      case itOne: Keep(P1); break;
      case itTwo:
        Keep(P1);
        Keep(P2);
        break;
      case itOverlap:
        for (const TKRNVector2d& E : {Other.FLine->StartPt(), Other.FLine->EndPt()})
          if (TKRNPositionFunc2d::PointPosition(E, L) != ppOut) Keep(E);
        break;
    }
  }
  TKRNPoint2dDynArray Distinct;
  for (const TKRNVector2d& P : AIntPts)
    if (std::none_of(Distinct.begin(), Distinct.end(), [&](const TKRNVector2d& Q) { return PointIsSame(P, Q, KRNEpsilon); }))
      Distinct.push_back(P);
  AIntPts.swap(Distinct);
  TKRNPositionFunc2d::SortPoint(L, AIntPts);
}

void TLineItemInfos::Collect(const TVectorDrawing& ADrawing) {
  for (int I = 0; I < ADrawing.Count(); ++I) {
    const TVectorDrawingItem* Item = ADrawing.Items(I);
    switch (Item->ItemType()) {
      case itLine:
      case itArc: {
        const TKRNCustomLine2d& L = static_cast<const TVectorLine*>(Item)->GetXLine();
        if (!L.IsZeroLength()) Add(Item->ID(), L.Clone(), L.Box());
        break;
      }
      case itCircle: {
        const auto* C = static_cast<const TVectorCircle*>(Item);
        const TKRNVector2d O = C->CenterPt();
        const double R = C->Radius();
        if (R <= KRNEpsilon) break;
        const TKRNVector2d E{O.X + R, O.Y}, W{O.X - R, O.Y};
        auto Upper = KRNMakeSegment(E, W, R, atACS);
        auto Lower = KRNMakeSegment(W, E, R, atACS);
        const TKRNBox2d B1 = Upper->Box(), B2 = Lower->Box();
        Add(Item->ID(), std::move(Upper), B1);
        Add(-Item->ID(), std::move(Lower), B2);
        break;
      }
      case itPolyline: {
        const TKRNVertex2dList& V = static_cast<const TVectorPolyline*>(Item)->Polyline().List();
        for (int K = 0; K + 1 < V.Count(); ++K)
          if (auto E = V.EdgeLine(K, false); E && !E->IsZeroLength()) {
            const TKRNBox2d B = E->Box();
            Add(Item->ID(), std::move(E), B);
          }
        break;
      }
      default: break;
    }
  }
}

bool VDESamePolygon(const TKRNPolygon2d& A, const TKRNPolygon2d& B, double AEpsilon) {
  const TKRNVertex2dList& VA = A.List();
  const TKRNVertex2dList& VB = B.List();
  const int N = VA.Count();
  if (N == 0 || N != VB.Count()) return false;
  for (int K = 0; K < N; ++K) {
    if (!PointIsSame(VA.Points(0), VB.Points(K), AEpsilon)) continue;
    bool Forward = true, Backward = true;
    for (int I = 0; I < N && (Forward || Backward); ++I) {
      Forward = Forward && PointIsSame(VA.Points(I), VB.Points((K + I) % N), AEpsilon);
      Backward = Backward && PointIsSame(VA.Points(I), VB.Points(((K - I) % N + N) % N), AEpsilon);
    }
    if (Forward || Backward) return true;
  }
  return false;
}

bool VDESearchHatchPoly(const TVectorDrawing& ADrawing, const TKRNVector2d& APoint,
                        std::unique_ptr<TKRNPolygon2d>& APoly) {
  APoly.reset();
  if (ADrawing.Count() == 0) return false;
  TLineItemInfos Infos;
  Infos.Collect(ADrawing);
  TKRNSearchPoly2d Search(KRNEpsilon);
  TKRNPoint2dDynArray Pts;
  for (int I = 0; I < Infos.Count(); ++I) {
    const TLineItemInfo& Info = Infos.GetItems(I);
    Infos.CalcIntPts(I, Pts);
    TKRNPtr<TKRNCustomLine2d> Rest = Info.FLine->Clone();
    for (const TKRNVector2d& P : Pts) {
      TKRNPtr<TKRNCustomLine2d> Part1, Part2;
      if (!TKRNBreakFunc2d::BreakAt(*Rest, P, Part1, Part2)) continue;
      Search.Add(Part1.release(), Info.FID, true);
      Rest = std::move(Part2);
    }
    Search.Add(Rest.release(), Info.FID, true);
  }
  std::unique_ptr<TKRNPolygon2d> Poly;
  std::vector<std::intptr_t> IDs;
  if (!Search.FindSmallPoly(APoint, Poly, IDs, false, true) || !Poly) return false;
  for (int I = 0; I < ADrawing.Count(); ++I)
    if (const auto* H = dynamic_cast<const TVectorHatch*>(ADrawing.Items(I));
        H && H->ItemType() == itHatch && VDESamePolygon(*Poly, H->XPoly(), KRNEpsilon))
      return false;
  APoly = std::move(Poly);
  return true;
}
