#include "ScriptTestUtils.h"

namespace {

// Draws lines from "x1,y1 x2,y2" pairs with one line command each, then runs AScript.
QString Lines(std::initializer_list<const char*> ASegs) {
  QString S;
  for (const char* Seg : ASegs) {
    const QStringList P = QString::fromLatin1(Seg).split(QLatin1Char(' '));
    S += QStringLiteral("cmd 17\nclick %1\nclick %2\nrclick\nkey esc\n").arg(P[0], P[1]);
  }
  return S;
}

// Saves before, after the command, after undo and after redo; undo must give back the
// first file byte for byte and redo the second.
void ExpectExactUndoRedo(const QString& ASetup, const QString& ACommand) {
  const QStringList Out = Play(ASetup + QStringLiteral("save %1 xml\n").arg(ScriptDir().filePath(QStringLiteral("a.lvd"))) +
                               ACommand + QStringLiteral("key esc\nkey esc\nsave %1 xml\ncmd 40\nsave %2 xml\ncmd 41\nsave %3 xml\n")
                                              .arg(ScriptDir().filePath(QStringLiteral("b.lvd")),
                                                   ScriptDir().filePath(QStringLiteral("c.lvd")),
                                                   ScriptDir().filePath(QStringLiteral("d.lvd"))));
  const QByteArray A = ReadScriptFile(QStringLiteral("a.lvd")), B = ReadScriptFile(QStringLiteral("b.lvd"));
  EXPECT_NE(A, B) << "the command changed nothing";
  EXPECT_EQ(ReadScriptFile(QStringLiteral("c.lvd")), A) << "undo";
  EXPECT_EQ(ReadScriptFile(QStringLiteral("d.lvd")), B) << "redo";
}

}  // namespace

TEST(DseModifyTools, MoveAndCopyRepeatWithTheSelectionKept) {
  const QStringList Out = Play(Lines({"0,0 100,0"}) + QStringLiteral(
      "click 30,0\ncmd 32\nprint prompt\nclick 0,0\nprint prompt\nclick 10,10\nprint prompt\nclick 0,0\nclick 10,10\n"
      "print sel\nprint item 1\nkey esc\nprint sel\nprint cmd\nclick 40,20\ncmd 30\nclick 0,0\nclick 0,30\nclick 0,0\n"
      "click 0,60\nprint items\n"));
  EXPECT_EQ(Out.filter(QStringLiteral("prompt")),
            QStringList({QStringLiteral("prompt 按鼠标左键指定基准点，按右键或ESC取消"),
                         QStringLiteral("prompt 按鼠标左键指定插入点，按右键或ESC取消"),
                         QStringLiteral("prompt 按鼠标左键指定基准点，按右键或ESC取消")}));
  EXPECT_EQ(Pt(Items(Out).at(0), "startPt"), QStringLiteral("20,20"));  // moved twice
  EXPECT_TRUE(Out.contains(QStringLiteral("sel 1 1")));
  EXPECT_TRUE(Out.contains(QStringLiteral("sel 0")));  // Esc at the base point clears and ends
  EXPECT_TRUE(Out.contains(QStringLiteral("cmd 1")));
  EXPECT_TRUE(Out.contains(QStringLiteral("items 3 1,3,5")));  // two copies
  ExpectExactUndoRedo(Lines({"0,0 100,0"}), QStringLiteral("click 30,0\ncmd 32\nclick 0,0\nclick 10,10\n"));
  ExpectExactUndoRedo(Lines({"0,0 100,0"}), QStringLiteral("click 30,0\ncmd 30\nclick 0,0\nclick 10,10\n"));
}

