// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include <fcntl.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <signal.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <cstdlib>
#include <filesystem>
#include <functional>

#include "host/files/files.h"
#include "host/posix/posix_clock.h"
#include "host/posix/posix_disk.h"
#include "host/posix/posix_instance.h"
#include "host/posix/posix_processes.h"
#include "host/posix/posix_shell.h"
#include "host/posix/process_setup.h"
#include "host/testing/temp_folder.h"

namespace quillon::host::posix {
namespace {

namespace fs = std::filesystem;
using ::testing::IsEmpty;
using testing::TempFolder;

constexpr const char* kLongName = "PicCutConverterWithALongName.exe";

class ProgramsTest : public ::testing::Test {
 protected:
  ~ProgramsTest() override {
    for (const ProcessFacts& facts : processes.Running()) {
      if (facts.folder.starts_with(folder.Path())) processes.End(facts.id);
    }
  }

  // A program of the system under another name, in the folder of the test.
  std::string Program(const std::string& original, const std::string& entry) {
    const std::string path = folder.Path(entry);
    fs::create_directories(fs::path(path).parent_path());
    fs::copy_file(original, path);
    return path;
  }

  std::string Script(const std::string& entry, const std::string& text) {
    const std::string path = folder.Write(entry, "#!/bin/sh\n" + text);
    EXPECT_EQ(chmod(path.c_str(), 0755), 0);
    return path;
  }

  // Waits, with a generous end, until something holds.
  bool Until(const std::function<bool()>& holds) {
    PosixClock clock;
    for (const double end = clock.Seconds() + 30; clock.Seconds() < end; clock.Sleep(0.002)) {
      if (holds()) return true;
    }
    return false;
  }

  // Of this test alone: others may run beside it.
  std::vector<ProcessFacts> Named(const std::string& name) {
    std::vector<ProcessFacts> found = processes.Running();
    std::erase_if(found, [&](const ProcessFacts& facts) {
      return facts.name != name || !facts.folder.starts_with(folder.Path());
    });
    return found;
  }

