#include "KRNModifyFunc2d.h"
#include "KRNOffsetFunc2d.h"

#include <gtest/gtest.h>

#include <cmath>

namespace {

void ExpectPt(const TKRNVector2d& A, TKRNVector2d B, double ATol = 1e-9) {
  EXPECT_NEAR(A.X, B.X, ATol);
  EXPECT_NEAR(A.Y, B.Y, ATol);
}

}  // namespace

TEST(TKRNOffsetFunc2d, LinesAndBothArcDirections) {
  TKRNLine2d L({0, 0}, {10, 0});
  EXPECT_TRUE(TKRNOffsetFunc2d::Offset(L, 2));  // right of the direction of travel
  ExpectPt(L.StartPt(), {0, -2});
  ExpectPt(L.EndPt(), {10, -2});
  EXPECT_TRUE(TKRNOffsetFunc2d::Offset(static_cast<TKRNCustomLine2d&>(L), -5));
  ExpectPt(L.StartPt(), {0, 3});
  TKRNLine2d Dot({1, 1}, {1, 1});
  EXPECT_FALSE(TKRNOffsetFunc2d::Offset(Dot, 1));
  ExpectPt(Dot.EndPt(), {1, 1});

  const struct {
    const char* Name;
    TKRNArcType Type;
    double Dist;
    bool Ok;
    double Radius;
  } Cases[] = {
      {"anticlockwise outward", atACS, 2, true, 12},
      {"anticlockwise inward", atACS, -4, true, 6},
      {"anticlockwise to nothing", atACS, -10 + KRNEpsilon, false, 10},
      {"clockwise inward", atCS, 9, true, 1},
      {"clockwise to nothing", atCS, 10, false, 10},
      {"clockwise outward", atCS, -3, true, 13},
  };
  for (const auto& C : Cases) {
    SCOPED_TRACE(C.Name);
    const TKRNVector2d S{10, 0}, E{0, 10};
    TKRNArc2d A(S, E, 10, C.Type);
    const TKRNVector2d Centre = A.CenterPt();
    EXPECT_EQ(TKRNOffsetFunc2d::Offset(static_cast<TKRNCustomLine2d&>(A), C.Dist), C.Ok);
    EXPECT_NEAR(A.Radius(), C.Radius, 1e-9);
    ExpectPt(A.CenterPt(), Centre, 1e-6);
    EXPECT_NEAR(VectorDistance(A.StartPt(), Centre), C.Radius, 1e-9);
  }
  // a degenerate arc is offset as its chord
  TKRNArc2d Bad({0, 0}, {10, 0}, 2, atACS);
  EXPECT_TRUE(TKRNOffsetFunc2d::Offset(Bad, 1));
  EXPECT_EQ(Bad.ArcType(), atLine);
  ExpectPt(Bad.StartPt(), {0, -1});
}

