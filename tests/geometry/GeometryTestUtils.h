#pragma once
#include "KRNCommon2d.h"

#include <gtest/gtest.h>

#include <ostream>

inline std::ostream& operator<<(std::ostream& O, const TKRNVector2d& V) { return O << "(" << V.X << ", " << V.Y << ")"; }

#define EXPECT_PT_NEAR(A, B, E)                       \
  do {                                                \
    const TKRNVector2d A_ = (A), B_ = (B);            \
    EXPECT_NEAR(A_.X, B_.X, E) << A_ << " vs " << B_; \
    EXPECT_NEAR(A_.Y, B_.Y, E) << A_ << " vs " << B_; \
  } while (0)

inline TKRNVector2d Polar(double R, double AAngle) { return {R * std::cos(AAngle), R * std::sin(AAngle)}; }
inline double R2() { return std::sqrt(2.0); }
