#include "VDEZoomPanCmdState.h"

#include "KRNDrawFunc2d.h"

#include <algorithm>
#include <cstdlib>

namespace {

TVDECmdInfo Info(int AID, const char* AName, const char* APrompt) {
  TVDECmdInfo I = TVDEZoomPanState::ClassCmdInfo();
  I.CmdID = AID;
  I.CmdName = QString::fromUtf8(AName);
  I.Prompt = QString::fromUtf8(APrompt);
  return I;
}

bool Moved2(const TKRNCoordTrans& T, const TKRNVector2d& A, const TKRNVector2d& B) {
  const TKRNPoint2i P = T.WCTODC(A), Q = T.WCTODC(B);
  return std::abs(P.X - Q.X) >= 2 || std::abs(P.Y - Q.Y) >= 2;
}

}  // namespace

TVDECmdInfo TVDEZoomPanState::ClassCmdInfo() {
  TVDECmdInfo I;
  I.Priority = 3;
  return I;
}

// ---- zoom window ------------------------------------------------------------

TVDECmdInfo TVDEZoomWinState::ClassCmdInfo() {
  return Info(cmdZoomWin, "窗口缩放",
              "按鼠标左键指定第一个角点，按右键或者ESC键结束\r按鼠标左键指定对角点，按右键或ESC键结束");
}

void TVDEZoomWinState::DoMouseDown(TMouseButton AButton, TShiftState AShift, TKRNVector2d& APoint) {
  if (AButton == mbLeft) {
    if (FStep == 0) {
      FElasticSP = FElasticEP = APoint;
      if (HideCursorInBox()) SetCurCursor(crHide);
      FStep = 1;
    } else if (!FIsDrag) {
      FElasticEP = APoint;
      Apply();
    }
    return;
  }
  TVDEZoomPanState::DoMouseDown(AButton, AShift, APoint);
}

void TVDEZoomWinState::DoMouseMove(TShiftState, TKRNVector2d& APoint) {
  if (FStep != 1) return;
  XorElastic();
  FElasticEP = APoint;
  XorElastic();
}

void TVDEZoomWinState::DoMouseUp(TMouseButton AButton, TShiftState, const TKRNVector2d& APoint) {
  if (AButton != mbLeft || FStep != 1) return;
  FIsDrag = Moved2(GetCoordTrans(), FElasticSP, APoint);
  if (FIsDrag) {
    XorElastic();
    FElasticEP = APoint;
    XorElastic();
    Apply();
  }
}

void TVDEZoomWinState::Apply() {
  XorElastic();
  FStep = 0;
  FIsDrag = true;
  SetCurCursor(crCross);
  const TKRNPoint2i A = GetCoordTrans().WCTODC(FElasticSP), B = GetCoordTrans().WCTODC(FElasticEP);
  GetCoordTrans().ZoomWin(FOwner.GetClientWidth(), FOwner.GetClientHeight(),
                          TKRNRect{std::min(A.X, B.X), std::min(A.Y, B.Y), std::max(A.X, B.X), std::max(A.Y, B.Y)});
  FOwner.RefreshDrawing();
}

void TVDEZoomWinState::DoDrawElastic(QPainter& AHDC) {
  if (FStep == 0) return;
  TKRNDrawFunc2d::DrawRectElastic(AHDC, GetCoordTrans().WCTODC(FElasticSP), GetCoordTrans().WCTODC(FElasticEP),
                                  psSolid);
}

// ---- real-time zoom ---------------------------------------------------------

TVDECmdInfo TVDEZoomRuntimeState::ClassCmdInfo() {
  return Info(cmdZoomRuntime, "实时缩放", "按住鼠标左键并垂直拖动进行缩放，按右键或ESC结束");
}

void TVDEZoomRuntimeState::DoMouseDown(TMouseButton AButton, TShiftState AShift, TKRNVector2d& APoint) {
  if (AButton == mbLeft) {
    TKRNCoordTrans& T = GetCoordTrans();
    FOriginPtY = FPrevPtY = T.WCTODC_Y(APoint.Y);
    FOriginZoomFactor = T.ZoomFactor();
    const TKRNPoint2i Center{FOwner.GetClientWidth() / 2, FOwner.GetClientHeight() / 2};
    T.SetCoordTransParam(Center, T.DCTOWC(Center));
    return;
  }
  TVDEZoomPanState::DoMouseDown(AButton, AShift, APoint);
}

