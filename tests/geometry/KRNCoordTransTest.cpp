#include "GeometryTestUtils.h"
#include "KRNCoordTrans.h"

#include <climits>

namespace {
struct TCounter : ICoordTransChangedIntf {
  int Calls = 0;
  void CoordTransChanged() override { ++Calls; }
};
}  // namespace

TEST(TKRNCoordTrans, RoundingAtExactPixels) {
  TKRNCoordTrans T;
  T.SetCoordTransParam({0, 0}, {0, 0}, 0.1);
  EXPECT_EQ(T.WCTODC_X(100), 10);  // 100 * 0.1 is a hair above 10 in binary: still 10
  EXPECT_EQ(T.WCTODC_X(100.02), 11);
  EXPECT_EQ(T.WCTODC_X(-100), -10);
  EXPECT_EQ(T.WCTODC_Y(50), -5);  // world Y up, device Y down
  EXPECT_EQ(T.WCTODC(30.0), 3);
  EXPECT_EQ(T.WCTODC_X(1e300), INT_MAX);  // far off screen is clamped
  EXPECT_DOUBLE_EQ(T.DCTOWC(7), 70);
}

TEST(TKRNCoordTrans, DeviceToWorldIsTheInverseWithinAPixel) {
  TKRNCoordTrans T;
  T.SetCoordTransParam({400, 300}, {123.4, -56.7}, 3.7);
  for (double Y = -500; Y <= 500; Y += 0.37) {
    const int D = T.WCTODC_Y(Y);
    EXPECT_LE(std::fabs(T.DCTOWC_Y(D) - Y), 1 / 3.7 + 1e-9) << Y;
    EXPECT_EQ(T.WCTODC_Y(T.DCTOWC_Y(D)), D) << Y;
  }
  const TKRNVector2d W = T.DCTOWC(TKRNPoint2i{10, 20});
  const TKRNPoint2i P = T.WCTODC(W);
  EXPECT_EQ(P.X, 10);
  EXPECT_EQ(P.Y, 20);
}

TEST(TKRNCoordTrans, CalcZoomFactorNeverDividesByZero) {
  const struct {
    int W, H;
    TKRNBox2d R;
    double Factor, XFactor;
  } Cases[] = {{800, 600, {{0, 0}, {100, 50}}, 8, 8},
               {800, 600, {{0, 0}, {0, 0}}, 1, 1},       // empty: the viewport's own size
               {800, 600, {{0, 0}, {400, 0}}, 1, 2},     // flat: height from the viewport
               {0, 600, {{0, 0}, {0, 10}}, 1.0, 1.0},    // nothing to fit into
               {800, 600, {{-10, -10}, {10, 10}}, 30, 40}};
  for (const auto& C : Cases) {
    SCOPED_TRACE(testing::Message() << C.W << "x" << C.H);
    EXPECT_DOUBLE_EQ(TKRNCoordTrans::CalcZoomFactor(C.W, C.H, C.R), C.Factor);
    EXPECT_DOUBLE_EQ(TKRNCoordTrans::CalcXZoomFactor(C.W, C.H, C.R), C.XFactor);
  }
}

TEST(TKRNCoordTrans, ZoomAllFitsAndNotifies) {
  TKRNCoordTrans T;
  TCounter L;
  T.AddChangeListener(&L);
  T.AddChangeListener(&L);  // once only
  T.ZoomAll(800, 600, {{0, 0}, {100, 50}});
  EXPECT_EQ(L.Calls, 1);
  EXPECT_DOUBLE_EQ(T.ZoomFactor(), 8);
  EXPECT_DOUBLE_EQ(T.ZoomAllFactor(), 8);
  EXPECT_EQ(T.DPoint().X, 400);
  EXPECT_PT_NEAR(T.WPoint(), (TKRNVector2d{50, 25}), 0);
  EXPECT_EQ(T.WCTODC(TKRNVector2d{0, 0}).X, 0);
  EXPECT_EQ(T.WCTODC(TKRNVector2d{0, 0}).Y, 500);
  EXPECT_EQ(T.WCTODC(TKRNVector2d{100, 50}).X, 800);
  EXPECT_EQ(T.WCTODC(TKRNVector2d{100, 50}).Y, 100);

  T.ZoomWin(800, 600, TKRNRect{0, 100, 400, 300});  // the left half, upper part
  EXPECT_EQ(L.Calls, 2);
  EXPECT_DOUBLE_EQ(T.ZoomFactor(), 16);
  EXPECT_DOUBLE_EQ(T.ZoomAllFactor(), 8);  // stays
  T.Pan(5, -3);
  EXPECT_EQ(L.Calls, 3);
  EXPECT_EQ(T.DPoint().X, 405);
  T.AdjustZoomAllFactor(800, 600, {{0, 0}, {1000, 500}});
  EXPECT_EQ(L.Calls, 3);
  EXPECT_DOUBLE_EQ(T.ZoomAllFactor(), 0.8);
  T.DeleteChangedListener(&L);
  T.Pan(1, 1);
  EXPECT_EQ(L.Calls, 3);
}

TEST(TKRNCoordTrans, ScaleStopsAtTheLimits) {
  TKRNCoordTrans T;
  TCounter L;
  T.AddChangeListener(&L);
  T.ZoomAll(100, 100, {{0, 0}, {10, 10}});  // all factor 10
  EXPECT_TRUE(T.SetScale(1e9));
  EXPECT_DOUBLE_EQ(T.ZoomFactor(), 10 * 9999);
  const int Before = L.Calls;
  EXPECT_FALSE(T.SetScale(2));
  EXPECT_EQ(L.Calls, Before);
  EXPECT_TRUE(T.SetScale(1e-12));
  EXPECT_DOUBLE_EQ(T.ZoomFactor(), 10 * 0.01);
  EXPECT_FALSE(T.SetScale(0.5));
  T.SetCoordTransParam({0, 0}, {0, 0}, 1e12);
  EXPECT_DOUBLE_EQ(T.ZoomFactor(), 10 * 9999);
}

TEST(TKRNCoordTrans, SeparateXFactor) {
  TKRNCoordTrans T;
  T.ZoomAll(800, 600, {{0, 0}, {400, 10}});  // X factor 2, common factor 2 (600/10 = 60 is larger)
  T.SetXFactorInUse(true);
  EXPECT_DOUBLE_EQ(T.XZoomFactor(), 2);
  EXPECT_EQ(T.WCTODC_X(400), 800);
  EXPECT_DOUBLE_EQ(T.DCTOWC_X(0), 0);
  TKRNCoordTrans U;
  U.Assign(T);
  EXPECT_EQ(U.WCTODC_X(400), 800);
}
