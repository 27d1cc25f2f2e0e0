#include "VDEditorWidget.h"

#include <QApplication>
#include <QMouseEvent>
#include <QTemporaryDir>

#include <gtest/gtest.h>

TEST(TVDEditorWidget, CursorsFollowTheRunningState) {
  QTemporaryDir Dir;
  TVDEditorWidget W(nullptr, Dir.filePath(QStringLiteral("w.ini")));
  W.resize(400, 300);
  W.show();
  const struct {
    int Cmd;
    Qt::CursorShape Shape;
  } Cases[] = {{8, Qt::CrossCursor}, {9, Qt::OpenHandCursor}, {5, Qt::SizeVerCursor}, {1, Qt::CrossCursor}};
  for (const auto& C : Cases) {
    SCOPED_TRACE(C.Cmd);
    W.Editor().Execute(C.Cmd, 0);
    if (C.Cmd != 1) {
      EXPECT_EQ(W.cursor().shape(), C.Shape);
    }
  }
  W.Editor().Execute(17, 0);  // drawing: our own cursor image
  EXPECT_EQ(W.cursor().shape(), Qt::BitmapCursor);
}

TEST(TVDEditorWidget, RightClickAtIdleAsksForTheMenuAndAPressTakesTheFocus) {
  QTemporaryDir Dir;
  QWidget Other;
  TVDEditorWidget W(nullptr, Dir.filePath(QStringLiteral("w.ini")));
  W.resize(400, 300);
  W.show();
  int Menus = 0;
  QObject::connect(&W, &TVDEditorWidget::ContextMenuRequested, [&](const QPoint&) { ++Menus; });
  QMouseEvent Right(QEvent::MouseButtonPress, QPointF(10, 10), W.mapToGlobal(QPointF(10, 10)), Qt::RightButton,
                    Qt::RightButton, Qt::NoModifier);
  QApplication::sendEvent(&W, &Right);
  EXPECT_EQ(Menus, 1);
  EXPECT_TRUE(W.hasFocus() || !QApplication::focusWidget() || QApplication::focusWidget() == &W);
  W.Editor().Execute(8, 0);  // something running: the right button goes to it
  QApplication::sendEvent(&W, &Right);
  EXPECT_EQ(Menus, 1);
  EXPECT_EQ(W.Editor().GetCurCmd(), 1);
}

TEST(TVDEditorWidget, KeyCodesOfTheKeypadAndModifiers) {
  EXPECT_EQ(TVDEditorWidget::KeyCode(Qt::Key_5, Qt::KeypadModifier), vkNumpad0 + 5);
  EXPECT_EQ(TVDEditorWidget::KeyCode(Qt::Key_5, Qt::NoModifier), 53);
  EXPECT_EQ(TVDEditorWidget::KeyCode(Qt::Key_Asterisk, Qt::KeypadModifier), vkMultiply);
  EXPECT_EQ(TVDEditorWidget::KeyCode(Qt::Key_Escape, Qt::NoModifier), vkEscape);
  EXPECT_EQ(TVDEditorWidget::KeyCode(Qt::Key_F2, Qt::NoModifier), vkF2);
  EXPECT_EQ(TVDEditorWidget::ShiftState(Qt::ControlModifier | Qt::KeypadModifier, Qt::MiddleButton), sfCtrl | sfMiddle);
}
