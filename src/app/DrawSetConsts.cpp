#include "DrawSetConsts.h"

#include "MZTDiamDictsIntf.h"

int RegionCode = 1;
int CalcRuleID = 0;
QString CalcProgramFieldName = QStringLiteral("CalcProgram_Chs");
QString VectorDrawingFieldName = QStringLiteral("VectorDrawing_Chs");
QString BarInfoFieldName = QStringLiteral("BarInfo_CHS");

int CalcRuleIDOfRegion(int ARegionCode) {
  switch (ARegionCode) {
    case 0: case 3: case 11: return 8;
    case 1: return 0;
    case 2: return 16;
    case 4: case 5: return 9;
    case 6: return 10;
    case 7: return 11;
    case 8: return 12;
    case 9: return 13;
    case 10: return 15;
    case 13: return 17;
    case 20: return 18;
    default: return -1;
  }
}

namespace {

// The suffix of the script and bar-information columns; the drawing column differs
// for 4 and 5 and has a catch-all, so it has its own table below.
const char* SuffixOf(int ARegionCode, bool ABarInfo) {
  switch (ARegionCode) {
    case 1: return ABarInfo ? "CHS" : "Chs";
    case 20: return "EU";
    case 0: case 2: case 3: case 9: case 10: case 11: return "Bs";
    case 6: return "ID";
    case 7: return "TH";
    case 13: return "PH";
    case 4: case 5: return ABarInfo ? "CHT" : "Cht";
    case 8: return "IN";
    default: return nullptr;
  }
}

}  // namespace

QString CalcProgramFieldNameOfRegion(int ARegionCode) {
  const char* S = SuffixOf(ARegionCode, false);
  return S ? QStringLiteral("CalcProgram_") + QLatin1String(S) : QString();
}

QString BarInfoFieldNameOfRegion(int ARegionCode) {
  const char* S = SuffixOf(ARegionCode, true);
  return S ? QStringLiteral("BarInfo_") + QLatin1String(S) : QString();
}

QString VectorDrawingFieldNameOfRegion(int ARegionCode) {
  switch (ARegionCode) {
    case 1: return QStringLiteral("VectorDrawing_Chs");
    case 20: return QStringLiteral("VectorDrawing_EU");
    case 6: return QStringLiteral("VectorDrawing_ID");
    case 7: return QStringLiteral("VectorDrawing_TH");
    case 13: return QStringLiteral("VectorDrawing_PH");
    case 8: return QStringLiteral("VectorDrawing_IN");
    default: return QStringLiteral("VectorDrawing_Bs");
  }
}

void SetRegionSettings(int ARegionCode) {
  RegionCode = ARegionCode;
  CalcProgramFieldName = CalcProgramFieldNameOfRegion(ARegionCode);
  VectorDrawingFieldName = VectorDrawingFieldNameOfRegion(ARegionCode);
  BarInfoFieldName = BarInfoFieldNameOfRegion(ARegionCode);
  CalcRuleID = CalcRuleIDOfRegion(ARegionCode);
}

TRegionScope::TRegionScope(int ARegionCode, std::shared_ptr<IMZTDiamDicts> ADiamDicts)
    : FOldRegion(RegionCode),
      FOldRuleID(CalcRuleID),
      FOldCalcProgram(CalcProgramFieldName),
      FOldDrawing(VectorDrawingFieldName),
      FOldBarInfo(BarInfoFieldName),
      FOldDicts(DiamDicts()) {
  SetRegionSettings(ARegionCode);
  SetDiamDicts(std::move(ADiamDicts));
}

TRegionScope::~TRegionScope() {
  SetDiamDicts(FOldDicts);
  RegionCode = FOldRegion;
  CalcRuleID = FOldRuleID;
  CalcProgramFieldName = FOldCalcProgram;
  VectorDrawingFieldName = FOldDrawing;
  BarInfoFieldName = FOldBarInfo;
}
