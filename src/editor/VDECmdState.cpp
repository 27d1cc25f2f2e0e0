#include "VDECmdState.h"

#include "KRNDrawFunc2d.h"

#include <cstdlib>

// ---- the chain --------------------------------------------------------------

TVDECmdState::~TVDECmdState() {
  FNextCmd.reset();
  if (FPrevCmd) FOwner.SetCursor(FPrevCmd->FCurCursor);
}

void TVDECmdState::Init() {
  if (CmdInfo().ClearSelSet) Drawing().SelSet().Clear();
  AfterCreate();
}

void TVDECmdState::SetCurCursor(int ACursor) {
  FCurCursor = ACursor;
  FOwner.SetCursor(ACursor);
}

TVDECmdState* TVDECmdState::Deepest() {
  TVDECmdState* S = this;
  while (S->FNextCmd) S = S->FNextCmd.get();
  return S;
}

void TVDECmdState::NextCmdEnded() {
  if (!FNextCmd) return;
  FNextCmd->DrawElastic(&GetHDC());
  FNextCmd.reset();
  FOwner.Execute(cmdRefresh, 0);
}

void TVDECmdState::DoCancel(bool& ACanDelete) {
  ACanDelete = FStep == 0;
  ResetStep();
}

void TVDECmdState::DoKeyDown(quint16& AKey, TShiftState) {
  if (AKey == vkEscape) Cancel();
}

void TVDECmdState::DoMouseDown(TMouseButton AButton, TShiftState, TKRNVector2d&) {
  if (AButton == mbRight) Finish();
}

QString TVDECmdState::GetPrompt() const { return PromptPart(CmdInfo().Prompt, FStep); }

void TVDECmdState::ResetStep() {
  XorElastic();
  FStep = 0;
}

void TVDECmdState::SetNextCmd(std::unique_ptr<TVDECmdState> ACmd) {
  if (ACmd.get() == FNextCmd.get()) return;
  if (!ACmd) {
    NextCmdEnded();
    FOwner.SetCursor(FCurCursor);
    FOwner.Execute(cmdRefresh, 0);
    return;
  }
  ACmd->ApplyAddItemProp();
  if (FNextCmd) {
    if (FNextCmd->CmdInfo().Priority < ACmd->CmdInfo().Priority) {
      FNextCmd->SetNextCmd(std::move(ACmd));
      return;
    }
    NextCmdEnded();
  }
  ACmd->FPrevCmd = this;
  FNextCmd = std::move(ACmd);
  FOwner.SetCursor(FNextCmd->Deepest()->FCurCursor);
  FOwner.Execute(cmdRefresh, 0);
}

void TVDECmdState::Cancel() {
  bool CanDelete = true;
  DoCancel(CanDelete);
  if (CanDelete) Delete();
}

void TVDECmdState::Finish() {
  bool CanDelete = true;
  DoFinish(CanDelete);
  if (CanDelete) Delete();
}

void TVDECmdState::Delete() {
  if (FPrevCmd) FPrevCmd->NextCmdEnded();  // frees this
  else FDeleted = true;
}

void TVDECmdState::DrawElastic(QPainter* AHDC) {
  if (FNextCmd) FNextCmd->DrawElastic(AHDC);
  DoDrawElastic(AHDC ? *AHDC : GetHDC());
}

void TVDECmdState::KeyDown(quint16& AKey, TShiftState AShift) {
  if (FNextCmd) FNextCmd->KeyDown(AKey, AShift);
  else DoKeyDown(AKey, AShift);
}

void TVDECmdState::MouseDown(TMouseButton AButton, TShiftState AShift, TKRNVector2d& APoint) {
  if (FNextCmd) FNextCmd->MouseDown(AButton, AShift, APoint);
  else DoMouseDown(AButton, AShift, APoint);
}

void TVDECmdState::MouseMove(TShiftState AShift, TKRNVector2d& APoint) {
  if (FNextCmd) FNextCmd->MouseMove(AShift, APoint);
  else DoMouseMove(AShift, APoint);
}

void TVDECmdState::MouseUp(TMouseButton AButton, TShiftState AShift, const TKRNVector2d& APoint) {
  if (FNextCmd) FNextCmd->MouseUp(AButton, AShift, APoint);
  else DoMouseUp(AButton, AShift, APoint);
}

void TVDECmdState::RefreshElastic() {
  XorElastic();
  ApplyAddItemProp();
  XorElastic();
  if (FNextCmd) FNextCmd->RefreshElastic();
}

// ---- single select ----------------------------------------------------------

void TVDESingleSelectState::DoCancel(bool& ACanDelete) {
  Drawing().SelSet().Clear();
  TVDESelectState::DoCancel(ACanDelete);
}

void TVDESingleSelectState::DoMouseDown(TMouseButton AButton, TShiftState AShift, TKRNVector2d& APoint) {
  if (AButton == mbLeft) {
    const int Before = Drawing().SelSet().Count();
    Drawing().HitSelect(AShift, APoint, APoint, GetTol(), FSelItemTypeSet);
    if (Drawing().SelSet().Count() > Before) {
      Finish();
      return;
    }
  }
  TVDESelectState::DoMouseDown(AButton, AShift, APoint);
}

