#include "DSEditActions.h"
#include "Dialogs.h"
#include "DrawSetConsts.h"
#include "DrawSetSession.h"
#include "MZTDiamDictsIntf.h"
#include "MemoryDataSvr.h"
#include "VDECommand.h"
#include "VectorDrawingEditor.h"

#include <QTemporaryDir>

#include <gtest/gtest.h>

namespace {

QString S(const char* AText) { return QString::fromUtf8(AText); }

struct TSessionTest : testing::Test {
  void SetUp() override {
    SetRegionSettings(1);
    RegisterEditorCommands();
    Editor = std::make_unique<TVectorDrawingEditor>(Dir.filePath(S("e.ini")));
    Session.FetchDrawSets();
  }
  QTemporaryDir Dir;
  TMemoryDataSvr Server;
  TDrawSetSession Session{Server};
  std::unique_ptr<TVectorDrawingEditor> Editor;
  TVectorDrawing& Drawing() { return Editor->GetVectorDrawing(); }
};

}  // namespace

TEST(TRegionScope, SetsTheRunAndPutsTheOldSettingsBack) {
  SetRegionSettings(1);
  const PMZTDiamDicts Before = std::make_shared<TMZTDiamDicts>();
  SetDiamDicts(Before);
  {
    const PMZTDiamDicts Run = std::make_shared<TMZTDiamDicts>();
    TRegionScope Scope(4, Run);
    EXPECT_EQ(RegionCode, 4);
    EXPECT_EQ(CalcRuleID, 9);
    EXPECT_EQ(CalcProgramFieldName, S("CalcProgram_Cht"));
    EXPECT_EQ(VectorDrawingFieldName, S("VectorDrawing_Bs"));
    EXPECT_EQ(DiamDicts(), Run);
  }
  EXPECT_EQ(RegionCode, 1);
  EXPECT_EQ(CalcRuleID, 0);
  EXPECT_EQ(CalcProgramFieldName, S("CalcProgram_Chs"));
  EXPECT_EQ(VectorDrawingFieldName, S("VectorDrawing_Chs"));
  EXPECT_EQ(BarInfoFieldName, S("BarInfo_CHS"));
  EXPECT_EQ(DiamDicts(), Before);
  // Also when the run ends by an exception.
  try {
    TRegionScope Scope(12, nullptr);
    throw Exception(S("x"));
  } catch (const Exception&) {
  }
  EXPECT_EQ(RegionCode, 1);
  EXPECT_EQ(DiamDicts(), Before);
  SetDiamDicts(nullptr);
}

TEST_F(TSessionTest, LoadsTheDrawSetItsRowsAndItsDrawing) {
  Session.LoadDrawSet(1, Drawing());
  ASSERT_NE(Session.DrawSet(), nullptr);
  EXPECT_EQ(Session.DrawSet()->Name(), S("中间节点"));
  EXPECT_EQ(Session.DrawSet()->Bars().Count(), 1);
  EXPECT_EQ(Session.DrawSet()->Params().Count(), 1);
  EXPECT_EQ(Drawing().Count(), 3);
  EXPECT_FALSE(Session.HasChanges(Drawing()));

  // Another draw set replaces it; the old items leave without the item-deleted event.
  int Deleted = 0;
  Drawing().OnItemDeleted = [&](int) { ++Deleted; };
  TDrawSet* Replaced = nullptr;
  Session.OnDrawSetReplaced = [&](TDrawSet* ANew) { Replaced = ANew; };
  Session.LoadDrawSet(2, Drawing());
  EXPECT_EQ(Deleted, 0);
  EXPECT_EQ(Replaced, Session.DrawSet());
  EXPECT_EQ(Drawing().Count(), 2);
  EXPECT_EQ(Session.DrawSet()->Bars().Count(), 0);
  ASSERT_TRUE(Drawing().OnItemDeleted);
  Drawing().Delete(0);
  EXPECT_EQ(Deleted, 1);

  // A draw set without a drawing leaves the drawing empty, not the last one's.
  Session.LoadDrawSet(4, Drawing());
  EXPECT_EQ(Drawing().Count(), 0);
  EXPECT_THROW(Session.LoadDrawSet(99, Drawing()), Exception);
}

TEST_F(TSessionTest, TheRegionPicksTheDrawingColumn) {
  SetRegionSettings(0);
  Session.LoadDrawSet(1, Drawing());
  EXPECT_EQ(Drawing().Count(), 2);  // the "_Bs" drawing has one line
  SetRegionSettings(1);
}

