#include "Interpreter.h"

#include "Dialogs.h"

namespace {
const QString SErrorValue = QStringLiteral("error_num10");
const QString SMain = QStringLiteral("main");
const QString LB = QStringLiteral("\n");
}  // namespace

TInterpreter::TInterpreter() {
  FExpr.SetIDProc([](const QString& AName, const PParameterList&, PExpression&) {
    throw EExpression(QStringLiteral("标识符[%1]无法识别").arg(AName));
  });
}

void TInterpreter::Clear() {
  strParameter.clear();
  strValue.clear();
  int_Num = str_Num = sln_Num = 0;
}

void TInterpreter::SetProgramme(const QString& AText) {
  FProgramme = AText.split(u'\n');
  if (AText.endsWith(u'\n')) FProgramme.removeLast();
  if (AText.isEmpty()) FProgramme.clear();
  for (QString& L : FProgramme) {
    L = LowerCase(Trim(L));
    const qsizetype C = L.indexOf(QStringLiteral("/*"));
    if (C == 0) L.clear();
    else if (C > 0) L = Trim(L.left(C));
  }
}

const TVariable* TInterpreter::Find(const std::vector<TVariable>& AArray, int ANum, const QString& AName,
                                    const QString& AProcName) {
  for (int I = 0; I < ANum; ++I)
    if (AArray[size_t(I)].Name == AName && AArray[size_t(I)].ProcName == AProcName) return &AArray[size_t(I)];
  return nullptr;
}

bool TInterpreter::Execute() {
  FStepCount = 0;
  FCallDepth = 0;
  int Line = 0;
  while (Line < FProgramme.size()) {
    const int R = Exec(FProgramme[Line], SMain, Line);
    if (R == erError || R == erCancel) return false;
    if (R == erMainEnd) return true;
  }
  return true;
}

quint8 TInterpreter::ExecByStep(int& AI) {
  if (AI < 0 || AI >= FProgramme.size()) return 3;
  if (AI == 0) {
    FStepCount = 0;
    FCallDepth = 0;
  }
  const int R = Exec(FProgramme[AI], SMain, AI);
  if (R == erError) return 1;
  if (R == erMainEnd) return 2;
  if (R == erCancel) return 4;
  return AI < FProgramme.size() ? 0 : 3;
}

void TInterpreter::AddGlobalVar(const QString& AVarName, const QString& AVarValue) {
  slnA.resize(size_t(sln_Num) + 1);
  slnA[size_t(sln_Num++)] = {SMain, Trim(AVarName), AVarValue};
}

QString TInterpreter::GetVarValue(const QString& AVarName) const {
  for (const auto* A : {&intA, &slnA, &strA}) {
    const int N = A == &intA ? int_Num : A == &slnA ? sln_Num : str_Num;
    for (int I = 0; I < N; ++I)
      if ((*A)[size_t(I)].Name == AVarName) return (*A)[size_t(I)].Value;
  }
  return QString();
}

void TInterpreter::CountStep() {
  if (FStepLimit > 0 && ++FStepCount > FStepLimit)
    throw EScriptStepLimit(QStringLiteral("the script ran %1 statements and loop passes without ending; it was stopped "
                                          "(an endless loop?)").arg(FStepLimit));
}

std::vector<TVariable> TInterpreter::Variables() const {
  std::vector<TVariable> R(intA.begin(), intA.begin() + int_Num);
  R.insert(R.end(), slnA.begin(), slnA.begin() + sln_Num);
  R.insert(R.end(), strA.begin(), strA.begin() + str_Num);
  return R;
}

