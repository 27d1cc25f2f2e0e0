#include "DrawingTestUtils.h"

#include <QFontMetricsF>

namespace {
int CountRowsWith(const QImage& AImage, int AColumn, QRgb AColor) {
  int N = 0;
  for (int Y = 0; Y < AImage.height(); ++Y)
    if ((AImage.pixel(AColumn, Y) & 0xFFFFFF) == AColor) ++N;
  return N;
}
}  // namespace

TEST(TKRNDrawFunc2d, NegativeWidthIsPixelsAtAnyZoom) {
  for (const double Zoom : {0.05, 1.0, 7.0}) {
    SCOPED_TRACE(Zoom);
    TCanvas C;
    C.Trans.SetCoordTransParam({0, 50}, {0, 0}, Zoom);
    QPainter P(&C.Image);
    TKRNDrawFunc2d::DrawLine(P, C.Trans, {1 / Zoom, 0}, {90 / Zoom, 0}, -3, 0, psSolid, 0x000000, dmCopy);
    P.end();
    EXPECT_EQ(CountRowsWith(C.Image, 40, 0x000000), 3);
  }
  TCanvas W;
  W.Trans.SetCoordTransParam({0, 50}, {0, 0}, 2.0);
  QPainter P(&W.Image);
  TKRNDrawFunc2d::DrawLine(P, W.Trans, {1, 0}, {40, 0}, 4, 0, psSolid, 0x000000, dmCopy);  // 4 world = 8 px
  P.end();
  EXPECT_EQ(CountRowsWith(W.Image, 40, 0x000000), 8);
}

TEST(TKRNDrawFunc2d, XorTwiceRestoresEveryPixel) {
  TCanvas C(120, 120);
  {
    QPainter P(&C.Image);
    TKRNDrawFunc2d::FillRect(P, C.Trans, {{10, 10}, {60, 60}}, 0x3366CC, dmCopy);
  }
  const QImage Before = C.Image.copy();
  TKRNPolygon2d Poly;
  Poly.List().AddLinePoint({20, 20});
  Poly.List().AddArcPoint({100, 20}, atACS, 50);
  Poly.List().AddLinePoint({60, 100});
  for (int Pass = 0; Pass < 2; ++Pass) {
    QPainter P(&C.Image);
    TKRNDrawFunc2d::DrawLine(P, C.Trans, {5, 5}, {110, 90}, 0, 0, psDash, 0xFFFFFF, dmXOR);
    TKRNDrawFunc2d::DrawArc(P, C.Trans, {100, 50}, {20, 50}, 40, atACS, 0, 0, psDot, 0xFFFFFF, dmXOR);
    TKRNDrawFunc2d::DrawCircle(P, C.Trans, {60, 60}, 30, -1, psSolid, 0x00FF00, dmXOR);
    for (int Style = bsSolid; Style <= bsDiagCross; ++Style)
      TKRNDrawFunc2d::FillXPoly(P, C.Trans, Poly, 0xFFFFFF, dmXOR, Style);
    TKRNDrawFunc2d::DrawRectElastic(P, {3, 3}, {70, 90}, psDot);
  }
  EXPECT_EQ(C.Image, Before);
  QImage Once = Before.copy();
  {
    QPainter P(&Once);
    TKRNDrawFunc2d::DrawLine(P, C.Trans, {5, 5}, {110, 90}, 0, 0, psSolid, 0xFFFFFF, dmXOR);
  }
  EXPECT_NE(Once, Before);
}

