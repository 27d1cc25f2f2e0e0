#include "GeometryTestUtils.h"
#include "KRN2dObjectPool.h"
#include "KRNGeo2DTypes.h"
#include "KRNPolygon2d.h"

#include <cmath>
#include <random>


TEST(KRNArc2d, Validity) {
  const struct {
    TKRNVector2d S, E;
    double R;
    TKRNArcType T;
    bool Validaty, ValidArc;
  } Cases[] = {
      {{0, 0}, {2, 0}, 1, atACS, true, true},          // radius half the chord
      {{0, 0}, {2, 0}, 0.9995, atACS, true, true},     // a hair below, within KRNEpsilon
      {{0, 0}, {2, 0}, 0.998, atACS, false, false},    // too short
      {{0, 0}, {1e-9, 0}, 1, atACS, false, false},     // the same end points
      {{0, 0}, {0.01, 0}, 10000, atCS, false, false},  // chord / radius below 5e-06
      {{0, 0}, {0.01, 0}, 1000, atCS, true, true},
      {{0, 0}, {2, 0}, 1, atLine, true, false},        // a valid straight segment, not an arc
      {{0, 0}, {0, 0}, 0, atLine, false, false},
  };
  for (const auto& C : Cases) {
    SCOPED_TRACE(testing::Message() << C.S << C.E << " R=" << C.R);
    EXPECT_EQ(TKRNArc2d::IsValidaty(C.S, C.E, C.R, C.T), C.Validaty);
    EXPECT_EQ(TKRNArc2d::IsValidArc(C.S, C.E, C.R, C.T), C.ValidArc);
    TKRNArc2d A(C.S, C.E, C.R, C.T);
    A.Validate();
    EXPECT_EQ(A.ArcType(), C.ValidArc ? C.T : atLine);
  }
}

TEST(KRNArc2d, CentreFromEndsRadiusAndType) {
  const struct {
    TKRNArcType T;
    TKRNVector2d C;
    double Sweep;
  } Cases[] = {{atACS, {0, -1}, KRNHalfPi},
               {atCS, {0, 1}, KRNHalfPi},
               {atACL, {0, 1}, KRNThreeHalfPi},
               {atCL, {0, -1}, KRNThreeHalfPi}};
  for (const auto& C : Cases) {
    SCOPED_TRACE(ArcTypeToString(C.T));
    const TKRNArc2d A({1, 0}, {-1, 0}, R2(), C.T);
    EXPECT_PT_NEAR(A.CenterPt(), C.C, 1e-12);
    EXPECT_NEAR(A.Sweep(), C.Sweep, 1e-12);
    EXPECT_NEAR(A.Length(), R2() * C.Sweep, 1e-12);
    const TKRNVector2d M = A.MiddlePoint();
    EXPECT_NEAR(VectorDistance(M, C.C), R2(), 1e-12);
  }
  // a radius a hair below half the chord puts the centre on the chord
  TKRNVector2d C;
  EXPECT_TRUE(TKRNArc2d::CalcCenterPt({0, 0}, {2, 0}, 0.9995, atACS, C));
  EXPECT_PT_NEAR(C, (TKRNVector2d{1, 0}), 0);
  // an invalid arc reports false and the chord's midpoint
  EXPECT_FALSE(TKRNArc2d::CalcCenterPt({0, 0}, {2, 0}, 0.5, atACS, C));
  EXPECT_PT_NEAR(C, (TKRNVector2d{1, 0}), 0);
}

TEST(KRNArc2d, BoxTakesTheExtremesInsideTheSweep) {
  const struct {
    const char* Name;
    TKRNVector2d S, E;
    double R;
    TKRNArcType T;
    TKRNBox2d Box;
  } Cases[] = {
      {"upper half", {1, 0}, {-1, 0}, 1, atACS, {{-1, 0}, {1, 1}}},
      {"lower half clockwise", {-1, 0}, {1, 0}, 1, atACS, {{-1, -1}, {1, 0}}},
      {"wrapping through zero", Polar(1, -KRNPi / 4), Polar(1, KRNPi / 4), 1, atACS,
       {{std::sqrt(0.5), -std::sqrt(0.5)}, {1, std::sqrt(0.5)}}},
      {"three quarters clockwise", {1, 0}, {0, 1}, 1, atCL, {{-1, -1}, {1, 1}}},
      {"quarter clockwise", {0, 1}, {1, 0}, 1, atCS, {{0, 0}, {1, 1}}},
      {"straight", {0, 0}, {3, -1}, 0, atLine, {{0, -1}, {3, 0}}},
  };
  for (const auto& C : Cases) {
    SCOPED_TRACE(C.Name);
    const TKRNBox2d B = TKRNArc2d::ArcBox(C.S, C.E, C.R, C.T);
    EXPECT_NEAR(B.MinX(), C.Box.MinX(), 1e-12);
    EXPECT_NEAR(B.MinY(), C.Box.MinY(), 1e-12);
    EXPECT_NEAR(B.MaxX(), C.Box.MaxX(), 1e-12);
    EXPECT_NEAR(B.MaxY(), C.Box.MaxY(), 1e-12);
  }
}

