// The spatial index against the plain walk: on random drawings, every hit test, snap,
// box and crossing selection and culled repaint gives exactly what the walk gives,
// also after moves, deletions and insertions in the middle of the list.

#include "Classes.h"
#include "VDIHatch.h"
#include "VDILine.h"
#include "VDIPoint.h"
#include "VDIText.h"
#include "VDIVisitor.h"
#include "VectorDrawing.h"

#include <QImage>
#include <QPainter>

#include <gtest/gtest.h>

#include <random>

namespace {

class TRandomDrawing {
public:
  explicit TRandomDrawing(unsigned ASeed) : Rng(ASeed) {}

  std::unique_ptr<TVectorDrawingItem> Item(TVectorDrawing& D) {
    const TKRNVector2d P{U(0, 1000), U(0, 1000)};
    const TKRNVector2d Q{P.X + U(-30, 30), P.Y + U(-30, 30)};
    switch (std::uniform_int_distribution<int>(0, 6)(Rng)) {
      case 0:
        return std::make_unique<TVectorLine>(&D, 0, 0xFFFFFF, Pick(0, 3), psSolid, 8, 8, Pick(0, 1) ? msArrow : msNone,
                                             msNone, P, Q);
      case 1:
        return std::make_unique<TVectorArc>(&D, 0, 0xFFFFFF, Pick(0, 2), psSolid, 8, 8, msNone, msNone, P, Q,
                                            VectorDistance(P, Q) * U(0.51, 3), TKRNArcType(Pick(1, 4)));
      case 2:
        return std::make_unique<TVectorCircle>(&D, 0, 0xFFFFFF, Pick(0, 3), psSolid, P, U(1, 25));
      case 3:
        return std::make_unique<TVectorPoint>(&D, 0, 0xFFFFFF, P, Pick(2, 9), TPointStyle(Pick(0, 1)));
      case 4:
        return std::make_unique<TVectorText>(&D, 0, 0xFFFFFF, QStringLiteral("文字%1").arg(Pick(0, 99)), P, U(0, 6.28),
                                             QStringLiteral("宋体"), Pick(3, 12), 0, THorzAlignment(Pick(0, 2)),
                                             TVertAlignment(Pick(0, 2)), true, 0, QString());
      case 5: {
        TKRNPolygon2d Poly;
        Poly.List().AddLinePoint(P);
        Poly.List().AddLinePoint({P.X + U(5, 40), P.Y});
        Poly.List().AddLinePoint({P.X + U(5, 40), P.Y + U(5, 40)});
        return std::make_unique<TVectorHatch>(&D, 0, 0xFFFFFF, Pick(0, 7), Poly);
      }
      default: {
        auto L = std::make_unique<TVectorPolyline>(&D);
        TKRNLines2d Lines;
        TKRNVector2d V = P;
        for (int K = Pick(2, 6); K > 0; --K) {
          if (Pick(0, 3) == 0) Lines.List().AddArcPoint(V, TKRNArcType(Pick(1, 2)), U(20, 40));
          else Lines.List().AddLinePoint(V);
          V = {V.X + U(-20, 20), V.Y + U(-20, 20)};
        }
        Lines.List().AddLinePoint(V);
        L->SetLineFields(0, 0xFFFFFF, Pick(0, 2), psSolid);
        L->SetPolyline(Lines);
        return L;
      }
    }
  }
  double U(double A, double B) { return std::uniform_real_distribution<double>(A, B)(Rng); }
  int Pick(int A, int B) { return std::uniform_int_distribution<int>(A, B)(Rng); }
  std::mt19937 Rng;
};

// Both ways of answering, each on the same drawing.
template <class F>
auto Both(TVectorDrawing& D, F&& AQuery) {
  D.SetUseSpatialIndex(false);
  auto Walk = AQuery();
  D.SetUseSpatialIndex(true);
  auto Indexed = AQuery();
  return std::pair{Walk, Indexed};
}

std::vector<int> SelectedIDs(TVectorDrawing& D) {
  std::vector<int> R;
  for (int I = 0; I < D.SelSet().Count(); ++I) R.push_back(D.SelSet().Items(I)->ID());
  return R;
}

void CompareQueries(TVectorDrawing& D, TRandomDrawing& R, int AQueries) {
  TDrawingItemTypeSet NoText;
  NoText.set();
  NoText.reset(itText);
  for (int Q = 0; Q < AQueries; ++Q) {
    const TKRNVector2d P{R.U(-20, 1020), R.U(-20, 1020)};
    const double Tol = R.U(0, 6);
    const auto [WalkHit, IndexHit] = Both(D, [&] { return D.HitTest(P, Tol); });
    ASSERT_EQ(WalkHit, IndexHit) << "hit test at " << P.X << "," << P.Y;
    const auto [WalkTyped, IndexTyped] = Both(D, [&] { return D.HitTest(P, Tol, NoText); });
    ASSERT_EQ(WalkTyped, IndexTyped);
    const auto [WalkSnap, IndexSnap] = Both(D, [&] { return D.SnapDrawingItem(P, Tol); });
    ASSERT_EQ(WalkSnap, IndexSnap);
    // a window (left to right) or a crossing box (right to left), from a clean selection
    const TKRNVector2d A{R.U(-20, 1020), R.U(-20, 1020)};
    const TKRNVector2d B{A.X + R.U(-150, 150), A.Y + R.U(-150, 150)};
    const auto [WalkSel, IndexSel] = Both(D, [&] {
      D.SelSet().Clear();
      D.HitSelect(0, A, B, Tol);
      return SelectedIDs(D);
    });
    ASSERT_EQ(WalkSel, IndexSel) << "box " << A.X << "," << A.Y << " to " << B.X << "," << B.Y;
    const TKRNBox2d Box = BoxOfPoints(A, B);
    const auto [WalkBox, IndexBox] = Both(D, [&] { return D.ItemsInBox(Box); });
    ASSERT_EQ(WalkBox, IndexBox);
  }
  D.SelSet().Clear();
}

QImage Paint(TVectorDrawing& D, const TKRNCoordTrans& T) {
  QImage Img(400, 300, QImage::Format_RGB32);
  Img.fill(Qt::black);
  QPainter P(&Img);
  D.Draw(P, T, TKRNRect{0, 0, 400, 300});
  return Img;
}

}  // namespace

