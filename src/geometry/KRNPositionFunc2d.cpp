#include "KRNPositionFunc2d.h"

#include <algorithm>
#include <numeric>

namespace {

// The arc's centre when it acts as an arc (a real type and a valid centre).
bool ArcCenter(const TKRNCustomLine2d& ASeg, TKRNVector2d& C) {
  return ASeg.IsArcType() && TKRNArc2d::CalcCenterPt(ASeg.StartPt(), ASeg.EndPt(), ASeg.Radius(), ASeg.ArcType(), C);
}

// Position of a point on the circle of an arc against the arc's sweep.
TKRNPointPosition ArcPosition(const TKRNVector2d& P, const TKRNVector2d& S, const TKRNVector2d& E, double R,
                              TKRNArcType T, const TKRNVector2d& C, double AEpsilon) {
  if (!SameDouble(VectorDistance(P, C), R, AEpsilon)) return ppOut;
  const double D = VectorDistance(C, S);
  const double Eps = (AEpsilon > KRNEpsilon / 2 && CompareDouble(D, 1, KRNEpsilon) == 1) ? AEpsilon / D : AEpsilon;
  const TKRNVector2d US = VectorNormalized(VectorSub(S, C));
  const TKRNVector2d UP = VectorNormalized(VectorSub(P, C));
  const TKRNVector2d UE = VectorNormalized(VectorSub(E, C));
  if (SameDouble(VectorCross(US, UP), 0, Eps) && VectorDot(US, UP) > 0) return ppOn;
  if (SameDouble(VectorCross(UE, UP), 0, Eps) && VectorDot(UE, UP) > 0) return ppOn;
  const bool Cw = ArcTypeIsClockwise(T);
  return VectorAngleFromTo(US, UP, Cw) < VectorAngleFromTo(US, UE, Cw) ? ppIn : ppOut;
}

TKRNPointPosition RangePosition(double V, double Lo, double Hi, double AEpsilon) {
  const int A = CompareDouble(V, Lo, AEpsilon), B = CompareDouble(V, Hi, AEpsilon);
  if (A == -1 || B == 1) return ppOut;
  if (A == 0 || B == 0) return ppOn;
  return ppIn;
}

// Crossing of a Y-monotone piece with the ray to +X from P: exactly one end
// strictly below P (a level end counts as above).
bool PieceCrosses(const TKRNVector2d& A, const TKRNVector2d& B, const TKRNVector2d& P, double AEpsilon,
                  double ACrossX) {
  const bool ABelow = CompareDouble(A.Y, P.Y, AEpsilon) == -1;
  const bool BBelow = CompareDouble(B.Y, P.Y, AEpsilon) == -1;
  return ABelow != BBelow && ACrossX > P.X;
}

}  // namespace

TKRNPointPosition TKRNPositionFunc2d::PointPosition(const TKRNVector2d& APoint, const TKRNVector2d& AStartPt,
                                                    const TKRNVector2d& AEndPt, double AEpsilon) {
  const TKRNVector2d D = VectorNormalized(VectorSub(AEndPt, AStartPt));
  TKRNVector2d V = VectorSub(APoint, AStartPt);
  if (!SameDouble(VectorCross(D, V), 0, AEpsilon)) return ppOut;
  TKRNVector2d W = VectorSub(APoint, AEndPt);
  TKRNVector2d& Longer = VectorLengthSqr(W) > VectorLengthSqr(V) ? W : V;
  Longer = SameDouble(VectorLength(Longer), 0, AEpsilon) ? TKRNVector2d{} : VectorNormalized(Longer);
  switch (CompareDouble(VectorDot(W, V), 0, AEpsilon)) {
    case -1: return ppIn;
    case 0: return ppOn;
    default: return ppOut;
  }
}

TKRNPointPosition TKRNPositionFunc2d::PointPosition(const TKRNVector2d& APoint, const TKRNArc2d& AArc,
                                                    double AEpsilon) {
  TKRNVector2d C;
  if (!ArcCenter(AArc, C)) return PointPosition(APoint, AArc.StartPt(), AArc.EndPt(), AEpsilon);
  return ArcPosition(APoint, AArc.StartPt(), AArc.EndPt(), AArc.Radius(), AArc.ArcType(), C, AEpsilon);
}

