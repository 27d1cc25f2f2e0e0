#pragma once
// Makes drawing items of a CAD walk's calls: lines, arcs, circles, polylines, texts and
// points on layers named by the walk. What the drawing cannot hold (hatches, images,
// comments, viewport borders) is left out.

#include "CADConverterIntf.h"

class TVectorDrawing;
class TLayer;

class TCADtoVDEBuilder : public ICADConverterIntf {
public:
  explicit TCADtoVDEBuilder(TVectorDrawing& AVectorDrawing) : FVectorDrawing(AVectorDrawing) {}

  // Empties the drawing.
  void beginConvert(int AMaxCount) override;
  void endConvert() override {}
  // Adds the layer unless it is "0" or has no name, then gives it AColor.
  void buildCADLayer(const QString& ALayerName, bool AVisible, TColor AColor) override;
  void BuildArc(const QString& ALayerName, const TKRNVector2d& ACenterPT, const TKRNVector2d& AStartPT,
                const TKRNVector2d& AEndPT, double ARadius, TKRNArcType ALineType, int APenStyle, TColor AColor,
                double ALineWidth, int ABlockTypeID, int ABlockID, double ACurrentScale) override;
  void BuildCircle(const QString& ALayerName, const TKRNVector2d& ACenterPT, double ARadius, int APenStyle,
                   TColor AColor, double ALineWidth, int ABlockTypeID, int ABlockID, double ACurrentScale) override;
  void BuildLine(const QString& ALayerName, const TKRNVector2d& AStartPT, const TKRNVector2d& AEndPT, int APenStyle,
                 TColor AColor, double ALineWidth, int ABlockTypeID, int ABlockID, double ACurrentScale) override;
  void BuildPolyLine(const QString& ALayerName, const TKRNLines2d& APolyLine, int APenStyle, TColor AColor,
                     double ALineWidth, int ABlockTypeID, int ABlockID, double ACurrentScale) override;
  // This form makes nothing.
  void BuildPolyLine(const QString&, const TKRNLines2d&, int, TColor, double, bool, bool, int, int, double) override {}
  void BuildViewportBorder(const QString&, const TKRNLines2d&, int, TColor, double, int, int, double) override {}
  void BuildHatch(const QString&, const TKRNMultiPolygon2d&, int, const QString&, int, TColor, double, int, int, double,
                  const TKRNPoint2dDynArray&, const TKRNPoint2dDynArray&) override {}
  void BuildText(const QString& ALayerName, const QString& AText, TColor AColor, const TKRNVector2d& AInsertPT,
                 double AScale, double AHeight, double ARotationInRad, THorzAlignment AHorzAlign,
                 TVertAlignment AVertAlign, int ABlockTypeID, int ABlockID, double ACurrentScale) override;
  void BuildCadImage(const QString&, const TKRNVector2d&, double, double, double, int, int) override {}
  void BuildComment(const QString&, const QString&, const TKRNVector2d&, const TKRNLines2d&, int, int) override {}
  void RefreshProgressBar(double) override {}
  double GetCurrentScale() override { return 1.0; }
  double GetViewportImportScale() override { return 1.0; }
  void SetViewportImportScale(double) override {}
  void BuildPoint(const QString& ALayerName, const TKRNVector2d& APoint, TColor AColor, int ABlockTypeID, int ABlockID,
                  double ACurrentScale) override;

  // The colour an item gets: the low 24 bits, black made white.
  static TColor ItemColor(TColor AColor);

private:
  TVectorDrawing& FVectorDrawing;
};
