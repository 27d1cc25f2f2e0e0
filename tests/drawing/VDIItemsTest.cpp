#include "DrawingTestUtils.h"
#include "VDIVisitor.h"

namespace {
// The items of one kind each, laid out apart from each other.
struct TKinds {
  TVectorDrawing D;
  TVectorLine* Line;
  TVectorArc* Arc;
  TVectorPolyline* Poly;
  TVectorCircle* Circle;
  TVectorPoint* Point;
  TVectorText* Text;
  TVectorHatch* Hatch;
  TVectorHatchM* HatchM;
  TVectorComment* Comment;
  TKinds() {
    Line = AddLine(D, {0, 0}, {10, 0});
    Arc = new TVectorArc(&D, 0, 0, 0, psSolid, 0, 0, msNone, msNone, {30, 0}, {20, 0}, 5, atACS);  // upper half of a circle at (25, 0)
    D.Add(std::unique_ptr<TVectorDrawingItem>(Arc));
    Poly = new TVectorPolyline(&D);
    TKRNLines2d P;
    P.List().AddLinePoint({40, 0});
    P.List().AddLinePoint({50, 0});
    P.List().AddLinePoint({50, 10});
    Poly->SetPolyline(P);
    D.Add(std::unique_ptr<TVectorDrawingItem>(Poly));
    Circle = new TVectorCircle(&D, 0, 0, 0, psSolid, {70, 0}, 5);
    D.Add(std::unique_ptr<TVectorDrawingItem>(Circle));
    Point = new TVectorPoint(&D, 0, 0, {90, 0}, 4, psPoint);
    D.Add(std::unique_ptr<TVectorDrawingItem>(Point));
    Text = new TVectorText(&D, 0, 0, QString(), {100, 0}, 0, QStringLiteral("宋体"), 12, 0, haLeftJustify,
                           vaBottomJustify, true, 0, QString());
    D.Add(std::unique_ptr<TVectorDrawingItem>(Text));  // empty text: a 24 x 12 box standing on (100, 0)
    Hatch = AddHatch(D, {{130, 0}, {140, 10}});
    HatchM = new TVectorHatchM(&D, 0, 0);
    D.Add(std::unique_ptr<TVectorDrawingItem>(HatchM));
    Comment = new TVectorComment(&D, 0, QStringLiteral("note"), {150, 0});
    Comment->CommentPoly().List().AddLinePoint({150, 0});
    Comment->CommentPoly().List().AddLinePoint({155, 5});
    D.Add(std::unique_ptr<TVectorDrawingItem>(Comment));
  }
};
}  // namespace

