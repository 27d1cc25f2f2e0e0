#pragma once
// An in-memory draw-set server for tests: three draw sets of two types (and one of an
// unknown type), bars and params of draw set 1, each drawing a small blob; saves are
// recorded, accepted or refused as the test says.

#include "Classes.h"
#include "MZTDataSvr.h"
#include "VDILine.h"
#include "VDIText.h"
#include "VectorDrawing.h"

#include <QByteArray>

class TMemoryDataSvr : public IDrawingsDataSvr, public IMZTBarInfoDataSvr {
public:
  TMemoryDataSvr() {
    Types.AddField(QStringLiteral("DrawSetTypeID"), TFieldType::ftInteger);
    Types.AddField(QStringLiteral("DrawSetTypeName"), TFieldType::ftString);
    Types.AddRow({1, QStringLiteral("梁柱节点")});
    Types.AddRow({2, QStringLiteral("板")});
    Types.AddRow({3, QStringLiteral("空类型")});

    for (const char* F : {"DrawSetID", "DrawSetTypeID", "OrderNum"}) Sets.AddField(QLatin1String(F), TFieldType::ftInteger);
    Sets.AddField(QStringLiteral("DrawSetName"), TFieldType::ftString);
    for (const char* F : {"VectorDrawing_Chs", "VectorDrawing_Bs"}) Sets.AddField(QLatin1String(F), TFieldType::ftBlob);
    Sets.AddRow({1, 1, 1, QStringLiteral("中间节点"), Drawing(2), Drawing(1)});
    Sets.AddRow({2, 2, 2, QStringLiteral("板边"), Drawing(1), QVariant()});
    Sets.AddRow({4, 9, 3, QStringLiteral("散图"), QVariant(), QVariant()});

    for (const char* F : {"DrawSetID", "BarID", "BarPicID"}) Bars.AddField(QLatin1String(F), TFieldType::ftInteger);
    Bars.AddField(QStringLiteral("BarNum"), TFieldType::ftString);
    Bars.AddField(QStringLiteral("BarVDID"), TFieldType::ftString);
    Bars.AddField(QStringLiteral("BarInfoVDID"), TFieldType::ftInteger);
    for (const char* F : {"BarInfo_CHS", "BarInfo_Bs", "CalcProgram_Chs", "CalcProgram_Bs", "BarRemark"})
      Bars.AddField(QLatin1String(F), TFieldType::ftString);
    Bars.AddField(QStringLiteral("OrderNum"), TFieldType::ftInteger);
    Bars.AddRow({1, 0, 1, QStringLiteral("上部筋"), QStringLiteral("1"), 5, QString(), QString(),
                 QStringLiteral("cd=w"), QString(), QString(), 0});

    for (const char* F : {"CalcRuleID", "DrawSetID", "ParamID", "ParamVDID"})
      Params.AddField(QLatin1String(F), TFieldType::ftInteger);
    Params.AddField(QStringLiteral("ParamCode"), TFieldType::ftString);
    Params.AddField(QStringLiteral("DataType"), TFieldType::ftInteger);
    for (const char* F : {"ValidateExpr", "InvalidMsg", "OrderNum", "ParamVal", "SetParamVal", "Unit"})
      Params.AddField(QLatin1String(F), TFieldType::ftString);
    Params.AddRow({0, 1, 0, 5, QStringLiteral("w"), 32, QString(), QString(), QStringLiteral("0"),
                   QStringLiteral("300"), QStringLiteral("300"), QString()});
  }

  // ALines lines (IDs 1, 3, ...) and a text "300" with ID 5.
  static QByteArray Drawing(int ALines) {
    TVectorDrawing D;
    for (int I = 0; I < ALines; ++I)
      D.Add(std::make_unique<TVectorLine>(&D, D.GenID(), 0xFFFFFF, 1, 0, 0, 0, msNone, msNone,
                                         TKRNVector2d{0, 100.0 * I}, TKRNVector2d{100, 100.0 * I}));
    while (D.MaxID() < 4) D.GenID();
    D.Add(std::make_unique<TVectorText>(&D, 5, 0x00FF00, QStringLiteral("300"), TKRNVector2d{50, 50}, 0,
                                        QStringLiteral("宋体"), 12, 0, haLeftJustify, vaTopJustify, true, 0, QString()));
    TBytesStream S;
    D.SaveToStream(S, sfXML);
    return S.Bytes();
  }

  QString LastErrorText() const override { return QStringLiteral("服务器故障"); }
  TServerStatus GetDrawSetTypes(TDataPacket& A) override { A = Types; return Status; }
  TServerStatus GetDrawSets(TDataPacket& A) override { A = Sets; return Status; }
  TServerStatus GetDrawSetBars(int AID, TDataPacket& A) override {
    A = Filter(Bars, [&](const TPacketRow& R) { return R.Values[0].toInt() == AID; });
    return Status;
  }
  TServerStatus GetDrawSetParams(int AID, int ARule, TDataPacket& A) override {
    A = Filter(Params, [&](const TPacketRow& R) { return R.Values[1].toInt() == AID && R.Values[0].toInt() == ARule; });
    return Status;
  }
  TServerStatus SaveDrawSets(const TDrawSetDeltas& ADeltas, int, void*, QString& AErrMsg, bool& AResult) override {
    ++Saves;
    LastDeltas = ADeltas;
    AResult = !Refuse;
    if (Refuse) AErrMsg = QStringLiteral("图集已被其他用户修改");
    return Status;
  }

