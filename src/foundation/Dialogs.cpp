#include "Dialogs.h"

#include <cstdio>

namespace {

class TStderrDialogs : public TDialogService {
public:
  int MessageBox(const QString& AText, const QString& ATitle, TMsgDlgType, TMsgDlgButtons AButtons) override {
    std::fprintf(stderr, "[%s] %s\n", qUtf8Printable(ATitle), qUtf8Printable(AText));
    return (AButtons == mbYesNo || AButtons == mbYesNoCancel) ? mrYes : mrOk;
  }
};

std::shared_ptr<TDialogService>& Current() {
  static std::shared_ptr<TDialogService> Service = std::make_shared<TStderrDialogs>();
  return Service;
}

}  // namespace

TDialogService& Dialogs() { return *Current(); }

std::shared_ptr<TDialogService> SetDialogs(std::shared_ptr<TDialogService> AService) {
  std::shared_ptr<TDialogService> Old = Current();
  Current() = AService ? std::move(AService) : std::make_shared<TStderrDialogs>();
  return Old;
}

void ShowErrorBox(const QString& AText) { Dialogs().MessageBox(AText, QStringLiteral("错误"), mtError, mbOK); }
void ShowHintBox(const QString& AText) { Dialogs().MessageBox(AText, QStringLiteral("提示"), mtInformation, mbOK); }
int ShowConfirmBox(const QString& AText, TMsgDlgButtons AButtons) {
  return Dialogs().MessageBox(AText, QStringLiteral("确认"), mtConfirmation, AButtons);
}

int TRecordingDialogs::MessageBox(const QString& AText, const QString& ATitle, TMsgDlgType AType,
                                  TMsgDlgButtons AButtons) {
  Calls.push_back({AText, ATitle, AType, AButtons});
  if (!Answers.empty()) {
    const int A = Answers.front();
    Answers.erase(Answers.begin());
    return A;
  }
  return (AButtons == mbYesNo || AButtons == mbYesNoCancel) ? mrYes : mrOk;
}

QStringList TRecordingDialogs::Lines() const {
  QStringList L;
  for (const TCall& C : Calls) L << QStringLiteral("[%1] %2").arg(C.Title, C.Text);
  return L;
}
