#pragma once
// The smallest closed figure around a point in a heap of loose segments, as the
// hatch command needs it: segments already broken at their crossings (or broken
// here by SplitAll), a uniform grid behind GetSegs, end-point connections, dead
// ends pruned, a ray to the right from the point and a walk that keeps the figure
// on its left by taking, at every junction, the sharpest turn.

#include "KRNPolygon2d.h"

#include <cstdint>
#include <memory>
#include <vector>

struct TKRNExtSeg2d {
  TKRNCustomLine2d* Seg = nullptr;
  TKRNPtr<TKRNCustomLine2d> Holder;  // set when the list owns the segment
  TKRNBox2d Box;
  std::intptr_t Tag = 0;
  int Index = -1;
};

class TKRNExtSeg2dList {
public:
  explicit TKRNExtSeg2dList(double AEpsilon = KRNEpsilon) : FEpsilon(AEpsilon) {}
  TKRNExtSeg2dList(const TKRNExtSeg2dList&) = delete;
  TKRNExtSeg2dList& operator=(const TKRNExtSeg2dList&) = delete;

  double Epsilon() const { return FEpsilon; }
  int Add(TKRNCustomLine2d* ASeg, std::intptr_t ATag, bool AOwnsSeg);
  int Add(TKRNPtr<TKRNCustomLine2d> ASeg, std::intptr_t ATag);
  void Delete(int AIndex);
  void Clear();
  int Count() const { return static_cast<int>(FItems.size()); }
  const TKRNExtSeg2d& Get(int AIndex) const { return *FItems[static_cast<size_t>(AIndex)]; }
  // Renumbers the items by their position.
  void SetIndex();
  // A list over the same segments, owning none of them.
  std::unique_ptr<TKRNExtSeg2dList> ShallowClone() const;
  // Indexes of the segments whose boxes meet ABox (edges included), ascending.
  std::vector<int> GetSegs(const TKRNBox2d& ABox) const;
  // Breaks every segment at its crossings with the others; the pieces keep the tag
  // and are owned by the list.
  void SplitAll(double AEpsilon);

private:
  void BuildGrid() const;
  void CellRange(const TKRNBox2d& ABox, int& AX0, int& AY0, int& AX1, int& AY1) const;

  double FEpsilon;
  std::vector<std::unique_ptr<TKRNExtSeg2d>> FItems;
  // the grid, rebuilt after any change
  mutable bool FGridValid = false;
  mutable TKRNBox2d FExtent;
  mutable double FCellW = 1, FCellH = 1;
  mutable int FCols = 0, FRows = 0;
  mutable std::vector<std::vector<int>> FCells;
  mutable std::vector<unsigned> FStamp;
  mutable unsigned FStampValue = 0;
};

// Which segments meet at each end, under the list's tolerance.
class TKRNSegListConnectInfos {
public:
  struct TEndRef {
    int Seg;
    int End;  // 0 start, 1 end
  };

  void BuildConnectInfos(const TKRNExtSeg2dList& ASegList);
  // The live segments with an end that meets no other segment.
  std::vector<int> FindBranches() const;
  // Takes a segment out of the connections.
  void Detach(int AIndex);
  // Detaches dead ends until none is left (a dangling chain goes piece by piece).
  void Execute();

  bool Alive(int AIndex) const { return FAlive[static_cast<size_t>(AIndex)]; }
  int NodeOf(int ASeg, int AEnd) const { return FNodes[static_cast<size_t>(ASeg) * 2 + static_cast<size_t>(AEnd)]; }
  const std::vector<TEndRef>& At(int ANode) const { return FAdjacent[static_cast<size_t>(ANode)]; }
  const TKRNVector2d& NodePt(int ANode) const { return FNodePts[static_cast<size_t>(ANode)]; }

private:
  bool IsFree(int ASeg, int AEnd) const;

  std::vector<int> FNodes;  // two per segment
  std::vector<std::vector<TEndRef>> FAdjacent;
  std::vector<TKRNVector2d> FNodePts;
  std::vector<bool> FAlive;
};

class TKRNSearchPoly2d {
public:
  explicit TKRNSearchPoly2d(double AEpsilon = KRNEpsilon);
  // AShallowAssign: share the caller's segments instead of copying them.
  TKRNSearchPoly2d(const TKRNExtSeg2dList& ASegList, bool AShallowAssign, double AEpsilon = KRNEpsilon);

  void Add(const TKRNCustomLine2d& ASeg, std::intptr_t ATag);
  void Add(TKRNCustomLine2d* ASeg, std::intptr_t ATag, bool AOwnsSeg);
  TKRNExtSeg2dList& SegList() { return *FSegList; }

  // The figure around ARefPt and the tags of its segments in walking order.
  // ANeedIn: the point must be inside or on it. ANeedRing: allow other segments
  // (islands) inside it.
  bool FindSmallPoly(const TKRNVector2d& ARefPt, std::unique_ptr<TKRNPolygon2d>& ASmallPoly,
                     std::vector<std::intptr_t>& AIDArray, bool ANeedRing, bool ANeedIn);
  // The same, with whether each segment was walked against its direction.
  bool FindSmallPoly(const TKRNVector2d& ARefPt, std::unique_ptr<TKRNPolygon2d>& ASmallPoly,
                     std::vector<std::intptr_t>& AIDArray, std::vector<bool>& AReversed, bool ANeedRing,
                     bool ANeedIn);

private:
  struct TStep {
    int Seg;
    bool Reversed;
  };
  void Prepare();
  // Walks from a half-edge; an empty result when the walk can't close.
  std::vector<TStep> Walk(TStep AStart) const;
  // The half-edge leaving ANode whose direction is the first clockwise from ARef.
  bool NextStep(int ANode, const TKRNVector2d& ARef, int AExcludeSeg, bool AExcludeReversed, TStep& AStep) const;
  TKRNVector2d OutTangent(const TStep& AStep) const;
  TKRNVector2d OutChordDir(const TStep& AStep) const;
  std::unique_ptr<TKRNPolygon2d> MakePolygon(const std::vector<TStep>& ASteps) const;

  double FEpsilon;
  bool FRebuildConnectInfos = true;
  std::unique_ptr<TKRNExtSeg2dList> FSegList;
  TKRNSegListConnectInfos FSegListConnectInfos;
};
