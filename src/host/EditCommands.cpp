// dse edit: the draw-set editor window on a draw set of a library, as a host program
// opens it; with -s the editor script plays inside the window's own event loop.

#include "ImageFiles.h"
#include "DSBarPics.h"
#include "DSEditor.h"
#include "Dialogs.h"
#include "DrawSetConsts.h"
#include "DrawSetLibrary.h"
#include "DseCommands.h"
#include "DrawSetBarsFram.h"
#include "EditDrawSetFrm.h"
#include "EditorScript.h"
#include "LvdJson.h"
#include "ScriptDebugFrm.h"
#include "ScriptEdit.h"
#include "MZTDiamDictsIntf.h"
#include "VDEPropGrid.h"
#include "VDEditorWidget.h"
#include "VectorDrawing.h"

#include <QAbstractItemView>
#include <QAction>
#include <QApplication>
#include <QComboBox>
#include <QFile>
#include <QGuiApplication>
#include <QJsonDocument>
#include <QKeyEvent>
#include <QLineEdit>
#include <QMenu>
#include <QPointer>
#include <QTextBlock>

namespace {

const QString Name = QStringLiteral("edit");

[[noreturn]] void Fail(const QString& AMessage) { throw Exception(AMessage); }

QString TrueFalse(bool A) { return A ? QStringLiteral("true") : QStringLiteral("false"); }

// The window statements on top of the editor script.
class TWindowScriptPlayer : public TEditorScriptPlayer {
public:
  TWindowScriptPlayer(TEditDrawSetForm& AForm, QTextStream& AOut)
      : TEditorScriptPlayer(AForm.EditorWidget(), AOut), FForm(AForm) {
    FForm.OnError = [this](std::exception_ptr AError) { SetEventError(AError); };
    TDebugForm::Host() = [this](TDebugForm* AForm) {
      FDebug = AForm;
      AForm->show();
    };
    SetClientSize(800, 600);
  }
  ~TWindowScriptPlayer() override {
    FForm.OnError = nullptr;
    TDebugForm::Host() = nullptr;
    delete FDebug.data();
  }

  bool Closed() const { return FClosed; }
  // Closes the window as the user would; prints the result when it closed.
  void Close() {
    FForm.close();
    RaiseEventError();
    if (FForm.isVisible()) {
      Print(QStringLiteral("open"));
      return;
    }
    FClosed = true;
    Print(QStringLiteral("result %1").arg(FForm.ModalResult()));
  }

protected:
  void BeforeStatement(const QString&) override {
    if (FClosed) Fail(QStringLiteral("the window is closed"));
  }

  void SetClientSize(int AWidth, int AHeight) override {
    QWidget& C = Canvas();
    for (int Pass = 0; Pass < 3 && (C.width() != AWidth || C.height() != AHeight); ++Pass) {
      FForm.resize(FForm.width() + AWidth - C.width(), FForm.height() + AHeight - C.height());
      QCoreApplication::processEvents();
    }
    if (C.width() != AWidth || C.height() != AHeight)
      Fail(QStringLiteral("the window cannot give the control %1 x %2 pixels").arg(AWidth).arg(AHeight));
    Canvas().Editor().SetClientSize(AWidth, AHeight);
  }

  bool CheckProp(int APropType, const QString& AValue, QString& AErrMsg) override {
    const auto& Check = FForm.PropGrid().Delegate().OnPropValValidate;
    return !Check || Check(TVDEPropType(APropType), AValue, AErrMsg);
  }

  bool TryShortcut(int AKey, Qt::KeyboardModifiers AMods) override {
    const QKeySequence Seq(QKeyCombination(AMods & ~Qt::KeypadModifier, Qt::Key(AKey)));
    FForm.UpdateActions();
    FForm.UpdateEditActions();
    for (QAction* A : FForm.Actions())
      if (!A->shortcut().isEmpty() && A->shortcut() == Seq) {
        FForm.TriggerAction(A->objectName());
        return true;
      }
    return false;
  }

