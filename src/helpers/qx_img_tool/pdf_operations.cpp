// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include <algorithm>
#include <cmath>
#include <memory>
#include <vector>

#include "base/path_text.h"
#include "helpers/pdf/pdf_cut.h"
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
constexpr double kMinScanDpi = 100;
constexpr double kMaxDpi = 600;
constexpr double kMaxPixels = 100e6;
constexpr int kQuality = 90;
constexpr std::uint64_t kMaxBytes = std::uint64_t{1} << 30;

// Returns the resolution in which a page is rendered. Scanned pages keep theirs; a page with too many pixels gets less.
double DpiFor(const PdfPageFacts& page) {
  const double dpi = page.imageDpi >= kMinScanDpi ? std::min(page.imageDpi, kMaxDpi) : kTextDpi;
  const double pixels = page.width * page.height * dpi * dpi / (kPointsPerInch * kPointsPerInch);
  return std::max(1.0, std::floor(pixels > kMaxPixels ? dpi * std::sqrt(kMaxPixels / pixels) : dpi));
}

// Splits one PDF into pages for the program, and binds the pages that the program returns.
class Splitter {
 public:
  Splitter(Helper& helper, const ToolOrder& order)
      : helper_(helper),
        order_(order),
        folder_(order.Field(0)),
        services_(helper.Files(), helper.World().programFolder) {}

  host::Status Open() {
    if (host::Status read = ReadPdfFacts(helper_.Files(), order_.input, pages_); !read) return read;
    return renderer_.Open(order_.input);
  }

  host::Status Merge(host::Draft& draft) {
    PdfWriter writer(draft);
    FollowEnd end = FollowEnd::Part;
    const Follow follow{.pages = static_cast<int>(pages_.size()),
                        .onPage = [&](int page) { return AddPage(page, writer); },
                        .onIdle =
                            [&](int page) {
                              OpenPage(page);
                              return RenderNext();
                            }};
    if (host::Status status = FollowPages(helper_, order_, follow, end); !status) return status;
    const Complete complete = writer.Pages() == static_cast<int>(pages_.size()) ? Complete::Yes : Complete::No;
    if (host::Status may = CheckReplace(helper_, order_.output, complete); !may) return may;
    return writer.Finish();
  }

 private:
  std::string PagePath(int page) const { return base::JoinPath(folder_, PageName(page)); }
  std::string CutPath(int page) const { return base::JoinPath(folder_, "A" + PageName(page)); }

  // Renders the next page. Returns false if all pages are rendered. A page that cannot be rendered is omitted; the
  // program finds no file for it.
  bool RenderNext() {
    if (rendered_ == pages_.size()) return false;
    const int page = static_cast<int>(rendered_);
    const PdfPageFacts& facts = pages_[rendered_++];
    imaging::Image image;
    if (!renderer_.Render(page, DpiFor(facts), facts.unit, image)) return true;
    static_cast<void>(services_.SaveImageToJpgFile(image, PagePath(page + 1), kQuality, imaging::Exif::Drop));
    return true;
  }

  // Opens the file of a page in advance: the program clears its folder as soon as it has counted the last page, but a
  // file that is open by then can still be read.
  void OpenPage(int page) {
    std::shared_ptr<imaging::FileBytes> bytes;
    if (imaging::FileBytes::Open(CutPath(page), bytes) || imaging::FileBytes::Open(PagePath(page), bytes)) {
      opened_ = std::move(bytes);
      openedPage_ = page;
    }
  }

  // A page that is missing or not a complete JPEG is omitted. Only a draft that cannot be written is a failure.
  host::Status AddPage(int page, PdfWriter& writer) {
    OpenPage(page);
    if (!opened_ || openedPage_ != page || opened_->Size() > kMaxBytes) return host::Status::Ok();
    std::string bytes(opened_->Size(), '\0');
    JpegFacts facts;
    if (!opened_->ReadAt(0, bytes.data(), bytes.size()) || !ReadJpegFacts(bytes, facts)) return host::Status::Ok();
    const double dpi = facts.dpi > 0 ? facts.dpi : DpiFor(pages_[static_cast<std::size_t>(page) - 1]);
    int picture = 0;
    if (host::Status added = writer.AddJpeg(bytes, facts, picture); !added) return added;
    const base::Size size = facts.Upright();
    return writer.AddPage({.picture = picture,
                           .orientation = facts.orientation,
                           .width = size.width * kPointsPerInch / dpi,
                           .height = size.height * kPointsPerInch / dpi});
  }

  Helper& helper_;
  const ToolOrder& order_;
  std::string folder_;
  imaging::Services services_;
  std::vector<PdfPageFacts> pages_;
  PdfRenderer renderer_;
  std::size_t rendered_ = 0;
  std::shared_ptr<imaging::FileBytes> opened_;
  int openedPage_ = 0;
};

}  // namespace

host::Status CutPdfPages(Helper& helper, const ToolOrder& order) {
  helper.Set(order.application, order.key, "");
  return ReportingKey(helper, order, [&] {
    Margins margins;
    if (host::Status parsed = ParseMargins(order.Field(0), margins); !parsed) return parsed;
    return CutPdf(helper.Files(), order.input, order.output, margins, [&](int done, int all) {
      // Reports at most a hundred steps.
      const bool shown = done == all || done * 100LL / all != (done - 1) * 100LL / all;
      if (shown) helper.Set(order.application, order.key, std::to_string(done) + "/" + std::to_string(all));
    });
  });
}

host::Status SplitPdf(Helper& helper, const ToolOrder& order) {
  return ReportingKey(helper, order, [&] {
    Splitter splitter(helper, order);
    if (host::Status opened = splitter.Open(); !opened) return opened;
    return helper.Files().Save(order.output, [&](host::Draft& draft) { return splitter.Merge(draft); });
  });
}

}  // namespace quillon::helpers
