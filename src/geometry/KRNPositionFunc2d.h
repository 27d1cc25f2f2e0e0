#pragma once
// Where one geometric thing stands against another: point against segment,
// path, box and polygon; box against box; distances, closest points, lengths
// along a segment and sub-segments. Stateless; every tolerance is an argument.
//
// ppIn/ppOn/ppOut mean different things for edges and figures, on purpose:
// for a segment or path ppIn is "on it between the ends" and ppOn "at an end";
// for a box, polygon or circle ppIn is "strictly inside" and ppOn "on the boundary".

#include "KRNGeo2DTypes.h"
#include "KRNPolygon2d.h"

enum TKRNPointPosition { ppIn = 0, ppOn = 1, ppOut = 2 };
enum TKRNPolyPositionType {
  pptLeave = 0,
  pptInt = 1,
  pptOutBorder = 2,
  ppt1In2Border = 3,
  ppt2In1Border = 4,
  ppt1In2 = 5,
  ppt2In1 = 6,
  pptEqual = 7
};
enum TKRNSegSide { ssOn = 0, ssLeft = 1, ssRight = 2 };

class TKRNPositionFunc2d {
public:
  // Dispatches to the arc or the straight form by the segment's kind.
  static TKRNPointPosition PointPosition(const TKRNVector2d& APoint, const TKRNCustomLine2d& ALine,
                                         double AEpsilon = KRNEpsilon);
  static TKRNPointPosition PointPosition(const TKRNVector2d& APoint, const TKRNVector2d& AStartPt,
                                         const TKRNVector2d& AEndPt, double AEpsilon = KRNEpsilon);
  // An arc with no valid centre counts as its chord.
  static TKRNPointPosition PointPosition(const TKRNVector2d& APoint, const TKRNArc2d& AArc,
                                         double AEpsilon = KRNEpsilon);
  // Walks the closing edge of the open path too: a point on the chord from the last
  // vertex to the first is ppIn. The first vertex matches under KRNEpsilon only.
  static TKRNPointPosition PointPosition(const TKRNVector2d& APoint, const TKRNLines2d& ALines,
                                         double AEpsilon = KRNEpsilon);
  static TKRNPointPosition PointPosition(const TKRNVector2d& APt, const TKRNBox2d& ABox,
                                         double AEpsilon = KRNEpsilon);
  static TKRNPointPosition PointPosition(const TKRNVector2d& APoint, const TKRNPolygon2d& APolygon,
                                         double AEpsilon = KRNEpsilon);
  // Also gives the vertices of the edge hit when on the boundary (both the nearer
  // vertex when the point is at a vertex).
  static TKRNPointPosition PointPosition(const TKRNVector2d& APoint, const TKRNPolygon2d& APolygon,
                                         const TKRNVertex2d*& AVertex1, const TKRNVertex2d*& AVertex2,
                                         double AEpsilon = KRNEpsilon);
  // Any closed figure; circles and ellipses are tested exactly.
  static TKRNPointPosition PointPosition(const TKRNVector2d& APoint, const TKRNCustomPolygon2d& AFigure,
                                         double AEpsilon = KRNEpsilon);
  // Even-odd over all rings: in a hole is ppOut, on any ring ppOn.
  static TKRNPointPosition PointPosition(const TKRNVector2d& APoint, const TKRNMultiPolygon2d& APolygon,
                                         double AEpsilon = KRNEpsilon);
  static bool IsPointInBox(const TKRNVector2d& APoint, const TKRNBox2d& ABox, double AEpsilon = KRNEpsilon);

  static TKRNPolyPositionType BoxBoxPosition(const TKRNBox2d& ABox1, const TKRNBox2d& ABox2,
                                             double AEpsilon = KRNEpsilon);
  // Arcs are compared through their sample points.
  static TKRNPolyPositionType PolyPolyPosition(const TKRNPolygon2d& APolygon1, const TKRNPolygon2d& APolygon2,
                                               double AEpsilon = KRNEpsilon);
  static TKRNSegSide PointSegSide(const TKRNVector2d& APoint, const TKRNCustomLine2d& ASeg,
                                  double AEpsilon = KRNEpsilon);

  static TKRNVector2d ClosestPointTo(const TKRNVector2d& APoint, const TKRNCustomLine2d& ASeg, bool ALimitOn);
  static TKRNVector2d ClosestPointTo(const TKRNVector2d& APoint, const TKRNVector2d& ALineStartPt,
                                     const TKRNVector2d& ALineEndPt, bool ALimitOn);
  static double DistanceTo(const TKRNVector2d& APoint, const TKRNCustomLine2d& ASeg, bool ALimitOn);
  // With ALimitOn a projection up to KRNEpsilon past the start measures to the start.
  static double DistanceTo(const TKRNVector2d& APoint, const TKRNVector2d& AStartPt, const TKRNVector2d& AEndPt,
                           bool ALimitOn);
  // An arc point nearer the start over the gap gives a negative length.
  static double LengthAtPoint(const TKRNCustomLine2d& ASeg, const TKRNVector2d& ATestPoint);
  static TKRNVector2d PointAtLength(const TKRNCustomLine2d& ASeg, double ALength, bool ALimitOn);
  // A segment shorter than KRNEpsilon gives (end X + ALength, end Y).
  static TKRNVector2d PointAtLength(const TKRNVector2d& AStartPt, const TKRNVector2d& AEndPt, double ALength,
                                    bool ALimitOn);
  static TKRNVector2d MiddlePoint(const TKRNCustomLine2d& ALine, const TKRNVector2d& AStartPt,
                                  const TKRNVector2d& AEndPt);
  static void SortPoint(const TKRNCustomLine2d& ALine, TKRNPoint2dDynArray& APointsArray);
  static TKRNPtr<TKRNCustomLine2d> SubSeg(const TKRNCustomLine2d& ASeg, double ALength1, double ALength2,
                                          bool ALimitOn);
  // The result runs from AStartPoint to AEndPoint, reversed from ASeg if need be.
  static TKRNPtr<TKRNCustomLine2d> SubSeg(const TKRNCustomLine2d& ASeg, const TKRNVector2d& AStartPoint,
                                          const TKRNVector2d& AEndPoint, bool ALimitOn);
  static bool SetExactVertex(TKRNCustomLine2d& ASeg, const TKRNVector2d& AStartPt, const TKRNVector2d& AEndPt);
  static bool IsParallel(const TKRNCustomLine2d& ASeg1, const TKRNCustomLine2d& ASeg2,
                         double AEpsilon = KRNEpsilon);
  static bool IsEqual(const TKRNCustomLine2d& ASeg1, const TKRNCustomLine2d& ASeg2, bool AIgnoreDirection,
                      double AEpsilon = KRNEpsilon);
};
