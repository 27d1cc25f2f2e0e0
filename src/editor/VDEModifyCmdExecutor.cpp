#include "VDEModifyCmdExecutor.h"

#include "Dialogs.h"
#include "KRNIntersectFunc2d.h"
#include "KRNModifyFunc2d.h"
#include "KRNPolygon2d.h"
#include "KRNPositionFunc2d.h"
#include "SysUtils.h"
#include "VDEHatchSearch.h"
#include "VDILine.h"
#include "VDIPoint.h"
#include "VectorDrawing.h"

#include <algorithm>

namespace {

bool IsEdgeType(int AType) { return AType == itLine || AType == itArc || AType == itCircle || AType == itPolyline; }

// The one selected item when there is exactly one of an edge type.
TVectorDrawingItem* TheEdge(TVectorDrawing& D) {
  if (D.SelSet().Count() != 1) return nullptr;
  TVectorDrawingItem* E = D.SelSet().Items(0);
  return IsEdgeType(E->ItemType()) ? E : nullptr;
}

// Where the two lines' start directions meet; parallel ones give the origin, as the
// meeting's result is not tested.
TKRNVector2d MeetStarts(const TKRNCustomLine2d& A, const TKRNCustomLine2d& B) {
  TKRNVector2d P{};
  TKRNIntersectFunc2d::Intersect(TKRNBeeline2d(A.StartPt(), A.StartVector()), TKRNBeeline2d(B.StartPt(), B.StartVector()), P);
  return P;
}

// Position along the chord from start to end.
double ChordParam(const TKRNCustomLine2d& L, const TKRNVector2d& P) {
  const TKRNVector2d D = VectorSub(L.EndPt(), L.StartPt());
  const double N = VectorDot(D, D);
  return N > 0 ? VectorDot(VectorSub(P, L.StartPt()), D) / N : 0;
}

}  // namespace

// ---- extend and intersect ---------------------------------------------------

bool TVDEExtendCmdExecutor::Extend(TVectorLine& AExtendItem, const TKRNVector2d&) {
  TVectorDrawingItem* Edge = TheEdge(Drawing());
  if (!Edge) return false;
  // Circles and polylines as edges change nothing.
  if (Edge->ItemType() != itLine && Edge->ItemType() != itArc) return false;
  AddOld(AExtendItem);
  const TKRNVector2d P = MeetStarts(static_cast<TVectorLine*>(Edge)->GetXLine(), AExtendItem.GetXLine());
  AExtendItem.SetLine(*AExtendItem.GetXLine().ExtendTo(P, ffForward));
  AddNew(AExtendItem);
  return true;
}

bool TVDEIntersectCmdExecutor::Intersect(TVectorLine& AIntersectItem, const TKRNVector2d&) {
  TVectorDrawingItem* EdgeItem = TheEdge(Drawing());
  if (!EdgeItem || (EdgeItem->ItemType() != itLine && EdgeItem->ItemType() != itArc)) return false;
  auto& Edge = static_cast<TVectorLine&>(*EdgeItem);
  const TKRNVector2d P = MeetStarts(Edge.GetXLine(), AIntersectItem.GetXLine());
  for (TVectorLine* L : {&Edge, &AIntersectItem}) {
    AddOld(*L);
    L->SetLine(*L->GetXLine().ExtendTo(P, ffForward));
    AddNew(*L);
  }
  return true;
}

// ---- trim -------------------------------------------------------------------

bool VDEBreakItemAt(TVectorDrawing& ADrawing, TVectorLine& AItem, const TKRNVector2d& APoint, TVectorLine*& ANew) {
  ANew = nullptr;
  const TKRNCustomLine2d& L = AItem.GetXLine();
  // Only a point strictly inside the segment splits it.
  if (TKRNPositionFunc2d::PointPosition(APoint, L, KRNEpsilon) != ppIn) return false;
  TKRNPtr<TKRNCustomLine2d> P1, P2;
  if (!TKRNBreakFunc2d::BreakAt(L, APoint, P1, P2)) return false;
  std::unique_ptr<TVectorDrawingItem> C = AItem.DetachedClone();
  C->SetID(ADrawing.GenID());
  auto* NewLine = static_cast<TVectorLine*>(C.get());
  NewLine->SetLine(*P2);
  AItem.SetLine(*P1);
  ADrawing.Add(std::move(C));
  if (AItem.Selected()) ADrawing.SelSet().Add(NewLine);
  ANew = NewLine;
  return true;
}

