// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
// A picture that is overwritten by its result is never missing afterwards, and never left out as a result, whichever
// stat of it fails.
#include <cerrno>
#include <tuple>

#include "host/posix/sqlite_journals.h"
#include "job/cut_fixture.h"

namespace quillon::job {
namespace {

enum class Mode { List, Large };

// The number of the stat that fails.
class OverwrittenSourceTest : public CutTest, public ::testing::WithParamInterface<std::tuple<Mode, int>> {
 protected:
  host::posix::SqliteJournals journals{world.folder.Path("journals")};

  void Run(const std::string& path) {
    if (std::get<Mode>(GetParam()) == Mode::List) {
      Cut({path});
      return;
    }
    program.journals = &journals;
    Put("ChBig", "1");
    Put("LInDir", world.folder.Path("in"));
    Cut();
  }
};

TEST_P(OverwrittenSourceTest, StandsWhicheverStatFails) {
  const std::string path = Make("a.bmp", Painted(40, 30, Slope));
  Put("ChOver", "1");
  Put("TCutValue(1)", "50");
  world.faults.Set({.call = host::testing::DiskCall::Stat,
                    .nth = std::get<int>(GetParam()),
                    .error = EACCES,
                    .pathHolds = "in/a.bmp"});
  Run(path);
  world.faults.Clear();
  ASSERT_TRUE(world.folder.Exists("in/a.bmp")) << Whys();
  EXPECT_EQ(Totals().skipped, 0u) << Whys();
  EXPECT_EQ(Read(path).height, Totals().written == 1 ? 15 : 30) << Whys();
}

INSTANTIATE_TEST_SUITE_P(Calls, OverwrittenSourceTest,
                         ::testing::Combine(::testing::Values(Mode::List, Mode::Large), ::testing::Range(1, 31)));

}  // namespace
}  // namespace quillon::job
