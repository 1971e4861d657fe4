// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "helpers/qx_img_tool/sheet_binder.h"
#include "imaging/codecs/tiff_pages.h"
#include "imaging/services.h"

namespace quillon::helpers {
namespace {

// Sheets come as long as the program makes some: room is left for that many.
constexpr int kExpectedPages = 64;
constexpr base::Colour kRed{0x0000FF};

class TiffBinder final : public SheetBinder {
 public:
  TiffBinder(Helper& helper, const BindOptions& options, host::Draft& draft)
      : helper_(helper),
        options_(options),
        tiff_(draft, kExpectedPages),
        services_(helper.Files(), helper.World().programFolder) {}

  host::Status Add(const std::string& sheet) override {
    if (host::Status added = AddPage(sheet, options_.header); !added) return added;
    ++sheets_;
    return options_.back.empty() ? host::Status::Ok() : AddPage(options_.back, "");
  }

  int Sheets() const override { return sheets_; }
  host::Status Finish() override { return tiff_.Finish(); }

 private:
  host::Status AddPage(const std::string& path, const std::string& text) {
    imaging::Image image;
    if (host::Status loaded = services_.LoadImageFromFile(path, image); !loaded) return loaded;
    if (!text.empty()) {
      if (host::Status drawn = DrawText(image, text); !drawn) return drawn;
    }
    if (host::Status made = ConvertToCmyk(helper_, options_, image); !made) return made;
    return tiff_.Add(image, {.dpi = options_.dpi});
  }

  host::Status DrawText(imaging::Image& image, const std::string& text) {
    SheetHeader header;
    imaging::Image line;
    const base::Size size{services_.GetImageWidth(image), services_.GetImageHeight(image)};
    if (!DrawHeader(text, size, header) || !imaging::ImageOfMask(header.text, kRed, line)) return host::Status::Ok();
    return services_.DrawImage(image, line, header.place);
  }

  Helper& helper_;
  BindOptions options_;
  imaging::TiffPages tiff_;
  imaging::Services services_;
  int sheets_ = 0;
};

}  // namespace

std::unique_ptr<SheetBinder> MakeTiffBinder(Helper& helper, const BindOptions& options, host::Draft& draft) {
  return std::make_unique<TiffBinder>(helper, options, draft);
}

}  // namespace quillon::helpers
