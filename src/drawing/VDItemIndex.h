#pragma once
// The drawing's spatial index: an R-tree of the items' boxes, so hit tests, box
// selection, snapping and culling ask for the items near a place instead of walking
// every item. Bulk-loaded after a file load or a large change; between, the items
// whose boxes moved are put right before the next question.

#include "KRNCommon2d.h"

#include <memory>
#include <vector>

class TVectorDrawingItem;

class TVDItemIndex {
public:
  TVDItemIndex();
  ~TVDItemIndex();
  TVDItemIndex(const TVDItemIndex&) = delete;
  TVDItemIndex& operator=(const TVDItemIndex&) = delete;

  // Everything is read again from the list before the next query.
  void Invalidate();
  // An item joined the list, or its box changed.
  void Touch(TVectorDrawingItem* AItem);
  // An item leaves the list (it may be freed right after).
  void Removed(TVectorDrawingItem* AItem);
  // The items of AList whose boxes meet ABox (touching counts), in no order.
  void Query(const std::vector<std::unique_ptr<TVectorDrawingItem>>& AList, const TKRNBox2d& ABox,
             std::vector<TVectorDrawingItem*>& AOut);

  // True when ABox holds every indexed box: a query would return every item.
  bool Covers(const std::vector<std::unique_ptr<TVectorDrawingItem>>& AList, const TKRNBox2d& ABox);

private:
  void Flush(const std::vector<std::unique_ptr<TVectorDrawingItem>>& AList);
  struct TImpl;
  std::unique_ptr<TImpl> FImpl;
};