// The box by the rule on angles: the end angles about the centre (swapped when clockwise)
// through NormalizeAngle, then the extremes strictly inside the sweep.
TKRNBox2d BoxByAngles(const TKRNVector2d& S, const TKRNVector2d& E, double R, TKRNArcType T) {
  TKRNBox2d B = BoxOfPoints(S, E);
  const TKRNVector2d C = TKRNArc2d::ArcCenterPt(S, E, R, T);
  double A = NormalizeAngle(VectorAngle(VectorSub(S, C)));
  double Bn = NormalizeAngle(VectorAngle(VectorSub(E, C)));
  if (ArcTypeIsClockwise(T)) std::swap(A, Bn);
  const double Q[3] = {KRNHalfPi, KRNPi, KRNThreeHalfPi};
  const bool Wraps = !(Bn > A);
  if (Wraps) B.MaxX() = C.X + R;
  const auto Inside = [&](double AQ) { return Wraps ? (AQ > A || AQ < Bn) : (A < AQ && AQ < Bn); };
  if (Inside(Q[0])) B.MaxY() = C.Y + R;
  if (Inside(Q[1])) B.MinX() = C.X - R;
  if (Inside(Q[2])) B.MinY() = C.Y - R;
  return B;
}

// Ends at random angles, on the axes, a hair off them, and in and around the last
// KRNEpsilon of a turn (which counts as before zero), for every arc type.
TEST(KRNArc2d, BoxAgreesWithTheRuleOnAngles) {
  std::mt19937 Rng(11);
  std::uniform_real_distribution<double> U(0, 1);
  const double Special[] = {0, KRNHalfPi, KRNPi, KRNThreeHalfPi, 1e-9, KRNHalfPi - 1e-9, KRNPi + 1e-9,
                            -1e-9, -KRNEpsilon / 2, -KRNEpsilon - 1e-7, -KRNEpsilon + 1e-7, KRNEpsilon / 2};
  const auto Angle = [&] {
    return U(Rng) < 0.5 ? Special[size_t(U(Rng) * std::size(Special))] : U(Rng) * KRNTwoPi;
  };
  int Wrapping = 0, Plain = 0;
  for (int I = 0; I < 20000; ++I) {
    const TKRNVector2d C{U(Rng) * 2000 - 1000, U(Rng) * 2000 - 1000};
    const double R = 0.5 + U(Rng) * 500;
    const double A0 = Angle(), A1 = Angle();
    const TKRNVector2d S{C.X + R * std::cos(A0), C.Y + R * std::sin(A0)};
    const TKRNVector2d E{C.X + R * std::cos(A1), C.Y + R * std::sin(A1)};
    const TKRNArcType T = TKRNArcType(1 + I % 4);
    if (!TKRNArc2d::IsValidArc(S, E, R, T)) continue;
    SCOPED_TRACE(testing::Message() << S << E << " R=" << R << " " << ArcTypeToString(T));
    const TKRNBox2d Want = BoxByAngles(S, E, R, T), Got = TKRNArc2d::ArcBox(S, E, R, T);
    ASSERT_EQ(Got.MinX(), Want.MinX());
    ASSERT_EQ(Got.MinY(), Want.MinY());
    ASSERT_EQ(Got.MaxX(), Want.MaxX());
    ASSERT_EQ(Got.MaxY(), Want.MaxY());
    ++(Want.MaxX() == C.X + R ? Wrapping : Plain);
  }
  EXPECT_GT(Wrapping, 1000);
  EXPECT_GT(Plain, 1000);
}

