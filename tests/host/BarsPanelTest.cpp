// The bars panel, the script editor and the debugger through `dse edit`. Draw set 1
// (top end joint): bars 梁上部筋 (notation text 11 "4C22"), 梁下部筋 ("2C20" in the row),
// 柱内侧纵筋 (text 17 "2C25"); params hc 500, hb 700, ln 1550, lab 770, c 25.

#include "EditTestUtils.h"

namespace {

class BarsPanelTest : public EditCommandsTest {
protected:
  QJsonObject Bar(int AID, int ABarID) {
    for (const QJsonValue& V : Show(AID)[S("bars")].toArray())
      if (V.toObject()[S("barId")].toInt() == ABarID) return V.toObject();
    return {};
  }
};

}  // namespace

TEST_F(BarsPanelTest, CellEditsWithTheirRefusals) {
  const QString Long41 = QString(41, u'a'), Long40 = QString(40, u'a');
  const TDseResult R = Edit(1, S("action acShowBars\n"
                                 "cell bars 1 1 \"\"\ncell bars 1 1 \"%1\"\ncell bars 1 1 \"%2\"\n"
                                 "cell bars 1 3 \"0\"\ncell bars 1 3 \"x\"\ncell bars 1 3 \"601\"\n"
                                 "cell bars 1 2 \"abc\"\ncell bars 1 2 \"4C25\"\n"  // the notation text item
                                 "cell bars 2 2 \"2C22\"\ncell bars 2 5 \" 备注 \"\nprint items\n"
                                 "action acSave\nclose\n")
                                 .arg(Long41, Long40));
  ASSERT_EQ(R.Code, 0) << R.Err.toStdString();
  const QStringList L = Lines(R);
  ASSERT_GE(L.size(), 5);
  EXPECT_EQ(L[0], S("[错误] 钢筋筋号不能为空或长度不能超过40个字节"));
  EXPECT_EQ(L[1], S("[错误] 钢筋筋号不能为空或长度不能超过40个字节"));
  EXPECT_EQ(L[2], S("[错误] 钢筋图号超出范围[1, 10004]，请重新输入"));
  EXPECT_TRUE(L[3].startsWith(S("[错误] "))) << L[3].toStdString();  // not an integer
  EXPECT_EQ(L[4], S("[错误] 钢筋输入格式错误"));
  const QJsonObject B0 = Bar(1, 0), B1 = Bar(1, 1);
  EXPECT_EQ(B0[S("barNum")].toString(), Long40);
  EXPECT_EQ(B0[S("barPicId")].toInt(), 601);
  EXPECT_EQ(B0[S("barInfo")].toString(), S("4C25"));  // written to its text item
  EXPECT_EQ(B1[S("barInfo")].toString(), S("2C22"));  // no text item: the row's own notation
  EXPECT_EQ(B1[S("remark")].toString(), S("备注"));
}

TEST_F(BarsPanelTest, AScriptSurvivesRowMovesAndSaves) {
  const TDseResult R = Edit(1, S("action acShowBars\ncell bars 2 1 \"梁下部筋\"\nscript \"cd=hc*2\\ncnt=1\\nmainend\"\n"
                                 "cell bars 3 1 \"柱筋\"\nprint script\ncell bars 2 1 \"梁下部筋\"\nprint script\n"
                                 "action acSave\nclose\n"));
  ASSERT_EQ(R.Code, 0) << R.Err.toStdString();
  EXPECT_TRUE(R.Out.contains(S("script 1 l1=1600+hb-c\n")));  // row 3's own
  EXPECT_TRUE(R.Out.contains(S("script 1 cd=hc*2\nscript 2 cnt=1\nscript 3 mainend\ncaret")));
  EXPECT_EQ(Bar(1, 1)[S("script")].toString(), S("cd=hc*2\ncnt=1\nmainend"));
  EXPECT_EQ(Bar(1, 2)[S("barNum")].toString(), S("柱筋"));
}

TEST_F(BarsPanelTest, SaveTakesTheTypedScriptWithoutARowMove) {
  const TDseResult R = Edit(1, S("action acShowBars\nscript \"cd=1\\nmainend\"\naction acSave\nprint modified\nclose\n"));
  ASSERT_EQ(R.Code, 0) << R.Err.toStdString();
  EXPECT_EQ(Bar(1, 0)[S("script")].toString(), S("cd=1\nmainend"));
  // Typing alone is unsaved work: closing asks.
  const TDseResult Q = Edit(1, S("action acShowBars\nscript \"cd=2\"\nanswer no\nclose\n"));
  ASSERT_EQ(Q.Code, 0) << Q.Err.toStdString();
  EXPECT_TRUE(Q.Out.contains(S("[确认] 图集已修改，是否保存？")));
  EXPECT_EQ(Bar(1, 0)[S("script")].toString(), S("cd=1\nmainend"));
}