TKRNPointPosition TKRNPositionFunc2d::PointPosition(const TKRNVector2d& APoint, const TKRNCustomLine2d& ALine,
                                                    double AEpsilon) {
  TKRNVector2d C;
  if (ArcCenter(ALine, C))
    return ArcPosition(APoint, ALine.StartPt(), ALine.EndPt(), ALine.Radius(), ALine.ArcType(), C, AEpsilon);
  return PointPosition(APoint, ALine.StartPt(), ALine.EndPt(), AEpsilon);
}

TKRNPointPosition TKRNPositionFunc2d::PointPosition(const TKRNVector2d& APoint, const TKRNLines2d& ALines,
                                                    double AEpsilon) {
  const TKRNVertex2dList& L = ALines.List();
  const int N = L.Count();
  if (N == 0) return ppOut;
  if (PointIsSame(APoint, L.Points(N - 1), AEpsilon)) return ppOn;
  if (N < 2) return ppOut;
  if (PointIsSame(APoint, L.Points(0), KRNEpsilon)) return ppOn;
  for (int K = 0; K < N; ++K) {
    const int I = (K + N - 1) % N;  // the closing edge first
    const TKRNVertex2d* V = L[I];
    const TKRNVector2d& E = L.Points((I + 1) % N);
    TKRNPointPosition R;
    TKRNVector2d C;
    if (V->VertexType() == vtArc && V->IsArc() &&
        TKRNArc2d::CalcCenterPt(V->Point(), E, V->Radius(), V->ArcType(), C))
      R = ArcPosition(APoint, V->Point(), E, V->Radius(), V->ArcType(), C, KRNEpsilon);
    else
      R = PointPosition(APoint, V->Point(), E, AEpsilon);
    if (R != ppOut) return ppIn;
  }
  return ppOut;
}

TKRNPointPosition TKRNPositionFunc2d::PointPosition(const TKRNVector2d& APt, const TKRNBox2d& ABox,
                                                    double AEpsilon) {
  const TKRNPointPosition X = RangePosition(APt.X, ABox.MinX(), ABox.MaxX(), AEpsilon);
  if (X == ppOut) return ppOut;
  const TKRNPointPosition Y = RangePosition(APt.Y, ABox.MinY(), ABox.MaxY(), AEpsilon);
  if (X == ppOn) return Y == ppOut ? ppOut : ppOn;
  return Y;
}

bool TKRNPositionFunc2d::IsPointInBox(const TKRNVector2d& APoint, const TKRNBox2d& ABox, double AEpsilon) {
  return CompareDouble(APoint.X, ABox.MinX(), AEpsilon) != -1 && CompareDouble(APoint.X, ABox.MaxX(), AEpsilon) != 1 &&
         CompareDouble(APoint.Y, ABox.MinY(), AEpsilon) != -1 && CompareDouble(APoint.Y, ABox.MaxY(), AEpsilon) != 1;
}

TKRNPointPosition TKRNPositionFunc2d::PointPosition(const TKRNVector2d& APoint, const TKRNPolygon2d& APolygon,
                                                    double AEpsilon) {
  const TKRNVertex2d *V1, *V2;
  return PointPosition(APoint, APolygon, V1, V2, AEpsilon);
}

