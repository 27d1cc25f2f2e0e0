#include "DrawSetBarsFram.h"

#include "Dialogs.h"
#include "DrawSet.h"
#include "DrawSetSession.h"
#include "MZTBarInfo.h"
#include "MZTChooseBarPicFrm.h"
#include "MZTDataSvr.h"
#include "ScriptDebugFrm.h"
#include "ScriptEdit.h"
#include "SysUtils.h"
#include "VDIText.h"
#include "VectorDrawing.h"

#include <QHBoxLayout>
#include <QHeaderView>
#include <QKeyEvent>
#include <QLineEdit>
#include <QPainter>
#include <QSplitter>
#include <QToolButton>

namespace {

QString Column(int ACol) {
  static const char* const Headers[] = {"", "筋号", "钢筋信息", "图号", "图形", "备注"};
  if (ACol < 0 || ACol > 5) throw Exception(QStringLiteral("字段头下标错误!"));
  return QString::fromUtf8(Headers[ACol]);
}

TVectorText* InfoText(const TDrawSetBar& ABar, TVectorDrawing& ADrawing) {
  return ABar.BarInfoVDID() >= 0 ? dynamic_cast<TVectorText*>(ADrawing.ItemByID(ABar.BarInfoVDID())) : nullptr;
}

// The picture number's editor: a line edit with the chooser's button.
class TPicEditor : public QWidget {
public:
  TPicEditor(QWidget* AParent, std::function<void()> AChoose) : QWidget(AParent), Edit(new QLineEdit(this)) {
    auto* L = new QHBoxLayout(this);
    L->setContentsMargins(0, 0, 0, 0);
    L->setSpacing(0);
    auto* B = new QToolButton(this);
    B->setText(QStringLiteral("..."));
    L->addWidget(Edit, 1);
    L->addWidget(B);
    setFocusProxy(Edit);
    connect(B, &QToolButton::clicked, this, [AChoose] { AChoose(); });
  }
  QLineEdit* Edit;
};

QLineEdit* LineOf(QWidget* AEditor) {
  if (auto* P = dynamic_cast<TPicEditor*>(AEditor)) return P->Edit;
  return qobject_cast<QLineEdit*>(AEditor);
}

}  // namespace

// ---- model ---------------------------------------------------------------------

void TDrawSetBarsModel::SetDrawSet(TDrawSet* ADrawSet) {
  beginResetModel();
  FDrawSet = ADrawSet;
  endResetModel();
}

void TDrawSetBarsModel::Reset() {
  beginResetModel();
  endResetModel();
}

int TDrawSetBarsModel::rowCount(const QModelIndex& AParent) const {
  if (AParent.isValid()) return 0;
  const int N = FDrawSet ? FDrawSet->Bars().Count() : 0;
  return std::max(1, N);
}

TDrawSetBar* TDrawSetBarsModel::Bar(int ARow) const {
  return FDrawSet && ARow >= 0 && ARow < FDrawSet->Bars().Count() ? FDrawSet->Bars().GetItems(ARow) : nullptr;
}

QString TDrawSetBarsModel::CellText(int ARow, int ACol) const {
  if (ACol < 0 || ACol > 5) throw Exception(QStringLiteral("列数下标越界!"));
  if (ACol == 0) return QString::number(ARow + 1);
  const TDrawSetBar* B = Bar(ARow);
  if (!B) return QString();
  switch (ACol) {
    case 1: return B->BarNum();
    case 2: {
      const TVectorText* T = InfoText(*B, FDrawing);
      return T ? T->Text() : B->BarInfo();
    }
    case 3: return QString::number(B->BarPicID());
    case 5: return B->BarRemark();
    default: return QString();
  }
}

QVariant TDrawSetBarsModel::data(const QModelIndex& AIndex, int ARole) const {
  if (!AIndex.isValid()) return {};
  if (ARole == Qt::DisplayRole || ARole == Qt::EditRole) return CellText(AIndex.row(), AIndex.column());
  if (ARole == Qt::TextAlignmentRole && AIndex.column() == 0) return int(Qt::AlignCenter);
  return {};
}

