#include "Dialogs.h"
#include "DrawSet.h"
#include "DrawSetConsts.h"
#include "MZTDataSvr.h"

#include <gtest/gtest.h>

namespace {

QString S(const char* AText) { return QString::fromUtf8(AText); }

TDataPacket SetsPacket() {
  TDataPacket P;
  P.AddField(S("DrawSetID"), TFieldType::ftInteger);
  P.AddField(S("DrawSetTypeID"), TFieldType::ftInteger);
  P.AddField(S("DrawSetName"), TFieldType::ftString);
  P.AddField(S("OrderNum"), TFieldType::ftInteger);
  P.AddField(S("VectorDrawing_Chs"), TFieldType::ftBlob);
  P.AddRow({3, 1, S("节点"), 3, QByteArray("<?xml")});
  P.AddRow({1, -1, S("板"), 1, QVariant()});
  return P;
}

TDataPacket BarsPacket() {
  TDataPacket P;
  for (const char* F : {"DrawSetID", "BarID", "BarPicID"})
    P.AddField(S(F), TFieldType::ftInteger);
  P.AddField(S("BarNum"), TFieldType::ftString);
  P.AddField(S("BarVDID"), TFieldType::ftString);
  P.AddField(S("BarInfoVDID"), TFieldType::ftInteger);
  P.AddField(S("BarInfo_CHS"), TFieldType::ftString);
  P.AddField(S("CalcProgram_Chs"), TFieldType::ftString);
  P.AddField(S("BarRemark"), TFieldType::ftString);
  P.AddField(S("OrderNum"), TFieldType::ftInteger);
  P.AddRow({3, 0, 1, S("上部筋"), S("12, 7"), 20, S(""), S("cd=1"), S(""), 0});
  P.AddRow({3, 2, 601, S("下部筋"), S("8"), -1, S("C12@200"), S(""), S("r"), 2});
  P.AddRow({3, 1, 64, S("箍筋"), S("x,9"), 0, S(""), S(""), S(""), 1});
  return P;
}

TDataPacket ParamsPacket() {
  TDataPacket P;
  for (const char* F : {"CalcRuleID", "DrawSetID", "ParamID", "ParamVDID"})
    P.AddField(S(F), TFieldType::ftInteger);
  P.AddField(S("ParamCode"), TFieldType::ftString);
  P.AddField(S("DataType"), TFieldType::ftInteger);
  for (const char* F : {"ValidateExpr", "InvalidMsg", "OrderNum", "ParamVal", "SetParamVal", "Unit"})
    P.AddField(S(F), TFieldType::ftString);
  P.AddRow({0, 3, 0, 30, S("hc"), 32, S("hc>0"), S("bad"), S("0"), S("500"), S("500"), S(" mm ")});
  P.AddRow({0, 3, 1, -1, S("abc"), 32, S(""), S(""), S("x"), S("1"), S("1"), S("")});
  return P;
}

// The three datasets and a draw set over them, in region 1.
struct TFixture : testing::Test {
  TClientDataSet SetDS, BarDS, ParamDS;
  std::unique_ptr<TDrawSet> DS;
  void SetUp() override {
    SetRegionSettings(1);
    SetDS.SetData(SetsPacket());
    BarDS.SetData(BarsPacket());
    ParamDS.SetData(ParamsPacket());
    DS = std::make_unique<TDrawSet>(nullptr, 3, S(" 节点 "), 1, &SetDS, &BarDS, &ParamDS);
  }
  QString BarRowField(int ABarID, const char* AField) {
    EXPECT_TRUE(BarDS.FindKey({3, ABarID}));
    return BarDS.FieldByName(S(AField)).AsString();
  }
};

// A server that answers from fields set by the test.
class TFakeServer : public IDrawingsDataSvr {
public:
  TServerStatus Status = S_SERVER_OK;
  bool Accept = true;
  TDrawSetDeltas Received;
  int Calls = 0;
  QString LastErrorText() const override { return S("连接已断开"); }
  TServerStatus GetDrawSetTypes(TDataPacket&) override { return Status; }
  TServerStatus GetDrawSets(TDataPacket& A) override {
    A = SetsPacket();
    return Status;
  }
  TServerStatus GetDrawSetBars(int, TDataPacket&) override { return Status; }
  TServerStatus GetDrawSetParams(int, int, TDataPacket&) override { return Status; }
  TServerStatus SaveDrawSets(const TDrawSetDeltas& ADeltas, int, void* AReserved, QString& AErrMsg,
                             bool& AResult) override {
    ++Calls;
    EXPECT_EQ(AReserved, nullptr);
    Received = ADeltas;
    AResult = Accept;
    if (!Accept)
      AErrMsg = S("图集 3 已被其他用户修改");
    return Status;
  }
};

}  // namespace

