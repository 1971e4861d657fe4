// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
// What holds for all helpers alike: killed at any moment, with settings that cannot be used, and asked for its version.
#include <fcntl.h>
#include <gtest/gtest.h>
#include <sqlite3.h>
#include <sys/wait.h>
#include <unistd.h>

#include <csignal>
#include <ctime>
#include <filesystem>
#include <functional>

#include "formats/tools/converter_order.h"
#include "helpers/frame/child.h"
#include "helpers/helper_process.h"
#include "helpers/pdfs.h"
#include "helpers/pictures.h"

namespace quillon::helpers {
namespace {

namespace fs = std::filesystem;
using namespace testing;

constexpr const char* kAll[] = {"QxImgTool",       "QxBackImg",    "PicHandler",  "TessaExifHandler", "SavePicsToTiff",
                                "PicCutConverter", "CutMedia",     "PicCirleCut", "QxBackOCRer",      "DCTiffsMaker",
                                "DrawTranspText",  "PicsToAniGif", "CMD"};

TEST(EveryHelper, TellsItsVersion) {
  const HelperFolder app;
  for (const char* name : kAll) {
    const Ran ran = app.Run(name, {"--version"});
    EXPECT_EQ(ran.exit, 0) << name;
    EXPECT_EQ(ran.out, std::string(name) + " " QUILLON_VERSION "\n");
    EXPECT_EQ(ran.err, "") << name;
  }
  EXPECT_TRUE(app.Names().empty());
}

// One job of a helper that writes a file.
struct Job {
  const char* helper;
  // Lays the input out and gives the parameters.
  std::function<std::vector<std::string>(const HelperFolder& app)> prepare;
  const char* target;
  // Whether a finished target is whole, where it is not the same every time.
  std::function<bool(const std::string& path)> whole = {};
};

std::string Tabbed(const std::vector<std::string>& fields) {
  std::string text;
  for (const std::string& field : fields) text += (text.empty() ? "" : "\t") + field;
  return text;
}

std::string CoupleOrderOf(const HelperFolder& app) {
  return *formats::OrderText(
      formats::CoupleOrder{.source = app.Path("a.jpg"), .target = app.Path("out.jpg"), .size = {300, 200}});
}

const Job kJobs[] = {
    {"QxImgTool",
     [](const HelperFolder& app) {
       MakePdf(app.Path("a.pdf"), {{}, {}, {}});
       return std::vector{Tabbed({"Quillon", app.Path("a.pdf"), app.Path("out.pdf"), "CutPdf", "cutpdf", "1|1|1|1"})};
     },
     "out.pdf", [](const std::string& path) { return PagesOf(path) == 3; }},
    {"QxImgTool",
     [](const HelperFolder& app) {
       app.Write("Images/.keep", "");
       Save(app.Path("Images/0001.jpg"), Waves(400, 300));
       app.Set("MakeTiff", "1");
       return std::vector{
           Tabbed({"Quillon", app.Path("Images"), app.Path("out.tif"), "MakeTiff", "maketiff", "lzw", "4", "1"})};
     },
     "out.tif"},
    {"PicHandler",
     [](const HelperFolder& app) {
       return std::vector{"\"" + app.Path("a.jpg") + "\"  -interlace none -verbose -quality 100 \"" +
                          app.Path("out.pdf") + "\""};
     },
     "out.pdf"},
    {"PicHandler",
     [](const HelperFolder& app) {
       fs::copy(QUILLON_BINARY_DIR "/bin/ColorConfigs", app.Path("ColorConfigs"),
                fs::copy_options::skip_existing | fs::copy_options::recursive);
       return std::vector{"\"" + app.Path("a.jpg") + "\"  -profile \"" + app.Path("ColorConfigs/sRGB.icc") +
                          "\" -profile \"" + app.Path("ColorConfigs/Default.icm") + "\" \"" + app.Path("out.jpg") +
                          "\""};
     },
     "out.jpg"},
    {"TessaExifHandler",
     [](const HelperFolder& app) {
       Save(app.Path("b.jpg"), Waves(60, 40), 72);
       Save(app.Path("out.jpg"), Waves(600, 400), 300);
       return std::vector{app.Path("b.jpg"), app.Path("out.jpg")};
     },
     "out.jpg"},
    {"SavePicsToTiff",
     [](const HelperFolder& app) {
       app.Write("Ops.txt", app.Path("out.tif") + "\r\nSaveNew\r\n" + app.Path("a.jpg") + "\r\n");
       return std::vector<std::string>{};
     },
     "out.tif"},
    {"PicCutConverter",
     [](const HelperFolder& app) {
       app.Write("CoupleParam.txt", CoupleOrderOf(app));
       return std::vector<std::string>{};
     },
     "out.jpg"},
    {"CutMedia",
     [](const HelperFolder& app) {
       return std::vector{"-i \"" + app.Path("a.jpg") + "\" -vf crop=x=1:y=2:w=300:h=200 -y -q:v 0 \"" +
                          app.Path("out.png") + "\""};
     },
     "out.png"},
    {"PicCirleCut",
     [](const HelperFolder& app) {
       return std::vector{Tabbed({app.Path("a.jpg"), app.Path("out.png"), "0", "0", "500", "300"})};
     },
     "out.png"},
    {"DCTiffsMaker",
     [](const HelperFolder& app) {
       std::string list = "Quillon\r\n" + app.Path("out.tif") + "\r\n0\r\n0\r\n1\r\n";
       for (int line = 5; line < 27; ++line) list += "0\r\n";
       app.Write("OkList.txt", list + app.Path("a.jpg") + "\r\n");
       return std::vector{app.Path("OkList.txt")};
     },
     "out.tif"},
    {"PicsToAniGif",
     [](const HelperFolder& app) {
       app.Write("Gif.txt", app.Path("a.jpg") + "\n");
       return std::vector{Tabbed({app.Path(), "0", "0", "98", "0", "600", "400", "100", app.Path("out.gif")})};
     },
     "out.gif"},
};

class EveryJob : public ::testing::TestWithParam<Job> {
 protected:
  EveryJob() { Save(app.Path("a.jpg"), Waves(600, 400), 300); }

