// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
// Whole runs of the program with its helpers, good ones and broken ones.
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <csignal>
#include <cstdlib>
#include <filesystem>
#include <future>

#include <exiv2/exiv2.hpp>

#include "build_paths.h"
#include "helpers/pictures.h"
#include "helpers/runtime/child.h"
#include "helpers/until.h"
#include "host/posix/posix_processes.h"
#include "host/testing/temp_folder.h"

namespace quillon::helpers {
namespace {

namespace fs = std::filesystem;
using testing::Load;
using testing::Save;
using testing::Waves;

const std::vector<std::string> kCmyk = {"--open", "FBaseOpt", "--set", "FBaseOpt.ChToCMYK=1"};
const std::vector<std::string> kExif = {"--open", "FBaseOpt", "--set", "FBaseOpt.ChKeepExif=1"};

void SetMaker(const std::string& picture, const std::string& maker) {
  const auto image = Exiv2::ImageFactory::open(picture);
  image->readMetadata();
  image->exifData()["Exif.Image.Make"] = maker;
  image->writeMetadata();
}

std::string MakerOf(const std::string& picture) {
  const auto image = Exiv2::ImageFactory::open(picture);
  image->readMetadata();
  return image->exifData()["Exif.Image.Make"].toString();
}

class RunTest : public ::testing::Test {
 protected:
  RunTest() {
    for (const char* name : {"in", "out", "tmp", "bin"}) fs::create_directory(folder.Path(name));
    Save(folder.Path("in/a.jpg"), Waves(60, 40), 300);
  }

  // Lays the program out again, with that script in the place of a helper.
  void Break(const std::string& helper, const std::string& script) {
    fs::copy_options options = fs::copy_options::update_existing;
    for (const auto& entry : fs::directory_iterator(QUILLON_BINARY_DIR "/bin")) {
      const std::string name = entry.path().filename();
      if (name == "quillon-batch") fs::copy(entry.path(), folder.Path("bin/" + name), options);
      if (name == "ColorConfigs" || (name.ends_with(".dll") && name != helper + ".dll")) {
        fs::create_symlink(entry.path(), folder.Path("bin/" + name));
      }
    }
    const std::string path = folder.Write("bin/" + helper + ".dll", "#!/bin/sh\n" + script);
    chmod(path.c_str(), 0755);
    program = folder.Path("bin/quillon-batch");
  }

  std::vector<std::string> Words(const std::vector<std::string>& steps, const std::string& out = "out") const {
    std::vector<std::string> words{
        "env", "TMPDIR=" + folder.Path("tmp"), program, "--json", "--set", "ChCutA=0", "--set", "TCutValue(3)=50"};
    words.insert(words.end(), steps.begin(), steps.end());
    for (const std::string& word : {std::string("--out"), folder.Path(out), std::string("--click"),
                                    std::string("menuNormalCut"), folder.Path("in/" + source)}) {
      words.push_back(word);
    }
    return words;
  }

  ProgramResult Run(const std::vector<std::string>& steps, const std::string& out = "out") const {
    return RunProgram(Words(steps, out));
  }

  // Helpers of runs of this test that still run.
  std::vector<std::string> Left() const {
    std::vector<std::string> left;
    for (const host::ProcessFacts& process : host::posix::PosixProcesses().Running()) {
      if (process.folder.starts_with(folder.Path())) left.push_back(process.name);
    }
    return left;
  }

