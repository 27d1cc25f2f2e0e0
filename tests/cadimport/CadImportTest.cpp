// The builder's rules on a real drawing, and what bad files get from the import.

#include "CADImport.h"
#include "CADtoVDEBuilder.h"
#include "DxfTestUtils.h"
#include "VDILine.h"
#include "VDIPoint.h"
#include "VDIText.h"
#include "VectorDrawing.h"

#include <QFile>
#include <QTemporaryDir>

#include <gtest/gtest.h>

using namespace dxf_test;

namespace {

QString Line(double X1, double Y1, double X2, double Y2, const char* ALayer = "L1") {
  return G(0, "LINE") + G(8, ALayer) + G(10, X1) + G(20, Y1) + G(11, X2) + G(21, Y2);
}

class CadImportTest : public testing::Test {
protected:
  void SetUp() override {
    ASSERT_TRUE(Dir.isValid());
    // a drawing with one item that a failed import must leave alone
    D.Add(std::make_unique<TVectorLine>(&D, 0, 0xFFFFFF, 0, psSolid, 0, 0, msNone, msNone, TKRNVector2d{0, 0},
                                        TKRNVector2d{1, 1}));
  }
  QString Write(const QString& AName, const QByteArray& AData) {
    const QString P = Dir.filePath(AName);
    QFile F(P);
    F.open(QIODevice::WriteOnly);
    F.write(AData);
    return P;
  }
  QTemporaryDir Dir;
  TVectorDrawing D;
};

}  // namespace

TEST_F(CadImportTest, TheBuilderMakesItemsByItsRules) {
  TDxfFile F;
  F.Layer("L1", 1).Layer("0", 3);
  F.Add(Line(0, 0, 10, 0));                                                       // on L1, red
  F.Add(G(0, "LINE") + G(8, "0") + G(62, 5) + G(10, 0.0) + G(20, 0.0) + G(11, 1.0) + G(21, 1.0));  // on 0, blue
  F.Add(G(0, "LINE") + G(8, "") + G(10, 0.0) + G(20, 0.0) + G(11, 1.0) + G(21, 1.0));  // no layer name: dropped
  F.Add(G(0, "LINE") + G(8, "L1") + G(420, 0x000000) + G(10, 0.0) + G(20, 0.0) + G(11, 2.0) + G(21, 2.0));  // black
  F.Add(G(0, "ARC") + G(8, "L1") + G(10, 0.0) + G(20, 0.0) + G(40, 10.0) + G(50, 0.0) + G(51, 90.0));
  F.Add(G(0, "CIRCLE") + G(8, "L1") + G(10, 5.0) + G(20, 5.0) + G(40, 2.0));
  F.Add(G(0, "LWPOLYLINE") + G(8, "L1") + G(90, 2) + G(70, 0) + G(10, 0.0) + G(20, 0.0) + G(10, 5.0) + G(20, 5.0));
  F.Add(G(0, "TEXT") + G(8, "L1") + G(10, 1.0) + G(20, 2.0) + G(40, 2.5) + G(50, 30.0) + G(1, " 3\u00A6\u00B5 20 "));
  F.Add(G(0, "POINT") + G(8, "L1") + G(10, 7.0) + G(20, 8.0));
  const QString File = Write(S("a.dxf"), F.Bytes());
  for (const auto& [Region, Code] : {std::pair{1, QChar(0x03A6)}, std::pair{6, QChar(u'P')}, std::pair{13, QChar(u'A')}}) {
    SCOPED_TRACE(Region);
    TDxfOptions O;
    O.RegionCode = Region;
    const TDxfSummary Sum = ImportCADFile(File, D, 0, O);
    ASSERT_EQ(D.Count(), 8);  // the item before is gone, the unnamed layer's line dropped
    // layer 0 is recoloured, never added; L1 is added with its entities' colour
    ASSERT_EQ(D.Layers().Count(), 2);
    EXPECT_EQ(D.Layers().Items(0)->Name(), QStringLiteral("0"));
    EXPECT_EQ(D.Layers().Items(0)->Color(), 0xFF0000u);
    EXPECT_EQ(D.Layers().Items(1)->Name(), QStringLiteral("L1"));
    const auto* L = dynamic_cast<TVectorLine*>(D.Items(0));
    ASSERT_NE(L, nullptr);
    EXPECT_EQ(L->Color(), 0x0000FFu);
    EXPECT_EQ(L->StartMarkSize(), 8);
    EXPECT_EQ(L->EndMarkSize(), 8);
    EXPECT_EQ(L->StartMarkStyle(), msNone);
    EXPECT_EQ(D.Items(1)->Layer(), D.Layers().Items(0));
    EXPECT_EQ(D.Items(2)->Color(), 0xFFFFFFu);  // black made white
    const auto* A = dynamic_cast<TVectorArc*>(D.Items(3));
    ASSERT_NE(A, nullptr);
    EXPECT_EQ(A->Arc().ArcType(), atACS);
    EXPECT_DOUBLE_EQ(A->Arc().Radius(), 10);
    ASSERT_NE(dynamic_cast<TVectorCircle*>(D.Items(4)), nullptr);
    const auto* P = dynamic_cast<TVectorPolyline*>(D.Items(5));
    ASSERT_NE(P, nullptr);
    EXPECT_EQ(P->StartMarkSize(), 8);
    const auto* T = dynamic_cast<TVectorText*>(D.Items(6));
    ASSERT_NE(T, nullptr);
    EXPECT_EQ(T->Text(), QStringLiteral("3") + Code + QChar(1) + QStringLiteral(" 20"));
    EXPECT_EQ(T->FontName(), QStringLiteral("宋体"));
    EXPECT_EQ(T->Height(), 2);  // rounded half to even
    EXPECT_FLOAT_EQ(float(T->Angle()), float(30 * M_PI / 180));
    ASSERT_NE(dynamic_cast<TVectorPoint*>(D.Items(7)), nullptr);
    EXPECT_EQ(Sum.Entities, 9);
  }
}

