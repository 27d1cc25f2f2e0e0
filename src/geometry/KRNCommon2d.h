#pragma once
// Value records, constants and the tolerance rules every geometric test obeys,
// with the plain vector, box and arc-type operations built on them.

#include <algorithm>
#include <cmath>
#include <string>
#include <vector>

constexpr double KRNEpsilon = 0.0010123456789;
constexpr double KRNAngleEpsilon = 1.0123456789e-7;
constexpr double KRNFineEpsilon = 1.0123456789e-5;
constexpr double KRNMidEpsilon = 1.0123456789e-6;
constexpr double KRNToleranceFloor = 1e-12;
constexpr double KRNMinChordRadiusRatio = 5e-06;
constexpr double KRNMaxArcRadius = 1e7;

constexpr double KRNPi = 3.141592653589793;
constexpr double KRNHalfPi = 1.5707963267948966;
constexpr double KRNTwoPi = 6.283185307179586;
constexpr double KRNThreeHalfPi = 4.71238898038469;

struct TKRNVector2d {
  double X = 0;
  double Y = 0;
};
using TKRNPoint2d = TKRNVector2d;

struct TKRNPoint2i {
  int X = 0;
  int Y = 0;
};

// StartPt is the minimum corner, EndPt the maximum.
struct TKRNBox2d {
  TKRNVector2d StartPt, EndPt;
  double MinX() const { return StartPt.X; }
  double MinY() const { return StartPt.Y; }
  double MaxX() const { return EndPt.X; }
  double MaxY() const { return EndPt.Y; }
  double& MinX() { return StartPt.X; }
  double& MinY() { return StartPt.Y; }
  double& MaxX() { return EndPt.X; }
  double& MaxY() { return EndPt.Y; }
};

struct TKRNBox2i {
  TKRNPoint2i StartPt, EndPt;
  int MinX() const { return StartPt.X; }
  int MinY() const { return StartPt.Y; }
  int MaxX() const { return EndPt.X; }
  int MaxY() const { return EndPt.Y; }
};

// An infinite line; the constructor stores the direction normalised.
struct TKRNBeeline2d {
  TKRNVector2d Point, Vector;
  TKRNBeeline2d() = default;
  TKRNBeeline2d(const TKRNVector2d& APoint, const TKRNVector2d& AVector);
};

using TKRNPoint2dDynArray = std::vector<TKRNVector2d>;
using TKRNBox2dDynArray = std::vector<TKRNBox2d>;
using TKRNBeeLine2dArr = std::vector<TKRNBeeline2d>;
using TKRNBeeLine2dArrArr = std::vector<TKRNBeeLine2dArr>;

enum TKRNArcType : unsigned char { atLine, atACS, atCS, atACL, atCL };
enum TVertexType : unsigned char { vtLine, vtArc, vtEllipseArc };
enum TSegType { stLine2d, stArc2d };
enum TPolygonType { ptCircle, ptEllipse, ptOrthoRectangle, ptRectangle, ptPolygon };
enum TKRNExtendDirection { ffForward, ffBack };
enum TVertAlignment { vaTopJustify, vaBottomJustify, vaCenter };
enum THorzAlignment { haLeftJustify, haRightJustify, haCenter };

// ---- scalar comparison ------------------------------------------------------

inline double EffectiveEpsilon(double A, double B, double AEpsilon) {
  const double Rel = std::fmin(std::fabs(A), std::fabs(B)) * 1e-12;
  const double T = Rel > KRNToleranceFloor ? Rel : KRNToleranceFloor;
  return AEpsilon > T ? AEpsilon : T;
}

// -1, 0 or 1; values exactly the tolerance apart already differ. The test is
// written as a sum so that B = A + T, computed as such, differs from A.
inline int CompareDouble(double A, double B, double AEpsilon = KRNEpsilon) {
  const double T = EffectiveEpsilon(A, B, AEpsilon);
  if (B > A && B >= A + T) return -1;
  if (A >= B && A >= B + T) return 1;
  return 0;
}

