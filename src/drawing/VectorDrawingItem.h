#pragma once
// The abstract drawing item: identity, colour, layer, block and relation numbers,
// the cached bounding box, selection and visibility, and the virtual operations
// every item class supplies. Also the geometry snapshots used by undo, and the
// process-wide registry from item type to class.

#include "KRNDrawFunc2d.h"
#include "KRNGeo2DTypes.h"
#include "KRNPolygon2d.h"
#include "SysUtils.h"

#include <QString>

#include <functional>
#include <memory>

class QPainter;
class TVectorDrawing;
class TVDReader;
class TVDWriter;
class TVDXMLOut;
class IXMLNode;
class TLayer;
class IVDIVisitor;

enum TShowColorType { sctOriginal, sctWhite, sctGray };

enum TVDEPropType {
  ptExtData, ptColor, ptPointSize, ptPointStyle, ptLineWidth, ptLineStyle, ptStartMarkStyle, ptEndMarkStyle,
  ptStartMarkSize, ptEndMarkSize, ptFillStyle, ptText, ptFontName, ptFontHeight, ptFontStyle, ptTransparent,
  ptTextBackColor, ptHorzAlignment, ptVertAlignment
};

// A set of property types as bits.
class TVDEPropTypeSet {
public:
  TVDEPropTypeSet() = default;
  TVDEPropTypeSet(std::initializer_list<TVDEPropType> ATypes) {
    for (const TVDEPropType T : ATypes) FBits |= 1u << T;
  }
  bool Contains(TVDEPropType T) const { return FBits & (1u << T); }
  TVDEPropTypeSet& operator+=(const TVDEPropTypeSet& A) {
    FBits |= A.FBits;
    return *this;
  }
  bool operator==(const TVDEPropTypeSet& A) const { return FBits == A.FBits; }
  bool IsEmpty() const { return FBits == 0; }

private:
  quint32 FBits = 0;
};

// Item type numbers, also those of the file forms.
enum TVDIItemType : quint8 {
  itPoint = 0, itText = 1, itLine = 2, itArc = 3, itHatch = 4, itCircle = 5, itPolyline = 6, itHatchM = 8,
  itComment = 9, itVPBorder = 10
};

// A snapshot of an item's geometry, taken before an edit and given back on undo.
class TVDICoordData {
public:
  explicit TVDICoordData(int AID) : FID(AID) {}
  virtual ~TVDICoordData() = default;
  int FID;
};

class TVDILineCoordData : public TVDICoordData {
public:
  TVDILineCoordData(int AID, TKRNPtr<TKRNCustomLine2d> ALine) : TVDICoordData(AID), FLine(std::move(ALine)) {}
  TKRNPtr<TKRNCustomLine2d> FLine;
};

class TVDIArcCoordData : public TVDICoordData {
public:
  TVDIArcCoordData(int AID, const TKRNArc2d& AArc) : TVDICoordData(AID), FArc(AArc) {}
  TKRNArc2d FArc;
};

class TVDIPolylineCoordData : public TVDICoordData {
public:
  TVDIPolylineCoordData(int AID, std::unique_ptr<TKRNLines2d> APolyline)
      : TVDICoordData(AID), FPolyline(std::move(APolyline)) {}
  std::unique_ptr<TKRNLines2d> FPolyline;
};

class TVDIPointCoordData : public TVDICoordData {
public:
  TVDIPointCoordData(int AID, const TKRNVector2d& AInsertPt) : TVDICoordData(AID), FInsertPt(AInsertPt) {}
  TKRNVector2d FInsertPt;
};

class TVDICircleCoordData : public TVDICoordData {
public:
  TVDICircleCoordData(int AID, const TKRNVector2d& ACenterPt, double ARadius)
      : TVDICoordData(AID), FCenterPt(ACenterPt), FRadius(ARadius) {}
  TKRNVector2d FCenterPt;
  double FRadius;
};

class TVDITextCoordData : public TVDICoordData {
public:
  TVDITextCoordData(int AID, double AAngle, const TKRNVector2d& AInsertPt)
      : TVDICoordData(AID), FAngle(AAngle), FInsertPt(AInsertPt) {}
  double FAngle;
  TKRNVector2d FInsertPt;
};

