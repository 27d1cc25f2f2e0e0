#include "EditorTestUtils.h"
#include "VDEModifyCmdState.h"
#include "VDEZoomPanCmdState.h"

using TVDECmdStateTest = EditorFixture;

TEST(TVDECommandRegistry, TheFirstRegistrationOfAnIDWins) {
  RegisterEditorCommands();
  const TVDECommandClass* Before = FindVDECommand(cmdDelete);
  ASSERT_NE(Before, nullptr);
  RegisterVDECommand({"Impostor", [] {
                        TVDECmdInfo I;
                        I.CmdID = cmdDelete;
                        I.CmdName = QStringLiteral("冒名");
                        return I;
                      },
                      [](IVDEditor&, qintptr) {}});
  EXPECT_EQ(FindVDECommand(cmdDelete), Before);
  EXPECT_EQ(FindVDECommand(cmdDelete)->CmdInfo().CmdName, QStringLiteral("删除"));
  EXPECT_EQ(FindVDECommand(54), nullptr);
  EXPECT_EQ(FindVDECommand(cmdRepeat), nullptr);
}

TEST(TVDECommandRegistry, DescriptionsOfTheRegisteredCommands) {
  RegisterEditorCommands();
  const struct {
    int ID;
    const char* Name;
    int Priority;
    bool ClearSelSet, CanRepeat, SnapEnabled;
  } Rows[] = {
      {1, "选择", 0, false, false, false},      {2, "多选", 2, false, false, false},
      {3, "单选", 2, false, false, false},      {4, "", 4, false, false, false},
      {5, "实时缩放", 3, false, false, false},  {8, "窗口缩放", 3, false, false, false},
      {9, "实时平移", 3, false, false, false},  {10, "定点平移", 3, false, false, false},
      {11, "中心点平移", 3, false, false, false}, {29, "删除", 1, false, true, false},
      {39, "", 4, false, false, false},         {63, "", 4, false, false, false},
  };
  for (const auto& R : Rows) {
    SCOPED_TRACE(R.ID);
    const TVDECommandClass* C = FindVDECommand(R.ID);
    ASSERT_NE(C, nullptr);
    const TVDECmdInfo I = C->CmdInfo();
    EXPECT_EQ(I.CmdID, R.ID);
    EXPECT_EQ(I.CmdName, QString::fromUtf8(R.Name));
    EXPECT_EQ(I.Priority, R.Priority);
    EXPECT_EQ(I.ClearSelSet, R.ClearSelSet);
    EXPECT_EQ(I.CanRepeat, R.CanRepeat);
    EXPECT_EQ(I.SnapEnabled, R.SnapEnabled);
    EXPECT_EQ(I.HelpContext, 0);
  }
}

TEST(TVDECommandRegistry, PromptPartsSplitAtCode13) {
  const QString P = QStringLiteral("a\rb");
  EXPECT_EQ(PromptPart(P, 0), QStringLiteral("a"));
  EXPECT_EQ(PromptPart(P, 1), QStringLiteral("b"));
  EXPECT_EQ(PromptPart(P, 2), QString());
  EXPECT_EQ(PromptPart(QString(), 0), QString());
}

// ---- selection --------------------------------------------------------------

TEST_F(TVDECmdStateTest, ABoxLeftToRightTakesWhatItHoldsRightToLeftWhatItTouches) {
  const int Inside = AddLine(10, 10, 20, 10);
  const int Across = AddLine(15, 5, 60, 5);
  AddLine(200, 200, 210, 210);
  Drag(0, 30, 30, 0);  // left to right: a window
  EXPECT_EQ(Sel(), std::vector<int>{Inside});
  Key(vkEscape);
  EXPECT_TRUE(Sel().empty());
  Drag(30, 30, 0, 0);  // right to left: crossing
  EXPECT_EQ(Sel(), (std::vector<int>{Inside, Across}));
}

TEST_F(TVDECmdStateTest, TwoClicksMakeTheSameBoxAsADrag) {
  const int A = AddLine(10, 10, 20, 10);
  AddLine(100, 100, 120, 100);
  Click(0, 30);
  EXPECT_EQ(E->RootCmdState().Step(), 1);
  EXPECT_EQ(E->GetPrompt(), QStringLiteral("按鼠标左键指定对角点，按右键确认或按ESC取消"));
  Move(15, 20, 0);
  Click(30, 0);
  EXPECT_EQ(Sel(), std::vector<int>{A});
  EXPECT_EQ(E->RootCmdState().Step(), 0);
  // A press that moves 1 pixel is a click, not a drag: the box stays open.
  Key(vkEscape);
  Move(0, 30);
  Down(0, 30);
  Move(1, 30, sfLeft);
  Up(1, 30);
  EXPECT_EQ(E->RootCmdState().Step(), 1);
}

