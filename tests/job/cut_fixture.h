// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdlib>
#include <functional>
#include <string>
#include <utility>
#include <vector>

#include "job/list/file_list.h"
#include "job/program_fixture.h"

namespace quillon::job {

struct Pixel {
  int red = 0;
  int green = 0;
  int blue = 0;
  bool operator==(const Pixel&) const = default;
};

inline void PrintTo(const Pixel& pixel, std::ostream* out) {
  *out << "(" << pixel.red << "," << pixel.green << "," << pixel.blue << ")";
}

inline constexpr Pixel kWhitePixel{255, 255, 255};

// A decoded picture.
struct Picture {
  int width = 0;
  int height = 0;
  std::vector<Pixel> pixels;

  const Pixel& At(int x, int y) const {
    return pixels.at(static_cast<std::size_t>(y) * static_cast<std::size_t>(width) + static_cast<std::size_t>(x));
  }
};

using Paint = std::function<Pixel(int x, int y)>;

// Smooth, and different at every place, so that a pixel identifies its place in the source.
inline Pixel Slope(int x, int y) { return {(x * 2) % 256, (y * 2) % 256, (x + y) % 256}; }

inline Picture Painted(int width, int height, const Paint& paint) {
  Picture picture{width, height, {}};
  for (int y = 0; y < height; ++y) {
    for (int x = 0; x < width; ++x) picture.pixels.push_back(paint(x, y));
  }
  return picture;
}

// The largest difference of any sample, 1000 when the sizes differ.
inline int Difference(const Picture& a, const Picture& b) {
  if (a.width != b.width || a.height != b.height) return 1000;
  int most = 0;
  for (std::size_t i = 0; i < a.pixels.size(); ++i) {
    most = std::max({most, std::abs(a.pixels[i].red - b.pixels[i].red), std::abs(a.pixels[i].green - b.pixels[i].green),
                     std::abs(a.pixels[i].blue - b.pixels[i].blue)});
  }
  return most;
}

// The bytes of a 24-bit bitmap.
inline std::string BitmapBytes(const Picture& picture) {
  const int stride = (picture.width * 3 + 3) / 4 * 4;
  std::string bytes;
  const auto number = [&](std::uint32_t value, int length) {
    for (int i = 0; i < length; ++i) bytes.push_back(static_cast<char>((value >> (8 * i)) & 0xFF));
  };
  const auto size = static_cast<std::uint32_t>(54 + stride * picture.height);
  bytes += "BM";
  number(size, 4);
  number(0, 4);
  number(54, 4);
  number(40, 4);
  number(static_cast<std::uint32_t>(picture.width), 4);
  number(static_cast<std::uint32_t>(picture.height), 4);
  number(1, 2);
  number(24, 2);
  for (int i = 0; i < 6; ++i) number(0, 4);
  for (int y = picture.height - 1; y >= 0; --y) {
    for (int x = 0; x < picture.width; ++x) {
      const Pixel& pixel = picture.At(x, y);
      for (const int sample : {pixel.blue, pixel.green, pixel.red}) bytes.push_back(static_cast<char>(sample));
    }
    bytes.append(static_cast<std::size_t>(stride - picture.width * 3), '\0');
  }
  return bytes;
}

// Records everything that a run reports.
class Recorder final : public RunObserver {
 public:
  void RunStarted(std::size_t planned) override { started.push_back(planned); }
  void RunPlanned(std::size_t number) override { counted.push_back(number); }
  void FileBegun(const std::string& source) override { begun.push_back(source); }
  void FileDone(const FileResult& file) override {
    done.push_back(file);
    if (onFileDone) onFileDone(file);
  }
  void FileLost(const FileResult& file, const std::string&) override { lost.push_back(file); }
  void StaleOutputLeft(const std::string& path) override { staleOutputsLeft.push_back(path); }
  void RunEnded(const RunTotals& totals) override { ended.push_back(totals); }
  void FileNotListed(const std::string& source, const std::string& why) override {
    notListed.emplace_back(source, why);
  }
  void FileFilteredOut(const std::string& source, const std::string& why) override {
    filteredOut.emplace_back(source, why);
  }
  void FolderNoted(const std::string& folder, const std::string& what) override { noted.emplace_back(folder, what); }

