#include "DseCommands.h"

#include "MZTBarInfo.h"
#include "MZTBarInfoConst.h"

#include <QJsonDocument>
#include <QJsonObject>

namespace {

const QString Name = QStringLiteral("barinfo");

int RunBarInfo(const QStringList& AArgs, TDseIO& AIO) {
  QString CodeText, DictFile, Text;
  bool HaveText = false;
  for (int I = 0; I < AArgs.size(); ++I) {
    const QString& A = AArgs[I];
    if (A == QLatin1String("--code") && I + 1 < AArgs.size()) CodeText = AArgs[++I];
    else if (A == QLatin1String("--dict") && I + 1 < AArgs.size()) DictFile = AArgs[++I];
    else if (A.startsWith(QLatin1String("--"))) return UsageError(AIO, Name, QStringLiteral("unknown option '%1'").arg(A));
    else if (!HaveText) {
      Text = A;
      HaveText = true;
    } else return UsageError(AIO, Name, QStringLiteral("unexpected argument '%1'").arg(A));
  }
  int Code;
  if (CodeText.isEmpty() || !TryStrToInt(CodeText, Code) || Code < 0)
    return UsageError(AIO, Name, QStringLiteral("--code needs a bar standard code (a whole number)"));
  if (!HaveText) return UsageError(AIO, Name, QStringLiteral("missing the notation text"));
  try {
    SetBarStandardCode(Code);
    SetDiamDicts(DictFile.isEmpty() ? nullptr : TMZTDiamDicts::LoadFromFile(DictFile));
    TDrawSetBarInfo Info;
    Info.SetAsString(Text);
    auto OrNull = [](qint32 V, qint32 Null) { return V == Null ? QJsonValue(QJsonValue::Null) : QJsonValue(V); };
    QJsonObject O;
    O.insert(QStringLiteral("level"), QString::fromLatin1(BarLevelName(Info.BarLevel())));
    O.insert(QStringLiteral("levelText"), Info.IsNull() ? QString() : BarLevelText(Info.BarLevel()));
    O.insert(QStringLiteral("diameter"), Info.IsNull() ? QJsonValue(QJsonValue::Null) : QJsonValue(Info.Diameter()));
    O.insert(QStringLiteral("count"), OrNull(Info.Count(), Info.GetNullCount()));
    O.insert(QStringLiteral("space1"), OrNull(Info.Space1(), Info.NullSpace1()));
    O.insert(QStringLiteral("space2"), OrNull(Info.Space2(), Info.NullSpace2()));
    O.insert(QStringLiteral("text"), Info.AsString());
    AIO.Out << QString::fromUtf8(QJsonDocument(O).toJson(QJsonDocument::Compact)) << '\n';
    return ecOk;
  } catch (const Exception& X) {
    AIO.Err << "error: " << X.Message() << '\n';
    return ecFailed;
  }
}

}  // namespace

void RegisterBarInfoCommands(TDseCommandLine& ACommands) {
  ACommands.Register(
      {Name, QStringLiteral("parse a bar notation as a draw set stores it"),
       QStringLiteral("Usage: dse barinfo --code N [--dict FILE] TEXT\n"
                      "\n"
                      "Parses TEXT (such as A12, 2A12 or A8@100/200) under bar standard code N and prints one\n"
                      "JSON object: level, levelText, diameter, count, space1, space2 (null when not given)\n"
                      "and text (the notation formatted back).\n"
                      "  --dict FILE  a diameter dictionary in JSON: {\"name\": ..., \"entries\": [{\"diameter\": 12,\n"
                      "               \"barNo\": \"#4\", \"id\": 12, \"levels\": [\"bltLevel1\", ...]}]}; barNo, id\n"
                      "               and levels are optional. data/diameters-metric.json holds 6-50 mm.\n"
                      "A notation that does not parse prints 'error: MESSAGE' on stderr and exits with 1.\n"),
       RunBarInfo});
}
