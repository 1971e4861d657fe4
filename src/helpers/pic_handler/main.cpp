// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "base/path_text.h"
#include "helpers/pic_handler/make_pdf.h"
#include "helpers/pic_handler/pic_order.h"
#include "helpers/pic_handler/run_convert.h"
#include "helpers/runtime/helper.h"
#include "imaging/codecs/icc_convert.h"

namespace quillon::helpers {
namespace {

// Arguments of ImageMagick's convert. What the program asks for is done here, where neither ImageMagick's policy nor
// its limits stand in the way and no second program has to be started; all else goes to convert.
host::Status Execute(Helper& helper) {
  PicOrder order;
  if (host::Status read = ReadPicOrder(helper.Words(), order); !read) return read;
  if (base::ToLowerAscii(base::SplitPath(order.target).extension) == "pdf") return MakePdf(helper, order);
  if (!order.plain || order.profiles.size() != 2) return RunConvert(helper, order);
  return imaging::ConvertByProfiles(
      helper.Files(), {order.source, order.target, order.profiles[0], order.profiles[1], order.quality, order.dpi});
}

}  // namespace
}  // namespace quillon::helpers

int main(int count, char** arguments) {
  return quillon::helpers::RunHelper("PicHandler", count, arguments, quillon::helpers::Execute);
}
