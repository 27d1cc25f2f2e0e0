#include "KRNIntersectFunc2d.h"

#include "KRNPolygon2d.h"
#include "KRNPositionFunc2d.h"

#include <algorithm>
#include <cmath>

namespace {

using PF = TKRNPositionFunc2d;

bool OnSegment(const TKRNVector2d& P, const TKRNVector2d& S, const TKRNVector2d& E, double AEpsilon) {
  return PF::PointPosition(P, S, E, AEpsilon) != ppOut;
}

bool OnArc(const TKRNVector2d& P, const TKRNVector2d& S, const TKRNVector2d& E, double R, TKRNArcType T,
           double AEpsilon) {
  return PF::PointPosition(P, TKRNArc2d(S, E, R, T), AEpsilon) != ppOut;
}

// The arc a segment stands for: only an arc with a valid centre counts.
const TKRNArc2d* ValidArcOf(const TKRNCustomLine2d& S) {
  const auto* A = dynamic_cast<const TKRNArc2d*>(&S);
  return A && A->IsValidateArc() ? A : nullptr;
}

void KeepDistinct(std::vector<TKRNVector2d>& AOut, const TKRNVector2d& P, double AEpsilon) {
  for (const TKRNVector2d& Q : AOut)
    if (PointIsSame(P, Q, AEpsilon))
      return;
  AOut.push_back(P);
}

// Keeps the points that differ from those already kept.
int AddDistinct(TKRNVector2d* AOut, int ACount, const TKRNVector2d& P, double AEpsilon) {
  for (int I = 0; I < ACount; ++I)
    if (PointIsSame(AOut[I], P, AEpsilon))
      return ACount;
  AOut[ACount] = P;
  return ACount + 1;
}

}  // namespace

TKRNIntersectType TKRNIntersectFunc2d::Intersect(const TKRNBeeline2d& ABeeline1, const TKRNBeeline2d& ABeeline2,
                                                 TKRNVector2d& APt) {
  const TKRNVector2d& D1 = ABeeline1.Vector;
  const TKRNVector2d& D2 = ABeeline2.Vector;
  const double C = VectorCross(D2, D1);
  if (IsZero(C, KRNFineEpsilon)) {
    const TKRNVector2d W = VectorSub(ABeeline2.Point, ABeeline1.Point);
    return IsZero(VectorCross(D2, W), KRNEpsilon) ? itOverlap : itZero;
  }
  const TKRNVector2d& P1 = ABeeline1.Point;
  const TKRNVector2d& P2 = ABeeline2.Point;
  const double K1 = D1.X * P1.Y - D1.Y * P1.X;
  const double K2 = D2.X * P2.Y - D2.Y * P2.X;
  APt.Y = (K2 * D1.Y - K1 * D2.Y) / C;
  APt.X = (K2 * D1.X - K1 * D2.X) / C;
  return itOne;
}

TKRNIntersectType TKRNIntersectFunc2d::Intersect(const TKRNBeeline2d& ABeeline, const TKRNVector2d& ACenterPt,
                                                 double ARadius, TKRNVector2d& APt1, TKRNVector2d& APt2,
                                                 double AEpsilon) {
  const double Len = VectorLength(ABeeline.Vector);
  if (Len == 0.0)
    return itZero;
  const TKRNVector2d U = VectorScale(ABeeline.Vector, 1.0 / Len);
  const TKRNVector2d W = VectorSub(ACenterPt, ABeeline.Point);
  const TKRNVector2d Foot = VectorAdd(ABeeline.Point, VectorScale(U, VectorDot(W, U)));
  const double D = std::fabs(VectorCross(U, W));
  const double R = std::fabs(ARadius);
  const int C = CompareDouble(D, R, AEpsilon);
  if (C > 0)
    return itZero;
  if (C == 0) {
    APt1 = Foot;
    return itOne;
  }
  const double H = std::sqrt(R * R - D * D);
  APt1 = VectorSub(Foot, VectorScale(U, H));
  APt2 = VectorAdd(Foot, VectorScale(U, H));
  return itTwo;
}

