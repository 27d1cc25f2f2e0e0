#include "KRNGeo2DTypes.h"

#include "KRN2dObjectPool.h"

#include <algorithm>
#include <cmath>

// ---- straight behaviour -----------------------------------------------------

void TKRNCustomLine2d::Assign(const TKRNCustomLine2d& ALine) {
  FStartPt = ALine.FStartPt;
  FEndPt = ALine.FEndPt;
}

std::string TKRNCustomLine2d::AsString() const {
  return "(" + KRNFloatG(FStartPt.X) + ", " + KRNFloatG(FStartPt.Y) + ", " + KRNFloatG(FEndPt.X) + ", " +
         KRNFloatG(FEndPt.Y) + ", " + KRNFloatG(Radius()) + ", " + ArcTypeToString(ArcType()) + ")";
}

TKRNBox2d TKRNCustomLine2d::Box() const { return BoxOfPoints(FStartPt, FEndPt); }

TKRNPtr<TKRNCustomLine2d> TKRNCustomLine2d::Clone() const {
  return TKRNPtr<TKRNCustomLine2d>(KRN2dObjectPool().GetLine(FStartPt, FEndPt).release());
}

double TKRNCustomLine2d::LengthBetweenY(double AY1, double AY2, bool ANeedOnLine) const {
  const double Lo = std::min(AY1, AY2), Hi = std::max(AY1, AY2);
  const double Y1 = FStartPt.Y, Y2 = FEndPt.Y;
  if (SameDouble(Y1, Y2)) {
    if (SameDouble(Y1, Lo) || SameDouble(Y1, Hi)) return ANeedOnLine ? Length() : 0;
    return (Y1 > Lo && Y1 < Hi) ? Length() : 0;
  }
  const double A = std::max(std::min(Y1, Y2), Lo), B = std::min(std::max(Y1, Y2), Hi);
  if (B <= A) return 0;
  return Length() * (B - A) / std::fabs(Y2 - Y1);
}

double TKRNCustomLine2d::DropDownArea() const {
  return (FStartPt.Y + FEndPt.Y) * (FStartPt.X - FEndPt.X) / 2;
}

TKRNVector2d TKRNCustomLine2d::EndVector() const { return VectorNormalized(VectorSub(FEndPt, FStartPt)); }
TKRNVector2d TKRNCustomLine2d::StartVector() const { return VectorNormalized(VectorSub(FEndPt, FStartPt)); }
TKRNVector2d TKRNCustomLine2d::TangentVectorAtLength(double) const { return StartVector(); }
TKRNVector2d TKRNCustomLine2d::TangentVectorAtPoint(const TKRNVector2d&) const { return StartVector(); }

TKRNPoint2dDynArray TKRNCustomLine2d::GetSamplePoint(int) const { return {FStartPt, FEndPt}; }

void TKRNCustomLine2d::Inverse() { std::swap(FStartPt, FEndPt); }

void TKRNCustomLine2d::InverseXY() {
  std::swap(FStartPt.X, FStartPt.Y);
  std::swap(FEndPt.X, FEndPt.Y);
}

double TKRNCustomLine2d::Length() const { return VectorDistance(FStartPt, FEndPt); }

TKRNVector2d TKRNCustomLine2d::GetExtendPt(const TKRNVector2d& APoint, double ALength,
                                           TKRNExtendDirection ADir) const {
  const TKRNVector2d D = VectorNormalized(VectorSub(FEndPt, FStartPt));
  return VectorAdd(APoint, VectorScale(D, ADir == ffForward ? ALength : -ALength));
}

TKRNPtr<TKRNCustomLine2d> TKRNCustomLine2d::Extend(double ALength, TKRNExtendDirection ADir) const {
  TKRNPtr<TKRNCustomLine2d> R = Clone();
  if (IsZeroLength()) return R;
  if (ADir == ffForward) R->FEndPt = GetExtendPt(FEndPt, ALength, ffForward);
  else R->FStartPt = GetExtendPt(FStartPt, ALength, ffBack);
  return R;
}

TKRNPtr<TKRNCustomLine2d> TKRNCustomLine2d::ExtendTo(const TKRNVector2d& APoint, TKRNExtendDirection ADir) const {
  TKRNPtr<TKRNCustomLine2d> R = Clone();
  R->TKRNCustomLine2d::InnerExtendTo(APoint, ADir);
  return R;
}

