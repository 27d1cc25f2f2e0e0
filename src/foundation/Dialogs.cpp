#include "Dialogs.h"

#include <algorithm>
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

QString OneLine(const QString& AText) { return QString(AText).replace(QLatin1Char('\n'), QLatin1String("\\n")); }

const char* KindName(TDialogAnswerKind AKind) {
  switch (AKind) {
    case dakButton: return "answer";
    case dakInput: return "input";
    case dakFile: return "file";
    case dakChoose: return "choose";
    case dakForm: return "form";
  }
  return "answer";
}

}  // namespace

// ---- the service's defaults: nothing chosen --------------------------------

bool TDialogService::InputBox(const QString&, const QString&, QString&, const TInputValidator&, TMsgDlgType) {
  return false;
}
bool TDialogService::Choose(const QString&, const QStringList&, int&) { return false; }
bool TDialogService::OpenFileDialog(const QString&, const QString&, QString&) { return false; }
bool TDialogService::SaveFileDialog(const QString&, const QString&, QString&, int*) { return false; }
bool TDialogService::ColorDialog(quint32&) { return false; }
bool TDialogService::FontDialog(TFontSpec&) { return false; }
bool TDialogService::FormDialog(const QString&, std::vector<TFormField>&, const TFormValidator&) { return false; }
int TDialogService::CustomDialog(const QString&, const std::function<int()>& AShow,
                                 const std::function<int(const TDialogAnswer&)>&) {
  return AShow ? AShow() : int(mrCancel);
}

bool OVRAInputBox(const QString& ACaption, const QString& APrompt, QString& AText, const TInputValidator& AValidate) {
  TInputValidator Trimmed;
  if (AValidate)
    Trimmed = [&AValidate](const QString& AValue, QString& AMsg) { return AValidate(Trim(AValue), AMsg); };
  return Dialogs().InputBox(ACaption, APrompt + QLatin1Char(':'), AText, Trimmed, mtInformation);
}

TDialogService& Dialogs() { return *Current(); }

bool DialogsAreDefault() { return dynamic_cast<TStderrDialogs*>(Current().get()) != nullptr; }

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

// ---- the scripted service ---------------------------------------------------

TDialogAnswer TRecordingDialogs::Take(TDialogAnswerKind AKind, const QString& AWhat) {
  if (Queue.empty())
    throw EUnexpectedDialog(QStringLiteral("unanswered dialog: %1").arg(AWhat));
  if (Queue.front().Kind != AKind)
    throw EUnexpectedDialog(QStringLiteral("the next answer is '%1' but the dialog is %2")
                                .arg(QLatin1String(KindName(Queue.front().Kind)), AWhat));
  TDialogAnswer A = Queue.front();
  Queue.pop_front();
  return A;
}

int TRecordingDialogs::MessageBox(const QString& AText, const QString& ATitle, TMsgDlgType AType,
                                  TMsgDlgButtons AButtons) {
  Calls.push_back({AText, ATitle, AType, AButtons});
  const QString Line = QStringLiteral("[%1] %2").arg(ATitle, OneLine(AText));
  if (OnMessage) OnMessage(Line);
  if (AButtons == mbOK) return mrOk;
  const int B = Take(dakButton, Line).Button;
  const bool Fits = AButtons == mbYesNo         ? (B == mrYes || B == mrNo)
                    : AButtons == mbYesNoCancel ? (B == mrYes || B == mrNo || B == mrCancel)
                                                : (B == mrOk || B == mrCancel);
  if (!Fits) throw EUnexpectedDialog(QStringLiteral("the box %1 has no such button").arg(Line));
  return B;
}

bool TRecordingDialogs::InputBox(const QString& ACaption, const QString& APrompt, QString& AValue,
                                 const TInputValidator& AValidate, TMsgDlgType ARefusal) {
  for (;;) {
    const TDialogAnswer A = Take(dakInput, QStringLiteral("the input box \"%1\" (%2)").arg(ACaption, APrompt));
    if (A.Cancel) return false;
    QString Msg;
    if (AValidate && !AValidate(A.Text, Msg)) {
      if (ARefusal == mtInformation)
        ShowHintBox(Msg);
      else
        ShowErrorBox(Msg);
      continue;
    }
    AValue = A.Text;
    return true;
  }
}

