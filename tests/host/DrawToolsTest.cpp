#include "ScriptTestUtils.h"

TEST(DseDrawTools, ALineChainIsOneArcItemPerSegmentWithMarksAtTheEnds) {
  const QStringList Out = Play(QStringLiteral(
      "prop ptStartMarkStyle 圆点\nprop ptEndMarkStyle 箭头\nprop ptColor 255\nprop ptLineWidth 2\n"
      "cmd 17\nclick 0,0\nprint prompt\nclick 100,0\nclick 100,50\nclick 100,50\nrclick\nprint items\n"
      "print item 1\nprint item 3\nprint undo\ncmd 40\nprint items\nprint undo\ncmd 41\nprint items\n"));
  EXPECT_TRUE(Out.contains(QStringLiteral("prompt 按鼠标左键指定下一个端点，或按Ctrl+左键回退一线，按右键结束或ESC取消")));
  EXPECT_EQ(Out.filter(QStringLiteral("items ")),
            QStringList({QStringLiteral("items 2 1,3"), QStringLiteral("items 0"), QStringLiteral("items 2 1,3")}));
  const std::vector<QJsonObject> I = Items(Out);
  ASSERT_EQ(I.size(), 2u);
  for (const QJsonObject& O : I) {
    EXPECT_EQ(O.value(QStringLiteral("class")).toString(), QStringLiteral("TVectorArc"));
    EXPECT_EQ(O.value(QStringLiteral("type")).toInt(), 3);
    EXPECT_EQ(O.value(QStringLiteral("arcType")).toInt(), 0);
    EXPECT_EQ(O.value(QStringLiteral("color")).toInt(), 255);
    EXPECT_EQ(O.value(QStringLiteral("lineWidth")).toInt(), 2);
    EXPECT_EQ(O.value(QStringLiteral("layer")).toInt(), 0);
  }
  EXPECT_EQ(Pt(I[0], "startPt"), QStringLiteral("0,0"));
  EXPECT_EQ(Pt(I[1], "endPt"), QStringLiteral("100,50"));
  EXPECT_EQ(I[0].value(QStringLiteral("startMarkStyle")).toInt(), 2);  // dot on the first
  EXPECT_EQ(I[0].value(QStringLiteral("endMarkStyle")).toInt(), 0);
  EXPECT_EQ(I[1].value(QStringLiteral("startMarkStyle")).toInt(), 0);
  EXPECT_EQ(I[1].value(QStringLiteral("endMarkStyle")).toInt(), 1);  // arrow on the last
  EXPECT_EQ(Out.filter(QStringLiteral("undo ")), QStringList({QStringLiteral("undo true"), QStringLiteral("undo false")}));
}

TEST(DseDrawTools, ParamOneMakesOnePolylineAndCtrlClickStepsBack) {
  const QStringList Out = Play(QStringLiteral(
      "prop ptEndMarkStyle 箭头\ncmd 17 1\nclick 0,0\nclick 100,0\nclick 100,50\nclick 0,50\nclick 0,50 ctrl\n"
      "rclick\nprint items\nprint item 1\n"));
  EXPECT_EQ(Line(Out, QStringLiteral("items")), QStringLiteral("items 1 1"));
  const std::vector<QJsonObject> I = Items(Out);
  ASSERT_EQ(I.size(), 1u);
  EXPECT_EQ(I[0].value(QStringLiteral("class")).toString(), QStringLiteral("TVectorPolyline"));
  EXPECT_EQ(I[0].value(QStringLiteral("vertices")).toArray().size(), 3);  // the last segment was stepped back
  EXPECT_EQ(I[0].value(QStringLiteral("endMarkStyle")).toInt(), 1);
}

