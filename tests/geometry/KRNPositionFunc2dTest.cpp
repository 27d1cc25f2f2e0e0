#include "GeometryTestUtils.h"
#include "KRNPositionFunc2d.h"

#include <random>

using PF = TKRNPositionFunc2d;

namespace {
std::unique_ptr<TKRNPolygon2d> MakePolygon(std::initializer_list<TKRNVector2d> APoints) {
  auto P = std::make_unique<TKRNPolygon2d>();
  for (const TKRNVector2d& Pt : APoints) P->List().AddLinePoint(Pt);
  return P;
}
}  // namespace

TEST(TKRNPositionFunc2d, PointOnStraightSegment) {
  const struct {
    TKRNVector2d P;
    double Eps;
    TKRNPointPosition Want;
  } Cases[] = {{{5, 0}, KRNEpsilon, ppIn},      {{0, 0}, KRNEpsilon, ppOn},     {{10, 0}, KRNEpsilon, ppOn},
               {{11, 0}, KRNEpsilon, ppOut},    {{-1, 0}, KRNEpsilon, ppOut},   {{5, 0.0005}, KRNEpsilon, ppIn},
               {{5, 0.01}, KRNEpsilon, ppOut},  {{10.0005, 0}, KRNEpsilon, ppOn}, {{5, 0.01}, 0.1, ppIn},
               {{10.05, 0}, 0.1, ppOn},         {{10.2, 0}, 0.1, ppOut}};
  for (const auto& C : Cases) {
    SCOPED_TRACE(testing::Message() << C.P << " eps " << C.Eps);
    EXPECT_EQ(PF::PointPosition(C.P, TKRNVector2d{0, 0}, TKRNVector2d{10, 0}, C.Eps), C.Want);
    EXPECT_EQ(PF::PointPosition(C.P, TKRNLine2d({0, 0}, {10, 0}), C.Eps), C.Want);
  }
  // a zero-length segment: its point is an end, anything else is off
  EXPECT_EQ(PF::PointPosition({1, 1}, TKRNVector2d{1, 1}, TKRNVector2d{1, 1}), ppOn);
  EXPECT_EQ(PF::PointPosition({3, 1}, TKRNVector2d{1, 1}, TKRNVector2d{1, 1}), ppOut);
}

TEST(TKRNPositionFunc2d, PointOnArc) {
  const TKRNArc2d Q({1, 0}, {0, 1}, 1, atACS);
  const TKRNArc2d Cw({0, 1}, {1, 0}, 1, atCS);
  const struct {
    TKRNVector2d P;
    TKRNPointPosition Want;
  } Cases[] = {{Polar(1, KRNPi / 4), ppIn}, {{1, 0}, ppOn},  {{0, 1}, ppOn},       {{-1, 0}, ppOut},
               {{0.5, 0.5}, ppOut},         {Polar(1.0005, 0.3), ppIn}, {Polar(1, -0.0005), ppOn}, {Polar(1, -0.1), ppOut}};
  for (const auto& C : Cases) {
    SCOPED_TRACE(testing::Message() << C.P);
    EXPECT_EQ(PF::PointPosition(C.P, Q), C.Want);
    EXPECT_EQ(PF::PointPosition(C.P, Cw), C.Want);
    EXPECT_EQ(PF::PointPosition(C.P, static_cast<const TKRNCustomLine2d&>(Q)), C.Want);
  }
  // an invalid arc counts as its chord
  const TKRNArc2d Bad({0, 0}, {2, 0}, 0.5, atACS);
  EXPECT_EQ(PF::PointPosition({1, 0}, Bad), ppIn);
}

