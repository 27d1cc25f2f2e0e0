// `dse edit`: the editor window on a draw set of a library, played by scripts.

#include "EditTestUtils.h"
#include "LibraryBackends.h"

#include <QProcess>
#include <QTimer>

#include <map>

TEST_F(EditCommandsTest, CloseWithoutChangesAsksNothingAndGivesTwo) {
  const QByteArray Before = ReadAll(Lib);
  const TDseResult R = Edit(0, S("print modified\nclose\n"));
  ASSERT_EQ(R.Code, 0) << R.Err.toStdString();
  EXPECT_EQ(Lines(R), (QStringList{S("modified false"), S("result 2")}));
  EXPECT_EQ(ReadAll(Lib), Before);
}

TEST_F(EditCommandsTest, SaveReachesTheLibraryAndTheExport) {
  const int Items = Show(1)[S("items")].toInt();
  const TDseResult R = Edit(1, S(DrawLine) + S("print actions\naction acSave\nprint modified\nclose\n"));
  ASSERT_EQ(R.Code, 0) << R.Err.toStdString();
  EXPECT_TRUE(R.Out.contains(S("action acSave enabled=true")));
  EXPECT_TRUE(R.Out.contains(S("modified false\nresult 2\n"))) << R.Out.toStdString();
  EXPECT_EQ(Show(1)[S("items")].toInt(), Items + 1);

  const QString Out = Dir.filePath(S("d1.lvd"));
  ASSERT_EQ(RunDse({S("export"), Lib, S("1"), Out}).Code, 0);
  const TDseResult Info = RunDse({S("lvd"), S("info"), Out});
  ASSERT_EQ(Info.Code, 0) << Info.Err.toStdString();
  // The new line (drawn with the arrow marks of the plain mode, which widen its box in y).
  const QString Last = Info.Out.trimmed().split(u'\n').last().trimmed();
  EXPECT_TRUE(Last.startsWith(S("29 TVectorArc [10, "))) << Last.toStdString();
  EXPECT_TRUE(Last.contains(S(", 100, "))) << Last.toStdString();
  // The bars and params are as they were.
  EXPECT_EQ(Show(1)[S("bars")].toArray().size(), 3);
}

TEST_F(EditCommandsTest, SavePromptAnswers) {
  const QByteArray Before = ReadAll(Lib);
  // No: the library stays byte for byte.
  TDseResult R = Edit(1, S(DrawLine) + S("answer no\nclose\n"));
  ASSERT_EQ(R.Code, 0) << R.Err.toStdString();
  EXPECT_TRUE(R.Out.contains(S("[确认] 图集已修改，是否保存？\nresult 2"))) << R.Out.toStdString();
  EXPECT_EQ(ReadAll(Lib), Before);

  // Cancel keeps the window open; Yes then saves and closes.
  const int Items = Show(1)[S("items")].toInt();
  R = Edit(1, S(DrawLine) + S("answer cancel\nclose\nprint items\nanswer yes\nclose\n"));
  ASSERT_EQ(R.Code, 0) << R.Err.toStdString();
  const QStringList L = Lines(R);
  const int Open = int(L.indexOf(S("open")));
  ASSERT_GE(Open, 0) << R.Out.toStdString();
  EXPECT_TRUE(L[Open + 1].startsWith(S("items"))) << R.Out.toStdString();
  EXPECT_EQ(L.last(), S("result 2"));
  EXPECT_EQ(Show(1)[S("items")].toInt(), Items + 1);

  // A script that ends with unsaved work meets the question like a user would.
  R = Edit(1, S(DrawLine));
  EXPECT_EQ(R.Code, 1);
  EXPECT_TRUE(R.Err.contains(S("unanswered dialog"))) << R.Err.toStdString();
}

