#pragma once
// Undo records and the bounded undo list. A record has already made its change
// when it reaches the list; undo and redo first bring back the view in which the
// edit was made. Items are found again by ID, never by pointer, and an item taken
// out goes back to the list position it left.

#include "VDEditorIntf.h"
#include "VectorDrawingItem.h"

#include <memory>
#include <vector>

class TVectorDrawing;

class IVDECmdExecutor {
public:
  virtual ~IVDECmdExecutor() = default;
  virtual void Redo() = 0;
  virtual void Undo() = 0;
};
using IVDECmdExecutorPtr = std::shared_ptr<IVDECmdExecutor>;

class IVDECmdExecList {
public:
  virtual ~IVDECmdExecList() = default;
  virtual void AddExecutor(IVDECmdExecutorPtr AExecutor) = 0;
  virtual int GetCapacity() const = 0;
  virtual bool CanRedo() const = 0;
  virtual bool CanUndo() const = 0;
  virtual void Redo() = 0;
  virtual void Reset() = 0;
  virtual void SetCapacity(int AValue) = 0;
  virtual void Undo() = 0;
};

// Keeps at most FCapacity records; a new record drops the redo tail, a full list its oldest.
class TVDECmdExecList : public IVDECmdExecList {
public:
  // -1 gives 100; anything else below 2 gives 2.
  explicit TVDECmdExecList(int ACapacity);
  void AddExecutor(IVDECmdExecutorPtr AExecutor) override;
  int GetCapacity() const override { return FCapacity; }
  bool CanRedo() const override { return FCurStepIndex < Count() - 1; }
  bool CanUndo() const override { return FCurStepIndex >= 0; }
  void Redo() override;
  void Reset() override;
  // At least 2; below the count the whole list is cleared, not trimmed.
  void SetCapacity(int AValue) override;
  void Undo() override;
  int Count() const { return int(FList.size()); }
  int CurStepIndex() const { return FCurStepIndex; }

private:
  int FCapacity;
  int FCurStepIndex = -1;
  std::vector<IVDECmdExecutorPtr> FList;
};

class TVDECmdExecutor : public IVDECmdExecutor {
public:
  explicit TVDECmdExecutor(IVDEditor& AEditor);
  void Redo() override;
  void Undo() override;

protected:
  TVectorDrawing& Drawing() { return FEditor.GetVectorDrawing(); }

  TKRNPoint2i FDPoint;
  IVDEditor& FEditor;
  TKRNVector2d FWPoint;
  double FZoomFactor;
};

// Items out of the drawing with the list positions they left. Taking out and putting
// back run in opposite orders, so every item returns to its exact position.
class TVDEItemStash {
public:
  // Takes out each ID still present, in the given order.
  void TakeOut(TVectorDrawing& ADrawing, const std::vector<int>& AIDs);
  void PutBack(TVectorDrawing& ADrawing);
  bool Empty() const { return FItems.empty(); }

private:
  struct TEntry {
    int Index;
    std::unique_ptr<TVectorDrawingItem> Item;
  };
  std::vector<TEntry> FItems;
};

// New items: undo takes them out, redo puts them back.
class TVDEDrawCmdExecutor : public TVDECmdExecutor {
public:
  using TVDECmdExecutor::TVDECmdExecutor;
  // A copy of AItem joins the drawing with a new ID on its current layer; returns it.
  TVectorDrawingItem* AddItem(const TVectorDrawingItem& AItem);
  bool Empty() const { return FNewIDs.empty(); }
  void Redo() override;
  void Undo() override;

protected:
  std::vector<int> FNewIDs;
  TVDEItemStash FStash;
};

class TVDEDeleteCmdExecutor : public TVDECmdExecutor {
public:
  using TVDECmdExecutor::TVDECmdExecutor;
  // Deletes the selection, last selected first; false when it is empty.
  bool Delete();
  void Redo() override;
  void Undo() override;

private:
  std::vector<int> FDelIDs;
  TVDEItemStash FStash;
};

struct TSetPropParam {
  int FItemID;
  TVDEPropType FPropType;
  QString FOldValue;
  QString FNewValue;
};

class TVDESetPropCmdExecutor : public TVDECmdExecutor {
public:
  using TVDECmdExecutor::TVDECmdExecutor;
  // True only if the item offers the property and the value differs.
  bool SetProp(TVectorDrawingItem& AItem, TVDEPropType APropType, const QString& AValue);
  void Redo() override;
  void Undo() override;

private:
  void Apply(bool ANew);
  std::vector<TSetPropParam> FSetPropParams;
};