void TVDEZoomRuntimeState::DoMouseMove(TShiftState AShift, TKRNVector2d& APoint) {
  if (!(AShift & sfLeft)) return;
  TKRNCoordTrans& T = GetCoordTrans();
  const int Y = T.WCTODC_Y(APoint.Y);
  if (std::abs(Y - FOriginPtY) < 2) return;
  const double H = std::max(1, FOwner.GetClientHeight());
  const double Factor = (FOriginPtY - Y + H) / H * FOriginZoomFactor;
  T.SetCoordTransParam(T.DPoint(), T.WPoint(), Factor);
  FPrevPtY = Y;
  FOwner.RefreshDrawing();
}

// ---- real-time pan ----------------------------------------------------------

TVDECmdInfo TVDEPanRuntimeState::ClassCmdInfo() {
  return Info(cmdPanRuntime, "实时平移", "按鼠标左键并拖动进行平移，按右键或ESC键结束");
}

void TVDEPanRuntimeState::DoMouseDown(TMouseButton AButton, TShiftState AShift, TKRNVector2d& APoint) {
  if (AShift & (sfLeft | sfMiddle)) FPrevPt = GetCoordTrans().WCTODC(APoint);
  TVDEZoomPanState::DoMouseDown(AButton, AShift, APoint);
}

void TVDEPanRuntimeState::DoMouseMove(TShiftState AShift, TKRNVector2d& APoint) {
  if (!(AShift & (sfLeft | sfMiddle))) return;
  const TKRNPoint2i P = GetCoordTrans().WCTODC(APoint);
  const int DX = P.X - FPrevPt.X, DY = P.Y - FPrevPt.Y;
  FPrevPt = P;
  if (DX != 0) FOwner.ScrollWindow(DX, 0);
  if (DY != 0) FOwner.ScrollWindow(0, DY);
}

void TVDEPanRuntimeState::DoMouseUp(TMouseButton AButton, TShiftState, const TKRNVector2d&) {
  if (AButton == mbMiddle) Finish();
}

// ---- pan by two points ------------------------------------------------------

TVDECmdInfo TVDEPanPointState::ClassCmdInfo() {
  return Info(cmdPanPoint, "定点平移", "按鼠标左键指定基准点，按右键或ESC结束\r按鼠标左键指定第二点，按右键或ESC结束");
}

void TVDEPanPointState::Apply() {
  XorElastic();
  FStep = 0;
  FIsDrag = true;
  const TKRNPoint2i A = GetCoordTrans().WCTODC(FElasticSP), B = GetCoordTrans().WCTODC(FElasticEP);
  GetCoordTrans().Pan(B.X - A.X, B.Y - A.Y);
  FOwner.RefreshDrawing();
}

void TVDEPanPointState::DoDrawElastic(QPainter& AHDC) {
  if (FStep == 0) return;
  TKRNDrawFunc2d::DrawLine(AHDC, GetCoordTrans(), FElasticSP, FElasticEP, -1, 0, psSolid,
                           TKRNDrawFunc2d::ElasticColor(), dmXOR);
}

// ---- pan to a centre --------------------------------------------------------

TVDECmdInfo TVDEPanCenterState::ClassCmdInfo() {
  return Info(cmdPanCenter, "中心点平移", "按鼠标左键指定目标点，按右键或ESC结束");
}

void TVDEPanCenterState::DoMouseDown(TMouseButton AButton, TShiftState AShift, TKRNVector2d& APoint) {
  if (AButton == mbLeft) {
    const TKRNPoint2i P = GetCoordTrans().WCTODC(APoint);
    GetCoordTrans().Pan(FOwner.GetClientWidth() / 2 - P.X, FOwner.GetClientHeight() / 2 - P.Y);
    FOwner.RefreshDrawing();
    return;
  }
  TVDEZoomPanState::DoMouseDown(AButton, AShift, APoint);
}

void RegisterZoomPanStates() {
  RegisterVDECommand(StateCommandClass<TVDEZoomRuntimeState>("TVDEZoomRuntimeState"));
  RegisterVDECommand(StateCommandClass<TVDEZoomWinState>("TVDEZoomWinState"));
  RegisterVDECommand(StateCommandClass<TVDEPanRuntimeState>("TVDEPanRuntimeState"));
  RegisterVDECommand(StateCommandClass<TVDEPanPointState>("TVDEPanPointState"));
  RegisterVDECommand(StateCommandClass<TVDEPanCenterState>("TVDEPanCenterState"));
}
