#include "DseTestRun.h"
#include "SysUtils.h"
#include "MZTBarInfoConst.h"

#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QTemporaryDir>

#include <gtest/gtest.h>

namespace {
TDseResult Dse(const QStringList& AArgs) { return RunDse(AArgs); }
}  // namespace

TEST(DseExpr, PrintsTypeAndValueOrTheError) {
  const struct {
    QStringList Args;
    int Code;
    const char* Out;
    const char* Err;
  } Cases[] = {
      {{"expr", "1 + 2 * 3"}, 0, "Integer 7\n", ""},
      {{"expr", "'a' + 1"}, 0, "String a1\n", ""},
      {{"expr", "--degree", "SIN(90)"}, 0, "Float 1\n", ""},
      {{"expr", "--check", "10 / 0"}, 0, "Float 1\n", ""},
      {{"expr", "10 / 0"}, 1, "", "error: Floating point division by zero\n"},
      {{"expr", "x * 2"}, 1, "", "error: Unknown Identifier X\n"},
      {{"expr", "1)"}, 1, "", "error: char ) in input stream\n"},
      {{"expr"}, 2, "", "dse expr: give exactly one expression"},
      {{"expr", "--bogus", "1"}, 2, "", "dse expr: unknown option '--bogus'"},
  };
  for (const auto& C : Cases) {
    SCOPED_TRACE(C.Args.join(u' ').toStdString());
    const TDseResult R = Dse(C.Args);
    EXPECT_EQ(R.Code, C.Code);
    EXPECT_EQ(R.Out, QString::fromUtf8(C.Out));
    const QString Want = QString::fromUtf8(C.Err);
    EXPECT_EQ(R.Err.left(Want.size()), Want);
    EXPECT_EQ(R.Err.isEmpty(), Want.isEmpty());
  }
}

TEST(DseBarInfo, PrintsOneJsonObject) {
  const int Saved = BarStandardCode();
  TDseResult R = Dse({"barinfo", "--code", "1", "A8@100/200"});
  EXPECT_EQ(R.Code, 0);
  EXPECT_EQ(R.Out, QStringLiteral("{\"count\":null,\"diameter\":8,\"level\":\"bltLevel1\",\"levelText\":\"A\","
                                  "\"space1\":100,\"space2\":200,\"text\":\"A8@100/200\"}\n"));
  R = Dse({"barinfo", "--code", "1", "0A12"});
  EXPECT_EQ(R.Code, 1);
  EXPECT_EQ(R.Err, QStringLiteral("error: 钢筋输入格式错误:数量的范围是[1,30000]之间的整数\n"));
  const QString Dict = QStringLiteral(DSE_SOURCE_DIR "/data/diameters-metric.json");
  EXPECT_EQ(Dse({"barinfo", "--code", "1", "--dict", Dict, "A13@100"}).Code, 1);
  EXPECT_EQ(Dse({"barinfo", "--code", "1", "--dict", Dict, "3B25"}).Code, 0);
  R = Dse({"barinfo", "--code", "1", "--dict", "/nonexistent.json", "3B25"});
  EXPECT_EQ(R.Code, 1);
  EXPECT_TRUE(R.Err.startsWith(QStringLiteral("error: cannot read diameter dictionary")));
  EXPECT_EQ(Dse({"barinfo", "A12"}).Code, 2);
  EXPECT_EQ(Dse({"barinfo", "--code", "x", "A12"}).Code, 2);
  SetBarStandardCode(Saved);
}

TEST(DseUnit, ConvertsAndChecks) {
  EXPECT_EQ(Dse({"unit", "foot-to-mm", "5'-11 3/8\""}).Out, QStringLiteral("1812.925\n"));
  EXPECT_EQ(Dse({"unit", "mm-to-foot", "1812.925", "--format", "ffHyphenExt"}).Out, QStringLiteral("5'-11 3/8\"\n"));
  EXPECT_EQ(Dse({"unit", "check-foot", "0511"}).Out, QStringLiteral("ffFourLength\n"));
  const TDseResult Bad = Dse({"unit", "check-foot", "5-12"});
  EXPECT_EQ(Bad.Code, 1);
  EXPECT_EQ(Bad.Out, QStringLiteral("invalid\n"));
  EXPECT_EQ(Dse({"unit", "foot-to-mm", "abc"}).Code, 1);
  EXPECT_EQ(Dse({"unit", "mm-to-foot", "12", "--format", "ffNope"}).Code, 2);
  EXPECT_EQ(Dse({"unit", "mm-to-foot", "-3", "--format", "ffHyphen"}).Code, 1);
  EXPECT_EQ(Dse({"unit", "frob"}).Code, 2);
}