TEST(TKRNBreakFunc2d, EachPositionOfTheBreakPoint) {
  const TKRNLine2d L({0, 0}, {10, 0});
  const struct {
    const char* Name;
    TKRNVector2d At;
    bool Ok;
  } Cases[] = {{"start", {0, 0}, false},
               {"within tolerance of the end", {10.0005, 0}, false},
               {"middle", {4, 0}, true},
               {"near the end", {9.99, 0}, true}};
  for (const auto& C : Cases) {
    SCOPED_TRACE(C.Name);
    TKRNPtr<TKRNCustomLine2d> P1, P2;
    EXPECT_EQ(TKRNBreakFunc2d::BreakAt(L, C.At, P1, P2), C.Ok);
    EXPECT_EQ(bool(P1), C.Ok);
    EXPECT_EQ(bool(P2), C.Ok);
    if (C.Ok) {
      ExpectPt(P1->StartPt(), {0, 0});
      ExpectPt(P1->EndPt(), C.At);
      ExpectPt(P2->EndPt(), {10, 0});
    }
  }
  // Break projects the reference point onto the segment, within its ends
  TKRNPtr<TKRNCustomLine2d> P1, P2;
  ASSERT_TRUE(TKRNBreakFunc2d::Break(L, {3, 7}, P1, P2));
  ExpectPt(P1->EndPt(), {3, 0});
  EXPECT_FALSE(TKRNBreakFunc2d::Break(L, {-5, 2}, P1, P2));

  // arcs keep their turn; the parts of a large arc are sized by their own sweep
  const TKRNArc2d Large({10, 0}, {0, -10}, 10, atACL);  // three quarters, anticlockwise
  ASSERT_TRUE(TKRNBreakFunc2d::BreakAt(Large, {-10, 0}, P1, P2));
  const auto* A1 = dynamic_cast<TKRNArc2d*>(P1.get());
  const auto* A2 = dynamic_cast<TKRNArc2d*>(P2.get());
  ASSERT_TRUE(A1 && A2);
  EXPECT_EQ(A1->ArcType(), atACS);
  EXPECT_EQ(A2->ArcType(), atACS);
  ExpectPt(A1->CenterPt(), {0, 0}, 1e-9);
  ExpectPt(A2->CenterPt(), {0, 0}, 1e-9);
  EXPECT_NEAR(A1->Length() + A2->Length(), Large.Length(), 1e-9);

  // A first part past half the circle stays large, the rest is small; the same clockwise.
  const double H = 10 / std::sqrt(2.0);
  const struct {
    const char* Name;
    TKRNArc2d Arc;
    TKRNVector2d At;
    TKRNArcType Type1, Type2;
  } Uneven[] = {
      {"anticlockwise, 225 then 45 degrees", TKRNArc2d({10, 0}, {0, -10}, 10, atACL), {-H, -H}, atACL, atACS},
      {"anticlockwise, 45 then 225 degrees", TKRNArc2d({10, 0}, {0, -10}, 10, atACL), {H, H}, atACS, atACL},
      {"clockwise, 225 then 45 degrees", TKRNArc2d({10, 0}, {0, 10}, 10, atCL), {-H, H}, atCL, atCS},
  };
  for (const auto& C : Uneven) {
    SCOPED_TRACE(C.Name);
    ASSERT_TRUE(TKRNBreakFunc2d::BreakAt(C.Arc, C.At, P1, P2));
    const auto* U1 = dynamic_cast<TKRNArc2d*>(P1.get());
    const auto* U2 = dynamic_cast<TKRNArc2d*>(P2.get());
    ASSERT_TRUE(U1 && U2);
    EXPECT_EQ(U1->ArcType(), C.Type1);
    EXPECT_EQ(U2->ArcType(), C.Type2);
    ExpectPt(U1->CenterPt(), {0, 0}, 1e-9);
    EXPECT_NEAR(U1->Length() + U2->Length(), C.Arc.Length(), 1e-9);
  }
}

TEST(TKRNMirrorFunc2d, MirrorTwiceGivesTheOriginal) {
  const TKRNBeeline2d Axis({0, 0}, {1, 1});
  TKRNArc2d A({10, 0}, {0, 10}, 10, atACS);
  TKRNMirrorFunc2d::Mirror(A, Axis);
  EXPECT_EQ(A.ArcType(), atCS);
  ExpectPt(A.StartPt(), {0, 10});
  ExpectPt(A.CenterPt(), {0, 0}, 1e-9);  // the same arc, walked the other way
  TKRNMirrorFunc2d::Mirror(A, Axis);
  EXPECT_EQ(A.ArcType(), atACS);
  ExpectPt(A.StartPt(), {10, 0});

  TKRNPolygon2d P;
  P.List().AddLinePoint({0, 0});
  P.List().AddArcPoint({4, 0}, atACL, 3);
  P.List().AddLinePoint({4, 4});
  const double Area = P.SignedArea();
  TKRNMirrorFunc2d::Mirror(static_cast<TKRNCustomPolygon2d&>(P), TKRNBeeline2d({0, 7}, {1, 0}));
  EXPECT_EQ(P.List()[1]->ArcType(), atCL);
  ExpectPt(P.List().Points(2), {4, 10});
  EXPECT_NEAR(P.SignedArea(), -Area, 1e-9);  // orientation reversed
  TKRNMirrorFunc2d::Mirror(static_cast<TKRNCustomPolygon2d&>(P), TKRNBeeline2d({0, 7}, {1, 0}));
  EXPECT_NEAR(P.SignedArea(), Area, 1e-9);

  TKRNRectangle2d R({5, 0}, 2, 1, 0.3);
  TKRNMirrorFunc2d::Mirror(static_cast<TKRNCustomPolygon2d&>(R), TKRNBeeline2d({0, 0}, {0, 1}));
  ExpectPt(R.Corner(0), TKRNRectangle2d({-5, 0}, 2, 1, KRNPi - 0.3).Corner(0), 1e-9);
}

