// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "job/windows/file_intake.h"

#include <filesystem>
#include <vector>

#include "job/cut_fixture.h"

namespace quillon::job {
namespace {

using host::Reply;

constexpr const char* kNoSize = "本机异常，获取图片的尺寸数据为0，请以管理员权限重新运行安装包覆盖安装！";
constexpr const char* kDropText =
    "注意：拖放操作会同时加载子文件夹中的文件！如果文件数太多(超2—8万)，\r\n"
    "列表可能会被撑爆哟！如是，请开启“大容量”功能。每次拖放将清除\r\n"
    "现有列表记录，拖放完毕后请勿重复拖放，可采用【添加】功能再添加。\r\n"
    "是——拖放文件，清除原文件列表\r\n"
    "否——拖放文件，附加在原文件列表之后（切记勿重复拖放已加载的文件或文件夹，否则可能出异常！）\r\n"
    "取消——放弃拖放";

class PageNumbers final : public PageCounter {
 public:
  Pages Count(int mode, const std::string& path, int dpi) override {
    asked.push_back({mode, path, dpi});
    return {pages, first, why};
  }
  struct Asked {
    int mode;
    std::string path;
    int dpi;
  };
  std::vector<Asked> asked;
  int pages = 1;
  base::Size first;
  std::string why;
};

class IntakeTest : public CutTest {
 protected:
  const std::vector<host::testing::ScriptedBoxes::Shown>& Boxes() const { return world.boxes.All(); }
  // Every title that the window had.
  void WatchTitles() {
    form.Observe({}, [this](controls::Window& window) {
      if (titles.empty() || titles.back() != window.Title()) titles.push_back(window.Title());
    });
  }
  // In one of the modes that list files of several pages, without its window.
  void EnterPagedMode(int mode, PageCounter& counter) {
    program.pageCounter = &counter;
    form.CmbCutMode.SetHandler({});
    form.CmbCutMode.Select(mode);
  }
  // Leaves nothing of the size of a picture under its name.
  std::string Broken(const std::string& name) { return world.folder.Write("in/" + name, "no picture at all"); }

