// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "helpers/qx_img_tool/sheet_binder.h"

#include "imaging/codecs/icc_convert.h"

namespace quillon::helpers {

host::Status ToPress(Helper& helper, const BindOptions& options, imaging::Image& image) {
  if (!options.cmyk) return host::Status::Ok();
  return imaging::ConvertByProfiles(helper.Files(), image, helper.AppPath("ColorConfigs/sRGB.icc"),
                                    helper.AppPath("ColorConfigs/Default.icm"));
}

}  // namespace quillon::helpers
