#include "Dialogs.h"
#include "Interpreter.h"

#include <gtest/gtest.h>

namespace {
struct TRun {
  bool Result;
  QStringList Boxes;
  QString Error;  // an exception that escaped
};

TRun RunScript(TInterpreter& AInterp, const QString& AProgram) {
  TDialogScope Boxes;
  AInterp.SetProgramme(AProgram);
  TRun R{false, {}, {}};
  try {
    R.Result = AInterp.Execute();
  } catch (const Exception& E) {
    R.Error = E.Message();
  }
  R.Boxes = Boxes->Lines();
  return R;
}
}  // namespace

TEST(TInterpreter, Statements) {
  const struct {
    const char* Name;
    const char* Program;
    bool Result;
    std::vector<const char*> Boxes;
    std::vector<std::pair<const char*, const char*>> Values;
  } Cases[] = {
      {"empty program", "", true, {}, {}},
      {"undeclared assignment", "a=1", false, {"[错误] 名称为a的变量没有定义！"}, {}},
      {"a blank before = does nothing", "int a\na = 1", true, {}, {{"a", ""}}},
      {"unassigned counts as 0", "int a,b\nb=a+1", true, {}, {{"b", "1"}}},
      {"negative values pasted as text", "int a,b\na=-2\nb=1-a", true, {}, {{"b", "3"}}},
      {"single keeps the float text", "single x\nx=1/3", true, {}, {{"x", "0.333333333333333"}}},
      {"comments and lower case", "INT A /* note\nA=4\nMsgBox Hello World /* tail", true,
       {"[错误] hello world"}, {{"a", "4"}}},
      {"if and else", "int a\na=5\nif a>3\na=1\nelse\na=2\nendif\nmainend", true, {}, {{"a", "1"}}},
      {"else branch", "int a\na=2\nif a>3\na=1\nelse\na=7\nendif\nmainend", true, {}, {{"a", "7"}}},
      {"nested if", "int a\nif 1=1\nif 2=3\na=1\nelse\na=2\nendif\nendif\nmainend", true, {}, {{"a", "2"}}},
      // A skipped branch must match else and endif at its own depth.
      {"if-else inside a skipped if without else", "int a\na=9\nif 1=2\nif 2=3\na=1\nelse\na=2\nendif\nendif\nmainend",
       true, {}, {{"a", "9"}}},
      {"if-else inside a skipped else", "int a,b\nif 1=1\na=1\nelse\nif 2=2\nb=1\nelse\nb=2\nendif\nb=3\nendif\nmainend",
       true, {}, {{"a", "1"}, {"b", ""}}},
      {"if-else inside a taken else", "int a,b\nif 1=2\na=1\nelse\nif 2=3\nb=1\nelse\nb=2\nendif\na=3\nendif\nmainend",
       true, {}, {{"a", "3"}, {"b", "2"}}},
      {"from runs B-A+1 times", "int n\nfrom 2 to 5\nn=n+1\nendfrom\nmainend", true, {}, {{"n", "4"}}},
      {"from 3 to 1 runs nothing", "int n\nfrom 3 to 1\nn=9\nendfrom\nn=n+1\nmainend", true, {}, {{"n", "1"}}},
      {"exitfrom leaves every loop", "int n\nfrom 1 to 3\nfrom 1 to 2\nn=n+1\nif n=2\nexitfrom\nendif\nendfrom\nendfrom\nn=n+100\nmainend",
       true, {}, {{"n", "102"}}},
      {"do tests first", "int i\ni=5\ndo i<3\ni=i+1\nloop\nmainend", true, {}, {{"i", "5"}}},
      {"do loops", "int i\ndo i<3\ni=i+1\nloop\nmainend", true, {}, {{"i", "3"}}},
      {"exitdo", "int i\ndo 1=1\ni=i+1\nif i=4\nexitdo\nendif\nloop\nmainend", true, {}, {{"i", "4"}}},
      {"loop on the last line is not found", "int i\ndo i<3\ni=i+1\nloop", false, {"[错误] 没有LOOP匹配语句！\ndo i<3"}, {}},
      {"endif on the last line is not found", "if 1=1\nint a\nendif", false, {"[错误] 没有ENDIF结束条件的语句！\nif 1=1"}, {}},
      {"endif right after the if is found", "if 1=1\nendif", true, {}, {}},
      {"from without to", "from 1\nendfrom\nx", false, {"[错误] 没有ENDFROM匹配语句！\nfrom 1"}, {}},
      {"lone endif is illegal", "endif", false, {"[错误] 非法语句行：\nendif\n请重新检测语法！"}, {}},
      {"mainend stops", "int a\nmainend\na=1", true, {}, {{"a", ""}}},
      {"cancel stops false", "cancel\nmsgbox x", false, {}, {}},
      {"declaration clash", "int a,a", false, {"[错误] 数据重复定义，在\na,a\n语句中。"}, {}},
      {"a clash looks at the unread text", "int a\nint a,b", true, {}, {}},
      {"int and single may share a name", "int a\nsingle a", true, {}, {}},
      {"string terms", "string s,t\nint n\nn=7\nt=\"x\"\ns=\"n=\"&n&t&\"\"", true, {}, {{"s", "n=7x"}}},
      {"unclosed string term", "string s\ns=\"abc", false, {"[错误] 非法字符串:\n\"abc", "[错误] 输出语句错误！"}, {}},
      {"unknown string term", "string s\ns=\"a\" & nope", false, {"[错误] 非法字符串:\nnope", "[错误] 输出语句错误！"}, {}},
      {"comma in a string expression", "string s\ns=\"a,b\"", false,
       {"[错误] 字符串表达式中含有非法字符\",\":\n\"a,b\"", "[错误] 输出语句错误！"}, {}},
      {"a sub and its dropped variables", "int r\ncall p\nmainend\nsub p\nint t\nt=5\nendsub", true, {}, {{"t", ""}}},
      {"mainend in a sub is passed over", "call p\nmainend\nsub p\nmainend\nmsgbox after\nendsub", true,
       {"[错误] after"}, {}},
      {"sub line is harmless when reached", "int a\nsub p\na=3\nendsub\nmainend", false,
       {"[错误] 非法语句行：\nendsub\n请重新检测语法！"}, {{"a", "3"}}},
  };
  for (const auto& C : Cases) {
    SCOPED_TRACE(C.Name);
    TInterpreter I;
    const TRun R = RunScript(I, QString::fromUtf8(C.Program));
    EXPECT_EQ(R.Error, QString());
    EXPECT_EQ(R.Result, C.Result);
    QStringList Want;
    for (const char* B : C.Boxes) Want << QString::fromUtf8(B);
    EXPECT_EQ(R.Boxes, Want);
    for (const auto& V : C.Values) EXPECT_EQ(I.GetVarValue(QString::fromUtf8(V.first)), QString::fromUtf8(V.second)) << V.first;
  }
}

