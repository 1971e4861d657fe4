// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
// The large-capacity run gives the same results as the run of a list, with any advanced options; so does a run that was
// interrupted and resumed.
#include <filesystem>
#include <map>

#include "base/path_text.h"
#include "job/marking_tools.h"
#include "job/psd_bytes.h"
#include "job/run/resume_fixture.h"

namespace quillon::job {
namespace {

// The bytes of files by their names.
using Contents = std::map<std::string, std::string>;
using Settings = std::vector<std::pair<const char*, const char*>>;  // in the order a user would make them

struct Job {
  const char* name;
  Settings settings;
  const char* type;
  bool over;
  base::Size size;  // of each output, of pictures of 160 x 120
};

void PrintTo(const Job& job, std::ostream* out) { *out << job.name; }

// 120x160, 90x160, 45x80 and 10 pixels above it.
Settings TurnedHalvedGreyBordered() {
  return {{"FBaseOpt.CmbRotate", "1"},    {"TCutValue(0)", "25"},
          {"FBaseOpt.ChCutAndZoom", "1"}, {"FBaseOpt.CmbZoom", "50%"},
          {"FBaseOpt.ChToGray", "1"},     {"FBaseOpt.ChAddBoard", "1"},
          {"FBaseOpt.TBoard(1)", "1"},    {"FBaseOpt.PBoardColor", "#0000FF"},
          {"FBaseOpt.CmbDPI", "254"},     {"FBaseOpt.CmbExtCase", "1"}};
}

const std::vector<Job>& Jobs() {
  static const std::vector<Job> jobs{
      {"TurnedHalvedGreyBordered", TurnedHalvedGreyBordered(), "jpg", false, {45, 90}},
      {"OverTheSources", TurnedHalvedGreyBordered(), "jpg", true, {45, 90}},
      {"AsPdf", TurnedHalvedGreyBordered(), "pdf", false, {45, 90}},
      // 80x60 turned is 80 cos 30 + 60 sin 30 = 99.3 wide and 80 sin 30 + 60 cos 30 = 91.96 high.
      {"ZoomedTurnedByAnAngleInverse",
       {{"FBaseOpt.ChZoomAndCut", "1"},
        {"FBaseOpt.CmbZoom", "80,60"},
        {"FBaseOpt.CmbRotate", "5"},
        {"FBaseOpt.TAngle", "30"},
        {"FBaseOpt.ChInvert", "1"},
        {"TCutValue(3)", "50"}},
       "png",
       false,
       {100, 46}},
      {"TurnedForTheCutAndBackInBlackAndWhite",
       {{"FBaseOpt.ChRotateCut", "1"},
        {"FBaseOpt.TAngle", "90"},
        {"FBaseOpt.ChRecover", "1"},
        {"FBaseOpt.ChToWB", "1"},
        {"TCutValue(1)", "50"}},
       "tif",
       false,
       {80, 120}},
      {"TurnedAndSplit",
       {{"FBaseOpt.CmbRotate", "2"},
        {"FBaseOpt.ChSplit", "1"},
        {"FBaseOpt.TSmalS(4)", "3"},
        {"FBaseOpt.TSmalS(5)", "2"}},
       "jpg",
       false,
       {40, 80}},
  };
  return jobs;
}

class LargeOptionsTest : public CutTest, public ::testing::WithParamInterface<Job> {
 protected:
  void SetUp() override {
    CutTest::SetUp();
    program.outputTools = &tools;
    LayOutProfiles(program);
    // The millimetres of a picture without a resolution are computed with that of the screen.
    flags.ScreenDpi = 254;
    options.Load();
    for (const char* name : {"FBaseOpt.ChToCMYK", "FBaseOpt.ChKeepExif", "ChSubFold"}) Put(name, "1");
    for (const auto& [name, value] : GetParam().settings) Put(name, value);
    Put("ChOver", GetParam().over ? "1" : "0");
    Put("LInDir", world.folder.Path("in"));
    for (const char* name : {"a.jpg", "b.png", "x/c.gif", "x/d.bmp", "x/y/e.tif"}) {
      sources.push_back(Make(name, Painted(160, 120, Slope), 254));
    }
    sources.push_back(world.folder.Write("in/x/y/f.psd", PsdBytes(160, 120, {10, 200, 30})));
  }
  // What a run into a folder of its own leaves there and among the sources.
  template <typename Run>
  Contents Left(const std::string& out, const Run& run) {
    EXPECT_TRUE(world.files.MakeFolders(world.folder.Path(out)));
    Put("LOutDir", world.folder.Path(out));
    form.CmbOutType.SetText(GetParam().type);
    run();
    EXPECT_EQ(Totals().written, sources.size()) << Whys();
    Contents left;
    for (const std::string& folder : {out, std::string("in")}) {
      for (const auto& entry : std::filesystem::recursive_directory_iterator(world.folder.Path(folder))) {
        const std::string name = entry.path().lexically_relative(world.folder.Path(folder));
        const std::string content = entry.is_regular_file() ? world.folder.Read(base::JoinPath(folder, name)) : "";
        left[(folder == "in" ? "in/" : "out/") + name] = content;
      }
    }
    return left;
  }
  // The pdf of these tests is a jpg with another extension.
  base::Size SizeOfOutput(const std::string& output) {
    if (!output.ends_with(".pdf")) return SizeOf(output);
    std::filesystem::copy_file(output, output + ".jpg");
    return SizeOf(output + ".jpg");
  }