int TInterpreter::Exec(const QString& ALine, const QString& AProcName, int& ALineNo) {
  CountStep();
  if (ALine.isEmpty()) {
    ++ALineNo;
    return erOk;
  }
  if (ALine == QLatin1String("mainend") || ALine == QLatin1String("cancel")) {
    ++ALineNo;
    return ALine == QLatin1String("mainend") ? erMainEnd : erCancel;
  }
  if (ALine == QLatin1String("return")) return erReturn;
  if (ALine == QLatin1String("exitfrom") || ALine == QLatin1String("exitdo")) return erExit;
  // The first blank or equals sign separates: "a = 1" is a blank-separated line.
  const qsizetype Blank = ALine.indexOf(u' '), Equals = ALine.indexOf(u'=');
  qsizetype Sep = Blank;
  if (Sep < 0 || (Equals >= 0 && Equals < Sep)) Sep = Equals;
  if (Sep < 0) {
    ShowErrorBox(QStringLiteral("非法语句行：%1%2%3请重新检测语法！").arg(LB, ALine, LB));
    return erError;
  }
  const QString Head = ALine.left(Sep);
  const QString Rest = Trim(ALine.mid(Sep + 1));
  if (ALine[Sep] == u'=') {
    const int R = Assign(Head, Rest, AProcName);
    if (R == erOk) ++ALineNo;
    return R;
  }
  int R = erOk;
  if (Head == QLatin1String("int")) R = Declare(intA, int_Num, Rest, AProcName);
  else if (Head == QLatin1String("single")) R = Declare(slnA, sln_Num, Rest, AProcName);
  else if (Head == QLatin1String("string")) R = Declare(strA, str_Num, Rest, AProcName);
  else if (Head == QLatin1String("msgbox")) ShowErrorBox(Rest);
  else if (Head == QLatin1String("if")) return ExecIf(ALine, Rest, AProcName, ALineNo);
  else if (Head == QLatin1String("from")) return ExecFrom(ALine, Rest, AProcName, ALineNo);
  else if (Head == QLatin1String("do")) return ExecDo(ALine, Rest, AProcName, ALineNo);
  else if (Head == QLatin1String("call")) return ExecCall(Rest, ALineNo);
  if (R == erOk) ++ALineNo;
  return R;
}

int TInterpreter::Declare(std::vector<TVariable>& AArray, int& ANum, const QString& ARest, const QString& AProcName) {
  QString Unread = ARest;
  for (;;) {
    const qsizetype Comma = Unread.indexOf(u',');
    const QString Name = Trim(Comma >= 0 ? Unread.left(Comma) : Unread);
    if (Comma >= 0) Unread = Unread.mid(Comma + 1);
    // The existing entries are compared with the text still unread, not with the
    // name about to be added: only the last name meets itself.
    if (ANum > 0 && Find(AArray, ANum, Trim(Unread), AProcName)) {
      ShowErrorBox(QStringLiteral("数据重复定义，在%1%2%3语句中。").arg(LB, ARest, LB));
      return erError;
    }
    AArray.resize(size_t(ANum) + 1);
    AArray[size_t(ANum++)] = {AProcName, Name, QString()};
    if (Comma < 0) return erOk;
  }
}

QString TInterpreter::Substitute(const QString& AExpr, const QString& AProcName) const {
  static const QString Delimiters = QStringLiteral(" ()*+,-/<=>^");
  QString Out, Token;
  auto Flush = [&] {
    if (Token.isEmpty()) return;
    const TVariable* V = Find(intA, int_Num, Token, AProcName);
    if (!V) V = Find(slnA, sln_Num, Token, AProcName);
    if (V) Token = Trim(V->Value).isEmpty() ? QStringLiteral("0") : V->Value;
    Out += Token;
    Token.clear();
  };
  for (const QChar C : AExpr) {
    if (Delimiters.contains(C)) {
      Flush();
      Out += C;
    } else {
      Token += C;
    }
  }
  Flush();
  return Out;
}

PExpression TInterpreter::Evaluate(const QString& AExpr, const QString& AProcName) {
  FExpr.Execute(Substitute(AExpr, AProcName));
  const PExpression R = FExpr.ExprResult();
  if (!R) throw EExpression(QStringLiteral("Syntax error"));
  return R;
}

