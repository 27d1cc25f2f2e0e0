#pragma once
// The items near a point without a walk of the drawing: an R-tree of the items'
// boxes, rebuilt when the drawing's revision moves on. Snapping asks it on every
// mouse move.

#include "KRNCommon2d.h"

#include <memory>
#include <vector>

class TVectorDrawing;

class TVDESnapIndex {
public:
  TVDESnapIndex();
  ~TVDESnapIndex();
  // List indexes of the items whose boxes meet ABox, ascending.
  std::vector<int> Query(const TVectorDrawing& ADrawing, const TKRNBox2d& ABox);

private:
  struct TImpl;
  std::unique_ptr<TImpl> FImpl;
};
