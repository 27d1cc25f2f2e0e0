#include "VDEModifyCmdState.h"

#include "Dialogs.h"
#include "KRNDrawFunc2d.h"
#include "VDESnapCmdState.h"
#include "VDEModifyCmdExecutor.h"
#include "VDILine.h"
#include "VDIText.h"
#include "VDIVisitor.h"

#include <cmath>

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

namespace {

const QString SSelectPrompt = QStringLiteral("按鼠标左键选择图元，或拉框选择，按右键确认选择或ESC取消");

template <class T>
TVDECmdInfo Named(int AID, const char* AName, const QString& APrompt) {
  TVDECmdInfo I = T::ClassCmdInfo();
  I.CmdID = AID;
  I.CmdName = QString::fromUtf8(AName);
  I.Prompt = APrompt;
  return I;
}

TDrawingItemTypeSet Types(std::initializer_list<int> ATypes) {
  TDrawingItemTypeSet S;
  for (const int T : ATypes) S.set(size_t(T));
  return S;
}

bool AskDeletePrevious() { return ShowConfirmBox(QStringLiteral("是否删除原来的图元")) == mrYes; }

double AngleOf(const TKRNVector2d& A, const TKRNVector2d& B) { return std::atan2(B.Y - A.Y, B.X - A.X); }

}  // namespace

// ---- base point and insert point --------------------------------------------

TVDECmdInfo TVDESimpleEditState::ClassCmdInfo() {
  TVDECmdInfo I = TVDEModifyState::ClassCmdInfo();
  I.SnapEnabled = true;
  return I;
}

void TVDESimpleEditState::DefinePoint(const TKRNVector2d& APoint) {
  if (FStep == 1) {
    XorElastic();
    FElasticBP = FElasticIP = APoint;
    FIsDefineIP = false;
    FStep = 2;
    XorElastic();
  } else if (FStep == 2) {
    if (PointIsSame(APoint, FElasticBP, KRNEpsilon)) return;
    XorElastic();
    FIsDefineIP = false;
    ApplyEdit(FElasticBP, APoint);
    Finish();
  }
}

void TVDESimpleEditState::DoMouseDown(TMouseButton AButton, TShiftState AShift, TKRNVector2d& APoint) {
  if (AButton == mbLeft) {
    if (FOwner.SnapPoint(APoint, GetTol())) DefinePoint(APoint);
    return;
  }
  TVDEModifyState::DoMouseDown(AButton, AShift, APoint);
}

void TVDESimpleEditState::DoMouseMove(TShiftState, TKRNVector2d& APoint) {
  SetCurCursor(FOwner.SnapPoint(APoint, GetTol()) ? crSnapPoint : crSeekPoint);
  if (FStep > 1) {
    XorElastic();
    FElasticIP = APoint;
    FIsDefineIP = true;
    XorElastic();
  }
}

void TVDESimpleEditState::DoDrawElastic(QPainter& AHDC) {
  if (FStep != 2 || !FIsDefineIP) return;
  TVectorDrawingSelSet& S = Drawing().SelSet();
  for (int I = 0; I < S.Count(); ++I) {
    std::unique_ptr<TVectorDrawingItem> C = S.Items(I)->DetachedClone();
    TransformElastic(*C);
    C->Draw(AHDC, GetCoordTrans(), true);
  }
  TKRNDrawFunc2d::DrawLine(AHDC, GetCoordTrans(), FElasticBP, FElasticIP, -1, 0, psSolid, TKRNDrawFunc2d::ElasticColor(),
                           dmXOR);
}

void TVDESimpleEditState::SetNextCmd(std::unique_ptr<TVDECmdState> ACmd) {
  if (auto* Per = dynamic_cast<TVDEPerSnapState*>(ACmd.get())) {
    if (FStep < 2) return;  // no base point yet: refused
    Per->SetStartPt(FElasticBP);
  }
  TVDEModifyState::SetNextCmd(std::move(ACmd));
}

void TVDESimpleEditState::NextCmdEnded() {
  auto* Snap = dynamic_cast<TVDESnapState*>(FNextCmd.get());
  const bool Got = Snap && Snap->SnapSuccess();
  const TKRNVector2d P = Got ? Snap->SnapPt() : TKRNVector2d{};
  TVDEModifyState::NextCmdEnded();
  if (Got) DefinePoint(P);
}

