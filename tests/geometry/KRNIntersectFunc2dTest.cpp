#include "KRNIntersectFunc2d.h"
#include "KRNPolygon2d.h"

#include <gtest/gtest.h>

#include <cmath>
#include <random>

namespace {

using IF = TKRNIntersectFunc2d;
constexpr double Tol = 1e-9;

void ExpectPt(const TKRNVector2d& A, TKRNVector2d B, double ATol = Tol) {
  EXPECT_NEAR(A.X, B.X, ATol);
  EXPECT_NEAR(A.Y, B.Y, ATol);
}

// Two points in either order.
void ExpectPts(const TKRNVector2d& A1, const TKRNVector2d& A2, TKRNVector2d B1, TKRNVector2d B2, double ATol = Tol) {
  const bool Direct = std::hypot(A1.X - B1.X, A1.Y - B1.Y) < ATol;
  ExpectPt(A1, Direct ? B1 : B2, ATol);
  ExpectPt(A2, Direct ? B2 : B1, ATol);
}

}  // namespace

TEST(TKRNIntersectFunc2d, TwoLines) {
  const struct {
    const char* Name;
    TKRNBeeline2d L1, L2;
    TKRNIntersectType Type;
    TKRNVector2d Pt;
  } Cases[] = {
      {"crossing", {{0, 0}, {1, 0}}, {{5, -3}, {0, 2}}, itOne, {5, 0}},
      {"oblique", {{0, 0}, {1, 1}}, {{0, 2}, {1, -1}}, itOne, {1, 1}},
      {"parallel", {{0, 0}, {1, 0}}, {{0, 1}, {-3, 0}}, itZero, {}},
      {"same line", {{0, 0}, {1, 0}}, {{7, 0}, {2, 0}}, itOverlap, {}},
      {"direction cross 1e-6 is parallel", {{0, 0}, {1, 0}}, {{0, 1}, {1, 1e-6}}, itZero, {}},
      {"direction cross 1.1e-5 crosses far away", {{0, 0}, {1, 0}}, {{0, 1}, {1, 1.1e-5}}, itOne, {-1 / 1.1e-5, 0}},
  };
  for (const auto& C : Cases) {
    SCOPED_TRACE(C.Name);
    TKRNVector2d P{};
    EXPECT_EQ(IF::Intersect(C.L1, C.L2, P), C.Type);
    if (C.Type == itOne)
      ExpectPt(P, C.Pt, 1e-6 * std::max(1.0, std::fabs(C.Pt.X)));
  }
}

TEST(TKRNIntersectFunc2d, LineAndCircle) {
  const struct {
    const char* Name;
    TKRNBeeline2d L;
    TKRNIntersectType Type;
    TKRNVector2d P1, P2;
  } Cases[] = {
      {"through the centre", {{-10, 0}, {2, 0}}, itTwo, {-5, 0}, {5, 0}},
      {"tangent", {{0, 5}, {1, 0}}, itOne, {0, 5}, {}},
      {"tangent within tolerance", {{0, 5.0009}, {1, 0}}, itOne, {0, 5}, {}},
      {"near miss", {{0, 5.002}, {1, 0}}, itZero, {}, {}},
      {"reversed line gives the points in its direction", {{10, 3}, {-1, 0}}, itTwo, {4, 3}, {-4, 3}},
      {"zero direction", {{0, 0}, {0, 0}}, itZero, {}, {}},
  };
  for (const auto& C : Cases) {
    SCOPED_TRACE(C.Name);
    TKRNVector2d P1{}, P2{};
    EXPECT_EQ(IF::Intersect(C.L, {0, 0}, 5, P1, P2), C.Type);
    if (C.Type == itTwo) {
      ExpectPt(P1, C.P1);
      ExpectPt(P2, C.P2);
    } else if (C.Type == itOne) {
      ExpectPt(P1, {C.P1.X, P1.Y});
      EXPECT_NEAR(P1.Y, C.P1.Y, 1e-3);
    }
  }
}

