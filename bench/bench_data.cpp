// The draw-set model over a client dataset: reading every draw set of a large library
// (the chooser's case) and the write-through lookup of one bar among many.

#include "DrawSet.h"
#include "DrawSetConsts.h"

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
