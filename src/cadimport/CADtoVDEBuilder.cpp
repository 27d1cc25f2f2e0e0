#include "CADtoVDEBuilder.h"

#include "VDILine.h"
#include "VDIPoint.h"
#include "VDIText.h"
#include "VectorDrawing.h"

#include <cmath>

namespace {

constexpr int kMarkSize = 8;

// The item goes onto the named layer; without such a layer it is dropped.
void AddOnLayer(TVectorDrawing& ADrawing, const QString& ALayerName, std::unique_ptr<TVectorDrawingItem> AItem) {
  TLayer* Layer = ADrawing.Layers().GetItemByName(ALayerName);
  if (!Layer || ALayerName.isEmpty())
    return;
  AItem->SetLayerRaw(Layer);
  ADrawing.Add(std::move(AItem));
}

}  // namespace

TColor TCADtoVDEBuilder::ItemColor(TColor AColor) {
  const TColor C = AColor & 0xFFFFFF;
  return C == 0 ? 0xFFFFFF : C;
}

void TCADtoVDEBuilder::beginConvert(int) { FVectorDrawing.Initialize(false); }

void TCADtoVDEBuilder::buildCADLayer(const QString& ALayerName, bool, TColor AColor) {
  if (ALayerName.isEmpty())
    return;
  TLayer* Layer = ALayerName == QLatin1String("0") ? FVectorDrawing.Layers().GetItemByName(ALayerName)
                                                   : FVectorDrawing.Layers().Add(ALayerName);
  if (Layer)
    Layer->SetColor(AColor);
}

void TCADtoVDEBuilder::BuildArc(const QString& ALayerName, const TKRNVector2d&, const TKRNVector2d& AStartPT,
                                const TKRNVector2d& AEndPT, double ARadius, TKRNArcType ALineType, int APenStyle,
                                TColor AColor, double ALineWidth, int, int, double) {
  AddOnLayer(FVectorDrawing, ALayerName,
             std::make_unique<TVectorArc>(&FVectorDrawing, 0, ItemColor(AColor), int(std::lrint(ALineWidth)),
                                          APenStyle, kMarkSize, kMarkSize, msNone, msNone, AStartPT, AEndPT, ARadius,
                                          ALineType));
}

void TCADtoVDEBuilder::BuildCircle(const QString& ALayerName, const TKRNVector2d& ACenterPT, double ARadius,
                                   int APenStyle, TColor AColor, double ALineWidth, int, int, double) {
  AddOnLayer(FVectorDrawing, ALayerName,
             std::make_unique<TVectorCircle>(&FVectorDrawing, 0, ItemColor(AColor), int(std::lrint(ALineWidth)),
                                             APenStyle, ACenterPT, ARadius));
}

void TCADtoVDEBuilder::BuildLine(const QString& ALayerName, const TKRNVector2d& AStartPT, const TKRNVector2d& AEndPT,
                                 int APenStyle, TColor AColor, double ALineWidth, int, int, double) {
  AddOnLayer(FVectorDrawing, ALayerName,
             std::make_unique<TVectorLine>(&FVectorDrawing, 0, ItemColor(AColor), int(std::lrint(ALineWidth)),
                                           APenStyle, kMarkSize, kMarkSize, msNone, msNone, AStartPT, AEndPT));
}

void TCADtoVDEBuilder::BuildPolyLine(const QString& ALayerName, const TKRNLines2d& APolyLine, int APenStyle,
                                     TColor AColor, double ALineWidth, int, int, double) {
  auto Item = std::make_unique<TVectorPolyline>(&FVectorDrawing);
  Item->SetLineFields(0, ItemColor(AColor), int(std::lrint(ALineWidth)), APenStyle);
  Item->SetStartMarkSize(kMarkSize);
  Item->SetEndMarkSize(kMarkSize);
  Item->SetPolyline(APolyLine);
  AddOnLayer(FVectorDrawing, ALayerName, std::move(Item));
}

void TCADtoVDEBuilder::BuildText(const QString& ALayerName, const QString& AText, TColor AColor,
                                 const TKRNVector2d& AInsertPT, double, double AHeight, double ARotationInRad,
                                 THorzAlignment AHorzAlign, TVertAlignment AVertAlign, int, int, double) {
  AddOnLayer(FVectorDrawing, ALayerName,
             std::make_unique<TVectorText>(&FVectorDrawing, 0, ItemColor(AColor), AText, AInsertPT,
                                           double(float(ARotationInRad)), QStringLiteral("宋体"),
                                           int(std::lrint(AHeight)), 0, AHorzAlign, AVertAlign, true, 0, QString()));
}

void TCADtoVDEBuilder::BuildPoint(const QString& ALayerName, const TKRNVector2d& APoint, TColor AColor, int, int,
                                  double) {
  AddOnLayer(FVectorDrawing, ALayerName,
             std::make_unique<TVectorPoint>(&FVectorDrawing, 0, ItemColor(AColor), APoint, 4, psPoint));
}
