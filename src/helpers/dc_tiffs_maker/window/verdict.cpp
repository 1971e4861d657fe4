// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "helpers/dc_tiffs_maker/window/verdict.h"

#include <charconv>

#include "helpers/dc_tiffs_maker/window/task.h"

namespace quillon::helpers {
namespace {

constexpr const char* kFullDisk = "FullDisk";

// Returns the line of the first picture and how many there are.
std::string OmittedText(const MakerEnd& end) {
  const std::string& first = end.omitted.front();
  return end.omitted.size() == 1 ? first : first + "，等 " + std::to_string(end.omitted.size()) + " 张";
}

Verdict Done(const MakerEnd& end, const std::string& target) {
  const std::string made = "已生成“" + NameOf(target) + "”";
  if (end.omitted.empty()) return {Mood::Good, made + "。"};
  return {Mood::Bad, made + "，但少了读不出来的图片（" + OmittedText(end) + "）：请修复后重新开始。"};
}

Verdict Failed(const MakerEnd& end) {
  if (end.report == kFullDisk) {
    return {Mood::Bad, "磁盘空间不足，没有生成Tiff：请释放空间，或换一个磁盘保存，再点“开始”。"};
  }
  if (!end.omitted.empty()) {
    return {Mood::Bad, "没有生成Tiff，因为有图片读不出来（" + OmittedText(end) + "）：请移除或修复后再点“开始”。"};
  }
  const std::string why = end.report.empty() ? "没有说明原因" : end.report;
  return {Mood::Bad, "没有生成Tiff（" + why + "）：请检查图片和保存位置后再点“开始”。"};
}

Verdict Killed(const MakerEnd& end) {
  const std::optional<PictureProgress> at = ParseProgress(end.report);
  const std::string place = at ? "处理第 " + std::to_string(at->number) + " 张图片时" : std::string("程序");
  return {Mood::Bad, place + "意外中止，没有生成Tiff：请再点“开始”；如果仍然中止，请移除这张图片。"};
}

}  // namespace

std::optional<PictureProgress> ParseProgress(std::string_view report) {
  const std::size_t slash = report.rfind('/');
  if (slash == std::string_view::npos) return std::nullopt;
  std::size_t first = slash;
  while (first > 0 && report[first - 1] >= '0' && report[first - 1] <= '9') --first;
  PictureProgress picture;
  const char* end = report.data() + report.size();
  const auto number = std::from_chars(report.data() + first, report.data() + slash, picture.number);
  const auto count = std::from_chars(report.data() + slash + 1, end, picture.count);
  if (number.ec != std::errc() || count.ec != std::errc() || picture.number > picture.count) return std::nullopt;
  return picture;
}

Verdict VerdictOf(const MakerEnd& end, const std::string& target) {
  switch (end.ending) {
    case Ending::Done:
      return Done(end, target);
    case Ending::Failed:
      return Failed(end);
    case Ending::Killed:
      return Killed(end);
    case Ending::Stopped:
      return {Mood::Plain, "已停止，没有生成Tiff；点“开始”可以重新合成。"};
    case Ending::NotStarted:
      break;
  }
  return {Mood::Bad, "无法启动合成（" + end.report + "）：请检查程序文件夹后再点“开始”。"};
}

}  // namespace quillon::helpers