TEST(TKRNIntersectFunc2d, TwoCircles) {
  const struct {
    const char* Name;
    TKRNVector2d C2;
    double R1, R2;
    TKRNIntersectType Type;
    TKRNVector2d P1, P2;
  } Cases[] = {
      {"two points", {6, 0}, 5, 5, itTwo, {3, 4}, {3, -4}},
      {"outer touch", {10, 0}, 5, 5, itOne, {5, 0}, {}},
      {"outer touch within tolerance", {10.0004, 0}, 5, 5, itOne, {5, 0}, {}},
      {"outer miss past the tolerance", {10.004, 0}, 5, 5, itZero, {}, {}},
      {"apart", {10.1, 0}, 5, 5, itZero, {}, {}},
      {"equal circles overlap", {0, 0}, 5, 5, itOverlap, {}, {}},
      {"concentric", {0, 0}, 5, 3, itZero, {}, {}},
      {"inner touch, first smaller", {2, 0}, 3, 5, itOne, {-3, 0}, {}},
      {"inner touch, first larger", {2, 0}, 5, 3, itOne, {5, 0}, {}},
      {"one inside the other", {1, 0}, 5, 2, itZero, {}, {}},
  };
  for (const auto& C : Cases) {
    SCOPED_TRACE(C.Name);
    TKRNVector2d P1{}, P2{};
    EXPECT_EQ(IF::Intersect({0, 0}, C.R1, C.C2, C.R2, P1, P2), C.Type);
    if (C.Type == itTwo)
      ExpectPts(P1, P2, C.P1, C.P2);
    if (C.Type == itOne)
      ExpectPt(P1, C.P1, 1e-2);
  }
  // the first point is the one turned counter-clockwise from the centre line
  TKRNVector2d P1{}, P2{};
  ASSERT_EQ(IF::Intersect({0, 0}, 5, {6, 0}, 5, P1, P2), itTwo);
  ExpectPt(P1, {3, 4});
  // exact touching: nothing is forgiven
  EXPECT_EQ(IF::Intersect({0, 0}, 5, {10.0004, 0}, 5, P1, P2, 1e-9, true), itZero);
}

TEST(TKRNIntersectFunc2d, TwoSegments) {
  const struct {
    const char* Name;
    TKRNVector2d S1, E1, S2, E2;
    TKRNIntersectType Type;
    TKRNVector2d P1, P2;
  } Cases[] = {
      {"crossing", {0, 0}, {10, 0}, {4, -2}, {4, 3}, itOne, {4, 0}, {}},
      {"crossing, short first", {4, -2}, {4, 3}, {0, 0}, {10, 0}, itOne, {4, 0}, {}},
      {"T at an end", {0, 0}, {10, 0}, {5, 0}, {5, 4}, itOne, {5, 0}, {}},
      {"end on end", {0, 0}, {10, 0}, {10, 0}, {12, 5}, itOne, {10, 0}, {}},
      {"parallel", {0, 0}, {10, 0}, {0, 1}, {10, 1}, itZero, {}, {}},
      {"near miss past the end", {0, 0}, {10, 0}, {10.01, -1}, {10.01, 1}, itZero, {}, {}},
      {"touching within tolerance", {0, 0}, {10, 0}, {10.0005, -1}, {10.0005, 1}, itOne, {10.0005, 0}, {}},
      {"would cross when extended", {0, 0}, {10, 0}, {4, 1}, {4, 3}, itZero, {}, {}},
      {"identical", {0, 0}, {10, 0}, {0, 0}, {10, 0}, itOverlap, {0, 0}, {10, 0}},
      {"collinear overlap", {0, 0}, {10, 0}, {6, 0}, {15, 0}, itOverlap, {10, 0}, {6, 0}},
      {"collinear inside", {0, 0}, {10, 0}, {2, 0}, {3, 0}, itOverlap, {2, 0}, {3, 0}},
      {"collinear sharing an end", {0, 0}, {10, 0}, {10, 0}, {14, 0}, itOne, {10, 0}, {}},
      {"collinear apart", {0, 0}, {10, 0}, {11, 0}, {14, 0}, itZero, {}, {}},
      {"a point on the other", {0, 0}, {0, 0}, {-1, 0}, {1, 0}, itOne, {0, 0}, {}},
      {"a point off the other", {0, 0.5}, {0, 0.5}, {-1, 0}, {1, 0}, itZero, {}, {}},
      {"two equal points", {3, 3}, {3, 3}, {3, 3}, {3, 3}, itOne, {3, 3}, {}},
  };
  for (const auto& C : Cases) {
    SCOPED_TRACE(C.Name);
    TKRNVector2d P1{}, P2{};
    EXPECT_EQ(IF::Intersect(C.S1, C.E1, C.S2, C.E2, P1, P2), C.Type);
    if (C.Type == itOne)
      ExpectPt(P1, C.P1, 1e-6);
    if (C.Type == itOverlap)
      ExpectPts(P1, P2, C.P1, C.P2);
  }
}

