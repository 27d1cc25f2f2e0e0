#include "MZTBarInfo.h"
#include "MZTBarInfoConst.h"

#include <gtest/gtest.h>

namespace {
// Sets the process-wide code and dictionary for one test and puts them back.
struct TStandard {
  explicit TStandard(int ACode, PMZTDiamDicts ADicts = nullptr) : FCode(BarStandardCode()), FDicts(DiamDicts()) {
    SetBarStandardCode(ACode);
    SetDiamDicts(std::move(ADicts));
  }
  ~TStandard() {
    SetBarStandardCode(FCode);
    SetDiamDicts(FDicts);
  }
  int FCode;
  PMZTDiamDicts FDicts;
};

QString ParseError(TBaseBarInfo& AInfo, const char* AText) {
  try {
    AInfo.SetAsString(QString::fromUtf8(AText));
    return QString();
  } catch (const TBarInfoParseError& E) {
    return E.Message();
  }
}

PMZTDiamDicts Dict(int ACode) {
  auto D = std::make_shared<TMZTDiamDicts>();
  if (ACode == 4) {
    D->Add(std::make_shared<TMZTDiamDict>(12.7, QStringLiteral("#4"), 4));
    D->Add(std::make_shared<TMZTDiamDict>(15.9, QStringLiteral("#5"), 5));
  } else {
    TMZTBarLevelSet OnlyA;
    OnlyA.set(bltLevel1);
    D->Add(std::make_shared<TMZTDiamDict>(8, QStringLiteral("8"), 8, OnlyA));
    D->Add(std::make_shared<TMZTDiamDict>(12, QStringLiteral("12"), 12));
    D->Add(std::make_shared<TMZTDiamDict>(16, QStringLiteral("16"), 16));
  }
  return D;
}
}  // namespace

TEST(TMZTBarLevel, TextTable) {
  const struct {
    TMZTBarLevel Level;
    const char* Text;
  } Cases[] = {{bltUnknown, "X"},      {bltLevel1, "A"},       {bltLevel6, "N"},          {bltLevel7, " "},
               {bltG250, "R"},         {bltG500Type2, "NT"},   {bltSD490, "SD490"},       {bltHSD280, "环SD280"},
               {bltHBJTP24, "环BJTP-24"}, {bltPlaceholder_P, "Ø"}, {bltGrade33, "Grade 33"}, {bltHGrade75, "环Grade 75"},
               {bltG460_EU, "T"},      {bltBJTD70, "BJTD-70"}};
  for (const auto& C : Cases) {
    SCOPED_TRACE(BarLevelName(C.Level));
    EXPECT_EQ(BarLevelText(C.Level), QString::fromUtf8(C.Text));
    TMZTBarLevel Back;
    ASSERT_TRUE(BarLevelFromName(QString::fromLatin1(BarLevelName(C.Level)), Back));
    EXPECT_EQ(Back, C.Level);
  }
  EXPECT_STREQ(BarLevelName(bltBJTD70), "bltBJTD70");
  EXPECT_EQ(int(bltBJTD70) + 1, BarLevelCount);
}

TEST(TMZTBarLevel, LookupByCode) {
  const struct {
    int Code;
    const char* Text;
    TMZTBarLevel Level;
  } Cases[] = {{1, "a", bltLevel1},      {1, "N", bltLevel6},      {1, "X", bltUnknown},  {1, "R", bltUnknown},
               {0, "nw", bltG500},        {0, "D", bltG485Deformed}, {0, "A", bltUnknown}, {11, "T", bltG460Type2},
               {4, "sd420w", bltSD420W},  {4, "R", bltUnknown},      {6, "BJTP-24", bltBJTP24},
               {7, "SR24", bltSR24},      {7, "Ø", bltPlaceholder_P}, {8, "Fe500(Y)", bltFe500_Y},
               {13, "grade 60", bltGrade60}, {20, "H", bltG500_EU},   {20, "W", bltUnknown}};
  for (const auto& C : Cases) {
    SCOPED_TRACE(testing::Message() << C.Code << " " << C.Text);
    EXPECT_EQ(FindBarLevel(QString::fromUtf8(C.Text), C.Code), C.Level);
  }
  int Matched;
  EXPECT_EQ(MatchBarLevelPrefix(QStringLiteral("NW12"), 0, Matched), bltG500);  // the longest text wins
  EXPECT_EQ(Matched, 2);
}

