// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "imaging/rows/lanczos.h"

#include <gtest/gtest.h>

namespace quillon::imaging {
namespace {

TEST(LanczosKernel, KnownValues) {
  EXPECT_DOUBLE_EQ(Lanczos(0), 1);
  for (const double zero : {1.0, -2.0, 3.0, 3.5, -40.0}) EXPECT_NEAR(Lanczos(zero), 0, 1e-12) << zero;
  // sinc(1/2) sinc(1/6) = 2/pi * 3/pi = 6/pi^2.
  EXPECT_NEAR(Lanczos(0.5), 0.607927, 1e-6);
  EXPECT_NEAR(Lanczos(-1.5), -0.135095, 1e-6);  // -(2/3pi) (2/pi) = -4/(3 pi^2)
}

TEST(LanczosAxis, ToTheSameSizeEverySampleIsItself) {
  const LanczosAxis axis(5, 5);
  for (int i = 0; i < 5; ++i) {
    const LanczosAxis::Taps taps = axis.At(i);
    for (int k = 0; k < taps.count; ++k) EXPECT_NEAR(taps.weights[k], taps.first + k == i ? 1 : 0, 1e-6);
  }
}

TEST(LanczosAxis, WeightsStayInsideAndSumUpToOne) {
  for (const auto& [source, target] : {std::pair{10, 37}, {37, 10}, {1, 9}, {9, 1}, {1000, 7}, {2, 3}}) {
    const LanczosAxis axis(source, target);
    for (int i = 0; i < target; ++i) {
      const LanczosAxis::Taps taps = axis.At(i);
      ASSERT_GE(taps.first, 0);
      ASSERT_GE(taps.count, 1);
      ASSERT_LE(taps.first + taps.count, source);
      double sum = 0;
      for (int k = 0; k < taps.count; ++k) sum += taps.weights[k];
      EXPECT_NEAR(sum, 1, 1e-5);
    }
  }
}

// From 8 to 4 the kernel is twice as wide: the middle of target 1 lies at 2.5, its taps reach from -3.5 to 8.5.
TEST(LanczosAxis, WiderForLess) {
  const LanczosAxis axis(8, 4);
  const LanczosAxis::Taps taps = axis.At(1);
  EXPECT_EQ(taps.first, 0);
  EXPECT_EQ(taps.count, 8);
  EXPECT_FLOAT_EQ(taps.weights[2], taps.weights[3]);
  EXPECT_GT(taps.weights[2], 0.4F);
  EXPECT_LT(taps.weights[5], 0);
}

}  // namespace
}  // namespace quillon::imaging
