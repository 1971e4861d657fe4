// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "helpers/pic_handler/pic_order.h"

#include <algorithm>

#include "base/path_text.h"
#include "helpers/runtime/child.h"

namespace quillon::helpers {
namespace {

// Returns the extension of a path with its point if it consists of letters and digits only, otherwise "".
std::string PlainExtension(const std::string& path) {
  const std::string extension = base::SplitPath(path).extension;
  const bool plain = std::all_of(extension.begin(), extension.end(), [](char sign) {
    return (sign >= '0' && sign <= '9') || (sign >= 'a' && sign <= 'z') || (sign >= 'A' && sign <= 'Z');
  });
  return plain && !extension.empty() ? "." + extension : "";
}

// Returns a path in the program folder as a relative one, so that ImageMagick does not interpret characters of the
// folder's name.
std::string RelativeTo(const std::string& word, const std::string& folder) {
  return word.starts_with(folder + "/") ? word.substr(folder.size() + 1) : word;
}

// Returns the name of ImageMagick's convert, found by asking programs of that name for their version; "" if there is
// none.
std::string FindConvert() {
  for (const char* name : {"convert-im6.q16", "convert-im6", "magick", "convert"}) {
    if (RunProgram({name, "--version"}).output.starts_with("Version: ImageMagick")) return name;
  }
  return "";
}

}  // namespace

host::Status RunConvert(Helper& helper, const PicOrder& order) {
  const std::string convert = FindConvert();
  if (convert.empty()) return {host::Problem::Missing, "没有找到 ImageMagick"};
  host::Files& files = helper.Files();
  const std::string in = "PicHandlerIn" + PlainExtension(order.source);
  const std::string out = "PicHandlerOut" + PlainExtension(order.target);
  static_cast<void>(files.RemoveOwn(helper.AppPath(out)));
  if (host::Status linked = files.CopyOwn(order.source, helper.AppPath(in)); !linked) return linked;
  std::vector<std::string> words{convert, in};
  for (const std::string& option : order.options) words.push_back(RelativeTo(option, helper.World().programFolder));
  words.push_back(out);
  const ProgramResult result = RunProgram(words);
  host::Status status;
  if (!result) status = {host::Problem::Other, "ImageMagick 没有成功：" + result.output};
  if (status) status = files.Copy(helper.AppPath(out), order.target);
  static_cast<void>(files.RemoveOwn(helper.AppPath(in)));
  static_cast<void>(files.RemoveOwn(helper.AppPath(out)));
  return status;
}

}  // namespace quillon::helpers
