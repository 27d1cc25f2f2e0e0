#include "KRNSearchPoly2d.h"

#include "KRNIntersectFunc2d.h"
#include "KRNModifyFunc2d.h"
#include "KRNPositionFunc2d.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <unordered_map>

// ---------------------------------------------------------------------------
// Segment list with a uniform grid

int TKRNExtSeg2dList::Add(TKRNCustomLine2d* ASeg, std::intptr_t ATag, bool AOwnsSeg) {
  auto E = std::make_unique<TKRNExtSeg2d>();
  E->Seg = ASeg;
  if (AOwnsSeg)
    E->Holder.reset(ASeg);
  E->Box = ASeg->Box();
  E->Tag = ATag;
  E->Index = Count();
  FItems.push_back(std::move(E));
  FGridValid = false;
  return Count() - 1;
}

int TKRNExtSeg2dList::Add(TKRNPtr<TKRNCustomLine2d> ASeg, std::intptr_t ATag) {
  TKRNCustomLine2d* S = ASeg.release();
  return Add(S, ATag, true);
}

void TKRNExtSeg2dList::Delete(int AIndex) {
  FItems.erase(FItems.begin() + AIndex);
  SetIndex();
  FGridValid = false;
}

void TKRNExtSeg2dList::Clear() {
  FItems.clear();
  FGridValid = false;
}

void TKRNExtSeg2dList::SetIndex() {
  for (int I = 0; I < Count(); ++I)
    FItems[static_cast<size_t>(I)]->Index = I;
}

std::unique_ptr<TKRNExtSeg2dList> TKRNExtSeg2dList::ShallowClone() const {
  auto R = std::make_unique<TKRNExtSeg2dList>(FEpsilon);
  for (const auto& E : FItems)
    R->Add(E->Seg, E->Tag, false);
  return R;
}

void TKRNExtSeg2dList::BuildGrid() const {
  FCells.clear();
  FStamp.assign(FItems.size(), 0);
  FStampValue = 0;
  if (FItems.empty()) {
    FCols = FRows = 0;
    FGridValid = true;
    return;
  }
  FExtent = FItems[0]->Box;
  for (const auto& E : FItems) {
    FExtent.MinX() = std::min(FExtent.MinX(), E->Box.MinX());
    FExtent.MinY() = std::min(FExtent.MinY(), E->Box.MinY());
    FExtent.MaxX() = std::max(FExtent.MaxX(), E->Box.MaxX());
    FExtent.MaxY() = std::max(FExtent.MaxY(), E->Box.MaxY());
  }
  // about one cell per segment, square cells
  const double W = std::max(FExtent.MaxX() - FExtent.MinX(), FEpsilon);
  const double H = std::max(FExtent.MaxY() - FExtent.MinY(), FEpsilon);
  const double Side = std::max(std::sqrt(W * H / static_cast<double>(FItems.size())), FEpsilon);
  FCols = std::clamp(static_cast<int>(W / Side) + 1, 1, 4096);
  FRows = std::clamp(static_cast<int>(H / Side) + 1, 1, 4096);
  FCellW = W / FCols;
  FCellH = H / FRows;
  FCells.assign(static_cast<size_t>(FCols) * static_cast<size_t>(FRows), {});
  for (int I = 0; I < Count(); ++I) {
    int X0, Y0, X1, Y1;
    CellRange(FItems[static_cast<size_t>(I)]->Box, X0, Y0, X1, Y1);
    for (int Y = Y0; Y <= Y1; ++Y)
      for (int X = X0; X <= X1; ++X)
        FCells[static_cast<size_t>(Y) * static_cast<size_t>(FCols) + static_cast<size_t>(X)].push_back(I);
  }
  FGridValid = true;
}

