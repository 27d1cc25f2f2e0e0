#include "DseTestRun.h"
#include "RawFileNames.h"
#include "SysUtils.h"
#include "VDILine.h"
#include "VectorDrawing.h"

#include <QFile>
#include <QImage>
#include <QSettings>
#include <QTemporaryDir>

#include <gtest/gtest.h>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <string>
#include <vector>

QT_BEGIN_NAMESPACE
inline void PrintTo(const QString& S, std::ostream* O) { *O << S.toStdString(); }
QT_END_NAMESPACE

namespace {

// Horizontal lines 100 long at y = 0, 50, 100, ... with IDs 1, 2, 3, ...
QString WriteLines(const QTemporaryDir& ADir, int ACount) {
  TVectorDrawing D;
  for (int I = 0; I < ACount; ++I)
    D.Add(std::unique_ptr<TVectorDrawingItem>(new TVectorLine(&D, I + 1, 0xFFFFFF, 0, psSolid, 0, 0, msNone, msNone,
                                                              {0, 50.0 * I}, {100, 50.0 * I})));
  const QString F = ADir.filePath(QStringLiteral("lines.lvd"));
  D.SaveToFile(F, sfXML);
  return F;
}

struct TDraw {
  TDseResult R;
  QStringList Lines;  // standard output, line by line
};

// Plays AScript on AFile (or a new drawing) with a private settings file.
TDraw Draw(const QTemporaryDir& ADir, const QString& AFile, const QString& AScript, QStringList AExtra = {}) {
  const QString S = ADir.filePath(QStringLiteral("script.txt"));
  QFile F(S);
  F.open(QIODevice::WriteOnly | QIODevice::Truncate);
  F.write(AScript.toUtf8());
  F.close();
  QStringList Args{QStringLiteral("draw")};
  Args << (AFile.isEmpty() ? QStringLiteral("--new") : AFile) << QStringLiteral("-s") << S << QStringLiteral("--settings")
       << ADir.filePath(QStringLiteral("dse.ini")) << AExtra;
  TDraw D{RunDse(Args), {}};
  D.Lines = D.R.Out.split(QLatin1Char('\n'), Qt::SkipEmptyParts);
  return D;
}

const QString ViewSetup = QStringLiteral("size 800 600\nview 0 0 1\n");

}  // namespace

