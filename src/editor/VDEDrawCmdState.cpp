#include "VDEDrawCmdState.h"

#include "Dialogs.h"
#include "KRNPositionFunc2d.h"
#include "SysUtils.h"
#include "VDEClipBrd.h"
#include "VDEPropList.h"
#include "VDESnapCmdState.h"
#include "VDIVisitor.h"
#include "VectorDrawing.h"

#include <cmath>

namespace {

const QString SLinePrompt = QStringLiteral(
    "按鼠标左键指定第一个端点，按右键结束或ESC取消\r按鼠标左键指定下一个端点，或按Ctrl+左键回退一线，按右键结束或ESC取消");

TVDECmdInfo DrawInfo(int AID, const char* AName, const QString& APrompt) {
  TVDECmdInfo I = TVDEDrawState::ClassCmdInfo();
  I.CmdID = AID;
  I.CmdName = QString::fromUtf8(AName);
  I.Prompt = APrompt;
  return I;
}

double Dist(const TKRNVector2d& A, const TKRNVector2d& B) { return std::hypot(A.X - B.X, A.Y - B.Y); }

bool Same(const TKRNVector2d& A, const TKRNVector2d& B) { return PointIsSame(A, B, KRNEpsilon); }

// Horizontal or vertical by the 45-degree sectors around the start.
TKRNVector2d Orthogonal(const TKRNVector2d& AStart, const TKRNVector2d& APoint) {
  const double A = std::atan2(APoint.Y - AStart.Y, APoint.X - AStart.X);
  const double Q = KRNPi / 4;
  if (A > -Q && A < Q) return {APoint.X, AStart.Y};
  if ((A >= Q && A <= 3 * Q) || (A >= -3 * Q && A <= -Q)) return {AStart.X, APoint.Y};
  return {APoint.X, AStart.Y};
}

TMarkStyle Mark(int AIndex) { return TMarkStyle(std::clamp(AIndex, 0, int(msHoop))); }

}  // namespace

// ---- base -------------------------------------------------------------------

TVDECmdInfo TVDEDrawState::ClassCmdInfo() {
  TVDECmdInfo I;
  I.Priority = 1;
  I.ClearSelSet = true;
  I.CanRepeat = true;
  I.SnapEnabled = true;
  return I;
}

int TVDEDrawState::PropInt(TVDEPropType APropType) {
  const TVDEPropItem& P = Props().Items(APropType);
  return P.Value() == VDEMixedMarker ? 0 : P.AsInteger();
}

void TVDEDrawState::ApplyLineProps(TVectorLineBase& AItem, bool AStartMark, bool AEndMark) {
  AItem.SetColor(TColor(PropInt(ptColor)));
  AItem.SetExtData(Props().Items(ptExtData).Value());
  AItem.SetLineWidth(qint16(PropInt(ptLineWidth)));
  AItem.SetLineStyle(PropInt(ptLineStyle));
  AItem.SetStartMarkSize(qint16(PropInt(ptStartMarkSize)));
  AItem.SetEndMarkSize(qint16(PropInt(ptEndMarkSize)));
  AItem.SetStartMarkStyle(AStartMark ? Mark(PropInt(ptStartMarkStyle)) : msNone);
  AItem.SetEndMarkStyle(AEndMark ? Mark(PropInt(ptEndMarkStyle)) : msNone);
}

void TVDEDrawState::DoMouseDown(TMouseButton AButton, TShiftState AShift, TKRNVector2d& APoint) {
  if (AButton == mbLeft) {
    if (FOwner.SnapPoint(APoint, GetTol())) DefinePoint(APoint, AShift);
    return;
  }
  TVDECmdState::DoMouseDown(AButton, AShift, APoint);
}

void TVDEDrawState::DoMouseMove(TShiftState AShift, TKRNVector2d& APoint) {
  const bool Snapped = FOwner.SnapPoint(APoint, GetTol());
  MovePoint(APoint, Snapped, AShift);
}

void TVDEDrawState::MovePoint(TKRNVector2d&, bool ASnapped, TShiftState) {
  SetCurCursor(ASnapped ? crSnapPoint : crSeekPoint);
}

void TVDEDrawState::CheckSnapResult() {
  if (auto* S = dynamic_cast<TVDESnapState*>(FNextCmd.get()); S && S->SnapSuccess()) {
    TKRNVector2d P = S->SnapPt();
    // The snap state goes before the parent draws its own rubber band again.
    FNextCmd->DrawElastic(&GetHDC());
    std::unique_ptr<TVDECmdState> Done = std::move(FNextCmd);
    FOwner.Execute(cmdRefresh, 0);
    DefinePoint(P, 0);
  }
}

void TVDEDrawState::NextCmdEnded() {
  CheckSnapResult();
  TVDECmdState::NextCmdEnded();
}

