#pragma once
// Where lines, circles, segments and arcs meet. Degenerate input gives itZero or
// itOverlap, never an exception. With itOverlap, the ends of the shared piece are in
// APt1 and APt2 when the piece has two.

#include "KRNGeo2DTypes.h"

#include <vector>

class TKRNCustomPolygon2d;

enum TKRNIntersectType { itZero, itOne, itTwo, itOverlap };

class TKRNIntersectFunc2d {
public:
  // Two infinite lines.
  static TKRNIntersectType Intersect(const TKRNBeeline2d& ABeeline1, const TKRNBeeline2d& ABeeline2,
                                     TKRNVector2d& APt);
  // A line and a circle; two points in the line's direction.
  static TKRNIntersectType Intersect(const TKRNBeeline2d& ABeeline, const TKRNVector2d& ACenterPt, double ARadius,
                                     TKRNVector2d& APt1, TKRNVector2d& APt2, double AEpsilon = KRNEpsilon);
  // Two circles. ACalculatorEpsilon: compare the touching distance exactly.
  static TKRNIntersectType Intersect(const TKRNVector2d& ACenterPt1, double ARadius1, const TKRNVector2d& ACenterPt2,
                                     double ARadius2, TKRNVector2d& APt1, TKRNVector2d& APt2,
                                     double AEpsilon = KRNEpsilon, bool ACalculatorEpsilon = false);
  // A segment and an infinite line.
  static TKRNIntersectType Intersect(const TKRNVector2d& AStartPt, const TKRNVector2d& AEndPt,
                                     const TKRNBeeline2d& ABeeline, TKRNVector2d& APt, double AEpsilon = KRNEpsilon);
  // Two segments; results are described relative to the longer one.
  static TKRNIntersectType Intersect(const TKRNVector2d& AStartPt1, const TKRNVector2d& AEndPt1,
                                     const TKRNVector2d& AStartPt2, const TKRNVector2d& AEndPt2, TKRNVector2d& APt1,
                                     TKRNVector2d& APt2, double AEpsilon = KRNEpsilon);
  // A segment and an arc.
  static TKRNIntersectType Intersect(const TKRNVector2d& ALineStartPt, const TKRNVector2d& ALineEndPt,
                                     const TKRNVector2d& AArcStartPt, const TKRNVector2d& AArcEndPt,
                                     const TKRNVector2d& ACenterPt, TKRNArcType AArcType, double ARadius,
                                     TKRNVector2d& APt1, TKRNVector2d& APt2, double AEpsilon = KRNEpsilon);
  // Two arcs.
  static TKRNIntersectType Intersect(const TKRNVector2d& AStartPt1, const TKRNVector2d& AEndPt1,
                                     const TKRNVector2d& ACenterPt1, TKRNArcType AArcType1, double ARadius1,
                                     const TKRNVector2d& AStartPt2, const TKRNVector2d& AEndPt2,
                                     const TKRNVector2d& ACenterPt2, TKRNArcType AArcType2, double ARadius2,
                                     TKRNVector2d& APt1, TKRNVector2d& APt2, double AEpsilon = KRNEpsilon,
                                     bool ACalculatorEpsilon = false);

  // Any two segments: an arc counts as one only with a valid centre; a line and an
  // arc are passed line first whatever the order of the arguments.
  static TKRNIntersectType Intersect(const TKRNCustomLine2d& ASeg1, const TKRNCustomLine2d& ASeg2,
                                     TKRNVector2d& APt1, TKRNVector2d& APt2, double AEpsilon = KRNEpsilon,
                                     bool ACalculatorEpsilon = false);

  // The meeting of the two segments' extensions: lines as infinite lines, arcs as
  // their full circles.
  static TKRNIntersectType ExtIntersect(const TKRNCustomLine2d& ASeg1, const TKRNCustomLine2d& ASeg2,
                                        TKRNVector2d& APt1, TKRNVector2d& APt2, double AEpsilon = KRNEpsilon);
  // Of the extensions' meetings, the one nearest ARefPt; false when they don't meet
  // in a point.
  static bool LimitExtIntersect(const TKRNCustomLine2d& ASeg1, const TKRNCustomLine2d& ASeg2,
                                const TKRNVector2d& ARefPt, TKRNVector2d& AIntPt, double AEpsilon = KRNEpsilon);

  // The points where a segment meets a figure's boundary, in order along the
  // segment; with AIncludeIn also the segment's ends that lie inside the figure.
  // A circle is met as a whole circle.
  static std::vector<TKRNVector2d> Intersect(const TKRNCustomLine2d& ASeg, const TKRNCustomPolygon2d& APoly,
                                             bool AIncludeIn, double AEpsilon = KRNEpsilon);

  // Where the boundaries of two figures meet, each point once; with AIncludeIn also
  // the vertices of each figure that lie inside or on the other, so that a figure
  // wholly inside the other still answers. Empty: the figures are apart.
  static std::vector<TKRNVector2d> IntersectPts(const TKRNCustomPolygon2d& APolygon1,
                                                const TKRNCustomPolygon2d& APolygon2, bool AIncludeIn,
                                                double AEpsilon = KRNEpsilon);
};