TEST(DrawSetConsts, RegionTables) {
  const struct {
    int Region, Rule;
    const char *Program, *Drawing, *Info;
  } Cases[] = {
      {1, 0, "CalcProgram_Chs", "VectorDrawing_Chs", "BarInfo_CHS"},
      {0, 8, "CalcProgram_Bs", "VectorDrawing_Bs", "BarInfo_Bs"},
      {3, 8, "CalcProgram_Bs", "VectorDrawing_Bs", "BarInfo_Bs"},
      {4, 9, "CalcProgram_Cht", "VectorDrawing_Bs", "BarInfo_CHT"},
      {5, 9, "CalcProgram_Cht", "VectorDrawing_Bs", "BarInfo_CHT"},
      {8, 12, "CalcProgram_IN", "VectorDrawing_IN", "BarInfo_IN"},
      {12, -1, "", "VectorDrawing_Bs", ""},
      {13, 17, "CalcProgram_PH", "VectorDrawing_PH", "BarInfo_PH"},
      {20, 18, "CalcProgram_EU", "VectorDrawing_EU", "BarInfo_EU"},
      {-3, -1, "", "VectorDrawing_Bs", ""},
  };
  for (const auto& C : Cases) {
    SCOPED_TRACE(C.Region);
    SetRegionSettings(C.Region);
    EXPECT_EQ(RegionCode, C.Region);
    EXPECT_EQ(CalcRuleID, C.Rule);
    EXPECT_EQ(CalcProgramFieldName, S(C.Program));
    EXPECT_EQ(VectorDrawingFieldName, S(C.Drawing));
    EXPECT_EQ(BarInfoFieldName, S(C.Info));
  }
  SetRegionSettings(1);
}

TEST(TDrawSetInfoHandler, MakeAndParse) {
  EXPECT_EQ(TDrawSetInfoHandler::MakeBarVDID({12, 7}), S("12,7"));
  EXPECT_EQ(TDrawSetInfoHandler::MakeBarVDID({}), S(""));
  EXPECT_EQ(TDrawSetInfoHandler::MakeBarVDID({-1}), S("-1"));
  const struct {
    const char* Text;
    QVector<int> Ids;
  } Good[] = {{"12 , 7", {12, 7}}, {"", {}}, {" 5 ", {5}}, {"1,2,", {1, 2}}, {"$1F,3", {31, 3}}};
  for (const auto& C : Good)
    EXPECT_EQ(TDrawSetInfoHandler::ParseBarVDID(S(C.Text)), C.Ids) << C.Text;
  for (const char* Bad : {"1,,2", ",1", "1;2", "x", "1 2"})
    EXPECT_THROW(TDrawSetInfoHandler::ParseBarVDID(S(Bad)), EConvertError) << Bad;
}

TEST_F(TFixture, ReadsRowsOfItsDrawSetInRowOrder) {
  EXPECT_EQ(DS->Name(), S("节点"));
  ASSERT_EQ(DS->Bars().Count(), 3);
  // the constructor sets the index, so row order is key order
  EXPECT_EQ(DS->Bars().GetItems(0)->BarNum(), S("上部筋"));
  EXPECT_EQ(DS->Bars().GetItems(1)->BarID(), 1);
  EXPECT_EQ(DS->Bars().GetItems(2)->BarInfo(), S("C12@200"));
  EXPECT_EQ(DS->Bars().GetItems(3), nullptr);
  EXPECT_EQ(DS->Bars().GetItems(-1), nullptr);
  ASSERT_EQ(DS->Params().Count(), 2);
  EXPECT_EQ(DS->OrderNum(), 3);
  EXPECT_FALSE(DS->Modified());
}

