#pragma once
#include "VDIHatch.h"
#include "VDILine.h"
#include "VDIPoint.h"
#include "VDIText.h"
#include "VectorDrawing.h"

#include <QImage>
#include <QPainter>

#include <gtest/gtest.h>

inline TVectorLine* AddLine(TVectorDrawing& D, TKRNVector2d A, TKRNVector2d B, int AWidth = 0) {
  auto* L = new TVectorLine(&D, 0, 0x00FF00, AWidth, psSolid, 0, 0, msNone, msNone, A, B);
  D.Add(std::unique_ptr<TVectorDrawingItem>(L));
  return L;
}

inline TVectorHatch* AddHatch(TVectorDrawing& D, TKRNBox2d ABox, int AStyle = bsSolid) {
  auto* H = new TVectorHatch(&D, 0, 0x0000FF, AStyle, TKRNPolygon2d(ABox));
  D.Add(std::unique_ptr<TVectorDrawingItem>(H));
  return H;
}

// A white image of the given size and a 1:1 transform with world (0,0) at device (0,H).
struct TCanvas {
  explicit TCanvas(int W = 100, int H = 100) : Image(W, H, QImage::Format_RGB32) {
    Image.fill(Qt::white);
    Trans.SetCoordTransParam({0, H}, {0, 0}, 1.0);
  }
  QRgb At(int X, int Y) const { return Image.pixel(X, Y) & 0xFFFFFF; }
  QImage Image;
  TKRNCoordTrans Trans;
};
