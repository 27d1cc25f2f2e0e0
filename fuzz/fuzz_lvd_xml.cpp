#include "FuzzLoad.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* AData, size_t ASize) {
  // The XML form: the header is put in front so every input reaches the XML loader.
  FuzzLoad(QByteArray("<?xml version=\"1.0\"?>") + QByteArray(reinterpret_cast<const char*>(AData), qsizetype(ASize)));
  return 0;
}
