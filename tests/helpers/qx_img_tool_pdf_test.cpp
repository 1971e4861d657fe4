// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include <gtest/gtest.h>

#include <filesystem>

#include "helpers/helper_process.h"
#include "helpers/pdfs.h"
#include "helpers/pictures.h"
#include "helpers/until.h"

namespace quillon::helpers {
namespace {

using namespace testing;

class QxImgToolPdf : public ::testing::Test {
 protected:
  std::string Pdf(const std::string& name, const std::vector<PdfPage>& pages, const std::string& inherited = "",
                  Lock lock = Lock::None) {
    MakePdf(app.Path(name), pages, inherited, lock);
    return app.Path(name);
  }

  static std::string Line(const std::vector<std::string>& fields) {
    std::string line;
    for (const std::string& field : fields) line += (line.empty() ? "" : "\t") + field;
    return line;
  }

  Ran Count(const std::string& pdf, const std::string& dpi = "72", const std::string& quality = "90") {
    return app.Run("QxImgTool", {Line({"Quillon", pdf, app.Path(), "GetPdfPages", "getpdfpages", dpi, quality})});
  }

  Ran Cut(const std::string& pdf, const std::string& out, const std::string& margins) {
    return app.Run("QxImgTool", {Line({"Quillon", pdf, out, "CutPdf", "cutpdf", margins})});
  }

