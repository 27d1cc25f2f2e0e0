#include "VDEditorWidget.h"

#include "Dialogs.h"

#include <QKeyEvent>
#include <QMouseEvent>
#include <QPainter>
#include <QPixmap>
#include <QWheelEvent>

#include <cmath>

namespace {

TMouseButton ButtonOf(Qt::MouseButton AButton) {
  switch (AButton) {
    case Qt::RightButton: return mbRight;
    case Qt::MiddleButton: return mbMiddle;
    default: return mbLeft;
  }
}

TKRNPoint2i PixelOf(const QPointF& APos) { return {int(std::floor(APos.x())), int(std::floor(APos.y()))}; }

// Small cursors of our own: a cross, optionally with a box or a square pick mark.
QCursor DrawnCursor(bool ABox, bool APick) {
  QPixmap P(32, 32);
  P.fill(Qt::transparent);
  QPainter G(&P);
  G.setPen(Qt::white);
  if (!APick) {
    G.drawLine(16, 4, 16, 28);
    G.drawLine(4, 16, 28, 16);
  }
  if (ABox || APick) G.drawRect(12, 12, 8, 8);
  return QCursor(P, 16, 16);
}

}  // namespace

TVDEditorWidget::TVDEditorWidget(QWidget* AParent, const QString& ASettingsFile)
    : TVDEditorWidget(AParent, std::make_unique<TVectorDrawingEditor>(ASettingsFile)) {}

TVDEditorWidget::TVDEditorWidget(QWidget* AParent, std::unique_ptr<TVectorDrawingEditor> AEditor)
    : QWidget(AParent), FEditor(std::move(AEditor)) {
  setAttribute(Qt::WA_OpaquePaintEvent);
  setFocusPolicy(Qt::StrongFocus);
  setMouseTracking(true);
  FEditor->OnInvalidate = [this] { update(); };
  FEditor->OnCursorChanged = [this](int C) { setCursor(CursorFor(C)); };
  FEditor->OnContextMenu = [this](const TKRNPoint2i& P) { emit ContextMenuRequested(mapToGlobal(QPoint(P.X, P.Y))); };
  FEditor->SetClientSize(std::max(1, width()), std::max(1, height()));
}

TVDEditorWidget::~TVDEditorWidget() {
  FEditor->OnInvalidate = nullptr;
  FEditor->OnCursorChanged = nullptr;
  FEditor->OnContextMenu = nullptr;
}

QCursor TVDEditorWidget::CursorFor(int ACursor) {
  switch (ACursor) {
    case crCross: return QCursor(Qt::CrossCursor);
    case crPanRuntime: return QCursor(Qt::OpenHandCursor);
    case crZoomRuntime: return QCursor(Qt::SizeVerCursor);
    case crHide: return QCursor(Qt::BlankCursor);
    case crSeekPoint: return DrawnCursor(false, false);
    case crSnapPoint: return DrawnCursor(true, false);
    case crSeekEdo: return DrawnCursor(false, true);
    case crSnapEdo: return DrawnCursor(true, true);
    default: return QCursor(Qt::ArrowCursor);
  }
}

quint16 TVDEditorWidget::KeyCode(int AQtKey, Qt::KeyboardModifiers AModifiers) {
  const bool Keypad = AModifiers & Qt::KeypadModifier;
  if (AQtKey >= Qt::Key_0 && AQtKey <= Qt::Key_9) return quint16((Keypad ? vkNumpad0 : 48) + (AQtKey - Qt::Key_0));
  if (AQtKey >= Qt::Key_A && AQtKey <= Qt::Key_Z) return quint16(65 + (AQtKey - Qt::Key_A));
  if (AQtKey >= Qt::Key_F1 && AQtKey <= Qt::Key_F12) return quint16(112 + (AQtKey - Qt::Key_F1));
  switch (AQtKey) {
    case Qt::Key_Escape: return vkEscape;
    case Qt::Key_Delete: return vkDelete;
    case Qt::Key_Return:
    case Qt::Key_Enter: return vkReturn;
    case Qt::Key_Tab: return vkTab;
    case Qt::Key_Left: return vkLeft;
    case Qt::Key_Up: return vkUp;
    case Qt::Key_Right: return vkRight;
    case Qt::Key_Down: return vkDown;
    case Qt::Key_Asterisk: return Keypad ? vkMultiply : 0;
    case Qt::Key_Slash: return Keypad ? vkDivide : 0;
    case Qt::Key_Space: return 32;
    case Qt::Key_Backspace: return 8;
    default: return 0;
  }
}