  std::vector<std::string> titles;
};

TEST_F(IntakeTest, FiltersOfTheModes) {
  EXPECT_EQ(program.Intake().Filter(),
            "支持的类型|*.jpg;*.jpeg;*.bmp;*.dib;*jpe;*.jfif;*.gif;*.tif;*.tiff;*.png;*.psd|"
            "图片文件(*.jpg,*.jpeg,*.jpe,*.jfif)|*.jpg;*.jpeg;*.jpe;*.jfif|图片文件(*.bmp,*.dib)|*.bmp;*.dib|"
            "图片文件(*.gif)|*.gif|图片文件(*.tif,*.tiff)|*.tif;*.tiff|图片文件(*.png)|*.png|PSD文件|*.psd");
  const char* filters[] = {"", "动态gif|*.gif", "Png|*.png", "Pdf|*.pdf", "", "多页tif|*.tif;*.tiff"};
  const std::string images = program.Intake().Filter();
  form.CmbCutMode.SetHandler({});
  for (int mode = 0; mode < 6; ++mode) {
    form.CmbCutMode.Select(mode);
    EXPECT_EQ(program.Intake().Filter(), *filters[mode] ? filters[mode] : images) << mode;
  }
}

TEST_F(IntakeTest, ExtensionsThatStandInTheFilter) {
  struct Case {
    const char* name;
    bool accepted;
  };
  const Case cases[] = {{"a.jpg", true},
                        {"a.JPG", true},
                        {"a.jpe", true},
                        {"a.jfif", true},
                        {"a.psd", true},
                        {"a.dib", true},
                        {"a.tif", true},
                        {"a.pdf", false},
                        {"a.txt", false},
                        {"jpg", false},
                        {".jpg", false},
                        {"a.", false},
                        {"a.jpg.txt", false},
                        {"a.webp", false},
                        // The rule asks whether the text stands anywhere in the filter.
                        {"a.jp", true},
                        {"a.ti", true},
                        {"a.g", true}};
  for (const Case& c : cases) EXPECT_EQ(program.Intake().Accepts("/x/" + std::string(c.name)), c.accepted) << c.name;
  form.CmbCutMode.SetHandler({});
  form.CmbCutMode.Select(2);
  EXPECT_TRUE(program.Intake().Accepts("a.PNG"));
  EXPECT_FALSE(program.Intake().Accepts("a.jpg"));
}

TEST_F(IntakeTest, AddFilesByDialog) {
  const std::string one = Make("one.jpg", 120, 90);
  const std::string two = Make("two.png", 60, 200);
  world.dialogs.ChooseFiles({one, two});
  WatchTitles();
  Click("MenuAddFiles");
  EXPECT_EQ(ListedNames(), (std::vector<std::string>{"one.jpg", "two.png"}));
  EXPECT_EQ(world.dialogs.All().at(0).filterOrInitial, program.Intake().Filter());
  EXPECT_EQ(titles.front(), "  添加文件列表中...Quillon");
  EXPECT_EQ(form.Title(), "Quillon");
  ASSERT_EQ(Boxes().size(), 1u);
  EXPECT_EQ(Boxes()[0].box.text, "文件列表添加完毕！");
  EXPECT_EQ(Boxes()[0].box.title, "消息");
  EXPECT_EQ(program.fCutPre.preview.Path(), one);
  EXPECT_EQ(flags.InfoWidth, "60");
  EXPECT_EQ(flags.InfoHeight, "200");
  EXPECT_TRUE(form.LStatus.Value().starts_with("文件数：2  最大值：120x200像素  ")) << form.LStatus.Value();
  EXPECT_FALSE(Enabled("MenuStop"));
}

TEST_F(IntakeTest, ADialogWithoutAChoiceDoesNothing) {
  Click("MenuAddFiles");
  EXPECT_TRUE(Boxes().empty());
  EXPECT_EQ(form.Title(), "Quillon");
}

TEST_F(IntakeTest, TheRowHoldsWhatWasMeasured) {
  const std::string path = Make("a.jpg", Painted(33, 44, Slope), 150);
  List({path});
  const FileRow& row = program.files.Row(0);
  EXPECT_EQ(row.width, 33);
  EXPECT_EQ(row.height, 44);
  EXPECT_EQ(row.dpi, 150);
  EXPECT_EQ(row.bytes, world.files.Stat(path)->size);
  EXPECT_EQ(row.pages, 0);
}

TEST_F(IntakeTest, AFolderHasOneText) {
  const std::string folder = world.folder.Path("in");
  ASSERT_TRUE(world.files.MakeFolders(folder));
  for (const char* label : {"LInDir", "LOutDir"}) {
    for (const char* way : {"", "/", "//", "/./"}) {
      Put(label, folder + way);
      EXPECT_EQ(program.windows.Find(label)->Value(), folder) << label << way;
    }
    Put(label, ".");
    EXPECT_EQ(program.windows.Find(label)->Value(), std::filesystem::current_path().native());
    Put(label, "未选择");
    EXPECT_EQ(program.windows.Find(label)->Value(), "未选择");
  }
}

TEST_F(IntakeTest, ReadFilesNeedsAnInputFolder) {
  Click("MenuReadFiles");
  ASSERT_EQ(Boxes().size(), 1u);
  EXPECT_EQ(Boxes()[0].box.text, "输入目录未指定！");
  EXPECT_EQ(Boxes()[0].box.type, 16);
  EXPECT_EQ(world.dialogs.All().size(), 1u);
  EXPECT_EQ(program.files.RowCount(), 0u);

  Make("a.jpg");
  world.boxes.Forget();
  Put("LInDir", "/nowhere/at all");
  world.dialogs.ChooseFolderNext(world.folder.Path("in") + "/");
  Click("MenuReadFiles");
  EXPECT_EQ(Boxes()[0].box.text, "输入目录不存在：/nowhere/at all");
  EXPECT_EQ(form.LInDir.Value(), world.folder.Path("in"));
  EXPECT_EQ(program.Setting("LInDir"), world.folder.Path("in"));
  EXPECT_EQ(ListedNames(), std::vector<std::string>{"a.jpg"});
}

TEST_F(IntakeTest, ReadFilesFollowsChSubFold) {
  Make("a.jpg");
  Make("deep/b.jpg");
  Broken("notes.txt");
  Put("LInDir", world.folder.Path("in"));
  WatchTitles();
  Click("MenuReadFiles");
  EXPECT_EQ(ListedNames(), std::vector<std::string>{"a.jpg"});
  EXPECT_EQ(titles.front(), "  文件自动读取中...已读取：1Quillon");
  EXPECT_EQ(form.Title(), "Quillon");
  EXPECT_TRUE(Boxes().empty());
  program.files.Clear();
  Put("ChSubFold", "1");
  Click("MenuReadFiles");
  EXPECT_EQ(ListedNames(), (std::vector<std::string>{"a.jpg", "b.jpg"}));
}

TEST_F(IntakeTest, RowsAppearAsTheyCome) {
  for (int i = 0; i < 5; ++i) Make(std::to_string(i) + ".bmp", 10, 10);
  std::vector<std::size_t> counts;
  world.pump.EveryTurn([&] { counts.push_back(program.files.RowCount()); });
  List({world.folder.Path("in")});
  EXPECT_NE(std::find(counts.begin(), counts.end(), 1u), counts.end());
  EXPECT_NE(std::find(counts.begin(), counts.end(), 4u), counts.end());
}

TEST_F(IntakeTest, TitlesShowTheCountNowAndThen) {
  for (int i = 0; i < 30; ++i) Make(std::to_string(i) + ".bmp", 10, 10);
  WatchTitles();
  List({world.folder.Path("in")});
  // A turn takes ten milliseconds and a title comes every tenth of a second.
  EXPECT_EQ(titles.at(0), "  文件自动读取中...已读取：1Quillon");
  EXPECT_EQ(titles.at(1).find("  文件自动读取中...已读取："), 0u);
  EXPECT_GE(titles.size(), 3u);
  EXPECT_LE(titles.size(), 10u);
  EXPECT_EQ(titles.back(), "Quillon");
}

TEST_F(IntakeTest, StopEndsAListingAndKeepsItsRows) {
  for (int i = 0; i < 20; ++i) Make(std::to_string(i) + ".bmp", 10, 10);
  Put("LInDir", world.folder.Path("in"));
  world.boxes.Answer("终止当前操作？", Reply::Ok);
  bool pressed = false;
  world.pump.EveryTurn([&] {
    if (program.files.RowCount() == 3 && !pressed) {
      pressed = true;
      Click("MenuStop");
    }
  });
  Click("MenuReadFiles");
  EXPECT_TRUE(pressed);
  EXPECT_EQ(program.files.RowCount(), 3u);
  EXPECT_FALSE(Enabled("MenuStop"));
  world.dialogs.ChooseFiles({Make("more.bmp", 10, 10)});
  Click("MenuAddFiles");
  EXPECT_EQ(program.files.RowCount(), 4u);
}

TEST_F(IntakeTest, AFileWithoutASizeIsNamedAndTheOthersAreAdded) {
  const std::string good = Make("good.jpg");
  const std::string bad = Broken("bad.jpg");
  const std::string empty = world.folder.Write("in/empty.jpg", "");
  const std::string late = Make("late.jpg");
  world.dialogs.ChooseFiles({good, bad, empty, late});
  Click("MenuAddFiles");
  EXPECT_EQ(ListedNames(), (std::vector<std::string>{"good.jpg", "late.jpg"}));
  ASSERT_EQ(Boxes().size(), 1u);
  EXPECT_EQ(Boxes()[0].box.text, kNoSize);
  ASSERT_EQ(recorder.notListed.size(), 2u);
  EXPECT_EQ(recorder.notListed[0].first, bad);
  EXPECT_EQ(recorder.notListed[1].first, empty);
  const std::string& why = recorder.notListed[0].second;
  EXPECT_FALSE(why.empty());
  EXPECT_EQ(Boxes()[0].box.notice, "未加入：" + bad + "（" + why + "）");
  EXPECT_THAT(form.LStatus.Value(), ::testing::EndsWith("  未加入 2 个，第一个是：" + bad + "（" + why + "）"));
  EXPECT_EQ(form.Title(), "Quillon");
  EXPECT_FALSE(flags.Busy);
}

TEST_F(IntakeTest, OneFileWithoutASizeIsNamedWithItsReason) {
  const std::string bad = Broken("bad.jpg");
  List({bad, Make("late.jpg")});
  EXPECT_EQ(ListedNames(), std::vector<std::string>{"late.jpg"});
  EXPECT_THAT(form.LStatus.Value(), ::testing::HasSubstr("  未加入：" + bad + "（"));
}

TEST_F(IntakeTest, SmallPicturesAreLeftOut) {
  const std::string small = Make("small.bmp", 99, 100);
  const std::string flat = Make("flat.bmp", 100, 49);
  const std::string equal = Make("equal.bmp", 100, 50);
  Option("ChFilter", "1");
  Put("FBaseOpt.TSmalS(0)", "100");
  Put("FBaseOpt.TSmalS(1)", "50");
  List({small, flat, equal});
  EXPECT_EQ(ListedNames(), std::vector<std::string>{"equal.bmp"});
  EXPECT_THAT(program.files.StatusText(), ::testing::HasSubstr("最大值：100x50像素"));
  Put("FBaseOpt.ChFilter", "0");
  List({small});
  EXPECT_EQ(program.files.RowCount(), 2u);
}

TEST_F(IntakeTest, AFilterThatAcceptsNothingIsReported) {
  options.Load();
  Put("FBaseOpt.ChFilter", "1");
  Put("FBaseOpt.TSmalS(0)", "100000");
  program.observer = &recorder;
  const std::vector<std::string> small{Make("a.bmp", 40, 30), Make("b.bmp", 50, 60)};
  program.Intake().Admit(small);
  EXPECT_EQ(program.files.RowCount(), 0u);
  ASSERT_EQ(recorder.filteredOut.size(), 2u);
  EXPECT_EQ(recorder.filteredOut[1],
            std::pair(small[1], std::string("宽或高不足 100000x100 像素，按“过滤小图片”跳过")));
  EXPECT_THAT(form.LStatus.Value(), ::testing::EndsWith("  过滤小图片：2 张不足 100000x100 像素，未加入"));
  Put("FBaseOpt.TSmalS(0)", "0");
  Put("FBaseOpt.TSmalS(1)", "0");
  program.Intake().Admit({Make("a.bmp", 40, 30)});
  EXPECT_EQ(program.files.RowCount(), 1u);
  EXPECT_THAT(form.LStatus.Value(), ::testing::Not(::testing::HasSubstr("过滤")));
}

TEST_F(IntakeTest, PagedModesAskForTheirEngine) {
  const std::string gif = Make("a.gif");
  for (const int mode : {1, 3, 5}) {
    form.CmbCutMode.SetHandler({});
    form.CmbCutMode.Select(mode);
    world.boxes.Forget();
    List({Make(mode == 5 ? "a.tif" : "a.gif"), gif});
    EXPECT_EQ(world.boxes.Count("本机缺失资源文件"), 1) << mode;
    EXPECT_EQ(program.files.RowCount(), 0u);
    EXPECT_EQ(form.CmbCutMode.Index(), 0);
  }
}

TEST_F(IntakeTest, PagedModesAcceptFilesOfSeveralPages) {
  PageNumbers counter;
  EnterPagedMode(1, counter);
  const std::string gif = Make("a.gif", 50, 40);
  flags.OutDpi = 0;
  List({gif});
  EXPECT_EQ(program.files.RowCount(), 0u);
  EXPECT_EQ(world.boxes.Beeps(), 1);
  EXPECT_THAT(program.files.StatusText(),
              ::testing::HasSubstr("最大值：50x40像素"));  // the maxima grow before the pages are asked about
  ASSERT_EQ(counter.asked.size(), 1u);
  EXPECT_EQ(counter.asked[0].mode, 1);
  EXPECT_EQ(counter.asked[0].path, gif);
  EXPECT_EQ(counter.asked[0].dpi, 72);

  counter.pages = 7;
  flags.OutDpi = 200;
  List({gif});
  ASSERT_EQ(program.files.RowCount(), 1u);
  EXPECT_EQ(program.files.Row(0).pages, 7);
  EXPECT_EQ(counter.asked[1].dpi, 200);
}

TEST_F(IntakeTest, ATiffOfOnePageIsNotListed) {
  PageNumbers counter;
  EnterPagedMode(5, counter);
  const std::string tif = Make("a.tif");
  List({tif});
  EXPECT_EQ(program.files.RowCount(), 0u);
  EXPECT_EQ(world.boxes.Beeps(), 1);
  counter.pages = 2;
  List({tif});
  EXPECT_EQ(program.files.RowCount(), 1u);
}

TEST_F(IntakeTest, PdfsAreListedWithTheSizeOfTheirFirstPage) {
  PageNumbers counter;
  EnterPagedMode(3, counter);
  flags.OutDpi = 200;
  const std::string pdf = world.folder.Write("in/a.pdf", "%PDF-1.7\n%%EOF\n");
  counter.first = {1654, 2339};
  List({pdf});
  ASSERT_EQ(program.files.RowCount(), 1u);
  EXPECT_EQ(program.files.Row(0).width, 1654);
  EXPECT_EQ(program.files.Row(0).height, 2339);
  EXPECT_EQ(program.files.Row(0).dpi, 200);
  EXPECT_EQ(flags.InfoWidth, "1654");
  EXPECT_EQ(program.files.Row(0).pages, 1);
  counter.first = {};
  world.boxes.Forget();
  List({pdf});
  EXPECT_EQ(program.files.RowCount(), 1u);
  EXPECT_EQ(world.boxes.Count("获取图片的尺寸数据为0"), 1);
}

TEST_F(IntakeTest, AFileWhosePagesCannotBeCountedIsNamedAndTheOthersAreListed) {
  PageNumbers counter;
  EnterPagedMode(3, counter);
  const std::string locked = world.folder.Write("in/locked.pdf", "%PDF-1.7\n%%EOF\n");
  counter.why = "Pdf 有密码";
  List({locked});
  EXPECT_EQ(program.files.RowCount(), 0u);
  EXPECT_EQ(recorder.notListed, (std::vector<std::pair<std::string, std::string>>{{locked, "Pdf 有密码"}}));
  EXPECT_EQ(world.boxes.Count(kNoSize), 0);
  EXPECT_EQ(world.boxes.Beeps(), 1);
  EXPECT_THAT(form.LStatus.Value(), ::testing::HasSubstr("（Pdf 有密码）"));
  counter.why.clear();
  counter.first = {100, 200};
  List({world.folder.Write("in/open.pdf", "%PDF-1.7\n%%EOF\n")});
  EXPECT_EQ(program.files.RowCount(), 1u);
}

TEST_F(IntakeTest, AFileOfOnePageIsReported) {
  PageNumbers counter;
  EnterPagedMode(5, counter);
  const std::string tif = Make("a.tif");
  List({tif});
  EXPECT_EQ(recorder.filteredOut, (std::vector<std::pair<std::string, std::string>>{{tif, "只有一页，没有加入列表"}}));
}

TEST_F(IntakeTest, DropAsksFirst) {
  const std::string path = Make("a.jpg");
  program.Intake().MSF_OLEDragDrop({path});
  ASSERT_EQ(Boxes().size(), 1u);
  EXPECT_EQ(Boxes()[0].box.text, kDropText);
  EXPECT_EQ(Boxes()[0].box.type, 563);
  EXPECT_EQ(Boxes()[0].reply, Reply::Cancel);
  EXPECT_EQ(program.files.RowCount(), 0u);
  program.Intake().MSF_OLEDragDrop({});
  EXPECT_EQ(Boxes().size(), 1u);
}

TEST_F(IntakeTest, DropYesClearsNoAppends) {
  const std::string old = Make("old.jpg");
  const std::string fresh = Make("fresh.jpg");
  List({old});
  world.boxes.Answer("注意：拖放操作", Reply::No, 1);
  world.boxes.Answer("注意：拖放操作", Reply::Yes, 1);
  program.Intake().MSF_OLEDragDrop({fresh});
  EXPECT_EQ(ListedNames(), (std::vector<std::string>{"old.jpg", "fresh.jpg"}));
  EXPECT_EQ(Boxes().back().box.text, "文件拖放添加完毕！");
  program.Intake().MSF_OLEDragDrop({fresh});
  EXPECT_EQ(ListedNames(), std::vector<std::string>{"fresh.jpg"});
}

TEST_F(IntakeTest, DroppedFoldersAreWalkedWithTheirSubfolders) {
  Make("tree/a.jpg");
  Make("tree/deep/b.jpg");
  const std::string lone = Make("lone.png");
  const std::string text = Broken("notes.txt");
  ASSERT_FALSE(form.ChSubFold.On());
  world.boxes.Answer("注意：拖放操作", Reply::Yes);
  program.Intake().MSF_OLEDragDrop({text, world.folder.Path("in/tree"), lone});
  EXPECT_EQ(ListedNames(), (std::vector<std::string>{"a.jpg", "b.jpg", "lone.png"}));
}

TEST_F(IntakeTest, FilesOfACommandLineAreReportedIfTheyAreNotListed) {
  const std::string text = Broken("notes.txt");
  List({world.folder.Path("in/missing.jpg"), text, Make("a.jpg")});
  EXPECT_EQ(ListedNames(), std::vector<std::string>{"a.jpg"});
  EXPECT_TRUE(Boxes().empty());
  ASSERT_EQ(recorder.notListed.size(), 2u);
  EXPECT_EQ(recorder.notListed[0].second, "找不到这个文件或文件夹");
  EXPECT_EQ(recorder.notListed[1].first, text);
  EXPECT_EQ(recorder.notListed[1].second, "当前裁剪模式不支持这种文件");
}

TEST_F(IntakeTest, RelativePathsBecomeWhole) {
  Make("a.jpg");
  const std::filesystem::path before = std::filesystem::current_path();
  std::filesystem::current_path(world.folder.Path("in"));
  List({"./a.jpg", "."});
  std::filesystem::current_path(before);
  ASSERT_EQ(program.files.RowCount(), 2u);
  EXPECT_EQ(program.files.Row(0).Path(), In("a.jpg"));
  EXPECT_EQ(program.files.Row(1).Path(), In("a.jpg"));
}

TEST_F(IntakeTest, ClearListAsks) {
  Click("MenuClearList");
  EXPECT_TRUE(Boxes().empty());
  List({Make("a.jpg")});
  Click("MenuClearList");
  ASSERT_EQ(Boxes().size(), 1u);
  EXPECT_EQ(Boxes()[0].box.text, "确定清空已加载的文件列表？");
  EXPECT_EQ(Boxes()[0].box.type, 305);
  EXPECT_EQ(Boxes()[0].reply, Reply::Cancel);
  EXPECT_EQ(program.files.RowCount(), 1u);
  world.boxes.Answer("确定清空", Reply::Ok);
  form.MSF.RightClick();
  EXPECT_EQ(form.MSF.Rows(), 1u);
  EXPECT_EQ(form.LStatus.Value(), "");
  EXPECT_EQ(program.files.StatusText(), "");
}

TEST_F(IntakeTest, DeleteSelected) {
  Click("MenuDelSelected");
  List({Make("a.jpg"), Make("b.jpg"), Make("c.jpg")});
  Click("MenuDelSelected");
  EXPECT_EQ(program.files.RowCount(), 3u);
  form.MSF.Select(2);
  Click("MenuDelSelected");
  EXPECT_EQ(ListedNames(), (std::vector<std::string>{"a.jpg", "c.jpg"}));
  EXPECT_EQ(form.LStatus.Value().find("文件数：2"), 0u);
}

TEST_F(IntakeTest, DeletingAgainRemovesTheNextRow) {
  List({Make("a.jpg"), Make("b.jpg"), Make("c.jpg"), Make("d.jpg")});
  form.MSF.Select(2);
  Click("MenuDelSelected");
  Click("MenuDelSelected");
  EXPECT_EQ(ListedNames(), (std::vector<std::string>{"a.jpg", "d.jpg"}));
  Click("MenuDelSelected");
  EXPECT_EQ(ListedNames(), std::vector<std::string>{"a.jpg"});
}

TEST_F(IntakeTest, DeletingSelectsTheRowThatIsShownNext) {
  List({Make("a.jpg"), Make("b.jpg"), Make("c.jpg"), Make("d.jpg")});
  form.MSF.SetViewOrder([] { return std::vector<std::size_t>{3, 1, 2, 0}; });
  form.MSF.Select(2);
  Click("MenuDelSelected");
  EXPECT_EQ(form.MSF.Selected(), 2u);  // c.jpg
}

TEST_F(IntakeTest, SeveralSelectedRowsAreDeletedAtOnce) {
  List({Make("a.jpg"), Make("b.jpg"), Make("c.jpg"), Make("d.jpg"), Make("e.jpg")});
  Put("MSF", "4,1-2,4");
  Click("MenuDelSelected");
  EXPECT_EQ(ListedNames(), (std::vector<std::string>{"c.jpg", "e.jpg"}));
  EXPECT_EQ(form.MSF.Selected(), 1u);
  EXPECT_EQ(form.LStatus.Value().find("文件数：2"), 0u);
}

TEST_F(IntakeTest, TheListCanBeReordered) {
  List({Make("a.jpg"), Make("b.jpg"), Make("c.jpg")});
  program.Intake().ReorderList({2, 0, 1});
  EXPECT_EQ(ListedNames(), (std::vector<std::string>{"c.jpg", "a.jpg", "b.jpg"}));
}

TEST_F(IntakeTest, ThePreviewFollowsWhatIsLeftOfTheList) {
  const std::string second = Make("b.png", 55, 66);
  List({Make("a.jpg"), second});
  form.MSF.Select(1);
  form.MSF.DoubleClick();
  Click("MenuDelSelected");
  EXPECT_EQ(program.fCutPre.preview.Path(), second);
  Click("MenuDelSelected");
  EXPECT_EQ(program.fCutPre.preview.Path(), "");
  EXPECT_EQ(flags.CurrentImagePath, "");
}

TEST_F(IntakeTest, ClearingTheListClearsThePreview) {
  List({Make("a.jpg")});
  form.MSF.Select(1);
  form.MSF.DoubleClick();
  world.boxes.Answer("确定清空", Reply::Ok);
  Click("MenuClearList");
  EXPECT_EQ(program.fCutPre.preview.Path(), "");
  EXPECT_EQ(flags.CurrentImagePath, "");
}

TEST_F(IntakeTest, DoubleClickShowsTheRow) {
  const std::string second = Make("b.png", 55, 66);
  List({Make("a.jpg"), second});
  form.MSF.DoubleClick();
  form.MSF.Select(2);
  form.MSF.DoubleClick();
  EXPECT_EQ(program.fCutPre.preview.Path(), second);
  EXPECT_EQ(flags.CurrentImagePath, second);
}

TEST_F(IntakeTest, OneThingAtATime) {
  const std::string path = Make("a.jpg");
  world.boxes.Answer("注意：拖放操作", Reply::Yes);
  bool tried = false;
  world.pump.OnTurn(1, [&] {
    tried = true;
    const int beeps = world.boxes.Beeps();
    program.Intake().MenuReadFiles_Click();
    program.Intake().MSF_OLEDragDrop({path});
    program.Intake().MenuAddFiles_Click();
    program.Intake().MenuClearList_Click();
    program.Intake().MenuDelSelected_Click();
    program.Intake().MenuInputDir_Click();
    program.RunNormalCut();
    EXPECT_EQ(world.boxes.Beeps(), beeps + 7);
    EXPECT_TRUE(Boxes().empty());
  });
  List({path});
  EXPECT_TRUE(tried);
  EXPECT_EQ(program.files.RowCount(), 1u);
}

TEST_F(IntakeTest, AMissingOutputFolderIsOfferedToBeMade) {
  const std::string folder = world.folder.Path("new/out");
  form.LOutDir.SetText(folder);
  EXPECT_FALSE(program.Intake().EnsureOutDir());
  ASSERT_FALSE(Boxes().empty());
  EXPECT_EQ(Boxes()[0].box.text, "输出目录不存在：" + folder + "\r\n要新建这个文件夹吗？");
  EXPECT_EQ(Boxes()[0].reply, Reply::No);
  EXPECT_FALSE(world.folder.Exists("new"));
  world.boxes.Answer("要新建这个文件夹", Reply::Yes);
  EXPECT_TRUE(program.Intake().EnsureOutDir());
  EXPECT_TRUE(world.host.files.IsFolder(folder));
}

TEST_F(IntakeTest, NoFolderIsMadeInThePlaceOfAFile) {
  form.LOutDir.SetText(world.folder.Write("file", "x"));
  EXPECT_FALSE(program.Intake().EnsureOutDir());
  EXPECT_EQ(world.boxes.Count("要新建这个文件夹"), 0);
  form.LOutDir.SetText(kNoOutputFolder);
  EXPECT_FALSE(program.Intake().EnsureOutDir());
  EXPECT_EQ(world.boxes.Count("要新建这个文件夹"), 0);
}

TEST_F(IntakeTest, FoldersAreChosenAndRemembered) {
  world.dialogs.ChooseFolderNext(world.folder.Path("in"));
  Click("MenuInputDir");
  EXPECT_EQ(form.LInDir.Value(), world.folder.Path("in"));
  EXPECT_EQ(program.Setting("LInDir"), world.folder.Path("in"));
  world.dialogs.ChooseFolderNext(std::string("/"));
  Click("MenuOutDir");
  EXPECT_EQ(form.LOutDir.Value(), "/");
  EXPECT_EQ(program.Setting("LOutDir"), "/");
  EXPECT_EQ(world.dialogs.All().back().filterOrInitial, outFolder);
  world.dialogs.ChooseFolderNext(std::nullopt);
  Click("MenuOutDir");
  EXPECT_EQ(form.LOutDir.Value(), "/");
}

}  // namespace
}  // namespace quillon::job
