#pragma once
// Draw sets, their bars and params as objects over the three client datasets. Every
// setter writes through to its row at once; the datasets' change logs are what goes
// to the data server on save.

#include "Classes.h"
#include "ClientDataSet.h"

#include <QString>
#include <QVector>

#include <memory>
#include <vector>

class IDrawingsDataSvr;
class TDrawSet;
class TDrawSets;
class TDrawSetBars;
class TDrawSetParams;

class TDrawSetInfoHandler {
public:
  // "12,7": decimal numbers joined by ",", no blanks.
  static QString MakeBarVDID(const QVector<int>& AIDArray);
  // The reverse; blanks around the numbers are allowed. Raises EConvertError.
  static QVector<int> ParseBarVDID(const QString& ABarVDID);
};

class TDrawSetBar {
public:
  TDrawSetBar(TDrawSetBars* AOwner, int ADrawSetID, int ABarID, int ABarPicID, const QString& ABarNum,
              const QString& ABarVDID, int ABarInfoVDID, const QString& ABarInfo, const QString& ABarRemark,
              TClientDataSet* ABarDS);

  TDrawSetBars* Owner() const { return FOwner; }
  int DrawSetID() const { return FDrawSetID; }
  int BarID() const { return FBarID; }
  int BarPicID() const { return FBarPicID; }
  const QString& BarNum() const { return FBarNum; }
  const QString& BarVDID() const { return FBarVDID; }
  int BarInfoVDID() const { return FBarInfoVDID; }
  const QString& BarInfo() const { return FBarInfo; }
  const QString& BarRemark() const { return FBarRemark; }

  void SetBarPicID(int AValue);
  void SetBarNum(const QString& AValue);
  void SetBarVDID(const QString& AValue);
  void SetBarInfoVDID(int AValue);
  void SetBarInfo(const QString& AValue);  // no-op when equal without case after trimming
  void SetBarRemark(const QString& AValue);
  QString CalcProgram() const;
  void SetCalcProgram(const QString& AValue);
  int OrderNum() const;
  void SetOrderNum(int AValue);

  // The item list is parsed when first asked for: a damaged "BarVDID" raises
  // EConvertError in the event that asks, not when the draw set loads.
  void AddVDID(int AVDID);
  void DeleteVDID(int AVDID);
  bool HasVDID(int AVDID) const { return VDIDs().contains(AVDID); }
  int GetVDIDByIndex(int AIndex) const;
  int VDIDCount() const { return VDIDs().size(); }
  const QVector<int>& VDIDs() const;

private:
  bool LocateRow() const;
  void WriteField(const QString& AField, const QString& AText);
  QString ReadField(const QString& AField) const;

  TDrawSetBars* FOwner;
  int FDrawSetID;
  int FBarID;
  int FBarPicID;
  QString FBarNum;
  QString FBarVDID;
  mutable QVector<int> FVDIDs;
  mutable bool FVDIDsParsed = false;
  int FBarInfoVDID;
  TClientDataSet* FBarDS;
  QString FBarInfo;
  QString FBarRemark;
};

class TDrawSetBars {
public:
  TDrawSetBars(TDrawSet* AOwner, TClientDataSet* ABarDS);
  TDrawSet* Owner() const { return FOwner; }
  TClientDataSet* BarDS() const { return FBarDS; }

  TDrawSetBar* Add(int ADrawSetID, int ABarID, int ABarPicID, const QString& ABarNum, const QString& ABarVDID,
                   int ABarInfoVDID, const QString& ABarInfo, const QString& ABarRemark, bool AChangeDS);
  void Delete(int AIndex, bool AChangeDS, bool ARebuildIndex = true);
  void DeleteByID(int ADrawSetID, int ABarID, bool AChangeDS);
  void Clear(bool AChangeDS);
  int Count() const { return static_cast<int>(FList.size()); }
  TDrawSetBar* GetItems(int AIndex) const;
  TDrawSetBar* GetItemByVDID(int AVDID) const;
  TDrawSetBar* GetItemByInfoVDID(int AVDID) const;
  TDrawSetBar* GetItemByOrdNum(int AOrdNum) const;
  int GetMaxBarID(int ADrawSetID) const;

  // Fills the list from the rows of ADrawSetID without touching the dataset.
  void ReadFromDataSet(int ADrawSetID);

private:
  TDrawSet* FOwner;
  std::vector<std::unique_ptr<TDrawSetBar>> FList;
  TClientDataSet* FBarDS;
};

class TDrawSetParam {
public:
  TDrawSetParam(TDrawSetParams* AOwner, int ADrawSetID, int AParamID, int AParamVDID, const QString& AParamCode,
                int ADataType, TClientDataSet* AParamDS);

  TDrawSetParams* Owner() const { return FOwner; }
  int DrawSetID() const { return FDrawSetID; }
  int ParamID() const { return FParamID; }
  int ParamVDID() const { return FParamVDID; }
  const QString& ParamCode() const { return FParamCode; }
  int DataType() const { return FDataType; }

