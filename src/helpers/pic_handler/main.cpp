// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "base/path_text.h"
#include "helpers/pic_handler/pic_order.h"
#include "helpers/runtime/helper.h"
#include "imaging/codecs/icc_convert.h"

namespace quillon::helpers {
namespace {

// The parameter text is a command line of ImageMagick's convert. The two conversions that the program orders are done
// here: ImageMagick's policy and resource limits do not apply, and no second process is started.
host::Status Execute(Helper& helper) {
  PicOrder order;
  if (host::Status read = ReadPicOrder(helper, order); !read) return read;
  HandedFiles handed{.sources = order.profiles, .results = {order.target}};
  handed.sources.push_back(order.source);
  helper.AllowOnly(handed);
  if (base::ToLowerAscii(base::SplitPath(order.target).extension) == "pdf") return MakePdf(helper, order);
  if (order.profiles.size() != 2) return UsageError("需要两个 -profile，或者扩展名为 pdf 的目标文件");
  return imaging::ConvertByProfiles(
      helper.Files(), {order.source, order.target, order.profiles[0], order.profiles[1], order.quality, order.dpi});
}

}  // namespace
}  // namespace quillon::helpers

int main(int count, char** arguments) {
  return quillon::helpers::RunHelper("PicHandler", count, arguments, quillon::helpers::Execute);
}
