#include "VDEModifyCmdState.h"

#include "Dialogs.h"

TVDECmdInfo TVDEModifyState::ClassCmdInfo() {
  TVDECmdInfo I;
  I.Priority = 1;
  I.CanRepeat = true;
  return I;
}

void TVDEModifyState::AfterCreate() {
  SetCurCursor(crSeekPoint);
  FStep = 1;
  BeginSelect(1);
}

TVDEMultiSelectState* TVDEModifyState::NestSelect() {
  auto Sel = Create<TVDEModifyMultiSelectState>(FOwner, 0);
  TVDEMultiSelectState* Raw = Sel.get();
  SetNextCmd(std::move(Sel));
  return Raw;
}

void TVDEModifyState::BeginSelect(qintptr) {
  if (Drawing().SelSet().Count() > 0) return;
  NestSelect();
  FStep = 0;
}

int TVDEModifyState::CheckSelectResult() {
  if (!dynamic_cast<TVDESelectState*>(FNextCmd.get())) return 0;
  if (Drawing().SelSet().Count() == 0) return 2;
  if (ExecuteOnSelection()) return 1;
  FStep = 1;
  return 0;
}

void TVDEModifyState::NextCmdEnded() {
  const int R = CheckSelectResult();
  TVDECmdState::NextCmdEnded();
  if (R == 1) Finish();
  else if (R == 2) Cancel();
}

void TVDEModifyState::DoCancel(bool& ACanDelete) {
  ACanDelete = FStep < 2;
  XorElastic();
  if (ACanDelete) Drawing().SelSet().Clear();
  else --FStep;
}

// ---- delete -----------------------------------------------------------------

TVDECmdInfo TVDEDeleteState::ClassCmdInfo() {
  TVDECmdInfo I = TVDEModifyState::ClassCmdInfo();
  I.CmdID = cmdDelete;
  I.CmdName = QStringLiteral("删除");
  I.Prompt = QStringLiteral("按鼠标左键选择图元，或拉框选择，按右键确认选择或ESC取消");
  return I;
}

void TVDEDeleteState::DoFinish(bool&) {
  if (Drawing().SelSet().Count() == 0) return;
  if (ShowConfirmBox(QStringLiteral("是否删除选中的图元")) == mrYes) FOwner.Execute(cmdEditDelete, 0);
  else Drawing().SelSet().Clear();
}

void RegisterModifyStates() {
  RegisterVDECommand({"TVDEDeleteState", &TVDEDeleteState::ClassCmdInfo,
                      &TVDEModifyState::ClassExecute<TVDEDeleteState>});
}