TVDECmdInfo TVDEMoveState::ClassCmdInfo() {
  return Named<TVDESimpleEditState>(cmdMove, "移动",
                                    SSelectPrompt + QStringLiteral("\r按鼠标左键指定基准点，按右键或ESC取消\r按鼠标左键指定插入点，按右键或ESC取消"));
}

void TVDEMoveState::ApplyEdit(const TKRNVector2d& ABasePt, const TKRNVector2d& AInsertPt) {
  auto X = std::make_shared<TVDEMoveCmdExecutor>(FOwner);
  if (X->Move(ABasePt, AInsertPt)) FOwner.GetCmdExecList().AddExecutor(X);
}

void TVDEMoveState::TransformElastic(TVectorDrawingItem& AItem) {
  TVDIMoveVisitor V(FElasticBP, FElasticIP);
  AItem.Accept(V);
}

TVDECmdInfo TVDECopyState::ClassCmdInfo() {
  return Named<TVDESimpleEditState>(cmdCopy, "复制",
                                    SSelectPrompt + QStringLiteral("\r按鼠标左键指定基准点，按右键或ESC取消\r按鼠标左键指定插入点，按右键或ESC取消"));
}

void TVDECopyState::ApplyEdit(const TKRNVector2d& ABasePt, const TKRNVector2d& AInsertPt) {
  auto X = std::make_shared<TVDECopyCmdExecutor>(FOwner);
  if (X->Copy(ABasePt, AInsertPt)) FOwner.GetCmdExecList().AddExecutor(X);
}

TVDECmdInfo TVDERotateState::ClassCmdInfo() {
  return Named<TVDESimpleEditState>(
      cmdRotate, "旋转",
      SSelectPrompt + QStringLiteral("\r按鼠标左键指定基准点，按右键或ESC取消\r按鼠标左键指定第二点确定旋转角度，按右键或ESC取消"));
}

void TVDERotateState::ApplyEdit(const TKRNVector2d& ABasePt, const TKRNVector2d& AInsertPt) {
  const bool InPlace = AskDeletePrevious();
  auto X = std::make_shared<TVDERotateCmdExecutor>(FOwner);
  if (X->Rotate(ABasePt, AngleOf(ABasePt, AInsertPt), InPlace)) {
    FOwner.GetCmdExecList().AddExecutor(X);
    FStep = 0;
  }
}

void TVDERotateState::TransformElastic(TVectorDrawingItem& AItem) {
  const double A = AngleOf(FElasticBP, FElasticIP);
  if (auto* T = dynamic_cast<TVectorText*>(&AItem)) T->SetAngle(A);
  TVDIRotateVisitor V(FElasticBP, A);
  AItem.Accept(V);
}

TVDECmdInfo TVDEMirrorState::ClassCmdInfo() {
  return Named<TVDESimpleEditState>(
      cmdMirror, "镜像",
      SSelectPrompt + QStringLiteral("\r按鼠标左键指定镜像线的第一点，按右键或ESC取消\r按鼠标左键指定镜像线的第二点，按右键或ESC取消"));
}

void TVDEMirrorState::ApplyEdit(const TKRNVector2d& ABasePt, const TKRNVector2d& AInsertPt) {
  const bool InPlace = AskDeletePrevious();
  auto X = std::make_shared<TVDEMirrorCmdExecutor>(FOwner);
  X->Mirror(TKRNBeeline2d(ABasePt, VectorSub(AInsertPt, ABasePt)), InPlace);
  FOwner.GetCmdExecList().AddExecutor(X);
  FStep = 0;
}

void TVDEMirrorState::TransformElastic(TVectorDrawingItem& AItem) {
  TVDIMirrorVisitor V(TKRNBeeline2d(FElasticBP, VectorSub(FElasticIP, FElasticBP)));
  AItem.Accept(V);
}

TVDECmdInfo TVDEStretchState::ClassCmdInfo() {
  TVDECmdInfo I = Named<TVDESimpleEditState>(
      cmdStretch, "拉伸",
      QStringLiteral("请拉框选择图元，按右键或ESC取消\r按鼠标左键指定基准点，按右键或ESC取消\r按鼠标左键指定拉伸第二点，按右键或ESC取消"));
  I.ClearSelSet = true;
  return I;
}

