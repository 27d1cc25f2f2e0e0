#include "MZTBarInfoType.h"

#include <vector>

namespace {

const char* const Names[BarLevelCount] = {
    "bltUnknown", "bltLevel1", "bltLevel2", "bltLevel3", "bltLevel4", "bltLevel5", "bltLevel6", "bltLevel7",
    "bltLevel8", "bltG250", "bltG460", "bltG460Type1", "bltG460Type2", "bltG485", "bltG485Deformed", "bltG500",
    "bltG500Type1", "bltG500Type2", "bltSD280", "bltSD420", "bltSD280W", "bltSD420W", "bltSD490", "bltHSD280",
    "bltHSD420", "bltHSD280W", "bltHSD420W", "bltHSD490", "bltPlaceholder", "bltBJTP24", "bltBJTP40", "bltBJTP50",
    "bltHBJTP24", "bltHBJTP40", "bltHBJTP50", "bltBJTD24", "bltBJTD40", "bltBJTD50", "bltHBJTD24", "bltHBJTD40",
    "bltHBJTD50", "bltPlaceholder_P", "bltSR24", "bltSR40", "bltSR50", "bltHSR24", "bltHSR40", "bltHSR50",
    "bltSD24", "bltSD40", "bltSD50", "bltHSD24", "bltHSD40", "bltHSD50", "bltFe415_T", "bltFe500_T", "bltFe550_T",
    "bltGradeI", "bltGradeII", "bltFe415_Y", "bltFe500_Y", "bltFe550_Y", "bltPlaceHolderIN_T", "bltPlaceHolderIN_Y",
    "bltPlaceHolderIN_Fai", "bltGrade33", "bltGrade40", "bltGrade60", "bltGrade75", "bltHGrade33", "bltHGrade40",
    "bltHGrade60", "bltHGrade75", "bltPlaceHolderPH_Fai", "bltG500_EU", "bltG460_EU", "bltG250_EU", "bltBJTP28",
    "bltBJTP30", "bltBJTD28", "bltBJTD30", "bltBJTD35", "bltBJTD42A", "bltBJTD42B", "bltBJTD52", "bltBJTD55",
    "bltBJTD70"};

// One row per level. Hoop variants carry "环" before the grade.
const char* const Texts[BarLevelCount] = {
    "X", "A", "B", "C", "D", "L", "N", " ", " ",                               // unknown, levels 1-8
    "R", "W", "Y", "T", "H", "D", "NW", "NY", "NT",                            // 250 .. 500 type 2
    "SD280", "SD420", "SD280W", "SD420W", "SD490",                              // SD series
    "环SD280", "环SD420", "环SD280W", "环SD420W", "环SD490",
    "D",                                                                        // deformed sign
    "BJTP-24", "BJTP-40", "BJTP-50", "环BJTP-24", "环BJTP-40", "环BJTP-50",
    "BJTD-24", "BJTD-40", "BJTD-50", "环BJTD-24", "环BJTD-40", "环BJTD-50",
    "Ø",                                                                        // plain sign
    "SR24", "SR40", "SR50", "环SR24", "环SR40", "环SR50",
    "SD24", "SD40", "SD50", "环SD24", "环SD40", "环SD50",
    "Fe415(T)", "Fe500(T)", "Fe550(T)", "Grade I", "Grade II", "Fe415(Y)", "Fe500(Y)", "Fe550(Y)",
    "T", "Y", "Ø",
    "Grade 33", "Grade 40", "Grade 60", "Grade 75", "环Grade 33", "环Grade 40", "环Grade 60", "环Grade 75",
    "Ø",
    "H", "T", "R",                                                              // EU
    "BJTP-28", "BJTP-30", "BJTD-28", "BJTD-30", "BJTD-35", "BJTD-42A", "BJTD-42B", "BJTD-52", "BJTD-55",
    "BJTD-70"};

std::vector<TMZTBarLevel> LevelsOf(int ACode) {
  std::vector<TMZTBarLevel> R;
  auto Range = [&R](TMZTBarLevel A, TMZTBarLevel B) {
    for (int I = A; I <= B; ++I) R.push_back(TMZTBarLevel(I));
  };
  switch (ACode) {
    case 0: case 2: case 3: case 9: case 10: case 11: Range(bltG250, bltG500Type2); break;
    case 4: case 5: Range(bltSD280, bltHSD490); break;
    case 6: Range(bltPlaceholder, bltPlaceholder_P); break;
    case 7:
      R = {bltPlaceholder, bltPlaceholder_P};
      Range(bltSR24, bltHSD50);
      break;
    case 8: Range(bltFe415_T, bltPlaceHolderIN_Fai); break;
    case 13: Range(bltGrade33, bltPlaceHolderPH_Fai); break;
    case 20: Range(bltG500_EU, bltG250_EU); break;
    default: Range(bltLevel1, bltLevel6); break;
  }
  return R;
}

}  // namespace

const char* BarLevelName(TMZTBarLevel ALevel) {
  return (ALevel >= 0 && ALevel < BarLevelCount) ? Names[ALevel] : Names[0];
}

QString BarLevelText(TMZTBarLevel ALevel) {
  return QString::fromUtf8((ALevel >= 0 && ALevel < BarLevelCount) ? Texts[ALevel] : Texts[0]);
}

bool BarLevelFromName(const QString& AName, TMZTBarLevel& ALevel) {
  for (int I = 0; I < BarLevelCount; ++I)
    if (AName == QLatin1String(Names[I])) {
      ALevel = TMZTBarLevel(I);
      return true;
    }
  return false;
}

bool BarLevelIsOneLetter(int ACode) {
  switch (ACode) {
    case 0: case 2: case 3: case 4: case 5: case 6: case 7: case 8: case 9: case 10: case 11: case 13: case 20:
      return false;
    default: return true;
  }
}

TMZTBarLevel FindBarLevel(const QString& ALevelText, int ACode) {
  if (BarLevelIsOneLetter(ACode)) {
    // The first letter among A, B, C, D, L, N and X.
    const QString L = ALevelText.left(1).toUpper();
    if (L == QLatin1String("X")) return bltUnknown;
    for (const TMZTBarLevel V : LevelsOf(ACode))
      if (L == BarLevelText(V)) return V;
    return bltUnknown;
  }
  for (const TMZTBarLevel V : LevelsOf(ACode))
    if (QString::compare(ALevelText, BarLevelText(V), Qt::CaseInsensitive) == 0) return V;
  return bltUnknown;
}

TMZTBarLevel MatchBarLevelPrefix(const QString& AText, int ACode, int& AMatched) {
  AMatched = 0;
  TMZTBarLevel Best = bltUnknown;
  for (const TMZTBarLevel V : LevelsOf(ACode)) {
    const QString T = BarLevelText(V);
    if (T.trimmed().isEmpty() || T.size() <= AMatched) continue;
    if (AText.startsWith(T, Qt::CaseInsensitive)) {
      Best = V;
      AMatched = int(T.size());
    }
  }
  return Best;
}
