// Parse-and-evaluate throughput of the expression evaluator on the texts scripts
// produce: a condition with the values pasted in, and a long arithmetic line.
#include "Expr.h"

#include <benchmark/benchmark.h>

namespace {

void Run(benchmark::State& State, const QString& AText) {
  TExpr E;
  for (auto _ : State) {
    E.Execute(AText);
    benchmark::DoNotOptimize(E.ExprResult()->AsFloat());
  }
  State.SetItemsProcessed(State.iterations());
}

void BM_ParseEvalCondition(benchmark::State& State) { Run(State, QStringLiteral("(12>=0) and (12<12)")); }
BENCHMARK(BM_ParseEvalCondition);

void BM_ParseEval40Terms(benchmark::State& State) {
  QString Text;
  for (int I = 1; I <= 40; ++I) {
    if (I > 1) Text += (I % 4 == 0) ? QStringLiteral(" * ") : (I % 4 == 1) ? QStringLiteral(" - ") : QStringLiteral(" + ");
    Text += QString::number(I * 1.25);
  }
  Run(State, Text);
}
BENCHMARK(BM_ParseEval40Terms);

// Evaluation alone, the tree built once: how much of the cost is parsing.
void BM_EvalOnly40Terms(benchmark::State& State) {
  QString Text;
  for (int I = 1; I <= 40; ++I) Text += (I > 1 ? QStringLiteral(" + ") : QString()) + QString::number(I * 1.25);
  TExpr E;
  E.Execute(Text);
  const PExpression R = E.ExprResult();
  for (auto _ : State) benchmark::DoNotOptimize(R->AsFloat());
  State.SetItemsProcessed(State.iterations());
}
BENCHMARK(BM_EvalOnly40Terms);

}  // namespace

BENCHMARK_MAIN();
