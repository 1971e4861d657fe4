// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
// What a helper cannot do, even if a picture has taken it over: read, write or start anything that it was not handed.
#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/ptrace.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/uio.h>
#include <sys/un.h>
#include <sys/wait.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <csignal>
#include <cstring>
#include <filesystem>
#include <functional>

#include "build_paths.h"
#include "helpers/helper_process.h"
#include "helpers/pictures.h"
#include "helpers/runtime/child.h"
#include "helpers/runtime/file_access.h"
#include "helpers/runtime/sandbox.h"

namespace quillon::helpers {
namespace {

namespace fs = std::filesystem;

// Runs check in a process of its own that limit has restricted. Returns true if check returned true.
bool HoldsAfter(const std::function<void()>& limit, const std::function<bool()>& check) {
  const pid_t child = fork();
  if (child == 0) {
    limit();
    _exit(check() ? 0 : 1);
  }
  int status = 0;
  waitpid(child, &status, 0);
  return WIFEXITED(status) && WEXITSTATUS(status) == 0;
}

bool Denied(long result) { return result < 0 && errno == EACCES; }

bool Opens(const std::string& path, int flags) {
  const int handle = open(path.c_str(), flags | O_CLOEXEC, 0600);
  if (handle >= 0) close(handle);
  return handle >= 0;
}

bool OpenDenied(const std::string& path, int flags) { return !Opens(path, flags) && errno == EACCES; }

// --- Calls that the sandbox refuses

class SandboxTest : public ::testing::Test {
 protected:
  static bool Holds(const std::function<bool()>& check, Starts starts = Starts::Nothing) {
    return HoldsAfter([&] { Sandbox({.starts = starts}); }, check);
  }
};

TEST_F(SandboxTest, NoProgramIsStarted) {
  EXPECT_TRUE(Holds([] { return Denied(execl("/bin/true", "true", nullptr)); }));
  EXPECT_TRUE(Holds([] {
    const int program = open("/bin/true", O_RDONLY | O_CLOEXEC);
    const std::array<char*, 1> none{nullptr};
    return program >= 0 && Denied(fexecve(program, none.data(), none.data()));
  }));
  EXPECT_TRUE(Holds([] { return !RunProgram({"true"}).started; }));
  for (const Starts starts : {Starts::OneTool, Starts::Helpers}) {
    EXPECT_TRUE(Holds([] { return bool(RunProgram({"true"})); }, starts));
  }
}

TEST_F(SandboxTest, NoOtherProcessIsRead) {
  char byte = 'a';
  char copy = 'b';
  const iovec from{&byte, 1};
  const iovec to{&copy, 1};
  for (const Starts starts : {Starts::Nothing, Starts::OneTool, Starts::Helpers}) {
    EXPECT_TRUE(Holds([&] { return Denied(process_vm_readv(getppid(), &to, 1, &from, 1, 0)); }, starts));
    EXPECT_TRUE(Holds([&] { return Denied(process_vm_writev(getppid(), &to, 1, &from, 1, 0)); }, starts));
  }
}

TEST_F(SandboxTest, NoOtherProcessIsTraced) {
#if defined(__SANITIZE_ADDRESS__) || defined(__SANITIZE_THREAD__)
  GTEST_SKIP() << "The search for leaks needs ptrace";
#endif
  EXPECT_TRUE(Holds([] { return Denied(ptrace(PTRACE_ATTACH, getppid(), nullptr, nullptr)); }));
  EXPECT_TRUE(Holds([] { return Denied(ptrace(PTRACE_TRACEME, 0, nullptr, nullptr)); }));
}

// The server would accept anybody.
TEST_F(SandboxTest, NoServerIsReached) {
  const HelperFolder folder;
  sockaddr_un address{.sun_family = AF_UNIX, .sun_path = {}};
  std::strncpy(address.sun_path, folder.Path("server").c_str(), sizeof address.sun_path - 1);
  const auto* const named = reinterpret_cast<const sockaddr*>(&address);
  const int server = socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0);
  ASSERT_EQ(bind(server, named, sizeof address), 0);
  ASSERT_EQ(listen(server, 4), 0);
  const auto connects = [&] { return connect(socket(AF_UNIX, SOCK_STREAM, 0), named, sizeof address); };
  EXPECT_EQ(connects(), 0);
  EXPECT_TRUE(Holds([&] { return Denied(connects()); }));
  EXPECT_TRUE(Holds([&] { return Denied(connects()); }, Starts::OneTool));
  EXPECT_TRUE(Holds([&] { return connects() == 0; }, Starts::Helpers)) << "the window of a helper needs its display";
  close(server);
}

TEST_F(SandboxTest, NoFileIsCutShortByItsName) {
  const HelperFolder folder;
  const std::string path = folder.Write("a.txt", "content");
  EXPECT_TRUE(Holds([&] { return Denied(truncate(path.c_str(), 0)); }));
  EXPECT_EQ(folder.Read("a.txt"), "content");
}

// --- Files that were not handed over

class FileAccessTest : public ::testing::Test {
 protected:
  void SetUp() override {
    if (!FileAccessIsLimited()) GTEST_SKIP() << "This kernel has no Landlock";
    for (const char* name : {"source.txt", "other.txt", "in/a.txt", "out/old.txt", "app/work.txt"}) {
      files_.Write(name, "content");
    }
  }

