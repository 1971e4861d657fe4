// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
// What follows the cut: helper programs, the source of a psd, and the manual step before it.
#include <filesystem>
#include <fstream>

#include "host/posix/sqlite_journals.h"
#include "job/collaborator_doubles.h"
#include "job/marking_tools.h"
#include "job/psd_bytes.h"

namespace quillon::job {
namespace {

// Remembers what it was asked, and what stood under the names at that moment.
class Tools final : public OutputTools {
 public:
  host::Status ToCmyk(const std::string& file) override {
    cmyk.push_back(file);
    return cmykStatus;
  }
  host::Status CopyExif(const std::string& source, const std::string& target) override {
    exif.emplace_back(source, target);
    return exifStatus;
  }
  host::Status ToPdf(const std::string& picture, const std::string& made) override {
    pdf.push_back(picture);
    if (!pdfStatus) return pdfStatus;
    std::filesystem::copy_file(picture, made);
    return {};
  }

  std::vector<std::string> cmyk;
  std::vector<std::pair<std::string, std::string>> exif;
  std::vector<std::string> pdf;
  host::Status cmykStatus;
  host::Status exifStatus;
  host::Status pdfStatus;
};

class Frame final : public ManualFrame {
 public:
  explicit Frame(Program& owner) : program(owner) {}
  std::string Ask(const ManualPicture& picture, const std::string& earlier) override {
    const std::string& source = picture.source;
    asked.emplace_back(source, program.images.GetImageWidth(picture.turned));
    names.push_back(picture.listedPath);
    program.flags.CurrentImagePath = source;
    program.flags.ManualStepDone = true;
    if (answer) answer();
    repeated.push_back(earlier);
    return program.flags.ManualStepDone ? "decided on " + source : std::string();
  }
  void Shown() override {}
  host::Status ClonePicture(imaging::Image& out) override {
    ++cloned;
    return program.images.LoadImageFromFile(program.flags.CurrentImagePath, out);
  }
  void Rest() override { ++rests; }

  Program& program;
  std::function<void()> answer;
  std::vector<std::pair<std::string, int>> asked;  // with the width of a picture that is turned already
  std::vector<std::string> names;                  // under which they were listed
  std::vector<std::string> repeated;               // the decisions of an earlier part, "" for none
  int cloned = 0;
  int rests = 0;
};

class CutFinishTest : public CutTest {
 protected:
  void GiveProfiles() { LayOutProfiles(program); }
  // A run with a manual frame over two pictures that lose their left half; it is stopped while the second is on show.
  void StopAtSecondPicture(bool over) {
    program.journals = &journals;
    program.manualFrame = &frame;
    flags.ManualCutMode = true;
    form.ChOver.Set(over);
    Margins(50, 0, 0, 0);
    frame.answer = [this] {
      if (frame.asked.size() < 2) return;
      flags.ManualStepDone = false;
      flags.StopRequested = true;
    };
    Cut({Make("a.jpg", 40, 30), Make("b.jpg", 40, 30)});
    frame.answer = {};
    frame.asked.clear();
    frame.repeated.clear();
  }

