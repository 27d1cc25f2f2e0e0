#pragma once
// The editor script: a line-oriented language that drives the editor control as a
// person's mouse, keyboard and dialog answers would. Input goes to the widgets as
// Qt events; dialogs are answered from a queue; prints go to the output stream.

#include <QPoint>
#include <QString>
#include <QStringList>
#include <QTextStream>

#include <exception>
#include <memory>

class TVDEditorWidget;
class TRecordingDialogs;

struct TScriptWord {
  QString Text;
  bool Quoted = false;
};

// Splits one line into words; quotes group blanks and '#', with \" \\ \n escapes.
// Raises Exception on an unclosed quote.
QList<TScriptWord> SplitScriptLine(const QString& ALine);
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
  void Print(const QString& ALine);
  TVDEditorWidget& Canvas() { return FCanvas; }

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
  // Rethrows what an event handler caught.
  void Send(QObject* ATarget, class QEvent* AEvent);
};
