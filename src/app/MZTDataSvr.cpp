#include "MZTDataSvr.h"

void CheckServerStatus(TServerStatus AStatus, const IAppServer& AServer, const char* AOperation) {
  if (AStatus == S_SERVER_OK)
    return;
  QString Detail = AServer.LastErrorText();
  if (Detail.isEmpty())
    Detail = QStringLiteral("状态码 0x%1").arg(static_cast<quint32>(AStatus), 8, 16, QLatin1Char('0'));
  throw EDataServerError(QStringLiteral("数据服务器调用 %1 失败：%2").arg(QLatin1String(AOperation), Detail), AStatus);
}

namespace DataSvr {

#define DSE_CHECKED_PACKET(Server, Call, Name) \
  TDataPacket P;                               \
  CheckServerStatus(Server.Call, Server, Name); \
  return P

TDataPacket GetDrawSetTypes(IDrawingsDataSvr& S) { DSE_CHECKED_PACKET(S, GetDrawSetTypes(P), "GetDrawSetTypes"); }
TDataPacket GetDrawSets(IDrawingsDataSvr& S) { DSE_CHECKED_PACKET(S, GetDrawSets(P), "GetDrawSets"); }
TDataPacket GetDrawSetBars(IDrawingsDataSvr& S, int ADrawSetID) {
  DSE_CHECKED_PACKET(S, GetDrawSetBars(ADrawSetID, P), "GetDrawSetBars");
}
TDataPacket GetDrawSetParams(IDrawingsDataSvr& S, int ADrawSetID, int ACalcRuleID) {
  DSE_CHECKED_PACKET(S, GetDrawSetParams(ADrawSetID, ACalcRuleID, P), "GetDrawSetParams");
}

bool SaveDrawSets(IDrawingsDataSvr& S, const TDrawSetDeltas& ADeltas, int ACalcRuleID, QString& AErrMsg) {
  bool Result = false;
  AErrMsg.clear();
  CheckServerStatus(S.SaveDrawSets(ADeltas, ACalcRuleID, nullptr, AErrMsg, Result), S, "SaveDrawSets");
  return Result;
}

TDataPacket GetBarClasses(IMZTBarInfoDataSvr& S) { DSE_CHECKED_PACKET(S, GetBarClasses(P), "GetBarClasses"); }
TDataPacket GetBarPicParams(IMZTBarInfoDataSvr& S, int ABarPicID) {
  DSE_CHECKED_PACKET(S, GetBarPicParams(ABarPicID, P), "GetBarPicParams");
}
TDataPacket GetBarPics(IMZTBarInfoDataSvr& S) { DSE_CHECKED_PACKET(S, GetBarPics(P), "GetBarPics"); }
int GetMaxBarPicID(IMZTBarInfoDataSvr& S) {
  int Max = -1;
  CheckServerStatus(S.GetMaxBarPicID(Max), S, "GetMaxBarPicID");
  return Max;
}
TDataPacket GetBendTypes(IMZTBarInfoDataSvr& S) { DSE_CHECKED_PACKET(S, GetBendTypes(P), "GetBendTypes"); }
TDataPacket GetHookTypes(IMZTBarInfoDataSvr& S) { DSE_CHECKED_PACKET(S, GetHookTypes(P), "GetHookTypes"); }
TDataPacket GetCustomBarPicTypes(IMZTBarInfoDataSvr& S) {
  DSE_CHECKED_PACKET(S, GetCustomBarPicTypes(P), "GetCustomBarPicTypes");
}

#undef DSE_CHECKED_PACKET

}  // namespace DataSvr
