// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include <cstdlib>
#include <optional>
#include <string>

#include "formats/tools/converter_order.h"
#include "helpers/frame/helper.h"
#include "helpers/orders/order_text.h"
#include "imaging/huge_picture.h"

namespace {

using quillon::formats::ConverterOrder;
using quillon::helpers::Helper;
using quillon::host::Status;

constexpr std::uint64_t kLongestOrder = std::uint64_t{1} << 20;

quillon::imaging::HugeOrder HugeOrderOf(const ConverterOrder& order) {
  quillon::imaging::HugeOrder huge;
  huge.source = order.source;
  huge.target = order.target;
  huge.least = order.least;
  huge.quality = order.quality;
  huge.grey = order.ToGray;
  if (order.PicRotate) huge.angle = order.angle;
  if (order.CutPic) {
    huge.cut = {order.cutX, order.cutY, order.size.width, order.size.height};
  } else if (order.OnlyZoom || order.NeedZoomS || order.NeedZoomB) {
    huge.size = order.size;
    huge.shrink = order.OnlyZoom || order.NeedZoomS;
    huge.enlarge = order.OnlyZoom || order.NeedZoomB;
  }
  return huge;
}

// The order lies in the program folder; without one there is nothing to do.
Status Convert(Helper& helper) {
  std::string text;
  if (Status read = helper.Files().ReadFile(helper.AppPath("Param.txt"), text, kLongestOrder); !read) return read;
  const std::optional<ConverterOrder> order = quillon::formats::ParseOrder(text);
  if (!order) return quillon::helpers::WrongCall("Param.txt 的内容无法识别");
  if (!quillon::helpers::IsPlainPath(order->source) || !quillon::helpers::IsPlainPath(order->target)) {
    return quillon::helpers::WrongCall("Param.txt 中的路径必须完整");
  }
  if (order->CoupleArray || order->DrawTxtMode) return quillon::helpers::WrongCall("不支持 Param.txt 要求的操作");
  // What does not fit into memory goes where the program works, not into a /tmp that is memory itself.
  setenv("TMPDIR", helper.World().programFolder.c_str(), 1);
  return quillon::imaging::MakeFromHuge(helper.Files(), HugeOrderOf(*order), {});
}

}  // namespace

int main(int count, char** arguments) {
  return quillon::helpers::RunHelper("PicCutConverter", count, arguments, Convert);
}