bool TVDETrimCmdExecutor::Trim(TVectorLine& ATrimItem, const TKRNVector2d& ARefPt) {
  TVectorDrawing& D = Drawing();
  TVectorDrawingItem* Edge = TheEdge(D);
  if (!Edge || Edge->ItemType() == itPolyline) return false;
  const TKRNCustomLine2d& L = ATrimItem.GetXLine();
  std::vector<TKRNVector2d> Hits;
  if (Edge->ItemType() == itCircle) {
    const auto* C = static_cast<TVectorCircle*>(Edge);
    Hits = TKRNIntersectFunc2d::Intersect(L, TKRNCircle2d(C->CenterPt(), C->Radius()), false, KRNEpsilon);
  } else {
    TKRNVector2d P1{}, P2{};
    switch (TKRNIntersectFunc2d::Intersect(L, static_cast<TVectorLine*>(Edge)->GetXLine(), P1, P2, KRNEpsilon)) {
      case itOne: Hits = {P1}; break;
      case itTwo: Hits = {P1, P2}; break;
      default: break;
    }
  }
  std::erase_if(Hits, [&](const TKRNVector2d& P) {
    return PointIsSame(P, L.StartPt(), KRNEpsilon) || PointIsSame(P, L.EndPt(), KRNEpsilon);
  });
  if (Hits.empty()) return false;
  std::sort(Hits.begin(), Hits.end(),
            [&](const TKRNVector2d& A, const TKRNVector2d& B) { return ChordParam(L, A) < ChordParam(L, B); });
  const double Click = std::clamp(ChordParam(L, ARefPt), 0.0, 1.0);
  const double T1 = ChordParam(L, Hits.front());
  const double T2 = ChordParam(L, Hits.back());
  AddOld(ATrimItem);
  D.BeginUpdate();
  TKRNPtr<TKRNCustomLine2d> A, B;
  if (Hits.size() == 1 || Click < T1 || Click > T2) {
    // One piece stays: from the start to the crossing, or from the crossing to the end.
    const bool KeepStart = Hits.size() == 1 ? Click > T1 : Click > T2;
    const TKRNVector2d& P = KeepStart ? (Hits.size() == 1 ? Hits.front() : Hits.back()) : Hits.front();
    TKRNBreakFunc2d::BreakAt(L, P, A, B);
    if (A && B) ATrimItem.SetLine(KeepStart ? *A : *B);
  } else {
    // Between two crossings: both outer pieces stay, the far one as a new item.
    TKRNPtr<TKRNCustomLine2d> Rest;
    TKRNBreakFunc2d::BreakAt(L, Hits.back(), A, Rest);
    TKRNPtr<TKRNCustomLine2d> First, Middle;
    if (A) TKRNBreakFunc2d::BreakAt(*A, Hits.front(), First, Middle);
    if (First && Rest) {
      std::unique_ptr<TVectorDrawingItem> C = ATrimItem.DetachedClone();
      C->SetID(D.GenID());
      static_cast<TVectorLine*>(C.get())->SetLine(*Rest);
      FNewLineID = C->ID();
      ATrimItem.SetLine(*First);
      D.Add(std::move(C));
    }
  }
  D.EndUpdate();
  AddNew(ATrimItem);
  return true;
}

void TVDETrimCmdExecutor::Redo() {
  TVDECoordChangeCmdExecutor::Redo();
  FNewLine.PutBack(Drawing());
}