  void Shot(const QString& AFileName) override {
    FForm.UpdateActions();
    QCoreApplication::processEvents();
    QString Error;
    if (!SavePng(FForm.grab().toImage(), AFileName, Error)) Fail(QStringLiteral("cannot write %1: %2").arg(AFileName, Error));
  }

  bool RunExtra(const QList<TScriptWord>& AWords) override {
    QStringList W;
    for (const TScriptWord& X : AWords) W << X.Text;
    const QString& Cmd = W[0];
    auto Need = [&](int AMin, int AMax, const char* AUsage) {
      if (W.size() < AMin || W.size() > AMax) Fail(QStringLiteral("usage: %1").arg(QLatin1String(AUsage)));
    };
    if (Cmd == QLatin1String("print")) return RunPrint(W);
    if (Cmd == QLatin1String("action")) {
      Need(2, 2, "action NAME");
      QAction* A = FForm.Action(W[1]);
      if (!A) Fail(QStringLiteral("unknown action '%1'").arg(W[1]));
      FForm.UpdateActions();
      FForm.UpdateEditActions();
      if (!FForm.TriggerAction(W[1])) Fail(QStringLiteral("action %1 is disabled").arg(W[1]));
    } else if (Cmd == QLatin1String("mode")) {
      Need(2, 2, "mode normal|bar|param");
      const QStringList Modes = {QStringLiteral("normal"), QStringLiteral("bar"), QStringLiteral("param")};
      const int M = int(Modes.indexOf(W[1]));
      if (M < 0) Fail(QStringLiteral("unknown mode '%1'").arg(W[1]));
      FForm.ModeButton(TDSType(M))->trigger();
    } else if (Cmd == QLatin1String("focus")) {
      Need(2, 2, "focus canvas|props|bars|script|debug");
      if (W[1] == QLatin1String("canvas")) Canvas().setFocus();
      else if (W[1] == QLatin1String("props")) FForm.PropGrid().setFocus();
      else if (W[1] == QLatin1String("bars")) BarsShown().Grid().setFocus();
      else if (W[1] == QLatin1String("script")) BarsShown().Script().setFocus();
      else if (W[1] == QLatin1String("debug")) Debugger().setFocus();
      else Fail(QStringLiteral("unknown part '%1'").arg(W[1]));
      QCoreApplication::processEvents();
    } else if (Cmd == QLatin1String("cell")) {
      Need(5, 5, "cell GRID ROW COL \"TEXT\"");
      if (W[1] == QLatin1String("bars")) EditBarsCell(W[2], W[3], W[4]);
      else if (W[1] == QLatin1String("props")) EditCell(FForm.PropGrid(), W[2], W[3], W[4]);
      else Fail(QStringLiteral("the grid '%1' is not in this window").arg(W[1]));
    } else if (Cmd == QLatin1String("combo")) {
      Need(3, 3, "combo zoom|radius \"TEXT\"");
      QComboBox* Box = W[1] == QLatin1String("zoom")     ? &FForm.ZoomCombo()
                       : W[1] == QLatin1String("radius") ? &FForm.RadiusCombo()
                                                         : nullptr;
      if (!Box) Fail(QStringLiteral("unknown combo box '%1'").arg(W[1]));
      if (!Box->isEnabled()) Fail(QStringLiteral("the %1 box is disabled").arg(W[1]));
      Box->setFocus();
      Box->lineEdit()->setText(W[2]);
      QKeyEvent Down(QEvent::KeyPress, Qt::Key_Return, Qt::NoModifier, QStringLiteral("\r"));
      Send(Box->lineEdit(), &Down);
      Canvas().setFocus();
    } else if (Cmd == QLatin1String("close")) {
      Need(1, 1, "close");
      Close();
    } else if (Cmd == QLatin1String("choose") && W.size() == 3 && W[1] == QLatin1String("pic") && !AWords[1].Quoted) {
      bool Ok = false;
      W[2].toInt(&Ok);
      if (!Ok) Fail(QStringLiteral("choose pic takes a picture number"));
      Recorder().QueueChoose(QStringLiteral("pic ") + W[2]);
    } else if (Cmd == QLatin1String("script")) {
      Need(2, 2, "script \"TEXT\"");
      TScriptEdit& E = BarsShown().Script();
      E.setFocus();
      E.selectAll();
      E.insertPlainText(W[1]);  // as typing does: the editor's change marks the script modified
    } else if (Cmd == QLatin1String("caret")) {
      Need(3, 3, "caret LINE COL");
      bool OkL = false, OkC = false;
      const int Line = W[1].toInt(&OkL), Col = W[2].toInt(&OkC);
      TScriptEdit& E = BarsShown().Script();
      const QTextBlock B = E.document()->findBlockByNumber(Line - 1);
      if (!OkL || !OkC || !B.isValid() || Col < 1 || Col > B.length())
        Fail(QStringLiteral("the script has no line %1 column %2").arg(W[1], W[2]));
      QTextCursor C(B);
      C.setPosition(B.position() + Col - 1);
      E.setTextCursor(C);
      E.setFocus();
    } else if (Cmd == QLatin1String("debug")) {
      RunDebug(W);
    } else {
      return false;
    }
    return true;
  }

private:
  bool RunPrint(const QStringList& W) {
    const QString What = W.value(1);
    if (What == QLatin1String("actions")) {
      FForm.UpdateActions();
      FForm.UpdateEditActions();
      for (QAction* A : FForm.Actions())
        Print(QStringLiteral("action %1 enabled=%2 checked=%3 visible=%4")
                  .arg(A->objectName(), TrueFalse(FForm.IsActionEnabled(A)), TrueFalse(A->isChecked()), TrueFalse(A->isVisible())));
    } else if (What == QLatin1String("bars") || What == QLatin1String("params")) {
      TDrawSet* DS = FForm.Session().DrawSet();
      if (!DS) return true;
      const TVectorDrawing& D = FForm.Editor().GetVectorDrawing();
      if (What == QLatin1String("bars")) {
        for (int I = 0; I < DS->Bars().Count(); ++I)
          Print(QStringLiteral("bar ") + QString::fromUtf8(QJsonDocument(BarJson(*DS->Bars().GetItems(I), D)).toJson(QJsonDocument::Compact)));
      } else {
        for (int I = 0; I < DS->Params().Count(); ++I)
          Print(QStringLiteral("param ") + QString::fromUtf8(QJsonDocument(ParamJson(*DS->Params().GetItems(I))).toJson(QJsonDocument::Compact)));
      }
    } else if (What == QLatin1String("status")) {
      FForm.UpdateActions();
      const QStringList T = FForm.StatusTexts();
      for (int I = 0; I < T.size(); ++I) Print(QStringLiteral("status %1 %2").arg(I).arg(T[I].trimmed()).trimmed());
    } else if (What == QLatin1String("pos")) {
      Print(QStringLiteral("pos %1").arg(FForm.StatusTexts().value(0)));
    } else if (What == QLatin1String("progress")) {
      Print(QStringLiteral("progress %1").arg(FForm.ImportProgressSteps()));
    } else if (What == QLatin1String("debug")) {
      TDebugForm& D = Debugger();
      Print(QStringLiteral("debug %1 %2").arg(D.CurLineNo() + 1).arg(D.LastResult()));
      for (const TVariable& V : D.Interpreter().Variables()) Print(QStringLiteral("var %1=%2").arg(V.Name, V.Value));
    } else if (What == QLatin1String("script")) {
      TScriptEdit& E = FForm.BarsFrame().Script();
      const QStringList L = E.toPlainText().split(QLatin1Char('\n'));
      for (int I = 0; I < L.size(); ++I) Print(QStringLiteral("script %1 %2").arg(I + 1).arg(L[I]).trimmed());
      const QTextCursor C = E.textCursor();
      Print(QStringLiteral("caret %1 %2").arg(C.blockNumber() + 1).arg(C.positionInBlock() + 1));
    } else {
      return false;
    }
    return true;
  }

