#include "ImageFiles.h"
#include "EditorScript.h"

#include "Dialogs.h"
#include "LvdJson.h"
#include "VDEditorWidget.h"
#include "VectorDrawing.h"

#include <QApplication>
#include <QElapsedTimer>
#include <QFile>
#include <QJsonDocument>
#include <QKeyEvent>
#include <QMouseEvent>
#include <QWheelEvent>

#include <charconv>
#include <cmath>

namespace {

[[noreturn]] void Fail(const QString& AMessage) { throw Exception(AMessage); }

struct TKeyName {
  const char* Name;
  int Key;
  bool Keypad;
};

const TKeyName KeyNames[] = {
    {"esc", Qt::Key_Escape, false}, {"enter", Qt::Key_Return, false}, {"del", Qt::Key_Delete, false},
    {"tab", Qt::Key_Tab, false},    {"f2", Qt::Key_F2, false},        {"left", Qt::Key_Left, false},
    {"right", Qt::Key_Right, false}, {"up", Qt::Key_Up, false},       {"down", Qt::Key_Down, false},
    {"num*", Qt::Key_Asterisk, true}, {"num/", Qt::Key_Slash, true},
};

bool ModifierWord(const QString& AWord, Qt::KeyboardModifiers& AMods) {
  if (AWord == QLatin1String("shift")) AMods |= Qt::ShiftModifier;
  else if (AWord == QLatin1String("ctrl")) AMods |= Qt::ControlModifier;
  else if (AWord == QLatin1String("alt")) AMods |= Qt::AltModifier;
  else return false;
  return true;
}

Qt::MouseButton ButtonWord(const QString& AWord) {
  if (AWord == QLatin1String("left")) return Qt::LeftButton;
  if (AWord == QLatin1String("right")) return Qt::RightButton;
  if (AWord == QLatin1String("middle")) return Qt::MiddleButton;
  return Qt::NoButton;
}

double Number(const QString& AText) {
  bool Ok = false;
  const double V = AText.toDouble(&Ok);
  if (!Ok) Fail(QStringLiteral("'%1' is not a number").arg(AText));
  return V;
}

int Integer(const QString& AText) {
  bool Ok = false;
  const int V = AText.toInt(&Ok);
  if (!Ok) Fail(QStringLiteral("'%1' is not an integer").arg(AText));
  return V;
}

QString OnOff(bool A) { return A ? QStringLiteral("true") : QStringLiteral("false"); }

}  // namespace

QList<TScriptWord> SplitScriptLine(const QString& ALine) {
  QList<TScriptWord> Words;
  int I = 0;
  const int N = int(ALine.size());
  while (I < N) {
    while (I < N && ALine[I].isSpace()) ++I;
    if (I >= N) break;
    TScriptWord W;
    if (ALine[I] == QLatin1Char('"')) {
      W.Quoted = true;
      ++I;
      bool Closed = false;
      while (I < N) {
        const QChar C = ALine[I++];
        if (C == QLatin1Char('"')) {
          Closed = true;
          break;
        }
        if (C == QLatin1Char('\\') && I < N) {
          const QChar E = ALine[I++];
          W.Text += E == QLatin1Char('n') ? QChar(QLatin1Char('\n')) : E;
        } else {
          W.Text += C;
        }
      }
      if (!Closed) Fail(QStringLiteral("unclosed quote"));
    } else {
      while (I < N && !ALine[I].isSpace()) W.Text += ALine[I++];
    }
    Words << W;
  }
  return Words;
}

bool ReadScriptLines(const QString& APath, QStringList& ALines, QString& AError) {
  constexpr qint64 Max = qint64(16) << 20;
  QByteArray Data;
  if (APath == QLatin1String("-")) {
    QFile F;
    if (!F.open(stdin, QIODevice::ReadOnly) || !ReadFileCapped(F, Max, Data, AError)) {
      AError = QStringLiteral("cannot read the script from standard input %1").arg(AError).trimmed();
      return false;
    }
  } else if (!ReadFileCapped(APath, Max, Data, AError)) {
    AError = QStringLiteral("cannot read script %1: %2").arg(APath, AError);
    return false;
  }
  ALines = QString::fromUtf8(Data).split(QLatin1Char('\n'));
  return true;
}

