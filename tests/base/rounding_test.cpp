// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "base/rounding.h"

#include <gtest/gtest.h>

#include <climits>
#include <limits>

namespace quillon::base {
namespace {

constexpr double kInfinity = std::numeric_limits<double>::infinity();
constexpr double kNan = std::numeric_limits<double>::quiet_NaN();

struct Case {
  double value;
  int rounded;
};

class Rounding : public testing::TestWithParam<Case> {};

TEST_P(Rounding, GivesTheHandComputedNumbers) { EXPECT_EQ(R(GetParam().value), GetParam().rounded); }

INSTANTIATE_TEST_SUITE_P(Plain, Rounding,
                         testing::Values(Case{0, 0}, Case{-0.0, 0}, Case{1, 1}, Case{0.4, 0}, Case{0.6, 1},
                                         Case{-0.4, 0}, Case{-0.6, -1}, Case{2.49, 2}, Case{-2.51, -3}));

INSTANTIATE_TEST_SUITE_P(TiesGoToTheEvenNeighbour, Rounding,
                         testing::Values(Case{0.5, 0}, Case{1.5, 2}, Case{2.5, 2}, Case{3.5, 4}, Case{-0.5, 0},
                                         Case{-1.5, -2}, Case{-2.5, -2}, Case{1000000.5, 1000000},
                                         Case{1000001.5, 1000002}));

// The neighbours of one half, the closest a double comes to a tie without being one.
INSTANTIATE_TEST_SUITE_P(NextToATie, Rounding,
                         testing::Values(Case{0.49999999999999994, 0}, Case{0.5000000000000001, 1},
                                         Case{-0.49999999999999994, 0}, Case{-0.5000000000000001, -1},
                                         Case{1.4999999999999998, 1}, Case{2.5000000000000004, 3}, Case{1e-300, 0},
                                         Case{-1e-300, 0}));

INSTANTIATE_TEST_SUITE_P(BeyondIntBecomesItsNearestEnd, Rounding,
                         testing::Values(Case{2147483647.0, INT_MAX}, Case{2147483646.5, 2147483646},
                                         Case{2147483647.5, INT_MAX}, Case{1e300, INT_MAX},
                                         Case{-2147483648.0, INT_MIN}, Case{-2147483648.5, INT_MIN},
                                         Case{-1e300, INT_MIN}, Case{kInfinity, INT_MAX}, Case{-kInfinity, INT_MIN}));

INSTANTIATE_TEST_SUITE_P(NanBecomesZero, Rounding, testing::Values(Case{kNan, 0}));

}  // namespace
}  // namespace quillon::base