TKRNPointPosition TKRNPositionFunc2d::PointPosition(const TKRNVector2d& APoint, const TKRNPolygon2d& APolygon,
                                                    const TKRNVertex2d*& AVertex1, const TKRNVertex2d*& AVertex2,
                                                    double AEpsilon) {
  AVertex1 = AVertex2 = nullptr;
  const TKRNVertex2dList& L = APolygon.List();
  const int N = L.Count();
  if (N == 0) return ppOut;
  bool Odd = false;
  // No tolerance for this point's Y exceeds Tp: edges clear of the band by Tp skip
  // the full comparison.
  const double Tp = EffectiveEpsilon(APoint.Y, APoint.Y, AEpsilon);
  const double Above = APoint.Y + Tp, Below = APoint.Y - Tp;
  // From the last vertex to the first, then on through the list.
  const TKRNVertex2d* VA = L[N - 1];
  for (int K = 0; K < N; VA = L[K++]) {
    const TKRNVertex2d* VB = L[K];
    const TKRNVector2d& A = VA->Point();
    const TKRNVector2d& B = VB->Point();
    if (VA->Kind() == vtLine && ((A.Y > Above && B.Y > Above) || (A.Y < Below && B.Y < Below))) continue;
    TKRNVector2d C;
    if (VA->Kind() == vtArc && VA->IsArc() && TKRNArc2d::CalcCenterPt(A, B, VA->Radius(), VA->ArcType(), C)) {
      const double R = VA->Radius();
      const TKRNArc2d Arc(A, B, R, VA->ArcType());
      if (SameDouble(DistanceTo(APoint, Arc, true), 0, AEpsilon)) {
        AVertex1 = VA;
        AVertex2 = VB;
        return ppOn;
      }
      if (CompareDouble(APoint.Y, C.Y - R, AEpsilon) == -1 || CompareDouble(APoint.Y, C.Y + R, AEpsilon) == 1)
        continue;
      // Split at the top and bottom points that lie on the arc: Y-monotone pieces.
      TKRNVector2d Cuts[4];
      int NC = 0;
      Cuts[NC++] = A;
      const bool Cw = ArcTypeIsClockwise(VA->ArcType());
      const double Sweep = VectorAngleFromTo(VectorSub(A, C), VectorSub(B, C), Cw);
      double Extremes[2][2] = {{VectorAngleFromTo(VectorSub(A, C), {0, 1}, Cw), 0},
                               {VectorAngleFromTo(VectorSub(A, C), {0, -1}, Cw), 0}};
      if (Extremes[0][0] > Extremes[1][0]) std::swap(Extremes[0], Extremes[1]);
      for (const auto& X : Extremes)
        if (X[0] > 0 && X[0] < Sweep) Cuts[NC++] = VectorAdd(C, VectorRotate(VectorSub(A, C), Cw ? -X[0] : X[0]));
      Cuts[NC++] = B;
      const double H = std::sqrt(std::max(0.0, R * R - (APoint.Y - C.Y) * (APoint.Y - C.Y)));
      for (int J = 0; J + 1 < NC; ++J) {
        const TKRNVector2d& P0 = Cuts[J];
        const TKRNVector2d& P1 = Cuts[J + 1];
        // Each piece lies on one half of the circle: its midpoint tells which.
        const TKRNVector2d Mid = VectorAdd(C, VectorScale(VectorNormalized(VectorSub(PointMiddle(P0, P1), C)), R));
        const double CrossX = Mid.X >= C.X ? C.X + H : C.X - H;
        if (PieceCrosses(P0, P1, APoint, AEpsilon, CrossX)) Odd = !Odd;
      }
      continue;
    }
    const int CA = CompareDouble(A.Y, APoint.Y, AEpsilon), CB = CompareDouble(B.Y, APoint.Y, AEpsilon);
    if (CA == CB && CA != 0) continue;  // wholly above or below
    const TKRNPointPosition S = PointPosition(APoint, A, B, AEpsilon);
    if (S == ppIn) {
      AVertex1 = VA;
      AVertex2 = VB;
      return ppOn;
    }
    if (S == ppOn) {
      AVertex1 = AVertex2 = VectorDistance(APoint, A) <= VectorDistance(APoint, B) ? VA : VB;
      return ppOn;
    }
    if ((CA == -1) != (CB == -1)) {
      const double X = A.X + (APoint.Y - A.Y) * (B.X - A.X) / (B.Y - A.Y);
      if (X > APoint.X) Odd = !Odd;
    }
  }
  return Odd ? ppIn : ppOut;
}

