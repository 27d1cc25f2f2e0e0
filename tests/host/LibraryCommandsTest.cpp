#include "DrawSetLibrary.h"
#include "DseTestRun.h"

#include <QFile>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QFileInfo>
#include <QProcess>
#include <QTemporaryDir>

#include <gtest/gtest.h>

namespace {

TDseResult Dse(const QStringList& AArgs) { return RunDse(AArgs); }

QString S(const char* AText) { return QString::fromUtf8(AText); }

class LibraryCommandsTest : public testing::Test {
protected:
  void SetUp() override {
    ASSERT_TRUE(Dir.isValid());
    Lib = Dir.filePath(S("demo.db"));
    const TDseResult R = Dse({S("init"), Lib});
    ASSERT_EQ(R.Code, 0) << R.Err.toStdString();
  }
  QTemporaryDir Dir;
  QString Lib;
};

}  // namespace

TEST_F(LibraryCommandsTest, InitListShow) {
  TDseResult R = Dse({S("list"), Lib});
  ASSERT_EQ(R.Code, 0) << R.Err.toStdString();
  const QStringList Lines = R.Out.trimmed().split(u'\n');
  ASSERT_EQ(Lines.size(), 7);
  EXPECT_EQ(Lines[0], S("ID\tTYPE\tNAME\tBARS\tPARAMS"));
  EXPECT_EQ(Lines[1], S("0\t梁柱节点\t框架梁柱中间节点\t5\t5"));

  R = Dse({S("show"), Lib, S("0"), S("--json"), S("--region"), S("4")});
  ASSERT_EQ(R.Code, 0) << R.Err.toStdString();
  const QJsonObject O = QJsonDocument::fromJson(R.Out.toUtf8()).object();
  EXPECT_EQ(O[S("name")].toString(), S("框架梁柱中间节点"));
  EXPECT_EQ(O[S("calcRuleId")].toInt(), 9);
  const QJsonArray Bars = O[S("bars")].toArray();
  ASSERT_EQ(Bars.size(), 5);
  EXPECT_EQ(Bars[0].toObject()[S("barInfo")].toString(), S("2C25"));  // from its text item
  EXPECT_EQ(Bars[2].toObject()[S("barInfo")].toString(), S("3C22"));  // from the column
  EXPECT_TRUE(Bars[4].toObject()[S("script")].toString().contains(S("do y<=hb-50")));
  EXPECT_EQ(O[S("params")].toArray()[0].toObject()[S("value")].toString(), S("500"));

  R = Dse({S("show"), Lib, S("5")});
  EXPECT_EQ(R.Code, 0);
  EXPECT_TRUE(R.Out.contains(S("图集 5：AT型板式楼梯"))) << R.Out.toStdString();
  EXPECT_TRUE(R.Out.contains(S("do i<n")));
}

TEST_F(LibraryCommandsTest, ExportThenImportMakesANewDrawSet) {
  const QString Lvd = Dir.filePath(S("joint.lvd"));
  TDseResult R = Dse({S("export"), Lib, S("0"), Lvd});
  ASSERT_EQ(R.Code, 0) << R.Err.toStdString();
  R = Dse({S("lvd"), S("info"), Lvd, S("--json")});
  ASSERT_EQ(R.Code, 0);
  const int Items = QJsonDocument::fromJson(R.Out.toUtf8()).object()[S("items")].toArray().size();
  EXPECT_GT(Items, 20);

  R = Dse({S("import"), Lib, Lvd, S("--name"), S(" 复制的节点 "), S("--type"), S("1")});
  ASSERT_EQ(R.Code, 0) << R.Err.toStdString();
  EXPECT_TRUE(R.Out.contains(S("as draw set 6")));
  R = Dse({S("show"), Lib, S("6"), S("--json")});
  ASSERT_EQ(R.Code, 0);
  const QJsonObject O = QJsonDocument::fromJson(R.Out.toUtf8()).object();
  EXPECT_EQ(O[S("name")].toString(), S("复制的节点"));
  EXPECT_EQ(O[S("items")].toInt(), Items);
  EXPECT_TRUE(O[S("bars")].toArray().isEmpty());
  EXPECT_TRUE(Dse({S("list"), Lib}).Out.contains(S("6\t梁柱节点\t复制的节点\t0\t0")));
}