int TInterpreter::Assign(const QString& AName, const QString& AExpr, const QString& AProcName) {
  auto FindIn = [&](std::vector<TVariable>& A, int N) -> TVariable* {
    return const_cast<TVariable*>(Find(A, N, AName, AProcName));
  };
  if (TVariable* V = FindIn(intA, int_Num)) {
    V->Value = QString::number(Evaluate(AExpr, AProcName)->AsInteger());
    return erOk;
  }
  if (TVariable* V = FindIn(strA, str_Num)) {
    QString S;
    if (!StringExpr(AExpr, AProcName, S)) {
      ShowErrorBox(QStringLiteral("输出语句错误！"));
      return erError;
    }
    V->Value = S;
    return erOk;
  }
  if (TVariable* V = FindIn(slnA, sln_Num)) {
    V->Value = FloatToStr(Evaluate(AExpr, AProcName)->AsFloat());
    return erOk;
  }
  ShowErrorBox(QStringLiteral("名称为%1的变量没有定义！").arg(AName));
  return erError;
}

bool TInterpreter::StringExpr(const QString& AText, const QString& AProcName, QString& AValue) {
  const QString T = Trim(AText);
  if (T.contains(u',')) {
    ShowErrorBox(QStringLiteral("字符串表达式中含有非法字符\",\":") + LB + T);
    return false;
  }
  const QStringList Parts = T.split(u'&');
  AValue.clear();
  for (int I = 0; I < Parts.size(); ++I) {
    const QString V = StringTerm(Trim(Parts[I]), AProcName);
    if (V == SErrorValue) {
      ShowErrorBox(QStringLiteral("非法字符串:") + LB + Trim(Parts.mid(I).join(u'&')));
      return false;
    }
    // The same cap as the expressions': a string doubled in a loop stops here.
    if (AValue.size() + V.size() > MaxStringResult)
      throw EExpression(QStringLiteral("String result longer than %1 characters").arg(MaxStringResult));
    AValue += V;
  }
  return true;
}

QString TInterpreter::StringTerm(const QString& ATerm, const QString& AProcName) const {
  if (ATerm.startsWith(u'"')) {
    if (ATerm.size() >= 1 && ATerm.endsWith(u'"')) return ATerm.size() == 1 ? QString() : ATerm.mid(1, ATerm.size() - 2);
    return SErrorValue;
  }
  for (const auto* A : {&strA, &intA, &slnA}) {
    const int N = A == &intA ? int_Num : A == &slnA ? sln_Num : str_Num;
    if (const TVariable* V = Find(*A, N, ATerm, AProcName)) return V->Value;
  }
  return SErrorValue;
}

int TInterpreter::FindBlockEnd(int AStart, const QString& AOpen, const QString& AClose, const QString& AElseWord,
                               int& AElse) const {
  AElse = -1;
  int Depth = 1;
  const int Count = int(FProgramme.size());
  int I = AStart + 1;
  if (I >= Count) return -1;
  // The line after the statement is always read; the last line of the program never
  // is, unless it is that line.
  for (;;) {
    const QString L = Trim(FProgramme[I]);
    if (L.startsWith(AOpen)) {
      ++Depth;
    } else if (!AElseWord.isEmpty() && L == AElseWord && Depth == 1) {
      AElse = I;
    } else if (L == AClose) {
      if (Depth == 1) return I;
      --Depth;
    }
    if (++I >= Count - 1) return -1;
  }
}

int TInterpreter::RunLines(int AFrom, int ATo, const QString& AProcName) {
  int J = AFrom;
  while (J < ATo) {
    const int R = Exec(Trim(FProgramme[J]), AProcName, J);
    if (R != erOk) return R;
  }
  return erOk;
}

int TInterpreter::ExecIf(const QString& ALine, const QString& ARest, const QString& AProcName, int& ALineNo) {
  int Else;
  const int End = FindBlockEnd(ALineNo, QStringLiteral("if "), QStringLiteral("endif"), QStringLiteral("else"), Else);
  if (End < 0) {
    ShowErrorBox(QStringLiteral("没有ENDIF结束条件的语句！") + LB + ALine);
    return erError;
  }
  const bool Cond = Evaluate(ARest, AProcName)->AsBoolean();
  int R = erOk;
  if (Cond) R = RunLines(ALineNo + 1, Else >= 0 ? Else : End, AProcName);
  else if (Else >= 0) R = RunLines(Else + 1, End, AProcName);
  if (R != erOk) return R;
  ALineNo = End + 1;
  return erOk;
}