TEST(TKRNDrawFunc2d, HatchBrushStylesCoverDifferently) {
  int Covered[8];
  for (int Style = bsSolid; Style <= bsDiagCross; ++Style) {
    TCanvas C(40, 40);
    QPainter P(&C.Image);
    TKRNDrawFunc2d::FillXPoly(P, C.Trans, TKRNPolygon2d(TKRNBox2d{{0, 0}, {40, 40}}), 0x000000, dmCopy, Style);
    P.end();
    Covered[Style] = 0;
    for (int Y = 5; Y < 35; ++Y)
      for (int X = 5; X < 35; ++X) Covered[Style] += C.At(X, Y) == 0;
  }
  EXPECT_EQ(Covered[bsSolid], 900);
  EXPECT_EQ(Covered[bsClear], 0);
  for (int Style = bsHorizontal; Style <= bsDiagCross; ++Style) {
    EXPECT_GT(Covered[Style], 0) << Style;
    EXPECT_LT(Covered[Style], 900) << Style;
  }
  EXPECT_GT(Covered[bsCross], Covered[bsHorizontal]);
}

TEST(TVectorDrawing, DrawOrderLevelsAndSelection) {
  TVectorDrawing D;
  D.SetBackColor(0xFFFFFF);
  auto* L = new TVectorLine(&D, 0, 0x00FF00, -5, psSolid, 0, 0, msNone, msNone, {0, 50}, {100, 50});
  D.Add(std::unique_ptr<TVectorDrawingItem>(L));                                                      // level 1, added first
  TVectorHatch* H = AddHatch(D, {{20, 20}, {80, 80}});           // level 0, added later
  TCanvas C;
  {
    QPainter P(&C.Image);
    D.Draw(P, C.Trans, {0, 0, 100, 100});
  }
  EXPECT_EQ(C.At(50, 50), qRgb(0, 255, 0) & 0xFFFFFF);  // the line lies over the hatch
  EXPECT_EQ(C.At(50, 30), qRgb(255, 0, 0) & 0xFFFFFF);  // hatch 0x0000FF is red
  EXPECT_EQ(C.At(5, 5), 0xFFFFFFu);
  // a selected item paints 0xFF0000 (blue) on top, whatever its show colour
  H->SetShowColorType(sctWhite);
  D.SelSet().Add(H);
  {
    QPainter P(&C.Image);
    D.Draw(P, C.Trans, {0, 0, 100, 100});
  }
  EXPECT_EQ(C.At(50, 50), qRgb(0, 0, 255) & 0xFFFFFF);
  // invisible items are skipped
  H->SetVisible(false);
  L->SetVisible(false);
  TCanvas Empty;
  {
    QPainter P(&Empty.Image);
    D.Draw(P, Empty.Trans, {0, 0, 100, 100});
  }
  EXPECT_EQ(Empty.At(50, 50), 0xFFFFFFu);
}

TEST(TVectorDrawing, DrawToFitAndTextTag) {
  TVectorDrawing D;
  D.SetBackColor(0xFFFFFF);
  auto* T = new TVectorText(&D, 0, 0x000000, QStringLiteral("ABC"), {0, 0}, 0, QStringLiteral("宋体"), 10, 0,
                            haLeftJustify, vaBottomJustify, true, 0xFFFFFF, QString());
  D.Add(std::unique_ptr<TVectorDrawingItem>(T));
  T->SetTag(1);  // highlighted: a red box even though transparent
  QImage Img(200, 100, QImage::Format_RGB32);
  Img.fill(Qt::black);
  {
    QPainter P(&Img);
    D.Draw(P, TKRNRect{0, 0, 200, 100}, 10, 10);
  }
  int Red = 0;
  for (int Y = 0; Y < 100; ++Y)
    for (int X = 0; X < 200; ++X) Red += (Img.pixel(X, Y) & 0xFFFFFF) == 0xFF0000;
  EXPECT_GT(Red, 1000);
  EXPECT_EQ(Img.pixel(2, 2) & 0xFFFFFF, 0x000000u);  // the margin is untouched
}