void TVDEDrawState::SetNextCmd(std::unique_ptr<TVDECmdState> ACmd) {
  if (auto* Per = dynamic_cast<TVDEPerSnapState*>(ACmd.get())) {
    TKRNVector2d Start;
    if (!GetStartPt(Start)) return;  // refused: freed here
    Per->SetStartPt(Start);
  }
  TVDECmdState::SetNextCmd(std::move(ACmd));
}

void TVDEDrawState::CreateItems() {
  auto X = std::make_shared<TVDEDrawCmdExecutor>(FOwner);
  AddItems(*X);
  if (!X->Empty()) FOwner.GetCmdExecList().AddExecutor(X);
}

// ---- polyline family --------------------------------------------------------

TVDEDrawPolylineState::TVDEDrawPolylineState(IVDEditor& AOwner, qintptr AParam)
    : TVDEDrawState(AOwner, AParam),
      FElasticLastLine(std::make_unique<TVectorArc>(nullptr)),
      FIsDrawLineSeg(AParam == 0) {}

TVDECmdInfo TVDEDrawPolylineState::ClassCmdInfo() { return DrawInfo(-1, "", SLinePrompt); }

template <int ID, TKRNArcType T>
TVDECmdInfo TVDEDrawLineKindState<ID, T>::ClassCmdInfo() {
  static const char* const Names[] = {"画直线", "画逆小弧", "画顺小弧", "画逆大弧", "画顺大弧"};
  return DrawInfo(ID, Names[ID - cmdDrawLine], SLinePrompt);
}

TVDECmdInfo TVDEDraw3PArcState::ClassCmdInfo() {
  return DrawInfo(cmdDraw3PArc, "三点画弧",
                  QStringLiteral("按鼠标左键指定第一个端点，按右键结束或ESC取消\r按鼠标左键指定第二点，按右键结束或ESC取消\r"
                                 "按鼠标左键指定第三点，或按Ctrl+左键回退一线，按右键结束或ESC取消"));
}

void TVDEDrawPolylineState::ApplyAddItemProp() {
  ApplyLineProps(*FElasticLastLine, FElasticLines.empty(), true);
}

void TVDEDrawPolylineState::ResetStep() {
  TVDEDrawState::ResetStep();
  FElasticLines.clear();
  ApplyAddItemProp();
}

bool TVDEDrawPolylineState::GetStartPt(TKRNVector2d& APoint) {
  if (GetLineType() != atLine || IsThreePoint() || FStep == 0) return false;
  APoint = Current().StartPt();
  return true;
}

void TVDEDrawPolylineState::AssignFrom(TVDECmdState& ASource) {
  auto& S = dynamic_cast<TVDEDrawPolylineState&>(ASource);
  FDrawSingleLine = S.FDrawSingleLine;
  FElasticLastLine.reset(static_cast<TVectorArc*>(S.FElasticLastLine->Clone(nullptr)));
  FElasticLines.clear();
  for (const auto& L : S.FElasticLines) FElasticLines.emplace_back(static_cast<TVectorArc*>(L->Clone(nullptr)));
  FElasticMP = S.FElasticMP;
  FIsDrawLineSeg = S.FIsDrawLineSeg;
  FStep = S.Step() < 2 ? S.Step() : 1;
}

void TVDEDrawPolylineState::SetSegment(const TKRNVector2d& AEnd) {
  const TKRNVector2d S = Current().StartPt();
  const TKRNVector2d E = FOwner.GetOrthogonalSwitch() ? Orthogonal(S, AEnd) : AEnd;
  const TKRNArcType T = GetLineType();
  TKRNArc2d A(S, E, T == atLine ? 0.0 : FOwner.GetRadius(), T);
  A.Validate();
  FElasticLastLine->SetLine(A);
}

void TVDEDrawPolylineState::SetSegment3(const TKRNVector2d& AEnd) {
  FElasticLastLine->SetLine(*TKRNArc2d::CreateBy3Points(Current().StartPt(), FElasticMP, AEnd));
}

void TVDEDrawPolylineState::NewSegment() {
  XorElastic();
  const TKRNVector2d End = Current().EndPt();
  std::unique_ptr<TVectorArc> Done = std::move(FElasticLastLine);
  ApplyLineProps(*Done, FElasticLines.empty(), false);
  FElasticLines.push_back(std::move(Done));
  FElasticLastLine = std::make_unique<TVectorArc>(nullptr);
  FElasticLastLine->SetLine(TKRNArc2d(End, End, 0.0, atLine));
  ApplyLineProps(*FElasticLastLine, false, true);
  FStep = 1;
  XorElastic();
}

