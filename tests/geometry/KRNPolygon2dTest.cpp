#include "GeometryTestUtils.h"
#include "KRNExceptions.h"
#include "KRNPolygon2d.h"

#include <cmath>
#include <random>

namespace {
std::unique_ptr<TKRNPolygon2d> MakePolygon(std::initializer_list<TKRNVector2d> APoints) {
  auto P = std::make_unique<TKRNPolygon2d>();
  for (const TKRNVector2d& Pt : APoints) P->List().AddLinePoint(Pt);
  return P;
}

// A 2 x 2 square whose top edge is a half circle bulging upwards.
std::unique_ptr<TKRNPolygon2d> ArchedSquare() {
  auto P = std::make_unique<TKRNPolygon2d>();
  P->List().AddLinePoint({0, 0});
  P->List().AddLinePoint({2, 0});
  P->List().AddArcPoint({2, 2}, atACS, 1);
  P->List().AddLinePoint({0, 2});
  return P;
}
}  // namespace

TEST(TKRNVertex2dList, StreamLayoutAndRoundTrip) {
  TKRNVertex2dList L;
  L.AddLinePoint({1, 2});
  L.AddArcPoint({3, 4}, atCS, 5);
  L.Add(new TKRNEllipseArcVertex2d({6, 7}, atACL, 8, 9));
  EXPECT_EQ(L[0]->GetType(), otLineVertex2d);
  TKRNMemoryStream S;
  L.SaveToStream(S);
  EXPECT_EQ(S.Bytes().size(), 4u + (1 + 16) + (1 + 16 + 1 + 8) + (1 + 16 + 1 + 16));
  EXPECT_EQ(S.Bytes()[0], 3);
  EXPECT_EQ(S.Bytes()[4], vtLine);
  S.Rewind();
  TKRNVertex2dList M;
  ASSERT_TRUE(M.LoadFromStream(S));
  ASSERT_EQ(M.Count(), 3);
  EXPECT_EQ(M[1]->ArcType(), atCS);
  EXPECT_EQ(M[1]->Radius(), 5);
  EXPECT_EQ(M[2]->VertexType(), vtEllipseArc);
  EXPECT_EQ(static_cast<TKRNEllipseArcVertex2d*>(M[2])->YRadius(), 9);

  // every truncation fails cleanly
  for (size_t Cut = 0; Cut < S.Bytes().size(); ++Cut) {
    TKRNMemoryStream T(std::vector<unsigned char>(S.Bytes().begin(), S.Bytes().begin() + long(Cut)));
    TKRNVertex2dList N;
    EXPECT_FALSE(N.LoadFromStream(T)) << Cut;
  }
  // a count the stream cannot hold is refused before any allocation
  TKRNMemoryStream Huge(std::vector<unsigned char>{0xFF, 0xFF, 0xFF, 0x7F, 0, 0});
  EXPECT_FALSE(M.LoadFromStream(Huge));
}

TEST(TKRNVertex2dList, SharingListReadsAndWritesNothing) {
  TKRNVertex2dList Owner;
  Owner.AddLinePoint({1, 1});
  TKRNVertex2dList Shared(false);
  Shared.Assign(Owner);
  EXPECT_EQ(Shared[0], Owner[0]);
  TKRNMemoryStream S;
  Shared.SaveToStream(S);
  EXPECT_TRUE(S.Bytes().empty());
  EXPECT_TRUE(Shared.LoadFromStream(S));
  EXPECT_EQ(Shared.Count(), 1);
  Shared.Clear();  // does not free the owner's vertex
  EXPECT_EQ(Owner[0]->Point().X, 1);
}