TEST(SpatialIndex, AnswersAsTheWalkDoes) {
  TRandomDrawing R(20261123);
  TVectorDrawing D;
  for (int I = 0; I < 10000; ++I) D.Add(R.Item(D));
  CompareQueries(D, R, 1000);

  // culled repaints of windows on a part of the drawing paint the same pixels
  for (int V = 0; V < 5; ++V) {
    TKRNCoordTrans T;
    const double X = R.U(0, 900), Y = R.U(0, 900);
    T.ZoomAll(400, 300, TKRNBox2d{{X, Y}, {X + 100, Y + 75}});
    const auto [Walk, Indexed] = Both(D, [&] { return Paint(D, T); });
    ASSERT_TRUE(Walk == Indexed) << "window " << V;
  }

  // moved, deleted and inserted items: the index follows every change
  for (int Round = 0; Round < 5; ++Round) {
    SCOPED_TRACE(Round);
    for (int K = 0; K < 300; ++K) {
      TVectorDrawingItem* It = D.Items(R.Pick(0, D.Count() - 1));
      TVDIMoveVisitor Move({0, 0}, {R.U(-100, 100), R.U(-100, 100)});
      It->Accept(Move);
    }
    for (int K = 0; K < 100; ++K) D.Delete(R.Pick(0, D.Count() - 1));
    for (int K = 0; K < 100; ++K) D.Insert(R.Pick(0, D.Count()), R.Item(D));
    auto Taken = D.Extract(R.Pick(0, D.Count() - 1));
    D.Insert(R.Pick(0, D.Count()), std::move(Taken));
    CompareQueries(D, R, 200);
  }
}

TEST(SpatialIndex, FollowsLoadsAndClears) {
  TRandomDrawing R(7);
  TVectorDrawing D;
  for (int I = 0; I < 2000; ++I) D.Add(R.Item(D));
  TBytesStream S;
  ASSERT_TRUE(D.SaveToStream(S, sfBin));
  TVectorDrawing L;
  L.Add(R.Item(L));
  ASSERT_EQ(L.HitTest(L.Items(0)->GetGrips(0), 1), L.Items(0));
  S.SetPosition(0);
  ASSERT_TRUE(L.LoadFromStream(S));
  CompareQueries(L, R, 300);
  L.Clear();
  EXPECT_EQ(L.HitTest({500, 500}, 1000), nullptr);
  EXPECT_TRUE(L.ItemsInBox(TKRNBox2d{{0, 0}, {1000, 1000}}).empty());
}