class TVDEMoveCmdExecutor : public TVDECmdExecutor {
public:
  using TVDECmdExecutor::TVDECmdExecutor;
  // True only with a selection and two distinct points.
  bool Move(const TKRNVector2d& ABasePt, const TKRNVector2d& AInsertPt);
  void Redo() override;
  void Undo() override;

private:
  void Apply(const TKRNVector2d& AFrom, const TKRNVector2d& ATo);
  std::vector<int> FSelItemIDList;
  TKRNVector2d FStartPt{}, FEndPt{};
};

class TVDECopyCmdExecutor : public TVDEDrawCmdExecutor {
public:
  using TVDEDrawCmdExecutor::TVDEDrawCmdExecutor;
  // Each selected item copied and moved by the two points; the sources stay.
  bool Copy(const TKRNVector2d& ABasePt, const TKRNVector2d& AInsertPt);
};

// Geometry snapshots before and after; the base of every in-place shape edit.
class TVDECoordChangeCmdExecutor : public TVDECmdExecutor {
public:
  using TVDECmdExecutor::TVDECmdExecutor;
  void AddOld(const TVectorDrawingItem& AItem) { FOldCoordList.push_back(AItem.CreateCoordData()); }
  void AddNew(const TVectorDrawingItem& AItem) { FNewCoordList.push_back(AItem.CreateCoordData()); }
  void Redo() override;
  void Undo() override;

protected:
  void Apply(const std::vector<std::unique_ptr<TVDICoordData>>& AList);
  std::vector<std::unique_ptr<TVDICoordData>> FNewCoordList;
  std::vector<std::unique_ptr<TVDICoordData>> FOldCoordList;
};

// Rotation in place (IDs kept) or of copies (the sources stay). A text turned in place
// also takes the angle as its rotation; undo gives back the rotation it had.
class TVDERotateCmdExecutor : public TVDEDrawCmdExecutor {
public:
  using TVDEDrawCmdExecutor::TVDEDrawCmdExecutor;
  // True only with a selection and a non-zero angle.
  bool Rotate(const TKRNVector2d& ABasePt, double AAngle, bool ADelPrev);
  void Redo() override;
  void Undo() override;

private:
  void Turn(double AAngle, bool ANew);
  double FAngle = 0;
  TKRNVector2d FBasePt{};
  bool FInPlace = true;
  std::vector<int> FItemIDs;
  std::vector<std::pair<int, std::pair<double, double>>> FTextAngles;  // ID, old and new rotation
};

// Mirroring in place or of copies; the record is always kept.
class TVDEMirrorCmdExecutor : public TVDEDrawCmdExecutor {
public:
  using TVDEDrawCmdExecutor::TVDEDrawCmdExecutor;
  void Mirror(const TKRNBeeline2d& AMirrorLine, bool ADelPrev);
  void Redo() override;
  void Undo() override;

private:
  void Flip();
  TKRNBeeline2d FMirrorLine{};
  bool FInPlace = true;
  std::vector<int> FItemIDs;
};

class TVDEStretchCmdExecutor : public TVDECoordChangeCmdExecutor {
public:
  using TVDECoordChangeCmdExecutor::TVDECoordChangeCmdExecutor;
  void Stretch(const TKRNBox2d& ACrossBox, const TKRNVector2d& ABasePt, const TKRNVector2d& AInsertPt);
};

// A grip of one or more items: the grip index with its item.
using TVDEGripList = std::vector<std::pair<int, TVectorDrawingItem*>>;

class TVDEDragGripCmdExecutor : public TVDECoordChangeCmdExecutor {
public:
  using TVDECoordChangeCmdExecutor::TVDECoordChangeCmdExecutor;
  // True only with grips and two distinct points.
  bool DragGrip(const TVDEGripList& AList, const TKRNVector2d& ABasePt, const TKRNVector2d& AInsertPt);
};

class TVDEDragMoveCmdExecutor : public TVDECoordChangeCmdExecutor {
public:
  using TVDECoordChangeCmdExecutor::TVDECoordChangeCmdExecutor;
  bool DragMove(const TKRNVector2d& ABasePt, const TKRNVector2d& AInsertPt);
};