TEST(TKRNIntersectFunc2d, SegmentAndLine) {
  TKRNVector2d P{};
  EXPECT_EQ(IF::Intersect({0, 0}, {10, 0}, TKRNBeeline2d({3, 5}, {0, 1}), P), itOne);
  ExpectPt(P, {3, 0});
  EXPECT_EQ(IF::Intersect({0, 0}, {10, 0}, TKRNBeeline2d({13, 5}, {0, 1}), P), itZero);
  EXPECT_EQ(IF::Intersect({0, 0}, {10, 0}, TKRNBeeline2d({-4, 0}, {1, 0}), P), itOverlap);
  EXPECT_EQ(IF::Intersect({2, 2}, {2, 2}, TKRNBeeline2d({0, 0}, {1, 1}), P), itOne);
}

TEST(TKRNIntersectFunc2d, SegmentAndArc) {
  // upper half of the circle of radius 5 about the origin, counter-clockwise from (5, 0)
  const TKRNArc2d Arc({5, 0}, {-5, 0}, 5, atACS);
  const struct {
    const char* Name;
    TKRNVector2d S, E;
    TKRNIntersectType Type;
    TKRNVector2d P1, P2;
  } Cases[] = {
      {"two crossings", {-10, 3}, {10, 3}, itTwo, {-4, 3}, {4, 3}},
      {"lower half is not on the arc", {-10, -3}, {10, -3}, itZero, {}, {}},
      {"one crossing", {0, 0}, {0, 10}, itOne, {0, 5}, {}},
      {"tangent at the top", {-3, 5}, {3, 5}, itOne, {0, 5}, {}},
      {"short of the arc", {0, 0}, {0, 4.9}, itZero, {}, {}},
      {"through an end", {5, -2}, {5, 2}, itOne, {5, 0}, {}},
  };
  for (const auto& C : Cases) {
    SCOPED_TRACE(C.Name);
    TKRNVector2d P1{}, P2{};
    const TKRNLine2d Line(C.S, C.E);
    EXPECT_EQ(IF::Intersect(Line, Arc, P1, P2), C.Type);
    TKRNVector2d Q1{}, Q2{};
    EXPECT_EQ(IF::Intersect(Arc, Line, Q1, Q2), C.Type);  // the line goes first either way
    if (C.Type == itTwo)
      ExpectPts(P1, P2, C.P1, C.P2);
    if (C.Type == itOne)
      ExpectPt(P1, C.P1, 1e-3);
  }
}

