#include "VDEPropGrid.h"

#include "Dialogs.h"

#include <QComboBox>
#include <QEvent>
#include <QFontDatabase>
#include <QHeaderView>
#include <QKeyEvent>
#include <QLineEdit>
#include <QPainter>

namespace {

struct TGroup {
  int Value;
  const char* Title;
  std::vector<TVDEPropType> Rows;
  std::vector<int> Types;
};

const std::vector<TGroup>& Groups() {
  static const std::vector<TGroup> G = {
      {-1, "点", {ptPointSize, ptPointStyle}, {itPoint}},
      {-3, "线、弧、圆", {ptLineWidth, ptLineStyle, ptStartMarkStyle, ptEndMarkStyle, ptStartMarkSize, ptEndMarkSize},
       {itLine, itArc, itCircle, itPolyline}},
      {-2, "文本", {ptText, ptFontName, ptFontHeight, ptFontStyle, ptTransparent, ptTextBackColor, ptHorzAlignment,
                   ptVertAlignment}, {itText}},
      {-5, "填充区域", {ptFillStyle}, {itHatch}},
  };
  return G;
}

QColor SwatchColor(const QString& AValue) {
  bool Ok = false;
  const qint64 C = AValue.trimmed().toLongLong(&Ok);
  if (!Ok) return QColor();
  return QColor(int(C & 0xFF), int((C >> 8) & 0xFF), int((C >> 16) & 0xFF));
}

QString EditorText(QWidget* AEditor) {
  if (auto* L = qobject_cast<QLineEdit*>(AEditor)) return L->text();
  if (auto* C = qobject_cast<QComboBox*>(AEditor)) return C->currentText();
  return QString();
}

}  // namespace

// ---- model ------------------------------------------------------------------

TVDEPropModel::TVDEPropModel(QObject* AParent) : QAbstractTableModel(AParent) {
  FRows.push_back({ptExtData, VDEPropInfo(ptExtData).Caption});
  FRows.push_back({ptColor, VDEPropInfo(ptColor).Caption});
  for (const TGroup& G : Groups()) {
    FRows.push_back({G.Value, QString::fromUtf8(G.Title)});
    for (const TVDEPropType T : G.Rows) FRows.push_back({T, VDEPropInfo(T).Caption});
  }
}

void TVDEPropModel::SetPropList(TVDEPropList* AList) {
  beginResetModel();
  FList = AList;
  endResetModel();
}

void TVDEPropModel::Refresh() {
  beginResetModel();
  endResetModel();
}

bool TVDEPropModel::RowShown(int ARow) const {
  const int D = FRows[size_t(ARow)].Data;
  if (!FList) return false;
  if (D >= 0) return FList->Items(TVDEPropType(D)).Visible();
  for (const TGroup& G : Groups())
    if (G.Value == D) return FList->Items(G.Rows.front()).Visible();
  return false;
}

int TVDEPropModel::rowCount(const QModelIndex& AParent) const { return AParent.isValid() ? 0 : int(FRows.size()); }

int TVDEPropModel::columnCount(const QModelIndex& AParent) const { return AParent.isValid() ? 0 : 2; }

QVariant TVDEPropModel::data(const QModelIndex& AIndex, int ARole) const {
  if (!AIndex.isValid() || !FList) return {};
  const TVDEPropRow& R = FRows[size_t(AIndex.row())];
  if (ARole == Qt::UserRole) return R.Data;
  if (ARole == Qt::FontRole && R.Data < 0) {
    QFont F;
    F.setBold(true);
    return F;
  }
  if (ARole != Qt::DisplayRole && ARole != Qt::EditRole) return {};
  if (AIndex.column() == 0) return R.Caption;
  return R.Data >= 0 ? FList->Items(TVDEPropType(R.Data)).Value() : QString();
}

QVariant TVDEPropModel::headerData(int ASection, Qt::Orientation AOrientation, int ARole) const {
  if (AOrientation != Qt::Horizontal || ARole != Qt::DisplayRole) return {};
  return ASection == 0 ? QStringLiteral("属性名") : QStringLiteral("属性值");
}

Qt::ItemFlags TVDEPropModel::flags(const QModelIndex& AIndex) const {
  if (!AIndex.isValid()) return Qt::NoItemFlags;
  Qt::ItemFlags F = Qt::ItemIsEnabled | Qt::ItemIsSelectable;
  if (AIndex.column() == 1 && FRows[size_t(AIndex.row())].Data >= 0) F |= Qt::ItemIsEditable;
  return F;
}

// ---- delegate ---------------------------------------------------------------

QWidget* TVDEPropDelegate::createEditor(QWidget* AParent, const QStyleOptionViewItem&, const QModelIndex& AIndex) const {
  const int D = AIndex.data(Qt::UserRole).toInt();
  if (D < 0) return nullptr;
  const TVDEPropType T = TVDEPropType(D);
  const TVDEPropInfo& Info = VDEPropInfo(T);
  QWidget* E = nullptr;
  switch (Info.InputMode) {
    case imEdit:
    case imEllipsis: E = new QLineEdit(AParent); break;
    case imDropDownList:
    case imDropDown:
    case imColorList: {
      auto* C = new QComboBox(AParent);
      C->setEditable(Info.InputMode != imDropDownList);
      if (T == ptFontName) C->addItems(QFontDatabase::families() << QStringLiteral("宋体"));
      else if (Info.InputMode == imColorList)
        C->addItems({QStringLiteral("0"), QStringLiteral("255"), QStringLiteral("65280"), QStringLiteral("16711680"),
                     QStringLiteral("65535"), QStringLiteral("16777215")});
      else C->addItems(Info.Values);
      E = C;
      break;
    }
  }
  E->installEventFilter(const_cast<TVDEPropDelegate*>(this));
  FEditor = E;
  return E;
}

