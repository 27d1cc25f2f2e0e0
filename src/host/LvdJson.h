#pragma once
// One drawing item as a JSON object: the form `dse lvd info --json` and the editor
// script's `print item` share.

#include "VectorDrawingItem.h"

#include <QJsonObject>

QJsonObject ItemJson(const TVectorDrawingItem& AItem);