TEST_F(EditCommandsTest, RefusedSaveShowsTheServersMessageAndEditingGoesOn) {
  const QString Other = Write(S("other.txt"), S(DrawLine) + S("action acSave\nclose\n"));
  // A second program saves the same draw set while this window has it open.
  int OtherCode = -1;
  QTimer::singleShot(0, [&] {
    QProcess P;
    P.start(S(DSE_BINARY), {S("edit"), Lib, S("1"), S("-s"), Other, S("--settings"), Dir.filePath(S("other.ini"))});
    P.waitForFinished(60000);
    OtherCode = P.exitStatus() == QProcess::NormalExit ? P.exitCode() : -1;
  });
  const TDseResult R = Edit(1, S(DrawLine) + S("wait 50\naction acSave\nprint modified\nprint items\n"
                                               "answer no\nclose\n"));
  ASSERT_EQ(OtherCode, 0);
  ASSERT_EQ(R.Code, 0) << R.Err.toStdString();
  EXPECT_TRUE(R.Out.contains(S("[错误] 保存失败：图集"))) << R.Out.toStdString();
  EXPECT_TRUE(R.Out.contains(S("已被其他用户修改"))) << R.Out.toStdString();
  // The drawing keeps its change: the user can still save it elsewhere or retry.
  EXPECT_TRUE(R.Out.contains(S("modified false"))) << R.Out.toStdString();
  EXPECT_TRUE(R.Out.contains(S("[确认] 图集已修改，是否保存？"))) << R.Out.toStdString();
  EXPECT_TRUE(R.Out.endsWith(S("result 2\n")));
}

TEST_F(EditCommandsTest, ActionsFollowTheModeAndTheCurves) {
  struct TCase {
    const char* Name;
    const char* Script;
    std::map<QString, bool> Enabled;
  };
  // Draw set 5 (stair) has lines; a fresh draw set from an empty drawing has none.
  const TCase Cases[] = {
      {"normal mode", "mode normal\n",
       {{S("acDrawLine"), true}, {S("acDrawText"), true}, {S("acDrawHatch"), true}, {S("acDrawDimension"), true},
        {S("acLinesToBar"), true}, {S("acFindParam"), false}, {S("acSetBarInfo"), false}, {S("acTrim"), true},
        {S("acBreak"), true}, {S("acDuplicate"), true}, {S("acCut"), false}, {S("acUndo"), false}}},
      {"bar mode", "mode bar\n",
       {{S("acDrawLine"), true}, {S("acDrawText"), false}, {S("acDrawHatch"), false}, {S("acDrawDimension"), false},
        {S("acFindParam"), false}, {S("acTrim"), false}, {S("acBreak"), false}, {S("acDuplicate"), true},
        {S("acSetBarInfo"), true}, {S("acMergeBars"), true}, {S("acLinesToBar"), false}}},
      {"param mode", "mode param\n",
       {{S("acDrawLine"), false}, {S("acDrawCircle"), false}, {S("acDrawText"), true}, {S("acDrawHatch"), false},
        {S("acFindParam"), true}, {S("acEditParam"), true}, {S("acTrim"), false}, {S("acDuplicate"), false},
        {S("acMove"), true},
        {S("acDrawArc"), false}}},
  };
  for (const TCase& C : Cases) {
    SCOPED_TRACE(C.Name);
    const TDseResult R = Edit(5, S(C.Script) + S("print actions\nclose\n"));
    ASSERT_EQ(R.Code, 0) << R.Err.toStdString();
    for (const auto& [Name, On] : C.Enabled)
      EXPECT_TRUE(R.Out.contains(S("action %1 enabled=%2 ").arg(Name, On ? S("true") : S("false"))))
          << Name.toStdString();
  }
}

