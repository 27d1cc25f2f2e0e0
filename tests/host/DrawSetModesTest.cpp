// The draw-set modes and commands 100-104 through `dse edit` on the demo library.
// Draw set 4 (strip footing): bar 0 on polyline 7 (notation text 9; (400, 50) is on it), bar 1 on the
// dots 11-23; params b 25, l 27, c 29, w 31 at (0, 650), w2 33 at (550, 380).

#include "EditTestUtils.h"

namespace {

class DrawSetModesTest : public EditCommandsTest {
protected:
  QJsonArray Bars(int AID) { return Show(AID)[S("bars")].toArray(); }
  QJsonArray Params(int AID) { return Show(AID)[S("params")].toArray(); }
  static QJsonObject Find(const QJsonArray& A, const char* AKey, const QJsonValue& AValue) {
    for (const QJsonValue& V : A)
      if (V.toObject()[S(AKey)] == AValue) return V.toObject();
    return {};
  }
};

// Draw set 4 in a window where world (x, y) is pixel (400 + 0.4 x, 300 - 0.4 (y - 300)): the
// pick tolerance is 20 units, so (-750, 78) is the dot and not the bar line at y = 50.
const char* View4 = "size 800 600\nview 0 300 0.4\nset snap off\n";

}  // namespace

TEST_F(DrawSetModesTest, BarModeMakesABarPerLineAndPerChain) {
  const int Before = Bars(1).size();
  const TDseResult R = Edit(1, S("size 800 600\nview 0 0 1\nset snap off\nmode bar\n"
                                 "action acDrawLine\nclick 0,0\nclick 100,0\nrclick\n"
                                 "action acDrawLine\nclick 400,50\nclick 100,50\nclick 100,150\nrclick\nkey esc\n"
                                 "print bars\naction acSave\nclose\n"));
  ASSERT_EQ(R.Code, 0) << R.Err.toStdString();
  const QJsonArray B = Bars(1);
  ASSERT_EQ(B.size(), Before + 2);
  for (int I = Before; I < B.size(); ++I) {
    const QJsonObject O = B[I].toObject();
    EXPECT_EQ(O[S("barNum")].toString(), S("新钢筋"));
    EXPECT_EQ(O[S("barPicId")].toInt(), 1);
    EXPECT_EQ(O[S("infoItem")].toInt(), -1);
    EXPECT_FALSE(O[S("items")].toString().contains(u','));  // one item each
  }
  // The chain is one polyline.
  const QString Out = Dir.filePath(S("d.lvd"));
  ASSERT_EQ(RunDse({S("export"), Lib, S("1"), Out}).Code, 0);
  const QString Info = RunDse({S("lvd"), S("info"), Out}).Out;
  const QString Chain = B[B.size() - 1].toObject()[S("items")].toString();
  EXPECT_TRUE(Info.contains(S("  %1 TVectorPolyline").arg(Chain))) << Info.toStdString();
}

TEST_F(DrawSetModesTest, ParamModeAsksForTheNameOfANewText) {
  const int Before = Params(1).size();
  const TDseResult R = Edit(1, S("size 800 600\nview 0 0 1\nset snap off\nmode param\nprop ptText \"300\"\n"
                                 "input \"hc\"\ninput \"2x\"\ninput \" depth \"\n"
                                 "action acDrawText\nclick 0,0\nclick 100,0\n"
                                 "input cancel\nclick 0,100\nclick 100,100\nkey esc\n"
                                 "print items\naction acSave\nclose\n"));
  ASSERT_EQ(R.Code, 0) << R.Err.toStdString();
  const QStringList L = Lines(R);
  // IsValidParamCode's messages, in hint boxes; then the name.
  ASSERT_GE(L.size(), 2);
  EXPECT_TRUE(L[0].startsWith(S("[提示] "))) << L[0].toStdString();
  EXPECT_TRUE(L[1].startsWith(S("[提示] "))) << L[1].toStdString();
  const QJsonArray P = Params(1);
  ASSERT_EQ(P.size(), Before + 1);
  const QJsonObject New = P.last().toObject();
  EXPECT_EQ(New[S("code")].toString(), S("depth"));
  EXPECT_EQ(New[S("dataType")].toInt(), 32);
  // The cancelled text stays in the drawing without a param.
  EXPECT_EQ(Show(1)[S("items")].toInt(), 14 + 2);
}