  std::vector<std::size_t> started;
  std::vector<std::size_t> counted;
  std::vector<std::string> begun;
  std::vector<FileResult> done;
  std::vector<FileResult> lost;
  std::vector<std::string> staleOutputsLeft;
  std::vector<RunTotals> ended;
  std::vector<std::pair<std::string, std::string>> notListed;
  std::vector<std::pair<std::string, std::string>> filteredOut;
  std::vector<std::pair<std::string, std::string>> noted;
  std::function<void(const FileResult&)> onFileDone;
};

// A started program with pictures, an output folder and a percent cut of nothing.
class CutTest : public StartedTest {
 protected:
  void SetUp() override {
    StartedTest::SetUp();
    program.observer = &recorder;
    outFolder = world.folder.Path("out");
    ASSERT_TRUE(world.files.MakeFolders(outFolder));
    Put("LOutDir", outFolder);
    Put("ChCutA", "0");
    Margins(0, 0, 0, 0);
  }

  // In percent.
  void Margins(int left, int top, int right, int bottom) {
    const int values[] = {left, top, right, bottom};
    for (std::size_t i = 0; i < 4; ++i) form.TCutValue[i].SetNumber(values[i]);
  }
  // Loads the advanced options and puts a text into one of them.
  void Option(const std::string& name, const std::string& text) {
    options.Load();
    Put("FBaseOpt." + name, text);
  }

  std::string In(const std::string& name) const { return world.folder.Path("in/" + name); }
  std::string Out(const std::string& name) const { return outFolder + "/" + name; }

  // A picture under a name that may hold folders, in the format of its extension.
  std::string Make(const std::string& name, const Picture& picture, int dpi = 0) {
    const std::string bitmap = world.folder.Write("made.bmp", BitmapBytes(picture));
    const std::string path = world.folder.Write("in/" + name, "");
    imaging::Image image;
    EXPECT_TRUE(program.images.LoadImageFromFile(bitmap, image));
    program.images.SetImageResolution(image, dpi);
    const std::size_t point = name.rfind('.');
    const host::Status saved = program.images.SaveByEncoder(
        image, path, imaging::EncoderFor(point == std::string::npos ? "" : name.substr(point + 1)), 98);
    EXPECT_TRUE(saved) << saved.Why();
    return path;
  }
  std::string Make(const std::string& name, int width = 100, int height = 80) {
    return Make(name, Painted(width, height, Slope));
  }

  Picture Read(const std::string& path) {
    imaging::Services::Preview preview;
    const host::Status read = program.images.LoadPreview(path, {6000, 6000}, preview);
    EXPECT_TRUE(read) << path << ": " << read.Why();
    Picture picture{preview.size.width, preview.size.height, {}};
    for (std::size_t i = 0; i + 2 < preview.rgb.size(); i += 3) {
      picture.pixels.push_back({preview.rgb[i], preview.rgb[i + 1], preview.rgb[i + 2]});
    }
    return picture;
  }
  base::Size SizeOf(const std::string& path) {
    imaging::ImageFacts facts;
    const host::Status measured = program.images.ImageInfo(path, facts);
    EXPECT_TRUE(measured) << path << ": " << measured.Why();
    return {facts.width, facts.height};
  }
  int DpiOf(const std::string& path) {
    imaging::ImageFacts facts;
    EXPECT_TRUE(program.images.ImageInfo(path, facts, imaging::Want::SizeAndDpi)) << path;
    return facts.dpi;
  }

  void List(const std::vector<std::string>& paths) { program.Intake().Admit(paths); }
  // The names in the list, from the first row on.
  std::vector<std::string> ListedNames() const {
    std::vector<std::string> names;
    for (std::size_t row = 0; row < program.files.RowCount(); ++row) {
      names.push_back(program.files.Row(row).name + "." + program.files.Row(row).extension);
    }
    return names;
  }
  void Cut() { Click("menuNormalCut"); }
  // Returns the reasons of all rows, for messages of failed tests.
  std::string Whys() const {
    std::string all;
    for (const auto& [path, why] : recorder.notListed) all.append(path).append(": ").append(why).append("; ");
    for (std::size_t row = 0; row < program.files.RowCount(); ++row) all += program.files.Row(row).why + "; ";
    return all;
  }
  void Cut(const std::vector<std::string>& paths) {
    List(paths);
    Cut();
  }
  // All zero when there was no run.
  RunTotals Totals() const { return recorder.ended.empty() ? RunTotals() : recorder.ended.back(); }
  std::string Why(std::size_t row) const { return program.files.Row(row - 1).why; }
  // The files of the last run, if it counted them before it ended: a run over a few files may be quicker than its
  // count.
  void ExpectCounted(std::size_t files) {
    for (const std::size_t counted : recorder.counted) EXPECT_EQ(counted, files);
    recorder.counted.clear();
  }
  // The names below the output folder that no draft or copy was left among.
  std::vector<std::string> OutNames() const { return world.folder.Names("out"); }

  Recorder recorder;
  std::string outFolder;
};

}  // namespace quillon::job
