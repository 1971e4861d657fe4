// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "helpers/runtime/patience.h"

#include <gtest/gtest.h>

#include <filesystem>

#include "host/posix/posix_instance.h"
#include "host/testing/test_host.h"

namespace quillon::helpers {
namespace {

class PatienceTest : public ::testing::Test {
 protected:
  PatienceTest() { std::filesystem::create_directories(world.host.programFolder); }

  host::testing::TestHost world;
  Helper helper{world.host, {}};
};

TEST_F(PatienceTest, EndsHalfAnHourAfterTheLastSign) {
  Patience patience(helper);
  world.clock.Advance(1800);
  EXPECT_FALSE(patience.Over());
  patience.Renew();
  world.clock.Advance(1800);
  EXPECT_FALSE(patience.Over());
  world.clock.Advance(1);
  EXPECT_TRUE(patience.Over());
}

TEST_F(PatienceTest, LastsAsLongAsTheProgram) {
  Patience patience(helper);
  {
    host::posix::PosixInstance program(world.host.programFolder);
    ASSERT_TRUE(program.Claim());
    for (int hour = 0; hour < 24; ++hour) {
      world.clock.Advance(3600);
      EXPECT_FALSE(patience.Over());
    }
  }
  EXPECT_FALSE(patience.Over());
  world.clock.Advance(1801);
  EXPECT_TRUE(patience.Over());
}

}  // namespace
}  // namespace quillon::helpers
