// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
// What holds for all helpers alike: killed at any moment, with settings that cannot be used, and asked for its version.
#include <gtest/gtest.h>
#include <sys/wait.h>
#include <unistd.h>

#include <ctime>
#include <filesystem>

#include "build_paths.h"
#include "helpers/helper_process.h"
#include "helpers/jobs.h"
#include "helpers/pdfs.h"
#include "helpers/pictures.h"
#include "helpers/runtime/child.h"
#include "helpers/until.h"
#include "tools/twins.h"

namespace quillon::helpers {
namespace {

namespace fs = std::filesystem;
using namespace testing;

constexpr const char* kAll[] = {"QxImgTool",       "QxBackImg",    "PicHandler",  "TessaExifHandler", "SavePicsToTiff",
                                "PicCutConverter", "CutMedia",     "PicCirleCut", "QxBackOCRer",      "DCTiffsMaker",
                                "DrawTranspText",  "PicsToAniGif", "CMD",         "MediaInfoT"};

TEST(EveryHelper, PrintsItsVersion) {
  const HelperFolder app;
  for (const char* name : kAll) {
    const Ran ran = app.Run(name, {"--version"});
    EXPECT_EQ(ran.exit, 0) << name;
    EXPECT_EQ(ran.out, std::string(name) + " " QUILLON_VERSION "\n");
    EXPECT_EQ(ran.err, "") << name;
  }
  EXPECT_TRUE(app.Names().empty());
}

// The result of a job is its file, or its answer if it makes no file.
class EveryJob : public ::testing::TestWithParam<Job> {
 protected:
  void SetUp() override {
    Save(app.Path("a.jpg"), Waves(600, 400), 300);
    const bool reads = job.helper == std::string("QxBackOCRer");
    if (reads && !RunProgram({"tesseract", "--version"})) GTEST_SKIP() << "Tesseract is not installed";
  }

  bool MakesFile() const { return *job.target != 0; }
  std::string State() const {
    if (!MakesFile()) return app.Get(job.key);
    return app.Exists(job.target) ? app.Read(job.target) : "";
  }
  void Put(const std::string& state) const {
    if (MakesFile()) {
      app.Write(job.target, state);
    } else {
      app.Set(job.key, state);
    }
  }

  HelperFolder app;
  const Job& job = GetParam();
};

// Those of them whose order does not stand in the store.
class EveryStoreJob : public EveryJob {};

double Now() {
  timespec now{};
  clock_gettime(CLOCK_MONOTONIC, &now);
  return static_cast<double>(now.tv_sec) + static_cast<double>(now.tv_nsec) / 1e9;
}

void Rest(double seconds) {
  const timespec moment{static_cast<time_t>(seconds), static_cast<long>((seconds - static_cast<long>(seconds)) * 1e9)};
  nanosleep(&moment, nullptr);
}

// Whether any process works in that folder.
bool Works(const std::string& folder) {
  std::error_code error;
  for (const auto& process : fs::directory_iterator("/proc")) {
    if (fs::read_symlink(process.path() / "cwd", error) == folder) return true;
  }
  return false;
}

// The moments of the kills are spread over the time that the job takes, and a little beyond.
TEST_P(EveryJob, AKillAtAnyMomentLeavesAWholeFile) {
  constexpr int kSteps = 12;
  std::vector<std::string> parameters = job.prepare(app);
  if (State().empty()) Put("what stood there");
  const std::string before = State();
  const double begun = Now();
  const Ran ran = Finish(app, job, Start(app, job, parameters));
  ASSERT_EQ(ran.exit, 0) << ran.err;
  const double took = Now() - begun;
  const std::string after = State();
  ASSERT_NE(after, before);
  for (int step = 0; step <= kSteps; ++step) {
    parameters = job.prepare(app);
    Put(before);
    const Started started = Start(app, job, parameters);
    Rest(took * 1.1 * step / kSteps);
    Kill(app, started);
    const std::string now = State();
    const bool whole = now == before || now == after || (job.whole && job.whole(app.Path(job.target)));
    // The answer of an earlier call goes first.
    EXPECT_TRUE(whole || (!MakesFile() && now.empty())) << step << ": " << now.size() << " bytes";
    EXPECT_TRUE(Until([&] { return !Works(app.Path()); })) << step;
  }
  // And it goes on as if nothing had been.
  parameters = job.prepare(app);
  EXPECT_EQ(Finish(app, job, Start(app, job, parameters)).exit, 0);
}

// A damaged store is begun anew; what can be done is done.
TEST_P(EveryStoreJob, ADamagedStoreKeepsNothingFromBeingMade) {
  for (const std::string& bytes :
       {std::string(8192, 'x'), std::string("SQLite format 3\0", 16) + std::string(5000, '\1')}) {
    if (MakesFile()) fs::remove(app.Path(job.target));
    const std::vector<std::string> parameters = job.prepare(app);
    for (const char* name : {"settings.db-wal", "settings.db-shm"}) fs::remove(app.Path(name));
    app.Write("settings.db", bytes);
    const Ran ran = Finish(app, job, Start(app, job, parameters));
    EXPECT_EQ(ran.exit, 0) << ran.err;
    if (MakesFile()) {
      EXPECT_GT(State().size(), 100U);
    } else {
      EXPECT_NE(State().find(job.answer), std::string::npos);
    }
  }
}

// Root may write everything.
class NotRoot {
 public:
  NotRoot() {
    if (!root_) return;
    EXPECT_EQ(setresuid(kNobody, kNobody, 0), 0);
  }
  ~NotRoot() {
    if (!root_) return;
    EXPECT_EQ(setresuid(0, 0, 0), 0);
  }
  NotRoot(const NotRoot&) = delete;
  NotRoot& operator=(const NotRoot&) = delete;