TEST(DseDrawTools, ArcKindsTakeThePresetRadiusAndThreePointsMakeTheirArc) {
  for (int Cmd = 18; Cmd <= 21; ++Cmd) {
    SCOPED_TRACE(Cmd);
    const QStringList Out =
        Play(QStringLiteral("set radius 60\ncmd %1\nclick 0,0\nclick 100,0\nrclick\nprint item 1\n").arg(Cmd));
    const std::vector<QJsonObject> I = Items(Out);
    ASSERT_EQ(I.size(), 1u);
    EXPECT_EQ(I[0].value(QStringLiteral("arcType")).toInt(), Cmd - 17);
    EXPECT_EQ(I[0].value(QStringLiteral("radius")).toDouble(), 60);
  }
  const QStringList Three =
      Play(QStringLiteral("cmd 22\nclick -50,0\nprint prompt\nclick 0,20\nprint prompt\nclick 50,0\nrclick\nprint item 1\n"));
  EXPECT_TRUE(Three.contains(QStringLiteral("prompt 按鼠标左键指定第二点，按右键结束或ESC取消")));
  EXPECT_TRUE(Three.contains(QStringLiteral("prompt 按鼠标左键指定第三点，或按Ctrl+左键回退一线，按右键结束或ESC取消")));
  const std::vector<QJsonObject> I = Items(Three);
  ASSERT_EQ(I.size(), 1u);
  EXPECT_NEAR(I[0].value(QStringLiteral("radius")).toDouble(), 72.5, 1e-9);
  EXPECT_EQ(I[0].value(QStringLiteral("arcType")).toInt(), 2);  // clockwise over the top, under half a circle
}

TEST(DseDrawTools, ALineChainCarriesOverIntoAnArcCommand) {
  const QStringList Out = Play(QStringLiteral(
      "set radius 80\ncmd 17\nclick 0,0\nclick 100,0\ncmd 18\nprint cmd\nclick 100,100\nrclick\nprint items\n"
      "print item 1\nprint item 3\n"));
  EXPECT_TRUE(Out.contains(QStringLiteral("cmd 18")));
  EXPECT_EQ(Line(Out, QStringLiteral("items")), QStringLiteral("items 2 1,3"));
  const std::vector<QJsonObject> I = Items(Out);
  ASSERT_EQ(I.size(), 2u);
  EXPECT_EQ(I[0].value(QStringLiteral("arcType")).toInt(), 0);
  EXPECT_EQ(I[1].value(QStringLiteral("arcType")).toInt(), 1);
  EXPECT_EQ(Pt(I[1], "startPt"), QStringLiteral("100,0"));
}

TEST(DseDrawTools, OrthogonalModeKeepsSegmentsLevelOrUpright) {
  const QStringList Out = Play(QStringLiteral(
      "set ortho on\ncmd 17\nclick 0,0\nclick 100,30\nclick 110,130\nclick 40,110\nrclick\nprint item 1\nprint item 3\n"
      "print item 5\n"));
  const std::vector<QJsonObject> I = Items(Out);
  ASSERT_EQ(I.size(), 3u);
  EXPECT_EQ(Pt(I[0], "endPt"), QStringLiteral("100,0"));
  EXPECT_EQ(Pt(I[1], "endPt"), QStringLiteral("100,130"));
  EXPECT_EQ(Pt(I[2], "endPt"), QStringLiteral("40,130"));  // about -160 degrees keeps the start's y
}

TEST(DseDrawTools, RectanglesAsFourLinesOrOneClosedPolyline) {
  const QStringList Lines = Play(QStringLiteral("cmd 23\nclick 0,0\nprint prompt\nclick 100,-50\nprint items\nprint cmd\n"));
  EXPECT_TRUE(Lines.contains(QStringLiteral("prompt 按鼠标左键指定对角点，按鼠标右键或ESC取消")));
  EXPECT_EQ(Line(Lines, QStringLiteral("items")), QStringLiteral("items 4 1,3,5,7"));
  EXPECT_TRUE(Lines.contains(QStringLiteral("cmd 23")));  // stays for the next one
  const QStringList Poly = Play(QStringLiteral("cmd 23 1\nclick 0,0\nclick 100,-50\nprint item 1\ncmd 40\nprint items\n"));
  const std::vector<QJsonObject> I = Items(Poly);
  ASSERT_EQ(I.size(), 1u);
  const QJsonArray V = I[0].value(QStringLiteral("vertices")).toArray();
  ASSERT_EQ(V.size(), 5);
  EXPECT_EQ(V.at(0).toArray().at(1).toDouble(), -50);  // from (min x, min y), anticlockwise
  EXPECT_EQ(V.at(4), V.at(0));
  EXPECT_TRUE(Poly.contains(QStringLiteral("items 0")));
}

