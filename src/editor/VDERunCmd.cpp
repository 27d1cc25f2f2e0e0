#include "VDERunCmd.h"

#include "Dialogs.h"
#include "SysUtils.h"
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

const QString SNoLimit = QStringLiteral("[无限制]");
const QString SDefaultColor = QStringLiteral("缺省");

QStringList Tens() {
  QStringList L;
  for (int I = 10; I <= 100; I += 10) L << QString::number(I);
  return L;
}

// "设置网格": the two spacings and the switch.
void GridSetting(IVDEditor& E, qintptr) {
  const QStringList OnOff = {QStringLiteral("开启"), QStringLiteral("关闭")};
  std::vector<TFormField> F = {{QStringLiteral("横向"), QString::number(E.GetGridXSpace()), Tens()},
                               {QStringLiteral("纵向"), QString::number(E.GetGridYSpace()), Tens()},
                               {QStringLiteral("开关"), OnOff[E.GetGridSwitch() ? 0 : 1], OnOff}};
  const TFormValidator Check = [OnOff](const std::vector<TFormField>& A, QString& AMsg) {
    for (int I = 0; I < 2; ++I) {
      int V;
      if (!TryStrToInt(Trim(A[size_t(I)].Value), V) || V < 1 || V > 32767) {
        AMsg = QStringLiteral("网格间距必须是1到32767之间的整数");
        return false;
      }
    }
    if (!OnOff.contains(Trim(A[2].Value))) {
      AMsg = QStringLiteral("开关必须是开启或关闭");
      return false;
    }
    return true;
  };
  if (!Dialogs().FormDialog(QStringLiteral("设置网格"), F, Check)) return;
  E.SetGridXSpace(StrToInt(Trim(F[0].Value)));
  E.SetGridYSpace(StrToInt(Trim(F[1].Value)));
  E.SetGridSwitch(Trim(F[2].Value) == OnOff[0]);
}

// "设置图形属性": page size (or no limit), remark and background colour.
void DrawPropSetting(IVDEditor& E, qintptr) {
  TVectorDrawing& D = E.GetVectorDrawing();
  const auto Size = [](int V) { return V > 0 ? QString::number(V) : SNoLimit; };
  std::vector<TFormField> F = {{QStringLiteral("宽度"), Size(D.DrawingWidth()), {SNoLimit}},
                               {QStringLiteral("高度"), Size(D.DrawingHeight()), {SNoLimit}},
                               {QStringLiteral("备注"), D.Remark(), {}},
                               {QStringLiteral("背景色"), D.BackColor() == 0 ? SDefaultColor : QString::number(D.BackColor()),
                                {SDefaultColor}}};
  const TFormValidator Check = [](const std::vector<TFormField>& A, QString& AMsg) {
    for (int I = 0; I < 2; ++I) {
      const QString V = Trim(A[size_t(I)].Value);
      int N;
      if (V != SNoLimit && (!TryStrToInt(V, N) || N < 1)) {
        AMsg = QStringLiteral("%1必须是正整数或%2").arg(A[size_t(I)].Label, SNoLimit);
        return false;
      }
    }
    const QString C = Trim(A[3].Value);
    qint64 Color;
    if (C != SDefaultColor && (!TryStrToInt64(C, Color) || Color < 0 || Color > 0xFFFFFF)) {
      AMsg = QStringLiteral("非法颜色值");
      return false;
    }
    return true;
  };
  if (!Dialogs().FormDialog(QStringLiteral("设置图形属性"), F, Check)) return;
  const auto SizeOf = [](const QString& V) { return Trim(V) == SNoLimit ? 0 : StrToInt(Trim(V)); };
  D.BeginUpdate();
  D.SetDrawingWidth(SizeOf(F[0].Value));
  D.SetDrawingHeight(SizeOf(F[1].Value));
  if (F[2].Value != D.Remark()) D.SetRemark(F[2].Value);
  const TColor Back = Trim(F[3].Value) == SDefaultColor ? 0 : TColor(StrToInt64(Trim(F[3].Value)));
  if (Back != D.BackColor()) D.SetBackColor(Back);
  D.EndUpdate();
  E.Execute(cmdZoomAll, 0);
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
    {"TVDEGridSettingCommand", &Info<cmdGridSetting>, &GridSetting},
    {"TVDEDrawPropSettingCommand", &Info<cmdDrawPropSetting>, &DrawPropSetting},
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
