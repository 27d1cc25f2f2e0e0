#include "VDECommand.h"

#include "VDECmdState.h"
#include "VDEDrawCmdState.h"
#include "VDEGripCmdState.h"
#include "VDESnapCmdState.h"
#include "VDEModifyCmdState.h"
#include "VDERunCmd.h"
#include "VDEZoomPanCmdState.h"

namespace {

std::vector<TVDECommandClass>& Registry() {
  static std::vector<TVDECommandClass> R;
  return R;
}

}  // namespace

void RegisterVDECommand(const TVDECommandClass& AClass) {
  const int ID = AClass.CmdInfo().CmdID;
  for (const TVDECommandClass& C : Registry())
    if (C.CmdInfo().CmdID == ID) return;
  Registry().push_back(AClass);
}

const TVDECommandClass* FindVDECommand(int ACmdID) {
  for (const TVDECommandClass& C : Registry())
    if (C.CmdInfo().CmdID == ACmdID) return &C;
  return nullptr;
}

void RegisterEditorCommands() {
  static const bool Done = [] {
    RegisterGripStates();
    RegisterSnapStates();
    RegisterDrawStates();
    RegisterSelectStates();
    RegisterZoomPanStates();
    RegisterModifyStates();
    RegisterRunCommands();
    return true;
  }();
  (void)Done;
}

QString PromptPart(const QString& APrompt, int AStep) {
  const QStringList Parts = APrompt.split(QChar(13));
  return AStep >= 0 && AStep < Parts.size() ? Parts[AStep] : QString();
}

TVDECmdInfo RunCommandInfo(int ACmdID) {
  TVDECmdInfo I;
  I.CmdID = ACmdID;
  I.Priority = 4;
  return I;
}
