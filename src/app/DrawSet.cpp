#include "DrawSet.h"

#include "Dialogs.h"
#include "DrawSetConsts.h"
#include "MZTDataSvr.h"

namespace {

const QString kDrawSetID = QStringLiteral("DrawSetID");
const QString kBarID = QStringLiteral("BarID");
const QString kParamID = QStringLiteral("ParamID");
const QString kCalcRuleID = QStringLiteral("CalcRuleID");
const QString kOrderNum = QStringLiteral("OrderNum");
const QString kDrawSetIndex = QStringLiteral("DrawSetID");
const QString kBarIndex = QStringLiteral("DrawSetID;BarID");
const QString kParamIndex = QStringLiteral("CalcRuleID;DrawSetID;ParamID");

// Opens the dataset, then uses the current row when it already has the key, else
// looks the key up on the index.
bool LocateKey(TClientDataSet* ADS, const QVector<QString>& AKeyFields, const QVector<QVariant>& AKey) {
  if (!ADS)
    return false;
  if (!ADS->Active())
    ADS->Open();
  if (!ADS->IsEmpty() && !ADS->Eof()) {
    bool Current = true;
    for (int I = 0; I < AKeyFields.size() && Current; ++I) {
      const TField F = ADS->FieldByName(AKeyFields[I]);
      Current = !F.IsNull() && F.AsInteger() == AKey[I].toLongLong();
    }
    if (Current)
      return true;
  }
  return ADS->FindKey(AKey);
}

void WriteRowField(TClientDataSet* ADS, const QString& AField, const QString& AText) {
  ADS->Edit();
  try {
    ADS->FieldByName(AField).SetAsString(Trim(AText));
    ADS->Post();
  } catch (...) {
    ADS->Cancel();
    throw;
  }
}

// Finds or appends the row of AKey and leaves the dataset in edit or insert state.
void EditOrAppendRow(TClientDataSet* ADS, const QVector<QString>& AKeyFields, const QVector<QVariant>& AKey) {
  if (!ADS->Active())
    ADS->Open();
  if (ADS->FindKey(AKey)) {
    ADS->Edit();
    return;
  }
  ADS->Append();
  for (int I = 0; I < AKeyFields.size(); ++I)
    ADS->FieldByName(AKeyFields[I]).SetValue(AKey[I]);
}

void PostAndReindex(TClientDataSet* ADS, const QString& AIndex) {
  ADS->Post();
  ADS->SetIndexFieldNames(AIndex);
}

void DeleteRow(TClientDataSet* ADS, const QVector<QVariant>& AKey) {
  if (!ADS)
    return;
  if (!ADS->Active())
    ADS->Open();
  if (ADS->FindKey(AKey))
    ADS->Delete();
}

int IntField(TClientDataSet& ADS, const QString& AName) {
  const TField F = ADS.FieldByName(AName);
  return F.IsNull() ? -1 : static_cast<int>(F.AsInteger());
}

// A region without a column of its own (an empty name) reads empty text.
QString TextField(TClientDataSet& ADS, const QString& AName) {
  return AName.isEmpty() ? QString() : ADS.FieldByName(AName).AsString();
}

// ... and refuses to write into it, in plain words.
void CheckRegionColumn(const QString& AName) {
  if (AName.isEmpty())
    throw Exception(QStringLiteral("区域 %1 没有自己的脚本和钢筋信息列，不能在这个区域修改它们").arg(RegionCode));
}

bool IsLowByteLetter(QChar C) {
  const int B = C.unicode() & 0xFF;
  return (B >= 'A' && B <= 'Z') || (B >= 'a' && B <= 'z');
}

}  // namespace

// ---------------------------------------------------------------------------

QString TDrawSetInfoHandler::MakeBarVDID(const QVector<int>& AIDArray) {
  QString S;
  for (int I = 0; I < AIDArray.size(); ++I) {
    if (I > 0)
      S += u',';
    S += QString::number(AIDArray[I]);
  }
  return S;
}

QVector<int> TDrawSetInfoHandler::ParseBarVDID(const QString& ABarVDID) {
  QVector<int> Result;
  QString Rest = Trim(ABarVDID);
  while (!Rest.isEmpty()) {
    const int P = Rest.indexOf(u',');
    if (P < 0) {
      Result.push_back(StrToInt(Trim(Rest)));
      break;
    }
    Result.push_back(StrToInt(Trim(Rest.left(P))));
    Rest = Trim(Rest.mid(P + 1));
  }
  return Result;
}