TEST_F(DrawSetModesTest, ModesTouchOnlyTheirOwnItems) {
  // The bar's polyline at (0, 50) and the param w at (0, 650).
  const TDseResult R = Edit(4, S(View4) + S("click 400,50\nprint sel\ncmd 59\nclick 0,650\nprint sel\ncmd 59\n"
                                            "click 0,-230\nprint sel\ncmd 59\n"  // the bar's notation: plain
                                            "mode bar\nclick 400,50\nprint sel\ncmd 59\nclick 0,650\nprint sel\n"
                                            "mode param\nclick 0,650\nprint sel\ncmd 59\nclick 400,50\nprint sel\nclose\n"));
  ASSERT_EQ(R.Code, 0) << R.Err.toStdString();
  // In the plain mode a click on w falls through the param to the outline around it.
  EXPECT_EQ(Lines(R), (QStringList{S("sel 0"), S("sel 1 1"), S("sel 1 9"), S("sel 1 7"), S("sel 0"), S("sel 1 31"),
                                   S("sel 0"), S("result 2")}));
}

TEST_F(DrawSetModesTest, DeletingItemsTakesBarsAndParamsAlong) {
  // Bar 1 has seven dots: deleting one keeps it. Bar 0's only item: the bar goes.
  const TDseResult R = Edit(4, S(View4) + S("mode bar\nclick -750,78\nanswer yes\nkey del\nclick 400,50\nanswer yes\n"
                                            "key del\nmode param\nclick 0,650\nanswer yes\nkey del\nprint bars\n"
                                            "print params\naction acSave\nclose\n"));
  ASSERT_EQ(R.Code, 0) << R.Err.toStdString();
  const QJsonArray B = Bars(4);
  ASSERT_EQ(B.size(), 1);
  EXPECT_EQ(B[0].toObject()[S("barId")].toInt(), 1);
  EXPECT_EQ(B[0].toObject()[S("items")].toString().split(u',').size(), 6);
  EXPECT_TRUE(Find(Params(4), "code", S("w")).isEmpty());
  EXPECT_EQ(Params(4).size(), 4);
}

TEST_F(DrawSetModesTest, RenamingAParamRunsThroughEveryScript) {
  const TDseResult R = Edit(4, S(View4) + S("mode param\ninput \"w2\"\ninput \"width\"\naction acEditParam\n"
                                            "click 0,650\nkey esc\naction acSave\nclose\n"));
  ASSERT_EQ(R.Code, 0) << R.Err.toStdString();
  EXPECT_TRUE(R.Out.startsWith(S("[提示] "))) << R.Out.toStdString();  // w2 is taken
  EXPECT_FALSE(Find(Params(4), "code", S("width")).isEmpty());
  const QJsonArray B = Bars(4);
  EXPECT_EQ(B[0].toObject()[S("script")].toString(),
            S("cd=b-2*c+2*6.25*zj\nif cd<width+2*w2-2*c\ncd=width+2*w2-2*c\nendif\ncnt=ceil(l/jj)+1\nmainend"));
  EXPECT_EQ(B[1].toObject()[S("script")].toString(),
            S("single s\ns=w2-c\ncd=l-2*c\ncnt=ceil((b-2*c)/jj)+1\nif width>s\ncnt=cnt+1\nendif\nmainend"));
}

