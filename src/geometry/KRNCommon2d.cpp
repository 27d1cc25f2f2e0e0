#include "KRNCommon2d.h"

#include <algorithm>
#include <cctype>
#include <charconv>

TKRNBeeline2d::TKRNBeeline2d(const TKRNVector2d& APoint, const TKRNVector2d& AVector)
    : Point(APoint), Vector(VectorNormalized(AVector)) {}

double NormalizeAngle(double AAngle, double AEpsilon) {
  if (!std::isfinite(AAngle)) return AAngle;
  if (std::fabs(AAngle) > 1e6) AAngle = std::fmod(AAngle, KRNTwoPi);
  while (AAngle < -AEpsilon) AAngle += KRNTwoPi;
  while (AAngle > KRNTwoPi + AEpsilon) AAngle -= KRNTwoPi;
  if (AAngle > KRNTwoPi - AEpsilon) AAngle -= KRNTwoPi;
  return AAngle;
}

double FloorEps(double AValue) {
  const double V = AValue + KRNEpsilon / 1000;
  const double T = std::trunc(V);
  return (V - T < 0) ? T - 1 : T;
}

double RoundEps(double AValue) {
  return std::round(AValue + KRNEpsilon / 1000);
}

double VectorAngle(const TKRNVector2d& V) {
  if (std::isnan(V.X) || std::isnan(V.Y)) return 0;
  const double A = std::atan2(V.Y, V.X);
  return SameDouble(A, -KRNPi, 1e-12) ? KRNPi : A;
}

double VectorAngleBetween(const TKRNVector2d& A, const TKRNVector2d& B, double AEpsilon) {
  const double L = VectorLength(A) * VectorLength(B);
  if (SameDouble(L, 0, KRNEpsilon)) return KRNHalfPi;
  const double C = VectorDot(A, B) / L;
  if (SameDouble(C, 1, AEpsilon)) return 0;
  if (SameDouble(C, -1, AEpsilon)) return KRNPi;
  return std::acos(C);
}

double VectorAngleFromTo(const TKRNVector2d& A, const TKRNVector2d& B, bool AClockwise) {
  const double L = VectorLength(A) * VectorLength(B);
  if (SameDouble(L, 0, 0)) return KRNHalfPi;
  const TKRNVector2d& P = AClockwise ? B : A;
  const TKRNVector2d& Q = AClockwise ? A : B;
  const double C = VectorDot(P, Q) / L;
  if (C >= 1 - 1e-12) return 0;
  if (C <= -1 + 1e-12) return KRNPi;
  const double Ac = std::acos(C);
  return VectorCross(P, Q) / L < 0 ? KRNTwoPi - Ac : Ac;
}

bool VectorIsPerpendicular(const TKRNVector2d& A, const TKRNVector2d& B, double AEpsilon) {
  return SameDouble(VectorAngleBetween(A, B, KRNEpsilon), KRNHalfPi, AEpsilon);
}

bool VectorIsParallel(const TKRNVector2d& A, const TKRNVector2d& B, double AEpsilon) {
  return SameDouble(VectorCross(VectorNormalized(A), VectorNormalized(B)), 0, AEpsilon);
}

bool VectorIsUnit(const TKRNVector2d& V, double AEpsilon) { return SameDouble(VectorLength(V), 1, AEpsilon); }

bool VectorIsZero(const TKRNVector2d& V, double AEpsilon) {
  return SameDouble(V.X, 0, AEpsilon) && SameDouble(V.Y, 0, AEpsilon);
}

TKRNVector2d VectorNormalized(const TKRNVector2d& V) {
  const double L = VectorLength(V);
  if (SameDouble(L, 0, KRNEpsilon)) return {0, 0};
  return {V.X / L, V.Y / L};
}

void VectorNormalize(TKRNVector2d& V) { V = VectorNormalized(V); }

TKRNVector2d VectorRotate(const TKRNVector2d& V, double AAngle) {
  const double C = std::cos(AAngle), S = std::sin(AAngle);
  return {V.X * C - V.Y * S, V.X * S + V.Y * C};
}

void VectorRotateIn(TKRNVector2d& V, double AAngle) { V = VectorRotate(V, AAngle); }

TKRNVector2d VectorPerpendicular(const TKRNVector2d& V, bool AClockwise) {
  return AClockwise ? TKRNVector2d{V.Y, -V.X} : TKRNVector2d{-V.Y, V.X};
}

void VectorPerpendicularIn(TKRNVector2d& V, bool AClockwise) { V = VectorPerpendicular(V, AClockwise); }

TKRNVector2d VectorReflect(const TKRNVector2d& V, const TKRNVector2d& AAxis) {
  const double L = VectorLength(V);
  const double A = 2 * VectorAngle(AAxis) - VectorAngle(V);
  return {L * std::cos(A), L * std::sin(A)};
}

