#include "VDIHatch.h"
#include "VDILine.h"
#include "VDIPoint.h"
#include "VDIText.h"
#include "VDIVisitor.h"
#include "VectorDrawing.h"

#include <gtest/gtest.h>

namespace {

void ExpectPt(const TKRNVector2d& A, TKRNVector2d B, double ATol = 1e-9) {
  EXPECT_NEAR(A.X, B.X, ATol);
  EXPECT_NEAR(A.Y, B.Y, ATol);
}

// One item of every kind the visitors serve.
struct TScene {
  TVectorDrawing D;
  TVectorPoint* Point;
  TVectorLine* Line;
  TVectorArc* Arc;
  TVectorPolyline* Poly;
  TVectorCircle* Circle;
  TVectorHatch* Hatch;
  TVectorText* Text;

  TScene() {
    Point = Put(new TVectorPoint(&D, 0, 0, {10, 10}, 5, psCross));
    Line = Put(new TVectorLine(&D, 0, 0, 1, psSolid, 5, -3, msDiagonal, msHook, {0, 0}, {10, 0}));
    Arc = Put(new TVectorArc(&D, 0, 0, 1, psSolid, 4, 0, msHook, msNone, {10, 0}, {0, 10}, 10, atACS));
    Poly = Put(new TVectorPolyline(&D));
    TKRNLines2d L;
    L.List().AddLinePoint({0, 0});
    L.List().AddArcPoint({10, 0}, atACS, 5);
    L.List().AddLinePoint({10, 10});
    Poly->SetPolyline(L);
    Poly->SetStartMarkSize(6);
    Circle = Put(new TVectorCircle(&D, 0, 0, 1, psSolid, {5, 5}, 2));
    Hatch = Put(new TVectorHatch(&D, 0, 0, 0, TKRNPolygon2d(TKRNBox2d{{0, 0}, {4, 4}})));
    Text = Put(new TVectorText(&D, 0, 0, QStringLiteral("L1"), {1, 1}, 0.5, QStringLiteral("宋体"), 3, 0,
                               haLeftJustify, vaBottomJustify, true, 0, QString()));
  }
  template <class T>
  T* Put(T* AItem) {
    D.Add(std::unique_ptr<TVectorDrawingItem>(AItem));
    return AItem;
  }
  void AcceptAll(IVDIVisitor& V) {
    for (int I = 0; I < D.Count(); ++I)
      D.Items(I)->Accept(V);
  }
};

}  // namespace

TEST(TVDIVisitors, MoveCarriesEveryKind) {
  TScene S;
  TVDIMoveVisitor V({1, 1}, {4, 5});
  S.AcceptAll(V);
  ExpectPt(S.Point->InsertPt(), {13, 14});
  ExpectPt(S.Line->GetXLine().EndPt(), {13, 4});
  ExpectPt(S.Arc->Arc().CenterPt(), {3, 4});
  ExpectPt(S.Poly->Polyline().List().Points(2), {13, 14});
  EXPECT_EQ(S.Poly->Polyline().List()[1]->ArcType(), atACS);
  ExpectPt(S.Circle->CenterPt(), {8, 9});
  ExpectPt(S.Hatch->XPoly().List().Points(0), {3, 4});
  ExpectPt(S.Text->InsertPt(), {4, 5});
  EXPECT_NEAR(S.Circle->OutRect().MinX(), 8 - 2 - 0.5, 1e-9);  // the box is rebuilt (half the line width)
}

TEST(TVDIVisitors, RotateTurnsGeometryButNotText) {
  TScene S;
  TVDIRotateVisitor V({0, 0}, KRNPi / 2);
  EXPECT_EQ(V.GetAngle(), KRNPi / 2);
  S.AcceptAll(V);
  ExpectPt(S.Point->InsertPt(), {-10, 10});
  ExpectPt(S.Line->GetXLine().EndPt(), {0, 10});
  ExpectPt(S.Arc->Arc().EndPt(), {-10, 0});
  EXPECT_EQ(S.Arc->Arc().ArcType(), atACS);
  ExpectPt(S.Poly->Polyline().List().Points(1), {0, 10});
  ExpectPt(S.Circle->CenterPt(), {-5, 5});
  ExpectPt(S.Hatch->XPoly().List().Points(2), {-4, 4});
  ExpectPt(S.Text->InsertPt(), {-1, 1});
  EXPECT_DOUBLE_EQ(S.Text->Angle(), 0.5);
}

