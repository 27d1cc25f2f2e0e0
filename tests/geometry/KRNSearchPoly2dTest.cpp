#include "KRNPositionFunc2d.h"
#include "KRNSearchPoly2d.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <set>

namespace {

struct TSeg {
  TKRNVector2d S, E;
  double R = 0;
  TKRNArcType T = atLine;
};

// Segments tagged 1, 2, 3... in order.
std::unique_ptr<TKRNSearchPoly2d> Make(const std::vector<TSeg>& ASegs) {
  auto P = std::make_unique<TKRNSearchPoly2d>();
  std::intptr_t Tag = 1;
  for (const TSeg& S : ASegs)
    P->Add(KRNMakeSegment(S.S, S.E, S.R, S.T).release(), Tag++, true);
  return P;
}

std::vector<TSeg> Square(double X0, double Y0, double X1, double Y1) {
  return {{{X0, Y0}, {X1, Y0}}, {{X1, Y0}, {X1, Y1}}, {{X1, Y1}, {X0, Y1}}, {{X0, Y1}, {X0, Y0}}};
}

std::vector<TSeg> operator+(std::vector<TSeg> A, const std::vector<TSeg>& B) {
  A.insert(A.end(), B.begin(), B.end());
  return A;
}

std::set<std::intptr_t> AsSet(const std::vector<std::intptr_t>& A) { return {A.begin(), A.end()}; }

}  // namespace

TEST(TKRNSearchPoly2d, FindsTheFigureAroundThePoint) {
  // two squares sharing an edge, a dangling line, an inner island, a D of line and arc
  const std::vector<TSeg> Touching = Square(0, 0, 10, 10) + std::vector<TSeg>{{{10, 0}, {20, 0}}, {{20, 0}, {20, 10}}, {{20, 10}, {10, 10}}};
  const std::vector<TSeg> Dangling = Square(0, 0, 10, 10) + std::vector<TSeg>{{{10, 5}, {15, 5}}};
  const std::vector<TSeg> Island = Square(0, 0, 10, 10) + Square(4, 4, 6, 6);
  const std::vector<TSeg> DShape = {{{0, -5}, {0, 5}}, {{0, 5}, {0, -5}, 5, atCS}};
  const std::vector<TSeg> Diamond = {{{0, -1}, {1, 0}}, {{1, 0}, {0, 1}}, {{0, 1}, {-1, 0}}, {{-1, 0}, {0, -1}}};
  const struct {
    const char* Name;
    std::vector<TSeg> Segs;
    TKRNVector2d At;
    bool NeedRing, NeedIn, Ok;
    std::set<std::intptr_t> Tags;
  } Cases[] = {
      {"inside a square", Square(0, 0, 10, 10), {3, 4}, false, true, true, {1, 2, 3, 4}},
      {"outside a square", Square(0, 0, 10, 10), {-3, 4}, false, true, false, {}},
      {"left of two touching squares", Touching, {5, 5}, false, true, true, {1, 2, 3, 4}},
      {"right of two touching squares", Touching, {15, 5}, false, true, true, {2, 5, 6, 7}},
      {"a dangling line is not part of it", Dangling, {5, 5}, false, true, true, {1, 2, 3, 4}},
      {"between a square and its island", Island, {2, 5}, false, true, false, {}},
      {"between them as a ring", Island, {2, 5}, true, true, true, {1, 2, 3, 4}},
      {"right of the island as a ring", Island, {8, 5}, true, true, true, {1, 2, 3, 4}},
      {"inside the island", Island, {5, 5.5}, false, true, true, {5, 6, 7, 8}},
      {"level with a vertex", Diamond, {0, 0}, false, true, true, {1, 2, 3, 4}},
      {"level with a vertex, off centre", Diamond, {-0.5, 0}, false, true, true, {1, 2, 3, 4}},
      {"a region with an arc", DShape, {2, 1}, false, true, true, {1, 2}},
      {"left of the D", DShape, {-2, 1}, false, true, false, {}},
      {"nothing to the right", Square(0, 0, 10, 10), {30, 5}, false, false, false, {}},
  };
  for (const auto& C : Cases) {
    SCOPED_TRACE(C.Name);
    auto Search = Make(C.Segs);
    std::unique_ptr<TKRNPolygon2d> Poly;
    std::vector<std::intptr_t> Tags;
    EXPECT_EQ(Search->FindSmallPoly(C.At, Poly, Tags, C.NeedRing, C.NeedIn), C.Ok);
    EXPECT_EQ(AsSet(Tags), C.Tags);
    EXPECT_EQ(bool(Poly), C.Ok);
    if (Poly) {
      EXPECT_EQ(Tags.size(), C.Tags.size());  // each segment once
      EXPECT_NE(TKRNPositionFunc2d::PointPosition(C.At, *Poly), ppOut);
    }
  }
}

TEST(TKRNSearchPoly2d, ArcsWalkedBackwardsAreReversed) {
  // a circle of two half arcs, both drawn from left to right
  auto Search = Make({{{-5, 0}, {5, 0}, 5, atCS}, {{-5, 0}, {5, 0}, 5, atACS}});
  std::unique_ptr<TKRNPolygon2d> Poly;
  std::vector<std::intptr_t> Tags;
  std::vector<bool> Reversed;
  ASSERT_TRUE(Search->FindSmallPoly({0, 1}, Poly, Tags, Reversed, false, true));
  ASSERT_EQ(Reversed.size(), 2u);
  EXPECT_NE(Reversed[0], Reversed[1]);
  EXPECT_NEAR(Poly->Area(), KRNPi * 25, 1e-6);
  EXPECT_GT(Poly->SignedArea(), 0);  // walked anticlockwise: the figure is on the left
}