TEST(DseModifyTools, RotateAsksWhetherToKeepTheSource) {
  const QStringList Out = Play(Lines({"10,0 100,0"}) + QStringLiteral(
      "click 50,0\ncmd 33\nclick 0,0\nanswer yes\nclick 0,10\nprint items\nprint item 1\nprint cmd\n"
      "click 0,50\ncmd 33\nclick 0,0\nanswer no\nclick -10,0\nprint items\nprint item 3\ncmd 40\nprint items\n"));
  EXPECT_EQ(Out.filter(QStringLiteral("[确认]")).size(), 2);
  EXPECT_EQ(Out.filter(QStringLiteral("items")),
            QStringList({QStringLiteral("items 1 1"), QStringLiteral("items 2 1,3"), QStringLiteral("items 1 1")}));
  const std::vector<QJsonObject> I = Items(Out);
  ASSERT_EQ(I.size(), 2u);
  EXPECT_NEAR(I[0].value(QStringLiteral("endPt")).toArray().at(1).toDouble(), 100, 1e-9);
  EXPECT_NEAR(I[1].value(QStringLiteral("endPt")).toArray().at(1).toDouble(), -100, 1e-9);  // a copy turned on
  EXPECT_TRUE(Out.contains(QStringLiteral("cmd 1")));  // a recorded rotation ends the command
  ExpectExactUndoRedo(Lines({"10,0 100,0"}), QStringLiteral("click 50,0\ncmd 33\nclick 0,0\nanswer yes\nclick 0,10\n"));
  ExpectExactUndoRedo(Lines({"10,0 100,0"}), QStringLiteral("click 50,0\ncmd 33\nclick 0,0\nanswer no\nclick 0,10\n"));
}

TEST(DseModifyTools, MirrorIsAlwaysRecorded) {
  const QStringList Out = Play(Lines({"10,10 100,10"}) + QStringLiteral(
      "click 50,10\ncmd 31\nprint prompt\nclick 0,0\nprint prompt\nanswer yes\nclick 100,0\nprint item 1\n"));
  EXPECT_TRUE(Out.contains(QStringLiteral("prompt 按鼠标左键指定镜像线的第一点，按右键或ESC取消")));
  EXPECT_EQ(Pt(Items(Out).at(0), "startPt"), QStringLiteral("10,-10"));
  ExpectExactUndoRedo(Lines({"10,10 100,10"}), QStringLiteral("click 50,10\ncmd 31\nclick 0,0\nanswer no\nclick 100,0\n"));
}

TEST(DseModifyTools, StretchMovesTheEndsInsideItsCrossingBox) {
  const QString Rect = QStringLiteral("cmd 23 1\nclick 0,0\nclick 100,50\nkey esc\n");
  for (const char* Box : {"drag 80,60 120,-10\n", "drag 120,-10 80,60\n"}) {
    SCOPED_TRACE(Box);
    const QStringList Out = Play(Rect + QStringLiteral("cmd 38\n") + QString::fromLatin1(Box) +
                                 QStringLiteral("print prompt\nclick 100,0\nclick 150,0\nprint item 1\nprint cmd\nprint sel\n"));
    EXPECT_TRUE(Out.contains(QStringLiteral("prompt 按鼠标左键指定基准点，按右键或ESC取消")));
    const QJsonArray V = Items(Out).at(0).value(QStringLiteral("vertices")).toArray();
    ASSERT_EQ(V.size(), 5);
    EXPECT_EQ(V.at(1).toArray().at(0).toDouble(), 150);
    EXPECT_EQ(V.at(2).toArray().at(0).toDouble(), 150);
    EXPECT_EQ(V.at(0).toArray().at(0).toDouble(), 0);
    EXPECT_TRUE(Out.contains(QStringLiteral("cmd 1")));  // ends by itself
  }
  ExpectExactUndoRedo(Rect, QStringLiteral("cmd 38\ndrag 80,60 120,-10\nclick 100,0\nclick 150,0\n"));
}

TEST(DseModifyTools, BreakThreeCrossingLinesIntoSeven) {
  const QString Setup = Lines({"0,0 100,0", "50,-50 50,50", "20,-20 30,20"});
  const QStringList Out = Play(Setup + QStringLiteral("cmd 52\nanswer yes\ncmd 36\nprint items\nprint sel\nprint item 1\n"));
  EXPECT_TRUE(Out.contains(QStringLiteral("[确认] 是否打断所有选中的线")));
  EXPECT_EQ(Line(Out, QStringLiteral("items")).section(QLatin1Char(' '), 1, 1), QStringLiteral("7"));
  EXPECT_TRUE(Out.contains(QStringLiteral("sel 0")));
  EXPECT_EQ(Pt(Items(Out).at(0), "endPt"), QStringLiteral("25,0"));  // the item keeps the first part
  ExpectExactUndoRedo(Setup, QStringLiteral("cmd 52\nanswer yes\ncmd 36\n"));
}