namespace {
QString WriteScript(const QString& ADir, const char* AText) {
  const QString Path = ADir + QStringLiteral("/s.txt");
  QFile F(Path);
  F.open(QIODevice::WriteOnly);
  F.write(AText);
  return Path;
}
}  // namespace

TEST(DseScript, RunsStepsAndQueries) {
  QTemporaryDir Dir;
  const QString S = WriteScript(Dir.path(), "int a\na=lc*2\nif a>10\nmsgbox Big\nendif\nmainend\n");
  TDseResult R = Dse({"script", S, "--var", "lc=7", "--query", "a", "--query", "zz"});
  EXPECT_EQ(R.Code, 0);
  EXPECT_EQ(R.Out, QStringLiteral("[错误] big\na=14\nzz=\n"));
  R = Dse({"script", S, "--var", "lc=1", "--step"});
  EXPECT_EQ(R.Code, 0);
  EXPECT_EQ(R.Out, QStringLiteral("step 0 0\nstep 1 0\nstep 2 0\nstep 5 2\n"));

  const QString Bad = WriteScript(Dir.path(), "int a\na=1\nendif\n");
  R = Dse({"script", Bad, "--step"});
  EXPECT_EQ(R.Code, 1);
  EXPECT_EQ(R.Out, QStringLiteral("step 0 0\nstep 1 0\n[错误] 非法语句行：\\nendif\\n请重新检测语法！\nstep 2 1\n"));

  const QString Escapes = WriteScript(Dir.path(), "int a\na=nope\n");
  R = Dse({"script", Escapes});
  EXPECT_EQ(R.Code, 3);
  EXPECT_EQ(R.Err, QStringLiteral("error: 标识符[NOPE]无法识别\n"));

  const QString Endless = WriteScript(Dir.path(), "exitfrom\n");
  R = Dse({"script", Endless, "--max-steps", "50"});
  EXPECT_EQ(R.Code, 4);
  EXPECT_EQ(R.Err, QStringLiteral("error: the script ran 50 statements and loop passes without ending; it was "
                                   "stopped (an endless loop?)\n"));

  // Endless loops of every shape end with the default limit.
  const struct {
    const char* Name;
    const char* Text;
  } Loops[] = {{"empty do", "int i\ni=0\ndo i<10\nloop\nmainend\n"},
               {"huge from", "int i\nfrom 1 to 2000000000\ni=i\nendfrom\nmainend\n"},
               {"empty huge from", "from 1 to 2000000000\nendfrom\nmainend\n"},
               {"self call", "call a\nmainend\nsub a\ncall a\nendsub\n"},
               {"nested", "int i\ni=0\ndo i<1\nfrom 1 to 1000\nendfrom\nloop\nmainend\n"}};
  for (const auto& L : Loops) {
    SCOPED_TRACE(L.Name);
    R = Dse({"script", WriteScript(Dir.path(), L.Text)});
    EXPECT_EQ(R.Code, 4);
    EXPECT_TRUE(R.Err.contains(QStringLiteral("stopped"))) << R.Err.toStdString();
  }

  const QString Cancel = WriteScript(Dir.path(), "cancel\n");
  EXPECT_EQ(Dse({"script", Cancel}).Code, 1);
  EXPECT_EQ(Dse({"script", Cancel, "--step"}).Out, QStringLiteral("step 0 4\n"));
}

