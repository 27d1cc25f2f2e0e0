#include "DseTestRun.h"
#include "RawFileNames.h"
#include "SysUtils.h"
#include "VDILine.h"
#include "VDIText.h"
#include "VectorDrawing.h"

#include <QImage>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QFileInfo>
#include <QDir>
#include <QProcess>
#include <QTemporaryDir>

#include <dirent.h>
#include <unistd.h>
#include <cstdio>

#include <gtest/gtest.h>

#include <sys/stat.h>

namespace {
TDseResult Lvd(const QStringList& AArgs) { return RunDse(QStringList{QStringLiteral("lvd")} + AArgs); }

QString MakeDrawing(const QTemporaryDir& ADir) {
  TVectorDrawing D;
  D.SetRemark(QStringLiteral("梁柱节点"));
  D.Add(std::unique_ptr<TVectorDrawingItem>(new TVectorLine(&D, 0, 0xFF, -2, 0, 0, 10, msNone, msArrow, {0, 0}, {100, 50})));
  D.Add(std::unique_ptr<TVectorDrawingItem>(new TVectorText(&D, 0, 0, QStringLiteral("L1"), {10, 10}, 0, QStringLiteral("宋体"), 8, 0, haLeftJustify,
                        vaBottomJustify, true, 0, QString())));
  const QString Path = ADir.filePath(QStringLiteral("d.lvd"));
  D.SaveToFile(Path, sfXML);
  return Path;
}
}  // namespace

TEST(DseLvd, InfoAsJson) {
  QTemporaryDir Dir;
  const QString File = MakeDrawing(Dir);
  const TDseResult R = Lvd({"info", File, "--json"});
  ASSERT_EQ(R.Code, 0) << R.Err.toStdString();
  const QJsonObject O = QJsonDocument::fromJson(R.Out.toUtf8()).object();
  EXPECT_EQ(O.value(QStringLiteral("format")).toString(), QStringLiteral("xml"));
  EXPECT_EQ(O.value(QStringLiteral("version")).toString(), QStringLiteral("2.2"));
  EXPECT_EQ(O.value(QStringLiteral("remark")).toString(), QStringLiteral("梁柱节点"));
  EXPECT_EQ(O.value(QStringLiteral("maxId")).toInt(), 2);
  for (const char* Key : {"format", "version", "oriVersion", "backColor", "width", "height", "remark", "extData",
                          "maxId", "layers", "items"})
    EXPECT_TRUE(O.contains(QLatin1String(Key))) << Key;
  const QJsonArray Items = O.value(QStringLiteral("items")).toArray();
  ASSERT_EQ(Items.size(), 2);
  const QJsonObject L = Items[0].toObject();
  EXPECT_EQ(L.value(QStringLiteral("class")).toString(), QStringLiteral("TVectorLine"));
  EXPECT_EQ(L.value(QStringLiteral("endMarkStyle")).toInt(), 1);
  EXPECT_EQ(L.value(QStringLiteral("endPt")).toArray()[0].toDouble(), 100);
  EXPECT_EQ(L.value(QStringLiteral("layer")).toInt(), 0);
  EXPECT_EQ(L.value(QStringLiteral("outRect")).toArray().size(), 4);
  const QJsonObject T = Items[1].toObject();
  EXPECT_EQ(T.value(QStringLiteral("text")).toString(), QStringLiteral("L1"));
  EXPECT_EQ(T.value(QStringLiteral("fontName")).toString(), QStringLiteral("宋体"));
  EXPECT_TRUE(T.value(QStringLiteral("transparent")).toBool());
  const TDseResult Plain = Lvd({"info", File});
  EXPECT_TRUE(Plain.Out.contains(QStringLiteral("items: 2")));
}

