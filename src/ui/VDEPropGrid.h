#pragma once
// The property grid: two columns over one property list (the add list or the one that
// mirrors the selection), rows grouped by item kind and hidden when no shown item has
// them. An edit is checked with the system's messages and stays open when refused; an
// accepted value goes through the list, so on the selection it is one undo step.

#include "VDEPropList.h"

#include <QAbstractTableModel>
#include <QStyledItemDelegate>
#include <QPointer>
#include <QTableView>

// One row: a property, or a group's title (group values -1 point, -3 lines, -2 text, -5 fill).
struct TVDEPropRow {
  int Data;
  QString Caption;
};

class TVDEPropModel : public QAbstractTableModel {
  Q_OBJECT
public:
  explicit TVDEPropModel(QObject* AParent = nullptr);
  void SetPropList(TVDEPropList* AList);
  TVDEPropList* PropList() const { return FList; }
  // Row data: the property number, or the group value of a title row.
  int RowData(int ARow) const { return FRows[size_t(ARow)].Data; }
  bool RowShown(int ARow) const;
  void Refresh();

  int rowCount(const QModelIndex& AParent = QModelIndex()) const override;
  int columnCount(const QModelIndex& AParent = QModelIndex()) const override;
  QVariant data(const QModelIndex& AIndex, int ARole) const override;
  QVariant headerData(int ASection, Qt::Orientation AOrientation, int ARole) const override;
  Qt::ItemFlags flags(const QModelIndex& AIndex) const override;

private:
  std::vector<TVDEPropRow> FRows;
  TVDEPropList* FList = nullptr;
};

class TVDEPropDelegate : public QStyledItemDelegate {
  Q_OBJECT
public:
  explicit TVDEPropDelegate(QObject* AParent = nullptr) : QStyledItemDelegate(AParent) {}
  QWidget* createEditor(QWidget* AParent, const QStyleOptionViewItem& AOption, const QModelIndex& AIndex) const override;
  void setEditorData(QWidget* AEditor, const QModelIndex& AIndex) const override;
  void setModelData(QWidget* AEditor, QAbstractItemModel* AModel, const QModelIndex& AIndex) const override;
  void paint(QPainter* APainter, const QStyleOptionViewItem& AOption, const QModelIndex& AIndex) const override;
  // The grid's own check after the property's.
  TVDEPropValValidateEvent OnPropValValidate;
  // Shows the message and answers false when the editor's text is refused.
  bool Accepts(QWidget* AEditor) const;
  // The editor last opened (null once it is gone).
  QWidget* CurrentEditor() const { return FEditor; }

protected:
  bool eventFilter(QObject* AObject, QEvent* AEvent) override;

private:
  mutable QPointer<QWidget> FEditor;
};

class TVDEPropGrid : public QTableView {
  Q_OBJECT
public:
  explicit TVDEPropGrid(QWidget* AParent = nullptr);
  void SetPropList(TVDEPropList* AList);
  TVDEPropList* PropList() const { return FModel->PropList(); }
  // Rows again from the list: values and which groups show.
  void InitGrid();
  TVDEPropModel& Model() { return *FModel; }
  TVDEPropDelegate& Delegate() { return *FDelegate; }
  // The row of a property, -1 when it has none.
  int RowOf(TVDEPropType APropType) const;
  bool IsEditing() const { return state() == EditingState; }
  // Ends a pending edit: its value is stored when it passes; a refused one shows its
  // message, the editor stays open and the answer is false.
  bool CloseEditor();
  // Ends a pending edit without storing it.
  void HideEditor();

protected:
  void resizeEvent(QResizeEvent* AEvent) override;

private:
  TVDEPropModel* FModel;
  TVDEPropDelegate* FDelegate;
};