TEST_F(DrawSetModesTest, BarNotationText) {
  // A new bar on a line at y = 1000; bar 0 has its notation already.
  const TDseResult R = Edit(
      4, S(View4) + S("mode bar\naction acDrawLine\nclick -900,1000\nclick -600,1000\nrclick\nkey esc\n"
                      "action acSetBarInfo\nprint prompt\nmove -750,1000\nprint cursor\nmove -750,700\n"
                      "print cursor\nclick -750,1000\n"  // no text yet
                      "prop ptText \"abc\"\nclick -750,1000\n"                  // not a notation
                      "prop ptText \"C12@150\"\nclick 400,50\n"                 // bar 0 has one
                      "prop ptText \" A8@200 \"\nclick -750,1000\nclick -750,1000\nkey esc\naction acSave\nclose\n"));
  ASSERT_EQ(R.Code, 0) << R.Err.toStdString();
  const QStringList L = Lines(R);
  ASSERT_GE(L.size(), 7);
  EXPECT_EQ(L[0], S("prompt 按鼠标左键选择一条钢筋，按右键或ESC取消"));
  EXPECT_EQ(L[1], S("cursor 7"));  // over the bar's line
  EXPECT_EQ(L[2], S("cursor 6"));
  EXPECT_EQ(L[3], S("[提示] 请先在图元属性列表中输入文本内容"));
  EXPECT_EQ(L[4], S("[错误] 钢筋输入格式错误"));
  EXPECT_EQ(L[5], S("[提示] 该钢筋已经设置了钢筋信息"));
  EXPECT_EQ(L[6], S("[提示] 该钢筋已经设置了钢筋信息"));  // the second click: it has one now
  const QJsonObject New = Bars(4).last().toObject();
  EXPECT_EQ(New[S("barInfo")].toString(), S(" A8@200 "));
  EXPECT_GT(New[S("infoItem")].toInt(), 35);
}

TEST_F(DrawSetModesTest, MergeBarsAndLinesToBar) {
  const TDseResult R = Edit(
      4, S(View4) + S("mode bar\naction acMergeBars\nclick 400,50\nanswer yes\nrclick\n"  // one bar: nothing
                      "cmd 59\naction acMergeBars\nclick 400,50\nclick -750,78\nanswer yes\nrclick\nprint bars\n"
                      "mode normal\naction acLinesToBar\nclick 0,-230\nanswer yes\nrclick\n"  // a text only
                      "action acLinesToBar\nclick -1000,-50\nclick 0,900\nanswer yes\nrclick\nprint bars\n"
                      "mode bar\nprop ptText \"C10@200\"\naction acSetBarInfo\nclick 0,900\nkey esc\n"
                      "action acSave\nclose\n"));
  ASSERT_EQ(R.Code, 0) << R.Err.toStdString();
  EXPECT_TRUE(R.Out.contains(S("[确认] 是否合并选中的钢筋？")));
  EXPECT_TRUE(R.Out.contains(S("[确认] 是否将选中的图元转换为钢筋？")));
  EXPECT_TRUE(R.Out.contains(S("[提示] 该钢筋已经设置了钢筋信息")));  // a made bar has notation 0
  const QJsonArray B = Bars(4);
  ASSERT_EQ(B.size(), 2);
  EXPECT_EQ(B[0].toObject()[S("items")].toString(), S("7,11,13,15,17,19,21,23"));
  const QJsonObject Made = B[1].toObject();
  EXPECT_EQ(Made[S("barNum")].toString(), S("新钢筋"));
  EXPECT_EQ(Made[S("infoItem")].toInt(), 0);
  EXPECT_EQ(Made[S("items")].toString(), S("3,1"));
}