TShiftState TVDEditorWidget::ShiftState(Qt::KeyboardModifiers AModifiers, Qt::MouseButtons AButtons) {
  TShiftState S = 0;
  if (AModifiers & Qt::ShiftModifier) S |= sfShift;
  if (AModifiers & Qt::AltModifier) S |= sfAlt;
  if (AModifiers & Qt::ControlModifier) S |= sfCtrl;
  if (AButtons & Qt::LeftButton) S |= sfLeft;
  if (AButtons & Qt::RightButton) S |= sfRight;
  if (AButtons & Qt::MiddleButton) S |= sfMiddle;
  return S;
}

template <class F>
void TVDEditorWidget::Guard(F AWork) {
  try {
    AWork();
  } catch (...) {
    if (OnError) {
      OnError(std::current_exception());
      return;
    }
    try {
      throw;
    } catch (const std::exception& E) {
      ShowErrorBox(QString::fromUtf8(E.what()));
    } catch (...) {
      ShowErrorBox(QStringLiteral("未知错误"));
    }
  }
}

void TVDEditorWidget::paintEvent(QPaintEvent*) {
  QPainter P(this);
  Guard([&] { P.drawImage(0, 0, FEditor->Image()); });
}

void TVDEditorWidget::resizeEvent(QResizeEvent*) { FEditor->SetClientSize(width(), height()); }

void TVDEditorWidget::Press(QMouseEvent* AEvent, TShiftState AExtra) {
  if (!hasFocus()) setFocus(Qt::MouseFocusReason);
  Guard([&] {
    FEditor->MouseDown(ButtonOf(AEvent->button()), ShiftState(AEvent->modifiers(), AEvent->buttons()) | AExtra,
                       PixelOf(AEvent->position()));
  });
}

void TVDEditorWidget::mousePressEvent(QMouseEvent* AEvent) { Press(AEvent, 0); }

void TVDEditorWidget::mouseDoubleClickEvent(QMouseEvent* AEvent) { Press(AEvent, sfDouble); }

void TVDEditorWidget::mouseMoveEvent(QMouseEvent* AEvent) {
  Guard([&] { FEditor->MouseMove(ShiftState(AEvent->modifiers(), AEvent->buttons()), PixelOf(AEvent->position())); });
}

void TVDEditorWidget::mouseReleaseEvent(QMouseEvent* AEvent) {
  Guard([&] {
    FEditor->MouseUp(ButtonOf(AEvent->button()), ShiftState(AEvent->modifiers(), AEvent->buttons()),
                     PixelOf(AEvent->position()));
  });
}

void TVDEditorWidget::wheelEvent(QWheelEvent* AEvent) {
  const int D = AEvent->angleDelta().y();
  if (D != 0) Guard([&] { FEditor->MouseWheel(D > 0, PixelOf(AEvent->position())); });
  AEvent->accept();
}

void TVDEditorWidget::keyPressEvent(QKeyEvent* AEvent) {
  const quint16 Key = KeyCode(AEvent->key(), AEvent->modifiers());
  if (Key == 0) {
    QWidget::keyPressEvent(AEvent);
    return;
  }
  Guard([&] { FEditor->KeyDown(Key, ShiftState(AEvent->modifiers(), Qt::NoButton)); });
}
