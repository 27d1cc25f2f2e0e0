#include "VDECmdExecutor.h"

#include "VDIVisitor.h"
#include "VDIText.h"
#include "VectorDrawing.h"

#include <algorithm>

// ---- the list ---------------------------------------------------------------

TVDECmdExecList::TVDECmdExecList(int ACapacity) : FCapacity(ACapacity == -1 ? 100 : std::max(2, ACapacity)) {}

void TVDECmdExecList::AddExecutor(IVDECmdExecutorPtr AExecutor) {
  while (Count() - 1 > FCurStepIndex) FList.pop_back();
  if (Count() >= FCapacity) FList.erase(FList.begin());
  FList.push_back(std::move(AExecutor));
  FCurStepIndex = Count() - 1;
}

void TVDECmdExecList::Redo() {
  if (!CanRedo()) return;
  ++FCurStepIndex;
  FList[size_t(FCurStepIndex)]->Redo();
}

void TVDECmdExecList::Undo() {
  if (!CanUndo()) return;
  // Keep the record alive while it runs, whatever it triggers.
  const IVDECmdExecutorPtr E = FList[size_t(FCurStepIndex)];
  E->Undo();
  --FCurStepIndex;
}

void TVDECmdExecList::Reset() {
  FList.clear();
  FCurStepIndex = -1;
}

void TVDECmdExecList::SetCapacity(int AValue) {
  FCapacity = std::max(2, AValue);
  if (FCapacity < Count()) Reset();
}

// ---- base -------------------------------------------------------------------

TVDECmdExecutor::TVDECmdExecutor(IVDEditor& AEditor)
    : FDPoint(AEditor.GetCoordTrans().DPoint()),
      FEditor(AEditor),
      FWPoint(AEditor.GetCoordTrans().WPoint()),
      FZoomFactor(AEditor.GetCoordTrans().ZoomFactor()) {}

void TVDECmdExecutor::Redo() { FEditor.GetCoordTrans().SetCoordTransParam(FDPoint, FWPoint, FZoomFactor); }

void TVDECmdExecutor::Undo() { FEditor.GetCoordTrans().SetCoordTransParam(FDPoint, FWPoint, FZoomFactor); }

// ---- items out of the drawing -----------------------------------------------

void TVDEItemStash::TakeOut(TVectorDrawing& ADrawing, const std::vector<int>& AIDs) {
  ADrawing.BeginUpdate();
  for (const int ID : AIDs) {
    TVectorDrawingItem* Item = ADrawing.ItemByID(ID);
    if (!Item) continue;  // gone already: skipped
    if (Item->OnDelete) Item->OnDelete(*Item);
    const int Index = ADrawing.IndexOf(Item);
    FItems.push_back({Index, ADrawing.Extract(Index)});
  }
  ADrawing.EndUpdate();
}

void TVDEItemStash::PutBack(TVectorDrawing& ADrawing) {
  ADrawing.BeginUpdate();
  while (!FItems.empty()) {
    TEntry E = std::move(FItems.back());
    FItems.pop_back();
    ADrawing.Insert(E.Index, std::move(E.Item));
  }
  ADrawing.EndUpdate();
}

// ---- new items --------------------------------------------------------------

TVectorDrawingItem* TVDEDrawCmdExecutor::AddItem(const TVectorDrawingItem& AItem) {
  TVectorDrawing& D = Drawing();
  std::unique_ptr<TVectorDrawingItem> C = AItem.DetachedClone();
  C->SetID(D.GenID());
  C->SetLayerRaw(D.Layers().CurLayer());
  TVectorDrawingItem* Raw = C.get();
  D.Add(std::move(C));
  FNewIDs.push_back(Raw->ID());
  return Raw;
}

void TVDEDrawCmdExecutor::Redo() {
  TVDECmdExecutor::Redo();
  FStash.PutBack(Drawing());
}

void TVDEDrawCmdExecutor::Undo() {
  TVDECmdExecutor::Undo();
  std::vector<int> Reversed(FNewIDs.rbegin(), FNewIDs.rend());
  FStash.TakeOut(Drawing(), Reversed);
}

bool TVDECopyCmdExecutor::Copy(const TKRNVector2d& ABasePt, const TKRNVector2d& AInsertPt) {
  TVectorDrawing& D = Drawing();
  if (D.SelSet().Count() == 0 || PointIsSame(ABasePt, AInsertPt, KRNEpsilon)) return false;
  std::vector<TVectorDrawingItem*> Sources;
  for (int I = 0; I < D.SelSet().Count(); ++I) Sources.push_back(D.SelSet().Items(I));
  TVDIMoveVisitor V(ABasePt, AInsertPt);
  D.BeginUpdate();
  for (TVectorDrawingItem* S : Sources) AddItem(*S)->Accept(V);
  D.EndUpdate();
  return true;
}

// ---- deletion ---------------------------------------------------------------