TEST(TKRNRotateFunc2d, PointsSegmentsAndFigures) {
  ExpectPt(TKRNRotateFunc2d::Rotate({2, 1}, {1, 1}, KRNPi / 2), {1, 2});
  const TKRNBeeline2d B = TKRNRotateFunc2d::Rotate(TKRNBeeline2d({2, 0}, {1, 0}), {0, 0}, KRNPi);
  ExpectPt(B.Point, {-2, 0});
  ExpectPt(B.Vector, {-1, 0});
  TKRNArc2d A({10, 0}, {0, 10}, 10, atACS);
  TKRNRotateFunc2d::Rotate(A, {0, 0}, KRNPi / 2);
  ExpectPt(A.EndPt(), {-10, 0});
  EXPECT_EQ(A.ArcType(), atACS);
  TKRNCircle2d C({3, 0}, 1);
  TKRNRotateFunc2d::Rotate(static_cast<TKRNCustomPolygon2d&>(C), {0, 0}, -KRNPi / 2);
  ExpectPt(C.CenterPt(), {0, -3});
  TKRNMoveFunc2d::Move(static_cast<TKRNCustomPolygon2d&>(C), {1, 1});
  ExpectPt(C.CenterPt(), {1, -2});
}

TEST(TKRNStretchFunc2d, BoxesHoldingOneOrBothEnds) {
  const TKRNBox2d Box{{8, -1}, {12, 1}};
  const TKRNVector2d V{0, 5};
  TKRNLine2d One({0, 0}, {10, 0});
  TKRNStretchFunc2d::Stretch(One, Box, V);
  ExpectPt(One.StartPt(), {0, 0});
  ExpectPt(One.EndPt(), {10, 5});
  TKRNLine2d Both({9, 0}, {11, 0});
  TKRNStretchFunc2d::Stretch(Both, Box, V);
  ExpectPt(Both.StartPt(), {9, 5});
  ExpectPt(Both.EndPt(), {11, 5});
  TKRNLine2d Edge({0, 0}, {8, 1});  // on the box's corner: in
  TKRNStretchFunc2d::Stretch(Edge, Box, V);
  ExpectPt(Edge.EndPt(), {8, 6});

  // an arc pulled past its diameter becomes a line
  TKRNArc2d A({0, 0}, {10, 0}, 6, atACS);
  TKRNStretchFunc2d::Stretch(A, Box, {1, 0});
  EXPECT_EQ(A.ArcType(), atACS);
  TKRNStretchFunc2d::Stretch(A, Box, {2, 0});
  EXPECT_EQ(A.ArcType(), atLine);

  // a rectangle the box touches becomes a general polygon; one outside stays
  TKRNMultiPolygon2d M;
  M.Add(new TKRNOrthoRectangle2d({9, 0}, {20, 5}));
  M.Add(new TKRNOrthoRectangle2d({30, 30}, {40, 40}));
  TKRNStretchFunc2d::Stretch(M, Box, V);
  EXPECT_EQ(M.GetItems(0)->PolyType(), ptPolygon);
  EXPECT_EQ(M.GetItems(1)->PolyType(), ptOrthoRectangle);
  const auto& List = static_cast<TKRNPolygon2d*>(M.GetItems(0))->List();
  int AtOldCorner = 0, AtOtherCorner = 0;
  for (int I = 0; I < List.Count(); ++I) {
    AtOldCorner += PointIsSame(List.Points(I), {9, 0});
    AtOtherCorner += PointIsSame(List.Points(I), {20, 0});
  }
  EXPECT_EQ(List.Count(), 4);
  EXPECT_EQ(AtOldCorner, 0);  // the corner in the box moved
  EXPECT_EQ(AtOtherCorner, 1);
}
