#include "DseCommandLine.h"

#include <gtest/gtest.h>

namespace {
struct TRun {
  int Code;
  QString Out, Err;
};

TRun RunCli(const TDseCommandLine& ACli, const QStringList& AArgs) {
  QString Out, Err;
  QTextStream O(&Out), E(&Err);
  TDseIO IO{O, E};
  const int Code = ACli.Run(AArgs, IO);
  O.flush();
  E.flush();
  return {Code, Out, Err};
}

TDseCommandLine MakeCli(QStringList* ASeen) {
  TDseCommandLine Cli;
  Cli.Register({QStringLiteral("echo"), QStringLiteral("print the arguments"),
                QStringLiteral("Usage: dse echo ARG...\n"), [ASeen](const QStringList& A, TDseIO& IO) {
                  *ASeen = A;
                  IO.Out << A.join(u' ') << '\n';
                  return A.contains(QStringLiteral("fail")) ? int(ecFailed) : int(ecOk);
                }});
  Cli.Register({QStringLiteral("alpha"), QStringLiteral("first in the list"), QStringLiteral("alpha usage\n"),
                [](const QStringList&, TDseIO&) { return 0; }});
  return Cli;
}
}  // namespace

TEST(TDseCommandLine, RunsTheNamedCommandWithTheRest) {
  QStringList Seen;
  const TDseCommandLine Cli = MakeCli(&Seen);
  const TRun R = RunCli(Cli, {QStringLiteral("echo"), QStringLiteral("a"), QStringLiteral("钢筋")});
  EXPECT_EQ(R.Code, 0);
  EXPECT_EQ(R.Out, QStringLiteral("a 钢筋\n"));
  EXPECT_EQ(Seen, (QStringList{QStringLiteral("a"), QStringLiteral("钢筋")}));
  EXPECT_EQ(RunCli(Cli, {QStringLiteral("echo"), QStringLiteral("fail")}).Code, ecFailed);
}

TEST(TDseCommandLine, HelpAndUsageErrors) {
  QStringList Seen;
  const TDseCommandLine Cli = MakeCli(&Seen);
  const struct {
    QStringList Args;
    int Code;
    const char* InOut;
    const char* InErr;
  } Cases[] = {
      {{QStringLiteral("--help")}, ecOk, "Usage: dse <command>", ""},
      {{QStringLiteral("help"), QStringLiteral("echo")}, ecOk, "Usage: dse echo", ""},
      {{QStringLiteral("echo"), QStringLiteral("--help")}, ecOk, "Usage: dse echo", ""},
      {{}, ecUsage, "", "Usage: dse <command>"},
      {{QStringLiteral("frobnicate")}, ecUsage, "", "dse: unknown command 'frobnicate'"},
      {{QStringLiteral("help"), QStringLiteral("nope")}, ecUsage, "", "unknown command 'nope'"},
      {{QStringLiteral("--frob")}, ecUsage, "", "unknown option '--frob'"},
      {{QStringLiteral("--version")}, ecOk, "dse ", ""},
  };
  for (const auto& C : Cases) {
    SCOPED_TRACE(C.Args.join(u' ').toStdString());
    const TRun R = RunCli(Cli, C.Args);
    EXPECT_EQ(R.Code, C.Code);
    EXPECT_TRUE(R.Out.contains(QString::fromUtf8(C.InOut))) << R.Out.toStdString();
    EXPECT_TRUE(R.Err.contains(QString::fromUtf8(C.InErr))) << R.Err.toStdString();
    if (C.Code == ecUsage) {
      EXPECT_TRUE(R.Out.isEmpty());
    }
  }
  EXPECT_TRUE(Seen.isEmpty());  // help never runs the command
}

TEST(TDseCommandLine, HelpListsCommandsInOrder) {
  QStringList Seen;
  const QString H = MakeCli(&Seen).HelpText();
  EXPECT_LT(H.indexOf(QStringLiteral("alpha")), H.indexOf(QStringLiteral("echo")));
  EXPECT_TRUE(H.contains(QStringLiteral("print the arguments")));
}