TEST(DseScript, TokensAndBadArguments) {
  QTemporaryDir Dir;
  const QString S = WriteScript(Dir.path(), "if lc>1 /* c\nx */\n");
  const TDseResult R = Dse({"script", "--tokens", S, "--param", "LC"});
  EXPECT_EQ(R.Code, 0);
  EXPECT_EQ(R.Out, QStringLiteral("0: tkKey(if) tkSpace( ) tkVariable(lc) tkUnknown(>) tkNumber(1) tkSpace( ) tkComment(/* c)\n"
                                  "1: tkComment(x */)\n2:\n"));
  EXPECT_EQ(Dse({"script"}).Code, 2);
  EXPECT_EQ(Dse({"script", S, "--var", "novalue"}).Code, 2);
  EXPECT_EQ(Dse({"script", S, "--max-steps", "0"}).Code, 2);
  const TDseResult Missing = Dse({"script", Dir.path() + QStringLiteral("/none.txt")});
  EXPECT_EQ(Missing.Code, 1);
  EXPECT_TRUE(Missing.Err.startsWith(QStringLiteral("error: cannot read")));
}

TEST(DseUnit, OutOfRangeValuesAreRefused) {
  TDseResult R = Dse({"unit", "mm-to-foot", "1e12", "--format", "ffHyphen"});
  EXPECT_EQ(R.Code, 1);
  EXPECT_TRUE(R.Err.contains(QStringLiteral("out of range"))) << R.Err.toStdString();
  EXPECT_TRUE(R.Out.isEmpty());
  R = Dse({"unit", "foot-to-mm", QString(400, u'9')});
  EXPECT_EQ(R.Code, 1);
  EXPECT_TRUE(R.Err.contains(QStringLiteral("too large"))) << R.Err.toStdString();
  EXPECT_EQ(Dse({"unit", "mm-to-foot", "1e11", "--format", "ffHyphen"}).Code, 0);
}

TEST(DseInput, EndlessInputIsRefusedAsTooLarge) {
  // /dev/zero never ends: every reader stops at its cap with a message, exit 1.
  const struct {
    QStringList Args;
  } Cases[] = {{{"script", "/dev/zero"}}, {{"barinfo", "--code", "0", "--dict", "/dev/zero", "A10"}}};
  for (const auto& C : Cases) {
    SCOPED_TRACE(C.Args.join(u' ').toStdString());
    const TDseResult R = Dse(C.Args);
    EXPECT_EQ(R.Code, 1);
    EXPECT_TRUE(R.Err.contains(QStringLiteral("文件太大"))) << R.Err.toStdString();
  }
  QByteArray Data;
  QString Error;
  QFile Zero(QStringLiteral("/dev/zero"));
  ASSERT_TRUE(Zero.open(QIODevice::ReadOnly));
  EXPECT_FALSE(ReadFileCapped(Zero, 1000, Data, Error));
  EXPECT_TRUE(Data.isEmpty());
  EXPECT_EQ(Error, QStringLiteral("文件太大（超过 1000 字节）"));
}

TEST(DseInput, StringsCannotGrowWithoutBound) {
  QTemporaryDir Dir;
  // A script doubling a string, and nested REPLACEs that multiply one.
  TDseResult R = Dse({"script", WriteScript(Dir.path(), "string s\ns=\"ab\"\nfrom 1 to 40\ns=s&s\nendfrom\nmainend\n")});
  EXPECT_EQ(R.Code, 3);
  EXPECT_TRUE(R.Err.contains(QStringLiteral("String result longer than 1048576 characters"))) << R.Err.toStdString();
  QString E = QStringLiteral("'aaaaaaaaaa'");
  for (int I = 0; I < 8; ++I) E = QStringLiteral("replace(%1,'a','aaaaaaaaaa')").arg(E);
  R = Dse({"expr", E});
  EXPECT_EQ(R.Code, 1);
  EXPECT_TRUE(R.Err.contains(QStringLiteral("String result longer"))) << R.Err.toStdString();
  // Up to the cap strings are fine.
  R = Dse({"expr", QStringLiteral("length(replace(replace('aaaaaaaaaa','a','aaaaaaaaaa'),'a','aaaaaaaaaa'))")});
  EXPECT_EQ(R.Code, 0) << R.Err.toStdString();
  EXPECT_TRUE(R.Out.contains(QStringLiteral("1000"))) << R.Out.toStdString();
}