int TInterpreter::ExecFrom(const QString& ALine, const QString& ARest, const QString& AProcName, int& ALineNo) {
  const qsizetype Blank = ARest.indexOf(u' ');
  const int A = StrToInt(Blank >= 0 ? ARest.left(Blank) : ARest);
  const qsizetype To = ARest.indexOf(QStringLiteral("to"));
  int Dummy, End = -1;
  int B = 0;
  if (To >= 0) {
    // B is read from the whole text behind "to": a step clause always fails the
    // conversion, and the step plays no part in the loop.
    B = StrToInt(Trim(ARest.mid(To + 3)));
    End = FindBlockEnd(ALineNo, QStringLiteral("from "), QStringLiteral("endfrom"), QString(), Dummy);
  }
  if (End < 0) {
    ShowErrorBox(QStringLiteral("没有ENDFROM匹配语句！") + LB + ALine);
    return erError;
  }
  int Result = erOk;
  for (qint64 Pass = A; Pass <= B; ++Pass) {
    CountStep();
    const int R = RunLines(ALineNo + 1, End, AProcName);
    if (R == erExit) {
      Result = erExit;
      break;
    }
    if (R != erOk) return R;
  }
  ALineNo = End + 1;
  return Result;
}

int TInterpreter::ExecDo(const QString& ALine, const QString& ARest, const QString& AProcName, int& ALineNo) {
  int Dummy;
  const int End = FindBlockEnd(ALineNo, QStringLiteral("do "), QStringLiteral("loop"), QString(), Dummy);
  if (End < 0) {
    ShowErrorBox(QStringLiteral("没有LOOP匹配语句！") + LB + ALine);
    return erError;
  }
  int Result = erOk;
  while (Evaluate(ARest, AProcName)->AsBoolean()) {
    CountStep();
    const int R = RunLines(ALineNo + 1, End, AProcName);
    if (R == erExit) {
      Result = erExit;
      break;
    }
    if (R != erOk) return R;
  }
  ALineNo = End + 1;
  return Result;
}

int TInterpreter::ExecCall(const QString& AName, int& ALineNo) {
  const int Count = int(FProgramme.size());
  const QString SubLine = QStringLiteral("sub ") + AName;
  int Sub = 0;
  // The last line is never examined; past it the list's index error follows.
  while (Sub < Count - 1 && FProgramme[Sub] != SubLine) ++Sub;
  if (Sub >= Count - 1) {
    ShowErrorBox(QStringLiteral("找不到过程：%1%2请检测该过程是否存在！").arg(AName, LB));
    throw EListError(QStringLiteral("List index out of bounds (%1)").arg(std::max(Count - 1, 0)));
  }
  int End = Sub + 1;
  while (End < Count && FProgramme[End] != QLatin1String("endsub")) ++End;
  if (End >= Count) throw EListError(QStringLiteral("List index out of bounds (%1)").arg(Count));
  if (FCallDepth >= MaxCallDepth)
    throw EScriptStepLimit(QStringLiteral("procedure calls nested %1 deep; the script was stopped (a procedure that "
                                          "calls itself without end?)").arg(MaxCallDepth));
  struct TDepth {
    int& D;
    explicit TDepth(int& A) : D(++A) {}
    ~TDepth() { --D; }
  } Depth(FCallDepth);
  int Result = erOk;
  for (int J = Sub + 1; J < End;) {
    const int R = Exec(FProgramme[J], AName, J);
    if (R == erExit) {
      Result = erExit;
      break;
    }
    if (R == erError || R == erReturn) return R;
    // mainend and cancel in a sub are lines passed over
  }
  ++ALineNo;
  for (auto [A, N] : {std::pair{&intA, &int_Num}, std::pair{&slnA, &sln_Num}, std::pair{&strA, &str_Num}})
    for (int I = *N - 1; I >= 0; --I)
      if ((*A)[size_t(I)].ProcName == AName) --*N;
  return Result;
}