TEST(KRNArc2d, SamplePoints) {
  const TKRNPoint2dDynArray P = TKRNArc2d::ArcSamplePoint({1, 0}, {-1, 0}, 1, atACS, 36);
  ASSERT_EQ(P.size(), 18u);
  EXPECT_EQ(P.front().X, 1);
  EXPECT_EQ(P.back().X, -1);  // the end exactly
  for (const TKRNVector2d& Q : P) {
    EXPECT_NEAR(VectorLength(Q), 1, 1e-12);
    EXPECT_GE(Q.Y, -1e-12);
  }
  const TKRNPoint2dDynArray Cw = TKRNArc2d::ArcSamplePoint({-1, 0}, {1, 0}, 1, atCS, 36);
  for (const TKRNVector2d& Q : Cw) EXPECT_GE(Q.Y, -1e-12);
  // a tiny arc gives its two ends
  EXPECT_EQ(TKRNArc2d(Polar(1, 0), Polar(1, 0.01), 1, atACS).GetSamplePoint(36).size(), 2u);
  EXPECT_EQ(TKRNLine2d({0, 0}, {5, 5}).GetSamplePoint(36).size(), 2u);
}

TEST(KRNArc2d, ThreePointArcs) {
  const struct {
    const char* Name;
    TKRNVector2d S, M, E;
    bool Arc;
    TKRNArcType T;
    double R;
  } Cases[] = {
      {"obtuse at the middle: small", {1, 0}, Polar(1, KRNPi / 4), {0, 1}, true, atACS, 1},
      {"reversed", {0, 1}, Polar(1, KRNPi / 4), {1, 0}, true, atCS, 1},
      {"right angle at the middle counts as large", {1, 0}, {0, 1}, {-1, 0}, true, atACL, 1},
      {"acute at the middle: large", {1, 0}, {0, -1}, Polar(1, KRNPi / 4), true, atCL, 1},
      {"collinear", {0, 0}, {1, 0}, {2, 0}, false, atLine, 0},
      {"radius above 1e7", {0, 0}, {5000, 0.01}, {10000, 0}, false, atLine, 0},
  };
  for (const auto& C : Cases) {
    SCOPED_TRACE(C.Name);
    const TKRNPtr<TKRNCustomLine2d> L = TKRNArc2d::CreateBy3Points(C.S, C.M, C.E);
    EXPECT_EQ(L->IsArcType(), C.Arc);
    EXPECT_PT_NEAR(L->StartPt(), C.S, 0);
    EXPECT_PT_NEAR(L->EndPt(), C.E, 0);
    if (C.Arc) {
      EXPECT_EQ(L->ArcType(), C.T);
      EXPECT_NEAR(L->Radius(), C.R, 1e-9);
    } else {
      EXPECT_EQ(L->GetType(), otLine2d);
    }
  }
}

TEST(KRNArc2d, ExtendTurnsLengthIntoAngle) {
  const TKRNArc2d Quarter({1, 0}, {0, 1}, 1, atACS);
  const struct {
    double Len;
    TKRNExtendDirection Dir;
    TKRNVector2d S, E;
    TKRNArcType T;
  } Cases[] = {
      {KRNHalfPi, ffForward, {1, 0}, {-1, 0}, atACS},       // sweep pi is still small
      {KRNPi, ffForward, {1, 0}, {0, -1}, atACL},
      {KRNTwoPi, ffForward, {1, 0}, {0, 1}, atACS},         // whole turns drop out
      {-KRNPi / 4, ffForward, {1, 0}, Polar(1, KRNPi / 4), atACS},
      {KRNHalfPi, ffBack, {0, -1}, {0, 1}, atACS},
  };
  for (const auto& C : Cases) {
    SCOPED_TRACE(testing::Message() << C.Len << " " << C.Dir);
    const TKRNPtr<TKRNCustomLine2d> X = Quarter.Extend(C.Len, C.Dir);
    EXPECT_PT_NEAR(X->StartPt(), C.S, 1e-12);
    EXPECT_PT_NEAR(X->EndPt(), C.E, 1e-12);
    EXPECT_EQ(X->ArcType(), C.T);
    EXPECT_PT_NEAR(static_cast<TKRNArc2d&>(*X).CenterPt(), (TKRNVector2d{0, 0}), 1e-9);
  }
  const TKRNArc2d Cw({0, 1}, {1, 0}, 1, atCS);
  const TKRNPtr<TKRNCustomLine2d> X = Cw.Extend(KRNHalfPi, ffForward);
  EXPECT_PT_NEAR(X->EndPt(), (TKRNVector2d{0, -1}), 1e-12);
  EXPECT_EQ(X->ArcType(), atCS);

  TKRNArc2d Inner = Quarter;
  Inner.InnerExtendTo({-5, 0}, ffForward);  // projected radially onto the circle
  EXPECT_PT_NEAR(Inner.EndPt(), (TKRNVector2d{-1, 0}), 1e-12);
  EXPECT_EQ(Inner.ArcType(), atACS);
  Inner.InnerExtendTo({0, -3}, ffBack);
  EXPECT_PT_NEAR(Inner.StartPt(), (TKRNVector2d{0, -1}), 1e-12);
  EXPECT_EQ(Inner.ArcType(), atACL);
}