void TVDEPropDelegate::setEditorData(QWidget* AEditor, const QModelIndex& AIndex) const {
  const QString V = AIndex.data(Qt::EditRole).toString();
  if (auto* L = qobject_cast<QLineEdit*>(AEditor)) L->setText(V);
  else if (auto* C = qobject_cast<QComboBox*>(AEditor)) {
    if (C->isEditable()) C->setCurrentText(V);
    else C->setCurrentIndex(std::max(0, C->findText(V)));
  }
}

bool TVDEPropDelegate::Accepts(QWidget* AEditor) const {
  auto* Grid = qobject_cast<TVDEPropGrid*>(parent());
  const QModelIndex I = Grid ? Grid->currentIndex() : QModelIndex();
  if (!Grid || !I.isValid() || !Grid->PropList()) return true;
  const int D = I.data(Qt::UserRole).toInt();
  if (D < 0) return true;
  const TVDEPropType T = TVDEPropType(D);
  const QString Text = EditorText(AEditor);
  const TVDEPropItem& Item = Grid->PropList()->Items(T);
  if (Text == Item.Value()) return true;
  QString Msg;
  if (!Item.Validate(Text, Msg)) {
    ShowErrorBox(Msg);
    return false;
  }
  if (OnPropValValidate && !OnPropValValidate(T, Text, Msg)) {
    ShowErrorBox(Msg);
    return false;
  }
  return true;
}

void TVDEPropDelegate::setModelData(QWidget* AEditor, QAbstractItemModel* AModel, const QModelIndex& AIndex) const {
  auto* M = qobject_cast<TVDEPropModel*>(AModel);
  const int D = AIndex.data(Qt::UserRole).toInt();
  if (!M || !M->PropList() || D < 0) return;
  TVDEPropItem& Item = M->PropList()->Items(TVDEPropType(D));
  const QString Text = EditorText(AEditor);
  QString Msg;
  if (Text == Item.Value() || !Item.Validate(Text, Msg)) return;  // refused values were shown already
  Item.SetValue(Text);
  emit M->dataChanged(AIndex, AIndex);
}

bool TVDEPropDelegate::eventFilter(QObject* AObject, QEvent* AEvent) {
  auto* Editor = qobject_cast<QWidget*>(AObject);
  if (Editor && AEvent->type() == QEvent::KeyPress) {
    const int K = static_cast<QKeyEvent*>(AEvent)->key();
    if ((K == Qt::Key_Return || K == Qt::Key_Enter || K == Qt::Key_Tab) && !Accepts(Editor)) return true;  // stays open
  }
  return QStyledItemDelegate::eventFilter(AObject, AEvent);
}

void TVDEPropDelegate::paint(QPainter* APainter, const QStyleOptionViewItem& AOption, const QModelIndex& AIndex) const {
  QStyledItemDelegate::paint(APainter, AOption, AIndex);
  const int D = AIndex.data(Qt::UserRole).toInt();
  if (AIndex.column() != 1 || (D != ptColor && D != ptTextBackColor)) return;
  const QColor C = SwatchColor(AIndex.data().toString());
  if (!C.isValid()) return;
  // A swatch at the right end of the cell, 4 pixels in.
  const QRect R = AOption.rect.adjusted(AOption.rect.width() - AOption.rect.height(), 4, -4, -4);
  APainter->fillRect(R, C);
  APainter->setPen(Qt::gray);
  APainter->drawRect(R);
}

// ---- grid -------------------------------------------------------------------

TVDEPropGrid::TVDEPropGrid(QWidget* AParent)
    : QTableView(AParent), FModel(new TVDEPropModel(this)), FDelegate(new TVDEPropDelegate(this)) {
  setModel(FModel);
  setItemDelegate(FDelegate);
  verticalHeader()->hide();
  setSelectionBehavior(QAbstractItemView::SelectItems);
  setSelectionMode(QAbstractItemView::SingleSelection);
  setEditTriggers(QAbstractItemView::AllEditTriggers);
  setColumnWidth(0, 110);
  setColumnWidth(1, 90);
}

void TVDEPropGrid::SetPropList(TVDEPropList* AList) {
  if (AList == FModel->PropList()) {
    InitGrid();
    return;
  }
  FModel->SetPropList(AList);
  InitGrid();
}

void TVDEPropGrid::InitGrid() {
  FModel->Refresh();
  for (int R = 0; R < FModel->rowCount(); ++R) setRowHidden(R, !FModel->RowShown(R));
}

bool TVDEPropGrid::CloseEditor() {
  QWidget* E = FDelegate->CurrentEditor();
  if (!IsEditing() || !E) return true;
  if (!FDelegate->Accepts(E)) return false;
  commitData(E);
  closeEditor(E, QAbstractItemDelegate::NoHint);
  return true;
}

void TVDEPropGrid::HideEditor() {
  if (QWidget* E = FDelegate->CurrentEditor(); E && IsEditing()) closeEditor(E, QAbstractItemDelegate::NoHint);
}

int TVDEPropGrid::RowOf(TVDEPropType APropType) const {
  for (int R = 0; R < FModel->rowCount(); ++R)
    if (FModel->RowData(R) == int(APropType)) return R;
  return -1;
}

void TVDEPropGrid::resizeEvent(QResizeEvent* AEvent) {
  QTableView::resizeEvent(AEvent);
  setColumnWidth(1, std::max(1, viewport()->width() - columnWidth(0) - 2));
}