TEST(DseDrawTools, CirclesWithAndWithoutAPresetRadius) {
  const QStringList Out = Play(QStringLiteral(
      "cmd 24\nclick 0,0\nprint prompt\nclick 30,40\nprint item 1\nset radius 25\nclick 100,0\nprint items\nprint item 3\n"));
  EXPECT_TRUE(Out.contains(QStringLiteral("prompt 按鼠标左键指定第二点确定半径，按右键或ESC取消")));
  const std::vector<QJsonObject> I = Items(Out);
  ASSERT_EQ(I.size(), 2u);
  EXPECT_EQ(I[0].value(QStringLiteral("radius")).toDouble(), 50);
  EXPECT_EQ(I[1].value(QStringLiteral("radius")).toDouble(), 25);  // one click
  EXPECT_EQ(Pt(I[1], "centerPt"), QStringLiteral("100,0"));
}

TEST(DseDrawTools, PolygonAsksForItsSides) {
  QString Err;
  const QStringList Out = Play(QStringLiteral(
      "cmd 25 1\ninput cancel\nclick 0,0\nprint prompt\ninput \"x\"\ninput \"4\"\nclick 0,0\nprint prompt\nclick 50,0\n"
      "print item 1\ncmd 25\ninput \"3\"\nclick 200,0\nclick 250,0\nprint items\n"));
  EXPECT_TRUE(Out.contains(QStringLiteral("items 4 1,3,5,7")));  // then a triangle of three lines
  EXPECT_TRUE(Out.contains(QStringLiteral("prompt 按鼠标左键指定插入点，按右键或ESC取消")));  // cancelled: step 0
  EXPECT_TRUE(Out.contains(QStringLiteral("[错误] 边数必须是整数")));
  const std::vector<QJsonObject> I = Items(Out);
  ASSERT_EQ(I.size(), 1u);
  const QJsonArray V = I[0].value(QStringLiteral("vertices")).toArray();
  ASSERT_EQ(V.size(), 5);
  EXPECT_NEAR(V.at(1).toArray().at(1).toDouble(), 50, 1e-9);  // (0, 50) after a quarter turn
}

TEST(DseDrawTools, TextNeedsItsContentAndTurnsToTheSecondPoint) {
  const QStringList Out = Play(QStringLiteral(
      "cmd 26\nclick 0,0\nprint prompt\nprop ptText \"L=1500\"\nprop ptFontHeight 20\nclick 0,0\nclick 0,100\nprint item 1\n"));
  EXPECT_EQ(Out.at(0), QStringLiteral("[提示] 请先在图元属性列表中输入文本内容"));
  EXPECT_EQ(Out.at(1), QStringLiteral("prompt 按鼠标左键指定插入点，按右键或ESC取消"));
  const std::vector<QJsonObject> I = Items(Out);
  ASSERT_EQ(I.size(), 1u);
  EXPECT_EQ(I[0].value(QStringLiteral("text")).toString(), QStringLiteral("L=1500"));
  EXPECT_EQ(I[0].value(QStringLiteral("height")).toInt(), 20);
  EXPECT_NEAR(I[0].value(QStringLiteral("angle")).toDouble(), 1.5707963, 1e-6);
}

