// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
// What is prefetched for a region list: always the same bytes as without, for every kind of list and output.
#include <filesystem>
#include <functional>
#include <map>
#include <tuple>
#include <utility>

#include "job/psd_bytes.h"
#include "regions/lists/multi_cut.h"
#include "regions/regions_fixture.h"

namespace quillon::regions {
namespace {

using host::Reply;
using job::Painted;
using job::Pixel;
using job::Slope;

constexpr const char* kFolders = "为每一张底图新建以底图文件名的新建文件夹并将裁剪的小图存入该文件夹中？";
constexpr const char* kDone = "处理完毕！要打开输出目录吗？";

struct Case {
  const char* name;
  const char* list;  // as in a .clt file
  Reply folders;
};

void PrintTo(const Case& one, std::ostream* out) { *out << one.name; }

const Case kCases[] = {
    {"Pixels", "R\r\n10\t20\t30\t15\r\n0\t0\t60\t50\r\n", Reply::No},
    {"Percent", "D\r\n10\t20\t30\t40\r\n0\t0\t50\t50\r\n33.3\t12.5\t0\t7\r\n", Reply::No},
    {"AFolderForEach", "D\r\n10\t20\t30\t40\r\n0\t0\t0\t0\r\n", Reply::Yes},
    {"TheSameTwice", "R\r\n5\t5\t5\t5\r\n5\t5\t5\t5.0\r\n", Reply::No},
    {"PartlyOutside", "R\r\n-10\t-7\t70\t60\r\n0\t-20\t-20\t0\r\n", Reply::No},
    {"Beside", "R\r\n0\t150\t-100\t0\r\n0\t0\t60\t50\r\n", Reply::No},
    {"OneWithoutArea", "D\r\n0\t60\t60\t0\r\n0\t0\t50\t50\r\n50\t50\t0\t0\r\n", Reply::No},
    {"OneWithArea", "D\r\n0\t60\t60\t0\r\n0\t0\t50\t50\r\n", Reply::No},
    {"TooLarge", "R\r\n-2000000000\t0\t0\t-2000000000\r\n0\t0\t60\t50\r\n", Reply::No},
};

class RegionPlanTest : public RegionsTest {
 protected:
  void SetUp() override {
    RegionsTest::SetUp();
    program.ShowWindow("FMultCut");
    for (const char* name : {"a.jpg", "b.png", "c.gif", "d.tif", "e.bmp"}) {
      sources_.push_back(Make(name, Painted(97 + static_cast<int>(sources_.size()), 64, Slope), 254));
    }
    sources_.push_back(world.folder.Write("in/f.psd", job::PsdBytes(80, 60, {200, 30, 10})));
  }

  void Regions(const std::string& list) {
    Import(Clt("regions.clt", list));
    world.boxes.Forget();
  }
  // The outputs of a run over all sources, by path, and what the rows say.
  std::map<std::string, std::string> CutAll(Reply folders) {
    List(sources_);
    world.boxes.Answer(kFolders, folders, 1);
    world.boxes.Answer(kDone, Reply::No, 1);
    Click("FMultCut.CmdOk");
    std::map<std::string, std::string> outputs;
    for (const auto& entry : std::filesystem::recursive_directory_iterator(outFolder)) {
      const std::string path = entry.path();
      if (entry.is_regular_file()) outputs[path] = world.folder.Read(path.substr(world.folder.Path("").size()));
    }
    outputs["whys"] = Whys();
    std::filesystem::remove_all(outFolder);
    EXPECT_TRUE(world.files.MakeFolders(outFolder));
    program.Intake().Clear();
    return outputs;
  }
  static bool Ready(imaging::Services& images, const imaging::FileWork& work) {
    std::optional<imaging::Services::PrefetchedFiles> ready;
    EXPECT_TRUE(images.PopPrefetched(work, ready));
    return ready.has_value();
  }