TEST(TKRNPositionFunc2d, PointOnOpenPathWalksTheClosingChord) {
  TKRNLines2d L;
  L.List().AddLinePoint({0, 0});
  L.List().AddLinePoint({10, 0});
  L.List().AddLinePoint({10, 10});
  EXPECT_EQ(PF::PointPosition({5, 5}, L), ppIn);  // on the chord from the last vertex to the first
  EXPECT_EQ(PF::PointPosition({5, 0}, L), ppIn);
  EXPECT_EQ(PF::PointPosition({10, 10}, L), ppOn);
  EXPECT_EQ(PF::PointPosition({0, 0}, L), ppOn);
  EXPECT_EQ(PF::PointPosition({3, 7}, L), ppOut);
  // the last vertex matches under the caller's tolerance, the first only under KRNEpsilon
  EXPECT_EQ(PF::PointPosition({10.05, 10.05}, L, 0.1), ppOn);
  EXPECT_EQ(PF::PointPosition({0.05, 0.05}, L, 0.1), ppIn);
  TKRNLines2d One;
  One.List().AddLinePoint({1, 1});
  EXPECT_EQ(PF::PointPosition({1, 1}, One), ppOn);
  EXPECT_EQ(PF::PointPosition({2, 2}, One), ppOut);
  EXPECT_EQ(PF::PointPosition({2, 2}, TKRNLines2d()), ppOut);
}

TEST(TKRNPositionFunc2d, PointAgainstBox) {
  const TKRNBox2d B{{0, 0}, {10, 5}};
  const struct {
    TKRNVector2d P;
    TKRNPointPosition Want;
    bool InBox;
  } Cases[] = {{{5, 2}, ppIn, true},   {{0, 2}, ppOn, true},   {{5, 5}, ppOn, true},
               {{0, 5}, ppOn, true},   {{0, 6}, ppOut, false}, {{-1, 2}, ppOut, false},
               {{5, -0.0005}, ppOn, true}, {{10.002, 2}, ppOut, false}};
  for (const auto& C : Cases) {
    SCOPED_TRACE(testing::Message() << C.P);
    EXPECT_EQ(PF::PointPosition(C.P, B), C.Want);
    EXPECT_EQ(PF::IsPointInBox(C.P, B), C.InBox);
  }
}

TEST(TKRNPositionFunc2d, PointInPolygonWithVertexOutputs) {
  const auto Sq = MakePolygon({{0, 0}, {10, 0}, {10, 10}, {0, 10}});
  const TKRNVertex2d *V1, *V2;
  EXPECT_EQ(PF::PointPosition({5, 5}, *Sq, V1, V2), ppIn);
  EXPECT_EQ(V1, nullptr);
  EXPECT_EQ(PF::PointPosition({0, 5}, *Sq, V1, V2), ppOn);
  EXPECT_EQ(V1, Sq->List()[3]);
  EXPECT_EQ(V2, Sq->List()[0]);
  EXPECT_EQ(PF::PointPosition({0.0003, 0}, *Sq, V1, V2), ppOn);  // at a vertex: the nearer one, twice
  EXPECT_EQ(V1, Sq->List()[0]);
  EXPECT_EQ(V2, Sq->List()[0]);
  EXPECT_EQ(PF::PointPosition({5, 10}, *Sq), ppOn);
  EXPECT_EQ(PF::PointPosition({15, 5}, *Sq), ppOut);
  EXPECT_EQ(PF::PointPosition({-5, 0}, *Sq), ppOut);
  EXPECT_EQ(PF::PointPosition({5, 5}, TKRNPolygon2d()), ppOut);

  // a notch whose vertex is level with the test points
  const auto Notch = MakePolygon({{0, 0}, {10, 0}, {10, 10}, {5, 5}, {0, 10}});
  const struct {
    TKRNVector2d P;
    TKRNPointPosition Want;
  } Cases[] = {{{2, 5}, ppIn}, {{7, 5}, ppIn}, {{5, 7}, ppOut}, {{5, 5}, ppOn}, {{-1, 5}, ppOut}, {{11, 5}, ppOut}};
  for (const auto& C : Cases) {
    SCOPED_TRACE(testing::Message() << C.P);
    EXPECT_EQ(PF::PointPosition(C.P, *Notch), C.Want);
  }
}

TEST(TKRNPositionFunc2d, PointInPolygonWithArcs) {
  TKRNPolygon2d Half;
  Half.List().AddArcPoint({1, 0}, atACS, 1);
  Half.List().AddLinePoint({-1, 0});
  const struct {
    TKRNVector2d P;
    TKRNPointPosition Want;
  } Cases[] = {{{0, 0.5}, ppIn},   {{0, 1}, ppOn},       {{0, 1.5}, ppOut}, {{0.99, 0.5}, ppOut},
               {{0.5, 0.5}, ppIn}, {{-0.5, 0.5}, ppIn},  {{0, -0.5}, ppOut}, {{0, 0}, ppOn},
               {{-1, 0}, ppOn},    {{0.5, 0.99}, ppOut}, {{-2, 0.5}, ppOut}};
  for (const auto& C : Cases) {
    SCOPED_TRACE(testing::Message() << C.P);
    EXPECT_EQ(PF::PointPosition(C.P, Half), C.Want);
  }
}