class TVDIHatchCoordData : public TVDICoordData {
public:
  TVDIHatchCoordData(int AID, std::unique_ptr<TKRNPolygon2d> APoly) : TVDICoordData(AID), FXPoly(std::move(APoly)) {}
  std::unique_ptr<TKRNPolygon2d> FXPoly;
};

class TVectorDrawingItem : public TKRNArenaObject {
public:
  explicit TVectorDrawingItem(TVectorDrawing* AOwner);
  TVectorDrawingItem(TVectorDrawing* AOwner, int AID, TColor AColor);
  virtual ~TVectorDrawingItem() = default;
  TVectorDrawingItem(const TVectorDrawingItem&) = delete;
  TVectorDrawingItem& operator=(const TVectorDrawingItem&) = delete;

  virtual void BuildOutRect() = 0;
  virtual void DrawElastic(QPainter& AHDC, const TKRNCoordTrans& ACoordTrans) = 0;
  virtual void DrawNormal(QPainter& AHDC, const TKRNCoordTrans& ACoordTrans) = 0;
  // Colour 0xFF0000 whatever the show colour.
  virtual void DrawSelected(QPainter& AHDC, const TKRNCoordTrans& ACoordTrans) = 0;
  virtual int GetGripCount() const = 0;
  virtual TKRNVector2d GetGrips(int AIndex) const = 0;
  virtual TVDEPropTypeSet GetPropTypes() const { return {ptExtData, ptColor}; }
  // Empty for a type the class does not offer.
  virtual QString GetPropValues(TVDEPropType APropType) const;
  // Ignores a type outside GetPropTypes; numbers convert strictly (EConvertError).
  virtual void SetPropValues(TVDEPropType APropType, const QString& AValue);
  // Copies the shared fields; the layer only between items of one drawing.
  virtual void Assign(const TVectorDrawingItem& ASource);
  virtual void Accept(IVDIVisitor& AVisitor) = 0;
  // The same dispatch for a visitor that only reads: nothing is rebuilt or counted.
  virtual void Inspect(IVDIVisitor& AVisitor) = 0;
  virtual std::unique_ptr<TVDICoordData> CreateCoordData() const = 0;
  // Raises EVDEError for a record of another item kind.
  virtual void SetCoordData(const TVDICoordData& ACoordData) = 0;
  virtual int DisplayLevel() const = 0;
  virtual int ItemType() const = 0;
  virtual bool HasTextAttr() const { return ItemType() == itText; }
  // Point case when the two points meet; a window when drawn left to right, else crossing.
  virtual bool HitSelect(const TKRNVector2d& AStartPt, const TKRNVector2d& AEndPt, double ATol) = 0;
  virtual bool HitTest(const TKRNVector2d& AHitPt, double ATol) = 0;
  virtual bool Pastable() const { return true; }
  // The file forms: the header of every item, then the class part.
  virtual void ReadFromStream(TVDReader& AReader);
  virtual void WriteToStream(TVDWriter& AWriter) const;
  virtual void ReadFromXMLNode(IXMLNode& ANode);
  virtual void WriteXMLAttributes(TVDXMLOut& AOut) const;
  // The attributes, then the text (ExtData) of the item's element.
  void WriteToXML(TVDXMLOut& AOut) const;
  // Read, then rebuild the box.
  void LoadFromStream(TVDReader& AReader);
  void LoadFromXMLNode(IXMLNode& ANode);

  // A copy of the same class. Without an owner it keeps the ID; into its own drawing
  // it takes a new one; into another drawing it keeps a free ID. Added to AOwner.
  TVectorDrawingItem* Clone(TVectorDrawing* AOwner) const;
  std::unique_ptr<TVectorDrawingItem> DetachedClone() const { return std::unique_ptr<TVectorDrawingItem>(Clone(nullptr)); }
  // Calls OnDelete, then leaves the owner (which frees it), or frees itself.
  void Delete();
  void Draw(QPainter& AHDC, const TKRNCoordTrans& ACoordTrans, bool AElasticMode);
  void ReBuildOutRect();
  TColor GetShowColor() const;

