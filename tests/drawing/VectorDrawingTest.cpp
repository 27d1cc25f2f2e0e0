#include "DrawingTestUtils.h"
#include "VDIFormat.h"
#include "VDIVisitor.h"

TEST(TVectorDrawing, ChangeCountingAndEventOrder) {
  TVectorDrawing D;
  QStringList Events;
  D.OnUpdateDrawing = [&] { Events << QStringLiteral("update"); };
  D.OnSelSetChanged = [&] { Events << QStringLiteral("selection"); };
  TVectorLine* L = AddLine(D, {0, 0}, {10, 0});
  EXPECT_EQ(D.ChangeCount(), 1);
  EXPECT_TRUE(D.Modified());
  EXPECT_EQ(Events, QStringList{QStringLiteral("update")});
  Events.clear();
  D.BeginUpdate();
  L->SetColor(0x123456);
  D.SelSet().Add(L);
  EXPECT_TRUE(Events.isEmpty());  // held back inside the bracket
  D.EndUpdate();
  EXPECT_EQ(Events, (QStringList{QStringLiteral("update"), QStringLiteral("selection")}));
  EXPECT_EQ(D.ChangeCount(), 2);  // a selection is no modification
  Events.clear();
  D.BeginUpdate();
  D.EndUpdate();  // nothing changed: the repaint is still asked for
  EXPECT_EQ(Events, QStringList{QStringLiteral("update")});
  Events.clear();
  D.SelSet().Clear();  // outside a bracket: at once, then a repaint
  EXPECT_EQ(Events, (QStringList{QStringLiteral("selection"), QStringLiteral("update")}));
  L->SetColor(0x123456);  // equal value: nothing
  EXPECT_EQ(D.ChangeCount(), 2);
}

TEST(TVectorDrawing, AddKeepsOrRenumbersIDs) {
  TVectorDrawing D;
  QList<int> Added;
  D.OnItemAdded = [&](int AID) { Added << AID; };
  auto* A = new TVectorPoint(&D, 5, 0, {0, 0}, 4, psPoint);
  D.Add(std::unique_ptr<TVectorDrawingItem>(A));
  EXPECT_EQ(A->ID(), 5);
  EXPECT_EQ(D.MaxID(), 6);
  auto* B = new TVectorPoint(&D, 5, 0, {1, 1}, 4, psPoint);  // taken: numbered from FMaxID
  D.Add(std::unique_ptr<TVectorDrawingItem>(B));
  EXPECT_EQ(B->ID(), 6);
  EXPECT_EQ(D.MaxID(), 7);
  auto* C = new TVectorPoint(&D, 2, 0, {2, 2}, 4, psPoint);  // free, below FMaxID: kept
  D.Add(std::unique_ptr<TVectorDrawingItem>(C));
  EXPECT_EQ(C->ID(), 2);
  EXPECT_EQ(D.MaxID(), 7);
  EXPECT_EQ(D.GenID(), 8);  // GenID increments first
  EXPECT_EQ(Added, (QList<int>{5, 6, 2}));
  // an ID at the top of the range (as a damaged file may hold) saturates the counter
  D.Add(std::unique_ptr<TVectorDrawingItem>(new TVectorPoint(&D, std::numeric_limits<int>::max(), 0, {3, 3}, 4, psPoint)));
  EXPECT_EQ(D.MaxID(), std::numeric_limits<int>::max());
  EXPECT_EQ(D.GenID(), std::numeric_limits<int>::max());
  D.RecalcMaxID();
  EXPECT_EQ(D.MaxID(), std::numeric_limits<int>::max());
  EXPECT_EQ(D.IndexOfID(6), 1);
  EXPECT_EQ(D.IndexOfID(99), -1);
  EXPECT_EQ(C->Layer(), D.Layers().Items(0));
}

