#pragma once
// Undo records of the modify commands that reshape lines against others: extend,
// intersect, trim, break, merge and group zoom.

#include "VDECmdExecutor.h"

class TVectorLine;

// The one selected item is the edge; false unless it is a line, arc, circle or polyline.
class TVDEExtendCmdExecutor : public TVDECoordChangeCmdExecutor {
public:
  using TVDECoordChangeCmdExecutor::TVDECoordChangeCmdExecutor;
  // The clicked line's end moves to where it meets the edge's start direction.
  bool Extend(TVectorLine& AExtendItem, const TKRNVector2d& ARefPt);
};

class TVDEIntersectCmdExecutor : public TVDECoordChangeCmdExecutor {
public:
  using TVDECoordChangeCmdExecutor::TVDECoordChangeCmdExecutor;
  // Both lines end where their start directions meet.
  bool Intersect(TVectorLine& AIntersectItem, const TKRNVector2d& ARefPt);
};

class TVDETrimCmdExecutor : public TVDECoordChangeCmdExecutor {
public:
  using TVDECoordChangeCmdExecutor::TVDECoordChangeCmdExecutor;
  // The clicked line loses the piece on the click's side of the edge; when the edge
  // cuts it twice and the click is between, the far piece becomes a new item.
  bool Trim(TVectorLine& ATrimItem, const TKRNVector2d& ARefPt);
  void Redo() override;
  void Undo() override;

private:
  int FNewLineID = -1;
  TVDEItemStash FNewLine;
};

// Splits the item at APoint: it keeps the first part, a new item takes the second
// (selected when the item was). False when the point is not inside the segment.
bool VDEBreakItemAt(TVectorDrawing& ADrawing, TVectorLine& AItem, const TKRNVector2d& APoint,
                    TVectorLine*& ANew);

class TVDEBreakCmdExecutor : public TVDECoordChangeCmdExecutor {
public:
  using TVDECoordChangeCmdExecutor::TVDECoordChangeCmdExecutor;
  // Every selected line and arc at its crossings with the other selected ones.
  bool Break();
  void Redo() override;
  void Undo() override;

private:
  std::vector<int> FAddedIDs;
  TVDEItemStash FAdded;
};

class TVDEMergeCmdExecutor : public TVDECoordChangeCmdExecutor {
public:
  using TVDECoordChangeCmdExecutor::TVDECoordChangeCmdExecutor;
  // The last selected line absorbs the others through three points each.
  bool Merge();
  void Redo() override;
  void Undo() override;

private:
  std::vector<int> FDelIDs;
  TVDEItemStash FDeleted;
};

class TVDEGroupZoomExecutor : public TVDECoordChangeCmdExecutor {
public:
  using TVDECoordChangeCmdExecutor::TVDECoordChangeCmdExecutor;
  // Scales the selected lines about a reference point asked in a dialog.
  bool GroupZoom();
  void Redo() override;
  void Undo() override;
};
