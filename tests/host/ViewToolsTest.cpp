#include "ScriptTestUtils.h"

#include "VectorDrawing.h"

#include <QSettings>

TEST(DseViewTools, EachViewStateSetsTheViewExactly) {
  const QStringList Out = Play(QStringLiteral(
      // zoom window by drag, then the same box by two clicks
      "cmd 8\ndrag -100,50 100,-50\nprint view\nview 0 0 1\nclick -100,50\nprint prompt\nclick 100,-50\nprint view\n"
      "key esc\nview 0 0 1\n"
      // pan by two points, pan to a centre
      "cmd 10\nclick 0,0\nclick 50,20\nprint view\nkey esc\nview 0 0 1\ncmd 11\nclick 30,40\nprint view\nkey esc\n"
      // real-time zoom: 150 pixels up on a 600-pixel client is 1.25 times
      "view 0 0 1\ncmd 5\ndrag 0,0 0,150\nprint view\nkey esc\n"
      // real-time pan, and the middle button's own pan that ends on release
      "view 0 0 1\ncmd 9\ndrag 0,0 30,-40\nprint view\nkey esc\nview 0 0 1\ndrag 0,0 -20,10 middle\nprint cmd\nprint view\n"));
  EXPECT_EQ(Out, QStringList({
                     QStringLiteral("view 0 0 4"),  // a 200 x 100 box fills 800 pixels
                     QStringLiteral("prompt 按鼠标左键指定对角点，按右键或ESC键结束"),
                     QStringLiteral("view 0 0 4"),
                     QStringLiteral("view -50 -20 1"),
                     QStringLiteral("view 30 40 1"),
                     QStringLiteral("view 0 0 1.25"),
                     QStringLiteral("view -30 40 1"),
                     QStringLiteral("cmd 1"),
                     QStringLiteral("view 20 -10 1"),
                 }));
}

TEST(DseViewTools, AZoomWindowInsideRotateReturnsToItsStep) {
  const QStringList Out = Play(QStringLiteral(
      "cmd 17\nclick 10,0\nclick 100,0\nrclick\nkey esc\nclick 50,0\ncmd 33\nclick 0,0\nprint prompt\ncmd 8\n"
      "print prompt\ndrag -200,200 200,-200\nkey esc\nprint cmd\nprint prompt\nanswer yes\nclick 0,10\nprint item 1\n"));
  EXPECT_EQ(Out.filter(QStringLiteral("prompt")),
            QStringList({QStringLiteral("prompt 按鼠标左键指定第二点确定旋转角度，按右键或ESC取消"),
                         QStringLiteral("prompt 按鼠标左键指定第一个角点，按右键或者ESC键结束"),
                         QStringLiteral("prompt 按鼠标左键指定第二点确定旋转角度，按右键或ESC取消")}));
  EXPECT_TRUE(Out.contains(QStringLiteral("cmd 33")));
  EXPECT_NEAR(Items(Out).at(0).value(QStringLiteral("endPt")).toArray().at(1).toDouble(), 100, 1e-9);
}

TEST(DseViewTools, PropertyEditsRefusedMixedAndApplied) {
  const QStringList Out = Play(QStringLiteral(
      "cmd 17\nclick 0,0\nclick 100,0\nrclick\nclick 0,50\nclick 100,50\nrclick\nkey esc\nclick 50,50\nprop ptColor 255\n"
      "key esc\nprint undo\ncmd 40\ncmd 41\nprint redo\nclick 50,0\nprop ptLineWidth 2000\nprint props\nprint redo\n"
      "click 25,50\nprint props\nprop ptColor 65280\nprint item 1\nprint item 3\ncmd 40\nprint item 1\n"));
  EXPECT_TRUE(Out.contains(QStringLiteral("[错误] 线宽必须在[-100, 1000]之间")));
  EXPECT_TRUE(Out.contains(QStringLiteral("prop ptLineWidth=0")));  // the old value stays
  EXPECT_TRUE(Out.contains(QStringLiteral("prop ptColor=?")));
  const std::vector<QJsonObject> I = Items(Out);
  ASSERT_EQ(I.size(), 3u);
  EXPECT_EQ(I[0].value(QStringLiteral("color")).toInt(), 65280);
  EXPECT_EQ(I[1].value(QStringLiteral("color")).toInt(), 65280);
  EXPECT_EQ(I[2].value(QStringLiteral("color")).toInt(), 16777215);  // one undo step for both
  EXPECT_EQ(Out.filter(QStringLiteral("redo")), QStringList({QStringLiteral("redo false"), QStringLiteral("redo false")}));
}

TEST(DseViewTools, GridAndDrawingDialogs) {
  const QString Out = ScriptDir().filePath(QStringLiteral("props.lvd"));
  const QStringList Lines = Play(QStringLiteral(
      "form \"横向\" \"0\"\nanswer ok\nform \"横向\" \"20\"\nform \"纵向\" \"30\"\nform \"开关\" \"关闭\"\nanswer ok\ncmd 56\n"
      "form \"宽度\" \"abc\"\nanswer ok\nform \"宽度\" \"500\"\nform \"备注\" \"节点说明\"\nform \"背景色\" \"255\"\n"
      "answer ok\ncmd 57\nprint view\nanswer cancel\ncmd 57\nsave %1 xml\n").arg(Out));
  EXPECT_EQ(Lines.filter(QStringLiteral("[错误]")),
            QStringList({QStringLiteral("[错误] 网格间距必须是1到32767之间的整数"),
                         QStringLiteral("[错误] 宽度必须是正整数或[无限制]")}));
  TVectorDrawing D;
  D.LoadFromFile(Out);
  EXPECT_EQ(D.DrawingWidth(), 500);
  EXPECT_EQ(D.DrawingHeight(), 0);
  EXPECT_EQ(D.Remark(), QStringLiteral("节点说明"));
  EXPECT_EQ(D.BackColor(), 255u);
  EXPECT_TRUE(Lines.contains(QStringLiteral("view 250 0 1")));  // zoomed to the page after OK
  QSettings S(ScriptDir().filePath(QStringLiteral("t.ini")), QSettings::IniFormat);
  EXPECT_EQ(S.value(QStringLiteral("EditorSetting/GridXSpace")).toString(), QStringLiteral("20"));
  EXPECT_EQ(S.value(QStringLiteral("EditorSetting/GridYSpace")).toString(), QStringLiteral("30"));
  EXPECT_EQ(S.value(QStringLiteral("EditorSetting/GridSwitch")).toString(), QStringLiteral("0"));
}
