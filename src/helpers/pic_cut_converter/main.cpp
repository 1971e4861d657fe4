// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include <cstdlib>
#include <optional>
#include <string>
#include <vector>

#include "helpers/orders/order_text.h"
#include "helpers/runtime/helper.h"
#include "imaging/crop/huge_picture.h"
#include "tools/converter_order.h"

namespace quillon::helpers {
namespace {

using imaging::HugeOrder;
using tools::ConverterOrder;
using tools::CoupleOrder;

constexpr std::uint64_t kLongestOrder = std::uint64_t{1} << 20;

// Returns the values that both forms have in common.
template <class Order>
HugeOrder Common(const Order& order, bool grey) {
  HugeOrder huge;
  huge.source = order.source;
  huge.minimum = order.least;
  huge.quality = order.quality;
  huge.grey = grey;
  return huge;
}

HugeOrder HugeOrderOf(const ConverterOrder& order) {
  HugeOrder huge = Common(order, order.ToGray);
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

HugeOrder HugeOrderOf(const CoupleOrder& order) {
  HugeOrder huge = Common(order, order.grey);
  huge.size = order.size;
  huge.angle = order.angle;
  return huge;
}

// Makes all targets in sequence and stops at the first failure. All parts are checked before the first one is made.
host::Status Make(Helper& helper, HugeOrder huge, const std::vector<std::string>& items,
                  const std::vector<std::string>& targets) {
  if (!IsPlainPath(huge.source) || !IsPlainPath(targets.front())) return UsageError("命令文件中的路径必须完整");
  std::vector<base::Rect> parts;
  for (const std::string& item : items) {
    const std::optional<base::Rect> part = tools::PartOf(item);
    if (!part) return UsageError("命令文件中的区域无法识别：" + item);
    parts.push_back(*part);
  }
  // What does not fit into memory is put into the program folder, because /tmp may be in memory itself.
  setenv("TMPDIR", helper.World().programFolder.c_str(), 1);
  for (std::size_t i = 0; i < targets.size(); ++i) {
    huge.target = targets[i];
    if (!parts.empty()) huge.cut = parts[i];
    if (host::Status made = imaging::MakeFromHuge(helper.Files(), huge, {}); !made) return made;
  }
  return host::Status::Ok();
}

host::Status RunSingleOrder(Helper& helper, const std::string& text) {
  const std::optional<ConverterOrder> order = tools::ParseOrder(text);
  if (!order) return UsageError("Param.txt 的内容无法识别");
  if (order->DrawTxtMode) return UsageError("不支持 Param.txt 要求的操作");
  return Make(helper, HugeOrderOf(*order), order->items, TargetsOf(*order));
}

host::Status RunCoupleOrder(Helper& helper, const std::string& text) {
  const std::optional<CoupleOrder> order = tools::ParseCoupleOrder(text);
  if (!order) return UsageError("CoupleParam.txt 的内容无法识别");
  return Make(helper, HugeOrderOf(*order), order->items, TargetsOf(*order));
}

// Carries out the order in "CoupleParam.txt" of the program folder or, if there is none, in "Param.txt". Fails if there
// is neither.
host::Status RunConverterOrder(Helper& helper) {
  const bool couple = helper.Files().IsFile(helper.AppPath("CoupleParam.txt"));
  const std::string path = helper.AppPath(couple ? "CoupleParam.txt" : "Param.txt");
  std::string text;
  if (host::Status read = helper.Files().ReadFile(path, text, kLongestOrder); !read) return read;
  return couple ? RunCoupleOrder(helper, text) : RunSingleOrder(helper, text);
}

}  // namespace
}  // namespace quillon::helpers

int main(int count, char** arguments) {
  return quillon::helpers::RunHelper("PicCutConverter", count, arguments, quillon::helpers::RunConverterOrder);
}