void TKRNExtSeg2dList::CellRange(const TKRNBox2d& ABox, int& AX0, int& AY0, int& AX1, int& AY1) const {
  const auto Clamp = [](double V, int N) {
    if (!(V > 0))
      return 0;
    return V >= N ? N - 1 : static_cast<int>(V);
  };
  AX0 = Clamp((ABox.MinX() - FExtent.MinX()) / FCellW, FCols);
  AX1 = Clamp((ABox.MaxX() - FExtent.MinX()) / FCellW, FCols);
  AY0 = Clamp((ABox.MinY() - FExtent.MinY()) / FCellH, FRows);
  AY1 = Clamp((ABox.MaxY() - FExtent.MinY()) / FCellH, FRows);
}

std::vector<int> TKRNExtSeg2dList::GetSegs(const TKRNBox2d& ABox) const {
  if (!FGridValid)
    BuildGrid();
  std::vector<int> R;
  if (FItems.empty() || ABox.MaxX() < FExtent.MinX() - FEpsilon || ABox.MinX() > FExtent.MaxX() + FEpsilon ||
      ABox.MaxY() < FExtent.MinY() - FEpsilon || ABox.MinY() > FExtent.MaxY() + FEpsilon)
    return R;
  if (++FStampValue == 0) {
    std::fill(FStamp.begin(), FStamp.end(), 0);
    FStampValue = 1;
  }
  int X0, Y0, X1, Y1;
  CellRange(ABox, X0, Y0, X1, Y1);
  for (int Y = Y0; Y <= Y1; ++Y)
    for (int X = X0; X <= X1; ++X)
      for (int I : FCells[static_cast<size_t>(Y) * static_cast<size_t>(FCols) + static_cast<size_t>(X)]) {
        if (FStamp[static_cast<size_t>(I)] == FStampValue)
          continue;
        FStamp[static_cast<size_t>(I)] = FStampValue;
        if (BoxIsOverlapping(FItems[static_cast<size_t>(I)]->Box, ABox, true, FEpsilon))
          R.push_back(I);
      }
  std::sort(R.begin(), R.end());
  return R;
}

namespace {

// Position along a segment, for ordering split points.
double ParamOf(const TKRNCustomLine2d& ASeg, const TKRNVector2d& P) {
  if (const auto* A = dynamic_cast<const TKRNArc2d*>(&ASeg); A && A->IsValidateArc()) {
    const TKRNVector2d C = A->CenterPt();
    return VectorAngleFromTo(VectorSub(A->StartPt(), C), VectorSub(P, C), A->Clockwise());
  }
  return VectorDistance(ASeg.StartPt(), P);
}

}  // namespace

void TKRNExtSeg2dList::SplitAll(double AEpsilon) {
  const int N = Count();
  std::vector<std::vector<TKRNVector2d>> Cuts(static_cast<size_t>(N));
  const auto AddCut = [&](int I, const TKRNVector2d& P) {
    const TKRNCustomLine2d& S = *FItems[static_cast<size_t>(I)]->Seg;
    if (PointIsSame(P, S.StartPt(), AEpsilon) || PointIsSame(P, S.EndPt(), AEpsilon))
      return;
    for (const TKRNVector2d& Q : Cuts[static_cast<size_t>(I)])
      if (PointIsSame(P, Q, AEpsilon))
        return;
    Cuts[static_cast<size_t>(I)].push_back(P);
  };
  for (int I = 0; I < N; ++I)
    for (int J : GetSegs(FItems[static_cast<size_t>(I)]->Box)) {
      if (J <= I)
        continue;
      TKRNVector2d P1{}, P2{};
      const TKRNIntersectType T =
          TKRNIntersectFunc2d::Intersect(*FItems[static_cast<size_t>(I)]->Seg, *FItems[static_cast<size_t>(J)]->Seg,
                                         P1, P2, AEpsilon);
      if (T == itZero)
        continue;
      for (const TKRNVector2d& P : {P1, P2}) {
        AddCut(I, P);
        AddCut(J, P);
        if (T == itOne)
          break;
      }
    }
  std::vector<std::unique_ptr<TKRNExtSeg2d>> Old;
  Old.swap(FItems);
  for (int I = 0; I < N; ++I) {
    TKRNExtSeg2d& E = *Old[static_cast<size_t>(I)];
    auto& C = Cuts[static_cast<size_t>(I)];
    if (C.empty()) {
      FItems.push_back(std::move(Old[static_cast<size_t>(I)]));
      continue;
    }
    std::sort(C.begin(), C.end(), [&](const TKRNVector2d& A, const TKRNVector2d& B) {
      return ParamOf(*E.Seg, A) < ParamOf(*E.Seg, B);
    });
    TKRNPtr<TKRNCustomLine2d> Rest = E.Seg->Clone();
    for (const TKRNVector2d& P : C) {
      TKRNPtr<TKRNCustomLine2d> A, B;
      if (!TKRNBreakFunc2d::BreakAt(*Rest, P, A, B))
        continue;
      Add(std::move(A), E.Tag);
      Rest = std::move(B);
    }
    Add(std::move(Rest), E.Tag);
  }
  SetIndex();
  FGridValid = false;
}

