#pragma once
// Modify commands: a selection phase (skipped when items are selected already),
// then the edit through an undo record.

#include "VDECmdState.h"

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

void RegisterModifyStates();
