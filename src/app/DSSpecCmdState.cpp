#include "DSSpecCmdState.h"

#include "Dialogs.h"
#include "MZTBarInfo.h"
#include "VDEPropList.h"
#include "VDIText.h"

#include <limits>

namespace {

TVDECmdInfo Named(TVDECmdInfo AInfo, int AID, const char* AName, const char* APrompt) {
  AInfo.CmdID = AID;
  AInfo.CmdName = QString::fromUtf8(AName);
  AInfo.Prompt = QString::fromUtf8(APrompt);
  return AInfo;
}

bool PassesNotation(const QString& AText, QString* AErrMsg = nullptr) {
  try {
    TDrawSetBarInfo Info;
    Info.SetAsString(AText);
    return true;
  } catch (const TBarInfoParseError& E) {
    if (AErrMsg) *AErrMsg = E.Message();
    return false;
  }
}

TDrawingItemTypeSet Types(std::initializer_list<int> AKinds) {
  TDrawingItemTypeSet S;
  for (const int K : AKinds) S.set(size_t(K));
  return S;
}

}  // namespace

// ---- base -------------------------------------------------------------------

TVDECmdInfo TDSECmdSate::ClassCmdInfo() {
  TVDECmdInfo I = TVDECmdState::ClassCmdInfo();
  I.Priority = 1;
  I.ClearSelSet = true;
  I.CanRepeat = true;
  return I;
}

IDrawSetEditor* TDSECmdSate::DSEditor() { return dynamic_cast<IDrawSetEditor*>(&FOwner); }

void TDSECmdSate::DoDrawElastic(QPainter& AHDC) {
  if (TVectorDrawingItem* Item = Drawing().ItemByID(FElasticID)) Item->DrawElastic(AHDC, GetCoordTrans());
}

void TDSECmdSate::TrackElastic(TVectorDrawingItem* AItem) {
  const int ID = AItem ? AItem->ID() : -1;
  SetCurCursor(AItem ? crSnapEdo : crSeekEdo);
  if (ID == FElasticID) return;
  XorElastic();
  FElasticID = ID;
  XorElastic();
}

void TDSECmdSate::DoMouseMove(TShiftState, TKRNVector2d& APoint) { TrackElastic(HitItem(APoint)); }

// ---- 100: rename a param ------------------------------------------------------

TVDECmdInfo TDSEEditParamState::ClassCmdInfo() {
  return Named(TDSECmdSate::ClassCmdInfo(), cmdEditParam, "编辑变量", "按鼠标左键选择一个变量，按右键或ESC取消");
}

TVectorDrawingItem* TDSEEditParamState::HitItem(const TKRNVector2d& APoint) {
  return Drawing().HitTest(APoint, GetTol(), Types({itText}));
}

void TDSEEditParamState::DoMouseDown(TMouseButton AButton, TShiftState AShift, TKRNVector2d& APoint) {
  if (AButton != mbLeft) return TDSECmdSate::DoMouseDown(AButton, AShift, APoint);
  TVectorDrawingItem* Item = HitItem(APoint);
  IDrawSetEditor* DS = DSEditor();
  if (!Item || Item->ItemType() != itText || !DS) return;
  const int ID = Item->ID();
  QString Code = DS->GetParamCode(ID);
  const TInputValidator Check = [DS, ID](const QString& AText, QString& AMsg) {
    return DS->IsValidParamCode(ID, AText, AMsg);
  };
  if (OVRAInputBox(QStringLiteral("请输入"), QStringLiteral("变量名称"), Code, Check)) DS->SetParamCode(ID, Code);
}

// ---- 101: a bar's notation text -------------------------------------------------

TVDECmdInfo TDSEDrawBarInfoState::ClassCmdInfo() {
  return Named(TDSECmdSate::ClassCmdInfo(), cmdDrawBarInfo, "设置钢筋信息", "按鼠标左键选择一条钢筋，按右键或ESC取消");
}

TVectorDrawingItem* TDSEDrawBarInfoState::HitItem(const TKRNVector2d& APoint) {
  return Drawing().HitTest(APoint, GetTol(), Types({itPoint, itLine, itArc, itCircle, itPolyline}));
}

void TDSEDrawBarInfoState::DoMouseDown(TMouseButton AButton, TShiftState AShift, TKRNVector2d& APoint) {
  if (AButton != mbLeft) return TDSECmdSate::DoMouseDown(AButton, AShift, APoint);
  TVectorDrawingItem* Item = HitItem(APoint);
  IDrawSetEditor* DS = DSEditor();
  if (!Item || !DS) return;
  TVDEPropList& P = FOwner.GetAddItemProp();
  const QString Text = Trim(P.Items(ptText).Value());
  if (Text.isEmpty()) {
    ShowHintBox(QStringLiteral("请先在图元属性列表中输入文本内容"));
    return;
  }
  QString Msg;
  if (!PassesNotation(Text, &Msg)) {
    ShowErrorBox(Msg);
    return;
  }
  if (DS->HasBarInfo(Item->ID())) {
    ShowHintBox(QStringLiteral("该钢筋已经设置了钢筋信息"));
    return;
  }
  const int BarItem = Item->ID();
  XorElastic();
  FElasticID = -1;
  TVectorDrawing& D = Drawing();
  auto T = std::make_unique<TVectorText>(&D, D.GenID(), 0, QString(), APoint, 0, QStringLiteral("宋体"), 12, 0,
                                         haLeftJustify, vaTopJustify, true, 0, QString());
  T->SetColor(TColor(P.Items(ptColor).AsInteger()));
  T->SetBackColor(TColor(P.Items(ptTextBackColor).AsInteger()));
  T->SetTransparent(P.Items(ptTransparent).Value() == QLatin1String("T"));
  T->SetText(P.Items(ptText).Value());
  T->SetFontName(P.Items(ptFontName).Value());
  T->SetFontStyle(std::max(0, P.Items(ptFontStyle).AsInteger()));
  T->SetHeight(qint16(P.Items(ptFontHeight).AsInteger()));
  T->SetHorzAlignment(THorzAlignment(std::max(0, P.Items(ptHorzAlignment).AsInteger())));
  T->SetVertAlignment(TVertAlignment(std::max(0, P.Items(ptVertAlignment).AsInteger())));
  const int TextID = T->ID();
  D.Add(std::move(T));
  DS->SetBarInfoVDID(BarItem, TextID);
}

