#pragma once
// Move, rotate, mirror, stretch and break for every figure. All but the point and
// beeline forms change the object in place. Arcs are stored by their ends, radius
// and type, so mirroring must turn the type by hand.

#include "KRNPolygon2d.h"

class TKRNMoveFunc2d {
public:
  static void Move(const TKRNVector2d& APt, const TKRNVector2d& AVt, TKRNVector2d& AResult);
  static void Move(TKRNVertex2d& AVertex, const TKRNVector2d& AVt);
  static void Move(TKRNVertex2dList& AList, const TKRNVector2d& AVt);
  static void Move(TKRNCustomPolygon2d& APolygon, const TKRNVector2d& AVt);
  static void Move(TKRNMultiPolygon2d& APolygon, const TKRNVector2d& AVt);
  static void Move(TKRNLines2d& ALines, const TKRNVector2d& AVt);
  static void Move(TKRNMultiLines2d& ALines, const TKRNVector2d& AVt);
  static void Move(TKRNCustomLine2d& ASeg, const TKRNVector2d& AVt);
  static void Move(TKRNBox2d& ABox, const TKRNVector2d& AVt);
};

class TKRNRotateFunc2d {
public:
  // AAngle in radians, anticlockwise.
  static TKRNVector2d Rotate(const TKRNVector2d& APoint2d, const TKRNVector2d& ARefPt2d, double AAngle);
  static TKRNBeeline2d Rotate(const TKRNBeeline2d& ABeeline, const TKRNVector2d& ARefPt2d, double AAngle);
  static void Rotate(TKRNVertex2d& AVertex, const TKRNVector2d& ARefPt2d, double AAngle);
  static void Rotate(TKRNVertex2dList& AList, const TKRNVector2d& ARefPt2d, double AAngle);
  // An orthogonal rectangle keeps its sides on the axes: its corners are rotated.
  static void Rotate(TKRNCustomPolygon2d& APolygon, const TKRNVector2d& ARefPt2d, double AAngle);
  static void Rotate(TKRNMultiPolygon2d& APolygon, const TKRNVector2d& ARefPt2d, double AAngle);
  static void Rotate(TKRNLines2d& ALines, const TKRNVector2d& ARefPt2d, double AAngle);
  static void Rotate(TKRNMultiLines2d& ALines, const TKRNVector2d& ARefPt2d, double AAngle);
  static void Rotate(TKRNCustomLine2d& ASeg, const TKRNVector2d& ARefPt2d, double AAngle);
};

class TKRNMirrorFunc2d {
public:
  static TKRNVector2d Mirror(const TKRNVector2d& APt, const TKRNBeeline2d& ABl);
  static void Mirror(TKRNVertex2d& AVertex, const TKRNBeeline2d& ABl);
  // Points mirrored, then every arc vertex turned.
  static void Mirror(TKRNVertex2dList& AList, const TKRNBeeline2d& ABl);
  static void Mirror(TKRNLines2d& ALines, const TKRNBeeline2d& ABl);
  static void Mirror(TKRNCustomLine2d& ASeg, const TKRNBeeline2d& ABl);
  static void Mirror(TKRNCustomPolygon2d& APolygon, const TKRNBeeline2d& ABl);
};

class TKRNStretchFunc2d {
public:
  // A point in the box (its edge included) moves by AVector2d.
  static TKRNVector2d Stretch(const TKRNVector2d& APt, const TKRNBox2d& ABox2d, const TKRNVector2d& AVector2d);
  // Each end on its own; an arc whose ends no longer fit its radius becomes a line.
  static void Stretch(TKRNCustomLine2d& ASeg, const TKRNBox2d& ABox2d, const TKRNVector2d& AVector2d);
  static void Stretch(TKRNVertex2dList& AList, const TKRNBox2d& ABox2d, const TKRNVector2d& AVector2d,
                      bool AClosedPath);
  static void Stretch(TKRNLines2d& ALines, const TKRNBox2d& ABox2d, const TKRNVector2d& AVector2d);
  static void Stretch(TKRNCustomPolygon2d& APolygon, const TKRNBox2d& ABox2d, const TKRNVector2d& AVector2d);
  // Rectangles the box touches become general polygons at the same index first.
  static void Stretch(TKRNMultiPolygon2d& APolygon, const TKRNBox2d& ABox2d, const TKRNVector2d& AVector2d);
};

class TKRNBreakFunc2d {
public:
  // Splits at the closest point of the segment to ARefPt.
  static bool Break(const TKRNCustomLine2d& ASeg, const TKRNVector2d& ARefPt, TKRNPtr<TKRNCustomLine2d>& APart1,
                    TKRNPtr<TKRNCustomLine2d>& APart2);
  // False, and no parts, at either end.
  static bool BreakAt(const TKRNCustomLine2d& ASeg, const TKRNVector2d& ABreakPt, TKRNPtr<TKRNCustomLine2d>& APart1,
                      TKRNPtr<TKRNCustomLine2d>& APart2);
  static bool BreakAt(const TKRNVector2d& ALineStartPt, const TKRNVector2d& ALineEndPt, const TKRNVector2d& ABreakPt,
                      TKRNPtr<TKRNCustomLine2d>& APart1, TKRNPtr<TKRNCustomLine2d>& APart2);
  static bool BreakAt(const TKRNVector2d& AArcStartPt, const TKRNVector2d& AArcEndPt, double ARadius,
                      TKRNArcType AArcType, const TKRNVector2d& ABreakPt, TKRNPtr<TKRNCustomLine2d>& APart1,
                      TKRNPtr<TKRNCustomLine2d>& APart2);
};
