// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include <algorithm>

#include "base/number_text.h"
#include "base/path_text.h"
#include "base/rounding.h"
#include "helpers/pdf/pdf_facts.h"
#include "helpers/pdf/pdf_render.h"
#include "helpers/qx_img_tool/operations.h"
#include "helpers/qx_img_tool/pages.h"
#include "imaging/codecs/tiff_pages.h"
#include "imaging/services.h"

namespace quillon::helpers {
namespace {

constexpr int kDefaultDpi = 72;
constexpr int kDefaultQuality = 90;
constexpr double kPointsPerInch = 72;
constexpr double kMaxPreviewPixels = 50e6;

int NumberOr(const std::string& text, int fallback, int most) {
  const int number = base::ParseInteger(text).value_or(0);
  return number > 0 ? std::min(number, most) : fallback;
}

int Pixels(double points, int dpi) { return std::max(1, base::R(points * dpi / kPointsPerInch)); }

host::Status SavePreview(Helper& helper, const ToolOrder& order, const imaging::Image& image, int quality) {
  imaging::Services services(helper.Files(), helper.World().programFolder);
  return services.SaveImageToJpgFile(image, base::JoinPath(order.output, "Tmp.jpg"), quality, imaging::Exif::Drop);
}

host::Status ShowPdf(Helper& helper, const ToolOrder& order, const PdfPageFacts& page, int dpi) {
  const double pixels = page.width * page.height * dpi * dpi / (kPointsPerInch * kPointsPerInch);
  if (pixels > kMaxPreviewPixels) return host::Status::Ok();
  PdfRenderer renderer;
  imaging::Image image;
  if (host::Status status = renderer.Open(order.input); !status) return status;
  if (host::Status status = renderer.Render(0, dpi, page.unit, image); !status) return status;
  return SavePreview(helper, order, image, NumberOr(order.Field(1), kDefaultQuality, 100));
}

}  // namespace

host::Status GetPdfPages(Helper& helper, const ToolOrder& order) {
  for (const std::string& key : {order.key, std::string("PdfW"), std::string("PdfH")}) {
    helper.Set(order.application, key, "");
  }
  std::vector<PdfPageFacts> pages;
  return ReportingKey(helper, order, [&] {
    if (host::Status read = ReadPdfFacts(helper.Files(), order.input, pages); !read) return read;
    const int dpi = NumberOr(order.Field(0), kDefaultDpi, 10000);
    helper.Set(order.application, "PdfW", std::to_string(Pixels(pages.front().width, dpi)));
    helper.Set(order.application, "PdfH", std::to_string(Pixels(pages.front().height, dpi)));
    helper.Set(order.application, order.key, std::to_string(pages.size()));
    // The count is the answer; if the page cannot be rendered, only the preview is missing.
    static_cast<void>(ShowPdf(helper, order, pages.front(), dpi));
    return host::Status::Ok();
  });
}

host::Status GetTiffPages(Helper& helper, const ToolOrder& order) {
  helper.Set(order.application, order.key, "");
  return ReportingKey(helper, order, [&] {
    int pages = 0;
    if (host::Status counted = imaging::CountTiffPages(helper.Files(), order.input, pages); !counted) return counted;
    imaging::Image image;
    if (host::Status loaded = imaging::LoadTiffPage(helper.Files(), order.input, 0, {}, image); !loaded) return loaded;
    if (host::Status saved = SavePreview(helper, order, image, kDefaultQuality); !saved) return saved;
    helper.Set(order.application, order.key, std::to_string(pages));
    return host::Status::Ok();
  });
}

}  // namespace quillon::helpers