void TVDEDrawPolylineState::DefinePoint(TKRNVector2d& APoint, TShiftState) {
  MovePoint(APoint, false, 0);
  if (FStep == 0) {
    XorElastic();
    FElasticLastLine->SetLine(TKRNArc2d(APoint, APoint, 0.0, atLine));
    FStep = 1;
    XorElastic();
    return;
  }
  const TKRNVector2d S = Current().StartPt();
  if (Same(APoint, S)) return;
  if (IsThreePoint()) {
    if (FStep == 1) {
      XorElastic();
      FElasticMP = APoint;
      FStep = 2;
      XorElastic();
      return;
    }
    if (Same(APoint, FElasticMP)) return;
    XorElastic();
    SetSegment3(APoint);
    XorElastic();
  } else {
    XorElastic();
    SetSegment(APoint);
    XorElastic();
  }
  NewSegment();
  if (FDrawSingleLine) Finish();
}

void TVDEDrawPolylineState::MovePoint(TKRNVector2d& APoint, bool ASnapped, TShiftState AShift) {
  TVDEDrawState::MovePoint(APoint, ASnapped, AShift);
  if (FStep == 1 && !Same(APoint, Current().EndPt())) {
    XorElastic();
    if (IsThreePoint()) FElasticLastLine->SetLine(TKRNLine2d(Current().StartPt(), APoint));
    else SetSegment(APoint);
    XorElastic();
  } else if (FStep == 2 && !Same(APoint, Current().StartPt()) && !Same(APoint, FElasticMP)) {
    XorElastic();
    SetSegment3(APoint);
    XorElastic();
  }
}

void TVDEDrawPolylineState::DoDrawElastic(QPainter& AHDC) {
  for (const auto& L : FElasticLines) DrawItem(AHDC, *L);
  if (FStep > 0 && !Current().IsZeroLength()) DrawItem(AHDC, *FElasticLastLine);
}

void TVDEDrawPolylineState::DoMouseDown(TMouseButton AButton, TShiftState AShift, TKRNVector2d& APoint) {
  if (AButton == mbLeft && (AShift & sfCtrl)) {
    if (FStep == 0) return;
    XorElastic();
    if (FElasticLines.empty()) {
      FStep = 0;
    } else {
      FElasticLastLine = std::move(FElasticLines.back());
      FElasticLines.pop_back();
      ApplyLineProps(*FElasticLastLine, FElasticLines.empty(), true);
      FStep = 1;
    }
    XorElastic();
    return;
  }
  TVDEDrawState::DoMouseDown(AButton, AShift, APoint);
}

void TVDEDrawPolylineState::DoFinish(bool& ACanDelete) {
  if (FStep > 0 && !FElasticLines.empty()) {
    XorElastic();
    ApplyLineProps(*FElasticLines.back(), FElasticLines.size() == 1, true);
    XorElastic();
    CreateItems();
  }
  TVDEDrawState::DoFinish(ACanDelete);
}

void TVDEDrawPolylineState::AddItems(TVDEDrawCmdExecutor& AExecutor) {
  if (FElasticLines.empty()) return;
  if (FIsDrawLineSeg || FElasticLines.size() == 1) {
    for (const auto& L : FElasticLines) AExecutor.AddItem(*L);
    return;
  }
  TKRNLines2d Lines;
  for (const auto& L : FElasticLines) {
    const TKRNCustomLine2d& S = L->GetXLine();
    Lines.List().Add(new TKRNArcVertex2d(S.StartPt(), S.ArcType(), S.IsArcType() ? S.Radius() : 0.0));
  }
  Lines.List().Add(new TKRNArcVertex2d(FElasticLines.back()->GetXLine().EndPt(), atLine, 0.0));
  TVectorPolyline P(nullptr);
  P.SetPolyline(Lines);
  ApplyLineProps(P, true, true);
  AExecutor.AddItem(P);
}

// ---- closed figures ---------------------------------------------------------

void TVDEDrawCloseLineState::DefinePoint(TKRNVector2d& APoint, TShiftState) {
  if (FStep == 0) {
    if (!StartFigure()) return;
    FElasticSP = FElasticEP = APoint;
    ++FStep;
    return;
  }
  if (Same(APoint, FElasticSP)) return;
  XorElastic();
  FElasticEP = APoint;
  XorElastic();
  CreateItems();
  Finish();
}

void TVDEDrawCloseLineState::MovePoint(TKRNVector2d& APoint, bool ASnapped, TShiftState AShift) {
  TVDEDrawState::MovePoint(APoint, ASnapped, AShift);
  if (FStep > 0 && !Same(APoint, FElasticEP)) {
    XorElastic();
    FElasticEP = APoint;
    XorElastic();
  }
}

void TVDEDrawCloseLineState::DoDrawElastic(QPainter& AHDC) {
  if (FStep == 0) return;
  const std::vector<TKRNVector2d> V = GetLines();
  TVectorArc L(nullptr);
  ApplyLineProps(L, false, false);
  for (size_t I = 0; I < V.size(); ++I) {
    const TKRNVector2d& A = V[I];
    const TKRNVector2d& B = V[(I + 1) % V.size()];
    if (Same(A, B)) continue;
    L.SetLine(TKRNLine2d(A, B));
    DrawItem(AHDC, L);
  }
}

