// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
// The resource limits of a helper and of the programs that it starts.
#include <gtest/gtest.h>
#include <sys/stat.h>

#include <csignal>
#include <cstdlib>
#include <fstream>
#include <sstream>

#include "helpers/jobs.h"
#include "helpers/pictures.h"
#include "helpers/until.h"
#include "host/posix/environment.h"

namespace quillon::helpers {
namespace {

using namespace testing;

constexpr const char* kFile = "600";
constexpr const char* kBatch = "86400";

// Returns the soft limit in a line of /proc/<process>/limits, "" if there is none.
std::string LimitIn(const std::string& limits, const std::string& name) {
  std::istringstream lines(limits);
  for (std::string line; std::getline(lines, line);) {
    std::string value;
    if (line.starts_with(name)) std::istringstream(line.substr(name.size())) >> value;
    if (!value.empty()) return value;
  }
  return "";
}

std::string Text(const std::string& path) {
  std::ostringstream text;
  text << std::ifstream(path).rdbuf();
  return text.str();
}

class Limits : public ::testing::Test {
 protected:
  Limits() : path_(host::posix::Environment("PATH")) {}
  ~Limits() override { setenv("PATH", path_.c_str(), 1); }

  // Installs a program of that name that writes its limits into a file.
  void Replace(const std::string& program) {
    const std::string path =
        app.Write("bin/" + program, "#!/bin/sh\ncat /proc/self/limits > " + app.Path("limits") +
                                        "\ncat /proc/self/status > " + app.Path("status") + "\nexit 1\n");
    chmod(path.c_str(), 0755);
    setenv("PATH", (app.Path("bin") + ":" + path_).c_str(), 1);
  }
  std::string Limit(const std::string& name) const { return LimitIn(app.Read("limits"), name); }

  HelperFolder app;
  std::string path_;
};

TEST_F(Limits, BindWhatAHelperStarts) {
  Save(app.Path("a.png"), Waves(20, 20));
  Replace("tesseract");
  EXPECT_EQ(app.Run("QxBackOCRer", {"Quillon\n" + app.Path("a.png")}).exit, 1);
  EXPECT_EQ(Limit("Max cpu time"), kFile);
  EXPECT_TRUE(Limit("Max core file size") == "1" || Limit("Max core file size") == "0");
  EXPECT_NE(app.Read("status").find("Seccomp:\t2"), std::string::npos);
#if !defined(__SANITIZE_ADDRESS__) && !defined(__SANITIZE_THREAD__)
  EXPECT_EQ(Limit("Max data size"), std::to_string(std::uint64_t{4} << 30));
#endif
}

TEST_F(Limits, OfTheShellAreThoseOfWhatItRuns) {
  const std::string path = app.Write("X.exe", "#!/bin/sh\ncat /proc/self/limits > limits\n");
  chmod(path.c_str(), 0755);
  EXPECT_EQ(app.Run("CMD", {"/c", "X.exe"}).exit, 0);
  EXPECT_EQ(Limit("Max cpu time"), kBatch);
}

TEST_F(Limits, AFilmMayRunLong) {
  Save(app.Path("a.png"), Waves(20, 20));
  Replace("ffmpeg");
  EXPECT_EQ(app.Run("CutMedia", {"-i \"" + app.Path("a.png") + "\" -y \"" + app.Path("b.png") + "\""}).exit, 1);
  EXPECT_EQ(Limit("Max cpu time"), kBatch);
}

TEST_F(Limits, WhatRunsBesideABatchMayRunForADay) {
  app.Write("Images/.keep", "");
  Save(app.Path("a.jpg"), Waves(20, 20));
  const std::string out = app.Path("out.tif");
  const std::pair<const char*, std::string> kCalls[] = {
      {"QxImgTool", "Quillon\t" + app.Path("Images") + "\t" + out + "\tMakeTiff\tmaketiff\tlzw\t4\t1"},
      {"QxImgTool", "Quillon\t0\t" + app.Path("out.pdf") + "\tQxImgTool\tbindpdf\t\t\tFalse\t300\tFalse"},
      {"QxBackImg", "Quillon\tQxBackImg\t" + app.Path("a.jpg") + "\tload|" + app.Path("a.jpg") + "|0"},
  };
  for (const auto& [helper, parameters] : kCalls) {
    const pid_t process = app.Start(helper, {parameters});
    const std::string path = "/proc/" + std::to_string(process) + "/limits";
    EXPECT_TRUE(Until([&] { return LimitIn(Text(path), "Max cpu time") == kBatch; })) << parameters;
    kill(process, SIGKILL);
    app.Wait(process);
  }
}

// Each of these helpers waits for the store while the test reads its limits.
TEST_F(Limits, DependOnTheWork) {
  Save(app.Path("a.jpg"), Waves(600, 400), 300);
  for (const Job& job : Jobs()) {
    if (*job.key == 0 || job.serves) continue;
    const std::string name = job.helper;
    const bool grows = name == "DCTiffsMaker" || name == "PicsToAniGif";
    const std::vector<std::string> parameters = job.prepare(app);
    StoreHolder holder(app);
    const Started started = Start(app, job, parameters);
    const std::string path = "/proc/" + std::to_string(started.helper) + "/limits";
    EXPECT_TRUE(Until([&] { return LimitIn(Text(path), "Max cpu time") == (grows ? kBatch : kFile); }))
        << name << " " << job.key << " " << LimitIn(Text(path), "Max cpu time");
    Kill(app, started);
  }
}

TEST_F(Limits, LeaveTimeForALongTiff) {
  Save(app.Path("a.png"), Waves(1500, 1000));
  std::string order = app.Path("out.tif") + "\r\nSaveNew\r\n";
  for (int page = 0; page < 50; ++page) order += app.Path("a.png") + "\r\n";
  app.Write("Ops.txt", order);
  const pid_t process = app.Start("SavePicsToTiff", {});
  const std::string path = "/proc/" + std::to_string(process) + "/limits";
  EXPECT_TRUE(Until([&] { return LimitIn(Text(path), "Max cpu time") == kBatch; }));
  kill(process, SIGKILL);
  app.Wait(process);
}

}  // namespace
}  // namespace quillon::helpers