TEST_F(TFixture, BarItemListsAndLookups) {
  TDrawSetBar* Top = DS->Bars().GetItems(0);
  EXPECT_TRUE(Top->HasVDID(7));
  EXPECT_EQ(Top->GetVDIDByIndex(1), 7);
  EXPECT_EQ(Top->GetVDIDByIndex(2), -1);
  EXPECT_EQ(DS->Bars().GetItemByVDID(7), Top);
  EXPECT_EQ(DS->Bars().GetItemByInfoVDID(20), Top);
  // a damaged list raises in the lookup that reads it, not at load
  EXPECT_THROW(DS->Bars().GetItemByVDID(8), EConvertError);
  EXPECT_EQ(DS->Bars().GetItems(2)->GetVDIDByIndex(0), 8);
  Top->AddVDID(7);
  EXPECT_EQ(BarRowField(0, "BarVDID"), S("12, 7"));  // no change, no write
  Top->AddVDID(40);
  EXPECT_EQ(BarRowField(0, "BarVDID"), S("12,7,40"));
  Top->DeleteVDID(12);
  Top->DeleteVDID(7);
  Top->DeleteVDID(40);
  EXPECT_EQ(Top->VDIDCount(), 0);
  EXPECT_EQ(BarRowField(0, "BarVDID"), S(""));
  EXPECT_EQ(DS->Bars().Count(), 3);  // an empty bar stays
  // order-number lookups: bars need an info item above 0, params an item at or above 0
  EXPECT_EQ(DS->Bars().GetItemByOrdNum(0), Top);
  EXPECT_EQ(DS->Bars().GetItemByOrdNum(1), nullptr);  // info item 0
  EXPECT_EQ(DS->Bars().GetItemByOrdNum(2), nullptr);  // info item -1
  EXPECT_EQ(DS->Params().GetItemByOrdNum(0)->ParamCode(), S("hc"));
  EXPECT_EQ(DS->Bars().GetMaxBarID(3), 2);
  EXPECT_EQ(DS->Bars().GetMaxBarID(4), -1);
}

TEST_F(TFixture, SettersWriteThroughAsTrimmedText) {
  TDrawSetBar* Bar = DS->Bars().GetItems(1);
  Bar->SetBarNum(S("  箍筋2 "));
  Bar->SetBarPicID(133);
  Bar->SetCalcProgram(S("cd=2\n"));
  Bar->SetOrderNum(9);
  EXPECT_EQ(Bar->BarNum(), S("箍筋2"));
  EXPECT_EQ(BarRowField(1, "BarNum"), S("箍筋2"));
  EXPECT_EQ(BarRowField(1, "BarPicID"), S("133"));
  EXPECT_EQ(Bar->CalcProgram(), S("cd=2"));
  EXPECT_EQ(Bar->OrderNum(), 9);
  // the notation setter ignores case and blanks
  TDrawSetBar* Low = DS->Bars().GetItems(2);
  const int Before = BarDS.SavePoint();
  Low->SetBarInfo(S(" c12@200 "));
  EXPECT_EQ(BarDS.SavePoint(), Before);
  Low->SetBarInfo(S("C14@200"));
  EXPECT_EQ(BarRowField(2, "BarInfo_CHS"), S("C14@200"));
  EXPECT_TRUE(DS->Modified());

  TDrawSetParam* P = DS->Params().GetItems(0);
  EXPECT_EQ(P->Unit(), S("mm"));
  P->SetParamVal(S(" 600 "));
  EXPECT_EQ(P->ParamVal(), S("500"));  // read from "ParamVal", written to "SetParamVal"
  ASSERT_TRUE(ParamDS.FindKey({0, 3, 0}));
  EXPECT_EQ(ParamDS.FieldByName(S("SetParamVal")).AsString(), S("600"));
  EXPECT_EQ(DS->Params().GetItems(1)->OrderNum(), -1);  // "x" is not a number
  P->SetValidateExpr(S(" hc>=300 "));
  EXPECT_EQ(P->ValidateExpr(), S("hc>=300"));

  DS->SetName(S(" 新名 "));
  DS->SetTypeID(2);
  ASSERT_TRUE(SetDS.FindKey({3}));
  EXPECT_EQ(SetDS.FieldByName(S("DrawSetName")).AsString(), S("新名"));
  EXPECT_EQ(SetDS.FieldByName(S("DrawSetTypeID")).AsInteger(), 2);
}