TEST(TKRNVertex2dList, InverseKeepsEachEdgeWithTheOppositeArc) {
  const auto P = ArchedSquare();
  const double Area = P->SignedArea();
  EXPECT_NEAR(Area, 4 + KRNHalfPi, 1e-12);
  const auto Q = P->Clone();
  Q->Inverse();
  EXPECT_NEAR(Q->SignedArea(), -Area, 1e-12);
  EXPECT_PT_NEAR(Q->List().Points(0), (TKRNVector2d{0, 2}), 0);
  EXPECT_EQ(Q->List()[0]->ArcType(), atCS);  // the arc now runs (0,2) -> (2,2)
  EXPECT_NEAR(Q->Perimeter(), P->Perimeter(), 1e-12);
  Q->Inverse();
  EXPECT_TRUE(Q->IsEqualTo(*P));
  // an open path reverses too
  TKRNLines2d L;
  L.List().AddArcPoint({1, 0}, atACS, 1);
  L.List().AddLinePoint({0, 1});
  L.List().AddLinePoint({0, 5});
  const double Len = L.Length();
  L.Inverse();
  EXPECT_PT_NEAR(L.List().Points(0), (TKRNVector2d{0, 5}), 0);
  EXPECT_EQ(L.List()[1]->ArcType(), atCS);
  EXPECT_NEAR(L.Length(), Len, 1e-12);
}

TEST(TKRNVertex2dList, BoxIsTheUnionOfTheEdgeBoxes) {
  // Random paths of straight and arc edges, open and closed, against the edges one by one.
  std::mt19937 Rng(11);
  std::uniform_real_distribution<double> U(-10, 10);
  std::uniform_int_distribution<int> Kind(0, 4);
  for (int Case = 0; Case < 2000; ++Case) {
    TKRNVertex2dList L;
    const int N = 1 + Case % 6;
    for (int I = 0; I < N; ++I) {
      const int K = Kind(Rng);
      if (K <= atCL && K != atLine) L.AddArcPoint({U(Rng), U(Rng)}, TKRNArcType(K), 5 + std::fabs(U(Rng)));
      else L.AddLinePoint({U(Rng), U(Rng)});
    }
    for (const bool Closed : {false, true}) {
      SCOPED_TRACE(testing::Message() << Case << (Closed ? " closed" : " open"));
      TKRNBox2d Want = BoxOfPoints(L.Points(0), L.Points(0));
      for (int I = 0; I < N; ++I) {
        if (I + 1 < N) Want = BoxUnion(Want, L[I]->BoxWith(L.Points(I + 1)));
        else if (Closed && N > 1) Want = BoxUnion(Want, L[I]->BoxWith(L.Points(0)));
        else BoxAddPoint(Want, L.Points(I));
      }
      const TKRNBox2d Got = L.Box(Closed);
      EXPECT_EQ(Got.MinX(), Want.MinX());
      EXPECT_EQ(Got.MinY(), Want.MinY());
      EXPECT_EQ(Got.MaxX(), Want.MaxX());
      EXPECT_EQ(Got.MaxY(), Want.MaxY());
    }
  }
}

TEST(TKRNPolygon2d, AreasBoxesAndPerimeters) {
  const struct {
    const char* Name;
    std::unique_ptr<TKRNCustomPolygon2d> Figure;
    double SignedArea, Perimeter;
    TKRNBox2d Box;
  } Cases[] = {
      {"box", std::make_unique<TKRNPolygon2d>(TKRNBox2d{{0, 0}, {4, 3}}), 12, 14, {{0, 0}, {4, 3}}},
      {"arched square", ArchedSquare(), 4 + KRNHalfPi, 6 + KRNPi, {{0, 0}, {2, 3}}},
      {"circle", std::make_unique<TKRNCircle2d>(TKRNVector2d{1, 1}, 2), 4 * KRNPi, 4 * KRNPi, {{-1, -1}, {3, 3}}},
      {"clockwise circle", std::make_unique<TKRNCircle2d>(TKRNVector2d{0, 0}, 1, true), -KRNPi, KRNTwoPi,
       {{-1, -1}, {1, 1}}},
      {"ortho rectangle", std::make_unique<TKRNOrthoRectangle2d>(TKRNVector2d{3, 2}, TKRNVector2d{0, 0}), 6, 10,
       {{0, 0}, {3, 2}}},
      {"rotated rectangle", std::make_unique<TKRNRectangle2d>(TKRNVector2d{0, 0}, 1, 1, KRNPi / 4), 4, 8,
       {{-R2(), -R2()}, {R2(), R2()}}},
      {"ellipse", std::make_unique<TKRNEllipse2d>(TKRNVector2d{0, 0}, 2, 1, KRNHalfPi), KRNTwoPi, 9.688448220547675,
       {{-1, -2}, {1, 2}}},
  };
  for (const auto& C : Cases) {
    SCOPED_TRACE(C.Name);
    EXPECT_NEAR(C.Figure->SignedArea(), C.SignedArea, 1e-9);
    EXPECT_NEAR(C.Figure->Area(), std::fabs(C.SignedArea), 1e-9);
    EXPECT_NEAR(C.Figure->Perimeter(), C.Perimeter, 1e-6);
    const TKRNBox2d B = C.Figure->Box();
    EXPECT_NEAR(B.MinX(), C.Box.MinX(), 1e-9);
    EXPECT_NEAR(B.MinY(), C.Box.MinY(), 1e-9);
    EXPECT_NEAR(B.MaxX(), C.Box.MaxX(), 1e-9);
    EXPECT_NEAR(B.MaxY(), C.Box.MaxY(), 1e-9);
    EXPECT_EQ(C.Figure->GetClockwise(), C.SignedArea < 0);
    // a general polygon built from the figure keeps its boundary (ellipses become chords)
    if (C.Figure->PolyType() != ptEllipse) {
      const TKRNPolygon2d P(*C.Figure);
      EXPECT_NEAR(P.SignedArea(), C.SignedArea, 1e-9);
    }
  }
}