void TVDETrimCmdExecutor::Undo() {
  TVDECoordChangeCmdExecutor::Undo();
  if (FNewLineID >= 0) FNewLine.TakeOut(Drawing(), {FNewLineID});
}

// ---- break ------------------------------------------------------------------

bool TVDEBreakCmdExecutor::Break() {
  TVectorDrawing& D = Drawing();
  TLineItemInfos Infos;
  std::vector<TVectorLine*> Lines;
  for (int I = 0; I < D.SelSet().Count(); ++I) {
    TVectorDrawingItem* Item = D.SelSet().Items(I);
    if (Item->ItemType() == itLine || Item->ItemType() == itArc) {
      auto* L = static_cast<TVectorLine*>(Item);
      Lines.push_back(L);
      Infos.Add(L->ID(), L->GetXLine().Clone(), L->GetXLine().Box());
    } else if (Item->ItemType() == itCircle) {
      const auto* C = static_cast<TVectorCircle*>(Item);
      const TKRNVector2d O = C->CenterPt();
      const double R = C->Radius();
      auto Upper = KRNMakeSegment({O.X + R, O.Y}, {O.X - R, O.Y}, R, atACS);
      auto Lower = KRNMakeSegment({O.X - R, O.Y}, {O.X + R, O.Y}, R, atACS);
      const TKRNBox2d B1 = Upper->Box(), B2 = Lower->Box();
      Infos.Add(C->ID(), std::move(Upper), B1);
      Infos.Add(-C->ID(), std::move(Lower), B2);
    }
  }
  if (Infos.Count() == 0) return false;
  bool Any = false;
  D.BeginUpdate();
  for (int K = int(Lines.size()) - 1; K >= 0; --K) {
    TVectorLine* L = Lines[size_t(K)];
    int Info = -1;
    for (int I = 0; I < Infos.Count() && Info < 0; ++I)
      if (Infos.GetItems(I).FID == L->ID()) Info = I;
    TKRNPoint2dDynArray Pts;
    Infos.CalcIntPts(Info, Pts);
    if (Pts.empty()) continue;
    AddOld(*L);
    for (int P = int(Pts.size()) - 1; P >= 0; --P) {
      TVectorLine* New = nullptr;
      if (VDEBreakItemAt(D, *L, Pts[size_t(P)], New)) FAddedIDs.push_back(New->ID());
    }
    AddNew(*L);
    Any = true;
  }
  D.EndUpdate();
  return Any;
}

void TVDEBreakCmdExecutor::Redo() {
  TVDECoordChangeCmdExecutor::Redo();
  FAdded.PutBack(Drawing());
}

void TVDEBreakCmdExecutor::Undo() {
  TVDECoordChangeCmdExecutor::Undo();
  FAdded.TakeOut(Drawing(), std::vector<int>(FAddedIDs.rbegin(), FAddedIDs.rend()));
}

// ---- merge ------------------------------------------------------------------

bool TVDEMergeCmdExecutor::Merge() {
  TVectorDrawing& D = Drawing();
  D.BeginUpdate();
  for (int I = D.SelSet().Count() - 1; I >= 0; --I) {
    const int T = D.SelSet().Items(I)->ItemType();
    if (T != itLine && T != itArc) D.SelSet().Delete(I);
  }
  bool Any = false;
  while (D.SelSet().Count() > 0) {
    auto* A = static_cast<TVectorLine*>(D.SelSet().Items(D.SelSet().Count() - 1));
    std::unique_ptr<TVDICoordData> Old = A->CreateCoordData();
    std::vector<int> Absorbed;
    for (int I = D.SelSet().Count() - 2; I >= 0; --I) {
      auto* B = static_cast<TVectorLine*>(D.SelSet().Items(I));
      const TKRNCustomLine2d& LA = A->GetXLine();
      const TKRNCustomLine2d& LB = B->GetXLine();
      TKRNPtr<TKRNCustomLine2d> R = PointIsSame(LB.EndPt(), LA.StartPt(), 0.001)
                                        ? TKRNArc2d::CreateBy3Points(LB.StartPt(), LB.EndPt(), LA.EndPt())
                                        : TKRNArc2d::CreateBy3Points(LA.StartPt(), LA.EndPt(), LB.EndPt());
      A->SetLine(*R);
      Absorbed.push_back(B->ID());
    }
    if (!Absorbed.empty()) {
      FOldCoordList.push_back(std::move(Old));
      FDeleted.TakeOut(D, Absorbed);
      FDelIDs.insert(FDelIDs.end(), Absorbed.begin(), Absorbed.end());
      AddNew(*A);
      Any = true;
    }
    D.SelSet().Remove(A);
  }
  D.EndUpdate();
  return Any;
}

