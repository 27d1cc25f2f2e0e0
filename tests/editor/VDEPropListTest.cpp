#include "Dialogs.h"
#include "VDEPropList.h"

#include <gtest/gtest.h>

TEST(TVDEPropItem, ValidateWithTheSystemsMessages) {
  const struct {
    TVDEPropType Type;
    const char* Value;
    const char* Error;  // empty: valid
  } Cases[] = {
      {ptExtData, "", ""},
      {ptColor, "16711680", ""},
      {ptColor, "red", "非法颜色值"},
      {ptPointSize, "32767", ""},
      {ptPointSize, "0", "点尺寸值必须在(0, 32767]之间"},
      {ptPointSize, "32768", "点尺寸值必须在(0, 32767]之间"},
      {ptPointStyle, "叉", ""},
      {ptPointStyle, "方", "点类型[方]非法"},
      {ptLineWidth, " -100 ", ""},
      {ptLineWidth, "-101", "线宽必须在[-100, 1000]之间"},
      {ptLineWidth, "1000", ""},
      {ptLineWidth, "1001", "线宽必须在[-100, 1000]之间"},
      {ptLineStyle, "双点划线", ""},
      {ptLineStyle, "波浪线", "线型[波浪线]非法"},
      {ptStartMarkStyle, "[无]", ""},
      {ptEndMarkStyle, "无", "标记类型[无]非法"},
      {ptStartMarkSize, "-255", ""},
      {ptEndMarkSize, "256", "标记尺寸必须在[-255, 255]之间"},
      {ptFillStyle, "十字交叉线", ""},
      {ptFillStyle, "网格", "填充方式[网格]非法"},
      {ptText, "A", ""},
      {ptText, "  ", "文本不能为空"},
      {ptFontName, "宋体", ""},
      {ptFontName, "没有这种字体", "字体[没有这种字体]非法"},
      {ptFontHeight, "-32768", ""},
      {ptFontHeight, "0", "字体高度必须在[-32768, 32767]之间，且不能为零"},
      {ptFontHeight, "32768", "字体高度必须在[-32768, 32767]之间，且不能为零"},
      {ptFontStyle, "加粗倾斜", ""},
      {ptFontStyle, "粗", "字型[粗]非法"},
      {ptTransparent, "f", ""},
      {ptTransparent, "Y", "透明属性值非法"},
      {ptTextBackColor, "12.5", "非法颜色值"},
      {ptHorzAlignment, "居中", ""},
      {ptHorzAlignment, "上对齐", "水平对齐方式[上对齐]非法"},
      {ptVertAlignment, "下对齐", ""},
      {ptVertAlignment, "右对齐", "垂直对齐方式[右对齐]非法"},
  };
  TVDEPropList L;
  for (const auto& C : Cases) {
    SCOPED_TRACE(std::string(VDEPropInfo(C.Type).Name) + " " + C.Value);
    QString Msg;
    const bool Ok = L.Items(C.Type).Validate(QString::fromUtf8(C.Value), Msg);
    EXPECT_EQ(Ok, *C.Error == 0);
    EXPECT_EQ(Msg, QString::fromUtf8(C.Error));
  }
}

TEST(TVDEPropItem, SettingAValueReportsItInTheFormItemsTake) {
  std::vector<std::pair<TVDEPropType, QString>> Events;
  TVDEPropList L([&](TVDEPropType T, const QString& V) { Events.emplace_back(T, V); });
  TDialogScope Boxes;
  L.Items(ptLineStyle).SetValue(QStringLiteral("点线"));
  L.Items(ptFontName).SetValue(QStringLiteral("宋体"));  // unchanged: nothing
  L.Items(ptTransparent).SetValue(QStringLiteral(" f "));
  L.Items(ptText).SetValue(QStringLiteral("L=1"));
  L.Items(ptColor).SetValue(QStringLiteral("255"));
  ASSERT_EQ(Events.size(), 4u);
  EXPECT_EQ(Events[0], std::make_pair(ptLineStyle, QStringLiteral("2")));
  EXPECT_EQ(Events[1], std::make_pair(ptTransparent, QStringLiteral("0")));
  EXPECT_EQ(L.Items(ptTransparent).Value(), QStringLiteral("F"));
  EXPECT_EQ(Events[2], std::make_pair(ptText, QStringLiteral("L=1")));
  EXPECT_EQ(Events[3], std::make_pair(ptColor, QStringLiteral("255")));
  EXPECT_TRUE(Boxes->Calls.empty());
}

TEST(TVDEPropItem, ARefusedValueShowsItsMessageAndKeepsTheOldOne) {
  int Events = 0;
  TVDEPropList L([&](TVDEPropType, const QString&) { ++Events; });
  TDialogScope Boxes;
  L.Items(ptFontHeight).SetValue(QStringLiteral("0"));
  EXPECT_EQ(L.Items(ptFontHeight).Value(), QStringLiteral("12"));
  EXPECT_EQ(Boxes->Lines(), QStringList{QStringLiteral("[错误] 字体高度必须在[-32768, 32767]之间，且不能为零")});
  // An empty text and the mixed marker are stored as they are, without a check or an event.
  L.Items(ptText).SetValue(QString());
  L.Items(ptColor).SetValue(QStringLiteral("?"));
  EXPECT_EQ(L.Items(ptColor).Value(), QStringLiteral("?"));
  EXPECT_EQ(Events, 0);
  EXPECT_EQ(Boxes->Calls.size(), 1u);
}

TEST(TVDEPropItem, AHiddenRowStoresWithoutReporting) {
  int Events = 0;
  TVDEPropList L([&](TVDEPropType, const QString&) { ++Events; });
  TDrawingItemTypeSet Lines;
  Lines.set(itLine);
  L.SetFilterItemTypeSet(Lines);
  EXPECT_FALSE(L.Items(ptText).Visible());
  EXPECT_TRUE(L.Items(ptLineWidth).Visible());
  L.Items(ptFontHeight).SetValue(QStringLiteral("20"));
  EXPECT_EQ(L.Items(ptFontHeight).Value(), QStringLiteral("20"));
  EXPECT_EQ(Events, 0);
  const std::vector<TVDEPropType> Rows = L.ShownRows();
  EXPECT_EQ(Rows, (std::vector<TVDEPropType>{ptExtData, ptColor, ptLineWidth, ptLineStyle, ptStartMarkStyle,
                                             ptEndMarkStyle, ptStartMarkSize, ptEndMarkSize}));
  L.SetFilterItemTypeSet({});
  EXPECT_EQ(L.ShownRows().size(), 19u);
}

TEST(TVDEPropItem, IntegerAccessors) {
  TVDEPropList L;
  EXPECT_EQ(L.Items(ptFillStyle).AsInteger(), 7);  // "交叉线"
  L.Items(ptFillStyle).SetAsInteger(2);
  EXPECT_EQ(L.Items(ptFillStyle).Value(), QStringLiteral("水平线"));
  EXPECT_EQ(L.Items(ptTransparent).AsInteger(), 1);
  EXPECT_EQ(L.Items(ptPointSize).AsInteger(), 4);
  EXPECT_EQ(VDEItemValueToText(ptEndMarkStyle, QStringLiteral("4")), QStringLiteral("弯钩"));
  EXPECT_EQ(VDETextToItemValue(ptVertAlignment, QStringLiteral("居中")), QStringLiteral("2"));
}