TEST_F(LibraryCommandsTest, BadInputGivesPlainErrors) {
  const QString Lvd = Dir.filePath(S("x.lvd"));
  QFile F(Lvd);
  ASSERT_TRUE(F.open(QIODevice::WriteOnly));
  F.write("not a drawing");
  F.close();
  const struct {
    QStringList Args;
    int Code;
    const char* Err;
  } Cases[] = {
      {{S("init"), S("%1")}, 1, "文件已存在"},
      {{S("init")}, 2, "init takes one LIBRARY"},
      {{S("list"), S("%1"), S("--region"), S("12")}, 2, "区域代码 12 没有对应的计算规则"},
      {{S("list"), S("%1"), S("--region"), S("x")}, 2, "--region takes a whole number"},
      {{S("list"), S("%1"), S("--bogus")}, 2, "unknown option '--bogus'"},
      {{S("list"), S("%2")}, 1, "不是图集库文件"},
      {{S("show"), S("%1"), S("99")}, 1, "图集 99 不存在"},
      {{S("show"), S("%1"), S("abc")}, 2, "show takes LIBRARY and a draw-set ID"},
      {{S("export"), S("%1"), S("99"), S("%3")}, 1, "图集 99 不存在"},
      {{S("import"), S("%1"), S("%2")}, 2, "--name NAME is required"},
      {{S("import"), S("%1"), S("%2"), S("--name"), S("x")}, 1, "error: "},
      {{S("import"), S("%1"), S("%4"), S("--name"), S("x"), S("--type"), S("42")}, 1, "图集类型 42 不存在"},
  };
  const QString Good = Dir.filePath(S("good.lvd"));
  ASSERT_EQ(Dse({S("export"), Lib, S("1"), Good}).Code, 0);
  for (const auto& C : Cases) {
    QStringList Args;
    for (const QString& A : C.Args)
      Args << QString(A).replace(S("%1"), Lib).replace(S("%2"), Lvd).replace(S("%3"), Dir.filePath(S("o.lvd")))
                  .replace(S("%4"), Good);
    SCOPED_TRACE(Args.join(u' ').toStdString());
    const TDseResult R = Dse(Args);
    EXPECT_EQ(R.Code, C.Code);
    EXPECT_TRUE(R.Err.contains(S(C.Err))) << R.Err.toStdString();
  }
  EXPECT_EQ(Dse({S("list"), Lib}).Out.count(u'\n'), 7);  // nothing was added by the failures
  EXPECT_EQ(Dse({S("init"), Lib, S("--force")}).Code, 0);
}

TEST_F(LibraryCommandsTest, WrongKindsOfLibraryFilesAreNamed) {
  const struct {
    QString Path;
    const char* Err;
  } Cases[] = {{Dir.path(), "是一个目录"}, {S("/dev/null"), "不是普通文件"}, {Dir.filePath(S("none.db")), "图集库文件不存在"}};
  ASSERT_FALSE(QFileInfo(S("/dev/null")).isFile());  // read only: nothing here writes to it
  for (const auto& C : Cases) {
    SCOPED_TRACE(C.Path.toStdString());
    for (const char* Cmd : {"list", "show"}) {
      const TDseResult R = Dse(QStringList{S(Cmd), C.Path} + (S(Cmd) == S("show") ? QStringList{S("1")} : QStringList{}));
      EXPECT_EQ(R.Code, 1);
      EXPECT_TRUE(R.Err.contains(S(C.Err))) << R.Err.toStdString();
    }
  }
}

TEST_F(LibraryCommandsTest, NamesCannotForgeRows) {
  const QString Out = Dir.filePath(S("d.lvd"));
  ASSERT_EQ(Dse({S("export"), Lib, S("1"), Out}).Code, 0);
  const TDseResult R = Dse({S("import"), Lib, Out, S("--name"), S("a\tb\nc")});
  EXPECT_EQ(R.Code, 2);
  EXPECT_TRUE(R.Err.contains(S("控制字符"))) << R.Err.toStdString();
  // A name that got in some other way prints escaped: one row per draw set.
  TDrawSetLibrary::Open(Lib)->Db().Exec(S("UPDATE DrawSets SET DrawSetName = ? WHERE DrawSetID = 1"),
                                        {S("a\tb\nc\\")});
  const TDseResult L = Dse({S("list"), Lib});
  EXPECT_EQ(L.Out.trimmed().split(u'\n').size(), 7);
  EXPECT_TRUE(L.Out.contains(S("\ta\\tb\\nc\\\\\t"))) << L.Out.toStdString();
}

TEST_F(LibraryCommandsTest, ConcurrentImportsAllLand) {
  const QString In = Dir.filePath(S("d.lvd"));
  ASSERT_EQ(Dse({S("export"), Lib, S("1"), In}).Code, 0);
  std::vector<std::unique_ptr<QProcess>> Runs;
  for (int I = 0; I < 8; ++I) {
    Runs.push_back(std::make_unique<QProcess>());
    Runs.back()->start(S(DSE_BINARY), {S("import"), Lib, In, S("--name"), S("并发%1").arg(I)});
  }
  for (auto& P : Runs) {
    ASSERT_TRUE(P->waitForFinished(60000));
    EXPECT_EQ(P->exitCode(), 0) << P->readAllStandardError().toStdString();
  }
  const TDseResult L = Dse({S("list"), Lib});
  EXPECT_EQ(L.Out.trimmed().split(u'\n').size(), 1 + 6 + 8);
}
