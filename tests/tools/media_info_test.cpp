// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "tools/media_info.h"

#include <gtest/gtest.h>

#include <functional>
#include <map>
#include <vector>

namespace quillon::tools {
namespace {

using host::Companion;
using host::Problem;
using host::Status;

// Answers by the path. A path without an answer ends it.
class ScriptedCompanion final : public Companion {
 public:
  explicit ScriptedCompanion(const std::map<std::string, std::string>& answers) : answers_(answers) {}

  Status Ask(const std::string& path, double, const KeepWaiting& keepWaiting, std::string& answer) override {
    if (keepWaiting && !keepWaiting()) return End({Problem::Stopped, "stopped"});
    const auto found = answers_.find(path);
    if (found == answers_.end()) return End({Problem::Other, "ended"});
    answer = found->second;
    return Status::Ok();
  }
  bool Alive() const override { return alive_; }

 private:
  Status End(Status status) {
    alive_ = false;
    return status;
  }

  const std::map<std::string, std::string>& answers_;
  bool alive_ = true;
};

class ScriptedShell final : public host::Shell {
 public:
  int Start(const std::string&, const std::vector<std::string>&, const std::string&) override {
    return host::kStartMissing;
  }
  std::unique_ptr<Companion> StartCompanion(const std::string& program) override {
    started.push_back(program);
    return missing ? nullptr : std::make_unique<ScriptedCompanion>(answers);
  }
  void OpenFolder(const std::string&) override {}
  void Reveal(const std::string&) override {}
  void OpenBrowser(const std::string&) override {}

  std::map<std::string, std::string> answers;
  std::vector<std::string> started;
  bool missing = false;
};

class MediaInfoTest : public ::testing::Test {
 protected:
  Status Measure(const std::string& path, const Companion::KeepWaiting& keepWaiting = {}) {
    size_ = {7, 9};
    return info_.Measure(path, keepWaiting, size_);
  }

  ScriptedShell shell_;
  MediaInfo info_{shell_, "/app"};
  base::Size size_;
};

TEST_F(MediaInfoTest, OneHelperAnswersAllFiles) {
  shell_.answers = {{"a", "61 43"}, {"b", "3840 2160"}};
  EXPECT_TRUE(shell_.started.empty()) << "nothing was asked yet";
  EXPECT_TRUE(Measure("a"));
  EXPECT_EQ(size_, (base::Size{61, 43}));
  EXPECT_TRUE(Measure("b"));
  EXPECT_EQ(size_, (base::Size{3840, 2160}));
  EXPECT_EQ(shell_.started, std::vector<std::string>{"/app/MediaInfoT.dll"});
}

TEST_F(MediaInfoTest, AnswersThatAreNoSize) {
  shell_.answers = {{"none", "none"}, {"damaged", "damaged"}, {"zero", "0 9"},           {"minus", "-4 9"},
                    {"one", "61"},    {"empty", ""},          {"much", "99999999999 9"}, {"text", "61 43 x"}};
  EXPECT_EQ(Measure("none").GetProblem(), Problem::Unsupported);
  for (const char* path : {"damaged", "zero", "minus", "one", "empty", "much", "text"}) {
    const Status status = Measure(path);
    EXPECT_EQ(status.GetProblem(), Problem::Damaged) << path;
    EXPECT_EQ(status.Why(), "无法读取图片的尺寸") << path;
    EXPECT_EQ(size_, (base::Size{7, 9})) << path;
  }
  EXPECT_EQ(shell_.started.size(), 1U);
}

TEST_F(MediaInfoTest, AHelperThatEndsCostsOneFile) {
  shell_.answers = {{"good", "61 43"}};
  EXPECT_TRUE(Measure("good"));
  EXPECT_EQ(Measure("deadly").GetProblem(), Problem::Damaged);
  EXPECT_TRUE(Measure("good"));
  EXPECT_EQ(shell_.started.size(), 2U);
}

TEST_F(MediaInfoTest, AStopIsNoDamage) {
  shell_.answers = {{"good", "61 43"}};
  EXPECT_EQ(Measure("good", [] { return false; }).GetProblem(), Problem::Stopped);
  EXPECT_TRUE(Measure("good"));
}

TEST_F(MediaInfoTest, AnotherFileAskedForDuringTheWaitIsRefused) {
  shell_.answers = {{"outer", "61 43"}, {"inner", "7 9"}};
  Problem inner = Problem::None;
  EXPECT_TRUE(Measure("outer", [&] {
    base::Size size;
    inner = info_.Measure("inner", {}, size).GetProblem();
    return true;
  }));
  EXPECT_EQ(inner, Problem::Stopped);
  EXPECT_TRUE(Measure("inner"));
}

TEST_F(MediaInfoTest, AMissingHelperIsNamed) {
  shell_.missing = true;
  const Status status = Measure("a");
  EXPECT_EQ(status.GetProblem(), Problem::Missing);
  EXPECT_EQ(status.Why(), "无法启动 MediaInfoT");
}

}  // namespace
}  // namespace quillon::tools
