#include "GeometryTestUtils.h"
#include "KRNCommon2d.h"

#include <limits>

TEST(KRNCommon2d, ToleranceRules) {
  const struct {
    double A, B, Eps;
    int Compare;
    bool Same;
  } Cases[] = {
      {1.0, 1.0 + KRNEpsilon, KRNEpsilon, -1, true},  // exactly T apart: different for Compare, same for Same
      {1.0, 1.0 + KRNEpsilon / 2, KRNEpsilon, 0, true},
      {1.0 + 2 * KRNEpsilon, 1.0, KRNEpsilon, 1, false},
      {0, 1e-13, 0, 0, true},           // absolute floor 1e-12
      {0, 2e-12, 0, -1, false},
      {1e15, 1e15 + 0.5, 0, 0, true},  // relative term 1e-12 of the smaller magnitude
      {1e15, 1e15 + 2000, 0, -1, false},
      {-5, -5.0005, KRNEpsilon, 0, true},
  };
  for (const auto& C : Cases) {
    SCOPED_TRACE(testing::Message() << C.A << " vs " << C.B);
    EXPECT_EQ(CompareDouble(C.A, C.B, C.Eps), C.Compare);
    EXPECT_EQ(SameDouble(C.A, C.B, C.Eps), C.Same);
    EXPECT_EQ(DoubleGreater(C.A, C.B, C.Eps), C.Compare == 1);
    EXPECT_EQ(DoubleGreaterEqual(C.A, C.B, C.Eps), C.Compare != -1);
    EXPECT_EQ(DoubleLess(C.A, C.B, C.Eps), C.Compare == -1);
    EXPECT_EQ(DoubleLessEqual(C.A, C.B, C.Eps), C.Compare != 1);
  }
}

TEST(KRNCommon2d, NormalizeAngle) {
  const struct {
    double In, Eps, Out;
  } Cases[] = {{KRNTwoPi, KRNEpsilon, 0},
               {KRNTwoPi - 1e-4, KRNEpsilon, -1e-4},  // a hair below a full turn becomes a hair below zero
               {-KRNHalfPi, KRNEpsilon, KRNThreeHalfPi},
               {7 * KRNPi, KRNEpsilon, KRNPi},
               {-KRNEpsilon / 2, KRNEpsilon, -KRNEpsilon / 2},
               {-9 * KRNPi, 0, KRNPi},
               {1e9, 0, std::fmod(1e9, KRNTwoPi)}};
  for (const auto& C : Cases) {
    SCOPED_TRACE(C.In);
    EXPECT_NEAR(NormalizeAngle(C.In, C.Eps), C.Out, 1e-9);
  }
  EXPECT_TRUE(std::isnan(NormalizeAngle(std::numeric_limits<double>::quiet_NaN())));
}

TEST(KRNCommon2d, FloorAndRoundAllowATinyShortfall) {
  EXPECT_EQ(FloorEps(2.9999999), 3);
  EXPECT_EQ(FloorEps(2.99), 2);
  EXPECT_EQ(FloorEps(-0.5), -1);
  EXPECT_EQ(FloorEps(-2.0), -2);
  EXPECT_EQ(RoundEps(2.4999995), 3);
  EXPECT_EQ(RoundEps(2.49), 2);
  EXPECT_EQ(RoundEps(-2.5), -2);
}

TEST(KRNCommon2d, VectorAngles) {
  EXPECT_DOUBLE_EQ(VectorAngle({-1, 0}), KRNPi);
  EXPECT_DOUBLE_EQ(VectorAngle({-1, -1e-300}), KRNPi);
  EXPECT_DOUBLE_EQ(VectorAngle({-1, -1e-13}), KRNPi);
  EXPECT_NEAR(VectorAngle({-1, -1e-6}), -KRNPi + 1e-6, 1e-12);
  EXPECT_EQ(VectorAngle({std::numeric_limits<double>::quiet_NaN(), 1}), 0);

  EXPECT_DOUBLE_EQ(VectorAngleBetween({1, 0}, {0, 1}), KRNHalfPi);
  EXPECT_DOUBLE_EQ(VectorAngleBetween({1, 0}, {-1, 1e-7}), KRNPi);
  EXPECT_DOUBLE_EQ(VectorAngleBetween({0, 0}, {1, 0}), KRNHalfPi);

  const struct {
    TKRNVector2d A, B;
    bool Cw;
    double Angle;
  } Sweeps[] = {{{1, 0}, {0, 1}, false, KRNHalfPi}, {{1, 0}, {0, 1}, true, KRNThreeHalfPi},
                {{1, 0}, {0, -1}, false, KRNThreeHalfPi}, {{2, 0}, {3, 0}, false, 0},
                {{1, 0}, {-1, 0}, true, KRNPi}, {{0, 0}, {1, 0}, false, KRNHalfPi}};
  for (const auto& S : Sweeps) {
    SCOPED_TRACE(testing::Message() << S.A << S.B << S.Cw);
    EXPECT_NEAR(VectorAngleFromTo(S.A, S.B, S.Cw), S.Angle, 1e-12);
  }
}

