// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "helpers/media_info/media_info_report.h"

#include <unistd.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <cstdint>
#include <exception>
#include <limits>
#include <optional>
#include <string>
#include <vector>

#include <MediaInfo/MediaInfo.h>

#include "host/posix/repeat.h"

namespace quillon::helpers {
namespace {

using namespace std::string_view_literals;
using host::Problem;
using host::Status;
using host::posix::Repeat;

constexpr std::size_t kBlock = std::size_t{32} * 1024;
constexpr std::size_t kAllDone = 8;  // bit of Open_Buffer_Continue's result: it needs no more bytes
constexpr int kSeeksMax = 1000;      // ends a file whose offsets lead in circles
constexpr std::uint64_t kStay = std::numeric_limits<std::uint64_t>::max();

// Returns MediaInfo's name of the parser for the kind of file; with an empty name it tries all of them.
const wchar_t* ParserFor(std::string_view begin) {
  if (begin.starts_with("\xFF\xD8\xFF"sv)) return L"Jpeg";
  if (begin.starts_with("\x89PNG"sv)) return L"Png";
  if (begin.starts_with("GIF8"sv)) return L"Gif";
  if (begin.starts_with("BM"sv)) return L"Bmp";
  if (begin.starts_with("II*\0"sv) || begin.starts_with("MM\0*"sv)) return L"Tiff";
  return L"";
}

// Returns the number in the text between label and "pixels". Searches from position at, and moves it after the number.
std::optional<int> NumberAfter(std::wstring_view report, std::wstring_view label, std::size_t& at) {
  const std::size_t from = report.find(label, at);
  if (from == std::wstring_view::npos) return std::nullopt;
  const std::size_t to = report.find(L"pixels", from);
  if (to == std::wstring_view::npos) return std::nullopt;
  at = to;
  std::int64_t value = 0;
  bool any = false;
  for (const wchar_t c : report.substr(from + label.size(), to - from - label.size())) {
    if (c == L' ' || c == L':' || c == L'\u00A0' || c == L'\u202F' || c == L'\t') continue;
    if (c < L'0' || c > L'9') return std::nullopt;
    value = value * 10 + (c - L'0');
    any = true;
    if (value > std::numeric_limits<int>::max()) return std::nullopt;
  }
  if (!any) return std::nullopt;
  return static_cast<int>(value);
}

}  // namespace

bool SizeFromReport(std::wstring_view report, base::Size& size) {
  std::size_t at = 0;
  const std::optional<int> width = NumberAfter(report, L"Width", at);
  if (!width) return false;
  const std::optional<int> height = NumberAfter(report, L"Height", at);
  if (!height) return false;
  size = {*width, *height};
  return true;
}

struct MediaInfoReport::Parts {
  MediaInfoLib::MediaInfo info;
  std::wstring parser;
  std::vector<unsigned char> block = std::vector<unsigned char>(kBlock);

  // MediaInfo does not recognise every kind by itself if it gets a file in blocks.
  void ChooseParser(int file) {
    std::array<char, 8> begin{};
    const ssize_t count = Repeat([&] { return pread(file, begin.data(), begin.size(), 0); });
    const std::wstring wanted = ParserFor({begin.data(), static_cast<std::size_t>(std::max<ssize_t>(count, 0))});
    if (wanted == parser) return;
    parser = wanted;
    info.Option(L"File_ForceParser", parser);
  }

  // Passes bytes of the file on until MediaInfo has enough, from the positions that it asks for.
  Status Feed(int file) {
    ChooseParser(file);
    const off_t length = lseek(file, 0, SEEK_END);
    if (length < 0) return Status::FromErrno(errno);
    info.Open_Buffer_Init(static_cast<std::uint64_t>(length), 0);
    off_t at = 0;
    for (int seeks = 0;;) {
      const ssize_t count = Repeat([&] { return pread(file, block.data(), block.size(), at); });
      if (count < 0) return Status::FromErrno(static_cast<int>(-count));
      if (count == 0) break;
      at += count;
      if (info.Open_Buffer_Continue(block.data(), static_cast<std::size_t>(count)) & kAllDone) break;
      const std::uint64_t go = info.Open_Buffer_Continue_GoTo_Get();
      if (go == kStay) continue;
      if (++seeks > kSeeksMax) break;
      at = static_cast<off_t>(go);
      info.Open_Buffer_Init(static_cast<std::uint64_t>(length), go);
    }
    info.Open_Buffer_Finalize();
    return Status::Ok();
  }
};

MediaInfoReport::MediaInfoReport() : parts_(std::make_unique<Parts>()) {
  parts_->info.Option(L"File_TestContinuousFileNames", L"0");
  parts_->info.Option(L"Complete", L"");
}

MediaInfoReport::~MediaInfoReport() = default;

Status MediaInfoReport::Measure(int file, base::Size& size) {
  std::wstring report;
  try {
    const Status fed = parts_->Feed(file);
    report = parts_->info.Inform();
    parts_->info.Close();
    if (!fed) return fed;
  } catch (const std::exception&) {
    return {Problem::Damaged, "无法读取图片的尺寸"};
  }
  base::Size found;
  if (!SizeFromReport(report, found)) return {Problem::Unsupported, "无法读取图片的尺寸"};
  if (found.Empty()) return {Problem::Damaged, "图片的尺寸为零"};
  size = found;
  return Status::Ok();
}

}  // namespace quillon::helpers
