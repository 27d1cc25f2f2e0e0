// The draw-set model over a client dataset: reading every draw set of a large library
// (the chooser's case) and the write-through lookup of one bar among many.

#include "DrawSet.h"
#include "DrawSetConsts.h"
#include "DrawSetLibrary.h"
#include "PgTestServer.h"

#include <QTemporaryDir>

#include <map>

#include <benchmark/benchmark.h>

namespace {

TDataPacket SetsPacket(int N) {
  TDataPacket P;
  P.AddField(QStringLiteral("DrawSetID"), TFieldType::ftInteger);
  P.AddField(QStringLiteral("DrawSetTypeID"), TFieldType::ftInteger);
  P.AddField(QStringLiteral("DrawSetName"), TFieldType::ftString);
  P.AddField(QStringLiteral("OrderNum"), TFieldType::ftInteger);
  for (int I = N - 1; I >= 0; --I) P.AddRow({I, I % 7, QStringLiteral("节点 %1").arg(I), I});
  return P;
}

void BM_ReadAllDrawSets(benchmark::State& State) {
  const TDataPacket P = SetsPacket(int(State.range(0)));
  for (auto _ : State) {
    TClientDataSet DS;
    DS.SetData(P);
    TDrawSets Sets(&DS, nullptr, nullptr);
    benchmark::DoNotOptimize(Sets.Count());
  }
  State.SetComplexityN(State.range(0));
}
BENCHMARK(BM_ReadAllDrawSets)->Arg(500)->Arg(5000)->Arg(20000)->Unit(benchmark::kMillisecond)->Complexity();

// The same read from a library: the server's query, the packet and the model, on an
// SQLite file and on a PostgreSQL database of a server started for the run (a Unix
// socket on this machine). Each draw set carries a 2 KB drawing.
std::shared_ptr<TDrawSetLibrary> LibraryWith(bool AServer, int N) {
  static QTemporaryDir Dir;
  static std::map<std::pair<bool, int>, std::shared_ptr<TDrawSetLibrary>> Made;
  auto& Lib = Made[{AServer, N}];
  if (Lib)
    return Lib;
  const QString Location = AServer ? TPgTestServer::Shared().CreateDatabase()
                                   : Dir.filePath(QStringLiteral("lib%1.db").arg(N));
  if (Location.isEmpty())
    return nullptr;
  Lib = TDrawSetLibrary::Create(Location);
  TLibraryTransaction T(Lib->Db());
  const QByteArray Drawing(2048, 'x');
  for (int I = 0; I < N; ++I)
    Lib->Db().Exec(QStringLiteral("INSERT INTO DrawSets (DrawSetID, DrawSetTypeID, DrawSetName, OrderNum,"
                                  " VectorDrawing_Chs) VALUES (?, ?, ?, ?, ?)"),
                   {I, I % 7, QStringLiteral("节点 %1").arg(I), I, Drawing});
  T.Commit();
  return Lib;
}

void BM_ReadAllDrawSetsFromLibrary(benchmark::State& State) {
  const bool Server = State.range(0) != 0;
  const int N = int(State.range(1));
  State.SetLabel(Server ? "postgresql" : "sqlite");
  const std::shared_ptr<TDrawSetLibrary> Lib = LibraryWith(Server, N);
  if (!Lib) {
    State.SkipWithError(TPgTestServer::Shared().Why().toStdString().c_str());
    return;
  }
  for (auto _ : State) {
    TClientDataSet DS;
    DS.SetData(DataSvr::GetDrawSets(*Lib));
    TDrawSets Sets(&DS, nullptr, nullptr);
    benchmark::DoNotOptimize(Sets.Count());
  }
  State.SetItemsProcessed(State.iterations() * N);
}
BENCHMARK(BM_ReadAllDrawSetsFromLibrary)
    ->ArgsProduct({{0, 1}, {500, 5000, 20000}})
    ->ArgNames({"server", "sets"})
    ->Unit(benchmark::kMillisecond);

// Setting a field on bars in turn: each setter finds its row by key.
void BM_BarWriteThrough(benchmark::State& State) {
  SetRegionSettings(1);
  const int N = int(State.range(0));
  TDataPacket P;
  for (const char* F : {"DrawSetID", "BarID", "BarPicID", "BarInfoVDID", "OrderNum"})
    P.AddField(QString::fromLatin1(F), TFieldType::ftInteger);
  for (const char* F : {"BarNum", "BarVDID", "BarInfo_CHS", "CalcProgram_Chs", "BarRemark"})
    P.AddField(QString::fromLatin1(F), TFieldType::ftString);
  for (int I = 0; I < N; ++I) P.AddRow({1, I, 1, -1, I, QStringLiteral("b"), QStringLiteral("1"), {}, {}, {}});
  TClientDataSet BarDS;
  BarDS.SetData(P);
  TDrawSet DS(nullptr, 1, QStringLiteral("x"), 1, nullptr, &BarDS, nullptr);
  int I = 0;
  for (auto _ : State) {
    DS.Bars().GetItems(I)->SetBarPicID(I & 63);
    I = (I + 7) % N;
  }
  State.SetItemsProcessed(State.iterations());
}
BENCHMARK(BM_BarWriteThrough)->Arg(50)->Arg(2000);

}  // namespace

BENCHMARK_MAIN();
