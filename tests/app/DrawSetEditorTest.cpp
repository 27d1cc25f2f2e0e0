#include "DSSpecCmdState.h"
#include "Dialogs.h"
#include "DrawSetConsts.h"
#include "DrawSetEditor.h"
#include "MemoryDataSvr.h"
#include "VDECommand.h"

#include <QTemporaryDir>

#include <gtest/gtest.h>

namespace {

QString S(const char* AText) { return QString::fromUtf8(AText); }

// Draw set 1 of the memory server: lines 1 and 3, text 5; bar 0 on item 1 with
// notation item 5; param w on item 5.
struct TDrawSetEditorTest : testing::Test {
  void SetUp() override {
    SetRegionSettings(1);
    RegisterEditorCommands();
    RegisterDrawSetCommands();
    Editor = std::make_unique<TDrawSetEditor>(Dir.filePath(S("e.ini")));
    Editor->SetSession(&Session);
    Editor->OnBarsChanged = [this] { ++BarsChanged; };
    Editor->OnParamKeyChanged = [this](const QString& A, const QString& B) { Keys << A + S(">") + B; };
    Session.FetchDrawSets();
    Session.LoadDrawSet(1, Editor->GetVectorDrawing());
  }
  TDrawSet& DS() { return *Session.DrawSet(); }
  TVectorDrawing& D() { return Editor->GetVectorDrawing(); }

  QTemporaryDir Dir;
  TMemoryDataSvr Server;
  TDrawSetSession Session{Server};
  std::unique_ptr<TDrawSetEditor> Editor;
  int BarsChanged = 0;
  QStringList Keys;
};

}  // namespace

TEST(TDrawSetEditor, WholeWordsInAnyCase) {
  const struct {
    const char *Sub, *Str;
    bool IgnoreCase;
    int Pos;
  } Cases[] = {{"w", "w2=w+1", false, 4},  {"w", "w2=1", false, 0},     {"W", "x=w", true, 3},
               {"W", "x=w", false, 0},     {"w", "_w+w", false, 4},     {"ab", "ab", false, 1},
               {"w", "", false, 0},        {"", "w", false, 0},         {"w", "w", false, 1},
               {"变量", "a=变量+1", false, 3}, {"x", "x1 x", false, 4}};
  for (const auto& C : Cases) {
    SCOPED_TRACE(QStringLiteral("%1 in %2").arg(S(C.Sub), S(C.Str)).toStdString());
    EXPECT_EQ(TDrawSetEditor::GetVarPos(S(C.Sub), S(C.Str), C.IgnoreCase), C.Pos);
  }
  EXPECT_EQ(TDrawSetEditor::ReplaceVar(S("cd=w+W*w2\nif w>w_1\nx=w"), S("w"), S("width")),
            S("cd=width+width*w2\nif width>w_1\nx=width"));
  // The replacement is not scanned again.
  EXPECT_EQ(TDrawSetEditor::ReplaceVar(S("a+a"), S("a"), S("a a")), S("a a+a a"));
}

TEST_F(TDrawSetEditorTest, ModesFilterSelection) {
  const struct {
    TDSType Mode;
    bool Line1, Line3, Text5;
  } Cases[] = {{dsNormal, false, true, false}, {dsBar, true, false, false}, {dsParam, false, false, true}};
  for (const auto& C : Cases) {
    SCOPED_TRACE(int(C.Mode));
    Editor->SetCurDSType(C.Mode);
    EXPECT_EQ(Editor->AcceptsItem(*D().ItemByID(1)), C.Line1);
    EXPECT_EQ(Editor->AcceptsItem(*D().ItemByID(3)), C.Line3);
    EXPECT_EQ(Editor->AcceptsItem(*D().ItemByID(5)), C.Text5);
    D().SelSet().Clear();
    for (int I = 0; I < D().Count(); ++I) D().SelSet().Add(D().Items(I));
    EXPECT_EQ(D().SelSet().Count(), int(C.Line1) + int(C.Line3) + int(C.Text5));
  }
}

TEST_F(TDrawSetEditorTest, ItemsMakeAndTakeBarsAndParams) {
  Editor->SetCurDSType(dsBar);
  Editor->Execute(cmdDrawLine, 0);
  // A line added in the bar mode makes a bar; text added there makes nothing.
  auto L = std::make_unique<TVectorLine>(&D(), D().GenID(), 0, 1, 0, 0, 0, msNone, msNone, TKRNVector2d{0, 0},
                                         TKRNVector2d{1, 1});
  const int LineID = L->ID();
  D().Add(std::move(L));
  ASSERT_EQ(DS().Bars().Count(), 2);
  EXPECT_EQ(DS().Bars().GetItems(1)->BarVDID(), QString::number(LineID));
  EXPECT_EQ(DS().Bars().GetItems(1)->BarNum(), S("新钢筋"));
  EXPECT_EQ(DS().Bars().GetItems(1)->BarID(), 1);
  D().Delete(D().IndexOfID(LineID));
  EXPECT_EQ(DS().Bars().Count(), 1);
  // The param's item goes: the param and its highlighter key go.
  D().Delete(D().IndexOfID(5));
  EXPECT_EQ(DS().Params().Count(), 0);
  EXPECT_EQ(Keys, QStringList{S("w>")});
  EXPECT_GE(BarsChanged, 3);

  // A text in the param mode asks for its name; Cancel leaves it without a param.
  TDialogScope Boxes;
  Editor->SetCurDSType(dsParam);
  Boxes->QueueInputCancel();
  Boxes->QueueInput(S(" depth "));
  for (int I = 0; I < 2; ++I)
    D().Add(std::make_unique<TVectorText>(&D(), D().GenID(), 0, S("1"), TKRNVector2d{}, 0, S("宋体"), 12, 0,
                                          haLeftJustify, vaTopJustify, true, 0, QString()));
  ASSERT_EQ(DS().Params().Count(), 1);
  EXPECT_EQ(DS().Params().GetItems(0)->ParamCode(), S("depth"));
  EXPECT_EQ(DS().Params().GetItems(0)->ParamVDID(), D().Items(D().Count() - 1)->ID());
  EXPECT_EQ(Keys.last(), S(">depth"));
}