TEST(DseLvd, ConvertAndRender) {
  QTemporaryDir Dir;
  const QString File = MakeDrawing(Dir);
  const QString Bin = Dir.filePath(QStringLiteral("d.bin"));
  EXPECT_EQ(Lvd({"convert", File, Bin, "--format", "bin", "--selected", "1"}).Code, 0);
  const QJsonObject O = QJsonDocument::fromJson(Lvd({"info", Bin, "--json"}).Out.toUtf8()).object();
  EXPECT_EQ(O.value(QStringLiteral("format")).toString(), QStringLiteral("bin"));
  EXPECT_EQ(O.value(QStringLiteral("items")).toArray().size(), 1);
  const TDseResult Missing = Lvd({"convert", File, Bin, "--format", "bin", "--selected", "99"});
  EXPECT_EQ(Missing.Code, 1);
  EXPECT_TRUE(Missing.Err.contains(QStringLiteral("no item with ID 99")));
  EXPECT_EQ(Lvd({"convert", File, Bin, "--format", "pdf"}).Code, 2);

  const QString Png = Dir.filePath(QStringLiteral("d.png"));
  EXPECT_EQ(Lvd({"render", File, "-o", Png, "--size", "320x200", "--margin", "5"}).Code, 0);
  QImage Img(Png);
  EXPECT_EQ(Img.width(), 320);
  bool Red = false;
  for (int Y = 0; Y < Img.height() && !Red; ++Y)
    for (int X = 0; X < Img.width() && !Red; ++X) Red = (Img.pixel(X, Y) & 0xFFFFFF) == 0xFF0000;
  EXPECT_TRUE(Red);  // the line's colour 0xFF in the model is red
  EXPECT_EQ(Lvd({"render", File, "-o", Png, "--size", "0x10"}).Code, 2);
}

TEST(DseLvd, FilesThatDoNotLoad) {
  QTemporaryDir Dir;
  const QString Bad = Dir.filePath(QStringLiteral("bad.lvd"));
  QFile F(Bad);
  ASSERT_TRUE(F.open(QIODevice::WriteOnly));
  F.write("not a drawing");
  F.close();
  TDseResult R = Lvd({"info", Bad});
  EXPECT_EQ(R.Code, 1);
  EXPECT_EQ(R.Err, QStringLiteral("error: 非法矢量图流格式\n"));
  R = Lvd({"info", Dir.filePath(QStringLiteral("none.lvd"))});
  EXPECT_EQ(R.Code, 1);
  EXPECT_TRUE(R.Err.contains(QStringLiteral("不存在")));
  EXPECT_EQ(Lvd({"frob"}).Code, 2);
  EXPECT_EQ(Lvd({}).Code, 2);
}

TEST(DseLvd, OutputGoesToTheFileThePathNames) {
  QTemporaryDir Dir;
  const QString In = MakeDrawing(Dir);
  const QString Real = Dir.filePath(QStringLiteral("real.lvd")), Link = Dir.filePath(QStringLiteral("link.lvd"));
  ASSERT_EQ(RunDse({QStringLiteral("lvd"), QStringLiteral("convert"), In, Real, QStringLiteral("--format"), QStringLiteral("bin")}).Code, 0);
  QFile::setPermissions(Real, QFileDevice::ReadOwner | QFileDevice::WriteOwner);
  ASSERT_TRUE(QFile::link(Real, Link));
  // Through the link: the link stays a link, the file keeps its mode and takes the data.
  TDseResult R = RunDse({QStringLiteral("lvd"), QStringLiteral("convert"), In, Link, QStringLiteral("--format"), QStringLiteral("xml")});
  ASSERT_EQ(R.Code, 0) << R.Err.toStdString();
  EXPECT_TRUE(QFileInfo(Link).isSymLink());
  const QFileDevice::Permissions P = QFile::permissions(Real);
  EXPECT_TRUE(P & QFileDevice::ReadOwner);
  EXPECT_FALSE(P & (QFileDevice::ReadGroup | QFileDevice::ReadOther));
  EXPECT_TRUE(RunDse({QStringLiteral("lvd"), QStringLiteral("info"), Real}).Out.startsWith(QStringLiteral("format: xml")));
  // What is no regular file is refused in plain words and left alone (a pipe of the
  // test's own: a real device must never be put at risk by a test).
  const QString Pipe = Dir.filePath(QStringLiteral("pipe"));
  ASSERT_EQ(::mkfifo(QFile::encodeName(Pipe).constData(), 0600), 0);
  const struct {
    QString Path;
    const char* Err;
  } Bad[] = {{Dir.path(), "是一个目录"}, {Pipe, "不是普通文件"}};
  for (const auto& B : Bad) {
    SCOPED_TRACE(B.Path.toStdString());
    R = RunDse({QStringLiteral("lvd"), QStringLiteral("convert"), In, B.Path, QStringLiteral("--format"), QStringLiteral("xml")});
    EXPECT_EQ(R.Code, 1);
    EXPECT_TRUE(R.Err.contains(QString::fromUtf8(B.Err))) << R.Err.toStdString();
  }
  EXPECT_TRUE(QFileInfo(Pipe).exists());
  EXPECT_FALSE(QFileInfo(Pipe).isFile());
}

