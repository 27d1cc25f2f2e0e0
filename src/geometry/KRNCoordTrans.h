#pragma once
// Maps world coordinates (double, Y up) to device pixels (integer, Y down) for a
// view, holds its zoom state and tells listeners after every change.

#include "KRNCommon2d.h"

#include <vector>

// A device rectangle as the window system gives it.
struct TKRNRect {
  int Left = 0, Top = 0, Right = 0, Bottom = 0;
  int Width() const { return Right - Left; }
  int Height() const { return Bottom - Top; }
};

class ICoordTransChangedIntf {
public:
  virtual ~ICoordTransChangedIntf() = default;
  virtual void CoordTransChanged() = 0;
};

class TKRNCoordTrans {
public:
  static constexpr double MinZoomRate = 0.01;
  static constexpr double MaxZoomRate = 9999;

  TKRNCoordTrans() = default;
  // Copies the view, not the listeners.
  void Assign(const TKRNCoordTrans& ASrc);

  int WCTODC_X(double AX) const;
  int WCTODC_Y(double AY) const;
  int WCTODC(double ALength) const;
  TKRNPoint2i WCTODC(const TKRNVector2d& APoint) const;
  TKRNRect WCTODC(const TKRNBox2d& ABox) const;
  double DCTOWC_X(int AX) const;
  double DCTOWC_Y(int AY) const;
  double DCTOWC(int ALength) const;
  TKRNVector2d DCTOWC(const TKRNPoint2i& APoint) const;
  TKRNBox2d DCTOWC(const TKRNRect& ARect) const;

  void SetCoordTransParam(const TKRNPoint2i& ADPoint, const TKRNVector2d& AWPoint);
  void SetCoordTransParam(const TKRNPoint2i& ADPoint, const TKRNVector2d& AWPoint, double AZoomFactor);
  // True and a notification when the factor changed; false at a limit.
  bool SetScale(double AScale);
  // The factor at which ARect fits the viewport; 1.0 for an empty viewport.
  static double CalcZoomFactor(int AViewPortWidth, int AViewPortHeight, const TKRNBox2d& ARect);
  static double CalcXZoomFactor(int AViewPortWidth, int AViewPortHeight, const TKRNBox2d& ARect);
  void ZoomAll(int AViewPortWidth, int AViewPortHeight, const TKRNBox2d& ABoundRect);
  void ZoomWin(int AViewPortWidth, int AViewPortHeight, const TKRNRect& ADZoomRect);
  void Pan(int ADeltaX, int ADeltaY);
  void AdjustZoomAllFactor(int AViewPortWidth, int AViewPortHeight, const TKRNBox2d& ARect);

  // Listeners are not owned; one must be removed before it is destroyed.
  void AddChangeListener(ICoordTransChangedIntf* AListener);
  void DeleteChangedListener(ICoordTransChangedIntf* AListener);

  double ZoomFactor() const { return FZoomFactor; }
  double ZoomAllFactor() const { return FZoomAllFactor; }
  double XZoomFactor() const { return FXZoomFactor; }
  double XZoomAllFactor() const { return FXZoomAllFactor; }
  const TKRNVector2d& WPoint() const { return FWPoint; }
  const TKRNPoint2i& DPoint() const { return FDPoint; }
  bool XFactorInUse() const { return FXFactorInUse; }
  void SetXFactorInUse(bool AValue) { FXFactorInUse = AValue; }

private:
  double ClampZoom(double AFactor) const;
  double ClampXZoom(double AFactor) const;
  double XFactor() const { return FXFactorInUse ? FXZoomFactor : FZoomFactor; }
  void Fit(int AViewPortWidth, int AViewPortHeight, const TKRNBox2d& ARect);
  void Notify();

  double FZoomFactor = 1;
  double FZoomAllFactor = 1;
  double FXZoomFactor = 1;
  double FXZoomAllFactor = 1;
  TKRNVector2d FWPoint;
  TKRNPoint2i FDPoint;
  std::vector<ICoordTransChangedIntf*> FChangedListener;
  bool FXFactorInUse = false;
};
