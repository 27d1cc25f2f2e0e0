#pragma once
// Explicit snaps run as nested states and hand one point to their parent: the
// middle of a line, the foot of a perpendicular, the meeting of two lines.

#include "VDECmdState.h"

class TVDESnapState : public TVDECmdState {
public:
  using TVDECmdState::TVDECmdState;
  static TVDECmdInfo ClassCmdInfo();
  const TKRNVector2d& SnapPt() const { return FSnapPt; }
  bool SnapSuccess() const { return FSnapSuccess; }

protected:
  void AfterCreate() override { SetCurCursor(crSeekEdo); }
  // The line of a line or arc item within the pick tolerance, or null.
  TVectorDrawingItem* HitLine(const TKRNVector2d& APoint);
  // Two short red strokes crossing at the point, in exclusive-or.
  void DrawMarker(QPainter& AHDC, const TKRNVector2d& APoint);

  TKRNVector2d FSnapPt{};
  bool FSnapSuccess = false;
};

// Tracks the line under the mouse and shows it dashed with a marker at its point.
class TVDELineSnapState : public TVDESnapState {
public:
  using TVDESnapState::TVDESnapState;
  void ResetStep() override;

protected:
  void DoDrawElastic(QPainter& AHDC) override;
  void DoMouseDown(TMouseButton AButton, TShiftState AShift, TKRNVector2d& APoint) override;
  void DoMouseMove(TShiftState AShift, TKRNVector2d& APoint) override;
  // The snapped point of ALine; false when it has none.
  virtual bool PointOf(const TKRNCustomLine2d& ALine, TKRNVector2d& APoint) const = 0;

  bool FIsSnaped = false;
  TKRNPtr<TKRNCustomLine2d> FLine;
  double FLineWidth = 0;
};

class TVDEMidSnapState : public TVDELineSnapState {
  VDE_CMD_INFO
public:
  using TVDELineSnapState::TVDELineSnapState;

protected:
  bool PointOf(const TKRNCustomLine2d& ALine, TKRNVector2d& APoint) const override;
};

class TVDEPerSnapState : public TVDELineSnapState {
  VDE_CMD_INFO
public:
  using TVDELineSnapState::TVDELineSnapState;
  void SetStartPt(const TKRNVector2d& APoint) { FStartPt = APoint; }

protected:
  bool PointOf(const TKRNCustomLine2d& ALine, TKRNVector2d& APoint) const override;
  TKRNVector2d FStartPt{2147483647.0, 2147483647.0};
};

class TVDEIntsSnapState : public TVDESnapState {
  VDE_CMD_INFO
public:
  using TVDESnapState::TVDESnapState;

protected:
  void DoDrawElastic(QPainter& AHDC) override;
  void DoMouseDown(TMouseButton AButton, TShiftState AShift, TKRNVector2d& APoint) override;
  void DoMouseMove(TShiftState AShift, TKRNVector2d& APoint) override;

  double FLineWidth = 0;
  int FOriginItem = -1;
  TKRNPtr<TKRNCustomLine2d> FXLine;
};

void RegisterSnapStates();
