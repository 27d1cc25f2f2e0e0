#pragma once
// The editor's entry point as the shared library libdseditor exports it. A host calls
// it with its window, a draw-set number, its two data servers, the diameter
// dictionaries and a region code; the user edits in a modal window; the call returns
// the window's result when it closes (2 for every close), or -1 when the run failed
// (the failure was shown in an error box). The servers and dictionaries stay the
// host's.

#include <QString>

class QWidget;
class IMZTBarInfoDataSvr;
class IDrawingsDataSvr;
class IMZTDiamDicts;

#if defined(DSE_BUILDING_LIBRARY)
#define DSE_EXPORT __attribute__((visibility("default")))
#else
#define DSE_EXPORT
#endif

extern "C" DSE_EXPORT int ExecDSEditor(QWidget* AHostWindow, int ADrawSetID, IMZTBarInfoDataSvr* ASysDataSvr,
                                       IDrawingsDataSvr* ADrawingsDataSvr, IMZTDiamDicts* ADiamDicts,
                                       int ARegionCode);

using TExecDSEditorFunc = int (*)(QWidget*, int, IMZTBarInfoDataSvr*, IDrawingsDataSvr*, IMZTDiamDicts*, int);

// What ExecDSEditor runs; for a host that links the editor in.
int RunDSEditor(QWidget* AHostWindow, int ADrawSetID, IMZTBarInfoDataSvr* ASysDataSvr,
                IDrawingsDataSvr* ADrawingsDataSvr, IMZTDiamDicts* ADiamDicts, int ARegionCode);

// For a host that links the editor in: the settings file of the next runs (empty: the
// file beside the program) and whether the window opens maximised.
void SetDSEditorOptions(const QString& ASettingsFile, bool AMaximized);