  void EditCell(TVDEPropGrid& AGrid, const QString& ARow, const QString& ACol, const QString& AText) {
    bool OkR = false, OkC = false;
    const int Row = ARow.toInt(&OkR), Col = ACol.toInt(&OkC);
    if (!OkR || !OkC || Row < 0 || Col < 0 || Row >= AGrid.model()->rowCount() || Col >= AGrid.model()->columnCount())
      Fail(QStringLiteral("no cell %1 %2 in the grid").arg(ARow, ACol));
    const QModelIndex I = AGrid.model()->index(Row, Col);
    if (!(AGrid.model()->flags(I) & Qt::ItemIsEditable)) Fail(QStringLiteral("cell %1 %2 cannot be edited").arg(Row).arg(Col));
    AGrid.setFocus();
    AGrid.setCurrentIndex(I);
    if (!AGrid.IsEditing()) AGrid.edit(I);
    QCoreApplication::processEvents();
    QWidget* Editor = AGrid.Delegate().CurrentEditor();
    if (!Editor || !AGrid.IsEditing()) Fail(QStringLiteral("cell %1 %2 opened no editor").arg(Row).arg(Col));
    if (auto* L = qobject_cast<QLineEdit*>(Editor)) L->setText(AText);
    else if (auto* B = qobject_cast<QComboBox*>(Editor)) {
      if (B->isEditable()) B->setEditText(AText);
      else {
        const int K = B->findText(AText);
        if (K < 0) Fail(QStringLiteral("the cell offers no '%1'").arg(AText));
        B->setCurrentIndex(K);
      }
    } else Fail(QStringLiteral("cell %1 %2 takes no typed text").arg(Row).arg(Col));
    QKeyEvent Enter(QEvent::KeyPress, Qt::Key_Return, Qt::NoModifier, QStringLiteral("\r"));
    Send(Editor, &Enter);
    QCoreApplication::processEvents();
  }

