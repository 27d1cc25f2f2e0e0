#include "EditorTestUtils.h"

#include "VDIPoint.h"

#include <QSettings>

using TVectorDrawingEditorTest = EditorFixture;

namespace {

TKRNVector2d Center(TVectorDrawingEditor& E) { return E.GetCoordTrans().DCTOWC(TKRNPoint2i{400, 300}); }

}  // namespace

TEST_F(TVectorDrawingEditorTest, RunCommandsSetTheViewExactly) {
  const struct {
    int Cmd;
    double Factor, CX, CY;
  } Cases[] = {
      {cmdZoomIn, 1.2, 0, 0},    {cmdZoomOut, 0.8, 0, 0},  {cmdPanLeft, 1, 400, 0},
      {cmdPanRight, 1, -400, 0}, {cmdPanUp, 1, 0, -300},   {cmdPanDown, 1, 0, 300},
  };
  for (const auto& C : Cases) {
    SCOPED_TRACE(C.Cmd);
    E->GetCoordTrans().SetCoordTransParam({400, 300}, {0, 0}, 1);
    E->Execute(C.Cmd, 0);
    EXPECT_DOUBLE_EQ(E->GetCoordTrans().ZoomFactor(), C.Factor);
    EXPECT_DOUBLE_EQ(Center(*E).X, C.CX);
    EXPECT_DOUBLE_EQ(Center(*E).Y, C.CY);
  }
  E->GetCoordTrans().SetCoordTransParam({400, 300}, {0, 0}, 1);
  E->Execute(cmdZoomIn, 0);
  E->Execute(cmdZoomOut, 0);
  EXPECT_DOUBLE_EQ(E->GetScale(), 96);  // not inverses
}

TEST_F(TVectorDrawingEditorTest, ZoomAllFitsTheItemsInsideTheMargin) {
  AddLine(0, 0, 760, 0);
  AddLine(0, 0, 0, 100);
  E->Execute(cmdZoomAll, 0);
  EXPECT_DOUBLE_EQ(E->GetCoordTrans().ZoomFactor(), 1);
  EXPECT_EQ(E->GetCoordTrans().WCTODC(TKRNVector2d{0, 0}).X, 20);
  EXPECT_EQ(E->GetCoordTrans().WCTODC(TKRNVector2d{760, 0}).X, 780);
  // A page size widens the range to hold the page.
  D().SetDrawingWidth(1520);
  E->Execute(cmdZoomAll, 0);
  EXPECT_DOUBLE_EQ(E->GetCoordTrans().ZoomFactor(), 0.5);
}

TEST_F(TVectorDrawingEditorTest, CtrlKeypadRunsViewCommands) {
  const struct {
    quint16 Key;
    double Factor, CX, CY;
  } Cases[] = {
      {vkMultiply, 1.2, 0, 0},         {vkDivide, 0.8, 0, 0},           {vkNumpad0 + 8, 1, 0, -300},
      {vkNumpad0 + 2, 1, 0, 300},      {vkNumpad0 + 4, 1, 400, 0},      {vkNumpad0 + 6, 1, -400, 0},
      {vkNumpad0 + 7, 1, 400, -300},   {vkNumpad0 + 9, 1, -400, -300},  {vkNumpad0 + 1, 1, 400, 300},
      {vkNumpad0 + 3, 1, -400, 300},
  };
  for (const auto& C : Cases) {
    SCOPED_TRACE(C.Key);
    E->GetCoordTrans().SetCoordTransParam({400, 300}, {0, 0}, 1);
    Key(C.Key, sfCtrl);
    EXPECT_DOUBLE_EQ(E->GetCoordTrans().ZoomFactor(), C.Factor);
    EXPECT_DOUBLE_EQ(Center(*E).X, C.CX);
    EXPECT_DOUBLE_EQ(Center(*E).Y, C.CY);
  }
  // Only exactly Ctrl: with Shift too the key goes to the state chain.
  E->GetCoordTrans().SetCoordTransParam({400, 300}, {0, 0}, 1);
  Key(vkMultiply, sfCtrl | sfShift);
  EXPECT_DOUBLE_EQ(E->GetCoordTrans().ZoomFactor(), 1);
  AddLine(0, 0, 1520, 0);
  Key(vkNumpad0 + 5, sfCtrl);
  EXPECT_DOUBLE_EQ(E->GetCoordTrans().ZoomFactor(), 0.5);
}

