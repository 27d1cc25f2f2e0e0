// The script interpreter on any text, with a small budget so every input ends.
#include "Dialogs.h"
#include "Interpreter.h"

#include <QString>

namespace {

// Boxes go nowhere; questions answer No.
class TSilentDialogs : public TDialogService {
public:
  int MessageBox(const QString&, const QString&, TMsgDlgType, TMsgDlgButtons AButtons) override {
    return AButtons == mbOK ? mrOk : mrNo;
  }
};

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* AData, size_t ASize) {
  static const auto Installed = SetDialogs(std::make_shared<TSilentDialogs>());
  (void)Installed;
  TInterpreter I;
  I.SetProgramme(QString::fromUtf8(reinterpret_cast<const char*>(AData), qsizetype(ASize)));
  I.AddGlobalVar(QStringLiteral("hc"), QStringLiteral("500"));
  I.SetStepLimit(2000);
  try {
    I.Execute();
  } catch (const Exception&) {
  }
  return 0;
}