TEST(TKRNPolygon2d, SetClockwiseInvertsOnlyWhenNeeded) {
  auto P = MakePolygon({{0, 0}, {1, 0}, {1, 1}});
  P->SetClockWise(false);
  EXPECT_PT_NEAR(P->List().Points(1), (TKRNVector2d{1, 0}), 0);
  P->SetClockWise(true);
  EXPECT_TRUE(P->GetClockwise());
  TKRNCircle2d C({0, 0}, 1);
  C.SetClockWise(true);
  EXPECT_LT(C.SignedArea(), 0);
  EXPECT_EQ(C.EdgeLine(0)->ArcType(), atCS);
}

TEST(TKRNPolygon2d, BandAroundASegment) {
  const TKRNLine2d L({0, 0}, {10, 0});
  const struct {
    double Width, Offset;
    bool Clockwise;
    double Area, MinY, MaxY;
  } Cases[] = {{2, 0, true, -20, -1, 1}, {2, 0, false, 20, -1, 1}, {2, 0.5, true, -20, -1.5, 0.5}};
  for (const auto& C : Cases) {
    SCOPED_TRACE(testing::Message() << C.Width << "/" << C.Offset << "/" << C.Clockwise);
    const TKRNPolygon2d P(L, C.Width, C.Offset, C.Clockwise);
    EXPECT_EQ(P.GetCount(), 4);
    EXPECT_NEAR(P.SignedArea(), C.Area, 1e-12);
    EXPECT_NEAR(P.Box().MinY(), C.MinY, 1e-12);
    EXPECT_NEAR(P.Box().MaxY(), C.MaxY, 1e-12);
  }
  const TKRNPolygon2d Thin(L, 0.0001, 0, true);
  EXPECT_EQ(Thin.GetCount(), 2);
  EXPECT_NEAR(Thin.SignedArea(), 0, 1e-12);

  const TKRNArc2d A({1, 0}, {-1, 0}, 1, atACS);
  for (const bool Cw : {true, false}) {
    const TKRNPolygon2d P(A, 0.2, 0, Cw);
    EXPECT_NEAR(P.Area(), KRNHalfPi * (1.1 * 1.1 - 0.9 * 0.9), 1e-9);  // half an annulus
    EXPECT_EQ(P.GetClockwise(), Cw);
  }
}

