// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "helpers/pics_to_ani_gif/gif_order.h"

#include <algorithm>

#include "base/number_text.h"
#include "base/path_text.h"
#include "helpers/orders/order_text.h"
#include "helpers/runtime/command_text.h"

namespace quillon::helpers {
namespace {

constexpr std::size_t kLeastFields = 7;
constexpr int kMilliseconds = 100;
constexpr int kMostMilliseconds = 655350;  // what a GIF can say

int NumberAt(const std::vector<std::string>& fields, std::size_t at, int fallback) {
  return at < fields.size() ? base::ParseInteger(fields[at]).value_or(fallback) : fallback;
}

int TimeAt(const std::vector<std::string>& fields, std::size_t at, int fallback) {
  return std::clamp(NumberAt(fields, at, fallback), 0, kMostMilliseconds);
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

}  // namespace

host::Status ReadGifOrder(Helper& helper, GifOrder& order) {
  const std::vector<std::string> fields = helper.Fields();
  if (fields.size() < kLeastFields) return UsageError("字段太少");
  const std::string folder = base::TrimTrailingSeparator(fields[0]);
  order.canvas = {NumberAt(fields, 5, 0), NumberAt(fields, 6, 0)};
  order.target = fields.size() > 8 && !fields[8].empty() ? fields[8] : base::JoinPath(folder, "Tmp.gif");
  if (!IsPlainPath(folder) || !IsPlainPath(order.target)) return UsageError("文件夹或目标路径无效");
  if (order.canvas.Empty()) return UsageError("宽和高必须大于零");
  return ReadFrames(helper, folder, TimeAt(fields, 7, kMilliseconds), order);
}

}  // namespace quillon::helpers
