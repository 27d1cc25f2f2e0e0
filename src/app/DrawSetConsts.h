#pragma once
// Run-wide settings fixed by the editor's entry point from the host's region code
// and read by the draw-set model.

#include <QString>

#include <memory>

extern int RegionCode;
extern int CalcRuleID;
extern QString CalcProgramFieldName;
extern QString VectorDrawingFieldName;
extern QString BarInfoFieldName;

// The calculation rule of a region; -1 for a region without one.
int CalcRuleIDOfRegion(int ARegionCode);
// The region's column names; empty where the region has no column of its own
// (the drawing column falls back to "VectorDrawing_Bs").
QString CalcProgramFieldNameOfRegion(int ARegionCode);
QString VectorDrawingFieldNameOfRegion(int ARegionCode);
QString BarInfoFieldNameOfRegion(int ARegionCode);

// Sets all five settings from a region code.
void SetRegionSettings(int ARegionCode);

class IMZTDiamDicts;

// Holds the run-wide settings and the diameter dictionary of one editing run and puts
// the previous ones back when the run ends, however it ends.
class TRegionScope {
public:
  TRegionScope(int ARegionCode, std::shared_ptr<IMZTDiamDicts> ADiamDicts);
  ~TRegionScope();
  TRegionScope(const TRegionScope&) = delete;
  TRegionScope& operator=(const TRegionScope&) = delete;

private:
  int FOldRegion, FOldRuleID;
  QString FOldCalcProgram, FOldDrawing, FOldBarInfo;
  std::shared_ptr<IMZTDiamDicts> FOldDicts;
};
