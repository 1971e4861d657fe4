// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include <gtest/gtest.h>

#include <string>

#include "host/testing/test_host.h"
#include "imaging/md5.h"
#include "imaging/output_name.h"
#include "imaging/services.h"
#include "imaging/short_path.h"

namespace quillon::imaging {
namespace {

TEST(OutputName, FollowsTheRules) {
  host::testing::TestHost world;
  const std::string out = world.folder.Path("out");
  struct Case {
    std::string source;
    std::string folder;
    KeepFolders keep;
    Overwrite over;
    std::string type;
    ExtensionCase wanted;
    std::string expected;
  };
  const auto no = KeepFolders::No;
  const auto yes = KeepFolders::Yes;
  const auto fresh = Overwrite::No;
  const auto over = Overwrite::Yes;
  const auto as = ExtensionCase::Keep;
  const auto upper = ExtensionCase::Upper;
  const auto lower = ExtensionCase::Lower;
  const Case cases[] = {
      {"/in/shots/a.jpg", out, no, fresh, "png", as, out + "/shots.png"},
      {"/in/shots/b.x.jpg", out, no, fresh, "png", as, out + "/shots.png"},
      {"/in/shots/a.jpg", out, no, fresh, "png", upper, out + "/shots.PNG"},
      {"/in/shots/a.jpg", out, no, fresh, "PnG", lower, out + "/shots.png"},
      {"/in/shots/a.jpg", out, yes, fresh, "tif", as, out + "/shots/shots.tif"},
      {"/in/shots/a.jpg", "/", no, fresh, "tif", as, "/shots.tif"},
      {"/in/shots.v2/a.jpg", out, no, fresh, "tif", as, out + "/shots.v2.tif"},
      {"/in/shots/a.psd", out, no, fresh, "psd", as, out + "/shots.jpg"},
      {"/in/shots/a.b.jpg", out, no, over, "png", as, "/in/shots/a.b.jpg"},
      {"/in/shots/a.jpg", out, yes, over, "png", upper, "/in/shots/a.JPG"},
      {"/in/shots/a.JPG", out, no, over, "png", lower, "/in/shots/a.jpg"},
      {"/in/shots/a.psd", out, no, over, "png", as, "/in/shots/a.jpg"},
      {"/in/shots/a.PSD", out, no, over, "png", as, "/in/shots/a.JPG"},
      {"/in/shots/a.psd", out, no, over, "png", upper, "/in/shots/a.JPG"},
      {"/in/a.psd.d/b.jpg", out, no, over, "png", as, "/in/a.psd.d/b.jpg"},
  };
  for (const Case& c : cases) {
    EXPECT_EQ(MakeOutputName(world.files, c.source, c.folder, c.keep, c.over, c.type, c.wanted), c.expected)
        << c.source;
  }
}

TEST(OutputName, MakesTheFolderItKeeps) {
  host::testing::TestHost world;
  const std::string out = world.folder.Path("out");
  MakeOutputName(world.files, "/in/shots/a.jpg", out, KeepFolders::No, Overwrite::No, "jpg", ExtensionCase::Keep);
  EXPECT_FALSE(world.folder.Exists("out"));
  MakeOutputName(world.files, "/in/shots/a.jpg", out, KeepFolders::Yes, Overwrite::No, "jpg", ExtensionCase::Keep);
  EXPECT_TRUE(world.files.IsFolder(out + "/shots"));
}

TEST(OutputName, CasesExtensions) {
  EXPECT_EQ(CasedExtension("Jpg", ExtensionCase::Keep), "Jpg");
  EXPECT_EQ(CasedExtension("Jpg", ExtensionCase::Upper), "JPG");
  EXPECT_EQ(CasedExtension("Jpg", ExtensionCase::Lower), "jpg");
}

TEST(EncoderFor, KnowsTheExtensions) {
  struct Case {
    const char* extension;
    Encoder encoder;
  };
  const Case cases[] = {{"jpg", Encoder::Jpeg},  {"JPEG", Encoder::Jpeg}, {"jpe", Encoder::Jpeg},
                        {"jfif", Encoder::Jpeg}, {"png", Encoder::Png},   {"PNG", Encoder::Png},
                        {"gif", Encoder::Gif},   {"tif", Encoder::Tiff},  {"Tiff", Encoder::Tiff},
                        {"bmp", Encoder::Bmp},   {"dib", Encoder::Bmp},   {"psd", Encoder::Jpeg},
                        {"", Encoder::Jpeg}};
  for (const Case& c : cases) EXPECT_EQ(EncoderFor(c.extension), c.encoder) << c.extension;
}

TEST(ShortName, MakesEightAndThree) {
  struct Case {
    const char* name;
    const char* expected;
  };
  const Case cases[] = {
      {"Tiff.tiff", "Tiff~1.tif"},
      {"Tiff.tif", "Tiff.tif"},
      {"12345678.jpg", "12345678.jpg"},
      {"123456789.jpg", "123456~1.jpg"},
      {"a b.jpg", "ab~1.jpg"},
      {"a.b.jpg", "ab~1.jpg"},
      {"a+b.jpg", "a_b~1.jpg"},
      {"[1].png", "_1_~1.png"},
      {"name", "name"},
      {"longername", "longer~1"},
      {".profile", "profil~1"},
      {"照片.jpeg", "照片~1.jpe"},
      {"一二三四五六七八.jpg", "一二三四五六七八.jpg"},
      {"一二三四五六七八九.jpg", "一二三四五六~1.jpg"},
  };
  for (const Case& c : cases) EXPECT_EQ(ShortName(c.name), c.expected);
  EXPECT_EQ(ShortPath("/a long folder/Tiff.tiff"), "/a long folder/Tiff~1.tif");
  EXPECT_EQ(ShortPath("Tiff.tiff"), "Tiff~1.tif");
  EXPECT_EQ(ShortPath("/a/Tiff.tiff", 2), "/a/Tiff~2.tif");
  EXPECT_EQ(ShortPath("/a/Tiff.tif", 2), "/a/Tiff.tif");
}

TEST(Md5, OfFiles) {
  host::testing::TempFolder folder;
  EXPECT_EQ(Md5OfFile(folder.Write("empty", "")), "d41d8cd98f00b204e9800998ecf8427e");
  EXPECT_EQ(Md5OfFile(folder.Write("abc", "abc")), "900150983cd24fb0d6963f7d28e17f72");
  // Longer than one block, and ending inside one.
  EXPECT_EQ(Md5OfFile(folder.Write("long", std::string(100000, 'a'))), "1af6d6f2f682f76f80e606aeaaee1680");
  EXPECT_EQ(Md5OfFile(folder.Path("missing")), "");
  EXPECT_EQ(Md5OfFile(folder.Path()), "");
}

}  // namespace
}  // namespace quillon::imaging
