#pragma once
// The editor script: a line-oriented language that drives the editor control as a
// person's mouse, keyboard and dialog answers would. Input goes to the widgets as
// Qt events; dialogs are answered from a queue; prints go to the output stream.

#include <QPoint>
#include <Qt>
#include <QString>
#include <QStringList>
#include <QTextStream>

#include <exception>
#include <functional>
#include <memory>

class QWidget;
class TVDEditorWidget;
class TRecordingDialogs;

struct TScriptWord {
  QString Text;
  bool Quoted = false;
};

// Splits one line into words; quotes group blanks and '#', with \" \\ \n escapes.
// Raises Exception on an unclosed quote.
QList<TScriptWord> SplitScriptLine(const QString& ALine);
// The lines of a script file ("-" reads standard input); false with a message.
bool ReadScriptLines(const QString& APath, QStringList& ALines, QString& AError);
// The shortest text that reads back to the same double.
QString ShortestNumber(double AValue);

class TEditorScriptPlayer {
public:
  TEditorScriptPlayer(TVDEditorWidget& ACanvas, QTextStream& AOut);
  virtual ~TEditorScriptPlayer();
  // Runs every statement; false with "line N: MESSAGE" in AError at the first that fails.
  bool Run(const QStringList& ALines, QString& AError);

protected:
  // A statement this player does not know; false leaves it to the caller's error.
  virtual bool RunExtra(const QList<TScriptWord>& AWords);
  virtual void Save(const QString& AFileName, const QString& AFormat);
  virtual void Shot(const QString& AFileName);
  // The `size` statement: the control gets this client size.
  virtual void SetClientSize(int AWidth, int AHeight);
  // A property edit's further check after the property's own; false with the message.
  virtual bool CheckProp(int APropType, const QString& AValue, QString& AErrMsg);
  // A key the window takes as a shortcut; true when it did.
  virtual bool TryShortcut(int AKey, Qt::KeyboardModifiers AMods);
  // Called before each statement; raises to refuse it.
  virtual void BeforeStatement(const QString& AWord);
  // The widget that takes `key` and `type`.
  QWidget* KeyTarget() const;
  void Print(const QString& ALine);
  // Sends an event and rethrows what a handler caught meanwhile.
  void Send(QObject* ATarget, class QEvent* AEvent);
  // A failure caught by an event handler, raised after the event.
  void SetEventError(std::exception_ptr AError) { FEventError = AError; }
  void RaiseEventError();
  TVDEditorWidget& Canvas() { return FCanvas; }
  TRecordingDialogs& Recorder() { return *FDialogs; }

private:
  void RunStatement(const QList<TScriptWord>& AWords);
  void RunPrint(const QList<TScriptWord>& AWords);
  void RunProp(const QString& AName, const QString& AValue);
  QPoint ToPixel(const QString& APoint) const;
  void SendMouse(int AType, const QPoint& APixel, Qt::MouseButton AButton, Qt::KeyboardModifiers AMods);
  void SendKey(const QString& AName, Qt::KeyboardModifiers AMods);

  TVDEditorWidget& FCanvas;
  QTextStream& FOut;
  std::shared_ptr<TRecordingDialogs> FDialogs;
  std::shared_ptr<class TDialogService> FPrevDialogs;
  QPoint FLastPixel{0, 0};
  Qt::MouseButtons FButtons = Qt::NoButton;
  QString FLastPos;
  bool FInputSeen = false;
  std::exception_ptr FEventError;
  std::function<void(const QString&)> FPrevShowMousePos;
};
