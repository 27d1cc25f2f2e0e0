#pragma once
// The host's data servers as the editor sees them. Each operation returns a status
// code (0 for success); the checked calls below raise EDataServerError on any other
// code, with the server's own error text.

#include "ClientDataSet.h"

#include <QString>

#include <array>
#include <cstdint>

using TServerStatus = std::int32_t;
constexpr TServerStatus S_SERVER_OK = 0;
constexpr TServerStatus E_SERVER_FAIL = -2147467259;  // 0x80004005

class EDataServerError : public Exception {
public:
  EDataServerError(QString AMessage, TServerStatus AStatus) : Exception(std::move(AMessage)), FStatus(AStatus) {}
  TServerStatus Status() const { return FStatus; }

private:
  TServerStatus FStatus;
};

class IAppServer {
public:
  virtual ~IAppServer() = default;
  // The text of the last failed call, for the error raised by the checked calls.
  virtual QString LastErrorText() const = 0;
};

// Element 0 is always Null; 1 draw sets, 2 bars, 3 params; Null where nothing changed.
using TDrawSetDeltas = std::array<TDataPacket, 4>;

class IDrawingsDataSvr : public IAppServer {
public:
  virtual TServerStatus GetDrawSetTypes(TDataPacket& AData) = 0;
  virtual TServerStatus GetDrawSets(TDataPacket& AData) = 0;
  virtual TServerStatus GetDrawSetBars(int ADrawSetID, TDataPacket& AData) = 0;
  virtual TServerStatus GetDrawSetParams(int ADrawSetID, int ACalcRuleID, TDataPacket& AData) = 0;
  // AResult false with AErrMsg is a refusal (the status stays 0); nothing is written then.
  virtual TServerStatus SaveDrawSets(const TDrawSetDeltas& ADeltas, int ACalcRuleID, void* AReserved,
                                     QString& AErrMsg, bool& AResult) = 0;
};

class IMZTBarInfoDataSvr : public IAppServer {
public:
  virtual TServerStatus GetBarClasses(TDataPacket& AData) = 0;                  // position 1
  virtual TServerStatus GetBarPicParams(int ABarPicID, TDataPacket& AData) = 0;  // position 3
  virtual TServerStatus GetBarPics(TDataPacket& AData) = 0;                     // position 4
  virtual TServerStatus GetMaxBarPicID(int& AMaxID) = 0;                        // position 5
  virtual TServerStatus GetBendTypes(TDataPacket& AData) = 0;                   // position 7
  virtual TServerStatus GetHookTypes(TDataPacket& AData) = 0;                   // position 12
  virtual TServerStatus GetCustomBarPicTypes(TDataPacket& AData) = 0;           // position 17
};

// Raises EDataServerError unless AStatus is success.
void CheckServerStatus(TServerStatus AStatus, const IAppServer& AServer, const char* AOperation);

// Checked calls.
namespace DataSvr {
TDataPacket GetDrawSetTypes(IDrawingsDataSvr& S);
TDataPacket GetDrawSets(IDrawingsDataSvr& S);
TDataPacket GetDrawSetBars(IDrawingsDataSvr& S, int ADrawSetID);
TDataPacket GetDrawSetParams(IDrawingsDataSvr& S, int ADrawSetID, int ACalcRuleID);
bool SaveDrawSets(IDrawingsDataSvr& S, const TDrawSetDeltas& ADeltas, int ACalcRuleID, QString& AErrMsg);

TDataPacket GetBarClasses(IMZTBarInfoDataSvr& S);
TDataPacket GetBarPicParams(IMZTBarInfoDataSvr& S, int ABarPicID);
TDataPacket GetBarPics(IMZTBarInfoDataSvr& S);
int GetMaxBarPicID(IMZTBarInfoDataSvr& S);
TDataPacket GetBendTypes(IMZTBarInfoDataSvr& S);
TDataPacket GetHookTypes(IMZTBarInfoDataSvr& S);
TDataPacket GetCustomBarPicTypes(IMZTBarInfoDataSvr& S);
}  // namespace DataSvr