  HelperFolder app;
};

TEST_F(QxImgToolPdf, PrintsItsVersion) {
  const Ran ran = app.Run("QxImgTool", {"--version"});
  EXPECT_EQ(ran.exit, 0);
  EXPECT_EQ(ran.out.substr(0, 10), "QxImgTool ");
}

TEST_F(QxImgToolPdf, RefusesCallsThatItCannotRead) {
  for (const char* call :
       {"", "Quillon", "Quillon\ta\tb\tKey", "Quillon\ta\tb\tKey\tGETPDFPAGES", "Quillon\ta\tb\tK\tx"}) {
    const Ran ran = app.Run("QxImgTool", {call});
    EXPECT_EQ(ran.exit, 1) << call;
    EXPECT_NE(ran.err.find("参数错误"), std::string::npos) << call;
  }
  EXPECT_TRUE(app.Names().empty());
}

TEST_F(QxImgToolPdf, CountsPagesAndMeasuresTheFirst) {
  const std::string pdf = Pdf("a.pdf", {{.media = "[0 0 200 100]"}, {}, {}});
  ASSERT_EQ(Count(pdf).exit, 0);
  EXPECT_EQ(app.Get("GetPdfPages"), "3");
  EXPECT_EQ(app.Get("PdfW"), "200");
  EXPECT_EQ(app.Get("PdfH"), "100");
  ASSERT_EQ(Count(pdf, "300").exit, 0);
  EXPECT_EQ(app.Get("PdfW"), "833");
  EXPECT_EQ(app.Get("PdfH"), "417");
}

TEST_F(QxImgToolPdf, LeavesTheFirstPageAsAPicture) {
  ASSERT_EQ(Count(Pdf("a.pdf", {{.media = "[0 0 200 100]"}}), "144").exit, 0);
  const Pixels page = Load(app.Path("Tmp.jpg"));
  EXPECT_EQ(page.width, 400);
  EXPECT_EQ(page.height, 200);
  EXPECT_GT(page.At(5, 5)[0], 250);
  EXPECT_EQ(DpiOf(app.Path("Tmp.jpg")), 144);
}

TEST_F(QxImgToolPdf, MeasuresPagesAsTheyAreSeen) {
  struct Case {
    PdfPage page;
    const char* width;
    const char* height;
  };
  const Case cases[] = {
      {{.media = "[0 0 200 100]", .rotate = "90"}, "100", "200"},
      {{.media = "[0 0 200 100]", .rotate = "-90"}, "100", "200"},
      {{.media = "[0 0 200 100]", .rotate = "180"}, "200", "100"},
      {{.media = "[0 0 200 100]", .crop = "[10 20 60 50]"}, "50", "30"},
      {{.media = "[200 100 0 0]"}, "200", "100"},
      {{.media = "[-100 -50 100 50]"}, "200", "100"},
      {{.media = "[0 0 200 100]", .crop = "[-500 -500 500 500]"}, "200", "100"},
      {{.media = "[0 0 200 100]", .crop = "[500 500 600 600]"}, "200", "100"},
      {{.media = "[0 0 200 100]", .unit = "2.5"}, "500", "250"},
      {{.media = "[0 0 (x) 100]"}, "612", "792"},
  };
  for (const Case& one : cases) {
    ASSERT_EQ(Count(Pdf("a.pdf", {one.page})).exit, 0);
    EXPECT_EQ(app.Get("PdfW"), one.width) << one.page.media << one.page.crop << one.page.rotate;
    EXPECT_EQ(app.Get("PdfH"), one.height) << one.page.media << one.page.crop << one.page.rotate;
  }
  ASSERT_EQ(Count(Pdf("a.pdf", {{.media = ""}}, "/MediaBox[0 0 30 40]/Rotate 90")).exit, 0);
  EXPECT_EQ(app.Get("PdfW"), "40");
  EXPECT_EQ(app.Get("PdfH"), "30");
}

TEST_F(QxImgToolPdf, ReportsWhatIsWrongInsteadOfACount) {
  app.Set("GetPdfPages", "7");
  app.Set("PdfW", "7");
  struct Case {
    std::string pdf;
    const char* why;
  };
  app.Write("text.pdf", "no PDF at all");
  app.Write("empty.pdf", "");
  Pdf("whole.pdf", {{}, {}});
  app.Write("torn.pdf", app.Read("whole.pdf").substr(0, 200));
  const Case cases[] = {
      {app.Path("none.pdf"), "文件不存在"},  {app.Path("text.pdf"), "文件已损坏"},
      {app.Path("empty.pdf"), "文件是空的"}, {app.Path("torn.pdf"), "文件已损坏"},
      {app.Path(), "这不是Pdf文件"},         {Pdf("locked.pdf", {{}}, "", Lock::Password), "文件有密码保护"}};
  for (const Case& one : cases) {
    EXPECT_EQ(Count(one.pdf).exit, 1) << one.pdf;
    EXPECT_EQ(app.Get("GetPdfPages"), one.why) << one.pdf;
    EXPECT_EQ(app.Get("PdfW"), "") << one.pdf;
  }
  EXPECT_FALSE(app.Exists("Tmp.jpg"));
}

TEST_F(QxImgToolPdf, CutsByTheBoxesAlone) {
  const std::string pdf = Pdf("a.pdf", {{.text = "First"}, {.text = "Second"}});
  ASSERT_EQ(Cut(pdf, app.Path("out.pdf"), "10|20|30|40").exit, 0);
  EXPECT_EQ(app.Get("CutPdf"), "2/2");
  const std::string out = app.Path("out.pdf");
  ASSERT_EQ(PagesOf(out), 2);
  for (int page = 0; page < 2; ++page) {
    EXPECT_EQ(Entry(out, page, "/MediaBox"), "[ 20 40 140 80 ]");
    EXPECT_EQ(Entry(out, page, "/CropBox"), "[ 20 40 140 80 ]");
    EXPECT_EQ(LinksOf(out, page), 1);
  }
  EXPECT_EQ(OutlineEntries(out), 1);
  EXPECT_NE(TextOf(out, 1).find("Second"), std::string::npos);
  EXPECT_EQ(SeenSize(out, 0).width, 120);
  EXPECT_EQ(SeenSize(out, 0).height, 40);
}

TEST_F(QxImgToolPdf, CutsPagesOfEveryKind) {
  struct Case {
    PdfPage page;
    std::string inherited;
    const char* box;
  };
  const Case cases[] = {
      {{.rotate = "90"}, "", "[ 40 10 120 70 ]"},
      {{.rotate = "180"}, "", "[ 60 20 180 60 ]"},
      {{.rotate = "270"}, "", "[ 80 30 160 90 ]"},
      {{.rotate = "-90"}, "", "[ 80 30 160 90 ]"},
      {{.media = "[200 100 0 0]"}, "", "[ 20 40 140 80 ]"},
      {{.media = "[-100 50 100 150]"}, "", "[ -80 90 40 130 ]"},
      {{.crop = "[100 0 200 100]"}, "", "[ 110 40 170 80 ]"},
      {{.crop = "[-1000 -1000 1000 1000]"}, "", "[ 20 40 140 80 ]"},
      {{.media = ""}, "/MediaBox[0 0 200 100]", "[ 20 40 140 80 ]"},
      {{.media = ""}, "/MediaBox[0 0 200 100]/Rotate 90", "[ 40 10 120 70 ]"},
      {{.unit = "3"}, "", "[ 20 40 140 80 ]"},
      {{.media = "[0 0 100.5 50.25]"}, "", "[ 10.05 20.1 70.35 40.2 ]"},
  };
  for (const Case& one : cases) {
    const std::string pdf = Pdf("a.pdf", {one.page}, one.inherited);
    ASSERT_EQ(Cut(pdf, app.Path("out.pdf"), "10|20|30|40").exit, 0);
    EXPECT_EQ(Entry(app.Path("out.pdf"), 0, "/CropBox"), one.box)
        << one.page.media << one.page.crop << one.page.rotate << one.inherited;
    EXPECT_EQ(Entry(app.Path("out.pdf"), 0, "/UserUnit"), one.page.unit.empty() ? "null" : one.page.unit);
  }
}

TEST_F(QxImgToolPdf, CutsTheOtherBoxesToThePage) {
  const std::string pdf = Pdf("a.pdf", {{.extra = "/TrimBox[0 0 100 100]/ArtBox[0 0 5 5]/BleedBox[50 50 60 60]"}});
  ASSERT_EQ(Cut(pdf, app.Path("out.pdf"), "10|20|30|40").exit, 0);
  EXPECT_EQ(Entry(app.Path("out.pdf"), 0, "/TrimBox"), "[ 20 40 100 80 ]");
  EXPECT_EQ(Entry(app.Path("out.pdf"), 0, "/BleedBox"), "[ 50 50 60 60 ]");
  EXPECT_EQ(Entry(app.Path("out.pdf"), 0, "/ArtBox"), "null");
}

TEST_F(QxImgToolPdf, MayCutOntoItsSource) {
  const std::string pdf = Pdf("a.pdf", {{.text = "Same"}});
  ASSERT_EQ(Cut(pdf, pdf, "50|0|0|0").exit, 0);
  EXPECT_EQ(Entry(pdf, 0, "/CropBox"), "[ 100 0 200 100 ]");
  EXPECT_EQ(app.Names(), (std::vector<std::string>{"a.pdf"}));
}

TEST_F(QxImgToolPdf, LeavesWhatItCannotCutAsItIs) {
  Pdf("whole.pdf", {{}, {}});
  // The index is gone: it can be read after a repair, but must not replace itself by that.
  const std::string whole = app.Read("whole.pdf");
  const std::string torn = whole.substr(0, whole.rfind("xref"));
  app.Write("torn.pdf", torn);
  EXPECT_EQ(Cut(app.Path("torn.pdf"), app.Path("torn.pdf"), "1|1|1|1").exit, 1);
  EXPECT_EQ(app.Get("CutPdf"), "文件已损坏");
  EXPECT_EQ(app.Read("torn.pdf"), torn);
  EXPECT_EQ(Cut(app.Path("torn.pdf"), app.Path("mended.pdf"), "1|1|1|1").exit, 0);
  EXPECT_EQ(PagesOf(app.Path("mended.pdf")), 2);

  EXPECT_EQ(Cut(app.Path("whole.pdf"), app.Path("out.pdf"), "50|1|50|1").exit, 1);
  EXPECT_EQ(app.Get("CutPdf"), "裁切边距之和必须小于100%");
  EXPECT_EQ(Cut(Pdf("locked.pdf", {{}}, "", Lock::Password), app.Path("out.pdf"), "1|1|1|1").exit, 1);
  EXPECT_EQ(app.Get("CutPdf"), "文件有密码保护");
  EXPECT_EQ(Cut(app.Path("whole.pdf"), app.Path("no/folder/out.pdf"), "1|1|1|1").exit, 1);
  EXPECT_FALSE(app.Exists("out.pdf"));
}

TEST_F(QxImgToolPdf, NamesAreBytes) {
  const std::string name = "图 a'\"|%d[1]$(x)\xFF.pdf";
  ASSERT_EQ(Cut(Pdf(name, {{}}), app.Path("出" + name), "1|1|1|1").exit, 0);
  EXPECT_EQ(PagesOf(app.Path("出" + name)), 1);
}

// The program's side of a split: it waits for a page, "cuts" it and counts it.
class QxImgToolSplit : public QxImgToolPdf {
 protected:
  void SetUp() override { app.Write("Images/.keep", ""); }