TEST(DseDrawTools, DimensionMakesFourItemsWithAllowedMarks) {
  const QStringList Out = Play(QStringLiteral(
      "prop ptStartMarkStyle 弯钩\nprop ptEndMarkStyle 斜线\ncmd 28\nclick 0,0\nclick 100,0\nclick 50,30\nprint items\n"
      "print item 5\nprint item 7\ncmd 40\nprint items\n"));
  EXPECT_TRUE(Out.contains(QStringLiteral("items 4 1,3,5,7")));
  EXPECT_TRUE(Out.contains(QStringLiteral("items 0")));  // one record for all four
  const std::vector<QJsonObject> I = Items(Out);
  ASSERT_EQ(I.size(), 2u);
  EXPECT_EQ(Pt(I[0], "startPt"), QStringLiteral("0,30"));
  EXPECT_EQ(I[0].value(QStringLiteral("startMarkStyle")).toInt(), 1);  // a hook becomes an arrow
  EXPECT_EQ(I[0].value(QStringLiteral("endMarkStyle")).toInt(), 3);    // a diagonal stays
  EXPECT_EQ(I[1].value(QStringLiteral("text")).toString(), QStringLiteral("100"));
}

TEST(DseDrawTools, PointsAndPaste) {
  const QStringList Out = Play(QStringLiteral(
      "prop ptPointSize 7\ncmd 16\nclick 10,10\nclick 20,10\nkey esc\nprint items\nprint item 1\n"
      "click 10,10\ncmd 49\ncmd 50\nclick 110,10\nprint items\nprint item 5\n"));
  EXPECT_TRUE(Out.contains(QStringLiteral("items 2 1,3")));
  EXPECT_TRUE(Out.contains(QStringLiteral("items 3 1,3,5")));
  const std::vector<QJsonObject> I = Items(Out);
  ASSERT_EQ(I.size(), 2u);
  EXPECT_EQ(I[0].value(QStringLiteral("size")).toInt(), 7);
  EXPECT_EQ(Pt(I[1], "insertPt"), QStringLiteral("110,10"));
}

TEST(DseDrawTools, SnapsGiveTheirPointOrNothing) {
  // Two lines crossing at (50, 50); the chain ends at each snapped point.
  const QString Setup = QStringLiteral("cmd 17\nclick 0,0\nclick 100,100\nrclick\nclick 0,100\nclick 100,0\nrclick\n");
  const QStringList Mid = Play(Setup + QStringLiteral("click 200,0\ncmd 46\nclick 20,20\nrclick\nprint item 5\n"));
  EXPECT_EQ(Pt(Items(Mid).at(0), "endPt"), QStringLiteral("50,50"));
  const QStringList Ints =
      Play(Setup + QStringLiteral("click 200,0\ncmd 47\nclick 10,10\nprint prompt\nclick 90,10\nrclick\nprint item 5\n"));
  EXPECT_TRUE(Ints.contains(QStringLiteral("prompt 按鼠标左键选择第二条线，按右键或ESC取消")));
  EXPECT_EQ(Pt(Items(Ints).at(0), "endPt"), QStringLiteral("50,50"));
  const QStringList Per = Play(Setup + QStringLiteral("click 0,50\ncmd 45\nclick 80,80\nrclick\nprint item 5\n"));
  EXPECT_EQ(Pt(Items(Per).at(0), "endPt"), QStringLiteral("25,25"));
  // Refused at step 0; Esc in a snap leaves the parent at its step.
  const QStringList Refused = Play(Setup + QStringLiteral("cmd 45\nprint cmd\nclick 200,0\ncmd 46\nkey esc\nprint cmd\nprint prompt\n"));
  EXPECT_EQ(Refused.filter(QStringLiteral("cmd ")), QStringList({QStringLiteral("cmd 17"), QStringLiteral("cmd 17")}));
  EXPECT_TRUE(Refused.contains(QStringLiteral("prompt 按鼠标左键指定下一个端点，或按Ctrl+左键回退一线，按右键结束或ESC取消")));
  // The foot may lie on the line's extension; a start on the line itself has no foot.
  const QStringList Beyond = Play(QStringLiteral(
      "cmd 17\nclick 0,0\nclick 100,0\nrclick\nclick 150,80\ncmd 45\nclick 50,0\nrclick\nprint item 3\n"
      "click 200,0\ncmd 45\nclick 50,0\nprint cmd\n"));
  EXPECT_EQ(Pt(Items(Beyond).at(0), "endPt"), QStringLiteral("150,0"));
  EXPECT_EQ(Beyond.filter(QStringLiteral("cmd ")), QStringList{QStringLiteral("cmd 45")});  // collinear: stays
  // Segments meet only where they lie, not where their extensions would.
  const QStringList Apart = Play(QStringLiteral(
      "cmd 17\nclick 0,0\nclick 100,0\nrclick\nclick 150,-50\nclick 150,50\nrclick\nclick 0,80\ncmd 47\n"
      "click 50,0\nclick 150,20\nprint cmd\nprint prompt\n"));
  EXPECT_TRUE(Apart.contains(QStringLiteral("cmd 47")));
  EXPECT_TRUE(Apart.contains(QStringLiteral("prompt 按鼠标左键选择第一条线，按右键或ESC取消")));
  // A vertex within 8 pixels is taken with the snap switch off; the grid only with it on.
  const QStringList Vertex = Play(Setup + QStringLiteral("click 95,95\nclick 203,4\nrclick\nprint item 5\n"));
  EXPECT_EQ(Pt(Items(Vertex).at(0), "startPt"), QStringLiteral("100,100"));
  EXPECT_EQ(Pt(Items(Vertex).at(0), "endPt"), QStringLiteral("203,4"));
  const QStringList Grid = Play(QStringLiteral("set snap on\ncmd 17\nclick 203,4\nclick 96,37\nrclick\nprint item 1\n"));
  EXPECT_EQ(Pt(Items(Grid).at(0), "startPt"), QStringLiteral("200,0"));
  EXPECT_EQ(Pt(Items(Grid).at(0), "endPt"), QStringLiteral("100,40"));
}