TEST(TKRNDrawFunc2d, TrimEdgeMovesEnds) {
  TKRNLine2d L({0, 0}, {10, 0});
  TKRNDrawFunc2d::TrimEdge(L, 1, 2);
  EXPECT_NEAR(L.StartPt().X, 1, 1e-12);
  EXPECT_NEAR(L.EndPt().X, 8, 1e-12);
  TKRNArc2d A({1, 0}, {-1, 0}, 1, atACS);
  TKRNDrawFunc2d::TrimEdge(A, KRNPi / 4, KRNPi / 4);
  EXPECT_NEAR(A.StartPt().X, std::sqrt(0.5), 1e-9);
  EXPECT_NEAR(A.EndPt().X, -std::sqrt(0.5), 1e-9);
  EXPECT_NEAR(A.CenterPt().Y, 0, 1e-9);
  TKRNLine2d S({0, 0}, {2, 0});
  TKRNDrawFunc2d::TrimEdge(S, 1.5, 1.5);  // trims meet: both ends at the middle
  EXPECT_NEAR(S.StartPt().X, 1, 1e-12);
  EXPECT_NEAR(S.EndPt().X, 1, 1e-12);
}

TEST(TKRNDrawFunc2d, FontMeasurementsStayBounded) {
  // Font names come from files; thousands of them must not grow the cache without end.
  const double W = TKRNDrawFunc2d::GetSingleTextWidth(QStringLiteral("L1"), QStringLiteral("宋体"), 0, 100);
  for (int I = 0; I < 2000; ++I)
    TKRNDrawFunc2d::GetSingleTextWidth(QStringLiteral("x"), QStringLiteral("字体%1").arg(I), 0, 10);
  EXPECT_LE(TKRNDrawFunc2d::CachedFontMetrics(), 64);
  EXPECT_DOUBLE_EQ(TKRNDrawFunc2d::GetSingleTextWidth(QStringLiteral("L1"), QStringLiteral("宋体"), 0, 100), W);
  // Widths of texts are kept too, also within a bound, and give what shaping gives.
  const double Long = TKRNDrawFunc2d::GetSingleTextWidth(QStringLiteral("L=12345"), QStringLiteral("宋体"), 0, 100);
  for (int I = 0; I < 20000; ++I)
    TKRNDrawFunc2d::GetSingleTextWidth(QStringLiteral("L=%1").arg(I), QStringLiteral("宋体"), I % 2, 10);
  EXPECT_LE(TKRNDrawFunc2d::CachedTextWidths(), 16384);
  EXPECT_GT(TKRNDrawFunc2d::CachedTextWidths(), 0);
  EXPECT_DOUBLE_EQ(TKRNDrawFunc2d::GetSingleTextWidth(QStringLiteral("L=12345"), QStringLiteral("宋体"), 0, 100), Long);
  EXPECT_DOUBLE_EQ(TKRNDrawFunc2d::GetSingleTextWidth(QStringLiteral("L=12345"), QStringLiteral("宋体"), 0, 50), Long / 2);
  EXPECT_GT(TKRNDrawFunc2d::GetSingleTextWidth(QStringLiteral("L=12345"), QStringLiteral("宋体"), fsBold, 100), 0);
}

TEST(TKRNDrawFunc2d, EachTextGetsBackItsOwnWidth) {
  // Texts of one length but other characters, and of growing length, asked twice (the
  // second time with strings made afresh): each must get the width shaping gives it.
  const QString Font = QStringLiteral("宋体");
  const QFontMetricsF Metrics(TKRNDrawFunc2d::MakeFont(Font, 0, 256));
  auto Text = [](int K, QChar C) { return QString(K, C) + QStringLiteral("|%1").arg(K % 10); };
  for (int Pass = 0; Pass < 2; ++Pass)
    for (int K = 1; K <= 200; ++K)
      for (const QChar C : {u'1', u'l', u'W'}) {
        SCOPED_TRACE(QString(Text(K, C)).toStdString());
        const double Shaped = Metrics.horizontalAdvance(Text(K, C));
        EXPECT_NEAR(TKRNDrawFunc2d::GetSingleTextWidth(Text(K, C), Font, 0, 256), Shaped, Shaped * 1e-9);
      }
}