// ---------------------------------------------------------------------------
// Connections

void TKRNSegListConnectInfos::BuildConnectInfos(const TKRNExtSeg2dList& ASegList) {
  const int N = ASegList.Count();
  const double Eps = ASegList.Epsilon();
  FNodes.assign(static_cast<size_t>(N) * 2, -1);
  FAdjacent.clear();
  FNodePts.clear();
  FAlive.assign(static_cast<size_t>(N), true);
  // end points hashed on cells of four tolerances; a match is looked for in the
  // neighbouring cells too
  const double Cell = 4 * Eps;
  std::unordered_map<std::uint64_t, std::vector<int>> Hash;
  const auto Key = [](std::int64_t X, std::int64_t Y) {
    return (static_cast<std::uint64_t>(X) << 32) ^ static_cast<std::uint64_t>(Y & 0xFFFFFFFF);
  };
  Hash.reserve(static_cast<size_t>(N) * 2);
  for (int I = 0; I < N; ++I)
    for (int End = 0; End < 2; ++End) {
      const TKRNCustomLine2d& S = *ASegList.Get(I).Seg;
      const TKRNVector2d P = End == 0 ? S.StartPt() : S.EndPt();
      const std::int64_t CX = static_cast<std::int64_t>(std::floor(P.X / Cell));
      const std::int64_t CY = static_cast<std::int64_t>(std::floor(P.Y / Cell));
      int Node = -1;
      for (std::int64_t DX = -1; DX <= 1 && Node < 0; ++DX)
        for (std::int64_t DY = -1; DY <= 1 && Node < 0; ++DY) {
          const auto It = Hash.find(Key(CX + DX, CY + DY));
          if (It == Hash.end())
            continue;
          for (int Candidate : It->second)
            if (PointIsSame(FNodePts[static_cast<size_t>(Candidate)], P, Eps)) {
              Node = Candidate;
              break;
            }
        }
      if (Node < 0) {
        Node = static_cast<int>(FNodePts.size());
        FNodePts.push_back(P);
        FAdjacent.emplace_back();
        Hash[Key(CX, CY)].push_back(Node);
      }
      FNodes[static_cast<size_t>(I) * 2 + static_cast<size_t>(End)] = Node;
      FAdjacent[static_cast<size_t>(Node)].push_back({I, End});
    }
}

bool TKRNSegListConnectInfos::IsFree(int ASeg, int AEnd) const {
  const int Node = NodeOf(ASeg, AEnd);
  for (const TEndRef& R : At(Node))
    if (R.Seg != ASeg)
      return false;
  // a segment closed on itself (both ends at one node) is not free
  return NodeOf(ASeg, 0) != NodeOf(ASeg, 1);
}

std::vector<int> TKRNSegListConnectInfos::FindBranches() const {
  std::vector<int> R;
  for (int I = 0; I < static_cast<int>(FAlive.size()); ++I)
    if (FAlive[static_cast<size_t>(I)] && (IsFree(I, 0) || IsFree(I, 1)))
      R.push_back(I);
  return R;
}

