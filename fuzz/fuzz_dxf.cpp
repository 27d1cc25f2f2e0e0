// The DXF reader and the builder: any outcome but a drawing or an EDxfError is a finding.
#include "CADtoVDEBuilder.h"
#include "FuzzLoad.h"
#include "DxfReader.h"
#include "VectorDrawing.h"

#include <cstdint>

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* AData, size_t ASize) {
  FuzzGuiApp();
  TVectorDrawing D;
  TCADtoVDEBuilder Builder(D);
  TDxfOptions Options;
  Options.MaxItems = 2000;  // keeps each input quick under the sanitizers; the bound itself is under test
  try {
    ReadDxf(QByteArray(reinterpret_cast<const char*>(AData), qsizetype(ASize)), Builder, Options);
  } catch (const EDxfError&) {
  }
  return 0;
}