namespace {

// A DXF of N lines on one layer, with a circle and a text.
QByteArray LinesDxf(int N) {
  QByteArray T = "  0\nSECTION\n  2\nHEADER\n  9\n$ACADVER\n  1\nAC1021\n  0\nENDSEC\n  0\nSECTION\n  2\nENTITIES\n";
  for (int I = 0; I < N; ++I)
    T += "  0\nLINE\n  8\nWALL\n 62\n1\n 10\n" + QByteArray::number(I) + "\n 20\n0\n 11\n" + QByteArray::number(I) +
         "\n 21\n100\n";
  T += "  0\nCIRCLE\n  8\nWALL\n 10\n0\n 20\n0\n 40\n5\n  0\nTEXT\n  8\nNOTE\n 10\n0\n 20\n0\n 40\n3\n  1\n说明\n";
  return T + "  0\nENDSEC\n  0\nEOF\n";
}

}  // namespace

TEST(DseLvd, ImportCad) {
  QTemporaryDir Dir;
  const QString In = Dir.filePath(QStringLiteral("plan.dxf")), Out = Dir.filePath(QStringLiteral("plan.lvd"));
  QFile F(In);
  ASSERT_TRUE(F.open(QIODevice::WriteOnly));
  F.write(LinesDxf(20000));
  F.close();
  TDseResult R = RunDse({QStringLiteral("lvd"), QStringLiteral("import-cad"), In, Out, QStringLiteral("--progress"),
                         QStringLiteral("--format"), QStringLiteral("bin")});
  ASSERT_EQ(R.Code, 0) << R.Err.toStdString();
  EXPECT_EQ(R.Out, QStringLiteral("imported %1 (AC1021, 20002 entities, 0 blocks) as 20002 items on 3 layers\n").arg(In));
  // the progress rises to 100 through both halves of the work
  QVector<int> Steps;
  for (const QString& L : R.Err.split(u'\n', Qt::SkipEmptyParts)) {
    ASSERT_TRUE(L.startsWith(QLatin1String("progress "))) << L.toStdString();
    Steps << L.mid(9).chopped(1).toInt();
  }
  ASSERT_GE(Steps.size(), 4);
  EXPECT_TRUE(std::is_sorted(Steps.begin(), Steps.end()));
  EXPECT_LT(Steps.first(), 50);
  EXPECT_EQ(Steps.last(), 100);
  R = RunDse({QStringLiteral("lvd"), QStringLiteral("info"), Out, QStringLiteral("--json")});
  ASSERT_EQ(R.Code, 0);
  EXPECT_EQ(QJsonDocument::fromJson(R.Out.toUtf8()).object()[QStringLiteral("items")].toArray().size(), 20002);

  const struct {
    QStringList Args;
    int Code;
    const char* Err;
  } Cases[] = {
      {{QStringLiteral("x.dwg"), Out}, 1, "不能读取 DWG 文件：只读取 DXF 文件"},
      {{Dir.filePath(QStringLiteral("none.dxf")), Out}, 1, "文件不存在"},
      {{In}, 2, "import-cad takes IN.dxf and OUT.lvd"},
      {{In, Out, QStringLiteral("--format"), QStringLiteral("dwg")}, 2, "--format must be xml or bin"},
  };
  for (const auto& C : Cases) {
    R = RunDse(QStringList{QStringLiteral("lvd"), QStringLiteral("import-cad")} + C.Args);
    EXPECT_EQ(R.Code, C.Code);
    EXPECT_TRUE(R.Err.contains(QString::fromUtf8(C.Err))) << R.Err.toStdString();
  }
}