bool TVDEDeleteCmdExecutor::Delete() {
  TVectorDrawingSelSet& Sel = Drawing().SelSet();
  if (Sel.Count() == 0) return false;
  for (int I = Sel.Count() - 1; I >= 0; --I) FDelIDs.push_back(Sel.Items(I)->ID());
  FStash.TakeOut(Drawing(), FDelIDs);
  return true;
}

void TVDEDeleteCmdExecutor::Redo() {
  TVDECmdExecutor::Redo();
  FStash.TakeOut(Drawing(), FDelIDs);
}

void TVDEDeleteCmdExecutor::Undo() {
  TVDECmdExecutor::Undo();
  FStash.PutBack(Drawing());
}

// ---- properties -------------------------------------------------------------

bool TVDESetPropCmdExecutor::SetProp(TVectorDrawingItem& AItem, TVDEPropType APropType, const QString& AValue) {
  if (!AItem.GetPropTypes().Contains(APropType)) return false;
  const QString Old = AItem.GetPropValues(APropType);
  if (Old == AValue) return false;
  AItem.SetPropValues(APropType, AValue);
  FSetPropParams.push_back({AItem.ID(), APropType, Old, AValue});
  return true;
}

void TVDESetPropCmdExecutor::Apply(bool ANew) {
  TVectorDrawing& D = Drawing();
  D.BeginUpdate();
  for (const TSetPropParam& P : FSetPropParams)
    if (TVectorDrawingItem* Item = D.ItemByID(P.FItemID)) Item->SetPropValues(P.FPropType, ANew ? P.FNewValue : P.FOldValue);
  D.EndUpdate();
}

void TVDESetPropCmdExecutor::Redo() {
  TVDECmdExecutor::Redo();
  Apply(true);
}

void TVDESetPropCmdExecutor::Undo() {
  TVDECmdExecutor::Undo();
  Apply(false);
}

// ---- move -------------------------------------------------------------------

bool TVDEMoveCmdExecutor::Move(const TKRNVector2d& ABasePt, const TKRNVector2d& AInsertPt) {
  TVectorDrawingSelSet& Sel = Drawing().SelSet();
  if (Sel.Count() == 0 || PointIsSame(ABasePt, AInsertPt, KRNEpsilon)) return false;
  FStartPt = ABasePt;
  FEndPt = AInsertPt;
  FSelItemIDList.reserve(size_t(Sel.Count()));
  for (int I = 0; I < Sel.Count(); ++I) FSelItemIDList.push_back(Sel.Items(I)->ID());
  Apply(FStartPt, FEndPt);
  return true;
}

void TVDEMoveCmdExecutor::Apply(const TKRNVector2d& AFrom, const TKRNVector2d& ATo) {
  TVectorDrawing& D = Drawing();
  TVDIMoveVisitor V(AFrom, ATo);
  D.BeginUpdate();
  for (const int ID : FSelItemIDList)
    if (TVectorDrawingItem* Item = D.ItemByID(ID)) Item->Accept(V);
  D.EndUpdate();
}

void TVDEMoveCmdExecutor::Redo() {
  TVDECmdExecutor::Redo();
  Apply(FStartPt, FEndPt);
}

void TVDEMoveCmdExecutor::Undo() {
  TVDECmdExecutor::Undo();
  Apply(FEndPt, FStartPt);
}

// ---- geometry snapshots -----------------------------------------------------

void TVDECoordChangeCmdExecutor::Apply(const std::vector<std::unique_ptr<TVDICoordData>>& AList) {
  TVectorDrawing& D = Drawing();
  D.BeginUpdate();
  for (const auto& C : AList)
    if (TVectorDrawingItem* Item = D.ItemByID(C->FID)) Item->SetCoordData(*C);
  D.EndUpdate();
}

void TVDECoordChangeCmdExecutor::Redo() {
  TVDECmdExecutor::Redo();
  Apply(FNewCoordList);
}

void TVDECoordChangeCmdExecutor::Undo() {
  TVDECmdExecutor::Undo();
  Apply(FOldCoordList);
}

// ---- rotate and mirror ------------------------------------------------------

namespace {

std::vector<TVectorDrawingItem*> Selected(TVectorDrawing& D) {
  std::vector<TVectorDrawingItem*> R;
  for (int I = 0; I < D.SelSet().Count(); ++I) R.push_back(D.SelSet().Items(I));
  return R;
}

}  // namespace

