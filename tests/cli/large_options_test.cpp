// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
// The advanced options in several processes that handle a folder together.
#include <map>

#include "base/rect.h"
#include "cli/program_fixture.h"

namespace quillon::cli {
namespace {

using Words = std::vector<std::string>;

struct Job {
  const char* name;
  Words settings;
  // The outputs of picture number i, which is 40 + 4 i pixels wide and 30 high.
  base::Size (*size)(int i);
};

void PrintTo(const Job& job, std::ostream* out) { *out << job.name; }

const std::vector<Job>& Jobs() {
  static const std::vector<Job> jobs{
      // Turned 30 x (40 + 4 i), cut 30 x (20 + 2 i), halved 15 x (10 + i), and 10 pixels above it.
      {"TurnedHalvedGreyBordered",
       {"FBaseOpt.CmbRotate=1", "FBaseOpt.ChCutAndZoom=1", "FBaseOpt.CmbZoom=50%", "FBaseOpt.ChToGray=1",
        "FBaseOpt.ChAddBoard=1", "FBaseOpt.TBoard(1)=1", "FBaseOpt.CmbDPI=254", "TCutValue(1)=50"},
       [](int i) {
         return base::Size{15, 20 + i};
       }},
      // 80x60 turned is 80 cos 30 + 60 sin 30 = 99.3 wide and 80 sin 30 + 60 cos 30 = 91.96 high.
      {"ZoomedTurnedByAnAngleInverse",
       {"FBaseOpt.ChZoomAndCut=1", "FBaseOpt.CmbZoom=80,60", "FBaseOpt.CmbRotate=5", "FBaseOpt.TAngle=30",
        "FBaseOpt.ChInvert=1"},
       [](int) {
         return base::Size{100, 92};
       }},
  };
  return jobs;
}

// Width and height from the header of the file.
base::Size PngSize(const std::string& png) {
  const auto number = [&](std::size_t at) {
    int value = 0;
    for (std::size_t i = at; i < at + 4 && i < png.size(); ++i)
      value = value * 256 + static_cast<unsigned char>(png[i]);
    return value;
  };
  return {number(16), number(20)};
}

class LargeOptionsTest : public ProgramTest, public testing::WithParamInterface<Job> {
 protected:
  static constexpr int kPictures = 12;

  Words Steps(const Words& more, const std::string& to) const {
    Words all{"--json", "--open",   "FBaseOpt", "--set",         "CmbOutType=png",
              "--set",  "ChCutA=0", "--set",    "TCutValue(3)=0"};
    for (const std::string& setting : GetParam().settings) all.insert(all.end(), {"--set", setting});
    all.insert(all.end(), {"--answer", "打开输出目录=No", "--out", folder.Path(to)});
    all.insert(all.end(), more.begin(), more.end());
    return all;
  }
  // The outputs of a run, by their names.
  std::map<std::string, std::string> Outputs(const Words& more, const std::string& to) const {
    fs::create_directory(folder.Path(to));
    const Ran ran = Run(Steps(more, to));
    EXPECT_EQ(ran.exit, 0) << ran.out << ran.err;
    EXPECT_EQ(Events(ran.out).back().value("written", 0), kPictures) << ran.out;
    std::map<std::string, std::string> outputs;
    for (const std::string& name : folder.Names(to)) outputs[name] = folder.Read(to + "/" + name);
    return outputs;
  }
};

TEST_P(LargeOptionsTest, JobsMakeWhatOneListMakes) {
  for (int i = 0; i < kPictures; ++i) {
    folder.Write("in/" + std::to_string(i % 3) + "/" + std::to_string(i) + ".bmp", BmpPicture(40 + 4 * i, 30));
  }
  const auto ofList = Outputs({"--click", "menuNormalCut", "--", "in"}, "list");
  const auto ofJobs = Outputs({"--set", "ChBig=1", "--set", "ChSubFold=1", "--set", "LInDir=" + folder.Path("in"),
                               "--jobs", "2", "--click", "menuNormalCut"},
                              "jobs");
  ASSERT_EQ(ofList.size(), std::size_t{kPictures});
  ASSERT_EQ(ofJobs.size(), std::size_t{kPictures});
  for (int i = 0; i < kPictures; ++i) {
    const std::string name = std::to_string(i) + ".png";
    ASSERT_TRUE(ofList.contains(name) && ofJobs.contains(name)) << name;
    EXPECT_TRUE(ofList.at(name) == ofJobs.at(name)) << name << " differs";
    EXPECT_EQ(PngSize(ofJobs.at(name)), GetParam().size(i)) << name;
  }
}

INSTANTIATE_TEST_SUITE_P(Jobs, LargeOptionsTest, testing::ValuesIn(Jobs()),
                         [](const auto& job) { return std::string(job.param.name); });

}  // namespace
}  // namespace quillon::cli