TEST(DseModifyTools, MergeTwoJoinedLinesIntoOneArc) {
  const QString Setup = Lines({"0,0 50,30", "50,30 100,0"});
  const QStringList Out = Play(Setup + QStringLiteral("cmd 52\nanswer yes\ncmd 37\nprint items\nprint item 3\n"));
  EXPECT_TRUE(Out.contains(QStringLiteral("items 1 3")));  // the last selected is the target
  const QJsonObject A = Items(Out).at(0);
  EXPECT_NE(A.value(QStringLiteral("arcType")).toInt(), 0);
  EXPECT_EQ(Pt(A, "startPt"), QStringLiteral("0,0"));
  EXPECT_EQ(Pt(A, "endPt"), QStringLiteral("100,0"));
  EXPECT_NEAR(A.value(QStringLiteral("radius")).toDouble(), (2500.0 + 900) / 60, 1e-9);
  ExpectExactUndoRedo(Setup, QStringLiteral("cmd 52\nanswer yes\ncmd 37\n"));
}

TEST(DseModifyTools, TrimKeepsThePieceAwayFromTheClick) {
  const QString Setup = Lines({"50,-50 50,50", "0,0 100,0"});
  const QStringList Out = Play(Setup + QStringLiteral(
      "cmd 35\nclick 50,40\nprint prompt\nclick 80,0\nprint item 3\ncmd 40\ncmd 35\nclick 50,40\nclick 20,0\nprint item 3\n"));
  EXPECT_TRUE(Out.contains(QStringLiteral("prompt 按鼠标左键选择要修剪的构件图元，按右键或ESC取消")));
  const std::vector<QJsonObject> I = Items(Out);
  ASSERT_EQ(I.size(), 2u);
  EXPECT_EQ(Pt(I[0], "endPt"), QStringLiteral("50,0"));
  EXPECT_EQ(Pt(I[1], "startPt"), QStringLiteral("50,0"));  // the other side, same ID
  EXPECT_EQ(Pt(I[1], "endPt"), QStringLiteral("100,0"));
  // Against a circle: between its two crossings both outer pieces stay.
  const QString Circle = QStringLiteral("set radius 20\ncmd 24\nclick 50,0\nkey esc\nset radius 0\n") + Lines({"0,0 100,0"});
  const QStringList C = Play(Circle + QStringLiteral("cmd 35\nclick 50,20\nclick 50,0\nprint items\nprint item 3\nprint item 5\n"));
  EXPECT_TRUE(C.contains(QStringLiteral("items 3 1,3,5")));
  ASSERT_EQ(Items(C).size(), 2u);
  EXPECT_EQ(Pt(Items(C)[0], "endPt"), QStringLiteral("30,0"));
  EXPECT_EQ(Pt(Items(C)[1], "startPt"), QStringLiteral("70,0"));
  // Outside the circle, before its first crossing: the piece from there to the end stays.
  const QStringList Out2 = Play(Circle + QStringLiteral("cmd 35\nclick 50,20\nclick 10,0\nprint items\nprint item 3\n"));
  EXPECT_TRUE(Out2.contains(QStringLiteral("items 2 1,3")));
  EXPECT_EQ(Pt(Items(Out2).at(0), "startPt"), QStringLiteral("30,0"));
  EXPECT_EQ(Pt(Items(Out2).at(0), "endPt"), QStringLiteral("100,0"));
  ExpectExactUndoRedo(Setup, QStringLiteral("cmd 35\nclick 50,40\nclick 80,0\n"));
  ExpectExactUndoRedo(Circle, QStringLiteral("cmd 35\nclick 50,20\nclick 50,0\n"));
}

TEST(DseModifyTools, ExtendReachesALineButNotACircle) {
  const QString Setup = Lines({"100,-50 100,50", "0,0 50,0"});
  const QStringList Out = Play(Setup + QStringLiteral("cmd 34\nclick 100,40\nclick 25,0\nprint item 3\n"));
  EXPECT_EQ(Pt(Items(Out).at(0), "endPt"), QStringLiteral("100,0"));
  const QStringList C = Play(QStringLiteral("set radius 20\ncmd 24\nclick 100,0\nkey esc\nset radius 0\n") +
                             Lines({"0,0 50,0"}) + QStringLiteral("cmd 34\nclick 100,20\nclick 25,0\nprint item 3\nprint undo\n"));
  EXPECT_EQ(Pt(Items(C).at(0), "endPt"), QStringLiteral("50,0"));
  ExpectExactUndoRedo(Setup, QStringLiteral("cmd 34\nclick 100,40\nclick 25,0\n"));
}