void TKRNSegListConnectInfos::Detach(int AIndex) {
  if (!FAlive[static_cast<size_t>(AIndex)])
    return;
  FAlive[static_cast<size_t>(AIndex)] = false;
  for (int End = 0; End < 2; ++End) {
    auto& List = FAdjacent[static_cast<size_t>(NodeOf(AIndex, End))];
    List.erase(std::remove_if(List.begin(), List.end(), [&](const TEndRef& R) { return R.Seg == AIndex; }),
               List.end());
  }
}

void TKRNSegListConnectInfos::Execute() {
  std::vector<int> Work = FindBranches();
  while (!Work.empty()) {
    const int S = Work.back();
    Work.pop_back();
    if (!FAlive[static_cast<size_t>(S)])
      continue;
    if (!IsFree(S, 0) && !IsFree(S, 1))
      continue;
    const int N0 = NodeOf(S, 0), N1 = NodeOf(S, 1);
    Detach(S);
    // its neighbours may have become dead ends in turn
    for (int Node : {N0, N1})
      for (const TEndRef& R : At(Node))
        if (IsFree(R.Seg, R.End))
          Work.push_back(R.Seg);
  }
}

// ---------------------------------------------------------------------------
// Search

TKRNSearchPoly2d::TKRNSearchPoly2d(double AEpsilon)
    : FEpsilon(AEpsilon), FSegList(std::make_unique<TKRNExtSeg2dList>(AEpsilon)) {}

TKRNSearchPoly2d::TKRNSearchPoly2d(const TKRNExtSeg2dList& ASegList, bool AShallowAssign, double AEpsilon)
    : FEpsilon(AEpsilon), FSegList(std::make_unique<TKRNExtSeg2dList>(AEpsilon)) {
  for (int I = 0; I < ASegList.Count(); ++I) {
    const TKRNExtSeg2d& E = ASegList.Get(I);
    if (AShallowAssign)
      FSegList->Add(E.Seg, E.Tag, false);
    else
      FSegList->Add(E.Seg->Clone(), E.Tag);
  }
}

void TKRNSearchPoly2d::Add(const TKRNCustomLine2d& ASeg, std::intptr_t ATag) {
  FSegList->Add(ASeg.Clone(), ATag);
  FRebuildConnectInfos = true;
}

void TKRNSearchPoly2d::Add(TKRNCustomLine2d* ASeg, std::intptr_t ATag, bool AOwnsSeg) {
  FSegList->Add(ASeg, ATag, AOwnsSeg);
  FRebuildConnectInfos = true;
}

void TKRNSearchPoly2d::Prepare() {
  if (!FRebuildConnectInfos)
    return;
  FSegListConnectInfos.BuildConnectInfos(*FSegList);
  FSegListConnectInfos.Execute();
  FRebuildConnectInfos = false;
}

TKRNVector2d TKRNSearchPoly2d::OutTangent(const TStep& AStep) const {
  const TKRNCustomLine2d& S = *FSegList->Get(AStep.Seg).Seg;
  return AStep.Reversed ? VectorNegate(S.EndVector()) : S.StartVector();
}

TKRNVector2d TKRNSearchPoly2d::OutChordDir(const TStep& AStep) const {
  const TKRNCustomLine2d& S = *FSegList->Get(AStep.Seg).Seg;
  const TKRNVector2d From = AStep.Reversed ? S.EndPt() : S.StartPt();
  return VectorNormalized(VectorSub(S.MiddlePoint(), From));
}

namespace {

// Clockwise angle from ARef to AV, in (0, 2 pi]; a direction equal to ARef is a
// full turn, the last choice.
double ClockwiseFrom(const TKRNVector2d& ARef, const TKRNVector2d& AV) {
  double A = std::atan2(ARef.Y, ARef.X) - std::atan2(AV.Y, AV.X);
  while (A <= 1e-12)
    A += KRNTwoPi;
  while (A > KRNTwoPi + 1e-12)
    A -= KRNTwoPi;
  return A;
}

}  // namespace

