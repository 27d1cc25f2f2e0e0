// The DXF reader's walk: what each entity asks of the converter, blocks, colours,
// encodings, and what bad files get.

#include "DxfReader.h"
#include "DxfTestUtils.h"

#include <QDir>
#include <QFile>

#include <gtest/gtest.h>

using namespace dxf_test;

namespace {

QStringList Walk(const TDxfFile& AFile, TDxfSummary* ASummary = nullptr, const TDxfOptions& AOptions = {}) {
  TRecorder R;
  const TDxfSummary S = ReadDxf(AFile.Bytes(), R, AOptions);
  if (ASummary) *ASummary = S;
  return R.Items();
}

QStringList WalkOne(const QString& AEntity) {
  TDxfFile F;
  F.Layer("L1", 1);
  F.Add(AEntity);
  return Walk(F);
}

QString Line(double X1, double Y1, double X2, double Y2, const char* ALayer = "L1") {
  return G(0, "LINE") + G(8, ALayer) + G(10, X1) + G(20, Y1) + G(30, 0.0) + G(11, X2) + G(21, Y2) + G(31, 0.0);
}

}  // namespace

TEST(DxfReaderTest, EachEntityKindMakesItsCalls) {
  const struct {
    const char* Name;
    QString Entity;
    QStringList Calls;
  } Cases[] = {
      {"line", Line(1, 2, 3, 4), {S("line L1 (1,2)-(3,4) pen0 0000ff")}},
      {"circle", G(0, "CIRCLE") + G(8, "L1") + G(62, 3) + G(10, 5.0) + G(20, 5.0) + G(40, 2.0),
       {S("circle L1 c(5,5) r2 pen0 00ff00")}},
      {"small arc", G(0, "ARC") + G(8, "L1") + G(10, 0.0) + G(20, 0.0) + G(40, 10.0) + G(50, 0.0) + G(51, 90.0),
       {S("arc L1 c(0,0) (10,0)-(0,10) r10 t1 pen0 0000ff")}},
      {"large arc", G(0, "ARC") + G(8, "L1") + G(10, 0.0) + G(20, 0.0) + G(40, 10.0) + G(50, 0.0) + G(51, 270.0),
       {S("arc L1 c(0,0) (10,0)-(0,-10) r10 t3 pen0 0000ff")}},
      {"arc seen from below", G(0, "ARC") + G(8, "L1") + G(10, 5.0) + G(20, 0.0) + G(40, 5.0) + G(210, 0.0) + G(220, 0.0) +
                                  G(230, -1.0) + G(50, 0.0) + G(51, 90.0),
       {S("arc L1 c(-5,0) (-10,0)-(-5,5) r5 t2 pen0 0000ff")}},
      {"closed lwpolyline with a half circle",
       G(0, "LWPOLYLINE") + G(8, "L1") + G(90, 3) + G(70, 1) + G(10, 0.0) + G(20, 0.0) + G(42, 1.0) + G(10, 10.0) +
           G(20, 0.0) + G(10, 10.0) + G(20, 10.0),
       {S("poly L1 pen0 0000ff (0,0)a1r5 (10,0) (10,10) (0,0)")}},
      {"clockwise bulge", G(0, "LWPOLYLINE") + G(8, "L1") + G(90, 2) + G(70, 0) + G(10, 0.0) + G(20, 0.0) + G(42, -0.5) +
                              G(10, 10.0) + G(20, 0.0),
       {S("poly L1 pen0 0000ff (0,0)a2r6.25 (10,0)")}},
      {"old polyline", G(0, "POLYLINE") + G(8, "L1") + G(66, 1) + G(70, 0) + G(0, "VERTEX") + G(8, "L1") + G(10, 1.0) +
                           G(20, 1.0) + G(0, "VERTEX") + G(8, "L1") + G(10, 2.0) + G(20, 2.0) + G(0, "SEQEND"),
       {S("poly L1 pen0 0000ff (1,1) (2,2)")}},
      {"point", G(0, "POINT") + G(8, "L1") + G(10, 7.0) + G(20, 8.0), {S("point L1 (7,8) 0000ff")}},
      {"text, trimmed, with its codes", G(0, "TEXT") + G(8, "L1") + G(10, 1.0) + G(20, 2.0) + G(40, 3.5) +
                                            G(1, "  钢筋%%c12  ") + G(50, 90.0),
       {S("text L1 \"钢筋Φ12\" (1,2) h3.5 rot1.5708 w1 ha0 va1 0000ff")}},
      {"text by its alignment point", G(0, "TEXT") + G(8, "L1") + G(10, 1.0) + G(20, 2.0) + G(11, 5.0) + G(21, 6.0) +
                                          G(40, 2.0) + G(1, "中") + G(72, 1) + G(73, 2),
       {S("text L1 \"中\" (5,6) h2 rot0 w1 ha2 va2 0000ff")}},
      {"blank text makes nothing", G(0, "TEXT") + G(8, "L1") + G(10, 1.0) + G(20, 2.0) + G(40, 2.0) + G(1, "   "), {}},
      {"mtext", G(0, "MTEXT") + G(8, "L1") + G(10, 1.0) + G(20, 2.0) + G(40, 3.0) + G(71, 5) + G(3, "{\\fSimSun|b0;第一") +
                    G(1, "行\\P第二\\U+884C}"),
       {S("text L1 \"第一行\n第二行\" (1,2) h3 rot0 w1 ha2 va2 0000ff")}},
      {"solid", G(0, "SOLID") + G(8, "L1") + G(10, 0.0) + G(20, 0.0) + G(11, 10.0) + G(21, 0.0) + G(12, 0.0) + G(22, 10.0) +
                    G(13, 10.0) + G(23, 10.0),
       {S("poly L1 pen0 0000ff (0,0) (10,0) (10,10) (0,10) (0,0)")}},
      {"hatch with a polyline boundary",
       G(0, "HATCH") + G(8, "L1") + G(2, "SOLID") + G(70, 1) + G(71, 0) + G(91, 1) + G(92, 2) + G(72, 0) + G(73, 1) +
           G(93, 3) + G(10, 0.0) + G(20, 0.0) + G(10, 10.0) + G(20, 0.0) + G(10, 0.0) + G(20, 10.0) + G(97, 0) +
           G(75, 0) + G(76, 1) + G(98, 0),
       {S("poly L1 pen0 0000ff (0,0) (10,0) (0,10) (0,0)"), S("hatch L1 loops1")}},
      {"hatch with edges", G(0, "HATCH") + G(8, "L1") + G(2, "ANSI31") + G(70, 0) + G(71, 0) + G(91, 1) + G(92, 1) +
                               G(93, 3) + G(72, 1) + G(10, 0.0) + G(20, 0.0) + G(11, 10.0) + G(21, 0.0) + G(72, 1) +
                               G(10, 10.0) + G(20, 0.0) + G(11, 0.0) + G(21, 10.0) + G(72, 1) + G(10, 0.0) + G(20, 10.0) +
                               G(11, 0.0) + G(21, 0.0) + G(97, 1) + G(330, "2F") + G(75, 0) + G(76, 1) + G(98, 0),
       {S("poly L1 pen0 0000ff (0,0) (10,0) (0,10) (0,0)"), S("hatch L1 loops1")}},
      {"paper space is left out", G(0, "LINE") + G(8, "L1") + G(67, 1) + G(10, 0.0) + G(20, 0.0) + G(11, 1.0) + G(21, 1.0),
       {}},
      {"an unknown kind is left out", G(0, "3DSOLID") + G(8, "L1") + G(1, "ACIS") + Line(0, 0, 1, 1),
       {S("line L1 (0,0)-(1,1) pen0 0000ff")}},
  };
  for (const auto& C : Cases) {
    SCOPED_TRACE(C.Name);
    EXPECT_EQ(WalkOne(C.Entity), C.Calls);
  }
}

