#include "FuzzLoad.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* AData, size_t ASize) {
  // The binary form: whatever the bytes, they do not start an XML header.
  QByteArray B(reinterpret_cast<const char*>(AData), qsizetype(ASize));
  if (B.size() >= 5 && B.left(5).toLower() == "<?xml") B[0] = 'x';
  FuzzLoad(B);
  return 0;
}