TEST_F(CadImportTest, BadFilesAreRefusedAndTheDrawingStays) {
  TDxfFile Good;
  Good.Layer("L1", 1);
  Good.Add(Line(0, 0, 1, 1));
  const QByteArray GoodBytes = Good.Bytes();
  const struct {
    const char* Name;
    QString File;
    const char* Message;
  } Cases[] = {
      {"a DWG by its name", Write(S("a.DWG"), GoodBytes), "不能读取 DWG 文件：只读取 DXF 文件"},
      {"a DWG by its content", Write(S("b.dxf"), QByteArray("AC1027\0\0\0\0\0", 11) + QByteArray(200, 'x')), "这是 DWG 文件"},
      {"binary DXF", Write(S("c.dxf"), QByteArray("AutoCAD Binary DXF\r\n\x1a\0", 22) + QByteArray(100, '\1')), "二进制 DXF"},
      {"missing", Dir.filePath(S("none.dxf")), "不存在"},
      {"empty", Write(S("e.dxf"), QByteArray()), "不是 DXF 文件（文件为空）"},
      {"not DXF at all", Write(S("f.dxf"), "hello\nworld\n"), "第 1 行：组码“hello”不是整数"},
      {"a code that is not a number", Write(S("g.dxf"), QByteArray(GoodBytes).replace("\n 10\n", "\n1O\n")), "组码“1O”不是整数"},
      {"a number that is not", Write(S("h.dxf"), QByteArray(GoodBytes).replace("\n 11\n1\n", "\n 11\nabc\n")), "“abc”不是数值"},
      {"no EOF", Write(S("i.dxf"), GoodBytes.left(GoodBytes.lastIndexOf("  0\nEOF"))), "缺少 EOF（文件不完整）"},
      {"cut in a section", Write(S("j.dxf"), GoodBytes.left(GoodBytes.indexOf("ENTITIES") + 20)), "文件不完整"},
      {"a value missing at the end", Write(S("k.dxf"), GoodBytes.left(GoodBytes.lastIndexOf("EOF"))), "意外结束"},
      {"a group outside a section", Write(S("l.dxf"), "  0\nSECTION\n  2\nHEADER\n  0\nENDSEC\n  8\nx\n  0\nEOF\n"), "段外出现组码 8"},
  };
  for (const auto& C : Cases) {
    SCOPED_TRACE(C.Name);
    try {
      ImportCADFile(C.File, D);
      ADD_FAILURE() << "no error";
    } catch (const Exception& E) {
      EXPECT_TRUE(E.Message().contains(S(C.Message))) << E.Message().toStdString();
    }
    EXPECT_EQ(D.Count(), 1);
  }
}

