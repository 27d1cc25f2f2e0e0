#include "VectorDrawing.h"

#include "VDItemIndex.h"

#include "VDIFormat.h"

#include <QPainter>

#include <algorithm>
#include <cmath>
#include <limits>

// ---- layers -----------------------------------------------------------------

void TLayer::SetColor(TColor AValue) {
  if (FColor == AValue) return;
  FColor = AValue;
  FOwner->Owner()->DoChange();
}

void TLayer::SetName(const QString& AValue) {
  if (SameText(FName, AValue)) return;
  FName = AValue;
  FOwner->Owner()->DoChange();
}

void TLayer::SetVisible(bool AValue) {
  if (FVisible == AValue) return;
  FVisible = AValue;
  FOwner->Owner()->DoChange();
}

void TLayer::SetAsCurLayer() { FOwner->SetCurLayer(this); }

TLayers::TLayers(TVectorDrawing* AOwner) : FOwner(AOwner) {
  FCurLayer = AppendRaw(0, QStringLiteral("0"), 0xFFFFFF, true);
}

TLayer* TLayers::AppendRaw(int AID, const QString& AName, TColor AColor, bool AVisible) {
  FList.push_back(std::make_unique<TLayer>(this, AID, AName, AColor, AVisible));
  return FList.back().get();
}

void TLayers::ClearRaw() {
  FList.clear();
  FCurLayer = nullptr;
}

TLayer* TLayers::Add(const QString& AName) {
  if (TLayer* L = GetItemByName(AName)) return L;
  int MaxID = -1;
  for (const auto& L : FList) MaxID = std::max(MaxID, L->ID());
  TLayer* L = AppendRaw(MaxID + 1, AName, 0xFFFFFF, true);
  FOwner->DoChange();
  return L;
}

void TLayers::Delete(int AIndex) {
  if (AIndex == 0) throw Exception(QStringLiteral("0层不能被删除"));
  TLayer* L = FList[size_t(AIndex)].get();
  for (int I = 0; I < FOwner->Count(); ++I)
    if (FOwner->Items(I)->Layer() == L) throw Exception(QStringLiteral("图层已经存在图元，不能被删除"));
  if (FCurLayer == L) FCurLayer = FList[0].get();
  FList.erase(FList.begin() + AIndex);
  FOwner->DoChange();
}

int TLayers::Remove(TLayer* ALayer) {
  const int I = IndexOf(ALayer);
  if (I >= 0) Delete(I);
  return I;
}

void TLayers::Clear() {
  for (int I = Count() - 1; I >= 1; --I) Delete(I);
}

int TLayers::IndexOf(const TLayer* ALayer) const {
  for (size_t I = 0; I < FList.size(); ++I)
    if (FList[I].get() == ALayer) return int(I);
  return -1;
}

TLayer* TLayers::GetItemByID(int AID) const {
  if (AID >= 0 && AID < Count() && FList[size_t(AID)]->ID() == AID) return FList[size_t(AID)].get();
  for (const auto& L : FList)
    if (L->ID() == AID) return L.get();
  return nullptr;
}

TLayer* TLayers::GetItemByName(const QString& AName) const {
  for (const auto& L : FList)
    if (SameText(L->Name(), AName)) return L.get();
  return nullptr;
}

void TLayers::Repair() {
  if (FList.empty()) {
    AppendRaw(0, QStringLiteral("0"), 0xFFFFFF, true);
  } else if (FList[0]->ID() != 0) {
    auto It = std::find_if(FList.begin(), FList.end(), [](const auto& L) { return L->ID() == 0; });
    if (It != FList.end()) {
      std::unique_ptr<TLayer> Zero = std::move(*It);
      FList.erase(It);
      FList.insert(FList.begin(), std::move(Zero));
    } else {
      FList.insert(FList.begin(), std::make_unique<TLayer>(this, 0, QStringLiteral("0"), 0xFFFFFF, true));
    }
  }
  FCurLayer = FList[0].get();
}

// ---- selection --------------------------------------------------------------