  bool Holds(const std::function<bool()>& check, const std::string& tool = "") const {
    const HandedFiles handed{.sources = {At("source.txt"), At("in"), At("missing"), ""},
                             .results = {At("out/new.txt"), At("nowhere/new.txt")},
                             .tool = tool};
    return HoldsAfter([&] { AllowOnly(handed, {At("app")}); }, check);
  }
  std::string At(const std::string& name) const { return files_.Path(name); }

  host::testing::TempFolder files_;
};

TEST_F(FileAccessTest, SourcesAreRead) {
  EXPECT_TRUE(Holds([&] { return Opens(At("source.txt"), O_RDONLY) && Opens(At("in/a.txt"), O_RDONLY); }));
  EXPECT_TRUE(Holds([&] { return OpenDenied(At("source.txt"), O_WRONLY); }));
  EXPECT_TRUE(
      Holds([&] { return OpenDenied(At("in/a.txt"), O_RDWR) && OpenDenied(At("in/b.txt"), O_RDWR | O_CREAT); }));
}

TEST_F(FileAccessTest, OtherFilesAreNot) {
  EXPECT_TRUE(Holds([&] { return OpenDenied(At("other.txt"), O_RDONLY) && OpenDenied(At("other.txt"), O_WRONLY); }));
  EXPECT_TRUE(Holds([&] { return OpenDenied(At("new.txt"), O_WRONLY | O_CREAT); }));
  EXPECT_TRUE(Holds([&] { return OpenDenied(At("."), O_RDONLY | O_DIRECTORY); }));
  EXPECT_TRUE(Holds([&] { return Denied(unlink(At("other.txt").c_str())); }));
  EXPECT_TRUE(Holds([&] { return Denied(mkdir(At("folder").c_str(), 0700)); }));
  EXPECT_TRUE(Holds([&] {
    const std::string link = At("out/link.txt");
    return symlink(At("other.txt").c_str(), link.c_str()) < 0 || OpenDenied(link, O_RDONLY);
  }));
  EXPECT_TRUE(Holds([&] { return link(At("other.txt").c_str(), At("out/link.txt").c_str()) < 0; }));
  EXPECT_TRUE(Holds([&] { return rename(At("other.txt").c_str(), At("out/moved.txt").c_str()) < 0; }));
  EXPECT_EQ(files_.Read("other.txt"), "content");
}

TEST_F(FileAccessTest, ResultsAreWrittenAsideAndRenamed) {
  EXPECT_TRUE(Holds([&] {
    return Opens(At("out/draft"), O_RDWR | O_CREAT | O_EXCL) &&
           rename(At("out/draft").c_str(), At("out/new.txt").c_str()) == 0 &&
           rename(At("out/new.txt").c_str(), At("out/old.txt").c_str()) == 0 && unlink(At("out/old.txt").c_str()) == 0;
  }));
  EXPECT_FALSE(files_.Exists("out/old.txt"));
  EXPECT_TRUE(Holds([&] { return Opens(At("out"), O_RDONLY | O_DIRECTORY); })) << "to sync the folder";
}

TEST_F(FileAccessTest, AResultThatIsALinkIsWrittenAtItsEnd) {
  files_.Write("far/away/.keep", "");
  fs::create_symlink("../far/away/new.txt", At("out/new.txt"));
  EXPECT_TRUE(Holds([&] { return Opens(At("out/new.txt"), O_WRONLY | O_CREAT); }));
  EXPECT_TRUE(files_.Exists("far/away/new.txt"));
}

TEST_F(FileAccessTest, OwnFoldersAreWritten) {
  EXPECT_TRUE(Holds([&] {
    return Opens(At("app/work.txt"), O_RDWR | O_TRUNC) && mkdir(At("app/Tmp").c_str(), 0700) == 0 &&
           Opens(At("app/Tmp/1.jpg"), O_RDWR | O_CREAT);
  }));
}

TEST_F(FileAccessTest, WhatEveryProgramNeedsRemains) {
  EXPECT_TRUE(Holds([] { return Opens("/dev/null", O_RDWR) && Opens("/dev/urandom", O_RDONLY); }));
  EXPECT_TRUE(Holds([] { return Opens("/proc/self/maps", O_RDONLY) && Opens("/usr/lib", O_RDONLY | O_DIRECTORY); }));
  EXPECT_TRUE(Holds([] { return OpenDenied("/usr/new", O_WRONLY | O_CREAT); }));
}

TEST_F(FileAccessTest, OtherProcessesDoNotShowTheirMemoryOrFiles) {
  const int handle = open(At("other.txt").c_str(), O_RDONLY | O_CLOEXEC);
  const std::string parent = "/proc/" + std::to_string(getpid());
  const std::string file = parent + "/fd/" + std::to_string(handle);
  EXPECT_TRUE(Opens(file, O_RDONLY));
  EXPECT_TRUE(Holds([&] { return OpenDenied(file, O_RDONLY) && OpenDenied(parent + "/mem", O_RDONLY); }));
  close(handle);
}

TEST_F(FileAccessTest, OnlyTheToolIsExecuted) {
  EXPECT_TRUE(Holds([] { return bool(RunProgram({"true"})); }, "true"));
  EXPECT_TRUE(Holds([] { return bool(RunProgram({"/usr/bin/true"})); }, "/usr/bin/true"));
  for (const char* tool : {"true", "no such tool", ""}) {
    EXPECT_TRUE(Holds([] { return !RunProgram({"uname"}).started; }, tool)) << tool;
  }
}

TEST_F(FileAccessTest, AToolThatIsAScriptRunsWhatIsInstalled) {
  const std::string script = files_.Write("tool", "#!/bin/sh\nuname\n");
  chmod(script.c_str(), 0700);
  EXPECT_TRUE(Holds([&] { return bool(RunProgram({script})); }, script));
  const std::string other = files_.Write("other", "#!/bin/sh\nuname\n");
  chmod(other.c_str(), 0700);
  EXPECT_TRUE(Holds([&] { return !RunProgram({other}).started; }, script));
}

TEST_F(FileAccessTest, ItsProgramsAreLimitedToo) {
  EXPECT_TRUE(Holds([&] { return bool(RunProgram({"cat", At("source.txt")})); }, "cat"));
  EXPECT_TRUE(Holds([&] { return RunProgram({"cat", At("other.txt")}).exit == 1; }, "cat"));
}

// --- Helpers whose tools follow the names in a file

class HandedOverTest : public ::testing::Test {
 protected:
  HelperFolder app;
  host::testing::TempFolder elsewhere;
};

TEST_F(HandedOverTest, AFilmCannotIncludeAnotherFile) {
  if (!FileAccessIsLimited()) GTEST_SKIP() << "This kernel has no Landlock";
  testing::Save(elsewhere.Path("secret.png"), testing::Waves(60, 40));
  const std::string list = "ffconcat version 1.0\nfile '" + elsewhere.Path("secret.png") + "'\n";
  const std::string film = elsewhere.Write("film.ffconcat", list);
  const Ran ran = app.Run("CutMedia", {"-safe 0 -i \"" + film + "\" -y \"" + app.Path("out.png") + "\""});
  EXPECT_EQ(ran.exit, 1);
  EXPECT_FALSE(app.Exists("out.png"));
}

TEST_F(HandedOverTest, ATextCannotNameAnotherPicture) {
  if (!FileAccessIsLimited()) GTEST_SKIP() << "This kernel has no Landlock";
  if (!RunProgram({"tesseract", "--version"})) GTEST_SKIP() << "Tesseract is not installed";
  testing::SaveText(elsewhere.Path("secret.png"), "2026");
  const std::string list = elsewhere.Write("list.png", elsewhere.Path("secret.png") + "\n");
  EXPECT_EQ(app.Run("QxBackOCRer", {"Quillon\n" + list}).exit, 1);
  EXPECT_EQ(app.Get("OCRRes").find("2026"), std::string::npos) << app.Get("OCRRes");
}

// The program folder of quillon-batch holds only a link to the profiles.
TEST_F(HandedOverTest, ProfilesMayBeReachedThroughALink) {
  fs::create_symlink(QUILLON_BINARY_DIR "/bin/ColorConfigs", app.Path("ColorConfigs"));
  testing::Save(elsewhere.Path("a.jpg"), testing::Waves(60, 40));
  const std::string order = "\"" + elsewhere.Path("a.jpg") + "\" -profile \"" + app.Path("ColorConfigs/sRGB.icc") +
                            "\" -profile \"" + app.Path("ColorConfigs/Default.icm") + "\" \"" +
                            elsewhere.Path("b.jpg") + "\"";
  const Ran ran = app.Run("PicHandler", {order});
  EXPECT_EQ(ran.exit, 0) << ran.err;
  EXPECT_EQ(testing::Load(elsewhere.Path("b.jpg")).bands, 4);
}

TEST_F(HandedOverTest, FilesInOtherFoldersAreReadAndWritten) {
  const std::string source = elsewhere.Path("in.png");
  testing::Save(source, testing::Waves(60, 40));
  fs::create_directory(elsewhere.Path("out"));
  const std::string target = elsewhere.Path("out/b.png");
  EXPECT_EQ(app.Run("PicCirleCut", {source + "\t" + target + "\t0\t0\t20\t10"}).exit, 0);
  EXPECT_EQ(testing::Load(target).width, 20);
  EXPECT_EQ(app.Run("CutMedia", {"-i \"" + source + "\" -vf crop=30:20 -y \"" + target + "\""}).exit, 0);
  EXPECT_EQ(testing::Load(target).width, 30);
}

}  // namespace
}  // namespace quillon::helpers
