// Drawing 100,000 mixed items into a 1920x1080 image, at zoom-all and through a
// window of 1% of the width, and a hit test that ends at the last item.
#include "VDIHatch.h"
#include "VDILine.h"
#include "VDIPoint.h"
#include "VDIText.h"
#include "VectorDrawing.h"

#include <QGuiApplication>
#include <QImage>
#include <QPainter>

#include <benchmark/benchmark.h>

#include <random>

namespace {

TVectorDrawing& Drawing() {
  static TVectorDrawing* D = [] {
    auto* Dr = new TVectorDrawing();
    std::mt19937 Rng(3);
    std::uniform_real_distribution<double> U(0, 100000);
    Dr->BeginUpdate();
    for (int I = 0; I < 100000; ++I) {
      const TKRNVector2d P{U(Rng), U(Rng) * 0.5625};
      switch (I % 5) {
        case 0: Dr->Add(std::unique_ptr<TVectorDrawingItem>(new TVectorLine(Dr, 0, 0xFF, 0, psSolid, 0, 0, msNone, msNone, P, {P.X + 200, P.Y + 50}))); break;
        case 1: Dr->Add(std::unique_ptr<TVectorDrawingItem>(new TVectorArc(Dr, 0, 0xFF00, 0, psSolid, 0, 0, msNone, msNone, P, {P.X + 100, P.Y}, 80, atACS))); break;
        case 2: Dr->Add(std::unique_ptr<TVectorDrawingItem>(new TVectorCircle(Dr, 0, 0xFF0000, 0, psSolid, P, 40))); break;
        case 3:
          Dr->Add(std::unique_ptr<TVectorDrawingItem>(new TVectorText(Dr, 0, 0, QStringLiteral("L=1500"), P, 0, QStringLiteral("宋体"), 30, 0, haLeftJustify,
                                  vaBottomJustify, true, 0, QString())));
          break;
        default: Dr->Add(std::unique_ptr<TVectorDrawingItem>(new TVectorHatch(Dr, 0, 0x808080, 4, TKRNPolygon2d(TKRNBox2d{P, {P.X + 60, P.Y + 60}})))); break;
      }
    }
    Dr->EndUpdate();
    return Dr;
  }();
  return *D;
}

void DrawWith(benchmark::State& State, double AWindowFraction) {
  TVectorDrawing& D = Drawing();
  QImage Img(1920, 1080, QImage::Format_RGB32);
  TKRNCoordTrans T;
  T.ZoomAll(1920, 1080, D.ItemsRange());
  if (AWindowFraction < 1) {
    const int W = int(1920 * AWindowFraction), H = int(1080 * AWindowFraction);
    T.ZoomWin(1920, 1080, TKRNRect{960 - W / 2, 540 - H / 2, 960 + W / 2, 540 + H / 2});
  }
  for (auto _ : State) {
    QPainter P(&Img);
    D.Draw(P, T, TKRNRect{0, 0, 1920, 1080});
  }
  State.SetItemsProcessed(State.iterations() * D.Count());
}

void BM_DrawZoomAll(benchmark::State& State) { DrawWith(State, 1); }
BENCHMARK(BM_DrawZoomAll)->Unit(benchmark::kMillisecond);

void BM_DrawOnePercentWindow(benchmark::State& State) { DrawWith(State, 0.01); }
BENCHMARK(BM_DrawOnePercentWindow)->Unit(benchmark::kMillisecond);

// The point lies on the last item only: the walk from the end finds it at once.
void BM_HitTestLastItem(benchmark::State& State) {
  TVectorDrawing& D = Drawing();
  TVectorDrawingItem* Last = D.Items(D.Count() - 1);
  const TKRNVector2d P = Last->GetGrips(0);
  for (auto _ : State) benchmark::DoNotOptimize(D.HitTest(P, 1));
}
BENCHMARK(BM_HitTestLastItem);

// A point that hits nothing: every item's box is looked at.
void BM_HitTestMiss(benchmark::State& State) {
  TVectorDrawing& D = Drawing();
  for (auto _ : State) benchmark::DoNotOptimize(D.HitTest({-5000, -5000}, 1));
  State.SetItemsProcessed(State.iterations() * D.Count());
}
BENCHMARK(BM_HitTestMiss);

}  // namespace

int main(int argc, char** argv) {
  qputenv("QT_QPA_PLATFORM", "offscreen");
  QGuiApplication App(argc, argv);
  benchmark::Initialize(&argc, argv);
  benchmark::RunSpecifiedBenchmarks();
  return 0;
}
