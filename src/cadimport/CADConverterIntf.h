#pragma once
// The receiving side of a CAD file's entity walk: a reader calls these while it walks
// the model space, a builder makes drawing items of them. Lengths come in drawing
// units, colours as 0x00BBGGRR, angles in radians.

#include "KRNCommon2d.h"
#include "KRNDrawFunc2d.h"
#include "KRNGeo2DTypes.h"

#include <QString>

class TKRNLines2d;
class TKRNMultiPolygon2d;

class ICADConverterIntf {
public:
  virtual ~ICADConverterIntf() = default;

  virtual void beginConvert(int AMaxCount) = 0;
  virtual void endConvert() = 0;
  virtual void buildCADLayer(const QString& ALayerName, bool AVisible, TColor AColor) = 0;
  virtual void BuildArc(const QString& ALayerName, const TKRNVector2d& ACenterPT, const TKRNVector2d& AStartPT,
                        const TKRNVector2d& AEndPT, double ARadius, TKRNArcType ALineType, int APenStyle,
                        TColor AColor, double ALineWidth, int ABlockTypeID, int ABlockID, double ACurrentScale) = 0;
  virtual void BuildCircle(const QString& ALayerName, const TKRNVector2d& ACenterPT, double ARadius, int APenStyle,
                           TColor AColor, double ALineWidth, int ABlockTypeID, int ABlockID, double ACurrentScale) = 0;
  virtual void BuildLine(const QString& ALayerName, const TKRNVector2d& AStartPT, const TKRNVector2d& AEndPT,
                         int APenStyle, TColor AColor, double ALineWidth, int ABlockTypeID, int ABlockID,
                         double ACurrentScale) = 0;
  virtual void BuildPolyLine(const QString& ALayerName, const TKRNLines2d& APolyLine, int APenStyle, TColor AColor,
                             double ALineWidth, int ABlockTypeID, int ABlockID, double ACurrentScale) = 0;
  virtual void BuildPolyLine(const QString& ALayerName, const TKRNLines2d& APolyLine, int APenStyle, TColor AColor,
                             double ALineWidth, bool AClosed, bool AIsPolyLine, int ABlockTypeID, int ABlockID,
                             double ACurrentScale) = 0;
  virtual void BuildViewportBorder(const QString& ALayerName, const TKRNLines2d& APolyLine, int APenStyle,
                                   TColor AColor, double ALineWidth, int ABlockTypeID, int ABlockID,
                                   double ACurrentScale) = 0;
  virtual void BuildHatch(const QString& ALayerName, const TKRNMultiPolygon2d& ABorderPoly, int AHatchStyle,
                          const QString& AHatchPatternData, int APenStyle, TColor AColor, double ALineWidth,
                          int ABlockTypeID, int ABlockID, double ACurrentScale, const TKRNPoint2dDynArray& AStartPts,
                          const TKRNPoint2dDynArray& AEndPts) = 0;
  virtual void BuildText(const QString& ALayerName, const QString& AText, TColor AColor, const TKRNVector2d& AInsertPT,
                         double AScale, double AHeight, double ARotationInRad, THorzAlignment AHorzAlign,
                         TVertAlignment AVertAlign, int ABlockTypeID, int ABlockID, double ACurrentScale) = 0;
  virtual void BuildCadImage(const QString& AImagePath, const TKRNVector2d& AInsertPT, double AScaleWidth,
                             double AScaleHeight, double ARotationInRad, int ABlockTypeID, int ABlockID) = 0;
  virtual void BuildComment(const QString& ALayerName, const QString& AText, const TKRNVector2d& AInsertPT,
                            const TKRNLines2d& ACommentPoly, int ABlockTypeID, int ABlockID) = 0;
  virtual void RefreshProgressBar(double APos) = 0;
  virtual double GetCurrentScale() = 0;
  virtual double GetViewportImportScale() = 0;
  virtual void SetViewportImportScale(double AImportScale) = 0;
  // Not one of the walk's own calls: a DXF POINT entity.
  virtual void BuildPoint(const QString& ALayerName, const TKRNVector2d& APoint, TColor AColor, int ABlockTypeID,
                          int ABlockID, double ACurrentScale) = 0;
};