void TVectorDrawingSelSet::Add(TVectorDrawingItem* AItem) {
  if (!AItem || AItem->Selected()) return;
  bool Accept = true;
  if (FOwner->OnSelSetChanging) FOwner->OnSelSetChanging(*FOwner, *AItem, Accept);
  if (!Accept) return;
  AItem->SetSelectedFlag(true);
  FList.push_back(AItem);
  FOwner->SelSetChanged();
  FOwner->Notify();
}

void TVectorDrawingSelSet::Remove(TVectorDrawingItem* AItem) {
  const int I = IndexOf(AItem);
  if (I >= 0) Delete(I);
}

void TVectorDrawingSelSet::Delete(int AIndex) {
  FList[size_t(AIndex)]->SetSelectedFlag(false);
  FList.erase(FList.begin() + AIndex);
  FOwner->SelSetChanged();
  FOwner->Notify();
}

void TVectorDrawingSelSet::Clear() {
  if (FList.empty()) return;
  for (TVectorDrawingItem* I : FList) I->SetSelectedFlag(false);
  FList.clear();
  FOwner->SelSetChanged();
  FOwner->Notify();
}

int TVectorDrawingSelSet::IndexOf(const TVectorDrawingItem* AItem) const {
  const auto It = std::find(FList.begin(), FList.end(), AItem);
  return It == FList.end() ? -1 : int(It - FList.begin());
}

// ---- the drawing ------------------------------------------------------------

TVectorDrawing::TVectorDrawing(TProcedureEvent AOnSelSetChanged) : OnSelSetChanged(std::move(AOnSelSetChanged)) {
  FIndex = std::make_unique<TVDItemIndex>();
  RegisterDrawingItemClasses();
  SetVersion(QString::fromLatin1(CurrentVersion));
  SetVDTagTable(FVersion);
  FLayers = std::make_unique<TLayers>(this);
  FSelSet = std::make_unique<TVectorDrawingSelSet>(this);
}

TVectorDrawing::~TVectorDrawing() {
  FIndex->Invalidate();
  FList.clear();
  FSelSet.reset();
  FLayers.reset();
}

void TVectorDrawing::Notify() {
  if (FUpdateCount == 0 && OnUpdateDrawing) OnUpdateDrawing();
}

void TVectorDrawing::DoChange() {
  ++FChangeCount;
  ++FRevision;
  Notify();
}

void TVectorDrawing::EndUpdate() {
  if (FUpdateCount > 0 && --FUpdateCount == 0) {
    if (OnUpdateDrawing) OnUpdateDrawing();
    if (FSelSetChanged) {
      FSelSetChanged = false;
      if (OnSelSetChanged) OnSelSetChanged();
    }
  }
}

void TVectorDrawing::SelSetChanged() {
  if (FUpdateCount < 1) {
    if (OnSelSetChanged) OnSelSetChanged();
  } else {
    FSelSetChanged = true;
  }
}

int TVectorDrawing::IndexOf(const TVectorDrawingItem* AItem) const {
  // every change of the list writes the positions into its items
  if (AItem && AItem->FListIndex >= 0 && size_t(AItem->FListIndex) < FList.size() &&
      FList[size_t(AItem->FListIndex)].get() == AItem)
    return AItem->FListIndex;
  return -1;
}

int TVectorDrawing::IndexOfID(int AID) const {
  const TVectorDrawingItem* Item = ItemByID(AID);
  return Item ? IndexOf(Item) : -1;
}

TVectorDrawingItem* TVectorDrawing::ItemByID(int AID) const {
  TVectorDrawingItem* Hit = FIDIndex.Find(AID);
  if (Hit && Hit->ID() == AID) return Hit;
  // A miss is final while every item is indexed under its own ID; duplicate IDs
  // from a file leave some out, and then the list is walked from the start.
  if (!Hit && FIDIndex.Size() == FList.size()) return nullptr;
  FIDIndex.Clear();
  FIDIndex.Reserve(FList.size());
  TVectorDrawingItem* Found = nullptr;
  for (auto I = FList.rbegin(); I != FList.rend(); ++I) {
    FIDIndex.Set((*I)->ID(), I->get());
    if ((*I)->ID() == AID) Found = I->get();
  }
  return Found;
}

