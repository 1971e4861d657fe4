// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "base/numbered_name.h"

#include <gtest/gtest.h>

namespace quillon::base {
namespace {

TEST(NumberedName, HasTheSameDigitsInEveryPart) {
  EXPECT_EQ(NumberedName("a", 1, 1), "a_01");
  EXPECT_EQ(NumberedName("a.b", 9, 99), "a.b_09");
  EXPECT_EQ(NumberedName("", 99, 99), "_99");
  EXPECT_EQ(NumberedName("a", 7, 100), "a_007");
  EXPECT_EQ(NumberedName("a", 1234, 1234), "a_1234");
}

}  // namespace
}  // namespace quillon::base