TKRNPointPosition TKRNPositionFunc2d::PointPosition(const TKRNVector2d& APoint, const TKRNCustomPolygon2d& AFigure,
                                                    double AEpsilon) {
  if (const auto* P = dynamic_cast<const TKRNPolygon2d*>(&AFigure)) return PointPosition(APoint, *P, AEpsilon);
  if (const auto* Ci = dynamic_cast<const TKRNCircle2d*>(&AFigure)) {
    switch (CompareDouble(VectorDistance(APoint, Ci->CenterPt()), Ci->Radius(), AEpsilon)) {
      case -1: return ppIn;
      case 0: return ppOn;
      default: return ppOut;
    }
  }
  if (const auto* El = dynamic_cast<const TKRNEllipse2d*>(&AFigure)) {
    const TKRNVector2d L = VectorRotate(VectorSub(APoint, El->CenterPt()), -El->Angle());
    const double A = El->XRadius(), B = El->YRadius();
    if (A <= 0 || B <= 0) return ppOut;
    const double V = std::sqrt((L.X / A) * (L.X / A) + (L.Y / B) * (L.Y / B));
    switch (CompareDouble((V - 1) * std::min(A, B), 0, AEpsilon)) {
      case -1: return ppIn;
      case 0: return ppOn;
      default: return ppOut;
    }
  }
  return PointPosition(APoint, TKRNPolygon2d(AFigure), AEpsilon);
}

TKRNPointPosition TKRNPositionFunc2d::PointPosition(const TKRNVector2d& APoint, const TKRNMultiPolygon2d& APolygon,
                                                    double AEpsilon) {
  int Inside = 0;
  for (int I = 0; I < APolygon.Count(); ++I) {
    const TKRNPointPosition R = PointPosition(APoint, *APolygon.GetItems(I), AEpsilon);
    if (R == ppOn) return ppOn;
    if (R == ppIn) ++Inside;
  }
  return Inside % 2 ? ppIn : ppOut;
}

TKRNPolyPositionType TKRNPositionFunc2d::BoxBoxPosition(const TKRNBox2d& ABox1, const TKRNBox2d& ABox2,
                                                        double AEpsilon) {
  const TKRNBox2d& A = ABox1;
  const TKRNBox2d& B = ABox2;
  const double E = AEpsilon;
  if (A.MinX() > B.MaxX() + E || A.MaxX() < B.MinX() - E || A.MinY() > B.MaxY() + E || A.MaxY() < B.MinY() - E)
    return pptLeave;
  if (A.MinX() > B.MaxX() - E || A.MaxX() < B.MinX() + E || A.MinY() > B.MaxY() - E || A.MaxY() < B.MinY() + E)
    return pptOutBorder;
  const bool AInB = A.MinX() >= B.MinX() - E && A.MaxX() <= B.MaxX() + E && A.MinY() >= B.MinY() - E &&
                    A.MaxY() <= B.MaxY() + E;
  const bool BInA = B.MinX() >= A.MinX() - E && B.MaxX() <= A.MaxX() + E && B.MinY() >= A.MinY() - E &&
                    B.MaxY() <= A.MaxY() + E;
  if (AInB && BInA) return pptEqual;
  const bool Touch = SameDouble(A.MinX(), B.MinX(), E) || SameDouble(A.MaxX(), B.MaxX(), E) ||
                     SameDouble(A.MinY(), B.MinY(), E) || SameDouble(A.MaxY(), B.MaxY(), E);
  if (AInB) return Touch ? ppt1In2Border : ppt1In2;
  if (BInA) return Touch ? ppt2In1Border : ppt2In1;
  return pptInt;
}