void TVDEStretchState::BeginSelect(qintptr) {
  if (Drawing().SelSet().Count() > 0) return;
  TVDEMultiSelectState* Sel = NestSelect();
  Sel->SetSelMode(slmCrossSel);
  Sel->SetAutoFinish(true);
  FStep = 0;
}

int TVDEStretchState::CheckSelectResult() {
  auto* Sel = dynamic_cast<TVDEMultiSelectState*>(FNextCmd.get());
  if (!Sel) return 0;
  if (Drawing().SelSet().Count() == 0) return 2;
  FSelRect = BoxOfPoints(Sel->ElasticSP(), Sel->ElasticEP());
  FStep = 1;
  return 0;
}

void TVDEStretchState::ApplyEdit(const TKRNVector2d& ABasePt, const TKRNVector2d& AInsertPt) {
  auto X = std::make_shared<TVDEStretchCmdExecutor>(FOwner);
  X->Stretch(FSelRect, ABasePt, AInsertPt);
  FOwner.GetCmdExecList().AddExecutor(X);
  FStep = 0;
}

void TVDEStretchState::TransformElastic(TVectorDrawingItem& AItem) {
  TVDIStretchVisitor V(FSelRect, FElasticBP, FElasticIP);
  AItem.Accept(V);
}

// ---- one question for the selected lines ------------------------------------

void TVDELinesQuestionState::BeginSelect(qintptr) {
  if (Drawing().SelSet().Count() > 0) return;
  NestSelect()->SelItemTypeSet() = Types({itLine, itArc});
  FStep = 0;
}

void TVDELinesQuestionState::DoFinish(bool&) {
  if (Drawing().SelSet().Count() == 0) return;
  if (ShowConfirmBox(Question()) == mrYes)
    if (std::shared_ptr<IVDECmdExecutor> X = Run()) FOwner.GetCmdExecList().AddExecutor(X);
  Drawing().SelSet().Clear();
}

TVDECmdInfo TVDEBreakState::ClassCmdInfo() { return Named<TVDEModifyState>(cmdBreak, "打断", SSelectPrompt); }

std::shared_ptr<IVDECmdExecutor> TVDEBreakState::Run() {
  auto X = std::make_shared<TVDEBreakCmdExecutor>(FOwner);
  return X->Break() ? X : nullptr;
}

TVDECmdInfo TVDEMergeState::ClassCmdInfo() { return Named<TVDEModifyState>(cmdMerge, "合并", SSelectPrompt); }

std::shared_ptr<IVDECmdExecutor> TVDEMergeState::Run() {
  auto X = std::make_shared<TVDEMergeCmdExecutor>(FOwner);
  return X->Merge() ? X : nullptr;
}

TVDECmdInfo TVDEGroupZoomState::ClassCmdInfo() { return Named<TVDEModifyState>(cmdGroupZoom, "缩放", SSelectPrompt); }

std::shared_ptr<IVDECmdExecutor> TVDEGroupZoomState::Run() {
  auto X = std::make_shared<TVDEGroupZoomExecutor>(FOwner);
  return X->GroupZoom() ? X : nullptr;
}

// ---- edge, then lines -------------------------------------------------------

void TVDEAdvanceEditState::AfterCreate() {
  TVDEModifyState::AfterCreate();
  SetCurCursor(crSeekEdo);
}

void TVDEAdvanceEditState::BeginSelect(qintptr) {
  TVectorDrawingSelSet& S = Drawing().SelSet();
  if (S.Count() == 1) {
    const int T = S.Items(0)->ItemType();
    if (T == itLine || T == itArc || T == itCircle || T == itPolyline) return;
  }
  S.Clear();
  auto Sel = Create<TVDEModifySingleSelectState>(FOwner, 3);
  Sel->SelItemTypeSet() = Types({itLine, itArc, itCircle, itPolyline});
  SetNextCmd(std::move(Sel));
  FStep = 0;
}

void TVDEAdvanceEditState::DoMouseDown(TMouseButton AButton, TShiftState AShift, TKRNVector2d& APoint) {
  if (AButton == mbLeft) {
    if (auto* L = dynamic_cast<TVectorLine*>(Drawing().HitTest(APoint, GetTol(), Types({itLine, itArc}))))
      ApplyToItem(*L, APoint);
    return;
  }
  TVDEModifyState::DoMouseDown(AButton, AShift, APoint);
}