TEST(DseDraw, StepZeroPromptOfEveryCommandBuiltSoFar) {
  QTemporaryDir Dir;
  // A selection state started on its own runs for the idle state: it reports command 1
  // and the idle state's prompt.
  const struct {
    int ID;
    const char* Prompt;
    int Reported;
  } Rows[] = {
      {1, "按鼠标左键指定第一个角点，或拾取图元", 1},
      {2, "按鼠标左键指定第一个角点，或拾取图元", 1},
      {3, "按鼠标左键指定第一个角点，或拾取图元", 1},
      {5, "按住鼠标左键并垂直拖动进行缩放，按右键或ESC结束", 5},
      {8, "按鼠标左键指定第一个角点，按右键或者ESC键结束", 8},
      {9, "按鼠标左键并拖动进行平移，按右键或ESC键结束", 9},
      {10, "按鼠标左键指定基准点，按右键或ESC结束", 10},
      {11, "按鼠标左键指定目标点，按右键或ESC结束", 11},
      {16, "按鼠标左键指定插入点，按右键或ESC结束", 16},
      {17, "按鼠标左键指定第一个端点，按右键结束或ESC取消", 17},
      {18, "按鼠标左键指定第一个端点，按右键结束或ESC取消", 18},
      {19, "按鼠标左键指定第一个端点，按右键结束或ESC取消", 19},
      {20, "按鼠标左键指定第一个端点，按右键结束或ESC取消", 20},
      {21, "按鼠标左键指定第一个端点，按右键结束或ESC取消", 21},
      {22, "按鼠标左键指定第一个端点，按右键结束或ESC取消", 22},
      {23, "按鼠标左键指定第一个角点，按右键或ESC取消", 23},
      {24, "按鼠标左键指定圆心，按右键或ESC取消", 24},
      {25, "按鼠标左键指定插入点，按右键或ESC取消", 25},
      {26, "按鼠标左键指定插入点，按右键或ESC取消", 26},
      {27, "按鼠标左键指定区域内任意一点，按右键或ESC取消", 27},
      {28, "按鼠标左键指定标注线第一点，按右键或ESC取消", 28},
      {29, "按鼠标左键选择图元，或拉框选择，按右键确认选择或ESC取消", 29},
      {30, "按鼠标左键选择图元，或拉框选择，按右键确认选择或ESC取消", 30},
      {31, "按鼠标左键选择图元，或拉框选择，按右键确认选择或ESC取消", 31},
      {32, "按鼠标左键选择图元，或拉框选择，按右键确认选择或ESC取消", 32},
      {33, "按鼠标左键选择图元，或拉框选择，按右键确认选择或ESC取消", 33},
      {34, "按鼠标左键选择一条延伸边界线，按右键或ESC取消", 34},
      {35, "按鼠标左键选择一条修剪边界线，按右键或ESC取消", 35},
      {36, "按鼠标左键选择图元，或拉框选择，按右键确认选择或ESC取消", 36},
      {37, "按鼠标左键选择图元，或拉框选择，按右键确认选择或ESC取消", 37},
      {38, "请拉框选择图元，按右键或ESC取消", 38},
      {45, "按鼠标左键选择一条线，按右键或ESC取消", 45},
      {46, "按鼠标左键选择一条线，按右键或ESC取消", 46},
      {47, "按鼠标左键选择第一条线，按右键或ESC取消", 47},
      {50, "按鼠标左键指定插入点，按右键或ESC取消", 50},
      {61, "按鼠标左键选择图元，或拉框选择，按右键确认选择或ESC取消", 61},
      {62, "按鼠标左键选择第一条线，按右键或ESC取消", 62},
  };
  for (const auto& Row : Rows) {
    SCOPED_TRACE(Row.ID);
    const TDraw D = Draw(Dir, {}, QStringLiteral("cmd %1\nprint prompt\nprint cmd\n").arg(Row.ID));
    ASSERT_EQ(D.R.Code, 0) << D.R.Err.toStdString();
    EXPECT_EQ(D.Lines, QStringList({QStringLiteral("prompt ") + QString::fromUtf8(Row.Prompt),
                                    QStringLiteral("cmd %1").arg(Row.Reported)}));
  }
  const TDraw Missing = Draw(Dir, {}, QStringLiteral("print cmd\ncmd 100\nprint cmd\n"));
  EXPECT_EQ(Missing.R.Code, 1);
  EXPECT_EQ(Missing.Lines, QStringList{QStringLiteral("cmd 1")});
  EXPECT_EQ(Missing.R.Err, QStringLiteral("error: line 2: command 100 is not available\n"));
}

TEST(DseDraw, AZoomWindowInsideAnotherCommandReturnsToItsStepAndPrompt) {
  QTemporaryDir Dir;
  const QString File = WriteLines(Dir, 3);
  const TDraw D = Draw(Dir, File,
                       ViewSetup + QStringLiteral("cmd 29\nclick -20,120\nprint prompt\ncmd 8\nprint prompt\nprint cmd\n"
                                              "drag -200,200 200,-200\nprint scale\nkey esc\nprint cmd\nprint prompt\n"
                                              "click 120,-20\nprint sel\n"));
  ASSERT_EQ(D.R.Code, 0) << D.R.Err.toStdString();
  EXPECT_EQ(D.Lines, QStringList({
                         QStringLiteral("prompt 按鼠标左键选择图元，或拉框选择，按右键确认选择或ESC取消"),
                         QStringLiteral("prompt 按鼠标左键指定第一个角点，按右键或者ESC键结束"),
                         QStringLiteral("cmd 8"),
                         QStringLiteral("scale 150"),
                         QStringLiteral("cmd 29"),
                         QStringLiteral("prompt 按鼠标左键选择图元，或拉框选择，按右键确认选择或ESC取消"),
                         QStringLiteral("sel 3 1,2,3"),
                     }));
}

