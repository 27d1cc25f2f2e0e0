#pragma once
// Modify commands: a selection phase (skipped when items are selected already),
// then the edit through an undo record.

#include "VDECmdExecutor.h"
#include "VDECmdState.h"

class TVectorLine;

class TVDEModifyState : public TVDECmdState {
public:
  using TVDECmdState::TVDECmdState;
  static TVDECmdInfo ClassCmdInfo();
  // Finished at once without being linked when the selection is enough.
  template <class T>
  static void ClassExecute(IVDEditor& AOwner, qintptr AParam) {
    std::unique_ptr<T> S = Create<T>(AOwner, AParam);
    if (S->ExecuteOnSelection()) S->Finish();
    else AOwner.SetCmdState(std::move(S));
  }
  void NextCmdEnded() override;
  virtual bool ExecuteOnSelection() { return false; }

protected:
  void AfterCreate() override;
  virtual void BeginSelect(qintptr AParam);
  // 0 nothing to do, 1 finish, 2 cancel.
  virtual int CheckSelectResult();
  void DoCancel(bool& ACanDelete) override;
  void DoFinish(bool& ACanDelete) override { TVDEModifyState::DoCancel(ACanDelete); }
  TVDEMultiSelectState* NestSelect();
};

class TVDEDeleteState : public TVDEModifyState {
  VDE_CMD_INFO
public:
  using TVDEModifyState::TVDEModifyState;
  bool ExecuteOnSelection() override { return Drawing().SelSet().Count() > 0; }

protected:
  void DoFinish(bool& ACanDelete) override;
};

// Two points after the selection: base and insert (move, copy, rotate, mirror, stretch).
class TVDESimpleEditState : public TVDEModifyState {
public:
  using TVDEModifyState::TVDEModifyState;
  static TVDECmdInfo ClassCmdInfo();
  void NextCmdEnded() override;
  void SetNextCmd(std::unique_ptr<TVDECmdState> ACmd) override;

protected:
  void DoDrawElastic(QPainter& AHDC) override;
  void DoMouseDown(TMouseButton AButton, TShiftState AShift, TKRNVector2d& APoint) override;
  void DoMouseMove(TShiftState AShift, TKRNVector2d& APoint) override;
  void DefinePoint(const TKRNVector2d& APoint);
  virtual void ApplyEdit(const TKRNVector2d& ABasePt, const TKRNVector2d& AInsertPt) = 0;
  virtual void TransformElastic(TVectorDrawingItem& AItem) = 0;

  TKRNVector2d FElasticBP{}, FElasticIP{};
  bool FIsDefineIP = false;
};

class TVDEMoveState : public TVDESimpleEditState {
  VDE_CMD_INFO
public:
  using TVDESimpleEditState::TVDESimpleEditState;

protected:
  void ApplyEdit(const TKRNVector2d& ABasePt, const TKRNVector2d& AInsertPt) override;
  void TransformElastic(TVectorDrawingItem& AItem) override;
};

class TVDECopyState : public TVDEMoveState {
  VDE_CMD_INFO
public:
  using TVDEMoveState::TVDEMoveState;

protected:
  void ApplyEdit(const TKRNVector2d& ABasePt, const TKRNVector2d& AInsertPt) override;
};

class TVDERotateState : public TVDESimpleEditState {
  VDE_CMD_INFO
public:
  using TVDESimpleEditState::TVDESimpleEditState;

protected:
  void ApplyEdit(const TKRNVector2d& ABasePt, const TKRNVector2d& AInsertPt) override;
  void TransformElastic(TVectorDrawingItem& AItem) override;
};

class TVDEMirrorState : public TVDESimpleEditState {
  VDE_CMD_INFO
public:
  using TVDESimpleEditState::TVDESimpleEditState;

protected:
  void ApplyEdit(const TKRNVector2d& ABasePt, const TKRNVector2d& AInsertPt) override;
  void TransformElastic(TVectorDrawingItem& AItem) override;
};

// Takes what a crossing box touches and moves the ends inside the box.
class TVDEStretchState : public TVDESimpleEditState {
  VDE_CMD_INFO
public:
  using TVDESimpleEditState::TVDESimpleEditState;

protected:
  void BeginSelect(qintptr AParam) override;
  int CheckSelectResult() override;
  void ApplyEdit(const TKRNVector2d& ABasePt, const TKRNVector2d& AInsertPt) override;
  void TransformElastic(TVectorDrawingItem& AItem) override;
  TKRNBox2d FSelRect{};
};

// Lines and arcs only; one question, then the whole selection at once.
class TVDELinesQuestionState : public TVDEModifyState {
public:
  using TVDEModifyState::TVDEModifyState;
  bool ExecuteOnSelection() override { return Drawing().SelSet().Count() > 0; }

protected:
  void BeginSelect(qintptr AParam) override;
  void DoFinish(bool& ACanDelete) override;
  virtual QString Question() const = 0;
  // Runs the record's operation; false when nothing changed.
  virtual std::shared_ptr<IVDECmdExecutor> Run() = 0;
};

class TVDEBreakState : public TVDELinesQuestionState {
  VDE_CMD_INFO
public:
  using TVDELinesQuestionState::TVDELinesQuestionState;

protected:
  QString Question() const override { return QStringLiteral("是否打断所有选中的线"); }
  std::shared_ptr<IVDECmdExecutor> Run() override;
};

class TVDEMergeState : public TVDELinesQuestionState {
  VDE_CMD_INFO
public:
  using TVDELinesQuestionState::TVDELinesQuestionState;

protected:
  QString Question() const override { return QStringLiteral("是否合并所有选中的线"); }
  std::shared_ptr<IVDECmdExecutor> Run() override;
};

class TVDEGroupZoomState : public TVDELinesQuestionState {
  VDE_CMD_INFO
public:
  using TVDELinesQuestionState::TVDELinesQuestionState;

protected:
  QString Question() const override { return QStringLiteral("是否缩放所有选中的线"); }
  std::shared_ptr<IVDECmdExecutor> Run() override;
};

// An edge first (one line, arc, circle or polyline), then clicks on the lines to change.
class TVDEAdvanceEditState : public TVDEModifyState {
public:
  using TVDEModifyState::TVDEModifyState;

protected:
  void AfterCreate() override;
  void BeginSelect(qintptr AParam) override;
  void DoMouseDown(TMouseButton AButton, TShiftState AShift, TKRNVector2d& APoint) override;
  void DoMouseMove(TShiftState AShift, TKRNVector2d& APoint) override;
  virtual void ApplyToItem(TVectorLine& AItem, const TKRNVector2d& ARefPt) = 0;
};

class TVDETrimState : public TVDEAdvanceEditState {
  VDE_CMD_INFO
public:
  using TVDEAdvanceEditState::TVDEAdvanceEditState;

protected:
  void ApplyToItem(TVectorLine& AItem, const TKRNVector2d& ARefPt) override;
};

class TVDEExtendState : public TVDEAdvanceEditState {
  VDE_CMD_INFO
public:
  using TVDEAdvanceEditState::TVDEAdvanceEditState;

protected:
  void ApplyToItem(TVectorLine& AItem, const TKRNVector2d& ARefPt) override;
};

class TVDEIntersectState : public TVDEAdvanceEditState {
  VDE_CMD_INFO
public:
  using TVDEAdvanceEditState::TVDEAdvanceEditState;

protected:
  void ApplyToItem(TVectorLine& AItem, const TKRNVector2d& ARefPt) override;
};

void RegisterModifyStates();