  void SetParamVDID(int AValue);
  void SetParamCode(const QString& AValue);
  void SetDataType(int AValue);
  QString ValidateExpr() const;
  void SetValidateExpr(const QString& AValue);
  QString InvalidMsg() const;
  void SetInvalidMsg(const QString& AValue);
  int OrderNum() const;  // -1 when the row's text is not an integer
  void SetOrderNum(int AValue);
  // The value column is read as "ParamVal" and written as "SetParamVal".
  QString ParamVal() const;
  void SetParamVal(const QString& AValue);
  QString Unit() const;
  void SetUnit(const QString& AValue);

private:
  bool LocateRow() const;
  void WriteField(const QString& AField, const QString& AText);
  QString ReadField(const QString& AField) const;

  TDrawSetParams* FOwner;
  int FDrawSetID;
  int FParamID;
  int FParamVDID;
  QString FParamCode;
  int FDataType;
  TClientDataSet* FParamDS;
};

constexpr int dtUnknowParamType = 32;

class TDrawSetParams {
public:
  TDrawSetParams(TDrawSet* AOwner, TClientDataSet* AParamDS);
  TDrawSet* Owner() const { return FOwner; }
  TClientDataSet* ParamDS() const { return FParamDS; }

  TDrawSetParam* Add(int ADrawSetID, int AParamID, int AParamVDID, const QString& AParamCode, int ADataType,
                     bool AChangeDS);
  void Delete(int AIndex, bool AChangeDS, bool ARebuildIndex = true);
  void DeleteByID(int ADrawSetID, int AParamID, bool AChangeDS);
  void DeleteByVDID(int ADrawSetID, int AParamVDID, bool AChangeDS);
  void Clear(bool AChangeDS);
  int Count() const { return static_cast<int>(FList.size()); }
  TDrawSetParam* GetItems(int AIndex) const;
  TDrawSetParam* GetItemByVDID(int AVDID) const;
  TDrawSetParam* GetItemByOrdNum(int AOrdNum) const;
  TDrawSetParam* FindParam(const QString& AParamCode) const;
  int GetMaxParamID(int ADrawSetID) const;
  bool IsValidParamCode(const QString& ANewCode, QString& AErrMsg, int AParamID) const;

  void ReadFromDataSet(int ADrawSetID);

private:
  TDrawSet* FOwner;
  std::vector<std::unique_ptr<TDrawSetParam>> FList;
  TClientDataSet* FParamDS;
};

// The name rule of params and script variables; empty when the name is good.
QString CheckVariableName(const QString& AName);

class TDrawSet {
public:
  TDrawSet(TDrawSets* AOwner, int AID, const QString& AName, int ATypeID, TClientDataSet* ADataSet,
           TClientDataSet* ABarDS, TClientDataSet* AParamDS);

  TDrawSets* Owner() const { return FOwner; }
  int ID() const { return FID; }
  int TypeID() const { return FTypeID; }
  const QString& Name() const { return FName; }
  TDrawSetBars& Bars() { return *FBars; }
  TDrawSetParams& Params() { return *FParams; }
  const TDrawSetParams& Params() const { return *FParams; }
  TClientDataSet* DataSet() const { return FDataSet; }

  void SetTypeID(int AValue);
  void SetName(const QString& AValue);
  int OrderNum() const;
  void SetOrderNum(int AValue);

  // The drawing blob out of and into the row; the caller rewinds the stream.
  void GetVectorDrawing(TStream& AStream) const;
  void SetVectorDrawing(TStream& AStream);

  void Clear(bool AChangeDS);
  bool Modified() const;

private:
  bool LocateRow() const;
  void WriteField(const QString& AField, const QString& AText);

  TDrawSets* FOwner;
  int FID;
  int FTypeID;
  QString FName;
  std::unique_ptr<TDrawSetBars> FBars;
  std::unique_ptr<TDrawSetParams> FParams;
  TClientDataSet* FDataSet;
  TClientDataSet* FBarDS;
  TClientDataSet* FParamDS;
};

class TDrawSets {
public:
  TDrawSets(TClientDataSet* ADataSet, TClientDataSet* ABarDS, TClientDataSet* AParamDS);

  void SetDataSet(TClientDataSet* ADataSet);
  TDrawSet* Add(int AID, const QString& AName, int ATypeID, bool AChangeDS);
  void Delete(int AIndex, bool AChangeDS, bool ARebuildIndex = true);
  void DeleteByID(int AID, bool AChangeDS);
  void Clear(bool AChangeDS);
  int Count() const { return static_cast<int>(FList.size()); }
  TDrawSet* GetItems(int AIndex) const;
  TDrawSet* GetItemByID(int ADrawSetID) const;
  int MaxID() const;

private:
  std::vector<std::unique_ptr<TDrawSet>> FList;
  TClientDataSet* FDataSet;
  TClientDataSet* FBarDS;
  TClientDataSet* FParamDS;
};

// Sends the deltas of the three datasets in one call. On success the change logs are
// merged; on a refusal the server's message goes to the error box and the logs stay.
// Server errors raise EDataServerError.
bool ApplyChanges(IDrawingsDataSvr& AServer, TClientDataSet& ADrawSetDS, TClientDataSet& ABarDS,
                  TClientDataSet& AParamDS, int ACalcRuleID);
