// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "helpers/qx_img_tool/sheet_binder.h"

#include "base/rounding.h"
#include "imaging/codecs/icc_convert.h"

namespace quillon::helpers {
namespace {

constexpr double kPoints = 50;
constexpr double kFromTop = 20;
constexpr double kPixelsPerPoint = 96.0 / 72;

}  // namespace

host::Status ConvertToCmyk(Helper& helper, const BindOptions& options, imaging::Image& image) {
  if (!options.cmyk) return host::Status::Ok();
  return imaging::ConvertByProfiles(helper.Files(), image, helper.AppPath("ColorConfigs/sRGB.icc"),
                                    helper.AppPath("ColorConfigs/Default.icm"));
}

host::Status DrawHeader(const std::string& text, base::Size sheet, SheetHeader& header) {
  const double aspect = static_cast<double>(sheet.width) / sheet.height;
  if (host::Status drawn = imaging::DrawTextMask(text, kPoints * kPixelsPerPoint * aspect, header.text); !drawn) {
    return drawn;
  }
  const base::Size size = header.text.size;
  header.place = {(sheet.width - size.width) / 2, base::R(kFromTop * aspect), size.width, size.height};
  return host::Status::Ok();
}

}  // namespace quillon::helpers