void TVDESingleSelectState::DoMouseMove(TShiftState, TKRNVector2d& APoint) {
  SetCurCursor(Drawing().HitTest(APoint, GetTol(), FSelItemTypeSet) ? crSnapEdo : crCross);
}

// ---- multi select -----------------------------------------------------------

void TVDEMultiSelectState::DoCancel(bool& ACanDelete) {
  Drawing().SelSet().Clear();
  TVDESelectState::DoCancel(ACanDelete);
}

void TVDEMultiSelectState::DoMouseDown(TMouseButton AButton, TShiftState AShift, TKRNVector2d& APoint) {
  if (AButton == mbLeft) {
    if (FStep == 0) FirstPoint(APoint, AShift);
    else if (!FIsDrag) DoSelect(APoint, nullptr, AShift);
    return;
  }
  TVDESelectState::DoMouseDown(AButton, AShift, APoint);
}

void TVDEMultiSelectState::FirstPoint(TKRNVector2d& APoint, TShiftState AShift) {
  FElasticSP = FElasticEP = APoint;
  TVectorDrawingItem* Item = Drawing().HitTest(APoint, GetTol());
  if ((FSelMode & slmPoint) && Item) {
    DoSelect(APoint, Item, AShift);
    return;
  }
  if (FSelMode & (slmRectSel | slmCrossSel)) {
    SetCurCursor(crHide);
    ++FStep;
  }
}

void TVDEMultiSelectState::DoMouseUp(TMouseButton AButton, TShiftState AShift, const TKRNVector2d& APoint) {
  if (AButton != mbLeft || FStep != 1) return;
  const TKRNPoint2i A = GetCoordTrans().WCTODC(FElasticSP);
  const TKRNPoint2i B = GetCoordTrans().WCTODC(APoint);
  FIsDrag = std::abs(A.X - B.X) >= 2 || std::abs(A.Y - B.Y) >= 2;
  if (FIsDrag) DoSelect(APoint, nullptr, AShift);
}

void TVDEMultiSelectState::DoMouseMove(TShiftState, TKRNVector2d& APoint) {
  if (FStep != 0) {
    XorElastic();
    FElasticEP = APoint;
    XorElastic();
  } else if (FSelMode & slmPoint) {
    SetCurCursor(Drawing().HitTest(APoint, GetTol(), FSelItemTypeSet) ? crSnapEdo : crCross);
  } else {
    SetCurCursor(crCross);
  }
}

void TVDEMultiSelectState::DoSelect(const TKRNVector2d& APoint, TVectorDrawingItem* AItem, TShiftState AShift) {
  XorElastic();
  FElasticEP = APoint;
  if (FStep == 1) SetCurCursor(crCross);
  FStep = 0;
  TKRNVector2d P1 = FElasticSP, P2 = APoint;
  const bool Rect = FSelMode & slmRectSel, Cross = FSelMode & slmCrossSel;
  if (Rect && !Cross && P1.X > P2.X) std::swap(P1, P2);
  if (!Rect && P2.X > P1.X) std::swap(P1, P2);
  if (FClearSelected) Drawing().SelSet().Clear();
  if (!(AItem && (AShift & (sfAlt | sfCtrl)))) Drawing().HitSelect(AShift, P1, P2, GetTol(), FSelItemTypeSet);
  if (FAutoFinish && Drawing().SelSet().Count() > 0) Finish();
}

void TVDEMultiSelectState::DoDrawElastic(QPainter& AHDC) {
  if (FStep == 0 || PointIsSame(FElasticSP, FElasticEP, KRNEpsilon)) return;
  const bool Rect = FSelMode & slmRectSel, Cross = FSelMode & slmCrossSel;
  const bool Solid = (Rect && !Cross) || (Rect && Cross && FElasticEP.X > FElasticSP.X);
  TKRNDrawFunc2d::DrawRectElastic(AHDC, GetCoordTrans().WCTODC(FElasticSP), GetCoordTrans().WCTODC(FElasticEP),
                                  Solid ? psSolid : psDot);
}

// ---- idle -------------------------------------------------------------------

TVDECmdInfo TVDEBaseSelectState::ClassCmdInfo() {
  TVDECmdInfo I;
  I.CmdID = cmdSelect;
  I.CmdName = QStringLiteral("选择");
  I.Priority = 0;
  I.Prompt = QStringLiteral("按鼠标左键指定第一个角点，或拾取图元\r按鼠标左键指定对角点，按右键确认或按ESC取消");
  return I;
}

bool TVDEBaseSelectState::HitGrip(const TKRNVector2d& APoint, TKRNVector2d& AGripPt) {
  const double Tol = GetTol();
  TVectorDrawingSelSet& Sel = Drawing().SelSet();
  for (int I = 0; I < Sel.Count(); ++I) {
    TVectorDrawingItem* Item = Sel.Items(I);
    for (int G = 0; G < Item->GetGripCount(); ++G) {
      const TKRNVector2d P = Item->GetGrips(G);
      if (PointIsSame(P, APoint, Tol)) {
        AGripPt = P;
        return true;
      }
    }
  }
  return false;
}