void TVectorDrawing::ItemIDChanged(TVectorDrawingItem* AItem, int AOldID) {
  if (FIDIndex.Find(AOldID) != AItem) return;  // not in this drawing's list
  FIDIndex.Erase(AOldID);
  FIDIndex.Add(AItem->ID(), AItem);
}

void TVectorDrawing::UnindexID(const TVectorDrawingItem* AItem) {
  if (FIDIndex.Find(AItem->ID()) == AItem) FIDIndex.Erase(AItem->ID());
}

// IDs read from a file may be anything: the counter saturates instead of overflowing.
static int After(int AID) { return AID == std::numeric_limits<int>::max() ? AID : AID + 1; }

void TVectorDrawing::RecalcMaxID() {
  int M = -1;
  for (const auto& I : FList) M = std::max(M, I->ID());
  FMaxID = After(M);
}

void TVectorDrawing::SetMaxIDAbove(int ALargestID) { FMaxID = After(ALargestID); }

int TVectorDrawing::Add(std::unique_ptr<TVectorDrawingItem> AItem) {
  return Insert(Count(), std::move(AItem));
}

int TVectorDrawing::Insert(int AIndex, std::unique_ptr<TVectorDrawingItem> AItem) {
  if (!ItemByID(AItem->ID())) {
    if (AItem->ID() >= FMaxID) FMaxID = After(AItem->ID());
  } else {
    AItem->SetID(FMaxID);
    FMaxID = After(FMaxID);
  }
  if (AItem->Owner() != this) AItem->SetOwner(this);
  if (!AItem->Layer() || FLayers->IndexOf(AItem->Layer()) < 0) AItem->SetLayerRaw(FLayers->Items(0));
  TVectorDrawingItem* Item = AItem.get();
  const int Index = std::clamp(AIndex, 0, Count());
  FList.insert(FList.begin() + Index, std::move(AItem));
  Renumber(size_t(Index));
  FIndex->Touch(Item);
  IndexID(Item);
  DoChange();
  if (OnItemAdded) OnItemAdded(Item->ID());
  return Index;
}

std::unique_ptr<TVectorDrawingItem> TVectorDrawing::Extract(int AIndex) {
  TVectorDrawingItem* Item = FList[size_t(AIndex)].get();
  if (Item->Selected()) FSelSet->Remove(Item);
  std::unique_ptr<TVectorDrawingItem> Owned = std::move(FList[size_t(AIndex)]);
  FIndex->Removed(Item);
  FList.erase(FList.begin() + AIndex);
  Item->FListIndex = -1;
  Renumber(size_t(AIndex));
  UnindexID(Item);
  const int ID = Item->ID();
  DoChange();
  if (OnItemDeleted) OnItemDeleted(ID);
  return Owned;
}

void TVectorDrawing::AppendRaw(TVectorDrawingItem* AItem) {
  AItem->SetOwner(this);
  FList.emplace_back(AItem);
  AItem->FListIndex = int(FList.size()) - 1;
  FIndex->Invalidate();
  FIDIndex.Add(AItem->ID(), AItem);  // the first item under an ID keeps it
  ++FRevision;
}

void TVectorDrawing::Delete(int AIndex) {
  TVectorDrawingItem* Item = FList[size_t(AIndex)].get();
  if (Item->Selected()) FSelSet->Remove(Item);
  const int ID = Item->ID();
  UnindexID(Item);
  FIndex->Removed(Item);
  FList.erase(FList.begin() + AIndex);
  Renumber(size_t(AIndex));
  DoChange();
  if (OnItemDeleted) OnItemDeleted(ID);
}

void TVectorDrawing::Remove(TVectorDrawingItem* AItem) {
  const int I = IndexOf(AItem);
  if (I >= 0) Delete(I);
}

void TVectorDrawing::Clear() {
  if (FList.empty()) return;
  BeginUpdate();
  // A handler may remove items: the next index is the smaller of index - 1 and count - 1.
  for (int I = Count() - 1; I >= 0; I = std::min(I - 1, Count() - 1))
    if (OnItemDeleted) OnItemDeleted(FList[size_t(I)]->ID());
  FSelSet->Clear();
  FIndex->Invalidate();
  FList.clear();
  FIDIndex.Clear();
  FLayers->Clear();
  EndUpdate();
  DoChange();
}

