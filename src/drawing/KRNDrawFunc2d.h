#pragma once
// Rendering primitives: geometry painted through a view transform onto a QPainter
// over a QImage (Format_RGB32, antialiasing off). Each call sets its raster mode
// and pen for its own duration and restores the painter. Colours are 0x00BBGGRR.
// A width at 0 or above is in world units; a negative width is pixels.

#include "KRNCoordTrans.h"
#include "KRNGeo2DTypes.h"
#include "KRNPolygon2d.h"

#include <QFont>
#include <QString>
#include <QStringList>

#include <array>
#include <memory>
#include <vector>

class QPainter;

using TColor = quint32;

enum TDrawMode { dmCopy, dmXOR, dmNOP, dmNot };
// Pen styles as the files store them.
enum TPenStyle { psSolid, psDash, psDot, psDashDot, psDashDotDot, psClear, psInsideFrame };
// Brush styles: 0 solid, 1 clear, 2 to 7 the hatches.
enum TBrushStyle { bsSolid, bsClear, bsHorizontal, bsVertical, bsFDiagonal, bsBDiagonal, bsCross, bsDiagCross };
// Font style bits.
enum TFontStyleBits { fsBold = 1, fsItalic = 2 };

QColor ToQColor(TColor AColor);

class TKRNDrawFunc2d {
public:
  static TColor ElasticColor();
  static void SetElasticColor(TColor AColor);

  // The device width of a world width, or the pixels of a negative one.
  static int DeviceWidth(const TKRNCoordTrans& ATrans, double ALineWidth);

  static void DrawLine(QPainter& AHDC, const TKRNCoordTrans& ATrans, const TKRNVector2d& AStartPt,
                       const TKRNVector2d& AEndPt, double ALineWidth, double ACenterLineOff, int ALineStyle,
                       TColor AColor, TDrawMode ADrawMode, int AFillMode = bsSolid);
  static void DrawArc(QPainter& AHDC, const TKRNCoordTrans& ATrans, const TKRNVector2d& AStartPt,
                      const TKRNVector2d& AEndPt, double ARadius, TKRNArcType AArcType, double ALineWidth,
                      double ACenterLineOff, int ALineStyle, TColor AColor, TDrawMode ADrawMode);
  static void DrawCircle(QPainter& AHDC, const TKRNCoordTrans& ATrans, const TKRNVector2d& ACenterPt, double ARadius,
                         double ALineWidth, int ALineStyle, TColor AColor, TDrawMode ADrawMode);
  static void DrawDiagCross(QPainter& AHDC, const TKRNCoordTrans& ATrans, const TKRNVector2d& AInsertPt,
                            double ALineLen, int ALineWidthDC, int ALineStyle, TColor AColor, TDrawMode ADrawMode);
  static void DrawPixel(QPainter& AHDC, const TKRNCoordTrans& ATrans, const TKRNVector2d& APoint, TColor AColor,
                        TDrawMode ADrawMode);
  static void DrawPolyline(QPainter& AHDC, const TKRNCoordTrans& ATrans, const TKRNPoint2dDynArray& APoints,
                           double ALineWidth, int ALineStyle, TColor AColor, TDrawMode ADrawMode);
  static void DrawXLine(QPainter& AHDC, const TKRNCoordTrans& ATrans, const TKRNCustomLine2d& ALine,
                        double ALineWidth, int ALineStyle, TColor AColor, TDrawMode ADrawMode);
  static void DrawXPolyline(QPainter& AHDC, const TKRNCoordTrans& ATrans, const TKRNLines2d& ALines,
                            double ALineWidth, int ALineStyle, TColor AColor, TDrawMode ADrawMode);
  static void DrawXPoly(QPainter& AHDC, const TKRNCoordTrans& ATrans, const TKRNCustomPolygon2d& APoly,
                        double ALineWidth, int ALineStyle, TColor AColor, TDrawMode ADrawMode);
  static void DrawRect(QPainter& AHDC, const TKRNCoordTrans& ATrans, const TKRNBox2d& ABox, double ALineWidth,
                       int ALineStyle, TColor AColor, TDrawMode ADrawMode);
  // A device rectangle in the elastic colour, XOR.
  static void DrawRectElastic(QPainter& AHDC, const TKRNPoint2i& AStart, const TKRNPoint2i& AEnd, int ALineStyle);
  // Fills; an outline of width AOutlineWidth (pixels, below 0 for none) in AOutlineColor.
  static void FillCircle(QPainter& AHDC, const TKRNCoordTrans& ATrans, const TKRNVector2d& ACenterPt, double ARadius,
                         TColor AFillColor, TDrawMode ADrawMode, int AFillMode = bsSolid, int AOutlineWidth = -1,
                         int AOutlineStyle = psSolid, TColor AOutlineColor = 0);
  static void FillRect(QPainter& AHDC, const TKRNCoordTrans& ATrans, const TKRNBox2d& ABox, TColor AFillColor,
                       TDrawMode ADrawMode, int AFillMode = bsSolid);
  static void FillXPoly(QPainter& AHDC, const TKRNCoordTrans& ATrans, const TKRNCustomPolygon2d& APoly,
                        TColor AFillColor, TDrawMode ADrawMode, int AFillMode = bsSolid, int AOutlineWidth = -1,
                        int AOutlineStyle = psSolid, TColor AOutlineColor = 0);
  // An arrow head of AArrowLen (world) and half-angle AArrowAngle at the end of the line.
  static void DrawArrow(QPainter& AHDC, const TKRNCoordTrans& ATrans, const TKRNCustomLine2d& ALine,
                        double ALineWidth, double AArrowLen, double AArrowAngle, TColor AColor, TDrawMode ADrawMode);

