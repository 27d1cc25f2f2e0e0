#pragma once
// The main of a benchmark program that draws or measures text: an offscreen
// QGuiApplication around Google Benchmark's run.

#include <QGuiApplication>

#include <benchmark/benchmark.h>

#define DSE_GUI_BENCHMARK_MAIN()                  \
  int main(int argc, char** argv) {               \
    qputenv("QT_QPA_PLATFORM", "offscreen");      \
    QGuiApplication App(argc, argv);              \
    benchmark::Initialize(&argc, argv);           \
    benchmark::RunSpecifiedBenchmarks();          \
    benchmark::Shutdown();                        \
    return 0;                                     \
  }
