#include "DseCommands.h"

#include <QCoreApplication>

#include <cstdio>

int main(int argc, char** argv) {
  QCoreApplication App(argc, argv);
  QTextStream Out(stdout);
  QTextStream Err(stderr);
  TDseIO IO{Out, Err};
  RegisterAllCommands(DseCommands());
  const int Code = DseCommands().Run(App.arguments().mid(1), IO);
  Out.flush();
  Err.flush();
  return Code;
}