  HelperFolder app;
};

double Now() {
  timespec now{};
  clock_gettime(CLOCK_MONOTONIC, &now);
  return static_cast<double>(now.tv_sec) + static_cast<double>(now.tv_nsec) / 1e9;
}

// The moments of the kills are spread over the time that the job takes, and a little beyond.
TEST_P(EveryJob, AKillAtAnyMomentLeavesAWholeFile) {
  constexpr int kSteps = 12;
  const Job& job = GetParam();
  std::vector<std::string> parameters = job.prepare(app);
  const bool stood = app.Exists(job.target);
  if (!stood) app.Write(job.target, "what stood there");
  const std::string before = app.Read(job.target);
  const double begun = Now();
  const Ran ran = app.Run(job.helper, parameters);
  ASSERT_EQ(ran.exit, 0) << ran.err;
  const double took = Now() - begun;
  const std::string after = app.Read(job.target);
  ASSERT_NE(after, before);
  for (int step = 0; step <= kSteps; ++step) {
    app.Write(job.target, before);
    const pid_t process = app.Start(job.helper, parameters);
    const double pause = took * 1.1 * step / kSteps;
    const timespec moment{static_cast<time_t>(pause), static_cast<long>((pause - static_cast<long>(pause)) * 1e9)};
    nanosleep(&moment, nullptr);
    kill(process, SIGKILL);
    app.Wait(process);
    const std::string now = app.Read(job.target);
    const bool whole = now == before || now == after || (job.whole && job.whole(app.Path(job.target)));
    EXPECT_TRUE(whole) << step << ": " << now.size() << " bytes";
    parameters = job.prepare(app);
  }
  // And it goes on as if nothing had been.
  EXPECT_EQ(app.Run(job.helper, parameters).exit, 0);
}

// A damaged store is begun anew; what can be done is done.
TEST_P(EveryJob, ADamagedStoreKeepsNothingFromBeingMade) {
  const Job& job = GetParam();
  if (job.target == std::string("out.tif") && job.helper == std::string("QxImgTool")) GTEST_SKIP() << "follows a key";
  const std::vector<std::string> parameters = job.prepare(app);
  for (const std::string& bytes :
       {std::string(8192, 'x'), std::string("SQLite format 3\0", 16) + std::string(5000, '\1')}) {
    for (const char* name : {"settings.db-wal", "settings.db-shm"}) fs::remove(app.Path(name));
    app.Write("settings.db", bytes);
    const Ran ran = app.Run(job.helper, parameters);
    EXPECT_EQ(ran.exit, 0) << ran.err;
    ASSERT_TRUE(app.Exists(job.target));
    EXPECT_GT(app.Read(job.target).size(), 100U);
  }
}

// Neither are answers that nobody can read, where the store may not be written.
TEST_P(EveryJob, AStoreThatMayOnlyBeReadKeepsNothingFromBeingMade) {
  const Job& job = GetParam();
  const std::vector<std::string> parameters = job.prepare(app);
  const fs::path folder = fs::path(app.Path()).parent_path();
  fs::permissions(folder, fs::perms::all);
  for (const auto& entry : fs::recursive_directory_iterator(folder)) {
    const bool store = entry.path().filename().string().starts_with("settings.");
    fs::permissions(entry.path(), store ? fs::perms(0444) : fs::perms::all);
  }
  // Root may write everything.
  const pid_t child = fork();
  if (child == 0) {
    if (geteuid() == 0 && setuid(65534) != 0) _exit(9);
    int status = 0;
    waitpid(app.Start(job.helper, parameters), &status, 0);
    _exit(WEXITSTATUS(status));
  }
  int status = 0;
  waitpid(child, &status, 0);
  EXPECT_EQ(WEXITSTATUS(status), 0);
  ASSERT_TRUE(app.Exists(job.target));
  EXPECT_GT(app.Read(job.target).size(), 100U);
}

std::string NameOf(const ::testing::TestParamInfo<Job>& job) {
  return std::string(job.param.helper) + std::to_string(job.index);
}

INSTANTIATE_TEST_SUITE_P(Jobs, EveryJob, ::testing::ValuesIn(kJobs), NameOf);

// Another program holds the store for a while: the answer comes when it lets go.
TEST(EveryHelper, WaitsForALockedStore) {
  const HelperFolder app;
  Save(app.Path("a.tif"), Waves(60, 40), 300);
  sqlite3* other = nullptr;
  ASSERT_EQ(sqlite3_open(app.Path("settings.db").c_str(), &other), SQLITE_OK);
  ASSERT_EQ(sqlite3_exec(other, "BEGIN IMMEDIATE", nullptr, nullptr, nullptr), SQLITE_OK);
  const pid_t tool =
      app.Start("QxImgTool",
                {Tabbed({"Quillon", app.Path("a.tif"), app.Path(), "GetTiffPages", "gettiffpages", "lzw", "0", "1"})});
  const timespec while_{0, 300'000'000};
  nanosleep(&while_, nullptr);
  EXPECT_EQ(waitpid(tool, nullptr, WNOHANG), 0);
  ASSERT_EQ(sqlite3_exec(other, "COMMIT", nullptr, nullptr, nullptr), SQLITE_OK);
  sqlite3_close(other);
  EXPECT_EQ(app.Wait(tool).exit, 0);
  EXPECT_EQ(app.Get("GetTiffPages"), "1");
}

}  // namespace
}  // namespace quillon::helpers