TEST_F(TVDECmdStateTest, ClickingAnItemTogglesItAndTheTopmostWins) {
  const int Under = AddLine(0, 0, 100, 0);
  const int Over = AddLine(0, 0, 100, 0);
  Click(25, 3);  // within 8 pixels
  EXPECT_EQ(Sel(), std::vector<int>{Over});
  Click(25, 3);  // away from the grips at the ends and the middle
  EXPECT_TRUE(Sel().empty());
  Click(50, 20);  // 20 pixels away: starts a box instead
  EXPECT_TRUE(Sel().empty());
  EXPECT_EQ(E->RootCmdState().Step(), 1);
  (void)Under;
}

TEST_F(TVDECmdStateTest, ThePickToleranceIsEightPixelsAtTheCurrentScale) {
  AddLine(0, 0, 100, 0);
  E->GetCoordTrans().SetCoordTransParam({400, 300}, {0, 0}, 0.5);  // 8 pixels are 16 units
  Click(50, 14);
  EXPECT_EQ(Sel().size(), 1u);
  Key(vkEscape);
  Click(50, 20);
  EXPECT_TRUE(Sel().empty());
}

TEST_F(TVDECmdStateTest, EscAndRightClickAtIdle) {
  AddLine(0, 0, 100, 0);
  Click(50, 0);
  ASSERT_EQ(Sel().size(), 1u);
  bool Menu = false;
  E->OnContextMenu = [&](const TKRNPoint2i&) { Menu = true; };
  RClick(300, 200);
  EXPECT_TRUE(Menu);
  EXPECT_EQ(Sel().size(), 1u);  // the menu opens; the selection stays
  Key(vkEscape);
  EXPECT_TRUE(Sel().empty());
  EXPECT_EQ(E->GetCurCmd(), cmdSelect);
  EXPECT_FALSE(E->RootCmdState().Deleted());
}

TEST_F(TVDECmdStateTest, DeleteKeyAtIdleAsksFirst) {
  const int A = AddLine(0, 0, 100, 0);
  const int B = AddLine(0, 50, 100, 50);
  Click(50, 0);
  Boxes->QueueButton(mrNo);
  Key(vkDelete);
  EXPECT_EQ(Boxes->Lines(), QStringList{QStringLiteral("[确认] 是否删除选中的图元")});
  EXPECT_EQ(Items(), (std::vector<int>{A, B}));
  EXPECT_TRUE(Sel().empty());  // no: the selection is cleared
  Click(50, 50);
  Boxes->QueueButton(mrYes);
  Key(vkDelete);
  EXPECT_EQ(Items(), std::vector<int>{A});
  EXPECT_TRUE(E->CanUndo());
  EXPECT_EQ(E->GetCurCmd(), cmdSelect);
  Key(vkDelete);  // nothing selected: no question
  EXPECT_EQ(Boxes->Calls.size(), 2u);
}

TEST_F(TVDECmdStateTest, DeleteCommandWithoutSelectionSelectsFirst) {
  const int A = AddLine(0, 0, 100, 0);
  E->Execute(cmdDelete, 0);
  EXPECT_EQ(E->GetCurCmd(), cmdDelete);
  EXPECT_EQ(E->DeepestCmdState().CmdInfo().CmdID, cmdMultiSelect);
  EXPECT_EQ(E->GetPrompt(), QStringLiteral("按鼠标左键选择图元，或拉框选择，按右键确认选择或ESC取消"));
  Click(50, 0);
  Boxes->QueueButton(mrYes);
  RClick(50, 0);  // confirms the selection
  EXPECT_TRUE(Items().empty());
  EXPECT_EQ(E->GetCurCmd(), cmdSelect);
  E->Execute(cmdUndo, 0);
  EXPECT_EQ(Items(), std::vector<int>{A});
  // Esc in the selection ends the command with nothing asked.
  E->Execute(cmdDelete, 0);
  Click(50, 0);
  Key(vkEscape);
  EXPECT_EQ(E->GetCurCmd(), cmdSelect);
  EXPECT_TRUE(Sel().empty());
  EXPECT_EQ(Boxes->Calls.size(), 1u);
}

// ---- nesting ----------------------------------------------------------------

TEST_F(TVDECmdStateTest, AZoomWindowNestsAndGivesBackTheStepAndPrompt) {
  AddLine(0, 0, 100, 0);
  E->Execute(cmdDelete, 0);
  Click(-50, 50);  // the nested selection's box is open
  const QString Prompt = E->GetPrompt();
  E->Execute(cmdZoomWin, 0);
  EXPECT_EQ(E->GetCurCmd(), cmdZoomWin);
  EXPECT_EQ(E->GetPrompt(), QStringLiteral("按鼠标左键指定第一个角点，按右键或者ESC键结束"));
  Drag(-100, 100, 100, -100);
  EXPECT_NE(E->GetCoordTrans().ZoomFactor(), 1);
  EXPECT_EQ(E->GetCurCmd(), cmdZoomWin);  // stays for another box
  Key(vkEscape);
  EXPECT_EQ(E->GetCurCmd(), cmdDelete);
  EXPECT_EQ(E->DeepestCmdState().Step(), 1);
  EXPECT_EQ(E->GetPrompt(), Prompt);
}