namespace {

// Proper crossing of two straight segments (each strictly on both sides of the other).
bool SegmentsCross(const TKRNVector2d& A, const TKRNVector2d& B, const TKRNVector2d& C, const TKRNVector2d& D,
                   double AEpsilon) {
  auto Side = [&](const TKRNVector2d& P, const TKRNVector2d& Q, const TKRNVector2d& R) {
    const TKRNVector2d U = VectorNormalized(VectorSub(Q, P));
    return CompareDouble(VectorCross(U, VectorSub(R, P)), 0, AEpsilon);
  };
  const int S1 = Side(A, B, C), S2 = Side(A, B, D), S3 = Side(C, D, A), S4 = Side(C, D, B);
  return S1 * S2 < 0 && S3 * S4 < 0;
}

struct TVertexCount {
  int In = 0, On = 0, Out = 0;
};

TVertexCount CountVertices(const TKRNPolygon2d& AOf, const TKRNPolygon2d& AIn, double AEpsilon) {
  TVertexCount R;
  const TKRNVertex2dList& L = AOf.List();
  const int N = L.Count();
  for (int I = 0; I < N; ++I) {
    // Edge midpoints too, so that a shared vertex set with different edges is seen.
    const TKRNVector2d Pts[2] = {L.Points(I), PointMiddle(L.Points(I), L.Points((I + 1) % N))};
    for (const TKRNVector2d& P : Pts) {
      switch (TKRNPositionFunc2d::PointPosition(P, AIn, AEpsilon)) {
        case ppIn: ++R.In; break;
        case ppOn: ++R.On; break;
        default: ++R.Out; break;
      }
    }
  }
  return R;
}

}  // namespace

TKRNPolyPositionType TKRNPositionFunc2d::PolyPolyPosition(const TKRNPolygon2d& APolygon1,
                                                          const TKRNPolygon2d& APolygon2, double AEpsilon) {
  if (BoxBoxPosition(APolygon1.Box(), APolygon2.Box(), AEpsilon) == pptLeave) return pptLeave;
  const std::unique_ptr<TKRNPolygon2d> P1 = APolygon1.GetSamplePoly(72);
  const std::unique_ptr<TKRNPolygon2d> P2 = APolygon2.GetSamplePoly(72);
  const TKRNVertex2dList& L1 = P1->List();
  const TKRNVertex2dList& L2 = P2->List();
  for (int I = 0; I < L1.Count(); ++I)
    for (int J = 0; J < L2.Count(); ++J)
      if (SegmentsCross(L1.Points(I), L1.Points((I + 1) % L1.Count()), L2.Points(J),
                        L2.Points((J + 1) % L2.Count()), AEpsilon))
        return pptInt;
  const TVertexCount C1 = CountVertices(*P1, *P2, AEpsilon);
  const TVertexCount C2 = CountVertices(*P2, *P1, AEpsilon);
  if (C1.In == 0 && C1.Out == 0 && C2.In == 0 && C2.Out == 0) return pptEqual;
  if (C1.Out == 0 && C1.In > 0) return C1.On > 0 ? ppt1In2Border : ppt1In2;
  if (C2.Out == 0 && C2.In > 0) return C2.On > 0 ? ppt2In1Border : ppt2In1;
  if (C1.In == 0 && C2.In == 0) return (C1.On > 0 || C2.On > 0) ? pptOutBorder : pptLeave;
  return pptInt;
}

TKRNSegSide TKRNPositionFunc2d::PointSegSide(const TKRNVector2d& APoint, const TKRNCustomLine2d& ASeg,
                                             double AEpsilon) {
  TKRNVector2d C;
  if (ArcCenter(ASeg, C)) {
    const double D = VectorDistance(APoint, C), R = ASeg.Radius();
    TKRNSegSide S = ssOn;
    if (D >= R + AEpsilon) S = ssRight;
    else if (D < R - AEpsilon) S = ssLeft;
    if (ArcTypeIsClockwise(ASeg.ArcType()) && S != ssOn) S = S == ssLeft ? ssRight : ssLeft;
    return S;
  }
  if (PointIsSame(ASeg.StartPt(), ASeg.EndPt())) return ssOn;
  const TKRNVector2d U = VectorNormalized(VectorSub(ASeg.EndPt(), ASeg.StartPt()));
  const double D = VectorCross(U, VectorSub(APoint, ASeg.StartPt()));
  if (D > AEpsilon) return ssLeft;
  if (D < -AEpsilon) return ssRight;
  return ssOn;
}

TKRNVector2d TKRNPositionFunc2d::ClosestPointTo(const TKRNVector2d& APoint, const TKRNVector2d& ALineStartPt,
                                                const TKRNVector2d& ALineEndPt, bool ALimitOn) {
  const TKRNVector2d E = VectorSub(ALineEndPt, ALineStartPt);
  const double EE = VectorDot(E, E);
  if (EE == 0) return ALineStartPt;
  const double T = VectorDot(VectorSub(APoint, ALineStartPt), E);
  if (ALimitOn) {
    if (T <= 0) return ALineStartPt;
    if (T >= EE) return ALineEndPt;
  }
  return VectorAdd(ALineStartPt, VectorScale(E, T / EE));
}