void TKRNCustomLine2d::InnerExtendTo(const TKRNVector2d& APoint, TKRNExtendDirection ADir) {
  if (IsZeroLength()) return;
  const TKRNVector2d E = VectorSub(FEndPt, FStartPt);
  const double T = VectorDot(VectorSub(APoint, FStartPt), E) / VectorDot(E, E);
  const TKRNVector2d Q = VectorAdd(FStartPt, VectorScale(E, T));
  if (ADir == ffForward) FEndPt = Q;
  else FStartPt = Q;
}

void TKRNCustomLine2d::ExtendBoth(double ALength) {
  ExtendForward(ALength);
  ExtendBack(ALength);
}

void TKRNCustomLine2d::ExtendForward(double ALength) {
  if (!IsZeroLength()) FEndPt = GetExtendPt(FEndPt, ALength, ffForward);
}

void TKRNCustomLine2d::ExtendBack(double ALength) {
  if (!IsZeroLength()) FStartPt = GetExtendPt(FStartPt, ALength, ffBack);
}

bool TKRNCustomLine2d::LoadFromStream(TKRNStream& AStream) {
  TKRNVector2d P[2];
  if (AStream.Read(P, sizeof P) != sizeof P) return false;
  FStartPt = P[0];
  FEndPt = P[1];
  return true;
}

void TKRNCustomLine2d::SaveToStream(TKRNStream& AStream) const {
  AStream.WriteValue(FStartPt);
  AStream.WriteValue(FEndPt);
}

TKRNVector2d TKRNCustomLine2d::MiddlePoint() const { return PointMiddle(FStartPt, FEndPt); }

bool TKRNCustomLine2d::IsEqualTo(const TKRNCustomLine2d& ALine, double AEpsilon) const {
  if (ALine.IsArcType()) return false;
  return (PointIsSame(FStartPt, ALine.FStartPt, AEpsilon) && PointIsSame(FEndPt, ALine.FEndPt, AEpsilon)) ||
         (PointIsSame(FStartPt, ALine.FEndPt, AEpsilon) && PointIsSame(FEndPt, ALine.FStartPt, AEpsilon));
}

// ---- arcs: class operations -------------------------------------------------

TKRNVector2d TKRNArc2d::ArcCenterPt(const TKRNVector2d& S, const TKRNVector2d& E, double R, TKRNArcType T) {
  const TKRNVector2d M = PointMiddle(S, E);
  const TKRNVector2d H = VectorSub(E, M);
  const double H2 = H.X * H.X + H.Y * H.Y;
  if (H2 == 0) return M;
  const TKRNVector2d P = (T == atACS || T == atCL) ? TKRNVector2d{-H.Y, H.X} : TKRNVector2d{H.Y, -H.X};
  double F = R * R / H2 - 1;
  F = F < 1e-12 ? 0 : std::sqrt(F);
  return VectorAdd(M, VectorScale(P, F));
}

bool TKRNArc2d::IsValidaty(const TKRNVector2d& S, const TKRNVector2d& E, double R, TKRNArcType T) {
  if (PointIsSame(S, E, KRNEpsilon)) return false;
  if (T != atLine) {
    const double D = VectorDistance(S, E);
    if (R + KRNEpsilon < D / 2) return false;
    if (D / R < KRNMinChordRadiusRatio) return false;
  }
  return true;
}

bool TKRNArc2d::IsValidArc(const TKRNVector2d& S, const TKRNVector2d& E, double R, TKRNArcType T) {
  return T != atLine && IsValidaty(S, E, R, T);
}

bool TKRNArc2d::CalcCenterPt(const TKRNVector2d& S, const TKRNVector2d& E, double R, TKRNArcType T,
                             TKRNVector2d& C) {
  if (!IsValidArc(S, E, R, T)) {
    C = PointMiddle(S, E);
    return false;
  }
  C = ArcCenterPt(S, E, R, T);
  return true;
}

double TKRNArc2d::ArcSweep(const TKRNVector2d& S, const TKRNVector2d& E, double R, TKRNArcType T) {
  const TKRNVector2d C = ArcCenterPt(S, E, R, T);
  return VectorAngleFromTo(VectorSub(S, C), VectorSub(E, C), ArcTypeIsClockwise(T));
}