QVariant TDrawSetBarsModel::headerData(int ASection, Qt::Orientation AOrientation, int ARole) const {
  if (AOrientation == Qt::Horizontal && ARole == Qt::DisplayRole) return Column(ASection);
  return {};
}

Qt::ItemFlags TDrawSetBarsModel::flags(const QModelIndex& AIndex) const {
  if (!AIndex.isValid()) return Qt::NoItemFlags;
  Qt::ItemFlags F = Qt::ItemIsEnabled | Qt::ItemIsSelectable;
  const int C = AIndex.column();
  if (Bar(AIndex.row()) && (C == 1 || C == 2 || C == 3 || C == 5)) F |= Qt::ItemIsEditable;
  return F;
}

bool TDrawSetBarsModel::setData(const QModelIndex& AIndex, const QVariant& AValue, int ARole) {
  TDrawSetBar* B = Bar(AIndex.row());
  if (ARole != Qt::EditRole || !B) return false;
  const QString T = Trim(AValue.toString());
  switch (AIndex.column()) {
    case 1: B->SetBarNum(T); break;
    case 2:
      if (TVectorText* Text = InfoText(*B, FDrawing)) {
        Text->SetText(T);
        FDrawing.Notify();
      } else {
        B->SetBarInfo(T);
      }
      break;
    case 3: B->SetBarPicID(StrToInt(T)); break;
    case 5: B->SetBarRemark(T); break;
    default: return false;
  }
  emit dataChanged(index(AIndex.row(), 0), index(AIndex.row(), 5));
  return true;
}

// ---- delegate ------------------------------------------------------------------

TDrawSetBarsDelegate::TDrawSetBarsDelegate(TDrawSetBarsFrame* AFrame) : QStyledItemDelegate(AFrame), FFrame(AFrame) {}

QWidget* TDrawSetBarsDelegate::createEditor(QWidget* AParent, const QStyleOptionViewItem&, const QModelIndex& AIndex) const {
  QWidget* E;
  if (AIndex.column() == 3) {
    const QPersistentModelIndex I(AIndex);
    E = new TPicEditor(AParent, [this, I] { FFrame->ChooseBarPic(I); });
  } else {
    E = new QLineEdit(AParent);
  }
  LineOf(E)->installEventFilter(const_cast<TDrawSetBarsDelegate*>(this));
  FEditor = E;
  FEditIndex = AIndex;
  return E;
}

bool TDrawSetBarsDelegate::Accepts(const QModelIndex& AIndex, const QString& AText) const {
  const QString T = Trim(AText);
  switch (AIndex.column()) {
    case 1:
      if (T.isEmpty() || T.toLocal8Bit().size() > 40) {
        ShowErrorBox(QStringLiteral("钢筋筋号不能为空或长度不能超过40个字节"));
        return false;
      }
      return true;
    case 2:
      try {
        TDrawSetBarInfo Info;
        Info.SetAsString(T);
        return true;
      } catch (const TBarInfoParseError& E) {
        ShowErrorBox(E.Message());
        return false;
      }
    case 3: {
      int V;
      if (!TryStrToInt(T, V)) {
        ShowErrorBox(QStringLiteral("'%1' is not a valid integer value").arg(T));
        return false;
      }
      const int Max = FFrame->SysDataSvr() ? DataSvr::GetMaxBarPicID(*FFrame->SysDataSvr()) : 0;
      if (V < 1 || V > Max) {
        ShowErrorBox(QStringLiteral("钢筋图号超出范围[%1, %2]，请重新输入").arg(1).arg(Max));
        return false;
      }
      return true;
    }
    default: return true;
  }
}