TEST(TVectorDrawingItem, CloneIDsForEachOwner) {
  TVectorDrawing D, Empty, Busy;
  TVectorLine* L = AddLine(D, {0, 0}, {10, 0});
  L->SetExtData(QStringLiteral("x"));
  int Deleted = 0;
  L->OnDelete = [&](TVectorDrawingItem&) { ++Deleted; };
  std::unique_ptr<TVectorDrawingItem> Free(L->Clone(nullptr));
  EXPECT_EQ(Free->ID(), L->ID());
  EXPECT_EQ(Free->Owner(), nullptr);
  EXPECT_EQ(Free->ExtData(), QStringLiteral("x"));
  TVectorDrawingItem* Same = L->Clone(&D);
  EXPECT_NE(Same->ID(), L->ID());
  EXPECT_EQ(D.Count(), 2);
  TVectorDrawingItem* Other = L->Clone(&Empty);
  EXPECT_EQ(Other->ID(), L->ID());
  EXPECT_GT(Empty.MaxID(), L->ID());
  AddLine(Busy, {0, 0}, {1, 1})->SetID(L->ID());
  TVectorDrawingItem* Moved = L->Clone(&Busy);
  EXPECT_NE(Moved->ID(), L->ID());
  // OnDelete is copied and called before the item leaves the list
  bool StillThere = false;
  Same->OnDelete = [&](TVectorDrawingItem& I) { StillThere = D.IndexOf(&I) >= 0; ++Deleted; };
  Same->Delete();
  EXPECT_TRUE(StillThere);
  EXPECT_EQ(D.Count(), 1);
  EXPECT_EQ(Deleted, 1);
}

TEST(TVectorDrawing, HitTestOrderVetoesAndTypeSets) {
  TVectorDrawing D;
  TVectorHatch* Below = AddHatch(D, {{0, 0}, {10, 10}});
  TVectorLine* Above = AddLine(D, {0, 5}, {10, 5});
  EXPECT_EQ(D.HitTest({5, 5}, 0.5), Above);  // the newest wins
  TDrawingItemTypeSet OnlyHatch;
  OnlyHatch.set(itHatch);
  EXPECT_EQ(D.HitTest({5, 5}, 0.5, OnlyHatch), Below);
  int Asked = 0;
  D.OnBeforeHitTestItem = [&](TVectorDrawing&, TVectorDrawingItem& I, bool& Accept) {
    ++Asked;
    Accept = &I != Above;
  };
  EXPECT_EQ(D.HitTest({5, 5}, 0.5), Below);  // a veto lets the walk go on below
  EXPECT_EQ(Asked, 2);
  Asked = 0;
  EXPECT_EQ(D.SnapDrawingItem({20, 20}, 0.5), nullptr);
  EXPECT_EQ(Asked, 0);  // the geometric test comes first here
  EXPECT_EQ(D.HitTest({20, 20}, 0.5), nullptr);
}

TEST(TVectorDrawing, HitSelectFlipsAndReportsFalse) {
  TVectorDrawing D;
  TVectorLine* A = AddLine(D, {0, 0}, {10, 0});
  TVectorLine* B = AddLine(D, {0, 5}, {10, 5});
  EXPECT_FALSE(D.HitSelect(0, {-1, -1}, {11, 6}, 0.5));
  EXPECT_TRUE(A->Selected());
  EXPECT_TRUE(B->Selected());
  EXPECT_EQ(D.SelSet().Count(), 2);
  EXPECT_FALSE(D.HitSelect(0, {-1, -1}, {11, 6}, 0.5));  // a second box deselects
  EXPECT_EQ(D.SelSet().Count(), 0);
  D.HitSelect(0, {5, 0.2}, {5, 0.2}, 0.5);  // a click
  EXPECT_TRUE(A->Selected());
  EXPECT_FALSE(B->Selected());
  D.OnSelSetChanging = [&](TVectorDrawing&, TVectorDrawingItem& I, bool& Accept) { Accept = &I != B; };
  B->SetSelected(true);
  EXPECT_FALSE(B->Selected());  // vetoed
  D.Remove(A);
  EXPECT_EQ(D.SelSet().Count(), 0);  // deleting a selected item leaves the selection
}

TEST(TVectorDrawing, ClearAndInitialize) {
  TVectorDrawing D;
  D.Layers().Add(QStringLiteral("bars"));
  D.Clear();  // nothing to clear: the layers stay
  EXPECT_EQ(D.Layers().Count(), 2);
  AddLine(D, {0, 0}, {1, 0});
  AddLine(D, {0, 1}, {1, 1});
  QList<int> Gone;
  D.OnItemDeleted = [&](int AID) { Gone << AID; };
  D.Clear();
  EXPECT_EQ(Gone, (QList<int>{1, 0}));  // from the last down
  EXPECT_EQ(D.Count(), 0);
  EXPECT_EQ(D.Layers().Count(), 1);
  D.SetBackColor(0x112233);
  D.Initialize(true);
  EXPECT_EQ(D.BackColor(), 0u);
  EXPECT_EQ(D.ChangeCount(), 0);
  EXPECT_EQ(D.MaxID(), 0);
}