// ---------------------------------------------------------------------------
// Bars

TDrawSetBar::TDrawSetBar(TDrawSetBars* AOwner, int ADrawSetID, int ABarID, int ABarPicID, const QString& ABarNum,
                         const QString& ABarVDID, int ABarInfoVDID, const QString& ABarInfo,
                         const QString& ABarRemark, TClientDataSet* ABarDS)
    : FOwner(AOwner),
      FDrawSetID(ADrawSetID),
      FBarID(ABarID),
      FBarPicID(ABarPicID),
      FBarNum(Trim(ABarNum)),
      FBarVDID(Trim(ABarVDID)),
      FBarInfoVDID(ABarInfoVDID),
      FBarDS(ABarDS),
      FBarInfo(Trim(ABarInfo)),
      FBarRemark(Trim(ABarRemark)) {}

bool TDrawSetBar::LocateRow() const { return LocateKey(FBarDS, {kDrawSetID, kBarID}, {FDrawSetID, FBarID}); }

void TDrawSetBar::WriteField(const QString& AField, const QString& AText) {
  CheckRegionColumn(AField);
  if (LocateRow())
    WriteRowField(FBarDS, AField, AText);
}

QString TDrawSetBar::ReadField(const QString& AField) const {
  return LocateRow() ? TextField(*FBarDS, AField) : QString();
}

void TDrawSetBar::SetBarPicID(int AValue) {
  FBarPicID = AValue;
  WriteField(QStringLiteral("BarPicID"), QString::number(AValue));
}

void TDrawSetBar::SetBarNum(const QString& AValue) {
  FBarNum = Trim(AValue);
  WriteField(QStringLiteral("BarNum"), FBarNum);
}

void TDrawSetBar::SetBarVDID(const QString& AValue) {
  FBarVDID = Trim(AValue);
  FVDIDsParsed = false;
  WriteField(QStringLiteral("BarVDID"), FBarVDID);
}

const QVector<int>& TDrawSetBar::VDIDs() const {
  if (!FVDIDsParsed) {
    FVDIDs = TDrawSetInfoHandler::ParseBarVDID(FBarVDID);
    FVDIDsParsed = true;
  }
  return FVDIDs;
}

int TDrawSetBar::GetVDIDByIndex(int AIndex) const {
  const QVector<int>& Ids = VDIDs();
  return AIndex >= 0 && AIndex < Ids.size() ? Ids[AIndex] : -1;
}

void TDrawSetBar::SetBarInfoVDID(int AValue) {
  FBarInfoVDID = AValue;
  WriteField(QStringLiteral("BarInfoVDID"), QString::number(AValue));
}

void TDrawSetBar::SetBarInfo(const QString& AValue) {
  const QString V = Trim(AValue);
  if (SameText(V, FBarInfo))
    return;
  FBarInfo = V;
  WriteField(BarInfoFieldName, V);
}

void TDrawSetBar::SetBarRemark(const QString& AValue) {
  FBarRemark = Trim(AValue);
  WriteField(QStringLiteral("BarRemark"), FBarRemark);
}

QString TDrawSetBar::CalcProgram() const { return ReadField(CalcProgramFieldName); }
void TDrawSetBar::SetCalcProgram(const QString& AValue) { WriteField(CalcProgramFieldName, AValue); }

int TDrawSetBar::OrderNum() const {
  int V;
  return TryStrToInt(ReadField(kOrderNum), V) ? V : -1;
}

void TDrawSetBar::SetOrderNum(int AValue) { WriteField(kOrderNum, QString::number(AValue)); }

void TDrawSetBar::AddVDID(int AVDID) {
  QVector<int> Ids = VDIDs();
  if (Ids.contains(AVDID))
    return;
  Ids.push_back(AVDID);
  SetBarVDID(TDrawSetInfoHandler::MakeBarVDID(Ids));
}

void TDrawSetBar::DeleteVDID(int AVDID) {
  QVector<int> Ids = VDIDs();
  if (!Ids.removeOne(AVDID))
    return;
  SetBarVDID(TDrawSetInfoHandler::MakeBarVDID(Ids));
}