TEST(TVectorDrawingItem, WindowAgainstCrossingSelection) {
  TKinds K;
  const struct {
    const char* Name;
    TVectorDrawingItem* Item;
    TKRNBox2d Whole;    // holds the item
    TKRNBox2d Partial;  // cuts through it
  } Cases[] = {
      {"line", K.Line, {{-1, -1}, {11, 1}}, {{5, -1}, {15, 1}}},
      {"arc", K.Arc, {{19, -1}, {31, 6}}, {{24, 4}, {26, 6}}},
      {"polyline", K.Poly, {{39, -1}, {51, 11}}, {{48, 5}, {52, 6}}},
      {"circle", K.Circle, {{64, -6}, {76, 6}}, {{74, -1}, {80, 1}}},
      {"point", K.Point, {{87, -3}, {93, 3}}, {{91, -1}, {95, 1}}},
      {"text", K.Text, {{99, -1}, {125, 13}}, {{120, 5}, {130, 6}}},
      {"hatch", K.Hatch, {{129, -1}, {141, 11}}, {{135, 5}, {145, 6}}},
  };
  for (const auto& C : Cases) {
    SCOPED_TRACE(C.Name);
    // left to right: a window, the item must lie wholly inside
    EXPECT_TRUE(C.Item->HitSelect(C.Whole.StartPt, C.Whole.EndPt, 0.5));
    EXPECT_FALSE(C.Item->HitSelect(C.Partial.StartPt, C.Partial.EndPt, 0.5));
    // right to left: crossing, touching is enough
    EXPECT_TRUE(C.Item->HitSelect({C.Partial.MaxX(), C.Partial.MinY()}, {C.Partial.MinX(), C.Partial.MaxY()}, 0.5));
    EXPECT_TRUE(C.Item->HitSelect({C.Whole.MaxX(), C.Whole.MinY()}, {C.Whole.MinX(), C.Whole.MaxY()}, 0.5));
    EXPECT_FALSE(C.Item->HitSelect({300, 300}, {200, 200}, 0.5));
  }
  // a crossing box inside the circle but clear of its ring misses it
  EXPECT_FALSE(K.Circle->HitSelect({71, 1}, {69, -1}, 0.1));
  // a crossing box inside the hatch hits it
  EXPECT_TRUE(K.Hatch->HitSelect({136, 4}, {134, 6}, 0.1));
  // the multi-hatch and the comment are never hit or selected
  for (TVectorDrawingItem* Never : {static_cast<TVectorDrawingItem*>(K.HatchM), static_cast<TVectorDrawingItem*>(K.Comment)}) {
    EXPECT_FALSE(Never->HitTest({152, 2}, 100));
    EXPECT_FALSE(Never->HitSelect({-1000, -1000}, {1000, 1000}, 1));
    EXPECT_FALSE(Never->HitSelect({1000, 1000}, {-1000, -1000}, 1));
  }
}

TEST(TVectorDrawingItem, HitTestsByKind) {
  TKinds K;
  const struct {
    const char* Name;
    TVectorDrawingItem* Item;
    TKRNVector2d Hit, Miss;
  } Cases[] = {{"line", K.Line, {5, 0.4}, {5, 1}},
               {"arc", K.Arc, {25, 5.3}, {25, -5}},        // the lower half is not the arc
               {"polyline", K.Poly, {50, 5}, {45, 5}},
               {"circle ring", K.Circle, {75, 0}, {70, 0}},  // the centre is a miss
               {"point", K.Point, {91.5, 0}, {93, 0}},
               {"text box", K.Text, {110, 6}, {110, 14}},
               {"hatch inside", K.Hatch, {135, 5}, {142, 5}}};
  for (const auto& C : Cases) {
    SCOPED_TRACE(C.Name);
    EXPECT_TRUE(C.Item->HitTest(C.Hit, 0.5));
    EXPECT_FALSE(C.Item->HitTest(C.Miss, 0.5));
  }
  // the multi-hatch hides nothing below it
  TVectorDrawing D;
  TVectorHatch* Below = AddHatch(D, {{0, 0}, {10, 10}});
  D.Add(std::unique_ptr<TVectorDrawingItem>(new TVectorHatchM(&D, 0, 0)));
  EXPECT_EQ(D.HitTest({5, 5}, 0.1), Below);
}