void TDrawSetBarsDelegate::setModelData(QWidget* AEditor, QAbstractItemModel* AModel, const QModelIndex& AIndex) const {
  const QLineEdit* L = LineOf(AEditor);
  if (!L || L->text() == AIndex.data(Qt::EditRole).toString()) return;
  AModel->setData(AIndex, L->text(), Qt::EditRole);
}

bool TDrawSetBarsDelegate::eventFilter(QObject* AObject, QEvent* AEvent) {
  if (AEvent->type() == QEvent::KeyPress) {
    const int K = static_cast<QKeyEvent*>(AEvent)->key();
    auto* L = qobject_cast<QLineEdit*>(AObject);
    if (L && (K == Qt::Key_Return || K == Qt::Key_Enter || K == Qt::Key_Tab) &&
        L->text() != FEditIndex.data(Qt::EditRole).toString() && !Accepts(FEditIndex, L->text()))
      return true;  // the editor stays
    if (L && (K == Qt::Key_Return || K == Qt::Key_Enter) && FEditor) {
      emit const_cast<TDrawSetBarsDelegate*>(this)->commitData(FEditor);
      emit const_cast<TDrawSetBarsDelegate*>(this)->closeEditor(FEditor);
      return true;
    }
  }
  // The picture editor's line edit is not the view's editor: the base's handling of it
  // (focus out, Escape) would name the wrong widget.
  if (AObject != FEditor) return false;
  return QStyledItemDelegate::eventFilter(AObject, AEvent);
}

void TDrawSetBarsDelegate::paint(QPainter* APainter, const QStyleOptionViewItem& AOption, const QModelIndex& AIndex) const {
  QStyledItemDelegate::paint(APainter, AOption, AIndex);
  if (AIndex.column() != 4) return;
  const auto* M = static_cast<const TDrawSetBarsModel*>(AIndex.model());
  const TDrawSetBar* B = M->Bar(AIndex.row());
  TDSBarPic* Pic = B ? FFrame->BarPics() ? FFrame->BarPics()->GetItemByID(B->BarPicID()) : nullptr : nullptr;
  if (!Pic || Pic->Drawing().Count() == 0) return;
  const QRect R = AOption.rect;
  QImage Img(std::max(1, R.width()), std::max(1, R.height()), QImage::Format_RGB32);
  Img.fill(Qt::black);
  {
    QPainter P(&Img);
    Pic->Drawing().Draw(P, TKRNRect{0, 0, Img.width(), Img.height()}, 10, 10);
  }
  APainter->drawImage(R.topLeft(), Img);
}

// ---- frame -----------------------------------------------------------------------

TDrawSetBarsFrame::TDrawSetBarsFrame(QWidget* AParent, IMZTBarInfoDataSvr* ASysDataSvr, TVectorDrawing& ADrawing)
    : QWidget(AParent), FSysDataSvr(ASysDataSvr), FDrawing(ADrawing) {
  setObjectName(QStringLiteral("FDrawSetBarsFrame"));
  auto* Split = new QSplitter(Qt::Horizontal, this);
  Split->setObjectName(QStringLiteral("spProgram"));
  FGrid = new TBarsGridView(Split);
  FGrid->setObjectName(QStringLiteral("lvdgBars"));
  FModel = new TDrawSetBarsModel(this, ADrawing);
  FDelegate = new TDrawSetBarsDelegate(this);
  FGrid->setModel(FModel);
  FGrid->setItemDelegate(FDelegate);
  FGrid->verticalHeader()->hide();
  FGrid->verticalHeader()->setDefaultSectionSize(60);
  FGrid->setSelectionMode(QAbstractItemView::SingleSelection);
  FGrid->setEditTriggers(QAbstractItemView::DoubleClicked | QAbstractItemView::EditKeyPressed |
                         QAbstractItemView::AnyKeyPressed);
  const int Widths[] = {20, 64, 64, 64, 240, 72};
  for (int I = 0; I < 6; ++I) FGrid->setColumnWidth(I, Widths[I]);
  FScript = new TScriptEdit(Split);
  FScript->setObjectName(QStringLiteral("memProgram"));
  FScript->installEventFilter(this);
  Split->addWidget(FGrid);
  Split->addWidget(FScript);
  Split->setStretchFactor(0, 3);
  Split->setStretchFactor(1, 2);
  auto* L = new QHBoxLayout(this);
  L->setContentsMargins(0, 0, 0, 0);
  L->addWidget(Split);
  connect(FScript, &QPlainTextEdit::textChanged, this, [this] {
    if (!FLoading) FIsModified = true;
  });
  connect(FGrid->selectionModel(), &QItemSelectionModel::currentChanged, this,
          [this](const QModelIndex& ACurrent) { RowChanged(ACurrent.row()); });
}