void TVectorDrawing::Initialize(bool ANewFlag) {
  if (ANewFlag) {
    FBackColor = 0;
    FDrawingWidth = FDrawingHeight = 0;
    FRemark.clear();
  }
  Clear();
  FMaxID = FChangeCount = FUpdateCount = 0;
}

bool TVectorDrawing::Accepts(const TVDAcceptItemEvent& AEvent, TVectorDrawingItem& AItem) {
  bool Accept = true;
  if (AEvent) AEvent(*this, AItem, Accept);
  return Accept;
}

void TVectorDrawing::Renumber(size_t AFrom) {
  for (size_t I = AFrom; I < FList.size(); ++I) FList[I]->FListIndex = int(I);
}

void TVectorDrawing::ItemBoxChanged(TVectorDrawingItem* AItem) {
  if (IndexOf(AItem) >= 0) FIndex->Touch(AItem);
}

std::vector<TVectorDrawingItem*> TVectorDrawing::ItemsInBox(const TKRNBox2d& ABox) {
  std::vector<TVectorDrawingItem*> R;
  if (!FUseIndex) {
    for (const auto& I : FList) {
      const TKRNBox2d& B = I->OutRect();
      if (!(B.MinX() > ABox.MaxX() || B.MaxX() < ABox.MinX() || B.MinY() > ABox.MaxY() || B.MaxY() < ABox.MinY()))
        R.push_back(I.get());
    }
    return R;
  }
  FIndex->Query(FList, ABox, R);
  std::sort(R.begin(), R.end(), [](const TVectorDrawingItem* A, const TVectorDrawingItem* B) {
    return A->FListIndex < B->FListIndex;
  });
  return R;
}

// The candidates of a hit test at AHitPt: the items whose boxes the tolerance reaches,
// newest first. Every item the walk would hit is among them.
std::vector<TVectorDrawingItem*> TVectorDrawing::HitCandidates(const TKRNVector2d& AHitPt, double ATol) {
  const double T = std::fabs(ATol) + KRNEpsilon;
  std::vector<TVectorDrawingItem*> R = ItemsInBox(TKRNBox2d{{AHitPt.X - T, AHitPt.Y - T}, {AHitPt.X + T, AHitPt.Y + T}});
  std::reverse(R.begin(), R.end());
  return R;
}

TVectorDrawingItem* TVectorDrawing::HitTest(const TKRNVector2d& AHitPt, double ATol,
                                            const TDrawingItemTypeSet& ASelItemTypeSet) {
  if (FUseIndex) {
    for (TVectorDrawingItem* Item : HitCandidates(AHitPt, ATol)) {
      if (!InTypeSet(ASelItemTypeSet, Item->ItemType())) continue;
      if (!Accepts(OnBeforeHitTestItem, *Item)) continue;
      if (Item->HitTest(AHitPt, ATol)) return Item;
    }
    return nullptr;
  }
  for (int I = Count() - 1; I >= 0; --I) {
    TVectorDrawingItem* Item = FList[size_t(I)].get();
    if (!InTypeSet(ASelItemTypeSet, Item->ItemType())) continue;
    if (!Accepts(OnBeforeHitTestItem, *Item)) continue;
    if (Item->HitTest(AHitPt, ATol)) return Item;
  }
  return nullptr;
}

TVectorDrawingItem* TVectorDrawing::SnapDrawingItem(const TKRNVector2d& AHitPt, double ATol,
                                                    const TDrawingItemTypeSet& ASelItemTypeSet) {
  if (FUseIndex) {
    for (TVectorDrawingItem* Item : HitCandidates(AHitPt, ATol)) {
      if (!InTypeSet(ASelItemTypeSet, Item->ItemType())) continue;
      if (Item->HitTest(AHitPt, ATol) && Accepts(OnBeforeHitTestItem, *Item)) return Item;
    }
    return nullptr;
  }
  for (int I = Count() - 1; I >= 0; --I) {
    TVectorDrawingItem* Item = FList[size_t(I)].get();
    if (!InTypeSet(ASelItemTypeSet, Item->ItemType())) continue;
    if (Item->HitTest(AHitPt, ATol) && Accepts(OnBeforeHitTestItem, *Item)) return Item;
  }
  return nullptr;
}

