#include "VDIGeometry.h"

#include "KRNIntersectFunc2d.h"

#include "KRNPositionFunc2d.h"

#include <algorithm>
#include <cmath>

namespace {

// Liang-Barsky against a closed box, degenerate boxes included.
bool StraightTouchesBox(const TKRNVector2d& A, const TKRNVector2d& B, const TKRNBox2d& Box) {
  double T0 = 0, T1 = 1;
  const double DX = B.X - A.X, DY = B.Y - A.Y;
  const double P[4] = {-DX, DX, -DY, DY};
  const double Q[4] = {A.X - Box.MinX(), Box.MaxX() - A.X, A.Y - Box.MinY(), Box.MaxY() - A.Y};
  for (int I = 0; I < 4; ++I) {
    if (P[I] == 0) {
      if (Q[I] < 0) return false;
    } else {
      const double R = Q[I] / P[I];
      if (P[I] < 0) T0 = std::max(T0, R);
      else T1 = std::min(T1, R);
      if (T0 > T1) return false;
    }
  }
  return true;
}

}  // namespace

bool SegmentTouchesBox(const TKRNCustomLine2d& ASeg, const TKRNBox2d& ABox) {
  const TKRNBox2d SB = ASeg.Box();
  if (SB.MinX() > ABox.MaxX() || SB.MaxX() < ABox.MinX() || SB.MinY() > ABox.MaxY() || SB.MaxY() < ABox.MinY())
    return false;
  if (!ASeg.IsArcType()) return StraightTouchesBox(ASeg.StartPt(), ASeg.EndPt(), ABox);
  const TKRNPoint2dDynArray P = ASeg.GetSamplePoint(720);
  for (size_t I = 0; I + 1 < P.size(); ++I)
    if (StraightTouchesBox(P[I], P[I + 1], ABox)) return true;
  return false;
}

bool PolygonTouchesBox(const TKRNCustomPolygon2d& APoly, const TKRNBox2d& ABox) {
  if (APoly.GetCount() == 0) return false;
  return !TKRNIntersectFunc2d::IntersectPts(TKRNPolygon2d(ABox), APoly, true).empty();
}

bool RingTouchesBox(const TKRNVector2d& ACenter, double AInner, double AOuter, const TKRNBox2d& ABox) {
  const double NX = std::clamp(ACenter.X, ABox.MinX(), ABox.MaxX());
  const double NY = std::clamp(ACenter.Y, ABox.MinY(), ABox.MaxY());
  const double Near = VectorDistance(ACenter, {NX, NY});
  const double FX = std::max(std::fabs(ACenter.X - ABox.MinX()), std::fabs(ACenter.X - ABox.MaxX()));
  const double FY = std::max(std::fabs(ACenter.Y - ABox.MinY()), std::fabs(ACenter.Y - ABox.MaxY()));
  const double Far = std::hypot(FX, FY);
  return Near <= AOuter && Far >= AInner;
}

bool BoxInWindow(const TKRNBox2d& AItemBox, const TKRNBox2d& AWindow) {
  const TKRNPolyPositionType P = TKRNPositionFunc2d::BoxBoxPosition(AItemBox, AWindow, KRNEpsilon);
  return P == ppt1In2 || P == pptEqual;
}

TKRNBox2d InflateBox(const TKRNBox2d& ABox, double ADelta) {
  return {{ABox.MinX() - ADelta, ABox.MinY() - ADelta}, {ABox.MaxX() + ADelta, ABox.MaxY() + ADelta}};
}

TKRNPolygon2d FatPolygon(const TKRNCustomLine2d& AEdge, double AWidth) { return TKRNPolygon2d(AEdge, AWidth, 0, true); }