bool TKRNSearchPoly2d::NextStep(int ANode, const TKRNVector2d& ARef, int AExcludeSeg, bool AExcludeReversed,
                                TStep& AStep) const {
  bool Found = false;
  double Best = 0, BestTie = 0;
  for (const auto& R : FSegListConnectInfos.At(ANode)) {
    const TStep Candidate{R.Seg, R.End == 1};  // leaving from its end walks it reversed
    if (Candidate.Seg == AExcludeSeg && Candidate.Reversed == AExcludeReversed)
      continue;
    const double A = ClockwiseFrom(ARef, OutTangent(Candidate));
    // equal tangents (a line and an arc touching it): the chord decides
    const double Tie = ClockwiseFrom(ARef, OutChordDir(Candidate));
    if (!Found || A < Best - 1e-9 || (std::fabs(A - Best) <= 1e-9 && Tie < BestTie)) {
      Found = true;
      Best = A;
      BestTie = Tie;
      AStep = Candidate;
    }
  }
  return Found;
}

std::vector<TKRNSearchPoly2d::TStep> TKRNSearchPoly2d::Walk(TStep AStart) const {
  std::vector<TStep> Steps{AStart};
  const size_t Limit = static_cast<size_t>(FSegList->Count()) * 2 + 2;
  TStep Cur = AStart;
  while (Steps.size() <= Limit) {
    const TKRNCustomLine2d& S = *FSegList->Get(Cur.Seg).Seg;
    const int Node = FSegListConnectInfos.NodeOf(Cur.Seg, Cur.Reversed ? 0 : 1);
    const TKRNVector2d In = Cur.Reversed ? VectorNegate(S.StartVector()) : S.EndVector();
    TStep Next{};
    // back along the same segment only when nothing else leaves the node
    if (!NextStep(Node, VectorNegate(In), Cur.Seg, !Cur.Reversed, Next))
      return {};
    if (Next.Seg == AStart.Seg && Next.Reversed == AStart.Reversed)
      return Steps;
    Steps.push_back(Next);
    Cur = Next;
  }
  return {};
}

std::unique_ptr<TKRNPolygon2d> TKRNSearchPoly2d::MakePolygon(const std::vector<TStep>& ASteps) const {
  auto P = std::make_unique<TKRNPolygon2d>();
  for (const TStep& St : ASteps) {
    const TKRNCustomLine2d& S = *FSegList->Get(St.Seg).Seg;
    const TKRNVector2d From = St.Reversed ? S.EndPt() : S.StartPt();
    const auto* Arc = dynamic_cast<const TKRNArc2d*>(&S);
    if (Arc && Arc->IsValidateArc())
      P->List().AddArcPoint(From, St.Reversed ? ArcTypeOpposite(Arc->ArcType()) : Arc->ArcType(), Arc->Radius());
    else
      P->List().AddLinePoint(From);
  }
  return P;
}

bool TKRNSearchPoly2d::FindSmallPoly(const TKRNVector2d& ARefPt, std::unique_ptr<TKRNPolygon2d>& ASmallPoly,
                                     std::vector<std::intptr_t>& AIDArray, bool ANeedRing, bool ANeedIn) {
  std::vector<bool> Reversed;
  return FindSmallPoly(ARefPt, ASmallPoly, AIDArray, Reversed, ANeedRing, ANeedIn);
}

