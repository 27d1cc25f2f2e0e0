#include "KRNCoordTrans.h"

#include <algorithm>
#include <climits>

// Device values far off screen are clamped instead of overflowing.
static int ToDevice(double AValue) {
  const double C = std::ceil(AValue - 0.001);
  if (!(C > INT_MIN)) return INT_MIN;
  if (!(C < INT_MAX)) return INT_MAX;
  return int(C);
}

void TKRNCoordTrans::Assign(const TKRNCoordTrans& ASrc) {
  FZoomFactor = ASrc.FZoomFactor;
  FZoomAllFactor = ASrc.FZoomAllFactor;
  FXZoomFactor = ASrc.FXZoomFactor;
  FXZoomAllFactor = ASrc.FXZoomAllFactor;
  FWPoint = ASrc.FWPoint;
  FDPoint = ASrc.FDPoint;
  FXFactorInUse = ASrc.FXFactorInUse;
}

int TKRNCoordTrans::WCTODC_X(double AX) const { return ToDevice((AX - FWPoint.X) * XFactor()) + FDPoint.X; }
int TKRNCoordTrans::WCTODC_Y(double AY) const { return ToDevice((FWPoint.Y - AY) * FZoomFactor) + FDPoint.Y; }
int TKRNCoordTrans::WCTODC(double ALength) const { return ToDevice(ALength * FZoomFactor); }

TKRNPoint2i TKRNCoordTrans::WCTODC(const TKRNVector2d& APoint) const {
  return {WCTODC_X(APoint.X), WCTODC_Y(APoint.Y)};
}

TKRNRect TKRNCoordTrans::WCTODC(const TKRNBox2d& ABox) const {
  return {WCTODC_X(ABox.MinX()), WCTODC_Y(ABox.MaxY()), WCTODC_X(ABox.MaxX()), WCTODC_Y(ABox.MinY())};
}

double TKRNCoordTrans::DCTOWC_X(int AX) const { return (AX - FDPoint.X) / XFactor() + FWPoint.X; }
double TKRNCoordTrans::DCTOWC_Y(int AY) const { return FWPoint.Y - (AY - FDPoint.Y) / FZoomFactor; }
double TKRNCoordTrans::DCTOWC(int ALength) const { return ALength / FZoomFactor; }

TKRNVector2d TKRNCoordTrans::DCTOWC(const TKRNPoint2i& APoint) const {
  return {DCTOWC_X(APoint.X), DCTOWC_Y(APoint.Y)};
}

TKRNBox2d TKRNCoordTrans::DCTOWC(const TKRNRect& ARect) const {
  return BoxOfPoints(DCTOWC(TKRNPoint2i{ARect.Left, ARect.Top}), DCTOWC(TKRNPoint2i{ARect.Right, ARect.Bottom}));
}

double TKRNCoordTrans::ClampZoom(double AFactor) const {
  return std::clamp(AFactor, FZoomAllFactor * MinZoomRate, FZoomAllFactor * MaxZoomRate);
}

double TKRNCoordTrans::ClampXZoom(double AFactor) const {
  return std::clamp(AFactor, FXZoomAllFactor * MinZoomRate, FXZoomAllFactor * MaxZoomRate);
}

void TKRNCoordTrans::SetCoordTransParam(const TKRNPoint2i& ADPoint, const TKRNVector2d& AWPoint) {
  FDPoint = ADPoint;
  FWPoint = AWPoint;
  Notify();
}

void TKRNCoordTrans::SetCoordTransParam(const TKRNPoint2i& ADPoint, const TKRNVector2d& AWPoint,
                                        double AZoomFactor) {
  FDPoint = ADPoint;
  FWPoint = AWPoint;
  FZoomFactor = ClampZoom(AZoomFactor);
  Notify();
}

bool TKRNCoordTrans::SetScale(double AScale) {
  const double New = ClampZoom(FZoomFactor * AScale);
  if (New == FZoomFactor) return false;
  FZoomFactor = New;
  Notify();
  return true;
}

static void FitSizes(int AViewPortWidth, int AViewPortHeight, const TKRNBox2d& ARect, double& W, double& H) {
  W = ARect.MaxX() - ARect.MinX();
  H = ARect.MaxY() - ARect.MinY();
  if (W <= 1e-7) W = AViewPortWidth;
  if (H <= 1e-7) H = AViewPortHeight;
}

double TKRNCoordTrans::CalcZoomFactor(int AViewPortWidth, int AViewPortHeight, const TKRNBox2d& ARect) {
  double W, H;
  FitSizes(AViewPortWidth, AViewPortHeight, ARect, W, H);
  if (W == 0 || H == 0) return 1.0;
  return std::min(AViewPortWidth / W, AViewPortHeight / H);
}

double TKRNCoordTrans::CalcXZoomFactor(int AViewPortWidth, int AViewPortHeight, const TKRNBox2d& ARect) {
  double W, H;
  FitSizes(AViewPortWidth, AViewPortHeight, ARect, W, H);
  if (W == 0 || H == 0) return CalcZoomFactor(AViewPortWidth, AViewPortHeight, ARect);
  return AViewPortWidth / W;
}

void TKRNCoordTrans::Fit(int AViewPortWidth, int AViewPortHeight, const TKRNBox2d& ARect) {
  FZoomFactor = ClampZoom(CalcZoomFactor(AViewPortWidth, AViewPortHeight, ARect));
  FXZoomFactor = ClampXZoom(CalcXZoomFactor(AViewPortWidth, AViewPortHeight, ARect));
  FWPoint = PointMiddle(ARect.StartPt, ARect.EndPt);
  FDPoint = {AViewPortWidth / 2, AViewPortHeight / 2};
}

void TKRNCoordTrans::ZoomAll(int AViewPortWidth, int AViewPortHeight, const TKRNBox2d& ABoundRect) {
  FZoomAllFactor = CalcZoomFactor(AViewPortWidth, AViewPortHeight, ABoundRect);
  FXZoomAllFactor = CalcXZoomFactor(AViewPortWidth, AViewPortHeight, ABoundRect);
  Fit(AViewPortWidth, AViewPortHeight, ABoundRect);
  Notify();
}

void TKRNCoordTrans::ZoomWin(int AViewPortWidth, int AViewPortHeight, const TKRNRect& ADZoomRect) {
  Fit(AViewPortWidth, AViewPortHeight, DCTOWC(ADZoomRect));
  Notify();
}

void TKRNCoordTrans::Pan(int ADeltaX, int ADeltaY) {
  FDPoint.X += ADeltaX;
  FDPoint.Y += ADeltaY;
  Notify();
}

void TKRNCoordTrans::AdjustZoomAllFactor(int AViewPortWidth, int AViewPortHeight, const TKRNBox2d& ARect) {
  FZoomAllFactor = CalcZoomFactor(AViewPortWidth, AViewPortHeight, ARect);
}

void TKRNCoordTrans::AddChangeListener(ICoordTransChangedIntf* AListener) {
  if (AListener && std::find(FChangedListener.begin(), FChangedListener.end(), AListener) == FChangedListener.end())
    FChangedListener.push_back(AListener);
}

void TKRNCoordTrans::DeleteChangedListener(ICoordTransChangedIntf* AListener) {
  FChangedListener.erase(std::remove(FChangedListener.begin(), FChangedListener.end(), AListener),
                         FChangedListener.end());
}

void TKRNCoordTrans::Notify() {
  // A copy: a listener may remove itself while being told.
  const std::vector<ICoordTransChangedIntf*> Listeners = FChangedListener;
  for (ICoordTransChangedIntf* L : Listeners) L->CoordTransChanged();
}
