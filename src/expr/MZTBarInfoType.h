#pragma once
// Steel levels of bar notation: the enumeration, its text table, and which levels
// each bar standard code may name.

#include <QString>

enum TMZTBarLevel {
  bltUnknown, bltLevel1, bltLevel2, bltLevel3, bltLevel4, bltLevel5, bltLevel6, bltLevel7, bltLevel8,
  bltG250, bltG460, bltG460Type1, bltG460Type2, bltG485, bltG485Deformed, bltG500, bltG500Type1, bltG500Type2,
  bltSD280, bltSD420, bltSD280W, bltSD420W, bltSD490, bltHSD280, bltHSD420, bltHSD280W, bltHSD420W, bltHSD490,
  bltPlaceholder, bltBJTP24, bltBJTP40, bltBJTP50, bltHBJTP24, bltHBJTP40, bltHBJTP50, bltBJTD24, bltBJTD40,
  bltBJTD50, bltHBJTD24, bltHBJTD40, bltHBJTD50, bltPlaceholder_P, bltSR24, bltSR40, bltSR50, bltHSR24, bltHSR40,
  bltHSR50, bltSD24, bltSD40, bltSD50, bltHSD24, bltHSD40, bltHSD50, bltFe415_T, bltFe500_T, bltFe550_T,
  bltGradeI, bltGradeII, bltFe415_Y, bltFe500_Y, bltFe550_Y, bltPlaceHolderIN_T, bltPlaceHolderIN_Y,
  bltPlaceHolderIN_Fai, bltGrade33, bltGrade40, bltGrade60, bltGrade75, bltHGrade33, bltHGrade40, bltHGrade60,
  bltHGrade75, bltPlaceHolderPH_Fai, bltG500_EU, bltG460_EU, bltG250_EU, bltBJTP28, bltBJTP30, bltBJTD28,
  bltBJTD30, bltBJTD35, bltBJTD42A, bltBJTD42B, bltBJTD52, bltBJTD55, bltBJTD70
};
constexpr int BarLevelCount = 87;

// "bltLevel1", ...
const char* BarLevelName(TMZTBarLevel ALevel);
// The text form: "A", "R", "SD280", "环BJTP-24", "Ø", ...
QString BarLevelText(TMZTBarLevel ALevel);
bool BarLevelFromName(const QString& AName, TMZTBarLevel& ALevel);

// Whether the code reads the level as its first character only (code 1 and the
// codes outside the table).
bool BarLevelIsOneLetter(int ACode);
// The level whose text is ALevelText, among those the code may name; bltUnknown if none.
TMZTBarLevel FindBarLevel(const QString& ALevelText, int ACode);
// The longest level text of the code that begins AText, ignoring case; its length
// goes to AMatched (0 when none).
TMZTBarLevel MatchBarLevelPrefix(const QString& AText, int ACode, int& AMatched);
