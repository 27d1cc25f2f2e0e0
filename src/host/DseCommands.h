#pragma once
// Registration of the program's subcommands, one function per family.

#include "DseCommandLine.h"

void RegisterExprCommands(TDseCommandLine& ACommands);
void RegisterUnitCommands(TDseCommandLine& ACommands);
void RegisterBarInfoCommands(TDseCommandLine& ACommands);
void RegisterScriptCommands(TDseCommandLine& ACommands);
void RegisterLvdCommands(TDseCommandLine& ACommands);
void RegisterLibraryCommands(TDseCommandLine& ACommands);
void RegisterDrawCommands(TDseCommandLine& ACommands);
void RegisterEditCommands(TDseCommandLine& ACommands);
void RegisterPicsCommands(TDseCommandLine& ACommands);

// Fills the program's table once.
void RegisterAllCommands(TDseCommandLine& ACommands);

// Prints "dse NAME: MESSAGE" and a hint on stderr; returns the usage exit code.
int UsageError(TDseIO& AIO, const QString& ACommand, const QString& AMessage);