TEST(TKRNIntersectFunc2d, TwoArcs) {
  const TKRNArc2d Upper({5, 0}, {-5, 0}, 5, atACS);
  const struct {
    const char* Name;
    TKRNArc2d Other;
    TKRNIntersectType Type;
  } Cases[] = {
      {"crossing circles, both points on both arcs", TKRNArc2d({11, 0}, {1, 0}, 5, atACS), itOne},
      {"the other circle's lower half misses", TKRNArc2d({1, 0}, {11, 0}, 5, atACS), itZero},
      {"same arc", TKRNArc2d({5, 0}, {-5, 0}, 5, atACS), itOverlap},
      {"same arc reversed", TKRNArc2d({-5, 0}, {5, 0}, 5, atCS), itOverlap},
      {"lower half: two shared ends", TKRNArc2d({-5, 0}, {5, 0}, 5, atACS), itTwo},
      {"quarter inside", TKRNArc2d({0, 5}, {-5, 0}, 5, atACS), itOverlap},
      {"continuing arc sharing one end", TKRNArc2d({-5, 0}, {0, -5}, 5, atACS), itOne},
      {"apart", TKRNArc2d({25, 0}, {15, 0}, 5, atACS), itZero},
  };
  for (const auto& C : Cases) {
    SCOPED_TRACE(C.Name);
    TKRNVector2d P1{}, P2{};
    EXPECT_EQ(IF::Intersect(Upper, C.Other, P1, P2), C.Type);
  }
  // Two upper halves overlapping by a hair: by default they touch at one point on the
  // centre line; compared exactly they cross just above it.
  const TKRNArc2d Near({14.9996, 0}, {4.9996, 0}, 5, atACS);
  const TKRNArc2d Up({5, 0}, {-5, 0}, 5, atACS);
  TKRNVector2d P1{}, P2{};
  ASSERT_EQ(IF::Intersect(Up, Near, P1, P2), itOne);
  EXPECT_NEAR(P1.Y, 0, 1e-9);
  ASSERT_EQ(IF::Intersect(Up, Near, P1, P2, KRNEpsilon, true), itOne);
  EXPECT_NEAR(P1.Y, std::sqrt(25 - 4.9998 * 4.9998), 1e-6);
}

// A second check by another route: long double algebra on random input, skipping
// cases that sit within a margin of a decision boundary.
TEST(TKRNIntersectFunc2d, RandomSegmentsAgreeWithAReference) {
  std::mt19937 Rng(20261121);
  std::uniform_real_distribution<double> U(-100, 100);
  int Checked = 0;
  for (int I = 0; I < 20000; ++I) {
    const TKRNVector2d A{U(Rng), U(Rng)}, B{U(Rng), U(Rng)}, C{U(Rng), U(Rng)}, D{U(Rng), U(Rng)};
    using LD = long double;
    const LD RX = LD(B.X) - A.X, RY = LD(B.Y) - A.Y, SX = LD(D.X) - C.X, SY = LD(D.Y) - C.Y;
    const LD Den = RX * SY - RY * SX;
    const LD LenR = std::sqrt(RX * RX + RY * RY), LenS = std::sqrt(SX * SX + SY * SY);
    if (std::fabs(Den) < 1e-3L * LenR * LenS || LenR < 1 || LenS < 1)
      continue;  // near parallel or short: the tolerance decides, not the algebra
    const LD T = ((LD(C.X) - A.X) * SY - (LD(C.Y) - A.Y) * SX) / Den;
    const LD V = ((LD(C.X) - A.X) * RY - (LD(C.Y) - A.Y) * RX) / Den;
    const LD MarginT = 0.01L / LenR * 2, MarginV = 0.01L / LenS * 2;
    const bool In = T > MarginT && T < 1 - MarginT && V > MarginV && V < 1 - MarginV;
    const bool Out = T < -MarginT || T > 1 + MarginT || V < -MarginV || V > 1 + MarginV;
    if (!In && !Out)
      continue;
    TKRNVector2d P1{}, P2{};
    const TKRNIntersectType R = IF::Intersect(A, B, C, D, P1, P2);
    ++Checked;
    if (In) {
      ASSERT_EQ(R, itOne) << I;
      EXPECT_NEAR(P1.X, double(A.X + T * RX), 1e-6);
      EXPECT_NEAR(P1.Y, double(A.Y + T * RY), 1e-6);
    } else {
      ASSERT_EQ(R, itZero) << I;
    }
  }
  EXPECT_GT(Checked, 15000);
}

