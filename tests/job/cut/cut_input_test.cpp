// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
// Bad input and bad places: each file gets a sentence of its own, the run goes on, sources stay whole, and nothing is
// left lying about.
#include <sys/stat.h>
#include <unistd.h>

#include <filesystem>

#include "job/cut_fixture.h"

namespace quillon::job {
namespace {

class CutInputTest : public CutTest {
 protected:
  // A good picture is listed before and after it, and cut.
  void CutBetween(const std::string& path) {
    List({Make("0.bmp", 20, 10), path, Make("9.bmp", 20, 10)});
    Spoil();
    Cut();
    EXPECT_EQ(program.files.Row(0).result, Result::Written) << Why(1);
    EXPECT_EQ(program.files.Row(2).result, Result::Written) << Why(3);
    EXPECT_EQ(Totals().planned, Totals().written + Totals().none + Totals().skipped);
  }
  void Spoil() {
    if (spoil) spoil();
  }
  void ExpectNoDrafts(const std::string& folder) {
    for (const std::string& name : world.folder.Names(folder)) EXPECT_FALSE(host::IsDraftName(name)) << name;
  }

  // What becomes of the file between its listing and the run.
  std::function<void()> spoil;
};

struct Truncation {
  const char* type;
  double shard;
};

TEST_F(CutInputTest, TruncatedFiles) {
  std::vector<Truncation> truncations;
  for (const char* type : {"jpg", "png", "gif", "tif", "bmp"}) {
    for (const double shard : {0.1, 0.5, 0.9}) truncations.push_back({type, shard});
  }
  for (const char* type : {"jpg", "gif", "tif", "bmp"}) truncations.push_back({type, 0.995});
  for (const auto& [type, shard] : truncations) {
    for (const bool over : {false, true}) {
      SCOPED_TRACE(testing::Message() << type << " " << shard << " over " << over);
      program.files.Clear();
      form.ChOver.Set(over);
      const std::string name = std::string("in/t.") + type;
      const std::string path = Make(std::string("t.") + type, 90, 70);
      const std::string whole = world.folder.Read(name);
      const std::string part = whole.substr(0, static_cast<std::size_t>(static_cast<double>(whole.size()) * shard));
      spoil = [&] { world.folder.Write(name, part); };
      CutBetween(path);
      EXPECT_EQ(program.files.Row(1).result, Result::None);
      EXPECT_FALSE(Why(2).empty());
      EXPECT_EQ(world.folder.Read(name), part) << "the source is as it was";
      ASSERT_FALSE(world.folder.Exists("out/t.jpg"));
      ExpectNoDrafts("in");
      ExpectNoDrafts("out");
    }
  }
}

TEST_F(CutInputTest, EmptyAndAlien) {
  const std::string path = Make("a.jpg");
  for (const std::string& content : {std::string(), std::string("plain text"), std::string(5000, '\xFF')}) {
    program.files.Clear();
    Make("a.jpg");
    spoil = [&] { world.folder.Write("in/a.jpg", content); };
    CutBetween(path);
    EXPECT_EQ(program.files.Row(1).result, Result::None);
    EXPECT_FALSE(Why(2).empty());
  }
}

TEST_F(CutInputTest, AWrongExtensionIsCutByItsContent) {
  Make("really.png", 40, 30);
  std::filesystem::rename(In("really.png"), In("called.jpg"));
  Margins(50, 0, 0, 0);
  CutBetween(In("called.jpg"));
  EXPECT_EQ(program.files.Row(1).result, Result::Written) << Why(2);
  EXPECT_EQ(SizeOf(Out("called.jpg")), (base::Size{20, 30}));
}

TEST_F(CutInputTest, AFileThatBecameAFolder) {
  const std::string path = Make("x.jpg");
  spoil = [&] {
    std::filesystem::remove(path);
    std::filesystem::create_directory(path);
  };
  CutBetween(path);
  EXPECT_EQ(program.files.Row(1).result, Result::None);
  EXPECT_FALSE(Why(2).empty());
}

TEST_F(CutInputTest, AFolderUnderTheNameOfTheOutput) {
  const std::string path = Make("x.jpg");
  std::filesystem::create_directory(Out("x.jpg"));
  CutBetween(path);
  EXPECT_EQ(program.files.Row(1).result, Result::None);
  EXPECT_FALSE(Why(2).empty());
  EXPECT_TRUE(std::filesystem::is_directory(Out("x.jpg")));
}

TEST_F(CutInputTest, AFileThatWentAway) {
  const std::string path = Make("x.jpg");
  spoil = [&] { std::filesystem::remove(path); };
  CutBetween(path);
  EXPECT_EQ(program.files.Row(1).result, Result::None);
}

TEST_F(CutInputTest, AFileThatCannotBeOpened) {
  const std::string path = Make("x.png");
  spoil = [&] {
    std::filesystem::remove(path);
    std::filesystem::create_symlink(path, path);
  };
  CutBetween(path);
  EXPECT_EQ(program.files.Row(1).result, Result::None);
  EXPECT_FALSE(Why(2).empty());
}

TEST_F(CutInputTest, NamesOfEveryKind) {
  const std::string longName(251, 'n');
  const char* names[] = {
      "with blank.png", "%d %s %n.png", "page[1].png", "-rf.png", "new\nline.png", "\xD6\xD0\xCE\xC4.png",
      "中文 图片.png",  "a'b\"c.png",   "$(x).png",    "~.png",   "a.b.c.png",     "#;&|.png"};
  Margins(50, 0, 0, 0);
  std::vector<std::string> paths;
  for (const char* name : names) paths.push_back(Make(name, 40, 30));
  paths.push_back(Make(longName + ".png", 40, 30));
  Cut(paths);
  EXPECT_EQ(Totals().written, paths.size()) << Whys();
  for (const std::string& path : paths) {
    const std::string name = path.substr(path.rfind('/') + 1);
    const std::string output = Out(name.substr(0, name.size() - 3) + "jpg");
    EXPECT_EQ(SizeOf(output), (base::Size{20, 30})) << name;
  }
}

TEST_F(CutInputTest, NamesOfEveryKindOverTheSource) {
  Put("ChOver", "1");
  Margins(50, 0, 0, 0);
  std::vector<std::string> paths;
  for (const char* name : {"with blank.jpg", "%d.png", "page[1].jpg", "-x.gif", "new\nline.jpg", "\xD6\xD0.jpg"}) {
    paths.push_back(Make(name, 40, 30));
  }
  paths.push_back(Make(std::string(251, 'n') + ".jpg", 40, 30));
  Cut(paths);
  EXPECT_EQ(Totals().written, paths.size()) << Whys();
  for (const std::string& path : paths) EXPECT_EQ(SizeOf(path), (base::Size{20, 30})) << path;
}

TEST_F(CutInputTest, ANameThatIsTooLongForItsOutput) {
  const std::string path = Make(std::string(251, 'n') + ".jpg", 40, 30);
  Option("CmbExtCase", "0");
  form.CmbOutType.SetItems({"jpgjpg"});
  CutBetween(path);
  EXPECT_EQ(program.files.Row(1).result, Result::None);
  EXPECT_FALSE(Why(2).empty());
}

TEST_F(CutInputTest, AnOutputFolderThatMayNotBeWritten) {
  const std::string path = Make("a.jpg");
  List({path});
  world.faults.Set({.call = host::testing::DiskCall::OpenNew,
                    .error = EROFS,
                    .length = host::testing::Fault::Length::ForEver,
                    .pathHolds = "out/"});
  Cut();
  EXPECT_GE(world.faults.Fired(), 1);
  EXPECT_EQ(Totals().none, 1u);
  EXPECT_FALSE(Why(1).empty());
  EXPECT_EQ(world.boxes.Count("盘空间不足"), 0);
}

TEST_F(CutInputTest, AnOutputFolderThatGoesAwayDuringTheRun) {
  List({Make("a.bmp"), Make("b.bmp"), Make("c.bmp")});
  recorder.onFileDone = [&](const FileResult& file) {
    if (file.row == 1) std::filesystem::remove_all(outFolder);
  };
  Cut();
  EXPECT_EQ(program.files.Row(1).result, Result::None);
  EXPECT_FALSE(Why(2).empty());
  EXPECT_FALSE(Why(3).empty());
  EXPECT_EQ(Totals().planned, 3u);
  EXPECT_EQ(Totals().planned, Totals().written + Totals().none + Totals().skipped);
}

TEST_F(CutInputTest, AReadOnlyFileIsNotOverwritten) {
  Put("ChOver", "1");
  const std::string path = Make("a.jpg");
  const std::string before = world.folder.Read("in/a.jpg");
  List({path});
  world.faults.Set({.call = host::testing::DiskCall::MayWrite, .error = EACCES, .pathHolds = "a.jpg"});
  Cut();
  EXPECT_EQ(world.faults.Fired(), 1);
  EXPECT_EQ(world.folder.Read("in/a.jpg"), before);
  EXPECT_EQ(Totals().none, 1u);
  EXPECT_FALSE(Why(1).empty());
}

TEST_F(CutInputTest, ALinkedSourceIsWrittenThrough) {
  Put("ChOver", "1");
  Margins(50, 0, 0, 0);
  const std::string real = Make("real/a.jpg", 40, 30);
  std::filesystem::create_symlink(real, In("link.jpg"));
  Cut({In("link.jpg")});
  EXPECT_EQ(Totals().written, 1u) << Whys();
  EXPECT_TRUE(std::filesystem::is_symlink(In("link.jpg")));
  EXPECT_EQ(SizeOf(real), (base::Size{20, 30}));
}

// A fault at every write, sync and rename of a run over its sources: each file is whole, old or new.
TEST_F(CutInputTest, FaultSweepOverTheSources) {
  using host::testing::DiskCall;
  using host::testing::Fault;
  Put("ChOver", "1");
  Margins(50, 0, 0, 0);
  for (const DiskCall call : {DiskCall::OpenNew, DiskCall::Write, DiskCall::Sync, DiskCall::Rename}) {
    for (const Fault::Length length : {Fault::Length::Once, Fault::Length::ForEver}) {
      bool fired = true;
      int nth = 1;
      for (; fired && nth < 60; ++nth) {
        SCOPED_TRACE(testing::Message() << host::testing::NameOf(call) << " " << nth);
        program.files.Clear();
        List({Make("a.jpg", 60, 40), Make("b.png", 60, 40)});
        const std::string a = world.folder.Read("in/a.jpg");
        const std::string b = world.folder.Read("in/b.png");
        world.faults.Set({.call = call, .nth = nth, .error = EIO, .length = length});
        Cut();
        fired = world.faults.Fired() > 0;
        world.faults.Clear();
        for (const auto& [name, before] : {std::pair{"a.jpg", a}, {"b.png", b}}) {
          const bool old = world.folder.Read(std::string("in/") + name) == before;
          EXPECT_TRUE(old || SizeOf(In(name)) == (base::Size{30, 40})) << name;
        }
        EXPECT_EQ(world.folder.Names("in"), (std::vector<std::string>{"a.jpg", "b.png"}));
        EXPECT_EQ(Totals().written + Totals().none, 2u);
      }
      EXPECT_FALSE(fired);
      EXPECT_GT(nth, 2);  // the first one at least
    }
  }
}

// The same for every way by which an output replaces its source.
struct SavePath {
  const char* what;
  const char* file;
  const char* option;  // "" or an advanced option that is put on
};

class SavePathTest : public CutInputTest, public ::testing::WithParamInterface<SavePath> {};

TEST_P(SavePathTest, AFaultLeavesTheSourceOrAWholeResult) {
  using host::testing::DiskCall;
  const SavePath& path = GetParam();
  Put("ChOver", "1");
  Margins(50, 0, 0, 0);
  if (*path.option != 0) Option(path.option, "1");
  for (std::size_t i = 0; i < 4; ++i) options.TBoard[i].SetText("0");
  for (const DiskCall call : {DiskCall::OpenNew, DiskCall::Write, DiskCall::Sync, DiskCall::Rename}) {
    bool fired = true;
    int nth = 1;
    for (; fired && nth < 60; ++nth) {
      SCOPED_TRACE(testing::Message() << host::testing::NameOf(call) << " " << nth);
      program.files.Clear();
      List({Make(path.file, 60, 40)});
      const std::string before = world.folder.Read(std::string("in/") + path.file);
      world.faults.Set({.call = call, .nth = nth, .error = EIO});
      Cut();
      fired = world.faults.Fired() > 0;
      world.faults.Clear();
      const bool old = world.folder.Read(std::string("in/") + path.file) == before;
      EXPECT_TRUE(old || SizeOf(In(path.file)) == (base::Size{30, 40}));
      EXPECT_TRUE(fired || !old) << Whys();
      EXPECT_EQ(world.folder.Names("in"), std::vector<std::string>{path.file});
      EXPECT_EQ(Totals().written + Totals().none, 1u);
    }
    EXPECT_FALSE(fired);
    EXPECT_GT(nth, 2);
  }
}

INSTANTIATE_TEST_SUITE_P(Ways, SavePathTest,
                         ::testing::Values(SavePath{"plain", "a.bmp", ""}, SavePath{"plain", "a.tif", ""},
                                           SavePath{"gif", "a.gif", ""}, SavePath{"effects", "a.jpg", "ChToGray"},
                                           SavePath{"border", "a.png", "ChAddBoard"},
                                           SavePath{"exif", "a.jpg", "ChKeepExif"}),
                         [](const auto& way) {
                           const std::string file = way.param.file;
                           return std::string(way.param.what) + "_" + file.substr(file.find('.') + 1);
                         });

// Retry after room was made goes on; Cancel ends the run and leaves the source as it was.
TEST_F(CutInputTest, AFullDiskIsAskedAboutAtEveryCopyAndWorkFile) {
  struct Row {
    const char* option;
    const char* pathHolds;
    bool over;
  };
  for (const Row& row : {Row{"ChKeepExif", "app/.tmp.jpg", true}, Row{"ChAddBoard", "app/.Tmp2.jpg", true},
                         Row{"", ".a.jpg.bak", false}}) {
    for (const bool retry : {true, false}) {
      SCOPED_TRACE(row.pathHolds);
      for (const char* option : {"ChKeepExif", "ChAddBoard"})
        Option(option, option == std::string(row.option) ? "1" : "0");
      Put("ChOver", row.over ? "1" : "0");
      Put("LOutDir", row.over ? outFolder : world.folder.Path("in"));
      program.files.Clear();
      List({Make("a.jpg", 60, 40)});
      const std::string before = world.folder.Read("in/a.jpg");
      world.boxes.Forget();
      world.boxes.Answer("盘空间不足", retry ? host::Reply::Retry : host::Reply::Cancel, 1);
      world.faults.Set({.call = host::testing::DiskCall::Write, .nth = 1, .error = ENOSPC, .pathHolds = row.pathHolds});
      Cut();
      EXPECT_EQ(world.faults.Fired(), 1);
      world.faults.Clear();
      EXPECT_EQ(world.boxes.Count("盘空间不足"), 1);
      EXPECT_EQ(Totals().written, retry ? 1u : 0u);
      EXPECT_EQ(Totals().stopped, !retry);
      EXPECT_EQ(world.folder.Read("in/a.jpg") == before, !retry);
    }
  }
}

}  // namespace
}  // namespace quillon::job