  // Text scaled with the drawing: AHeight in world units, lines split at CR LF.
  static void DrawScaleTextVII(QPainter& AHDC, const TKRNCoordTrans& ATrans, const QString& AText,
                               const TKRNVector2d& AInsertPt, double AAngle, double AHeight,
                               THorzAlignment AHorzAlignment, TVertAlignment AVertAlignment, const QString& AFontName,
                               int AFontStyle, TColor AColor, TColor ABackColor, bool ATransparent,
                               TDrawMode ADrawMode = dmCopy);
  static void DrawScaleWrapTextVII(QPainter& AHDC, const TKRNCoordTrans& ATrans, const QString& AText,
                                   const TKRNVector2d& AInsertPt, double AAngle, double AHeight,
                                   THorzAlignment AHorzAlignment, TVertAlignment AVertAlignment,
                                   const QString& AFontName, int AFontStyle, TColor AColor, TColor ABackColor,
                                   bool ATransparent, TDrawMode ADrawMode = dmCopy);
  // The corners of a text's box: width AWidth, line height AHeight, ALineCount lines.
  static std::array<TKRNVector2d, 4> GetDrawTextCorners(const TKRNVector2d& AInsertPt, double AAngle, double AWidth,
                                                        double AHeight, int ALineCount, THorzAlignment AHorzAlignment,
                                                        TVertAlignment AVertAlignment);
  // The same box as a polygon.
  static std::unique_ptr<TKRNPolygon2d> GetDrawTextPoly(const TKRNVector2d& AInsertPt, double AAngle, double AWidth, double AHeight,
                                       int ALineCount, THorzAlignment AHorzAlignment, TVertAlignment AVertAlignment);
  static int GetFontHeight(QPainter& AHDC, int AFontSize);
  // Width of one line in a font of AHeight pixels; measured once per font at a
  // reference size and scaled, so results do not depend on hinting.
  static double GetSingleTextWidth(const QString& AText, const QString& AFontName, int AFontStyle, double AHeight);
  static double GetWrappedTextMaxWidth(const QString& AText, const QString& AFontName, int AFontStyle, double AHeight);
  static QStringList SplitLines(const QString& AText);
  static std::unique_ptr<TKRNPolygon2d> RectToPoly(const TKRNBox2d& ARect);

  // Moves the ends of AEdge inwards by the two lengths (to the middle when they meet).
  static void TrimEdge(TKRNCustomLine2d& AEdge, double AStartTrim, double AEndTrim);

  // Device points of a segment, arcs flattened to the screen's resolution.
  static void AppendDevicePoints(const TKRNCoordTrans& ATrans, const TKRNCustomLine2d& AEdge,
                                 std::vector<QPointF>& APoints, bool AWithStart);
  // Font measurements kept for text widths (bounded).
  static qsizetype CachedFontMetrics();
  static qsizetype CachedTextWidths();
  static QFont MakeFont(const QString& AFontName, int AFontStyle, int APixelSize);
};
