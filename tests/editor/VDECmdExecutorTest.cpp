#include "EditorTestUtils.h"
#include "VDECmdExecutor.h"

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