TEST_F(TFixture, ASetterFindsItsOwnDrawSetsRow) {
  // Another draw set's bar 1, made current: the key matches in BarID only.
  BarDS.Append();
  BarDS.FieldByName(S("DrawSetID")).SetAsInteger(4);
  BarDS.FieldByName(S("BarID")).SetAsInteger(1);
  BarDS.FieldByName(S("BarNum")).SetAsString(S("别的图集"));
  BarDS.Post();
  TDrawSetBar* Bar = nullptr;
  for (int I = 0; I < DS->Bars().Count(); ++I)
    if (DS->Bars().GetItems(I)->BarID() == 1) Bar = DS->Bars().GetItems(I);
  ASSERT_NE(Bar, nullptr);
  ASSERT_TRUE(BarDS.FindKey({4, 1}));
  Bar->SetBarNum(S("箍筋3"));
  EXPECT_EQ(BarRowField(1, "BarNum"), S("箍筋3"));
  ASSERT_TRUE(BarDS.FindKey({4, 1}));
  EXPECT_EQ(BarDS.FieldByName(S("BarNum")).AsString(), S("别的图集"));
}

TEST_F(TFixture, ASetterWithoutARowTouchesNoDataset) {
  TDrawSetBar* Orphan = DS->Bars().Add(3, 9, 1, S("只在列表"), S(""), -1, S(""), S(""), false);
  ASSERT_TRUE(BarDS.FindKey({3, 2}));
  const int Bars = BarDS.ChangeCount(), Sets = SetDS.ChangeCount(), Params = ParamDS.ChangeCount();
  Orphan->SetBarNum(S("改"));
  Orphan->SetBarPicID(7);
  Orphan->SetCalcProgram(S("cd=9"));
  Orphan->SetOrderNum(5);
  EXPECT_EQ(BarDS.ChangeCount(), Bars);
  EXPECT_EQ(SetDS.ChangeCount(), Sets);
  EXPECT_EQ(ParamDS.ChangeCount(), Params);
  EXPECT_EQ(BarRowField(2, "BarNum"), S("下部筋"));
  EXPECT_EQ(BarRowField(2, "BarPicID"), S("601"));
  EXPECT_FALSE(BarDS.FindKey({3, 9}));
}

TEST_F(TFixture, ParamsLookUpTheirRowUnderTheRunsCalcRule) {
  TDrawSetParam* P = DS->Params().GetItems(0);
  SetRegionSettings(2);  // rule 16: no such row, setters do nothing and getters are empty
  P->SetUnit(S("cm"));
  EXPECT_EQ(P->Unit(), S(""));
  EXPECT_EQ(ParamDS.ChangeCount(), 0);
  SetRegionSettings(1);
  EXPECT_EQ(P->Unit(), S("mm"));
}

