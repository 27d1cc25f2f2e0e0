#include "DrawSetEditor.h"

#include "Dialogs.h"
#include "VDIText.h"
#include "VectorDrawing.h"

namespace {

bool IsWordChar(QChar C) { return C.isLetterOrNumber() || C == QLatin1Char('_'); }

bool IsBarItem(const TVectorDrawingItem& AItem) {
  switch (AItem.ItemType()) {
    case itPoint: case itLine: case itArc: case itCircle: case itPolyline: return true;
    default: return false;
  }
}

}  // namespace

TDrawSetEditor::TDrawSetEditor(const QString& ASettingsFile) : TVectorDrawingEditor(ASettingsFile) {
  TVectorDrawing& D = GetVectorDrawing();
  D.OnItemAdded = [this](int AID) { ItemAdded(AID); };
  D.OnItemDeleted = [this](int AID) { ItemDeleted(AID); };
  const TVDAcceptItemEvent Filter = [this](TVectorDrawing&, TVectorDrawingItem& AItem, bool& AAccept) {
    AAccept = AcceptsItem(AItem);
  };
  D.OnSelSetChanging = Filter;
  D.OnBeforeHitTestItem = Filter;
}

TDrawSetEditor::~TDrawSetEditor() {
  TVectorDrawing& D = GetVectorDrawing();
  D.OnItemAdded = nullptr;
  D.OnItemDeleted = nullptr;
  D.OnSelSetChanging = nullptr;
  D.OnBeforeHitTestItem = nullptr;
}

int TDrawSetEditor::GetVarPos(const QString& ASubStr, const QString& AStr, bool AIgnoreCase) {
  const QString Sub = AIgnoreCase ? ASubStr.toUpper() : ASubStr;
  const QString S = AIgnoreCase ? AStr.toUpper() : AStr;
  if (Sub.isEmpty()) return 0;
  for (qsizetype From = 0;;) {
    const qsizetype I = S.indexOf(Sub, From);
    if (I < 0) return 0;
    const qsizetype End = I + Sub.size();
    if ((I == 0 || !IsWordChar(S[I - 1])) && (End >= S.size() || !IsWordChar(S[End]))) return int(I) + 1;
    From = I + 1;
  }
}

QString TDrawSetEditor::ReplaceVar(const QString& AStr, const QString& AOldVar, const QString& ANewVar) {
  QString Result, Rest = AStr;
  for (;;) {
    const int P = GetVarPos(AOldVar, Rest, true);
    if (P == 0) return Result + Rest;
    Result += Rest.left(P - 1) + ANewVar;
    Rest = Rest.mid(P - 1 + AOldVar.size());
  }
}

bool TDrawSetEditor::AcceptsItem(const TVectorDrawingItem& AItem) const {
  TDrawSet* DS = DrawSet();
  if (!DS) return FCurDSType == dsNormal;
  const int ID = AItem.ID();
  const bool Bar = DS->Bars().GetItemByVDID(ID) != nullptr;
  const bool Param = DS->Params().GetItemByVDID(ID) != nullptr;
  switch (FCurDSType) {
    case dsNormal: return !Bar && !Param;
    case dsBar: return Bar;
    case dsParam: return Param;
  }
  return false;
}

TDrawSetBar* TDrawSetEditor::AddNewBar(const QString& ABarVDID, int ABarInfoVDID) {
  TDrawSet* DS = DrawSet();
  const int BarID = DS->Bars().GetMaxBarID(DS->ID()) + 1;
  return DS->Bars().Add(DS->ID(), BarID, 1, QStringLiteral("新钢筋"), ABarVDID, ABarInfoVDID, QString(), QString(), true);
}

void TDrawSetEditor::ItemAdded(int AID) {
  TDrawSet* DS = DrawSet();
  TVectorDrawingItem* Item = GetVectorDrawing().ItemByID(AID);
  if (!DS || !Item) return;
  if (FCurDSType == dsBar && IsBarItem(*Item)) {
    AddNewBar(QString::number(AID), -1);
    BarsChanged();
  } else if (FCurDSType == dsParam && Item->ItemType() == itText) {
    QString Code;
    TDrawSetParams& Params = DS->Params();
    const TInputValidator Check = [&Params, AID](const QString& AText, QString& AMsg) {
      return Params.IsValidParamCode(AText, AMsg, AID);
    };
    if (!OVRAInputBox(QStringLiteral("输入框"), QStringLiteral("请输入变量名称"), Code, Check)) return;
    Code = Trim(Code);
    Params.Add(DS->ID(), Params.GetMaxParamID(DS->ID()) + 1, AID, Code, dtUnknowParamType, true);
    if (OnParamKeyChanged) OnParamKeyChanged(QString(), Code);
    BarsChanged();
  }
}

void TDrawSetEditor::ItemDeleted(int AID) {
  TDrawSet* DS = DrawSet();
  if (!DS) return;
  TDrawSetBars& Bars = DS->Bars();
  for (int I = 0; I < Bars.Count(); ++I) {
    TDrawSetBar* B = Bars.GetItems(I);
    if (!B->HasVDID(AID)) continue;
    if (B->VDIDCount() == 1)
      Bars.Delete(I, true, true);
    else
      B->DeleteVDID(AID);
    BarsChanged();
    break;
  }
  TDrawSetParams& Params = DS->Params();
  for (int I = 0; I < Params.Count(); ++I) {
    if (Params.GetItems(I)->ParamVDID() != AID) continue;
    const QString Code = Params.GetItems(I)->ParamCode();
    Params.Delete(I, true, true);
    if (OnParamKeyChanged) OnParamKeyChanged(Code, QString());
    BarsChanged();
    break;
  }
}

