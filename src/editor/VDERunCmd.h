#pragma once
// Run commands: priority 4, never a state; each does its work inside Execute.

#include "VDECommand.h"
#include "VectorDrawingItem.h"

// What command 39 points to: one property with its value as items take it.
struct TSetVDIPropParam {
  TVDEPropType PropType;
  QString Value;
};

void RegisterRunCommands();
