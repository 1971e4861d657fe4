// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include <algorithm>
#include <string>
#include <vector>

#include "base/number_text.h"
#include "base/path_text.h"
#include "base/rect.h"
#include "helpers/orders/order_text.h"
#include "helpers/runtime/helper.h"
#include "imaging/codecs/animation.h"

namespace quillon::helpers {
namespace {

struct GifOrder {
  std::string target;
  base::Size canvas;
  std::vector<imaging::Frame> frames;
};

constexpr std::size_t kMinFields = 7;
constexpr int kMilliseconds = 100;
constexpr int kMaxMilliseconds = 655350;  // the limit of the format

int NumberAt(const std::vector<std::string>& fields, std::size_t at, int fallback) {
  return at < fields.size() ? base::ParseInteger(fields[at]).value_or(fallback) : fallback;
}

int TimeAt(const std::vector<std::string>& fields, std::size_t at, int fallback) {
  return std::clamp(NumberAt(fields, at, fallback), 0, kMaxMilliseconds);
}

host::Status ReadFrames(Helper& helper, const std::string& folder, int milliseconds, GifOrder& order) {
  std::string list = base::JoinPath(folder, "Gif.txt");
  if (!helper.Files().IsFile(list)) list = helper.AppPath("Gif.txt");
  std::vector<std::string> lines;
  if (host::Status read = ReadOrder(helper.Files(), list, lines); !read) return read;
  for (const std::string& line : lines) {
    if (line.empty()) continue;
    const std::vector<std::string> fields = Fields(line);
    std::string path = fields[0];
    if (!path.starts_with('/')) path = base::JoinPath(base::JoinPath(folder, "GifTmp"), path);
    if (!IsPlainPath(path)) return UsageError("图片路径无效");
    order.frames.push_back({path, NumberAt(fields, 1, 0), NumberAt(fields, 2, 0), TimeAt(fields, 3, milliseconds)});
  }
  return order.frames.empty() ? UsageError("没有图片") : host::Status::Ok();
}

// Reads the order from the fields of the call: working folder, 0, 0, 98, 0, width and height of the picture, and
// optionally the milliseconds for each frame (100) and the target ("Tmp.gif" in the working folder).
// The frames are listed in "Gif.txt" of the working folder or, if there is none, of the program folder. Each line has a
// path and optionally, after tabs, left, top and milliseconds. A relative path is in "GifTmp" of the working folder.
host::Status ReadGifOrder(Helper& helper, GifOrder& order) {
  const std::vector<std::string> fields = helper.Fields();
  if (fields.size() < kMinFields) return UsageError("字段太少");
  const std::string folder = base::TrimTrailingSeparator(fields[0]);
  order.canvas = {NumberAt(fields, 5, 0), NumberAt(fields, 6, 0)};
  order.target = fields.size() > 8 && !fields[8].empty() ? fields[8] : base::JoinPath(folder, "Tmp.gif");
  if (!IsPlainPath(folder) || !IsPlainPath(order.target)) return UsageError("文件夹或目标路径无效");
  if (order.canvas.Empty()) return UsageError("宽和高必须大于零");
  return ReadFrames(helper, folder, TimeAt(fields, 7, kMilliseconds), order);
}

constexpr const char* kApplication = "PicsCut";
constexpr const char* kKey = "PicsToGif";

host::Status Execute(Helper& helper) {
  GifOrder order;
  if (host::Status read = ReadGifOrder(helper, order); !read) return read;
  HandedFiles handed{.results = {order.target}};
  for (const imaging::Frame& frame : order.frames) handed.sources.push_back(frame.path);
  helper.AllowOnly(handed);
  return helper.Files().Save(order.target, [&](host::Draft& draft) {
    return imaging::WriteAnimation(
        helper.Files(), order.frames, order.canvas, {},
        [&](int done) { helper.Set(kApplication, kKey, std::to_string(done)); }, draft);
  });
}

}  // namespace
}  // namespace quillon::helpers

int main(int count, char** arguments) {
  namespace helpers = quillon::helpers;
  return helpers::RunHelper("PicsToAniGif", count, arguments, helpers::Execute, {.seconds = helpers::kSecondsOfABatch});
}