TEST(DxfReaderTest, CurvesBecomePoints) {
  TDxfFile F;
  F.Layer("L1", 1);
  // a clamped quadratic spline: its middle is (5, 5)
  F.Add(G(0, "SPLINE") + G(8, "L1") + G(70, 8) + G(71, 2) + G(72, 6) + G(73, 3) + G(40, 0.0) + G(40, 0.0) + G(40, 0.0) +
        G(40, 1.0) + G(40, 1.0) + G(40, 1.0) + G(10, 0.0) + G(20, 0.0) + G(10, 5.0) + G(20, 10.0) + G(10, 10.0) + G(20, 0.0));
  F.Add(G(0, "ELLIPSE") + G(8, "L1") + G(10, 0.0) + G(20, 0.0) + G(11, 10.0) + G(21, 0.0) + G(40, 0.5) + G(41, 0.0) +
        G(42, 6.283185307179586));
  TRecorder R;
  ReadDxf(F.Bytes(), R);
  const QStringList Items = R.Items();
  ASSERT_EQ(Items.size(), 2);
  const QStringList Spline = Items[0].split(u' ').mid(4);
  ASSERT_EQ(Spline.size(), 25);
  EXPECT_EQ(Spline.first(), S("(0,0)"));
  EXPECT_EQ(Spline[12], S("(5,5)"));
  EXPECT_EQ(Spline.last(), S("(10,0)"));
  const QStringList Ellipse = Items[1].split(u' ').mid(4);
  ASSERT_EQ(Ellipse.size(), 65);
  EXPECT_EQ(Ellipse[0], S("(10,0)"));
  EXPECT_EQ(Ellipse[16], S("(0,5)"));
  EXPECT_EQ(Ellipse[32], S("(-10,0)"));
}

