// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "helpers/dc_tiffs_maker/ok_list.h"

#include <algorithm>
#include <regex>

#include "base/number_text.h"
#include "base/path_text.h"
#include "helpers/orders/order_text.h"
#include "helpers/runtime/helper.h"

namespace quillon::helpers {
namespace {

constexpr std::size_t kValues = 27;
constexpr int kLastQuality = 2;
constexpr int kMaxSide = 65500;
constexpr int kMaxDpi = 10000;
constexpr std::size_t kMaxName = 4096;

// Reads the values of an order in sequence. Numbers outside of their range are clamped.
class Values {
 public:
  explicit Values(const std::vector<std::string>& lines) : lines_(lines) {}

  const std::string& Text() { return lines_[next_++]; }
  bool Flag() {
    const std::string text = base::ToLowerAscii(Text());
    return text == "true" || base::LeadingNumber(text) != 0;
  }
  int Number(int least, int most) {
    return static_cast<int>(std::clamp<double>(base::LeadingNumber(Text()), least, most));
  }

 private:
  const std::vector<std::string>& lines_;
  std::size_t next_ = 0;
};

void Fill(Values values, OkList& order) {
  order.application = values.Text();
  order.target = values.Text();
  order.compress = values.Flag();
  order.quality = values.Number(0, kLastQuality);
  order.colour = values.Flag();
  order.grey = values.Flag();
  order.resize = values.Flag();
  order.width = values.Number(0, kMaxSide);
  order.height = values.Number(0, kMaxSide);
  order.cut = values.Flag();
  order.left = values.Number(0, kMaxSide);
  order.right = values.Number(0, kMaxSide);
  order.top = values.Number(0, kMaxSide);
  order.bottom = values.Number(0, kMaxSide);
  order.cutByRule = values.Flag();
  order.cutRule = values.Text();
  order.matchCase = values.Flag();
  order.cutAll = values.Flag();
  order.headFirst = values.Flag();
  order.verify = values.Flag();
  order.headRule = values.Text();
  order.dpi = values.Number(0, kMaxDpi);
  order.adjust = values.Flag();
  order.brightness = values.Number(-100, 100);
  order.contrast = values.Number(-100, 100);
  order.adjustHeads = values.Flag();
  order.sharpen = values.Flag();
}

}  // namespace

host::Status ReadOkList(const host::Files& files, const std::string& path, OkList& order) {
  std::vector<std::string> lines;
  if (host::Status read = ReadOrder(files, path, lines); !read) return read;
  if (lines.size() < kValues) return UsageError("命令文件不完整");
  Fill(Values(lines), order);
  for (std::size_t i = kValues; i < lines.size(); ++i) {
    if (lines[i].empty()) continue;
    if (!IsPlainPath(lines[i])) return UsageError("图片路径无效");
    order.pictures.push_back(lines[i]);
  }
  if (!IsPlainPath(order.target)) return UsageError("目标路径无效");
  return order.pictures.empty() ? UsageError("没有图片") : host::Status::Ok();
}

bool NameMatches(const std::string& picture, const std::string& rule, Case letterCase) {
  const std::string name = base::SplitPath(picture).name;
  if (rule.empty() || name.size() > kMaxName) return false;
  const auto kind =
      std::regex::ECMAScript | (letterCase == Case::Sensitive ? std::regex::flag_type{} : std::regex::icase);
  try {
    return std::regex_search(name, std::regex(rule, kind));
  } catch (const std::regex_error&) {
    const bool exact = letterCase == Case::Sensitive;
    const std::string in = exact ? name : base::ToLowerAscii(name);
    return in.find(exact ? rule : base::ToLowerAscii(rule)) != std::string::npos;
  }
}

void MoveHeadsFirst(OkList& order) {
  std::stable_partition(order.pictures.begin(), order.pictures.end(), [&](const std::string& picture) {
    return NameMatches(picture, order.headRule, Case::Sensitive);
  });
}

}  // namespace quillon::helpers