 private:
  static constexpr uid_t kNobody = 65534;
  bool root_ = geteuid() == 0;
};

// Nor are answers that nobody can read, if the settings cannot be written.
TEST_P(EveryStoreJob, AStoreThatMayOnlyBeReadKeepsNothingFromBeingMade) {
  const std::vector<std::string> parameters = job.prepare(app);
  const fs::path folder = fs::path(app.Path()).parent_path();
  fs::permissions(folder, fs::perms::all);
  for (const auto& entry : fs::recursive_directory_iterator(folder)) {
    const bool store = entry.path().filename().string().starts_with("settings.");
    fs::permissions(entry.path(), store ? fs::perms(0444) : fs::perms::all);
  }
  {
    const NotRoot nobody;
    EXPECT_EQ(Finish(app, job, Start(app, job, parameters)).exit, 0);
  }
  if (MakesFile()) {
    EXPECT_GT(State().size(), 100U);
  }
}

// Another program locks the settings for a while: the answer arrives when it releases them.
TEST_P(EveryJob, WaitsForALockedStore) {
  const std::vector<std::string> parameters = job.prepare(app);
  const bool answers = *job.key != 0;
  if (answers) app.Set(job.key, "", job.application);
  StoreHolder holder(app);
  const Started started = Start(app, job, parameters);
  if (answers) {
    Rest(0.3);
    EXPECT_EQ(waitpid(started.helper, nullptr, WNOHANG), 0);
    EXPECT_EQ(app.Get(job.key, job.application), "");
  }
  holder.LetGo();
  EXPECT_TRUE(!answers ||
              Until([&] { return app.Get(job.key, job.application).find(job.answer) != std::string::npos; }));
  const Ran ran = Finish(app, job, started);
  EXPECT_EQ(ran.exit, 0) << ran.err;
  if (MakesFile()) {
    EXPECT_GT(State().size(), 100U);
  }
}

std::string NameOf(const ::testing::TestParamInfo<Job>& job) {
  return std::string(job.param.helper) + std::to_string(job.index);
}

INSTANTIATE_TEST_SUITE_P(Jobs, EveryJob, ::testing::ValuesIn(Jobs()), NameOf);
INSTANTIATE_TEST_SUITE_P(Followers, EveryJob, ::testing::ValuesIn(Followers()), NameOf);
INSTANTIATE_TEST_SUITE_P(Jobs, EveryStoreJob, ::testing::ValuesIn(Jobs()), NameOf);

// --- What lies in the program folder

TEST(ProgramFolder, HoldsEveryHelperAsItsTwinOrByItself) {
  for (const tools::Helper& helper : tools::Helpers()) {
    const bool alone = helper.copied == tools::Copied::Never;
    const std::string path = std::string(QUILLON_BINARY_DIR "/bin/") + helper.name + (alone ? ".exe" : ".dll");
    EXPECT_EQ(access(path.c_str(), X_OK), 0) << path;
  }
  EXPECT_EQ(access(QUILLON_BINARY_DIR "/bin/CMD.exe", X_OK), 0);
}

TEST(ProgramFolder, HoldsAPdfThatIsCopied) { EXPECT_EQ(PagesOf(QUILLON_BINARY_DIR "/bin/BasePdf.dll"), 1); }

}  // namespace
}  // namespace quillon::helpers
