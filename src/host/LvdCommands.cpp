#include "ImageFiles.h"
#include "DseCommands.h"
#include "CADImport.h"
#include "LvdJson.h"

#include "VDIFormat.h"
#include "VDIHatch.h"
#include "VDILine.h"
#include "VDIPoint.h"
#include "VDIText.h"
#include "VectorDrawing.h"

#include <QImage>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QPainter>

namespace {

const QString Name = QStringLiteral("lvd");

int Info(const QStringList& AArgs, TDseIO& AIO) {
  const bool Json = AArgs.contains(QStringLiteral("--json"));
  QStringList Files = AArgs;
  Files.removeAll(QStringLiteral("--json"));
  if (Files.size() != 1) return UsageError(AIO, Name, QStringLiteral("info takes one file"));
  TVectorDrawing D;
  TVDSaveFormat Format;
  D.LoadFromFile(Files[0], Format);
  if (Json) {
    QJsonObject O;
    O.insert(QStringLiteral("format"), Format == sfXML ? QStringLiteral("xml") : QStringLiteral("bin"));
    O.insert(QStringLiteral("version"), D.Version());
    O.insert(QStringLiteral("oriVersion"), D.OriVersion());
    O.insert(QStringLiteral("backColor"), qint64(D.BackColor()));
    O.insert(QStringLiteral("width"), D.DrawingWidth());
    O.insert(QStringLiteral("height"), D.DrawingHeight());
    O.insert(QStringLiteral("remark"), D.Remark());
    O.insert(QStringLiteral("extData"), D.ExtData());
    O.insert(QStringLiteral("maxId"), D.MaxID());
    QJsonArray Layers;
    for (int I = 0; I < D.Layers().Count(); ++I) {
      const TLayer* L = D.Layers().Items(I);
      Layers.append(QJsonObject{{QStringLiteral("id"), L->ID()}, {QStringLiteral("name"), L->Name()},
                                {QStringLiteral("color"), qint64(L->Color())}, {QStringLiteral("visible"), L->Visible()}});
    }
    O.insert(QStringLiteral("layers"), Layers);
    QJsonArray Items;
    for (int I = 0; I < D.Count(); ++I) Items.append(ItemJson(*D.Items(I)));
    O.insert(QStringLiteral("items"), Items);
    AIO.Out << QString::fromUtf8(QJsonDocument(O).toJson(QJsonDocument::Indented));
    return ecOk;
  }
  AIO.Out << QStringLiteral("format: %1\nversion: %2\npage: %3 x %4\nback colour: 0x%5\nremark: %6\nlayers: %7\n")
                 .arg(Format == sfXML ? QStringLiteral("xml") : QStringLiteral("bin"), D.Version())
                 .arg(D.DrawingWidth())
                 .arg(D.DrawingHeight())
                 .arg(D.BackColor(), 6, 16, QChar(u'0'))
                 .arg(D.Remark())
                 .arg(D.Layers().Count());
  for (int I = 0; I < D.Layers().Count(); ++I)
    AIO.Out << QStringLiteral("  %1 %2%3\n").arg(D.Layers().Items(I)->ID()).arg(D.Layers().Items(I)->Name(),
                                                                                 D.Layers().Items(I)->Visible() ? QString() : QStringLiteral(" (hidden)"));
  AIO.Out << QStringLiteral("items: %1\n").arg(D.Count());
  for (int I = 0; I < D.Count(); ++I) {
    const TVectorDrawingItem* It = D.Items(I);
    const TKRNBox2d& B = It->OutRect();
    AIO.Out << QStringLiteral("  %1 %2 [%3, %4, %5, %6]\n")
                   .arg(It->ID())
                   .arg(QString::fromLatin1(FindVDIClass(It->ItemType())->ClassName))
                   .arg(B.MinX()).arg(B.MinY()).arg(B.MaxX()).arg(B.MaxY());
  }
  return ecOk;
}

int Convert(const QStringList& AArgs, TDseIO& AIO) {
  QStringList Files;
  QString Format, Selected;
  for (int I = 0; I < AArgs.size(); ++I) {
    if (AArgs[I] == QLatin1String("--format") && I + 1 < AArgs.size()) Format = AArgs[++I];
    else if (AArgs[I] == QLatin1String("--selected") && I + 1 < AArgs.size()) Selected = AArgs[++I];
    else if (AArgs[I].startsWith(QLatin1String("--"))) return UsageError(AIO, Name, QStringLiteral("unknown option '%1'").arg(AArgs[I]));
    else Files << AArgs[I];
  }
  if (Files.size() != 2) return UsageError(AIO, Name, QStringLiteral("convert takes IN and OUT"));
  if (Format != QLatin1String("xml") && Format != QLatin1String("bin"))
    return UsageError(AIO, Name, QStringLiteral("--format must be xml or bin"));
  TVectorDrawing D;
  D.LoadFromFile(Files[0]);
  if (!Selected.isEmpty()) {
    for (const QString& Part : Selected.split(u',', Qt::SkipEmptyParts)) {
      int ID;
      if (!TryStrToInt(Part.trimmed(), ID)) return UsageError(AIO, Name, QStringLiteral("'%1' is not an item ID").arg(Part));
      const int Index = D.IndexOfID(ID);
      if (Index < 0) {
        AIO.Err << QStringLiteral("error: no item with ID %1 in '%2'\n").arg(ID).arg(Files[0]);
        return ecFailed;
      }
      D.SelSet().Add(D.Items(Index));
    }
  }
  D.SaveToFile(Files[1], Format == QLatin1String("xml") ? sfXML : sfBin, !Selected.isEmpty());
  return ecOk;
}

int Render(const QStringList& AArgs, TDseIO& AIO) {
  QString In, Out;
  int W = 800, H = 600, Margin = 10;
  for (int I = 0; I < AArgs.size(); ++I) {
    const bool HasValue = I + 1 < AArgs.size();
    if (AArgs[I] == QLatin1String("-o") && HasValue) Out = AArgs[++I];
    else if (AArgs[I] == QLatin1String("--size") && HasValue) {
      const QStringList P = AArgs[++I].toLower().split(u'x');
      if (P.size() != 2 || !TryStrToInt(P[0], W) || !TryStrToInt(P[1], H) || W < 1 || H < 1 || W > 20000 || H > 20000)
        return UsageError(AIO, Name, QStringLiteral("--size takes WxH, each 1 to 20000"));
    } else if (AArgs[I] == QLatin1String("--margin") && HasValue) {
      if (!TryStrToInt(AArgs[++I], Margin) || Margin < 0) return UsageError(AIO, Name, QStringLiteral("--margin takes a whole number"));
    } else if (AArgs[I].startsWith(u'-')) return UsageError(AIO, Name, QStringLiteral("unknown option '%1'").arg(AArgs[I]));
    else if (In.isEmpty()) In = AArgs[I];
    else return UsageError(AIO, Name, QStringLiteral("unexpected argument '%1'").arg(AArgs[I]));
  }
  if (In.isEmpty() || Out.isEmpty()) return UsageError(AIO, Name, QStringLiteral("render takes IN and -o OUT.png"));
  TVectorDrawing D;
  D.LoadFromFile(In);
  QImage Img(W, H, QImage::Format_RGB32);
  Img.fill(ToQColor(D.BackColor()));
  {
    QPainter P(&Img);
    D.Draw(P, TKRNRect{0, 0, W, H}, Margin, Margin);
  }
  QString Error;
  if (!SavePng(Img, Out, Error)) {
    AIO.Err << QStringLiteral("error: cannot write '%1'\n").arg(Out);
    return ecFailed;
  }
  return ecOk;
}

int ImportCad(const QStringList& AArgs, TDseIO& AIO) {
  QStringList Files;
  QString Format = QStringLiteral("xml");
  bool ShowProgress = false;
  int Region = 1;
  for (int I = 0; I < AArgs.size(); ++I) {
    const bool HasValue = I + 1 < AArgs.size();
    if (AArgs[I] == QLatin1String("--format") && HasValue) Format = AArgs[++I];
    else if (AArgs[I] == QLatin1String("--region") && HasValue) {
      if (!TryStrToInt(AArgs[++I], Region)) return UsageError(AIO, Name, QStringLiteral("--region takes a whole number"));
    } else if (AArgs[I] == QLatin1String("--progress")) ShowProgress = true;
    else if (AArgs[I].startsWith(QLatin1String("--"))) return UsageError(AIO, Name, QStringLiteral("unknown option '%1'").arg(AArgs[I]));
    else Files << AArgs[I];
  }
  if (Files.size() != 2) return UsageError(AIO, Name, QStringLiteral("import-cad takes IN.dxf and OUT.lvd"));
  if (Format != QLatin1String("xml") && Format != QLatin1String("bin"))
    return UsageError(AIO, Name, QStringLiteral("--format must be xml or bin"));
  TDxfOptions Options;
  Options.RegionCode = Region;
  int Shown = -1;
  if (ShowProgress)
    Options.Progress = [&](double APos) {
      if (int(APos) != Shown) {
        Shown = int(APos);
        AIO.Err << QStringLiteral("progress %1%\n").arg(Shown);
        AIO.Err.flush();
      }
    };
  TVectorDrawing D;
  const TDxfSummary S = ImportCADFile(Files[0], D, 0, Options);
  for (const QString& W : S.Warnings) AIO.Err << "warning: " << W << '\n';
  if (!D.SaveToFile(Files[1], Format == QLatin1String("xml") ? sfXML : sfBin)) {
    AIO.Err << QStringLiteral("error: cannot write '%1'\n").arg(Files[1]);
    return ecFailed;
  }
  AIO.Out << QStringLiteral("imported %1 (%2, %3 entities, %4 blocks) as %5 items on %6 layers\n")
                 .arg(Files[0], S.Version.isEmpty() ? QStringLiteral("R12") : S.Version, QString::number(S.Entities),
                      QString::number(S.Blocks), QString::number(D.Count()), QString::number(D.Layers().Count()));
  return ecOk;
}

int RunLvd(const QStringList& AArgs, TDseIO& AIO) {
  if (AArgs.isEmpty()) return UsageError(AIO, Name, QStringLiteral("missing subcommand"));
  try {
    if (AArgs[0] == QLatin1String("info")) return Info(AArgs.mid(1), AIO);
    if (AArgs[0] == QLatin1String("convert")) return Convert(AArgs.mid(1), AIO);
    if (AArgs[0] == QLatin1String("render")) return Render(AArgs.mid(1), AIO);
    if (AArgs[0] == QLatin1String("import-cad")) return ImportCad(AArgs.mid(1), AIO);
  } catch (const Exception& X) {
    AIO.Err << "error: " << X.Message() << '\n';
    return ecFailed;
  }
  return UsageError(AIO, Name, QStringLiteral("unknown subcommand '%1'").arg(AArgs[0]));
}

}  // namespace

void RegisterLvdCommands(TDseCommandLine& ACommands) {
  ACommands.Register({Name, QStringLiteral("inspect, convert and render drawing files (.lvd)"),
                      QStringLiteral("Usage: dse lvd info FILE [--json]\n"
                                     "       dse lvd convert IN OUT --format xml|bin [--selected ID,ID...]\n"
                                     "       dse lvd render IN -o OUT.png [--size WxH] [--margin N]\n"
                                     "       dse lvd import-cad IN.dxf OUT.lvd [--format xml|bin] [--progress] [--region N]\n"
                                     "\n"
                                     "import-cad reads an ASCII DXF file (R12 to current) into a drawing: layers,\n"
                                     "blocks, lines, arcs, circles, polylines, splines, ellipses, points, texts,\n"
                                     "solids and hatch boundaries, in millimetres. --progress prints the progress\n"
                                     "on stderr. DWG and binary DXF files are refused.\n"
                                     "\n"
                                     "Files in either form load (the form is detected). A file that does not load\n"
                                     "prints the drawing error on stderr and exits with 1.\n"),
                      RunLvd});
}