QString ShortestNumber(double AValue) {
  if (AValue == 0) return QStringLiteral("0");
  char Buf[400];
  // Plain digits across the ordinary range ("100000", not "1e+05"); exponents only beyond.
  const double A = std::fabs(AValue);
  const auto Format = A >= 1e-6 && A < 1e21 ? std::chars_format::fixed : std::chars_format::general;
  const auto R = std::to_chars(Buf, Buf + sizeof Buf, AValue, Format);
  return QString::fromLatin1(Buf, int(R.ptr - Buf));
}

TEditorScriptPlayer::TEditorScriptPlayer(TVDEditorWidget& ACanvas, QTextStream& AOut)
    : FCanvas(ACanvas), FOut(AOut), FDialogs(std::make_shared<TRecordingDialogs>()) {
  FDialogs->OnMessage = [this](const QString& ALine) { Print(ALine); };
  FPrevDialogs = SetDialogs(FDialogs);
  FPrevShowMousePos = FCanvas.Editor().OnShowMousePos;
  FCanvas.Editor().OnShowMousePos = [this](const QString& AText) {
    FLastPos = AText;
    if (FPrevShowMousePos) FPrevShowMousePos(AText);
  };
  FCanvas.OnError = [this](std::exception_ptr AError) { FEventError = AError; };
}

void TEditorScriptPlayer::Send(QObject* ATarget, QEvent* AEvent) {
  QCoreApplication::sendEvent(ATarget, AEvent);
  RaiseEventError();
}

void TEditorScriptPlayer::RaiseEventError() {
  if (FEventError) std::rethrow_exception(std::exchange(FEventError, nullptr));
}

void TEditorScriptPlayer::SetClientSize(int AWidth, int AHeight) {
  FCanvas.resize(AWidth, AHeight);
  FCanvas.Editor().SetClientSize(AWidth, AHeight);
}

bool TEditorScriptPlayer::CheckProp(int, const QString&, QString&) { return true; }

bool TEditorScriptPlayer::TryShortcut(int, Qt::KeyboardModifiers) { return false; }

void TEditorScriptPlayer::BeforeStatement(const QString&) {}

QWidget* TEditorScriptPlayer::KeyTarget() const {
  if (QWidget* P = QApplication::activePopupWidget()) return P;
  return QApplication::focusWidget() ? QApplication::focusWidget() : &FCanvas;
}

TEditorScriptPlayer::~TEditorScriptPlayer() {
  FCanvas.Editor().OnShowMousePos = FPrevShowMousePos;
  FCanvas.OnError = nullptr;
  SetDialogs(FPrevDialogs);
}

void TEditorScriptPlayer::Print(const QString& ALine) {
  FOut << ALine << '\n';
  FOut.flush();
}

bool TEditorScriptPlayer::Run(const QStringList& ALines, QString& AError) {
  int LineNo = 0, LastLine = 0;
  for (const QString& Line : ALines) {
    ++LineNo;
    const QString T = Line.trimmed();
    if (T.isEmpty() || T.startsWith(QLatin1Char('#'))) continue;
    LastLine = LineNo;
    try {
      RunStatement(SplitScriptLine(T));
      RaiseEventError();
    } catch (const std::exception& E) {
      AError = QStringLiteral("line %1: %2").arg(LineNo).arg(QString::fromUtf8(E.what()));
      return false;
    }
  }
  if (!FDialogs->Queue.empty()) {
    AError = QStringLiteral("line %1: %2 answer(s) still queued at the end").arg(LastLine).arg(FDialogs->Queue.size());
    return false;
  }
  return true;
}

bool TEditorScriptPlayer::RunExtra(const QList<TScriptWord>&) { return false; }