TKRNIntersectType TKRNIntersectFunc2d::Intersect(const TKRNVector2d& ACenterPt1, double ARadius1,
                                                 const TKRNVector2d& ACenterPt2, double ARadius2,
                                                 TKRNVector2d& APt1, TKRNVector2d& APt2, double AEpsilon,
                                                 bool ACalculatorEpsilon) {
  const double R1 = ARadius1, R2 = ARadius2;
  const TKRNVector2d C12 = VectorSub(ACenterPt2, ACenterPt1);
  const double D2 = VectorLengthSqr(C12);
  const double S = (R1 + R2) * (R1 + R2);
  const double E = ACalculatorEpsilon ? 0.0 : (R1 + R2) * KRNEpsilon;
  const auto Touch = [&](bool AInner) {
    const TKRNVector2d V = VectorScale(C12, R1 / std::sqrt(D2));
    APt1 = AInner && R1 < R2 ? VectorSub(ACenterPt1, V) : VectorAdd(ACenterPt1, V);
    return itOne;
  };
  const int Outer = CompareDouble(D2, S, E);
  if (Outer == 0)
    return D2 > 0 ? Touch(false) : itZero;
  if (Outer > 0)
    return SameDouble(D2, S, (R1 + R2) * AEpsilon) ? Touch(false) : itZero;
  const double T = (R1 - R2) * (R1 - R2);
  const int Inner = CompareDouble(D2, T, E);
  if (Inner <= 0) {
    if (Inner < 0 && !SameDouble(D2, T, std::fabs(R1 + R2) * AEpsilon))
      return itZero;
    if (SameDouble(R1, R2, KRNEpsilon))
      return itOverlap;
    if (IsZero(std::sqrt(D2), KRNEpsilon))
      return itZero;
    return Touch(true);
  }
  const double D = std::sqrt(D2);
  const double K = std::clamp((R1 * R1 + D2 - R2 * R2) / (2 * D * R1), -1.0, 1.0);
  const double Q = std::sqrt(1 - K * K);
  const TKRNVector2d V = VectorScale(C12, R1 / D);
  APt1 = {V.X * K - V.Y * Q + ACenterPt1.X, V.X * Q + V.Y * K + ACenterPt1.Y};
  APt2 = {V.X * K + V.Y * Q + ACenterPt1.X, -V.X * Q + V.Y * K + ACenterPt1.Y};
  return itTwo;
}

TKRNIntersectType TKRNIntersectFunc2d::Intersect(const TKRNVector2d& AStartPt, const TKRNVector2d& AEndPt,
                                                 const TKRNBeeline2d& ABeeline, TKRNVector2d& APt,
                                                 double AEpsilon) {
  if (PointIsSame(AStartPt, AEndPt, AEpsilon)) {
    const TKRNVector2d W = VectorSub(AStartPt, ABeeline.Point);
    const double Len = VectorLength(ABeeline.Vector);
    if (Len > 0 && IsZero(VectorCross(ABeeline.Vector, W) / Len, AEpsilon)) {
      APt = AStartPt;
      return itOne;
    }
    return itZero;
  }
  const TKRNIntersectType R =
      Intersect(TKRNBeeline2d(AStartPt, VectorSub(AEndPt, AStartPt)), ABeeline, APt);
  if (R == itOne && !OnSegment(APt, AStartPt, AEndPt, AEpsilon))
    return itZero;
  return R;
}

TKRNIntersectType TKRNIntersectFunc2d::Intersect(const TKRNVector2d& AStartPt1, const TKRNVector2d& AEndPt1,
                                                 const TKRNVector2d& AStartPt2, const TKRNVector2d& AEndPt2,
                                                 TKRNVector2d& APt1, TKRNVector2d& APt2, double AEpsilon) {
  TKRNVector2d S1 = AStartPt1, E1 = AEndPt1, S2 = AStartPt2, E2 = AEndPt2;
  if (VectorDistance(S2, E2) > VectorDistance(S1, E1)) {
    std::swap(S1, S2);
    std::swap(E1, E2);
  }
  const double Len = VectorDistance(S1, E1);
  if (SameDouble(Len, 0.0, AEpsilon)) {
    if (PointIsSame(S1, S2, AEpsilon)) {
      APt1 = S1;
      return itOne;
    }
    return itZero;
  }
  const TKRNVector2d U = VectorScale(VectorSub(E1, S1), 1.0 / Len);
  const double H1 = VectorCross(U, VectorSub(S2, S1));
  const double H2 = VectorCross(U, VectorSub(E2, S1));
  const bool Zero1 = IsZero(H1, AEpsilon), Zero2 = IsZero(H2, AEpsilon);
  if (Zero1 && Zero2) {
    TKRNVector2d Hits[4];
    int N = 0;
    if (OnSegment(S1, S2, E2, AEpsilon))
      N = AddDistinct(Hits, N, S1, AEpsilon);
    if (OnSegment(E1, S2, E2, AEpsilon))
      N = AddDistinct(Hits, N, E1, AEpsilon);
    if (OnSegment(S2, S1, E1, AEpsilon))
      N = AddDistinct(Hits, N, S2, AEpsilon);
    if (OnSegment(E2, S1, E1, AEpsilon))
      N = AddDistinct(Hits, N, E2, AEpsilon);
    if (N == 0)
      return itZero;
    APt1 = Hits[0];
    if (N == 1)
      return itOne;
    APt2 = Hits[1];
    return itOverlap;
  }
  if (Zero1 || Zero2) {
    const TKRNVector2d& P = Zero1 ? S2 : E2;
    if (!OnSegment(P, S1, E1, AEpsilon))
      return itZero;
    APt1 = P;
    return itOne;
  }
  if ((H1 > 0) == (H2 > 0))
    return itZero;
  const double A1 = std::fabs(H1), A2 = std::fabs(H2);
  const TKRNVector2d P = VectorScale(VectorAdd(VectorScale(S2, A2), VectorScale(E2, A1)), 1.0 / (A1 + A2));
  if (!OnSegment(P, S1, E1, AEpsilon))
    return itZero;
  APt1 = P;
  return itOne;
}

