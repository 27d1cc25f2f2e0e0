#include "DSBarPics.h"

#include "Classes.h"
#include "DrawSetConsts.h"
#include "MZTDataSvr.h"
#include "SysUtils.h"
#include "VDIText.h"
#include "VectorDrawing.h"

#include <algorithm>

// ---- cache -------------------------------------------------------------------

TDSBarPic::TDSBarPic(TDSBarPics* AOwner, int ABarPicID, const QByteArray& ADrawing, const TDataPacket& AParams)
    : FOwner(AOwner), FBarPicID(ABarPicID), FVectorDrawing(std::make_unique<TVectorDrawing>()) {
  TBytesStream S(ADrawing);
  S.SetPosition(0);
  if (S.GetSize() > 0) FVectorDrawing->LoadFromStream(S);
  FVectorDrawing->SetTag(ABarPicID);
  const auto Col = [&](const char* AName) { return AParams.FieldIndex(QLatin1String(AName)); };
  const int ID = Col("BarPicParamID"), Code = Col("ParamCode"), Unit = Col("Unit"), Valid = Col("ValidateExpr"),
            Invalid = Col("InvalidMsg"), VDID = Col("ParamVDID"), Type = Col("DataType"), SCPJ = Col("IsSCPJParam");
  for (const TPacketRow& R : AParams.Rows) {
    auto P = std::make_unique<TDSBarPicParam>();
    P->ID = R.Values.value(ID).toInt();
    P->Code = R.Values.value(Code).toString();
    P->ParamUnit = R.Values.value(Unit).toString();
    P->ValidateExpr = R.Values.value(Valid).toString();
    P->InvalidMsg = R.Values.value(Invalid).toString();
    P->DataType = R.Values.value(Type).isNull() ? 32 : R.Values.value(Type).toInt();
    P->IsSCPJParam = R.Values.value(SCPJ).toBool();
    // The param's text: the drawing's item with that number, or a text of its own.
    const int Item = R.Values.value(VDID).toInt();
    P->DrawingItem = dynamic_cast<TVectorText*>(FVectorDrawing->ItemByID(Item));
    if (!P->DrawingItem) {
      auto T = std::make_unique<TVectorText>(nullptr);
      T->SetID(Item);
      P->DrawingItem = T.get();
      FOwnTexts.push_back(std::move(T));
    }
    FParams.push_back(std::move(P));
  }
}

TDSBarPic::~TDSBarPic() = default;

TDSBarPicParam* TDSBarPic::GetItemByCode(const QString& ACode) const {
  for (const auto& P : FParams)
    if (SameText(P->Code, ACode)) return P.get();
  return nullptr;
}

TDSBarPicParam* TDSBarPic::GetItemByID(int AID) const {
  for (const auto& P : FParams)
    if (P->ID == AID) return P.get();
  return nullptr;
}

TDSBarPicParam* TDSBarPic::GetItemByVGID(int AVGID) const {
  for (const auto& P : FParams)
    if (P->DrawingItem && P->DrawingItem->ID() == AVGID) return P.get();
  return nullptr;
}

TDSBarPics::TDSBarPics(IMZTBarInfoDataSvr& ASysDataSvr) : FSysDataSvr(ASysDataSvr) {
  FcdsBarPics.SetData(DataSvr::GetBarPics(ASysDataSvr));
}

TDSBarPics::~TDSBarPics() = default;

TDSBarPic* TDSBarPics::GetItemByID(int ABarPicID) {
  for (const auto& P : FList)
    if (P->BarPicID() == ABarPicID) return P.get();
  if (!FcdsBarPics.Active() || !FcdsBarPics.Locate(QStringLiteral("BarPicID"), {ABarPicID})) return nullptr;
  const QByteArray Blob = FcdsBarPics.FieldByName(QStringLiteral("VectorDrawing")).AsBytes();
  FList.push_back(std::make_unique<TDSBarPic>(this, ABarPicID, Blob, DataSvr::GetBarPicParams(FSysDataSvr, ABarPicID)));
  return FList.back().get();
}

// ---- pages -------------------------------------------------------------------

std::unique_ptr<TBarPicCatalog> TBarPicCatalog::Fetch(IMZTBarInfoDataSvr& S) {
  TDataPacket Bends = DataSvr::GetBendTypes(S);
  TDataPacket Hooks = DataSvr::GetHookTypes(S);
  TDataPacket Classes = DataSvr::GetBarClasses(S);
  TDataPacket Pics = DataSvr::GetBarPics(S);
  TDataPacket Custom = DataSvr::GetBarPics(S);
  TDataPacket Types = DataSvr::GetCustomBarPicTypes(S);
  return std::make_unique<TBarPicCatalog>(std::move(Bends), std::move(Hooks), std::move(Classes), std::move(Pics),
                                          std::move(Custom), std::move(Types));
}

TBarPicCatalog::TBarPicCatalog(TDataPacket ABends, TDataPacket AHooks, TDataPacket AClasses, TDataPacket APics,
                               TDataPacket ACustomPics, TDataPacket ACustomTypes)
    : FBends(std::move(ABends)),
      FHooks(std::move(AHooks)),
      FClasses(std::move(AClasses)),
      FPics(std::move(APics)),
      FCustomPics(std::move(ACustomPics)),
      FCustomTypes(std::move(ACustomTypes)) {
  if (FBends.IsNull() || FHooks.IsNull() || FClasses.IsNull() || FPics.IsNull())
    throw Exception(QStringLiteral("参数数据集为空，选择图形操作被中止"));
}

