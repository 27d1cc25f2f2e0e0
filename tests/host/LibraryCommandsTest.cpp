#include "DrawSetLibrary.h"
#include "DseTestRun.h"
#include "LibraryBackends.h"

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

class LibraryCommandsTest : public testing::TestWithParam<TBackend> {
protected:
  void SetUp() override {
    ASSERT_TRUE(Dir.isValid());
    if (GetParam() == TBackend::Postgres)
      DSE_REQUIRE_POSTGRES();
    Lib = NewLibraryLocation(GetParam(), Dir, S("demo"));
    ASSERT_FALSE(Lib.isEmpty());
    const TDseResult R = Dse({S("init"), Lib});
    ASSERT_EQ(R.Code, 0) << R.Err.toStdString();
  }
  bool Server() const { return GetParam() == TBackend::Postgres; }
  QTemporaryDir Dir;
  QString Lib;
};

}  // namespace

TEST_P(LibraryCommandsTest, InitListShow) {
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

TEST_P(LibraryCommandsTest, ExportThenImportMakesANewDrawSet) {
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

TEST_P(LibraryCommandsTest, BadInputGivesPlainErrors) {
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
      {{S("init"), S("%1")}, 1, Server() ? "中已有图集库（用 --force 替换）" : "文件已存在"},
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
      Args << (A == S("%1") ? Lib : A == S("%2") ? Lvd : A == S("%3") ? Dir.filePath(S("o.lvd")) : A == S("%4") ? Good : A);
    SCOPED_TRACE(Args.join(u' ').toStdString());
    const TDseResult R = Dse(Args);
    EXPECT_EQ(R.Code, C.Code);
    EXPECT_TRUE(R.Err.contains(S(C.Err))) << R.Err.toStdString();
  }
  EXPECT_EQ(Dse({S("list"), Lib}).Out.count(u'\n'), 7);  // nothing was added by the failures
  EXPECT_EQ(Dse({S("init"), Lib, S("--force")}).Code, 0);
}

TEST(LibraryFileCommandsTest, WrongKindsOfLibraryFilesAreNamed) {
  QTemporaryDir Dir;
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

TEST_P(LibraryCommandsTest, NamesCannotForgeRows) {
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

TEST_P(LibraryCommandsTest, ConcurrentImportsAllLand) {
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

INSTANTIATE_TEST_SUITE_P(Backends, LibraryCommandsTest, DSE_BACKENDS);

namespace {

class LibraryServerTest : public testing::Test {
protected:
  void SetUp() override {
    ASSERT_TRUE(Dir.isValid());
    DSE_REQUIRE_POSTGRES();
  }
  TPgTestServer& Pg() { return TPgTestServer::Shared(); }
  QTemporaryDir Dir;
};

// The text of every server answer, field names and types included.
QString Answers(TDrawSetLibrary& ALib) {
  const auto Text = [](const TDataPacket& P) {
    QString T;
    for (const TFieldDef& F : P.Fields) T += F.Name + u':' + QString::number(int(F.DataType)) + u' ';
    for (const TPacketRow& R : P.Rows) {
      T += u'\n';
      for (const QVariant& V : R.Values)
        T += (V.isNull() ? S("<null>") : V.typeId() == QMetaType::QByteArray ? QString::number(qHash(V.toByteArray()))
                                                                          : V.toString() + u'/' + QString::number(V.typeId())) + u'|';
    }
    return T + u'\n';
  };
  QString All = Text(DataSvr::GetDrawSetTypes(ALib)) + Text(DataSvr::GetDrawSets(ALib)) +
                Text(DataSvr::GetDrawSetBars(ALib, -1)) + Text(DataSvr::GetBarClasses(ALib)) +
                Text(DataSvr::GetBarPics(ALib)) + Text(DataSvr::GetBendTypes(ALib)) +
                Text(DataSvr::GetHookTypes(ALib)) + Text(DataSvr::GetCustomBarPicTypes(ALib)) +
                QString::number(DataSvr::GetMaxBarPicID(ALib));
  for (int ID = 0; ID < 6; ++ID)
    All += Text(DataSvr::GetDrawSetBars(ALib, ID)) + Text(DataSvr::GetDrawSetParams(ALib, ID, 8)) +
           Text(DataSvr::GetDrawSetParams(ALib, ID, 0));
  for (int Pic : {1, 536, 10001})
    All += Text(DataSvr::GetBarPicParams(ALib, Pic));
  return All;
}

}  // namespace

TEST_F(LibraryServerTest, BothBackEndsGiveTheSameAnswers) {
  const QString File = Dir.filePath(S("demo.db")), Uri = Pg().CreateDatabase();
  ASSERT_EQ(Dse({S("init"), File}).Code, 0);
  ASSERT_EQ(Dse({S("init"), Uri}).Code, 0);
  const QString FromFile = Answers(*TDrawSetLibrary::Open(File));
  EXPECT_GT(FromFile.size(), 10000);
  EXPECT_EQ(Answers(*TDrawSetLibrary::Open(Uri)), FromFile);
  EXPECT_EQ(Dse({S("show"), Uri, S("4"), S("--json")}).Out, Dse({S("show"), File, S("4"), S("--json")}).Out);
}

TEST_F(LibraryServerTest, ServerProblemsGivePlainErrors) {
  const QString Empty = Pg().CreateDatabase();
  const QString Newer = Pg().CreateDatabase();
  ASSERT_EQ(Dse({S("init"), Newer}).Code, 0);
  TDrawSetLibrary::Open(Newer)->Db().Exec(S("UPDATE LibraryInfo SET Value = '2' WHERE Key = 'Version'"));
  const QString NewerDump = [&] {
    // opened as a plain database: the library itself refuses it
    return Dse({S("list"), Newer}).Err;
  }();
  const QString Db = DatabaseOf(Empty);
  const QString Sock = QString::fromLatin1(QUrl::toPercentEncoding(Pg().SocketDir()));
  const struct {
    QString Uri;
    const char* Err;
  } Cases[] = {
      {S("postgresql:///%1?host=%2").arg(Db, Dir.path()), "无法连接图集库服务器"},
      {S("postgresql://%1:wrong-secret@/%2?host=%3").arg(TPgTestServer::PasswordUser(), Db, Sock), "password authentication failed"},
      {Pg().Uri(Db, TPgTestServer::PasswordUser(), S("wrong-secret")), "password authentication failed"},
      {Pg().Uri(S("no_such_database")), "database \"no_such_database\" does not exist"},
      {Empty, "数据库中没有图集库"},
      {Newer, "的版本 2 不受支持（本程序支持版本 1）"},
      {S("postgresql://[bad"), "无法"},
  };
  const QString Lvd = Dir.filePath(S("d.lvd"));
  const QString File = Dir.filePath(S("demo.db"));
  ASSERT_EQ(Dse({S("init"), File}).Code, 0);
  ASSERT_EQ(Dse({S("export"), File, S("1"), Lvd}).Code, 0);
  for (const auto& C : Cases) {
    SCOPED_TRACE(C.Uri.toStdString());
    QVector<QStringList> Runs = {{S("list"), C.Uri}, {S("show"), C.Uri, S("1")}, {S("import"), C.Uri, Lvd, S("--name"), S("x")}};
    if (C.Uri != Empty && C.Uri != Newer)
      Runs.push_back({S("copy-library"), File, C.Uri});
    for (const QStringList& Args : Runs) {
      const TDseResult R = Dse(Args);
      EXPECT_EQ(R.Code, 1) << Args[0].toStdString();
      EXPECT_TRUE(R.Err.startsWith(S("error: ")) && R.Err.contains(S(C.Err))) << R.Err.toStdString();
      EXPECT_FALSE(R.Err.contains(S("wrong-secret"))) << "a password was printed";
    }
  }
  // nothing was created or changed
  QString Err;
  EXPECT_TRUE(Pg().Exec(Db, S("DO $$ BEGIN IF EXISTS (SELECT 1 FROM information_schema.tables WHERE table_schema = 'public')"
                              " THEN RAISE EXCEPTION 'tables appeared'; END IF; END $$"), &Err)) << Err.toStdString();
  EXPECT_EQ(Dse({S("list"), Newer}).Err, NewerDump);
  EXPECT_TRUE(Pg().Exec(DatabaseOf(Newer), S("DO $$ BEGIN IF (SELECT count(*) FROM DrawSets) <> 6"
                                              " THEN RAISE EXCEPTION 'draw sets changed'; END IF; END $$"), &Err)) << Err.toStdString();
}

TEST_F(LibraryServerTest, CopyLibraryBothWaysKeepsEveryRow) {
  const QString File = Dir.filePath(S("demo.db")), Back = Dir.filePath(S("back.db")), Uri = Pg().CreateDatabase();
  ASSERT_EQ(Dse({S("init"), File}).Code, 0);
  ASSERT_EQ(Dse({S("import"), File, Dir.filePath(S("none.lvd")), S("--name"), S("x")}).Code, 1);
  TDrawSetLibrary::Open(File)->Db().Exec(S("INSERT INTO LibraryInfo VALUES ('Note', '团队库')"));
  TDseResult R = Dse({S("copy-library"), File, Uri});
  ASSERT_EQ(R.Code, 0) << R.Err.toStdString();
  EXPECT_TRUE(R.Out.contains(S("6 draw sets, 34 bar pictures"))) << R.Out.toStdString();
  R = Dse({S("copy-library"), Uri, Back});
  ASSERT_EQ(R.Code, 0) << R.Err.toStdString();
  const QString Original = DumpLibrary(File);
  EXPECT_TRUE(Original.contains(S("LibraryInfo|Note|团队库")));
  EXPECT_EQ(DumpLibrary(Uri), Original);
  EXPECT_EQ(DumpLibrary(Back), Original);

  // an existing library is replaced only with --force, and never by itself
  R = Dse({S("copy-library"), File, Uri});
  EXPECT_EQ(R.Code, 1);
  EXPECT_TRUE(R.Err.contains(S("已有图集库"))) << R.Err.toStdString();
  R = Dse({S("copy-library"), File, Back});
  EXPECT_EQ(R.Code, 1);
  EXPECT_TRUE(R.Err.contains(S("文件已存在"))) << R.Err.toStdString();
  R = Dse({S("copy-library"), Uri, Uri, S("--force")});
  EXPECT_EQ(R.Code, 1);
  EXPECT_TRUE(R.Err.contains(S("是同一个"))) << R.Err.toStdString();
  EXPECT_EQ(DumpLibrary(Uri), Original);

  // a row the server refuses (a NUL character in text) fails the whole copy: the old
  // library stays, a fresh database stays empty
  TDrawSetLibrary::Open(File)->Db().Exec(S("UPDATE DrawSets SET DrawSetName = ? WHERE DrawSetID = 5"),
                                         {S("楼梯") + QChar(0) + S("尾")});
  const QString Fresh = Pg().CreateDatabase();
  for (const QString& Target : {Uri, Fresh}) {
    R = Dse({S("copy-library"), File, Target, S("--force")});
    EXPECT_EQ(R.Code, 1);
    EXPECT_TRUE(R.Err.contains(S("文本中含有空字符"))) << R.Err.toStdString();
  }
  EXPECT_EQ(DumpLibrary(Uri), Original);
  R = Dse({S("list"), Fresh});
  EXPECT_TRUE(R.Err.contains(S("数据库中没有图集库"))) << R.Err.toStdString();
  // with --force a good copy replaces the library
  TDrawSetLibrary::Open(File)->Db().Exec(S("UPDATE DrawSets SET DrawSetName = '新名' WHERE DrawSetID = 5"));
  ASSERT_EQ(Dse({S("copy-library"), File, Uri, S("--force")}).Code, 0);
  EXPECT_EQ(DumpLibrary(Uri), DumpLibrary(File));
  EXPECT_TRUE(Dse({S("list"), Uri}).Out.contains(S("\t新名\t")));
}