  TempFolder folder;
  PosixShell shell;
  PosixProcesses processes;
};

TEST_F(ProgramsTest, AStartedProgramIsFoundByItsWholeNameAndEnded) {
  Program("/bin/sleep", std::string("app/") + kLongName);
  EXPECT_EQ(shell.Start(kLongName, {"600"}, folder.Path("app")), kStarted);
  const auto found = Named(kLongName);
  ASSERT_EQ(found.size(), 1u);
  EXPECT_EQ(found[0].folder, folder.Path("app"));
  EXPECT_TRUE(found[0].own);
  EXPECT_GT(found[0].id, 1);
  EXPECT_TRUE(processes.End(found[0].id));
  EXPECT_TRUE(Until([&] { return Named(kLongName).empty(); }));
  EXPECT_FALSE(processes.End(found[0].id));
}

TEST_F(ProgramsTest, AProgramThatWasDeletedKeepsItsName) {
  const std::string path = Program("/bin/sleep", "app/QxImgTool.exe");
  EXPECT_EQ(shell.Start(path, {"600"}, ""), kStarted);
  fs::remove(path);
  const auto found = Named("QxImgTool.exe");
  ASSERT_EQ(found.size(), 1u);
  EXPECT_EQ(found[0].folder, folder.Path("app"));
}

TEST_F(ProgramsTest, AScriptIsFoundByItsOwnName) {
  const std::string name = "SavePicsToTiffWithALongName.exe";
  Script("app/" + name, "while :; do sleep 1; done\n");
  EXPECT_EQ(shell.Start(name, {"x"}, folder.Path("app")), kStarted);
  ASSERT_TRUE(Until([&] { return Named(name).size() == 1; }));
  EXPECT_EQ(Named(name)[0].folder, folder.Path("app"));
}

TEST_F(ProgramsTest, ALookFromOneFolderSeesAndEndsOnlyWhatRunsFromThere) {
  Program("/bin/sleep", "one/Tool.exe");
  Program("/bin/sleep", "two/Tool.exe");
  EXPECT_EQ(shell.Start("Tool.exe", {"600"}, folder.Path("one")), kStarted);
  EXPECT_EQ(shell.Start("Tool.exe", {"600"}, folder.Path("two")), kStarted);
  ASSERT_EQ(Named("Tool.exe").size(), 2u);
  fs::create_symlink(folder.Path("one"), folder.Path("link"));
  PosixProcesses one(folder.Path("link"));
  const auto seen = one.Running();
  ASSERT_EQ(seen.size(), 1u);
  EXPECT_EQ(seen[0].folder, folder.Path("one"));
  for (const ProcessFacts& facts : Named("Tool.exe")) EXPECT_EQ(one.End(facts.id), facts.folder == folder.Path("one"));
  EXPECT_TRUE(Until([&] { return Named("Tool.exe").size() == 1; }));
}

TEST_F(ProgramsTest, ThisProcessIsFoundAndSystemProcessesStay) {
  const auto running = processes.Running();
  const auto self =
      std::find_if(running.begin(), running.end(), [](const auto& facts) { return facts.id == getpid(); });
  ASSERT_NE(self, running.end());
  const fs::path program = fs::read_symlink("/proc/self/exe");
  EXPECT_EQ(self->name, program.filename().native());
  EXPECT_EQ(self->folder, program.parent_path().native());
  EXPECT_TRUE(self->own);
  EXPECT_FALSE(processes.End(0));
  EXPECT_FALSE(processes.End(1));
  EXPECT_FALSE(processes.End(-1));
}

TEST_F(ProgramsTest, AProcessOfAnotherUserIsNotEnded) {
  if (geteuid() != 0) GTEST_SKIP() << "only the administrator can start a process for another";
  // As that user would see it: a process that belongs to somebody else.
  const std::string path = Program("/bin/sleep", "Foreign.exe");
  fs::permissions(folder.Path(), fs::perms::group_all | fs::perms::others_all, fs::perm_options::add);
  const pid_t child = fork();
  if (child == 0) {
    if (setuid(65534) == 0) execl(path.c_str(), path.c_str(), "600", nullptr);
    _exit(1);
  }
  EXPECT_TRUE(Until([&] { return !Named("Foreign.exe").empty(); }));
  const auto found = Named("Foreign.exe");
  for (const ProcessFacts& facts : found) {
    EXPECT_FALSE(facts.own);
    EXPECT_FALSE(processes.End(facts.id));
  }
  kill(child, SIGKILL);
  waitpid(child, nullptr, 0);
  EXPECT_EQ(found.size(), 1u);
}

TEST_F(ProgramsTest, StartsReturnHowTheyWent) {
  folder.Write("plain.exe", "not a program");
  const std::string rubbish = folder.Write("rubbish.exe", "not a program");
  ASSERT_EQ(chmod(rubbish.c_str(), 0755), 0);
  fs::create_directory(folder.Path("folder.exe"));
  Program("/bin/true", "fine.exe");
  struct Row {
    const char* program;
    int result;
  };
  const Row rows[] = {{"fine.exe", 42},  {"none.exe", 2},   {"plain.exe", 5},     {"rubbish.exe", 5},
                      {"folder.exe", 5}, {"", 2},           {"none/fine.exe", 2}, {"./fine.exe", 42},
                      {"true", 42},      {"/none/true", 2}, {"/bin/true", 42}};
  for (const Row& row : rows) EXPECT_EQ(shell.Start(row.program, {}, folder.Path()), row.result) << row.program;
  EXPECT_EQ(shell.Start("/bin/true", {}, folder.Path("none")), kStartMissing);
  EXPECT_EQ(shell.Start("surely-no-program-of-this-name", {}, ""), kStartMissing);
}

TEST_F(ProgramsTest, ArgumentsArriveAsTheyAre) {
  Script("tool.exe", "for a in \"$@\"; do printf '%s|' \"$a\" >> out.part; done; mv out.part out\n");
  const std::vector<std::string> arguments{"a b", "",     "$HOME `id` 'x' \"y\"", "line\nbreak", "\xCD\xBC",
                                           "-rf", "tab\t"};
  EXPECT_EQ(shell.Start("tool.exe", arguments, folder.Path()), kStarted);
  ASSERT_TRUE(Until([&] { return folder.Exists("out"); }));
  std::string expected;
  for (const std::string& argument : arguments) expected += argument + "|";
  EXPECT_EQ(folder.Read("out"), expected);
}

TEST_F(ProgramsTest, AProgramRunsInItsFolderWithNothingInherited) {
  Script("tool.exe",
         "pwd > part\n"
         "readlink /proc/$$/fd/0 /proc/$$/fd/1 /proc/$$/fd/2 >> part\n"
         "ls /proc/$$/fd >> part\n"
         "grep SigIgn /proc/$$/status >> part\n"
         "mv part out\n");
  IgnoreSignals();
  const int inherited = open("/dev/null", O_RDONLY);
  ASSERT_GE(inherited, 0);
  // A handle far from those that the shell of the script opens itself.
  ASSERT_EQ(dup2(inherited, 77), 77);
  EXPECT_EQ(shell.Start("tool.exe", {}, folder.Path()), kStarted);
  ASSERT_TRUE(Until([&] { return folder.Exists("out"); }));
  close(77);
  close(inherited);
  const std::string out = folder.Read("out");
  EXPECT_TRUE(out.starts_with(folder.Path() + "\n/dev/null\n")) << out;
  EXPECT_EQ(out.find("\n77\n"), std::string::npos) << out;
  EXPECT_NE(out.find("SigIgn:\t0000000000000000"), std::string::npos) << out;
}

TEST_F(ProgramsTest, NoZombieStays) {
  Program("/bin/true", "quick.exe");
  for (int i = 0; i < 20; ++i) EXPECT_EQ(shell.Start("quick.exe", {}, folder.Path()), kStarted);
  EXPECT_TRUE(Until([&] { return Named("quick.exe").empty(); }));
  // Nothing of them is left for this process to collect.
  EXPECT_EQ(waitpid(-1, nullptr, WNOHANG), -1);
  EXPECT_EQ(errno, ECHILD);
}

TEST_F(ProgramsTest, AFreshCopyCanBeStartedAtOnce) {
  PosixDisk disk(folder.Path("data"));
  Files files(disk);
  for (int i = 0; i < 20; ++i) {
    const std::string name = "Helper" + std::to_string(i) + ".exe";
    ASSERT_TRUE(files.Copy("/bin/true", folder.Path(name)));
    EXPECT_EQ(shell.Start(name, {}, folder.Path()), kStarted);
  }
}

TEST_F(ProgramsTest, FoldersFilesAndAddressesAreHandedToTheDesktop) {
  Script("bin/xdg-open", "printf '%s\\n' \"$@\" > '" + folder.Path("part") + "'; mv '" + folder.Path("part") + "' '" +
                             folder.Path("out") + "'\n");
  const std::string kept = std::getenv("PATH");
  setenv("PATH", (folder.Path("bin") + ":" + kept).c_str(), 1);
  const auto opened = [&](const std::function<void()>& act) {
    fs::remove(folder.Path("out"));
    act();
    EXPECT_TRUE(Until([&] { return folder.Exists("out"); }));
    return folder.Read("out");
  };
  EXPECT_EQ(opened([&] { shell.OpenFolder("/a b"); }), "/a b\n");
  EXPECT_EQ(opened([&] { shell.OpenFolder("-a"); }), "./-a\n");
  EXPECT_EQ(opened([&] { shell.Reveal("/a b/c.jpg"); }), "/a b/\n");
  EXPECT_EQ(opened([&] { shell.Reveal("/c.jpg"); }), "/\n");
  EXPECT_EQ(opened([&] { shell.OpenBrowser("https://example.org/?a=b&c"); }), "https://example.org/?a=b&c\n");
  setenv("PATH", kept.c_str(), 1);
}

TEST_F(ProgramsTest, OnlyOneProcessClaimsAFolder) {
  PosixInstance first(folder.Path());
  EXPECT_TRUE(first.Claim());
  EXPECT_TRUE(first.Claim());
  PosixInstance second(folder.Path());
  EXPECT_FALSE(second.Claim());
  TempFolder elsewhere;
  PosixInstance other(elsewhere.Path());
  EXPECT_TRUE(other.Claim());
}

TEST_F(ProgramsTest, AClaimIsSeenWithoutBeingTouched) {
  EXPECT_FALSE(IsClaimed(folder.Path()));
  {
    PosixInstance program(folder.Path());
    EXPECT_TRUE(program.Claim());
    EXPECT_TRUE(IsClaimed(folder.Path()));
    EXPECT_TRUE(IsClaimed(folder.Path()));
  }
  EXPECT_TRUE(folder.Exists("quillon.lock"));
  EXPECT_FALSE(IsClaimed(folder.Path()));
}

TEST_F(ProgramsTest, AClaimEndsWithItsProcessHoweverThatEnds) {
  int ready[2];
  ASSERT_EQ(pipe(ready), 0);
  const pid_t child = fork();
  if (child == 0) {
    PosixInstance claimed(folder.Path());
    const char answer = claimed.Claim() ? 'y' : 'n';
    (void)!write(ready[1], &answer, 1);
    for (;;) pause();
  }
  char answer = 0;
  ASSERT_EQ(read(ready[0], &answer, 1), 1);
  close(ready[0]);
  close(ready[1]);
  EXPECT_EQ(answer, 'y');
  PosixInstance second(folder.Path());
  EXPECT_FALSE(second.Claim());
  kill(child, SIGKILL);
  waitpid(child, nullptr, 0);
  EXPECT_TRUE(second.Claim());
}

TEST_F(ProgramsTest, AClaimIsNotInheritedByStartedPrograms) {
  const std::string path = Program("/bin/sleep", "Helper.exe");
  pid_t child = 0;
  {
    PosixInstance claimed(folder.Path());
    EXPECT_TRUE(claimed.Claim());
    // Started as a library would, that knows nothing of the claim.
    child = fork();
    if (child == 0) {
      execl(path.c_str(), path.c_str(), "600", nullptr);
      _exit(1);
    }
    EXPECT_TRUE(Until([&] { return !Named("Helper.exe").empty(); }));
  }
  PosixInstance next(folder.Path());
  EXPECT_TRUE(next.Claim());
  kill(child, SIGKILL);
  waitpid(child, nullptr, 0);
}

TEST_F(ProgramsTest, TheProgramRunsIfNothingCanBeLocked) {
  PosixInstance nowhere(folder.Path("none"));
  EXPECT_TRUE(nowhere.Claim());
}

}  // namespace
}  // namespace quillon::host::posix