TDrawSetBars::TDrawSetBars(TDrawSet* AOwner, TClientDataSet* ABarDS) : FOwner(AOwner), FBarDS(ABarDS) {
  if (FBarDS && !FBarDS->FieldDefs().isEmpty())
    FBarDS->SetIndexFieldNames(kBarIndex);
}

TDrawSetBar* TDrawSetBars::Add(int ADrawSetID, int ABarID, int ABarPicID, const QString& ABarNum,
                               const QString& ABarVDID, int ABarInfoVDID, const QString& ABarInfo,
                               const QString& ABarRemark, bool AChangeDS) {
  auto Bar = std::make_unique<TDrawSetBar>(this, ADrawSetID, ABarID, ABarPicID, ABarNum, ABarVDID, ABarInfoVDID,
                                           ABarInfo, ABarRemark, FBarDS);
  if (AChangeDS && FBarDS) {
    EditOrAppendRow(FBarDS, {kDrawSetID, kBarID}, {ADrawSetID, ABarID});
    try {
      FBarDS->FieldByName(QStringLiteral("BarPicID")).SetAsInteger(ABarPicID);
      FBarDS->FieldByName(QStringLiteral("BarNum")).SetAsString(Trim(ABarNum));
      FBarDS->FieldByName(QStringLiteral("BarVDID")).SetAsString(Trim(ABarVDID));
      FBarDS->FieldByName(QStringLiteral("BarInfoVDID")).SetAsInteger(ABarInfoVDID);
      if (!CalcProgramFieldName.isEmpty()) FBarDS->FieldByName(CalcProgramFieldName).SetAsString(QString());
      FBarDS->FieldByName(kOrderNum).SetAsInteger(ABarID);
      FBarDS->FieldByName(QStringLiteral("BarRemark")).SetAsString(ABarRemark);
    } catch (...) {
      FBarDS->Cancel();
      throw;
    }
    PostAndReindex(FBarDS, kBarIndex);
  }
  FList.push_back(std::move(Bar));
  return FList.back().get();
}

void TDrawSetBars::Delete(int AIndex, bool AChangeDS, bool ARebuildIndex) {
  if (AIndex < 0 || AIndex >= Count())
    return;
  const int DrawSetID = FList[AIndex]->DrawSetID(), BarID = FList[AIndex]->BarID();
  FList.erase(FList.begin() + AIndex);
  if (AChangeDS)
    DeleteRow(FBarDS, {DrawSetID, BarID});
  if (ARebuildIndex && FBarDS)
    FBarDS->SetIndexFieldNames(kBarIndex);
}

void TDrawSetBars::DeleteByID(int ADrawSetID, int ABarID, bool AChangeDS) {
  for (int I = 0; I < Count(); ++I)
    if (FList[I]->DrawSetID() == ADrawSetID && FList[I]->BarID() == ABarID) {
      Delete(I, AChangeDS);
      return;
    }
}

void TDrawSetBars::Clear(bool AChangeDS) {
  for (int I = Count() - 1; I >= 0; --I)
    Delete(I, AChangeDS, false);
}

TDrawSetBar* TDrawSetBars::GetItems(int AIndex) const {
  return AIndex >= 0 && AIndex < Count() ? FList[AIndex].get() : nullptr;
}

TDrawSetBar* TDrawSetBars::GetItemByVDID(int AVDID) const {
  for (const auto& B : FList)
    if (B->HasVDID(AVDID))
      return B.get();
  return nullptr;
}

TDrawSetBar* TDrawSetBars::GetItemByInfoVDID(int AVDID) const {
  for (const auto& B : FList)
    if (B->BarInfoVDID() == AVDID)
      return B.get();
  return nullptr;
}

TDrawSetBar* TDrawSetBars::GetItemByOrdNum(int AOrdNum) const {
  for (const auto& B : FList)
    if (B->BarInfoVDID() > 0 && B->OrderNum() == AOrdNum)
      return B.get();
  return nullptr;
}

int TDrawSetBars::GetMaxBarID(int ADrawSetID) const {
  int Max = -1;
  for (const auto& B : FList)
    if (B->DrawSetID() == ADrawSetID && B->BarID() > Max)
      Max = B->BarID();
  return Max;
}