QPoint TEditorScriptPlayer::ToPixel(const QString& APoint) const {
  const bool Pixel = APoint.startsWith(QLatin1String("px:"));
  const QStringList XY = (Pixel ? APoint.mid(3) : APoint).split(QLatin1Char(','));
  if (XY.size() != 2) Fail(QStringLiteral("bad point '%1'").arg(APoint));
  bool OkX = false, OkY = false;
  const double X = XY[0].toDouble(&OkX), Y = XY[1].toDouble(&OkY);
  if (!OkX || !OkY) Fail(QStringLiteral("bad point '%1'").arg(APoint));
  if (Pixel) return QPoint(int(std::lround(X)), int(std::lround(Y)));
  const TKRNPoint2i P = FCanvas.Editor().GetCoordTrans().WCTODC(TKRNVector2d{X, Y});
  return QPoint(P.X, P.Y);
}

void TEditorScriptPlayer::SendMouse(int AType, const QPoint& APixel, Qt::MouseButton AButton,
                                    Qt::KeyboardModifiers AMods) {
  if (AType == QEvent::MouseButtonPress || AType == QEvent::MouseButtonDblClick) FButtons |= AButton;
  if (AType == QEvent::MouseButtonRelease) FButtons &= ~Qt::MouseButtons(AButton);
  const QPointF Local(APixel);
  QMouseEvent E(QEvent::Type(AType), Local, FCanvas.mapToGlobal(Local), AButton, FButtons, AMods);
  Send(&FCanvas, &E);
  FLastPixel = APixel;
  FInputSeen = true;
}

void TEditorScriptPlayer::SendKey(const QString& AName, Qt::KeyboardModifiers AMods) {
  QString Name = AName;
  const QStringList Parts = AName.split(QLatin1Char('+'));
  if (Parts.size() > 1) {
    for (int I = 0; I + 1 < Parts.size(); ++I)
      if (!ModifierWord(Parts[I], AMods)) Fail(QStringLiteral("unknown modifier '%1'").arg(Parts[I]));
    Name = Parts.last();
  }
  int Key = 0;
  bool Keypad = false;
  QString Text;
  for (const TKeyName& K : KeyNames)
    if (Name == QLatin1String(K.Name)) {
      Key = K.Key;
      Keypad = K.Keypad;
    }
  if (Key == 0 && Name.size() == 4 && Name.startsWith(QLatin1String("num")) && Name[3].isDigit()) {
    Key = Qt::Key_0 + Name[3].digitValue();
    Keypad = true;
    Text = Name.mid(3);
  } else if (Key == 0 && Name.size() == 1 && Name[0].isLetterOrNumber() && Name[0].unicode() < 128) {
    const QChar C = Name[0];
    Key = C.isDigit() ? Qt::Key_0 + C.digitValue() : Qt::Key_A + (C.toLower().unicode() - 'a');
    Text = Name;
  }
  if (Key == 0) Fail(QStringLiteral("unknown key '%1'").arg(AName));
  if (Keypad) AMods |= Qt::KeypadModifier;
  FInputSeen = true;
  if (!QApplication::activePopupWidget() && TryShortcut(Key, AMods)) return;
  QWidget* Target = KeyTarget();
  QKeyEvent Down(QEvent::KeyPress, Key, AMods, Text);
  Send(Target, &Down);
  QKeyEvent Up(QEvent::KeyRelease, Key, AMods, Text);
  Send(Target, &Up);
  FInputSeen = true;
}

