#pragma once
// The main form's rules that need no window: what its two combo boxes accept, which
// editing actions are enabled for a mode, a selection and the curves present, and
// the check of a text typed into the property grid.

#include "DrawSetSession.h"

#include <QHash>
#include <QString>

class TVectorDrawing;
class TDrawSet;

// The zoom box: empty reads "100%"; otherwise an integer 1..100000 with at most one
// trailing "%". On acceptance AText becomes the shown text and AZoom the per cent.
bool AcceptZoomText(QString& AText, int& AZoom);
// The radius box: empty reads "0"; otherwise a number 0..10000000.
bool AcceptRadiusText(QString& AText, double& ARadius);

// Lines, arcs, circles and polylines among the selection, or among all items without
// one; counting stops at AMax.
int CountCurves(TVectorDrawing& ADrawing, int AMax = 2);

struct TEditActionsState {
  TDSType Mode = dsNormal;
  bool HasItems = false;
  bool HasSelection = false;
  int CurveCount = 0;  // as CountCurves gives it
  bool CanPaste = false, CanUndo = false, CanRedo = false, SnapEnabled = false;
};

// Enabled state of each editing and drawing action, by action name ("cbRadius" for
// the radius box).
QHash<QString, bool> EditActionsEnabled(const TEditActionsState& AState);

// The property grid's check of a ptText value; true when nothing is tested.
bool ValidatePropText(const QString& AValue, TDSType AMode, TVectorDrawing& ADrawing, TDrawSet* ADrawSet,
                      QString& AErrMsg);
