// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "helpers/pdf/page_box.h"

#include <algorithm>
#include <cmath>
#include <string>
#include <vector>

#include "base/number_text.h"

namespace quillon::helpers {
namespace {

constexpr double kMaxCoordinate = 1e7;
constexpr double kAll = 100;

double MarginOf(std::string_view text) { return std::max(0.0, base::LeadingNumber(text)); }

}  // namespace

std::optional<PageBox> BoxOf(const std::array<double, 4>& corners) {
  for (const double value : corners) {
    if (!(std::abs(value) <= kMaxCoordinate)) return std::nullopt;
  }
  const PageBox box{std::min(corners[0], corners[2]), std::min(corners[1], corners[3]),
                    std::max(corners[0], corners[2]), std::max(corners[1], corners[3])};
  if (box.Width() <= 0 || box.Height() <= 0) return std::nullopt;
  return box;
}

std::optional<PageBox> Common(const PageBox& a, const PageBox& b) {
  const PageBox box{std::max(a.left, b.left), std::max(a.bottom, b.bottom), std::min(a.right, b.right),
                    std::min(a.top, b.top)};
  if (box.Width() <= 0 || box.Height() <= 0) return std::nullopt;
  return box;
}

int QuarterTurns(int degrees) {
  if (degrees % 90 != 0) return 0;
  return (degrees / 90 % 4 + 4) % 4;
}

host::Status ParseMargins(std::string_view text, Margins& margins) {
  std::vector<std::string_view> parts;
  for (;;) {
    const std::size_t bar = text.find('|');
    parts.push_back(text.substr(0, bar));
    if (bar == std::string_view::npos) break;
    text.remove_prefix(bar + 1);
  }
  if (parts.size() != 4) return {host::Problem::Other, "裁切边距必须是四个数值"};
  margins = {MarginOf(parts[0]), MarginOf(parts[1]), MarginOf(parts[2]), MarginOf(parts[3])};
  if (margins.left + margins.right >= kAll || margins.top + margins.bottom >= kAll) {
    return {host::Problem::Other, "裁切边距之和必须小于100%"};
  }
  return host::Status::Ok();
}

PageBox Trimmed(const PageBox& box, const Margins& margins, int quarterTurns) {
  // A clockwise turn moves the left side of the page to the top, the top to the right, and so on.
  std::array<double, 4> seen = {margins.left, margins.top, margins.right, margins.bottom};
  std::rotate(seen.begin(), seen.begin() + quarterTurns, seen.end());
  const auto [left, top, right, bottom] = seen;
  const double width = box.Width() / kAll;
  const double height = box.Height() / kAll;
  return {box.left + left * width, box.bottom + bottom * height, box.right - right * width, box.top - top * height};
}

}  // namespace quillon::helpers
