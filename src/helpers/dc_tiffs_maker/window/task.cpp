// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "helpers/dc_tiffs_maker/window/task.h"

#include <algorithm>
#include <array>
#include <string_view>

#include "base/path_text.h"

namespace quillon::helpers {
namespace {

constexpr std::array<std::string_view, 7> kPictures = {"jpg", "jpeg", "bmp", "png", "gif", "tif", "tiff"};

std::string ExtensionOf(const std::string& path) { return base::ToLowerAscii(base::SplitPath(path).extension); }

bool HasLineBreak(const std::string& path) { return path.find_first_of("\n\r") != std::string::npos; }

// The paths in an order must be absolute and must not contain "..".
bool IsPlain(const std::string& path) {
  return path.starts_with('/') && (path + "/").find("/../") == std::string::npos;
}

std::string WhyTargetUnusable(const host::Files& files, const tools::OkList& order) {
  const std::string& target = order.target;
  if (target.empty()) return "请先点“浏览”，选择生成的Tiff保存在哪里。";
  if (!IsPlain(target)) return "保存位置不是完整的路径：请点“浏览”选择，或输入以 / 开头的路径。";
  if (HasLineBreak(target)) return "保存位置的名字里有换行：请换一个名字。";
  if (files.IsFolder(target)) return "“" + NameOf(target) + "”是一个文件夹：请换一个文件名。";
  if (!files.IsFolder(base::SplitPath(target).folder)) return "保存位置的文件夹不存在：请点“浏览”另选一个。";
  const bool source = std::any_of(order.pictures.begin(), order.pictures.end(),
                                  [&](const std::string& picture) { return files.SameFile(picture, target); });
  if (source) return "“" + NameOf(target) + "”就在列表里，不能覆盖它：请换一个文件名。";
  return {};
}

}  // namespace

std::string WhyNotStartable(const host::Files& files, const tools::OkList& order) {
  if (order.pictures.empty()) return "请先添加要合成的图片。";
  for (const std::string& picture : order.pictures) {
    if (HasLineBreak(picture)) return "“" + NameOf(picture) + "”的路径里有换行：请改名，或移除这张图片。";
    if (!IsPlain(picture)) return "“" + NameOf(picture) + "”的路径不完整：请移除后重新添加。";
  }
  return WhyTargetUnusable(files, order);
}

std::string FurtherSteps(const tools::OkList& order) {
  std::string steps;
  const auto add = [&](bool wanted, const char* step) {
    if (wanted) steps += (steps.empty() ? "" : "、") + std::string(step);
  };
  add(order.headFirst, "首页图片排在最前");
  add(order.adjust, "调整亮度对比度");
  add(order.cut, "裁边");
  add(order.resize, "缩放");
  add(order.sharpen, "锐化");
  return steps;
}

std::vector<std::string> PicturesIn(const host::Files& files, const std::string& folder) {
  std::vector<std::string> pictures;
  // A folder that cannot be read completely gives the pictures found so far.
  (void)files.ListFolder(folder, [&](const host::FolderEntry& entry) {
    const bool picture = std::find(kPictures.begin(), kPictures.end(), ExtensionOf(entry.name)) != kPictures.end();
    if (picture && entry.kind == host::FileKind::File) pictures.push_back(base::JoinPath(folder, entry.name));
    return true;
  });
  return pictures;
}

std::string TiffName(const std::string& typed) {
  const std::string extension = ExtensionOf(typed);
  return typed.empty() || typed.ends_with('/') || extension == "tif" || extension == "tiff" ? typed : typed + ".tif";
}

std::string NameOf(const std::string& path) { return path.substr(path.rfind('/') + 1); }

}  // namespace quillon::helpers
