#pragma once
// The single-step debugger "单步调试": a bar's script as a list of lines, one statement
// (a block as one) per step, the next line marked, and a query of any variable. It
// owns its interpreter; the caller sets the variables before the first step.

#include "Interpreter.h"

#include <QDialog>

#include <functional>

class QLineEdit;
class QListWidget;
class QPushButton;

class TDebugForm : public QDialog {
public:
  explicit TDebugForm(QWidget* AOwner = nullptr);
  void Initialize(const QString& ACode);
  TInterpreter& Interpreter() { return FInterpreter; }
  // One step; the result of ExecByStep, or -1 when the step failed with an error.
  int Step();
  // Steps until the script ends.
  int Run();
  QString Query(const QString& AName);
  int CurLineNo() const { return FCurLineNo; }
  int LastResult() const { return FLastResult; }
  bool CanStep() const;
  QListWidget& Lines() { return *FCode; }

  // A host that keeps the form open itself (a script) takes it here instead of a
  // modal run; it then owns the form.
  static std::function<void(TDebugForm*)>& Host();

protected:
  void keyPressEvent(QKeyEvent* AEvent) override;

private:
  TInterpreter FInterpreter;
  int FCurLineNo = 0;
  int FLastResult = 0;
  QListWidget* FCode;
  QLineEdit* FVar;
  QLineEdit* FVal;
  QPushButton* FStep;
};