TEST_F(TVectorDrawingEditorTest, TheWheelZoomsAboutTheCursor) {
  const TKRNPoint2i P{100, 50};
  const TKRNVector2d Before = E->GetCoordTrans().DCTOWC(P);
  E->MouseWheel(true, P);
  EXPECT_DOUBLE_EQ(E->GetCoordTrans().ZoomFactor(), 1.2);
  const TKRNVector2d After = E->GetCoordTrans().DCTOWC(P);
  EXPECT_NEAR(After.X, Before.X, 1e-9);
  EXPECT_NEAR(After.Y, Before.Y, 1e-9);
  E->MouseWheel(false, P);
  EXPECT_DOUBLE_EQ(E->GetCoordTrans().ZoomFactor(), 1.2 * 0.8);
}

TEST_F(TVectorDrawingEditorTest, RepeatRecordsOnlyRepeatableCommands) {
  EXPECT_EQ(E->RepeatCmdInfo().CmdID, -1);
  E->Execute(cmdDelete, 0);
  Key(vkEscape);
  E->Execute(cmdZoomIn, 0);
  E->Execute(cmdZoomWin, 0);
  EXPECT_EQ(E->RepeatCmdInfo().CmdID, cmdDelete);
  EXPECT_EQ(E->RepeatCmdInfo().Hint, QStringLiteral("重复删除"));
  EXPECT_EQ(E->RepeatCmdInfo().Caption, QStringLiteral("重复删除(&H)"));
  E->Execute(cmdRepeat, 0);
  EXPECT_EQ(E->GetCurCmd(), cmdDelete);
}

TEST_F(TVectorDrawingEditorTest, ASelectionFillsTheModifyListWithMixedMarkers) {
  AddLine(0, 0, 100, 0);
  const int B = AddLine(0, 50, 100, 50);
  D().ItemByID(B)->SetColor(255);
  Drag(-10, 60, 110, -10);
  ASSERT_EQ(Sel().size(), 2u);
  TVDEPropList& M = E->GetModifyItemProp();
  EXPECT_EQ(M.Items(ptColor).Value(), QStringLiteral("?"));
  EXPECT_EQ(M.Items(ptLineStyle).Value(), QStringLiteral("实线"));
  EXPECT_TRUE(M.Items(ptLineWidth).Visible());
  EXPECT_FALSE(M.Items(ptText).Visible());
  // The marker is not written back; a value goes to both through one record.
  M.Items(ptColor).SetValue(QStringLiteral("?"));
  EXPECT_FALSE(E->CanUndo());
  M.Items(ptLineStyle).SetValue(QStringLiteral("虚线"));
  EXPECT_EQ(D().Items(0)->GetPropValues(ptLineStyle), QStringLiteral("1"));
  EXPECT_EQ(D().Items(1)->GetPropValues(ptLineStyle), QStringLiteral("1"));
  E->Execute(cmdUndo, 0);
  EXPECT_EQ(D().Items(0)->GetPropValues(ptLineStyle), QStringLiteral("0"));
  EXPECT_EQ(D().Items(1)->GetPropValues(ptLineStyle), QStringLiteral("0"));
}

