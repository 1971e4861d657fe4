// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "helpers/pdf/pdf_cut.h"
#include "helpers/qx_img_tool/operations.h"
#include "helpers/qx_img_tool/pages.h"

namespace quillon::helpers {

host::Status CutPdfPages(Helper& helper, const ToolOrder& order) {
  helper.Set(order.application, order.key, "");
  return ReportingKey(helper, order, [&] {
    Margins margins;
    if (host::Status parsed = ParseMargins(order.Field(0), margins); !parsed) return parsed;
    return CutPdf(helper.Files(), order.input, order.output, margins, [&](int done, int all) {
      // A hundred steps are enough to look at.
      const bool shown = done == all || done * 100LL / all != (done - 1) * 100LL / all;
      if (shown) helper.Set(order.application, order.key, std::to_string(done) + "/" + std::to_string(all));
    });
  });
}

}  // namespace quillon::helpers
