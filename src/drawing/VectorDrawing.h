#pragma once
// The drawing document: an ordered list of items in world coordinates, layers, a
// selection set, a page size, a background colour and two free texts. It owns its
// items and layers and nothing of the screen: every draw call gets the painter and
// the view transform to use. Every model change counts on FChangeCount and asks for
// a repaint, held back inside an update bracket.

#include "ItemIDMap.h"
#include "VectorDrawingItem.h"

#include <QString>

#include <bitset>
#include <functional>
#include <limits>
#include <memory>
#include <vector>

class TVectorDrawing;
class TLayers;
class TStream;
class TVDItemIndex;
class IXMLNode;
class TVDReader;
class TVDWriter;

enum TVDSaveFormat { sfBin = 0, sfXML = 1 };
// An empty set means every type.
using TDrawingItemTypeSet = std::bitset<256>;

using TProcedureEvent = std::function<void()>;
using TItemChangedEvent = std::function<void(int AID)>;
// Enters with AAccept true; a handler may veto.
using TVDAcceptItemEvent = std::function<void(TVectorDrawing& ASender, TVectorDrawingItem& AItem, bool& AAccept)>;

class TLayer {
public:
  TLayer(TLayers* AOwner, int AID, const QString& AName, TColor AColor, bool AVisible)
      : FColor(AColor), FID(AID), FName(AName), FOwner(AOwner), FVisible(AVisible) {}
  TColor Color() const { return FColor; }
  int ID() const { return FID; }
  const QString& Name() const { return FName; }
  bool Visible() const { return FVisible; }
  // Each counts one change when the value differs (names ignoring case).
  void SetColor(TColor AValue);
  void SetName(const QString& AValue);
  void SetVisible(bool AValue);
  void SetID(int AID) { FID = AID; }
  // Makes this layer current; no change is counted.
  void SetAsCurLayer();

private:
  TColor FColor;
  int FID;
  QString FName;
  TLayers* FOwner;
  bool FVisible;
};

// Layer 0 ("0", white, visible) stands at index 0 and cannot be removed.
class TLayers {
public:
  explicit TLayers(TVectorDrawing* AOwner);
  TLayers(const TLayers&) = delete;
  TLayers& operator=(const TLayers&) = delete;

  // The existing layer of that name (ignoring case), or a new one with ID 1 + the largest.
  TLayer* Add(const QString& AName);
  // Raises "0层不能被删除" for index 0 and "图层已经存在图元，不能被删除" for a layer in use.
  void Delete(int AIndex);
  int Remove(TLayer* ALayer);
  // Deletes from the last down to index 1.
  void Clear();
  int IndexOf(const TLayer* ALayer) const;
  int Count() const { return int(FList.size()); }
  TLayer* Items(int AIndex) const { return FList[size_t(AIndex)].get(); }
  TLayer* GetItemByID(int AID) const;
  TLayer* GetItemByName(const QString& AName) const;
  TLayer* CurLayer() const { return FCurLayer; }
  void SetCurLayer(TLayer* ALayer) { FCurLayer = ALayer; }
  TVectorDrawing* Owner() const { return FOwner; }

  // For loaders: appends a layer as read, without counting a change.
  TLayer* AppendRaw(int AID, const QString& AName, TColor AColor, bool AVisible);
  void ClearRaw();
  // After a load: layer 0 at index 0, and current.
  void Repair();
  void LoadFromStream(TVDReader& AReader);
  void SaveToStream(TVDWriter& AWriter) const;
  void LoadFromXMLNode(IXMLNode& ANode);
  void SaveToXMLNode(IXMLNode& ANode) const;

private:
  TLayer* FCurLayer = nullptr;
  std::vector<std::unique_ptr<TLayer>> FList;
  TVectorDrawing* FOwner;
};

// Not owning; an item is in the list exactly when its Selected flag is set.
class TVectorDrawingSelSet {
public:
  explicit TVectorDrawingSelSet(TVectorDrawing* AOwner) : FOwner(AOwner) {}
  // Asks the drawing's OnSelSetChanging first.
  void Add(TVectorDrawingItem* AItem);
  void Remove(TVectorDrawingItem* AItem);
  void Delete(int AIndex);
  void Clear();
  int IndexOf(const TVectorDrawingItem* AItem) const;
  int Count() const { return int(FList.size()); }
  TVectorDrawingItem* Items(int AIndex) const { return FList[size_t(AIndex)]; }
  void SetItems(int AIndex, TVectorDrawingItem* AItem) { FList[size_t(AIndex)] = AItem; }

private:
  std::vector<TVectorDrawingItem*> FList;
  TVectorDrawing* FOwner;
};