bool TDrawSetEditor::HasBarInfo(int AVDID) {
  TDrawSet* DS = DrawSet();
  const TDrawSetBar* B = DS ? DS->Bars().GetItemByVDID(AVDID) : nullptr;
  return B && B->BarInfoVDID() != -1;
}

void TDrawSetEditor::SetBarInfoVDID(int AVDID, int ABarInfoVDID) {
  if (HasBarInfo(AVDID)) return;
  TDrawSet* DS = DrawSet();
  if (TDrawSetBar* B = DS ? DS->Bars().GetItemByVDID(AVDID) : nullptr) {
    B->SetBarInfoVDID(ABarInfoVDID);
    BarsChanged();
  }
}

bool TDrawSetEditor::IsValidParamCode(int AVDID, const QString& ACode, QString& AErrMsg) {
  TDrawSet* DS = DrawSet();
  // The item number stands where the param number goes: a param whose number equals
  // it is the one exempted from the clash test.
  return DS && DS->Params().IsValidParamCode(ACode, AErrMsg, AVDID);
}

QString TDrawSetEditor::GetParamCode(int AVDID) {
  TDrawSet* DS = DrawSet();
  const TDrawSetParam* P = DS ? DS->Params().GetItemByVDID(AVDID) : nullptr;
  return P ? P->ParamCode() : QString();
}

void TDrawSetEditor::SetParamCode(int AVDID, const QString& ACode) {
  QString Msg;
  if (!IsValidParamCode(AVDID, ACode, Msg)) return;
  if (OnSaveBars && !OnSaveBars()) return;
  TDrawSet* DS = DrawSet();
  TDrawSetParam* P = DS->Params().GetItemByVDID(AVDID);
  if (!P) return;
  const QString Old = P->ParamCode();
  P->SetParamCode(ACode);
  const QString New = P->ParamCode();
  for (int I = 0; I < DS->Bars().Count(); ++I) {
    TDrawSetBar* B = DS->Bars().GetItems(I);
    const QString Script = B->CalcProgram();
    const QString Renamed = ReplaceVar(Script, Old, New);
    if (Renamed != Script) B->SetCalcProgram(Renamed);
  }
  if (OnParamKeyChanged) OnParamKeyChanged(Old, New);
  BarsChanged();
}

void TDrawSetEditor::MergeBars() {
  TDrawSet* DS = DrawSet();
  if (!DS) return;
  TDrawSetBar* Target = nullptr;
  TVectorDrawingSelSet& Sel = GetVectorDrawing().SelSet();
  for (int I = 0; I < Sel.Count(); ++I) {
    const int ID = Sel.Items(I)->ID();
    if (Target && Target->HasVDID(ID)) continue;
    TDrawSetBar* B = DS->Bars().GetItemByVDID(ID);
    if (!B) continue;
    if (!Target) {
      Target = B;
      continue;
    }
    const QVector<int> Ids = B->VDIDs();
    for (const int V : Ids) Target->AddVDID(V);
    DS->Bars().DeleteByID(B->DrawSetID(), B->BarID(), true);
  }
  BarsChanged();
}

void TDrawSetEditor::LinesToBar() {
  TDrawSet* DS = DrawSet();
  if (!DS) return;
  TVectorDrawingSelSet& Sel = GetVectorDrawing().SelSet();
  std::vector<TVectorDrawingItem*> Items;
  for (int I = 0; I < Sel.Count(); ++I)
    if (Sel.Items(I)->ItemType() != itText) Items.push_back(Sel.Items(I));
  if (Items.empty()) return;
  TDrawSetBar* Bar = AddNewBar(QString(), 0);
  for (TVectorDrawingItem* Item : Items) {
    Bar->AddVDID(Item->ID());
    Item->SetColor(0x00FFFF);
  }
  BarsChanged();
}

int TDrawSetEditor::GetOrderNum(int AVDID) {
  TDrawSet* DS = DrawSet();
  if (!DS) return -1;
  if (const TDrawSetBar* B = DS->Bars().GetItemByInfoVDID(AVDID)) return B->OrderNum();
  if (const TDrawSetParam* P = DS->Params().GetItemByVDID(AVDID)) return P->OrderNum();
  return -1;
}

void TDrawSetEditor::SetOrderNum(int AVDID, int AOrderNum) {
  TDrawSet* DS = DrawSet();
  if (!DS) return;
  // The value's present owner takes this item's old value, so values stay unique.
  const auto GiveAway = [&](int AOld) {
    if (AOrderNum == -1) return;
    if (TDrawSetBar* Owner = DS->Bars().GetItemByOrdNum(AOrderNum)) Owner->SetOrderNum(AOld);
    else if (TDrawSetParam* P = DS->Params().GetItemByOrdNum(AOrderNum)) P->SetOrderNum(AOld);
  };
  if (TDrawSetBar* B = DS->Bars().GetItemByInfoVDID(AVDID)) {
    GiveAway(B->OrderNum());
    B->SetOrderNum(AOrderNum);
  } else if (TDrawSetParam* P = DS->Params().GetItemByVDID(AVDID)) {
    GiveAway(P->OrderNum());
    P->SetOrderNum(AOrderNum);
  } else {
    return;
  }
  BarsChanged();
}