TEST_F(TVectorDrawingEditorTest, SnapTakesAVertexFirstThenTheGridAndCountsNoChange) {
  AddLine(0, 0, 100, 0);
  const int Changes = D().ChangeCount();
  TKRNVector2d P{103, 4};
  E->SnapPoint(P, 8);
  EXPECT_DOUBLE_EQ(P.X, 100);
  EXPECT_DOUBLE_EQ(P.Y, 0);
  P = {47, 26};
  E->SnapPoint(P, 8);
  EXPECT_DOUBLE_EQ(P.X, 50);
  EXPECT_DOUBLE_EQ(P.Y, 30);
  E->SetSnapSwitch(false);
  P = {47, 26};
  E->SnapPoint(P, 8);
  EXPECT_DOUBLE_EQ(P.X, 47);
  P = {96, 3};  // a vertex wins even with the switch off
  E->SnapPoint(P, 8);
  EXPECT_DOUBLE_EQ(P.X, 100);
  EXPECT_EQ(D().ChangeCount(), Changes);
  // Between vertexes at equal distance the earlier item wins; a later one only when
  // nearer. A polyline's own search starts afresh, so the rule between items decides.
  TKRNLines2d Lines;
  Lines.List().Add(new TKRNArcVertex2d({104, 0}, atLine, 0));
  Lines.List().Add(new TKRNArcVertex2d({200, 0}, atLine, 0));
  auto* Poly = new TVectorPolyline(&D());
  Poly->SetPolyline(Lines);
  D().Add(std::unique_ptr<TVectorDrawingItem>(Poly));
  P = {102, 0};
  E->SnapPoint(P, 8);
  EXPECT_DOUBLE_EQ(P.X, 100);
  P = {102.5, 0};
  E->SnapPoint(P, 8);
  EXPECT_DOUBLE_EQ(P.X, 104);
}

TEST_F(TVectorDrawingEditorTest, SettingsAreWrittenWithEveryDefaultAndReadBack) {
  const QString Ini = Dir.filePath(QStringLiteral("other.ini"));
  {
    TVectorDrawingEditor Ed(Ini);
    EXPECT_TRUE(Ed.GetSnapSwitch());
    EXPECT_TRUE(Ed.GetGridSwitch());
    EXPECT_EQ(Ed.GetGridXSpace(), 10);
  }
  QSettings S(Ini, QSettings::IniFormat);
  const struct {
    const char* Key;
    const char* Value;
  } Defaults[] = {
      {"EditorSetting/SnapSwitch", "1"},       {"EditorSetting/GridSwitch", "1"},
      {"EditorSetting/GridXSpace", "10"},      {"EditorSetting/GridYSpace", "10"},
      {"AddItemProp/ptExtData", ""},           {"AddItemProp/ptColor", "16777215"},
      {"AddItemProp/ptPointSize", "4"},        {"AddItemProp/ptPointStyle", "圆点"},
      {"AddItemProp/ptLineWidth", "0"},        {"AddItemProp/ptLineStyle", "实线"},
      {"AddItemProp/ptStartMarkStyle", "箭头"}, {"AddItemProp/ptEndMarkStyle", "箭头"},
      {"AddItemProp/ptStartMarkSize", "8"},    {"AddItemProp/ptEndMarkSize", "8"},
      {"AddItemProp/ptFillStyle", "交叉线"},    {"AddItemProp/ptFontName", "宋体"},
      {"AddItemProp/ptFontHeight", "12"},      {"AddItemProp/ptFontStyle", "普通"},
      {"AddItemProp/ptTransparent", "T"},      {"AddItemProp/ptTextBackColor", "0"},
      {"AddItemProp/ptHorzAlignment", "左对齐"}, {"AddItemProp/ptVertAlignment", "上对齐"},
  };
  for (const auto& D : Defaults) {
    SCOPED_TRACE(D.Key);
    ASSERT_TRUE(S.contains(QString::fromUtf8(D.Key)));
    EXPECT_EQ(S.value(QString::fromUtf8(D.Key)).toString(), QString::fromUtf8(D.Value));
  }
  EXPECT_FALSE(S.contains(QStringLiteral("AddItemProp/ptText")));
  S.setValue(QStringLiteral("EditorSetting/GridSwitch"), 0);
  S.setValue(QStringLiteral("EditorSetting/GridXSpace"), 25);
  S.setValue(QStringLiteral("AddItemProp/ptLineStyle"), QStringLiteral("点线"));
  S.setValue(QStringLiteral("AddItemProp/ptLineWidth"), QStringLiteral("5000"));  // refused: default kept
  S.sync();
  TVectorDrawingEditor Ed(Ini);
  EXPECT_FALSE(Ed.GetGridSwitch());
  EXPECT_EQ(Ed.GetGridXSpace(), 25);
  EXPECT_FALSE(Ed.GetOrthogonalSwitch());
  EXPECT_EQ(Ed.GetAddItemProp().Items(ptLineStyle).Value(), QStringLiteral("点线"));
  EXPECT_EQ(Ed.GetAddItemProp().Items(ptLineWidth).Value(), QStringLiteral("0"));
}

