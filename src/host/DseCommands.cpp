#include "DseCommands.h"

void RegisterAllCommands(TDseCommandLine& ACommands) {
  RegisterExprCommands(ACommands);
  RegisterUnitCommands(ACommands);
  RegisterBarInfoCommands(ACommands);
  RegisterScriptCommands(ACommands);
  RegisterLvdCommands(ACommands);
  RegisterLibraryCommands(ACommands);
  RegisterDrawCommands(ACommands);
  RegisterEditCommands(ACommands);
  RegisterPicsCommands(ACommands);
}

int UsageError(TDseIO& AIO, const QString& ACommand, const QString& AMessage) {
  AIO.Err << QStringLiteral("dse %1: %2. Run 'dse %1 --help' for usage.\n").arg(ACommand, AMessage);
  return ecUsage;
}
