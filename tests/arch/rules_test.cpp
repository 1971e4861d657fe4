// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
// Each rule is shown what it must refuse and what it must let pass.
#include "arch/rules.h"

#include <gtest/gtest.h>

namespace quillon::arch {
namespace {

constexpr const char* kHead =
    "// SPDX-FileCopyrightText: 2026 The Quillon developers\n// SPDX-License-Identifier: GPL-3.0-or-later\n";

using Rule = Breaches (*)(const Source&);

struct RuleCase {
  const char* path;
  std::string text;
};

void ExpectRefused(Rule rule, const std::vector<RuleCase>& cases) {
  for (const auto& [path, text] : cases) EXPECT_EQ(rule({path, text}).size(), 1u) << path << "\n" << text;
}

void ExpectPassed(Rule rule, const std::vector<RuleCase>& cases) {
  for (const auto& [path, text] : cases) EXPECT_EQ(rule({path, text}), Breaches()) << path << "\n" << text;
}

RuleCase Includes(const char* path, const std::string& name) {
  return {path, "#include " + (name.front() == '<' ? name : "\"" + name + "\"") + "\n"};
}

TEST(Rules, LayersPointOneWay) {
  ExpectRefused(CheckLayers, {
                                 Includes("src/base/a.cpp", "controls/control.h"),
                                 Includes("src/controls/a.h", "host/host.h"),
                                 Includes("src/host/a.cpp", "host/posix/posix_disk.h"),
                                 Includes("src/host/a.cpp", "imaging/image.h"),
                                 Includes("src/imaging/a.cpp", "tools/twins.h"),
                                 Includes("src/imaging/a.cpp", "host/posix/posix_disk.h"),
                                 Includes("src/tools/a.cpp", "job/windows/form1.h"),
                                 Includes("src/job/a.cpp", "host/posix/posix_disk.h"),
                                 Includes("src/job/a.cpp", "cli/runner.h"),
                                 Includes("src/job/a.cpp", "regions/regions.h"),
                                 Includes("src/regions/a.cpp", "parts/parts.h"),
                                 Includes("src/regions/a.cpp", "formats/output_tools.h"),
                                 Includes("src/formats/a.cpp", "smart/edges/edges.h"),
                                 Includes("src/smart/a.cpp", "print/strip_plan/strip_plan.h"),
                                 Includes("src/print/a.cpp", "shapes/circle/circle.h"),
                                 Includes("src/shapes/a.cpp", "parts/parts.h"),
                                 Includes("src/update/a.cpp", "ui/kit/text.h"),
                                 Includes("src/parts/a.cpp", "cli/runner.h"),
                                 Includes("src/regions/a.cpp", "host/posix/posix_disk.h"),
                                 Includes("src/cli/a.cpp", "ui/kit/text.h"),
                                 Includes("src/ui/kit/a.cpp", "host/host.h"),
                                 Includes("src/ui/kit/a.cpp", "ui/main/main_window.h"),
                                 Includes("src/ui/desktop/a.cpp", "job/program.h"),
                                 Includes("src/ui/a.cpp", "cli/runner.h"),
                                 Includes("src/ui/a.cpp", "app/main.h"),
                                 Includes("src/ui/a.cpp", "host/testing/test_host.h"),
                                 Includes("src/helpers/a/main.cpp", "job/program.h"),
                                 Includes("src/helpers/a/main.cpp", "ui/main/main_window.h"),
                                 Includes("src/base/a.cpp", "rect.h"),
                                 Includes("src/base/a.cpp", "../base/rect.h"),
                                 {"src/unknown/a.cpp", ""},
                             });
  ExpectPassed(CheckLayers, {
                                Includes("src/base/a.cpp", "base/rect.h"),
                                Includes("src/base/a.cpp", "<vector>"),
                                Includes("src/controls/a.h", "base/rect.h"),
                                Includes("src/host/posix/a.cpp", "host/host.h"),
                                Includes("src/host/testing/a.cpp", "host/posix/posix_disk.h"),
                                Includes("src/job/a.cpp", "imaging/services.h"),
                                Includes("src/smart/edges/a.cpp", "job/program.h"),
                                Includes("src/parts/a.h", "print/imposition/imposition.h"),
                                Includes("src/ui/kit/bind/a.cpp", "controls/control.h"),
                                Includes("src/ui/main/a.cpp", "ui/kit/text.h"),
                                Includes("src/ui/a.cpp", "host/posix/posix_disk.h"),
                                Includes("src/ui/a.cpp", "regions/lists/fmultcut.h"),
                                Includes("src/helpers/a/main.cpp", "ui/kit/text.h"),
                                Includes("src/parts/a.h", "regions/regions.h"),
                                Includes("src/cli/a.cpp", "parts/parts.h"),
                                Includes("src/app/a.cpp", "ui/main/start.h"),
                                Includes("tests/job/a.cpp", "host/testing/test_host.h"),
                            });
}

TEST(Rules, RoomsPointOneWay) {
  ExpectRefused(CheckRooms, {
                                Includes("src/host/files/a.cpp", "host/host.h"),
                                Includes("src/host/boxes.cpp", "host/posix/posix_disk.h"),
                                Includes("src/host/posix/a.cpp", "host/testing/test_host.h"),
                                Includes("src/imaging/types.h", "imaging/services.h"),
                                Includes("src/imaging/rows/a.cpp", "imaging/pixels/picture.h"),
                                Includes("src/imaging/rows/a.cpp", "imaging/prefetch/prefetcher.h"),
                                Includes("src/imaging/pixels/a.cpp", "imaging/services.h"),
                                Includes("src/imaging/pixels/a.cpp", "imaging/metadata/exif_block.h"),
                                Includes("src/imaging/jpeg/a.cpp", "imaging/codecs/encode.h"),
                                Includes("src/imaging/jpeg/a.cpp", "imaging/tiff/tiff_handle.h"),
                                Includes("src/imaging/png/a.cpp", "imaging/jpeg/jpeg_reader.h"),
                                Includes("src/imaging/png/a.cpp", "imaging/codecs/encode.h"),
                                Includes("src/imaging/measure/a.cpp", "imaging/codecs/open_picture.h"),
                                Includes("src/imaging/codecs/a.cpp", "imaging/crop/file_requests.h"),
                                Includes("src/imaging/crop/a.cpp", "imaging/services_parts.h"),
                                Includes("src/imaging/crop/a.cpp", "imaging/unknown/a.h"),
                                {"src/imaging/unknown/a.cpp", ""},
                                Includes("src/job/settings/a.h", "job/cut/cut_file.h"),
                                Includes("src/job/settings/a.cpp", "job/program.h"),
                                Includes("src/job/list/a.cpp", "job/program.h"),
                                Includes("src/job/list/a.cpp", "job/run/run_guard.h"),
                                Includes("src/job/run/a.h", "job/program.h"),
                                Includes("src/job/run/a.cpp", "job/windows/form1.h"),
                                Includes("src/job/cut/a.cpp", "job/windows/file_intake.h"),
                                Includes("src/regions/frame/a.h", "regions/lists/region_list.h"),
                                Includes("src/regions/lists/a.cpp", "regions/timed/fcuttime.h"),
                                Includes("src/regions/region.h", "regions/regions.h"),
                                Includes("src/job/cut/a.cpp", "job/unknown/a.h"),
                                {"src/job/unknown/a.cpp", ""},
                            });
  ExpectPassed(CheckRooms, {
                               Includes("src/host/files/a.cpp", "host/status.h"),
                               Includes("src/host/host.h", "host/files/files.h"),
                               Includes("src/host/testing/a.cpp", "host/posix/posix_disk.h"),
                               Includes("src/imaging/image.h", "imaging/types.h"),
                               Includes("src/imaging/limits.h", "imaging/types.h"),
                               Includes("src/imaging/pixels/a.cpp", "imaging/rows/lanczos.h"),
                               Includes("src/imaging/pixels/a.cpp", "imaging/pixels/picture.h"),
                               Includes("src/imaging/codecs/a.cpp", "imaging/jpeg/jpeg_reader.h"),
                               Includes("src/imaging/crop/a.cpp", "imaging/codecs/encode.h"),
                               Includes("src/imaging/services.cpp", "imaging/crop/file_requests.h"),
                               Includes("src/imaging/services.cpp", "imaging/services_parts.h"),
                               Includes("src/job/a.cpp", "imaging/services.h"),
                               Includes("src/job/list/a.h", "job/settings/shard.h"),
                               Includes("src/job/list/a.cpp", "job/work_files.h"),
                               Includes("src/job/run/a.cpp", "job/list/run_context.h"),
                               Includes("src/job/cut/a.cpp", "job/run/driver.h"),
                               Includes("src/job/cut/a.h", "job/program.h"),
                               Includes("src/job/windows/a.cpp", "job/program.h"),
                               Includes("src/job/windows/a.cpp", "job/cut/cut_file.h"),
                               Includes("src/regions/timed/a.cpp", "regions/lists/region_source.h"),
                               Includes("src/regions/frame/a.h", "regions/region.h"),
                               Includes("src/job/program.h", "job/windows/form1.h"),
                           });
}

TEST(Rules, HeadersOfOnePlatformStayWithIt) {
  ExpectRefused(CheckPlatform, {
                                   Includes("src/base/a.cpp", "<unistd.h>"),
                                   Includes("src/host/files/a.cpp", "<fcntl.h>"),
                                   Includes("src/host/a.h", "<sys/stat.h>"),
                                   Includes("src/imaging/jpeg/a.cpp", "<sys/mman.h>"),
                                   Includes("src/job/list/a.cpp", "<dirent.h>"),
                                   Includes("src/job/run/a.cpp", "<pthread.h>"),
                                   Includes("src/tools/a.cpp", "<linux/magic.h>"),
                                   Includes("src/cli/runner.cpp", "<signal.h>"),
                                   Includes("src/cli/report/a.cpp", "<poll.h>"),
                                   Includes("src/app/a.cpp", "<sys/wait.h>"),
                               });
  ExpectPassed(CheckPlatform, {
                                  Includes("src/host/posix/a.cpp", "<sys/stat.h>"),
                                  Includes("src/host/testing/a.cpp", "<sys/mount.h>"),
                                  Includes("src/helpers/runtime/a.cpp", "<sys/prctl.h>"),
                                  Includes("src/ui/main/a.cpp", "<unistd.h>"),
                                  Includes("src/cli/workers/worker.cpp", "<sys/wait.h>"),
                                  Includes("src/cli/stop_signals.cpp", "<poll.h>"),
                                  Includes("src/job/a.cpp", "<csignal>"),
                                  Includes("src/job/a.cpp", "<thread>"),
                                  Includes("tests/job/a.cpp", "<unistd.h>"),
                              });
}

TEST(Rules, LibrariesStayInTheFoldersThatWrapThem) {
  ExpectRefused(CheckLibraries, {
                                    Includes("src/job/a.cpp", "<QString>"),
                                    Includes("src/app/quillon_batch_main.cpp", "<QApplication>"),
                                    Includes("src/ui/a.cpp", "<vips/vips.h>"),
                                    Includes("src/job/a.cpp", "<vips/vips8>"),
                                    Includes("src/cli/a.cpp", "<jpeglib.h>"),
                                    Includes("src/host/a.cpp", "<sqlite3.h>"),
                                    Includes("src/job/a.cpp", "<nlohmann/json.hpp>"),
                                    Includes("src/ui/a.cpp", "<CLI/CLI.hpp>"),
                                    Includes("src/job/a.cpp", "<MediaInfo/MediaInfo.h>"),
                                    Includes("src/job/a.cpp", "<exiv2/exiv2.hpp>"),
                                    Includes("src/job/a.cpp", "<gtest/gtest.h>"),
                                });
  ExpectPassed(CheckLibraries, {
                                   Includes("src/ui/bind/a.h", "<QString>"),
                                   Includes("src/app/quillon_main.cpp", "<QApplication>"),
                                   Includes("src/imaging/a.cpp", "<vips/vips8>"),
                                   Includes("src/imaging/a.cpp", "<jpeglib.h>"),
                                   Includes("src/host/posix/a.cpp", "<sqlite3.h>"),
                                   Includes("src/cli/a.cpp", "<CLI/CLI.hpp>"),
                                   Includes("src/job/a.cpp", "<queue>"),
                                   Includes("tests/ui/a.cpp", "<QTest>"),
                               });
}

TEST(Rules, TheRealWorldIsWiredUpInSourcesAndDoublesServeTests) {
  ExpectRefused(CheckWiring, {
                                 Includes("src/ui/a.h", "host/posix/posix_disk.h"),
                                 Includes("src/cli/a.h", "host/posix/posix_disk.h"),
                                 Includes("src/app/a.cpp", "host/testing/test_host.h"),
                             });
  ExpectPassed(CheckWiring, {
                                Includes("src/ui/a.cpp", "host/posix/posix_disk.h"),
                                Includes("src/ui/a.cpp", "regions/lists/fmultcut.h"),
                                Includes("src/parts/a.h", "regions/regions.h"),
                                Includes("src/cli/a.cpp", "parts/parts.h"),
                                Includes("src/host/posix/a.h", "host/posix/posix_disk.h"),
                                Includes("src/host/testing/a.h", "host/testing/fake.h"),
                                Includes("tests/job/a.cpp", "host/testing/test_host.h"),
                            });
}

TEST(Rules, FilesAreWrittenInOnePlace) {
  const char* const refused[] = {
      "auto f = fopen(path, \"wb\");",
      "auto f = std::fopen(path.c_str(), \"r+\");",
      "auto f = fopen(path, \"a\");",
      "auto f = fopen(path,\n    \"w\");",
      "auto f = fopen(path, mode);",
      "std::ofstream out(path);",
      "std::fstream both(path);",
      "int f = open(path, O_CREAT, 0600);",
      "int f = ::open(path, O_WRONLY);",
      "::rename(a, b);",
      "std::rename(a, b);",
      "rename(a, b);",
      "unlink(path);",
      "::remove(path);",
      "remove(path.c_str);",
      "std::remove(path);",
      "std::filesystem::remove(path);",
      "fs::rename(a, b);",
      "std::filesystem::copy_file(a, b);",
      "std::filesystem::create_directories(a);",
      "mkdir(path, 0700);",
      "mkstemp(name);",
      "QSaveFile file(name);",
      "QTemporaryFile file;",
      "QFile::remove(name);",
      "file.open(QIODevice::WriteOnly);",
      "QDir().mkpath(name);",
      "vips_jpegsave(image, path, nullptr);",
      "vips_image_write_to_file(image, path, nullptr);",
      "image.write_to_file(path);",
      "image.pngsave(path);",
      "jpeg_stdio_dest(&compress, file);",
  };
  for (const char* line : refused) ExpectRefused(CheckWrites, {{"src/imaging/a.cpp", line}});
  const char* const passed[] = {
      "auto f = std::fopen(path.c_str(), \"rb\");",
      "std::ifstream in(path);",
      "int f = open(path, O_RDONLY | O_CLOEXEC);",
      "v.erase(std::remove(v.begin(), v.end(), 0), v.end());",
      "list.remove(row);",
      "list->remove_if(test);",
      "text.truncate(5);",
      "// rename(a, b) is done by the host",
      "const char* k = \"unlink(path)\";",
      "image.pngsave_target(target);",
      "vips_jpegsave_buffer(image, &data, &size, nullptr);",
      "image.write_to_target(\".png\", target);",
      "host.files.Save(path, content);",
      "std::filesystem::path(a).lexically_normal();",
      "RenameRow(a);",
  };
  for (const char* line : passed) ExpectPassed(CheckWrites, {{"src/imaging/a.cpp", line}});
  ExpectPassed(CheckWrites,
               {{"src/host/posix/a.cpp", "::rename(a, b);"}, {"tests/job/a.cpp", "std::ofstream out(p);"}});
}

TEST(Rules, WorkFilesAreNamedInOnePlace) {
  const char* const refused[] = {
      "const std::string zoomed = program.AppPath(\"Tmp.jpg\");",
      "auto cut = file.WorkFile(\"Tmp2\");",
      "auto copy = AppPath(\"tmp.\" + extension);",
      "auto page = AppPath(\"Canvas.bmp\");",
      "constexpr const char* kFile = \"OmitSubfolds.dat\";",
  };
  for (const char* line : refused) {
    ExpectRefused(CheckWorkFiles, {{"src/job/cut/a.cpp", line}, {"src/formats/a.cpp", line}});
    ExpectPassed(CheckWorkFiles,
                 {{"src/job/work_files.h", line}, {"src/tools/a.cpp", line}, {"tests/job/a.cpp", line}});
  }
  ExpectPassed(CheckWorkFiles, {{"src/job/cut/a.cpp", "auto page = AppPath(work_files::kCanvas);  // \"Tmp.jpg\""},
                                {"src/job/cut/a.cpp", "const char* k = \"TmpFolder\";"}});
}

std::string LinesOf(int count) {
  std::string text;
  for (int i = 0; i < count; ++i) text += "\n";
  return text;
}

std::string FunctionOf(int lines) { return "void F() {\n" + LinesOf(lines - 2) + "}\n"; }

TEST(Rules, FilesAndFunctionsStaySmall) {
  ExpectRefused(CheckSizes, {
                                {"src/job/a.cpp", LinesOf(701)},
                                {"src/job/a.h", LinesOf(301)},
                                {"src/app/quillon_main.cpp", LinesOf(61)},
                                {"src/helpers/cmd/main.cpp", LinesOf(151)},
                                {"tests/job/a_test.cpp", LinesOf(701)},
                                {"src/job/a.cpp", FunctionOf(101)},
                                {"src/job/a.h", "class A {\n" + FunctionOf(101) + "};\n"},
                            });
  ExpectPassed(CheckSizes, {
                               {"src/job/a.cpp", LinesOf(700)},
                               {"src/job/a.h", LinesOf(300)},
                               {"src/app/quillon_main.cpp", LinesOf(60)},
                               {"src/helpers/cmd/main.cpp", LinesOf(150)},
                               {"src/job/a.cpp", FunctionOf(100) + FunctionOf(100)},
                               {"docs/a.md", LinesOf(9000)},
                           });
}

TEST(Rules, EverySourceNamesOwnerAndLicence) {
  const std::string head = kHead;
  std::string hashed = head;
  for (std::size_t at = 0; (at = hashed.find("//", at)) != std::string::npos;) hashed.replace(at, 2, "#");
  ExpectRefused(CheckLicence, {
                                  {"src/a/a.cpp", "#include <vector>\n"},
                                  {"src/a/a.h", "\n" + head},
                                  {"src/a/a.h", "// SPDX-License-Identifier: GPL-3.0-or-later\n"},
                                  {"cmake/a.cmake", head},
                                  {"src/a/CMakeLists.txt", "add_library(a)\n"},
                                  {"bench/run", "#!/usr/bin/env bash\nset -e\n"},
                                  {"scripts/lib.sh", "set -e\n"},
                              });
  ExpectPassed(CheckLicence, {
                                 {"src/a/a.cpp", head + "int a;\n"},
                                 {"cmake/a.cmake", hashed},
                                 {"src/a/CMakeLists.txt", hashed},
                                 {"scripts/run", "#!/usr/bin/env bash\n" + hashed},
                                 {"docs/a.md", "# A\n"},
                             });
}

TEST(Rules, TextIsCleanAndFinished) {
  const std::string marks[] = {std::string("TO") + "DO", std::string("FIX") + "ME", std::string("XX") + "X",
                               std::string("HA") + "CK"};
  for (const std::string& mark : marks) ExpectRefused(CheckText, {{"src/a/a.cpp", "// " + mark + ": later\n"}});
  ExpectRefused(CheckText, {
                               {"src/a/a.cpp", "\tint a;\n"},
                               {"src/a/a.cpp", "int a; \n"},
                               {"src/a/a.cpp", "int a;\r\n"},
                               {"src/a/a.cpp", "int a;"},
                               {"src/a/a.cpp", "int a;\n\n"},
                               {"docs/a.md", "a\n\n"},
                           });
  ExpectPassed(CheckText, {
                              {"src/a/a.cpp", "int a;\n\nint b;\n"},
                              {"src/a/a.cpp", std::string("char name[] = \"quillon-XX") + "XXXX\";\n"},
                              {"src/a/a.cpp", "int hackneyed;\n"},
                              {"LICENSE", "\t \n\n"},
                          });
}

TEST(Rules, NamesFollowTheHouse) {
  ExpectRefused(CheckNames, {
                                {"src/a/MyFile.cpp", ""},
                                {"src/a/my-file.h", "#pragma once\n"},
                                {"src/a/a.h", "int a;\n"},
                                {"src/a/a.h", "#pragma once\nusing namespace std;\n"},
                                {"tests/a/a.cpp", "int a;\nTEST(A, B) {}\n"},
                            });
  ExpectPassed(CheckNames, {
                               {"src/a/my_file2.cpp", "using namespace std;\n"},
                               {"src/a/a.h", "#pragma once\n// using namespace std;\n"},
                               {"tests/a/a_test.cpp", "int a;\nTEST(A, B) {}\n"},
                               {"docs/Read Me.md", ""},
                           });
}

TEST(Rules, HeadersOfHeavyLibrariesStayPrivate) {
  const Source heavy = {"src/imaging/pixels.h", "#include <vips/vips8>\n"};
  const Source inside = {"src/imaging/a.cpp", "#include \"imaging/pixels.h\"\n"};
  const Source room = {"src/imaging/codecs/a.cpp", "#include \"imaging/pixels.h\"\n"};
  const Source outside = {"src/job/a.cpp", "#include \"imaging/pixels.h\"\n"};
  const Source light = {"src/imaging/image.h", "#include <vector>\n"};
  const Source user = {"src/job/b.cpp", "#include \"imaging/image.h\"\n"};
  EXPECT_EQ(CheckHeavyHeaders({heavy, inside, room, light, user}), Breaches());
  const Breaches found = CheckHeavyHeaders({heavy, outside});
  ASSERT_EQ(found.size(), 1u);
  EXPECT_EQ(found[0].path, "src/job/a.cpp");
  EXPECT_EQ(found[0].line, 1);
}

std::vector<Source> FilesOf(const std::string& folder, int count, int lines) {
  std::string text;
  for (int line = 0; line < lines; ++line) text += "int a;\n";
  std::vector<Source> files;
  for (int i = 0; i < count; ++i) files.push_back({folder + "/f" + std::to_string(i) + ".cpp", text});
  return files;
}

std::vector<Source> operator+(std::vector<Source> files, const std::vector<Source>& more) {
  files.insert(files.end(), more.begin(), more.end());
  return files;
}

TEST(Rules, FewFilesAreTiny) {
  const std::vector<Source> eight = FilesOf("src/tiny", 8, 25) + FilesOf("src/a", 92, 26);
  EXPECT_EQ(CheckTinyFiles(eight), Breaches());
  EXPECT_EQ(CheckTinyFiles(eight + FilesOf("tests/tiny", 1, 5)), Breaches()) << "tests may be short";
  EXPECT_EQ(CheckTinyFiles(eight + std::vector<Source>{{"src/CMakeLists.txt", "a\n"}}), Breaches());
  const Breaches found = CheckTinyFiles(FilesOf("src/tiny", 9, 25) + FilesOf("src/a", 91, 26));
  ASSERT_EQ(found.size(), 1u);
  EXPECT_NE(found[0].what.find("9 of 100 files"), std::string::npos) << found[0];
  EXPECT_NE(found[0].what.find("src/tiny/f8.cpp"), std::string::npos) << found[0];
}

TEST(Rules, FoldersAreNotCrowded) {
  EXPECT_EQ(CheckFolders(FilesOf("src/a", 40, 1) + FilesOf("src/a/b", 40, 1) + FilesOf("tests/a", 41, 1)), Breaches());
  const Breaches found = CheckFolders(FilesOf("src/a", 40, 1) + FilesOf("src/a/b", 41, 1));
  ASSERT_EQ(found.size(), 1u);
  EXPECT_EQ(found[0].path, "src/a/b");
}

}  // namespace
}  // namespace quillon::arch