bool TVDERotateCmdExecutor::Rotate(const TKRNVector2d& ABasePt, double AAngle, bool ADelPrev) {
  TVectorDrawing& D = Drawing();
  if (D.SelSet().Count() == 0 || AAngle == 0) return false;
  FBasePt = ABasePt;
  FAngle = AAngle;
  FInPlace = ADelPrev;
  D.BeginUpdate();
  for (TVectorDrawingItem* S : Selected(D)) {
    TVectorDrawingItem* Item = ADelPrev ? S : AddItem(*S);
    if (ADelPrev) FItemIDs.push_back(Item->ID());
    if (auto* T = dynamic_cast<TVectorText*>(Item)) {
      if (ADelPrev) FTextAngles.push_back({T->ID(), {T->Angle(), AAngle}});
      T->SetAngle(AAngle);
    }
    TVDIRotateVisitor V(ABasePt, AAngle);
    Item->Accept(V);
  }
  D.EndUpdate();
  return true;
}

void TVDERotateCmdExecutor::Turn(double AAngle, bool ANew) {
  TVectorDrawing& D = Drawing();
  D.BeginUpdate();
  TVDIRotateVisitor V(FBasePt, AAngle);
  for (const int ID : FItemIDs)
    if (TVectorDrawingItem* Item = D.ItemByID(ID)) Item->Accept(V);
  for (const auto& [ID, Angles] : FTextAngles)
    if (auto* T = dynamic_cast<TVectorText*>(D.ItemByID(ID))) T->SetAngle(ANew ? Angles.second : Angles.first);
  D.EndUpdate();
}

void TVDERotateCmdExecutor::Redo() {
  if (!FInPlace) return TVDEDrawCmdExecutor::Redo();
  TVDECmdExecutor::Redo();
  Turn(FAngle, true);
}

void TVDERotateCmdExecutor::Undo() {
  if (!FInPlace) return TVDEDrawCmdExecutor::Undo();
  TVDECmdExecutor::Undo();
  Turn(-FAngle, false);
}

void TVDEMirrorCmdExecutor::Mirror(const TKRNBeeline2d& AMirrorLine, bool ADelPrev) {
  TVectorDrawing& D = Drawing();
  FMirrorLine = AMirrorLine;
  FInPlace = ADelPrev;
  D.BeginUpdate();
  TVDIMirrorVisitor V(AMirrorLine);
  for (TVectorDrawingItem* S : Selected(D)) {
    TVectorDrawingItem* Item = ADelPrev ? S : AddItem(*S);
    if (ADelPrev) FItemIDs.push_back(Item->ID());
    Item->Accept(V);
  }
  D.EndUpdate();
}

void TVDEMirrorCmdExecutor::Flip() {
  TVectorDrawing& D = Drawing();
  D.BeginUpdate();
  TVDIMirrorVisitor V(FMirrorLine);
  for (const int ID : FItemIDs)
    if (TVectorDrawingItem* Item = D.ItemByID(ID)) Item->Accept(V);
  D.EndUpdate();
}

void TVDEMirrorCmdExecutor::Redo() {
  if (!FInPlace) return TVDEDrawCmdExecutor::Redo();
  TVDECmdExecutor::Redo();
  Flip();
}

void TVDEMirrorCmdExecutor::Undo() {
  if (!FInPlace) return TVDEDrawCmdExecutor::Undo();
  TVDECmdExecutor::Undo();
  Flip();  // a mirror undoes itself
}

// ---- stretch and drags ------------------------------------------------------

void TVDEStretchCmdExecutor::Stretch(const TKRNBox2d& ACrossBox, const TKRNVector2d& ABasePt,
                                     const TKRNVector2d& AInsertPt) {
  TVectorDrawing& D = Drawing();
  TVDIStretchVisitor V(ACrossBox, ABasePt, AInsertPt);
  D.BeginUpdate();
  for (TVectorDrawingItem* Item : Selected(D)) {
    AddOld(*Item);
    Item->Accept(V);
    AddNew(*Item);
  }
  D.EndUpdate();
}

bool TVDEDragGripCmdExecutor::DragGrip(const TVDEGripList& AList, const TKRNVector2d& ABasePt,
                                       const TKRNVector2d& AInsertPt) {
  if (AList.empty() || PointIsSame(ABasePt, AInsertPt, KRNEpsilon)) return false;
  TVectorDrawing& D = Drawing();
  D.BeginUpdate();
  for (const auto& [Grip, Item] : AList) {
    AddOld(*Item);
    TVDIDragGripVisitor V(Grip, ABasePt, AInsertPt);
    Item->Accept(V);
    AddNew(*Item);
  }
  D.EndUpdate();
  return true;
}

bool TVDEDragMoveCmdExecutor::DragMove(const TKRNVector2d& ABasePt, const TKRNVector2d& AInsertPt) {
  TVectorDrawing& D = Drawing();
  if (D.SelSet().Count() == 0 || PointIsSame(ABasePt, AInsertPt, KRNEpsilon)) return false;
  TVDIMoveVisitor V(ABasePt, AInsertPt);
  D.BeginUpdate();
  for (TVectorDrawingItem* Item : Selected(D)) {
    AddOld(*Item);
    Item->Accept(V);
    AddNew(*Item);
  }
  D.EndUpdate();
  return true;
}