// An independent check: random points against circles and rings built from arcs,
// compared with the distance from the centre.
TEST(TKRNPositionFunc2d, RandomPointsAgainstArcPolygons) {
  std::mt19937 Rng(20261121);
  std::uniform_real_distribution<double> U(-3, 3);
  for (const bool Cw : {false, true}) {
    const TKRNPolygon2d Circle(TKRNCircle2d({0.25, -0.5}, 2, Cw));
    // the same circle in three arcs of mixed size, starting off the axis
    const TKRNVector2d C{0.25, -0.5};
    TKRNPolygon2d ThreeArcs;
    ThreeArcs.List().AddArcPoint(VectorAdd(C, Polar(2, 0.3)), atACS, 2);
    ThreeArcs.List().AddArcPoint(VectorAdd(C, Polar(2, 2.0)), atACS, 2);
    ThreeArcs.List().AddArcPoint(VectorAdd(C, Polar(2, 2.9)), atACL, 2);
    if (Cw) ThreeArcs.Inverse();
    ASSERT_EQ(ThreeArcs.GetClockwise(), Cw);
    for (int I = 0; I < 4000; ++I) {
      const TKRNVector2d P{U(Rng), U(Rng)};
      const double Dist = VectorDistance(P, C);
      if (std::fabs(Dist - 2) < 1e-3) continue;
      const TKRNPointPosition Want = Dist < 2 ? ppIn : ppOut;
      ASSERT_EQ(PF::PointPosition(P, Circle), Want) << P << " cw " << Cw;
      ASSERT_EQ(PF::PointPosition(P, ThreeArcs), Want) << P;
      ASSERT_EQ(PF::PointPosition(P, TKRNCircle2d(C, 2, Cw)), Want) << P;
    }
  }
}

TEST(TKRNPositionFunc2d, FiguresAndHoles) {
  TKRNMultiPolygon2d M;
  M.Add(new TKRNPolygon2d(TKRNBox2d{{0, 0}, {10, 10}}));
  M.Add(new TKRNPolygon2d(TKRNBox2d{{3, 3}, {7, 7}}));
  EXPECT_EQ(PF::PointPosition({5, 5}, M), ppOut);  // in the hole
  EXPECT_EQ(PF::PointPosition({1, 1}, M), ppIn);
  EXPECT_EQ(PF::PointPosition({3, 5}, M), ppOn);
  EXPECT_EQ(PF::PointPosition({20, 20}, M), ppOut);
  const TKRNEllipse2d E({0, 0}, 2, 1, KRNHalfPi);
  EXPECT_EQ(PF::PointPosition({0, 1.9}, E), ppIn);
  EXPECT_EQ(PF::PointPosition({1.5, 0}, E), ppOut);
  EXPECT_EQ(PF::PointPosition({1, 0}, E), ppOn);
  EXPECT_EQ(PF::PointPosition({9.99, 1}, TKRNOrthoRectangle2d({0, 0}, {10, 2})), ppIn);
}

TEST(TKRNPositionFunc2d, BoxAgainstBox) {
  const TKRNBox2d B{{0, 0}, {10, 10}};
  const struct {
    const char* Name;
    TKRNBox2d A;
    TKRNPolyPositionType Want;
  } Cases[] = {{"equal", {{0, 0}, {10, 10}}, pptEqual},
               {"equal within tolerance", {{0.0005, 0}, {10, 10.0005}}, pptEqual},
               {"sharing a side from outside", {{10, 0}, {20, 10}}, pptOutBorder},
               {"far", {{20, 20}, {30, 30}}, pptLeave},
               {"inside touching a side", {{0, 2}, {5, 5}}, ppt1In2Border},
               {"inside", {{2, 2}, {5, 5}}, ppt1In2},
               {"containing with a shared side", {{-5, 0}, {15, 15}}, ppt2In1Border},
               {"containing", {{-5, -5}, {15, 15}}, ppt2In1},
               {"overlapping", {{5, 5}, {15, 15}}, pptInt}};
  for (const auto& C : Cases) {
    SCOPED_TRACE(C.Name);
    EXPECT_EQ(PF::BoxBoxPosition(C.A, B), C.Want);
  }
}