// Cut anywhere, a good file fails with a message and never crashes or hangs.
TEST_F(CadImportTest, AFileCutAnywhereIsRefused) {
  TDxfFile F;
  F.Layer("L1", 1);
  F.Block("B", 0, 0, Line(0, 0, 1, 0, "0"));
  F.Add(Line(0, 0, 1, 1) + G(0, "INSERT") + G(8, "L1") + G(2, "B") + G(10, 5.0) + G(20, 5.0) + G(66, 1) +
        G(0, "ATTRIB") + G(8, "L1") + G(10, 5.0) + G(20, 5.0) + G(40, 2.0) + G(1, "A") + G(2, "TAG") + G(0, "SEQEND") +
        G(0, "HATCH") + G(8, "L1") + G(91, 1) + G(92, 2) + G(72, 1) + G(73, 1) + G(93, 2) + G(10, 0.0) + G(20, 0.0) +
        G(42, 0.5) + G(10, 3.0) + G(20, 0.0));
  const QByteArray Bytes = F.Bytes();
  TRecorder Whole;
  ReadDxf(Bytes, Whole);
  EXPECT_EQ(Whole.Items().size(), 5);  // line, block line, attribute, hatch boundary and hatch
  int Refused = 0;
  for (qsizetype Cut = 0; Cut < Bytes.size() - 5; Cut += 3) {
    TRecorder R;
    try {
      ReadDxf(Bytes.left(Cut), R);
    } catch (const EDxfError& E) {
      EXPECT_FALSE(E.Message().isEmpty());
      ++Refused;
      EXPECT_TRUE(R.Calls.isEmpty()) << "a refused file built something";
    }
  }
  EXPECT_EQ(Refused, (Bytes.size() - 5 + 2) / 3);
}