TEST(TInterpreter, ExceptionsPassThrough) {
  const struct {
    const char* Program;
    const char* Error;
    std::vector<const char*> Boxes;
  } Cases[] = {
      {"int a\na=b+1", "标识符[B]无法识别", {}},
      {"from 1 to 2 step 1\nendfrom\nx", "'2 step 1' is not a valid integer value", {}},
      {"from x to 2\nendfrom\nx", "'x' is not a valid integer value", {}},
      {"int a\na=7/2", "Cannot read Float as integer", {}},
      {"call nope\nmainend", "List index out of bounds (1)", {"[错误] 找不到过程：nope\n请检测该过程是否存在！"}},
      {"call p\nmainend\nsub p\nint t", "List index out of bounds (4)", {}},
  };
  for (const auto& C : Cases) {
    SCOPED_TRACE(C.Program);
    TInterpreter I;
    const TRun R = RunScript(I, QString::fromUtf8(C.Program));
    EXPECT_EQ(R.Error, QString::fromUtf8(C.Error));
    QStringList Want;
    for (const char* B : C.Boxes) Want << QString::fromUtf8(B);
    EXPECT_EQ(R.Boxes, Want);
  }
}

TEST(TInterpreter, ScopesBetweenMainAndSubs) {
  TInterpreter I;
  I.AddGlobalVar(QStringLiteral(" lc "), QStringLiteral("1500"));
  TRun R = RunScript(I, QStringLiteral("int a\na=lc*2\nmainend"));
  EXPECT_TRUE(R.Result);
  EXPECT_EQ(I.GetVarValue(QStringLiteral("a")), QStringLiteral("3000"));
  EXPECT_EQ(I.GetVarValue(QStringLiteral("lc")), QStringLiteral("1500"));
  // host variables belong to the main program: a sub cannot see them
  TInterpreter J;
  J.AddGlobalVar(QStringLiteral("lc"), QStringLiteral("1500"));
  R = RunScript(J, QStringLiteral("call p\nmainend\nsub p\nint t\nt=lc\nendsub"));
  EXPECT_EQ(R.Error, QStringLiteral("标识符[LC]无法识别"));
  // a second run of the same declarations clashes: nothing resets between runs
  TInterpreter K;
  EXPECT_TRUE(RunScript(K, QStringLiteral("int a")).Result);
  EXPECT_FALSE(RunScript(K, QStringLiteral("int a")).Result);
  K.Clear();
  EXPECT_TRUE(RunScript(K, QStringLiteral("int a")).Result);
}

