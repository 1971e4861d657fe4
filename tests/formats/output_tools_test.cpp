// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
// The helper programs as the job uses them.
#include "formats/output_tools.h"

#include "job/program.h"
#include "tools/command_lines.h"
#include "tools/tools_fixture.h"

namespace quillon::formats {
namespace {

class OutputToolsTest : public tools::ToolsFixture {
 protected:
  OutputToolsTest() { WriteApp("PicHandler.dll", "twin"); }

  std::string Bitmap(int width, int height) {
    imaging::Image image;
    EXPECT_TRUE(program.images.NewCanvas({width, height}, base::kWhite, image));
    EXPECT_TRUE(program.images.SaveByEncoder(image, App("made.bmp"), imaging::Encoder::Bmp, 98));
    return world.folder.Read("app/made.bmp");
  }

  job::Program program{world.host};
};

TEST_F(OutputToolsTest, AreOfferedOnlyWithTheProgram) {
  {
    const OutputTools helpers(program);
    EXPECT_EQ(program.outputTools, &helpers);
  }
  EXPECT_EQ(program.outputTools, nullptr);
  ASSERT_TRUE(world.files.RemoveOwn(App("PicHandler.dll")));
  const OutputTools none(program);
  EXPECT_EQ(program.outputTools, nullptr);
}

TEST_F(OutputToolsTest, APdfIsMadeUnderItsOwnName) {
  OutputTools helpers(program);
  WriteApp("Tmp2.jpg", "picture");
  Helper("PicHandler.exe", 1, [this](const std::string&) { WriteApp("Tmp.pdf", "%PDF-1.7\n%%EOF\n"); });
  EXPECT_TRUE(helpers.ToPdf(App("Tmp2.jpg"), App("Tmp.pdf")));
  EXPECT_EQ(Started(0), "PicHandler.exe: " + tools::PdfText(App("Tmp2.jpg"), App("Tmp")));
  EXPECT_TRUE(AppHas("Tmp2.jpg"));
}

TEST_F(OutputToolsTest, AnEarlierPdfIsNotMistakenForTheResult) {
  OutputTools helpers(program);
  WriteApp("Tmp2.jpg", "picture");
  WriteApp("Tmp.pdf", "%PDF-1.7\n%%EOF\n");
  Helper("PicHandler.exe", 1);
  EXPECT_EQ(helpers.ToPdf(App("Tmp2.jpg"), App("Tmp.pdf")).Why(), "没有生成PDF");
  EXPECT_FALSE(AppHas("Tmp.pdf"));
}

TEST_F(OutputToolsTest, AConversionOfAnotherSizeIsRefused) {
  OutputTools helpers(program);
  const std::string file = world.folder.Write("out/a.bmp", Bitmap(20, 10));
  const std::string before = world.folder.Read("out/a.bmp");
  const std::string other = Bitmap(20, 11);
  Helper("PicHandler.exe", 1, [&](const std::string&) { WriteApp("Tmp.bmp", other); });
  EXPECT_EQ(helpers.ToCmyk(file).Why(), "转CMYK的结果已损坏");
  EXPECT_EQ(world.folder.Read("out/a.bmp"), before);
  Helper("PicHandler.exe", 1, [&](const std::string&) { WriteApp("Tmp.bmp", before); });
  EXPECT_TRUE(helpers.ToCmyk(file));
}

// The target that an order of the helper names.
std::string TargetIn(const std::string& order) {
  const std::size_t bar = order.find('|');
  return bar == std::string::npos ? "" : order.substr(bar + 1, order.find('|', bar + 1) - bar - 1);
}

TEST_F(OutputToolsTest, ADescribedPictureReplacesTheWorkFile) {
  OutputTools helpers(program);
  WriteApp("Tmp2.jpg", "plain");
  Helper("TessaExifHandler.exe", 2, [this](const std::string&) {
    const std::string target = TargetIn(Key("Exif"));
    std::string content;
    EXPECT_TRUE(world.files.ReadFile(target, content));
    EXPECT_TRUE(world.files.Save(target, content + " described"));
  });
  EXPECT_TRUE(helpers.CopyExif("/in/a.jpg", App("Tmp2.jpg")));
  EXPECT_EQ(world.folder.Read("app/Tmp2.jpg"), "plain described");
  EXPECT_EQ(world.folder.Names("app"), (std::vector<std::string>{"PicHandler.dll", "Tmp2.jpg"}));
}

// A helper that hangs at the first picture is abandoned. What it writes later, when the same work file holds the second
// picture, has no effect.
TEST_F(OutputToolsTest, ALateHelperDoesNotMeetTheNextPicture) {
  OutputTools helpers(program);
  std::vector<std::string> targets;
  Helper("TessaExifHandler.exe", 0, [&](const std::string&) { targets.push_back(TargetIn(Key("Exif"))); });
  WriteApp("Tmp2.jpg", "first");
  EXPECT_EQ(helpers.CopyExif("/in/a.jpg", App("Tmp2.jpg")).Why(), "TessaExifHandler 没有按时完成");
  EXPECT_EQ(world.folder.Read("app/Tmp2.jpg"), "first");
  ASSERT_TRUE(world.files.RemoveOwn(App("Tmp2.jpg")));
  WriteApp("Tmp2.jpg", "second");
  world.pump.OnTurn(20, [&] { EXPECT_TRUE(world.files.Save(targets.at(0), "first described")); });
  EXPECT_FALSE(helpers.CopyExif("/in/b.jpg", App("Tmp2.jpg")));
  EXPECT_EQ(world.folder.Read("app/Tmp2.jpg"), "second");
  ASSERT_EQ(targets.size(), 2u);
  EXPECT_NE(targets[0], targets[1]);
}

}  // namespace
}  // namespace quillon::formats
