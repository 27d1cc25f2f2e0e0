#pragma once
// A running command: one link in the chain that starts at the editor's idle state.
// A state owns its nested state; input goes to the deepest one; a state ends by
// being unlinked by its parent. Also the selection states: single pick, box or
// pick, and the idle state at the root.

#include "VDECommand.h"
#include "VectorDrawing.h"

#include <memory>

class TVDECmdState {
public:
  TVDECmdState(IVDEditor& AOwner, qintptr AParam) : FOwner(AOwner), FParam(AParam) {}
  virtual ~TVDECmdState();
  TVDECmdState(const TVDECmdState&) = delete;
  TVDECmdState& operator=(const TVDECmdState&) = delete;

  static TVDECmdInfo ClassCmdInfo() { return {}; }
  virtual TVDECmdInfo CmdInfo() const { return ClassCmdInfo(); }
  // Class-level Execute of every state command: create, then hand to the editor.
  template <class T>
  static void ClassExecute(IVDEditor& AOwner, qintptr AParam) {
    AOwner.SetCmdState(Create<T>(AOwner, AParam));
  }
  // Construction, then the steps that need the class's own operations.
  template <class T>
  static std::unique_ptr<T> Create(IVDEditor& AOwner, qintptr AParam) {
    auto S = std::make_unique<T>(AOwner, AParam);
    S->Init();
    return S;
  }

  void Cancel();
  void Finish();
  // Unlinked by the parent (which frees this), or marked deleted when unlinked.
  void Delete();
  void DrawElastic(QPainter* AHDC);
  void KeyDown(quint16& AKey, TShiftState AShift);
  void MouseDown(TMouseButton AButton, TShiftState AShift, TKRNVector2d& APoint);
  void MouseMove(TShiftState AShift, TKRNVector2d& APoint);
  void MouseUp(TMouseButton AButton, TShiftState AShift, const TKRNVector2d& APoint);
  void RefreshElastic();

  virtual void NextCmdEnded();
  virtual QString GetPrompt() const;
  virtual void ApplyAddItemProp() {}
  virtual void ResetStep();
  virtual void SetNextCmd(std::unique_ptr<TVDECmdState> ACmd);

  TVDECmdState* NextCmd() const { return FNextCmd.get(); }
  TVDECmdState* PrevCmd() const { return FPrevCmd; }
  TVDECmdState* Deepest();
  int Step() const { return FStep; }
  int CurCursor() const { return FCurCursor; }
  qintptr Param() const { return FParam; }
  bool Deleted() const { return FDeleted; }

protected:
  virtual void DoCancel(bool& ACanDelete);
  virtual void DoDrawElastic(QPainter&) {}
  // The default cancel's rule, not an override's: finishing keeps a selection.
  virtual void DoFinish(bool& ACanDelete) { TVDECmdState::DoCancel(ACanDelete); }
  virtual void DoKeyDown(quint16& AKey, TShiftState AShift);
  virtual void DoMouseDown(TMouseButton AButton, TShiftState AShift, TKRNVector2d& APoint);
  virtual void DoMouseMove(TShiftState, TKRNVector2d&) {}
  virtual void DoMouseUp(TMouseButton, TShiftState, const TKRNVector2d&) {}
  virtual void AfterCreate() {}

  TKRNCoordTrans& GetCoordTrans() { return FOwner.GetCoordTrans(); }
  QPainter& GetHDC() { return FOwner.GetHDC(); }
  TVectorDrawing& Drawing() { return FOwner.GetVectorDrawing(); }
  // The pick tolerance: 8 pixels in world units at the scale of the moment.
  double GetTol() { return GetCoordTrans().DCTOWC(8); }
  void SetCurCursor(int ACursor);
  void SetStep(int AStep) { FStep = AStep; }
  // Erases and draws alike: rubber bands are exclusive-or.
  void XorElastic() { DoDrawElastic(GetHDC()); }

  int FCurCursor = crDefault;
  std::unique_ptr<TVDECmdState> FNextCmd;
  IVDEditor& FOwner;
  qintptr FParam;
  TVDECmdState* FPrevCmd = nullptr;
  int FStep = 0;

private:
  void Init();
  bool FDeleted = false;
};

#define VDE_CMD_INFO                 \
public:                              \
  static TVDECmdInfo ClassCmdInfo(); \
  TVDECmdInfo CmdInfo() const override { return ClassCmdInfo(); }