TEST_F(TSessionTest, SaveWritesTheDrawingAndSendsTheDeltas) {
  Session.LoadDrawSet(1, Drawing());
  Editor->Execute(cmdSelAll, 0);
  Editor->Execute(cmdEditDelete, 0);
  ASSERT_TRUE(Session.HasChanges(Drawing()));
  ASSERT_TRUE(Editor->CanUndo());
  EXPECT_TRUE(Session.Save(*Editor));
  EXPECT_EQ(Server.Saves, 1);
  EXPECT_FALSE(Server.LastDeltas[1].IsNull());  // the drawing's row
  EXPECT_FALSE(Drawing().Modified());
  EXPECT_FALSE(Editor->CanUndo());
  EXPECT_FALSE(Session.HasChanges(Drawing()));
  EXPECT_EQ(Session.DrawSetDS().ChangeCount(), 0);

  // Nothing changed: no drawing is written, the server still gets the (empty) call.
  EXPECT_TRUE(Session.Save(*Editor));
  EXPECT_EQ(Server.Saves, 2);
  EXPECT_TRUE(Server.LastDeltas[1].IsNull());
}

TEST_F(TSessionTest, RefusedSaveKeepsTheLogsAndMovesTheSavePoints) {
  Session.LoadDrawSet(1, Drawing());
  Session.DrawSet()->Bars().GetItems(0)->SetBarNum(S("改名"));
  Server.Refuse = true;
  TDialogScope Boxes;
  EXPECT_FALSE(Session.Save(*Editor));
  EXPECT_EQ(Boxes->Lines(), QStringList{S("[错误] 图集已被其他用户修改")});
  EXPECT_GT(Session.DrawSetBarDS().ChangeCount(), 0);
  EXPECT_EQ(Session.SavePoints()[1], Session.DrawSetBarDS().SavePoint());
  // Reverting goes back to the last save points: the refused edit stays.
  Session.RevertToSavePoints();
  EXPECT_GT(Session.DrawSetBarDS().ChangeCount(), 0);
}

TEST_F(TSessionTest, RevertGoesBackToTheLastSavePoint) {
  Session.LoadDrawSet(1, Drawing());
  TDrawSetBar* Bar = Session.DrawSet()->Bars().GetItems(0);
  Bar->SetBarNum(S("甲"));
  Session.MarkSavePoints();
  Bar->SetBarNum(S("乙"));
  Session.DrawSet()->Params().GetItems(0)->SetParamCode(S("w2"));
  Session.RevertToSavePoints();
  Session.ClearDataSetFilters();
  ASSERT_TRUE(Session.DrawSetBarDS().Locate(S("BarID"), {0}));
  EXPECT_EQ(Session.DrawSetBarDS().FieldByName(S("BarNum")).AsString(), S("甲"));
  ASSERT_TRUE(Session.DrawSetParamDS().Locate(S("ParamID"), {0}));
  EXPECT_EQ(Session.DrawSetParamDS().FieldByName(S("ParamCode")).AsString(), S("w"));
  EXPECT_FALSE(Session.DrawSetDS().Filtered());
  EXPECT_EQ(Session.DrawSetDS().RecordCount(), 3);
}

TEST_F(TSessionTest, FindParamMarksItsItem) {
  Session.LoadDrawSet(1, Drawing());
  EXPECT_TRUE(Session.FindParam(S(" W "), Drawing()));
  for (int I = 0; I < Drawing().Count(); ++I)
    EXPECT_EQ(Drawing().Items(I)->Tag(), Drawing().Items(I)->ID() == 5 ? 1 : 0);
  EXPECT_FALSE(Session.FindParam(S("h"), Drawing()));
}

TEST(DSEditActions, ZoomAndRadiusTexts) {
  const struct {
    const char* In;
    bool Ok;
    const char* Out;
    int Zoom;
  } Zooms[] = {{"75", true, "75%", 75},       {"0", false, "", 0},          {"100000", true, "100000%", 100000},
               {"100001", false, "", 0},      {"", true, "100%", 100},       {"  ", true, "100%", 100},
               {" 50% ", true, "50%", 50},    {"50%%", false, "", 0},        {"-5", false, "", 0},
               {"1.5", false, "", 0},         {"abc", false, "", 0},         {"1", true, "1%", 1}};
  for (const auto& C : Zooms) {
    SCOPED_TRACE(C.In);
    QString T = S(C.In);
    int Z = -1;
    ASSERT_EQ(AcceptZoomText(T, Z), C.Ok);
    if (C.Ok) {
      EXPECT_EQ(T, S(C.Out));
      EXPECT_EQ(Z, C.Zoom);
    }
  }
  const struct {
    const char* In;
    bool Ok;
    double R;
  } Radii[] = {{"", true, 0},          {"0", true, 0},           {"10000000", true, 1e7}, {"10000000.5", false, 0},
               {"-1", false, 0},       {"12.5", true, 12.5},     {" 30 ", true, 30},     {"x", false, 0}};
  for (const auto& C : Radii) {
    SCOPED_TRACE(C.In);
    QString T = S(C.In);
    double R = -1;
    ASSERT_EQ(AcceptRadiusText(T, R), C.Ok);
    if (C.Ok) {
      EXPECT_EQ(R, C.R);
    }
  }
  QString Empty;
  double R;
  AcceptRadiusText(Empty, R);
  EXPECT_EQ(Empty, S("0"));
}