TEST(DseDraw, BoxSelectionInBothDirectionsAndClickToggling) {
  QTemporaryDir Dir;
  const QString File = WriteLines(Dir, 3);
  const TDraw D = Draw(Dir, File,
                       ViewSetup + QStringLiteral("drag -10,60 110,-10\nprint sel\nkey esc\n"
                                              "drag 50,60 -10,-10\nprint sel\nkey esc\n"
                                              "click 20,100\nclick 20,0\nprint sel\nclick 20,100\nprint sel\n"
                                              "click 20,50 shift\nprint sel\n"));
  ASSERT_EQ(D.R.Code, 0) << D.R.Err.toStdString();
  EXPECT_EQ(D.Lines, QStringList({QStringLiteral("sel 2 1,2"), QStringLiteral("sel 2 1,2"), QStringLiteral("sel 2 1,3"),
                                  QStringLiteral("sel 1 1"), QStringLiteral("sel 1 1")}));
}

TEST(DseDraw, ExactlyAHundredUndosAfterAHundredAndFiveEdits) {
  QTemporaryDir Dir;
  const QString File = WriteLines(Dir, 1);
  QString S = ViewSetup + QStringLiteral("click 20,0\n");
  for (int I = 0; I < 105; ++I) S += QStringLiteral("prop ptColor %1\n").arg(I + 1);
  S += QStringLiteral("print item 1\n");
  for (int I = 0; I < 99; ++I) S += QStringLiteral("cmd 40\n");
  S += QStringLiteral("print undo\ncmd 40\nprint undo\nprint redo\nprint item 1\ncmd 40\nprint item 1\n");
  // Two redos, then a new edit drops the rest of the redo tail.
  S += QStringLiteral("cmd 41\ncmd 41\nclick 20,0\nprop ptColor 4242\nprint redo\ncmd 40\nprint item 1\n");
  const TDraw D = Draw(Dir, File, S);
  ASSERT_EQ(D.R.Code, 0) << D.R.Err.toStdString();
  ASSERT_EQ(D.Lines.size(), 8);
  EXPECT_TRUE(D.Lines[0].contains(QStringLiteral("\"color\":105")));
  EXPECT_EQ(D.Lines[1], QStringLiteral("undo true"));
  EXPECT_EQ(D.Lines[2], QStringLiteral("undo false"));
  EXPECT_EQ(D.Lines[3], QStringLiteral("redo true"));
  EXPECT_TRUE(D.Lines[4].contains(QStringLiteral("\"color\":5"))) << D.Lines[4].toStdString();  // 1 to 5 dropped
  EXPECT_EQ(D.Lines[5], D.Lines[4]);  // nothing left to undo
  EXPECT_EQ(D.Lines[6], QStringLiteral("redo false"));
  EXPECT_TRUE(D.Lines[7].contains(QStringLiteral("\"color\":7,"))) << D.Lines[7].toStdString();
}