// A degree not below the number of control points has no curve: the control polygon.
TEST(DxfReaderTest, SplineOfTooFewPointsIsItsPolygon) {
  TDxfFile F;
  F.Layer("L1", 1);
  F.Add(G(0, "SPLINE") + G(8, "L1") + G(71, 3) + G(72, 6) + G(73, 2) + G(40, 0.0) + G(40, 0.0) + G(40, 5.0) +
        G(40, 1.0) + G(40, 1.0) + G(40, 1.0) + G(10, 0.0) + G(20, 0.0) + G(10, 10.0) + G(20, 0.0));
  TRecorder R;
  ReadDxf(F.Bytes(), R);
  const QStringList Items = R.Items();
  ASSERT_EQ(Items.size(), 1);
  EXPECT_EQ(Items[0].split(u' ').mid(4), QStringList({S("(0,0)"), S("(10,0)")}));
}

TEST(DxfReaderTest, BlocksNestScaleRotateMirrorAndRepeat) {
  TDxfFile F;
  F.Layer("L1", 1).Layer("L2", 2);
  F.Block("IN", 0, 0,
          G(0, "LINE") + G(8, "0") + G(62, 0) + G(10, 0.0) + G(20, 0.0) + G(11, 1.0) + G(21, 0.0) + G(0, "ARC") +
              G(8, "0") + G(62, 0) + G(10, 0.0) + G(20, 0.0) + G(40, 1.0) + G(50, 0.0) + G(51, 90.0));
  F.Block("OUT", 10, 10,
          G(0, "INSERT") + G(8, "L2") + G(62, 3) + G(2, "in") + G(10, 10.0) + G(20, 10.0) + G(41, 2.0) + G(42, 2.0) +
              G(50, 90.0));
  F.Add(G(0, "INSERT") + G(8, "L1") + G(62, 5) + G(2, "OUT") + G(10, 100.0) + G(20, 0.0) + G(41, -1.0) + G(42, 1.0) +
        G(70, 2) + G(44, 50.0));
  EXPECT_EQ(Walk(F), (QStringList{S("line L2 (100,0)-(100,2) pen0 00ff00"), S("arc L2 c(100,0) (100,2)-(102,0) r2 t2 pen0 00ff00"),
                                  S("line L2 (150,0)-(150,2) pen0 00ff00"), S("arc L2 c(150,0) (150,2)-(152,0) r2 t2 pen0 00ff00")}));
}

TEST(DxfReaderTest, DimensionsDrawThroughTheirBlock) {
  TDxfFile F;
  F.Layer("L1", 1);
  F.Block("*D1", 0, 0, Line(0, 0, 5, 0, "0") + G(0, "TEXT") + G(8, "0") + G(10, 2.0) + G(20, 1.0) + G(40, 2.5) + G(1, "5"));
  F.Add(G(0, "DIMENSION") + G(8, "L1") + G(2, "*D1") + G(10, 0.0) + G(20, 0.0) + G(70, 0));
  EXPECT_EQ(Walk(F), (QStringList{S("line L1 (0,0)-(5,0) pen0 0000ff"), S("text L1 \"5\" (2,1) h2.5 rot0 w1 ha0 va1 0000ff")}));
}

