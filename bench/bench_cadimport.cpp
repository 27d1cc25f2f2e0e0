// The DXF import against dxflib (a yardstick only): reading a generated 100,000-entity
// file into drawing items next to dxflib's parse alone of the same file, and a
// 1,000,000-entity import with its time, memory and progress.

#include "GuiBenchMain.h"
#include "CADImport.h"
#include "VectorDrawing.h"

#include <dl_creationadapter.h>
#include <dl_dxf.h>

#include <QFile>
#include <QGuiApplication>
#include <QTemporaryDir>

#include <benchmark/benchmark.h>

#include <fstream>
#include <random>

namespace {

// Lines, arcs, circles, polylines and texts on a few layers, as a plan would have them.
QString MakeDxf(int N) {
  static QTemporaryDir Dir;
  const QString File = Dir.filePath(QStringLiteral("plan-%1.dxf").arg(N));
  if (QFile::exists(File)) return File;
  std::ofstream Out(File.toStdString(), std::ios::binary);
  std::mt19937 Rng(7);
  std::uniform_real_distribution<double> C(0, 100000);
  Out << "  0\nSECTION\n  2\nHEADER\n  9\n$ACADVER\n  1\nAC1021\n  9\n$INSUNITS\n 70\n4\n  0\nENDSEC\n"
      << "  0\nSECTION\n  2\nTABLES\n  0\nTABLE\n  2\nLAYER\n 70\n4\n";
  for (const char* L : {"WALL", "AXIS", "DIM", "TEXT"}) Out << "  0\nLAYER\n  2\n" << L << "\n 70\n0\n 62\n3\n  6\nCONTINUOUS\n";
  Out << "  0\nENDTAB\n  0\nENDSEC\n  0\nSECTION\n  2\nENTITIES\n";
  Out.precision(10);
  static const char* Layers[] = {"WALL", "AXIS", "DIM", "TEXT"};
  for (int I = 0; I < N; ++I) {
    const char* L = Layers[I % 4];
    const double X = C(Rng), Y = C(Rng);
    switch (I % 10) {
      case 0: case 1: case 2: case 3: case 4:
        Out << "  0\nLINE\n  5\n" << std::hex << I + 100 << std::dec << "\n  8\n" << L << "\n 10\n" << X << "\n 20\n" << Y
            << "\n 30\n0.0\n 11\n" << X + 500 << "\n 21\n" << Y + 250 << "\n 31\n0.0\n";
        break;
      case 5:
        Out << "  0\nARC\n  8\n" << L << "\n 10\n" << X << "\n 20\n" << Y << "\n 30\n0.0\n 40\n150\n 50\n30\n 51\n200\n";
        break;
      case 6:
        Out << "  0\nCIRCLE\n  8\n" << L << "\n 10\n" << X << "\n 20\n" << Y << "\n 30\n0.0\n 40\n75\n";
        break;
      case 7: case 8:
        Out << "  0\nLWPOLYLINE\n  8\n" << L << "\n 90\n4\n 70\n1\n 10\n" << X << "\n 20\n" << Y << "\n 10\n" << X + 300
            << "\n 20\n" << Y << "\n 42\n0.4\n 10\n" << X + 300 << "\n 20\n" << Y + 200 << "\n 10\n" << X << "\n 20\n" << Y + 200 << "\n";
        break;
      default:
        Out << "  0\nTEXT\n  8\n" << L << "\n 10\n" << X << "\n 20\n" << Y << "\n 30\n0.0\n 40\n250\n  1\nKL" << I << "\n";
    }
  }
  Out << "  0\nENDSEC\n  0\nEOF\n";
  return File;
}

class TNothing : public DL_CreationAdapter {};

void BM_DxflibParse(benchmark::State& State) {
  const std::string File = MakeDxf(int(State.range(0))).toStdString();
  for (auto _ : State) {
    TNothing Nothing;
    DL_Dxf Reader;
    benchmark::DoNotOptimize(Reader.in(File, &Nothing));
  }
  State.SetItemsProcessed(State.iterations() * State.range(0));
  State.SetLabel("yardstick: dxflib's parse alone");
}
BENCHMARK(BM_DxflibParse)->Arg(100000)->Unit(benchmark::kMillisecond);

void BM_ImportIntoDrawing(benchmark::State& State) {
  const QString File = MakeDxf(int(State.range(0)));
  for (auto _ : State) {
    TVectorDrawing D;
    ImportCADFile(File, D);
    benchmark::DoNotOptimize(D.Count());
  }
  State.SetItemsProcessed(State.iterations() * State.range(0));
  State.SetLabel("ours: read, walk and build the drawing items");
}
BENCHMARK(BM_ImportIntoDrawing)->Arg(100000)->Unit(benchmark::kMillisecond);

qint64 StatusKb(const char* AKey) {
  QFile F(QStringLiteral("/proc/self/status"));
  if (!F.open(QIODevice::ReadOnly)) return -1;
  for (const QByteArray& L : F.readAll().split('\n'))
    if (L.startsWith(AKey)) return L.mid(int(strlen(AKey))).trimmed().split(' ').value(0).toLongLong();
  return -1;
}

// One import of a million entities: seconds, resident memory with the drawing held,
// and how often the progress moved.
void BM_ImportMillion(benchmark::State& State) {
  const QString File = MakeDxf(1000000);
  for (auto _ : State) {
    const qint64 Before = StatusKb("VmRSS:");
    TVectorDrawing D;
    int Moves = 0;
    TDxfOptions O;
    O.Progress = [&](double) { ++Moves; };
    ImportCADFile(File, D, 0, O);
    State.counters["items"] = double(D.Count());
    State.counters["rss_MB"] = double(StatusKb("VmRSS:")) / 1024.0;
    State.counters["rss_growth_MB"] = double(StatusKb("VmRSS:") - Before) / 1024.0;
    State.counters["peak_MB"] = double(StatusKb("VmHWM:")) / 1024.0;
    State.counters["progress_moves"] = Moves;
    State.counters["file_MB"] = double(QFile(File).size()) / 1048576.0;
  }
}
BENCHMARK(BM_ImportMillion)->Iterations(1)->Unit(benchmark::kSecond);

}  // namespace

DSE_GUI_BENCHMARK_MAIN()
