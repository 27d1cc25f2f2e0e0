#include "DseCommands.h"

#include "Dialogs.h"
#include "Interpreter.h"
#include "SynCHBASICEdit.h"

#include <QFile>
#include <QStringDecoder>

namespace {

const QString Name = QStringLiteral("script");

// Every box becomes one line "[TITLE] TEXT" on stdout, a line break as "\n".
class TPrintingDialogs : public TDialogService {
public:
  explicit TPrintingDialogs(QTextStream& AOut) : FOut(AOut) {}
  int MessageBox(const QString& AText, const QString& ATitle, TMsgDlgType, TMsgDlgButtons AButtons) override {
    QString T = AText;
    T.replace(QStringLiteral("\r\n"), QStringLiteral("\\n")).replace(u'\n', QStringLiteral("\\n"));
    FOut << '[' << ATitle << "] " << T << '\n';
    return (AButtons == mbYesNo || AButtons == mbYesNoCancel) ? mrYes : mrOk;
  }

private:
  QTextStream& FOut;
};

// Scripts are UTF-8; a file that is not valid UTF-8 is read as GBK.
bool ReadScript(const QString& AFile, QString& AText, QString& AError) {
  QByteArray B;
  if (!ReadFileCapped(AFile, qint64(4) << 20, B, AError)) {
    AError = QStringLiteral("cannot read '%1': %2").arg(AFile, AError);
    return false;
  }
  QStringDecoder Utf8(QStringDecoder::Utf8, QStringDecoder::Flag::Stateless);
  AText = Utf8(B);
  if (Utf8.hasError()) AText = QStringDecoder("GBK")(B);
  if (AText.startsWith(QChar(0xFEFF))) AText.remove(0, 1);
  AText.replace(QStringLiteral("\r\n"), QStringLiteral("\n"));
  return true;
}

int PrintTokens(const QString& AText, const QStringList& AParams, TDseIO& AIO) {
  TSynSampleSyn S;
  for (const QString& P : AParams) S.AddKey(P);
  const QStringList Lines = AText.split(u'\n');
  for (int I = 0; I < Lines.size(); ++I) {
    AIO.Out << I << ':';
    for (S.SetLine(Lines[I], I); !S.GetEol(); S.Next()) AIO.Out << ' ' << NTokenKind[S.GetTokenID()] << "(" << S.GetToken() << ")";
    AIO.Out << '\n';
  }
  return ecOk;
}

int RunScript(const QStringList& AArgs, TDseIO& AIO) {
  QString File;
  QList<QPair<QString, QString>> Vars;
  QStringList Queries, Params;
  bool Step = false, Tokens = false;
  qint64 MaxSteps = 100000;
  for (int I = 0; I < AArgs.size(); ++I) {
    const QString& A = AArgs[I];
    const bool HasValue = I + 1 < AArgs.size();
    if (A == QLatin1String("--step")) Step = true;
    else if (A == QLatin1String("--tokens")) Tokens = true;
    else if (A == QLatin1String("--var") && HasValue) {
      const QString V = AArgs[++I];
      const qsizetype Eq = V.indexOf(u'=');
      if (Eq <= 0) return UsageError(AIO, Name, QStringLiteral("--var takes NAME=VALUE, not '%1'").arg(V));
      Vars.append({V.left(Eq), V.mid(Eq + 1)});
    } else if (A == QLatin1String("--query") && HasValue) Queries << AArgs[++I];
    else if (A == QLatin1String("--param") && HasValue) Params << AArgs[++I];
    else if (A == QLatin1String("--max-steps") && HasValue) {
      if (!TryStrToInt64(AArgs[++I], MaxSteps) || MaxSteps < 1)
        return UsageError(AIO, Name, QStringLiteral("--max-steps takes a positive whole number"));
    } else if (A.startsWith(QLatin1String("--"))) return UsageError(AIO, Name, QStringLiteral("unknown option '%1'").arg(A));
    else if (File.isEmpty()) File = A;
    else return UsageError(AIO, Name, QStringLiteral("unexpected argument '%1'").arg(A));
  }
  if (File.isEmpty()) return UsageError(AIO, Name, QStringLiteral("missing the script file"));
  QString Text, Error;
  if (!ReadScript(File, Text, Error)) {
    AIO.Err << "error: " << Error << '\n';
    return ecFailed;
  }
  if (Tokens) return PrintTokens(Text, Params, AIO);

  const auto Previous = SetDialogs(std::make_shared<TPrintingDialogs>(AIO.Out));
  TInterpreter Interp;
  Interp.SetProgramme(Text);
  for (const auto& V : Vars) Interp.AddGlobalVar(V.first, V.second);
  Interp.SetStepLimit(MaxSteps);
  int Code;
  try {
    if (!Step) {
      Code = Interp.Execute() ? 0 : 1;
    } else {
      int Line = 0;
      quint8 R;
      do {
        const int Before = Line;
        R = Interp.ExecByStep(Line);
        AIO.Out << "step " << Before << ' ' << R << '\n';
      } while (R == 0);
      Code = (R == 2 || R == 3) ? 0 : 1;
    }
  } catch (const EScriptStepLimit& X) {
    AIO.Err << "error: " << X.Message() << '\n';
    Code = 4;
  } catch (const Exception& X) {
    AIO.Err << "error: " << X.Message() << '\n';
    Code = 3;
  }
  for (const QString& Q : Queries) AIO.Out << Q << '=' << Interp.GetVarValue(Q) << '\n';
  SetDialogs(Previous);
  return Code;
}

}  // namespace

void RegisterScriptCommands(TDseCommandLine& ACommands) {
  ACommands.Register(
      {Name, QStringLiteral("run a bar script, or show its highlighter tokens"),
       QStringLiteral(
           "Usage: dse script FILE [--var NAME=VALUE]... [--step] [--max-steps N] [--query NAME]...\n"
           "       dse script --tokens FILE [--param NAME]...\n"
           "\n"
           "  --var NAME=VALUE  a variable of the main program, set before the run, in order\n"
           "  --step            run statement by statement from line 0, printing 'step LINE RESULT'\n"
           "                    (RESULT 0 go on, 1 error, 2 mainend, 3 end, 4 cancel)\n"
           "  --max-steps N     stop after N statements, blocks included (default 100000)\n"
           "  --query NAME      print NAME=VALUE after the run\n"
           "  --tokens          print the highlighter's tokens of each line; --param marks a param name\n"
           "Message boxes print as '[TITLE] TEXT'. Exit codes: 0 the run ended true, 1 false,\n"
           "3 an error escaped (message on stderr), 4 the step limit stopped it.\n"),
       RunScript});
}
