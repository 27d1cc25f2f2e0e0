#include "VectorDrawingItem.h"

#include "VectorDrawing.h"
#include "VDIFormat.h"

#include <algorithm>
#include <array>
#include <limits>
#include <vector>

namespace {
struct TRegistry {
  std::vector<TVDIClassInfo> Classes;
  // The place in Classes of each type that fits a byte (a file's type field), or -1.
  std::array<int, 256> ByteTypes;
  int MaxLevel = 0;
  TRegistry() { ByteTypes.fill(-1); }
};
TRegistry& Registry() {
  static TRegistry R;
  return R;
}
}  // namespace

void RegisterVDIClass(const TVDIClassInfo& AInfo) {
  TRegistry& R = Registry();
  for (const TVDIClassInfo& C : R.Classes)
    if (C.ItemType == AInfo.ItemType) return;
  R.Classes.push_back(AInfo);
  if (AInfo.ItemType >= 0 && AInfo.ItemType < int(R.ByteTypes.size()))
    R.ByteTypes[size_t(AInfo.ItemType)] = int(R.Classes.size()) - 1;
  R.MaxLevel = std::max(R.MaxLevel, AInfo.DisplayLevel);
}

const TVDIClassInfo* FindVDIClass(int AType) {
  TRegistry& R = Registry();
  if (AType >= 0 && AType < int(R.ByteTypes.size())) {
    const int Slot = R.ByteTypes[size_t(AType)];
    return Slot < 0 ? nullptr : &R.Classes[size_t(Slot)];
  }
  for (const TVDIClassInfo& C : R.Classes)
    if (C.ItemType == AType) return &C;
  return nullptr;
}

int MaxDisplayLevel() { return Registry().MaxLevel; }

TVectorDrawingItem::TVectorDrawingItem(TVectorDrawing* AOwner) : FOwner(AOwner) {
  if (AOwner) FLayer = AOwner->Layers().CurLayer();
}

TVectorDrawingItem::TVectorDrawingItem(TVectorDrawing* AOwner, int AID, TColor AColor)
    : TVectorDrawingItem(AOwner) {
  FID = AID;
  FColor = AColor;
}

void TVectorDrawingItem::Changed(bool ARebuild) {
  if (ARebuild) ReBuildOutRect();
  if (FOwner) FOwner->DoChange();
}

void TVectorDrawingItem::ReBuildOutRect() {
  BuildOutRect();
  if (FOwner) FOwner->ItemBoxChanged(this);
}

int TVectorDrawingItem::GetSelectedLineStyle(const TKRNCoordTrans& ACoordTrans, int ALineWidth, int ALineStyle) {
  if (ALineWidth < 0 || ACoordTrans.WCTODC(double(ALineWidth)) <= 1) return psDot;
  return ALineStyle;
}

QString TVectorDrawingItem::GetPropValues(TVDEPropType APropType) const {
  switch (APropType) {
    case ptExtData: return FExtData;
    case ptColor: return QString::number(FColor);
    default: return QString();
  }
}

void TVectorDrawingItem::SetPropValues(TVDEPropType APropType, const QString& AValue) {
  if (!GetPropTypes().Contains(APropType)) return;
  if (APropType == ptExtData) SetExtData(AValue);
  else if (APropType == ptColor) SetColor(TColor(StrToInt64(AValue)));
}

void TVectorDrawingItem::Assign(const TVectorDrawingItem& ASource) {
  FColor = ASource.FColor;
  FExtData = ASource.FExtData;
  FOutRect = ASource.FOutRect;
  FTag = ASource.FTag;
  FRelationID = ASource.FRelationID;
  FEnableType = ASource.FEnableType;
  FCurrentScale = ASource.FCurrentScale;
  if (FOwner == ASource.FOwner) FLayer = ASource.FLayer;
}

TVectorDrawingItem* TVectorDrawingItem::Clone(TVectorDrawing* AOwner) const {
  const TVDIClassInfo* Info = FindVDIClass(ItemType());
  TVectorDrawingItem* C = Info->Create(AOwner);
  C->Assign(*this);
  if (!AOwner) {
    C->FID = FID;
  } else if (AOwner == FOwner) {
    C->FID = AOwner->GenID();
  } else if (AOwner->IndexOfID(FID) < 0) {
    C->FID = FID;
    if (AOwner->MaxID() <= FID) AOwner->SetMaxID(FID < std::numeric_limits<int>::max() ? FID + 1 : FID);
  } else {
    C->FID = AOwner->GenID();
  }
  C->OnDelete = OnDelete;
  if (AOwner) AOwner->Add(std::unique_ptr<TVectorDrawingItem>(C));
  return C;
}

void TVectorDrawingItem::SetID(int AID) {
  if (AID == FID) return;
  const int Old = FID;
  FID = AID;
  if (FOwner) FOwner->ItemIDChanged(this, Old);
}

void TVectorDrawingItem::Delete() {
  if (OnDelete) OnDelete(*this);
  if (FOwner) FOwner->Remove(this);
  else delete this;
}

void TVectorDrawingItem::Draw(QPainter& AHDC, const TKRNCoordTrans& ACoordTrans, bool AElasticMode) {
  if (AElasticMode) DrawElastic(AHDC, ACoordTrans);
  else if (FSelected) DrawSelected(AHDC, ACoordTrans);
  else DrawNormal(AHDC, ACoordTrans);
}

TColor TVectorDrawingItem::GetShowColor() const {
  switch (FShowColorType) {
    case sctGray: return 0x808080;
    case sctWhite: return 0xFFFFFF;
    default: return FColor;
  }
}

void TVectorDrawingItem::SetColor(TColor AValue) {
  if (FColor == AValue) return;
  FColor = AValue;
  Changed(false);
}

void TVectorDrawingItem::SetExtData(const QString& AValue) {
  if (FExtData == AValue) return;
  FExtData = AValue;
  Changed(false);
}

void TVectorDrawingItem::SetLayer(TLayer* ALayer) {
  if (ALayer == FLayer) return;
  if (!FOwner || FOwner->Layers().IndexOf(ALayer) < 0) throw Exception(QStringLiteral("指定的图层不存在"));
  FLayer = ALayer;
  Changed(false);
}

void TVectorDrawingItem::SetSelected(bool AValue) {
  if (AValue == FSelected) return;
  if (!FOwner) {
    FSelected = AValue;
    return;
  }
  if (AValue) FOwner->SelSet().Add(this);
  else FOwner->SelSet().Remove(this);
}

void TVectorDrawingItem::SetVisible(bool AValue) {
  if (AValue == FVisible) return;
  FVisible = AValue;
  if (FOwner) FOwner->DoChange();
}

void RegisterLineClasses();
void RegisterTextClasses();
void RegisterPointClasses();
void RegisterHatchClasses();

void RegisterDrawingItemClasses() {
  static const bool Done = [] {
    RegisterHatchClasses();
    RegisterLineClasses();
    RegisterPointClasses();
    RegisterTextClasses();
    return true;
  }();
  (void)Done;
}

void RaiseCoordDataMismatch(const TVectorDrawingItem& AItem) {
  throw EVDEError(QStringLiteral("图元%1的坐标数据类型不符").arg(AItem.ID()));
}