bool TRecordingDialogs::Choose(const QString& ACaption, const QStringList& AItems, int& AIndex) {
  const TDialogAnswer A = Take(dakChoose, QStringLiteral("the chooser \"%1\"").arg(ACaption));
  const int I = AItems.indexOf(A.Text);
  if (I < 0) throw EUnexpectedDialog(QStringLiteral("the chooser \"%1\" has no item \"%2\"").arg(ACaption, A.Text));
  AIndex = I;
  return true;
}

bool TRecordingDialogs::OpenFileDialog(const QString& ACaption, const QString&, QString& AFileName) {
  const TDialogAnswer A = Take(dakFile, QStringLiteral("the file dialog \"%1\"").arg(ACaption));
  if (A.Cancel) return false;
  AFileName = A.Text;
  return true;
}

bool TRecordingDialogs::SaveFileDialog(const QString& ACaption, const QString& AFilter, QString& AFileName,
                                       int* AFilterIndex) {
  if (AFilterIndex) *AFilterIndex = 1;
  return OpenFileDialog(ACaption, AFilter, AFileName);
}

bool TRecordingDialogs::RunForm(const QString& ACaption, std::vector<TFormField>& AFields,
                                const TFormValidator& AValidate) {
  const QString What = QStringLiteral("the dialog \"%1\"").arg(ACaption);
  for (;;) {
    std::vector<TFormField> Edited = AFields;
    while (!Queue.empty() && Queue.front().Kind == dakForm) {
      const TDialogAnswer F = Queue.front();
      Queue.pop_front();
      auto It = std::find_if(Edited.begin(), Edited.end(), [&](const TFormField& X) { return X.Label == F.Label; });
      if (It == Edited.end())
        throw EUnexpectedDialog(QStringLiteral("%1 has no field \"%2\"").arg(What, F.Label));
      It->Value = F.Text;
    }
    const int B = Take(dakButton, What).Button;
    if (B != mrOk) return false;
    QString Msg;
    if (AValidate && !AValidate(Edited, Msg)) {
      ShowErrorBox(Msg);
      continue;
    }
    AFields = Edited;
    return true;
  }
}

bool TRecordingDialogs::FormDialog(const QString& ACaption, std::vector<TFormField>& AFields,
                                   const TFormValidator& AValidate) {
  return RunForm(ACaption, AFields, AValidate);
}

bool TRecordingDialogs::ColorDialog(quint32& AColor) {
  std::vector<TFormField> F = {{QStringLiteral("颜色"), QString::number(AColor), {}}};
  const TFormValidator Check = [](const std::vector<TFormField>& A, QString& AMsg) {
    qint64 V;
    if (TryStrToInt64(A[0].Value.trimmed(), V) && V >= 0 && V <= 0xFFFFFF) return true;
    AMsg = QStringLiteral("非法颜色值");
    return false;
  };
  if (!RunForm(QStringLiteral("颜色"), F, Check)) return false;
  AColor = quint32(StrToInt64(F[0].Value.trimmed()));
  return true;
}

bool TRecordingDialogs::FontDialog(TFontSpec& AFont) {
  std::vector<TFormField> F = {{QStringLiteral("字体"), AFont.Name, {}},
                               {QStringLiteral("字高"), QString::number(AFont.Height), {}},
                               {QStringLiteral("字型"), QString::number(AFont.Style), {}}};
  const TFormValidator Check = [](const std::vector<TFormField>& A, QString& AMsg) {
    int H, S;
    if (!A[0].Value.trimmed().isEmpty() && TryStrToInt(A[1].Value.trimmed(), H) && H != 0 &&
        TryStrToInt(A[2].Value.trimmed(), S) && S >= 0 && S <= 3)
      return true;
    AMsg = QStringLiteral("字体设置非法");
    return false;
  };
  if (!RunForm(QStringLiteral("字体"), F, Check)) return false;
  AFont = {F[0].Value.trimmed(), StrToInt(F[1].Value.trimmed()), StrToInt(F[2].Value.trimmed())};
  return true;
}

int TRecordingDialogs::CustomDialog(const QString& ACaption, const std::function<int()>&,
                                    const std::function<int(const TDialogAnswer&)>& AAnswer) {
  for (;;) {
    if (Queue.empty()) throw EUnexpectedDialog(QStringLiteral("unanswered dialog: the dialog \"%1\"").arg(ACaption));
    const TDialogAnswer A = Queue.front();
    Queue.pop_front();
    const int R = AAnswer(A);
    if (R >= 0) return R;
  }
}

QStringList TRecordingDialogs::Lines() const {
  QStringList L;
  for (const TCall& C : Calls) L << QStringLiteral("[%1] %2").arg(C.Title, C.Text);
  return L;
}
