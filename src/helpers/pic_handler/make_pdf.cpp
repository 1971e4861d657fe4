// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "helpers/pic_handler/pic_order.h"

#include "helpers/pdf/jpeg_facts.h"
#include "helpers/pdf/pdf_writer.h"
#include "imaging/services.h"

namespace quillon::helpers {
namespace {

constexpr std::uint64_t kLargestFile = std::uint64_t{1} << 30;
constexpr int kQuality = 92;
constexpr int kDefaultDpi = 72;
constexpr double kPointsPerInch = 72;

// The picture as JPEG, and its properties.
struct Jpeg {
  std::string bytes;
  JpegFacts facts;
};

host::Status Encode(Helper& helper, const PicOrder& order, Jpeg& jpeg) {
  const std::string work = helper.AppPath("PicHandler.jpg");
  imaging::Services services(helper.Files(), helper.World().programFolder);
  imaging::Image image;
  host::Status status = services.LoadImageFromFile(order.source, image);
  const int quality = order.quality > 0 ? order.quality : kQuality;
  if (status) status = services.SaveImageToJpgFile(image, work, quality, imaging::Exif::Drop);
  if (status) status = helper.Files().ReadFile(work, jpeg.bytes, kLargestFile);
  if (status) status = ReadJpegFacts(jpeg.bytes, jpeg.facts);
  static_cast<void>(helper.Files().RemoveOwn(work));
  return status;
}

host::Status Read(Helper& helper, const PicOrder& order, Jpeg& jpeg) {
  if (host::Status read = helper.Files().ReadFile(order.source, jpeg.bytes, kLargestFile); !read) return read;
  if (!jpeg.bytes.starts_with("\xFF\xD8")) return Encode(helper, order, jpeg);
  const host::Status facts = ReadJpegFacts(jpeg.bytes, jpeg.facts);
  return facts.GetProblem() == host::Problem::Unsupported ? Encode(helper, order, jpeg) : facts;
}

}  // namespace

host::Status MakePdf(Helper& helper, const PicOrder& order) {
  Jpeg jpeg;
  if (host::Status read = Read(helper, order, jpeg); !read) return read;
  const int dpi = order.dpi > 0 ? order.dpi : jpeg.facts.dpi;
  const double points = kPointsPerInch / (dpi > 0 ? dpi : kDefaultDpi);
  return helper.Files().Save(order.target, [&](host::Draft& draft) {
    PdfWriter pdf(draft);
    const base::Size size = jpeg.facts.Upright();
    PdfWriter::Page page{
        .orientation = jpeg.facts.orientation, .width = size.width * points, .height = size.height * points};
    if (host::Status added = pdf.AddJpeg(jpeg.bytes, jpeg.facts, page.picture); !added) return added;
    if (host::Status added = pdf.AddPage(page); !added) return added;
    return pdf.Finish();
  });
}

}  // namespace quillon::helpers