bool TKRNSearchPoly2d::FindSmallPoly(const TKRNVector2d& ARefPt, std::unique_ptr<TKRNPolygon2d>& ASmallPoly,
                                     std::vector<std::intptr_t>& AIDArray, std::vector<bool>& AReversed,
                                     bool ANeedRing, bool ANeedIn) {
  ASmallPoly.reset();
  AIDArray.clear();
  AReversed.clear();
  Prepare();

  // the ray to the right, as a long segment; every crossing of a live segment
  TKRNBox2d Ray{ARefPt, {std::numeric_limits<double>::max(), ARefPt.Y}};
  struct THit {
    double Dist;
    int Seg;
    TKRNVector2d Pt;
  };
  std::vector<THit> Hits;
  const std::vector<int> Candidates = FSegList->GetSegs(Ray);
  double FarX = ARefPt.X + 1;
  for (int I : Candidates)
    FarX = std::max(FarX, FSegList->Get(I).Box.MaxX() + 1);
  const TKRNLine2d RaySeg(ARefPt, {FarX, ARefPt.Y});
  for (int I : Candidates) {
    if (!FSegListConnectInfos.Alive(I))
      continue;
    const TKRNCustomLine2d& S = *FSegList->Get(I).Seg;
    TKRNVector2d P1{}, P2{};
    const TKRNIntersectType T = TKRNIntersectFunc2d::Intersect(RaySeg, S, P1, P2, FEpsilon);
    if (T == itZero)
      continue;
    const int N = T == itTwo || T == itOverlap ? 2 : 1;
    for (int K = 0; K < N; ++K) {
      const TKRNVector2d& P = K == 0 ? P1 : P2;
      Hits.push_back({P.X - ARefPt.X, I, P});
    }
  }
  std::sort(Hits.begin(), Hits.end(), [](const THit& A, const THit& B) { return A.Dist < B.Dist; });

  std::vector<bool> Used(static_cast<size_t>(FSegList->Count()), false);
  const TKRNVector2d Back{-1, 0};
  std::vector<TStep> Found;
  std::unique_ptr<TKRNPolygon2d> Poly;
  for (size_t H = 0; H < Hits.size(); ++H) {
    const THit& Hit = Hits[H];
    if (Used[static_cast<size_t>(Hit.Seg)])
      continue;
    const TKRNCustomLine2d& S = *FSegList->Get(Hit.Seg).Seg;
    TStep Start{};
    bool Ok;
    const bool AtStart = PointIsSame(Hit.Pt, S.StartPt(), FEpsilon);
    const bool AtEnd = PointIsSame(Hit.Pt, S.EndPt(), FEpsilon);
    if (AtStart || AtEnd) {
      // level with a vertex: choose among everything that leaves it
      Ok = NextStep(FSegListConnectInfos.NodeOf(Hit.Seg, AtStart ? 0 : 1), Back, -1, false, Start);
    } else {
      const TKRNVector2d D = S.IsArcType() ? S.TangentVectorAtPoint(Hit.Pt) : S.StartVector();
      Start = ClockwiseFrom(Back, D) <= ClockwiseFrom(Back, VectorNegate(D)) ? TStep{Hit.Seg, false}
                                                                                : TStep{Hit.Seg, true};
      Ok = true;
    }
    if (!Ok)
      continue;
    std::vector<TStep> Steps = Walk(Start);
    if (Steps.empty())
      continue;
    auto Candidate = MakePolygon(Steps);
    // a walk around an island from outside turns clockwise: look further along the ray
    const bool Encloses = Candidate->SignedArea() > 0 &&
                          TKRNPositionFunc2d::PointPosition(ARefPt, *Candidate, FEpsilon) != ppOut;
    if (Encloses || !ANeedIn) {
      Found = std::move(Steps);
      Poly = std::move(Candidate);
      break;
    }
    for (const TStep& St : Steps)
      Used[static_cast<size_t>(St.Seg)] = true;
  }
  if (!Poly)
    return false;
  if (ANeedIn && TKRNPositionFunc2d::PointPosition(ARefPt, *Poly, FEpsilon) == ppOut)
    return false;
  if (!ANeedRing) {
    const TKRNBox2d Box = Poly->Box();
    std::vector<bool> OnPoly(static_cast<size_t>(FSegList->Count()), false);
    for (const TStep& St : Found)
      OnPoly[static_cast<size_t>(St.Seg)] = true;
    for (int I : FSegList->GetSegs(Box)) {
      if (OnPoly[static_cast<size_t>(I)])
        continue;
      const TKRNVector2d Sample = FSegList->Get(I).Seg->MiddlePoint();
      if (TKRNPositionFunc2d::IsPointInBox(Sample, Box, FEpsilon) &&
          TKRNPositionFunc2d::PointPosition(Sample, *Poly, FEpsilon) == ppIn)
        return false;
    }
  }
  for (const TStep& St : Found) {
    AIDArray.push_back(FSegList->Get(St.Seg).Tag);
    AReversed.push_back(St.Reversed);
  }
  ASmallPoly = std::move(Poly);
  return true;
}