TEST(TVDIVisitors, MirrorNegatesMarksAndTurnsArcsAndTwiceRestores) {
  TScene S;
  TVDIMirrorVisitor V(TKRNBeeline2d({0, 20}, {1, 0}));
  S.AcceptAll(V);
  EXPECT_EQ(S.Line->StartMarkSize(), -5);
  EXPECT_EQ(S.Line->EndMarkSize(), 3);
  EXPECT_EQ(S.Arc->StartMarkSize(), -4);
  EXPECT_EQ(S.Poly->StartMarkSize(), -6);
  EXPECT_EQ(S.Arc->Arc().ArcType(), atCS);
  EXPECT_EQ(S.Poly->Polyline().List()[1]->ArcType(), atCS);
  ExpectPt(S.Arc->Arc().CenterPt(), {0, 40});
  ExpectPt(S.Point->InsertPt(), {10, 30});
  ExpectPt(S.Circle->CenterPt(), {5, 35});
  ExpectPt(S.Text->InsertPt(), {1, 39});
  EXPECT_DOUBLE_EQ(S.Text->Angle(), 0.5);
  S.AcceptAll(V);
  EXPECT_EQ(S.Line->StartMarkSize(), 5);
  EXPECT_EQ(S.Arc->Arc().ArcType(), atACS);
  ExpectPt(S.Hatch->XPoly().List().Points(2), {4, 4});
  ExpectPt(S.Arc->Arc().CenterPt(), {0, 0});
}

TEST(TVDIVisitors, StretchMovesOnlyWhatIsInTheBox) {
  TScene S;
  const int Before = S.D.ChangeCount();
  TVDIStretchVisitor V(TKRNBox2d{{9, -1}, {11, 1}}, {0, 0}, {0, 3});
  S.AcceptAll(V);
  ExpectPt(S.Line->GetXLine().StartPt(), {0, 0});
  ExpectPt(S.Line->GetXLine().EndPt(), {10, 3});
  ExpectPt(S.Arc->Arc().StartPt(), {10, 3});
  ExpectPt(S.Poly->Polyline().List().Points(1), {10, 3});
  ExpectPt(S.Poly->Polyline().List().Points(2), {10, 10});
  ExpectPt(S.Point->InsertPt(), {10, 10});
  ExpectPt(S.Circle->CenterPt(), {5, 5});
  ExpectPt(S.Hatch->XPoly().List().Points(0), {0, 0});
  // every item counts its change, moved or not
  EXPECT_GE(S.D.ChangeCount() - Before, S.D.Count());

  TScene T;
  const int B2 = T.D.ChangeCount();
  TVDIStretchVisitor None(TKRNBox2d{{100, 100}, {101, 101}}, {0, 0}, {1, 1});
  T.Hatch->Accept(None);
  EXPECT_EQ(T.D.ChangeCount() - B2, 1);
  ExpectPt(T.Hatch->XPoly().List().Points(0), {0, 0});
}

