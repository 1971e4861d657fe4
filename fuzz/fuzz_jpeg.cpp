// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
//
// Any bytes as a JPEG file: the cut returns a status. If it succeeds, the result has a complete head and the end
// marker, and its EXIF block can be cut again. The first bytes choose rectangle, quality and the rest.
#include <cstdint>
#include <cstdio>
#include <filesystem>
#include <string>

#include <unistd.h>

#include "fuzz_pictures.h"
#include "imaging/jpeg/jpeg_cut.h"
#include "imaging/jpeg/jpeg_head.h"
#include "imaging/metadata/exif_block.h"

namespace imaging = quillon::imaging;
using quillon::fuzz::Require;

namespace {

// The path of the one file that every input is written to.
const std::string& InputPath() {
  static const std::string path =
      (std::filesystem::temp_directory_path() / ("fuzz_jpeg-" + std::to_string(getpid()) + ".jpg")).string();
  return path;
}

imaging::Limits JpegLimits() {
  imaging::Limits limits;
  limits.pixels = 4'000'000;
  limits.memory = 64 << 20;
  return limits;
}

void CutFile(const std::uint8_t* choice, const std::string& bytes) {
  std::FILE* file = std::fopen(InputPath().c_str(), "wb");
  Require(file && std::fwrite(bytes.data(), 1, bytes.size(), file) == bytes.size());
  std::fclose(file);
  const quillon::base::Rect rect = {choice[0] - 64, choice[1] - 64, choice[2] + 1, choice[3] + 1};
  const imaging::Exif exif = choice[4] & 1 ? imaging::Exif::Keep : imaging::Exif::Drop;
  std::string result;
  const imaging::Status status = imaging::CutJpeg(InputPath(), rect, choice[5] % 101, choice[4] & 2 ? 300 : 0, exif,
                                                  JpegLimits(), [&](const void* data, std::size_t size) {
                                                    result.append(static_cast<const char*>(data), size);
                                                    return imaging::Status::Ok();
                                                  });
  Require(status || !status.Why().empty());
  if (!status) return;
  imaging::JpegHead head;
  Require(imaging::ParseJpegHead(result, head) == imaging::HeadState::Complete);
  Require(result.ends_with("\xFF\xD9"));
  const std::string again = imaging::CutExif(head.exif, {7, 7}, 96);
  Require(again.size() <= head.exif.size());
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  constexpr std::size_t kChoice = 6;
  if (size < kChoice) return 0;
  const std::string bytes(reinterpret_cast<const char*>(data) + kChoice, size - kChoice);
  CutFile(data, bytes);
  imaging::ReadExif(bytes);
  imaging::CutExif(bytes, {640, 480}, data[4] & 2 ? 300 : 0);
  return 0;
}
