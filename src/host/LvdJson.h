#pragma once
// JSON forms shared by the command line and the editor scripts. One drawing item: the
// form `dse lvd info --json` and the editor script's `print item` share.

#include "VectorDrawingItem.h"

#include <QJsonObject>

QJsonObject ItemJson(const TVectorDrawingItem& AItem);

class TDrawSetBar;
class TDrawSetParam;
class TVectorDrawing;

// A bar and a param as `dse show --json` and the window script's `print bars|params`
// give them; a bar's notation is its text item's text when it has one.
QJsonObject BarJson(const TDrawSetBar& ABar, const TVectorDrawing& ADrawing);
QJsonObject ParamJson(const TDrawSetParam& AParam);