TEST_F(TVDECmdStateTest, PrioritiesDecideBetweenNestingAndReplacing) {
  E->Execute(cmdDelete, 0);
  TVDECmdState* First = E->RootCmdState().NextCmd();
  E->Execute(cmdPanPoint, 0);
  E->Execute(cmdZoomWin, 0);  // a view state replaces a view state
  EXPECT_EQ(E->DeepestCmdState().CmdInfo().CmdID, cmdZoomWin);
  EXPECT_EQ(E->DeepestCmdState().PrevCmd()->CmdInfo().CmdID, cmdMultiSelect);
  E->Execute(cmdDelete, 0);  // the same priority at the root: replaced
  EXPECT_NE(E->RootCmdState().NextCmd(), First);
  EXPECT_EQ(E->DeepestCmdState().CmdInfo().CmdID, cmdMultiSelect);
  E->Execute(cmdSelect, 0);  // priority 0 ends the whole chain
  EXPECT_EQ(E->RootCmdState().NextCmd(), nullptr);
  EXPECT_EQ(E->GetCurCmd(), cmdSelect);
}

TEST_F(TVDECmdStateTest, TheCommandChangedEventReportsTheCommandASelectionRunsFor) {
  std::vector<int> Seen;
  E->OnCommandChanged = [&](int ID) { Seen.push_back(ID); };
  E->Execute(cmdDelete, 0);
  E->Execute(cmdRefresh, 0);
  ASSERT_FALSE(Seen.empty());
  EXPECT_EQ(Seen.back(), cmdDelete);
  EXPECT_EQ(E->HelpContext(), 100);
}

TEST_F(TVDECmdStateTest, UndoDuringACommandEndsItAndClearsTheSelection) {
  AddLine(0, 0, 100, 0);
  AddLine(0, 50, 100, 50);
  Click(50, 0);
  E->Execute(cmdEditDelete, 0);
  Click(50, 50);
  E->Execute(cmdZoomWin, 0);
  E->Execute(cmdUndo, 0);
  EXPECT_EQ(E->RootCmdState().NextCmd(), nullptr);
  EXPECT_TRUE(Sel().empty());
  EXPECT_EQ(D().Count(), 2);
}

// ---- view states ------------------------------------------------------------

TEST_F(TVDECmdStateTest, PanStates) {
  E->Execute(cmdPanCenter, 0);
  Click(100, 50);
  EXPECT_EQ(E->GetCoordTrans().WCTODC(TKRNVector2d{100, 50}).X, 400);
  EXPECT_EQ(E->GetCoordTrans().WCTODC(TKRNVector2d{100, 50}).Y, 300);
  Key(vkEscape);
  E->GetCoordTrans().SetCoordTransParam({400, 300}, {0, 0}, 1);
  E->Execute(cmdPanPoint, 0);
  Click(0, 0);
  EXPECT_EQ(E->GetPrompt(), QStringLiteral("按鼠标左键指定第二点，按右键或ESC结束"));
  Click(30, 40);
  EXPECT_EQ(E->GetCoordTrans().WCTODC(TKRNVector2d{0, 0}).X, 430);
  EXPECT_EQ(E->GetCoordTrans().WCTODC(TKRNVector2d{0, 0}).Y, 260);
}

TEST_F(TVDECmdStateTest, AMiddleDragPansAndEndsByItself) {
  E->MouseDown(mbMiddle, sfMiddle, {400, 300});
  EXPECT_EQ(E->GetCurCmd(), cmdPanRuntime);
  E->MouseMove(sfMiddle, {410, 280});
  E->MouseUp(mbMiddle, 0, {410, 280});
  EXPECT_EQ(E->GetCurCmd(), cmdSelect);
  EXPECT_EQ(E->GetCoordTrans().WCTODC(TKRNVector2d{0, 0}).X, 410);
  EXPECT_EQ(E->GetCoordTrans().WCTODC(TKRNVector2d{0, 0}).Y, 280);
  E->MouseDown(mbMiddle, sfMiddle | sfDouble, {10, 10});  // double middle: zoom all
  EXPECT_EQ(E->GetCurCmd(), cmdSelect);
}

TEST_F(TVDECmdStateTest, RealTimeZoomByVerticalDrag) {
  E->Execute(cmdZoomRuntime, 0);
  E->MouseDown(mbLeft, sfLeft, {400, 300});
  E->MouseMove(sfLeft, {400, 299});  // under 2 pixels: nothing
  EXPECT_DOUBLE_EQ(E->GetCoordTrans().ZoomFactor(), 1);
  E->MouseMove(sfLeft, {400, 150});
  EXPECT_DOUBLE_EQ(E->GetCoordTrans().ZoomFactor(), 1.25);
}
