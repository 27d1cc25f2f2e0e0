// A cross-check against another reader: the same generated DXF files read by dxflib
// give the same entities with the same coordinates.

#include "DxfReader.h"
#include "DxfTestUtils.h"

#include <dl_creationadapter.h>
#include <dl_dxf.h>

#include <QFile>
#include <QTemporaryDir>

#include <gtest/gtest.h>

#include <random>

using namespace dxf_test;

namespace {

// What dxflib saw, in the recorder's words.
class TDxflibRecorder : public DL_CreationAdapter {
public:
  QStringList Items;
  QString Layer() { return QString::fromStdString(getAttributes().getLayer()); }
  void addLine(const DL_LineData& D) override {
    Items << QStringLiteral("line %1 %2-%3").arg(Layer(), Pt({D.x1, D.y1}), Pt({D.x2, D.y2}));
  }
  void addCircle(const DL_CircleData& D) override {
    Items << QStringLiteral("circle %1 c%2 r%3").arg(Layer(), Pt({D.cx, D.cy}), Num(D.radius));
  }
  void addArc(const DL_ArcData& D) override {
    const double A0 = D.angle1 * M_PI / 180, A1 = D.angle2 * M_PI / 180;
    Items << QStringLiteral("arc %1 c%2 %3-%4 r%5")
                 .arg(Layer(), Pt({D.cx, D.cy}), Pt({D.cx + D.radius * std::cos(A0), D.cy + D.radius * std::sin(A0)}),
                      Pt({D.cx + D.radius * std::cos(A1), D.cy + D.radius * std::sin(A1)}), Num(D.radius));
  }
  void addPoint(const DL_PointData& D) override { Items << QStringLiteral("point %1 %2").arg(Layer(), Pt({D.x, D.y})); }
  void addPolyline(const DL_PolylineData&) override { Items << QStringLiteral("poly %1").arg(Layer()); }
  void addVertex(const DL_VertexData& D) override { Items.back() += u' ' + Pt({D.x, D.y}); }
  void addText(const DL_TextData& D) override {
    Items << QStringLiteral("text %1 \"%2\" %3 h%4").arg(Layer(), QString::fromStdString(D.text), Pt({D.ipx, D.ipy}), Num(D.height));
  }
};

// Ours, in the same words: colour, pen, rotation and arc kinds left aside.
QString Comparable(const QString& ACall) {
  QStringList W = ACall.split(u' ');
  if (ACall.startsWith(QLatin1String("line ")) || ACall.startsWith(QLatin1String("circle "))) return W.mid(0, W.size() - 2).join(u' ');
  if (ACall.startsWith(QLatin1String("arc "))) return W.mid(0, 5).join(u' ');
  if (ACall.startsWith(QLatin1String("point "))) return W.mid(0, W.size() - 1).join(u' ');
  if (ACall.startsWith(QLatin1String("poly "))) return (W.mid(0, 2) + W.mid(4)).join(u' ');
  if (ACall.startsWith(QLatin1String("text "))) {
    const int H = ACall.indexOf(QLatin1String(" rot"));
    return ACall.left(H);
  }
  return ACall;
}

}  // namespace

TEST(DxflibCrossCheckTest, RandomDrawingsReadTheSame) {
  QTemporaryDir Dir;
  std::mt19937 Rng(20261123);
  std::uniform_real_distribution<double> Coord(-1e4, 1e4), Size(0.5, 500);
  std::uniform_int_distribution<int> Kind(0, 5), LayerNo(1, 4), Verts(2, 9);
  const auto R = [&] { return std::round(Coord(Rng) * 1000) / 1000; };
  for (int Round = 0; Round < 5; ++Round) {
    SCOPED_TRACE(Round);
    TDxfFile F;
    for (const char* L : {"A", "B", "C", "D"}) F.Layer(L, 7);
    for (int I = 0; I < 400; ++I) {
      const QByteArray Layer = QByteArray(1, char('A' + LayerNo(Rng) - 1));
      const QString Head = G(8, Layer.constData());
      switch (Kind(Rng)) {
        case 0: F.Add(G(0, "LINE") + Head + G(10, R()) + G(20, R()) + G(11, R()) + G(21, R())); break;
        case 1: F.Add(G(0, "CIRCLE") + Head + G(10, R()) + G(20, R()) + G(40, std::round(Size(Rng)))); break;
        case 2: {
          const double A0 = double(int(Size(Rng)) % 170), A1 = A0 + 10 + double(int(Size(Rng)) % 160);
          F.Add(G(0, "ARC") + Head + G(10, R()) + G(20, R()) + G(40, std::round(Size(Rng))) + G(50, A0) + G(51, A1));
          break;
        }
        case 3: {
          const int N = Verts(Rng);
          QString P = G(0, "LWPOLYLINE") + Head + G(90, N) + G(70, 0);
          for (int K = 0; K < N; ++K) P += G(10, R()) + G(20, R());
          F.Add(P);
          break;
        }
        case 4: F.Add(G(0, "POINT") + Head + G(10, R()) + G(20, R())); break;
        default: F.Add(G(0, "TEXT") + Head + G(10, R()) + G(20, R()) + G(40, 2.5) + G(1, QStringLiteral("T%1").arg(I))); break;
      }
    }
    const QString File = Dir.filePath(QStringLiteral("r%1.dxf").arg(Round));
    QFile Out(File);
    ASSERT_TRUE(Out.open(QIODevice::WriteOnly));
    Out.write(F.Bytes());
    Out.close();

    TDxflibRecorder Theirs;
    DL_Dxf Reader;
    ASSERT_TRUE(Reader.in(File.toStdString(), &Theirs));
    TRecorder Ours;
    ReadDxf(F.Bytes(), Ours);
    QStringList Mine;
    for (const QString& C : Ours.Items()) Mine << Comparable(C);
    ASSERT_EQ(Mine.size(), 400);
    EXPECT_EQ(Mine, Theirs.Items);
  }
}
