// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
// DCTiffsMaker as a person starts it: with a window if there is a display, and without one otherwise.
#include <gtest/gtest.h>

#include <csignal>
#include <cstdlib>
#include <fstream>
#include <sstream>

#include "helpers/helper_process.h"
#include "helpers/pictures.h"
#include "helpers/until.h"

namespace quillon::helpers {
namespace {

using namespace testing;

class VisibleForm : public ::testing::Test {
 protected:
  VisibleForm() {
    Forget();
    Save(app.Path("1.png"), Waves(10, 10));
    std::string list = "Quillon\n" + app.Path("out.tif") + "\n0\n0\n1\n";
    for (int line = 5; line < 27; ++line) list += "0\n";
    app.Write("OkList.txt", list + app.Path("1.png") + "\n");
  }
  ~VisibleForm() override { Forget(); }

  static void Forget() {
    for (const char* name : {"DISPLAY", "WAYLAND_DISPLAY", "QT_QPA_PLATFORM", "QUILLON_APP"}) unsetenv(name);
  }

  static std::string Fact(pid_t process, const char* file) {
    std::ostringstream text;
    text << std::ifstream("/proc/" + std::to_string(process) + "/" + file).rdbuf();
    return text.str();
  }

  HelperFolder app;
};

TEST_F(VisibleForm, WithoutADisplayTheOrderIsCarriedOut) {
  for (const std::vector<std::string>& parameters : {std::vector<std::string>{"3"}, {""}, {}}) {
    EXPECT_EQ(app.Run("DCTiffsMaker", parameters).exit, 0);
    EXPECT_EQ(TiffPageCount(app.Path("out.tif")), 1);
    app.Write("out.tif", "");
  }
}

TEST_F(VisibleForm, WithADisplayAnUnconfinedWindowIsShown) {
  setenv("QT_QPA_PLATFORM", "offscreen", 1);
  setenv("QUILLON_APP", app.Path().c_str(), 1);
  for (const std::vector<std::string>& parameters : {std::vector<std::string>{"3"}, {}}) {
    const pid_t process = app.Start("DCTiffsMaker", parameters);
    EXPECT_TRUE(Until([&] { return Fact(process, "maps").find("libqoffscreen") != std::string::npos; }));
    EXPECT_NE(Fact(process, "status").find("Seccomp:\t0"), std::string::npos);
    kill(process, SIGTERM);
    EXPECT_EQ(app.Wait(process).signal, SIGTERM);
    EXPECT_FALSE(app.Exists("out.tif"));
  }
}

TEST_F(VisibleForm, AnOrderIsCarriedOutWithADisplayToo) {
  setenv("QT_QPA_PLATFORM", "offscreen", 1);
  EXPECT_EQ(app.Run("DCTiffsMaker", {app.Path("OkList.txt")}).exit, 0);
  EXPECT_EQ(TiffPageCount(app.Path("out.tif")), 1);
  EXPECT_EQ(app.Run("DCTiffsMaker", {"./OkList.txt"}).exit, 0);
}

TEST_F(VisibleForm, NoDisplayThatIsNamedEmptyCounts) {
  setenv("DISPLAY", "", 1);
  EXPECT_EQ(app.Run("DCTiffsMaker", {"3"}).exit, 0);
}

}  // namespace
}  // namespace quillon::helpers