TEST_F(TFixture, AddAndDeleteWithAndWithoutTheDataset) {
  TDrawSetBars& Bars = DS->Bars();
  TDrawSetBar* New = Bars.Add(3, Bars.GetMaxBarID(3) + 1, 1, S(" 新钢筋 "), S(" 4,5 "), -1, S("A8"), S(" x "), true);
  EXPECT_EQ(New->BarID(), 3);
  EXPECT_EQ(BarRowField(3, "BarNum"), S("新钢筋"));
  EXPECT_EQ(BarRowField(3, "OrderNum"), S("3"));
  EXPECT_EQ(BarRowField(3, "BarVDID"), S("4,5"));
  EXPECT_EQ(BarRowField(3, "BarInfo_CHS"), S(""));  // Add leaves the notation column alone
  EXPECT_EQ(BarDS.IndexFieldNames(), S("DrawSetID;BarID"));
  Bars.Add(3, 9, 1, S("只在列表"), S(""), -1, S(""), S(""), false);
  EXPECT_FALSE(BarDS.FindKey({3, 9}));
  EXPECT_EQ(Bars.GetMaxBarID(3), 9);

  Bars.DeleteByID(3, 0, true);
  EXPECT_FALSE(BarDS.FindKey({3, 0}));
  Bars.Delete(0, false);  // list only
  EXPECT_TRUE(BarDS.FindKey({3, 1}));
  Bars.Delete(99, true);  // out of range: nothing
  EXPECT_EQ(Bars.Count(), 3);

  TDrawSetParams& Params = DS->Params();
  TDrawSetParam* P = Params.Add(3, Params.GetMaxParamID(3) + 1, 44, S(" la "), dtUnknowParamType, true);
  EXPECT_EQ(P->ParamID(), 2);
  ASSERT_TRUE(ParamDS.FindKey({0, 3, 2}));
  EXPECT_EQ(ParamDS.FieldByName(S("ParamCode")).AsString(), S("la"));
  EXPECT_EQ(ParamDS.FieldByName(S("DataType")).AsInteger(), 32);
  Params.DeleteByVDID(3, 30, true);
  EXPECT_FALSE(ParamDS.FindKey({0, 3, 0}));
  EXPECT_EQ(Params.FindParam(S(" LA ")), P);

  DS->Clear(true);
  EXPECT_EQ(Bars.Count(), 0);
  EXPECT_EQ(Params.Count(), 0);
  EXPECT_EQ(BarDS.RecordCount(), 1);  // bar 1 left the list only
  EXPECT_EQ(ParamDS.RecordCount(), 0);
  // the log rolls back to the start: every row is back
  BarDS.SetSavePoint(0);
  ParamDS.SetSavePoint(0);
  EXPECT_EQ(BarDS.RecordCount(), 3);
  EXPECT_EQ(ParamDS.RecordCount(), 2);
}

TEST_F(TFixture, IsValidParamCode) {
  const struct {
    const char* Code;
    int Self;
    bool Ok;
    const char* Msg;
  } Cases[] = {
      {"", -1, false, "参数名称不能为空，或长度超过20个字符"},
      {"   ", -1, false, "参数名称不能为空，或长度超过20个字符"},
      {"a2345678901234567890", -1, true, ""},
      {"a23456789012345678901", -1, false, "参数名称不能为空，或长度超过20个字符"},
      {"1a", -1, false, "变量名首字符必须为字母"},
      {"_a", -1, false, "变量名首字符必须为字母"},
      {"a-b", -1, false, "变量名只能由字母、数字和下划线组成"},
      {"a b", -1, false, "变量名只能由字母、数字和下划线组成"},
      {"CD", -1, false, "不能用关键字作为变量名"},
      {"MsgBox", -1, false, "不能用关键字作为变量名"},
      {"Sub", -1, true, ""},
      {"gjth", -1, true, ""},
      {"HC", -1, false, "参数名称重复，请重新输入"},
      {"ABC", 1, true, ""},  // a param does not clash with itself
      {"ABC", 0, false, "参数名称重复，请重新输入"},
      {" la_2 ", -1, true, ""},
      {"\xe4\xb9\x81", -1, true, ""},  // U+4E41: its low byte is 'A', and the rule looks at that only
      {"\xe5\x8f\x82", -1, false, "变量名首字符必须为字母"},  // U+53C2
  };
  for (const auto& C : Cases) {
    SCOPED_TRACE(C.Code);
    QString Msg = S("stale");
    EXPECT_EQ(DS->Params().IsValidParamCode(S(C.Code), Msg, C.Self), C.Ok);
    EXPECT_EQ(Msg, S(C.Msg));
  }
}

TEST_F(TFixture, DrawingBlobGoesOutAndIn) {
  TBytesStream Out;
  DS->GetVectorDrawing(Out);
  EXPECT_EQ(Out.Bytes(), QByteArray("<?xml"));
  TBytesStream In(QByteArray("new drawing"));
  DS->SetVectorDrawing(In);
  ASSERT_TRUE(SetDS.FindKey({3}));
  EXPECT_EQ(SetDS.FieldByName(S("VectorDrawing_Chs")).AsBytes(), QByteArray("new drawing"));
  // a draw set without a row touches nothing
  TDrawSet Lost(nullptr, 77, S("x"), 1, &SetDS, nullptr, nullptr);
  TBytesStream None;
  Lost.GetVectorDrawing(None);
  EXPECT_EQ(None.GetSize(), 0);
}