  Tools tools;
  Frame frame{program};
  host::posix::SqliteJournals journals{world.folder.Path("journals")};
};

TEST_F(CutFinishTest, CmykComesBeforeTheDelivery) {
  GiveProfiles();
  program.outputTools = &tools;
  flags.ToCmyk = true;
  Cut({Make("a.jpg")});
  EXPECT_EQ(tools.cmyk, std::vector<std::string>{program.AppPath("Tmp2.jpg")});
  EXPECT_EQ(Totals().written, 1u);
  tools.cmykStatus = {host::Problem::Other, "没有配置文件"};
  program.files.Clear();
  Cut({Make("b.jpg")});
  EXPECT_EQ(Why(1), "颜色没有转换：没有配置文件");
  EXPECT_EQ(OutNames(), (std::vector<std::string>{"a.jpg", "b.jpg"}));
}

TEST_F(CutFinishTest, FormatsWithoutCmykAreReported) {
  GiveProfiles();
  program.outputTools = &tools;
  flags.ToCmyk = true;
  const std::string path = Make("a.jpg");
  for (const std::string type : {"jpg", "png", "gif", "tif", "bmp", "pdf"}) {
    form.CmbOutType.SetText(type);
    program.files.Clear();
    Cut({path});
    EXPECT_EQ(Totals().written, 1u) << type;
    const bool reported = type == "png" || type == "gif" || type == "bmp";
    EXPECT_EQ(Why(1), reported ? type + " 不能保存 CMYK，印刷效果的颜色存成了 RGB" : "") << type;
  }
}

TEST_F(CutFinishTest, ARefusedOrStoppedConversionLeavesNoOutput) {
  GiveProfiles();
  program.outputTools = &tools;
  flags.ToCmyk = true;
  for (const host::Problem problem : {host::Problem::DiskFull, host::Problem::Stopped}) {
    tools.cmykStatus = {problem, "没有完成"};
    program.files.Clear();
    Cut({Make("a.jpg")});
    EXPECT_EQ(Why(1), "没有完成");
    EXPECT_EQ(OutNames(), std::vector<std::string>{});
  }
}

TEST_F(CutFinishTest, ALostExifIsReported) {
  program.outputTools = &tools;
  flags.KeepExif = true;
  tools.exifStatus = {host::Problem::Unsupported, "名字不行"};
  Cut({Make("a.jpg")});
  EXPECT_EQ(Totals().written, 1u);
  EXPECT_EQ(Why(1), "Exif没有保留：名字不行");
}

TEST_F(CutFinishTest, CmykWithoutUsableProfilesIsReported) {
  program.outputTools = &tools;
  flags.ToCmyk = true;
  const std::string path = Make("a.jpg");
  const auto why = [&] {
    program.files.Clear();
    Cut({path});
    EXPECT_TRUE(tools.cmyk.empty());
    EXPECT_TRUE(OutNames().empty());
    return Why(1);
  };
  EXPECT_EQ(why(), "无法转CMYK，ColorConfigs/sRGB.icc：找不到颜色配置文件");
  GiveProfiles();
  std::filesystem::remove(program.AppPath("ColorConfigs/Default.icm"));
  EXPECT_EQ(why(), "无法转CMYK，ColorConfigs/Default.icm：找不到颜色配置文件");
  const std::string cmyk = world.folder.Read("app/ColorConfigs/sRGB.icc");
  for (const std::string& broken : {std::string(), std::string("no profile"), cmyk, cmyk.substr(0, 200)}) {
    WriteApp("ColorConfigs/Default.icm", broken);
    EXPECT_EQ(why(), "无法转CMYK，ColorConfigs/Default.icm：不是可用的颜色配置文件") << broken.size();
  }
  GiveProfiles();
  const std::string whole = world.folder.Read("app/ColorConfigs/Default.icm");
  WriteApp("ColorConfigs/Default.icm", whole.substr(0, whole.size() / 3));
  EXPECT_EQ(why(), "无法转CMYK，ColorConfigs/Default.icm：不是可用的颜色配置文件");
}

TEST_F(CutFinishTest, ExifComesFromTheSource) {
  program.outputTools = &tools;
  flags.KeepExif = true;
  const std::string path = Make("a.jpg");
  Cut({path});
  using Copies = std::vector<std::pair<std::string, std::string>>;
  EXPECT_EQ(tools.exif, (Copies{{path, program.AppPath("Tmp2.jpg")}}));
  EXPECT_FALSE(AppHas("tmp.jpg"));
  Put("ChOver", "1");
  const std::string before = world.folder.Read("in/a.jpg");
  Cut();
  EXPECT_EQ(tools.exif.back().first, program.AppPath("tmp.jpg"));
  EXPECT_EQ(world.folder.Read("app/tmp.jpg"), before);
}

TEST_F(CutFinishTest, ExifIsKeptWithoutAHelperToo) {
  // One text of the first directory: the maker.
  const std::string exif = std::string("Exif\0\0II*\0\x08\0\0\0\x01\0\x0F\x01\x02\0\x08\0\0\0\x1A\0\0\0\0\0\0\0", 32) +
                           std::string("Quillon\0", 8);
  const std::string path = Make("a.jpg");
  const std::string plain = world.folder.Read("in/a.jpg");
  const std::string segment = std::string("\xFF\xE1\0", 3) + static_cast<char>(exif.size() + 2) + exif;
  world.folder.Write("in/a.jpg", plain.substr(0, 2) + segment + plain.substr(2));
  flags.KeepExif = true;
  Cut({path});
  EXPECT_EQ(Totals().written, 1u) << Whys();
  EXPECT_NE(world.folder.Read("out/a.jpg").find("Quillon"), std::string::npos);
  flags.KeepExif = false;
  Cut();
  EXPECT_EQ(world.folder.Read("out/a.jpg").find("Quillon"), std::string::npos);
}

TEST_F(CutFinishTest, PdfIsMadeOfAJpgCut) {
  program.outputTools = &tools;
  form.CmbOutType.SetText("pdf");
  Cut({Make("a.png")});
  EXPECT_EQ(tools.pdf, std::vector<std::string>{program.AppPath("Tmp2.jpg")});
  EXPECT_EQ(recorder.done[0].output, Out("a.pdf"));
  EXPECT_EQ(OutNames(), std::vector<std::string>{"a.pdf"});
  EXPECT_EQ(form.CmbOutType.Text(), "jpg");
  EXPECT_GT(program.files.Row(0).newBytes, 0u);
  form.CmbOutType.SetText("pdf");
  tools.pdfStatus = {host::Problem::Other, "pdf 没有生成"};
  Cut();
  EXPECT_EQ(Why(1), "pdf 没有生成");
  EXPECT_FALSE(AppHas("Tmp.pdf") || AppHas("Tmp2.jpg"));
  EXPECT_TRUE(OutNames().empty()) << "the pdf of the earlier run is no result of this one";
  EXPECT_TRUE(world.folder.Exists("data/Trash/files/a.pdf"));
}

TEST_F(CutFinishTest, APdfLeavesThePictureBesideItAlone) {
  program.outputTools = &tools;
  world.folder.Write("out/a.jpg", "mine");
  form.CmbOutType.SetText("pdf");
  Cut({Make("a.png")});
  EXPECT_EQ(OutNames(), (std::vector<std::string>{"a.jpg", "a.pdf"}));
  EXPECT_EQ(world.folder.Read("out/a.jpg"), "mine");
}

TEST_F(CutFinishTest, ASourceThatBecameAPdfGoesToTheTrash) {
  program.outputTools = &tools;
  for (const std::string name : {"a.jpg", "b.psd"}) {
    SCOPED_TRACE(name);
    Put("ChOver", "1");
    const std::string path =
        name == "a.jpg" ? Make(name) : world.folder.Write("in/" + name, PsdBytes(30, 20, {10, 200, 30}));
    const std::string before = world.folder.Read("in/" + name);
    program.files.Clear();
    form.CmbOutType.SetText("pdf");
    tools.pdfStatus = {host::Problem::Other, "pdf 没有生成"};
    Cut({path});
    EXPECT_EQ(Totals().none, 1u);
    EXPECT_EQ(world.folder.Read("in/" + name), before);
    tools.pdfStatus = {};
    form.CmbOutType.SetText("pdf");
    Cut();
    EXPECT_EQ(Totals().written, 1u) << Whys();
    EXPECT_EQ(recorder.done.back().output, In(name.substr(0, 1) + ".pdf"));
    EXPECT_TRUE(world.folder.Exists("in/" + name.substr(0, 1) + ".pdf"));
    EXPECT_FALSE(world.folder.Exists("in/" + name));
    EXPECT_EQ(world.folder.Read("data/Trash/files/" + name), before);
  }
}

TEST_F(CutFinishTest, AForeignPdfBesideAnOverwrittenSourceStays) {
  program.outputTools = &tools;
  Put("ChOver", "1");
  const std::string path = Make("a.jpg");
  const std::string before = world.folder.Read("in/a.jpg");
  world.folder.Write("in/a.pdf", "mine");
  form.CmbOutType.SetText("pdf");
  Cut({path});
  EXPECT_EQ(world.folder.Read("in/a.pdf"), "mine");
  EXPECT_EQ(world.folder.Read("in/a.jpg"), before);
  EXPECT_EQ(Why(1), "会覆盖另一个文件 " + In("a.pdf") + "，已跳过");
}

TEST_F(CutFinishTest, APictureThatIsListedTwiceBecomesOnePdf) {
  program.outputTools = &tools;
  const std::string path = Make("a.jpg");
  form.CmbOutType.SetText("pdf");
  Cut({path, path});
  EXPECT_EQ(Totals().written, 1u);
  EXPECT_EQ(Totals().skipped, 1u);
}

TEST_F(CutFinishTest, APdfThatIsNotMadeRemovesNoneOfThisRun) {
  program.outputTools = &tools;
  const std::string first = Make("x/a.jpg");
  const std::string second = Make("y/a.jpg");
  recorder.onFileDone = [&](const FileResult&) { tools.pdfStatus = {host::Problem::Other, "pdf 没有生成"}; };
  form.CmbOutType.SetText("pdf");
  Cut({first, second});
  EXPECT_EQ(Totals().written, 1u);
  EXPECT_EQ(Totals().none, 1u);
  EXPECT_EQ(OutNames(), std::vector<std::string>{"a.pdf"});
}

TEST_F(CutFinishTest, AFullDiskIsAskedAboutWithAPdfToo) {
  program.outputTools = &tools;
  world.faults.Set({.call = host::testing::DiskCall::Write, .nth = 1, .error = ENOSPC, .pathHolds = "out/"});
  world.boxes.Answer("/盘空间不足，请释放空间后重试保存！", host::Reply::Retry, 1);
  form.CmbOutType.SetText("pdf");
  Cut({Make("a.jpg")});
  EXPECT_EQ(world.faults.Fired(), 1);
  EXPECT_EQ(world.boxes.Count("盘空间不足"), 1);
  EXPECT_EQ(world.boxes.All()[0].box.title, "Quillon");
  EXPECT_EQ(OutNames(), std::vector<std::string>{"a.pdf"});
}

TEST_F(CutFinishTest, TheBackSideGetsNoExifAndKeepsTheSource) {
  struct BackSide final : Sheets {
    bool Prepare() override { return true; }
    bool OnBackSide() const override { return true; }
    void Place(const std::string&) override {}
    void Finish() override {}
    void Listed(const std::string&, int) override {}
  } back;
  program.sheets = &back;
  program.outputTools = &tools;
  form.ChCutAndArray.SetHandler({});
  form.ChCutAndArray.Set(true);
  flags.KeepExif = true;
  Put("ChOver", "1");
  Cut({world.folder.Write("in/a.psd", PsdBytes(30, 20, {10, 200, 30}))});
  ASSERT_EQ(Totals().written, 1u) << Whys();
  EXPECT_TRUE(tools.exif.empty());
  EXPECT_EQ(world.folder.Names("in"), (std::vector<std::string>{"a(背景拼版).jpg", "a.psd"}));
}

TEST_F(CutFinishTest, ASheetGetsThePictureTurned) {
  IdleSheets sheets;
  program.sheets = &sheets;
  form.ChCutAndArray.SetHandler({});
  form.ChCutAndArray.Set(true);
  form.CmbOutType.SetText("png");
  Option("CmbRotate", "1");
  options.ChRecover.SetEnabled(true);
  options.ChRecover.Set(true);
  Option("ChToGray", "1");
  Cut({Make("a.png", 60, 40)});
  ASSERT_EQ(Totals().written, 1u) << Whys();
  EXPECT_EQ(SizeOf(Out("a.png")), (base::Size{40, 60}));
  form.ChCutAndArray.Set(false);
  Cut();
  EXPECT_EQ(SizeOf(Out("a.png")), (base::Size{60, 40}));
}

TEST_F(CutFinishTest, APsdBecomesAJpg) {
  const std::string path = world.folder.Write("in/a.psd", PsdBytes(30, 20, {10, 200, 30}));
  Margins(0, 0, 50, 0);
  Cut({path});
  ASSERT_EQ(Totals().written, 1u) << Whys();
  const Picture cut = Read(Out("a.jpg"));
  EXPECT_EQ(cut.width, 15);
  EXPECT_NEAR(cut.At(5, 5).green, 200, 4);
  EXPECT_TRUE(world.folder.Exists("in/a.psd"));
}

TEST_F(CutFinishTest, AnOverwrittenPsdGoesToTheTrash) {
  const std::string path = world.folder.Write("in/a.psd", PsdBytes(30, 20, {10, 200, 30}));
  Put("ChOver", "1");
  Cut({path});
  ASSERT_EQ(Totals().written, 1u) << Whys();
  EXPECT_EQ(recorder.done[0].output, In("a.jpg"));
  EXPECT_EQ(world.folder.Names("in"), std::vector<std::string>{"a.jpg"});
  EXPECT_EQ(SizeOf(In("a.jpg")), (base::Size{30, 20}));
  EXPECT_EQ(world.folder.Read("data/Trash/files/a.psd"), PsdBytes(30, 20, {10, 200, 30}));
}

TEST_F(CutFinishTest, APsdWhoseJpgIsNotOnDiskStays) {
  const std::string path = world.folder.Write("in/a.psd", PsdBytes(30, 20, {10, 200, 30}));
  Put("ChOver", "1");
  List({path});
  world.faults.Set({.call = host::testing::DiskCall::Sync, .error = EIO, .pathHolds = "in/.a.jpg"});
  Cut();
  ASSERT_EQ(world.faults.Fired(), 1);
  EXPECT_TRUE(world.folder.Exists("in/a.psd"));
  EXPECT_EQ(Totals().none, 1u);
}

TEST_F(CutFinishTest, APsdWhoseJpgCannotBeReadBackStays) {
  const std::string path = world.folder.Write("in/a.psd", PsdBytes(30, 20, {10, 200, 30}));
  Put("ChOver", "1");
  List({path});
  recorder.onFileDone = [&](const FileResult& file) { std::ofstream(file.output, std::ios::trunc) << "broken"; };
  Cut();
  EXPECT_TRUE(world.folder.Exists("in/a.psd"));
  EXPECT_EQ(Why(1).find("输出文件读不回来，源文件已保留："), 0u) << Why(1);
  EXPECT_EQ(Totals().none, 1u);
  EXPECT_EQ(Totals().written, 0u);
}

TEST_F(CutFinishTest, APsdThatCannotBeDiscardedIsNamed) {
  const std::string path = world.folder.Write("in/a.psd", PsdBytes(30, 20, {10, 200, 30}));
  Put("ChOver", "1");
  List({path});
  world.faults.Set({.call = host::testing::DiskCall::RenameNew,
                    .error = EACCES,
                    .length = host::testing::Fault::Length::ForEver,
                    .pathHolds = "a.psd"});
  Cut();
  EXPECT_GE(world.faults.Fired(), 1);
  EXPECT_TRUE(world.folder.Exists("in/a.psd"));
  EXPECT_TRUE(world.folder.Exists("in/a.jpg"));
  EXPECT_EQ(Totals().written, 1u);
  EXPECT_EQ(Why(1).find("输出已写好，源文件没能移入回收站："), 0u) << Why(1);
}

TEST_F(CutFinishTest, APsdNeverReplacesTheJpgBesideIt) {
  const std::string path = world.folder.Write("in/a.psd", PsdBytes(30, 20, {10, 200, 30}));
  Make("a.jpg", 50, 40);
  const std::string before = world.folder.Read("in/a.jpg");
  Put("ChOver", "1");
  Cut({path});
  EXPECT_EQ(world.folder.Read("in/a.jpg"), before);
  EXPECT_TRUE(world.folder.Exists("in/a.psd"));
  EXPECT_EQ(Why(1), "会覆盖另一个文件 " + In("a.jpg") + "，已跳过");
}

TEST_F(CutFinishTest, TheManualFrameIsAskedForEachFile) {
  program.manualFrame = &frame;
  flags.ManualCutMode = true;
  frame.answer = [&] { form.TCutValue[0].SetNumber(frame.asked.size() == 1 ? 50 : 0); };
  Cut({Make("a.jpg", 40, 30), Make("b.jpg", 60, 50)});
  ASSERT_EQ(frame.asked.size(), 2u);
  EXPECT_EQ(frame.asked[0].first, In("a.jpg"));
  EXPECT_EQ(frame.asked[0].second, 0);
  EXPECT_EQ(SizeOf(Out("a.jpg")), (base::Size{20, 30}));
  EXPECT_EQ(SizeOf(Out("b.jpg")), (base::Size{60, 50}));
  EXPECT_EQ(frame.rests, 1);
}

TEST_F(CutFinishTest, TheFrameIsShownAPictureAsARuleTurnedIt) {
  program.manualFrame = &frame;
  Option("CmbRotate", "横向图选逆转90度后再裁剪");
  flags.ManualCutMode = true;
  Cut({Make("a.jpg", 40, 30)});
  ASSERT_EQ(frame.asked.size(), 1u);
  EXPECT_EQ(frame.asked[0].second, 30);
}

TEST_F(CutFinishTest, APictureThatWasCutBeforeIsLeftAlone) {
  StopAtSecondPicture(true);
  EXPECT_EQ(SizeOf(In("a.jpg")), (base::Size{20, 30}));
  Cut();
  EXPECT_EQ(SizeOf(In("a.jpg")), (base::Size{20, 30}));
  EXPECT_EQ(Totals().skipped, 1u);
  EXPECT_EQ(Why(1), "上次中断之前已按手动裁剪框裁好");
  EXPECT_EQ(Totals().written, 1u);
  ASSERT_EQ(frame.asked.size(), 1u);
  EXPECT_EQ(frame.asked[0].first, In("b.jpg"));
}

// The run stores what the frame returns, whatever it is, and passes it to the frame again.
TEST_F(CutFinishTest, TheFrameIsGivenItsDecisionAgain) {
  StopAtSecondPicture(false);
  Cut();
  EXPECT_EQ(frame.repeated, (std::vector<std::string>{"decided on " + In("a.jpg"), ""}));
  StopAtSecondPicture(false);
  Make("a.jpg", 60, 50);
  Cut();
  EXPECT_EQ(frame.repeated, (std::vector<std::string>{"", ""})) << "another picture has its name";
}

TEST_F(CutFinishTest, ASkippedPictureStaysWhole) {
  program.manualFrame = &frame;
  flags.ManualCutMode = true;
  Margins(50, 0, 0, 0);
  frame.answer = [&] { flags.SkipCutThisImage = frame.asked.size() == 1; };
  Cut({Make("a.jpg", 40, 30), Make("b.jpg", 60, 50)});
  EXPECT_EQ(SizeOf(Out("a.jpg")), (base::Size{40, 30}));
  EXPECT_EQ(SizeOf(Out("b.jpg")), (base::Size{30, 50}));
}

TEST_F(CutFinishTest, ThePictureThatTheFrameLeavesIsCut) {
  program.manualFrame = &frame;
  flags.ManualCutMode = true;
  const std::string turned = Make("turned.jpg", 30, 44);
  frame.answer = [&] {
    flags.CurrentImagePath = turned;
    flags.ManualRotated = true;
    flags.ManualAngle = 90;
  };
  Cut({Make("a.jpg", 44, 30)});
  EXPECT_EQ(SizeOf(Out("a.jpg")), (base::Size{30, 44}));
  EXPECT_FALSE(flags.ImageRotated);
}

TEST_F(CutFinishTest, APictureThatTheFrameLostIsPassedOver) {
  program.manualFrame = &frame;
  flags.ManualCutMode = true;
  frame.answer = [&] { flags.CurrentImagePath = "/nowhere.jpg"; };
  Cut({Make("a.jpg")});
  EXPECT_EQ(Why(1), "裁剪框预览中的图片已不存在");
  EXPECT_TRUE(OutNames().empty());
}

// Nobody places a frame for nothing.
TEST_F(CutFinishTest, APictureOfAnotherTypeIsRefusedBeforeItIsAskedAbout) {
  program.manualFrame = &frame;
  flags.ManualCutMode = true;
  Cut({Make("a.png"), Make("b.jpg")});
  EXPECT_EQ(Why(1), "图片是 png，输出类型是 jpg：手动裁剪不转换类型，这一张没有裁剪");
  EXPECT_EQ(frame.names, std::vector<std::string>{In("b.jpg")});
  EXPECT_EQ(OutNames(), std::vector<std::string>{"b.jpg"});
}

TEST_F(CutFinishTest, AWorkFileOfAnotherTypeIsPassedOver) {
  program.manualFrame = &frame;
  flags.ManualCutMode = true;
  form.CmbOutType.SetText("png");
  const std::string turned = Make("turned.jpg", 30, 44);
  frame.answer = [&] { flags.CurrentImagePath = turned; };
  Cut({Make("a.png", 44, 30)});
  EXPECT_EQ(Why(1), "缩放、旋转或扩边之后的图片是 jpg，输出类型是 png：手动裁剪不转换类型，这一张没有裁剪");
  EXPECT_TRUE(OutNames().empty());
}

TEST_F(CutFinishTest, AZoomedPictureIsAskedAboutByTheNameOfItsSource) {
  program.manualFrame = &frame;
  Option("ChZoomAndCut", "1");
  Option("CmbZoom", "50%");
  flags.ManualCutMode = true;
  Cut({Make("a.jpg", 80, 60)});
  EXPECT_EQ(frame.names, std::vector<std::string>{In("a.jpg")});
  ASSERT_EQ(frame.asked.size(), 1u);
  EXPECT_EQ(frame.asked[0].first, program.AppPath("Tmp.jpg"));
  EXPECT_EQ(SizeOf(Out("a.jpg")), (base::Size{40, 30}));
}

TEST_F(CutFinishTest, AStopInsideTheManualStepCutsNothing) {
  program.manualFrame = &frame;
  flags.ManualCutMode = true;
  frame.answer = [&] {
    flags.ManualStepDone = false;
    flags.StopRequested = true;
  };
  Cut({Make("a.jpg"), Make("b.jpg")});
  EXPECT_TRUE(OutNames().empty());
  EXPECT_EQ(Why(1), "已停止，未处理完");
  EXPECT_EQ(Why(2), "已停止，未处理");
  EXPECT_TRUE(Totals().stopped);
}

TEST_F(CutFinishTest, EffectsUseThePictureOfTheFrame) {
  program.manualFrame = &frame;
  form.CmbOutType.SetText("png");
  Option("ChInvert", "1");
  flags.ManualCutMode = true;
  Cut({Make("a.png", Painted(4, 4, [](int, int) { return Pixel{0, 0, 0}; }))});
  ASSERT_EQ(Totals().written, 1u) << Whys();
  EXPECT_EQ(frame.cloned, 1);
  EXPECT_EQ(Read(Out("a.png")).At(0, 0), kWhitePixel);
}

}  // namespace
}  // namespace quillon::job
