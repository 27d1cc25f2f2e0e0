// Geometry throughput: point-in-polygon on a large polygon (with a plain crossing
// count over raw points as the yardstick) and the arc helpers.
#include "KRNGeo2DTypes.h"
#include "KRNPositionFunc2d.h"

#include "KRNSearchPoly2d.h"

#include <benchmark/benchmark.h>

#include <cmath>
#include <random>

namespace {

// A star-shaped polygon of N vertices with a wavy radius, so that many edges
// cross any horizontal ray.
std::vector<TKRNVector2d> StarPoints(int N) {
  std::vector<TKRNVector2d> P;
  P.reserve(size_t(N));
  for (int I = 0; I < N; ++I) {
    const double A = KRNTwoPi * I / N;
    const double R = 100 + 20 * std::sin(37 * A);
    P.push_back({R * std::cos(A), R * std::sin(A)});
  }
  return P;
}

std::vector<TKRNVector2d> QueryPoints() {
  std::mt19937 Rng(7);
  std::uniform_real_distribution<double> U(-130, 130);
  std::vector<TKRNVector2d> Q(256);
  for (auto& P : Q) P = {U(Rng), U(Rng)};
  return Q;
}

void BM_PointPositionPolygon(benchmark::State& State) {
  const int N = int(State.range(0));
  TKRNPolygon2d Poly;
  for (const TKRNVector2d& P : StarPoints(N)) Poly.List().AddLinePoint(P);
  const auto Q = QueryPoints();
  size_t I = 0;
  for (auto _ : State) {
    benchmark::DoNotOptimize(TKRNPositionFunc2d::PointPosition(Q[I++ & 255], Poly, KRNEpsilon));
  }
  State.SetItemsProcessed(State.iterations());
  State.counters["edges/s"] = benchmark::Counter(double(State.iterations()) * N, benchmark::Counter::kIsRate);
}
BENCHMARK(BM_PointPositionPolygon)->Arg(100)->Arg(10000);

// The least any point-in-polygon test must do: one crossing test per edge on raw doubles.
void BM_PointPositionRawBaseline(benchmark::State& State) {
  const int N = int(State.range(0));
  const auto P = StarPoints(N);
  const auto Q = QueryPoints();
  size_t K = 0;
  for (auto _ : State) {
    const TKRNVector2d T = Q[K++ & 255];
    bool Odd = false;
    for (int I = 0, J = N - 1; I < N; J = I++) {
      if ((P[size_t(I)].Y > T.Y) != (P[size_t(J)].Y > T.Y) &&
          T.X < (P[size_t(J)].X - P[size_t(I)].X) * (T.Y - P[size_t(I)].Y) / (P[size_t(J)].Y - P[size_t(I)].Y) +
                    P[size_t(I)].X)
        Odd = !Odd;
    }
    benchmark::DoNotOptimize(Odd);
  }
  State.SetItemsProcessed(State.iterations());
}
BENCHMARK(BM_PointPositionRawBaseline)->Arg(100)->Arg(10000);

struct TArcCase {
  TKRNVector2d S, E;
  double R;
  TKRNArcType T;
};

std::vector<TArcCase> ArcCases() {
  std::mt19937 Rng(11);
  std::uniform_real_distribution<double> A(0, KRNTwoPi), R(1, 1000);
  std::vector<TArcCase> V(1024);
  const TKRNArcType Types[] = {atACS, atCS, atACL, atCL};
  for (size_t I = 0; I < V.size(); ++I) {
    const double Rad = R(Rng);
    const double A1 = A(Rng), A2 = A(Rng);
    V[I] = {{Rad * std::cos(A1), Rad * std::sin(A1)}, {Rad * std::cos(A2), Rad * std::sin(A2)}, Rad, Types[I % 4]};
  }
  return V;
}

void BM_ArcBox(benchmark::State& State) {
  const auto V = ArcCases();
  size_t I = 0;
  for (auto _ : State) {
    const TArcCase& C = V[I++ & 1023];
    benchmark::DoNotOptimize(TKRNArc2d::ArcBox(C.S, C.E, C.R, C.T));
  }
  State.SetItemsProcessed(State.iterations());
}
BENCHMARK(BM_ArcBox);

void BM_ArcCenterPt(benchmark::State& State) {
  const auto V = ArcCases();
  size_t I = 0;
  for (auto _ : State) {
    const TArcCase& C = V[I++ & 1023];
    benchmark::DoNotOptimize(TKRNArc2d::ArcCenterPt(C.S, C.E, C.R, C.T));
  }
  State.SetItemsProcessed(State.iterations());
}
BENCHMARK(BM_ArcCenterPt);

// A grid of N x N lines broken at their crossings (each line runs half a cell past
// the outer ones, so every line has two dead ends to prune): about 2N(N+1)
// segments. One hatch-region search as the hatch command runs it: the segments
// handed over, connections built, dead ends pruned, the ray cast and the walk.
std::vector<TKRNPtr<TKRNCustomLine2d>> GridSegments(int N) {
  std::vector<TKRNPtr<TKRNCustomLine2d>> V;
  for (int K = 0; K < N; ++K)
    for (int I = -1; I < N; ++I) {
      const double A = I < 0 ? -0.5 : I, B = I + 1 >= N ? N - 0.5 : I + 1;
      V.push_back(KRNMakeSegment({A, double(K)}, {B, double(K)}, 0, atLine));
      V.push_back(KRNMakeSegment({double(K), A}, {double(K), B}, 0, atLine));
    }
  return V;
}

void BM_HatchSearch(benchmark::State& State) {
  const int N = int(State.range(0));
  const auto Segs = GridSegments(N);
  const TKRNVector2d At{N / 2 - 0.5, N / 2 - 0.5};
  for (auto _ : State) {
    TKRNSearchPoly2d Search;
    std::intptr_t Tag = 0;
    for (const auto& S : Segs) Search.Add(S.get(), Tag++, false);
    std::unique_ptr<TKRNPolygon2d> Poly;
    std::vector<std::intptr_t> Tags;
    if (!Search.FindSmallPoly(At, Poly, Tags, false, true)) State.SkipWithError("no region found");
    benchmark::DoNotOptimize(Poly);
  }
  State.SetComplexityN(int64_t(Segs.size()));
  State.counters["segments"] = double(Segs.size());
}
BENCHMARK(BM_HatchSearch)->Arg(10)->Arg(20)->Arg(40)->Arg(70)->Arg(100)->Unit(benchmark::kMicrosecond)->Complexity();

// The search alone once the connections are built: the ray and the walk.
void BM_HatchSearchPrepared(benchmark::State& State) {
  const int N = int(State.range(0));
  const auto Segs = GridSegments(N);
  TKRNSearchPoly2d Search;
  std::intptr_t Tag = 0;
  for (const auto& S : Segs) Search.Add(S.get(), Tag++, false);
  const TKRNVector2d At{N / 2 - 0.5, N / 2 - 0.5};
  for (auto _ : State) {
    std::unique_ptr<TKRNPolygon2d> Poly;
    std::vector<std::intptr_t> Tags;
    Search.FindSmallPoly(At, Poly, Tags, false, true);
    benchmark::DoNotOptimize(Poly);
  }
  State.SetComplexityN(int64_t(Segs.size()));
}
BENCHMARK(BM_HatchSearchPrepared)->Arg(10)->Arg(100)->Unit(benchmark::kMicrosecond);

}  // namespace

BENCHMARK_MAIN();
