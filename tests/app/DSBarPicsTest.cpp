#include "DSBarPics.h"
#include "DrawSetConsts.h"
#include "MemoryDataSvr.h"
#include "VDIText.h"

#include <gtest/gtest.h>

namespace {

QString S(const char* AText) { return QString::fromUtf8(AText); }

QList<int> Ids(const QVector<TBarPicPageItem>& AItems) {
  QList<int> R;
  for (const TBarPicPageItem& I : AItems) R << I.BarPicID;
  return R;
}

}  // namespace

TEST(TDSBarPics, FetchesEachPictureOnce) {
  TMemoryPicServer Server;
  TDSBarPics Pics(Server);
  EXPECT_EQ(Server.PicCalls, 1);
  TDSBarPic* P = Pics.GetItemByID(601);
  ASSERT_NE(P, nullptr);
  EXPECT_EQ(Pics.GetItemByID(601), P);
  EXPECT_EQ(Server.ParamCalls, 1);
  EXPECT_EQ(Server.PicCalls, 1);
  EXPECT_EQ(P->Drawing().Count(), 3);
  EXPECT_EQ(P->Drawing().Tag(), 601);
  ASSERT_EQ(P->ParamCount(), 2);
  EXPECT_EQ(P->GetItemByCode(S("l1")), P->Params(0));
  EXPECT_TRUE(P->Params(0)->IsSCPJParam);
  EXPECT_EQ(P->Params(0)->DrawingItem, P->Drawing().ItemByID(5));  // the drawing's own text
  EXPECT_EQ(P->GetItemByVGID(77), P->Params(1));                    // a text of its own
  EXPECT_EQ(P->GetItemByID(8), P->Params(1));
  EXPECT_EQ(Pics.GetItemByID(4711), nullptr);
  EXPECT_EQ(Server.ParamCalls, 1);
}

TEST(TBarPicCatalog, PagesListWhatTheyShould) {
  SetRegionSettings(1);
  TMemoryPicServer Server;
  const auto C = TBarPicCatalog::Fetch(Server);
  EXPECT_EQ(Server.PicCalls, 2);  // system and custom
  const TCommonBarPicList Common = {{133, 100}, {64, 50}};
  EXPECT_EQ(Ids(C->Page(bppCommon, Common)), (QList<int>{1, 64, 133}));  // by order: 1, 50, 100
  EXPECT_EQ(Ids(C->Page(bppBS, Common)), (QList<int>{1, 536, 601, 64}));  // by shape code: 00 11 20 21
  // Straight, no hook: 1 is on the common page by its order; the custom 10003 has its page.
  EXPECT_EQ(Ids(C->Page(bppSystem, Common, 0, 0)), (QList<int>{601, 602}));
  EXPECT_EQ(Ids(C->Page(bppSystem, Common, 3, 2)), (QList<int>{948}));  // 133 is the user's
  EXPECT_TRUE(C->Page(bppSystem, Common, -1, 0).isEmpty());
  EXPECT_EQ(Ids(C->Page(bppHK, Common)), (QList<int>{356, 948}));
  EXPECT_EQ(Ids(C->Page(bppCustom, Common, -1, -1, 1)), (QList<int>{10001, 10002}));
  EXPECT_EQ(C->BendEntries().at(1).second, S("3.箍筋"));
  EXPECT_EQ(C->CustomTypes().size(), 2);
  EXPECT_EQ(TBarPicCatalog::LabelText({601, S("20"), 0}), S("第601号钢筋"));

  // Regions with shape codes: nothing goes to the common page alone, "99" stays out.
  SetRegionSettings(3);
  EXPECT_EQ(Ids(C->Page(bppSystem, Common, 0, 0)), (QList<int>{1, 601}));
  EXPECT_EQ(TBarPicCatalog::LabelText({601, S("20"), 0}), S("图号 20"));
  SetRegionSettings(1);
}

TEST(TBarPicCatalog, SystemDrawingBeforeCustomAndEmptyDatasetsRefused) {
  TMemoryPicServer Server;
  TDataPacket Custom = Server.Pics;
  Custom.Rows[4].Values[1] = TMemoryDataSvr::Drawing(5);  // 601 in the custom dataset too
  Custom.AddRow({20000, TMemoryDataSvr::Drawing(4), S("图"), 2, 0, 0, 0, S("99")});
  TBarPicCatalog C(Server.Bends, Server.Hooks, Server.Classes, Server.Pics, Custom, Server.CustomTypes);
  EXPECT_EQ(C.DrawingOf(601), TMemoryDataSvr::Drawing(2));
  EXPECT_EQ(C.DrawingOf(20000), TMemoryDataSvr::Drawing(4));
  EXPECT_TRUE(C.DrawingOf(5).isEmpty());
  try {
    TBarPicCatalog Bad(Server.Bends, TDataPacket(), Server.Classes, Server.Pics, Custom, Server.CustomTypes);
    FAIL();
  } catch (const Exception& E) {
    EXPECT_EQ(E.Message(), S("参数数据集为空，选择图形操作被中止"));
  }
}