TEST(TVectorLine, MarksCountEverywhere) {
  TVectorDrawing D;
  auto* L = new TVectorLine(&D, 0, 0, 0, psSolid, 0, 20, msNone, msArrow, {0, 0}, {100, 0});
  D.Add(std::unique_ptr<TVectorDrawingItem>(L));
  // the arrow's base is 20 back from the tip and 20/3 to each side
  EXPECT_NEAR(L->OutRect().MaxY(), 20.0 / 3, 1e-9);
  EXPECT_NEAR(L->OutRect().MinY(), -20.0 / 3, 1e-9);
  // a crossing box touching only the arrow selects the line
  EXPECT_TRUE(L->HitSelect({92, 6}, {88, 4}, 0.1));
  // a window holding the whole arrow but not the path selects it: one primitive is enough
  EXPECT_TRUE(L->HitSelect({75, -10}, {110, 10}, 0.1));
  EXPECT_TRUE(L->HitTest({90, 3.4}, 0.5));  // on the arrow's side
  EXPECT_FALSE(L->HitTest({90, 5.5}, 0.5));
  // a mark of size 0 is no mark
  L->SetEndMarkSize(0);
  EXPECT_FALSE(L->HasMarks());
  EXPECT_NEAR(L->OutRect().MaxY(), 0, 1e-12);
  // a diagonal stroke slants by the sign of its size
  L->SetEndMarkStyle(msDiagonal);
  L->SetEndMarkSize(10);
  const std::vector<TVDIPrimitive> Pos = L->BuildMarkGeometry();
  L->SetEndMarkSize(-10);
  const std::vector<TVDIPrimitive> Neg = L->BuildMarkGeometry();
  ASSERT_EQ(Pos.size(), 2u);
  const TKRNVector2d DP = VectorSub(Pos[1].Edge->EndPt(), Pos[1].Edge->StartPt());
  const TKRNVector2d DN = VectorSub(Neg[1].Edge->EndPt(), Neg[1].Edge->StartPt());
  EXPECT_GT(DP.X * DP.Y, 0);
  EXPECT_LT(DN.X * DN.Y, 0);
  EXPECT_NEAR(VectorLength(DP), 10, 1e-9);
  // a dot is a circle of half the size; its ring is the hit
  L->SetEndMarkStyle(msDot);
  L->SetEndMarkSize(8);
  EXPECT_NEAR(L->OutRect().MaxX(), 104, 1e-9);
  EXPECT_TRUE(L->HitTest({104, 0}, 0.2));
}

TEST(TVectorLine, WidthWidensBoxAndHits) {
  TVectorDrawing D;
  TVectorLine* L = AddLine(D, {0, 0}, {100, 0}, 10);
  EXPECT_NEAR(L->OutRect().MaxY(), 5, 1e-9);
  EXPECT_TRUE(L->HitTest({50, 5.3}, 0.5));
  EXPECT_FALSE(L->HitTest({50, 6}, 0.5));
  L->SetLineWidth(-3);  // pixels: the world box does not grow
  EXPECT_NEAR(L->OutRect().MaxY(), 0, 1e-12);
}

TEST(TVectorPolyline, EdgesAndGrips) {
  TVectorDrawing D;
  auto* P = new TVectorPolyline(&D);
  TKRNLines2d L;
  L.List().AddLinePoint({0, 0});
  L.List().AddArcPoint({10, 0}, atACS, 5);
  L.List().AddLinePoint({0, 0});
  P->SetPolyline(L);
  D.Add(std::unique_ptr<TVectorDrawingItem>(P));
  EXPECT_EQ(P->GetEdgeCount(), 2);
  EXPECT_TRUE(P->GetEdge(1)->IsArcType());
  EXPECT_EQ(P->GetGripCount(), 4);  // three vertices and one arc middle
  EXPECT_NEAR(P->GetGrips(3).Y, 5, 1e-9);  // anticlockwise from (10,0) to (0,0) passes above
  EXPECT_EQ(P->GetEdge(5), nullptr);
  const auto Saved = P->CreateCoordData();
  TKRNLines2d Short;
  Short.List().AddLinePoint({0, 0});
  Short.List().AddLinePoint({1, 1});
  P->SetPolyline(Short);
  EXPECT_EQ(P->GetEdgeCount(), 1);
  P->SetCoordData(*Saved);
  EXPECT_EQ(P->GetEdgeCount(), 2);
  EXPECT_NEAR(P->OutRect().MaxY(), 5, 1e-9);
}