TEST(KRNLine2d, ExtendMovesTheChosenEnd) {
  const TKRNLine2d L({0, 0}, {10, 0});
  EXPECT_PT_NEAR(L.Extend(5, ffForward)->EndPt(), (TKRNVector2d{15, 0}), 0);
  EXPECT_PT_NEAR(L.Extend(5, ffBack)->StartPt(), (TKRNVector2d{-5, 0}), 0);
  EXPECT_PT_NEAR(L.Extend(-4, ffForward)->EndPt(), (TKRNVector2d{6, 0}), 0);
  EXPECT_PT_NEAR(L.ExtendTo({20, 7}, ffForward)->EndPt(), (TKRNVector2d{20, 0}), 0);
  EXPECT_PT_NEAR(L.GetExtendPt({3, 3}, 2, ffBack), (TKRNVector2d{1, 3}), 0);
  const TKRNLine2d Zero({1, 1}, {1, 1.0001});
  const TKRNPtr<TKRNCustomLine2d> Z = Zero.Extend(5, ffForward);
  EXPECT_PT_NEAR(Z->EndPt(), Zero.EndPt(), 0);  // cloned unchanged
  TKRNLine2d B({0, 0}, {0, 2});
  B.ExtendBoth(1);
  EXPECT_PT_NEAR(B.StartPt(), (TKRNVector2d{0, -1}), 0);
  EXPECT_PT_NEAR(B.EndPt(), (TKRNVector2d{0, 3}), 0);
}

TEST(KRNCustomLine2d, Equality) {
  const TKRNArc2d A({1, 0}, {0, 1}, 1, atACS);
  EXPECT_TRUE(A.IsEqualTo(TKRNArc2d({0, 1}, {1, 0}, 1, atCS)));   // reversed, opposite direction
  EXPECT_FALSE(A.IsEqualTo(TKRNArc2d({0, 1}, {1, 0}, 1, atACS)));  // reversed, same direction: other arc
  EXPECT_FALSE(A.IsEqualTo(TKRNArc2d({1, 0}, {0, 1}, 1, atACL)));  // other centre
  EXPECT_FALSE(A.IsEqualTo(TKRNArc2d({1, 0}, {0, 1}, 1.5, atACS)));
  EXPECT_FALSE(A.IsEqualTo(TKRNLine2d({1, 0}, {0, 1})));
  const TKRNLine2d L({0, 0}, {3, 4});
  EXPECT_TRUE(L.IsEqualTo(TKRNLine2d({3, 4}, {0, 0})));
  EXPECT_TRUE(L.IsEqualTo(TKRNLine2d({0.0005, 0}, {3, 4})));
  EXPECT_FALSE(L.IsEqualTo(A));
}

TEST(KRNCustomLine2d, TangentsAndText) {
  const TKRNArc2d A({1, 0}, {0, 1}, 1, atACS);
  EXPECT_PT_NEAR(A.StartVector(), (TKRNVector2d{0, 1}), 1e-12);
  EXPECT_PT_NEAR(A.EndVector(), (TKRNVector2d{-1, 0}), 1e-12);
  EXPECT_PT_NEAR(A.TangentVectorAtLength(KRNPi / 4), VectorNormalized({-1, 1}), 1e-12);
  EXPECT_PT_NEAR(A.MiddlePoint(), Polar(1, KRNPi / 4), 1e-12);
  EXPECT_EQ(A.AsString(), "(1, 0, 0, 1, 1, ltACSArc)");
  EXPECT_EQ(TKRNLine2d({0, 0.5}, {10, 0}).AsString(), "(0, 0.5, 10, 0, 0, ltLine)");
  TKRNArc2d I = A;
  I.Inverse();
  EXPECT_EQ(I.ArcType(), atCS);
  EXPECT_PT_NEAR(I.CenterPt(), (TKRNVector2d{0, 0}), 1e-12);
  I.InverseXY();  // mirror on y = x: back to the original shape
  EXPECT_TRUE(I.IsEqualTo(A));
}

