// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include <algorithm>
#include <cmath>
#include <memory>
#include <vector>

#include "base/path_text.h"
#include "helpers/pdf/pdf_facts.h"
#include "helpers/pdf/pdf_render.h"
#include "helpers/pdf/pdf_writer.h"
#include "helpers/qx_img_tool/operations.h"
#include "helpers/qx_img_tool/pages.h"
#include "imaging/io/bytes.h"
#include "imaging/services.h"

namespace quillon::helpers {
namespace {

constexpr double kPointsPerInch = 72;
constexpr double kTextDpi = 200;  // of pages that are not scanned
constexpr double kLeastScanDpi = 100;
constexpr double kMostDpi = 600;
constexpr double kMostPixels = 100e6;
constexpr int kQuality = 90;
constexpr std::uint64_t kMostBytes = std::uint64_t{1} << 30;

// Scanned pages keep their resolution.
double DpiFor(const PdfPageFacts& page) {
  const double dpi = page.imageDpi >= kLeastScanDpi ? std::min(page.imageDpi, kMostDpi) : kTextDpi;
  const double pixels = page.width * page.height * dpi * dpi / (kPointsPerInch * kPointsPerInch);
  return std::max(1.0, std::floor(pixels > kMostPixels ? dpi * std::sqrt(kMostPixels / pixels) : dpi));
}

// The pages of one PDF on their way to the program and back.
class Splitter {
 public:
  Splitter(Helper& helper, const ToolOrder& order)
      : helper_(helper), order_(order), folder_(order.Field(0)), services_(helper.World(), [] {}) {}

  host::Status Open() {
    if (host::Status read = ReadPdfFacts(helper_.Files(), order_.input, pages_); !read) return read;
    return renderer_.Open(order_.input);
  }

  host::Status Merge(host::Draft& draft) {
    PdfWriter writer(draft);
    Followed followed = Followed::Part;
    const Follow follow{.pages = static_cast<int>(pages_.size()),
                        .take = [&](int page) { return Take(page, writer); },
                        .idle =
                            [&](int page) {
                              Hold(page);
                              return DrawNext();
                            }};
    if (host::Status status = FollowPages(helper_, order_, follow, followed); !status) return status;
    const bool whole = writer.Pages() == static_cast<int>(pages_.size());
    if (host::Status may = MayReplace(helper_, order_.output, whole); !may) return may;
    return writer.Finish();
  }

 private:
  std::string PagePath(int page) const { return base::JoinPath(folder_, PageName(page)); }
  std::string CutPath(int page) const { return base::JoinPath(folder_, "A" + PageName(page)); }

  // False once all pages are drawn. One that cannot be drawn is left out; the program finds no file of it.
  bool DrawNext() {
    if (drawn_ == pages_.size()) return false;
    const int page = static_cast<int>(drawn_);
    const PdfPageFacts& facts = pages_[drawn_++];
    imaging::Image image;
    if (!renderer_.Render(page, DpiFor(facts), facts.unit, image)) return true;
    static_cast<void>(services_.SaveImageToJpgFile(image, PagePath(page + 1), kQuality, imaging::Exif::Drop));
    return true;
  }

  // The program clears its folder as soon as it has counted the last page: what is open by then can still be read.
  void Hold(int page) {
    std::shared_ptr<imaging::FileBytes> bytes;
    if (imaging::FileBytes::Open(CutPath(page), bytes) || imaging::FileBytes::Open(PagePath(page), bytes)) {
      held_ = std::move(bytes);
      heldPage_ = page;
    }
  }

  // A page that is not there, or is no whole JPEG, is left out; only a draft that cannot be written ends it.
  host::Status Take(int page, PdfWriter& writer) {
    Hold(page);
    if (!held_ || heldPage_ != page || held_->Size() > kMostBytes) return host::Status::Ok();
    std::string bytes(held_->Size(), '\0');
    JpegFacts facts;
    if (!held_->ReadAt(0, bytes.data(), bytes.size()) || !ReadJpegFacts(bytes, facts)) return host::Status::Ok();
    const double dpi = facts.dpi > 0 ? facts.dpi : DpiFor(pages_[static_cast<std::size_t>(page) - 1]);
    int picture = 0;
    if (host::Status added = writer.AddJpeg(bytes, facts, picture); !added) return added;
    return writer.AddPage({.picture = picture,
                           .width = facts.width * kPointsPerInch / dpi,
                           .height = facts.height * kPointsPerInch / dpi});
  }

  Helper& helper_;
  const ToolOrder& order_;
  std::string folder_;
  imaging::Services services_;
  std::vector<PdfPageFacts> pages_;
  PdfRenderer renderer_;
  std::size_t drawn_ = 0;
  std::shared_ptr<imaging::FileBytes> held_;
  int heldPage_ = 0;
};

}  // namespace

host::Status SplitPdf(Helper& helper, const ToolOrder& order) {
  return ReportingKey(helper, order, [&] {
    Splitter splitter(helper, order);
    if (host::Status opened = splitter.Open(); !opened) return opened;
    return helper.Files().Save(order.output, [&](host::Draft& draft) { return splitter.Merge(draft); });
  });
}

}  // namespace quillon::helpers