  // Pages in the draft of the result.
  int PagesRead() {
    int pages = 0;
    for (const std::string& name : app.Names()) {
      if (!name.starts_with(".")) continue;
      const std::string draft = app.Read(name);
      for (std::size_t at = 0; (at = draft.find("/Type/Page/", at)) != std::string::npos; ++at) ++pages;
    }
    return pages;
  }

  pid_t Split(const std::string& pdf, const std::string& out) {
    app.Set("SplitPdf", "");
    return app.Start("QxImgTool", {Line({"Quillon", pdf, out, "SplitPdf", "splitpdf", app.Path("Images") + "/"})});
  }
};

TEST_F(QxImgToolSplit, DrawsPagesAndBindsWhatWasCut) {
  const std::string pdf = Pdf("a.pdf", {{.media = "[0 0 144 72]"}, {.media = "[0 0 72 144]"}, {}});
  const pid_t tool = Split(pdf, app.Path("out.pdf"));
  std::vector<std::string> cuts;
  for (int page = 1; page <= 3; ++page) {
    const std::string name = "000" + std::to_string(page) + ".jpg";
    ASSERT_TRUE(Until([&] { return app.Exists("Images/" + name); }));
    if (page < 3) Save(app.Path("Images/A" + name), Waves(100 * page, 50), 100);
    cuts.push_back(app.Read(page < 3 ? "Images/A" + name : "Images/" + name));
    app.Set("SplitPdf", std::to_string(page));
  }
  ASSERT_EQ(app.Wait(tool).exit, 0);
  // 200 dpi if nothing was scanned.
  const Pixels first = Load(app.Path("Images/0001.jpg"));
  EXPECT_EQ(first.width, 400);
  EXPECT_EQ(first.height, 200);
  const std::string out = app.Path("out.pdf");
  ASSERT_EQ(PagesOf(out), 3);
  for (int page = 0; page < 3; ++page) EXPECT_EQ(StoredPicture(out, page), cuts[static_cast<std::size_t>(page)]);
  EXPECT_EQ(Entry(out, 0, "/MediaBox"), "[ 0 0 72 36 ]");
  EXPECT_EQ(Entry(out, 1, "/MediaBox"), "[ 0 0 144 36 ]");
  EXPECT_EQ(app.Get("SplitPdf"), "3");
}

TEST_F(QxImgToolSplit, KeepsTheResolutionOfAScan) {
  Save(app.Path("scan.jpg"), Waves(900, 600));
  MakeScan(app.Path("scan.pdf"), app.Path("scan.jpg"), 900, 600, 216);  // 300 dots an inch
  const pid_t tool = Split(app.Path("scan.pdf"), app.Path("out.pdf"));
  ASSERT_TRUE(Until([&] { return app.Exists("Images/0001.jpg"); }));
  const Pixels page = Load(app.Path("Images/0001.jpg"));
  EXPECT_EQ(page.width, 900);
  EXPECT_EQ(page.height, 600);
  EXPECT_EQ(DpiOf(app.Path("Images/0001.jpg")), 300);
  EXPECT_LT(Difference(page, Waves(900, 600)), 40);
  app.Set("SplitPdf", "1");
  ASSERT_EQ(app.Wait(tool).exit, 0);
  EXPECT_EQ(Entry(app.Path("out.pdf"), 0, "/MediaBox"), "[ 0 0 216 144 ]");
}

TEST_F(QxImgToolSplit, LeavesOutPagesThatAreTooLargeToDraw) {
  const std::string pdf = Pdf("a.pdf", {{.media = "[0 0 9000000 9000000]"}, {}});
  ASSERT_EQ(Count(pdf).exit, 0);
  EXPECT_EQ(app.Get("GetPdfPages"), "2");
  EXPECT_FALSE(app.Exists("Tmp.jpg"));
  const pid_t tool = Split(pdf, app.Path("out.pdf"));
  ASSERT_TRUE(Until([&] { return app.Exists("Images/0002.jpg"); }));
  EXPECT_FALSE(app.Exists("Images/0001.jpg"));
  app.Set("SplitPdf", "2");
  EXPECT_EQ(app.Wait(tool).exit, 0);
  EXPECT_EQ(PagesOf(app.Path("out.pdf")), 1);
}

TEST_F(QxImgToolSplit, EndsWithAnotherRunAndThenReplacesNothing) {
  app.Write("old.pdf", "what stood there");
  const std::string pdf = Pdf("a.pdf", {{}, {}, {}});
  for (const char* out : {"new.pdf", "old.pdf"}) {
    const pid_t tool = Split(pdf, app.Path(out));
    ASSERT_TRUE(Until([&] { return app.Exists("Images/0002.jpg"); }));
    app.Set("SplitPdf", "2");
    // The tool must have read the count before it is removed.
    ASSERT_TRUE(Until([&] { return PagesRead() == 2 && app.Exists("Images/0003.jpg"); }));
    app.Set("SplitPdf", "");
    app.Wait(tool);
    for (const char* page : {"1", "2", "3"}) {
      std::filesystem::remove(app.Path(std::string("Images/000") + page + ".jpg"));
    }
  }
  EXPECT_EQ(PagesOf(app.Path("new.pdf")), 2);
  EXPECT_EQ(app.Read("old.pdf"), "what stood there");
}

TEST_F(QxImgToolSplit, ReportsWhatIsWrong) {
  EXPECT_EQ(app.Wait(Split(app.Path("none.pdf"), app.Path("out.pdf"))).exit, 1);
  EXPECT_EQ(app.Get("SplitPdf"), "文件不存在");
  EXPECT_EQ(app.Wait(Split(Pdf("l.pdf", {{}}, "", Lock::Password), app.Path("out.pdf"))).exit, 1);
  EXPECT_EQ(app.Get("SplitPdf"), "文件有密码保护");
  EXPECT_FALSE(app.Exists("out.pdf"));
}

}  // namespace
}  // namespace quillon::helpers
