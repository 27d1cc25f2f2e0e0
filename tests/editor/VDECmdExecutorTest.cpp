#include "EditorTestUtils.h"
#include "VDECmdExecutor.h"
#include "VDIText.h"

namespace {

// Records the order of undo and redo calls by tag.
struct TTrace {
  std::vector<QString> Calls;
};

class TTagExecutor : public IVDECmdExecutor {
public:
  TTagExecutor(TTrace& ATrace, int ATag) : FTrace(ATrace), FTag(ATag) {}
  void Redo() override { FTrace.Calls.push_back(QStringLiteral("R%1").arg(FTag)); }
  void Undo() override { FTrace.Calls.push_back(QStringLiteral("U%1").arg(FTag)); }

private:
  TTrace& FTrace;
  int FTag;
};

void Fill(TVDECmdExecList& L, TTrace& T, int AFrom, int ATo) {
  for (int I = AFrom; I <= ATo; ++I) L.AddExecutor(std::make_shared<TTagExecutor>(T, I));
}

}  // namespace

TEST(TVDECmdExecList, CapacityFromTheConstructorAndSetter) {
  const struct {
    int Asked, Constructed, Set;
  } Cases[] = {{-1, 100, 2}, {0, 2, 2}, {1, 2, 2}, {2, 2, 2}, {5, 5, 5}, {-7, 2, 2}};
  for (const auto& C : Cases) {
    SCOPED_TRACE(C.Asked);
    TVDECmdExecList L(C.Asked);
    EXPECT_EQ(L.GetCapacity(), C.Constructed);
    L.SetCapacity(C.Asked);
    EXPECT_EQ(L.GetCapacity(), C.Asked == -1 ? 2 : C.Set);
  }
}

TEST(TVDECmdExecList, TheOldestRecordGoesWhenFull) {
  TTrace T;
  TVDECmdExecList L(-1);
  Fill(L, T, 1, 105);
  EXPECT_EQ(L.Count(), 100);
  int Undos = 0;
  while (L.CanUndo()) {
    L.Undo();
    ++Undos;
  }
  EXPECT_EQ(Undos, 100);
  EXPECT_EQ(T.Calls.front(), QStringLiteral("U105"));
  EXPECT_EQ(T.Calls.back(), QStringLiteral("U6"));  // 1 to 5 were dropped
  EXPECT_TRUE(L.CanRedo());
}

TEST(TVDECmdExecList, ANewRecordDropsTheRedoTail) {
  TTrace T;
  TVDECmdExecList L(10);
  Fill(L, T, 1, 4);
  L.Undo();
  L.Undo();
  Fill(L, T, 5, 5);
  EXPECT_EQ(L.Count(), 3);
  EXPECT_FALSE(L.CanRedo());
  L.Undo();
  L.Undo();
  L.Redo();
  L.Redo();
  EXPECT_EQ(T.Calls, (std::vector<QString>{"U4", "U3", "U5", "U2", "R2", "R5"}));
}

TEST(TVDECmdExecList, ACapacityBelowTheCountClearsTheWholeList) {
  TTrace T;
  TVDECmdExecList L(-1);
  Fill(L, T, 1, 8);
  L.SetCapacity(8);
  EXPECT_EQ(L.Count(), 8);  // not below: kept
  L.SetCapacity(5);
  EXPECT_EQ(L.Count(), 0);
  EXPECT_EQ(L.CurStepIndex(), -1);
  EXPECT_FALSE(L.CanUndo());
  EXPECT_FALSE(L.CanRedo());
  L.Undo();
  L.Redo();
  EXPECT_TRUE(T.Calls.empty());
}

TEST(TVDECmdExecList, UndoAndRedoAtTheEndsDoNothing) {
  TTrace T;
  TVDECmdExecList L(3);
  L.Undo();
  L.Redo();
  Fill(L, T, 1, 1);
  L.Redo();
  L.Undo();
  L.Undo();
  EXPECT_EQ(T.Calls, (std::vector<QString>{"U1"}));
}

// ---- records on a drawing ---------------------------------------------------

using TVDEExecutorTest = EditorFixture;

TEST_F(TVDEExecutorTest, DeleteUndoRedoKeepIDsAndPositions) {
  for (int I = 0; I < 6; ++I) AddLine(I * 10, 0, I * 10, 50);
  const std::vector<int> Before = Items();
  // Selected out of list order: undo must still put each back where it was.
  D().SelSet().Add(D().Items(4));
  D().SelSet().Add(D().Items(1));
  D().SelSet().Add(D().Items(2));
  auto X = std::make_shared<TVDEDeleteCmdExecutor>(*E);
  ASSERT_TRUE(X->Delete());
  EXPECT_EQ(Items(), (std::vector<int>{Before[0], Before[3], Before[5]}));
  X->Undo();
  EXPECT_EQ(Items(), Before);
  X->Redo();
  EXPECT_EQ(Items(), (std::vector<int>{Before[0], Before[3], Before[5]}));
  X->Undo();
  EXPECT_EQ(Items(), Before);
  EXPECT_FALSE(std::make_shared<TVDEDeleteCmdExecutor>(*E)->Delete());  // empty selection
}

