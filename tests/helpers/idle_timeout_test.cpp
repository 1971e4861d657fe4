// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "helpers/runtime/helper.h"

#include <gtest/gtest.h>

#include <filesystem>

#include "host/posix/posix_instance.h"
#include "host/testing/test_host.h"

namespace quillon::helpers {
namespace {

class IdleTimeoutTest : public ::testing::Test {
 protected:
  IdleTimeoutTest() { std::filesystem::create_directories(world.host.programFolder); }

  host::testing::TestHost world;
  Helper helper{world.host, {}};
};

TEST_F(IdleTimeoutTest, EndsHalfAnHourAfterTheLastSign) {
  IdleTimeout timeout(helper);
  world.clock.Advance(1800);
  EXPECT_FALSE(timeout.Expired());
  timeout.Restart();
  world.clock.Advance(1800);
  EXPECT_FALSE(timeout.Expired());
  world.clock.Advance(1);
  EXPECT_TRUE(timeout.Expired());
}

TEST_F(IdleTimeoutTest, LastsAsLongAsTheProgram) {
  IdleTimeout timeout(helper);
  {
    host::posix::PosixInstance program(world.host.programFolder);
    ASSERT_TRUE(program.Claim());
    for (int hour = 0; hour < 24; ++hour) {
      world.clock.Advance(3600);
      EXPECT_FALSE(timeout.Expired());
    }
  }
  EXPECT_FALSE(timeout.Expired());
  world.clock.Advance(1801);
  EXPECT_TRUE(timeout.Expired());
}

}  // namespace
}  // namespace quillon::helpers