TDrawSetBarsFrame::~TDrawSetBarsFrame() = default;

TDSBarPics* TDrawSetBarsFrame::BarPics() {
  if (!FBarPics && FSysDataSvr) FBarPics = std::make_unique<TDSBarPics>(*FSysDataSvr);
  return FBarPics.get();
}

void TDrawSetBarsFrame::SetDrawSet(TDrawSet* ADrawSet) {
  if (!ADrawSet || ADrawSet == DrawSet()) return;
  CancelEditor();
  FModel->SetDrawSet(ADrawSet);
  FRow = 0;
  Refresh();
  TSynSampleSyn& Syn = FScript->Highlighter().Syn();
  Syn.ClearVarialKey();
  for (int I = 0; I < ADrawSet->Params().Count(); ++I) Syn.AddKey(ADrawSet->Params().GetItems(I)->ParamCode());
  FScript->Highlighter().rehighlight();
}

void TDrawSetBarsFrame::Initialize() {
  FModel->Reset();
  if (FRow >= FModel->rowCount()) FRow = 0;
  FGrid->setCurrentIndex(FModel->index(FRow, 1));
  LoadProgram();
}

void TDrawSetBarsFrame::Refresh() {
  Initialize();
  FScript->viewport()->update();
}

void TDrawSetBarsFrame::LoadProgram() {
  FLoading = true;
  const TDrawSetBar* B = FModel->Bar(FRow);
  FScript->setPlainText(B ? B->CalcProgram() : QString());
  FLoading = false;
  FIsModified = false;
}

void TDrawSetBarsFrame::SaveProgram() {
  if (!FIsModified) return;
  if (TDrawSetBar* B = FModel->Bar(FRow)) B->SetCalcProgram(FScript->toPlainText());
  FIsModified = false;
}

void TDrawSetBarsFrame::RowChanged(int ARow) {
  if (ARow == FRow || ARow < 0) return;
  SaveProgram();
  FRow = ARow;
  LoadProgram();
}

void TDrawSetBarsFrame::SelectRow(int ARow) { FGrid->setCurrentIndex(FModel->index(ARow, 1)); }

bool TDrawSetBarsFrame::CloseEditor() {
  QWidget* E = FDelegate->CurrentEditor();
  if (!E || !FGrid->IsEditing()) return true;
  const QLineEdit* L = LineOf(E);
  const QModelIndex I = FGrid->currentIndex();
  if (L && L->text() != I.data(Qt::EditRole).toString() && !FDelegate->Accepts(I, L->text())) return false;
  emit FDelegate->commitData(E);
  emit FDelegate->closeEditor(E);
  return true;
}

void TDrawSetBarsFrame::CancelEditor() {
  if (QWidget* E = FDelegate->CurrentEditor(); E && FGrid->IsEditing())
    emit FDelegate->closeEditor(E, QAbstractItemDelegate::RevertModelCache);
}

bool TDrawSetBarsFrame::Save() {
  const bool Ok = CloseEditor();
  SaveProgram();
  return Ok;
}

int TDrawSetBarsFrame::CurrentBarID() const {
  const TDrawSetBar* B = FModel->Bar(FRow);
  return B ? B->BarID() : -1;
}