  host::testing::TempFolder folder;
  std::string source = "a.jpg";
  std::string program = QUILLON_BINARY_DIR "/bin/quillon-batch";
};

TEST_F(RunTest, APictureBecomesCmyk) {
  const ProgramResult result = Run(kCmyk);
  EXPECT_EQ(result.exit, 0) << result.output;
  EXPECT_EQ(Load(folder.Path("out/a.jpg")).bands, 4);
  EXPECT_EQ(testing::DpiOf(folder.Path("out/a.jpg")), 300);
  EXPECT_EQ(folder.Names("tmp"), std::vector<std::string>{});
  EXPECT_EQ(folder.Names("out"), std::vector<std::string>{"a.jpg"});
}

TEST_F(RunTest, APictureBecomesAPdf) {
  const ProgramResult result = Run({"--set", "CmbOutType=pdf"});
  EXPECT_EQ(result.exit, 0) << result.output;
  EXPECT_EQ(folder.Names("out"), std::vector<std::string>{"a.pdf"});
}

TEST_F(RunTest, ExifIsKept) {
  SetMaker(folder.Path("in/a.jpg"), "Camera");
  const ProgramResult result = Run(kExif);
  EXPECT_EQ(result.exit, 0) << result.output;
  EXPECT_EQ(Load(folder.Path("out/a.jpg")).height, 20);
  EXPECT_EQ(MakerOf(folder.Path("out/a.jpg")), "Camera");
  EXPECT_EQ(folder.Names("tmp"), std::vector<std::string>{});
}

TEST_F(RunTest, TwoRunsDoNotMeet) {
  fs::create_directory(folder.Path("out2"));
  auto other = std::async(std::launch::async, [this] { return Run(kCmyk, "out2"); });
  EXPECT_EQ(Run(kCmyk).exit, 0);
  EXPECT_EQ(other.get().exit, 0);
  EXPECT_EQ(Load(folder.Path("out/a.jpg")).bands, 4);
  EXPECT_EQ(Load(folder.Path("out2/a.jpg")).bands, 4);
}

// Both orders stand under the same key.
TEST_F(RunTest, TwoRunsDoNotReadEachOthersExif) {
  fs::create_directory(folder.Path("out2"));
  fs::copy_file(folder.Path("in/a.jpg"), folder.Path("in/b.jpg"));
  SetMaker(folder.Path("in/a.jpg"), "First");
  SetMaker(folder.Path("in/b.jpg"), "Second");
  const std::vector<std::string> first = Words(kExif, "out");
  source = "b.jpg";
  const std::vector<std::string> second = Words(kExif, "out2");
  auto other = std::async(std::launch::async, [&] { return RunProgram(second); });
  EXPECT_EQ(RunProgram(first).exit, 0);
  EXPECT_EQ(other.get().exit, 0);
  EXPECT_EQ(MakerOf(folder.Path("out/a.jpg")), "First");
  EXPECT_EQ(MakerOf(folder.Path("out2/b.jpg")), "Second");
}

TEST_F(RunTest, ABrokenHelperCostsTheColoursAndNotTheRun) {
  for (const char* script : {"kill -9 $$\n", "exit 3\n", "echo garbage > Tmp.jpg\n"}) {
    fs::remove_all(folder.Path("bin"));
    fs::create_directory(folder.Path("bin"));
    fs::remove(folder.Path("out/a.jpg"));
    Break("PicHandler", script);
    const ProgramResult result = Run(kCmyk);
    EXPECT_EQ(result.exit, 0) << script << result.output;
    EXPECT_EQ(Load(folder.Path("out/a.jpg")).bands, 3) << script;
    EXPECT_EQ(folder.Names("tmp"), std::vector<std::string>{}) << script;
  }
}

TEST_F(RunTest, AHelperThatHangsIsEndedByAStop) {
  Break("PicHandler", "touch \"$(dirname \"$0\")/hangs\"\nwhile :; do sleep 0.01; done\n");
  std::vector<std::string> texts = Words(kCmyk);
  std::vector<char*> words;
  for (std::string& text : texts) words.push_back(text.data());
  words.push_back(nullptr);
  const pid_t run = fork();
  if (run == 0) {
    execvp(words[0], words.data());
    _exit(127);
  }
  const bool hangs = testing::Until([this] {
    const std::vector<std::string> left = Left();
    return std::find(left.begin(), left.end(), "PicHandler.exe") != left.end();
  });
  EXPECT_TRUE(hangs);
  kill(run, SIGINT);
  int status = 0;
  waitpid(run, &status, 0);
  EXPECT_TRUE(WIFEXITED(status));
  EXPECT_EQ(WEXITSTATUS(status), 3);
  EXPECT_EQ(folder.Names("out"), std::vector<std::string>{});
  EXPECT_EQ(folder.Names("tmp"), std::vector<std::string>{});
  EXPECT_TRUE(testing::Until([this] { return Left().empty(); }));
}

// The cut stands; what the helper would have added is said to be missing.
TEST_F(RunTest, ANameThatNoOrderCanCarryIsReported) {
  source = "a|b.jpg";
  fs::copy_file(folder.Path("in/a.jpg"), folder.Path("in/" + source));
  const ProgramResult result = Run(kExif);
  EXPECT_EQ(result.exit, 0) << result.output;
  EXPECT_NE(result.output.find("无法交给 TessaExifHandler"), std::string::npos) << result.output;
  EXPECT_EQ(Load(folder.Path("out/" + source)).height, 20);
}

TEST_F(RunTest, ExifIsKeptUnderNamesThatAnOrderCanCarry) {
  SetMaker(folder.Path("in/a.jpg"), "Camera");
  for (const char* name : {"a\tb.jpg", "a\nb.jpg", "a\"b.jpg"}) {
    source = name;
    fs::copy_file(folder.Path("in/a.jpg"), folder.Path("in/" + source));
    const ProgramResult result = Run(kExif);
    EXPECT_EQ(result.exit, 0) << name << result.output;
    EXPECT_EQ(MakerOf(folder.Path("out/" + source)), "Camera") << name << result.output;
  }
}

// Colours are turned, and a pdf is made, from a work file, whose name is always plain.
TEST_F(RunTest, NamesThatAnOrderCanCarryAreConverted) {
  for (const char* name : {"a|b.jpg", "a\tb.jpg", "a\"b.jpg", "a\nb.jpg", "-a %d[1] 'b'.jpg"}) {
    source = name;
    fs::copy_file(folder.Path("in/a.jpg"), folder.Path("in/" + source));
    const ProgramResult result = Run(kCmyk);
    EXPECT_EQ(result.exit, 0) << name << result.output;
    EXPECT_EQ(Load(folder.Path("out/" + source)).bands, 4) << name << result.output;
    EXPECT_EQ(Run({"--set", "CmbOutType=pdf"}).exit, 0) << name;
    EXPECT_TRUE(fs::exists(fs::path(folder.Path("out/" + source)).replace_extension("pdf"))) << name;
  }
}

TEST_F(RunTest, ABrokenHelperCostsTheExifAndNotTheRun) {
  for (const char* script : {"kill -9 $$\n", "exit 3\n", "echo garbage > Tmp.jpg\n", "true\n"}) {
    fs::remove_all(folder.Path("bin"));
    fs::create_directory(folder.Path("bin"));
    fs::remove(folder.Path("out/a.jpg"));
    Break("TessaExifHandler", script);
    const ProgramResult result = Run(kExif);
    EXPECT_EQ(result.exit, 0) << script << result.output;
    EXPECT_EQ(Load(folder.Path("out/a.jpg")).height, 20) << script;
    EXPECT_NE(result.output.find("Exif没有保留"), std::string::npos) << script << result.output;
    EXPECT_EQ(folder.Names("tmp"), std::vector<std::string>{}) << script;
  }
}

TEST_F(RunTest, ABrokenHelperCostsThePdfAndNotTheRun) {
  for (const char* script : {"kill -9 $$\n", "exit 3\n", "echo garbage > \"${1##*RGB \\\"}\"\n"}) {
    fs::remove_all(folder.Path("bin"));
    fs::create_directory(folder.Path("bin"));
    Break("PicHandler", script);
    const ProgramResult result = Run({"--set", "CmbOutType=pdf"});
    EXPECT_EQ(result.exit, 1) << script << result.output;
    EXPECT_FALSE(fs::exists(folder.Path("out/a.pdf"))) << script;
    EXPECT_EQ(folder.Names("tmp"), std::vector<std::string>{}) << script;
  }
}

TEST_F(RunTest, WithoutTheHelperTheOptionAsksForIt) {
  Break("PicHandler", "exit 0\n");
  fs::remove(folder.Path("bin/PicHandler.dll"));
  const ProgramResult result = Run({"--set", "CmbOutType=pdf"});
  EXPECT_NE(result.output.find("缺失资源文件"), std::string::npos) << result.output;
  EXPECT_EQ(folder.Names("out"), std::vector<std::string>{"a.jpg"});
}

}  // namespace
}  // namespace quillon::helpers