TEST_F(EditCommandsTest, CurveCountingForTrimBreakAndExtend) {
  struct TCase {
    const char* Name;
    const char* Script;
    bool Trim, Break;
  };
  // After clearing the draw set, one line is drawn, then the case's steps.
  const TCase Cases[] = {
      {"one line, nothing selected", "", false, false},
      {"two lines, nothing selected", "action acDrawLine\nclick 0,50\nclick 100,50\nrclick\n", true, true},
      {"two lines, one selected", "action acDrawLine\nclick 0,50\nclick 100,50\nrclick\nkey esc\nclick 50,50\n", true, false},
      {"two lines, both selected", "action acDrawLine\nclick 0,50\nclick 100,50\nrclick\nkey esc\nkey a ctrl\n", true, true},
      {"a point selected", "action acDrawPoint\nclick 0,80\nkey esc\nclick 0,80\n", false, false},
  };
  for (const TCase& C : Cases) {
    SCOPED_TRACE(C.Name);
    const TDseResult R = Edit(2, S("size 800 600\nview 0 0 1\nset snap off\nanswer yes\naction acInitialize\n"
                                   "action acDrawLine\nclick 0,0\nclick 100,0\nrclick\n") +
                                     S(C.Script) + S("print sel\nprint actions\nanswer no\nclose\n"));
    ASSERT_EQ(R.Code, 0) << R.Err.toStdString();
    const auto Has = [&](const char* AName, bool AOn) {
      return R.Out.contains(S("action %1 enabled=%2 ").arg(S(AName), AOn ? S("true") : S("false")));
    };
    EXPECT_TRUE(Has("acTrim", C.Trim)) << R.Out.toStdString();
    EXPECT_TRUE(Has("acExtend", C.Trim));
    EXPECT_TRUE(Has("acBreak", C.Break));
    EXPECT_TRUE(Has("acMerge", C.Break));
  }
}

TEST_F(EditCommandsTest, ComboBoxesAcceptAndRefuse) {
  struct TCase {
    const char* Box;
    const char* Text;
    const char* Expect;  // the print after it
  };
  const TCase Cases[] = {
      {"zoom", "75", "scale 75"},       {"zoom", "0", "scale 75"},        {"zoom", "100000", "scale 100000"},
      {"zoom", "100001", "scale 100000"}, {"zoom", " 50% ", "scale 50"}, {"zoom", "", "scale 100"},
      {"zoom", "abc", "scale 100"},
  };
  QString Script = S("size 800 600\n");
  for (const TCase& C : Cases) Script += S("combo %1 \"%2\"\nprint scale\n").arg(S(C.Box), S(C.Text));
  Script += S("combo zoom \"75\"\nprint status\nclose\n");
  const TDseResult R = Edit(0, Script);
  ASSERT_EQ(R.Code, 0) << R.Err.toStdString();
  const QStringList L = Lines(R);
  ASSERT_GE(L.size(), int(std::size(Cases)));
  for (size_t I = 0; I < std::size(Cases); ++I) {
    SCOPED_TRACE(QStringLiteral("%1 \"%2\"").arg(S(Cases[I].Box), S(Cases[I].Text)).toStdString());
    EXPECT_EQ(L[int(I)], S(Cases[I].Expect));
  }

  // The radius box: its value reaches the arc and circle commands.
  const TDseResult C = Edit(0, S("size 800 600\nview 0 0 1\nset snap off\ncombo radius \"25\"\naction acDrawCircle\n"
                                 "click 0,0\nprint items\ncombo radius \"-1\"\ncombo radius \"10000001\"\n"
                                 "combo radius \"\"\naction acDrawCircle\nclick 0,0\nclick 30,0\nanswer no\nclose\n"));
  ASSERT_EQ(C.Code, 0) << C.Err.toStdString();
  // With the radius set one click makes the circle; with it back at 0 two clicks do.
  const QStringList CL = Lines(C);
  ASSERT_FALSE(CL.isEmpty());
  EXPECT_EQ(CL[0].split(u' ')[1].toInt(), Show(0)[S("items")].toInt() + 1);
}

