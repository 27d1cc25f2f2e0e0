#pragma once
// The region a hatch click fills: every line, arc, circle and polyline segment of
// the drawing is broken at its crossings with the others, and the polygon search
// finds the smallest closed region around the click.

#include "KRNGeo2DTypes.h"
#include "KRNPolygon2d.h"
#include "KRNSearchPoly2d.h"

#include <memory>
#include <vector>

class TVectorDrawing;

// One collected segment: the item's ID (a circle's halves carry +ID and -ID).
struct TLineItemInfo {
  int FID;
  TKRNPtr<TKRNCustomLine2d> FLine;
  TKRNBox2d FOutRect;
};

class TLineItemInfos {
public:
  void Add(int AID, TKRNPtr<TKRNCustomLine2d> ACloneLine, const TKRNBox2d& AOutRect);
  int Count() const { return int(FList.size()); }
  const TLineItemInfo& GetItems(int AIndex) const { return FList[size_t(AIndex)]; }
  void Delete(int AIndex) { FList.erase(FList.begin() + AIndex); }
  // The points where other items' segments cross AIndex's, without its own ends,
  // duplicates removed, in order along it. Candidates come from a grid of boxes.
  void CalcIntPts(int AIndex, TKRNPoint2dDynArray& AIntPts) const;
  // Every line and arc of the drawing (types 2 and 3), circles as two half arcs,
  // polylines segment by segment.
  void Collect(const TVectorDrawing& ADrawing);

private:
  void BuildGrid() const;
  std::vector<TLineItemInfo> FList;
  mutable std::unique_ptr<TKRNExtSeg2dList> FGrid;
};

// False on an empty drawing, when no closed region holds the point, or when a hatch
// with the same outline is there already.
bool VDESearchHatchPoly(const TVectorDrawing& ADrawing, const TKRNVector2d& APoint,
                        std::unique_ptr<TKRNPolygon2d>& APoly);
// Two outlines through the same vertexes, from any start, in either direction.
bool VDESamePolygon(const TKRNPolygon2d& A, const TKRNPolygon2d& B, double AEpsilon);