TEST_F(DrawSetModesTest, JumpOrderSwapsValues) {
  // w holds 3, b holds 0; the bar's notation text 9 holds 0 too (bars come first).
  const TDseResult R = Edit(4, S(View4) + S("input \"-2\"\ninput \"1\"\naction acEditTabOrder\nclick 0,650\n"
                                            "input \"-1\"\nclick 0,-400\nprint params\naction acSave\nclose\n"));
  ASSERT_EQ(R.Code, 0) << R.Err.toStdString();
  EXPECT_TRUE(R.Out.contains(S("[提示] 跳转顺序值必须是[-1, 2147483647]之间的整数！\\n只有大于或等于0的值是有效的。"
                               "当值为-1时，编辑框不会自动跳转到该图元。")))
      << R.Out.toStdString();
  const QJsonArray P = Params(4);
  EXPECT_EQ(Find(P, "code", S("w"))[S("orderNum")].toInt(), 1);
  EXPECT_EQ(Find(P, "code", S("l"))[S("orderNum")].toInt(), 3);  // swapped
  EXPECT_EQ(Find(P, "code", S("b"))[S("orderNum")].toInt(), -1);  // -1 swaps nothing
  EXPECT_EQ(Find(Bars(4), "barId", 0)[S("orderNum")].toInt(), 0);
}

TEST_F(DrawSetModesTest, UndoTakesTheBarAndRedoMakesItAgain) {
  const int Before = Bars(1).size();
  const TDseResult R = Edit(1, S("size 800 600\nview 0 0 1\nset snap off\nmode bar\naction acDrawLine\nclick 0,0\n"
                                 "click 100,0\nrclick\nkey esc\nprint bars\nprint undo\nkey z ctrl\nprint bars\n"
                                 "print undo\nkey z shift ctrl\nprint bars\nprint undo\naction acSave\nclose\n"));
  ASSERT_EQ(R.Code, 0) << R.Err.toStdString();
  // The bar lines of each print, split at the "undo" lines behind them.
  QList<int> Counts{0};
  for (const QString& Line : Lines(R)) {
    if (Line.startsWith(S("bar "))) ++Counts.last();
    if (Line.startsWith(S("undo "))) Counts << 0;
  }
  ASSERT_GE(Counts.size(), 3);
  EXPECT_EQ(Counts[0], Before + 1);
  EXPECT_EQ(Counts[1], Before);
  EXPECT_EQ(Counts[2], Before + 1);
  EXPECT_EQ(Bars(1).last().toObject()[S("barNum")].toString(), S("新钢筋"));
}

TEST_F(DrawSetModesTest, PicturePagesOfTheDemoLibrary) {
  TDseResult R = RunDse({S("pics"), Lib});
  ASSERT_EQ(R.Code, 0) << R.Err.toStdString();
  const QStringList L = Lines(R);
  // Common: by order (CommonOrder 1, 2 of 601 and 536; the user's 1 and 133 at 100, 101).
  EXPECT_EQ(L.value(0), S("常用图库: 601 536 1 133"));
  EXPECT_TRUE(L.value(1).startsWith(S("BS图库: 1 64 ")));  // by shape code
  EXPECT_EQ(L.value(1).split(u' ').size(), 1 + 16);
  EXPECT_TRUE(L.contains(S("香港房屋署图号库: 356 948")));
  EXPECT_TRUE(L.contains(S("自定义图库 异形箍筋: 10001 10002")));
  EXPECT_TRUE(L.contains(S("系统图库 3.箍筋 2.两端弯钩: 132 903 948")));  // 133 is in the user's list
  // The shape-code regions keep the common pictures on the system page too and drop "99".
  R = RunDse({S("pics"), Lib, S("--region"), S("3")});
  EXPECT_TRUE(R.Out.contains(S("系统图库 3.箍筋 2.两端弯钩: 132 903\n"))) << R.Out.toStdString();

  const QString Shot = Dir.filePath(S("pics.png"));
  R = RunDse({S("pics"), Lib, S("--shot"), Shot, S("--page"), S("1")});
  ASSERT_EQ(R.Code, 0) << R.Err.toStdString();
  EXPECT_GT(QFile(Shot).size(), 1000);
  EXPECT_EQ(RunDse({S("pics"), Lib, S("--page"), S("7")}).Code, 2);
  EXPECT_EQ(RunDse({S("pics"), Dir.filePath(S("none.db"))}).Code, 1);
}