TEST_F(EditCommandsTest, RegionsFourAndTwelveReadTheBsDrawing) {
  // Region 0 writes the "_Bs" drawing; region 1 its own.
  TDseResult R = Edit(3, S(DrawLine) + S("action acSave\nclose\n"), {S("--region"), S("0")});
  ASSERT_EQ(R.Code, 0) << R.Err.toStdString();
  const int Bs = Show(3, 0)[S("items")].toInt();
  const int Chs = Show(3, 1)[S("items")].toInt();
  ASSERT_EQ(Bs, Chs + 1);
  for (const char* Region : {"4", "12", "0", "1"}) {
    SCOPED_TRACE(Region);
    R = Edit(3, S("print items\nclose\n"), {S("--region"), S(Region)});
    ASSERT_EQ(R.Code, 0) << R.Err.toStdString();
    EXPECT_TRUE(R.Out.startsWith(S("items %1 ").arg(S(Region) == S("1") ? Chs : Bs))) << R.Out.toStdString();
  }
}

TEST_F(EditCommandsTest, BadInputGivesPlainErrors) {
  struct TCase {
    QStringList Args;
    int Code;
    const char* Err;
  };
  const QString Script = Write(S("c.txt"), S("close\n"));
  const TCase Cases[] = {
      {{S("edit"), Lib}, 2, "edit takes LIBRARY and a draw-set ID"},
      {{S("edit"), Lib, S("x"), S("-s"), Script}, 2, "edit takes LIBRARY and a draw-set ID"},
      {{S("edit"), Lib, S("1"), S("--region")}, 2, "--region takes a whole number"},
      {{S("edit"), Lib, S("1"), S("--bogus")}, 2, "unknown option"},
      {{S("edit"), Dir.filePath(S("none.db")), S("1"), S("-s"), Script}, 1, "图集库文件不存在"},
      {{S("edit"), Lib, S("1"), S("-s"), Dir.filePath(S("none.txt"))}, 1, "cannot read script"},
  };
  for (const TCase& C : Cases) {
    SCOPED_TRACE(C.Args.join(u' ').toStdString());
    const TDseResult R = RunDse(C.Args);
    EXPECT_EQ(R.Code, C.Code) << R.Err.toStdString();
    EXPECT_TRUE(R.Err.contains(S(C.Err))) << R.Err.toStdString();
  }
  // A draw set the library does not have: the message, and no window work.
  const TDseResult R = RunDse({S("edit"), Lib, S("99"), S("-s"), Script});
  EXPECT_EQ(R.Code, 1);
  EXPECT_TRUE(R.Out.contains(S("[错误] 图集 99 不存在"))) << R.Out.toStdString();

  // Window statements refuse what they cannot do.
  const struct {
    const char* Script;
    const char* Err;
  } Bad[] = {
      {"action acNoSuch\n", "unknown action 'acNoSuch'"},
      {"action acUndo\n", "action acUndo is disabled"},
      {"mode other\n", "unknown mode 'other'"},
      {"combo size \"1\"\n", "unknown combo box 'size'"},
      {"close\nprint items\n", "the window is closed"},
      {"cell props 99 1 \"x\"\n", "no cell 99 1"},
  };
  for (const auto& B : Bad) {
    SCOPED_TRACE(B.Script);
    const TDseResult E = Edit(0, S(B.Script));
    EXPECT_EQ(E.Code, 1);
    EXPECT_TRUE(E.Err.contains(S(B.Err))) << E.Err.toStdString();
  }
}

TEST_F(EditCommandsTest, ShortcutsReachTheActionsHiddenOnesToo) {
  const int Items = Show(1)[S("items")].toInt();
  const TDseResult R = Edit(1, S(DrawLine) + S("key esc\nprint items\nkey z ctrl\nprint items\nkey z shift ctrl\n"
                                              "print items\nkey s ctrl\nprint modified\nclose\n"));
  ASSERT_EQ(R.Code, 0) << R.Err.toStdString();
  const QStringList L = Lines(R);
  ASSERT_EQ(L.size(), 5) << R.Out.toStdString();
  EXPECT_TRUE(L[0].startsWith(S("items %1 ").arg(Items + 1)));
  EXPECT_TRUE(L[1].startsWith(S("items %1 ").arg(Items)));  // Ctrl+Z: the hidden undo action
  EXPECT_TRUE(L[2].startsWith(S("items %1 ").arg(Items + 1)));
  EXPECT_EQ(L[3], S("modified false"));  // Ctrl+S saved: closing asks nothing
  EXPECT_EQ(L[4], S("result 2"));
  EXPECT_EQ(Show(1)[S("items")].toInt(), Items + 1);
}

