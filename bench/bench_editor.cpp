// The editor's interactive costs. A rubber band's mouse move must not grow with the
// drawing: the same move is timed on 1,000 and 1,000,000 items. Undoing a move of
// 100,000 selected items is timed next to the move itself, its yardstick.
#include "GuiBenchMain.h"
#include "VDECmdExecutor.h"
#include "VDILine.h"
#include "VectorDrawingEditor.h"

#include <QGuiApplication>
#include <QTemporaryDir>

#include <benchmark/benchmark.h>

#include <map>
#include <memory>

namespace {

QTemporaryDir& SettingsDir() {
  static QTemporaryDir D;
  return D;
}

// Lines on a 1000-wide grid, viewed at zoom-all.
TVectorDrawingEditor& EditorWith(int ACount) {
  static std::map<int, std::unique_ptr<TVectorDrawingEditor>> Cache;
  auto& E = Cache[ACount];
  if (!E) {
    E = std::make_unique<TVectorDrawingEditor>(SettingsDir().filePath(QStringLiteral("bench.ini")));
    E->SetClientSize(1920, 1080);
    TVectorDrawing& D = E->GetVectorDrawing();
    D.BeginUpdate();
    for (int I = 0; I < ACount; ++I) {
      const double X = (I % 1000) * 10.0, Y = (I / 1000) * 10.0;
      D.Add(std::unique_ptr<TVectorDrawingItem>(
          new TVectorLine(&D, D.GenID(), 0xFFFFFF, 0, psSolid, 0, 0, msNone, msNone, {X, Y}, {X + 8, Y + 8})));
    }
    D.EndUpdate();
    // One view for every size: the origin at the centre, 10 units a pixel, items up and right.
    E->GetCoordTrans().SetCoordTransParam({960, 540}, {0, 0}, 0.1);
    E->Image();
  }
  return *E;
}

// An open selection box follows the mouse: erase and draw the band in exclusive-or.
void BM_RubberBandMove(benchmark::State& State) {
  TVectorDrawingEditor& E = EditorWith(int(State.range(0)));
  E.Execute(1, 0);
  // A click where there is no item leaves the box open.
  E.MouseMove(0, {100, 1000});
  E.MouseDown(mbLeft, sfLeft, {100, 1000});
  E.MouseUp(mbLeft, 0, {100, 1000});
  if (E.RootCmdState().Step() != 1) State.SkipWithError("the box did not open");
  int K = 0;
  for (auto _ : State) {
    ++K;
    E.MouseMove(0, {300 + (K & 63), 900 + (K & 31)});
  }
  E.KeyDown(27, 0);
}
BENCHMARK(BM_RubberBandMove)->Arg(1000)->Arg(1000000);

// A line command's rubber band: every move snaps (an R-tree query) and redraws the band.
void BM_LineRubberBandMove(benchmark::State& State) {
  TVectorDrawingEditor& E = EditorWith(int(State.range(0)));
  E.Execute(1, 0);
  E.SetSnapSwitch(false);
  E.Execute(17, 0);
  E.MouseMove(0, {100, 1000});
  E.MouseDown(mbLeft, sfLeft, {100, 1000});  // the first point, where no item is
  E.MouseUp(mbLeft, 0, {100, 1000});
  if (E.GetCurCmd() != 17 || E.DeepestCmdState().Step() != 1) State.SkipWithError("the line did not start");
  int K = 0;
  for (auto _ : State) {
    ++K;
    E.MouseMove(0, {300 + (K & 63), 900 + (K & 31)});
  }
  E.KeyDown(27, 0);
  E.KeyDown(27, 0);
}
BENCHMARK(BM_LineRubberBandMove)->Arg(1000)->Arg(1000000);

// One hatch click in the middle of N x N crossing lines, splitting included.
void BM_HatchClick(benchmark::State& State) {
  const int N = int(State.range(0));
  TVectorDrawingEditor E(SettingsDir().filePath(QStringLiteral("hatch.ini")));
  TVectorDrawing& D = E.GetVectorDrawing();
  const double Len = 10.0 * (N - 1);
  for (int I = 0; I < N; ++I) {
    const double C = 10.0 * I;
    D.Add(std::unique_ptr<TVectorDrawingItem>(
        new TVectorLine(&D, D.GenID(), 0xFFFFFF, 0, psSolid, 0, 0, msNone, msNone, {-5, C}, {Len + 5, C})));
    D.Add(std::unique_ptr<TVectorDrawingItem>(
        new TVectorLine(&D, D.GenID(), 0xFFFFFF, 0, psSolid, 0, 0, msNone, msNone, {C, -5}, {C, Len + 5})));
  }
  const TKRNVector2d Click{10.0 * (N / 2) + 5, 10.0 * (N / 2) + 5};
  std::unique_ptr<TKRNPolygon2d> Poly;
  for (auto _ : State) {
    if (!E.SearchHatchPoly(Click, Poly)) State.SkipWithError("no region found");
    benchmark::DoNotOptimize(Poly);
  }
  // Segments after splitting: each line is cut at N crossings.
  State.SetComplexityN(2 * N * (N + 1));
}
BENCHMARK(BM_HatchClick)->Arg(10)->Arg(30)->Arg(100)->Unit(benchmark::kMillisecond)->Complexity(benchmark::oNLogN);

TVectorDrawingEditor& SelectedEditor() {
  TVectorDrawingEditor& E = EditorWith(100000);
  TVectorDrawing& D = E.GetVectorDrawing();
  if (D.SelSet().Count() != D.Count()) E.Execute(52, 0);
  return E;
}

void BM_MoveSelected(benchmark::State& State) {
  TVectorDrawingEditor& E = SelectedEditor();
  int K = 0;
  for (auto _ : State) {
    auto X = std::make_shared<TVDEMoveCmdExecutor>(E);
    X->Move({0, 0}, {double(++K & 1 ? 1 : -1), 0});
    benchmark::DoNotOptimize(X);
  }
  State.SetItemsProcessed(State.iterations() * 100000);
}
BENCHMARK(BM_MoveSelected)->Unit(benchmark::kMillisecond);

void BM_UndoMoveSelected(benchmark::State& State) {
  TVectorDrawingEditor& E = SelectedEditor();
  auto X = std::make_shared<TVDEMoveCmdExecutor>(E);
  X->Move({0, 0}, {1, 0});
  for (auto _ : State) {
    X->Undo();
    State.PauseTiming();
    X->Redo();
    State.ResumeTiming();
  }
  State.SetItemsProcessed(State.iterations() * 100000);
}
BENCHMARK(BM_UndoMoveSelected)->Unit(benchmark::kMillisecond);

}  // namespace

DSE_GUI_BENCHMARK_MAIN()
