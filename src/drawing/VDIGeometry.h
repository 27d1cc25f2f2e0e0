#pragma once
// Geometric tests the items share for hit tests and box selection: a segment or
// figure against a selection box, rings, and the fat polygon of a wide edge.

#include "KRNGeo2DTypes.h"
#include "KRNPolygon2d.h"

// The segment (arcs flattened finely) meets the closed box.
bool SegmentTouchesBox(const TKRNCustomLine2d& ASeg, const TKRNBox2d& ABox);
// The boundary meets the box, or one lies inside the other.
bool PolygonTouchesBox(const TKRNCustomPolygon2d& APoly, const TKRNBox2d& ABox);
// The ring between two radii about ACenter meets the box.
bool RingTouchesBox(const TKRNVector2d& ACenter, double AInner, double AOuter, const TKRNBox2d& ABox);
// A window drawn left to right selects what lies wholly inside.
bool BoxInWindow(const TKRNBox2d& AItemBox, const TKRNBox2d& AWindow);
TKRNBox2d InflateBox(const TKRNBox2d& ABox, double ADelta);
// The band of AWidth about the edge (the edge itself below KRNEpsilon).
TKRNPolygon2d FatPolygon(const TKRNCustomLine2d& AEdge, double AWidth);
