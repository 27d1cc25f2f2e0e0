#pragma once
// The one door for message boxes, questions, input boxes, choosers, file, colour,
// font and form dialogs. Logic calls these; the application installs a service that
// shows real windows, the command line one that prints, tests and scripts one that
// answers from a queue and fails loudly on a dialog nobody expected.

#include "SysUtils.h"

#include <QString>
#include <QStringList>

#include <deque>
#include <functional>
#include <memory>
#include <vector>

enum TMsgDlgType { mtWarning, mtError, mtInformation, mtConfirmation };
enum TMsgDlgButtons { mbOK, mbYesNo, mbYesNoCancel, mbOKCancel };
// The platform's button codes.
enum TModalResult { mrNone = 0, mrOk = 1, mrCancel = 2, mrYes = 6, mrNo = 7 };

// A text refused by a dialog's own check: false with the message to show.
using TInputValidator = std::function<bool(const QString& AText, QString& AErrMsg)>;

// One labelled field of a form-style dialog; the label is shown without its colon.
struct TFormField {
  QString Label;
  QString Value;
  QStringList Choices;  // offered values of a combo box; empty for a free edit
};
using TFormValidator = std::function<bool(const std::vector<TFormField>& AFields, QString& AErrMsg)>;

struct TFontSpec {
  QString Name;
  int Height = 12;
  int Style = 0;  // bit 0 bold, bit 1 italic
};

enum TDialogAnswerKind { dakButton, dakInput, dakFile, dakChoose, dakForm };

struct TDialogAnswer {
  TDialogAnswerKind Kind = dakButton;
  int Button = mrOk;  // dakButton
  bool Cancel = false;  // dakInput, dakFile
  QString Label;  // dakForm
  QString Text;
};

class TDialogService {
public:
  virtual ~TDialogService() = default;
  virtual int MessageBox(const QString& AText, const QString& ATitle, TMsgDlgType AType, TMsgDlgButtons AButtons) = 0;
  // True with the accepted text in AValue; a refused text shows its message in a box of
  // ARefusal's type (an error box, or a hint box for mtInformation) and the dialog stays.
  virtual bool InputBox(const QString& ACaption, const QString& APrompt, QString& AValue,
                        const TInputValidator& AValidate = nullptr, TMsgDlgType ARefusal = mtError);
  virtual bool Choose(const QString& ACaption, const QStringList& AItems, int& AIndex);
  virtual bool OpenFileDialog(const QString& ACaption, const QString& AFilter, QString& AFileName);
  // AFilterIndex, when given, receives the chosen filter from 1.
  virtual bool SaveFileDialog(const QString& ACaption, const QString& AFilter, QString& AFileName,
                              int* AFilterIndex = nullptr);
  virtual bool ColorDialog(quint32& AColor);
  virtual bool FontDialog(TFontSpec& AFont);
  virtual bool FormDialog(const QString& ACaption, std::vector<TFormField>& AFields,
                          const TFormValidator& AValidate = nullptr);
  // A dialog of the window layer (a chooser with a preview, ...). A service with windows
  // runs AShow; a scripted one hands each queued answer to AAnswer, which returns the
  // modal result, or -1 when the dialog refused the answer and stays open.
  virtual int CustomDialog(const QString& ACaption, const std::function<int()>& AShow,
                           const std::function<int(const TDialogAnswer&)>& AAnswer);
};

// The installed service; a default one writes "[TITLE] TEXT" lines to stderr,
// answers OK / Yes to boxes and Cancel to every other dialog.
TDialogService& Dialogs();
// True while the default service is installed.
bool DialogsAreDefault();
// Installs AService (null puts the default back); returns the one it replaces.
std::shared_ptr<TDialogService> SetDialogs(std::shared_ptr<TDialogService> AService);

// The system's boxes: an error box titled "错误", a hint box "提示", a confirm box "确认".
void ShowErrorBox(const QString& AText);
void ShowHintBox(const QString& AText);
int ShowConfirmBox(const QString& AText, TMsgDlgButtons AButtons = mbYesNo);