class TVectorDrawing {
public:
  static constexpr const char* CurrentVersion = "2.2";

  explicit TVectorDrawing(TProcedureEvent AOnSelSetChanged = nullptr);
  ~TVectorDrawing();
  TVectorDrawing(const TVectorDrawing&) = delete;
  TVectorDrawing& operator=(const TVectorDrawing&) = delete;

  // An ID already in use is replaced from FMaxID; an item without a layer of this
  // drawing gets layer 0. Returns the list index.
  int Add(std::unique_ptr<TVectorDrawingItem> AItem);
  // Add at AIndex (clamped to the list), so an undo puts an item back where it was.
  int Insert(int AIndex, std::unique_ptr<TVectorDrawingItem> AItem);
  // Takes the item out of the list (and the selection) and hands it over; counted
  // and reported as a deletion.
  std::unique_ptr<TVectorDrawingItem> Extract(int AIndex);
  void Delete(int AIndex);
  void Remove(TVectorDrawingItem* AItem);
  void Clear();
  void Initialize(bool ANewFlag);
  int Count() const { return int(FList.size()); }
  TVectorDrawingItem* Items(int AIndex) const { return FList[size_t(AIndex)].get(); }
  int IndexOf(const TVectorDrawingItem* AItem) const;
  int IndexOfID(int AID) const;
  // Through a hash index: O(1) unless IDs were changed behind the drawing's back.
  TVectorDrawingItem* ItemByID(int AID) const;
  // Called by an item of this drawing whose ID changes.
  void ItemIDChanged(TVectorDrawingItem* AItem, int AOldID);
  // Called by an item whose box was rebuilt: the spatial index takes it again.
  void ItemBoxChanged(TVectorDrawingItem* AItem);
  // The items whose boxes meet ABox (touching counts), in list order.
  std::vector<TVectorDrawingItem*> ItemsInBox(const TKRNBox2d& ABox);
  // Off: every query walks the list instead of asking the spatial index. The answers are
  // the same; tests and benchmarks compare the two.
  void SetUseSpatialIndex(bool AValue) { FUseIndex = AValue; }
  int GenID() { return FMaxID < std::numeric_limits<int>::max() ? ++FMaxID : FMaxID; }
  int MaxID() const { return FMaxID; }
  void SetMaxID(int AValue) { FMaxID = AValue; }
  // 1 + the largest item ID, 0 without items.
  void RecalcMaxID();
  // The same, from the largest ID a loader saw (-1 without items).
  void SetMaxIDAbove(int ALargestID);

  void BeginUpdate() { ++FUpdateCount; }
  void EndUpdate();
  void Notify();
  // The one step of every model change: count it, then ask for a repaint.
  void DoChange();
  // The selection step: at once outside an update bracket, else held back.
  void SelSetChanged();

  // Newest item first; ASelItemTypeSet empty means every type.
  TVectorDrawingItem* HitTest(const TKRNVector2d& AHitPt, double ATol,
                              const TDrawingItemTypeSet& ASelItemTypeSet = {});
  // The same walk with the geometric test before the veto.
  TVectorDrawingItem* SnapDrawingItem(const TKRNVector2d& AHitPt, double ATol,
                                      const TDrawingItemTypeSet& ASelItemTypeSet = {});
  // Flips the selection of what the click or box reaches; false in every case.
  bool HitSelect(int AShift, const TKRNVector2d& AStartPt, const TKRNVector2d& AEndPt, double ATol,
                 const TDrawingItemTypeSet& ASelItemTypeSet = {});

  bool CalcDrawingRange(const TKRNCoordTrans& ACoordTrans, const TKRNRect& ARect, TKRNBox2d& ADrawingRange) const;
  // Background, then each display level, then the selected items on top.
  void Draw(QPainter& AHDC, const TKRNCoordTrans& ACoordTrans, const TKRNRect& ARect);
  // The whole drawing fitted into ARect less the margins.
  void Draw(QPainter& AHDC, const TKRNRect& ARect, int AHorzMargin, int AVertMargin);
  // The union of the items' boxes, zero on an empty drawing.
  TKRNBox2d ItemsRange() const;

  int CompareVersion(double ARefConvertedVersion) const;
  int CompareOriVersion(double ARefConvertedVersion) const;
  const QString& Version() const { return FVersion; }
  void SetVersion(const QString& AValue);
  double ConvertedVersion() const { return FConvertedVersion; }
  const QString& OriVersion() const { return FOriVersion; }
  // Stores the string, then converts FVersion (not the string) back into the version number it stood for.
  void SetOriVersion(const QString& AValue);