void TDrawSetBars::ReadFromDataSet(int ADrawSetID) {
  FList.clear();
  if (!FBarDS || FBarDS->FieldDefs().isEmpty())
    return;
  FBarDS->Open();
  for (FBarDS->First(); !FBarDS->Eof(); FBarDS->Next()) {
    if (IntField(*FBarDS, kDrawSetID) != ADrawSetID)
      continue;
    Add(ADrawSetID, IntField(*FBarDS, kBarID), IntField(*FBarDS, QStringLiteral("BarPicID")),
        TextField(*FBarDS, QStringLiteral("BarNum")), TextField(*FBarDS, QStringLiteral("BarVDID")),
        IntField(*FBarDS, QStringLiteral("BarInfoVDID")), TextField(*FBarDS, BarInfoFieldName),
        TextField(*FBarDS, QStringLiteral("BarRemark")), false);
  }
}

// ---------------------------------------------------------------------------
// Params

TDrawSetParam::TDrawSetParam(TDrawSetParams* AOwner, int ADrawSetID, int AParamID, int AParamVDID,
                             const QString& AParamCode, int ADataType, TClientDataSet* AParamDS)
    : FOwner(AOwner),
      FDrawSetID(ADrawSetID),
      FParamID(AParamID),
      FParamVDID(AParamVDID),
      FParamCode(Trim(AParamCode)),
      FDataType(ADataType),
      FParamDS(AParamDS) {}

bool TDrawSetParam::LocateRow() const {
  return LocateKey(FParamDS, {kCalcRuleID, kDrawSetID, kParamID}, {CalcRuleID, FDrawSetID, FParamID});
}

void TDrawSetParam::WriteField(const QString& AField, const QString& AText) {
  if (LocateRow())
    WriteRowField(FParamDS, AField, AText);
}

QString TDrawSetParam::ReadField(const QString& AField) const {
  return LocateRow() ? Trim(TextField(*FParamDS, AField)) : QString();
}

void TDrawSetParam::SetParamVDID(int AValue) {
  FParamVDID = AValue;
  WriteField(QStringLiteral("ParamVDID"), QString::number(AValue));
}

void TDrawSetParam::SetParamCode(const QString& AValue) {
  FParamCode = Trim(AValue);
  WriteField(QStringLiteral("ParamCode"), FParamCode);
}

void TDrawSetParam::SetDataType(int AValue) {
  FDataType = AValue;
  WriteField(QStringLiteral("DataType"), QString::number(AValue));
}

QString TDrawSetParam::ValidateExpr() const { return ReadField(QStringLiteral("ValidateExpr")); }
void TDrawSetParam::SetValidateExpr(const QString& AValue) { WriteField(QStringLiteral("ValidateExpr"), AValue); }
QString TDrawSetParam::InvalidMsg() const { return ReadField(QStringLiteral("InvalidMsg")); }
void TDrawSetParam::SetInvalidMsg(const QString& AValue) { WriteField(QStringLiteral("InvalidMsg"), AValue); }

int TDrawSetParam::OrderNum() const {
  int V;
  return TryStrToInt(ReadField(kOrderNum), V) ? V : -1;
}

void TDrawSetParam::SetOrderNum(int AValue) { WriteField(kOrderNum, QString::number(AValue)); }
QString TDrawSetParam::ParamVal() const { return ReadField(QStringLiteral("ParamVal")); }
void TDrawSetParam::SetParamVal(const QString& AValue) { WriteField(QStringLiteral("SetParamVal"), AValue); }
QString TDrawSetParam::Unit() const { return ReadField(QStringLiteral("Unit")); }
void TDrawSetParam::SetUnit(const QString& AValue) { WriteField(QStringLiteral("Unit"), AValue); }

TDrawSetParams::TDrawSetParams(TDrawSet* AOwner, TClientDataSet* AParamDS) : FOwner(AOwner), FParamDS(AParamDS) {
  if (FParamDS && !FParamDS->FieldDefs().isEmpty())
    FParamDS->SetIndexFieldNames(kParamIndex);
}