TEST(TDrawSetBarInfo, ParsesAndFormatsUnderCode1) {
  TStandard S(1);
  const struct {
    const char* Text;
    TMZTBarLevel Level;
    double Diameter;
    qint32 Count, Space1, Space2;
    const char* Back;
  } Cases[] = {{"2A12", bltLevel1, 12, 2, -1, -1, "2A12"},
               {"A8@100/200", bltLevel1, 8, -1, 100, 200, "A8@100/200"},
               {"A12-200", bltLevel1, 12, -1, 200, -1, "A12@200"},  // "-" is "@"
               {" c25@150 ", bltLevel3, 25, -1, 150, -1, "C25@150"},
               {"30000B16", bltLevel2, 16, 30000, -1, -1, "30000B16"},
               {"A12.5@25", bltLevel1, 12.5, -1, 25, -1, "A12.5@25"},
               {"A12.@5000", bltLevel1, 12, -1, 5000, -1, "A12@5000"},  // code 1 reads the float outright
               {"Q12@100", bltUnknown, 12, -1, 100, -1, "Q12@100"}};
  for (const auto& C : Cases) {
    SCOPED_TRACE(C.Text);
    TDrawSetBarInfo B;
    B.SetAsString(QString::fromUtf8(C.Text));
    EXPECT_FALSE(B.IsNull());
    EXPECT_EQ(B.BarLevel(), C.Level);
    EXPECT_DOUBLE_EQ(B.Diameter(), C.Diameter);
    EXPECT_EQ(B.Count(), C.Count);
    EXPECT_EQ(B.Space1(), C.Space1);
    EXPECT_EQ(B.Space2(), C.Space2);
    EXPECT_EQ(B.AsString(), QString::fromUtf8(C.Back));
  }
  TDrawSetBarInfo Empty;
  Empty.SetAsString(QStringLiteral("  "));
  EXPECT_TRUE(Empty.IsNull());
  EXPECT_EQ(Empty.AsString(), QString());
}

TEST(TDrawSetBarInfo, RangesAndMutexRules) {
  TStandard S(1);
  const struct {
    const char* Text;
    const char* Error;
  } Cases[] = {
      {"0A12", "钢筋输入格式错误:数量的范围是[1,30000]之间的整数"},
      {"30001A12", "钢筋输入格式错误:数量的范围是[1,30000]之间的整数"},
      {"A12@24", "钢筋输入格式错误:间距的范围是[25,5000]之间的整数"},
      {"A12@5001", "钢筋输入格式错误:间距的范围是[25,5000]之间的整数"},
      {"A12@100/24", "钢筋输入格式错误:间距的范围是[25,5000]之间的整数"},
      {"A12@40000", "钢筋输入格式错误:输入超出合法范围"},  // the 16-bit read fails first
      {"A12@32768", "钢筋输入格式错误:输入超出合法范围"},
      {"A12@32767", "钢筋输入格式错误:间距的范围是[25,5000]之间的整数"},  // read, then out of range
      {"A0@100", "钢筋输入格式错误"},  // no diameter dictionary: a zero diameter is refused
      {"A12", "钢筋输入格式错误:没有输入数量必须输入间距"},
      {"2A12@200", "钢筋输入格式错误:输入了数量不能输入间距"},
      {"12@200", "钢筋输入格式错误"},
      {"A", "钢筋输入格式错误"},
      {"A1x@100", "钢筋输入格式错误"},
      {"@200", "钢筋输入格式错误:数量或排数不能为空"},
      {"A12@", "钢筋输入格式错误:间距不能为空"},
      {"A12@$50", "钢筋输入格式错误:输入超出范围"},
      {"A12@5x", "钢筋输入格式错误:输入超出范围"},
      {"A12@100/", "钢筋输入格式错误:间距不能为空"},
      {"A123456789012345678901234567890123456789012345678901@100", "输入长度必须小于50个字符"},
  };
  for (const auto& C : Cases) {
    SCOPED_TRACE(C.Text);
    TDrawSetBarInfo B;
    B.SetAsString(QStringLiteral("3B16"));
    EXPECT_EQ(ParseError(B, C.Text), QString::fromUtf8(C.Error));
    EXPECT_EQ(B.AsString(), QStringLiteral("3B16"));  // left as it was
  }
  // without the mutex rule, count and spacing may stand together
  TNSpace2BarInfo Free;
  Free.SetAsString(QStringLiteral("2A12@200"));
  EXPECT_EQ(Free.Count(), 2);
  EXPECT_EQ(Free.Space1(), 200);
  Free.SetAsString(QStringLiteral("2A12@32767"));
  EXPECT_EQ(Free.Space1(), 32767);
}