TEST(TKRNIntersectFunc2d, RandomSegmentAndArcAgreeWithAReference) {
  std::mt19937 Rng(7);
  std::uniform_real_distribution<double> U(-50, 50), Ang(0, 2 * M_PI), Rad(5, 40);
  int Checked = 0, Hits = 0;
  for (int I = 0; I < 20000; ++I) {
    const TKRNVector2d Ctr{U(Rng), U(Rng)};
    const double R = Rad(Rng), A0 = Ang(Rng), A1 = Ang(Rng);
    const TKRNVector2d S{Ctr.X + R * std::cos(A0), Ctr.Y + R * std::sin(A0)};
    const TKRNVector2d E{Ctr.X + R * std::cos(A1), Ctr.Y + R * std::sin(A1)};
    const TKRNArcType Type = static_cast<TKRNArcType>(1 + Rng() % 4);
    TKRNArc2d Arc(S, E, R, Type);
    if (!Arc.IsValidateArc() || VectorDistance(S, E) < 1)
      continue;
    const TKRNVector2d Center = Arc.CenterPt();
    // the arc as the set of angles from its start, counter-clockwise
    using LD = long double;
    const LD Sa = std::atan2(LD(S.Y) - Center.Y, LD(S.X) - Center.X);
    const LD Sweep = TKRNArc2d::ArcSweep(S, E, R, Type);  // a magnitude; the type gives the turn
    const TKRNVector2d P{U(Rng), U(Rng)}, Q{U(Rng), U(Rng)};
    const LD DX = LD(Q.X) - P.X, DY = LD(Q.Y) - P.Y, FX = LD(P.X) - Center.X, FY = LD(P.Y) - Center.Y;
    const LD Qa = DX * DX + DY * DY, Qb = 2 * (FX * DX + FY * DY), Qc = FX * FX + FY * FY - LD(R) * R;
    const LD Disc = Qb * Qb - 4 * Qa * Qc;
    if (Qa < 1 || std::fabs(Disc) < 1e-2L * Qa * R * R)
      continue;  // short segment or near tangent
    int Expected = 0;
    bool Ambiguous = false;
    if (Disc > 0)
      for (int K : {-1, 1}) {
        const LD T = (-Qb + K * std::sqrt(Disc)) / (2 * Qa);
        const LD X = P.X + T * DX, Y = P.Y + T * DY;
        LD Off = std::atan2(Y - Center.Y, X - Center.X) - Sa;
        if (ArcTypeIsClockwise(Type))
          Off = -Off;
        while (Off < 0)
          Off += 2 * M_PI;
        while (Off >= 2 * M_PI)
          Off -= 2 * M_PI;
        const LD Span = Sweep;
        const LD AngMargin = 0.01L / R, TMargin = 0.01L / std::sqrt(Qa);
        const bool OnArc = Off < Span - AngMargin && Off > AngMargin;
        const bool OffArc = Off > Span + AngMargin && Off < 2 * M_PI - AngMargin;
        const bool OnSeg = T > TMargin && T < 1 - TMargin, OffSeg = T < -TMargin || T > 1 + TMargin;
        if ((!OnArc && !OffArc) || (!OnSeg && !OffSeg))
          Ambiguous = true;
        Expected += OnArc && OnSeg;
      }
    if (Ambiguous)
      continue;
    TKRNVector2d P1{}, P2{};
    const TKRNIntersectType Got = IF::Intersect(TKRNLine2d(P, Q), Arc, P1, P2);
    ++Checked;
    Hits += Expected > 0;
    ASSERT_EQ(Got, Expected == 0 ? itZero : (Expected == 1 ? itOne : itTwo)) << I;
    if (Expected >= 1) {
      EXPECT_NEAR(VectorDistance(P1, Center), R, 1e-6);
    }
  }
  EXPECT_GT(Checked, 5000);
  EXPECT_GT(Hits, 500);
}

