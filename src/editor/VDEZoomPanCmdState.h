#pragma once
// Zoom and pan states: priority 3, so they nest in any running command and give
// the view back to it when they end.

#include "VDECmdState.h"

class TVDEZoomPanState : public TVDECmdState {
public:
  using TVDECmdState::TVDECmdState;
  static TVDECmdInfo ClassCmdInfo();
};

// A box by drag or two clicks; stays for further boxes until right click or Esc.
class TVDEZoomWinState : public TVDEZoomPanState {
  VDE_CMD_INFO
public:
  using TVDEZoomPanState::TVDEZoomPanState;

protected:
  void AfterCreate() override { SetCurCursor(crCross); }
  void DoDrawElastic(QPainter& AHDC) override;
  void DoMouseDown(TMouseButton AButton, TShiftState AShift, TKRNVector2d& APoint) override;
  void DoMouseMove(TShiftState AShift, TKRNVector2d& APoint) override;
  void DoMouseUp(TMouseButton AButton, TShiftState AShift, const TKRNVector2d& APoint) override;
  // The two points are set: zoom to their box.
  virtual void Apply();
  virtual bool HideCursorInBox() const { return true; }

  TKRNVector2d FElasticEP{}, FElasticSP{};
  bool FIsDrag = true;
};

class TVDEZoomRuntimeState : public TVDEZoomPanState {
  VDE_CMD_INFO
public:
  using TVDEZoomPanState::TVDEZoomPanState;

protected:
  void AfterCreate() override { SetCurCursor(crZoomRuntime); }
  void DoMouseDown(TMouseButton AButton, TShiftState AShift, TKRNVector2d& APoint) override;
  void DoMouseMove(TShiftState AShift, TKRNVector2d& APoint) override;

  int FOriginPtY = 0, FPrevPtY = 0;
  double FOriginZoomFactor = 1;
};

// Started by the middle button too, so a middle drag pans and ends by itself.
class TVDEPanRuntimeState : public TVDEZoomPanState {
  VDE_CMD_INFO
public:
  using TVDEZoomPanState::TVDEZoomPanState;

protected:
  void AfterCreate() override { SetCurCursor(crPanRuntime); }
  void DoMouseDown(TMouseButton AButton, TShiftState AShift, TKRNVector2d& APoint) override;
  void DoMouseMove(TShiftState AShift, TKRNVector2d& APoint) override;
  void DoMouseUp(TMouseButton AButton, TShiftState AShift, const TKRNVector2d& APoint) override;

  TKRNPoint2i FPrevPt{};
};

class TVDEPanPointState : public TVDEZoomWinState {
  VDE_CMD_INFO
public:
  using TVDEZoomWinState::TVDEZoomWinState;

protected:
  void DoDrawElastic(QPainter& AHDC) override;
  void Apply() override;
  bool HideCursorInBox() const override { return false; }
};

class TVDEPanCenterState : public TVDEZoomPanState {
  VDE_CMD_INFO
public:
  using TVDEZoomPanState::TVDEZoomPanState;

protected:
  void AfterCreate() override { SetCurCursor(crCross); }
  void DoMouseDown(TMouseButton AButton, TShiftState AShift, TKRNVector2d& APoint) override;
};

void RegisterZoomPanStates();