std::string KRNFloatF(double AValue) {
  char Buf[400];
  const auto R = std::to_chars(Buf, Buf + sizeof Buf, AValue, std::chars_format::fixed, 6);
  return std::string(Buf, R.ptr);
}

std::string KRNFloatG(double AValue) {
  char Buf[64];
  const auto R = std::to_chars(Buf, Buf + sizeof Buf, AValue, std::chars_format::general, 6);
  return std::string(Buf, R.ptr);
}

bool KRNParseFloat(const std::string& S, double& AValue) {
  size_t B = 0, E = S.size();
  while (B < E && std::isspace(static_cast<unsigned char>(S[B]))) ++B;
  while (E > B && std::isspace(static_cast<unsigned char>(S[E - 1]))) --E;
  if (B < E && S[B] == '+') ++B;
  if (B >= E) return false;
  double V = 0;
  const auto R = std::from_chars(S.data() + B, S.data() + E, V);
  if (R.ec != std::errc() || R.ptr != S.data() + E) return false;
  AValue = V;
  return true;
}

std::string VectorAsString(const TKRNVector2d& V) { return KRNFloatF(V.X) + "," + KRNFloatF(V.Y); }

bool VectorFromString(const std::string& S, TKRNVector2d& V) {
  const size_t C = S.find(',');
  if (C == std::string::npos) return false;
  TKRNVector2d R;
  if (!KRNParseFloat(S.substr(0, C), R.X) || !KRNParseFloat(S.substr(C + 1), R.Y)) return false;
  V = R;
  return true;
}

bool BoxIntersection(const TKRNBox2d& A, const TKRNBox2d& B, TKRNBox2d& R) {
  R = {{std::max(A.MinX(), B.MinX()), std::max(A.MinY(), B.MinY())},
       {std::min(A.MaxX(), B.MaxX()), std::min(A.MaxY(), B.MaxY())}};
  return R.MaxX() > R.MinX() && R.MaxY() > R.MinY();
}

bool BoxIsTouching(const TKRNBox2d& A, const TKRNBox2d& B, bool AIncludeBorder) {
  if (AIncludeBorder)
    return DoubleLessEqual(A.MinX(), B.MaxX()) && DoubleLessEqual(A.MinY(), B.MaxY()) &&
           DoubleLessEqual(B.MinX(), A.MaxX()) && DoubleLessEqual(B.MinY(), A.MaxY());
  return DoubleLess(A.MinX(), B.MaxX()) && DoubleLess(A.MinY(), B.MaxY()) && DoubleLess(B.MinX(), A.MaxX()) &&
         DoubleLess(B.MinY(), A.MaxY());
}

bool BoxIsOverlapping(const TKRNBox2d& A, const TKRNBox2d& B, bool AIncludeBorder, double AEpsilon) {
  if (AIncludeBorder)
    return DoubleGreaterEqual(B.MaxX(), A.MinX(), AEpsilon) && DoubleGreaterEqual(B.MaxY(), A.MinY(), AEpsilon) &&
           DoubleGreaterEqual(A.MaxX(), B.MinX(), AEpsilon) && DoubleGreaterEqual(A.MaxY(), B.MinY(), AEpsilon);
  return DoubleGreater(B.MaxX(), A.MinX(), AEpsilon) && DoubleGreater(B.MaxY(), A.MinY(), AEpsilon) &&
         DoubleGreater(A.MaxX(), B.MinX(), AEpsilon) && DoubleGreater(A.MaxY(), B.MinY(), AEpsilon);
}

bool BoxIsValid(const TKRNBox2d& B) {
  return B.MaxX() > B.MinX() - KRNEpsilon && B.MaxY() > B.MinY() - KRNEpsilon;
}

TKRNArcType ArcTypeOpposite(TKRNArcType T) {
  switch (T) {
    case atACS: return atCS;
    case atCS: return atACS;
    case atACL: return atCL;
    case atCL: return atACL;
    default: return T;
  }
}

TKRNArcType ArcTypeComplement(TKRNArcType T) {
  switch (T) {
    case atACS: return atACL;
    case atACL: return atACS;
    case atCS: return atCL;
    case atCL: return atCS;
    default: return T;
  }
}

const char* ArcTypeToString(TKRNArcType T) {
  switch (T) {
    case atACS: return "ltACSArc";
    case atCS: return "ltCSArc";
    case atACL: return "ltACLArc";
    case atCL: return "ltCLArc";
    default: return "ltLine";
  }
}

TKRNArcType ArcTypeFromString(const std::string& S) {
  std::string L;
  for (const char C : S) L += char(std::tolower(static_cast<unsigned char>(C)));
  if (L == "ltacsarc") return atACS;
  if (L == "ltcsarc") return atCS;
  if (L == "ltaclarc") return atACL;
  if (L == "ltclarc") return atCL;
  return atLine;
}

TKRNArcType ArcTypeOf(bool AClockwise, bool ALarge) {
  if (AClockwise) return ALarge ? atCL : atCS;
  return ALarge ? atACL : atACS;
}
