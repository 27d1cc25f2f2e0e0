#pragma once
// Dragging at idle: a grip of the selected items (coincident grips of several items
// move together), or all selected items with a modifier held. Releasing either button
// applies; Esc leaves the drawing as it was.

#include "VDECmdExecutor.h"
#include "VDECmdState.h"

class TVDEDragState : public TVDECmdState {
public:
  using TVDECmdState::TVDECmdState;
  static TVDECmdInfo ClassCmdInfo();

protected:
  void AfterCreate() override;
  void DoDrawElastic(QPainter& AHDC) override;
  void DoMouseMove(TShiftState AShift, TKRNVector2d& APoint) override;
  void DoMouseUp(TMouseButton AButton, TShiftState AShift, const TKRNVector2d& APoint) override;
  virtual void DrawDragged(QPainter& AHDC) = 0;
  virtual void Apply() = 0;

  TKRNVector2d FBasePt{}, FInsertPt{};
  bool FElasticEnabled = true;
};

class TVDEDragGripState : public TVDEDragState {
  VDE_CMD_INFO
public:
  using TVDEDragState::TVDEDragState;
  const TVDEGripList& HitItems() const { return FHitItems; }

protected:
  void AfterCreate() override;
  void DrawDragged(QPainter& AHDC) override;
  void Apply() override;
  TVDEGripList FHitItems;
};

class TVDEDragMoveState : public TVDEDragState {
  VDE_CMD_INFO
public:
  using TVDEDragState::TVDEDragState;

protected:
  void DrawDragged(QPainter& AHDC) override;
  void Apply() override;
};

void RegisterGripStates();
