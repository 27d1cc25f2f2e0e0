#include "VDItemIndex.h"

#include "VectorDrawingItem.h"

#include <boost/geometry.hpp>
#include <boost/geometry/index/rtree.hpp>

#include <cmath>

namespace bg = boost::geometry;
namespace bgi = boost::geometry::index;

namespace {
using TPoint = bg::model::point<double, 2, bg::cs::cartesian>;
using TBox = bg::model::box<TPoint>;
using TValue = std::pair<TBox, TVectorDrawingItem*>;

TBox ToBox(const TKRNBox2d& B) {
  return TBox(TPoint(std::min(B.MinX(), B.MaxX()), std::min(B.MinY(), B.MaxY())),
              TPoint(std::max(B.MinX(), B.MaxX()), std::max(B.MinY(), B.MaxY())));
}

bool Finite(const TKRNBox2d& B) {
  return std::isfinite(B.MinX()) && std::isfinite(B.MinY()) && std::isfinite(B.MaxX()) && std::isfinite(B.MaxY());
}
}  // namespace

struct TVDItemIndex::TImpl {
  bgi::rtree<TValue, bgi::rstar<16>> Tree;
  std::vector<TVectorDrawingItem*> Dirty;  // slots of removed items are null
  std::vector<TVectorDrawingItem*> Loose;  // items whose boxes are not finite: always candidates
  bool Stale = true;
};

TVDItemIndex::TVDItemIndex() : FImpl(std::make_unique<TImpl>()) {}
TVDItemIndex::~TVDItemIndex() = default;

void TVDItemIndex::Invalidate() {
  for (TVectorDrawingItem* I : FImpl->Dirty)
    if (I) I->FDirtySlot = -1;
  FImpl->Dirty.clear();
  FImpl->Stale = true;
}

void TVDItemIndex::Touch(TVectorDrawingItem* AItem) {
  if (FImpl->Stale || AItem->FDirtySlot >= 0) return;
  AItem->FDirtySlot = int(FImpl->Dirty.size());
  FImpl->Dirty.push_back(AItem);
}

void TVDItemIndex::Removed(TVectorDrawingItem* AItem) {
  if (AItem->FDirtySlot >= 0) {
    FImpl->Dirty[size_t(AItem->FDirtySlot)] = nullptr;
    AItem->FDirtySlot = -1;
  }
  if (FImpl->Stale || !AItem->FInIndex) {
    AItem->FInIndex = false;
    return;
  }
  if (Finite(AItem->FIndexedBox)) FImpl->Tree.remove(TValue(ToBox(AItem->FIndexedBox), AItem));
  else std::erase(FImpl->Loose, AItem);
  AItem->FInIndex = false;
}

void TVDItemIndex::Flush(const std::vector<std::unique_ptr<TVectorDrawingItem>>& AList) {
  // many moved boxes: one bulk load is cheaper than one removal and insertion each
  if (!FImpl->Stale && FImpl->Dirty.size() > AList.size() / 4 + 64) Invalidate();
  if (FImpl->Stale) {
    std::vector<TValue> Values;
    Values.reserve(AList.size());
    FImpl->Loose.clear();
    for (const auto& I : AList) {
      I->FIndexedBox = I->OutRect();
      I->FInIndex = true;
      if (Finite(I->FIndexedBox)) Values.emplace_back(ToBox(I->FIndexedBox), I.get());
      else FImpl->Loose.push_back(I.get());
    }
    FImpl->Tree = bgi::rtree<TValue, bgi::rstar<16>>(Values.begin(), Values.end());
    FImpl->Stale = false;
    return;
  }
  for (TVectorDrawingItem* I : FImpl->Dirty) {
    if (!I) continue;
    I->FDirtySlot = -1;
    if (I->FInIndex) {
      if (Finite(I->FIndexedBox)) FImpl->Tree.remove(TValue(ToBox(I->FIndexedBox), I));
      else std::erase(FImpl->Loose, I);
    }
    I->FIndexedBox = I->OutRect();
    I->FInIndex = true;
    if (Finite(I->FIndexedBox)) FImpl->Tree.insert(TValue(ToBox(I->FIndexedBox), I));
    else FImpl->Loose.push_back(I);
  }
  FImpl->Dirty.clear();
}

void TVDItemIndex::Query(const std::vector<std::unique_ptr<TVectorDrawingItem>>& AList, const TKRNBox2d& ABox,
                         std::vector<TVectorDrawingItem*>& AOut) {
  Flush(AList);
  AOut.clear();
  AOut.insert(AOut.end(), FImpl->Loose.begin(), FImpl->Loose.end());
  if (!Finite(ABox)) {
    for (const auto& I : AList)
      if (Finite(I->FIndexedBox)) AOut.push_back(I.get());
    return;
  }
  for (auto It = FImpl->Tree.qbegin(bgi::intersects(ToBox(ABox))); It != FImpl->Tree.qend(); ++It)
    AOut.push_back(It->second);
}

bool TVDItemIndex::Covers(const std::vector<std::unique_ptr<TVectorDrawingItem>>& AList, const TKRNBox2d& ABox) {
  Flush(AList);
  if (!FImpl->Loose.empty() || !Finite(ABox)) return false;
  if (FImpl->Tree.empty()) return true;
  return bg::within(FImpl->Tree.bounds(), ToBox(ABox));
}