void TEditorScriptPlayer::RunStatement(const QList<TScriptWord>& AWords) {
  const QString Cmd = AWords[0].Text;
  BeforeStatement(Cmd);
  QStringList W;
  for (const TScriptWord& X : AWords) W << X.Text;
  // Trailing modifier words of input statements.
  Qt::KeyboardModifiers Mods;
  auto TakeMods = [&](int AFrom) {
    while (W.size() > AFrom && ModifierWord(W.last(), Mods)) W.removeLast();
  };
  auto Need = [&](int AMin, int AMax, const char* AUsage) {
    if (W.size() < AMin || W.size() > AMax) Fail(QStringLiteral("usage: %1").arg(QLatin1String(AUsage)));
  };
  TVectorDrawingEditor& E = FCanvas.Editor();

  if (Cmd == QLatin1String("size")) {
    Need(3, 3, "size W H");
    if (FInputSeen) Fail(QStringLiteral("size must come before the first input"));
    const int Wd = Integer(W[1]), H = Integer(W[2]);
    if (Wd < 1 || H < 1 || Wd > 10000 || H > 10000) Fail(QStringLiteral("size must be 1 to 10000 pixels"));
    SetClientSize(Wd, H);
  } else if (Cmd == QLatin1String("view")) {
    Need(4, 4, "view CX CY SCALE");
    const double S = Number(W[3]);
    if (!(S > 0)) Fail(QStringLiteral("the scale must be positive"));
    E.GetCoordTrans().SetCoordTransParam({E.GetClientWidth() / 2, E.GetClientHeight() / 2},
                                         {Number(W[1]), Number(W[2])}, S);
    E.Invalidate();
  } else if (Cmd == QLatin1String("set")) {
    if (W.size() >= 2 && (W[1] == QLatin1String("snap") || W[1] == QLatin1String("grid") || W[1] == QLatin1String("ortho"))) {
      Need(3, 3, "set snap|grid|ortho on|off");
      if (W[2] != QLatin1String("on") && W[2] != QLatin1String("off")) Fail(QStringLiteral("say on or off"));
      const bool On = W[2] == QLatin1String("on");
      if (W[1] == QLatin1String("snap")) E.SetSnapSwitch(On);
      else if (W[1] == QLatin1String("grid")) E.SetGridSwitch(On);
      else E.SetOrthogonalSwitch(On);
    } else if (W.size() >= 2 && W[1] == QLatin1String("grid-space")) {
      Need(4, 4, "set grid-space X Y");
      const int X = Integer(W[2]), Y = Integer(W[3]);
      if (X < 0 || Y < 0 || X > 32767 || Y > 32767) Fail(QStringLiteral("grid spaces are 0 to 32767"));
      E.SetGridXSpace(X);
      E.SetGridYSpace(Y);
    } else if (W.size() >= 2 && W[1] == QLatin1String("radius")) {
      Need(3, 3, "set radius R");
      const double R = Number(W[2]);
      if (R < 0) Fail(QStringLiteral("the radius must not be negative"));
      E.SetRadius(R);
    } else {
      Fail(QStringLiteral("unknown setting '%1'").arg(W.value(1)));
    }
  } else if (Cmd == QLatin1String("prop")) {
    Need(3, 3, "prop NAME VALUE");
    RunProp(W[1], W[2]);
  } else if (Cmd == QLatin1String("move")) {
    TakeMods(2);
    Need(2, 2, "move P [mods]");
    SendMouse(QEvent::MouseMove, ToPixel(W[1]), Qt::NoButton, Mods);
  } else if (Cmd == QLatin1String("down") || Cmd == QLatin1String("up")) {
    TakeMods(2);
    Need(2, 3, "down|up P [button] [mods]");
    const Qt::MouseButton B = W.size() == 3 ? ButtonWord(W[2]) : Qt::LeftButton;
    if (B == Qt::NoButton) Fail(QStringLiteral("unknown button '%1'").arg(W[2]));
    SendMouse(Cmd == QLatin1String("down") ? QEvent::MouseButtonPress : QEvent::MouseButtonRelease, ToPixel(W[1]), B, Mods);
  } else if (Cmd == QLatin1String("click")) {
    TakeMods(2);
    Need(2, 2, "click P [mods]");
    const QPoint P = ToPixel(W[1]);
    SendMouse(QEvent::MouseMove, P, Qt::NoButton, Mods);
    SendMouse(QEvent::MouseButtonPress, P, Qt::LeftButton, Mods);
    SendMouse(QEvent::MouseButtonRelease, P, Qt::LeftButton, Mods);
  } else if (Cmd == QLatin1String("rclick")) {
    TakeMods(1);
    Need(1, 2, "rclick [P] [mods]");
    const QPoint P = W.size() == 2 ? ToPixel(W[1]) : FLastPixel;
    SendMouse(QEvent::MouseMove, P, Qt::NoButton, Mods);
    SendMouse(QEvent::MouseButtonPress, P, Qt::RightButton, Mods);
    SendMouse(QEvent::MouseButtonRelease, P, Qt::RightButton, Mods);
  } else if (Cmd == QLatin1String("dblclick")) {
    Need(2, 3, "dblclick P [button]");
    const Qt::MouseButton B = W.size() == 3 ? ButtonWord(W[2]) : Qt::LeftButton;
    if (B == Qt::NoButton) Fail(QStringLiteral("unknown button '%1'").arg(W[2]));
    const QPoint P = ToPixel(W[1]);
    SendMouse(QEvent::MouseMove, P, Qt::NoButton, {});
    SendMouse(QEvent::MouseButtonPress, P, B, {});
    SendMouse(QEvent::MouseButtonRelease, P, B, {});
    SendMouse(QEvent::MouseButtonDblClick, P, B, {});
    SendMouse(QEvent::MouseButtonRelease, P, B, {});
  } else if (Cmd == QLatin1String("drag")) {
    TakeMods(3);
    Need(3, 4, "drag P1 P2 [button] [mods]");
    const Qt::MouseButton B = W.size() == 4 ? ButtonWord(W[3]) : Qt::LeftButton;
    if (B == Qt::NoButton) Fail(QStringLiteral("unknown button '%1'").arg(W[3]));
    const QPoint A = ToPixel(W[1]), Z = ToPixel(W[2]);
    SendMouse(QEvent::MouseMove, A, Qt::NoButton, Mods);
    SendMouse(QEvent::MouseButtonPress, A, B, Mods);
    for (int K = 1; K <= 4; ++K)
      SendMouse(QEvent::MouseMove, A + (Z - A) * K / 5, Qt::NoButton, Mods);
    SendMouse(QEvent::MouseMove, Z, Qt::NoButton, Mods);
    SendMouse(QEvent::MouseButtonRelease, Z, B, Mods);
  } else if (Cmd == QLatin1String("wheel")) {
    Need(3, 3, "wheel up|down P");
    if (W[1] != QLatin1String("up") && W[1] != QLatin1String("down")) Fail(QStringLiteral("say wheel up or down"));
    const QPointF P(ToPixel(W[2]));
    QWheelEvent Ev(P, FCanvas.mapToGlobal(P), QPoint(), QPoint(0, W[1] == QLatin1String("up") ? 120 : -120), FButtons,
                   Qt::NoModifier, Qt::NoScrollPhase, false);
    Send(&FCanvas, &Ev);
    FInputSeen = true;
  } else if (Cmd == QLatin1String("key")) {
    TakeMods(2);
    Need(2, 2, "key NAME [mods]");
    SendKey(W[1], Mods);
  } else if (Cmd == QLatin1String("type")) {
    Need(2, 2, "type \"TEXT\"");
    QWidget* Target = KeyTarget();
    for (const QChar C : W[1]) {
      const int Key = C.isLetter() && C.unicode() < 128 ? Qt::Key_A + (C.toLower().unicode() - 'a')
                      : C.isDigit()                     ? Qt::Key_0 + C.digitValue()
                                                        : 0;
      QKeyEvent Down(QEvent::KeyPress, Key, Qt::NoModifier, QString(C));
      Send(Target, &Down);
      QKeyEvent Up(QEvent::KeyRelease, Key, Qt::NoModifier, QString(C));
      Send(Target, &Up);
    }
    FInputSeen = true;
  } else if (Cmd == QLatin1String("cmd")) {
    Need(2, 3, "cmd ID [PARAM]");
    const int ID = Integer(W[1]);
    const qintptr Param = W.size() == 3 ? Integer(W[2]) : 0;
    // Commands whose parameter is an address are reached through their own statements.
    if (ID == 39 || ID == 43 || ID == 44) Fail(QStringLiteral("command %1 cannot be run by number").arg(ID));
    if (ID != 0 && ID != 58 && !FindVDECommand(ID)) Fail(QStringLiteral("command %1 is not available").arg(ID));
    if (ID == 58 && E.RepeatCmdInfo().CmdID != -1 && !FindVDECommand(E.RepeatCmdInfo().CmdID))
      Fail(QStringLiteral("command %1 is not available").arg(E.RepeatCmdInfo().CmdID));
    E.Execute(ID, Param);
  } else if (Cmd == QLatin1String("wait")) {
    Need(2, 2, "wait MS");
    const int Ms = Integer(W[1]);
    if (Ms < 0) Fail(QStringLiteral("wait takes milliseconds"));
    QElapsedTimer T;
    T.start();
    do QCoreApplication::processEvents(QEventLoop::AllEvents, std::max(1, Ms - int(T.elapsed())));
    while (T.elapsed() < Ms);
  } else if (Cmd == QLatin1String("answer")) {
    Need(2, 2, "answer yes|no|ok|cancel");
    const QString A = W[1];
    if (A == QLatin1String("yes")) FDialogs->QueueButton(mrYes);
    else if (A == QLatin1String("no")) FDialogs->QueueButton(mrNo);
    else if (A == QLatin1String("ok")) FDialogs->QueueButton(mrOk);
    else if (A == QLatin1String("cancel")) FDialogs->QueueButton(mrCancel);
    else Fail(QStringLiteral("unknown answer '%1'").arg(A));
  } else if (Cmd == QLatin1String("input") || Cmd == QLatin1String("file")) {
    Need(2, 2, "input|file \"TEXT\" | cancel");
    const bool Cancel = !AWords[1].Quoted && W[1] == QLatin1String("cancel");
    if (Cmd == QLatin1String("input")) Cancel ? FDialogs->QueueInputCancel() : FDialogs->QueueInput(W[1]);
    else Cancel ? FDialogs->QueueFileCancel() : FDialogs->QueueFile(W[1]);
  } else if (Cmd == QLatin1String("choose")) {
    if (W.size() == 3 && W[1] == QLatin1String("pic") && !AWords[1].Quoted) {
      if (!RunExtra(AWords)) Fail(QStringLiteral("choose pic needs the editor window (dse edit)"));
    } else {
      Need(2, 2, "choose \"TEXT\"");
      FDialogs->QueueChoose(W[1]);
    }
  } else if (Cmd == QLatin1String("form")) {
    Need(3, 3, "form \"LABEL\" \"TEXT\"");
    FDialogs->QueueForm(W[1], W[2]);
  } else if (Cmd == QLatin1String("print")) {
    RunPrint(AWords);
  } else if (Cmd == QLatin1String("save")) {
    Need(2, 3, "save FILE [xml|bin]");
    const QString F = W.size() == 3 ? W[2] : QStringLiteral("bin");
    if (F != QLatin1String("xml") && F != QLatin1String("bin")) Fail(QStringLiteral("unknown format '%1'").arg(F));
    Save(W[1], F);
  } else if (Cmd == QLatin1String("shot")) {
    Need(2, 2, "shot FILE.png");
    Shot(W[1]);
  } else if (!RunExtra(AWords)) {
    Fail(QStringLiteral("unknown statement '%1'").arg(Cmd));
  }
}