TEST(TDrawSetBarInfo, OtherCodesReadTheLevelText) {
  const struct {
    int Code;
    const char* Text;
    TMZTBarLevel Level;
    const char* Back;
    const char* Error;
  } Cases[] = {{0, "NW16@150", bltG500, "NW16@150", ""},
               {0, "D12@100", bltG485Deformed, "D12@100", ""},
               {0, "Q12@100", bltUnknown, "", "未知的钢筋级别"},
               {0, "12@100", bltUnknown, "", "钢筋输入格式错误"},
               {0, "R12.@100", bltUnknown, "", "钢筋输入格式错误"},  // a diameter ending in "." fails here
               {4, "SD420 16@150", bltSD420, "SD420 16@150", ""},
               {4, "3sd280w13", bltSD280W, "3SD280W13", ""},
               {6, "2BJTP-24 10", bltBJTP24, "2BJTP-24 10", ""},
               {13, "Ø10@200", bltPlaceHolderPH_Fai, "Ø10@200", ""},
               {20, "2H16", bltG500_EU, "2H16", ""}};
  for (const auto& C : Cases) {
    SCOPED_TRACE(testing::Message() << C.Code << " " << C.Text);
    TStandard S(C.Code);
    TDrawSetBarInfo B;
    EXPECT_EQ(ParseError(B, C.Text), QString::fromUtf8(C.Error));
    if (*C.Error == 0) {
      EXPECT_EQ(B.BarLevel(), C.Level);
      EXPECT_EQ(B.AsString(), QString::fromUtf8(C.Back));
    }
  }
}

TEST(TDrawSetBarInfo, DictionaryDiametersAndLevels) {
  TStandard S(1, Dict(1));
  TDrawSetBarInfo B;
  EXPECT_EQ(ParseError(B, "A13@100"), QStringLiteral("钢筋输入格式错误"));
  EXPECT_EQ(ParseError(B, "A12@100"), QString());
  EXPECT_EQ(B.DiameterID(), 12);
  EXPECT_TRUE(TBarInfo::CheckBarLevel(bltLevel1, 8));
  EXPECT_FALSE(TBarInfo::CheckBarLevel(bltLevel2, 8));
  EXPECT_TRUE(TBarInfo::CheckBarLevel(bltLevel2, 12));
  EXPECT_FALSE(TBarInfo::CheckBarLevel(bltLevel2, 99));
  EXPECT_EQ(TBarInfo::GetNestBarNoDiameter(13.5), QStringLiteral("12"));
  EXPECT_EQ(TBarInfo::GetNestBarNoDiameter(15), QStringLiteral("16"));
}

TEST(TDrawSetBarInfo, DataChangedFiresOnlyOnRealChange) {
  TStandard S(1);
  TDrawSetBarInfo B;
  int Fired = 0;
  B.FTrigerDataChanged = true;
  B.FOnDataChanged = [&] { ++Fired; };
  B.SetAsString(QStringLiteral("A12@100"));
  B.SetAsString(QStringLiteral("A12-100"));  // same text after formatting
  EXPECT_EQ(Fired, 1);
  B.FTrigerDataChanged = false;
  B.SetAsString(QStringLiteral("A12@200"));
  EXPECT_EQ(Fired, 1);
}

