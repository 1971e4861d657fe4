// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "base/utf8.h"
#include "helpers/orders/order_text.h"
#include "helpers/runtime/helper.h"
#include "imaging/codecs/tiff_pages.h"

namespace quillon::helpers {
namespace {

using imaging::TiffCompression;

constexpr const char* kOrderFile = "Ops.txt";

// Mode "1": the page count of the target becomes the first line of "Ops.txt", 0 if it is not a TIFF.
host::Status CountPages(Helper& helper, const std::string& target) {
  int pages = 0;
  const host::Status counted = imaging::CountTiffPages(helper.Files(), target, pages);
  const host::Status saved =
      helper.Files().Save(helper.AppPath(kOrderFile), base::Utf16WithMark(std::to_string(pages) + "\r\n"));
  return saved ? counted : saved;
}

// Mode "SaveNew": makes a black and white TIFF of the pictures. Pages that the program extracted from a TIFF, in "Tmp"
// of the program folder, keep their colours. A picture that cannot be read is omitted; an existing file is then kept.
host::Status SaveNew(Helper& helper, const std::string& target, const std::vector<std::string>& pictures) {
  host::Files& files = helper.Files();
  const std::string extractedPages = helper.AppPath("Tmp/");
  return files.Save(target, [&](host::Draft& draft) {
    imaging::TiffPages tiff(draft, static_cast<int>(pictures.size()));
    host::Status first;
    for (const std::string& picture : pictures) {
      const auto compression = picture.starts_with(extractedPages) ? TiffCompression::Lzw : TiffCompression::Group4;
      const host::Status added = IsPlainPath(picture) ? tiff.AddFile(files, picture, {.compression = compression})
                                                      : host::Status{host::Problem::Denied, "图片路径无效"};
      if (added.DiskFull()) return added;
      if (first) first = added;
    }
    if (!first && (tiff.Count() == 0 || files.Stat(target))) return first;
    return tiff.Finish();
  });
}

// Reads "Ops.txt": the target, the mode, then one picture a line.
host::Status RunTiffOrder(Helper& helper) {
  const std::string path = helper.AppPath(kOrderFile);
  if (!helper.Files().Stat(path)) return host::Status::Ok();
  std::vector<std::string> lines;
  if (host::Status read = ReadOrder(helper.Files(), path, lines); !read) return read;
  if (lines.size() < 2) return UsageError("命令文件不完整");
  const std::string target = lines[0];
  if (!IsPlainPath(target)) return UsageError("目标路径无效");
  helper.AllowOnly({.sources = {lines.begin() + 2, lines.end()}, .results = {target}});
  if (lines[1] == "1") return CountPages(helper, target);
  if (lines[1] == "SaveNew") return SaveNew(helper, target, {lines.begin() + 2, lines.end()});
  return UsageError("未知的操作 " + lines[1]);
}

}  // namespace
}  // namespace quillon::helpers

// Carries out the order in "Ops.txt" of the program folder. If there is none, there is nothing to do and the helper
// succeeds: the program starts it so to find out whether it can be started.
int main(int count, char** arguments) {
  namespace helpers = quillon::helpers;
  return helpers::RunHelper("SavePicsToTiff", count, arguments, helpers::RunTiffOrder,
                            {.seconds = helpers::kSecondsOfABatch});
}