bool TVectorDrawing::HitSelect(int, const TKRNVector2d& AStartPt, const TKRNVector2d& AEndPt, double ATol,
                               const TDrawingItemTypeSet& ASelItemTypeSet) {
  auto Flip = [this](TVectorDrawingItem* AItem) {
    if (AItem->Selected()) FSelSet->Remove(AItem);
    else FSelSet->Add(AItem);
  };
  BeginUpdate();
  try {
    if (std::fabs(AStartPt.X - AEndPt.X) <= KRNEpsilon && std::fabs(AStartPt.Y - AEndPt.Y) <= KRNEpsilon) {
      if (TVectorDrawingItem* Item = HitTest(AStartPt, ATol, ASelItemTypeSet)) Flip(Item);
    } else {
      // the items a window or a crossing box can reach, in list order
      const double T = std::fabs(ATol) + KRNEpsilon;
      const TKRNBox2d Reach{{std::min(AStartPt.X, AEndPt.X) - T, std::min(AStartPt.Y, AEndPt.Y) - T},
                            {std::max(AStartPt.X, AEndPt.X) + T, std::max(AStartPt.Y, AEndPt.Y) + T}};
      std::vector<TVectorDrawingItem*> Candidates;
      if (FUseIndex) Candidates = ItemsInBox(Reach);
      else for (const auto& I : FList) Candidates.push_back(I.get());
      for (TVectorDrawingItem* Item : Candidates) {
        if (!InTypeSet(ASelItemTypeSet, Item->ItemType())) continue;
        if (Item->HitSelect(AStartPt, AEndPt, ATol)) Flip(Item);
      }
    }
  } catch (...) {
    EndUpdate();
    throw;
  }
  EndUpdate();
  return false;
}

bool TVectorDrawing::CalcDrawingRange(const TKRNCoordTrans& ACoordTrans, const TKRNRect& ARect,
                                      TKRNBox2d& ADrawingRange) const {
  const TKRNBox2d V = ACoordTrans.DCTOWC(ARect);
  const double Far = 2147483647.0;
  TKRNBox2d Page;
  if (FDrawingWidth >= 1 && FDrawingHeight >= 1) Page = {{0, 0}, {double(FDrawingWidth), double(FDrawingHeight)}};
  else if (FDrawingHeight >= 1) Page = {{0, 0}, {Far, double(FDrawingHeight)}};
  else if (FDrawingWidth >= 1) Page = {{0, 0}, {double(FDrawingWidth), Far}};
  else {
    ADrawingRange = V;
    return true;
  }
  TKRNBox2d R;
  if (!BoxIntersection(V, Page, R)) return false;
  ADrawingRange = R;
  return true;
}

void TVectorDrawing::Draw(QPainter& AHDC, const TKRNCoordTrans& ACoordTrans, const TKRNRect& ARect) {
  TKRNBox2d Range;
  if (CalcDrawingRange(ACoordTrans, ARect, Range)) TKRNDrawFunc2d::FillRect(AHDC, ACoordTrans, Range, FBackColor, dmCopy);
  const TKRNBox2d W =
      ACoordTrans.DCTOWC(TKRNRect{ARect.Left - 1, ARect.Top - 1, ARect.Right + 1, ARect.Bottom + 1});
  // Touching counts as overlap: only a strict gap rejects.
  auto Overlaps = [&W](const TKRNBox2d& B) {
    return !(B.MinX() > W.MaxX() || B.MaxX() < W.MinX() || B.MinY() > W.MaxY() || B.MaxY() < W.MinY());
  };
  const int Levels = MaxDisplayLevel();
  // The index pays when the window shows a part of the drawing; at zoom-all the walk is cheaper.
  std::vector<TVectorDrawingItem*> Shown;
  const bool Culled = FUseIndex && FList.size() >= 1024 && !FIndex->Covers(FList, W);
  if (Culled) Shown = ItemsInBox(W);
  if (Culled && Shown.size() < FList.size() / 2) {
    for (int Level = 0; Level <= Levels; ++Level)
      for (TVectorDrawingItem* Item : Shown)
        if (!Item->Selected() && Item->DisplayLevel() == Level && Item->Visible()) Item->Draw(AHDC, ACoordTrans, false);
  } else {
    for (int Level = 0; Level <= Levels; ++Level)
      for (const auto& Item : FList)
        if (!Item->Selected() && Item->DisplayLevel() == Level && Item->Visible() && Overlaps(Item->OutRect()))
          Item->Draw(AHDC, ACoordTrans, false);
  }
  for (int Level = 0; Level <= Levels; ++Level)
    for (int I = 0; I < FSelSet->Count(); ++I) {
      TVectorDrawingItem* Item = FSelSet->Items(I);
      if (Item->DisplayLevel() == Level && Item->Visible() && Overlaps(Item->OutRect()))
        Item->Draw(AHDC, ACoordTrans, false);
    }
}

