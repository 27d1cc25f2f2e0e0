#include "ScriptDebugFrm.h"

#include "Dialogs.h"
#include "SysUtils.h"

#include <QGridLayout>
#include <QGroupBox>
#include <QKeyEvent>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QPushButton>
#include <QVBoxLayout>

std::function<void(TDebugForm*)>& TDebugForm::Host() {
  static std::function<void(TDebugForm*)> H;
  return H;
}

TDebugForm::TDebugForm(QWidget* AOwner) : QDialog(AOwner) {
  setWindowTitle(QStringLiteral("单步调试"));
  resize(520, 420);
  FInterpreter.SetStepLimit(100000);  // a block of an endless loop must not hang the window
  FCode = new QListWidget(this);
  FCode->setObjectName(QStringLiteral("lbCode"));
  FCode->setFont(QFont(QStringLiteral("Courier New"), 10));
  auto* QueryBox = new QGroupBox(this);
  QueryBox->setObjectName(QStringLiteral("gbQuery"));
  FVar = new QLineEdit(QueryBox);
  FVal = new QLineEdit(QueryBox);
  FVal->setReadOnly(true);
  auto* QueryButton = new QPushButton(QStringLiteral("查询"), QueryBox);
  auto* G = new QGridLayout(QueryBox);
  G->addWidget(new QLabel(QStringLiteral("变量名"), QueryBox), 0, 0);
  G->addWidget(FVar, 0, 1);
  G->addWidget(QueryButton, 0, 2);
  G->addWidget(new QLabel(QStringLiteral("变量值"), QueryBox), 1, 0);
  G->addWidget(FVal, 1, 1);
  FStep = new QPushButton(QStringLiteral("下一步"), this);
  auto* L = new QVBoxLayout(this);
  L->addWidget(FCode, 1);
  L->addWidget(QueryBox);
  L->addWidget(FStep, 0, Qt::AlignRight);
  connect(FStep, &QPushButton::clicked, this, [this] { Step(); });
  connect(QueryButton, &QPushButton::clicked, this, [this] { FVal->setText(Query(FVar->text())); });
}

void TDebugForm::Initialize(const QString& ACode) {
  FInterpreter.SetProgramme(ACode);
  FCode->clear();
  if (!ACode.isEmpty()) FCode->addItems(ACode.split(QLatin1Char('\n')));
  FCurLineNo = 0;
  FStep->setEnabled(FCode->count() > 0);
  if (FCode->count() > 0) FCode->setCurrentRow(0);
}

bool TDebugForm::CanStep() const { return FStep->isEnabled(); }

int TDebugForm::Step() {
  if (!CanStep()) return FLastResult;
  int Line = FCurLineNo;
  int R;
  try {
    R = FInterpreter.ExecByStep(Line);
  } catch (const EScriptStepLimit& E) {
    // The run is over: the budget or the call depth says so.
    ShowErrorBox(E.Message());
    R = 1;
  } catch (const Exception& E) {
    // The line stays: the next step runs it again.
    ShowErrorBox(E.Message());
    return FLastResult = -1;
  }
  FLastResult = R;
  if (R == 0) {
    FCurLineNo = Line;
    FCode->setCurrentRow(std::min(Line, FCode->count() - 1));
    return R;
  }
  FCurLineNo = 0;
  FStep->setEnabled(false);
  if (R == 4)
    ShowErrorBox(QStringLiteral("中断执行！"));
  else
    ShowHintBox(QStringLiteral("执行结束！"));
  return R;
}

int TDebugForm::Run() {
  int R = 0;
  while (CanStep()) {
    R = Step();
    if (R < 0) break;
  }
  return R;
}

QString TDebugForm::Query(const QString& AName) {
  const QString V = FInterpreter.GetVarValue(Trim(AName).toLower());
  FVar->setText(AName);
  FVal->setText(V);
  return V;
}

void TDebugForm::keyPressEvent(QKeyEvent* AEvent) {
  if ((AEvent->key() == Qt::Key_Return || AEvent->key() == Qt::Key_Enter) &&
      (FVar->hasFocus() || FVal->hasFocus())) {
    FVal->setText(Query(FVar->text()));
    return;
  }
  QDialog::keyPressEvent(AEvent);
}
