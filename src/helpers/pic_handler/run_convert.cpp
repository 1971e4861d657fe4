// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "helpers/pic_handler/run_convert.h"

#include <algorithm>

#include "base/path_text.h"
#include "helpers/runtime/child.h"

namespace quillon::helpers {
namespace {

// The extension of a path where it is made of nothing but letters and digits, with its point.
std::string PlainExtension(const std::string& path) {
  const std::string extension = base::SplitPath(path).extension;
  const bool plain = std::all_of(extension.begin(), extension.end(), [](char sign) {
    return (sign >= '0' && sign <= '9') || (sign >= 'a' && sign <= 'z') || (sign >= 'A' && sign <= 'Z');
  });
  return plain && !extension.empty() ? "." + extension : "";
}

// Files of the program folder are named from there, so that its own name is not read into.
std::string FromHere(const std::string& word, const std::string& folder) {
  return word.starts_with(folder + "/") ? word.substr(folder.size() + 1) : word;
}

}  // namespace

std::string FindConvert() {
  for (const char* name : {"convert-im6.q16", "convert-im6", "magick", "convert"}) {
    if (RunProgram({name, "--version"}).output.starts_with("Version: ImageMagick")) return name;
  }
  return "";
}

host::Status RunConvert(Helper& helper, const PicOrder& order) {
  const std::string convert = FindConvert();
  if (convert.empty()) return {host::Problem::Missing, "没有找到 ImageMagick"};
  host::Files& files = helper.Files();
  const std::string in = "PicHandlerIn" + PlainExtension(order.source);
  const std::string out = "PicHandlerOut" + PlainExtension(order.target);
  static_cast<void>(files.RemoveOwn(helper.AppPath(out)));
  if (host::Status linked = files.CopyOwn(order.source, helper.AppPath(in)); !linked) return linked;
  std::vector<std::string> words{convert, in};
  for (const std::string& option : order.options) words.push_back(FromHere(option, helper.World().programFolder));
  words.push_back(out);
  const Ended ended = RunProgram(words);
  host::Status status;
  if (!ended) status = {host::Problem::Other, "ImageMagick 没有成功：" + ended.output};
  if (status) status = files.Copy(helper.AppPath(out), order.target);
  static_cast<void>(files.RemoveOwn(helper.AppPath(in)));
  static_cast<void>(files.RemoveOwn(helper.AppPath(out)));
  return status;
}

}  // namespace quillon::helpers
