// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
// Large-capacity runs, by one process and by many.
#include <csignal>
#include <map>
#include <set>

#include "cli/workers/workers_fixture.h"

namespace quillon::cli {
namespace {

class LargeBatchTest : public WorkersTest {
 protected:
  std::vector<std::string> Large(std::vector<std::string> more = {}) const {
    std::vector<std::string> all{"--json",
                                 "--set",
                                 "ChCutA=0",
                                 "--set",
                                 "TCutValue(0)=50",
                                 "--set",
                                 "ChBig=1",
                                 "--set",
                                 "ChSubFold=1",
                                 "--set",
                                 "LInDir=" + folder.Path("in"),
                                 "--out",
                                 out};
    all.insert(all.end(), more.begin(), more.end());
    all.insert(all.end(), {"--click", "menuNormalCut"});
    return all;
  }
};

TEST_F(LargeBatchTest, HandlesAFolderWithoutAList) {
  for (int i = 0; i < 30; ++i) Picture("in/" + std::to_string(i % 4) + "/" + std::to_string(i) + ".bmp");
  const Ran ran = Run(Large());
  EXPECT_EQ(ran.exit, 0) << ran.err;
  EXPECT_EQ(Results(ran.out).size(), 30u);
  EXPECT_TRUE(EventsOf(ran.out, "box").empty());
  EXPECT_EQ(folder.Names("out").size(), 30u);
}

TEST_F(LargeBatchTest, JobsAddUp) {
  for (int i = 0; i < 60; ++i) Picture("in/" + std::to_string(i % 4) + "/" + std::to_string(i) + ".bmp");
  const Ran ran = Run(Large({"--jobs", "3"}));
  EXPECT_EQ(ran.exit, 0) << ran.err;
  EXPECT_EQ(Results(ran.out).size(), 60u);
  EXPECT_EQ(folder.Names("out").size(), 60u);
  ExpectSums(ran);
}

TEST_F(LargeBatchTest, DrawsProgressWithPercentageAndTimeLeft) {
  Pictures(2000);
  std::vector<std::string> arguments = Large();
  std::erase(arguments, "--json");
  BatchProcess process(arguments, folder.Path(), ErrorsTo::Terminal);
  const Ran ran = process.Wait();
  EXPECT_EQ(ran.exit, 0);
  EXPECT_THAT(ran.err, HasSubstr("处理中 "));
  EXPECT_THAT(ran.err, HasSubstr("/2000"));
  EXPECT_THAT(ran.err, HasSubstr("写出 2000"));
}

TEST_F(LargeBatchTest, AKilledRunIsContinued) {
  const std::string before = BmpPicture(40, 30);
  for (const char* over : {"0", "1"}) {
    SCOPED_TRACE(over);
    for (int i = 0; i < 1500; ++i) folder.Write("in/" + std::to_string(i) + ".bmp", before);
    const std::string temporary = folder.Path(std::string("tmp") + over);
    const std::vector<std::string> arguments = Large({"--set", std::string("ChOver=") + over});
    BatchProcess process(arguments, folder.Path(), temporary);
    // Beyond the first checkpoint.
    ASSERT_TRUE(process.ReadTo("  已处理...900Quillon"));
    process.Signal(SIGKILL);
    EXPECT_EQ(process.Wait().signal, SIGKILL);
    const Ran ran = BatchProcess(arguments, folder.Path(), temporary).Wait();
    EXPECT_EQ(ran.exit, 0) << ran.err;
    const auto results = Results(ran.out);
    EXPECT_EQ(results.size(), 1500u);
    EXPECT_GT(CountOf(results, "skipped"), 0u);
    EXPECT_EQ(CountOf(results, "skipped") + CountOf(results, "written"), 1500u);
    EXPECT_EQ(EventsOf(ran.out, "box").at(0).at("answer"), "Yes");
    std::set<std::string> contents;
    const std::string where = over[0] == '1' ? "in" : "out";
    for (const std::string& name : folder.Names(where)) contents.insert(folder.Read((fs::path(where) / name).native()));
    EXPECT_EQ(contents.size(), 1u) << "each is cut once";
    EXPECT_EQ(folder.Names(where).size(), 1500u);
    const Ran fresh =
        BatchProcess(Large({"--set", std::string("ChOver=0"), "--set", "ChKeepDir=1"}), folder.Path(), temporary)
            .Wait();
    EXPECT_TRUE(EventsOf(fresh.out, "box").empty()) << "another job is not asked about";
  }
}

// A picture without a size stops its worker; the other one comes to its end.
TEST_F(LargeBatchTest, AContinuedRunDoesNothingTwiceThatAWorkerHadFinished) {
  const std::string before = BmpPicture(40, 30);
  for (int i = 0; i < 40; ++i) folder.Write("in/" + std::to_string(i) + ".bmp", before);
  folder.Write("in/bad.jpg", "no picture");
  const std::string temporary = folder.Path("tmp");
  const std::vector<std::string> arguments = Large({"--jobs", "2", "--set", "ChOver=1"});
  EXPECT_EQ(BatchProcess(arguments, folder.Path(), temporary).Wait().exit, 3);
  fs::remove(folder.Path("in/bad.jpg"));
  const Ran ran = BatchProcess(arguments, folder.Path(), temporary).Wait();
  EXPECT_EQ(ran.exit, 0) << ran.err;
  EXPECT_EQ(Results(ran.out).size(), 40u);
  std::set<std::string> contents;
  for (const std::string& name : folder.Names("in")) contents.insert(folder.Read("in/" + name));
  EXPECT_EQ(contents.size(), 1u) << "each is cut once";
  const Ran again = BatchProcess(arguments, folder.Path(), temporary).Wait();
  EXPECT_EQ(CountOf(Results(again.out), "written"), 40u) << "a job that came to its end leaves no journal";
}

// With another number of workers nothing is known of what was done.
TEST_F(LargeBatchTest, AStoppedRunIsNotContinuedByAnotherNumberOfWorkers) {
  const std::string before = BmpPicture(40, 30);
  for (int i = 0; i < 40; ++i) folder.Write("in/" + std::to_string(i) + ".bmp", before);
  folder.Write("in/bad.jpg", "no picture");
  const std::string temporary = folder.Path("tmp");
  const auto run = [&](const std::string& jobs, const std::string& reply) {
    const std::vector<std::string> more{"--jobs", jobs, "--set", "ChOver=1", "--answer", "没有做完=" + reply};
    return BatchProcess(Large(more), folder.Path(), temporary).Wait();
  };
  const auto contents = [&] {
    std::map<std::string, std::string> all;
    for (const std::string& name : folder.Names("in")) all[name] = folder.Read("in/" + name);
    return all;
  };
  EXPECT_EQ(run("4", "Yes").exit, 3);
  fs::remove(folder.Path("in/bad.jpg"));
  const auto stopped = contents();
  for (const char* jobs : {"1", "2", "3"}) {
    SCOPED_TRACE(jobs);
    const Ran refused = run(jobs, "Yes");
    EXPECT_EQ(refused.exit, 1);
    EXPECT_THAT(refused.err, HasSubstr("请仍分成 4 份：用 --jobs 4"));
    EXPECT_TRUE(EventsOf(refused.out, "file").empty());
    EXPECT_EQ(contents(), stopped);
  }
  EXPECT_EQ(run("4", "Yes").exit, 0);
  std::set<std::string> cuts;
  for (const auto& [name, bytes] : contents()) cuts.insert(bytes);
  EXPECT_EQ(cuts.size(), 1u) << "each is cut once";
  const Ran fresh = run("2", "Yes");
  EXPECT_EQ(CountOf(Results(fresh.out), "written"), 40u) << "a job that came to its end leaves no journal";
}

TEST_F(LargeBatchTest, AnotherNumberOfWorkersMayBeginAnew) {
  for (int i = 0; i < 40; ++i) folder.Write("in/" + std::to_string(i) + ".bmp", BmpPicture(40, 30));
  folder.Write("in/bad.jpg", "no picture");
  const std::string temporary = folder.Path("tmp");
  EXPECT_EQ(BatchProcess(Large({"--jobs", "2"}), folder.Path(), temporary).Wait().exit, 3);
  fs::remove(folder.Path("in/bad.jpg"));
  for (const char* jobs : {"3", "2"}) {
    SCOPED_TRACE(jobs);
    const Ran ran = BatchProcess(Large({"--jobs", jobs, "--answer", "没有做完=No"}), folder.Path(), temporary).Wait();
    EXPECT_EQ(ran.exit, 0) << ran.err;
    EXPECT_EQ(CountOf(Results(ran.out), "written"), 40u);
  }
}

}  // namespace
}  // namespace quillon::cli
