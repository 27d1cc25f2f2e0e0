#include "DrawSetSession.h"

#include "Classes.h"
#include "DrawSetConsts.h"
#include "MZTDataSvr.h"
#include "SysUtils.h"
#include "VDECommand.h"
#include "VectorDrawing.h"
#include "VectorDrawingEditor.h"

TDrawSetSession::TDrawSetSession(IDrawingsDataSvr& ADrawingsDataSvr) : FDrawingsDataSvr(ADrawingsDataSvr) {}

TDrawSetSession::~TDrawSetSession() = default;

void TDrawSetSession::FetchDrawSets() { FDrawSetDS.SetData(DataSvr::GetDrawSets(FDrawingsDataSvr)); }

void TDrawSetSession::LoadDrawSet(int ADrawSetID, TVectorDrawing& ADrawing) {
  FDrawSetBarDS.Close();
  FDrawSetParamDS.Close();
  FDrawSetBarDS.SetData(DataSvr::GetDrawSetBars(FDrawingsDataSvr, ADrawSetID));
  FDrawSetParamDS.SetData(DataSvr::GetDrawSetParams(FDrawingsDataSvr, ADrawSetID, CalcRuleID));
  FDrawSetDS.SetFiltered(false);
  FDrawSetDS.SetFilter(QStringLiteral("(DrawSetID = %1)").arg(ADrawSetID));
  FDrawSetDS.SetFiltered(true);
  if (!FDrawSetDS.Active()) FDrawSetDS.Open();
  FDrawSetDS.First();
  if (FDrawSetDS.IsEmpty()) throw Exception(QStringLiteral("图集 %1 不存在").arg(ADrawSetID));

  auto New = std::make_unique<TDrawSet>(nullptr, ADrawSetID, FDrawSetDS.FieldByName(QStringLiteral("DrawSetName")).AsString(),
                                        int(FDrawSetDS.FieldByName(QStringLiteral("DrawSetTypeID")).AsInteger()),
                                        &FDrawSetDS, &FDrawSetBarDS, &FDrawSetParamDS);
  if (OnDrawSetReplaced) OnDrawSetReplaced(New.get());
  FDrawSet = std::move(New);
  MarkSavePoints();

  TBytesStream Blob;
  FDrawSet->GetVectorDrawing(Blob);
  Blob.SetPosition(0);
  // The old items go without reaching the new draw set's bars and params. An empty
  // blob is a draw set without a drawing yet; a bad one leaves the drawing empty.
  TItemChangedEvent Deleted = std::move(ADrawing.OnItemDeleted);
  ADrawing.OnItemDeleted = nullptr;
  ADrawing.Clear();
  if (Blob.GetSize() > 0) ADrawing.LoadFromStream(Blob);
  ADrawing.SetChangeCount(0);
  ADrawing.OnItemDeleted = std::move(Deleted);
}

void TDrawSetSession::MarkSavePoints() {
  FSavePointArray = {FDrawSetDS.SavePoint(), FDrawSetBarDS.SavePoint(), FDrawSetParamDS.SavePoint()};
}

void TDrawSetSession::RevertToSavePoints() {
  FDrawSetDS.SetSavePoint(FSavePointArray[0]);
  FDrawSetBarDS.SetSavePoint(FSavePointArray[1]);
  FDrawSetParamDS.SetSavePoint(FSavePointArray[2]);
}

void TDrawSetSession::ClearDataSetFilters() {
  for (TClientDataSet* DS : {&FDrawSetDS, &FDrawSetBarDS, &FDrawSetParamDS}) {
    DS->SetFiltered(false);
    DS->SetFilter(QString());
  }
}

bool TDrawSetSession::SaveDrawing(TVectorDrawingEditor& AEditor) {
  TVectorDrawing& D = AEditor.GetVectorDrawing();
  if (!D.Modified() || !FDrawSet) return true;
  TBytesStream Stream;
  if (!D.SaveToStream(Stream, sfXML, false)) return false;
  AEditor.Execute(cmdUndoReset, 0);
  D.SetChangeCount(0);
  AEditor.Execute(cmdSelect, 0);
  Stream.SetPosition(0);
  FDrawSet->SetVectorDrawing(Stream);
  return true;
}

bool TDrawSetSession::Save(TVectorDrawingEditor& AEditor) {
  SaveDrawing(AEditor);
  const bool Ok = ApplyChanges(FDrawingsDataSvr, FDrawSetDS, FDrawSetBarDS, FDrawSetParamDS, CalcRuleID);
  MarkSavePoints();
  return Ok;
}

bool TDrawSetSession::HasChanges(const TVectorDrawing& ADrawing) const {
  return ADrawing.Modified() || (FDrawSet && FDrawSet->Modified());
}

bool TDrawSetSession::FindParam(const QString& AParamCode, TVectorDrawing& ADrawing) const {
  return MarkParamItem(FDrawSet.get(), AParamCode, ADrawing);
}

bool MarkParamItem(const TDrawSet* ADrawSet, const QString& AParamCode, TVectorDrawing& ADrawing) {
  if (!ADrawSet) return false;
  const TDrawSetParam* P = ADrawSet->Params().FindParam(AParamCode);
  if (!P) return false;
  for (int I = 0; I < ADrawing.Count(); ++I) {
    TVectorDrawingItem* Item = ADrawing.Items(I);
    Item->SetTag(Item->ID() == P->ParamVDID() ? 1 : 0);
  }
  ADrawing.Notify();
  return true;
}