TDrawSetParam* TDrawSetParams::Add(int ADrawSetID, int AParamID, int AParamVDID, const QString& AParamCode,
                                   int ADataType, bool AChangeDS) {
  if (AChangeDS && FParamDS) {
    EditOrAppendRow(FParamDS, {kCalcRuleID, kDrawSetID, kParamID}, {CalcRuleID, ADrawSetID, AParamID});
    try {
      FParamDS->FieldByName(QStringLiteral("ParamVDID")).SetAsInteger(AParamVDID);
      FParamDS->FieldByName(QStringLiteral("ParamCode")).SetAsString(Trim(AParamCode));
      FParamDS->FieldByName(QStringLiteral("DataType")).SetAsInteger(ADataType);
      FParamDS->FieldByName(kOrderNum).SetAsInteger(AParamID);
    } catch (...) {
      FParamDS->Cancel();
      throw;
    }
    PostAndReindex(FParamDS, kParamIndex);
  }
  FList.push_back(std::make_unique<TDrawSetParam>(this, ADrawSetID, AParamID, AParamVDID, AParamCode, ADataType,
                                                  FParamDS));
  return FList.back().get();
}

void TDrawSetParams::Delete(int AIndex, bool AChangeDS, bool ARebuildIndex) {
  if (AIndex < 0 || AIndex >= Count())
    return;
  const int DrawSetID = FList[AIndex]->DrawSetID(), ParamID = FList[AIndex]->ParamID();
  FList.erase(FList.begin() + AIndex);
  if (AChangeDS)
    DeleteRow(FParamDS, {CalcRuleID, DrawSetID, ParamID});
  if (ARebuildIndex && FParamDS)
    FParamDS->SetIndexFieldNames(kParamIndex);
}

void TDrawSetParams::DeleteByID(int ADrawSetID, int AParamID, bool AChangeDS) {
  for (int I = 0; I < Count(); ++I)
    if (FList[I]->DrawSetID() == ADrawSetID && FList[I]->ParamID() == AParamID) {
      Delete(I, AChangeDS);
      return;
    }
}

void TDrawSetParams::DeleteByVDID(int ADrawSetID, int AParamVDID, bool AChangeDS) {
  for (int I = 0; I < Count(); ++I)
    if (FList[I]->DrawSetID() == ADrawSetID && FList[I]->ParamVDID() == AParamVDID) {
      Delete(I, AChangeDS);
      return;
    }
}

void TDrawSetParams::Clear(bool AChangeDS) {
  for (int I = Count() - 1; I >= 0; --I)
    Delete(I, AChangeDS, false);
}

TDrawSetParam* TDrawSetParams::GetItems(int AIndex) const {
  return AIndex >= 0 && AIndex < Count() ? FList[AIndex].get() : nullptr;
}

TDrawSetParam* TDrawSetParams::GetItemByVDID(int AVDID) const {
  for (const auto& P : FList)
    if (P->ParamVDID() == AVDID)
      return P.get();
  return nullptr;
}

TDrawSetParam* TDrawSetParams::GetItemByOrdNum(int AOrdNum) const {
  for (const auto& P : FList)
    if (P->ParamVDID() >= 0 && P->OrderNum() == AOrdNum)
      return P.get();
  return nullptr;
}

TDrawSetParam* TDrawSetParams::FindParam(const QString& AParamCode) const {
  const QString Code = Trim(AParamCode);
  for (const auto& P : FList)
    if (SameText(P->ParamCode(), Code))
      return P.get();
  return nullptr;
}

int TDrawSetParams::GetMaxParamID(int ADrawSetID) const {
  int Max = -1;
  for (const auto& P : FList)
    if (P->DrawSetID() == ADrawSetID && P->ParamID() > Max)
      Max = P->ParamID();
  return Max;
}

QString CheckVariableName(const QString& AName) {
  static const char* const Reserved[] = {
      "if",     "else",  "endif",  "do",      "loop",      "from",     "endfrom", "mainend", "string", "int",
      "single", "procedure", "exitdo", "exitfrom", "and",  "or",       "to",      "step",    "cd",     "jj",
      "zj",     "jb",    "cnt",    "djlx",    "gjlx",      "ishoop",   "dj",      "msgbox",  "cancel"};
  if (AName.isEmpty())
    return QStringLiteral("变量名不能为空");
  if (!IsLowByteLetter(AName[0]))
    return QStringLiteral("变量名首字符必须为字母");
  for (const QChar C : AName)
    if (!IsLowByteLetter(C) && !(C >= u'0' && C <= u'9') && C != u'_')
      return QStringLiteral("变量名只能由字母、数字和下划线组成");
  for (const char* W : Reserved)
    if (SameText(AName, QLatin1String(W)))
      return QStringLiteral("不能用关键字作为变量名");
  return QString();
}

