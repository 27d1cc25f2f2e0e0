#pragma once
// The draw-set commands 100-104: rename a param, give a bar its notation text, merge
// bars, make points and lines one bar, and edit the jump order. They reach the window
// through IDrawSetEditor, which their editor implements.

#include "DrawSetEditorIntf.h"
#include "VDEModifyCmdState.h"

enum TDSECmdIDs { cmdEditParam = 100, cmdDrawBarInfo = 101, cmdMergeBars = 102, cmdLinesToBar = 103, cmdEditTabOrder = 104 };

class TDSECmdSate : public TVDECmdState {
public:
  using TVDECmdState::TVDECmdState;
  static TVDECmdInfo ClassCmdInfo();

protected:
  IDrawSetEditor* DSEditor();
  void DoDrawElastic(QPainter& AHDC) override;
  // The item under the mouse among the kinds the command takes; highlighted.
  void TrackElastic(TVectorDrawingItem* AItem);
  virtual TVectorDrawingItem* HitItem(const TKRNVector2d& APoint) = 0;
  void DoMouseMove(TShiftState AShift, TKRNVector2d& APoint) override;
  void AfterCreate() override { SetCurCursor(crSeekEdo); }

  int FElasticID = -1;
};

class TDSEEditParamState : public TDSECmdSate {
  VDE_CMD_INFO
public:
  using TDSECmdSate::TDSECmdSate;

protected:
  TVectorDrawingItem* HitItem(const TKRNVector2d& APoint) override;
  void DoMouseDown(TMouseButton AButton, TShiftState AShift, TKRNVector2d& APoint) override;
};

class TDSEDrawBarInfoState : public TDSECmdSate {
  VDE_CMD_INFO
public:
  using TDSECmdSate::TDSECmdSate;

protected:
  TVectorDrawingItem* HitItem(const TKRNVector2d& APoint) override;
  void DoMouseDown(TMouseButton AButton, TShiftState AShift, TKRNVector2d& APoint) override;
};

class TDSEEditTabOrderState : public TDSECmdSate {
  VDE_CMD_INFO
public:
  using TDSECmdSate::TDSECmdSate;
  // The check of a typed jump order; the message has its line break.
  static bool ValidOrder(const QString& AText, QString& AErrMsg);

protected:
  TVectorDrawingItem* HitItem(const TKRNVector2d& APoint) override;
  void DoMouseDown(TMouseButton AButton, TShiftState AShift, TKRNVector2d& APoint) override;
};

class TDSEModifyState : public TVDEModifyState {
public:
  using TVDEModifyState::TVDEModifyState;
  // A selection is confirmed by the right button (or was there when the command came).
  bool ExecuteOnSelection() override { return Drawing().SelSet().Count() > 0; }

protected:
  IDrawSetEditor* DSEditor();
  // Asks AQuestion for a selection; Yes runs AWork. The selection is cleared after.
  void Confirm(const QString& AQuestion, void (IDrawSetEditor::*AWork)(), bool AClearAfterYes);
};

class TDSEMergeBarsState : public TDSEModifyState {
  VDE_CMD_INFO
public:
  using TDSEModifyState::TDSEModifyState;

protected:
  void DoFinish(bool& ACanDelete) override;
};

class TDSELinesToBar : public TDSEModifyState {
  VDE_CMD_INFO
public:
  using TDSEModifyState::TDSEModifyState;

protected:
  void DoFinish(bool& ACanDelete) override;
};

// Registers 100-104 (idempotent).
void RegisterDrawSetCommands();
