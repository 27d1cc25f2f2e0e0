#include "VectorIconViewer.h"

#include "VectorDrawing.h"

#include <QKeyEvent>
#include <QMouseEvent>
#include <QPainter>
#include <QScrollBar>

TVectorDrawingViewer::TVectorDrawingViewer(QWidget* AParent)
    : QWidget(AParent), FDrawing(std::make_unique<TVectorDrawing>()) {
  setMinimumSize(40, 30);
}

TVectorDrawingViewer::~TVectorDrawingViewer() = default;

void TVectorDrawingViewer::SetFocused(bool AValue) {
  if (FFocused == AValue) return;
  FFocused = AValue;
  update();
}

void TVectorDrawingViewer::paintEvent(QPaintEvent*) {
  QImage Img(std::max(1, width()), std::max(1, height()), QImage::Format_RGB32);
  Img.fill(Qt::black);
  {
    QPainter P(&Img);
    if (FDrawing->Count() > 0) FDrawing->Draw(P, TKRNRect{0, 0, Img.width(), Img.height()}, 6, 6);
    P.setPen(QPen(FFocused ? QColor(0, 120, 215) : QColor(90, 90, 90), FFocused ? 3 : 1));
    P.drawRect(Img.rect().adjusted(0, 0, -1, -1));
  }
  QPainter(this).drawImage(0, 0, Img);
}

void TVectorDrawingViewer::mousePressEvent(QMouseEvent*) {
  if (OnClick) OnClick();
}

void TVectorDrawingViewer::mouseDoubleClickEvent(QMouseEvent*) {
  if (OnDblClick) OnDblClick();
}

TVectorAutoColRow::TVectorAutoColRow(QWidget* AParent) : QScrollArea(AParent) {
  setWidget(new QWidget);
  setWidgetResizable(false);
  setFocusPolicy(Qt::StrongFocus);
  setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
}

void TVectorAutoColRow::Add(TVectorDrawingViewer* AViewer, int ATag) {
  AViewer->setParent(widget());
  AViewer->resize(CellWidth, CellHeight);
  const int Index = Count();
  AViewer->OnClick = [this, Index] { SetItemIndex(Index); };
  AViewer->OnDblClick = [this, Index] {
    SetItemIndex(Index);
    if (OnIconDblClick) OnIconDblClick();
  };
  AViewer->show();
  FViewers.push_back(AViewer);
  FTags.push_back(ATag);
  Arrange();
}

void TVectorAutoColRow::Clear() {
  for (TVectorDrawingViewer* V : FViewers) delete V;
  FViewers.clear();
  FTags.clear();
  FItemIndex = -1;
  Arrange();
}

void TVectorAutoColRow::SetItemIndex(int AIndex) {
  if (AIndex < -1 || AIndex >= Count() || AIndex == FItemIndex) return;
  if (FItemIndex >= 0) FViewers[size_t(FItemIndex)]->SetFocused(false);
  FItemIndex = AIndex;
  if (AIndex >= 0) {
    FViewers[size_t(AIndex)]->SetFocused(true);
    ensureWidgetVisible(FViewers[size_t(AIndex)], 0, 0);
  }
  if (OnIconChanged) OnIconChanged();
}

// Columns from the width: (client - 2 margins + space) / (cell + space), at least one.
void TVectorAutoColRow::Arrange() {
  const int W = viewport()->width();
  FColCount = std::max(1, (W - 2 * FMargin + FSpace) / (CellWidth + FSpace));
  const int Rows = (Count() + FColCount - 1) / FColCount;
  const int Scroll = verticalScrollBar()->value();
  widget()->resize(std::max(W, 2 * FMargin + FColCount * (CellWidth + FSpace)),
                   2 * FMargin + Rows * (CellHeight + FSpace));
  for (int I = 0; I < Count(); ++I)
    FViewers[size_t(I)]->move(FMargin + (I % FColCount) * (CellWidth + FSpace),
                              FMargin + (I / FColCount) * (CellHeight + FSpace));
  verticalScrollBar()->setValue(Scroll);
}

void TVectorAutoColRow::resizeEvent(QResizeEvent* AEvent) {
  QScrollArea::resizeEvent(AEvent);
  Arrange();
}

void TVectorAutoColRow::keyPressEvent(QKeyEvent* AEvent) {
  int I = FItemIndex;
  switch (AEvent->key()) {
    case Qt::Key_Left: --I; break;
    case Qt::Key_Right: ++I; break;
    case Qt::Key_Up: I -= FColCount; break;
    case Qt::Key_Down: I += FColCount; break;
    default: QScrollArea::keyPressEvent(AEvent); return;
  }
  if (I >= 0 && I < Count()) SetItemIndex(I);
}