bool TBarPicCatalog::ShapeCodeRegion() { return RegionCode == 3 || RegionCode == 9 || RegionCode == 10; }

const QVector<int>& TBarPicCatalog::BSPictures() {
  static const QVector<int> L = {1, 601, 946, 536, 64, 132, 544, 833, 523, 705, 486, 947, 949, 903, 944, 945};
  return L;
}

QVector<QPair<int, QString>> TBarPicCatalog::Entries(const TDataPacket& ADict) {
  QVector<QPair<int, QString>> R;
  for (const TPacketRow& Row : ADict.Rows)
    R.push_back({Row.Values.value(0).toInt(), QStringLiteral("%1.%2").arg(Row.Values.value(0).toInt()).arg(Row.Values.value(1).toString())});
  return R;
}

QVector<QPair<int, QString>> TBarPicCatalog::CustomTypes() const {
  QVector<QPair<int, QString>> R;
  for (const TPacketRow& Row : FCustomTypes.Rows) R.push_back({Row.Values.value(0).toInt(), Row.Values.value(1).toString()});
  return R;
}

QVector<TBarPicPageItem> TBarPicCatalog::Page(TBarPicPage APage, const TCommonBarPicList& ACommon, int ABend, int AHook,
                                              int ACustomType) const {
  const TDataPacket& DS = APage == bppCustom ? FCustomPics : FPics;
  const auto Col = [&](const char* AName) { return DS.FieldIndex(QLatin1String(AName)); };
  const int ID = Col("BarPicID"), Type = Col("BarPicTypeID"), Bend = Col("BendTypeID"), Hook = Col("HookTypeID"),
            Order = Col("CommonOrder"), Code = Col("BS2000ShapeCode");
  const auto InCommon = [&](int APic, int& AOrder) {
    for (const auto& [Pic, O] : ACommon)
      if (Pic == APic) {
        AOrder = O;
        return true;
      }
    return false;
  };
  QVector<TBarPicPageItem> Items;
  for (const TPacketRow& R : DS.Rows) {
    const int Pic = R.Values.value(ID).toInt();
    const int CommonOrder = R.Values.value(Order).toInt();
    const QString ShapeCode = R.Values.value(Code).toString();
    int UserOrder = 0;
    const bool UserCommon = InCommon(Pic, UserOrder);
    bool Take = false;
    switch (APage) {
      case bppCommon: Take = CommonOrder > 0 || UserCommon; break;
      case bppBS: Take = BSPictures().contains(Pic); break;
      case bppSystem:
        // Custom pictures (above 10000) come with the same call; they have their own page.
        Take = Pic <= 10000 && ABend >= 0 && AHook >= 0 && R.Values.value(Bend).toInt() == ABend && R.Values.value(Hook).toInt() == AHook &&
               (ShapeCodeRegion() || CommonOrder <= 0) && !UserCommon &&
               !(ShapeCodeRegion() && ShapeCode == QLatin1String("99"));
        break;
      case bppHK: Take = Pic == 948 || Pic == 356; break;
      case bppCustom: Take = Pic > 10000 && R.Values.value(Type).toInt() == ACustomType; break;
    }
    if (!Take) continue;
    if (std::any_of(Items.begin(), Items.end(), [&](const TBarPicPageItem& I) { return I.BarPicID == Pic; })) continue;
    Items.push_back({Pic, ShapeCode, UserCommon ? UserOrder : CommonOrder});
  }
  const auto By = [&](auto AKey) {
    std::stable_sort(Items.begin(), Items.end(), [&](const TBarPicPageItem& A, const TBarPicPageItem& B) { return AKey(A) < AKey(B); });
  };
  if (APage == bppCommon) By([](const TBarPicPageItem& I) { return I.CommonOrder; });
  else if (APage == bppBS) By([](const TBarPicPageItem& I) { return I.ShapeCode; });
  else if (APage == bppSystem || APage == bppCustom) By([](const TBarPicPageItem& I) { return I.BarPicID; });
  return Items;
}

QByteArray TBarPicCatalog::DrawingOf(int ABarPicID) const {
  for (const TDataPacket* DS : {&FPics, &FCustomPics}) {
    const int ID = DS->FieldIndex(QStringLiteral("BarPicID")), Drawing = DS->FieldIndex(QStringLiteral("VectorDrawing"));
    for (const TPacketRow& R : DS->Rows)
      if (R.Values.value(ID).toInt() == ABarPicID) return R.Values.value(Drawing).toByteArray();
  }
  return {};
}

QString TBarPicCatalog::LabelText(const TBarPicPageItem& AItem) {
  return ShapeCodeRegion() ? QStringLiteral("图号 %1").arg(AItem.ShapeCode) : QStringLiteral("第%1号钢筋").arg(AItem.BarPicID);
}

TCommonBarPicStore& CommonBarPicStore() {
  static TCommonBarPicList Memory;
  static TCommonBarPicStore Store{[] { return Memory; }, [](const TCommonBarPicList& A) { Memory = A; }};
  return Store;
}

TCommonBarPicList AddToCommon(TCommonBarPicList AList, int APic) {
  for (const auto& P : AList)
    if (P.first == APic) return AList;
  AList.push_back({APic, AList.isEmpty() ? 100 : AList.last().second + 1});
  return AList;
}

TCommonBarPicList RemoveFromCommon(TCommonBarPicList AList, int APic) {
  AList.erase(std::remove_if(AList.begin(), AList.end(), [APic](const QPair<int, int>& P) { return P.first == APic; }),
              AList.end());
  return AList;
}