TEST(DseDrawTools, HatchFillsTheSmallestRegionOnce) {
  const QString Split = QStringLiteral("cmd 23 1\nclick 0,0\nclick 100,50\ncmd 17\nclick 50,-10\nclick 50,60\nrclick\nkey esc\n");
  const QStringList Out = Play(Split + QStringLiteral(
      "prop ptFillStyle 水平线\ncmd 27\nprint snap-enabled\nclick 25,25\nclick 26,26\nclick 75,25\nclick 150,25\n"
      "print items\nprint item 5\nprint item 7\n"));
  EXPECT_TRUE(Out.contains(QStringLiteral("snap-enabled false")));
  EXPECT_TRUE(Out.contains(QStringLiteral("items 4 1,3,5,7")));  // the same half twice and outside refused
  const std::vector<QJsonObject> I = Items(Out);
  ASSERT_EQ(I.size(), 2u);
  EXPECT_EQ(I[0].value(QStringLiteral("class")).toString(), QStringLiteral("TVectorHatch"));
  EXPECT_EQ(I[0].value(QStringLiteral("fillStyle")).toInt(), 2);
  EXPECT_EQ(I[0].value(QStringLiteral("outRect")).toArray(), QJsonArray({0, 0, 50, 50}));
  EXPECT_EQ(I[1].value(QStringLiteral("outRect")).toArray(), QJsonArray({50, 0, 100, 50}));
  // An island, and a circle cut by a line.
  const QStringList Island = Play(QStringLiteral(
      "cmd 23 1\nclick 0,0\nclick 100,100\nclick 40,40\nclick 60,60\nkey esc\ncmd 27\nclick 10,50\nclick 50,50\n"
      "print items\nprint item 5\n"));
  EXPECT_TRUE(Island.contains(QStringLiteral("items 3 1,3,5")));  // between the two: no ring is asked for
  const QStringList Circle = Play(QStringLiteral(
      "set radius 50\ncmd 24\nclick 0,0\nkey esc\ncmd 17\nclick -60,0\nclick 60,0\nrclick\nkey esc\ncmd 27\nclick 0,20\n"
      "print item 5\n"));
  const std::vector<QJsonObject> C = Items(Circle);
  ASSERT_EQ(C.size(), 1u);
  const QJsonArray B = C[0].value(QStringLiteral("outRect")).toArray();
  EXPECT_NEAR(B.at(1).toDouble(), 0, 1e-9);
  EXPECT_NEAR(B.at(3).toDouble(), 50, 1e-6);
}