void TVDEBaseSelectState::FirstPoint(TKRNVector2d& APoint, TShiftState AShift) {
  if (AShift & (sfShift | sfAlt | sfCtrl)) {
    TVectorDrawingItem* Item = Drawing().HitTest(APoint, GetTol());
    if (Item && Item->Selected()) FOwner.Execute(cmdDragMove, reinterpret_cast<qintptr>(&APoint));
    return;
  }
  TKRNVector2d Grip;
  if (HitGrip(APoint, Grip)) {
    FOwner.Execute(cmdDragGrip, reinterpret_cast<qintptr>(&Grip));
    return;
  }
  TVDEMultiSelectState::FirstPoint(APoint, AShift);
}

void TVDEBaseSelectState::DoMouseMove(TShiftState AShift, TKRNVector2d& APoint) {
  if (FStep == 0) {
    TKRNVector2d Grip;
    const bool Over = HitGrip(APoint, Grip);
    if (Over != FGripOver) {
      FGripOver = Over;
      if (Over) FGripPt = Grip;
      FOwner.DrawGrip(FGripPt, Over, &GetHDC());
    }
  }
  TVDEMultiSelectState::DoMouseMove(AShift, APoint);
}

void TVDEBaseSelectState::DoDrawElastic(QPainter& AHDC) {
  if (FStep == 0 && FGripOver) FOwner.DrawGrip(FGripPt, true, &AHDC);
  TVDEMultiSelectState::DoDrawElastic(AHDC);
}

void TVDEBaseSelectState::DoKeyDown(quint16& AKey, TShiftState AShift) {
  if (!(AShift & (sfShift | sfAlt | sfCtrl)) && AKey == vkDelete && Drawing().SelSet().Count() > 0) {
    FOwner.Execute(cmdDelete, 0);
    return;
  }
  TVDEMultiSelectState::DoKeyDown(AKey, AShift);
}

void TVDEBaseSelectState::DoCancel(bool& ACanDelete) {
  TVDEMultiSelectState::DoCancel(ACanDelete);
  NextCmdEnded();
  FIsDrag = true;
  ACanDelete = false;
}

void TVDEBaseSelectState::NextCmdEnded() {
  if (FNextCmd && FNextCmd->CmdInfo().CmdID == cmdDragGrip) FGripOver = false;
  TVDEMultiSelectState::NextCmdEnded();
}

void TVDEBaseSelectState::SetNextCmd(std::unique_ptr<TVDECmdState> ACmd) {
  if (ACmd) {
    const TVDECmdInfo Info = ACmd->CmdInfo();
    if (Info.Priority == 0) {
      Cancel();
      return;
    }
    if (Info.Priority == 1) {
      ResetStep();
      FIsDrag = false;
    }
    auto* NewLine = dynamic_cast<IVDEPolylineState*>(ACmd.get());
    if (NewLine && FNextCmd && dynamic_cast<IVDEPolylineState*>(FNextCmd.get())) NewLine->AssignFrom(*FNextCmd);
  }
  TVDEMultiSelectState::SetNextCmd(std::move(ACmd));
}

// ---- selection for a command ------------------------------------------------

TVDECmdInfo TVDEModifyMultiSelectState::ClassCmdInfo() {
  TVDECmdInfo I = TVDEBaseSelectState::ClassCmdInfo();
  I.CmdID = cmdMultiSelect;
  I.CmdName = QStringLiteral("多选");
  I.Priority = 2;
  return I;
}

QString TVDEModifyMultiSelectState::GetPrompt() const {
  if (FPrevCmd) return PromptPart(FPrevCmd->CmdInfo().Prompt, FPrevCmd->Step());
  return TVDEMultiSelectState::GetPrompt();
}

TVDECmdInfo TVDEModifySingleSelectState::ClassCmdInfo() {
  TVDECmdInfo I;
  I.CmdID = cmdSingleSelect;
  I.CmdName = QStringLiteral("单选");
  I.Priority = 2;
  I.Prompt = QStringLiteral("按鼠标左键选择图元，按右键或ESC结束");
  return I;
}

QString TVDEModifySingleSelectState::GetPrompt() const {
  if (FPrevCmd) return PromptPart(FPrevCmd->CmdInfo().Prompt, FPrevCmd->Step());
  return TVDESingleSelectState::GetPrompt();
}

void RegisterSelectStates() {
  RegisterVDECommand(StateCommandClass<TVDEBaseSelectState>("TVDEBaseSelectState"));
  RegisterVDECommand(StateCommandClass<TVDEModifyMultiSelectState>("TVDEModifyMultiSelectState"));
  RegisterVDECommand(StateCommandClass<TVDEModifySingleSelectState>("TVDEModifySingleSelectState"));
}
