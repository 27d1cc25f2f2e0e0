#include "VDESnapCmdState.h"

#include "KRNDrawFunc2d.h"
#include "KRNIntersectFunc2d.h"
#include "KRNPositionFunc2d.h"
#include "VDILine.h"

#include <cmath>

namespace {

TDrawingItemTypeSet LineTypes() {
  TDrawingItemTypeSet S;
  S.set(itLine);
  S.set(itArc);
  return S;
}

TVDECmdInfo Info(int AID, const char* AName, const char* APrompt) {
  TVDECmdInfo I = TVDESnapState::ClassCmdInfo();
  I.CmdID = AID;
  I.CmdName = QString::fromUtf8(AName);
  I.Prompt = QString::fromUtf8(APrompt);
  return I;
}

double Dist(const TKRNVector2d& A, const TKRNVector2d& B) { return std::hypot(A.X - B.X, A.Y - B.Y); }

}  // namespace

TVDECmdInfo TVDESnapState::ClassCmdInfo() {
  TVDECmdInfo I;
  I.Priority = 2;
  I.SnapEnabled = true;
  return I;
}

TVectorDrawingItem* TVDESnapState::HitLine(const TKRNVector2d& APoint) {
  return Drawing().HitTest(APoint, GetTol(), LineTypes());
}

void TVDESnapState::DrawMarker(QPainter& AHDC, const TKRNVector2d& APoint) {
  TKRNCoordTrans& T = GetCoordTrans();
  const double Half = T.DCTOWC(12) / 2, Width = T.DCTOWC(2);
  for (const double A : {KRNPi / 4, -KRNPi / 4}) {
    const TKRNVector2d D{std::cos(A) * Half, std::sin(A) * Half};
    const TKRNLine2d L({APoint.X - D.X, APoint.Y - D.Y}, {APoint.X + D.X, APoint.Y + D.Y});
    TKRNDrawFunc2d::DrawXLine(AHDC, T, L, Width, psSolid, 255, dmXOR);
  }
}

// ---- middle and perpendicular -----------------------------------------------

void TVDELineSnapState::ResetStep() {
  TVDESnapState::ResetStep();
  FIsSnaped = false;
  FLine.reset();
}

void TVDELineSnapState::DoMouseMove(TShiftState, TKRNVector2d& APoint) {
  const auto* Item = dynamic_cast<TVectorLine*>(HitLine(APoint));
  SetCurCursor(Item ? crSnapEdo : crSeekEdo);
  if (!Item) {
    if (FIsSnaped) {
      XorElastic();
      FIsSnaped = false;
      FLine.reset();
    }
    return;
  }
  const TKRNCustomLine2d& L = Item->GetXLine();
  if (FIsSnaped && FLine->IsEqualTo(L, 0.001) && FLineWidth == Item->LineWidth()) return;
  if (FIsSnaped) XorElastic();
  FLine = L.Clone();
  FLineWidth = Item->LineWidth();
  FIsSnaped = true;
  XorElastic();
}

void TVDELineSnapState::DoMouseDown(TMouseButton AButton, TShiftState AShift, TKRNVector2d& APoint) {
  if (AButton == mbLeft) {
    const auto* Item = dynamic_cast<TVectorLine*>(HitLine(APoint));
    TKRNVector2d P;
    if (Item && PointOf(Item->GetXLine(), P)) {
      FSnapPt = P;
      FSnapSuccess = true;
      Finish();
    }
    return;
  }
  TVDESnapState::DoMouseDown(AButton, AShift, APoint);
}

void TVDELineSnapState::DoDrawElastic(QPainter& AHDC) {
  if (!FIsSnaped || !FLine) return;
  TKRNDrawFunc2d::DrawXLine(AHDC, GetCoordTrans(), *FLine, FLineWidth, psDot, 0xFFFFFF, dmXOR);
  TKRNVector2d P;
  if (PointOf(*FLine, P)) DrawMarker(AHDC, P);
}

TVDECmdInfo TVDEMidSnapState::ClassCmdInfo() {
  return Info(cmdMidSnap, "中点捕捉", "按鼠标左键选择一条线，按右键或ESC取消");
}

bool TVDEMidSnapState::PointOf(const TKRNCustomLine2d& ALine, TKRNVector2d& APoint) const {
  APoint = ALine.MiddlePoint();
  return true;
}