TEST_F(TDrawSetEditorTest, OperationsOfTheCommands) {
  EXPECT_TRUE(Editor->HasBarInfo(1));
  EXPECT_FALSE(Editor->HasBarInfo(3));
  EXPECT_EQ(Editor->GetParamCode(5), S("w"));
  EXPECT_EQ(Editor->GetParamCode(3), QString());

  // Rename: whole words of every script, any case; the bars panel saves first.
  DS().Bars().GetItems(0)->SetCalcProgram(S("cd=W+w2"));
  bool Saved = false;
  Editor->OnSaveBars = [&] { return Saved = true; };
  Editor->SetParamCode(5, S("width"));
  EXPECT_TRUE(Saved);
  EXPECT_EQ(DS().Bars().GetItems(0)->CalcProgram(), S("cd=width+w2"));
  EXPECT_EQ(Keys.last(), S("w>width"));
  // A refusing panel stops the rename.
  Editor->OnSaveBars = [] { return false; };
  Editor->SetParamCode(5, S("x"));
  EXPECT_EQ(Editor->GetParamCode(5), S("width"));

  // Lines to a bar: texts are left out; the items turn yellow; notation 0.
  D().SelSet().Add(D().ItemByID(3));
  D().SelSet().Add(D().ItemByID(5));
  Editor->LinesToBar();
  ASSERT_EQ(DS().Bars().Count(), 2);
  EXPECT_EQ(DS().Bars().GetItems(1)->BarVDID(), S("3"));
  EXPECT_EQ(DS().Bars().GetItems(1)->BarInfoVDID(), 0);
  EXPECT_EQ(D().ItemByID(3)->Color(), 0x00FFFFu);
  EXPECT_TRUE(Editor->HasBarInfo(3));

  // Merge: the first selected item's bar takes the others' items.
  Editor->SetCurDSType(dsBar);
  D().SelSet().Clear();
  D().SelSet().Add(D().ItemByID(3));
  D().SelSet().Add(D().ItemByID(1));
  Editor->MergeBars();
  ASSERT_EQ(DS().Bars().Count(), 1);
  EXPECT_EQ(DS().Bars().GetItems(0)->BarVDID(), S("3,1"));
  // Items of the target bar itself are passed over.
  Editor->MergeBars();
  ASSERT_EQ(DS().Bars().Count(), 1);
  EXPECT_EQ(DS().Bars().GetItems(0)->BarVDID(), S("3,1"));
}

TEST_F(TDrawSetEditorTest, JumpOrderSwaps) {
  // Bar 0's notation (item 5) holds 0, the param on item 5 holds 0 too: bars come first.
  DS().Params().GetItems(0)->SetOrderNum(4);
  Editor->SetOrderNum(5, 4);  // the bar takes 4; the param gets the bar's old 0
  EXPECT_EQ(DS().Bars().GetItems(0)->OrderNum(), 4);
  EXPECT_EQ(DS().Params().GetItems(0)->OrderNum(), 0);
  DS().Params().GetItems(0)->SetOrderNum(-1);
  Editor->SetOrderNum(5, -1);  // -1 swaps nothing, though the param holds -1 too
  EXPECT_EQ(DS().Bars().GetItems(0)->OrderNum(), -1);
  EXPECT_EQ(DS().Params().GetItems(0)->OrderNum(), -1);
  EXPECT_EQ(Editor->GetOrderNum(5), -1);
  EXPECT_EQ(Editor->GetOrderNum(3), -1);
  Editor->SetOrderNum(3, 7);  // neither: nothing
  QString Msg;
  EXPECT_FALSE(TDSEEditTabOrderState::ValidOrder(S("-2"), Msg));
  EXPECT_EQ(Msg, S("跳转顺序值必须是[-1, 2147483647]之间的整数！\n只有大于或等于0的值是有效的。当值为-1时，编辑框不会自动跳转到该图元。"));
  EXPECT_TRUE(TDSEEditTabOrderState::ValidOrder(S("-1"), Msg));
  EXPECT_FALSE(TDSEEditTabOrderState::ValidOrder(S("1.5"), Msg));
}
