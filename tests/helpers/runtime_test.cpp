// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include <gtest/gtest.h>
#include <netinet/in.h>
#include <sys/resource.h>
#include <sys/socket.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cerrno>
#include <csignal>
#include <filesystem>

#include "helpers/helper_process.h"
#include "helpers/runtime/child.h"
#include "helpers/runtime/helper.h"
#include "helpers/runtime/sandbox.h"
#include "host/testing/test_host.h"

namespace quillon::helpers {
namespace {

// Runs check in a process of its own, so that what it shuts in is not the test; true when it answered true.
template <class Check>
bool InOwnProcess(Check check) {
  const pid_t child = fork();
  if (child == 0) _exit(check() ? 0 : 1);
  int status = 0;
  waitpid(child, &status, 0);
  return WIFEXITED(status) && WEXITSTATUS(status) == 0;
}

rlim_t LimitOf(__rlimit_resource what) {
  rlimit limit{};
  getrlimit(what, &limit);
  return limit.rlim_cur;
}

TEST(ResourceLimits, LimitMemoryTimeAndCores) {
  EXPECT_TRUE(InOwnProcess([] {
    Sandbox({.memory = 1 << 30, .seconds = 7});
    return LimitOf(RLIMIT_CPU) == 7 && LimitOf(RLIMIT_CORE) <= 1;
  }));
#if !defined(__SANITIZE_ADDRESS__) && !defined(__SANITIZE_THREAD__)
  EXPECT_TRUE(InOwnProcess([] {
    Sandbox({.memory = 1 << 30, .seconds = 7});
    return LimitOf(RLIMIT_DATA) == 1 << 30;
  }));
#endif
}

TEST(ResourceLimits, NeverRaiseALimit) {
  EXPECT_TRUE(InOwnProcess([] {
    const rlimit tight{5, 5};
    setrlimit(RLIMIT_CPU, &tight);
    Sandbox({.seconds = 7});
    return LimitOf(RLIMIT_CPU) == 5;
  }));
}

TEST(ResourceLimits, DenyTheNetwork) {
  EXPECT_TRUE(InOwnProcess([] {
    Sandbox({});
    for (const int family : {AF_INET, AF_INET6, AF_NETLINK}) {
      if (socket(family, SOCK_STREAM, 0) >= 0 || errno != EACCES) return false;
    }
    const int local = socket(AF_UNIX, SOCK_STREAM, 0);
    return local >= 0;
  }));
}

TEST(RunProgram, WaitsAndReturnsHowItEnded) {
  EXPECT_TRUE(RunProgram({"true"}));
  EXPECT_EQ(RunProgram({"sh", "-c", "exit 3"}).exit, 3);
  EXPECT_EQ(RunProgram({"sh", "-c", "kill -9 $$"}).exit, -1);
  EXPECT_EQ(RunProgram({"/nowhere/at/all"}).exit, -1);
  EXPECT_EQ(RunProgram({}).exit, -1);
}

TEST(RunProgram, KeepsTheBeginningOfTheOutput) {
  EXPECT_EQ(RunProgram({"sh", "-c", "echo a; echo b >&2"}).output, "a\nb\n");
  const ProgramResult result = RunProgram({"sh", "-c", "head -c 10000000 /dev/zero"});
  EXPECT_EQ(result.exit, 0);
  EXPECT_GT(result.output.size(), 1000U);
  EXPECT_LT(result.output.size(), 100'000U);
}

TEST(RunProgram, GivesNoInput) { EXPECT_EQ(RunProgram({"cat"}).output, ""); }

TEST(Runtime, PrintsTheVersion) {
  const HelperFolder folder;
  const Ran ran = folder.Run("DrawTranspText", {"--version"});
  EXPECT_EQ(ran.exit, 0);
  EXPECT_EQ(ran.out, "DrawTranspText " QUILLON_VERSION "\n");
}

TEST(Runtime, ReportsAFailureInOneSentence) {
  const HelperFolder folder;
  const Ran ran = folder.Run("DrawTranspText", {});
  EXPECT_EQ(ran.exit, 1);
  EXPECT_EQ(ran.err, "DrawTranspText: 参数错误：没有可以执行的操作\n");
  EXPECT_EQ(folder.Names(), std::vector<std::string>{});
}

struct Throwing : std::exception {
  const char* what() const noexcept override { return "坏了"; }
};

TEST(Runtime, LetsNoExceptionOut) {
  for (const Work work : {Work{[](Helper&) -> host::Status { throw std::bad_alloc(); }},
                          Work{[](Helper&) -> host::Status { throw Throwing(); }}}) {
    EXPECT_TRUE(InOwnProcess([&] {
      char name[] = "X";
      char* arguments[] = {name, nullptr};
      return RunHelper("X", 1, arguments, work) == 1;
    }));
  }
}

TEST(Runtime, FailsIfWhatItSavedDoesNotReachTheDisk) {
  host::testing::TestHost world;
  Helper helper(world.host, {world.folder.Path("made")});
  const Work save = [](Helper& of) { return of.Files().Save(of.Parameters(), "content"); };
  const Work saveAndFail = [](Helper& of) {
    const host::Status saved = of.Files().Save(of.Parameters(), "content");
    return saved ? UsageError("too late") : saved;
  };
  for (const Work work : {save, saveAndFail}) {
    world.faults.Set({.call = host::testing::DiskCall::Sync, .error = EIO, .pathHolds = "made"});
    const host::Status done = Perform(helper, work);
    EXPECT_FALSE(done);
    EXPECT_EQ(done.Why().starts_with("输出文件没有写到磁盘上："), work == save) << done.Why();
    EXPECT_FALSE(world.folder.Exists("made"));
    world.faults.Clear();
  }
  EXPECT_TRUE(Perform(helper, save));
  EXPECT_TRUE(world.folder.Exists("made"));
}

TEST(Runtime, SharesTheSettingsOfItsProgramFolder) {
  const HelperFolder folder;
  folder.Set("Question", "4");
  EXPECT_TRUE(InOwnProcess([&] {
    std::filesystem::current_path(folder.Path());
    char name[] = "X";
    char text[] = "Quillon\tb c";
    char* arguments[] = {name, text, nullptr};
    const auto work = [](Helper& helper) -> host::Status {
      const std::vector<std::string> fields = helper.Fields();
      helper.Set(fields[0], "Answer", helper.Get(fields[0], "Question") + fields[1] + helper.Words()[1]);
      return {};
    };
    return RunHelper("X", 2, arguments, work) == 0;
  }));
  EXPECT_EQ(folder.Get("Answer"), "4b cc");
}

}  // namespace
}  // namespace quillon::helpers
