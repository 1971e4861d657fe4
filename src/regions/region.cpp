// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "regions/region.h"

#include <cmath>

#include "base/number_text.h"
#include "base/rounding.h"
#include "job/settings/geometry.h"

namespace quillon::regions {
namespace {

double TwoDecimals(double value) { return std::round(value * 100) / 100; }

}  // namespace

std::array<std::string, 4> FieldsOf(std::string_view row) {
  std::array<std::string, 4> fields;
  for (std::string& field : fields) {
    const std::size_t end = row.find('\t');
    field = row.substr(0, end);
    row = end == std::string_view::npos ? std::string_view() : row.substr(end + 1);
  }
  return fields;
}

std::string RowText(const std::array<std::string, 4>& fields) {
  return fields[0] + "\t" + fields[1] + "\t" + fields[2] + "\t" + fields[3];
}

std::string RowText(const Margins& margins) {
  return RowText({base::NumberText(margins.top), base::NumberText(margins.left), base::NumberText(margins.right),
                  base::NumberText(margins.bottom)});
}

Margins MarginsOf(const std::array<std::string, 4>& fields) {
  return {base::LeadingNumber(fields[0]), base::LeadingNumber(fields[1]), base::LeadingNumber(fields[2]),
          base::LeadingNumber(fields[3])};
}

base::Rect BoxOf(const Margins& margins, Unit unit, base::Size picture) {
  const job::PreviewFrame frame = FrameOf(margins, unit, picture);
  return {base::R(frame.left), base::R(frame.top), base::R(frame.width), base::R(frame.height)};
}

job::PreviewFrame FrameOf(const Margins& margins, Unit unit, base::Size picture) {
  const double W = picture.width;
  const double H = picture.height;
  if (unit == Unit::Pixels) {
    return {margins.left, margins.top, W - margins.left - margins.right, H - margins.top - margins.bottom};
  }
  return {W * margins.left / 100, H * margins.top / 100, (100 - margins.left - margins.right) * W / 100,
          (100 - margins.top - margins.bottom) * H / 100};
}

Margins MarginsOfFrame(const job::PreviewFrame& frame, Unit unit, base::Size picture) {
  const double W = picture.width;
  const double H = picture.height;
  if (unit == Unit::Pixels) {
    const double left = std::round(frame.left);
    const double top = std::round(frame.top);
    return {top, left, W - left - std::round(frame.width), H - top - std::round(frame.height)};
  }
  const double left = TwoDecimals(frame.left * 100 / W);
  const double top = TwoDecimals(frame.top * 100 / H);
  return {top, left, TwoDecimals(100 - left - TwoDecimals(frame.width * 100 / W)),
          TwoDecimals(100 - top - TwoDecimals(frame.height * 100 / H))};
}

}  // namespace quillon::regions