TKRNIntersectType TKRNIntersectFunc2d::Intersect(const TKRNVector2d& ALineStartPt, const TKRNVector2d& ALineEndPt,
                                                 const TKRNVector2d& AArcStartPt, const TKRNVector2d& AArcEndPt,
                                                 const TKRNVector2d& ACenterPt, TKRNArcType AArcType, double ARadius,
                                                 TKRNVector2d& APt1, TKRNVector2d& APt2, double AEpsilon) {
  TKRNVector2d C[2];
  const TKRNIntersectType R = Intersect(TKRNBeeline2d(ALineStartPt, VectorSub(ALineEndPt, ALineStartPt)), ACenterPt,
                                        ARadius, C[0], C[1], AEpsilon);
  const int Candidates = R == itTwo ? 2 : (R == itOne ? 1 : 0);
  int N = 0;
  for (int I = 0; I < Candidates; ++I) {
    if (!OnSegment(C[I], ALineStartPt, ALineEndPt, AEpsilon) ||
        !OnArc(C[I], AArcStartPt, AArcEndPt, ARadius, AArcType, AEpsilon))
      continue;
    (N == 0 ? APt1 : APt2) = C[I];
    ++N;
  }
  return N == 0 ? itZero : (N == 1 ? itOne : itTwo);
}

TKRNIntersectType TKRNIntersectFunc2d::Intersect(const TKRNVector2d& AStartPt1, const TKRNVector2d& AEndPt1,
                                                 const TKRNVector2d& ACenterPt1, TKRNArcType AArcType1,
                                                 double ARadius1, const TKRNVector2d& AStartPt2,
                                                 const TKRNVector2d& AEndPt2, const TKRNVector2d& ACenterPt2,
                                                 TKRNArcType AArcType2, double ARadius2, TKRNVector2d& APt1,
                                                 TKRNVector2d& APt2, double AEpsilon,
                                                 bool ACalculatorEpsilon) {
  const auto On1 = [&](const TKRNVector2d& P) { return OnArc(P, AStartPt1, AEndPt1, ARadius1, AArcType1, AEpsilon); };
  const auto On2 = [&](const TKRNVector2d& P) { return OnArc(P, AStartPt2, AEndPt2, ARadius2, AArcType2, AEpsilon); };
  TKRNVector2d C[2];
  const TKRNIntersectType R =
      Intersect(ACenterPt1, ARadius1, ACenterPt2, ARadius2, C[0], C[1], AEpsilon, ACalculatorEpsilon);
  if (R == itZero)
    return itZero;
  if (R == itOne || R == itTwo) {
    int N = 0;
    for (int I = 0; I < (R == itTwo ? 2 : 1); ++I)
      if (On1(C[I]) && On2(C[I])) {
        (N == 0 ? APt1 : APt2) = C[I];
        ++N;
      }
    return N == 0 ? itZero : (N == 1 ? itOne : itTwo);
  }
  // the same circle: compare the ends
  const TKRNArc2d Arc1(AStartPt1, AEndPt1, ARadius1, AArcType1), Arc2(AStartPt2, AEndPt2, ARadius2, AArcType2);
  const TKRNPointPosition P[4] = {PF::PointPosition(AStartPt2, Arc1, AEpsilon),
                                  PF::PointPosition(AEndPt2, Arc1, AEpsilon),
                                  PF::PointPosition(AStartPt1, Arc2, AEpsilon),
                                  PF::PointPosition(AEndPt1, Arc2, AEpsilon)};
  const TKRNVector2d Ends[4] = {AStartPt2, AEndPt2, AStartPt1, AEndPt1};
  TKRNVector2d Hits[4];
  int N = 0;
  bool AnyIn = false;
  for (int I = 0; I < 4; ++I)
    if (P[I] != ppOut) {
      AnyIn = AnyIn || P[I] == ppIn;
      N = AddDistinct(Hits, N, Ends[I], AEpsilon);
    }
  if (!AnyIn) {
    if (N == 0)
      return itZero;
    APt1 = Hits[0];
    if (N == 1)
      return itOne;
    // both ends shared: the same arc, or the two halves of one circle
    APt2 = Hits[1];
    const TKRNVector2d Mid = TKRNArc2d::ArcMiddlePoint(AStartPt2, AEndPt2, ARadius2, AArcType2);
    return PF::PointPosition(Mid, Arc1, AEpsilon) == ppIn ? itOverlap : itTwo;
  }
  if (N >= 1)
    APt1 = Hits[0];
  if (N >= 2)
    APt2 = Hits[1];
  return itOverlap;
}

