#pragma once
// Walks a read DXF model space into a converter: blocks expanded, colours, line types
// and layers resolved, curves the converter cannot take as they are turned into points.

#include "DxfReader.h"

namespace dxf {
struct TDoc;
void WalkDoc(const TDoc& ADoc, ICADConverterIntf& AConverter, const TDxfOptions& AOptions, TDxfSummary& ASummary);
// Millimetres per unit of a $INSUNITS code (1 for unitless and unknown codes).
double UnitScale(int AInsUnits);
}  // namespace dxf