void TVDEDrawCloseLineState::AddItems(TVDEDrawCmdExecutor& AExecutor) {
  const std::vector<TKRNVector2d> V = GetLines();
  if (!FIsDrawLineSeg) {
    TKRNLines2d Lines;
    for (const TKRNVector2d& P : V) Lines.List().Add(new TKRNArcVertex2d(P, atLine, 0.0));
    Lines.List().Add(new TKRNArcVertex2d(V.front(), atLine, 0.0));
    TVectorPolyline P(nullptr);
    P.SetPolyline(Lines);
    ApplyLineProps(P, false, false);
    P.SetStartMarkSize(0);
    P.SetEndMarkSize(0);
    AExecutor.AddItem(P);
    return;
  }
  for (size_t I = 0; I < V.size(); ++I) {
    const TKRNVector2d& A = V[I];
    const TKRNVector2d& B = V[(I + 1) % V.size()];
    if (Dist(A, B) <= 0.001) continue;
    TVectorArc L(nullptr);
    L.SetLine(TKRNArc2d(A, B, 0.0, atLine));
    ApplyLineProps(L, false, false);
    L.SetStartMarkSize(0);
    L.SetEndMarkSize(0);
    AExecutor.AddItem(L);
  }
}

TVDECmdInfo TVDEDrawRectState::ClassCmdInfo() {
  return DrawInfo(cmdDrawRect, "画矩形",
                  QStringLiteral("按鼠标左键指定第一个角点，按右键或ESC取消\r按鼠标左键指定对角点，按鼠标右键或ESC取消"));
}

std::vector<TKRNVector2d> TVDEDrawRectState::GetLines() const {
  const double X0 = std::min(FElasticSP.X, FElasticEP.X), X1 = std::max(FElasticSP.X, FElasticEP.X);
  const double Y0 = std::min(FElasticSP.Y, FElasticEP.Y), Y1 = std::max(FElasticSP.Y, FElasticEP.Y);
  return {{X0, Y0}, {X1, Y0}, {X1, Y1}, {X0, Y1}};
}

TVDECmdInfo TVDEDrawPolygonState::ClassCmdInfo() {
  return DrawInfo(cmdDrawPolygon, "画多边形",
                  QStringLiteral("按鼠标左键指定插入点，按右键或ESC取消\r按鼠标左键指定第二点确定尺寸，按右键或ESC取消"));
}

bool TVDEDrawPolygonState::StartFigure() {
  QString Text = QStringLiteral("3");
  const TInputValidator Check = [](const QString& AText, QString& AMsg) {
    int N;
    if (!TryStrToInt(Trim(AText), N)) {
      AMsg = QStringLiteral("边数必须是整数");
      return false;
    }
    if (N < 3 || N > 1000) {
      AMsg = QStringLiteral("边数必须在3到1000之间");
      return false;
    }
    return true;
  };
  if (!Dialogs().InputBox(QStringLiteral("输入多边形边数"), QStringLiteral("边数:"), Text, Check)) return false;
  FElasticLineSegs = StrToInt(Trim(Text));
  return true;
}

std::vector<TKRNVector2d> TVDEDrawPolygonState::GetLines() const {
  std::vector<TKRNVector2d> V{FElasticEP};
  const double Step = 2 * KRNPi / FElasticLineSegs;
  for (int I = 1; I < FElasticLineSegs; ++I) {
    const double A = Step * I;
    const TKRNVector2d D{FElasticEP.X - FElasticSP.X, FElasticEP.Y - FElasticSP.Y};
    V.push_back({FElasticSP.X + D.X * std::cos(A) - D.Y * std::sin(A), FElasticSP.Y + D.X * std::sin(A) + D.Y * std::cos(A)});
  }
  return V;
}

void TVDEDrawPolygonState::DoDrawElastic(QPainter& AHDC) {
  TVDEDrawCloseLineState::DoDrawElastic(AHDC);
  if (FStep == 0 || Same(FElasticSP, FElasticEP)) return;
  TVectorArc L(nullptr);
  ApplyLineProps(L, false, false);
  L.SetLine(TKRNLine2d(FElasticSP, FElasticEP));
  DrawItem(AHDC, L);
}

// ---- point ------------------------------------------------------------------

TVDECmdInfo TVDEDrawPointState::ClassCmdInfo() {
  return DrawInfo(cmdDrawPoint, "画点", QStringLiteral("按鼠标左键指定插入点，按右键或ESC结束"));
}