TEST(DseDraw, DeleteAtIdleAsksThenUndoAndRedoKeepIDsAndPlaces) {
  QTemporaryDir Dir;
  const QString File = WriteLines(Dir, 4);
  const QString Out = Dir.filePath(QStringLiteral("out.lvd"));
  const TDraw D = Draw(Dir, File,
                       ViewSetup + QStringLiteral("click 20,100\nclick 20,50\nanswer yes\nkey del\nprint items\nprint undo\n"
                                              "cmd 40\nprint items\ncmd 41\nprint items\nclick 20,0\nanswer no\nkey del\n"
                                              "print sel\nprint items\n"),
                       {QStringLiteral("-o"), Out, QStringLiteral("--format"), QStringLiteral("xml")});
  ASSERT_EQ(D.R.Code, 0) << D.R.Err.toStdString();
  EXPECT_EQ(D.Lines, QStringList({
                         QStringLiteral("[确认] 是否删除选中的图元"),
                         QStringLiteral("items 2 1,4"),
                         QStringLiteral("undo true"),
                         QStringLiteral("items 4 1,2,3,4"),
                         QStringLiteral("items 2 1,4"),
                         QStringLiteral("[确认] 是否删除选中的图元"),
                         QStringLiteral("sel 0"),
                         QStringLiteral("items 2 1,4"),
                     }));
  TVectorDrawing Saved;
  Saved.LoadFromFile(Out);
  ASSERT_EQ(Saved.Count(), 2);
  EXPECT_EQ(Saved.Items(1)->ID(), 4);
}

TEST(DseDraw, RepeatAndRunCommandsAndCtrlKeypad) {
  QTemporaryDir Dir;
  const TDraw D = Draw(Dir, {},
                       ViewSetup + QStringLiteral("print repeat\ncmd 29\nkey esc\ncmd 6\nprint repeat\ncmd 58\nprint cmd\n"
                                              "key esc\nview 0 0 1\ncmd 6\nprint scale\ncmd 7\nprint view\n"
                                              "view 0 0 1\ncmd 12\nprint view\ncmd 15\nprint view\n"
                                              "view 0 0 1\nkey num9 ctrl\nprint view\nkey ctrl+num*\nprint scale\n"
                                              "view 10 10 2\nwheel up 10,10\nprint view\nmove 10,10\nprint pos\n"
                                              "rclick\nprint pos\nprint cmd\n"));
  ASSERT_EQ(D.R.Code, 0) << D.R.Err.toStdString();
  EXPECT_EQ(D.Lines, QStringList({
                         QStringLiteral("repeat -1"),
                         QStringLiteral("repeat 29 重复删除(&H)"),
                         QStringLiteral("cmd 29"),
                         QStringLiteral("scale 120"),
                         QStringLiteral("view 0 0 0.96"),
                         QStringLiteral("view 400 0 1"),
                         QStringLiteral("view 400 300 1"),
                         QStringLiteral("view -400 -300 1"),
                         QStringLiteral("scale 120"),
                         QStringLiteral("view 10 10 2.4"),
                         QStringLiteral("pos  X=10 Y=10"),
                         QStringLiteral("pos  X=10 Y=10"),  // at the last point
                         QStringLiteral("cmd 1"),
                     }));
}

TEST(DseDraw, TheSettingsFileIsWrittenWithBothSections) {
  QTemporaryDir Dir;
  const TDraw D = Draw(Dir, {}, QStringLiteral("set grid off\nset grid-space 20 30\nprop ptLineStyle 虚线\nprint props\n"));
  ASSERT_EQ(D.R.Code, 0) << D.R.Err.toStdString();
  EXPECT_EQ(D.Lines.size(), 19);
  EXPECT_TRUE(D.Lines.contains(QStringLiteral("prop ptLineStyle=虚线")));
  QSettings S(Dir.filePath(QStringLiteral("dse.ini")), QSettings::IniFormat);
  EXPECT_EQ(S.value(QStringLiteral("EditorSetting/GridSwitch")).toString(), QStringLiteral("0"));
  EXPECT_EQ(S.value(QStringLiteral("EditorSetting/GridYSpace")).toString(), QStringLiteral("30"));
  EXPECT_EQ(S.value(QStringLiteral("EditorSetting/SnapSwitch")).toString(), QStringLiteral("1"));
  EXPECT_EQ(S.value(QStringLiteral("AddItemProp/ptLineStyle")).toString(), QStringLiteral("虚线"));
  S.beginGroup(QStringLiteral("AddItemProp"));
  EXPECT_EQ(S.childKeys().size(), 18);
}