// A settings file that cannot be read (here past the size cap) gives the defaults and
// is left exactly as it was.
TEST_F(TVectorDrawingEditorTest, AnUnreadableSettingsFileIsNeverOverwritten) {
  const QString Ini = Dir.filePath(QStringLiteral("big.ini"));
  QByteArray Text = "[EditorSetting]\nGridXSpace=25\n[Other]\n";
  while (Text.size() <= (1 << 20)) Text += "Key=0123456789012345678901234567890123456789\n";
  QFile F(Ini);
  ASSERT_TRUE(F.open(QIODevice::WriteOnly));
  F.write(Text);
  F.close();
  {
    TVectorDrawingEditor Ed(Ini);
    EXPECT_EQ(Ed.GetGridXSpace(), 10);
    Ed.SetGridXSpace(30);
  }
  ASSERT_TRUE(F.open(QIODevice::ReadOnly));
  EXPECT_EQ(F.readAll(), Text);
}

TEST_F(TVectorDrawingEditorTest, GridDotsEveryTenPixelsAndNoneUnderSix) {
  auto Dots = [&]() {
    const QImage& I = E->Image();
    int N = 0;
    for (int Y = 0; Y < I.height(); ++Y)
      for (int X = 0; X < I.width(); ++X)
        if (I.pixel(X, Y) == qRgb(255, 255, 255)) ++N;
    return N;
  };
  EXPECT_EQ(E->Image().pixel(400, 300), qRgb(255, 255, 255));
  EXPECT_EQ(E->Image().pixel(410, 290), qRgb(255, 255, 255));
  EXPECT_EQ(E->Image().pixel(405, 300), qRgb(0, 0, 0));
  EXPECT_EQ(Dots(), 80 * 60);  // x -400 to 390, y -290 to 300 inside the client
  E->SetScale(51);  // 10 units are 5.1 pixels, 6 on the device: still shown
  EXPECT_GT(Dots(), 0);
  E->SetScale(50);  // 5 pixels
  EXPECT_EQ(Dots(), 0);
  E->SetScale(100);
  E->Execute(cmdGridSwitch, 0);
  EXPECT_EQ(Dots(), 0);
}

TEST_F(TVectorDrawingEditorTest, SelectedItemsShowGripsAtIdleOnly) {
  E->SetGridSwitch(false);
  AddLine(-100, 0, 100, 0);
  Click(0, 0);
  const QImage& I = E->Image();
  EXPECT_EQ(I.pixel(300 - 4, 300 - 4), qRgb(255, 255, 0));  // the start grip's corner
  EXPECT_EQ(I.pixel(300 + 3, 300 + 3), qRgb(255, 255, 0));
  EXPECT_NE(I.pixel(300 - 5, 300 - 5), qRgb(255, 255, 0));
  E->Execute(cmdZoomWin, 0);
  EXPECT_NE(E->Image().pixel(300 - 4, 300 - 4), qRgb(255, 255, 0));
}

TEST_F(TVectorDrawingEditorTest, ARubberBandIsErasedByDrawingItAgain) {
  E->SetGridSwitch(false);
  const QImage Clean = E->Image().copy();
  Move(0, 0);
  Down(0, 0);
  Move(50, -50, sfLeft);
  Move(80, -20, sfLeft);
  EXPECT_NE(E->Image(), Clean);
  Key(vkEscape);
  EXPECT_EQ(E->Image(), Clean);
}