// Whether a point of the arc's circle, seen from the centre, lies within the sweep.
static bool InSweep(const TKRNCustomLine2d& ASeg, const TKRNVector2d& C, const TKRNVector2d& APoint) {
  const bool Cw = ArcTypeIsClockwise(ASeg.ArcType());
  const TKRNVector2d S = VectorSub(ASeg.StartPt(), C);
  return VectorAngleFromTo(S, VectorSub(APoint, C), Cw) <= VectorAngleFromTo(S, VectorSub(ASeg.EndPt(), C), Cw);
}

TKRNVector2d TKRNPositionFunc2d::ClosestPointTo(const TKRNVector2d& APoint, const TKRNCustomLine2d& ASeg,
                                                bool ALimitOn) {
  TKRNVector2d C;
  if (!ArcCenter(ASeg, C)) return ClosestPointTo(APoint, ASeg.StartPt(), ASeg.EndPt(), ALimitOn);
  const TKRNVector2d D = VectorNormalized(VectorSub(APoint, C));
  if (VectorIsZero(D, 0)) return ASeg.StartPt();
  const TKRNVector2d Q = VectorAdd(C, VectorScale(D, ASeg.Radius()));
  if (!ALimitOn || InSweep(ASeg, C, Q)) return Q;
  return VectorDistance(APoint, ASeg.StartPt()) <= VectorDistance(APoint, ASeg.EndPt()) ? ASeg.StartPt()
                                                                                          : ASeg.EndPt();
}

double TKRNPositionFunc2d::DistanceTo(const TKRNVector2d& APoint, const TKRNVector2d& AStartPt,
                                      const TKRNVector2d& AEndPt, bool ALimitOn) {
  const TKRNVector2d E = VectorSub(AEndPt, AStartPt);
  const TKRNVector2d V = VectorSub(APoint, AStartPt);
  const double EE = VectorDot(E, E);
  if (EE == 0) return VectorLength(V);
  if (!ALimitOn) return std::fabs(VectorCross(E, V)) / std::sqrt(EE);
  const double T = VectorDot(V, E);
  if (T <= KRNEpsilon) return VectorLength(V);
  if (T >= EE) return VectorDistance(APoint, AEndPt);
  return VectorLength(VectorSub(V, VectorScale(E, T / EE)));
}

double TKRNPositionFunc2d::DistanceTo(const TKRNVector2d& APoint, const TKRNCustomLine2d& ASeg, bool ALimitOn) {
  TKRNVector2d C;
  if (!ArcCenter(ASeg, C)) return DistanceTo(APoint, ASeg.StartPt(), ASeg.EndPt(), ALimitOn);
  if (!ALimitOn || InSweep(ASeg, C, APoint)) return std::fabs(VectorDistance(APoint, C) - ASeg.Radius());
  return std::min(VectorDistance(APoint, ASeg.StartPt()), VectorDistance(APoint, ASeg.EndPt()));
}

double TKRNPositionFunc2d::LengthAtPoint(const TKRNCustomLine2d& ASeg, const TKRNVector2d& ATestPoint) {
  TKRNVector2d C;
  if (ArcCenter(ASeg, C)) {
    const double R = ASeg.Radius();
    const bool Cw = ArcTypeIsClockwise(ASeg.ArcType());
    const double L = R * VectorAngleFromTo(VectorSub(ASeg.StartPt(), C), VectorSub(ATestPoint, C), Cw);
    const double ArcLen = ASeg.Length();
    if (L <= ArcLen) return L;
    if (L - ArcLen > KRNTwoPi * R - L) return L - KRNTwoPi * R;
    return L;
  }
  const TKRNVector2d U = VectorNormalized(VectorSub(ASeg.EndPt(), ASeg.StartPt()));
  return VectorDot(VectorSub(ATestPoint, ASeg.StartPt()), U);
}