// File names that are not UTF-8 (GBK bytes from an archive made on another system)
// open and save under their exact bytes, through the real program.
TEST(DseLvd, NamesThatAreNotUtf8) {
  QTemporaryDir Dir;
  const QByteArray D = Dir.path().toUtf8();
  const QString Good = MakeDrawing(Dir);
  QFile Dxf(Dir.filePath(QStringLiteral("a.dxf")));
  ASSERT_TRUE(Dxf.open(QIODevice::WriteOnly));
  Dxf.write("  0\nSECTION\n  2\nENTITIES\n  0\nLINE\n  8\nA\n 10\n0\n 20\n0\n 11\n1\n 21\n1\n  0\nENDSEC\n  0\nEOF\n");
  Dxf.close();
  // GBK for 钢筋, 输出, 图库 and 图纸
  const QByteArray In = D + "/\xb8\xd6\xbd\xee.lvd", Out = D + "/\xca\xe4\xb3\xf6.lvd", Lib = D + "/\xcd\xbc\xbf\xe2.db",
                   Png = D + "/\xcd\xbc\xd6\xbd.png", Cad = D + "/\xcd\xbc\xd6\xbd.dxf";
  ASSERT_EQ(::rename(Good.toUtf8().constData(), In.constData()), 0);
  ASSERT_EQ(::rename(Dxf.fileName().toUtf8().constData(), Cad.constData()), 0);
  const auto Dse = [&](const QList<QByteArray>& AArgs) {
    QProcess P;
    P.setProgram(QStringLiteral("/bin/sh"));
    // each argument is passed printf-escaped, so no byte goes through a text conversion
    QString Cmd = QStringLiteral("exec '%1'").arg(QStringLiteral(DSE_BINARY));
    for (const QByteArray& A : AArgs) {
      QString Esc;
      for (const char C : A) Esc += QStringLiteral("\\%1").arg(uint(uchar(C)), 3, 8, QLatin1Char('0'));
      Cmd += QStringLiteral(" \"$(printf '%1')\"").arg(Esc);
    }
    P.setArguments({QStringLiteral("-c"), Cmd});
    P.start();
    P.waitForFinished(60000);
    return std::pair{P.exitCode(), QString::fromUtf8(P.readAllStandardError())};
  };
  const auto Exists = [](const QByteArray& APath) { return ::access(APath.constData(), F_OK) == 0; };
  auto [Code, Err] = Dse({"lvd", "info", In});
  EXPECT_EQ(Code, 0) << Err.toStdString();
  std::tie(Code, Err) = Dse({"lvd", "convert", In, Out, "--format", "bin"});
  EXPECT_EQ(Code, 0) << Err.toStdString();
  EXPECT_TRUE(Exists(Out));
  std::tie(Code, Err) = Dse({"lvd", "render", Out, "-o", Png});
  EXPECT_EQ(Code, 0) << Err.toStdString();
  EXPECT_TRUE(Exists(Png));
  std::tie(Code, Err) = Dse({"init", Lib});
  EXPECT_EQ(Code, 0) << Err.toStdString();
  EXPECT_TRUE(Exists(Lib));
  std::tie(Code, Err) = Dse({"import", Lib, Out, "--name", "x"});
  EXPECT_EQ(Code, 0) << Err.toStdString();
  std::tie(Code, Err) = Dse({"lvd", "import-cad", Cad, Out});
  EXPECT_EQ(Code, 0) << Err.toStdString();
  // nothing was written under any other name (Qt cannot list or remove these names)
  const std::vector<std::string> Names = RawFileNames(D);
  const std::vector<std::string> Expected = {"\xb8\xd6\xbd\xee.lvd", "\xca\xe4\xb3\xf6.lvd", "\xcd\xbc\xbf\xe2.db",
                                             "\xcd\xbc\xd6\xbd.dxf", "\xcd\xbc\xd6\xbd.png"};
  EXPECT_EQ(Names, Expected);
  for (const std::string& N : Names) ::unlink((D + '/' + QByteArray::fromStdString(N)).constData());
}

TEST(DseLvd, FileNameBytesRoundTrip) {
  const QByteArray Cases[] = {"plain.lvd", "\xe9\x92\xa2\xe7\xad\x8b.lvd", "\xb8\xd6\xbd\xee.lvd", "a\xff\xfe\x80z",
                              "\xed\xa0\x80", "\xc0\xaf", "\xf0\x9f\x98\x80"};
  for (const QByteArray& B : Cases) EXPECT_EQ(EncodeFileName(DecodeFileName(B)), B) << B.toHex().toStdString();
  EXPECT_EQ(DecodeFileName("\xe9\x92\xa2"), QStringLiteral("钢"));
  EXPECT_EQ(DecodeFileName("\xb8\xd6"), QString(QChar(0xDCB8)) + QChar(0xDCD6));
}
