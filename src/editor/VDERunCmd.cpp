#include "VDERunCmd.h"

#include "VDECmdExecutor.h"
#include "VDECmdState.h"
#include "VDEClipBrd.h"
#include "VectorDrawing.h"

#include <algorithm>
#include <cmath>

namespace {

template <int ID>
TVDECmdInfo Info() {
  return RunCommandInfo(ID);
}

void ZoomAll(IVDEditor& E, qintptr) {
  const TVectorDrawing& D = E.GetVectorDrawing();
  TKRNBox2d R = D.ItemsRange();
  if (D.DrawingWidth() > 0) {
    R.MinX() = std::min(R.MinX(), 0.0);
    R.MaxX() = std::max(R.MaxX(), double(D.DrawingWidth()));
  }
  if (D.DrawingHeight() > 0) {
    R.MinY() = std::min(R.MinY(), 0.0);
    R.MaxY() = std::max(R.MaxY(), double(D.DrawingHeight()));
  }
  const int M = E.GetMargin();
  E.GetCoordTrans().ZoomAll(std::max(1, E.GetClientWidth() - 2 * M), std::max(1, E.GetClientHeight() - 2 * M), R);
  E.GetCoordTrans().Pan(M, M);
  E.Invalidate();
}

void Scale(IVDEditor& E, double AFactor) {
  E.GetCoordTrans().SetScale(AFactor);
  E.Invalidate();
}

void PanBy(IVDEditor& E, double AX, double AY) {
  E.GetCoordTrans().Pan(int(std::lround(E.GetClientWidth() * AX)), int(std::lround(E.GetClientHeight() * AY)));
  E.Invalidate();
}

void SetProp(IVDEditor& E, qintptr AParam) {
  const auto* P = reinterpret_cast<const TSetVDIPropParam*>(AParam);
  if (!P) return;
  auto X = std::make_shared<TVDESetPropCmdExecutor>(E);
  TVectorDrawing& D = E.GetVectorDrawing();
  const QString Value = P->Value.trimmed();
  bool Changed = false;
  D.BeginUpdate();
  for (int I = 0; I < D.SelSet().Count(); ++I) Changed = X->SetProp(*D.SelSet().Items(I), P->PropType, Value) || Changed;
  D.EndUpdate();
  if (Changed) E.GetCmdExecList().AddExecutor(X);
}

void EditDelete(IVDEditor& E, qintptr) {
  auto X = std::make_shared<TVDEDeleteCmdExecutor>(E);
  if (X->Delete()) E.GetCmdExecList().AddExecutor(X);
}

void EditCopy(IVDEditor& E, qintptr) {
  TVectorDrawingSelSet& S = E.GetVectorDrawing().SelSet();
  std::vector<TVectorDrawingItem*> Items;
  for (int I = 0; I < S.Count(); ++I) Items.push_back(S.Items(I));
  CopyToClipboard(Items);
}

void SelAll(IVDEditor& E, qintptr) {
  E.SetCmdState(nullptr);
  TVectorDrawing& D = E.GetVectorDrawing();
  D.BeginUpdate();
  for (int I = 0; I < D.Count(); ++I) D.SelSet().Add(D.Items(I));
  D.EndUpdate();
}

const TVDECommandClass Commands[] = {
    {"TVDEZoomAllCommand", &Info<cmdZoomAll>, &ZoomAll},
    {"TVDEZoomInCommand", &Info<cmdZoomIn>, [](IVDEditor& E, qintptr) { Scale(E, 1.2); }},
    {"TVDEZoomOutCommand", &Info<cmdZoomOut>, [](IVDEditor& E, qintptr) { Scale(E, 0.8); }},
    {"TVDEPanLeftCommand", &Info<cmdPanLeft>, [](IVDEditor& E, qintptr) { PanBy(E, -0.5, 0); }},
    {"TVDEPanRightCommand", &Info<cmdPanRight>, [](IVDEditor& E, qintptr) { PanBy(E, 0.5, 0); }},
    {"TVDEPanUpCommand", &Info<cmdPanUp>, [](IVDEditor& E, qintptr) { PanBy(E, 0, -0.5); }},
    {"TVDEPanDownCommand", &Info<cmdPanDown>, [](IVDEditor& E, qintptr) { PanBy(E, 0, 0.5); }},
    {"TVDESetPropCommand", &Info<cmdSetProp>, &SetProp},
    {"TVDEUndoCommand", &Info<cmdUndo>,
     [](IVDEditor& E, qintptr) {
       E.SetCmdState(nullptr);
       E.GetCmdExecList().Undo();
       E.Invalidate();
     }},
    {"TVDERedoCommand", &Info<cmdRedo>,
     [](IVDEditor& E, qintptr) {
       E.SetCmdState(nullptr);
       E.GetCmdExecList().Redo();
       E.Invalidate();
     }},
    {"TVDEUndoResetCommand", &Info<cmdUndoReset>, [](IVDEditor& E, qintptr) { E.GetCmdExecList().Reset(); }},
    {"TVDEEditCutCommand", &Info<cmdEditCut>,
     [](IVDEditor& E, qintptr) {
       EditCopy(E, 0);
       EditDelete(E, 0);
     }},
    {"TVDEEditCopyCommand", &Info<cmdEditCopy>, &EditCopy},
    {"TVDEEditDeleteCommand", &Info<cmdEditDelete>, &EditDelete},
    {"TVDEEditSelAllCommand", &Info<cmdSelAll>, &SelAll},
    {"TVDESnapSwitchCommand", &Info<cmdSnapSwitch>, [](IVDEditor& E, qintptr) { E.SetSnapSwitch(!E.GetSnapSwitch()); }},
    {"TVDEGridSwitchCommand", &Info<cmdGridSwitch>, [](IVDEditor& E, qintptr) { E.SetGridSwitch(!E.GetGridSwitch()); }},
    {"TVDEDeselectCommand", &Info<cmdDeselect>, [](IVDEditor& E, qintptr) { E.GetVectorDrawing().SelSet().Clear(); }},
    {"TVDESetDrawLineSegMode", &Info<cmdSetDrawLineSegMode>,
     [](IVDEditor& E, qintptr AParam) { E.SetDrawLineSegMode(AParam == 1); }},
    {"TVDEOrthogonalSwitchCommand", &Info<cmdOrthogonalSwitch>,
     [](IVDEditor& E, qintptr) { E.SetOrthogonalSwitch(!E.GetOrthogonalSwitch()); }},
};

}  // namespace

void RegisterRunCommands() {
  for (const TVDECommandClass& C : Commands) RegisterVDECommand(C);
}