TEST_F(CadImportTest, RecursionAndExpansionAreBounded) {
  TDxfFile Self;
  Self.Layer("L1", 1);
  Self.Block("SELF", 0, 0, Line(0, 0, 1, 0, "0") + G(0, "INSERT") + G(8, "0") + G(2, "SELF") + G(10, 1.0) + G(20, 0.0));
  Self.Block("A", 0, 0, G(0, "INSERT") + G(8, "0") + G(2, "B") + G(10, 0.0) + G(20, 0.0));
  Self.Block("B", 0, 0, Line(0, 0, 2, 0, "0") + G(0, "INSERT") + G(8, "0") + G(2, "A") + G(10, 0.0) + G(20, 0.0));
  Self.Add(G(0, "INSERT") + G(8, "L1") + G(2, "SELF") + G(10, 0.0) + G(20, 0.0));
  Self.Add(G(0, "INSERT") + G(8, "L1") + G(2, "A") + G(10, 0.0) + G(20, 0.0));
  Self.Add(G(0, "INSERT") + G(8, "L1") + G(2, "NOWHERE") + G(10, 0.0) + G(20, 0.0));
  const QString File = Write(S("self.dxf"), Self.Bytes());
  const TDxfSummary Sum = ImportCADFile(File, D);
  EXPECT_EQ(D.Count(), 2);  // one line of SELF, one of B
  ASSERT_EQ(Sum.Warnings.size(), 3) << Sum.Warnings.join(u'\n').toStdString();
  EXPECT_TRUE(Sum.Warnings[0].contains(S("块 SELF 插入了它自己"))) << Sum.Warnings[0].toStdString();
  EXPECT_TRUE(Sum.Warnings[1].contains(S("块 A 插入了它自己"))) << Sum.Warnings[1].toStdString();
  EXPECT_TRUE(Sum.Warnings[2].contains(S("块 NOWHERE 不存在"))) << Sum.Warnings[2].toStdString();

  // blocks that double at each of 30 levels, and an array of 32767 x 32767
  TDxfFile Big;
  Big.Layer("L1", 1);
  Big.Block("B0", 0, 0, Line(0, 0, 1, 0, "0"));
  for (int I = 1; I <= 30; ++I) {
    const QByteArray Inner = QStringLiteral("B%1").arg(I - 1).toUtf8();
    const QString Ins = G(0, "INSERT") + G(8, "0") + G(2, Inner.constData()) + G(10, 0.0) + G(20, 0.0);
    Big.Block(QStringLiteral("B%1").arg(I).toUtf8().constData(), 0, 0, Ins + Ins);
  }
  Big.Add(G(0, "INSERT") + G(8, "L1") + G(2, "B30") + G(10, 0.0) + G(20, 0.0));
  TDxfFile Array;
  Array.Layer("L1", 1);
  Array.Block("C", 0, 0, Line(0, 0, 1, 0, "0"));
  Array.Add(G(0, "INSERT") + G(8, "L1") + G(2, "C") + G(10, 0.0) + G(20, 0.0) + G(70, 32767) + G(71, 32767) +
            G(44, 1.0) + G(45, 1.0));
  for (const QByteArray& Bytes : {Big.Bytes(), Array.Bytes()}) {
    D.Clear();
    D.Add(std::make_unique<TVectorLine>(&D, 0, 0xFFFFFF, 0, psSolid, 0, 0, msNone, msNone, TKRNVector2d{0, 0},
                                        TKRNVector2d{1, 1}));
    try {
      ImportCADFile(Write(S("big.dxf"), Bytes), D);
      ADD_FAILURE() << "no error";
    } catch (const EDxfError& E) {
      EXPECT_TRUE(E.Message().contains(S("展开块和阵列后的图元超过 20000000 个"))) << E.Message().toStdString();
    }
    EXPECT_EQ(D.Count(), 1);
  }
}

TEST_F(CadImportTest, HugeCountsDoNotReserveMemory) {
  TDxfFile F;
  F.Layer("L1", 1);
  F.Add(G(0, "LWPOLYLINE") + G(8, "L1") + G(90, 2000000000) + G(70, 0) + G(10, 0.0) + G(20, 0.0) + G(10, 1.0) + G(20, 1.0));
  F.Add(G(0, "HATCH") + G(8, "L1") + G(91, 2000000000) + G(92, 2) + G(72, 0) + G(73, 1) + G(93, 2000000000) + G(10, 0.0) +
        G(20, 0.0) + G(10, 1.0) + G(20, 0.0));
  F.Add(G(0, "SPLINE") + G(8, "L1") + G(71, 3) + G(72, 2000000000) + G(73, 2) + G(10, 0.0) + G(20, 0.0) + G(10, 1.0) +
        G(20, 1.0));
  TRecorder R;
  const TDxfSummary Sum = ReadDxf(F.Bytes(), R);
  EXPECT_EQ(R.Items().size(), 2) << R.Items().join(u'\n').toStdString();  // the cut hatch is left out with a word
  EXPECT_TRUE(Sum.Warnings.join(u' ').contains(S("填充的边界数据不完整"))) << Sum.Warnings.join(u' ').toStdString();
}
