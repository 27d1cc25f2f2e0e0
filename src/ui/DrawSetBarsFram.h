#pragma once
// The bars panel: a grid with one row per bar of the open draw set (number, notation,
// picture number, the picture, remark) over the draw set's own rows, and the script
// editor of the current bar. It keeps nothing of its own but the script being typed.

#include "DSBarPics.h"

#include <QAbstractTableModel>
#include <QPointer>
#include <QStyledItemDelegate>
#include <QTableView>
#include <QWidget>

#include <memory>

class IMZTBarInfoDataSvr;
class QSplitter;
class TDrawSet;
class TDrawSetBar;
class TScriptEdit;
class TVectorDrawing;

class TDrawSetBarsModel : public QAbstractTableModel {
public:
  TDrawSetBarsModel(QObject* AParent, TVectorDrawing& ADrawing) : QAbstractTableModel(AParent), FDrawing(ADrawing) {}
  void SetDrawSet(TDrawSet* ADrawSet);
  TDrawSet* DrawSet() const { return FDrawSet; }
  // One row per bar; one empty row without bars.
  int rowCount(const QModelIndex& AParent = QModelIndex()) const override;
  int columnCount(const QModelIndex& = QModelIndex()) const override { return 6; }
  QVariant data(const QModelIndex& AIndex, int ARole) const override;
  QVariant headerData(int ASection, Qt::Orientation AOrientation, int ARole) const override;
  Qt::ItemFlags flags(const QModelIndex& AIndex) const override;
  bool setData(const QModelIndex& AIndex, const QVariant& AValue, int ARole) override;
  TDrawSetBar* Bar(int ARow) const;
  // The cell's text as the grid shows it; raises for a column out of range.
  QString CellText(int ARow, int ACol) const;
  void Reset();

private:
  TVectorDrawing& FDrawing;
  TDrawSet* FDrawSet = nullptr;
};

class TDrawSetBarsFrame;

class TBarsGridView : public QTableView {
public:
  using QTableView::QTableView;
  bool IsEditing() const { return state() == EditingState; }
};

class TDrawSetBarsDelegate : public QStyledItemDelegate {
public:
  TDrawSetBarsDelegate(TDrawSetBarsFrame* AFrame);
  QWidget* createEditor(QWidget* AParent, const QStyleOptionViewItem& AOption, const QModelIndex& AIndex) const override;
  void setModelData(QWidget* AEditor, QAbstractItemModel* AModel, const QModelIndex& AIndex) const override;
  void paint(QPainter* APainter, const QStyleOptionViewItem& AOption, const QModelIndex& AIndex) const override;
  // The check of an edited cell; shows the message and answers false on a refusal.
  bool Accepts(const QModelIndex& AIndex, const QString& AText) const;
  QWidget* CurrentEditor() const { return FEditor; }

protected:
  bool eventFilter(QObject* AObject, QEvent* AEvent) override;

private:
  TDrawSetBarsFrame* FFrame;
  mutable QPointer<QWidget> FEditor;
  mutable QModelIndex FEditIndex;
};

class TDrawSetBarsFrame : public QWidget {
public:
  TDrawSetBarsFrame(QWidget* AParent, IMZTBarInfoDataSvr* ASysDataSvr, TVectorDrawing& ADrawing);
  ~TDrawSetBarsFrame() override;

  void SetDrawSet(TDrawSet* ADrawSet);
  TDrawSet* DrawSet() const { return FModel->DrawSet(); }
  // Closes the grid's edit and writes the script; false when the edit is refused.
  bool Save();
  void Refresh();
  void Initialize();
  bool CloseEditor();
  void CancelEditor();
  bool IsModified() const { return FIsModified; }
  // The bar of the current row; -1 without one.
  int CurrentBarID() const;
  int CurrentRow() const { return FRow; }
  void SelectRow(int ARow);
  bool FindParam(const QString& AParamCode);
  // The debugger on the current bar's script, with the dry-run variables.
  void Debug();
  void ChooseBarPic(const QModelIndex& AIndex);

  TBarsGridView& Grid() { return *FGrid; }
  TDrawSetBarsModel& Model() { return *FModel; }
  TDrawSetBarsDelegate& Delegate() { return *FDelegate; }
  TScriptEdit& Script() { return *FScript; }
  TDSBarPics* BarPics();
  IMZTBarInfoDataSvr* SysDataSvr() const { return FSysDataSvr; }
  TVectorDrawing& Drawing() { return FDrawing; }

protected:
  bool eventFilter(QObject* AObject, QEvent* AEvent) override;

private:
  void LoadProgram();
  void SaveProgram();
  void RowChanged(int ARow);

  IMZTBarInfoDataSvr* FSysDataSvr;
  TVectorDrawing& FDrawing;
  std::unique_ptr<TDSBarPics> FBarPics;
  TBarsGridView* FGrid;
  TDrawSetBarsModel* FModel;
  TDrawSetBarsDelegate* FDelegate;
  TScriptEdit* FScript;
  bool FIsModified = false;
  bool FLoading = false;
  int FRow = 0;
};
