#include "VDESnapIndex.h"

#include "VectorDrawing.h"

#include <boost/geometry.hpp>
#include <boost/geometry/index/rtree.hpp>

#include <algorithm>
#include <limits>

namespace bg = boost::geometry;
namespace bgi = boost::geometry::index;

using TBgPoint = bg::model::point<double, 2, bg::cs::cartesian>;
using TBgBox = bg::model::box<TBgPoint>;
using TEntry = std::pair<TBgBox, int>;

struct TVDESnapIndex::TImpl {
  quint64 Revision = std::numeric_limits<quint64>::max();
  int Count = -1;
  const TVectorDrawing* Drawing = nullptr;
  bgi::rtree<TEntry, bgi::rstar<16>> Tree;
};

TVDESnapIndex::TVDESnapIndex() : FImpl(std::make_unique<TImpl>()) {}
TVDESnapIndex::~TVDESnapIndex() = default;

std::vector<int> TVDESnapIndex::Query(const TVectorDrawing& ADrawing, const TKRNBox2d& ABox) {
  TImpl& I = *FImpl;
  if (I.Drawing != &ADrawing || I.Revision != ADrawing.Revision() || I.Count != ADrawing.Count()) {
    std::vector<TEntry> Entries;
    Entries.reserve(size_t(ADrawing.Count()));
    for (int K = 0; K < ADrawing.Count(); ++K) {
      const TKRNBox2d& B = ADrawing.Items(K)->OutRect();
      Entries.emplace_back(TBgBox({std::min(B.MinX(), B.MaxX()), std::min(B.MinY(), B.MaxY())},
                                  {std::max(B.MinX(), B.MaxX()), std::max(B.MinY(), B.MaxY())}),
                           K);
    }
    I.Tree = bgi::rtree<TEntry, bgi::rstar<16>>(Entries.begin(), Entries.end());  // packed
    I.Drawing = &ADrawing;
    I.Revision = ADrawing.Revision();
    I.Count = ADrawing.Count();
  }
  std::vector<TEntry> Hits;
  I.Tree.query(bgi::intersects(TBgBox({ABox.MinX(), ABox.MinY()}, {ABox.MaxX(), ABox.MaxY()})), std::back_inserter(Hits));
  std::vector<int> R;
  R.reserve(Hits.size());
  for (const TEntry& E : Hits) R.push_back(E.second);
  std::sort(R.begin(), R.end());
  return R;
}