enum TSelectMode { slmPoint = 1, slmRectSel = 2, slmCrossSel = 4 };
using TSelectModeSet = int;

class TVDESelectState : public TVDECmdState {
public:
  using TVDECmdState::TVDECmdState;
  TDrawingItemTypeSet& SelItemTypeSet() { return FSelItemTypeSet; }

protected:
  TDrawingItemTypeSet FSelItemTypeSet;
};

class TVDESingleSelectState : public TVDESelectState {
public:
  using TVDESelectState::TVDESelectState;

protected:
  void AfterCreate() override { SetCurCursor(crSeekEdo); }
  void DoCancel(bool& ACanDelete) override;
  void DoMouseDown(TMouseButton AButton, TShiftState AShift, TKRNVector2d& APoint) override;
  void DoMouseMove(TShiftState AShift, TKRNVector2d& APoint) override;
};

class TVDEMultiSelectState : public TVDESelectState {
public:
  using TVDESelectState::TVDESelectState;
  void SetSelMode(TSelectModeSet AValue) { FSelMode = AValue; }
  void SetAutoFinish(bool AValue) { FAutoFinish = AValue; }
  void SetClearSelected(bool AValue) { FClearSelected = AValue; }
  const TKRNVector2d& ElasticSP() const { return FElasticSP; }
  const TKRNVector2d& ElasticEP() const { return FElasticEP; }

protected:
  void AfterCreate() override { SetCurCursor(crCross); }
  void DoCancel(bool& ACanDelete) override;
  void DoDrawElastic(QPainter& AHDC) override;
  void DoMouseDown(TMouseButton AButton, TShiftState AShift, TKRNVector2d& APoint) override;
  void DoMouseMove(TShiftState AShift, TKRNVector2d& APoint) override;
  void DoMouseUp(TMouseButton AButton, TShiftState AShift, const TKRNVector2d& APoint) override;
  virtual void FirstPoint(TKRNVector2d& APoint, TShiftState AShift);
  void DoSelect(const TKRNVector2d& APoint, TVectorDrawingItem* AItem, TShiftState AShift);

  bool FAutoFinish = false;
  bool FClearSelected = false;
  TKRNVector2d FElasticEP{};
  TKRNVector2d FElasticSP{};
  bool FIsDrag = true;
  TSelectModeSet FSelMode = slmPoint | slmRectSel | slmCrossSel;
};

// The idle state at the root: selects, starts grip and item drags, never ends.
class TVDEBaseSelectState : public TVDEMultiSelectState {
  VDE_CMD_INFO
public:
  using TVDEMultiSelectState::TVDEMultiSelectState;
  void NextCmdEnded() override;
  void SetNextCmd(std::unique_ptr<TVDECmdState> ACmd) override;
  bool GripOver() const { return FGripOver; }

protected:
  void FirstPoint(TKRNVector2d& APoint, TShiftState AShift) override;
  void DoMouseMove(TShiftState AShift, TKRNVector2d& APoint) override;
  void DoDrawElastic(QPainter& AHDC) override;
  void DoKeyDown(quint16& AKey, TShiftState AShift) override;
  void DoCancel(bool& ACanDelete) override;
  void DoFinish(bool& ACanDelete) override { DoCancel(ACanDelete); }
  bool HitGrip(const TKRNVector2d& APoint, TKRNVector2d& AGripPt);

  bool FGripOver = false;
  TKRNVector2d FGripPt{};
};

// Selection run for a command: shows the command's prompt for the command's step.
class TVDEModifyMultiSelectState : public TVDEMultiSelectState {
  VDE_CMD_INFO
public:
  using TVDEMultiSelectState::TVDEMultiSelectState;
  QString GetPrompt() const override;
};

class TVDEModifySingleSelectState : public TVDESingleSelectState {
  VDE_CMD_INFO
public:
  using TVDESingleSelectState::TVDESingleSelectState;
  QString GetPrompt() const override;
};

// Draw states that take the line-segment mode implement this.
class IVDELineSegModeState {
public:
  virtual ~IVDELineSegModeState() = default;
  virtual void SetDrawLineSeg(bool AValue) = 0;
};

// Draw states whose line carries over into another polyline command.
class IVDEPolylineState {
public:
  virtual ~IVDEPolylineState() = default;
  virtual void AssignFrom(TVDECmdState& ASource) = 0;
};

void RegisterSelectStates();