TEST_F(BarsPanelTest, F2MarksAParamOrSaysItIsNone) {
  const TDseResult R = Edit(1, S("action acShowBars\ncaret 1 5\nkey f2\nprint item 23\ncaret 1 1\nkey f2\nclose\n"));
  ASSERT_EQ(R.Code, 0) << R.Err.toStdString();
  // "l1=ln+hc-c": column 5 is in ln, the param on item 23; column 1 is in l1.
  const QStringList L = Lines(R);
  ASSERT_GE(L.size(), 2);
  EXPECT_TRUE(L[0].contains(S("\"id\":23"))) << L[0].toStdString();
  EXPECT_EQ(L[1], S("[提示] 当前变量没有在图集区定义!"));
}

TEST_F(BarsPanelTest, DebugRunGivesTheDemosNumbers) {
  // Bar 0: l1=ln+hc-c = 2025; l2 = 1.7*lab = 1309 < hb-c = 675? no: 1309; cd = 3334; cnt = 4.
  const TDseResult R = Edit(1, S("action acShowBars\ndebug start\nprint debug\ndebug step\ndebug step\nprint debug\n"
                                 "debug run\ndebug query cd\ndebug query CNT\ndebug query nothing\ndebug close\nclose\n"));
  ASSERT_EQ(R.Code, 0) << R.Err.toStdString();
  const QStringList L = Lines(R);
  EXPECT_EQ(L.value(0), S("debug 1 0"));
  EXPECT_TRUE(L.contains(S("var zj=22")));
  EXPECT_TRUE(L.contains(S("var gjth=536")));
  EXPECT_TRUE(L.contains(S("debug 3 0")));
  EXPECT_TRUE(L.contains(S("[提示] 执行结束！")));
  EXPECT_TRUE(L.contains(S("value cd=3334"))) << R.Out.toStdString();
  EXPECT_TRUE(L.contains(S("value CNT=4")));
  EXPECT_TRUE(L.contains(S("value nothing=")));
}

TEST_F(BarsPanelTest, DebugWithoutANotationOpensNothing) {
  const TDseResult R = Edit(1, S("action acShowBars\ncell bars 2 2 \"\"\ncell bars 2 1 \"梁下部筋\"\ndebug start\n"
                                 "debug step\nanswer no\nclose\n"));
  EXPECT_EQ(R.Code, 1);
  EXPECT_TRUE(R.Out.contains(S("[提示] 请输入钢筋信息"))) << R.Out.toStdString();
  EXPECT_TRUE(R.Err.contains(S("the debugger is not open"))) << R.Err.toStdString();
}

TEST_F(BarsPanelTest, AddAndDeleteBars) {
  const int Before = Show(1)[S("bars")].toArray().size();
  const TDseResult R = Edit(1, S("action acShowBars\nchoose pic 944\nanswer ok\naction acAddBar\n"
                                 "cell bars 1 1 \"梁上部筋\"\nanswer no\naction acDeleteBar\nanswer yes\naction acDeleteBar\n"
                                 "print items\naction acSave\nclose\n"));
  ASSERT_EQ(R.Code, 0) << R.Err.toStdString();
  const QJsonArray B = Show(1)[S("bars")].toArray();
  // One added (picture 944, no items), bar 0 deleted with its item 9.
  ASSERT_EQ(B.size(), Before);
  EXPECT_EQ(B.last().toObject()[S("barPicId")].toInt(), 944);
  EXPECT_EQ(B.last().toObject()[S("barNum")].toString(), S("新钢筋"));
  EXPECT_TRUE(Bar(1, 0).isEmpty());
  EXPECT_FALSE(R.Out.contains(S(",9,"))) << R.Out.toStdString();
}

TEST_F(BarsPanelTest, SpacingsOfTheNotationFeedJjAndJm) {
  const struct {
    const char* Notation;
    const char *JJ, *JM;
  } Cases[] = {{"A8@100/200", "var jj=200", "var jm=100"}, {"A8@150", "var jj=150", "var jm=0"}, {"3C20", "var jj=0", "var jm=0"}};
  for (const auto& C : Cases) {
    SCOPED_TRACE(C.Notation);
    const TDseResult R = Edit(1, S("action acShowBars\ncell bars 2 2 \"%1\"\ndebug start\nprint debug\ndebug close\n"
                                   "answer no\nclose\n").arg(S(C.Notation)));
    ASSERT_EQ(R.Code, 0) << R.Err.toStdString();
    EXPECT_TRUE(Lines(R).contains(S(C.JJ))) << R.Out.toStdString();
    EXPECT_TRUE(Lines(R).contains(S(C.JM)));
  }
}