void TVDEDrawPointState::ApplyAddItemProp() {
  if (!FPointElastic) FPointElastic = std::make_unique<TVectorPoint>(nullptr, 0, 0, TKRNVector2d{}, 4, psPoint);
  FPointElastic->SetExtData(Props().Items(ptExtData).Value());
  FPointElastic->SetColor(TColor(PropInt(ptColor)));
  FPointElastic->SetSize(qint16(PropInt(ptPointSize)));
  FPointElastic->SetPointStyle(PropInt(ptPointStyle) == 1 ? psCross : psPoint);
}

void TVDEDrawPointState::DefinePoint(TKRNVector2d& APoint, TShiftState) {
  MovePoint(APoint, false, 0);
  CreateItems();
}

void TVDEDrawPointState::MovePoint(TKRNVector2d& APoint, bool ASnapped, TShiftState AShift) {
  TVDEDrawState::MovePoint(APoint, ASnapped, AShift);
  if (!FPointElastic) ApplyAddItemProp();
  XorElastic();
  FPointElastic->SetInsertPt(APoint);
  FIsDefineIP = true;
  XorElastic();
}

void TVDEDrawPointState::DoDrawElastic(QPainter& AHDC) {
  if (FIsDefineIP && FPointElastic) DrawItem(AHDC, *FPointElastic);
}

void TVDEDrawPointState::AddItems(TVDEDrawCmdExecutor& AExecutor) {
  if (FPointElastic) AExecutor.AddItem(*FPointElastic);
}

// ---- circle -----------------------------------------------------------------

TVDECmdInfo TVDEDrawCircleState::ClassCmdInfo() {
  return DrawInfo(cmdDrawCircle, "画圆",
                  QStringLiteral("按鼠标左键指定圆心，按右键或ESC取消\r按鼠标左键指定第二点确定半径，按右键或ESC取消"));
}

void TVDEDrawCircleState::ApplyAddItemProp() {
  if (!FCircleElastic) FCircleElastic = std::make_unique<TVectorCircle>(nullptr, 0, 0, 0, psSolid, TKRNVector2d{}, 0.0);
  FCircleElastic->SetColor(TColor(PropInt(ptColor)));
  FCircleElastic->SetExtData(Props().Items(ptExtData).Value());
  FCircleElastic->SetLineWidth(qint16(PropInt(ptLineWidth)));
  FCircleElastic->SetLineStyle(PropInt(ptLineStyle));
}

void TVDEDrawCircleState::DefinePoint(TKRNVector2d& APoint, TShiftState) {
  MovePoint(APoint, false, 0);
  if (FStep == 0) {
    if (std::fabs(FOwner.GetRadius()) > 0.001) {
      CreateItems();
      XorElastic();
      FIsDefineIP = false;
      return;
    }
    FElasticEP = APoint;
    ++FStep;
    return;
  }
  if (Same(APoint, FCircleElastic->CenterPt())) return;
  CreateItems();
  Finish();
}

void TVDEDrawCircleState::MovePoint(TKRNVector2d& APoint, bool ASnapped, TShiftState AShift) {
  TVDEDrawState::MovePoint(APoint, ASnapped, AShift);
  if (!FCircleElastic) ApplyAddItemProp();
  XorElastic();
  if (FStep == 0) {
    FCircleElastic->SetCircle(APoint, FOwner.GetRadius());
    FIsDefineIP = true;
  } else {
    FElasticEP = APoint;
    FCircleElastic->SetCircle(FCircleElastic->CenterPt(), Dist(APoint, FCircleElastic->CenterPt()));
  }
  XorElastic();
}

void TVDEDrawCircleState::DoDrawElastic(QPainter& AHDC) {
  if (!FCircleElastic || !FIsDefineIP) return;
  if (std::fabs(FCircleElastic->Radius()) > 0) DrawItem(AHDC, *FCircleElastic);
  if (FStep == 1 && !Same(FCircleElastic->CenterPt(), FElasticEP)) {
    TVectorArc L(nullptr);
    L.SetColor(FCircleElastic->Color());
    L.SetLine(TKRNLine2d(FCircleElastic->CenterPt(), FElasticEP));
    DrawItem(AHDC, L);
  }
}

void TVDEDrawCircleState::AddItems(TVDEDrawCmdExecutor& AExecutor) {
  if (FCircleElastic && FCircleElastic->Radius() > 0) AExecutor.AddItem(*FCircleElastic);
}

// ---- text -------------------------------------------------------------------

TVDECmdInfo TVDEDrawTextState::ClassCmdInfo() {
  return DrawInfo(cmdDrawText, "写文字",
                  QStringLiteral("按鼠标左键指定插入点，按右键或ESC取消\r按鼠标左键指定第二点确定角度，按右键或ESC取消"));
}