TEST_F(EditCommandsTest, BarModeDrawsChainsAsOnePolyline) {
  const char* Chain = "action acDrawLine\nclick 0,0\nclick 100,0\nclick 100,100\nrclick\nkey esc\nprint items\n";
  const int Items = Show(1)[S("items")].toInt();
  for (const char* Mode : {"normal", "bar"}) {
    SCOPED_TRACE(Mode);
    const TDseResult R = Edit(1, S("size 800 600\nview 0 0 1\nset snap off\nmode %1\n").arg(S(Mode)) + S(Chain) +
                                     S("answer no\nclose\n"));
    ASSERT_EQ(R.Code, 0) << R.Err.toStdString();
    // Two segments in the plain mode, one polyline in the bar mode.
    EXPECT_TRUE(R.Out.startsWith(S("items %1 ").arg(Items + (S(Mode) == S("bar") ? 1 : 2)))) << R.Out.toStdString();
  }
}

TEST_F(EditCommandsTest, ARefusedCellKeepsTheWindowOpenWithoutTheSavePrompt) {
  // Row 13 is the text of new items; in the param mode it must be a number.
  const TDseResult R = Edit(1, S(DrawLine) + S("mode param\ncell props 13 1 \"abc\"\nclose\n"
                                               "cell props 13 1 \" 12.5 \"\nprint props\nanswer no\nclose\n"));
  ASSERT_EQ(R.Code, 0) << R.Err.toStdString();
  const QStringList L = Lines(R);
  const int Open = int(L.indexOf(S("open")));
  ASSERT_GT(Open, 0) << R.Out.toStdString();
  EXPECT_EQ(L[Open - 1], S("[错误] 参数值必须为整数或实数"));
  EXPECT_FALSE(L.mid(0, Open).join(u'\n').contains(S("[确认]")));
  EXPECT_TRUE(L.contains(S("prop ptText= 12.5 ")));
  EXPECT_EQ(L.last(), S("result 2"));
}

TEST_F(EditCommandsTest, SaveToFileWritesTheDrawing) {
  const QString Out = Dir.filePath(S("copy.lvd"));
  const TDseResult R = Edit(1, S("file \"%1\"\naction acSaveToFile\nclose\n").arg(Out));
  ASSERT_EQ(R.Code, 0) << R.Err.toStdString();
  const TDseResult Info = RunDse({S("lvd"), S("info"), Out});
  ASSERT_EQ(Info.Code, 0) << Info.Err.toStdString();
  EXPECT_TRUE(Info.Out.startsWith(S("format: xml"))) << Info.Out.toStdString();
  EXPECT_TRUE(Info.Out.contains(S("items: %1").arg(Show(1)[S("items")].toInt())));
}

// The window reads and saves a library on a server as it does a file.
TEST_F(EditCommandsTest, SaveReachesALibraryOnAServer) {
  DSE_REQUIRE_POSTGRES();
  Lib = TPgTestServer::Shared().CreateDatabase();
  ASSERT_EQ(RunDse({S("init"), Lib}).Code, 0);
  const int Items = Show(1)[S("items")].toInt();
  TDseResult R = Edit(1, S("print modified\nclose\n"));
  EXPECT_EQ(Lines(R), (QStringList{S("modified false"), S("result 2")}));
  R = Edit(1, S(DrawLine) + S("action acSave\nprint modified\nclose\n"));
  ASSERT_EQ(R.Code, 0) << R.Err.toStdString();
  EXPECT_TRUE(R.Out.contains(S("modified false\nresult 2\n"))) << R.Out.toStdString();
  EXPECT_EQ(Show(1)[S("items")].toInt(), Items + 1);
}