  TDrawSetBarsFrame& BarsShown() {
    if (!FForm.BarsFrame().isVisible()) Fail(QStringLiteral("the bars panel is hidden (action acShowBars shows it)"));
    return FForm.BarsFrame();
  }

  TDebugForm& Debugger() {
    if (!FDebug) Fail(QStringLiteral("the debugger is not open (debug start opens it)"));
    return *FDebug;
  }

  void RunDebug(const QStringList& W) {
    const QString What = W.value(1);
    if (What == QLatin1String("start") && W.size() == 2) {
      if (FDebug) Fail(QStringLiteral("the debugger is open already"));
      if (!FForm.TriggerAction(QStringLiteral("acDebug"))) Fail(QStringLiteral("action acDebug is disabled"));
    } else if (What == QLatin1String("step") && W.size() == 2) {
      if (!Debugger().CanStep()) Fail(QStringLiteral("the script has ended; the debugger takes no more steps"));
      Debugger().Step();
    } else if (What == QLatin1String("run") && W.size() == 2) {
      Debugger().Run();
    } else if (What == QLatin1String("close") && W.size() == 2) {
      Debugger().close();
      delete FDebug.data();
    } else if (What == QLatin1String("query") && W.size() == 3) {
      Print(QStringLiteral("value %1=%2").arg(W[2], Debugger().Query(W[2])));
    } else {
      Fail(QStringLiteral("usage: debug start|step|run|close | debug query NAME"));
    }
  }