void TVDEDrawTextState::ApplyAddItemProp() {
  if (!FTextElastic)
    FTextElastic = std::make_unique<TVectorText>(nullptr, 0, 0, QString(), TKRNVector2d{}, 0, QStringLiteral("宋体"), 12, 0,
                                                 haLeftJustify, vaTopJustify, true, 0, QString());
  TVDEPropList& P = Props();
  FTextElastic->SetExtData(P.Items(ptExtData).Value());
  FTextElastic->SetColor(TColor(PropInt(ptColor)));
  FTextElastic->SetBackColor(TColor(PropInt(ptTextBackColor)));
  FTextElastic->SetTransparent(P.Items(ptTransparent).Value() == QLatin1String("T"));
  FTextElastic->SetText(P.Items(ptText).Value());
  FTextElastic->SetFontName(P.Items(ptFontName).Value());
  FTextElastic->SetFontStyle(std::max(0, PropInt(ptFontStyle)));
  FTextElastic->SetHeight(qint16(PropInt(ptFontHeight)));
  FTextElastic->SetHorzAlignment(THorzAlignment(std::max(0, PropInt(ptHorzAlignment))));
  FTextElastic->SetVertAlignment(TVertAlignment(std::max(0, PropInt(ptVertAlignment))));
}

void TVDEDrawTextState::DefinePoint(TKRNVector2d& APoint, TShiftState) {
  MovePoint(APoint, false, 0);
  if (FStep == 0) {
    if (Trim(FTextElastic->Text()).isEmpty()) {
      ShowHintBox(QStringLiteral("请先在图元属性列表中输入文本内容"));
      return;
    }
    FElasticEP = APoint;
    ++FStep;
    return;
  }
  CreateItems();
  Finish();
}

void TVDEDrawTextState::MovePoint(TKRNVector2d& APoint, bool ASnapped, TShiftState AShift) {
  TVDEDrawState::MovePoint(APoint, ASnapped, AShift);
  if (!FTextElastic) ApplyAddItemProp();
  XorElastic();
  if (FStep == 0) {
    FTextElastic->SetInsertPt(APoint);
    FTextElastic->SetAngle(0);
  } else {
    FElasticEP = APoint;
    const TKRNVector2d I = FTextElastic->InsertPt();
    if (!Same(I, APoint)) FTextElastic->SetAngle(std::atan2(APoint.Y - I.Y, APoint.X - I.X));
  }
  FElasticExist = true;
  XorElastic();
}

void TVDEDrawTextState::DoDrawElastic(QPainter& AHDC) {
  if (FElasticExist && FTextElastic && !Trim(FTextElastic->Text()).isEmpty()) DrawItem(AHDC, *FTextElastic);
}

void TVDEDrawTextState::AddItems(TVDEDrawCmdExecutor& AExecutor) { AExecutor.AddItem(*FTextElastic); }

// ---- hatch ------------------------------------------------------------------

TVDECmdInfo TVDEDrawHatchState::ClassCmdInfo() {
  TVDECmdInfo I = DrawInfo(cmdDrawHatch, "填充区域", QStringLiteral("按鼠标左键指定区域内任意一点，按右键或ESC取消"));
  I.SnapEnabled = false;
  return I;
}

void TVDEDrawHatchState::DoMouseDown(TMouseButton AButton, TShiftState AShift, TKRNVector2d& APoint) {
  if (AButton == mbLeft) {
    DefinePoint(APoint, AShift);  // the click as it is: a snapped point would lie on a boundary
    return;
  }
  TVDECmdState::DoMouseDown(AButton, AShift, APoint);
}

void TVDEDrawHatchState::DefinePoint(TKRNVector2d& APoint, TShiftState) {
  if (FOwner.SearchHatchPoly(APoint, FHatchPoly)) CreateItems();
}

void TVDEDrawHatchState::AddItems(TVDEDrawCmdExecutor& AExecutor) {
  if (!FHatchPoly) return;
  TVectorHatch H(nullptr, 0, TColor(PropInt(ptColor)), std::max(0, PropInt(ptFillStyle)), *FHatchPoly);
  H.SetExtData(Props().Items(ptExtData).Value());
  AExecutor.AddItem(H);
}

// ---- dimension --------------------------------------------------------------

TVDECmdInfo TVDEDrawDimensionState::ClassCmdInfo() {
  return DrawInfo(cmdDrawDimension, "标注尺寸",
                  QStringLiteral("按鼠标左键指定标注线第一点，按右键或ESC取消\r按鼠标左键指定标注线第二点，按右键或ESC取消\r"
                                 "按鼠标左键指定标注尺寸文本位置，按右键或ESC取消"));
}