// ---- 104: jump order -------------------------------------------------------------

TVDECmdInfo TDSEEditTabOrderState::ClassCmdInfo() {
  return Named(TDSECmdSate::ClassCmdInfo(), cmdEditTabOrder, "编辑跳转顺序",
               "按左键选择需要指定跳转顺序的变量或钢筋信息，按右键或ESC取消");
}

bool TDSEEditTabOrderState::ValidOrder(const QString& AText, QString& AErrMsg) {
  int V;
  if (TryStrToInt(AText, V) && V >= -1) return true;
  AErrMsg = QStringLiteral("跳转顺序值必须是[-1, %1]之间的整数！").arg(std::numeric_limits<int>::max()) +
            QStringLiteral("\n只有大于或等于0的值是有效的。当值为-1时，编辑框不会自动跳转到该图元。");
  return false;
}

TVectorDrawingItem* TDSEEditTabOrderState::HitItem(const TKRNVector2d& APoint) {
  TVectorDrawing& D = Drawing();
  const double Tol = GetTol();
  for (int I = 0; I < D.Count(); ++I) {
    auto* T = dynamic_cast<TVectorText*>(D.Items(I));
    if (!T || !T->HitTest(APoint, Tol)) continue;
    int N;
    const QString Text = Trim(T->Text());
    if (TryStrToInt(Text, N) || PassesNotation(Text)) return T;
  }
  return nullptr;
}

void TDSEEditTabOrderState::DoMouseDown(TMouseButton AButton, TShiftState AShift, TKRNVector2d& APoint) {
  if (AButton != mbLeft) return TDSECmdSate::DoMouseDown(AButton, AShift, APoint);
  TVectorDrawingItem* Item = HitItem(APoint);
  IDrawSetEditor* DS = DSEditor();
  if (!Item || !DS) return;
  const int ID = Item->ID();
  const int Old = DS->GetOrderNum(ID);
  QString Text = QString::number(Old);
  if (!OVRAInputBox(QStringLiteral("请输入"), QStringLiteral("跳转顺序数值"), Text, &ValidOrder)) return;
  const int New = StrToInt(Trim(Text));
  if (New != Old) DS->SetOrderNum(ID, New);
}

// ---- 102, 103: over a selection ----------------------------------------------------

IDrawSetEditor* TDSEModifyState::DSEditor() { return dynamic_cast<IDrawSetEditor*>(&FOwner); }

void TDSEModifyState::Confirm(const QString& AQuestion, void (IDrawSetEditor::*AWork)(), bool AClearAfterYes) {
  TVectorDrawingSelSet& Sel = Drawing().SelSet();
  IDrawSetEditor* DS = DSEditor();
  if (Sel.Count() == 0 || !DS) return;
  if (ShowConfirmBox(AQuestion) == mrYes) {
    (DS->*AWork)();
    if (!AClearAfterYes) return;
  }
  Sel.Clear();
}

TVDECmdInfo TDSEMergeBarsState::ClassCmdInfo() {
  return Named(TVDEModifyState::ClassCmdInfo(), cmdMergeBars, "合并钢筋",
               "按鼠标左键选择图元，或拉框选择，按右键确认选择或ESC取消");
}

void TDSEMergeBarsState::DoFinish(bool&) { Confirm(QStringLiteral("是否合并选中的钢筋？"), &IDrawSetEditor::MergeBars, false); }

TVDECmdInfo TDSELinesToBar::ClassCmdInfo() {
  return Named(TVDEModifyState::ClassCmdInfo(), cmdLinesToBar, "点、线->钢筋",
               "按鼠标左键选择图元，或拉框选择，按右键确认选择或ESC取消");
}

void TDSELinesToBar::DoFinish(bool&) {
  Confirm(QStringLiteral("是否将选中的图元转换为钢筋？"), &IDrawSetEditor::LinesToBar, true);
}

void RegisterDrawSetCommands() {
  RegisterVDECommand(StateCommandClass<TDSEEditParamState>("TDSEEditParamState"));
  RegisterVDECommand(StateCommandClass<TDSEDrawBarInfoState>("TDSEDrawBarInfoState"));
  RegisterVDECommand({"TDSEMergeBarsState", &TDSEMergeBarsState::ClassCmdInfo,
                      &TVDEModifyState::ClassExecute<TDSEMergeBarsState>});
  RegisterVDECommand({"TDSELinesToBar", &TDSELinesToBar::ClassCmdInfo, &TVDEModifyState::ClassExecute<TDSELinesToBar>});
  RegisterVDECommand(StateCommandClass<TDSEEditTabOrderState>("TDSEEditTabOrderState"));
}