TKRNIntersectType TKRNIntersectFunc2d::Intersect(const TKRNCustomLine2d& ASeg1, const TKRNCustomLine2d& ASeg2,
                                                 TKRNVector2d& APt1, TKRNVector2d& APt2, double AEpsilon,
                                                 bool ACalculatorEpsilon) {
  const TKRNArc2d* A1 = ValidArcOf(ASeg1);
  const TKRNArc2d* A2 = ValidArcOf(ASeg2);
  if (!A1 && !A2)
    return Intersect(ASeg1.StartPt(), ASeg1.EndPt(), ASeg2.StartPt(), ASeg2.EndPt(), APt1, APt2, AEpsilon);
  if (A1 && A2)
    return Intersect(A1->StartPt(), A1->EndPt(), A1->CenterPt(), A1->ArcType(), A1->Radius(), A2->StartPt(),
                     A2->EndPt(), A2->CenterPt(), A2->ArcType(), A2->Radius(), APt1, APt2, AEpsilon,
                     ACalculatorEpsilon);
  const TKRNCustomLine2d& Line = A1 ? ASeg2 : ASeg1;
  const TKRNArc2d& Arc = A1 ? *A1 : *A2;
  return Intersect(Line.StartPt(), Line.EndPt(), Arc.StartPt(), Arc.EndPt(), Arc.CenterPt(), Arc.ArcType(),
                   Arc.Radius(), APt1, APt2, AEpsilon);
}

std::vector<TKRNVector2d> TKRNIntersectFunc2d::IntersectPts(const TKRNCustomPolygon2d& APolygon1,
                                                           const TKRNCustomPolygon2d& APolygon2, bool AIncludeIn,
                                                           double AEpsilon) {
  std::vector<TKRNVector2d> R;
  const auto Keep = [&](const TKRNVector2d& P) { KeepDistinct(R, P, AEpsilon); };
  if (!BoxIsOverlapping(APolygon1.Box(), APolygon2.Box(), true, AEpsilon))
    return R;
  std::vector<TKRNPtr<TKRNCustomLine2d>> E1, E2;
  for (int I = 0; I < APolygon1.GetCount(); ++I)
    if (auto E = APolygon1.EdgeLine(I))
      E1.push_back(std::move(E));
  for (int I = 0; I < APolygon2.GetCount(); ++I)
    if (auto E = APolygon2.EdgeLine(I))
      E2.push_back(std::move(E));
  for (const auto& A : E1) {
    const TKRNBox2d BoxA = A->Box();
    for (const auto& B : E2) {
      if (!BoxIsOverlapping(BoxA, B->Box(), true, AEpsilon))
        continue;
      TKRNVector2d P1{}, P2{};
      switch (Intersect(*A, *B, P1, P2, AEpsilon)) {
        case itZero:
          break;
        case itOne:
          Keep(P1);
          break;
        default:
          Keep(P1);
          Keep(P2);
      }
    }
  }
  if (AIncludeIn) {
    for (const auto& A : E1)
      if (TKRNPositionFunc2d::PointPosition(A->StartPt(), APolygon2, AEpsilon) != ppOut)
        Keep(A->StartPt());
    for (const auto& B : E2)
      if (TKRNPositionFunc2d::PointPosition(B->StartPt(), APolygon1, AEpsilon) != ppOut)
        Keep(B->StartPt());
  }
  return R;
}