  std::vector<std::string> sources_;
};

class EveryRegionPlanTest : public RegionPlanTest, public ::testing::WithParamInterface<std::tuple<Case, const char*>> {
 protected:
  void SetUp() override {
    RegionPlanTest::SetUp();
    form.CmbOutType.SetText(std::get<1>(GetParam()));
    Regions(std::get<0>(GetParam()).list);
  }
};

TEST_P(EveryRegionPlanTest, AForeseenRunWritesTheSameBytes) {
  const Reply folders = std::get<0>(GetParam()).folders;
  program.recovering = true;  // nothing is prefetched
  const auto plain = CutAll(folders);
  EXPECT_GT(plain.size(), sources_.size());
  program.recovering = false;
  const auto prefetched = CutAll(folders);
  ASSERT_EQ(plain.size(), prefetched.size());
  for (const auto& [path, bytes] : plain) {
    ASSERT_TRUE(prefetched.contains(path)) << path;
    EXPECT_TRUE(bytes == prefetched.at(path)) << path;
  }
}

// Without this, the test above would compare one way with itself.
TEST_P(EveryRegionPlanTest, ThePlanIsWhatTheCutAsksFor) {
  const bool tooLarge = std::string(std::get<0>(GetParam()).name) == "TooLarge";
  world.boxes.Answer(kFolders, std::get<0>(GetParam()).folders, 1);
  job::RunLedger ledger(program.context, 0);
  MultiCut cut(program, window.Editor(), [] {});
  cut.Begin(ledger);
  for (const std::string& source : sources_) {
    SCOPED_TRACE(source);
    const auto plan = cut.Foresee(source, SizeOf(source));
    ASSERT_TRUE(plan.has_value());
    EXPECT_EQ(plan->Source(), source);
    program.images.PlanWork({*plan});
    EXPECT_EQ(Ready(program.images, *plan), !tooLarge);

    program.images.PlanWork({*plan});
    cut.Cut({0, source, 1}, [](const job::FileResult&) {});
    EXPECT_FALSE(Ready(program.images, *plan)) << "the cut has popped it";
  }
  cut.EndPrefetch();
  cut.Release();
}

std::string NameOf(const ::testing::TestParamInfo<EveryRegionPlanTest::ParamType>& info) {
  return std::string(std::get<0>(info.param).name) + "_" + std::get<1>(info.param);
}

INSTANTIATE_TEST_SUITE_P(All, EveryRegionPlanTest,
                         ::testing::Combine(::testing::ValuesIn(kCases),
                                            ::testing::Values("jpg", "png", "gif", "tif", "bmp")),
                         NameOf);

class PrefetchedRegionsTest : public RegionPlanTest {
 protected:
  void SetUp() override {
    RegionPlanTest::SetUp();
    form.CmbOutType.SetText("png");
    Regions("R\r\n10\t20\t30\t15\r\n0\t0\t60\t50\r\n");
  }
  void CutListed() {
    world.boxes.Answer(kFolders, Reply::No, 1);
    world.boxes.Answer(kDone, Reply::No, 1);
    Click("FMultCut.CmdOk");
  }
  // Acts before the region is cut whose progress has that text.
  void AtRegion(const std::string& progress, const std::function<void()>& act) {
    form.Observe([this, progress, act](controls::Control& control, controls::Aspect aspect) {
      const bool shown = &control == &form.LStatus && aspect == controls::Aspect::Value;
      if (shown && form.LStatus.Value().ends_with(progress)) act();
    });
  }
};

// Of the list, and of the input folder.
TEST_F(PrefetchedRegionsTest, ARunPlansTheNextSources) {
  job::RunLedger ledger(program.context, 0);
  MultiCut same(program, window.Editor(), [] {});
  world.boxes.Answer(kFolders, Reply::No, 1);
  same.Begin(ledger);
  for (const bool large : {false, true}) {
    flags.LargeCapacityMode = large;
    form.LInDir.SetText(world.folder.Path("in"));
    List({sources_[0], sources_[1]});
    int ready = 0;
    bool first = true;
    recorder.onFileDone = [&](const job::FileResult& file) {
      if (!std::exchange(first, false)) return;
      const std::string next = file.source == sources_[0] ? sources_[1] : sources_[0];
      if (Ready(program.images, *same.Foresee(next, SizeOf(next)))) ++ready;
    };
    CutListed();
    EXPECT_EQ(ready, 1) << large;
  }
  same.Release();
}

TEST_F(PrefetchedRegionsTest, ASourceThatChangesBetweenItsRegionsIsCutAsItIsNow) {
  List({Make("x.png", Painted(100, 80, Slope))});
  AtRegion("2/2 之1/1", [&] { Make("x.png", Painted(100, 80, [](int, int) { return Pixel{10, 200, 30}; })); });
  CutListed();
  EXPECT_EQ(Read(Out("x_裁剪区域1.png")).At(0, 0), Slope(20, 10));
  EXPECT_EQ(Read(Out("x_裁剪区域2.png")).At(0, 0), (Pixel{10, 200, 30}));
}

TEST_F(PrefetchedRegionsTest, AQualityThatChangesBetweenRegionsCounts) {
  form.CmbOutType.SetText("jpg");
  form.TQuality.SetText("95");
  List({Make("x.png", Painted(100, 80, Slope)), Make("y.png", Painted(100, 80, Slope))});
  AtRegion("2/2 之1/2", [&] { form.TQuality.SetText("30"); });
  std::map<std::string, std::string> bytes;
  for (const bool prefetched : {false, true}) {
    program.recovering = !prefetched;
    form.TQuality.SetText("95");
    CutListed();
    for (const std::string& name : OutNames()) {
      const std::string now = world.folder.Read("out/" + name);
      EXPECT_TRUE(!prefetched || bytes.at(name) == now) << name;
      bytes[name] = now;
    }
  }
  EXPECT_GT(bytes.at("x_裁剪区域2.jpg").size(), 0u);
}

TEST_F(PrefetchedRegionsTest, AFullDiskIsAskedAboutOnceForEachTry) {
  world.faults.Set({.call = host::testing::DiskCall::Write,
                    .error = ENOSPC,
                    .length = host::testing::Fault::Length::ForEver,
                    .pathHolds = "裁剪区域2"});
  world.boxes.Answer("盘空间不足，请释放空间后重试保存！", Reply::Retry, 2);
  world.boxes.Answer("盘空间不足，请释放空间后重试保存！", Reply::Cancel);
  List(sources_);
  CutListed();
  EXPECT_EQ(world.boxes.Count("盘空间不足"), 3);
  EXPECT_EQ(Totals().none, 1u);
  EXPECT_EQ(recorder.done[0].more.size(), 1u);
  EXPECT_TRUE(Totals().stopped);
}

TEST_F(PrefetchedRegionsTest, ADamagedSourceFailsAsEver) {
  List({sources_[0], sources_[1]});
  const std::string whole = world.folder.Read("in/b.png");
  world.folder.Write("in/b.png", whole.substr(0, whole.size() / 2));
  program.recovering = true;
  CutListed();
  const std::string why = Why(2);
  program.recovering = false;
  CutListed();
  EXPECT_EQ(Why(2), why);
  EXPECT_NE(why, "");
  EXPECT_EQ(Totals().written, 1u);
  EXPECT_EQ(Totals().none, 1u);
}

}  // namespace
}  // namespace quillon::regions