TEST(DseModifyTools, IntersectAndGroupZoom) {
  const QString Setup = Lines({"0,0 40,0", "60,-50 60,-10"});
  const QStringList Out = Play(Setup + QStringLiteral("cmd 62\nclick 20,0\nclick 60,-30\nprint item 1\nprint item 3\n"));
  const std::vector<QJsonObject> I = Items(Out);
  ASSERT_EQ(I.size(), 2u);
  EXPECT_EQ(Pt(I[0], "endPt"), QStringLiteral("60,0"));
  EXPECT_EQ(Pt(I[1], "endPt"), QStringLiteral("60,0"));
  ExpectExactUndoRedo(Setup, QStringLiteral("cmd 62\nclick 20,0\nclick 60,-30\n"));
  const QStringList Z = Play(Lines({"10,0 100,0"}) + QStringLiteral(
      "click 50,0\nanswer yes\nform \"缩放比例\" \"0\"\nanswer ok\nform \"缩放比例\" \"2\"\nanswer ok\ncmd 61\nprint item 1\n"));
  EXPECT_TRUE(Z.contains(QStringLiteral("[错误]  请输入缩放比例，合法数值为正实数")));
  EXPECT_EQ(Pt(Items(Z).at(0), "startPt"), QStringLiteral("20,0"));
  EXPECT_EQ(Pt(Items(Z).at(0), "endPt"), QStringLiteral("200,0"));
  ExpectExactUndoRedo(Lines({"10,0 100,0"}), QStringLiteral("click 50,0\nanswer yes\nform \"缩放比例\" \"2\"\nanswer ok\ncmd 61\n"));
}

TEST(DseModifyTools, GripsDragSharedEndsTogether) {
  const QString Setup = Lines({"0,0 100,0", "100,0 100,80"});
  const QStringList Out = Play(Setup + QStringLiteral(
      "click 50,0\nclick 100,40\nprint undo\ndown 100,0\nprint cmd\nup 100,0\nprint cmd\nprint redo\n"
      "drag 100,0 120,10\nprint item 1\nprint item 3\nprint sel\n"));
  EXPECT_TRUE(Out.contains(QStringLiteral("cmd 43")));
  const std::vector<QJsonObject> I = Items(Out);
  ASSERT_EQ(I.size(), 2u);
  EXPECT_EQ(Pt(I[0], "endPt"), QStringLiteral("120,10"));
  EXPECT_EQ(Pt(I[1], "startPt"), QStringLiteral("120,10"));
  EXPECT_TRUE(Out.contains(QStringLiteral("sel 2 1,3")));
  ExpectExactUndoRedo(Setup, QStringLiteral("click 50,0\nclick 100,40\ndrag 100,0 120,10\n"));
  // With a modifier a selected item drags the whole selection.
  ExpectExactUndoRedo(Setup, QStringLiteral("click 50,0\ndrag 50,0 50,20 left ctrl\n"));
}

TEST(DseModifyTools, ClipboardAndSelectionCommands) {
  const QString Setup = Lines({"0,0 100,0", "0,50 100,50"});
  const QStringList Out = Play(Setup + QStringLiteral(
      "click 30,0\ncmd 48\nprint items\ncmd 50\nclick 0,100\nprint items\nprint item 5\ncmd 52\nprint sel\ncmd 59\n"
      "print sel\nclick 30,50\ncmd 51\nprint items\nprint undo\n"));
  EXPECT_EQ(Out.filter(QStringLiteral("items")),
            QStringList({QStringLiteral("items 1 3"), QStringLiteral("items 2 3,5"), QStringLiteral("items 1 5")}));
  EXPECT_EQ(Pt(Items(Out).at(0), "startPt"), QStringLiteral("0,100"));  // pasted at the click
  EXPECT_TRUE(Out.contains(QStringLiteral("sel 2 3,5")));
  EXPECT_TRUE(Out.contains(QStringLiteral("sel 0")));
  EXPECT_TRUE(Out.contains(QStringLiteral("undo true")));
  ExpectExactUndoRedo(Setup, QStringLiteral("click 30,0\ncmd 48\n"));
  ExpectExactUndoRedo(Setup, QStringLiteral("click 30,0\ncmd 51\n"));
}
