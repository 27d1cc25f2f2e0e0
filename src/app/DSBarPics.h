#pragma once
// The bar picture catalogue: a read-only cache of pictures (drawing and params) that
// fetches each from the data server once, and the chooser's pages worked out without
// a window: which pictures each page lists, in which order, and their labels.

#include "ClientDataSet.h"

#include <QPair>
#include <QString>
#include <QVector>

#include <functional>
#include <memory>
#include <vector>

class IMZTBarInfoDataSvr;
class TVectorDrawing;
class TVectorText;
class TDSBarPics;

class TDSBarPicParam {
public:
  int ID = -1;
  QString Code, ParamUnit;
  int DataType = 32;
  QString ValidateExpr, InvalidMsg;
  bool IsSCPJParam = false;
  TVectorText* DrawingItem = nullptr;  // the param's text on the picture's drawing
};

class TDSBarPic {
public:
  TDSBarPic(TDSBarPics* AOwner, int ABarPicID, const QByteArray& ADrawing, const TDataPacket& AParams);
  ~TDSBarPic();
  TDSBarPics* Owner() const { return FOwner; }
  int BarPicID() const { return FBarPicID; }
  TVectorDrawing& Drawing() { return *FVectorDrawing; }
  int ParamCount() const { return int(FParams.size()); }
  TDSBarPicParam* Params(int AIndex) const { return FParams[size_t(AIndex)].get(); }
  // Without regard to case; null when none.
  TDSBarPicParam* GetItemByCode(const QString& ACode) const;
  TDSBarPicParam* GetItemByID(int AID) const;
  // By the number of its text item.
  TDSBarPicParam* GetItemByVGID(int AVGID) const;

private:
  TDSBarPics* FOwner;
  int FBarPicID;
  std::unique_ptr<TVectorDrawing> FVectorDrawing;
  std::vector<std::unique_ptr<TDSBarPicParam>> FParams;
  std::vector<std::unique_ptr<TVectorText>> FOwnTexts;  // params whose number names no text
};

class TDSBarPics {
public:
  // Fetches the list of all pictures (once).
  explicit TDSBarPics(IMZTBarInfoDataSvr& ASysDataSvr);
  ~TDSBarPics();
  // Loads a picture and its params on the first request; null for an unknown number.
  TDSBarPic* GetItemByID(int ABarPicID);
  int Count() const { return int(FList.size()); }

private:
  IMZTBarInfoDataSvr& FSysDataSvr;
  TClientDataSet FcdsBarPics;
  std::vector<std::unique_ptr<TDSBarPic>> FList;
};

enum TBarPicPage { bppCommon = 0, bppBS = 1, bppSystem = 2, bppHK = 3, bppCustom = 4 };

struct TBarPicPageItem {
  int BarPicID = -1;
  QString ShapeCode;
  int CommonOrder = 0;
};

// (picture number, order) pairs of the user's common list.
using TCommonBarPicList = QVector<QPair<int, int>>;

class TBarPicCatalog {
public:
  // The six datasets of the chooser, fetched in the server's order (7, 12, 1, 4, 4, 17).
  static std::unique_ptr<TBarPicCatalog> Fetch(IMZTBarInfoDataSvr& ASysDataSvr);
  TBarPicCatalog(TDataPacket ABends, TDataPacket AHooks, TDataPacket AClasses, TDataPacket APics,
                 TDataPacket ACustomPics, TDataPacket ACustomTypes);

  // The pictures a page lists. ABend and AHook are dictionary numbers (-1: none chosen);
  // ACustomType the custom type of the tree's node.
  QVector<TBarPicPageItem> Page(TBarPicPage APage, const TCommonBarPicList& ACommon, int ABend = -1, int AHook = -1,
                                int ACustomType = -1) const;
  // "number.name" entries of the bend and hook combos with their numbers.
  QVector<QPair<int, QString>> BendEntries() const { return Entries(FBends); }
  QVector<QPair<int, QString>> HookEntries() const { return Entries(FHooks); }
  QVector<QPair<int, QString>> CustomTypes() const;
  // The picture's drawing blob: the system dataset first, then the custom one.
  QByteArray DrawingOf(int ABarPicID) const;
  // "图号 CODE" in the shape-code regions (3, 9, 10), else "第N号钢筋".
  static QString LabelText(const TBarPicPageItem& AItem);
  static bool ShapeCodeRegion();
  static const QVector<int>& BSPictures();

private:
  static QVector<QPair<int, QString>> Entries(const TDataPacket& ADict);
  TDataPacket FBends, FHooks, FClasses, FPics, FCustomPics, FCustomTypes;
};

// The user's common picture list lives with the host (a library, a user file); without
// one it is kept in memory for the process.
struct TCommonBarPicStore {
  std::function<TCommonBarPicList()> Load;
  std::function<void(const TCommonBarPicList&)> Save;
};
TCommonBarPicStore& CommonBarPicStore();
// The list with APic appended at the last order + 1 (100 for the first), or without it.
TCommonBarPicList AddToCommon(TCommonBarPicList AList, int APic);
TCommonBarPicList RemoveFromCommon(TCommonBarPicList AList, int APic);