double TKRNArc2d::ArcLength(const TKRNVector2d& S, const TKRNVector2d& E, double R, TKRNArcType T) {
  return R * ArcSweep(S, E, R, T);
}

TKRNVector2d TKRNArc2d::ArcMiddlePoint(const TKRNVector2d& S, const TKRNVector2d& E, double R, TKRNArcType T) {
  const TKRNVector2d C = ArcCenterPt(S, E, R, T);
  const double Half = ArcSweep(S, E, R, T) / 2;
  return VectorAdd(C, VectorRotate(VectorSub(S, C), ArcTypeIsClockwise(T) ? -Half : Half));
}

namespace {
// The extremes of the circle whose direction lies inside the sweep from A to B, given as
// angles or as any measure that rises with the angle (Q1, Q2, Q3: that measure of one,
// two and three quarter turns).
void ExtendToSweep(TKRNBox2d& B, const TKRNVector2d& C, double R, double A, double Bn, double Q1, double Q2,
                   double Q3) {
  if (Bn > A) {
    if (A < Q1 && Q1 < Bn) B.MaxY() = C.Y + R;
    if (A < Q2 && Q2 < Bn) B.MinX() = C.X - R;
    if (A < Q3 && Q3 < Bn) B.MinY() = C.Y - R;
  } else {
    B.MaxX() = C.X + R;
    if (Q1 > A || Q1 < Bn) B.MaxY() = C.Y + R;
    if (Q2 > A || Q2 < Bn) B.MinX() = C.X - R;
    if (Q3 > A || Q3 < Bn) B.MinY() = C.Y - R;
  }
}

// Where rounding could decide otherwise than on the angles, relative to the vectors.
constexpr double TieHair = 1e-9;

// The quarter turn a direction lies in, 0 from +X up to 3, with -1 for the last
// KRNEpsilon of a turn (NormalizeAngle puts those before zero). False for a direction that
// is not one or lies within a hair of an axis or of that band's edge.
bool QuarterOf(const TKRNVector2d& V, int& AQuarter) {
  const double N = std::fabs(V.X) + std::fabs(V.Y);
  if (!(N > 0) || !std::isfinite(N) || std::fabs(V.X) < TieHair * N || std::fabs(V.Y) < TieHair * N) return false;
  if (V.Y > 0) AQuarter = V.X > 0 ? 0 : 1;
  else if (V.X < 0) AQuarter = 2;
  else {
    static const double C = std::cos(KRNEpsilon), S = std::sin(KRNEpsilon);
    // against the direction KRNEpsilon below +X
    const double Side = C * V.Y + S * V.X;
    if (std::fabs(Side) < TieHair * N) return false;
    AQuarter = Side > 0 ? -1 : 3;
  }
  return true;
}
}  // namespace

TKRNBox2d TKRNArc2d::ArcBox(const TKRNVector2d& S, const TKRNVector2d& E, double R, TKRNArcType T) {
  TKRNBox2d B = BoxOfPoints(S, E);
  if (T == atLine) return B;
  const TKRNVector2d C = ArcCenterPt(S, E, R, T);
  TKRNVector2d U = VectorSub(S, C), V = VectorSub(E, C);
  if (ArcTypeIsClockwise(T)) std::swap(U, V);
  // The same decisions as on the angles without two arc tangents, except near a tie:
  // quarter turns compare as the angles do, and in one quarter the turn from U to V.
  int QU, QV;
  if (QuarterOf(U, QU) && QuarterOf(V, QV)) {
    const double Cross = VectorCross(U, V);
    if (QU != QV || std::fabs(Cross) >= TieHair * (std::fabs(U.X) + std::fabs(U.Y)) * (std::fabs(V.X) + std::fabs(V.Y))) {
      // within a quarter, V a little further on or back as the turn from U goes
      const double Within = QU != QV ? 0 : Cross > 0 ? 0.25 : -0.25;
      ExtendToSweep(B, C, R, QU + 0.5, QV + 0.5 + Within, 1, 2, 3);
      return B;
    }
  }
  ExtendToSweep(B, C, R, NormalizeAngle(VectorAngle(U), KRNEpsilon), NormalizeAngle(VectorAngle(V), KRNEpsilon),
                KRNHalfPi, KRNPi, KRNThreeHalfPi);
  return B;
}