TEST_F(TFixture, ApplyChangesMergesOnSuccessAndKeepsLogsOnRefusal) {
  TFakeServer Server;
  DS->Bars().GetItems(0)->SetBarNum(S("改"));
  {
    TDialogScope Boxes;
    Server.Accept = false;
    EXPECT_FALSE(ApplyChanges(Server, SetDS, BarDS, ParamDS, CalcRuleID));
    EXPECT_EQ(Boxes->Lines(), QStringList({S("[错误] 图集 3 已被其他用户修改")}));
  }
  EXPECT_TRUE(Server.Received[0].IsNull());
  EXPECT_TRUE(Server.Received[1].IsNull());  // no change: Null
  ASSERT_FALSE(Server.Received[2].IsNull());
  EXPECT_EQ(Server.Received[2].Rows.size(), 1);
  EXPECT_TRUE(Server.Received[3].IsNull());
  EXPECT_EQ(BarDS.ChangeCount(), 1);

  Server.Accept = true;
  EXPECT_TRUE(ApplyChanges(Server, SetDS, BarDS, ParamDS, CalcRuleID));
  EXPECT_EQ(BarDS.ChangeCount(), 0);
  EXPECT_FALSE(DS->Modified());

  Server.Status = E_SERVER_FAIL;
  DS->SetName(S("再改"));
  try {
    ApplyChanges(Server, SetDS, BarDS, ParamDS, CalcRuleID);
    ADD_FAILURE() << "no exception";
  } catch (const EDataServerError& E) {
    EXPECT_EQ(E.Message(), S("数据服务器调用 SaveDrawSets 失败：连接已断开"));
  }
  EXPECT_EQ(SetDS.ChangeCount(), 1);
}

TEST(TDrawSets, ReadsAllRowsAndAllocatesIDs) {
  SetRegionSettings(1);
  TClientDataSet SetDS, BarDS, ParamDS;
  SetDS.SetData(SetsPacket());
  BarDS.SetData(BarsPacket());
  ParamDS.SetData(ParamsPacket());
  TDrawSets Sets(&SetDS, &BarDS, &ParamDS);
  ASSERT_EQ(Sets.Count(), 2);
  EXPECT_EQ(Sets.GetItems(0)->ID(), 1);  // index order
  EXPECT_EQ(Sets.GetItemByID(3)->Bars().Count(), 3);
  EXPECT_EQ(Sets.GetItemByID(1)->Bars().Count(), 0);
  EXPECT_EQ(Sets.MaxID(), 3);
  TDrawSet* New = Sets.Add(Sets.MaxID() + 1, S(" 新图集 "), -1, true);
  EXPECT_EQ(New->Name(), S("新图集"));
  ASSERT_TRUE(SetDS.FindKey({4}));
  EXPECT_EQ(SetDS.FieldByName(S("OrderNum")).AsInteger(), 4);
  Sets.DeleteByID(3, true);
  EXPECT_FALSE(SetDS.FindKey({3}));
  EXPECT_EQ(SetDS.ChangeCount(), 2);
  Sets.Clear(false);
  EXPECT_EQ(Sets.Count(), 0);
  EXPECT_EQ(Sets.MaxID(), -1);
}

TEST(DataSvr, CheckedCallsRaiseOnAnErrorStatus) {
  TFakeServer Server;
  EXPECT_EQ(DataSvr::GetDrawSets(Server).Rows.size(), 2);
  Server.Status = E_SERVER_FAIL;
  EXPECT_THROW(DataSvr::GetDrawSets(Server), EDataServerError);
  EXPECT_THROW(DataSvr::GetDrawSetBars(Server, 1), EDataServerError);
  QString Err;
  EXPECT_THROW(DataSvr::SaveDrawSets(Server, {}, 0, Err), EDataServerError);
}