bool TDrawSetParams::IsValidParamCode(const QString& ANewCode, QString& AErrMsg, int AParamID) const {
  const QString Code = Trim(ANewCode);
  if (Code.isEmpty() || Code.size() >= 21) {
    AErrMsg = QStringLiteral("参数名称不能为空，或长度超过20个字符");
    return false;
  }
  AErrMsg = CheckVariableName(Code);
  if (!AErrMsg.isEmpty())
    return false;
  for (const auto& P : FList)
    if (P->ParamID() != AParamID && SameText(P->ParamCode(), Code)) {
      AErrMsg = QStringLiteral("参数名称重复，请重新输入");
      return false;
    }
  AErrMsg.clear();
  return true;
}

void TDrawSetParams::ReadFromDataSet(int ADrawSetID) {
  FList.clear();
  if (!FParamDS || FParamDS->FieldDefs().isEmpty())
    return;
  FParamDS->Open();
  for (FParamDS->First(); !FParamDS->Eof(); FParamDS->Next()) {
    if (IntField(*FParamDS, kDrawSetID) != ADrawSetID)
      continue;
    Add(ADrawSetID, IntField(*FParamDS, kParamID), IntField(*FParamDS, QStringLiteral("ParamVDID")),
        TextField(*FParamDS, QStringLiteral("ParamCode")), IntField(*FParamDS, QStringLiteral("DataType")), false);
  }
}

// ---------------------------------------------------------------------------
// Draw sets

TDrawSet::TDrawSet(TDrawSets* AOwner, int AID, const QString& AName, int ATypeID, TClientDataSet* ADataSet,
                   TClientDataSet* ABarDS, TClientDataSet* AParamDS)
    : FOwner(AOwner),
      FID(AID),
      FTypeID(ATypeID),
      FName(Trim(AName)),
      FDataSet(ADataSet),
      FBarDS(ABarDS),
      FParamDS(AParamDS) {
  if (FDataSet && !FDataSet->FieldDefs().isEmpty())
    FDataSet->SetIndexFieldNames(kDrawSetIndex);
  FBars = std::make_unique<TDrawSetBars>(this, FBarDS);
  FParams = std::make_unique<TDrawSetParams>(this, FParamDS);
  FBars->ReadFromDataSet(FID);
  FParams->ReadFromDataSet(FID);
}

bool TDrawSet::LocateRow() const { return LocateKey(FDataSet, {kDrawSetID}, {FID}); }

void TDrawSet::WriteField(const QString& AField, const QString& AText) {
  if (LocateRow())
    WriteRowField(FDataSet, AField, AText);
}

void TDrawSet::SetTypeID(int AValue) {
  FTypeID = AValue;
  WriteField(QStringLiteral("DrawSetTypeID"), QString::number(AValue));
}

void TDrawSet::SetName(const QString& AValue) {
  FName = Trim(AValue);
  WriteField(QStringLiteral("DrawSetName"), FName);
}

int TDrawSet::OrderNum() const {
  int V;
  return LocateRow() && TryStrToInt(TextField(*FDataSet, kOrderNum), V) ? V : -1;
}

void TDrawSet::SetOrderNum(int AValue) { WriteField(kOrderNum, QString::number(AValue)); }

void TDrawSet::GetVectorDrawing(TStream& AStream) const {
  if (!LocateRow())
    return;
  const QByteArray Blob = FDataSet->FieldByName(VectorDrawingFieldName).AsBytes();
  AStream.WriteBuffer(Blob.constData(), Blob.size());
}

void TDrawSet::SetVectorDrawing(TStream& AStream) {
  if (!LocateRow())
    return;
  QByteArray Blob(static_cast<qsizetype>(AStream.GetSize() - AStream.GetPosition()), Qt::Uninitialized);
  AStream.ReadBuffer(Blob.data(), Blob.size());
  FDataSet->Edit();
  try {
    FDataSet->FieldByName(VectorDrawingFieldName).SetAsBytes(Blob);
    FDataSet->Post();
  } catch (...) {
    FDataSet->Cancel();
    throw;
  }
}

void TDrawSet::Clear(bool AChangeDS) {
  FBars->Clear(AChangeDS);
  FParams->Clear(AChangeDS);
}

bool TDrawSet::Modified() const {
  for (const TClientDataSet* DS : {FDataSet, FBarDS, FParamDS})
    if (DS && DS->ChangeCount() > 0)
      return true;
  return false;
}