void TVDEMergeCmdExecutor::Redo() {
  TVDECoordChangeCmdExecutor::Redo();
  FDeleted.TakeOut(Drawing(), FDelIDs);
}

void TVDEMergeCmdExecutor::Undo() {
  FDeleted.PutBack(Drawing());
  TVDECoordChangeCmdExecutor::Undo();
}

// ---- group zoom -------------------------------------------------------------

bool TVDEGroupZoomExecutor::GroupZoom() {
  std::vector<TFormField> F = {{QStringLiteral("缩放比例"), QStringLiteral("1"), {}},
                               {QStringLiteral("参考点X坐标"), QStringLiteral("0"), {}},
                               {QStringLiteral("参考点Y坐标"), QStringLiteral("0"), {}}};
  const TFormValidator Check = [](const std::vector<TFormField>& A, QString& AMsg) {
    double V, X, Y;
    if (!TryStrToFloat(Trim(A[0].Value), V) || !(V > 0)) {
      AMsg = QStringLiteral(" 请输入缩放比例，合法数值为正实数");
      return false;
    }
    if (!TryStrToFloat(Trim(A[1].Value), X) || !TryStrToFloat(Trim(A[2].Value), Y)) {
      AMsg = QStringLiteral("参考点坐标必须是数值");
      return false;
    }
    return true;
  };
  double Factor = 1;
  TKRNVector2d Ref{0, 0};
  if (Dialogs().FormDialog(QStringLiteral("缩放比例"), F, Check)) {
    Factor = StrToFloat(Trim(F[0].Value));
    Ref = {StrToFloat(Trim(F[1].Value)), StrToFloat(Trim(F[2].Value))};
  }
  TVectorDrawing& D = Drawing();
  D.BeginUpdate();
  for (int I = D.SelSet().Count() - 1; I >= 0; --I) {
    const int T = D.SelSet().Items(I)->ItemType();
    if (T != itLine && T != itArc) D.SelSet().Delete(I);
  }
  const int Count = D.SelSet().Count();
  int Done = 0;
  for (int I = Count - 1; I >= 0; --I) {
    auto* L = static_cast<TVectorLine*>(D.SelSet().Items(I));
    AddOld(*L);
    const TKRNCustomLine2d& X = L->GetXLine();
    auto Scale = [&](const TKRNVector2d& P) { return TKRNVector2d{Ref.X + (P.X - Ref.X) * Factor, Ref.Y + (P.Y - Ref.Y) * Factor}; };
    TKRNPtr<TKRNCustomLine2d> N = KRNMakeSegment(Scale(X.StartPt()), Scale(X.EndPt()), X.IsArcType() ? X.Radius() * Factor : 0,
                                                  X.ArcType());
    L->SetLine(*N);
    AddNew(*L);
    ++Done;
    D.SelSet().Delete(I);
  }
  D.EndUpdate();
  return Count > 0 && Done == Count;
}

void TVDEGroupZoomExecutor::Redo() {
  TVDECoordChangeCmdExecutor::Redo();
  Apply(FNewCoordList);
}

void TVDEGroupZoomExecutor::Undo() {
  TVDECoordChangeCmdExecutor::Undo();
  Apply(FOldCoordList);
}