  int ID() const { return FID; }
  // Keeps the owner's ID index up to date.
  void SetID(int AID);
  TColor Color() const { return FColor; }
  void SetColor(TColor AValue);
  const QString& ExtData() const { return FExtData; }
  void SetExtData(const QString& AValue);
  TLayer* Layer() const { return FLayer; }
  // Raises Exception "指定的图层不存在" for a layer not in the owner's list.
  void SetLayer(TLayer* ALayer);
  TVectorDrawing* Owner() const { return FOwner; }
  void SetOwner(TVectorDrawing* AOwner) { FOwner = AOwner; }
  bool Selected() const { return FSelected; }
  void SetSelected(bool AValue);
  bool Visible() const { return FVisible; }
  void SetVisible(bool AValue);
  const TKRNBox2d& OutRect() const { return FOutRect; }
  qintptr Tag() const { return FTag; }
  void SetTag(qintptr AValue) { FTag = AValue; }
  int RelationID() const { return FRelationID; }
  void SetRelationID(int AValue) { FRelationID = AValue; }
  const QString& BlockName() const { return FBlockName; }
  void SetBlockName(const QString& AValue) { FBlockName = AValue; }
  int BlockTypeID() const { return FBlockTypeID; }
  void SetBlockTypeID(int AValue) { FBlockTypeID = AValue; }
  int BlockID() const { return FBlockID; }
  void SetBlockID(int AValue) { FBlockID = AValue; }
  int EnableType() const { return FEnableType; }
  void SetEnableType(int AValue) { FEnableType = AValue; }
  double CurrentScale() const { return FCurrentScale; }
  void SetCurrentScale(double AValue) { FCurrentScale = AValue; }
  TShowColorType ShowColorType() const { return FShowColorType; }
  void SetShowColorType(TShowColorType AValue) { FShowColorType = AValue; }
  std::function<void(TVectorDrawingItem&)> OnDelete;

  // Set by the selection set only.
  void SetSelectedFlag(bool AValue) { FSelected = AValue; }
  // For the drawing and loaders: no check, no change counted.
  void SetLayerRaw(TLayer* ALayer) { FLayer = ALayer; }

protected:
  // Every setter ends here: rebuild the box when asked, count a change on the owner.
  void Changed(bool ARebuild);
  // For the selected style: dotted when the line is at most one pixel wide.
  static int GetSelectedLineStyle(const TKRNCoordTrans& ACoordTrans, int ALineWidth, int ALineStyle);

  // The small fields first, side by side: a drawing holds a great many items.
  TColor FColor = 0;
  int FID = 0;
  int FRelationID = -1;
  int FBlockTypeID = -1;
  int FBlockID = -1;
  int FEnableType = 0;
  TShowColorType FShowColorType = sctOriginal;
  bool FSelected = false;
  bool FVisible = true;

private:
  friend class TVectorDrawing;
  friend class TVDItemIndex;
  bool FInIndex = false;
  // Kept by the drawing: the place in its list, and the box its spatial index holds.
  int FListIndex = -1;
  int FDirtySlot = -1;

protected:
  QString FExtData;
  TLayer* FLayer = nullptr;
  TVectorDrawing* FOwner = nullptr;
  qintptr FTag = 0;
  QString FBlockName;
  double FCurrentScale = 1.0;
  TKRNBox2d FOutRect{};

private:
  TKRNBox2d FIndexedBox{};
};

// Raised by SetCoordData for a snapshot of another item kind.
[[noreturn]] void RaiseCoordDataMismatch(const TVectorDrawingItem& AItem);

// ---- the class registry -----------------------------------------------------

struct TVDIClassInfo {
  int ItemType;
  int DisplayLevel;
  const char* ClassName;
  TVectorDrawingItem* (*Create)(TVectorDrawing* AOwner);
};

// A second class of the same item type is ignored.
void RegisterVDIClass(const TVDIClassInfo& AInfo);
const TVDIClassInfo* FindVDIClass(int AType);
int MaxDisplayLevel();
// Registers every item class of this module (idempotent).
void RegisterDrawingItemClasses();