// The import action: a DXF file replaces the drawing, after the question; the undo list
// starts again and the bars go; a DWG file is refused and nothing changes.
TEST_F(EditCommandsTest, ImportADxfFile) {
  const QString Dxf = Write(S("plan.dxf"), S("  0\nSECTION\n  2\nENTITIES\n"
                                             "  0\nLINE\n  8\nWALL\n 10\n0\n 20\n0\n 11\n100\n 21\n0\n"
                                             "  0\nCIRCLE\n  8\nWALL\n 10\n50\n 20\n50\n 40\n20\n"
                                             "  0\nENDSEC\n  0\nEOF\n"));
  const QString Dwg = Write(S("plan.dwg"), S("AC1027"));
  const QString Before = S("items 14 1,3,5,7,9,11,13,15,17,19,21,23,25,27");
  TDseResult R = Edit(1, S("size 800 600\nfile \"%1\"\nanswer no\naction acImport\nprint items\n"
                           "file \"%2\"\nanswer yes\naction acImport\nprint items\nanswer no\nclose\n").arg(Dwg, Dxf));
  ASSERT_EQ(R.Code, 0) << R.Err.toStdString();
  // no to the question: nothing changed; then the DXF
  EXPECT_EQ(Lines(R).mid(0, 4), (QStringList{S("[确认] 导入DWG文件会清除已经存在图元，是否继续？"), Before,
                                             S("[确认] 导入DWG文件会清除已经存在图元，是否继续？"), S("items 2 0,1")}));
  R = Edit(1, S("size 800 600\naction acDrawLine\nclick 10,10\nclick 20,20\nrclick\nfile \"%1\"\nanswer yes\naction acImport\n"
                "print items\nfile \"%2\"\nanswer yes\naction acImport\nprint items\nprint bars\nprint actions\nanswer no\nclose\n")
                  .arg(Dwg, Dxf));
  ASSERT_EQ(R.Code, 0) << R.Err.toStdString();
  const QStringList L = Lines(R);
  ASSERT_GE(L.size(), 6);
  EXPECT_EQ(L[0], S("[确认] 导入DWG文件会清除已经存在图元，是否继续？"));
  EXPECT_TRUE(L[1].startsWith(S("[错误] 不能读取 DWG 文件：只读取 DXF 文件"))) << L[1].toStdString();
  EXPECT_EQ(L[2], S("items 15 1,3,5,7,9,11,13,15,17,19,21,23,25,27,29"));
  EXPECT_EQ(L[3], S("[确认] 导入DWG文件会清除已经存在图元，是否继续？"));
  EXPECT_EQ(L[4], S("items 2 0,1"));
  EXPECT_TRUE(R.Out.contains(S("action acUndo enabled=false"))) << R.Out.toStdString();
  EXPECT_FALSE(R.Out.contains(S("\nbar "))) << R.Out.toStdString();
}

// A DXF over 1 MB shows a progress bar that moves through the read and the walk.
TEST_F(EditCommandsTest, ALargeImportMovesItsProgressBar) {
  QString Text = S("  0\nSECTION\n  2\nENTITIES\n");
  for (int I = 0; I < 30000; ++I)
    Text += S("  0\nLINE\n  8\nWALL\n 10\n%1\n 20\n0\n 11\n%1\n 21\n100\n").arg(I);
  Text += S("  0\nENDSEC\n  0\nEOF\n");
  ASSERT_GT(Text.size(), 1024 * 1024);
  const QString Dxf = Write(S("big.dxf"), Text);
  const TDseResult R = Edit(1, S("size 800 600\nprint progress\nfile \"%1\"\nanswer yes\naction acImport\nprint items\n"
                                 "print progress\nanswer no\nclose\n").arg(Dxf));
  ASSERT_EQ(R.Code, 0) << R.Err.toStdString();
  const QStringList L = Lines(R);
  ASSERT_GE(L.size(), 4);
  EXPECT_EQ(L[0], S("progress 0"));
  EXPECT_TRUE(L[2].startsWith(S("items 30000 "))) << L[2].toStdString();
  const int Moves = L[3].mid(9).toInt();
  EXPECT_TRUE(L[3].startsWith(S("progress ")) && Moves >= 4) << L[3].toStdString();
}
