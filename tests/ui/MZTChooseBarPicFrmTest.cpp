#include "DrawSetConsts.h"
#include "Dialogs.h"
#include "MZTChooseBarPicFrm.h"
#include "VectorDrawing.h"
#include "VectorIconViewer.h"

#include "../app/MemoryDataSvr.h"

#include <QCoreApplication>
#include <QKeyEvent>
#include <QTreeWidget>

#include <gtest/gtest.h>

namespace {

QString S(const char* AText) { return QString::fromUtf8(AText); }

// The common list kept in memory for one test.
struct TCommonScope {
  TCommonBarPicList List;
  TCommonBarPicStore Saved = CommonBarPicStore();
  TCommonScope() {
    CommonBarPicStore() = {[this] { return List; }, [this](const TCommonBarPicList& A) { List = A; }};
  }
  ~TCommonScope() { CommonBarPicStore() = Saved; }
};

QList<int> Ids(const TMZTChooseBarPicForm& F) {
  QList<int> R;
  for (const TBarPicPageItem& I : F.PicArray()) R << I.BarPicID;
  return R;
}

}  // namespace

TEST(TMZTChooseBarPicForm, ScriptPicksAPictureOnWhicheverPageListsIt) {
  SetRegionSettings(1);
  TMemoryPicServer Server;
  TCommonScope Common;
  TDialogScope Boxes;
  const struct {
    int Pic;
  } Cases[] = {{601}, {10003}, {948}, {1}};
  for (const auto& C : Cases) {
    SCOPED_TRACE(C.Pic);
    Boxes->QueueChoose(QStringLiteral("pic %1").arg(C.Pic));
    Boxes->QueueButton(mrOk);
    int Pic = -1;
    EXPECT_EQ(TMZTChooseBarPicForm::Execute(Pic, Server, false, true, false), mrOk);
    EXPECT_EQ(Pic, C.Pic);
  }
  Boxes->QueueChoose(S("pic 4711"));
  int Pic = -1;
  EXPECT_THROW(TMZTChooseBarPicForm::Execute(Pic, Server, false, true, false), EUnexpectedDialog);
  Boxes->Queue.clear();
  // Without the custom page its pictures are not offered.
  Boxes->QueueChoose(S("pic 10003"));
  EXPECT_THROW(TMZTChooseBarPicForm::Execute(Pic, Server, false, false, false), EUnexpectedDialog);
  Boxes->Queue.clear();
  Boxes->QueueButton(mrCancel);
  EXPECT_EQ(TMZTChooseBarPicForm::Execute(Pic, Server, false, true, false), mrCancel);
}

TEST(TMZTChooseBarPicForm, AnEmptyPageRefusesOK) {
  SetRegionSettings(1);
  TMemoryPicServer Server;
  TCommonScope Common;
  TDialogScope Boxes;
  // The system page opens on the first bend and hook: straight, no hook has 601 and 602.
  const auto Catalog = TBarPicCatalog::Fetch(Server);
  TMZTChooseBarPicForm F(*Catalog, true);
  F.SetPage(bppSystem);
  EXPECT_EQ(Ids(F), (QList<int>{601, 602}));
  EXPECT_EQ(F.LabelText(), S("第601号钢筋"));
  F.SetPage(bppCustom);
  EXPECT_TRUE(F.UseCustomed());
  EXPECT_EQ(Ids(F), (QList<int>{10001, 10002}));
  // A custom type without pictures: OK is refused with the hint.
  Server.CustomTypes.AddRow({9, S("空")});
  const auto Catalog2 = TBarPicCatalog::Fetch(Server);
  TMZTChooseBarPicForm G(*Catalog2, true);
  G.SetPage(bppCommon);
  EXPECT_EQ(Ids(G), QList<int>{1});
  EXPECT_TRUE(G.Accept());
  EXPECT_EQ(G.PicID(), 1);
  G.SetPage(bppHK);
  G.Grid().SetItemIndex(1);
  EXPECT_TRUE(G.Accept());
  EXPECT_EQ(G.PicID(), 948);
  G.SetPage(bppBS);
  EXPECT_EQ(G.Grid().Count(), 4);
  EXPECT_FALSE(G.UseCustomed());

  TMZTChooseBarPicForm H(*Catalog2, true);
  ASSERT_TRUE(H.SelectPicture(10003));  // on the second custom type
  EXPECT_EQ(Ids(H), QList<int>{10003});
  EXPECT_EQ(H.Page(), bppCustom);
  // The third type has no pictures: OK shows the hint and chooses nothing.
  ASSERT_FALSE(H.SelectPicture(4711));
  H.SetPage(bppCustom);
  H.findChild<QTreeWidget*>()->setCurrentItem(H.findChild<QTreeWidget*>()->topLevelItem(2));
  EXPECT_TRUE(Ids(H).isEmpty());
  EXPECT_FALSE(H.Accept());
  EXPECT_EQ(Boxes->Lines(), QStringList{S("[提示] 尚未选择有效的图形")});
}