  void EditBarsCell(const QString& ARow, const QString& ACol, const QString& AText) {
    TDrawSetBarsFrame& F = BarsShown();
    bool OkR = false, OkC = false;
    const int Row = ARow.toInt(&OkR), Col = ACol.toInt(&OkC);
    // Row 0 is the grid's title row; bars are rows 1 and on.
    if (!OkR || !OkC || Row < 1 || Row > F.Model().rowCount() || Col < 0 || Col > 5)
      Fail(QStringLiteral("no cell %1 %2 in the bars grid").arg(ARow, ACol));
    const QModelIndex I = F.Model().index(Row - 1, Col);
    if (!(F.Model().flags(I) & Qt::ItemIsEditable)) Fail(QStringLiteral("cell %1 %2 cannot be edited").arg(Row).arg(Col));
    F.Grid().setFocus();
    F.Grid().setCurrentIndex(I);
    if (!F.Grid().IsEditing()) F.Grid().edit(I);
    QCoreApplication::processEvents();
    QWidget* Editor = F.Delegate().CurrentEditor();
    QLineEdit* Line = Editor ? (qobject_cast<QLineEdit*>(Editor) ? qobject_cast<QLineEdit*>(Editor)
                                                                  : Editor->findChild<QLineEdit*>())
                             : nullptr;
    if (!Line || !F.Grid().IsEditing()) Fail(QStringLiteral("cell %1 %2 opened no editor").arg(Row).arg(Col));
    Line->setText(AText);
    QKeyEvent Enter(QEvent::KeyPress, Qt::Key_Return, Qt::NoModifier, QStringLiteral("\r"));
    Send(Line, &Enter);
    QCoreApplication::processEvents();
  }