TKRNVector2d TKRNPositionFunc2d::PointAtLength(const TKRNVector2d& AStartPt, const TKRNVector2d& AEndPt,
                                               double ALength, bool ALimitOn) {
  const double Len = VectorDistance(AStartPt, AEndPt);
  if (ALimitOn) {
    if (ALength <= 0) return AStartPt;
    if (ALength >= Len) return AEndPt;
  }
  if (Len < KRNEpsilon) return {AEndPt.X + ALength, AEndPt.Y};
  return VectorAdd(AStartPt, VectorScale(VectorSub(AEndPt, AStartPt), ALength / Len));
}

TKRNVector2d TKRNPositionFunc2d::PointAtLength(const TKRNCustomLine2d& ASeg, double ALength, bool ALimitOn) {
  TKRNVector2d C;
  if (!ArcCenter(ASeg, C)) return PointAtLength(ASeg.StartPt(), ASeg.EndPt(), ALength, ALimitOn);
  if (ALimitOn) {
    if (ALength <= 0) return ASeg.StartPt();
    if (ALength >= ASeg.Length()) return ASeg.EndPt();
  }
  double A = ALength / ASeg.Radius();
  if (ArcTypeIsClockwise(ASeg.ArcType())) A = -A;
  return VectorAdd(C, VectorRotate(VectorSub(ASeg.StartPt(), C), A));
}

TKRNVector2d TKRNPositionFunc2d::MiddlePoint(const TKRNCustomLine2d& ALine, const TKRNVector2d& AStartPt,
                                             const TKRNVector2d& AEndPt) {
  const double L1 = LengthAtPoint(ALine, AStartPt), L2 = LengthAtPoint(ALine, AEndPt);
  return PointAtLength(ALine, (L1 + L2) / 2, false);
}

void TKRNPositionFunc2d::SortPoint(const TKRNCustomLine2d& ALine, TKRNPoint2dDynArray& APointsArray) {
  if (APointsArray.size() < 2) return;
  TKRNVector2d C;
  std::vector<std::pair<double, TKRNVector2d>> Keyed;
  Keyed.reserve(APointsArray.size());
  if (ArcCenter(ALine, C)) {
    for (const TKRNVector2d& P : APointsArray) Keyed.emplace_back(LengthAtPoint(ALine, P), P);
  } else {
    const TKRNVector2d D = VectorSub(ALine.EndPt(), ALine.StartPt());
    const bool ByX = std::fabs(D.X) > std::fabs(D.Y);
    const bool Ascending = ByX ? D.X > 0 : D.Y > 0;
    for (const TKRNVector2d& P : APointsArray) {
      const TKRNVector2d Q = ClosestPointTo(P, ALine.StartPt(), ALine.EndPt(), false);
      const double K = ByX ? Q.X : Q.Y;
      Keyed.emplace_back(Ascending ? K : -K, P);
    }
  }
  std::stable_sort(Keyed.begin(), Keyed.end(), [](const auto& A, const auto& B) { return A.first < B.first; });
  for (size_t I = 0; I < Keyed.size(); ++I) APointsArray[I] = Keyed[I].second;
}

TKRNPtr<TKRNCustomLine2d> TKRNPositionFunc2d::SubSeg(const TKRNCustomLine2d& ASeg, double ALength1, double ALength2,
                                                     bool ALimitOn) {
  const TKRNVector2d P1 = PointAtLength(ASeg, ALength1, ALimitOn);
  const TKRNVector2d P2 = PointAtLength(ASeg, ALength2, ALimitOn);
  TKRNVector2d C;
  if (!ArcCenter(ASeg, C)) return KRNMakeSegment(P1, P2, 0, atLine);
  // Direction kept; small or large follows the piece's own sweep.
  const bool Cw = ArcTypeIsClockwise(ASeg.ArcType());
  const double Sweep = VectorAngleFromTo(VectorSub(P1, C), VectorSub(P2, C), Cw);
  return KRNMakeSegment(P1, P2, ASeg.Radius(), ArcTypeOf(Cw, Sweep > KRNPi));
}