// Raised by the scripted service on a dialog with no fitting answer queued.
class EUnexpectedDialog : public Exception {
public:
  using Exception::Exception;
};


// Records every dialog and answers from one queue in order. A box with one button
// answers itself; any other dialog takes the next queued answer of its kind and
// raises EUnexpectedDialog when there is none.
class TRecordingDialogs : public TDialogService {
public:
  struct TCall {
    QString Text, Title;
    TMsgDlgType Type;
    TMsgDlgButtons Buttons;
  };
  int MessageBox(const QString& AText, const QString& ATitle, TMsgDlgType AType, TMsgDlgButtons AButtons) override;
  bool InputBox(const QString& ACaption, const QString& APrompt, QString& AValue,
                const TInputValidator& AValidate, TMsgDlgType ARefusal) override;
  bool Choose(const QString& ACaption, const QStringList& AItems, int& AIndex) override;
  bool OpenFileDialog(const QString& ACaption, const QString& AFilter, QString& AFileName) override;
  bool SaveFileDialog(const QString& ACaption, const QString& AFilter, QString& AFileName,
                      int* AFilterIndex = nullptr) override;
  // Fields "颜色" (a colour number) and then a button.
  bool ColorDialog(quint32& AColor) override;
  // Fields "字体", "字高", "字型" (0 to 3) and then a button.
  bool FontDialog(TFontSpec& AFont) override;
  bool FormDialog(const QString& ACaption, std::vector<TFormField>& AFields, const TFormValidator& AValidate) override;
  // Takes answers until AAnswer accepts one; an answer of a kind it does not take is its
  // business (it raises EUnexpectedDialog).
  int CustomDialog(const QString& ACaption, const std::function<int()>& AShow,
                   const std::function<int(const TDialogAnswer&)>& AAnswer) override;

  void QueueButton(int AButton) { Queue.push_back({dakButton, AButton, false, {}, {}}); }
  void QueueInput(const QString& AText) { Queue.push_back({dakInput, mrOk, false, {}, AText}); }
  void QueueInputCancel() { Queue.push_back({dakInput, mrCancel, true, {}, {}}); }
  void QueueFile(const QString& APath) { Queue.push_back({dakFile, mrOk, false, {}, APath}); }
  void QueueFileCancel() { Queue.push_back({dakFile, mrCancel, true, {}, {}}); }
  void QueueChoose(const QString& AText) { Queue.push_back({dakChoose, mrOk, false, {}, AText}); }
  void QueueForm(const QString& ALabel, const QString& AText) { Queue.push_back({dakForm, mrOk, false, ALabel, AText}); }

  std::vector<TCall> Calls;
  std::deque<TDialogAnswer> Queue;
  // Called with "[TITLE] TEXT" for each box as it is shown, line breaks as \n.
  std::function<void(const QString& ALine)> OnMessage;
  // "[TITLE] TEXT" of each box.
  QStringList Lines() const;

private:
  TDialogAnswer Take(TDialogAnswerKind AKind, const QString& AWhat);
  bool RunForm(const QString& ACaption, std::vector<TFormField>& AFields, const TFormValidator& AValidate);
};

// The one-line question box of the commands: the prompt is shown with a ":" behind it,
// the check sees the trimmed text, a refusal shows its message in a hint box and the
// box stays; on OK AText receives the text as typed.
bool OVRAInputBox(const QString& ACaption, const QString& APrompt, QString& AText,
                  const TInputValidator& AValidate = nullptr);

// Installs a recording service for one scope and puts the previous one back.
class TDialogScope {
public:
  TDialogScope() : FRecorder(std::make_shared<TRecordingDialogs>()), FPrevious(SetDialogs(FRecorder)) {}
  ~TDialogScope() { SetDialogs(FPrevious); }
  TDialogScope(const TDialogScope&) = delete;
  TDialogScope& operator=(const TDialogScope&) = delete;
  TRecordingDialogs& operator*() const { return *FRecorder; }
  TRecordingDialogs* operator->() const { return FRecorder.get(); }

private:
  std::shared_ptr<TRecordingDialogs> FRecorder;
  std::shared_ptr<TDialogService> FPrevious;
};
