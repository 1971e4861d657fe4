// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "helpers/jobs.h"

#include <gtest/gtest.h>
#include <sqlite3.h>

#include <csignal>
#include <filesystem>

#include "build_paths.h"
#include "helpers/pdfs.h"
#include "helpers/pictures.h"
#include "helpers/until.h"
#include "tools/converter_order.h"

namespace quillon::helpers::testing {
namespace {

namespace fs = std::filesystem;

std::string Tabbed(const std::vector<std::string>& fields) {
  std::string text;
  for (const std::string& field : fields) text += (text.empty() ? "" : "\t") + field;
  return text;
}

std::string ThreePages(const HelperFolder& app) {
  MakePdf(app.Path("a.pdf"), {{}, {}, {}});
  return app.Path("a.pdf");
}

std::string CoupleOrderOf(const HelperFolder& app) {
  return *tools::OrderText(
      tools::CoupleOrder{.source = app.Path("a.jpg"), .target = app.Path("out.jpg"), .size = {300, 200}});
}

bool HasThreePages(const std::string& path) { return PagesOf(path) == 3; }
bool HasOnePage(const std::string& path) { return PagesOf(path) == 1; }

void LayExifOut(const HelperFolder& app) {
  Save(app.Path("b.jpg"), Waves(60, 40), 72);
  Save(app.Path("out.jpg"), Waves(600, 400), 300);
}

std::vector<Job> ImgToolJobs() {
  return {
      {.helper = "QxImgTool",
       .prepare =
           [](const HelperFolder& app) {
             return std::vector{
                 Tabbed({"Quillon", ThreePages(app), app.Path("out.pdf"), "CutPdf", "cutpdf", "1|1|1|1"})};
           },
       .target = "out.pdf",
       .key = "CutPdf",
       .answer = "3/3",
       .whole = HasThreePages},
      {.helper = "QxImgTool",
       .prepare =
           [](const HelperFolder& app) {
             return std::vector{
                 Tabbed({"Quillon", ThreePages(app), app.Path(), "GetPdfPages", "getpdfpages", "96", "90"})};
           },
       .target = "Tmp.jpg",
       .key = "GetPdfPages",
       .answer = "3"},
      {.helper = "QxImgTool",
       .prepare =
           [](const HelperFolder& app) {
             Save(app.Path("a.tif"), Waves(600, 400), 300);
             return std::vector{
                 Tabbed({"Quillon", app.Path("a.tif"), app.Path(), "GetTiffPages", "gettiffpages", "lzw", "0", "1"})};
           },
       .target = "Tmp.jpg",
       .key = "GetTiffPages",
       .answer = "1"},
  };
}

std::vector<Job> PictureJobs() {
  return {
      {.helper = "PicHandler",
       .prepare =
           [](const HelperFolder& app) {
             return std::vector{"\"" + app.Path("a.jpg") + "\"  -interlace none -verbose -quality 100 \"" +
                                app.Path("out.pdf") + "\""};
           },
       .target = "out.pdf"},
      {.helper = "PicHandler",
       .prepare =
           [](const HelperFolder& app) {
             fs::copy(QUILLON_BINARY_DIR "/bin/ColorConfigs", app.Path("ColorConfigs"),
                      fs::copy_options::skip_existing | fs::copy_options::recursive);
             return std::vector{"\"" + app.Path("a.jpg") + "\"  -profile \"" + app.Path("ColorConfigs/sRGB.icc") +
                                "\" -profile \"" + app.Path("ColorConfigs/Default.icm") + "\" \"" +
                                app.Path("out.jpg") + "\""};
           },
       .target = "out.jpg"},
      {.helper = "TessaExifHandler",
       .prepare =
           [](const HelperFolder& app) {
             LayExifOut(app);
             return std::vector{app.Path("b.jpg"), app.Path("out.jpg")};
           },
       .target = "out.jpg"},
      {.helper = "SavePicsToTiff",
       .prepare =
           [](const HelperFolder& app) {
             app.Write("Ops.txt", app.Path("out.tif") + "\r\nSaveNew\r\n" + app.Path("a.jpg") + "\r\n");
             return std::vector<std::string>{};
           },
       .target = "out.tif"},
      {.helper = "PicCutConverter",
       .prepare =
           [](const HelperFolder& app) {
             app.Write("CoupleParam.txt", CoupleOrderOf(app));
             return std::vector<std::string>{};
           },
       .target = "out.jpg"},
      {.helper = "CutMedia",
       .prepare =
           [](const HelperFolder& app) {
             return std::vector{"-i \"" + app.Path("a.jpg") + "\" -vf crop=x=1:y=2:w=300:h=200 -y -q:v 0 \"" +
                                app.Path("out.png") + "\""};
           },
       .target = "out.png"},
      {.helper = "PicCirleCut",
       .prepare =
           [](const HelperFolder& app) {
             return std::vector{Tabbed({app.Path("a.jpg"), app.Path("out.png"), "0", "0", "500", "300"})};
           },
       .target = "out.png"},
  };
}

std::vector<Job> TellingJobs() {
  return {
      {.helper = "DCTiffsMaker",
       .prepare =
           [](const HelperFolder& app) {
             std::string list = "Quillon\r\n" + app.Path("out.tif") + "\r\n0\r\n0\r\n1\r\n";
             for (int line = 5; line < 27; ++line) list += "0\r\n";
             app.Write("OkList.txt", list + app.Path("a.jpg") + "\r\n");
             return std::vector{app.Path("OkList.txt")};
           },
       .target = "out.tif",
       .key = "MakeTiffProg",
       .answer = "True"},
      {.helper = "PicsToAniGif",
       .prepare =
           [](const HelperFolder& app) {
             app.Write("Gif.txt", app.Path("a.jpg") + "\n");
             return std::vector{Tabbed({app.Path(), "0", "0", "98", "0", "600", "400", "100", app.Path("out.gif")})};
           },
       .target = "out.gif",
       .key = "PicsToGif",
       .answer = "1",
       .application = "PicsCut"},
      {.helper = "QxBackImg",
       .prepare =
           [](const HelperFolder& app) {
             return std::vector{Tabbed({"Quillon", "QxBackImg", app.Path("a.jpg"),
                                        "cut|" + app.Path("a.jpg") + "|10|10|300|200|" + app.Path("out.jpg") + "|80"})};
           },
       .target = "out.jpg",
       .key = "QxBackImg",
       .answer = "1",
       .serves = true},
      {.helper = "QxBackOCRer",
       .prepare =
           [](const HelperFolder& app) {
             SaveText(app.Path("text.png"), "2026");
             return std::vector{"Quillon\r\n" + app.Path("text.png")};
           },
       .target = "",
       .key = "OCRRes",
       .answer = "2026"},
  };
}

}  // namespace

const std::vector<Job>& Jobs() {
  static const std::vector<Job> kJobs = [] {
    std::vector<Job> jobs = ImgToolJobs();
    for (const auto& more : {PictureJobs(), TellingJobs()}) jobs.insert(jobs.end(), more.begin(), more.end());
    return jobs;
  }();
  return kJobs;
}

const std::vector<Job>& Followers() {
  static const std::vector<Job> kJobs = {
      {.helper = "QxImgTool",
       .prepare =
           [](const HelperFolder& app) {
             fs::remove_all(app.Path("Images"));
             fs::create_directory(app.Path("Images"));
             app.Set("SplitPdf", "");
             return std::vector{Tabbed(
                 {"Quillon", ThreePages(app), app.Path("out.pdf"), "SplitPdf", "splitpdf", app.Path("Images") + "/"})};
           },
       .target = "out.pdf",
       .whole = HasThreePages,
       .talk =
           [](const HelperFolder& app, const std::stop_token& stop) {
             Until([&] { return stop.stop_requested() || app.Exists("Images/0003.jpg"); });
             if (!stop.stop_requested()) app.Set("SplitPdf", "3");
           }},
      {.helper = "QxImgTool",
       .prepare =
           [](const HelperFolder& app) {
             app.Write("Images/.keep", "");
             Save(app.Path("Images/0001.jpg"), Waves(400, 300));
             app.Set("MakeTiff", "1");
             return std::vector{
                 Tabbed({"Quillon", app.Path("Images"), app.Path("out.tif"), "MakeTiff", "maketiff", "lzw", "4", "1"})};
           },
       .target = "out.tif"},
      {.helper = "QxImgTool",
       .prepare =
           [](const HelperFolder& app) {
             app.Set("QxImgTool", "");
             return std::vector{Tabbed({"Quillon", "0", app.Path("out.pdf"), "QxImgTool", "bindpdf"}) +
                                "\t\t\tFalse\t300\tFalse"};
           },
       .target = "out.pdf",
       .whole = HasOnePage,
       .talk =
           [](const HelperFolder& app, const std::stop_token& stop) {
             app.Set("QxImgTool", app.Path("a.jpg"));
             Until([&] { return stop.stop_requested() || app.Get("QxImgTool").empty(); });
             if (!stop.stop_requested()) app.Set("QxImgTool", "end");
           }},
      {.helper = "TessaExifHandler",
       .prepare =
           [](const HelperFolder& app) {
             LayExifOut(app);
             app.Set("Exif", app.Path("b.jpg") + "|" + app.Path("out.jpg") + "|Tessa批量处理系列软件");
             return std::vector<std::string>{};
           },
       .target = "out.jpg"},
  };
  return kJobs;
}

Started Start(const HelperFolder& app, const Job& job, const std::vector<std::string>& parameters) {
  Started started{.helper = app.Start(job.helper, parameters)};
  if (!job.talk) return started;
  started.program = std::make_shared<std::jthread>([&](const std::stop_token& stop) { job.talk(app, stop); });
  return started;
}

Ran Finish(const HelperFolder& app, const Job& job, const Started& started) {
  constexpr std::size_t kLeast = 100;
  if (job.serves) {
    const bool done = Until([&] { return app.Exists(job.target) && app.Read(job.target).size() > kLeast; });
    Kill(app, started);
    return {.exit = done ? 0 : 1};
  }
  Ran ran = app.Wait(started.helper);
  if (started.program) started.program->join();
  return ran;
}

void Kill(const HelperFolder& app, const Started& started) {
  kill(started.helper, SIGKILL);
  app.Wait(started.helper);
  if (!started.program) return;
  started.program->request_stop();
  started.program->join();
}

StoreHolder::StoreHolder(const HelperFolder& app) {
  EXPECT_EQ(sqlite3_open(app.Path("settings.db").c_str(), &store_), SQLITE_OK);
  EXPECT_EQ(sqlite3_exec(store_, "BEGIN IMMEDIATE", nullptr, nullptr, nullptr), SQLITE_OK);
}

void StoreHolder::LetGo() {
  sqlite3_close(store_);
  store_ = nullptr;
}

}  // namespace quillon::helpers::testing