TEST_F(TVDEExecutorTest, AnItemAlreadyGoneIsSkipped) {
  const int A = AddLine(0, 0, 10, 0);
  const int B = AddLine(0, 10, 10, 10);
  D().SelSet().Add(D().Items(0));
  auto X = std::make_shared<TVDEMoveCmdExecutor>(*E);
  ASSERT_TRUE(X->Move({0, 0}, {5, 5}));
  D().Delete(D().IndexOfID(A));
  X->Undo();
  X->Redo();
  EXPECT_EQ(Items(), std::vector<int>{B});
}

TEST_F(TVDEExecutorTest, MoveUndoBringsBackPlaceAndView) {
  const int A = AddLine(0, 0, 10, 0);
  D().SelSet().Add(D().Items(0));
  auto X = std::make_shared<TVDEMoveCmdExecutor>(*E);
  EXPECT_FALSE(X->Move({1, 1}, {1.0005, 1}));  // the same point within tolerance
  ASSERT_TRUE(X->Move({0, 0}, {3, 4}));
  E->GetCoordTrans().SetCoordTransParam({10, 10}, {500, 500}, 7);
  X->Undo();
  const auto* L = static_cast<TVectorLine*>(D().ItemByID(A));
  EXPECT_DOUBLE_EQ(L->GetXLine().StartPt().X, 0);
  EXPECT_DOUBLE_EQ(E->GetCoordTrans().ZoomFactor(), 1);
  EXPECT_EQ(E->GetCoordTrans().DPoint().X, 400);
  X->Redo();
  EXPECT_DOUBLE_EQ(L->GetXLine().EndPt().Y, 4);
}

TEST_F(TVDEExecutorTest, SetPropOnlyRecordsOfferedAndChangedValues) {
  AddLine(0, 0, 10, 0);
  auto X = std::make_shared<TVDESetPropCmdExecutor>(*E);
  TVectorDrawingItem& L = *D().Items(0);
  EXPECT_FALSE(X->SetProp(L, ptText, QStringLiteral("x")));           // a line has no text
  EXPECT_FALSE(X->SetProp(L, ptColor, QStringLiteral("16777215")));   // unchanged
  EXPECT_TRUE(X->SetProp(L, ptColor, QStringLiteral("255")));
  EXPECT_EQ(L.Color(), 255u);
  X->Undo();
  EXPECT_EQ(L.Color(), 0xFFFFFFu);
  X->Redo();
  EXPECT_EQ(L.Color(), 255u);
}

TEST_F(TVDEExecutorTest, DrawAndCopyUndoTakeTheNewItemsOutAndRedoPutsTheSameIDsBack) {
  const int A = AddLine(0, 0, 10, 0);
  D().SelSet().Add(D().Items(0));
  auto C = std::make_shared<TVDECopyCmdExecutor>(*E);
  ASSERT_TRUE(C->Copy({0, 0}, {0, 20}));
  ASSERT_EQ(D().Count(), 2);
  const int Copy = D().Items(1)->ID();
  EXPECT_NE(Copy, A);
  EXPECT_DOUBLE_EQ(static_cast<TVectorLine*>(D().Items(1))->GetXLine().StartPt().Y, 20);
  C->Undo();
  EXPECT_EQ(Items(), std::vector<int>{A});
  C->Redo();
  EXPECT_EQ(Items(), (std::vector<int>{A, Copy}));

  TVectorLine Proto(&D(), 0, 0xFF, 0, psSolid, 0, 0, msNone, msNone, {0, 0}, {1, 1});
  auto Dr = std::make_shared<TVDEDrawCmdExecutor>(*E);
  const int New = Dr->AddItem(Proto)->ID();
  Dr->Undo();
  EXPECT_EQ(D().ItemByID(New), nullptr);
  Dr->Redo();
  EXPECT_EQ(Items(), (std::vector<int>{A, Copy, New}));
}

TEST_F(TVDEExecutorTest, CoordChangeRestoresSnapshots) {
  const int A = AddLine(0, 0, 10, 0);
  auto X = std::make_shared<TVDECoordChangeCmdExecutor>(*E);
  TVectorLine* L = static_cast<TVectorLine*>(D().ItemByID(A));
  X->AddOld(*L);
  TVDIMoveVisitor V({0, 0}, {1, 2});
  L->Accept(V);
  X->AddNew(*L);
  X->Undo();
  EXPECT_DOUBLE_EQ(L->GetXLine().StartPt().Y, 0);
  X->Redo();
  EXPECT_DOUBLE_EQ(L->GetXLine().StartPt().Y, 2);
}