bool TDrawSetBarsFrame::FindParam(const QString& AParamCode) { return MarkParamItem(DrawSet(), AParamCode, FDrawing); }

void TDrawSetBarsFrame::ChooseBarPic(const QModelIndex& AIndex) {
  TDrawSetBar* B = FModel->Bar(AIndex.row());
  if (!B || !FSysDataSvr) return;
  int Pic = B->BarPicID();
  if (TMZTChooseBarPicForm::Execute(Pic, *FSysDataSvr, false, true, false, this) != mrOk) return;
  CancelEditor();
  B->SetBarPicID(Pic);
  FModel->Reset();
  FGrid->setCurrentIndex(FModel->index(AIndex.row(), 3));
}

void TDrawSetBarsFrame::Debug() {
  TDrawSet* DS = DrawSet();
  TDrawSetBar* B = FModel->Bar(FRow);
  if (!DS || !B) return;
  QString Info;
  if (const TVectorText* T = InfoText(*B, FDrawing)) Info = Trim(T->Text()).toLower();
  else Info = Trim(B->BarInfo()).toLower();
  if (Info.isEmpty()) {
    ShowHintBox(QStringLiteral("请输入钢筋信息"));
    return;
  }
  TDrawSetBarInfo Parsed;
  Parsed.SetAsString(Info);
  const int S1 = Parsed.Space1(), S2 = Parsed.Space2();
  const int JJ = S2 > 0 ? S2 : S1, JM = S2 > 0 ? S1 : 0;
  auto* F = new TDebugForm(window());
  F->setAttribute(Qt::WA_DeleteOnClose);
  F->Initialize(FScript->toPlainText());
  TInterpreter& I = F->Interpreter();
  for (int K = 0; K < DS->Params().Count(); ++K) {
    const TDrawSetParam* P = DS->Params().GetItems(K);
    const auto* T = dynamic_cast<const TVectorText*>(FDrawing.ItemByID(P->ParamVDID()));
    I.AddGlobalVar(P->ParamCode().toLower(), T ? T->Text().toLower() : QString());
  }
  I.AddGlobalVar(QStringLiteral("gjth"), QString::number(B->BarPicID()));
  for (const char* Zero : {"dj", "cd", "ishoop"}) I.AddGlobalVar(QLatin1String(Zero), QStringLiteral("0"));
  I.AddGlobalVar(QStringLiteral("gjlx"), QStringLiteral("1"));
  I.AddGlobalVar(QStringLiteral("djlx"), QStringLiteral("1"));
  I.AddGlobalVar(QStringLiteral("cnt"), QStringLiteral("0"));
  I.AddGlobalVar(QStringLiteral("jb"), QString::number(int(Parsed.BarLevel())));
  I.AddGlobalVar(QStringLiteral("zj"), FloatToStr(Parsed.Diameter()));
  I.AddGlobalVar(QStringLiteral("jj"), QString::number(std::max(JJ, 0)));
  I.AddGlobalVar(QStringLiteral("jm"), QString::number(std::max(JM, 0)));
  if (TDSBarPic* Pic = BarPics() ? BarPics()->GetItemByID(B->BarPicID()) : nullptr)
    for (int K = 0; K < Pic->ParamCount(); ++K) I.AddGlobalVar(Pic->Params(K)->Code.toLower(), QStringLiteral("0"));
  if (TDebugForm::Host()) {
    TDebugForm::Host()(F);
    return;
  }
  F->exec();
}

bool TDrawSetBarsFrame::eventFilter(QObject* AObject, QEvent* AEvent) {
  if (AObject == FScript && AEvent->type() == QEvent::KeyPress && static_cast<QKeyEvent*>(AEvent)->key() == Qt::Key_F2) {
    const QString Word = Trim(FScript->WordAtCaret());
    if (!Word.isEmpty() && !FindParam(Word)) ShowHintBox(QStringLiteral("当前变量没有在图集区定义!"));
    return true;
  }
  return QWidget::eventFilter(AObject, AEvent);
}
