#include "DseCommands.h"

#include "Expr.h"

namespace {

int RunExpr(const QStringList& AArgs, TDseIO& AIO) {
  bool Check = false, Degree = false;
  QStringList Rest;
  for (const QString& A : AArgs) {
    if (A == QLatin1String("--check")) Check = true;
    else if (A == QLatin1String("--degree")) Degree = true;
    else if (A.startsWith(QLatin1String("--")) && A.size() > 2) return UsageError(AIO, QStringLiteral("expr"), QStringLiteral("unknown option '%1'").arg(A));
    else Rest << A;
  }
  if (Rest.size() != 1) return UsageError(AIO, QStringLiteral("expr"), QStringLiteral("give exactly one expression"));
  TExpr E;
  E.SetUseDegree(Degree);
  // No variables here: every unknown name is an error.
  E.SetIDProc([](const QString&, const PParameterList&, PExpression&) {});
  try {
    if (!E.Execute(Rest.first(), Check)) {
      AIO.Err << "error: the expression gave no result\n";
      return ecFailed;
    }
    const PExpression& R = E.ExprResult();
    const QString Value = R->AsString();
    AIO.Out << NExprType[R->ExprType()] << ' ' << Value << '\n';
    return ecOk;
  } catch (const Exception& X) {
    AIO.Err << "error: " << X.Message() << '\n';
    return ecFailed;
  }
}

}  // namespace

void RegisterExprCommands(TDseCommandLine& ACommands) {
  ACommands.Register({QStringLiteral("expr"), QStringLiteral("evaluate an expression and print its type and value"),
                      QStringLiteral("Usage: dse expr [--check] [--degree] EXPR\n"
                                     "\n"
                                     "Prints one line: TYPE VALUE (TYPE is String, Float, Integer or Boolean).\n"
                                     "  --check   build for type checks only: / and DIV give 1\n"
                                     "  --degree  trigonometric functions take and give degrees\n"
                                     "An invalid expression prints 'error: MESSAGE' on stderr and exits with 1.\n"),
                      RunExpr});
}