TVDECmdInfo TVDEPerSnapState::ClassCmdInfo() {
  return Info(cmdPerSnap, "垂点捕捉", "按鼠标左键选择一条线，按右键或ESC取消");
}

bool TVDEPerSnapState::PointOf(const TKRNCustomLine2d& ALine, TKRNVector2d& APoint) const {
  if (!ALine.IsArcType()) {
    const TKRNLine2d ToStart(ALine.StartPt(), FStartPt);
    if (TKRNPositionFunc2d::IsParallel(ToStart, ALine, 0.002)) return false;
    APoint = TKRNPositionFunc2d::ClosestPointTo(FStartPt, ALine, false);
    return true;
  }
  const auto& Arc = static_cast<const TKRNArc2d&>(ALine);
  const TKRNVector2d C = Arc.CenterPt();
  if (PointIsSame(C, FStartPt, KRNEpsilon)) return false;
  TKRNVector2d P1{}, P2{};
  const TKRNBeeline2d Ray{C, {FStartPt.X - C.X, FStartPt.Y - C.Y}};
  std::vector<TKRNVector2d> On;
  switch (TKRNIntersectFunc2d::Intersect(Ray, C, Arc.Radius(), P1, P2)) {
    case itZero: break;
    case itOne: On = {P1}; break;
    default: On = {P1, P2}; break;
  }
  std::erase_if(On, [&](const TKRNVector2d& P) { return TKRNPositionFunc2d::PointPosition(P, Arc) == ppOut; });
  if (On.empty()) return false;
  APoint = On.size() == 1 || Dist(On[0], FStartPt) < Dist(On[1], FStartPt) ? On[0] : On[1];
  return true;
}

// ---- intersection -----------------------------------------------------------

TVDECmdInfo TVDEIntsSnapState::ClassCmdInfo() {
  return Info(cmdIntsSnap, "交点捕捉", "按鼠标左键选择第一条线，按右键或ESC取消\r按鼠标左键选择第二条线，按右键或ESC取消");
}

void TVDEIntsSnapState::DoMouseMove(TShiftState, TKRNVector2d& APoint) {
  const TVectorDrawingItem* Item = HitLine(APoint);
  SetCurCursor(Item && Item->ID() != FOriginItem ? crSnapEdo : crSeekEdo);
}

void TVDEIntsSnapState::DoMouseDown(TMouseButton AButton, TShiftState AShift, TKRNVector2d& APoint) {
  if (AButton != mbLeft) {
    TVDESnapState::DoMouseDown(AButton, AShift, APoint);
    return;
  }
  const auto* Item = dynamic_cast<TVectorLine*>(HitLine(APoint));
  if (!Item) return;
  if (FStep == 0) {
    FOriginItem = Item->ID();
    FXLine = Item->GetXLine().Clone();
    FLineWidth = Item->LineWidth();
    FStep = 1;
    XorElastic();
    return;
  }
  if (Item->ID() == FOriginItem) return;
  XorElastic();
  FStep = 0;
  TKRNVector2d P1{}, P2{};
  const TKRNIntersectType R = TKRNIntersectFunc2d::Intersect(*FXLine, Item->GetXLine(), P1, P2, 0.001, true);
  if (R == itZero) {
    FOriginItem = -1;
    FXLine.reset();
    return;
  }
  FSnapPt = R == itOne || Dist(P1, APoint) <= Dist(P2, APoint) ? P1 : P2;
  FSnapSuccess = true;
  Finish();
}

void TVDEIntsSnapState::DoDrawElastic(QPainter& AHDC) {
  if (FStep == 1 && FXLine)
    TKRNDrawFunc2d::DrawXLine(AHDC, GetCoordTrans(), *FXLine, FLineWidth, psDot, 0xFFFFFF, dmXOR);
}

void RegisterSnapStates() {
  RegisterVDECommand(StateCommandClass<TVDEPerSnapState>("TVDEPerSnapState"));
  RegisterVDECommand(StateCommandClass<TVDEMidSnapState>("TVDEMidSnapState"));
  RegisterVDECommand(StateCommandClass<TVDEIntsSnapState>("TVDEIntsSnapState"));
}
