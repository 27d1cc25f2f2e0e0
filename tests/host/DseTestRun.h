#pragma once
// Runs the program's command table in-process and keeps what it printed.

#include "DseCommands.h"

struct TDseResult {
  int Code;
  QString Out, Err;
};

inline TDseResult RunDse(const QStringList& AArgs) {
  static TDseCommandLine Cli = [] {
    TDseCommandLine C;
    RegisterAllCommands(C);
    return C;
  }();
  QString Out, Err;
  QTextStream O(&Out), E(&Err);
  TDseIO IO{O, E};
  const int Code = Cli.Run(AArgs, IO);
  O.flush();
  E.flush();
  return {Code, Out, Err};
}