void TVDEAdvanceEditState::DoMouseMove(TShiftState, TKRNVector2d& APoint) {
  SetCurCursor(Drawing().HitTest(APoint, GetTol(), Types({itLine, itArc})) ? crSnapEdo : crSeekEdo);
}

TVDECmdInfo TVDETrimState::ClassCmdInfo() {
  return Named<TVDEModifyState>(
      cmdTrim, "修剪",
      QStringLiteral("按鼠标左键选择一条修剪边界线，按右键或ESC取消\r按鼠标左键选择要修剪的构件图元，按右键或ESC取消"));
}

void TVDETrimState::ApplyToItem(TVectorLine& AItem, const TKRNVector2d& ARefPt) {
  auto X = std::make_shared<TVDETrimCmdExecutor>(FOwner);
  if (X->Trim(AItem, ARefPt)) FOwner.GetCmdExecList().AddExecutor(X);
}

TVDECmdInfo TVDEExtendState::ClassCmdInfo() {
  return Named<TVDEModifyState>(
      cmdExtend, "延伸",
      QStringLiteral("按鼠标左键选择一条延伸边界线，按右键或ESC取消\r按鼠标左键选择要延伸的图元，按右键或ESC取消"));
}

void TVDEExtendState::ApplyToItem(TVectorLine& AItem, const TKRNVector2d& ARefPt) {
  auto X = std::make_shared<TVDEExtendCmdExecutor>(FOwner);
  if (X->Extend(AItem, ARefPt)) FOwner.GetCmdExecList().AddExecutor(X);
}

TVDECmdInfo TVDEIntersectState::ClassCmdInfo() {
  return Named<TVDEModifyState>(
      cmdIntersect, "相交",
      QStringLiteral("按鼠标左键选择第一条线，按右键或ESC取消\r按鼠标左键选择第二条线，按右键或ESC取消"));
}

void TVDEIntersectState::ApplyToItem(TVectorLine& AItem, const TKRNVector2d& ARefPt) {
  auto X = std::make_shared<TVDEIntersectCmdExecutor>(FOwner);
  if (X->Intersect(AItem, ARefPt)) FOwner.GetCmdExecList().AddExecutor(X);
}

void RegisterModifyStates() {
  RegisterVDECommand({"TVDEDeleteState", &TVDEDeleteState::ClassCmdInfo,
                      &TVDEModifyState::ClassExecute<TVDEDeleteState>});
  RegisterVDECommand({"TVDECopyState", &TVDECopyState::ClassCmdInfo, &TVDEModifyState::ClassExecute<TVDECopyState>});
  RegisterVDECommand({"TVDEMirrorState", &TVDEMirrorState::ClassCmdInfo, &TVDEModifyState::ClassExecute<TVDEMirrorState>});
  RegisterVDECommand({"TVDEMoveState", &TVDEMoveState::ClassCmdInfo, &TVDEModifyState::ClassExecute<TVDEMoveState>});
  RegisterVDECommand({"TVDERotateState", &TVDERotateState::ClassCmdInfo, &TVDEModifyState::ClassExecute<TVDERotateState>});
  RegisterVDECommand({"TVDEExtendState", &TVDEExtendState::ClassCmdInfo, &TVDEModifyState::ClassExecute<TVDEExtendState>});
  RegisterVDECommand({"TVDETrimState", &TVDETrimState::ClassCmdInfo, &TVDEModifyState::ClassExecute<TVDETrimState>});
  RegisterVDECommand({"TVDEBreakState", &TVDEBreakState::ClassCmdInfo, &TVDEModifyState::ClassExecute<TVDEBreakState>});
  RegisterVDECommand({"TVDEMergeState", &TVDEMergeState::ClassCmdInfo, &TVDEModifyState::ClassExecute<TVDEMergeState>});
  RegisterVDECommand({"TVDEStretchState", &TVDEStretchState::ClassCmdInfo, &TVDEModifyState::ClassExecute<TVDEStretchState>});
  RegisterVDECommand({"TVDEGroupZoomState", &TVDEGroupZoomState::ClassCmdInfo,
                      &TVDEModifyState::ClassExecute<TVDEGroupZoomState>});
  RegisterVDECommand({"TVDEIntersectState", &TVDEIntersectState::ClassCmdInfo,
                      &TVDEModifyState::ClassExecute<TVDEIntersectState>});
}
