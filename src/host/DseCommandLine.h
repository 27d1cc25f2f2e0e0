#pragma once
// The `dse` command frame: a table of subcommands, help texts, and the exit-code
// rules (0 success, 1 failure of the work, 2 bad usage). Commands write to the
// given streams so that tests can run them in-process.

#include <QString>
#include <QStringList>
#include <QTextStream>

#include <functional>
#include <vector>

struct TDseIO {
  QTextStream& Out;
  QTextStream& Err;
};

struct TDseCommand {
  QString Name;
  QString Summary;   // one line for `dse --help`
  QString Usage;     // full text for `dse NAME --help`
  std::function<int(const QStringList& AArgs, TDseIO& AIO)> Run;
};

enum TDseExitCode { ecOk = 0, ecFailed = 1, ecUsage = 2 };

class TDseCommandLine {
public:
  void Register(TDseCommand ACommand);
  const TDseCommand* Find(const QString& AName) const;
  // AArgs excludes the program name.
  int Run(const QStringList& AArgs, TDseIO& AIO) const;
  QString HelpText() const;

private:
  std::vector<TDseCommand> FCommands;
};

// The program's command table.
TDseCommandLine& DseCommands();