TKRNIntersectType TKRNIntersectFunc2d::ExtIntersect(const TKRNCustomLine2d& ASeg1, const TKRNCustomLine2d& ASeg2,
                                                    TKRNVector2d& APt1, TKRNVector2d& APt2, double AEpsilon) {
  const TKRNArc2d* A1 = ValidArcOf(ASeg1);
  const TKRNArc2d* A2 = ValidArcOf(ASeg2);
  const auto Line = [](const TKRNCustomLine2d& S) {
    return TKRNBeeline2d(S.StartPt(), VectorSub(S.EndPt(), S.StartPt()));
  };
  if (!A1 && !A2)
    return Intersect(Line(ASeg1), Line(ASeg2), APt1);
  if (A1 && A2)
    return Intersect(A1->CenterPt(), A1->Radius(), A2->CenterPt(), A2->Radius(), APt1, APt2, AEpsilon);
  const TKRNArc2d& Arc = A1 ? *A1 : *A2;
  return Intersect(Line(A1 ? ASeg2 : ASeg1), Arc.CenterPt(), Arc.Radius(), APt1, APt2, AEpsilon);
}

bool TKRNIntersectFunc2d::LimitExtIntersect(const TKRNCustomLine2d& ASeg1, const TKRNCustomLine2d& ASeg2,
                                            const TKRNVector2d& ARefPt, TKRNVector2d& AIntPt, double AEpsilon) {
  TKRNVector2d P1{}, P2{};
  switch (ExtIntersect(ASeg1, ASeg2, P1, P2, AEpsilon)) {
    case itOne:
      AIntPt = P1;
      return true;
    case itTwo:
      AIntPt = VectorDistance(P1, ARefPt) <= VectorDistance(P2, ARefPt) ? P1 : P2;
      return true;
    default:
      return false;
  }
}

std::vector<TKRNVector2d> TKRNIntersectFunc2d::Intersect(const TKRNCustomLine2d& ASeg,
                                                        const TKRNCustomPolygon2d& APoly, bool AIncludeIn,
                                                        double AEpsilon) {
  std::vector<TKRNVector2d> R;
  const auto Keep = [&](const TKRNVector2d& P) { KeepDistinct(R, P, AEpsilon); };
  const TKRNArc2d* Arc = ValidArcOf(ASeg);
  const bool IsArc = Arc != nullptr;
  if (const auto* C = dynamic_cast<const TKRNCircle2d*>(&APoly)) {
    TKRNVector2d P[2];
    TKRNIntersectType T;
    if (IsArc) {
      T = Intersect(Arc->CenterPt(), Arc->Radius(), C->CenterPt(), C->Radius(), P[0], P[1], AEpsilon);
    } else {
      T = Intersect(TKRNBeeline2d(ASeg.StartPt(), VectorSub(ASeg.EndPt(), ASeg.StartPt())), C->CenterPt(),
                    C->Radius(), P[0], P[1], AEpsilon);
    }
    if (T == itOne || T == itTwo)
      for (int I = 0; I < (T == itTwo ? 2 : 1); ++I)
        if (TKRNPositionFunc2d::PointPosition(P[I], ASeg, AEpsilon) != ppOut)
          Keep(P[I]);
  } else {
    for (int I = 0; I < APoly.GetCount(); ++I) {
      const TKRNPtr<TKRNCustomLine2d> E = APoly.EdgeLine(I);
      if (!E)
        continue;
      TKRNVector2d P1{}, P2{};
      const TKRNIntersectType T = Intersect(ASeg, *E, P1, P2, AEpsilon);
      if (T != itZero)
        Keep(P1);
      if (T == itTwo || T == itOverlap)
        Keep(P2);
    }
  }
  if (AIncludeIn)
    for (const TKRNVector2d& P : {ASeg.StartPt(), ASeg.EndPt()})
      if (TKRNPositionFunc2d::PointPosition(P, APoly, AEpsilon) == ppIn)
        Keep(P);
  // in order along the segment: by distance from the start for a line, by the
  // turn from the start for an arc
  const auto Along = [&](const TKRNVector2d& P) {
    if (!IsArc)
      return VectorDistance(ASeg.StartPt(), P);
    const TKRNVector2d Ctr = Arc->CenterPt();
    return VectorAngleFromTo(VectorSub(ASeg.StartPt(), Ctr), VectorSub(P, Ctr), Arc->Clockwise());
  };
  std::sort(R.begin(), R.end(), [&](const TKRNVector2d& A, const TKRNVector2d& B) { return Along(A) < Along(B); });
  return R;
}