TEST(TLayers, DeletionRulesAndRepair) {
  TVectorDrawing D;
  TLayers& L = D.Layers();
  TLayer* Bars = L.Add(QStringLiteral("Bars"));
  EXPECT_EQ(Bars->ID(), 1);
  EXPECT_EQ(L.Add(QStringLiteral("BARS")), Bars);  // the same name, ignoring case
  TLayer* Text = L.Add(QStringLiteral("text"));
  EXPECT_EQ(L.GetItemByID(2), Text);
  EXPECT_EQ(L.GetItemByName(QStringLiteral("TEXT")), Text);
  try {
    L.Delete(0);
    FAIL();
  } catch (const Exception& E) {
    EXPECT_EQ(E.Message(), QStringLiteral("0层不能被删除"));
  }
  TVectorLine* Item = AddLine(D, {0, 0}, {1, 0});
  Item->SetLayer(Bars);
  try {
    L.Remove(Bars);
    FAIL();
  } catch (const Exception& E) {
    EXPECT_EQ(E.Message(), QStringLiteral("图层已经存在图元，不能被删除"));
  }
  Text->SetAsCurLayer();
  EXPECT_EQ(L.CurLayer(), Text);
  const int Before = D.ChangeCount();
  L.Remove(Text);
  EXPECT_EQ(L.CurLayer(), L.Items(0));  // removing the current layer makes layer 0 current
  EXPECT_EQ(D.ChangeCount(), Before + 1);
  TVectorDrawing Other;
  TLayer* Foreign = Other.Layers().Add(QStringLiteral("x"));
  EXPECT_THROW(Item->SetLayer(Foreign), Exception);
  EXPECT_EQ(Item->Layer(), Bars);

  // repair after a load: layer 0 moves to the front, or is made
  L.ClearRaw();
  L.AppendRaw(3, QStringLiteral("c"), 0, true);
  L.AppendRaw(0, QStringLiteral("zero"), 0, true);
  L.Repair();
  EXPECT_EQ(L.Items(0)->Name(), QStringLiteral("zero"));
  EXPECT_EQ(L.CurLayer(), L.Items(0));
  L.ClearRaw();
  L.AppendRaw(3, QStringLiteral("c"), 0, true);
  L.Repair();
  EXPECT_EQ(L.Count(), 2);
  EXPECT_EQ(L.Items(0)->ID(), 0);
  L.ClearRaw();
  L.Repair();
  EXPECT_EQ(L.Count(), 1);
}

TEST(TVectorDrawingItem, AssignAcrossDrawingsKeepsTheTargetsLayer) {
  TVectorDrawing A, B;
  TVectorLine* Src = AddLine(A, {0, 0}, {1, 1});
  Src->SetLayer(A.Layers().Add(QStringLiteral("L1")));
  TVectorLine* Dst = AddLine(B, {5, 5}, {6, 6});
  TLayer* Kept = Dst->Layer();
  Dst->Assign(*Src);
  EXPECT_EQ(Dst->Layer(), Kept);
  EXPECT_TRUE(Dst->GetXLine().IsEqualTo(Src->GetXLine()));
}

TEST(TVectorDrawing, VersionsAndPage) {
  TVectorDrawing D;
  EXPECT_EQ(D.Version(), QStringLiteral("2.2"));
  EXPECT_EQ(D.CompareVersion(2.2), 0);
  EXPECT_EQ(D.CompareVersion(2.1), 1);
  D.SetOriVersion(QStringLiteral("1.5"));  // the number comes from the version, not the string
  EXPECT_EQ(D.CompareOriVersion(2.2), 0);
  D.SetVersion(QStringLiteral("x"));
  EXPECT_EQ(D.CompareVersion(0), 0);

  TKRNCoordTrans T;
  T.SetCoordTransParam({0, 100}, {0, 0}, 1.0);
  TKRNBox2d R;
  D.SetDrawingHeight(300);
  ASSERT_TRUE(D.CalcDrawingRange(T, {0, 0, 100, 100}, R));
  EXPECT_EQ(R.MaxY(), 100);
  D.SetDrawingWidth(0);
  D.SetDrawingHeight(300);
  TKRNCoordTrans Wide;
  Wide.SetCoordTransParam({0, 0}, {0, 400}, 0.01);  // a view far wider than any page
  ASSERT_TRUE(D.CalcDrawingRange(Wide, {0, 0, 1000000, 100}, R));
  EXPECT_GT(R.MaxX(), 1e7);
  D.SetDrawingWidth(10);
  EXPECT_FALSE(D.CalcDrawingRange(T, {50, 0, 100, 100}, R));  // the view misses the page
}