TKRNPoint2dDynArray TKRNArc2d::ArcSamplePoint(const TKRNVector2d& S, const TKRNVector2d& E, double R,
                                              TKRNArcType T, int ASampleRate) {
  const TKRNVector2d C = ArcCenterPt(S, E, R, T);
  const double Sweep = ArcSweep(S, E, R, T);
  // Bounded so that a wild rate cannot exhaust memory.
  const double Wanted = RoundEps(double(ASampleRate) * Sweep / KRNTwoPi);
  const int Count = int(std::clamp(Wanted, 2.0, 1e6));
  double Step = Sweep / (Count - 1);
  if (ArcTypeIsClockwise(T)) Step = -Step;
  TKRNPoint2dDynArray R_;
  R_.reserve(size_t(Count));
  const TKRNVector2d V = VectorSub(S, C);
  R_.push_back(S);
  for (int I = 1; I < Count - 1; ++I) R_.push_back(VectorAdd(C, VectorRotate(V, Step * I)));
  R_.push_back(E);
  return R_;
}

TKRNPtr<TKRNCustomLine2d> TKRNArc2d::CreateBy3Points(const TKRNVector2d& S, const TKRNVector2d& M,
                                                      const TKRNVector2d& E) {
  const double Area2 = VectorCross(VectorSub(M, S), VectorSub(E, S));
  if (IsZero(Area2)) return KRNMakeSegment(S, E, 0, atLine);
  const double A = VectorDistance(S, M), B = VectorDistance(E, M), C = VectorDistance(S, E);
  const double R = A * B * C / (4 * (std::fabs(Area2) / 2));
  if (R > KRNMaxArcRadius) return KRNMakeSegment(S, E, 0, atLine);
  const double K = (A * A + B * B - C * C) / (2 * A * B);
  const bool CCW = VectorCross(VectorSub(S, M), VectorSub(E, M)) <= 0;
  TKRNArcType T;
  if (K < 0) T = CCW ? atACS : atCS;
  else T = CCW ? atACL : atCL;
  return KRNMakeSegment(S, E, R, T);
}

// ---- arcs: instance ---------------------------------------------------------

void TKRNArc2d::Validate() {
  if (!IsValidArc(FStartPt, FEndPt, FRadius, FArcType)) FArcType = atLine;
}

void TKRNArc2d::Assign(const TKRNCustomLine2d& ALine) {
  TKRNCustomLine2d::Assign(ALine);
  FArcType = ALine.ArcType();
  FRadius = ALine.Radius();
}

std::string TKRNArc2d::AsString() const { return TKRNCustomLine2d::AsString(); }

TKRNBox2d TKRNArc2d::Box() const {
  return ActsAsArc() ? ArcBox(FStartPt, FEndPt, FRadius, FArcType) : TKRNCustomLine2d::Box();
}

TKRNPtr<TKRNCustomLine2d> TKRNArc2d::Clone() const {
  return TKRNPtr<TKRNCustomLine2d>(new TKRNArc2d(FStartPt, FEndPt, FRadius, FArcType));
}

double TKRNArc2d::LengthBetweenY(double AY1, double AY2, bool ANeedOnLine) const {
  if (!ActsAsArc()) return TKRNCustomLine2d::LengthBetweenY(AY1, AY2, ANeedOnLine);
  const TKRNVector2d C = CenterPt();
  const double Lo = std::clamp((std::min(AY1, AY2) - C.Y) / FRadius, -1.0, 1.0);
  const double Hi = std::clamp((std::max(AY1, AY2) - C.Y) / FRadius, -1.0, 1.0);
  if (Hi <= Lo) return 0;
  // Angles whose sine lies in [Lo, Hi]: two intervals on the circle.
  const double A1 = std::asin(Lo), A2 = std::asin(Hi);
  const double Bands[2][2] = {{A1, A2}, {KRNPi - A2, KRNPi - A1}};
  // The arc as an anticlockwise interval [T0, T0 + Sweep].
  const TKRNVector2d From = Clockwise() ? FEndPt : FStartPt;
  double T0 = VectorAngle(VectorSub(From, C));
  const double Sw = Sweep();
  double Sum = 0;
  for (const auto& Band : Bands)
    for (int K = -2; K <= 2; ++K) {
      const double B0 = Band[0] + K * KRNTwoPi, B1 = Band[1] + K * KRNTwoPi;
      const double Lo2 = std::max(B0, T0), Hi2 = std::min(B1, T0 + Sw);
      if (Hi2 > Lo2) Sum += Hi2 - Lo2;
    }
  return std::min(Sum, Sw) * FRadius;
}