TEST(TVDIVisitors, DragGripByKind) {
  TScene S;
  TVDIDragGripVisitor Start(0, {0, 0}, {0, 2});
  S.Line->Accept(Start);
  ExpectPt(S.Line->GetXLine().StartPt(), {0, 2});
  ExpectPt(S.Line->GetXLine().EndPt(), {10, 0});
  TVDIDragGripVisitor Middle(2, {0, 0}, {1, 1});
  S.Line->Accept(Middle);  // a straight line moves whole
  ExpectPt(S.Line->GetXLine().StartPt(), {1, 3});
  ExpectPt(S.Line->GetXLine().EndPt(), {11, 1});

  // the arc is re-fitted through its moved middle
  const TKRNVector2d Mid = S.Arc->Arc().MiddlePoint();
  TVDIDragGripVisitor Bend(2, Mid, {Mid.X + 1, Mid.Y + 1});
  S.Arc->Accept(Bend);
  ExpectPt(S.Arc->Arc().StartPt(), {10, 0});
  ExpectPt(S.Arc->Arc().MiddlePoint(), {Mid.X + 1, Mid.Y + 1}, 1e-6);

  const TKRNVector2d ArcMid = S.Poly->GetGrips(3);
  TVDIDragGripVisitor ArcGrip(3, ArcMid, {ArcMid.X - 1, ArcMid.Y});
  S.Poly->Accept(ArcGrip);
  ExpectPt(S.Poly->GetGrips(3), {ArcMid.X - 1, ArcMid.Y}, 1e-6);
  // a vertex pulled past what the arc before it can span turns that arc into a line
  TVDIDragGripVisitor Vertex(2, {0, 0}, {20, 0});
  S.Poly->Accept(Vertex);
  ExpectPt(S.Poly->Polyline().List().Points(2), {30, 10});
  EXPECT_EQ(S.Poly->Polyline().List()[1]->ArcType(), atLine);

  // An arc vertex that turned straight has no grip: grip 3 is the arc after it.
  {
    TVectorDrawing D;
    auto* P = new TVectorPolyline(&D);
    TKRNLines2d L;
    L.List().Add(new TKRNArcVertex2d({0, 0}, atLine, 0));  // an arc vertex, straight
    L.List().AddArcPoint({10, 0}, atACS, 5);
    L.List().AddLinePoint({20, 0});
    P->SetPolyline(L);
    D.Add(std::unique_ptr<TVectorDrawingItem>(P));
    ASSERT_EQ(P->GetGripCount(), 4);
    const TKRNVector2d G = P->GetGrips(3);
    TVDIDragGripVisitor Bulge(3, G, {G.X, G.Y + 1});
    P->Accept(Bulge);
    EXPECT_EQ(P->Polyline().List()[0]->ArcType(), atLine);
    ExpectPt(P->GetGrips(3), {G.X, G.Y + 1}, 1e-6);
  }

  TVDIDragGripVisitor Corner(2, {0, 0}, {2, 2});
  S.Hatch->Accept(Corner);
  ExpectPt(S.Hatch->XPoly().List().Points(2), {6, 6});

  TVDIDragGripVisitor Centre(0, {0, 0}, {1, 0});
  S.Circle->Accept(Centre);
  ExpectPt(S.Circle->CenterPt(), {6, 5});
  EXPECT_DOUBLE_EQ(S.Circle->Radius(), 2);
  TVDIDragGripVisitor Through(3, {0, 0}, {-2, 0});  // the right quadrant pulled onto the centre
  S.Circle->Accept(Through);
  EXPECT_DOUBLE_EQ(S.Circle->Radius(), 0);
  ExpectPt(S.Circle->CenterPt(), {6, 5});

  TVDIDragGripVisitor Anchor(0, {0, 0}, {1, 2});
  S.Text->Accept(Anchor);
  S.Point->Accept(Anchor);
  ExpectPt(S.Text->InsertPt(), {2, 3});
  ExpectPt(S.Point->InsertPt(), {11, 12});
}

TEST(TVDIVisitors, SnapVertexKeepsTheNearest) {
  TScene S;
  const struct {
    const char* Name;
    TKRNVector2d Hit;
    double Tol;
    std::vector<TVectorDrawingItem*> Items;
    bool Found;
    TKRNVector2d Pt;
  } Cases[] = {
      {"line end", {9.6, 0.2}, 0.5, {S.Line}, true, {10, 0}},
      {"nearer of two items", {9.8, 0.1}, 0.5, {S.Line, S.Arc}, true, {10, 0}},
      {"too far", {8, 0}, 0.5, {S.Line}, false, {}},
      {"polyline vertex", {10.2, 9.9}, 0.5, {S.Poly}, true, {10, 10}},
      {"polyline clears an earlier find", {0.1, 0.1}, 0.5, {S.Line, S.Poly}, true, {0, 0}},
      {"hatch starts afresh", {9.9, 0}, 0.5, {S.Line, S.Hatch}, false, {}},
      {"circle centre", {5.1, 5}, 0.5, {S.Circle}, true, {5, 5}},
      {"text anchor", {1, 1.2}, 0.5, {S.Text}, true, {1, 1}},
  };
  for (const auto& C : Cases) {
    SCOPED_TRACE(C.Name);
    TVDISnapVertexVisitor V(C.Hit, C.Tol);
    for (TVectorDrawingItem* I : C.Items)
      I->Accept(V);
    EXPECT_EQ(V.SnapSuccess(), C.Found);
    if (C.Found)
      ExpectPt(V.SnapPt(), C.Pt);
  }
}