TEST(TVectorDrawing, ExtractAndInsertKeepPositionsAndEvents) {
  TVectorDrawing D;
  QStringList Events;
  D.OnItemAdded = [&](int AID) { Events << QStringLiteral("+%1").arg(AID); };
  D.OnItemDeleted = [&](int AID) { Events << QStringLiteral("-%1").arg(AID); };
  std::vector<TVectorLine*> L;
  for (int I = 0; I < 4; ++I) L.push_back(AddLine(D, {0, double(I)}, {10, double(I)}));
  Events.clear();
  D.SelSet().Add(L[1]);
  const int Changes = D.ChangeCount();
  std::unique_ptr<TVectorDrawingItem> Out = D.Extract(1);
  EXPECT_EQ(Out.get(), L[1]);
  EXPECT_FALSE(Out->Selected());
  EXPECT_EQ(D.SelSet().Count(), 0);
  EXPECT_EQ(D.ItemByID(L[1]->ID()), nullptr);
  EXPECT_EQ(D.Count(), 3);
  D.Insert(1, std::move(Out));
  EXPECT_EQ(D.Items(1), L[1]);
  EXPECT_EQ(D.ItemByID(L[1]->ID()), L[1]);
  EXPECT_EQ(Events, (QStringList{QStringLiteral("-%1").arg(L[1]->ID()), QStringLiteral("+%1").arg(L[1]->ID())}));
  EXPECT_EQ(D.ChangeCount(), Changes + 2);
  // An index past the end appends; a taken ID is renumbered as Add does.
  auto* Dup = new TVectorLine(&D, L[0]->ID(), 0, 0, psSolid, 0, 0, msNone, msNone, {0, 0}, {1, 1});
  EXPECT_EQ(D.Insert(99, std::unique_ptr<TVectorDrawingItem>(Dup)), 4);
  EXPECT_NE(Dup->ID(), L[0]->ID());
  EXPECT_EQ(D.ItemByID(L[0]->ID()), L[0]);
}

TEST(TVectorDrawing, ItemByIDFollowsIDChangesAndDuplicates) {
  TVectorDrawing D;
  TVectorLine* A = AddLine(D, {0, 0}, {1, 0});
  TVectorLine* B = AddLine(D, {0, 1}, {1, 1});
  const int Old = A->ID();
  A->SetID(77);
  EXPECT_EQ(D.ItemByID(77), A);
  EXPECT_EQ(D.ItemByID(Old), nullptr);
  EXPECT_EQ(D.IndexOfID(77), 0);
  // Loaders append as read, duplicates included: the first in the list wins.
  auto* Twin = new TVectorLine(&D, B->ID(), 0, 0, psSolid, 0, 0, msNone, msNone, {0, 2}, {1, 2});
  D.AppendRaw(Twin);
  EXPECT_EQ(D.ItemByID(B->ID()), B);
  D.Delete(D.IndexOf(B));
  EXPECT_EQ(D.ItemByID(Twin->ID()), Twin);
}

TEST(TVectorDrawing, SnapshotsOfAnotherKindAreRefusedAndInspectingCountsNothing) {
  TVectorDrawing D;
  TVectorLine* L = AddLine(D, {0, 0}, {10, 0});
  auto* P = new TVectorPoint(&D, 0, 0, {5, 5}, 4, psPoint);
  D.Add(std::unique_ptr<TVectorDrawingItem>(P));
  EXPECT_THROW(L->SetCoordData(*P->CreateCoordData()), EVDEError);
  EXPECT_THROW(P->SetCoordData(*L->CreateCoordData()), EVDEError);
  const int Changes = D.ChangeCount();
  TVDISnapVertexVisitor V({9.5, 0.2}, 1);
  L->Inspect(V);
  EXPECT_TRUE(V.SnapSuccess());
  EXPECT_EQ(D.ChangeCount(), Changes);
  L->Accept(V);
  EXPECT_EQ(D.ChangeCount(), Changes + 1);
}