// Values exactly the tolerance apart are the same (unlike CompareDouble).
inline bool SameDouble(double A, double B, double AEpsilon = KRNEpsilon) {
  return std::fabs(A - B) <= EffectiveEpsilon(A, B, AEpsilon);
}

inline bool DoubleGreater(double A, double B, double AEpsilon = KRNEpsilon) { return CompareDouble(A, B, AEpsilon) == 1; }
inline bool DoubleGreaterEqual(double A, double B, double AEpsilon = KRNEpsilon) { return CompareDouble(A, B, AEpsilon) != -1; }
inline bool DoubleLess(double A, double B, double AEpsilon = KRNEpsilon) { return CompareDouble(A, B, AEpsilon) == -1; }
inline bool DoubleLessEqual(double A, double B, double AEpsilon = KRNEpsilon) { return CompareDouble(A, B, AEpsilon) != 1; }
inline bool IsZero(double A, double AEpsilon = KRNEpsilon) { return SameDouble(A, 0.0, AEpsilon); }

// Result in [-AEpsilon, two pi - AEpsilon].
double NormalizeAngle(double AAngle, double AEpsilon = KRNEpsilon);
double FloorEps(double AValue);
double RoundEps(double AValue);

// ---- vectors ----------------------------------------------------------------

inline TKRNVector2d Vector2d(double AX, double AY) { return TKRNVector2d{AX, AY}; }
inline TKRNVector2d VectorAdd(const TKRNVector2d& A, const TKRNVector2d& B) { return {A.X + B.X, A.Y + B.Y}; }
inline TKRNVector2d VectorSub(const TKRNVector2d& A, const TKRNVector2d& B) { return {A.X - B.X, A.Y - B.Y}; }
inline TKRNVector2d VectorScale(const TKRNVector2d& V, double S) { return {V.X * S, V.Y * S}; }
inline void VectorAddIn(TKRNVector2d& A, const TKRNVector2d& B) { A.X += B.X; A.Y += B.Y; }
inline void VectorSubIn(TKRNVector2d& A, const TKRNVector2d& B) { A.X -= B.X; A.Y -= B.Y; }
inline void VectorScaleIn(TKRNVector2d& V, double S) { V.X *= S; V.Y *= S; }
inline TKRNVector2d VectorNegate(const TKRNVector2d& V) { return {-V.X, -V.Y}; }
inline void VectorNegateIn(TKRNVector2d& V) { V.X = -V.X; V.Y = -V.Y; }
inline double VectorDot(const TKRNVector2d& A, const TKRNVector2d& B) { return A.X * B.X + A.Y * B.Y; }
inline double VectorCross(const TKRNVector2d& A, const TKRNVector2d& B) { return A.X * B.Y - B.X * A.Y; }
inline double VectorLengthSqr(const TKRNVector2d& V) { return V.X * V.X + V.Y * V.Y; }
inline double VectorLength(const TKRNVector2d& V) { return std::sqrt(VectorLengthSqr(V)); }
inline double VectorDistance(const TKRNVector2d& A, const TKRNVector2d& B) { return VectorLength(VectorSub(B, A)); }
inline TKRNVector2d VectorFromTo(const TKRNVector2d& A, const TKRNVector2d& B) { return VectorSub(B, A); }
inline TKRNVector2d PointMiddle(const TKRNVector2d& A, const TKRNVector2d& B) { return {(A.X + B.X) / 2, (A.Y + B.Y) / 2}; }

