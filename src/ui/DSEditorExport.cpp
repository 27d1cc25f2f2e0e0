// The exported entry point of libdseditor.

#include "DSEditor.h"

extern "C" DSE_EXPORT int ExecDSEditor(QWidget* AHostWindow, int ADrawSetID, IMZTBarInfoDataSvr* ASysDataSvr,
                                       IDrawingsDataSvr* ADrawingsDataSvr, IMZTDiamDicts* ADiamDicts,
                                       int ARegionCode) {
  return RunDSEditor(AHostWindow, ADrawSetID, ASysDataSvr, ADrawingsDataSvr, ADiamDicts, ARegionCode);
}