TEST(TKRNPolygon2d, NormalizeDropsRepeatsAndCollinearVertices) {
  auto P = MakePolygon({{0, 0}, {5, 0}, {10, 0}, {10, 0.0001}, {10, 10}, {0, 10}, {0, 0}});
  P->Normalize(KRNEpsilon);
  ASSERT_EQ(P->GetCount(), 4);
  EXPECT_TRUE(P->IsEqualTo(*MakePolygon({{0, 0}, {10, 0}, {10, 10}, {0, 10}})));
  auto Arched = ArchedSquare();
  Arched->List().InsertLinePoint(1, {1, 0});
  Arched->Normalize(KRNEpsilon);
  EXPECT_EQ(Arched->GetCount(), 4);  // the arc stays
  EXPECT_TRUE(Arched->List()[2]->IsArc());

  TKRNLines2d L;
  for (const TKRNVector2d& Pt : {TKRNVector2d{0, 0}, {1, 0}, {1, 0}, {2, 0}, {2, 2}}) L.List().AddLinePoint(Pt);
  std::vector<int> Kept;
  L.Normalize(KRNEpsilon, Kept);
  EXPECT_EQ(Kept, (std::vector<int>{0, 3, 4}));
}

TEST(TKRNPolygon2d, RectangleTests) {
  const struct {
    const char* Name;
    std::unique_ptr<TKRNPolygon2d> P;
    bool Rectangle, Ortho;
  } Cases[] = {
      {"square", MakePolygon({{0, 0}, {2, 0}, {2, 2}, {0, 2}}), true, true},
      {"2 x 1 axis-aligned: not equal sides", MakePolygon({{0, 0}, {2, 0}, {2, 1}, {0, 1}}), true, false},
      {"rotated square", MakePolygon({{0, 0}, {1, 1}, {0, 2}, {-1, 1}}), true, true},
      {"extra collinear vertex", MakePolygon({{0, 0}, {1.5, 0}, {2, 0}, {2, 1}, {0, 1}}), true, false},
      // only edges 0 and 1 are compared: a 2 x 1 rectangle split at its long side passes
      {"edges 0 and 1 equal", MakePolygon({{0, 0}, {1, 0}, {2, 0}, {2, 1}, {0, 1}}), true, true},
      {"parallelogram", MakePolygon({{0, 0}, {2, 0}, {3, 1}, {1, 1}}), false, false},
      {"L shape", MakePolygon({{0, 0}, {2, 0}, {2, 1}, {1, 1}, {1, 2}, {0, 2}}), false, false},
      {"triangle", MakePolygon({{0, 0}, {2, 0}, {0, 2}}), false, false},
      {"arched", ArchedSquare(), false, false},
  };
  for (const auto& C : Cases) {
    SCOPED_TRACE(C.Name);
    EXPECT_EQ(C.P->IsRectangle(KRNEpsilon), C.Rectangle);
    EXPECT_EQ(C.P->IsOrthoRectangle(KRNEpsilon), C.Ortho);
  }
  EXPECT_TRUE(TKRNPolygon2d(TKRNCircle2d({0, 0}, 3)).IsCirCle());
  EXPECT_FALSE(ArchedSquare()->IsCirCle());
}

TEST(TKRNPolygon2d, TextForm) {
  TKRNPolygon2d P;
  P.LoadFromString("(0, 0, 0, ltLine), (10, 0, 5, LTACSARC), (10, 10, 0, ltLine)");
  ASSERT_EQ(P.GetCount(), 3);
  EXPECT_EQ(P.List()[1]->VertexType(), vtArc);
  EXPECT_EQ(P.List()[1]->ArcType(), atACS);
  EXPECT_EQ(P.List()[0]->GetType(), otLineVertex2d);
  EXPECT_EQ(P.AsString(), "(0, 0, 0, ltLine), (10, 0, 5, ltACSArc), (10, 10, 0, ltLine)");
  TKRNPolygon2d Q;
  Q.LoadFromString(P.AsString());
  EXPECT_TRUE(Q.IsEqualTo(P));

  Q.LoadFromString("(0, 0, 0, ltLine), (1, 2, 0");  // ends inside a group
  EXPECT_EQ(Q.GetCount(), 1);
  Q.LoadFromString("(1.5, -2, 0, unknown)");
  EXPECT_EQ(Q.List()[0]->ArcType(), atLine);
  for (const char* Bad : {"(, 0, 0, ltLine)", "(1, , 0, ltLine)", "(1, x, 0, ltLine)"}) {
    SCOPED_TRACE(Bad);
    try {
      Q.LoadFromString(Bad);
      ADD_FAILURE() << "no exception";
    } catch (const EKRNException& E) {
      EXPECT_STREQ(E.what(), "多边形字符串格式错误");
    }
  }
  EXPECT_EQ(TKRNOrthoRectangle2d({0, 0}, {2, 1.5}).AsString(), "(0,0,2,1.5)");
  EXPECT_EQ(TKRNCircle2d({1, 2}, 3).AsString(), "(1, 2, 3, ltACSArc)");
}

