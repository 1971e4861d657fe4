// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include <cstdlib>
#include <string>
#include <utility>

#include "helpers/runtime/child.h"
#include "helpers/runtime/helper.h"
#include "host/posix/environment.h"

namespace quillon::helpers {
namespace {

// The parameter text of the program: the settings application, a line break, the path of the picture.
struct Recognition {
  std::string application;
  std::string picture;
};

constexpr const char* kTool = "tesseract";
constexpr const char* kLanguage = "chi_sim";
constexpr std::uint64_t kMaxText = 16 << 20;  // bytes

// Finds out why Tesseract failed.
host::Status WhyFailed(const ProgramResult& result) {
  if (!RunProgram({kTool, "--version"})) {
    return {host::Problem::Missing, "文字识别失败：本机没有安装Tesseract"};
  }
  if (result.output.find(kLanguage) != std::string::npos && result.output.find("traineddata") != std::string::npos) {
    return {host::Problem::Missing, "文字识别失败：本机没有安装Tesseract的简体中文数据"};
  }
  return {host::Problem::Damaged, "文字识别失败：图片无法识别"};
}

// Returns the text without the form feed that ends a page and the empty lines before it.
std::string Trimmed(std::string text) {
  while (!text.empty() && (text.back() == '\f' || text.back() == '\n' || text.back() == ' ')) text.pop_back();
  return text;
}

// Fails if there is no line break or nothing after it.
host::Status ParseRecognition(const std::string& text, Recognition& order) {
  const std::size_t end = text.find('\n');
  if (end == std::string::npos) return UsageError("缺少图片路径");
  order = {text.substr(0, end), text.substr(end + 1)};
  if (order.application.ends_with('\r')) order.application.pop_back();
  while (order.picture.ends_with('\n') || order.picture.ends_with('\r')) order.picture.pop_back();
  if (order.picture.empty()) return UsageError("缺少图片路径");
  return host::Status::Ok();
}

// Gives the simplified Chinese text of a picture, without trailing blanks and line ends. Fails with Missing if the
// picture, Tesseract or its language data do not exist; the sentence says which.
host::Status Recognise(Helper& helper, const std::string& picture, std::string& text) {
  host::Files& files = helper.Files();
  if (!files.IsFile(picture)) return {host::Problem::Missing, "文字识别失败：图片不存在"};
  // A name that starts with a dash, or that means a standard stream, is not a path.
  const std::string path = picture.find('/') == std::string::npos ? "./" + picture : picture;
  const std::string output = helper.AppPath("OCRRes");
  const ProgramResult result = RunProgram({kTool, path, output, "-l", kLanguage});
  host::Status status = result ? files.ReadFile(output + ".txt", text, kMaxText) : WhyFailed(result);
  if (status) text = Trimmed(std::move(text));
  const host::Status removed = files.RemoveOwn(output + ".txt");
  return status ? removed : status;
}

constexpr const char* kKey = "OCRRes";

host::Status Execute(Helper& helper) {
  Recognition order;
  if (host::Status parsed = ParseRecognition(helper.Parameters(), order); !parsed) return parsed;
  helper.Set(order.application, kKey, "");
  const std::string languages = host::posix::Environment("TESSDATA_PREFIX");
  helper.AllowOnly({.sources = {order.picture, languages}, .tool = kTool});
  // The threads of Tesseract spend more time waiting for each other than they save.
  setenv("OMP_THREAD_LIMIT", "1", 1);
  std::string text;
  const host::Status recognised = Recognise(helper, order.picture, text);
  helper.Set(order.application, kKey, recognised ? text : recognised.Why());
  return recognised;
}

}  // namespace
}  // namespace quillon::helpers

int main(int count, char** arguments) {
  return quillon::helpers::RunHelper("QxBackOCRer", count, arguments, quillon::helpers::Execute,
                                     {.starts = quillon::helpers::Starts::OneTool});
}
