#pragma once
// Moves one segment sideways, in place: a positive distance goes to the right of a
// line's direction and away from the centre of an anticlockwise arc.

#include "KRNGeo2DTypes.h"

class TKRNOffsetFunc2d {
public:
  static bool Offset(TKRNCustomLine2d& ASeg, double ADist);
  static bool Offset(TKRNLine2d& ALine, double ADist);
  static bool Offset(TKRNArc2d& AArc, double ADist);
};