double TKRNArc2d::DropDownArea() const {
  const double Chord = TKRNCustomLine2d::DropDownArea();
  if (!ActsAsArc()) return Chord;
  const double T = Sweep();
  const double Seg = FRadius * FRadius / 2 * (T - std::sin(T));
  return Clockwise() ? Chord - Seg : Chord + Seg;
}

static TKRNVector2d ArcTangent(const TKRNVector2d& ACenter, const TKRNVector2d& APt, bool AClockwise) {
  return VectorPerpendicular(VectorNormalized(VectorSub(APt, ACenter)), AClockwise);
}

TKRNVector2d TKRNArc2d::EndVector() const {
  return ActsAsArc() ? ArcTangent(CenterPt(), FEndPt, Clockwise()) : TKRNCustomLine2d::EndVector();
}

TKRNVector2d TKRNArc2d::StartVector() const {
  return ActsAsArc() ? ArcTangent(CenterPt(), FStartPt, Clockwise()) : TKRNCustomLine2d::StartVector();
}

TKRNVector2d TKRNArc2d::TangentVectorAtLength(double ALen) const {
  if (!ActsAsArc()) return TKRNCustomLine2d::TangentVectorAtLength(ALen);
  const TKRNVector2d C = CenterPt();
  const double A = ALen / FRadius;
  const TKRNVector2d P = VectorAdd(C, VectorRotate(VectorSub(FStartPt, C), Clockwise() ? -A : A));
  return ArcTangent(C, P, Clockwise());
}

TKRNVector2d TKRNArc2d::TangentVectorAtPoint(const TKRNVector2d& APt) const {
  return ActsAsArc() ? ArcTangent(CenterPt(), APt, Clockwise()) : TKRNCustomLine2d::TangentVectorAtPoint(APt);
}

TKRNPoint2dDynArray TKRNArc2d::GetSamplePoint(int ASampleRate) const {
  return ActsAsArc() ? ArcSamplePoint(FStartPt, FEndPt, FRadius, FArcType, ASampleRate)
                     : TKRNCustomLine2d::GetSamplePoint(ASampleRate);
}

void TKRNArc2d::Inverse() {
  TKRNCustomLine2d::Inverse();
  FArcType = ArcTypeOpposite(FArcType);
}

void TKRNArc2d::InverseXY() {
  TKRNCustomLine2d::InverseXY();
  FArcType = ArcTypeOpposite(FArcType);
}

double TKRNArc2d::Length() const {
  return ActsAsArc() ? ArcLength(FStartPt, FEndPt, FRadius, FArcType) : TKRNCustomLine2d::Length();
}

TKRNVector2d TKRNArc2d::GetExtendPt(const TKRNVector2d& APoint, double ALength, TKRNExtendDirection ADir) const {
  if (!ActsAsArc()) return TKRNCustomLine2d::GetExtendPt(APoint, ALength, ADir);
  const TKRNVector2d C = CenterPt();
  double A = ALength / FRadius;
  if (Clockwise()) A = -A;
  if (ADir == ffBack) A = -A;
  return VectorAdd(C, VectorRotate(VectorSub(APoint, C), A));
}

TKRNPtr<TKRNCustomLine2d> TKRNArc2d::Extend(double ALength, TKRNExtendDirection ADir) const {
  if (!ActsAsArc()) return TKRNCustomLine2d::Extend(ALength, ADir);
  auto* R = new TKRNArc2d(FStartPt, FEndPt, FRadius, FArcType);
  TKRNPtr<TKRNCustomLine2d> Result(R);
  const TKRNVector2d C = CenterPt();
  double Total = std::fmod(Sweep() + ALength / FRadius, KRNTwoPi);
  if (Total < 0) Total += KRNTwoPi;
  const double Signed = Clockwise() ? -Total : Total;
  if (ADir == ffForward) R->FEndPt = VectorAdd(C, VectorRotate(VectorSub(FStartPt, C), Signed));
  else R->FStartPt = VectorAdd(C, VectorRotate(VectorSub(FEndPt, C), -Signed));
  R->FArcType = ArcTypeOf(Clockwise(), Total > KRNPi);
  return Result;
}