TEST(TVectorText, BoxesForEachAlignmentAndRotation) {
  TVectorDrawing D;
  const struct {
    THorzAlignment H;
    TVertAlignment V;
    double Angle;
    TKRNBox2d Box;
  } Cases[] = {{haLeftJustify, vaTopJustify, 0, {{0, -12}, {24, 0}}},
               {haLeftJustify, vaBottomJustify, 0, {{0, 0}, {24, 12}}},
               {haRightJustify, vaBottomJustify, 0, {{-24, 0}, {0, 12}}},
               {haCenter, vaCenter, 0, {{-12, -6}, {12, 6}}},
               {haLeftJustify, vaBottomJustify, KRNHalfPi, {{-12, 0}, {0, 24}}},
               {haCenter, vaCenter, KRNPi, {{-12, -6}, {12, 6}}}};
  for (const auto& C : Cases) {
    SCOPED_TRACE(testing::Message() << C.H << C.V << C.Angle);
    // empty text keeps a box 24 wide and 12 high
    TVectorText T(&D, 1, 0, QString(), {0, 0}, C.Angle, QStringLiteral("宋体"), 0, 0, C.H, C.V, true, 0, QString());
    EXPECT_NEAR(T.OutRect().MinX(), C.Box.MinX(), 1e-5);
    EXPECT_NEAR(T.OutRect().MinY(), C.Box.MinY(), 1e-5);
    EXPECT_NEAR(T.OutRect().MaxX(), C.Box.MaxX(), 1e-5);
    EXPECT_NEAR(T.OutRect().MaxY(), C.Box.MaxY(), 1e-5);
    EXPECT_TRUE(T.HitTest(PointMiddle(C.Box.StartPt, C.Box.EndPt), 0.1));
  }
  // heights: FHeight hides FFloatHeight; each line adds one height downward
  TVectorText T(&D, 1, 0, QStringLiteral("ab\r\ncd"), {0, 0}, 0, QStringLiteral("宋体"), 10, 0, haLeftJustify,
                vaTopJustify, true, 0, QString());
  T.SetFloatHeight(50);
  EXPECT_EQ(T.GetDrawHeight(), 10);
  EXPECT_NEAR(T.OutRect().MinY(), -20, 1e-9);
  EXPECT_GT(T.OutRect().MaxX(), 0);
  const double W = T.OutRect().MaxX();
  T.SetText(QStringLiteral("abab\r\ncd"));
  EXPECT_GT(T.OutRect().MaxX(), W);
  T.SetHeight(0);
  EXPECT_EQ(T.GetDrawHeight(), 50);
  T.SetFloatHeight(0);
  EXPECT_EQ(T.GetDrawHeight(), 0);
  T.Scale(2);
}

// A turned text is hit inside its turned box only, and the box follows every change,
// before and after the polygon was first asked for, and into a copy.
TEST(TVectorText, TurnedBoxFollowsChanges) {
  TVectorDrawing D;
  TVectorText T(&D, 1, 0, QString(), {0, 0}, KRNPi / 4, QStringLiteral("宋体"), 0, 0, haLeftJustify,
                vaBottomJustify, true, 0, QString());
  // the 24 x 12 box turned 45 degrees: (8, 0) is in its outer rectangle, not in it
  EXPECT_FALSE(T.HitTest({8, 0}, 0.1));
  EXPECT_TRUE(T.HitTest({8, 10}, 0.1));
  EXPECT_EQ(T.BoundPoly().List().Count(), 4);
  T.SetInsertPt({100, 0});
  EXPECT_FALSE(T.HitTest({8, 10}, 0.1));
  EXPECT_TRUE(T.HitTest({108, 10}, 0.1));
  EXPECT_NEAR(T.BoundPoly().List().Points(0).X, 100, 1e-9);

  TVectorText Copy(&D);
  Copy.Assign(T);
  EXPECT_TRUE(Copy.HitTest({108, 10}, 0.1));
  EXPECT_TRUE(Copy.HitSelect({107, 9}, {90, 30}, 0.1));   // crossing box over a corner
  EXPECT_FALSE(Copy.HitSelect({116, 1}, {110, 3}, 0.1));  // in the outer rectangle only
  TVectorText Fresh(&D);
  EXPECT_FALSE(Fresh.HitTest({0, 0}, 0.1));
  EXPECT_EQ(Fresh.BoundPoly().List().Count(), 0);
}