TEST(DseDraw, ErrorsStopTheScriptWithTheLineAndKeepWhatWasPrinted) {
  QTemporaryDir Dir;
  const QString File = WriteLines(Dir, 1);
  const struct {
    const char* Script;
    const char* Error;
  } Cases[] = {
      {"print cmd\nfly away\n", "error: line 2: unknown statement 'fly'\n"},
      {"print cmd\nclick 1;2\n", "error: line 2: bad point '1;2'\n"},
      {"print cmd\nclick 20,0\nkey del\n", "error: line 3: unanswered dialog: [确认] 是否删除选中的图元\n"},
      {"print cmd\nanswer yes\n", "error: line 2: 1 answer(s) still queued at the end\n"},
      {"print cmd\n\n# a comment\nprop ptFontHeight 0\nprop ptNothing 1\n", "error: line 5: unknown property 'ptNothing'\n"},
      {"print cmd\nclick 20,0\nprop ptText x\n", "error: line 3: property ptText is not shown for the selection\n"},
      {"print cmd\ninput \"abc\n", "error: line 2: unclosed quote\n"},
      {"print cmd\nmove 0,0\nsize 100 100\n", "error: line 3: size must come before the first input\n"},
      {"print cmd\ncmd 39\n", "error: line 2: command 39 cannot be run by number\n"},
      {"print cmd\nkey hyper\n", "error: line 2: unknown key 'hyper'\n"},
  };
  for (const auto& C : Cases) {
    SCOPED_TRACE(C.Script);
    const TDraw D = Draw(Dir, File, ViewSetup + QString::fromUtf8(C.Script));
    EXPECT_EQ(D.R.Code, 1);
    ASSERT_FALSE(D.Lines.isEmpty());
    EXPECT_EQ(D.Lines[0], QStringLiteral("cmd 1"));
    // Line numbers count the two setup lines.
    QString Want = QString::fromUtf8(C.Error);
    const int N = Want.section(QLatin1Char(' '), 2, 2).chopped(1).toInt();
    Want.replace(QStringLiteral("line %1:").arg(N), QStringLiteral("line %1:").arg(N + 2));
    EXPECT_EQ(D.R.Err, Want);
  }
  const TDraw Box = Draw(Dir, File, ViewSetup + QStringLiteral("prop ptFontHeight 0\n"));
  EXPECT_EQ(Box.R.Code, 0);
  EXPECT_EQ(Box.Lines, QStringList{QStringLiteral("[错误] 字体高度必须在[-32768, 32767]之间，且不能为零")});
}

TEST(DseDraw, BadUsage) {
  QTemporaryDir Dir;
  const QString File = WriteLines(Dir, 1);
  const QStringList Cases[] = {
      {QStringLiteral("draw"), File},
      {QStringLiteral("draw"), QStringLiteral("-s"), QStringLiteral("x")},
      {QStringLiteral("draw"), File, QStringLiteral("--new"), QStringLiteral("-s"), QStringLiteral("x")},
      {QStringLiteral("draw"), File, QStringLiteral("-s"), QStringLiteral("x"), QStringLiteral("--format"), QStringLiteral("dxf")},
      {QStringLiteral("draw"), File, QStringLiteral("-s"), QStringLiteral("x"), QStringLiteral("--bogus")},
  };
  for (const QStringList& A : Cases) {
    SCOPED_TRACE(A.join(u' ').toStdString());
    EXPECT_EQ(RunDse(A).Code, 2);
  }
  const TDseResult Missing = RunDse({QStringLiteral("draw"), Dir.filePath(QStringLiteral("none.lvd")), QStringLiteral("-s"),
                                     Dir.filePath(QStringLiteral("none.txt"))});
  EXPECT_EQ(Missing.Code, 1);
  EXPECT_TRUE(Missing.Err.startsWith(QStringLiteral("error: cannot read script"))) << Missing.Err.toStdString();
}