TKRNPtr<TKRNCustomLine2d> TKRNArc2d::ExtendTo(const TKRNVector2d& APoint, TKRNExtendDirection ADir) const {
  TKRNPtr<TKRNCustomLine2d> R = Clone();
  R->InnerExtendTo(APoint, ADir);
  return R;
}

void TKRNArc2d::InnerExtendTo(const TKRNVector2d& APoint, TKRNExtendDirection ADir) {
  if (!ActsAsArc()) {
    TKRNCustomLine2d::InnerExtendTo(APoint, ADir);
    return;
  }
  const TKRNVector2d C = CenterPt();
  const TKRNVector2d D = VectorNormalized(VectorSub(APoint, C));
  if (VectorIsZero(D)) return;
  const TKRNVector2d Q = VectorAdd(C, VectorScale(D, FRadius));
  if (ADir == ffForward) FEndPt = Q;
  else FStartPt = Q;
  const double Sw = VectorAngleFromTo(VectorSub(FStartPt, C), VectorSub(FEndPt, C), Clockwise());
  FArcType = ArcTypeOf(Clockwise(), Sw > KRNPi);
}

bool TKRNArc2d::LoadFromStream(TKRNStream& AStream) {
  if (!TKRNCustomLine2d::LoadFromStream(AStream)) return false;
  unsigned char T;
  double R;
  if (AStream.Read(&T, 1) != 1 || T > atCL || AStream.Read(&R, sizeof R) != sizeof R) return false;
  FArcType = TKRNArcType(T);
  FRadius = R;
  return true;
}

void TKRNArc2d::SaveToStream(TKRNStream& AStream) const {
  TKRNCustomLine2d::SaveToStream(AStream);
  AStream.WriteValue<unsigned char>(FArcType);
  AStream.WriteValue(FRadius);
}

TKRNVector2d TKRNArc2d::MiddlePoint() const {
  return ActsAsArc() ? ArcMiddlePoint(FStartPt, FEndPt, FRadius, FArcType) : TKRNCustomLine2d::MiddlePoint();
}

bool TKRNArc2d::IsEqualTo(const TKRNCustomLine2d& ALine, double AEpsilon) const {
  if (!IsArcType()) return TKRNCustomLine2d::IsEqualTo(ALine, AEpsilon);
  const auto* Other = dynamic_cast<const TKRNArc2d*>(&ALine);
  if (!Other || !IsValidateArc() || !Other->IsValidateArc()) return false;
  if (!PointIsSame(CenterPt(), Other->CenterPt(), AEpsilon)) return false;
  if (!SameDouble(FRadius, Other->FRadius, KRNEpsilon)) return false;
  const bool SameDir = Clockwise() == Other->Clockwise();
  if (SameDir) return PointIsSame(FStartPt, Other->FStartPt, AEpsilon) && PointIsSame(FEndPt, Other->FEndPt, AEpsilon);
  return PointIsSame(FStartPt, Other->FEndPt, AEpsilon) && PointIsSame(FEndPt, Other->FStartPt, AEpsilon);
}

// ---- edges ------------------------------------------------------------------

void TKRNEdge2d::Initialize() {
  KRN2dObjectPool().DelObject(FLine);
  FLine = nullptr;
}

void TKRNEdge2d::SetLine(TKRNCustomLine2d* ALine) {
  if (FLine != ALine) KRN2dObjectPool().DelObject(FLine);
  FLine = ALine;
}

TKRNPtr<TKRNCustomLine2d> KRNMakeSegment(const TKRNVector2d& AStartPt, const TKRNVector2d& AEndPt, double ARadius,
                                         TKRNArcType AArcType) {
  if (AArcType == atLine) return TKRNPtr<TKRNCustomLine2d>(KRN2dObjectPool().GetLine(AStartPt, AEndPt).release());
  return TKRNPtr<TKRNCustomLine2d>(new TKRNArc2d(AStartPt, AEndPt, ARadius, AArcType));
}