  MarkingTools tools;
  std::vector<std::string> sources;
};

TEST_P(LargeOptionsTest, MakesWhatTheListMakes) {
  const std::string in = world.folder.Path("in");
  const std::string kept = world.folder.Path("kept");
  std::filesystem::copy(in, kept, std::filesystem::copy_options::recursive);
  const Contents ofList = Left("list", [&] { Cut(sources); });
  std::filesystem::remove_all(in);
  std::filesystem::rename(kept, in);
  recorder.done.clear();

  const Contents ofFolder = Left("large", [&] {
    Put("ChBig", "1");
    Cut();
  });
  EXPECT_EQ(program.files.RowCount(), 0u);
  for (const auto& [name, content] : ofList) {
    const auto same = ofFolder.find(name);
    ASSERT_NE(same, ofFolder.end()) << name;
    EXPECT_TRUE(same->second == content) << name << " differs";
  }
  EXPECT_EQ(ofFolder.size(), ofList.size());

  ASSERT_EQ(recorder.done.size(), sources.size());
  for (const FileResult& file : recorder.done) {
    EXPECT_EQ(SizeOfOutput(file.output), GetParam().size) << file.output;
    const std::string extension = std::filesystem::path(file.source).extension();
    const std::string bytes = world.folder.Read(file.output.substr(world.folder.Path("").size()));
    const std::string exif = GetParam().over ? program.AppPath("tmp" + extension) : file.source;
    EXPECT_EQ(CountOf(bytes, MarkingTools::Marks(exif)), 1) << file.output;
  }
}

INSTANTIATE_TEST_SUITE_P(Jobs, LargeOptionsTest, ::testing::ValuesIn(Jobs()),
                         [](const auto& job) { return std::string(job.param.name); });

// --- A run that was broken off. Its pictures of 40 x 30 become 30x40 by the turn, 30x20 by the cut and 15x10.

struct Break {
  const char* name;
  bool over;
  bool killed;
};

void PrintTo(const Break& end, std::ostream* out) { *out << end.name; }

class ResumedOptionsTest : public ResumeTest, public ::testing::WithParamInterface<Break> {
 protected:
  void SetUp() override {
    ResumeTest::SetUp();
    Margins(0, 50, 0, 0);
    form.CmbOutType.SetText("png");
    for (const auto& [name, value] : {std::pair("CmbRotate", "1"), std::pair("ChCutAndZoom", "1"),
                                      std::pair("CmbZoom", "50%"), std::pair("ChInvert", "1")}) {
      Option(name, value);
    }
  }
  // The cuts of the sources by the run of a list.
  Contents OfList() {
    Put("ChBig", "0");
    std::vector<std::string> paths;
    for (const std::string& name : world.folder.Names("in")) paths.push_back(In(name));
    Cut(paths);
    EXPECT_EQ(Totals().written, paths.size()) << Whys();
    Contents cuts;
    for (const std::string& name : OutNames()) cuts[name] = world.folder.Read("out/" + name);
    program.files.Clear();
    Put("ChBig", "1");
    std::filesystem::remove_all(outFolder);
    std::filesystem::create_directory(outFolder);
    recorder.done.clear();
    return cuts;
  }
};

TEST_P(ResumedOptionsTest, MakesWhatAListMakesAndNothingTwice) {
  const Contents wanted = OfList();
  const bool over = GetParam().over;
  Put("ChOver", over ? "1" : "0");
  GetParam().killed ? KillAfter(3) : StopAfter(3);
  recorder.done.clear();
  world.boxes.Forget();
  Answer(host::Reply::Yes);
  Cut();
  EXPECT_EQ(world.boxes.Count(kQuestion), 1);
  EXPECT_EQ(Totals().written + Totals().skipped, 6u) << Results();
  EXPECT_GT(Totals().skipped, 0u) << Results();
  const std::string folder = over ? "in" : "out";
  const std::vector<std::string> names = world.folder.Names(folder);
  ASSERT_EQ(names.size(), wanted.size());
  for (const std::string& name : names) {
    EXPECT_EQ(SizeOf(world.folder.Path(base::JoinPath(folder, name))), (base::Size{15, 10})) << name;
    EXPECT_TRUE(world.folder.Read(base::JoinPath(folder, name)) == wanted.at(name)) << name << " differs";
  }
}

INSTANTIATE_TEST_SUITE_P(Breaks, ResumedOptionsTest,
                         ::testing::Values(Break{"Stopped", false, false}, Break{"StoppedOverTheSources", true, false},
                                           Break{"KilledOverTheSources", true, true}),
                         [](const auto& run) { return std::string(run.param.name); });

}  // namespace
}  // namespace quillon::job