  TEditDrawSetForm& FForm;
  bool FClosed = false;
  QPointer<TDebugForm> FDebug;
};

int RunEdit(const QStringList& AArgs, TDseIO& AIO) {
  QStringList Pos;
  QString Script, Settings;
  int Region = 1;
  for (int I = 0; I < AArgs.size(); ++I) {
    const QString& A = AArgs[I];
    auto Value = [&](QString& AValue) {
      if (I + 1 >= AArgs.size()) return false;
      AValue = AArgs[++I];
      return true;
    };
    if (A == QLatin1String("-s")) {
      if (!Value(Script)) return UsageError(AIO, Name, QStringLiteral("-s takes a script file"));
    } else if (A == QLatin1String("--settings")) {
      if (!Value(Settings)) return UsageError(AIO, Name, QStringLiteral("--settings takes a file"));
    } else if (A == QLatin1String("--region")) {
      QString R;
      if (!Value(R) || !TryStrToInt(R, Region)) return UsageError(AIO, Name, QStringLiteral("--region takes a whole number"));
    } else if (A.startsWith(QLatin1Char('-'))) {
      return UsageError(AIO, Name, QStringLiteral("unknown option '%1'").arg(A));
    } else {
      Pos << A;
    }
  }
  int ID = 0;
  if (Pos.size() != 2 || !TryStrToInt(Pos[1], ID))
    return UsageError(AIO, Name, QStringLiteral("edit takes LIBRARY and a draw-set ID"));
  if (!qobject_cast<QApplication*>(QCoreApplication::instance())) {
    AIO.Err << "error: the editor needs the widget application\n";
    return ecFailed;
  }
  if (Script.isEmpty() && QGuiApplication::platformName() == QLatin1String("offscreen")) {
    AIO.Err << "error: the interactive editor needs a display (run it under Xvfb, or give -s SCRIPT)\n";
    return ecFailed;
  }
  QStringList Lines;
  QString Error;
  if (!Script.isEmpty() && !ReadScriptLines(Script, Lines, Error)) {
    AIO.Err << "error: " << Error << '\n';
    return ecFailed;
  }
  std::shared_ptr<TDrawSetLibrary> Lib;
  PMZTDiamDicts Dicts;
  try {
    Lib = TDrawSetLibrary::Open(Pos[0]);
    const QStringList DictNames = Lib->DiamDictNames();
    if (!DictNames.isEmpty()) Dicts = TMZTDiamDicts::LoadFromJson(Lib->DiamDictJson(DictNames.first()));
  } catch (const Exception& X) {
    AIO.Err << "error: " << X.Message() << '\n';
    return ecFailed;
  }

  bool Played = Script.isEmpty();
  bool Ok = true;
  // A scripted run shows no window of its own: boxes print, questions need answers.
  std::shared_ptr<TDialogService> PrevDialogs;
  if (!Script.isEmpty()) {
    auto Printer = std::make_shared<TRecordingDialogs>();
    Printer->OnMessage = [&AIO](const QString& ALine) { AIO.Out << ALine << '\n'; };
    PrevDialogs = SetDialogs(Printer);
  }
  SetDSEditorOptions(Settings, Script.isEmpty());
  if (!Script.isEmpty()) {
    TEditDrawSetForm::OnShown() = [&](TEditDrawSetForm& AForm) {
      Played = true;
      TWindowScriptPlayer Player(AForm, AIO.Out);
      Ok = Player.Run(Lines, Error);
      if (Ok && !Player.Closed()) {
        // The end of the script closes the window as the user would.
        try {
          Player.Close();
          if (!Player.Closed()) {
            Ok = false;
            Error = QStringLiteral("the window stayed open at the end of the script");
          }
        } catch (const std::exception& E) {
          Ok = false;
          Error = QStringLiteral("at the end: %1").arg(QString::fromUtf8(E.what()));
        }
      }
      if (!Ok) AForm.Abort();
    };
  }
  struct TUnhook {
    std::shared_ptr<TDialogService>& Prev;
    bool Scripted;
    ~TUnhook() {
      TEditDrawSetForm::OnShown() = nullptr;
      SetDSEditorOptions(QString(), true);
      if (Scripted) SetDialogs(Prev);
    }
  } Unhook{PrevDialogs, !Script.isEmpty()};
  // The picture chooser's common list is the library's.
  const TCommonBarPicStore SavedStore = CommonBarPicStore();
  CommonBarPicStore() = {[Lib] { return Lib->CommonBarPics(); },
                         [Lib](const TCommonBarPicList& AList) { Lib->SetCommonBarPics(AList); }};
  const int Result = RunDSEditor(nullptr, ID, Lib.get(), Lib.get(), Dicts.get(), Region);
  CommonBarPicStore() = SavedStore;
  AIO.Out.flush();
  if (!Ok) {
    AIO.Err << "error: " << Error << '\n';
    return ecFailed;
  }
  if (Result < 0 || !Played) return ecFailed;
  return ecOk;
}

}  // namespace

void RegisterEditCommands(TDseCommandLine& ACommands) {
  ACommands.Register(
      {Name, QStringLiteral("open the draw-set editor window on a draw set"),
       QStringLiteral("Usage: dse edit LIBRARY ID [--region N] [-s SCRIPT] [--settings FILE.ini]\n"
                      "\n"
                      "Opens the editor window \"图集编辑器\" on draw set ID of the library, as a host program\n"
                      "does. Without -s the window is interactive (it needs a display). With -s the editor\n"
                      "script plays inside the window (-s - reads standard input); the end of the script\n"
                      "closes the window as the user would and prints 'result N'. The region (default 1)\n"
                      "picks the script, drawing and notation columns. The settings file defaults to\n"
                      "dse.ini beside the program.\n"
                      "\n"
                      "Window statements besides those of `dse draw`:\n"
                      "  action NAME | mode normal|bar|param | focus canvas|props | cell props ROW COL \"TEXT\"\n"
                      "  combo zoom|radius \"TEXT\" | close\n"
                      "  print actions|bars|params|status|progress (how often imports moved their bar)\n"),
       RunEdit});
}