TEST(TKRNSearchPoly2d, SplitAllBreaksCrossingLines) {
  // a hash sign of four long lines: the middle cell is found only after splitting
  TKRNExtSeg2dList List;
  List.Add(KRNMakeSegment({0, 3}, {10, 3}, 0, atLine), 1);
  List.Add(KRNMakeSegment({0, 6}, {10, 6}, 0, atLine), 2);
  List.Add(KRNMakeSegment({3, 0}, {3, 10}, 0, atLine), 3);
  List.Add(KRNMakeSegment({6, 0}, {6, 10}, 0, atLine), 4);
  List.SplitAll(KRNEpsilon);
  EXPECT_EQ(List.Count(), 12);
  TKRNSearchPoly2d Search(List, true);
  std::unique_ptr<TKRNPolygon2d> Poly;
  std::vector<std::intptr_t> Tags;
  ASSERT_TRUE(Search.FindSmallPoly({4.5, 4.5}, Poly, Tags, false, true));
  EXPECT_EQ(AsSet(Tags), (std::set<std::intptr_t>{1, 2, 3, 4}));
  EXPECT_NEAR(Poly->Area(), 9, 1e-9);
  EXPECT_FALSE(Search.FindSmallPoly({1, 1}, Poly, Tags, false, true));  // the corners are open
}

TEST(TKRNExtSeg2dList, GetSegsAgreesWithAScan) {
  TKRNExtSeg2dList List;
  for (int I = 0; I < 300; ++I) {
    const double X = (I * 37) % 101, Y = (I * 53) % 97;
    List.Add(KRNMakeSegment({X, Y}, {X + (I % 7), Y + (I % 5) - 2}, 0, atLine), I);
  }
  for (const TKRNBox2d& B : {TKRNBox2d{{10, 10}, {30, 20}}, TKRNBox2d{{-5, -5}, {0, 0}},
                             TKRNBox2d{{50, 40}, {1e300, 40}}, TKRNBox2d{{200, 200}, {300, 300}}}) {
    std::vector<int> Scan;
    for (int I = 0; I < List.Count(); ++I)
      if (BoxIsOverlapping(List.Get(I).Box, B, true, KRNEpsilon))
        Scan.push_back(I);
    EXPECT_EQ(List.GetSegs(B), Scan);
  }
}

TEST(TKRNSegListConnectInfos, EndsWithinToleranceJoinAcrossHashCells) {
  // Ends are hashed on cells four tolerances wide. Each corner below has its two ends
  // 0.0006 apart on either side of a cell boundary, the later end in the lower cell in
  // x at one corner and in y at another, so only a look into the next cells joins them.
  const double Cell = 4 * KRNEpsilon, C = 1000 * Cell, D = 0.0003;
  TKRNExtSeg2dList List;
  List.Add(KRNMakeSegment({0, 0}, {C + D, 0}, 0, atLine), 1);
  List.Add(KRNMakeSegment({C - D, 0}, {C, C + D}, 0, atLine), 2);
  List.Add(KRNMakeSegment({C, C - D}, {0, C}, 0, atLine), 3);
  List.Add(KRNMakeSegment({0, C}, {0, 0}, 0, atLine), 4);
  TKRNSegListConnectInfos Infos;
  Infos.BuildConnectInfos(List);
  EXPECT_EQ(Infos.NodeOf(0, 1), Infos.NodeOf(1, 0));
  EXPECT_EQ(Infos.NodeOf(1, 1), Infos.NodeOf(2, 0));
  EXPECT_TRUE(Infos.FindBranches().empty());
  TKRNSearchPoly2d Search(List, true);
  std::unique_ptr<TKRNPolygon2d> Poly;
  std::vector<std::intptr_t> Tags;
  EXPECT_TRUE(Search.FindSmallPoly({C / 2, C / 2}, Poly, Tags, false, true));
  EXPECT_EQ(AsSet(Tags), (std::set<std::intptr_t>{1, 2, 3, 4}));
}

TEST(TKRNSegListConnectInfos, ASegmentClosedOnItselfIsNoDeadEnd) {
  // One large arc whose ends lie within tolerance: a whole circle in one segment.
  TKRNExtSeg2dList List;
  List.Add(KRNMakeSegment({5, -0.0002}, {5, 0.0002}, 5, atACL), 1);
  List.Add(KRNMakeSegment({20, 0}, {30, 0}, 0, atLine), 2);  // a real dead end beside it
  TKRNSegListConnectInfos Infos;
  Infos.BuildConnectInfos(List);
  ASSERT_EQ(Infos.NodeOf(0, 0), Infos.NodeOf(0, 1));
  EXPECT_EQ(Infos.FindBranches(), std::vector<int>{1});
  Infos.Execute();
  EXPECT_TRUE(Infos.Alive(0));
  EXPECT_FALSE(Infos.Alive(1));
}