TKRNPtr<TKRNCustomLine2d> TKRNPositionFunc2d::SubSeg(const TKRNCustomLine2d& ASeg, const TKRNVector2d& AStartPoint,
                                                     const TKRNVector2d& AEndPoint, bool ALimitOn) {
  const double L1 = LengthAtPoint(ASeg, ClosestPointTo(AStartPoint, ASeg, ALimitOn));
  const double L2 = LengthAtPoint(ASeg, ClosestPointTo(AEndPoint, ASeg, ALimitOn));
  if (L1 <= L2) return SubSeg(ASeg, L1, L2, ALimitOn);
  TKRNPtr<TKRNCustomLine2d> Rev = ASeg.Clone();
  Rev->Inverse();
  const double Len = Rev->Length();
  return SubSeg(*Rev, Len - L1, Len - L2, ALimitOn);
}

bool TKRNPositionFunc2d::SetExactVertex(TKRNCustomLine2d& ASeg, const TKRNVector2d& AStartPt,
                                        const TKRNVector2d& AEndPt) {
  if (PointIsSame(AStartPt, AEndPt, KRNEpsilon)) return false;
  TKRNVector2d C;
  const bool Arc = ArcCenter(ASeg, C);
  const TKRNVector2d OldStart = ASeg.StartPt();
  ASeg.SetStartPt(AStartPt);
  ASeg.SetEndPt(AEndPt);
  if (Arc) {
    auto* A = dynamic_cast<TKRNArc2d*>(&ASeg);
    if (A) {
      const TKRNVector2d C2 = VectorAdd(C, VectorSub(AStartPt, OldStart));
      const bool Cw = A->Clockwise();
      const double Sweep = VectorAngleFromTo(VectorSub(AStartPt, C2), VectorSub(AEndPt, C2), Cw);
      if ((Sweep > KRNPi) != ArcTypeIsLarge(A->ArcType())) A->SetArcType(ArcTypeComplement(A->ArcType()));
    }
  }
  return true;
}

bool TKRNPositionFunc2d::IsParallel(const TKRNCustomLine2d& ASeg1, const TKRNCustomLine2d& ASeg2, double AEpsilon) {
  TKRNVector2d C1, C2;
  const bool A1 = dynamic_cast<const TKRNArc2d*>(&ASeg1) && ArcCenter(ASeg1, C1);
  const bool A2 = dynamic_cast<const TKRNArc2d*>(&ASeg2) && ArcCenter(ASeg2, C2);
  if (A1 != A2) return false;
  if (!A1)
    return VectorIsParallel(VectorSub(ASeg1.EndPt(), ASeg1.StartPt()), VectorSub(ASeg2.EndPt(), ASeg2.StartPt()),
                            AEpsilon);
  // A tolerance coarser than the distance tolerance is taken relative to the smaller radius.
  const double Eps = AEpsilon > KRNEpsilon ? AEpsilon * std::min(ASeg1.Radius(), ASeg2.Radius()) : AEpsilon;
  return PointIsSame(C1, C2, Eps);
}

bool TKRNPositionFunc2d::IsEqual(const TKRNCustomLine2d& ASeg1, const TKRNCustomLine2d& ASeg2, bool AIgnoreDirection,
                                 double AEpsilon) {
  if (ASeg1.IsArcType() != ASeg2.IsArcType()) return false;
  const bool Forward = PointIsSame(ASeg1.StartPt(), ASeg2.StartPt(), AEpsilon) &&
                       PointIsSame(ASeg1.EndPt(), ASeg2.EndPt(), AEpsilon);
  const bool Backward = PointIsSame(ASeg1.StartPt(), ASeg2.EndPt(), AEpsilon) &&
                        PointIsSame(ASeg1.EndPt(), ASeg2.StartPt(), AEpsilon);
  if (!ASeg1.IsArcType()) return Forward || (AIgnoreDirection && Backward);
  if (!SameDouble(ASeg1.Radius(), ASeg2.Radius(), AEpsilon)) return false;
  if (Forward) return ASeg1.ArcType() == ASeg2.ArcType();
  return AIgnoreDirection && Backward && ASeg1.ArcType() == ArcTypeOpposite(ASeg2.ArcType());
}