void TVDEDrawDimensionState::ApplyAddItemProp() {
  const auto Allowed = [](int S) { return S == msArrow || S == msDot || S == msDiagonal ? TMarkStyle(S) : msArrow; };
  FStartMarkStyle = Allowed(PropInt(ptStartMarkStyle));
  FEndMarkStyle = Allowed(PropInt(ptEndMarkStyle));
  FStartMarkSize = qint16(PropInt(ptStartMarkSize));
  FEndMarkSize = qint16(PropInt(ptEndMarkSize));
}

void TVDEDrawDimensionState::DefinePoint(TKRNVector2d& APoint, TShiftState) {
  MovePoint(APoint, false, 0);
  if (FStep == 0) {
    XorElastic();
    FPt1 = FPt2 = APoint;
    FStep = 1;
    XorElastic();
  } else if (FStep == 1) {
    if (Same(APoint, FPt1)) return;
    XorElastic();
    FPt2 = FPt3 = APoint;
    FStep = 2;
    XorElastic();
  } else {
    XorElastic();
    FPt3 = APoint;
    CreateItems();
    FStep = 0;
    Finish();
  }
}

void TVDEDrawDimensionState::MovePoint(TKRNVector2d& APoint, bool ASnapped, TShiftState AShift) {
  TVDEDrawState::MovePoint(APoint, ASnapped, AShift);
  if (FStep == 0) return;
  XorElastic();
  (FStep == 1 ? FPt2 : FPt3) = APoint;
  XorElastic();
}

std::vector<std::unique_ptr<TVectorDrawingItem>> TVDEDrawDimensionState::BuildItems() {
  std::vector<std::unique_ptr<TVectorDrawingItem>> R;
  const TKRNVector2d D{FPt2.X - FPt1.X, FPt2.Y - FPt1.Y};
  const double Len = std::hypot(D.X, D.Y);
  if (Len <= KRNEpsilon) return R;
  // The offset of the third point from the measured line, along its normal.
  const TKRNVector2d N{-D.Y / Len, D.X / Len};
  const double Off = (FPt3.X - FPt1.X) * N.X + (FPt3.Y - FPt1.Y) * N.Y;
  const TKRNVector2d Q1{FPt1.X + N.X * Off, FPt1.Y + N.Y * Off}, Q2{FPt2.X + N.X * Off, FPt2.Y + N.Y * Off};
  const double Sign = Off < 0 ? -1 : 1;
  const TColor Color = TColor(PropInt(ptColor));
  const QString Ext = Props().Items(ptExtData).Value();
  const int Width = PropInt(ptLineWidth), Style = PropInt(ptLineStyle);
  auto Line = [&](const TKRNVector2d& A, const TKRNVector2d& B, qint16 S1, qint16 S2, TMarkStyle M1, TMarkStyle M2) {
    auto L = std::make_unique<TVectorArc>(nullptr, 0, Color, Width, Style, S1, S2, M1, M2, A, B, 0.0, atLine);
    L->SetExtData(Ext);
    R.push_back(std::move(L));
  };
  // Witness lines run past the dimension line by the mark size.
  const double Over = std::max(std::abs(FStartMarkSize), std::abs(FEndMarkSize));
  const TKRNVector2d Past{N.X * Sign * Over, N.Y * Sign * Over};
  Line(FPt1, {Q1.X + Past.X, Q1.Y + Past.Y}, 0, 0, msNone, msNone);
  Line(FPt2, {Q2.X + Past.X, Q2.Y + Past.Y}, 0, 0, msNone, msNone);
  Line(Q1, Q2, FStartMarkSize, FEndMarkSize, FStartMarkStyle, FEndMarkStyle);
  const QString Given = Trim(Props().Items(ptText).Value());
  const QString Text = Given.isEmpty() ? QString::number(std::lround(Len)) : Given;
  auto T = std::make_unique<TVectorText>(nullptr, 0, Color, Text, TKRNVector2d{(Q1.X + Q2.X) / 2, (Q1.Y + Q2.Y) / 2},
                                         std::atan2(D.Y, D.X), Props().Items(ptFontName).Value(),
                                         PropInt(ptFontHeight), std::max(0, PropInt(ptFontStyle)), haCenter, vaCenter,
                                         Props().Items(ptTransparent).Value() == QLatin1String("T"),
                                         TColor(PropInt(ptTextBackColor)), Ext);
  R.push_back(std::move(T));
  return R;
}

void TVDEDrawDimensionState::DoDrawElastic(QPainter& AHDC) {
  if (FStep == 0) return;
  if (FStep == 1) {
    if (Same(FPt1, FPt2)) return;
    TVectorArc L(nullptr);
    L.SetColor(TColor(PropInt(ptColor)));
    L.SetLine(TKRNLine2d(FPt1, FPt2));
    DrawItem(AHDC, L);
    return;
  }
  for (auto& I : BuildItems()) DrawItem(AHDC, *I);
}

void TVDEDrawDimensionState::AddItems(TVDEDrawCmdExecutor& AExecutor) {
  for (auto& I : BuildItems()) AExecutor.AddItem(*I);
}

