// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
// Photographs with an orientation tag: png, jpg and tif outputs keep the tag; gif and bmp, which have none, look as
// those are shown.
#include <filesystem>
#include <map>
#include <utility>

#include "job/turned_picture.h"

namespace quillon::job {
namespace {

constexpr int kOrientations = 8;

// Whether the outputs still have the orientation of the source.
enum class Tag { Kept, Reset };

// Controls of the advanced options that are set before the run, in that order.
struct Case {
  const char* name;
  Tag tag;
  std::vector<std::pair<std::string, std::string>> set;
};

void PrintTo(const Case& options, std::ostream* out) { *out << options.name; }

const Case kCases[] = {
    {"Plain", Tag::Kept, {}},
    {"Grey", Tag::Kept, {{"ChToGray", "1"}}},
    {"Resolution", Tag::Kept, {{"CmbDPI", "254"}}},
    {"ZoomedBefore", Tag::Kept, {{"ChZoomAndCut", "1"}, {"CmbZoom", "50%"}}},
    {"ZoomedAfter", Tag::Kept, {{"ChCutAndZoom", "1"}, {"CmbZoom", "150%"}}},
    {"TurnedByRule", Tag::Reset, {{"CmbRotate", "1"}}},
    {"TurnedByRuleAndBack", Tag::Kept, {{"CmbRotate", "1"}, {"ChRecover", "1"}}},
    {"TurnedByAnyAngleAndBack", Tag::Kept, {{"CmbRotate", "5"}, {"TAngle", "7"}, {"ChRecover", "1"}}},
    {"TurnedForTheCut", Tag::Reset, {{"ChRotateCut", "1"}, {"TAngle", "90"}}},
    {"TurnedForTheCutAndBack", Tag::Kept, {{"ChRotateCut", "1"}, {"TAngle", "90"}, {"ChRecover", "1"}}},
    {"Bordered", Tag::Kept, {{"ChAddBoard", "1"}, {"TBoard(0)", "3"}, {"TBoard(3)", "2"}}},
    {"GreyZoomedBordered",
     Tag::Kept,
     {{"ChToGray", "1"}, {"ChCutAndZoom", "1"}, {"CmbZoom", "50%"}, {"ChAddBoard", "1"}, {"TBoard(1)", "3"}}},
    {"TurnedBordered", Tag::Reset, {{"CmbRotate", "1"}, {"ChAddBoard", "1"}, {"TBoard(0)", "3"}}},
    {"TurnedAndBackBordered",
     Tag::Kept,
     {{"CmbRotate", "1"}, {"ChRecover", "1"}, {"ChAddBoard", "1"}, {"TBoard(0)", "3"}}},
    {"BorderAlone", Tag::Kept, {{"ChFrmOnly", "1"}, {"ChAddBoard", "1"}, {"TBoard(2)", "3"}}},
    {"Split", Tag::Kept, {{"ChSplit", "1"}, {"TSmalS(4)", "2"}}},
    {"SplitBordered", Tag::Kept, {{"ChSplit", "1"}, {"TSmalS(5)", "2"}, {"ChAddBoard", "1"}, {"TBoard(0)", "3"}}},
};

class CutUprightTest : public CutTest, public ::testing::WithParamInterface<std::tuple<Case, const char*>> {
 protected:
  void SetUp() override {
    CutTest::SetUp();
    Margins(20, 5, 0, 10);
    options.Load();
    for (const auto& [name, text] : std::get<0>(GetParam()).set) Put("FBaseOpt." + name, text);
    Make("stored.jpg", Painted(60, 40, Quarters));
    const std::string stored = world.folder.Read("in/stored.jpg");
    for (int orientation = 1; orientation <= kOrientations; ++orientation) {
      const std::string name = "in/" + std::to_string(orientation) + ".jpg";
      sources_.push_back(world.folder.Write(name, WithOrientation(stored, orientation)));
    }
  }

  struct Output {
    Picture picture;
    int orientation = 1;  // of the tag
  };
  // The outputs of a run over all sources, by their names without the extension.
  std::map<std::string, Output> CutAll(const std::string& type) {
    form.CmbOutType.SetText(type);
    List(sources_);
    Cut();
    EXPECT_EQ(Totals().written, sources_.size()) << Whys();
    std::map<std::string, Output> outputs;
    for (const std::string& name : OutNames()) {
      const std::string bytes = world.folder.Read("out/" + name);
      const std::size_t chunk = type == "png" ? bytes.find("eXIf") : std::string::npos;
      const int orientation = chunk == std::string::npos ? 1 : imaging::ReadExif(bytes.substr(chunk + 4)).orientation;
      outputs[name.substr(0, name.rfind('.'))] = {Read(Out(name)), orientation};
    }
    std::filesystem::remove_all(outFolder);
    EXPECT_TRUE(world.files.MakeFolders(outFolder));
    program.Intake().Clear();
    return outputs;
  }

  std::vector<std::string> sources_;
};

TEST_P(CutUprightTest, AFormatWithoutATagLooksAsTheOthersAreShown) {
  const auto& [options, type] = GetParam();
  const double mostDifference = type == std::string("bmp") ? 0 : 6;
  program.recovering = true;  // nothing is prefetched
  const std::map<std::string, Output> tagged = CutAll("png");
  ASSERT_GE(tagged.size(), sources_.size());
  for (const auto& [name, output] : tagged) {
    EXPECT_EQ(output.orientation, options.tag == Tag::Kept ? name.front() - '0' : 1) << name;
  }
  for (const bool prefetched : {false, true}) {
    program.recovering = !prefetched;
    const std::map<std::string, Output> untagged = CutAll(type);
    ASSERT_EQ(untagged.size(), tagged.size());
    for (const auto& [name, output] : tagged) {
      ASSERT_TRUE(untagged.contains(name)) << name;
      const Picture shown = Upright(output.picture, output.orientation);
      EXPECT_LE(MeanDifference(untagged.at(name).picture, shown), mostDifference) << name << " " << prefetched;
    }
  }
}

std::string NameOf(const ::testing::TestParamInfo<CutUprightTest::ParamType>& info) {
  return std::string(std::get<0>(info.param).name) + "_" + std::get<1>(info.param);
}

INSTANTIATE_TEST_SUITE_P(All, CutUprightTest,
                         ::testing::Combine(::testing::ValuesIn(kCases), ::testing::Values("gif", "bmp")), NameOf);

}  // namespace
}  // namespace quillon::job
