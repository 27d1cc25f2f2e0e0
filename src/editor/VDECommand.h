#pragma once
// The command registry: one descriptor per command class (its static description
// and its class-level Execute), the first registration of an ID winning, and the
// table of command numbers.

#include "VDEditorIntf.h"

#include <vector>

enum TVDECmdIDs {
  cmdRefresh = 0, cmdSelect = 1, cmdMultiSelect = 2, cmdSingleSelect = 3, cmdZoomAll = 4, cmdZoomRuntime = 5,
  cmdZoomIn = 6, cmdZoomOut = 7, cmdZoomWin = 8, cmdPanRuntime = 9, cmdPanPoint = 10, cmdPanCenter = 11,
  cmdPanLeft = 12, cmdPanRight = 13, cmdPanUp = 14, cmdPanDown = 15, cmdDrawPoint = 16, cmdDrawLine = 17,
  cmdDrawACSArc = 18, cmdDrawCSArc = 19, cmdDrawACLArc = 20, cmdDrawCLArc = 21, cmdDraw3PArc = 22,
  cmdDrawRect = 23, cmdDrawCircle = 24, cmdDrawPolygon = 25, cmdDrawText = 26, cmdDrawHatch = 27,
  cmdDrawDimension = 28, cmdDelete = 29, cmdCopy = 30, cmdMirror = 31, cmdMove = 32, cmdRotate = 33,
  cmdExtend = 34, cmdTrim = 35, cmdBreak = 36, cmdMerge = 37, cmdStretch = 38, cmdSetProp = 39, cmdUndo = 40,
  cmdRedo = 41, cmdUndoReset = 42, cmdDragGrip = 43, cmdDragMove = 44, cmdPerSnap = 45, cmdMidSnap = 46,
  cmdIntsSnap = 47, cmdEditCut = 48, cmdEditCopy = 49, cmdEditPaste = 50, cmdEditDelete = 51, cmdSelAll = 52,
  cmdSnapSwitch = 53, cmdGridSwitch = 55, cmdGridSetting = 56, cmdDrawPropSetting = 57, cmdRepeat = 58,
  cmdDeselect = 59, cmdSetDrawLineSegMode = 60, cmdGroupZoom = 61, cmdIntersect = 62, cmdOrthogonalSwitch = 63
};

struct TVDECommandClass {
  const char* ClassName;
  TVDECmdInfo (*CmdInfo)();
  void (*Execute)(IVDEditor& AOwner, qintptr AParam);
};

// Silently ignores a class whose ID is registered already.
void RegisterVDECommand(const TVDECommandClass& AClass);
// A linear walk from the first entry; null when none has the ID.
const TVDECommandClass* FindVDECommand(int ACmdID);
// Registers the editor's own commands in unit order (idempotent).
void RegisterEditorCommands();

// Prompt part AStep + 1 (parts split at code 13), empty beyond the last.
QString PromptPart(const QString& APrompt, int AStep);

// Run commands: priority 4, no name, no prompt.
TVDECmdInfo RunCommandInfo(int ACmdID);

// Registration helpers for state and run command classes.
template <class T>
TVDECommandClass StateCommandClass(const char* AName) {
  return {AName, &T::ClassCmdInfo, &T::template ClassExecute<T>};
}
