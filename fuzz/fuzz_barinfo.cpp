// Bar notation on any text, in the draw set's flavour.
#include "MZTBarInfo.h"

#include <QString>

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* AData, size_t ASize) {
  const QString Text = QString::fromUtf8(reinterpret_cast<const char*>(AData), qsizetype(ASize));
  try {
    TDrawSetBarInfo Info;
    Info.SetAsString(Text);
    (void)Info.AsString();
  } catch (const Exception&) {
  }
  return 0;
}