TEST(DseDraw, PropsShowsTheGridBesideTheControl) {
  QTemporaryDir Dir;
  const QString File = WriteLines(Dir, 2);
  const QString Png = Dir.filePath(QStringLiteral("props.png"));
  const TDraw D = Draw(Dir, File, ViewSetup + QStringLiteral("click 20,0\nprint props\nshot %1\n").arg(Png),
                       {QStringLiteral("--props")});
  ASSERT_EQ(D.R.Code, 0) << D.R.Err.toStdString();
  EXPECT_TRUE(D.Lines.contains(QStringLiteral("prop ptLineWidth=0")));
  const QImage Shot(Png);
  EXPECT_EQ(Shot.width(), 800 + 242);
  EXPECT_EQ(Shot.height(), 600);
}

// The settings file is read and written under its exact bytes (a name that is not UTF-8,
// as the command line hands it over), through a link, keeping its permissions and the
// keys it holds for others.
TEST(DseDraw, SettingsFileByItsExactName) {
  QTemporaryDir Dir;
  const QByteArray D = QFile::encodeName(Dir.path());
  const QByteArray Real = D + "/\xc9\xe8\xd6\xc3.ini", Link = D + "/\xc1\xb4.ini";  // GBK 设置, 链
  const QByteArray Text = "[Other]\nKey=1\n\n[AddItemProp]\nptLineStyle=\xe7\x82\xb9\xe7\xba\xbf\n";  // 点线
  const auto WriteRaw = [](const QByteArray& APath, const QByteArray& AData) {
    const int F = ::open(APath.constData(), O_WRONLY | O_CREAT | O_TRUNC, 0600);
    ASSERT_GE(F, 0);
    ASSERT_EQ(::write(F, AData.constData(), size_t(AData.size())), AData.size());
    ::close(F);
  };
  WriteRaw(Real, Text);
  ASSERT_EQ(::chmod(Real.constData(), 0600), 0);
  ASSERT_EQ(::symlink("\xc9\xe8\xd6\xc3.ini", Link.constData()), 0);
  const QString Script = Dir.filePath(QStringLiteral("s.txt"));
  QFile S(Script);
  ASSERT_TRUE(S.open(QIODevice::WriteOnly));
  S.write("set grid-space 20 30\nprint props\n");
  S.close();
  const TDseResult R = RunDse({QStringLiteral("draw"), QStringLiteral("--new"), QStringLiteral("-s"), Script,
                               QStringLiteral("--settings"), DecodeFileName(Link)});
  ASSERT_EQ(R.Code, 0) << R.Err.toStdString();
  EXPECT_TRUE(R.Out.contains(QStringLiteral("prop ptLineStyle=点线")));  // read through the link

  struct stat St {};
  ASSERT_EQ(::lstat(Link.constData(), &St), 0);
  EXPECT_TRUE(S_ISLNK(St.st_mode));
  ASSERT_EQ(::stat(Real.constData(), &St), 0);
  EXPECT_EQ(St.st_mode & 0777, 0600u);
  QByteArray Back(qsizetype(St.st_size), '\0');
  const int F = ::open(Real.constData(), O_RDONLY);
  ASSERT_GE(F, 0);
  ASSERT_EQ(::read(F, Back.data(), size_t(Back.size())), Back.size());
  ::close(F);
  EXPECT_TRUE(Back.contains("[Other]\nKey=1\n"));
  EXPECT_TRUE(Back.contains("GridXSpace=20"));
  const std::vector<std::string> Names = RawFileNames(D);
  EXPECT_EQ(Names, (std::vector<std::string>{"s.txt", "\xc1\xb4.ini", "\xc9\xe8\xd6\xc3.ini"}));
  ::unlink(Link.constData());
  ::unlink(Real.constData());
}