TEST(KRNCustomLine2d, DropDownAreaAndLengthBetweenY) {
  // half disc: the arc adds its segment to the chord's area
  EXPECT_NEAR(TKRNArc2d({1, 0}, {-1, 0}, 1, atACS).DropDownArea(), KRNHalfPi, 1e-12);
  EXPECT_NEAR(TKRNArc2d({-1, 0}, {1, 0}, 1, atCS).DropDownArea(), -KRNHalfPi, 1e-12);
  EXPECT_DOUBLE_EQ(TKRNLine2d({2, 1}, {0, 1}).DropDownArea(), 2);

  const TKRNArc2d Upper({1, 0}, {-1, 0}, 1, atACS);
  EXPECT_NEAR(Upper.LengthBetweenY(0, 0.5, false), KRNPi / 3, 1e-12);
  EXPECT_NEAR(Upper.LengthBetweenY(-2, 2, false), KRNPi, 1e-12);
  EXPECT_NEAR(Upper.LengthBetweenY(-2, -1, false), 0, 1e-12);
  EXPECT_NEAR(TKRNArc2d({-1, 0}, {1, 0}, 1, atCS).LengthBetweenY(0.5, 0, false), KRNPi / 3, 1e-12);
  const TKRNLine2d V({0, 0}, {0, 10});
  EXPECT_DOUBLE_EQ(V.LengthBetweenY(5, 2, false), 3);
  const TKRNLine2d H({0, 2}, {4, 2});
  EXPECT_DOUBLE_EQ(H.LengthBetweenY(2, 5, false), 0);
  EXPECT_DOUBLE_EQ(H.LengthBetweenY(2, 5, true), 4);
  EXPECT_DOUBLE_EQ(H.LengthBetweenY(0, 5, false), 4);
}

TEST(KRNCustomLine2d, StreamRoundTripAndShortData) {
  TKRNMemoryStream S;
  const TKRNArc2d A({1, 2}, {3, 4}, 5, atCL);
  A.SaveToStream(S);
  EXPECT_EQ(S.Bytes().size(), 16u + 16u + 1u + 8u);
  S.Rewind();
  TKRNArc2d B;
  ASSERT_TRUE(B.LoadFromStream(S));
  EXPECT_TRUE(B.IsEqualTo(A));
  for (size_t Cut = 0; Cut < S.Bytes().size(); ++Cut) {
    TKRNMemoryStream T(std::vector<unsigned char>(S.Bytes().begin(), S.Bytes().begin() + long(Cut)));
    TKRNArc2d C;
    EXPECT_FALSE(C.LoadFromStream(T)) << Cut;
  }
  std::vector<unsigned char> Bad = S.Bytes();
  Bad[32] = 9;  // no such arc type
  TKRNMemoryStream T(Bad);
  EXPECT_FALSE(B.LoadFromStream(T));
}

TEST(KRN2dObjectPool, RecyclesWhenEnabled) {
  TKRN2dObjectPool& Pool = KRN2dObjectPool();
  ASSERT_FALSE(Pool.Enabled());
  Pool.Enable();
  const int Free = Pool.FreeCount(otLine2d);
  EXPECT_EQ(Free, Pool.Capacity(otLine2d));
  TKRNLine2d* Raw;
  {
    TKRNPtr<TKRNLine2d> L = Pool.GetLine({1, 1}, {2, 2});
    Raw = L.get();
    EXPECT_EQ(Pool.FreeCount(otLine2d), Free - 1);
  }
  EXPECT_EQ(Pool.FreeCount(otLine2d), Free);
  TKRNPtr<TKRNLine2d> Again = Pool.GetLine({3, 3}, {4, 4});
  EXPECT_EQ(Again.get(), Raw);  // the same instance, re-initialised
  EXPECT_PT_NEAR(Again->StartPt(), (TKRNVector2d{3, 3}), 0);
  {
    // the edge gives its line back when the last reference goes
    const int Edges = Pool.FreeCount(otEdge2d);
    TKRNEdge2dRef E = Pool.GetEdge(Pool.GetLine({0, 0}, {1, 0}).release());
    TKRNEdge2dRef Copy = E;
    E.reset();
    EXPECT_EQ(Copy->GetLine()->EndPt().X, 1);
    Copy.reset();
    EXPECT_EQ(Pool.FreeCount(otEdge2d), Edges);
    EXPECT_EQ(Pool.FreeCount(otLine2d), Free - 1);
  }
  // another thread has no lists: plain allocations both ways
  std::thread([&] {
    EXPECT_EQ(Pool.FreeCount(otLineVertex2d), -1);
    TKRNPtr<TKRNLine2d> L = Pool.GetLine({0, 0}, {1, 1});
    EXPECT_NE(L.get(), nullptr);
  }).join();
  Pool.Disable();
  Again.reset();
  EXPECT_EQ(Pool.FreeCount(otLine2d), Free - 1);  // freed, not kept
  Pool.DelObject(nullptr);
}
