#pragma once
// The one door for message boxes, questions and input boxes. Logic calls these
// functions; the application installs a service that shows real windows, the
// command line one that prints, tests one that records and answers.

#include <QString>
#include <QStringList>

#include <memory>
#include <vector>

enum TMsgDlgType { mtWarning, mtError, mtInformation, mtConfirmation };
enum TMsgDlgButtons { mbOK, mbYesNo, mbYesNoCancel, mbOKCancel };
// The platform's button codes.
enum TModalResult { mrNone = 0, mrOk = 1, mrCancel = 2, mrYes = 6, mrNo = 7 };

class TDialogService {
public:
  virtual ~TDialogService() = default;
  virtual int MessageBox(const QString& AText, const QString& ATitle, TMsgDlgType AType, TMsgDlgButtons AButtons) = 0;
};

// The installed service; a default one writes "[TITLE] TEXT" lines to stderr and
// answers OK / Yes.
TDialogService& Dialogs();
// Installs AService (null puts the default back); returns the one it replaces.
std::shared_ptr<TDialogService> SetDialogs(std::shared_ptr<TDialogService> AService);

// The system's boxes: an error box titled "错误", a hint box "提示", a confirm box "确认".
void ShowErrorBox(const QString& AText);
void ShowHintBox(const QString& AText);
int ShowConfirmBox(const QString& AText, TMsgDlgButtons AButtons = mbYesNo);

// Records every box and answers from a queue (then mrOk/mrYes by default).
class TRecordingDialogs : public TDialogService {
public:
  struct TCall {
    QString Text, Title;
    TMsgDlgType Type;
    TMsgDlgButtons Buttons;
  };
  int MessageBox(const QString& AText, const QString& ATitle, TMsgDlgType AType, TMsgDlgButtons AButtons) override;
  std::vector<TCall> Calls;
  std::vector<int> Answers;
  // "[TITLE] TEXT" of each call.
  QStringList Lines() const;
};

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
