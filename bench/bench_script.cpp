// ExecByStep over a 200-line bar script with loops, as the debugger drives it.
#include "Dialogs.h"
#include "Interpreter.h"

#include <benchmark/benchmark.h>

namespace {

QString Script200() {
  QStringList L{QStringLiteral("int n,i,total"), QStringLiteral("single len,w"), QStringLiteral("string s")};
  int Block = 0;
  while (L.size() < 190) {
    const QString K = QString::number(Block++);
    L << QStringLiteral("len=lc*2+%1/3").arg(K) << QStringLiteral("if len>%1").arg(K) << QStringLiteral("w=len-%1").arg(K)
      << QStringLiteral("else") << QStringLiteral("w=len+%1").arg(K) << QStringLiteral("endif")
      << QStringLiteral("from 1 to 3") << QStringLiteral("total=total+%1").arg(K) << QStringLiteral("endfrom")
      << QStringLiteral("s=\"l\"&n") << QStringLiteral("/* comment line");
  }
  while (L.size() < 199) L << QStringLiteral("n=n+1");
  L << QStringLiteral("mainend");
  return L.join(u'\n');
}

void BM_ExecByStep200Lines(benchmark::State& State) {
  TDialogScope Quiet;
  const QString Text = Script200();
  qint64 Statements = 0;
  for (auto _ : State) {
    TInterpreter I;
    I.SetProgramme(Text);
    I.AddGlobalVar(QStringLiteral("lc"), QStringLiteral("1500"));
    I.SetStepLimit(1000000);
    int Line = 0;
    while (I.ExecByStep(Line) == 0) {
    }
    Statements += I.StepCount();
  }
  State.counters["statements/s"] = benchmark::Counter(double(Statements), benchmark::Counter::kIsRate);
}
BENCHMARK(BM_ExecByStep200Lines);

}  // namespace

BENCHMARK_MAIN();