// ---- paste ------------------------------------------------------------------

TKRNVector2d VDEReferencePoint(const TVectorDrawingItem& AItem) {
  if (const auto* P = dynamic_cast<const TVectorPoint*>(&AItem)) return P->InsertPt();
  if (const auto* T = dynamic_cast<const TVectorText*>(&AItem)) return T->InsertPt();
  if (const auto* L = dynamic_cast<const TVectorLine*>(&AItem)) return L->GetXLine().StartPt();
  if (const auto* C = dynamic_cast<const TVectorCircle*>(&AItem)) return C->CenterPt();
  if (const auto* P = dynamic_cast<const TVectorPolyline*>(&AItem))
    return P->Polyline().List().Count() > 0 ? P->Polyline().List().Points(0) : TKRNVector2d{};
  if (const auto* H = dynamic_cast<const TVectorHatch*>(&AItem))
    return H->XPoly().List().Count() > 0 ? H->XPoly().List().Points(0) : TKRNVector2d{};
  return {AItem.OutRect().MinX(), AItem.OutRect().MinY()};
}

TVDECmdInfo TVDEEditPasteState::ClassCmdInfo() {
  return DrawInfo(cmdEditPaste, "粘贴", QStringLiteral("按鼠标左键指定插入点，按右键或ESC取消"));
}

void TVDEEditPasteState::AfterCreate() {
  TVDEDrawState::AfterCreate();
  PasteFromClipboard(FClipBoard);
  if (!FClipBoard.empty()) FBasePt = FInsertPt = VDEReferencePoint(*FClipBoard.front());
}

void TVDEEditPasteState::MovePoint(TKRNVector2d& APoint, bool ASnapped, TShiftState AShift) {
  TVDEDrawState::MovePoint(APoint, ASnapped, AShift);
  XorElastic();
  FInsertPt = APoint;
  FIsDefineIP = true;
  XorElastic();
}

void TVDEEditPasteState::DoDrawElastic(QPainter& AHDC) {
  if (!FIsDefineIP) return;
  TVDIMoveVisitor V(FBasePt, FInsertPt);
  for (const auto& I : FClipBoard) {
    std::unique_ptr<TVectorDrawingItem> C = I->DetachedClone();
    C->Accept(V);
    DrawItem(AHDC, *C);
  }
}

void TVDEEditPasteState::DefinePoint(TKRNVector2d& APoint, TShiftState) {
  MovePoint(APoint, false, 0);
  XorElastic();
  FIsDefineIP = false;
  CreateItems();
  Finish();
}

void TVDEEditPasteState::AddItems(TVDEDrawCmdExecutor& AExecutor) {
  TVDIMoveVisitor V(FBasePt, FInsertPt);
  for (const auto& I : FClipBoard) {
    std::unique_ptr<TVectorDrawingItem> C = I->DetachedClone();
    C->Accept(V);
    AExecutor.AddItem(*C);
  }
}

void RegisterDrawStates() {
  RegisterVDECommand({"TVDEDrawPolylineState", &TVDEDrawPolylineState::ClassCmdInfo,
                      &TVDEDrawPolylineState::ClassExecuteNone});
  RegisterVDECommand(StateCommandClass<TVDEDrawPointState>("TVDEDrawPointState"));
  RegisterVDECommand(StateCommandClass<TVDEDrawLineState>("TVDEDrawLineState"));
  RegisterVDECommand(StateCommandClass<TVDEDrawACSArcState>("TVDEDrawACSArcState"));
  RegisterVDECommand(StateCommandClass<TVDEDrawCSArcState>("TVDEDrawCSArcState"));
  RegisterVDECommand(StateCommandClass<TVDEDrawACLArcState>("TVDEDrawACLArcState"));
  RegisterVDECommand(StateCommandClass<TVDEDrawCLArcState>("TVDEDrawCLArcState"));
  RegisterVDECommand(StateCommandClass<TVDEDraw3PArcState>("TVDEDraw3PArcState"));
  RegisterVDECommand(StateCommandClass<TVDEDrawRectState>("TVDEDrawRectState"));
  RegisterVDECommand(StateCommandClass<TVDEDrawCircleState>("TVDEDrawCircleState"));
  RegisterVDECommand(StateCommandClass<TVDEDrawPolygonState>("TVDEDrawPolygonState"));
  RegisterVDECommand(StateCommandClass<TVDEDrawTextState>("TVDEDrawTextState"));
  RegisterVDECommand(StateCommandClass<TVDEDrawHatchState>("TVDEDrawHatchState"));
  RegisterVDECommand(StateCommandClass<TVDEDrawDimensionState>("TVDEDrawDimensionState"));
  RegisterVDECommand(StateCommandClass<TVDEEditPasteState>("TVDEEditPasteState"));
}