TKRNBox2d TVectorDrawing::ItemsRange() const {
  TKRNBox2d R{};
  for (size_t I = 0; I < FList.size(); ++I) R = I == 0 ? FList[I]->OutRect() : BoxUnion(R, FList[I]->OutRect());
  return R;
}

void TVectorDrawing::Draw(QPainter& AHDC, const TKRNRect& ARect, int AHorzMargin, int AVertMargin) {
  const int W = std::max(1, ARect.Width() - 2 * AHorzMargin);
  const int H = std::max(1, ARect.Height() - 2 * AVertMargin);
  TKRNBox2d Range = ItemsRange();
  if (FDrawingWidth > 0) {
    Range.MinX() = std::min(Range.MinX(), 0.0);
    Range.MaxX() = std::max(Range.MaxX(), double(FDrawingWidth));
  }
  if (FDrawingHeight > 0) {
    Range.MinY() = std::min(Range.MinY(), 0.0);
    Range.MaxY() = std::max(Range.MaxY(), double(FDrawingHeight));
  }
  TKRNCoordTrans T;
  T.ZoomAll(W, H, Range);
  T.Pan(ARect.Left + AHorzMargin, ARect.Top + AVertMargin);
  Draw(AHDC, T, TKRNRect{ARect.Left + AHorzMargin, ARect.Top + AVertMargin, ARect.Left + AHorzMargin + W,
                         ARect.Top + AVertMargin + H});
}

static int CompareValue(double A, double B, double AEpsilon) {
  if (std::fabs(A - B) <= AEpsilon) return 0;
  return A < B ? -1 : 1;
}

int TVectorDrawing::CompareVersion(double ARefConvertedVersion) const {
  return CompareValue(FConvertedVersion, ARefConvertedVersion, 0.001);
}

int TVectorDrawing::CompareOriVersion(double ARefConvertedVersion) const {
  return CompareValue(FConvertedOriVersion, ARefConvertedVersion, 0.001);
}

void TVectorDrawing::SetVersion(const QString& AValue) {
  FVersion = AValue;
  FConvertedVersion = StrToFloatDef(AValue, 0.0);
}

void TVectorDrawing::SetOriVersion(const QString& AValue) {
  FOriVersion = AValue;
  FConvertedOriVersion = StrToFloatDef(FVersion, 0.0);
}

void TVectorDrawing::SetBackColor(TColor AValue) {
  FBackColor = AValue;
  DoChange();
}

void TVectorDrawing::SetDrawingWidth(int AValue) {
  if (FDrawingWidth == AValue) return;
  FDrawingWidth = AValue;
  DoChange();
}

void TVectorDrawing::SetDrawingHeight(int AValue) {
  if (FDrawingHeight == AValue) return;
  FDrawingHeight = AValue;
  DoChange();
}

void TVectorDrawing::SetRemark(const QString& AValue) {
  FRemark = AValue;
  DoChange();
}

void TVectorDrawing::SetExtData(const QString& AValue) {
  FExtData = AValue;
  DoChange();
}