TEST(TDrawSetBarInfo, StreamRoundTripAndHoopMarks) {
  TStandard S(4);
  TDrawSetBarInfo B;
  B.SetAsString(QStringLiteral("环SD420 16@150"));
  EXPECT_EQ(B.BarLevel(), bltHSD420);
  TBytesStream Out;
  B.SaveToStream(Out);
  TBytesStream In1(Out.Bytes()), In2(Out.Bytes());
  TDrawSetBarInfo Kept, Dropped;
  Kept.LoadFromStream(In1, true);
  Dropped.LoadFromStream(In2, false);
  EXPECT_EQ(Kept.BarLevel(), bltHSD420);
  EXPECT_EQ(Dropped.BarLevel(), bltSD420);
  TBytesStream Short(QByteArray("\x09\x00" "A1", 4));
  EXPECT_THROW(Kept.LoadFromStream(Short, true), EReadError);
}

TEST(TBarInfo, BarNumberConversions) {
  {
    TStandard S(4, Dict(4));
    EXPECT_EQ(TBarInfo::ConvertShortBarNoToBarNo(QStringLiteral("SD420b5@150")), QStringLiteral("SD420#5@150"));
    EXPECT_EQ(TBarInfo::ConvertBarNoToBarInfo(QStringLiteral("SD420 #5@150")), QStringLiteral("SD420 15.9@150"));
    EXPECT_EQ(TBarInfo::ConvertBarNoToBarInfo(QStringLiteral("SD420 b4")), QStringLiteral("SD420 12.7"));
    try {
      TBarInfo::ConvertBarNoToBarInfo(QStringLiteral("#9"));
      FAIL();
    } catch (const TBarInfoParseError& E) {
      EXPECT_EQ(E.Message(), QStringLiteral("未知的钢筋号数"));
    }
    EXPECT_EQ(TBarInfo::ConvertBarInfoToBarNo(QStringLiteral(" 15.9@150 ")), QStringLiteral("#5@150"));
  }
  {
    TStandard S(6, Dict(1));
    EXPECT_EQ(TBarInfo::ConvertBarInfoToBarNo(QStringLiteral("D12 P8")), QStringLiteral("D12 P8"));
    EXPECT_EQ(TBarInfo::ConvertBarNoToBarInfo(QStringLiteral("p8+D16")), QStringLiteral("Ø8+D16"));
  }
  {
    TStandard S(7, Dict(1));
    EXPECT_EQ(TBarInfo::ConvertBarInfoToBarNo(QStringLiteral("Ø8")), QStringLiteral("RB8"));
    EXPECT_EQ(TBarInfo::ConvertBarNoToBarInfo(QStringLiteral("db16")), QStringLiteral("D16"));
  }
  TStandard None(1);
  EXPECT_EQ(TBarInfo::ConvertBarNoToBarInfo(QStringLiteral("#5")), QStringLiteral("#5"));  // no dictionary
}

TEST(TMZTDiamDicts, JsonForm) {
  const PMZTDiamDicts D = TMZTDiamDicts::LoadFromJson(
      R"({"name": "m", "entries": [{"diameter": 12, "barNo": "#4", "id": 7, "levels": ["bltLevel1"]}, {"diameter": 16}]})");
  ASSERT_EQ(D->GetCount(), 2);
  EXPECT_EQ(D->GetItem(0)->GetDiameterID(), 7);
  EXPECT_EQ(D->IndexOfBarNoValue(4), 0);
  EXPECT_EQ(D->IndexOfDiameter(16.0000001), 1);
  EXPECT_TRUE(D->GetItem(1)->GetBarLevels().all());
  for (const char* Bad : {"not json", R"({"entries": 3})", R"({"entries": [{"diameter": -1}]})",
                          R"({"entries": [{"diameter": 8, "levels": ["bltNope"]}]})"}) {
    SCOPED_TRACE(Bad);
    EXPECT_THROW(TMZTDiamDicts::LoadFromJson(Bad), Exception);
  }
  EXPECT_THROW(TMZTDiamDicts::LoadFromFile(QStringLiteral("/nonexistent/d.json")), Exception);
}