TEST(TMZTChooseBarPicForm, CommonListGrowsAndShrinks) {
  SetRegionSettings(1);
  TMemoryPicServer Server;
  TCommonScope Common;
  const auto Catalog = TBarPicCatalog::Fetch(Server);
  TMZTChooseBarPicForm F(*Catalog, true);
  F.SetPage(bppSystem);
  ASSERT_EQ(Ids(F), (QList<int>{601, 602}));
  F.AddToCommonList();  // 601, order 100 for the first
  EXPECT_EQ(Common.List, (TCommonBarPicList{{601, 100}}));
  EXPECT_EQ(Ids(F), QList<int>{602});  // the system page leaves the user's pictures out
  F.AddToCommonList();
  EXPECT_EQ(Common.List, (TCommonBarPicList{{601, 100}, {602, 101}}));
  F.SetPage(bppCommon);
  EXPECT_EQ(Ids(F), (QList<int>{1, 601, 602}));
  F.Grid().SetItemIndex(1);
  F.RemoveFromCommonList();
  EXPECT_EQ(Common.List, (TCommonBarPicList{{602, 101}}));
  EXPECT_EQ(Ids(F), (QList<int>{1, 602}));
}

TEST(TVectorAutoColRow, ColumnsFitTheWidthAndArrowsMove) {
  TVectorAutoColRow G;
  G.resize(2 * 4 + 3 * (230 + 4) + 20, 200);
  G.show();
  for (int I = 0; I < 7; ++I) G.Add(new TVectorDrawingViewer, 100 + I);
  EXPECT_EQ(G.ColCount(), 3);
  EXPECT_EQ(G.GetItems(4)->pos(), QPoint(4 + 234, 4 + 64));
  EXPECT_EQ(G.Tag(6), 106);
  int Changes = 0;
  G.OnIconChanged = [&] { ++Changes; };
  G.SetItemIndex(0);
  QKeyEvent Down(QEvent::KeyPress, Qt::Key_Down, Qt::NoModifier);
  QCoreApplication::sendEvent(&G, &Down);
  EXPECT_EQ(G.ItemIndex(), 3);
  QKeyEvent Right(QEvent::KeyPress, Qt::Key_Right, Qt::NoModifier);
  QCoreApplication::sendEvent(&G, &Right);
  QCoreApplication::sendEvent(&G, &Down);  // 7 would be past the end: stays
  EXPECT_EQ(G.ItemIndex(), 4);
  EXPECT_TRUE(G.GetItems(4)->Focused());
  EXPECT_FALSE(G.GetItems(3)->Focused());
  EXPECT_EQ(Changes, 3);
  G.resize(2 * 4 + 230 + 20, 200);
  EXPECT_EQ(G.ColCount(), 1);
  G.Clear();
  EXPECT_EQ(G.Count(), 0);
  EXPECT_EQ(G.ItemIndex(), -1);
}
