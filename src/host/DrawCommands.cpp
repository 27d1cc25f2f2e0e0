#include "ImageFiles.h"
#include "DseCommands.h"
#include "EditorScript.h"
#include "VDEPropGrid.h"
#include "VDEditorWidget.h"
#include "VectorDrawing.h"

#include <QApplication>
#include <QFile>
#include <QHBoxLayout>

namespace {

const QString Name = QStringLiteral("draw");

// With --props the property grid stands beside the control and a shot takes both.
class TPropsPlayer : public TEditorScriptPlayer {
public:
  TPropsPlayer(TVDEditorWidget& ACanvas, QWidget& AHost, QTextStream& AOut)
      : TEditorScriptPlayer(ACanvas, AOut), FHost(AHost) {}

protected:
  void Shot(const QString& AFileName) override {
    QString Error;
    if (!SavePng(FHost.grab().toImage(), AFileName, Error))
      throw Exception(QStringLiteral("cannot write %1: %2").arg(AFileName, Error));
  }

private:
  QWidget& FHost;
};

int RunDraw(const QStringList& AArgs, TDseIO& AIO) {
  QString In, Script, Out, Format = QStringLiteral("bin"), Settings;
  bool New = false, Props = false;
  for (int I = 0; I < AArgs.size(); ++I) {
    const QString& A = AArgs[I];
    auto Value = [&](QString& AValue) {
      if (I + 1 >= AArgs.size()) return false;
      AValue = AArgs[++I];
      return true;
    };
    if (A == QLatin1String("--new")) New = true;
    else if (A == QLatin1String("--props")) Props = true;
    else if (A == QLatin1String("-s")) {
      if (!Value(Script)) return UsageError(AIO, Name, QStringLiteral("-s takes a script file"));
    } else if (A == QLatin1String("-o")) {
      if (!Value(Out)) return UsageError(AIO, Name, QStringLiteral("-o takes a file"));
    } else if (A == QLatin1String("--format")) {
      if (!Value(Format) || (Format != QLatin1String("xml") && Format != QLatin1String("bin")))
        return UsageError(AIO, Name, QStringLiteral("--format must be xml or bin"));
    } else if (A == QLatin1String("--settings")) {
      if (!Value(Settings)) return UsageError(AIO, Name, QStringLiteral("--settings takes a file"));
    } else if (A.startsWith(QLatin1Char('-')) && A != QLatin1String("-")) {
      return UsageError(AIO, Name, QStringLiteral("unknown option '%1'").arg(A));
    } else if (In.isEmpty()) {
      In = A;
    } else {
      return UsageError(AIO, Name, QStringLiteral("unexpected argument '%1'").arg(A));
    }
  }
  if (New == !In.isEmpty()) return UsageError(AIO, Name, QStringLiteral("give a drawing file or --new"));
  if (Script.isEmpty()) return UsageError(AIO, Name, QStringLiteral("-s SCRIPT is required"));
  if (!qobject_cast<QApplication*>(QCoreApplication::instance())) {
    AIO.Err << "error: the editor needs the widget application\n";
    return ecFailed;
  }

  QStringList Lines;
  QString Error;
  if (!ReadScriptLines(Script, Lines, Error)) {
    AIO.Err << "error: " << Error << '\n';
    return ecFailed;
  }
  QWidget Host;
  auto* Canvas_ = new TVDEditorWidget(&Host, Settings);
  TVDEditorWidget& Canvas = *Canvas_;
  Canvas.resize(800, 600);
  TVectorDrawingEditor& E = Canvas.Editor();
  TVDEPropGrid* Grid = nullptr;
  if (Props) {
    auto* Layout = new QHBoxLayout(&Host);
    Layout->setContentsMargins(0, 0, 0, 0);
    Layout->setSpacing(2);
    Layout->addWidget(&Canvas, 1);
    Grid = new TVDEPropGrid(&Host);
    Grid->setFixedWidth(240);
    Layout->addWidget(Grid);
    const auto Bind = [&E, Grid] {
      Grid->SetPropList(E.GetVectorDrawing().SelSet().Count() > 0 ? &E.GetModifyItemProp() : &E.GetAddItemProp());
    };
    E.OnSelSetChanged = Bind;
    Bind();
  }
  if (!New) {
    try {
      E.GetVectorDrawing().LoadFromFile(In);
    } catch (const std::exception& X) {
      AIO.Err << "error: " << QString::fromUtf8(X.what()) << '\n';
      return ecFailed;
    }
    E.GetVectorDrawing().SetChangeCount(0);
  }
  if (Props) Host.resize(800 + 242, 600);
  else Host.resize(800, 600);
  Host.show();
  E.SetClientSize(Canvas.width(), Canvas.height());
  E.Execute(cmdZoomAll, 0);
  bool Ok;
  {
    TPropsPlayer Player(Canvas, Props ? Host : static_cast<QWidget&>(Canvas), AIO.Out);
    Ok = Player.Run(Lines, Error);
    E.OnSelSetChanged = nullptr;
  }
  AIO.Out.flush();
  if (!Ok) {
    AIO.Err << "error: " << Error << '\n';
    return ecFailed;
  }
  if (!Out.isEmpty()) {
    try {
      E.GetVectorDrawing().SaveToFile(Out, Format == QLatin1String("xml") ? sfXML : sfBin);
    } catch (const std::exception& X) {
      AIO.Err << "error: " << QString::fromUtf8(X.what()) << '\n';
      return ecFailed;
    }
  }
  return ecOk;
}

}  // namespace

void RegisterDrawCommands(TDseCommandLine& ACommands) {
  ACommands.Register({Name, QStringLiteral("play an editor script on a drawing"),
                      QStringLiteral("Usage: dse draw (IN.lvd | --new) -s SCRIPT [-o OUT.lvd] [--format xml|bin]\n"
                                     "                [--settings FILE.ini] [--props]\n"
                                     "\n"
                                     "Opens the drawing (or an empty one) on the editor control, zooms to it, plays\n"
                                     "SCRIPT (-s - reads standard input) and saves the drawing to OUT when given.\n"
                                     "Message boxes print as \"[TITLE] TEXT\". A statement that cannot be carried out\n"
                                     "stops the script with 'error: line N: MESSAGE' and exit code 1; the output\n"
                                     "printed up to it stays. The settings file defaults to dse.ini beside the program.\n"
                                     "--props shows the property grid beside the control; a shot then takes both.\n"
                                     "\n"
                                     "Statements (P is X,Y in world units or px:X,Y in client pixels; modifiers\n"
                                     "shift, ctrl, alt may follow input statements; texts with blanks are quoted):\n"
                                     "  size W H | view CX CY SCALE | set snap|grid|ortho on|off | set grid-space X Y\n"
                                     "  set radius R | prop NAME VALUE\n"
                                     "  move P | down P [button] | up P [button] | click P | rclick [P] | dblclick P [button]\n"
                                     "  drag P1 P2 [button] | wheel up|down P | key NAME | type \"TEXT\" | cmd ID [PARAM]\n"
                                     "  wait MS\n"
                                     "  answer yes|no|ok|cancel | input \"TEXT\"|cancel | file \"PATH\"|cancel\n"
                                     "  choose \"TEXT\" | form \"LABEL\" \"TEXT\"\n"
                                     "  print prompt|cmd|scale|view|sel|items|repeat|snap-enabled|cursor|undo|redo|\n"
                                     "        modified|count|props|pos | print item ID | save FILE [xml|bin] | shot FILE.png\n"),
                      RunDraw});
}
