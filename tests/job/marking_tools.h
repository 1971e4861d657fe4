// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <filesystem>
#include <fstream>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "job/program.h"

namespace quillon::job {

// Appends a mark to each picture that it handles, so that an output shows what was done to it, in which order and how
// often.
class MarkingTools final : public OutputTools {
 public:
  host::Status ToCmyk(const std::string& file) override { return Mark(file, "[cmyk]", cmykStatus); }
  host::Status CopyExif(const std::string& source, const std::string& target) override {
    return Mark(target, "[exif " + source + "]", exifStatus);
  }
  host::Status ToPdf(const std::string& picture, const std::string& pdf) override {
    ++pdfs;
    if (pdfs == failingPdf) return {host::Problem::Other, "pdf 没有生成"};
    std::filesystem::copy_file(picture, pdf);
    return Mark(pdf, "[pdf]", {});
  }

  // What a picture ends with that had both.
  static std::string Marks(const std::string& exifSource) { return "[cmyk][exif " + exifSource + "]"; }

  host::Status cmykStatus;
  host::Status exifStatus;
  int pdfs = 0;
  int failingPdf = 0;  // its number

 private:
  static host::Status Mark(const std::string& file, const std::string& mark, const host::Status& status) {
    if (status) std::ofstream(file, std::ios::app | std::ios::binary) << mark;
    return status;
  }
};

// The profiles of a conversion to CMYK, as the system has them.
inline void LayOutProfiles(const Program& program) {
  std::filesystem::create_directories(program.AppPath(kColorConfigs));
  for (const auto& [from, to] : {std::pair("srgb.icc", "sRGB.icc"), std::pair("default_cmyk.icc", "Default.icm")}) {
    std::filesystem::copy_file(std::string("/usr/share/color/icc/ghostscript/") + from,
                               program.AppPath(std::string(kColorConfigs) + "/" + to),
                               std::filesystem::copy_options::overwrite_existing);
  }
}

// How often a text holds another.
inline int CountOf(std::string_view text, std::string_view part) {
  int count = 0;
  for (std::size_t at = text.find(part); at != std::string_view::npos; at = text.find(part, at + part.size())) ++count;
  return count;
}

}  // namespace quillon::job
