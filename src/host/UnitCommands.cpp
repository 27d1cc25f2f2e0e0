#include "DseCommands.h"

#include "OVRAUnitConvertor.h"
#include "SysUtils.h"

#include <cmath>

namespace {

const QString Name = QStringLiteral("unit");

int FootToMm(const QStringList& AArgs, TDseIO& AIO) {
  if (AArgs.size() != 1) return UsageError(AIO, Name, QStringLiteral("foot-to-mm takes one text"));
  TFootFormat F;
  double Mm;
  if (!TOVRAUnitConvert::CheckFoot(AArgs[0], F) || !TOVRAUnitConvert::ConvertFootToMm(AArgs[0], Mm, F)) {
    AIO.Err << QStringLiteral("error: '%1' is not a valid foot value\n").arg(AArgs[0]);
    return ecFailed;
  }
  if (!std::isfinite(Mm)) {
    AIO.Err << QStringLiteral("error: '%1' is too large to convert\n").arg(AArgs[0]);
    return ecFailed;
  }
  AIO.Out << FloatToStr(Mm) << '\n';
  return ecOk;
}

int MmToFoot(const QStringList& AArgs, TDseIO& AIO) {
  QString Value, Format;
  for (int I = 0; I < AArgs.size(); ++I) {
    if (AArgs[I] == QLatin1String("--format") && I + 1 < AArgs.size()) Format = AArgs[++I];
    else if (Value.isEmpty()) Value = AArgs[I];
    else return UsageError(AIO, Name, QStringLiteral("unexpected argument '%1'").arg(AArgs[I]));
  }
  if (Value.isEmpty() || Format.isEmpty()) return UsageError(AIO, Name, QStringLiteral("mm-to-foot needs VALUE and --format NAME"));
  int F = -1;
  for (int I = 0; I < 5; ++I)
    if (Format == QLatin1String(NFootFormat[I])) F = I;
  if (F < 0) return UsageError(AIO, Name, QStringLiteral("unknown format '%1'").arg(Format));
  double Mm;
  if (!TryStrToFloat(Value, Mm) || Mm < 0) {
    AIO.Err << QStringLiteral("error: '%1' is not a valid millimetre value\n").arg(Value);
    return ecFailed;
  }
  // Feet and inches are counted in 32-bit integers: beyond this they would wrap.
  constexpr double MaxMm = 1e11;
  if (Mm > MaxMm) {
    AIO.Err << QStringLiteral("error: %1 mm is out of range (at most %2 mm)\n").arg(Value, FloatToStr(MaxMm));
    return ecFailed;
  }
  AIO.Out << TOVRAUnitConvert::ConvertMmToFoot(Mm, TFootFormat(F)) << '\n';
  return ecOk;
}

int CheckFoot(const QStringList& AArgs, TDseIO& AIO) {
  if (AArgs.size() != 1) return UsageError(AIO, Name, QStringLiteral("check-foot takes one text"));
  TFootFormat F;
  if (!TOVRAUnitConvert::CheckFoot(AArgs[0], F)) {
    AIO.Out << "invalid\n";
    return ecFailed;
  }
  AIO.Out << NFootFormat[F] << '\n';
  return ecOk;
}

int RunUnit(const QStringList& AArgs, TDseIO& AIO) {
  if (AArgs.isEmpty()) return UsageError(AIO, Name, QStringLiteral("missing subcommand"));
  const QString Sub = AArgs[0];
  const QStringList Rest = AArgs.mid(1);
  if (Sub == QLatin1String("foot-to-mm")) return FootToMm(Rest, AIO);
  if (Sub == QLatin1String("mm-to-foot")) return MmToFoot(Rest, AIO);
  if (Sub == QLatin1String("check-foot")) return CheckFoot(Rest, AIO);
  return UsageError(AIO, Name, QStringLiteral("unknown subcommand '%1'").arg(Sub));
}

}  // namespace

void RegisterUnitCommands(TDseCommandLine& ACommands) {
  ACommands.Register({Name, QStringLiteral("convert between millimetres and feet and inches"),
                      QStringLiteral("Usage: dse unit foot-to-mm TEXT\n"
                                     "       dse unit mm-to-foot VALUE --format NAME\n"
                                     "       dse unit check-foot TEXT\n"
                                     "\n"
                                     "Foot texts: 5-11 3/8 (ffHyphen), 0511 (ffFourLength), 5'-11 3/8\" (ffHyphenExt),\n"
                                     "5.5 (ffFloatNumber, decimal feet), 5-11 (ffNumInlineNum). Fractions are eighths.\n"
                                     "check-foot prints the format name, or 'invalid' and exits with 1.\n"),
                      RunUnit});
}
