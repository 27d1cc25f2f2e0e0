// The XML document: what loads must save to text that loads again to the same tree.
#include "SelkaXMLDoc.h"

#include <QString>

#include <cstdlib>

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* AData, size_t ASize) {
  const QString Text = QString::fromUtf8(reinterpret_cast<const char*>(AData), qsizetype(ASize));
  const auto Doc = NewXMLDocument();
  try {
    Doc->LoadFromString(Text);
  } catch (const Exception&) {
    return 0;
  }
  const QString Saved = Doc->SaveToString();
  const auto Again = NewXMLDocument();
  try {
    Again->LoadFromString(Saved);
  } catch (const Exception&) {
    std::abort();  // a document we wrote must load
  }
  if (Again->SaveToString() != Saved) std::abort();
  return 0;
}
