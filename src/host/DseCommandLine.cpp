#include "DseCommandLine.h"

#include <algorithm>

void TDseCommandLine::Register(TDseCommand ACommand) {
  FCommands.push_back(std::move(ACommand));
  std::sort(FCommands.begin(), FCommands.end(),
            [](const TDseCommand& A, const TDseCommand& B) { return A.Name < B.Name; });
}

const TDseCommand* TDseCommandLine::Find(const QString& AName) const {
  for (const TDseCommand& C : FCommands)
    if (C.Name == AName) return &C;
  return nullptr;
}

QString TDseCommandLine::HelpText() const {
  QString S = QStringLiteral(
      "Usage: dse <command> [arguments]\n"
      "       dse <command> --help\n"
      "\n"
      "Draw-set editor host and tools.\n");
  if (!FCommands.empty()) S += QStringLiteral("\nCommands:\n");
  int Width = 0;
  for (const TDseCommand& C : FCommands) Width = std::max(Width, int(C.Name.size()));
  for (const TDseCommand& C : FCommands) S += QStringLiteral("  %1  %2\n").arg(C.Name, -Width).arg(C.Summary);
  S += QStringLiteral(
      "\n"
      "Options:\n"
      "  --help     show this text\n"
      "  --version  show the program version\n");
  return S;
}

int TDseCommandLine::Run(const QStringList& AArgs, TDseIO& AIO) const {
  if (AArgs.isEmpty()) {
    AIO.Err << HelpText();
    return ecUsage;
  }
  const QString& First = AArgs.first();
  if (First == QLatin1String("--help") || First == QLatin1String("-h") || First == QLatin1String("help")) {
    if (AArgs.size() > 1 && First == QLatin1String("help")) {
      if (const TDseCommand* C = Find(AArgs[1])) {
        AIO.Out << C->Usage;
        return ecOk;
      }
      AIO.Err << QStringLiteral("dse: unknown command '%1'. Run 'dse --help' for the list of commands.\n").arg(AArgs[1]);
      return ecUsage;
    }
    AIO.Out << HelpText();
    return ecOk;
  }
  if (First == QLatin1String("--version")) {
#ifdef DSE_VERSION
    AIO.Out << QStringLiteral("dse %1\n").arg(QStringLiteral(DSE_VERSION));
#else
    AIO.Out << QStringLiteral("dse\n");
#endif
    return ecOk;
  }
  if (First.startsWith(u'-')) {
    AIO.Err << QStringLiteral("dse: unknown option '%1'. Run 'dse --help' for usage.\n").arg(First);
    return ecUsage;
  }
  const TDseCommand* C = Find(First);
  if (!C) {
    AIO.Err << QStringLiteral("dse: unknown command '%1'. Run 'dse --help' for the list of commands.\n").arg(First);
    return ecUsage;
  }
  const QStringList Rest = AArgs.mid(1);
  if (Rest.contains(QStringLiteral("--help")) || Rest.contains(QStringLiteral("-h"))) {
    AIO.Out << C->Usage;
    return ecOk;
  }
  return C->Run(Rest, AIO);
}

TDseCommandLine& DseCommands() {
  static TDseCommandLine Commands;
  return Commands;
}
