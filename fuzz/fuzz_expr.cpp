// The expression evaluator on any text: parse, then read the value as its type.
#include "Expr.h"

#include <QString>

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* AData, size_t ASize) {
  const QString Text = QString::fromUtf8(reinterpret_cast<const char*>(AData), qsizetype(ASize));
  try {
    TExpr E;
    if (E.Execute(Text) && E.ExprResult()) (void)E.ExprResult()->AsString();
  } catch (const Exception&) {
    // A refusal in words is the expected outcome of most inputs.
  }
  return 0;
}