TEST(TKRNPositionFunc2d, PolygonAgainstPolygon) {
  const auto Big = MakePolygon({{0, 0}, {10, 0}, {10, 10}, {0, 10}});
  const struct {
    const char* Name;
    std::unique_ptr<TKRNPolygon2d> P;
    TKRNPolyPositionType Want;
  } Cases[] = {{"equal", MakePolygon({{10, 0}, {10, 10}, {0, 10}, {0, 0}}), pptEqual},
               {"inside", MakePolygon({{2, 2}, {5, 2}, {5, 5}}), ppt1In2},
               {"inside on a side", MakePolygon({{0, 2}, {5, 2}, {5, 5}}), ppt1In2Border},
               {"containing", MakePolygon({{-1, -1}, {11, -1}, {11, 11}, {-1, 11}}), ppt2In1},
               {"crossing", MakePolygon({{5, 5}, {15, 5}, {15, 15}, {5, 15}}), pptInt},
               {"touching outside", MakePolygon({{10, 2}, {12, 2}, {12, 4}, {10, 4}}), pptOutBorder},
               {"apart", MakePolygon({{20, 20}, {21, 20}, {21, 21}}), pptLeave}};
  for (const auto& C : Cases) {
    SCOPED_TRACE(C.Name);
    EXPECT_EQ(PF::PolyPolyPosition(*C.P, *Big), C.Want);
  }
}

TEST(TKRNPositionFunc2d, SideOfSegment) {
  const TKRNLine2d L({0, 0}, {10, 0});
  EXPECT_EQ(PF::PointSegSide({5, 1}, L), ssLeft);
  EXPECT_EQ(PF::PointSegSide({5, -1}, L), ssRight);
  EXPECT_EQ(PF::PointSegSide({50, 0.0005}, L), ssOn);
  EXPECT_EQ(PF::PointSegSide({5, 5}, TKRNLine2d({1, 1}, {1, 1})), ssOn);
  const TKRNArc2d Acw({1, 0}, {0, 1}, 1, atACS), Cw({0, 1}, {1, 0}, 1, atCS);
  EXPECT_EQ(PF::PointSegSide({0.1, 0.1}, Acw), ssLeft);  // the centre's side
  EXPECT_EQ(PF::PointSegSide({2, 2}, Acw), ssRight);
  EXPECT_EQ(PF::PointSegSide({0.1, 0.1}, Cw), ssRight);
  EXPECT_EQ(PF::PointSegSide(Polar(1, 1), Cw), ssOn);
}

TEST(TKRNPositionFunc2d, ClosestPointsAndDistances) {
  const TKRNVector2d S{0, 0}, E{1, 0};
  EXPECT_PT_NEAR(PF::ClosestPointTo({-1, 1}, S, E, true), S, 0);
  EXPECT_PT_NEAR(PF::ClosestPointTo({-1, 1}, S, E, false), (TKRNVector2d{-1, 0}), 0);
  EXPECT_PT_NEAR(PF::ClosestPointTo({3, 1}, S, E, true), E, 0);
  EXPECT_PT_NEAR(PF::ClosestPointTo({0.5, 1}, S, E, true), (TKRNVector2d{0.5, 0}), 0);
  // a projection up to KRNEpsilon past the start measures to the start
  EXPECT_NEAR(PF::DistanceTo({0.001, 0.001}, S, E, true), std::sqrt(2e-6), 1e-15);
  EXPECT_NEAR(PF::DistanceTo({0.002, 0.001}, S, E, true), 0.001, 1e-15);
  EXPECT_NEAR(PF::DistanceTo({5, 3}, S, E, false), 3, 1e-15);
  EXPECT_NEAR(PF::DistanceTo({5, 3}, S, E, true), 5, 1e-15);
  const TKRNArc2d A({1, 0}, {0, 1}, 1, atACS);
  EXPECT_NEAR(PF::DistanceTo({2, 2}, A, true), std::sqrt(8.0) - 1, 1e-12);
  EXPECT_NEAR(PF::DistanceTo({-2, 0}, A, true), std::sqrt(5.0), 1e-12);  // nearest end
  EXPECT_NEAR(PF::DistanceTo({-2, 0}, A, false), 1, 1e-12);
  EXPECT_PT_NEAR(PF::ClosestPointTo({3, 3}, A, true), Polar(1, KRNPi / 4), 1e-12);
  EXPECT_PT_NEAR(PF::ClosestPointTo({0, -5}, A, true), (TKRNVector2d{1, 0}), 0);
}

