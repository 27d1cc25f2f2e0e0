#include "Dialogs.h"
#include "VDEPropGrid.h"

#include <QApplication>
#include <QComboBox>
#include <QKeyEvent>
#include <QLineEdit>

#include <gtest/gtest.h>

namespace {

int ShownRows(TVDEPropGrid& G) {
  int N = 0;
  for (int R = 0; R < G.Model().rowCount(); ++R) N += G.isRowHidden(R) ? 0 : 1;
  return N;
}

}  // namespace

TEST(TVDEPropGrid, RowsShowByItemKind) {
  TVDEPropList L;
  TVDEPropGrid G;
  G.SetPropList(&L);
  EXPECT_EQ(ShownRows(G), 2 + 4 + 17);  // everything for new items
  EXPECT_EQ(G.Model().headerData(0, Qt::Horizontal, Qt::DisplayRole).toString(), QStringLiteral("属性名"));
  EXPECT_EQ(G.Model().headerData(1, Qt::Horizontal, Qt::DisplayRole).toString(), QStringLiteral("属性值"));
  TDrawingItemTypeSet Lines;
  Lines.set(itArc);
  L.SetFilterItemTypeSet(Lines);
  G.InitGrid();
  EXPECT_EQ(ShownRows(G), 2 + 1 + 6);
  EXPECT_FALSE(G.isRowHidden(G.RowOf(ptLineStyle)));
  EXPECT_TRUE(G.isRowHidden(G.RowOf(ptText)));
  EXPECT_TRUE(G.isRowHidden(G.RowOf(ptText) - 1));  // the text group's title
  EXPECT_EQ(G.Model().RowData(G.RowOf(ptLineWidth) - 1), -3);
}

TEST(TVDEPropGrid, EachKindOfPropertyGetsItsEditor) {
  TVDEPropList L;
  TVDEPropGrid G;
  G.SetPropList(&L);
  const struct {
    TVDEPropType Type;
    bool Combo, Editable;
  } Cases[] = {{ptExtData, false, true},      {ptText, false, true},       {ptColor, true, true},
               {ptPointSize, true, true},     {ptPointStyle, true, false}, {ptFontName, true, false},
               {ptTextBackColor, true, true}, {ptTransparent, true, true}, {ptFillStyle, true, false}};
  for (const auto& C : Cases) {
    SCOPED_TRACE(VDEPropInfo(C.Type).Name);
    const QModelIndex I = G.Model().index(G.RowOf(C.Type), 1);
    std::unique_ptr<QWidget> E(G.Delegate().createEditor(G.viewport(), QStyleOptionViewItem(), I));
    ASSERT_TRUE(E);
    auto* Combo = qobject_cast<QComboBox*>(E.get());
    EXPECT_EQ(Combo != nullptr, C.Combo);
    if (Combo) {
      EXPECT_EQ(Combo->isEditable(), C.Editable);
    } else {
      EXPECT_TRUE(qobject_cast<QLineEdit*>(E.get()));
    }
  }
  const QModelIndex Title = G.Model().index(G.RowOf(ptPointSize) - 1, 1);
  EXPECT_FALSE(G.Model().flags(Title) & Qt::ItemIsEditable);
  std::unique_ptr<QWidget> Style(G.Delegate().createEditor(G.viewport(), QStyleOptionViewItem(),
                                                           G.Model().index(G.RowOf(ptLineStyle), 1)));
  EXPECT_EQ(qobject_cast<QComboBox*>(Style.get())->count(), 5);
}

TEST(TVDEPropGrid, ARefusedValueKeepsTheEditorOpen) {
  std::vector<std::pair<TVDEPropType, QString>> Events;
  TVDEPropList L([&](TVDEPropType T, const QString& V) { Events.emplace_back(T, V); });
  TVDEPropGrid G;
  G.resize(300, 600);
  G.SetPropList(&L);
  G.show();
  TDialogScope Boxes;
  const QModelIndex I = G.Model().index(G.RowOf(ptFontHeight), 1);
  G.setCurrentIndex(I);
  G.edit(I);
  auto* Editor = qobject_cast<QComboBox*>(G.indexWidget(I) ? G.indexWidget(I) : G.viewport()->findChild<QComboBox*>());
  ASSERT_TRUE(Editor);
  Editor->setCurrentText(QStringLiteral("0"));
  QKeyEvent Enter(QEvent::KeyPress, Qt::Key_Return, Qt::NoModifier);
  QApplication::sendEvent(Editor, &Enter);
  QApplication::processEvents();
  EXPECT_EQ(Boxes->Lines(), QStringList{QStringLiteral("[错误] 字体高度必须在[-32768, 32767]之间，且不能为零")});
  EXPECT_TRUE(G.IsEditing());
  EXPECT_EQ(L.Items(ptFontHeight).Value(), QStringLiteral("12"));
  EXPECT_TRUE(Events.empty());
  Editor->setCurrentText(QStringLiteral("20"));
  QApplication::sendEvent(Editor, &Enter);
  QApplication::processEvents();  // the commit is queued
  EXPECT_FALSE(G.IsEditing());
  EXPECT_EQ(L.Items(ptFontHeight).Value(), QStringLiteral("20"));
  ASSERT_EQ(Events.size(), 1u);
  EXPECT_EQ(Events[0].second, QStringLiteral("20"));
}