TEST(DxfReaderTest, ColoursAndLineTypesResolve) {
  TDxfFile F;
  F.Layer("L1", 1).Layer("OFF", -5).Layer("AXIS", 7, 1, "CENTER");
  F.Add(Line(0, 0, 1, 0, "OFF"));
  F.Add(G(0, "LINE") + G(8, "L1") + G(62, 256) + G(10, 0.0) + G(20, 0.0) + G(11, 1.0) + G(21, 0.0));
  F.Add(G(0, "LINE") + G(8, "L1") + G(420, 0x123456) + G(10, 0.0) + G(20, 0.0) + G(11, 1.0) + G(21, 0.0));
  F.Add(G(0, "LINE") + G(8, "L1") + G(62, 0) + G(10, 0.0) + G(20, 0.0) + G(11, 1.0) + G(21, 0.0));
  F.Add(Line(0, 0, 1, 0, "AXIS"));
  for (const char* Type : {"DASHED", "HIDDEN2", "DOT", "PHANTOM", "DASHDOT", "BYLAYER"})
    F.Add(G(0, "LINE") + G(8, "AXIS") + G(6, Type) + G(10, 0.0) + G(20, 0.0) + G(11, 1.0) + G(21, 0.0));
  const QStringList Calls = Walk(F);
  const QStringList Expected = {
      S("line OFF (0,0)-(1,0) pen0 ff0000"),   S("line L1 (0,0)-(1,0) pen0 0000ff"),   S("line L1 (0,0)-(1,0) pen0 563412"),
      S("line L1 (0,0)-(1,0) pen0 ffffff"),    S("line AXIS (0,0)-(1,0) pen3 ffffff"), S("line AXIS (0,0)-(1,0) pen1 ffffff"),
      S("line AXIS (0,0)-(1,0) pen1 ffffff"),  S("line AXIS (0,0)-(1,0) pen2 ffffff"), S("line AXIS (0,0)-(1,0) pen4 ffffff"),
      S("line AXIS (0,0)-(1,0) pen3 ffffff"),  S("line AXIS (0,0)-(1,0) pen3 ffffff")};
  EXPECT_EQ(Calls, Expected);
}

TEST(DxfReaderTest, TheLayerIsNamedBeforeEachBuildWithTheEntitysColour) {
  TDxfFile F;
  F.Layer("L1", 1);
  F.Add(Line(0, 0, 1, 0) + G(0, "LINE") + G(8, "L1") + G(62, 3) + G(10, 0.0) + G(20, 0.0) + G(11, 1.0) + G(21, 0.0));
  TRecorder R;
  ReadDxf(F.Bytes(), R);
  EXPECT_EQ(R.MaxCount, 2);
  EXPECT_EQ(R.Calls, (QStringList{S("layer L1 0000ff"), S("line L1 (0,0)-(1,0) pen0 0000ff"), S("layer L1 00ff00"),
                                  S("line L1 (0,0)-(1,0) pen0 00ff00"), S("end")}));
  EXPECT_EQ(R.Progress.back(), 100.0);
}

TEST(DxfReaderTest, EncodingsAndEscapes) {
  const struct {
    const char* Name;
    const char* Version;
    const char* CodePage;
    QByteArray Encoding;
    const char* Text;
    const char* Expected;
  } Cases[] = {
      {"GBK by the code page", "AC1015", "ANSI_936", "GBK", "钢筋", "钢筋"},
      {"UTF-8 from AC1021 on, whatever the code page", "AC1021", "ANSI_936", "UTF-8", "钢筋", "钢筋"},
      {"unicode escapes", "AC1021", "ANSI_1252", "UTF-8", "\\U+94A2\\U+7b4b 12", "钢筋 12"},
      {"multibyte escapes in GBK", "AC1021", "ANSI_1252", "UTF-8", "\\M+5B8D6\\M+5BDEE", "钢筋"},
      {"Latin-1 by its code page", "AC1015", "ANSI_1252", "ISO-8859-1", "Ø12 ±5", "Ø12 ±5"},
  };
  for (const auto& C : Cases) {
    SCOPED_TRACE(C.Name);
    TDxfFile F;
    F.Version = S(C.Version);
    F.CodePage = S(C.CodePage);
    F.Encoding = C.Encoding;
    F.Layer("墙", 1);
    F.Add(G(0, "TEXT") + G(8, "墙") + G(10, 0.0) + G(20, 0.0) + G(40, 3.0) + G(1, C.Text));
    const QStringList Calls = Walk(F);
    ASSERT_EQ(Calls.size(), 1);
    EXPECT_TRUE(Calls[0].contains(S("\"%1\"").arg(S(C.Expected)))) << Calls[0].toStdString();
    if (C.Encoding != "ISO-8859-1") {
      EXPECT_TRUE(Calls[0].startsWith(S("text 墙 "))) << Calls[0].toStdString();
    }
  }
}