  TServerStatus GetBarClasses(TDataPacket& A) override { A = {}; return Status; }
  TServerStatus GetBarPicParams(int, TDataPacket& A) override { A = {}; return Status; }
  TServerStatus GetBarPics(TDataPacket& A) override { A = {}; return Status; }
  TServerStatus GetMaxBarPicID(int& AMax) override { AMax = 0; return Status; }
  TServerStatus GetBendTypes(TDataPacket& A) override { A = {}; return Status; }
  TServerStatus GetHookTypes(TDataPacket& A) override { A = {}; return Status; }
  TServerStatus GetCustomBarPicTypes(TDataPacket& A) override { A = {}; return Status; }

  TDataPacket Types, Sets, Bars, Params;
  TServerStatus Status = S_SERVER_OK;
  bool Refuse = false;
  int Saves = 0;
  TDrawSetDeltas LastDeltas;

private:
  template <class P>
  static TDataPacket Filter(const TDataPacket& ASrc, P AKeep) {
    TDataPacket R;
    R.Fields = ASrc.Fields;
    for (const TPacketRow& Row : ASrc.Rows)
      if (AKeep(Row)) R.Rows.push_back(Row);
    return R;
  }
};

// A picture server: pictures as (number, bend, hook, type, common order, shape code),
// each with a drawing that has a text 5, and one param on item 5; counts its calls.
class TMemoryPicServer : public TMemoryDataSvr {
public:
  TMemoryPicServer() {
    for (const char* F : {"BarPicID"}) Pics.AddField(QLatin1String(F), TFieldType::ftInteger);
    Pics.AddField(QStringLiteral("VectorDrawing"), TFieldType::ftBlob);
    Pics.AddField(QStringLiteral("BarPicName"), TFieldType::ftString);
    for (const char* F : {"BarPicTypeID", "BendTypeID", "HookTypeID", "CommonOrder"})
      Pics.AddField(QLatin1String(F), TFieldType::ftInteger);
    Pics.AddField(QStringLiteral("BS2000ShapeCode"), TFieldType::ftString);
    const struct {
      int ID, Bend, Hook, Type, Order;
      const char* Code;
    } Rows[] = {{1, 0, 0, 0, 1, "00"},   {64, 0, 2, 0, 0, "21"},  {133, 3, 2, 0, 0, "51"}, {536, 1, 0, 0, 0, "11"},
                {601, 0, 0, 0, 0, "20"}, {602, 0, 0, 0, 0, "99"}, {356, 2, 2, 0, 0, "99"}, {948, 3, 2, 0, 0, "99"},
                {10002, 1, 0, 1, 0, "99"}, {10001, 3, 2, 1, 0, "99"}, {10003, 0, 0, 2, 0, "99"}};
    for (const auto& R : Rows)
      Pics.AddRow({R.ID, Drawing(R.ID == 601 ? 2 : 1), QString::fromUtf8("图"), R.Type, R.Bend, R.Hook, R.Order, QString::fromUtf8(R.Code)});
    for (const char* F : {"BarPicParamID"}) PicParams.AddField(QLatin1String(F), TFieldType::ftInteger);
    for (const char* F : {"ParamCode", "Unit", "ValidateExpr", "InvalidMsg"}) PicParams.AddField(QLatin1String(F), TFieldType::ftString);
    for (const char* F : {"ParamVDID", "DataType"}) PicParams.AddField(QLatin1String(F), TFieldType::ftInteger);
    PicParams.AddField(QStringLiteral("IsSCPJParam"), TFieldType::ftBoolean);
    PicParams.AddRow({7, QString::fromUtf8("L1"), QString::fromUtf8("mm"), QString::fromUtf8("L1>0"), QString::fromUtf8("bad"), 5, 1, true});
    PicParams.AddRow({8, QString::fromUtf8("L2"), QString::fromUtf8("mm"), QString::fromUtf8(""), QString::fromUtf8(""), 77, 1, false});
    Bends.AddField(QStringLiteral("BendTypeID"), TFieldType::ftInteger);
    Bends.AddField(QStringLiteral("BendTypeName"), TFieldType::ftString);
    Bends.AddRow({0, QString::fromUtf8("直筋")});
    Bends.AddRow({3, QString::fromUtf8("箍筋")});
    Hooks = Bends;
    Classes = Bends;
    CustomTypes.AddField(QStringLiteral("BarPicTypeID"), TFieldType::ftInteger);
    CustomTypes.AddField(QStringLiteral("BarPicTypeName"), TFieldType::ftString);
    CustomTypes.AddRow({1, QString::fromUtf8("异形")});
    CustomTypes.AddRow({2, QString::fromUtf8("弧形")});
  }
  TServerStatus GetBarPics(TDataPacket& A) override { ++PicCalls; A = Pics; return Status; }
  TServerStatus GetBarPicParams(int, TDataPacket& A) override { ++ParamCalls; A = PicParams; return Status; }
  TServerStatus GetBendTypes(TDataPacket& A) override { A = Bends; return Status; }
  TServerStatus GetHookTypes(TDataPacket& A) override { A = Hooks; return Status; }
  TServerStatus GetBarClasses(TDataPacket& A) override { A = Classes; return Status; }
  TServerStatus GetCustomBarPicTypes(TDataPacket& A) override { A = CustomTypes; return Status; }
  TDataPacket Pics, PicParams, Bends, Hooks, Classes, CustomTypes;
  int PicCalls = 0, ParamCalls = 0;
};
