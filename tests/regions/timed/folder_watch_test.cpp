// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
// The run over a watched folder, with a driver that only notes what it is asked for.
#include "regions/timed/folder_watch.h"

#include "regions/regions_fixture.h"

namespace quillon::regions {
namespace {

class ScriptedDriver final : public job::FileDriver {
 public:
  void Begin(job::RunLedger&) override {}
  std::size_t Lookahead() const override { return 2; }
  void Prefetch(const std::vector<std::string>& paths) override { prefetched.push_back(paths.size()); }
  void Cut(const job::RunFile& file, const Report& report) override {
    cut.push_back(file.path.substr(file.path.rfind('/') + 1));
    ASSERT_TRUE(file.settled.has_value());
    job::FileResult result{0, file.path, file.path, job::Result::Written, ""};
    if (retry != job::Retry::Never) result = {0, file.path, "", job::Result::None, "later"};
    result.retry = retry;
    report(result);
  }
  void EndPrefetch() override { prefetched.push_back(0); }

  job::Retry retry = job::Retry::Never;
  std::vector<std::string> cut;
  std::vector<std::size_t> prefetched;
};

class FolderWatchTest : public RegionsTest {
 protected:
  void SetUp() override {
    RegionsTest::SetUp();
    for (const char* name : {"a.bmp", "b.bmp", "c.bmp"}) world.folder.Write(std::string("in/") + name, name);
  }
  void Round() {
    driver.cut.clear();
    driver.prefetched.clear();
    watch.Round();
  }
  using Names = std::vector<std::string>;

  ScriptedDriver driver;
  std::string note;
  std::size_t counted = 0;
  FolderWatch watch{program.context, driver, world.folder.Path("in"), 0,
                    WatchHooks{[] { return true; }, [this](std::size_t cut) { counted = cut; },
                               [this](const std::string& sentence) { note = sentence; }}};
};

TEST_F(FolderWatchTest, FilesThatHaveSettledArePassedOnOnce) {
  Round();
  EXPECT_EQ(driver.cut, Names());
  Round();
  EXPECT_EQ(driver.cut, (Names{"a.bmp", "b.bmp", "c.bmp"}));
  EXPECT_EQ(driver.prefetched, (std::vector<std::size_t>{2, 2, 1, 0})) << "no further than it wants";
  EXPECT_EQ(counted, 3u);
  Round();
  EXPECT_EQ(driver.cut, Names());
  EXPECT_EQ(watch.Ledger().Totals().written, 3u);
}

TEST_F(FolderWatchTest, AFileThatIsNotWholeComesAgainOnceItHasChanged) {
  driver.retry = job::Retry::OnceChanged;
  Round();
  Round();
  EXPECT_EQ(driver.cut.size(), 3u);
  driver.retry = job::Retry::Never;
  Round();
  EXPECT_EQ(driver.cut, Names());
  world.folder.Write("in/b.bmp", "changed");
  Round();
  Round();
  EXPECT_EQ(driver.cut, Names{"b.bmp"});
  EXPECT_EQ(recorder.done.size(), 1u) << "a file that comes again is not reported";
  EXPECT_EQ(note, "");
}

TEST_F(FolderWatchTest, AFileWhoseDiskIsSilentComesAgainInTheNextRound) {
  driver.retry = job::Retry::Soon;
  Round();
  Round();
  Round();
  EXPECT_EQ(driver.cut.size(), 3u);
  EXPECT_TRUE(recorder.done.empty());
  driver.retry = job::Retry::Never;
  Round();
  EXPECT_EQ(driver.cut.size(), 3u);
  EXPECT_EQ(recorder.done.size(), 3u);
}

}  // namespace
}  // namespace quillon::regions
