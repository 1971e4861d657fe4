// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "helpers/qx_back_ocrer/recognition.h"

#include <utility>

#include "helpers/runtime/child.h"

namespace quillon::helpers {
namespace {

constexpr const char* kLanguage = "chi_sim";
constexpr std::uint64_t kMostText = 16 << 20;

host::Status Missing(const Ended& ended) {
  if (!RunProgram({"tesseract", "--version"})) {
    return {host::Problem::Missing, "文字识别失败：本机没有安装Tesseract"};
  }
  if (ended.output.find(kLanguage) != std::string::npos && ended.output.find("traineddata") != std::string::npos) {
    return {host::Problem::Missing, "文字识别失败：本机没有安装Tesseract的简体中文数据"};
  }
  return {host::Problem::Damaged, "文字识别失败：图片无法识别"};
}

// Without the form feed that ends a page, and the empty lines before it.
std::string Trimmed(std::string text) {
  while (!text.empty() && (text.back() == '\f' || text.back() == '\n' || text.back() == ' ')) text.pop_back();
  return text;
}

}  // namespace

host::Status ParseRecognition(const std::string& text, Recognition& order) {
  const std::size_t end = text.find('\n');
  if (end == std::string::npos) return UsageError("缺少图片路径");
  order = {text.substr(0, end), text.substr(end + 1)};
  if (order.application.ends_with('\r')) order.application.pop_back();
  while (order.picture.ends_with('\n') || order.picture.ends_with('\r')) order.picture.pop_back();
  if (order.picture.empty()) return UsageError("缺少图片路径");
  return host::Status::Ok();
}

host::Status Recognise(Helper& helper, const std::string& picture, std::string& text) {
  host::Files& files = helper.Files();
  if (!files.IsFile(picture)) return {host::Problem::Missing, "文字识别失败：图片不存在"};
  // A name that begins with a dash, or is one of the words for the standard streams, is no path.
  const std::string path = picture.find('/') == std::string::npos ? "./" + picture : picture;
  const std::string aside = helper.AppPath("OCRRes");
  const Ended ended = RunProgram({"tesseract", path, aside, "-l", kLanguage});
  host::Status status = ended ? files.ReadFile(aside + ".txt", text, kMostText) : Missing(ended);
  if (status) text = Trimmed(std::move(text));
  const host::Status removed = files.RemoveOwn(aside + ".txt");
  return status ? removed : status;
}

}  // namespace quillon::helpers
