#include "KRNOffsetFunc2d.h"

namespace {

bool OffsetStraight(TKRNCustomLine2d& ASeg, double ADist) {
  if (PointIsSame(ASeg.StartPt(), ASeg.EndPt(), KRNEpsilon))
    return false;
  TKRNVector2d N = VectorPerpendicular(VectorSub(ASeg.EndPt(), ASeg.StartPt()), true);
  VectorNormalize(N);
  VectorScaleIn(N, ADist);
  ASeg.SetStartPt(VectorAdd(ASeg.StartPt(), N));
  ASeg.SetEndPt(VectorAdd(ASeg.EndPt(), N));
  return true;
}

}  // namespace

bool TKRNOffsetFunc2d::Offset(TKRNCustomLine2d& ASeg, double ADist) {
  if (auto* Arc = dynamic_cast<TKRNArc2d*>(&ASeg))
    return Offset(*Arc, ADist);
  return OffsetStraight(ASeg, ADist);
}

bool TKRNOffsetFunc2d::Offset(TKRNLine2d& ALine, double ADist) { return OffsetStraight(ALine, ADist); }

bool TKRNOffsetFunc2d::Offset(TKRNArc2d& AArc, double ADist) {
  TKRNVector2d C;
  if (!AArc.IsArcType() || !AArc.CenterPt(C)) {
    // a degenerate arc is offset as its chord
    AArc.SetRadius(0);
    AArc.SetArcType(atLine);
    return OffsetStraight(AArc, ADist);
  }
  const double R = AArc.Radius();
  const double NewR = AArc.Clockwise() ? R - ADist : R + ADist;
  if (NewR <= KRNEpsilon)
    return false;
  const double K = NewR / R;
  AArc.SetStartPt(VectorAdd(C, VectorScale(VectorSub(AArc.StartPt(), C), K)));
  AArc.SetEndPt(VectorAdd(C, VectorScale(VectorSub(AArc.EndPt(), C), K)));
  AArc.SetRadius(NewR);
  return true;
}
