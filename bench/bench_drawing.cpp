// A drawing of 100,000 and 1,000,000 mixed items: repaint at zoom-all next to a yardstick
// that paints the same primitives straight with QPainter, repaint of a window showing
// 1% of the drawing, hit tests and snap queries through the spatial index next to the
// plain walk, and the resident memory the items take.
#include "GuiBenchMain.h"
#include "Classes.h"
#include "VDIHatch.h"
#include "VDILine.h"
#include "VDIPoint.h"
#include "VDIText.h"
#include "VectorDrawing.h"

#include <QFile>
#include <QGuiApplication>
#include <QImage>
#include <QPainter>

#include <benchmark/benchmark.h>

#include <map>
#include <random>

namespace {

constexpr double kWidth = 100000, kHeight = 56250;

qint64 RssKb() {
  QFile F(QStringLiteral("/proc/self/status"));
  if (!F.open(QIODevice::ReadOnly)) return -1;
  for (const QByteArray& L : F.readAll().split('\n'))
    if (L.startsWith("VmRSS:")) return L.mid(6).trimmed().split(' ').value(0).toLongLong();
  return -1;
}

struct TMade {
  std::unique_ptr<TVectorDrawing> D;
  double RssMB = 0;
};

TMade& Drawing(int N) {
  static std::map<int, TMade> Made;
  TMade& M = Made[N];
  if (M.D) return M;
  const qint64 Before = RssKb();
  M.D = std::make_unique<TVectorDrawing>();
  TVectorDrawing* Dr = M.D.get();
  std::mt19937 Rng(3);
  std::uniform_real_distribution<double> U(0, 1);
  // the same density of items per area at every size
  const double Scale = std::sqrt(N / 100000.0);
  Dr->BeginUpdate();
  for (int I = 0; I < N; ++I) {
    const TKRNVector2d P{U(Rng) * kWidth * Scale, U(Rng) * kHeight * Scale};
    switch (I % 5) {
      case 0: Dr->Add(std::make_unique<TVectorLine>(Dr, 0, 0xFF, 0, psSolid, 0, 0, msNone, msNone, P, TKRNVector2d{P.X + 200, P.Y + 50})); break;
      case 1: Dr->Add(std::make_unique<TVectorArc>(Dr, 0, 0xFF00, 0, psSolid, 0, 0, msNone, msNone, P, TKRNVector2d{P.X + 100, P.Y}, 80, atACS)); break;
      case 2: Dr->Add(std::make_unique<TVectorCircle>(Dr, 0, 0xFF0000, 0, psSolid, P, 40)); break;
      case 3:
        Dr->Add(std::make_unique<TVectorText>(Dr, 0, 0, QStringLiteral("L=1500"), P, 0, QStringLiteral("宋体"), 30, 0,
                                              haLeftJustify, vaBottomJustify, true, 0, QString()));
        break;
      default: Dr->Add(std::make_unique<TVectorHatch>(Dr, 0, 0x808080, 4, TKRNPolygon2d(TKRNBox2d{P, {P.X + 60, P.Y + 60}}))); break;
    }
  }
  Dr->EndUpdate();
  M.RssMB = double(RssKb() - Before) / 1024.0;
  return M;
}

TKRNCoordTrans ViewOf(TVectorDrawing& D, double AWindowFraction) {
  TKRNCoordTrans T;
  T.ZoomAll(1920, 1080, D.ItemsRange());
  if (AWindowFraction < 1) {
    // a window a tenth of the width and height: 1% of the drawing's area
    const int W = int(1920 * AWindowFraction), H = int(1080 * AWindowFraction);
    T.ZoomWin(1920, 1080, TKRNRect{960 - W / 2, 540 - H / 2, 960 + W / 2, 540 + H / 2});
  }
  return T;
}

void BM_DrawZoomAll(benchmark::State& State) {
  TVectorDrawing& D = *Drawing(int(State.range(0))).D;
  QImage Img(1920, 1080, QImage::Format_RGB32);
  const TKRNCoordTrans T = ViewOf(D, 1);
  for (auto _ : State) {
    QPainter P(&Img);
    D.Draw(P, T, TKRNRect{0, 0, 1920, 1080});
  }
  State.SetItemsProcessed(State.iterations() * D.Count());
  State.SetLabel("ours");
}
BENCHMARK(BM_DrawZoomAll)->Arg(100000)->Arg(1000000)->Unit(benchmark::kMillisecond);

// The yardstick: the same lines, arcs, circles, texts and filled squares painted
// straight with QPainter from plain records, transformed on the way.
void BM_RawQPainterZoomAll(benchmark::State& State) {
  TVectorDrawing& D = *Drawing(int(State.range(0))).D;
  struct TRec {
    int Kind;
    double X, Y;
  };
  std::vector<TRec> Recs;
  Recs.reserve(size_t(D.Count()));
  for (int I = 0; I < D.Count(); ++I) {
    const TKRNBox2d& B = D.Items(I)->OutRect();
    Recs.push_back({I % 5, B.MinX(), B.MinY()});
  }
  QImage Img(1920, 1080, QImage::Format_RGB32);
  const TKRNCoordTrans T = ViewOf(D, 1);
  const double K = T.ZoomFactor();
  QFont Font(QStringLiteral("宋体"));
  Font.setPixelSize(std::max(1, int(30 * K)));
  const QString Text = QStringLiteral("L=1500");
  for (auto _ : State) {
    QPainter P(&Img);
    P.fillRect(Img.rect(), Qt::black);
    for (const TRec& R : Recs) {
      const TKRNPoint2i D0 = T.WCTODC(TKRNVector2d{R.X, R.Y});
      const QPointF A(D0.X, D0.Y);
      switch (R.Kind) {
        case 0: P.setPen(QColor(255, 0, 0)); P.drawLine(A, A + QPointF(200 * K, -50 * K)); break;
        case 1: P.setPen(QColor(0, 255, 0)); P.drawArc(QRectF(A, QSizeF(100 * K, 60 * K)), 0, 180 * 16); break;
        case 2: P.setPen(QColor(0, 0, 255)); P.setBrush(Qt::NoBrush); P.drawEllipse(QRectF(A, QSizeF(80 * K, 80 * K))); break;
        case 3: P.setPen(QColor(0, 0, 0)); P.setFont(Font); P.drawText(A, Text); break;
        default: P.setPen(QColor(128, 128, 128)); P.setBrush(QBrush(QColor(128, 128, 128), Qt::FDiagPattern));
                 P.drawRect(QRectF(A, QSizeF(60 * K, 60 * K))); break;
      }
    }
  }
  State.SetItemsProcessed(State.iterations() * D.Count());
  State.SetLabel("yardstick: raw QPainter");
}
BENCHMARK(BM_RawQPainterZoomAll)->Arg(100000)->Arg(1000000)->Unit(benchmark::kMillisecond);

void BM_DrawOnePercentWindow(benchmark::State& State) {
  TVectorDrawing& D = *Drawing(int(State.range(0))).D;
  QImage Img(1920, 1080, QImage::Format_RGB32);
  const TKRNCoordTrans T = ViewOf(D, 0.1);
  for (auto _ : State) {
    QPainter P(&Img);
    D.Draw(P, T, TKRNRect{0, 0, 1920, 1080});
  }
}
BENCHMARK(BM_DrawOnePercentWindow)->Arg(100000)->Arg(1000000)->Unit(benchmark::kMillisecond);

// Hit tests at random places (most hit nothing) and snap queries of a small box, with
// the index (1) and by the plain walk (0).
void BM_HitTest(benchmark::State& State) {
  TVectorDrawing& D = *Drawing(int(State.range(0))).D;
  D.SetUseSpatialIndex(State.range(1) != 0);
  std::mt19937 Rng(11);
  const TKRNBox2d R = D.ItemsRange();
  std::uniform_real_distribution<double> X(R.MinX(), R.MaxX()), Y(R.MinY(), R.MaxY());
  for (auto _ : State) benchmark::DoNotOptimize(D.HitTest({X(Rng), Y(Rng)}, 5));
  D.SetUseSpatialIndex(true);
  State.SetLabel(State.range(1) ? "index" : "walk");
}
BENCHMARK(BM_HitTest)->ArgsProduct({{100000, 1000000}, {1, 0}})->Unit(benchmark::kMicrosecond);

void BM_SnapQuery(benchmark::State& State) {
  TVectorDrawing& D = *Drawing(int(State.range(0))).D;
  D.SetUseSpatialIndex(State.range(1) != 0);
  std::mt19937 Rng(12);
  const TKRNBox2d R = D.ItemsRange();
  std::uniform_real_distribution<double> X(R.MinX(), R.MaxX()), Y(R.MinY(), R.MaxY());
  for (auto _ : State) {
    const double PX = X(Rng), PY = Y(Rng);
    benchmark::DoNotOptimize(D.ItemsInBox(TKRNBox2d{{PX - 20, PY - 20}, {PX + 20, PY + 20}}));
  }
  D.SetUseSpatialIndex(true);
  State.SetLabel(State.range(1) ? "index" : "walk");
}
BENCHMARK(BM_SnapQuery)->ArgsProduct({{100000, 1000000}, {1, 0}})->Unit(benchmark::kMicrosecond);

// Resident memory of the mixed items loaded from a file (binary form), with the spatial
// index built by a first query.
void BM_LoadedMemory(benchmark::State& State) {
  TVectorDrawing& Made = *Drawing(int(State.range(0))).D;
  TBytesStream Stream;
  Made.SaveToStream(Stream, sfBin);
  for (auto _ : State) {
    Stream.SetPosition(0);
    const qint64 Before = RssKb();
    TVectorDrawing D;
    D.LoadFromStream(Stream);
    benchmark::DoNotOptimize(D.HitTest({0, 0}, 1));
    const double MB = double(RssKb() - Before) / 1024.0;
    State.counters["rss_MB"] = MB;
    State.counters["bytes_per_item"] = MB * 1048576.0 / double(D.Count());
  }
}
BENCHMARK(BM_LoadedMemory)->Arg(1000000)->Iterations(1)->Unit(benchmark::kMillisecond);

}  // namespace

DSE_GUI_BENCHMARK_MAIN()