TEST(TKRNPolygon2d, SamplesStartIndexAndEquality) {
  const auto P = ArchedSquare();
  const auto S = P->GetSamplePoly(36);
  EXPECT_EQ(S->GetCount(), 3 + 17);  // the half circle gives 18 points, its end is the next vertex
  EXPECT_NEAR(S->Area(), P->Area(), 0.05);
  auto R = P->Clone();
  R->SetStartIndex(2);
  EXPECT_PT_NEAR(R->List().Points(0), (TKRNVector2d{2, 2}), 0);
  EXPECT_TRUE(R->IsEqualTo(*P));
  EXPECT_NEAR(R->SignedArea(), P->SignedArea(), 1e-12);
  auto Moved = P->Clone();
  Moved->List()[1]->SetPoint({2, 0.01});
  EXPECT_FALSE(Moved->IsEqualTo(*P));
  const auto Proj = MakePolygon({{0, 0}, {2, 0}, {2, 2}, {0, 2}})->ProjectivePoly(TKRNBeeline2d({0, 0}, {1, 0}), 0.5);
  EXPECT_NEAR(Proj->Area(), 2, 1e-12);
}

TEST(TKRNMultiPolygon2d, HolesAndStream) {
  TKRNMultiPolygon2d M;
  M.Add(new TKRNPolygon2d(TKRNBox2d{{0, 0}, {10, 10}}));
  auto Hole = std::make_unique<TKRNPolygon2d>(TKRNBox2d{{3, 3}, {7, 7}});
  Hole->Inverse();
  M.Add(Hole.release());
  M.Add(new TKRNCircle2d({20, 0}, 1));
  EXPECT_NEAR(M.SignArea(), 100 - 16 + KRNPi, 1e-12);
  EXPECT_TRUE(M.HasCirCle());
  EXPECT_EQ(M.GetEdge(5)->GetLine()->StartPt().X, 7);
  EXPECT_EQ(M.GetEdge(10), nullptr);
  TKRNMemoryStream S;
  M.SaveToStream(S);
  S.Rewind();
  TKRNMultiPolygon2d N;
  ASSERT_TRUE(N.LoadFromStream(S));
  EXPECT_EQ(N.Count(), 3);
  EXPECT_EQ(N.GetItems(2)->PolyType(), ptCircle);
  EXPECT_NEAR(N.SignArea(), M.SignArea(), 1e-12);
  const auto C = M.Clone();
  EXPECT_NEAR(C->Perimeter(), M.Perimeter(), 1e-12);
}

TEST(TKRNMultiLines2d, ChainsSegmentsEndToEnd) {
  TKRNSeg2dList Segs;
  Segs.Add(KRNMakeSegment({2, 0}, {2, 2}, 0, atLine));
  Segs.Add(KRNMakeSegment({0, 0}, {2, 0}, 0, atLine));
  Segs.Add(KRNMakeSegment({0, 2}, {2, 2}, 0, atLine));  // reversed against the chain
  Segs.Add(KRNMakeSegment({5, 5}, {6, 6}, 0, atLine));  // apart
  const TKRNMultiLines2d M(Segs);
  ASSERT_EQ(M.Count(), 2);
  EXPECT_EQ(M.GetItem(0)->Count(), 4);
  EXPECT_NEAR(M.Length(), 6 + R2(), 1e-12);
  TKRNMultiLines2d Back;
  Back.LoadFromString(M.AsString());
  EXPECT_EQ(Back.Count(), 2);
  EXPECT_NEAR(Back.Length(), M.Length(), 1e-9);
  const TKRNMultiPolygon2d P(M);
  EXPECT_NEAR(std::fabs(P.GetItems(0)->SignedArea()), 4, 1e-12);
}