TEST(DxfReaderTest, UnitsBecomeMillimetres) {
  TDxfFile F;
  F.InsUnits = 6;  // metres
  F.Layer("L1", 1);
  F.Add(Line(1, 2, 3, 4) + G(0, "TEXT") + G(8, "L1") + G(10, 1.0) + G(20, 1.0) + G(40, 0.0035) + G(1, "x"));
  TDxfSummary Sum;
  EXPECT_EQ(Walk(F, &Sum), (QStringList{S("line L1 (1000,2000)-(3000,4000) pen0 0000ff"),
                                        S("text L1 \"x\" (1000,1000) h3.5 rot0 w1 ha0 va1 0000ff")}));
  EXPECT_EQ(Sum.UnitScale, 1000.0);
}

TEST(DxfReaderTest, MTextFormattingIsTakenOut) {
  const struct {
    const char* In;
    const char* Out;
  } Cases[] = {
      {"plain", "plain"},
      {"{\\fArial|b1|i0;粗体}", "粗体"},
      {"a\\Pb\\nc", "a\nb\nc"},
      {"\\H2.5x;\\C1;红\\~字", "红 字"},
      {"\\S1^2;", "1/2"},
      {"\\S3#4;mm", "3/4mm"},
      {"\\Lunder\\l \\Oover\\o", "under over"},
      {"\\\\ \\{ \\}", "\\ { }"},
      {"\\pi1,l2;段落", "段落"},
      {"tail\\", "tail\\"},
  };
  for (const auto& C : Cases) EXPECT_EQ(dxf::StripMTextFormat(S(C.In)), S(C.Out)) << C.In;
  EXPECT_EQ(dxf::ReplaceTextCodes(S("%%C20 %%d %%P1 100%%% %%uline")), S("Φ20 ° ±1 100% line"));
}

TEST(DxfReaderTest, ColourIndexTable) {
  const struct {
    int Index;
    quint32 Bgr;
  } Cases[] = {{1, 0x0000ff}, {2, 0x00ffff}, {3, 0x00ff00}, {4, 0xffff00}, {5, 0xff0000}, {6, 0xff00ff},
               {7, 0xffffff}, {8, 0x808080}, {9, 0xc0c0c0}, {10, 0x0000ff}, {11, 0x7f7fff}, {12, 0x0000cc},
               {20, 0x003fff}, {21, 0x7f9fff}, {50, 0x00ffff}, {130, 0xffff00}, {250, 0x333333}, {255, 0xffffff},
               {0, 0xffffff}, {256, 0xffffff}};
  for (const auto& C : Cases) EXPECT_EQ(dxf::AciColor(C.Index), C.Bgr) << C.Index;
}

// Every input that ever found a fault in the reader: read to the end or refused in words.
TEST(DxfReaderTest, FuzzFindingsStayFixed) {
  const QDir Dir(QStringLiteral(DSE_SOURCE_DIR "/fuzz/regressions/dxf"));
  const QStringList Files = Dir.entryList(QDir::Files);
  ASSERT_FALSE(Files.isEmpty());
  for (const QString& Name : Files) {
    SCOPED_TRACE(Name.toStdString());
    QFile F(Dir.filePath(Name));
    ASSERT_TRUE(F.open(QIODevice::ReadOnly));
    TRecorder R;
    try {
      ReadDxf(F.readAll(), R);
    } catch (const EDxfError& E) {
      EXPECT_FALSE(E.Message().isEmpty());
    }
  }
}