void TEditorScriptPlayer::RunProp(const QString& AName, const QString& AValue) {
  TVDEPropType T;
  if (!VDEPropTypeByName(AName, T)) Fail(QStringLiteral("unknown property '%1'").arg(AName));
  TVectorDrawingEditor& E = FCanvas.Editor();
  const bool Modify = E.GetVectorDrawing().SelSet().Count() > 0;
  TVDEPropList& L = Modify ? E.GetModifyItemProp() : E.GetAddItemProp();
  TVDEPropItem& Item = L.Items(T);
  if (!Item.Visible()) Fail(QStringLiteral("property %1 is not shown for the selection").arg(AName));
  QString Msg;
  if (!Item.Validate(AValue, Msg) || !CheckProp(int(T), AValue, Msg)) {
    ShowErrorBox(Msg);
    return;
  }
  Item.SetValue(AValue);
}

void TEditorScriptPlayer::RunPrint(const QList<TScriptWord>& AWords) {
  if (AWords.size() < 2) Fail(QStringLiteral("usage: print WHAT"));
  const QString What = AWords[1].Text;
  TVectorDrawingEditor& E = FCanvas.Editor();
  TVectorDrawing& D = E.GetVectorDrawing();
  auto Ids = [](auto ACount, auto AItem) {
    QStringList L;
    for (int I = 0; I < ACount; ++I) L << QString::number(AItem(I)->ID());
    return L.isEmpty() ? QString::number(ACount) : QStringLiteral("%1 %2").arg(ACount).arg(L.join(QLatin1Char(',')));
  };
  if (AWords.size() != (What == QLatin1String("item") ? 3 : 2)) Fail(QStringLiteral("usage: print %1").arg(What));
  if (What == QLatin1String("prompt")) {
    Print(QStringLiteral("prompt %1").arg(E.GetPrompt()));
  } else if (What == QLatin1String("cmd")) {
    Print(QStringLiteral("cmd %1").arg(E.GetCurCmd()));
  } else if (What == QLatin1String("scale")) {
    Print(QStringLiteral("scale %1").arg(ShortestNumber(E.GetScale())));
  } else if (What == QLatin1String("view")) {
    const TKRNVector2d C = E.GetCoordTrans().DCTOWC(TKRNPoint2i{E.GetClientWidth() / 2, E.GetClientHeight() / 2});
    Print(QStringLiteral("view %1 %2 %3")
              .arg(ShortestNumber(C.X), ShortestNumber(C.Y), ShortestNumber(E.GetCoordTrans().ZoomFactor())));
  } else if (What == QLatin1String("sel")) {
    std::vector<TVectorDrawingItem*> Sel;
    for (int I = 0; I < D.Count(); ++I)
      if (D.Items(I)->Selected()) Sel.push_back(D.Items(I));
    Print(QStringLiteral("sel %1").arg(Ids(int(Sel.size()), [&](int I) { return Sel[size_t(I)]; })));
  } else if (What == QLatin1String("items")) {
    Print(QStringLiteral("items %1").arg(Ids(D.Count(), [&](int I) { return D.Items(I); })));
  } else if (What == QLatin1String("repeat")) {
    Print(QStringLiteral("repeat %1 %2").arg(E.RepeatCmdInfo().CmdID).arg(E.RepeatCmdInfo().Caption).trimmed());
  } else if (What == QLatin1String("snap-enabled")) {
    Print(QStringLiteral("snap-enabled %1").arg(OnOff(E.GetSnapEnabled())));
  } else if (What == QLatin1String("cursor")) {
    Print(QStringLiteral("cursor %1").arg(E.GetCursor()));
  } else if (What == QLatin1String("undo")) {
    Print(QStringLiteral("undo %1").arg(OnOff(E.CanUndo())));
  } else if (What == QLatin1String("redo")) {
    Print(QStringLiteral("redo %1").arg(OnOff(E.CanRedo())));
  } else if (What == QLatin1String("modified")) {
    Print(QStringLiteral("modified %1").arg(OnOff(D.Modified())));
  } else if (What == QLatin1String("count")) {
    Print(QStringLiteral("count %1").arg(D.ChangeCount()));
  } else if (What == QLatin1String("item")) {
    const int ID = Integer(AWords[2].Text);
    TVectorDrawingItem* Item = D.ItemByID(ID);
    if (!Item) Fail(QStringLiteral("no item %1").arg(ID));
    Print(QString::fromUtf8(QJsonDocument(ItemJson(*Item)).toJson(QJsonDocument::Compact)));
  } else if (What == QLatin1String("props")) {
    const bool Modify = D.SelSet().Count() > 0;
    const TVDEPropList& L = Modify ? E.GetModifyItemProp() : E.GetAddItemProp();
    for (const TVDEPropType T : L.ShownRows())
      Print(QStringLiteral("prop %1=%2").arg(QLatin1String(VDEPropInfo(T).Name), L.Items(T).Value()));
  } else if (What == QLatin1String("pos")) {
    Print(QStringLiteral("pos %1").arg(FLastPos));
  } else if (!RunExtra(AWords)) {
    Fail(QStringLiteral("unknown print '%1'").arg(What));
  }
}

void TEditorScriptPlayer::Save(const QString& AFileName, const QString& AFormat) {
  if (!FCanvas.Editor().GetVectorDrawing().SaveToFile(AFileName, AFormat == QLatin1String("xml") ? sfXML : sfBin))
    Fail(QStringLiteral("cannot write %1").arg(AFileName));
}

void TEditorScriptPlayer::Shot(const QString& AFileName) {
  QString Error;
  if (!SavePng(FCanvas.grab().toImage(), AFileName, Error)) Fail(QStringLiteral("cannot write %1: %2").arg(AFileName, Error));
}