TEST(DSEditActions, EnableTable) {
  const struct {
    const char* Name;
    TEditActionsState State;
    std::vector<std::pair<const char*, bool>> Expect;
  } Cases[] = {
      {"empty drawing, plain", {dsNormal, false, false, 0},
       {{"acErase", false}, {"acTrim", false}, {"acDrawLine", true}, {"acDrawText", true}, {"acDrawHatch", true},
        {"acLinesToBar", true}, {"acFindParam", false}, {"acSetBarInfo", false}, {"cbRadius", true}}},
      {"two curves, no selection", {dsNormal, true, false, 2},
       {{"acTrim", true}, {"acExtend", true}, {"acBreak", true}, {"acMerge", true}, {"acCut", false}}},
      {"one curve, no selection", {dsNormal, true, false, 1},
       {{"acTrim", false}, {"acBreak", false}, {"acErase", true}, {"acDuplicate", true}}},
      {"one curve selected", {dsNormal, true, true, 1},
       {{"acTrim", true}, {"acExtend", true}, {"acBreak", false}, {"acCut", true}, {"acDelete", true}}},
      {"bar mode", {dsBar, true, false, 2},
       {{"acTrim", false}, {"acBreak", false}, {"acDrawText", false}, {"acDrawHatch", false},
        {"acDrawDimension", false}, {"acSetBarInfo", true}, {"acMergeBars", true}, {"acLinesToBar", false},
        {"acDuplicate", true}, {"acDrawArc", true}}},
      {"param mode", {dsParam, true, true, 0},
       {{"acDrawLine", false}, {"acDrawCircle", false}, {"cbRadius", false}, {"acDrawText", true},
        {"acFindParam", true}, {"acEditParam", true}, {"acDuplicate", false}, {"acMirror", false}, {"acMove", true},
        {"acErase", true}, {"acDrawArc", false}}},
  };
  for (const auto& C : Cases) {
    SCOPED_TRACE(C.Name);
    const QHash<QString, bool> E = EditActionsEnabled(C.State);
    for (const auto& [Name, On] : C.Expect) {
      ASSERT_TRUE(E.contains(QLatin1String(Name))) << Name;
      EXPECT_EQ(E.value(QLatin1String(Name)), On) << Name;
    }
  }
  TEditActionsState S;
  S.CanPaste = S.CanUndo = true;
  const QHash<QString, bool> E = EditActionsEnabled(S);
  EXPECT_TRUE(E.value(QStringLiteral("acPaste")));
  EXPECT_TRUE(E.value(QStringLiteral("acUndo")));
  EXPECT_FALSE(E.value(QStringLiteral("acRedo")));
  EXPECT_FALSE(E.value(QStringLiteral("acMidSnap")));
}

TEST_F(TSessionTest, CurveCountAndTextCheck) {
  Session.LoadDrawSet(1, Drawing());
  EXPECT_EQ(CountCurves(Drawing()), 2);
  EXPECT_EQ(CountCurves(Drawing(), 1), 1);
  Drawing().SelSet().Add(Drawing().ItemByID(5));  // the text
  EXPECT_EQ(CountCurves(Drawing()), 0);

  QString Msg;
  // The selected text is bar 0's notation: the notation check applies in plain mode.
  EXPECT_FALSE(ValidatePropText(S("abc"), dsNormal, Drawing(), Session.DrawSet(), Msg));
  EXPECT_FALSE(Msg.isEmpty());
  EXPECT_TRUE(ValidatePropText(S(" C12@200 "), dsNormal, Drawing(), Session.DrawSet(), Msg));
  EXPECT_TRUE(ValidatePropText(S("abc"), dsBar, Drawing(), Session.DrawSet(), Msg));
  EXPECT_FALSE(ValidatePropText(S("abc"), dsParam, Drawing(), Session.DrawSet(), Msg));
  EXPECT_EQ(Msg, S("参数值必须为整数或实数"));
  EXPECT_TRUE(ValidatePropText(S(" 1.5 "), dsParam, Drawing(), Session.DrawSet(), Msg));
  Drawing().SelSet().Clear();
  EXPECT_FALSE(ValidatePropText(S("abc"), dsParam, Drawing(), Session.DrawSet(), Msg));
  EXPECT_TRUE(ValidatePropText(S("abc"), dsNormal, Drawing(), Session.DrawSet(), Msg));
}