TEST(TKRNPositionFunc2d, LengthsAlongSegments) {
  const TKRNArc2d A({1, 0}, {0, 1}, 1, atACS);
  EXPECT_NEAR(PF::LengthAtPoint(A, Polar(1, KRNPi / 4)), KRNPi / 4, 1e-12);
  EXPECT_NEAR(PF::LengthAtPoint(A, Polar(1, -0.2)), -0.2, 1e-12);  // nearer the start over the gap
  EXPECT_NEAR(PF::LengthAtPoint(A, Polar(1, 1.8)), 1.8, 1e-12);    // just past the end
  const TKRNLine2d L({0, 0}, {10, 0});
  EXPECT_DOUBLE_EQ(PF::LengthAtPoint(L, {3, 4}), 3);
  EXPECT_DOUBLE_EQ(PF::LengthAtPoint(L, {-3, 4}), -3);

  EXPECT_PT_NEAR(PF::PointAtLength(L, 4, true), (TKRNVector2d{4, 0}), 0);
  EXPECT_PT_NEAR(PF::PointAtLength(L, -4, true), (TKRNVector2d{0, 0}), 0);
  EXPECT_PT_NEAR(PF::PointAtLength(L, 14, true), (TKRNVector2d{10, 0}), 0);
  EXPECT_PT_NEAR(PF::PointAtLength(L, 14, false), (TKRNVector2d{14, 0}), 0);
  EXPECT_PT_NEAR(PF::PointAtLength(TKRNVector2d{2, 3}, TKRNVector2d{2, 3.0001}, 5, false), (TKRNVector2d{7, 3.0001}), 0);
  EXPECT_PT_NEAR(PF::PointAtLength(A, KRNPi / 4, true), Polar(1, KRNPi / 4), 1e-12);
  EXPECT_PT_NEAR(PF::PointAtLength(A, 10, true), (TKRNVector2d{0, 1}), 0);

  EXPECT_PT_NEAR(PF::MiddlePoint(L, {2, 0}, {6, 0}), (TKRNVector2d{4, 0}), 0);
  EXPECT_PT_NEAR(PF::MiddlePoint(A, {1, 0}, {0, 1}), Polar(1, KRNPi / 4), 1e-12);
}

TEST(TKRNPositionFunc2d, SortAlongSegments) {
  TKRNPoint2dDynArray Pts{{2, 1}, {8, -1}, {5, 0}};
  PF::SortPoint(TKRNLine2d({10, 0}, {0, 0}), Pts);
  EXPECT_PT_NEAR(Pts[0], (TKRNVector2d{8, -1}), 0);
  EXPECT_PT_NEAR(Pts[2], (TKRNVector2d{2, 1}), 0);
  TKRNPoint2dDynArray Up{{0, 9}, {0, 1}, {0.5, 4}};
  PF::SortPoint(TKRNLine2d({0, 0}, {1, 10}), Up);
  EXPECT_EQ(Up[0].Y, 1);
  EXPECT_EQ(Up[2].Y, 9);
  TKRNPoint2dDynArray OnArc{Polar(1, 1.2), Polar(1, 0.1), Polar(1, 0.7)};
  PF::SortPoint(TKRNArc2d({1, 0}, {0, 1}, 1, atACS), OnArc);
  EXPECT_NEAR(VectorAngle(OnArc[0]), 0.1, 1e-12);
  EXPECT_NEAR(VectorAngle(OnArc[2]), 1.2, 1e-12);
}

