#include "VDEGripCmdState.h"

#include "VDIVisitor.h"

TVDECmdInfo TVDEDragState::ClassCmdInfo() {
  TVDECmdInfo I;
  I.Priority = 1;
  return I;
}

void TVDEDragState::AfterCreate() {
  // The parameter points to the press point, valid while the state is made.
  if (const auto* P = reinterpret_cast<const TKRNVector2d*>(FParam)) FBasePt = FInsertPt = *P;
  FParam = 0;
  SetCurCursor(crSeekPoint);
}

void TVDEDragState::DoMouseMove(TShiftState, TKRNVector2d& APoint) {
  SetCurCursor(FOwner.SnapPoint(APoint, GetTol()) ? crSnapPoint : crSeekPoint);
  if (PointIsSame(APoint, FInsertPt, KRNEpsilon)) return;
  XorElastic();
  FInsertPt = APoint;
  XorElastic();
}

void TVDEDragState::DoMouseUp(TMouseButton, TShiftState, const TKRNVector2d&) {
  XorElastic();
  FElasticEnabled = false;
  Apply();
  Finish();
}

void TVDEDragState::DoDrawElastic(QPainter& AHDC) {
  if (FElasticEnabled && !PointIsSame(FBasePt, FInsertPt, KRNEpsilon)) DrawDragged(AHDC);
}

// ---- a grip -----------------------------------------------------------------

TVDECmdInfo TVDEDragGripState::ClassCmdInfo() {
  TVDECmdInfo I = TVDEDragState::ClassCmdInfo();
  I.CmdID = cmdDragGrip;
  I.CmdName = QStringLiteral("拖动夹点");
  I.Prompt = QStringLiteral("按住鼠标左键拖动夹点到指定位置，按右键或ESC取消");
  return I;
}

void TVDEDragGripState::AfterCreate() {
  TVDEDragState::AfterCreate();
  const double Tol = GetTol();
  TVectorDrawingSelSet& S = Drawing().SelSet();
  for (int I = 0; I < S.Count(); ++I) {
    TVectorDrawingItem* Item = S.Items(I);
    for (int G = 0; G < Item->GetGripCount(); ++G)
      if (PointIsSame(Item->GetGrips(G), FBasePt, Tol)) {
        FHitItems.push_back({G, Item});
        break;  // one grip an item
      }
  }
}

void TVDEDragGripState::DrawDragged(QPainter& AHDC) {
  for (const auto& [Grip, Item] : FHitItems) {
    std::unique_ptr<TVectorDrawingItem> C = Item->DetachedClone();
    TVDIDragGripVisitor V(Grip, FBasePt, FInsertPt);
    C->Accept(V);
    C->Draw(AHDC, GetCoordTrans(), true);
  }
}

void TVDEDragGripState::Apply() {
  auto X = std::make_shared<TVDEDragGripCmdExecutor>(FOwner);
  if (X->DragGrip(FHitItems, FBasePt, FInsertPt)) FOwner.GetCmdExecList().AddExecutor(X);
}

// ---- the selection ----------------------------------------------------------

TVDECmdInfo TVDEDragMoveState::ClassCmdInfo() {
  TVDECmdInfo I = TVDEDragState::ClassCmdInfo();
  I.CmdID = cmdDragMove;
  I.CmdName = QStringLiteral("拖动图元");
  I.Prompt = QStringLiteral("按住鼠标左键拖动选择的图元到指定位置，按右键或ESC取消");
  return I;
}

void TVDEDragMoveState::DrawDragged(QPainter& AHDC) {
  TVDIMoveVisitor V(FBasePt, FInsertPt);
  TVectorDrawingSelSet& S = Drawing().SelSet();
  for (int I = 0; I < S.Count(); ++I) {
    std::unique_ptr<TVectorDrawingItem> C = S.Items(I)->DetachedClone();
    C->Accept(V);
    C->Draw(AHDC, GetCoordTrans(), true);
  }
}

void TVDEDragMoveState::Apply() {
  auto X = std::make_shared<TVDEDragMoveCmdExecutor>(FOwner);
  if (X->DragMove(FBasePt, FInsertPt)) FOwner.GetCmdExecList().AddExecutor(X);
}

void RegisterGripStates() {
  RegisterVDECommand(StateCommandClass<TVDEDragGripState>("TVDEDragGripState"));
  RegisterVDECommand(StateCommandClass<TVDEDragMoveState>("TVDEDragMoveState"));
}