TDrawSets::TDrawSets(TClientDataSet* ADataSet, TClientDataSet* ABarDS, TClientDataSet* AParamDS)
    : FDataSet(nullptr), FBarDS(ABarDS), FParamDS(AParamDS) {
  SetDataSet(ADataSet);
}

void TDrawSets::SetDataSet(TClientDataSet* ADataSet) {
  FList.clear();
  FDataSet = ADataSet;
  if (!FDataSet || FDataSet->FieldDefs().isEmpty())
    return;
  FDataSet->SetIndexFieldNames(kDrawSetIndex);
  FDataSet->Open();
  // the rows are read first: building a draw set moves the dataset's cursor
  struct TRow {
    int ID, TypeID;
    QString Name;
  };
  std::vector<TRow> Rows;
  for (FDataSet->First(); !FDataSet->Eof(); FDataSet->Next())
    Rows.push_back({IntField(*FDataSet, kDrawSetID), IntField(*FDataSet, QStringLiteral("DrawSetTypeID")),
                    TextField(*FDataSet, QStringLiteral("DrawSetName"))});
  for (const TRow& R : Rows)
    Add(R.ID, R.Name, R.TypeID, false);
}

TDrawSet* TDrawSets::Add(int AID, const QString& AName, int ATypeID, bool AChangeDS) {
  if (AChangeDS && FDataSet) {
    EditOrAppendRow(FDataSet, {kDrawSetID}, {AID});
    try {
      FDataSet->FieldByName(QStringLiteral("DrawSetName")).SetAsString(Trim(AName));
      FDataSet->FieldByName(QStringLiteral("DrawSetTypeID")).SetAsInteger(ATypeID);
      FDataSet->FieldByName(kOrderNum).SetAsInteger(AID);
    } catch (...) {
      FDataSet->Cancel();
      throw;
    }
    PostAndReindex(FDataSet, kDrawSetIndex);
  }
  FList.push_back(std::make_unique<TDrawSet>(this, AID, AName, ATypeID, FDataSet, FBarDS, FParamDS));
  return FList.back().get();
}

void TDrawSets::Delete(int AIndex, bool AChangeDS, bool ARebuildIndex) {
  if (AIndex < 0 || AIndex >= Count())
    return;
  const int ID = FList[AIndex]->ID();
  FList.erase(FList.begin() + AIndex);
  if (AChangeDS)
    DeleteRow(FDataSet, {ID});
  if (ARebuildIndex && FDataSet)
    FDataSet->SetIndexFieldNames(kDrawSetIndex);
}

void TDrawSets::DeleteByID(int AID, bool AChangeDS) {
  for (int I = 0; I < Count(); ++I)
    if (FList[I]->ID() == AID) {
      Delete(I, AChangeDS);
      return;
    }
}

void TDrawSets::Clear(bool AChangeDS) {
  for (int I = Count() - 1; I >= 0; --I)
    Delete(I, AChangeDS, false);
}

TDrawSet* TDrawSets::GetItems(int AIndex) const {
  return AIndex >= 0 && AIndex < Count() ? FList[AIndex].get() : nullptr;
}

TDrawSet* TDrawSets::GetItemByID(int ADrawSetID) const {
  for (const auto& D : FList)
    if (D->ID() == ADrawSetID)
      return D.get();
  return nullptr;
}

int TDrawSets::MaxID() const {
  int Max = -1;
  for (const auto& D : FList)
    Max = std::max(Max, D->ID());
  return Max;
}

// ---------------------------------------------------------------------------

bool ApplyChanges(IDrawingsDataSvr& AServer, TClientDataSet& ADrawSetDS, TClientDataSet& ABarDS,
                  TClientDataSet& AParamDS, int ACalcRuleID) {
  TClientDataSet* const Sets[3] = {&ADrawSetDS, &ABarDS, &AParamDS};
  TDrawSetDeltas Deltas;
  for (int I = 0; I < 3; ++I)
    if (Sets[I]->ChangeCount() > 0)
      Deltas[I + 1] = Sets[I]->Delta();
  QString ErrMsg;
  if (!DataSvr::SaveDrawSets(AServer, Deltas, ACalcRuleID, ErrMsg)) {
    ShowErrorBox(ErrMsg);
    return false;
  }
  for (TClientDataSet* DS : Sets)
    if (DS->ChangeCount() > 0)
      DS->MergeChangeLog();
  return true;
}