TEST_F(TVDEExecutorTest, RotateInPlaceOrAsCopiesAndUndoIt) {
  const int A = AddLine(10, 0, 20, 0);
  auto* T = new TVectorText(&D(), D().GenID(), 0, QStringLiteral("x"), {10, 0}, 0.25, QStringLiteral("宋体"), 12, 0,
                            haLeftJustify, vaTopJustify, true, 0, QString());
  D().Add(std::unique_ptr<TVectorDrawingItem>(T));
  D().SelSet().Add(D().ItemByID(A));
  D().SelSet().Add(T);
  auto L = [&] { return static_cast<TVectorLine*>(D().ItemByID(A)); };
  EXPECT_FALSE(std::make_shared<TVDERotateCmdExecutor>(*E)->Rotate({0, 0}, 0, true));
  auto X = std::make_shared<TVDERotateCmdExecutor>(*E);
  ASSERT_TRUE(X->Rotate({0, 0}, KRNPi / 2, true));
  EXPECT_NEAR(L()->GetXLine().StartPt().Y, 10, 1e-9);
  EXPECT_NEAR(T->Angle(), KRNPi / 2, 1e-6);
  X->Undo();
  EXPECT_NEAR(L()->GetXLine().StartPt().X, 10, 1e-9);
  EXPECT_NEAR(L()->GetXLine().StartPt().Y, 0, 1e-9);
  EXPECT_NEAR(T->Angle(), 0.25, 1e-6);
  X->Redo();
  EXPECT_NEAR(T->InsertPt().Y, 10, 1e-9);

  auto C = std::make_shared<TVDERotateCmdExecutor>(*E);
  ASSERT_TRUE(C->Rotate({0, 0}, KRNPi, false));
  ASSERT_EQ(D().Count(), 4);  // the sources stay
  const std::vector<int> After = Items();
  C->Undo();
  EXPECT_EQ(D().Count(), 2);
  C->Redo();
  EXPECT_EQ(Items(), After);
}

TEST_F(TVDEExecutorTest, MirrorUndoesItself) {
  const int A = AddLine(10, 5, 20, 5);
  D().SelSet().Add(D().ItemByID(A));
  auto X = std::make_shared<TVDEMirrorCmdExecutor>(*E);
  X->Mirror(TKRNBeeline2d({0, 0}, {1, 0}), true);
  auto* L = static_cast<TVectorLine*>(D().ItemByID(A));
  EXPECT_NEAR(L->GetXLine().StartPt().Y, -5, 1e-9);
  X->Undo();
  EXPECT_NEAR(L->GetXLine().StartPt().Y, 5, 1e-9);
  auto C = std::make_shared<TVDEMirrorCmdExecutor>(*E);
  C->Mirror(TKRNBeeline2d({0, 0}, {1, 0}), false);
  EXPECT_EQ(D().Count(), 2);
  C->Undo();
  EXPECT_EQ(Items(), std::vector<int>{A});
}

TEST_F(TVDEExecutorTest, GripAndItemDragsAndStretchRecordSnapshots) {
  const int A = AddLine(0, 0, 10, 0);
  const int B = AddLine(10, 0, 10, 10);
  auto* LA = static_cast<TVectorLine*>(D().ItemByID(A));
  auto* LB = static_cast<TVectorLine*>(D().ItemByID(B));
  auto G = std::make_shared<TVDEDragGripCmdExecutor>(*E);
  EXPECT_FALSE(G->DragGrip({{1, LA}}, {10, 0}, {10, 0}));  // released where pressed
  ASSERT_TRUE(G->DragGrip({{1, LA}, {0, LB}}, {10, 0}, {12, 3}));  // a shared end moves on both
  EXPECT_NEAR(LA->GetXLine().EndPt().X, 12, 1e-9);
  EXPECT_NEAR(LB->GetXLine().StartPt().Y, 3, 1e-9);
  G->Undo();
  EXPECT_NEAR(LA->GetXLine().EndPt().X, 10, 1e-9);
  EXPECT_NEAR(LB->GetXLine().StartPt().Y, 0, 1e-9);

  D().SelSet().Add(LA);
  auto M = std::make_shared<TVDEDragMoveCmdExecutor>(*E);
  ASSERT_TRUE(M->DragMove({0, 0}, {0, 5}));
  EXPECT_NEAR(LA->GetXLine().StartPt().Y, 5, 1e-9);
  M->Undo();
  EXPECT_NEAR(LA->GetXLine().StartPt().Y, 0, 1e-9);

  D().SelSet().Add(LB);
  auto S = std::make_shared<TVDEStretchCmdExecutor>(*E);
  S->Stretch(TKRNBox2d{{8, -2}, {12, 2}}, {0, 0}, {5, 0});  // only the ends in the box move
  EXPECT_NEAR(LA->GetXLine().EndPt().X, 15, 1e-9);
  EXPECT_NEAR(LA->GetXLine().StartPt().X, 0, 1e-9);
  S->Undo();
  EXPECT_NEAR(LA->GetXLine().EndPt().X, 10, 1e-9);
  S->Redo();
  EXPECT_NEAR(LB->GetXLine().StartPt().X, 15, 1e-9);
}
