#pragma once
// The editor control: a thin widget over the editor's logic. It turns Qt input into
// the plain records states take, shows the editor's image, and maps cursor numbers
// to cursors. It owns the logic.

#include "VectorDrawingEditor.h"

#include <QWidget>

#include <exception>
#include <functional>
#include <memory>

class TVDEditorWidget : public QWidget {
  Q_OBJECT
public:
  explicit TVDEditorWidget(QWidget* AParent = nullptr, const QString& ASettingsFile = QString());
  // Over an editor of a derived kind.
  TVDEditorWidget(QWidget* AParent, std::unique_ptr<TVectorDrawingEditor> AEditor);
  ~TVDEditorWidget() override;
  TVectorDrawingEditor& Editor() { return *FEditor; }

  // Key code and shift state of the editor for a Qt key event.
  static quint16 KeyCode(int AQtKey, Qt::KeyboardModifiers AModifiers);
  static TShiftState ShiftState(Qt::KeyboardModifiers AModifiers, Qt::MouseButtons AButtons);
  static QCursor CursorFor(int ACursor);

  // An exception from the editor must not cross Qt's event dispatch: it goes here,
  // or, without a handler, to an error box.
  std::function<void(std::exception_ptr)> OnError;

signals:
  // Right click at idle with nothing running: the host shows its menu here.
  void ContextMenuRequested(const QPoint& AGlobalPos);

protected:
  void paintEvent(QPaintEvent* AEvent) override;
  void resizeEvent(QResizeEvent* AEvent) override;
  void mousePressEvent(QMouseEvent* AEvent) override;
  void mouseDoubleClickEvent(QMouseEvent* AEvent) override;
  void mouseMoveEvent(QMouseEvent* AEvent) override;
  void mouseReleaseEvent(QMouseEvent* AEvent) override;
  void wheelEvent(QWheelEvent* AEvent) override;
  void keyPressEvent(QKeyEvent* AEvent) override;

private:
  void Press(QMouseEvent* AEvent, TShiftState AExtra);
  template <class F>
  void Guard(F AWork);
  std::unique_ptr<TVectorDrawingEditor> FEditor;
};