TEST(TKRNPositionFunc2d, SubSegments) {
  const TKRNLine2d L({0, 0}, {10, 0});
  const auto S = PF::SubSeg(L, 2, 5, true);
  EXPECT_PT_NEAR(S->StartPt(), (TKRNVector2d{2, 0}), 0);
  EXPECT_PT_NEAR(S->EndPt(), (TKRNVector2d{5, 0}), 0);
  const auto R = PF::SubSeg(L, TKRNVector2d{8, 1}, TKRNVector2d{2, -1}, true);  // runs backwards
  EXPECT_PT_NEAR(R->StartPt(), (TKRNVector2d{8, 0}), 1e-12);
  EXPECT_PT_NEAR(R->EndPt(), (TKRNVector2d{2, 0}), 1e-12);

  const TKRNArc2d Large({1, 0}, {0, -1}, 1, atACL);  // three quarters anticlockwise
  const auto Piece = PF::SubSeg(Large, 0.0, KRNHalfPi, true);
  EXPECT_EQ(Piece->ArcType(), atACS);
  EXPECT_PT_NEAR(Piece->EndPt(), (TKRNVector2d{0, 1}), 1e-12);
  EXPECT_PT_NEAR(Piece->MiddlePoint(), Polar(1, KRNPi / 4), 1e-12);
  const auto Back = PF::SubSeg(Large, Polar(1, KRNPi), Polar(1, KRNPi / 4), true);
  EXPECT_EQ(Back->ArcType(), atCS);
  EXPECT_PT_NEAR(Back->MiddlePoint(), Polar(1, 5 * KRNPi / 8), 1e-12);
}

TEST(TKRNPositionFunc2d, SetExactVertexKeepsTheCentre) {
  TKRNLine2d L({0, 0}, {1, 0});
  EXPECT_FALSE(PF::SetExactVertex(L, {2, 2}, {2, 2.0001}));
  EXPECT_PT_NEAR(L.EndPt(), (TKRNVector2d{1, 0}), 0);
  EXPECT_TRUE(PF::SetExactVertex(L, {2, 2}, {3, 3}));
  EXPECT_PT_NEAR(L.StartPt(), (TKRNVector2d{2, 2}), 0);
  TKRNArc2d A({1, 0}, {0, 1}, 1, atACS);
  EXPECT_TRUE(PF::SetExactVertex(A, {1, 0}, {-1, 0}));
  EXPECT_EQ(A.ArcType(), atACS);
  EXPECT_TRUE(PF::SetExactVertex(A, {1, 0}, {0, -1}));
  EXPECT_EQ(A.ArcType(), atACL);  // now over half a turn
  EXPECT_PT_NEAR(A.CenterPt(), (TKRNVector2d{0, 0}), 1e-12);
}

TEST(TKRNPositionFunc2d, ParallelAndEqual) {
  const TKRNLine2d L1({0, 0}, {10, 0}), L2({5, 3}, {-5, 3});
  const TKRNArc2d A1({1, 0}, {0, 1}, 1, atACS), A2({0, 3}, {-3, 0}, 3, atACS), A3({2, 0}, {1, 1}, 1, atACS);
  EXPECT_TRUE(PF::IsParallel(L1, L2));
  EXPECT_FALSE(PF::IsParallel(L1, TKRNLine2d({0, 0}, {10, 1})));
  EXPECT_FALSE(PF::IsParallel(L1, A1));
  EXPECT_TRUE(PF::IsParallel(A1, A2));  // concentric
  EXPECT_FALSE(PF::IsParallel(A1, A3));
  EXPECT_FALSE(PF::IsEqual(L1, TKRNLine2d({10, 0}, {0, 0}), false));
  EXPECT_TRUE(PF::IsEqual(L1, TKRNLine2d({10, 0}, {0, 0}), true));
  EXPECT_TRUE(PF::IsEqual(A1, TKRNArc2d({0, 1}, {1, 0}, 1, atCS), true));
  EXPECT_FALSE(PF::IsEqual(A1, TKRNArc2d({0, 1}, {1, 0}, 1, atCS), false));
  EXPECT_FALSE(PF::IsEqual(A1, L1, true));
}