TEST(TVectorDrawingItem, PropertyValuesAsText) {
  TKinds K;
  EXPECT_EQ(K.Line->GetPropValues(ptLineWidth), QStringLiteral("0"));
  K.Line->SetPropValues(ptEndMarkStyle, QStringLiteral("2"));
  K.Line->SetPropValues(ptEndMarkSize, QStringLiteral("6"));
  EXPECT_EQ(K.Line->EndMarkStyle(), msDot);
  EXPECT_NEAR(K.Line->OutRect().MaxX(), 13, 1e-9);  // rebuilt with the mark
  K.Line->SetPropValues(ptText, QStringLiteral("x"));  // not offered: ignored
  EXPECT_THROW(K.Line->SetPropValues(ptLineWidth, QStringLiteral("wide")), EConvertError);
  K.Text->SetPropValues(ptTransparent, QStringLiteral("2"));
  EXPECT_FALSE(K.Text->Transparent());
  K.Text->SetPropValues(ptTransparent, QStringLiteral("1"));
  EXPECT_TRUE(K.Text->Transparent());
  K.Text->SetPropValues(ptText, QStringLiteral("钢筋"));
  EXPECT_EQ(K.Text->GetPropValues(ptText), QStringLiteral("钢筋"));
  K.Point->SetPropValues(ptPointSize, QStringLiteral("10"));
  EXPECT_NEAR(K.Point->OutRect().MaxX(), 95, 1e-9);
  K.Hatch->SetPropValues(ptFillStyle, QStringLiteral("4"));
  EXPECT_EQ(K.Hatch->FillStyle(), bsFDiagonal);
  K.HatchM->SetPropValues(ptColor, QStringLiteral("255"));
  EXPECT_EQ(K.HatchM->Color(), 255u);
  EXPECT_TRUE(K.HatchM->GetPropTypes().IsEmpty());
  EXPECT_EQ(K.Circle->GetPropValues(ptFillStyle), QString());
}

TEST(TVectorDrawingItem, GripsAndCoordData) {
  TKinds K;
  EXPECT_EQ(K.Circle->GetGripCount(), 5);
  EXPECT_NEAR(K.Circle->GetGrips(2).Y, -5, 1e-12);
  EXPECT_NEAR(K.Line->GetGrips(2).X, 5, 1e-12);
  TKRNPolygon2d P;
  P.List().AddLinePoint({0, 0});
  P.List().AddLinePoint({10, 0});
  P.List().AddArcPoint({10, 10}, atACS, 5);
  TVectorHatch H(&K.D, 1, 0, bsSolid, P);
  EXPECT_EQ(H.GetGripCount(), 4);  // the arc grip lies on the chord back to the first vertex
  EXPECT_NEAR(H.GetGrips(3).X, 5, 1e-9);
  EXPECT_NEAR(H.GetGrips(3).Y, 5, 1e-9);
  // A real arc's grip is the middle of its chord, not of the arc.
  TKRNPolygon2d Q;
  Q.List().AddLinePoint({0, 0});
  Q.List().AddArcPoint({10, 0}, atACS, 10);
  Q.List().AddLinePoint({10, 10});
  Q.List().AddLinePoint({0, 10});
  TVectorHatch HA(&K.D, 2, 0, bsSolid, Q);
  ASSERT_EQ(HA.GetGripCount(), 5);
  EXPECT_NEAR(HA.GetGrips(4).X, 10, 1e-9);
  EXPECT_NEAR(HA.GetGrips(4).Y, 5, 1e-9);
  const auto Saved = K.Circle->CreateCoordData();
  K.Circle->SetCircle({0, 0}, 1);
  K.Circle->SetCoordData(*Saved);
  EXPECT_EQ(K.Circle->CenterPt().X, 70);
  EXPECT_EQ(K.Comment->CreateCoordData(), nullptr);
  EXPECT_EQ(K.Comment->GetText(), QStringLiteral(",note"));
}