TEST(KRNCommon2d, VectorPredicatesAndOperations) {
  EXPECT_TRUE(VectorIsParallel({1, 1}, {-2, -2}));
  EXPECT_FALSE(VectorIsParallel({1, 0}, {1, 0.01}));
  EXPECT_TRUE(VectorIsPerpendicular({0, 3}, {5, 0}));
  EXPECT_TRUE(VectorIsUnit({0.6, 0.8}));
  EXPECT_TRUE(VectorIsZero({0.001, -0.001}));
  // a square neighbourhood, not a circle
  EXPECT_TRUE(PointIsSame({0, 0}, {0.001, 0.001}));
  EXPECT_FALSE(PointIsSame({0, 0}, {0.0011, 0}));
  EXPECT_PT_NEAR(VectorNormalized({3, 4}), (TKRNVector2d{0.6, 0.8}), 1e-15);
  EXPECT_PT_NEAR(VectorNormalized({1e-4, 0}), (TKRNVector2d{0, 0}), 0);
  EXPECT_PT_NEAR(VectorRotate({1, 0}, KRNHalfPi), (TKRNVector2d{0, 1}), 1e-15);
  EXPECT_PT_NEAR(VectorPerpendicular({1, 2}, true), (TKRNVector2d{2, -1}), 0);
  EXPECT_PT_NEAR(VectorPerpendicular({1, 2}, false), (TKRNVector2d{-2, 1}), 0);
  EXPECT_PT_NEAR(VectorReflect({1, 1}, {1, 0}), (TKRNVector2d{1, -1}), 1e-12);
  EXPECT_DOUBLE_EQ(VectorCross({1, 0}, {0, 1}), 1);
  EXPECT_DOUBLE_EQ(VectorDistance({1, 1}, {4, 5}), 5);
}

TEST(KRNCommon2d, VectorText) {
  EXPECT_EQ(VectorAsString({1.5, -2}), "1.500000,-2.000000");
  TKRNVector2d V{9, 9};
  EXPECT_TRUE(VectorFromString(" 3.25 , -1e2", V));
  EXPECT_PT_NEAR(V, (TKRNVector2d{3.25, -100}), 0);
  for (const char* Bad : {"", "1", "1,", ",2", "a,b", "1;2"}) {
    SCOPED_TRACE(Bad);
    TKRNVector2d W{7, 7};
    EXPECT_FALSE(VectorFromString(Bad, W));
    EXPECT_EQ(W.X, 7);
  }
}

TEST(KRNCommon2d, Boxes) {
  const TKRNBox2d A = BoxOfPoints({2, 3}, {0, 1});
  EXPECT_EQ(A.MinX(), 0);
  EXPECT_EQ(A.MaxY(), 3);
  const TKRNBox2d Touching{{2, 0}, {4, 3}};
  TKRNBox2d R;
  EXPECT_FALSE(BoxIntersection(A, Touching, R));  // sharing a side is no overlap
  EXPECT_TRUE(BoxIsTouching(A, Touching, true));
  EXPECT_FALSE(BoxIsTouching(A, Touching, false));
  EXPECT_TRUE(BoxIntersection(A, TKRNBox2d{{1, 2}, {5, 5}}, R));
  EXPECT_EQ(R.MinX(), 1);
  EXPECT_EQ(R.MaxY(), 3);
  EXPECT_TRUE(BoxIsOverlapping(A, TKRNBox2d{{1, 2}, {5, 5}}, false));
  EXPECT_FALSE(BoxIsOverlapping(A, Touching, false));
  EXPECT_TRUE(BoxIsOverlapping(A, Touching, true));
  const TKRNBox2d U = BoxUnion(A, Touching);
  EXPECT_EQ(U.MaxX(), 4);
  EXPECT_EQ(U.MinY(), 0);
  EXPECT_TRUE(BoxIsValid(TKRNBox2d{{1, 1}, {1, 1}}));           // degenerate
  EXPECT_TRUE(BoxIsValid(TKRNBox2d{{1, 1}, {1 - 0.0005, 2}}));  // inverted within tolerance
  EXPECT_FALSE(BoxIsValid(TKRNBox2d{{1, 1}, {0, 2}}));
}

TEST(KRNCommon2d, ArcTypes) {
  const struct {
    TKRNArcType T, Opposite, Complement;
    bool Clockwise, Large;
    const char* Word;
  } Cases[] = {{atLine, atLine, atLine, false, false, "ltLine"},
               {atACS, atCS, atACL, false, false, "ltACSArc"},
               {atCS, atACS, atCL, true, false, "ltCSArc"},
               {atACL, atCL, atACS, false, true, "ltACLArc"},
               {atCL, atACL, atCS, true, true, "ltCLArc"}};
  for (const auto& C : Cases) {
    SCOPED_TRACE(C.Word);
    EXPECT_EQ(ArcTypeOpposite(C.T), C.Opposite);
    EXPECT_EQ(ArcTypeComplement(C.T), C.Complement);
    EXPECT_EQ(ArcTypeIsClockwise(C.T), C.Clockwise);
    EXPECT_EQ(ArcTypeIsLarge(C.T), C.Large);
    EXPECT_EQ(ArcTypeIsArc(C.T), C.T != atLine);
    EXPECT_STREQ(ArcTypeToString(C.T), C.Word);
    EXPECT_EQ(ArcTypeFromString(C.Word), C.T);
    if (C.T != atLine) {
      EXPECT_EQ(ArcTypeOf(C.Clockwise, C.Large), C.T);
    }
  }
  EXPECT_EQ(ArcTypeFromString("LTCLARC"), atCL);
  EXPECT_EQ(ArcTypeFromString("arc"), atLine);
}