TEST(TInterpreter, EndlessRepeatsStopAtTheStepLimit) {
  for (const char* Program : {"call p\nmainend\nsub p\nreturn\nendsub\nx", "exitfrom", "int i\ndo 1=1\ni=i+1\nloop\nmainend"}) {
    SCOPED_TRACE(Program);
    TInterpreter I;
    I.SetStepLimit(500);
    I.SetProgramme(QString::fromUtf8(Program));
    EXPECT_THROW(I.Execute(), EScriptStepLimit);
    EXPECT_GT(I.StepCount(), 500);
  }
}

TEST(TInterpreter, ExecByStepResults) {
  TInterpreter I;
  TDialogScope Boxes;
  I.SetProgramme(QStringLiteral("int a\nif 1=1\na=1\nendif\nmainend\nsub x\nendsub"));
  int Line = 0;
  EXPECT_EQ(I.ExecByStep(Line), 0);
  EXPECT_EQ(Line, 1);
  EXPECT_EQ(I.ExecByStep(Line), 0);  // the whole block is one step
  EXPECT_EQ(Line, 4);
  EXPECT_EQ(I.ExecByStep(Line), 2);
  const struct {
    const char* Program;
    quint8 Result;
  } Cases[] = {{"int a", 3}, {"cancel", 4}, {"a=1", 1}, {"", 3}};
  for (const auto& C : Cases) {
    SCOPED_TRACE(C.Program);
    TInterpreter J;
    J.SetProgramme(QString::fromUtf8(C.Program));
    int L = 0;
    EXPECT_EQ(J.ExecByStep(L), C.Result);
  }
  // an exception leaves the line where it was
  TInterpreter K;
  K.SetProgramme(QStringLiteral("int a\na=zz"));
  int L = 1;
  K.ExecByStep(L = 0);
  EXPECT_THROW(K.ExecByStep(L), EExpression);
  EXPECT_EQ(L, 1);
}

TEST(TInterpreter, TheBudgetCountsLoopPassesAndRestartsWithEachRun) {
  TInterpreter I;
  // Three statements, then ten passes of an empty loop body, then mainend.
  I.SetProgramme(QStringLiteral("int i\ni=0\nfrom 1 to 10\nendfrom\nmainend"));
  I.SetStepLimit(14);
  EXPECT_TRUE(I.Execute());
  EXPECT_EQ(I.StepCount(), 14);
  I.Clear();
  EXPECT_TRUE(I.Execute());  // a new run, a new budget
  I.Clear();
  I.SetStepLimit(13);
  EXPECT_THROW(I.Execute(), EScriptStepLimit);
  // Stepping from line 0 starts a run too.
  I.SetStepLimit(14);
  int Line = 0;
  quint8 R = 0;
  for (int Round = 0; Round < 2; ++Round) {
    I.Clear();
    Line = 0;
    do R = I.ExecByStep(Line);
    while (R == 0);
    EXPECT_EQ(R, 2);
  }
}