TEST(TKRNIntersectFunc2d, IntersectPtsOfTwoFigures) {
  const TKRNPolygon2d Big(TKRNBox2d{{0, 0}, {10, 10}});
  const struct {
    const char* Name;
    TKRNBox2d Other;
    bool IncludeIn;
    size_t Count;
  } Cases[] = {
      {"crossing", {{5, 5}, {15, 15}}, false, 2},
      {"crossing, with inner vertices", {{5, 5}, {15, 15}}, true, 4},
      {"inside, crossings only", {{2, 2}, {4, 4}}, false, 0},
      {"inside, with inner vertices", {{2, 2}, {4, 4}}, true, 4},
      {"apart", {{20, 20}, {30, 30}}, true, 0},
      {"sharing an edge", {{10, 0}, {20, 10}}, false, 2},
  };
  for (const auto& C : Cases) {
    SCOPED_TRACE(C.Name);
    EXPECT_EQ(IF::IntersectPts(Big, TKRNPolygon2d(C.Other), C.IncludeIn).size(), C.Count);
  }
  // a circle against a square it crosses
  EXPECT_EQ(IF::IntersectPts(Big, TKRNCircle2d({10, 5}, 2), false).size(), 2u);
}

TEST(TKRNIntersectFunc2d, ExtensionsMeet) {
  const TKRNLine2d A({0, 0}, {1, 0}), B({5, 2}, {5, 3}), C({0, 1}, {1, 1});
  const TKRNArc2d Arc({10, 0}, {0, 10}, 10, atACS);
  TKRNVector2d P1{}, P2{};
  EXPECT_EQ(IF::ExtIntersect(A, B, P1, P2), itOne);
  ExpectPt(P1, {5, 0});
  EXPECT_EQ(IF::ExtIntersect(A, C, P1, P2), itZero);
  EXPECT_EQ(IF::ExtIntersect(Arc, C, P1, P2), itTwo);  // the whole circle counts
  TKRNVector2d Near{};
  ASSERT_TRUE(IF::LimitExtIntersect(C, Arc, {-20, 1}, Near));
  EXPECT_NEAR(Near.X, -std::sqrt(99.0), 1e-9);
  EXPECT_FALSE(IF::LimitExtIntersect(A, C, {0, 0}, Near));
}

TEST(TKRNIntersectFunc2d, SegmentAgainstAFigure) {
  const TKRNCircle2d Circle({0, 0}, 5);
  const TKRNPolygon2d Square(TKRNBox2d{{0, 0}, {10, 10}});
  const struct {
    const char* Name;
    TKRNLine2d Line;
    const TKRNCustomPolygon2d* Figure;
    bool IncludeIn;
    std::vector<TKRNVector2d> Pts;
  } Cases[] = {
      {"through a circle, in order", TKRNLine2d({10, 0}, {-10, 0}), &Circle, false, {{5, 0}, {-5, 0}}},
      {"from inside a circle", TKRNLine2d({0, 0}, {10, 0}), &Circle, false, {{5, 0}}},
      {"from inside, with the inner end", TKRNLine2d({0, 0}, {10, 0}), &Circle, true, {{0, 0}, {5, 0}}},
      {"short of the circle", TKRNLine2d({6, 0}, {10, 0}), &Circle, true, {}},
      {"across a square", TKRNLine2d({-5, 5}, {15, 5}), &Square, false, {{0, 5}, {10, 5}}},
      {"through a corner once", TKRNLine2d({-5, -5}, {5, 5}), &Square, false, {{0, 0}}},
  };
  for (const auto& C : Cases) {
    SCOPED_TRACE(C.Name);
    const auto Got = IF::Intersect(C.Line, *C.Figure, C.IncludeIn);
    ASSERT_EQ(Got.size(), C.Pts.size());
    for (size_t I = 0; I < Got.size(); ++I)
      ExpectPt(Got[I], C.Pts[I], 1e-9);
  }
  // an arc meets the circle of another as a whole circle
  const TKRNArc2d Arc({8, 0}, {0, 8}, 8, atACS);
  EXPECT_EQ(IF::Intersect(Arc, TKRNCircle2d({8, 8}, 8), false).size(), 2u);
}