// atan2 in (-pi, pi]; -pi comes back as +pi.
double VectorAngle(const TKRNVector2d& V);
double VectorAngleBetween(const TKRNVector2d& A, const TKRNVector2d& B, double AEpsilon = KRNEpsilon);
// Swept angle from A to B in [0, two pi), anticlockwise unless AClockwise.
double VectorAngleFromTo(const TKRNVector2d& A, const TKRNVector2d& B, bool AClockwise);
bool VectorIsPerpendicular(const TKRNVector2d& A, const TKRNVector2d& B, double AEpsilon = KRNEpsilon);
bool VectorIsParallel(const TKRNVector2d& A, const TKRNVector2d& B, double AEpsilon = KRNEpsilon);
bool VectorIsUnit(const TKRNVector2d& V, double AEpsilon = KRNEpsilon);
bool VectorIsZero(const TKRNVector2d& V, double AEpsilon = KRNEpsilon);
// A square neighbourhood: X and Y compared separately.
inline bool PointIsSame(const TKRNVector2d& A, const TKRNVector2d& B, double AEpsilon = KRNEpsilon) {
  return SameDouble(A.X, B.X, AEpsilon) && SameDouble(A.Y, B.Y, AEpsilon);
}
// A length the same as zero gives the zero vector.
TKRNVector2d VectorNormalized(const TKRNVector2d& V);
void VectorNormalize(TKRNVector2d& V);
TKRNVector2d VectorRotate(const TKRNVector2d& V, double AAngle);
void VectorRotateIn(TKRNVector2d& V, double AAngle);
TKRNVector2d VectorPerpendicular(const TKRNVector2d& V, bool AClockwise);
void VectorPerpendicularIn(TKRNVector2d& V, bool AClockwise);
TKRNVector2d VectorReflect(const TKRNVector2d& V, const TKRNVector2d& AAxis);

// "%f,%f"; parsing splits at the comma. False when either part is not a number.
std::string VectorAsString(const TKRNVector2d& V);
bool VectorFromString(const std::string& S, TKRNVector2d& V);

// ---- boxes ------------------------------------------------------------------

inline TKRNBox2d BoxOfPoints(const TKRNVector2d& A, const TKRNVector2d& B) {
  return {{std::min(A.X, B.X), std::min(A.Y, B.Y)}, {std::max(A.X, B.X), std::max(A.Y, B.Y)}};
}
inline TKRNBox2d BoxUnion(const TKRNBox2d& A, const TKRNBox2d& B) {
  return {{std::min(A.MinX(), B.MinX()), std::min(A.MinY(), B.MinY())},
          {std::max(A.MaxX(), B.MaxX()), std::max(A.MaxY(), B.MaxY())}};
}
bool BoxIntersection(const TKRNBox2d& A, const TKRNBox2d& B, TKRNBox2d& R);
bool BoxIsTouching(const TKRNBox2d& A, const TKRNBox2d& B, bool AIncludeBorder);
bool BoxIsOverlapping(const TKRNBox2d& A, const TKRNBox2d& B, bool AIncludeBorder, double AEpsilon = KRNEpsilon);
bool BoxIsValid(const TKRNBox2d& B);
inline void BoxAddPoint(TKRNBox2d& B, const TKRNVector2d& P) {
  B.MinX() = std::min(B.MinX(), P.X);
  B.MinY() = std::min(B.MinY(), P.Y);
  B.MaxX() = std::max(B.MaxX(), P.X);
  B.MaxY() = std::max(B.MaxY(), P.Y);
}

// ---- arc types --------------------------------------------------------------

inline bool ArcTypeIsArc(TKRNArcType T) { return T != atLine; }
inline bool ArcTypeIsClockwise(TKRNArcType T) { return T == atCS || T == atCL; }
inline bool ArcTypeIsLarge(TKRNArcType T) { return T == atACL || T == atCL; }
TKRNArcType ArcTypeOpposite(TKRNArcType T);
TKRNArcType ArcTypeComplement(TKRNArcType T);
// "ltACSArc", "ltCSArc", "ltACLArc", "ltCLArc", else "ltLine"; parsing ignores case.
const char* ArcTypeToString(TKRNArcType T);
TKRNArcType ArcTypeFromString(const std::string& S);
// An arc type from its parts; a sweep not above pi is small.
TKRNArcType ArcTypeOf(bool AClockwise, bool ALarge);

// Number text independent of the process locale: "%f" and "%g" as printf gives
// them in the C locale, and a parse of a plain number with blanks around.
std::string KRNFloatF(double AValue);
std::string KRNFloatG(double AValue);
bool KRNParseFloat(const std::string& S, double& AValue);