  TColor BackColor() const { return FBackColor; }
  void SetBackColor(TColor AValue);
  int DrawingWidth() const { return FDrawingWidth; }
  void SetDrawingWidth(int AValue);
  int DrawingHeight() const { return FDrawingHeight; }
  void SetDrawingHeight(int AValue);
  const QString& Remark() const { return FRemark; }
  void SetRemark(const QString& AValue);
  const QString& ExtData() const { return FExtData; }
  void SetExtData(const QString& AValue);
  TLayers& Layers() { return *FLayers; }
  const TLayers& Layers() const { return *FLayers; }
  TVectorDrawingSelSet& SelSet() { return *FSelSet; }
  qintptr Tag() const { return FTag; }
  void SetTag(qintptr AValue) { FTag = AValue; }
  bool AutoCancelSel() const { return FAutoCancelSel; }
  void SetAutoCancelSel(bool AValue) { FAutoCancelSel = AValue; }
  bool Modified() const { return FChangeCount > 0; }
  int ChangeCount() const { return FChangeCount; }
  // Counts every change and every raw append and never goes back: caches of the
  // drawing's geometry compare it.
  quint64 Revision() const { return FRevision; }
  void SetChangeCount(int AValue) { FChangeCount = AValue; }
  int UpdateCount() const { return FUpdateCount; }

  TItemChangedEvent OnItemAdded;
  TItemChangedEvent OnItemDeleted;
  TProcedureEvent OnSelSetChanged;
  TProcedureEvent OnUpdateDrawing;
  TVDAcceptItemEvent OnSelSetChanging;
  TVDAcceptItemEvent OnBeforeHitTestItem;

  // For loaders: appends without Add's checks and events.
  void AppendRaw(TVectorDrawingItem* AItem);

  // The file forms. A load clears the drawing first and raises EVDEError on bad input,
  // leaving what was read; the update bracket is closed on every path. A save sets the
  // change count to 0: binary at the stream's position, XML replacing its content.
  bool SaveToStream(TStream& AStream, TVDSaveFormat ASaveFormat = sfBin, bool AOnlySelItems = false);
  bool SaveToFile(const QString& AFileName, TVDSaveFormat ASaveFormat = sfBin, bool AOnlySelItems = false);
  bool LoadFromStream(TStream& AStream);
  // A drawing file larger than this is refused as too large.
  static constexpr qint64 MaxFileBytes = qint64(512) << 20;
  // Detects the form by "<?xml" at the stream's position.
  bool LoadFromStream(TStream& AStream, TVDSaveFormat& ASaveFormat);
  bool LoadFromFile(const QString& AFileName);
  bool LoadFromFile(const QString& AFileName, TVDSaveFormat& ASaveFormat);
  void SaveToXMLNode(IXMLNode& ANode, bool AOnlySelItems = false) const;
  // Through the binary form with all items: IDs carry over.
  void Assign(const TVectorDrawing& ASource);

private:
  void IndexID(TVectorDrawingItem* AItem) { FIDIndex.Set(AItem->ID(), AItem); }
  void UnindexID(const TVectorDrawingItem* AItem);
  void LoadBinary(TStream& AStream);
  void LoadXML(TStream& AStream);
  void LoadXMLHeader(IXMLNode& ARoot);
  void SaveXMLHeader(IXMLNode& ANode) const;
  void LoadXMLItem(IXMLNode& ANode);
  std::vector<TVectorDrawingItem*> ItemsToSave(bool AOnlySelItems) const;
  bool Accepts(const TVDAcceptItemEvent& AEvent, TVectorDrawingItem& AItem);
  static bool InTypeSet(const TDrawingItemTypeSet& ASet, int AType) { return ASet.none() || ASet.test(size_t(AType)); }

  TColor FBackColor = 0;
  int FChangeCount = 0;
  quint64 FRevision = 0;
  int FDrawingHeight = 0;
  int FDrawingWidth = 0;
  QString FExtData;
  std::unique_ptr<TLayers> FLayers;
  std::vector<std::unique_ptr<TVectorDrawingItem>> FList;
  mutable TItemIDMap FIDIndex;
  std::unique_ptr<TVDItemIndex> FIndex;
  bool FUseIndex = true;
  std::vector<TVectorDrawingItem*> HitCandidates(const TKRNVector2d& AHitPt, double ATol);
  // List positions from AFrom on are written into the items again.
  void Renumber(size_t AFrom);
  int FMaxID = 0;
  QString FRemark;
  std::unique_ptr<TVectorDrawingSelSet> FSelSet;
  bool FSelSetChanged = false;
  qintptr FTag = 0;
  int FUpdateCount = 0;
  QString FVersion;
  double FConvertedVersion = 0;
  QString FOriVersion;
  double FConvertedOriVersion = 0;
  bool FAutoCancelSel = false;
};
