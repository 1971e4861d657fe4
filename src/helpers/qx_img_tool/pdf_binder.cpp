// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include <optional>

#include "helpers/pdf/pdf_writer.h"
#include "helpers/qx_img_tool/sheet_binder.h"
#include "imaging/services.h"

namespace quillon::helpers {
namespace {

constexpr double kPointsPerInch = 72;
constexpr int kDefaultDpi = 300;
constexpr int kQuality = 98;
constexpr std::uint64_t kMaxBytes = std::uint64_t{1} << 30;
constexpr unsigned char kHalf = 128;

Stencil StencilOf(const imaging::TextMask& mask) {
  const auto width = static_cast<std::size_t>(mask.size.width);
  const std::size_t rowBytes = (width + 7) / 8;
  Stencil stencil{mask.size.width, mask.size.height,
                  std::string(rowBytes * static_cast<std::size_t>(mask.size.height), '\0')};
  for (std::size_t i = 0; i < mask.cover.size(); ++i) {
    if (mask.cover[i] < kHalf) continue;
    char& byte = stencil.rows[i / width * rowBytes + i % width / 8];
    byte = static_cast<char>(byte | (0x80 >> (i % width % 8)));
  }
  return stencil;
}

class PdfBinder final : public SheetBinder {
 public:
  PdfBinder(Helper& helper, const BindOptions& options, host::Draft& draft)
      : helper_(helper), options_(options), writer_(draft) {}

  host::Status Add(const std::string& sheet) override {
    Shown front;
    if (host::Status embedded = Embed(sheet, front); !embedded) return embedded;
    if (!options_.back.empty() && !back_) {
      Shown back;
      if (host::Status embedded = Embed(options_.back, back); !embedded) return embedded;
      back_ = back;
    }
    if (host::Status added = AddPage(front, options_.header); !added) return added;
    ++sheets_;
    return back_ ? AddPage(*back_, "") : host::Status::Ok();
  }

  int Sheets() const override { return sheets_; }
  host::Status Finish() override { return writer_.Finish(); }

 private:
  // A picture that is embedded in the file.
  struct Shown {
    int number = 0;
    JpegFacts facts;
  };

  // Embeds a picture, unchanged if possible.
  host::Status Embed(const std::string& path, Shown& shown) {
    std::string bytes;
    if (host::Status read = helper_.Files().ReadFile(path, bytes, kMaxBytes); !read) return read;
    const host::Status known = ReadJpegFacts(bytes, shown.facts);
    const bool jpeg = bytes.starts_with("\xFF\xD8\xFF");
    // A damaged JPEG must not be decoded as if it were another format.
    if (!known && jpeg && known.GetProblem() == host::Problem::Damaged) return known;
    if (!known || (options_.cmyk && shown.facts.components != 4)) {
      if (host::Status made = MakeJpeg(path, bytes); !made) return made;
      if (host::Status read = ReadJpegFacts(bytes, shown.facts); !read) return read;
    }
    return writer_.AddJpeg(bytes, shown.facts, shown.number);
  }

  host::Status MakeJpeg(const std::string& path, std::string& bytes) {
    imaging::Services services(helper_.Files(), helper_.World().programFolder);
    imaging::Image image;
    if (host::Status loaded = services.LoadImageFromFile(path, image); !loaded) return loaded;
    if (host::Status made = ConvertToCmyk(helper_, options_, image); !made) return made;
    const std::string work = helper_.AppPath("QxImgTool.jpg");
    host::Status status = services.SaveImageToJpgFile(image, work, kQuality, imaging::Exif::Drop);
    if (status) status = helper_.Files().ReadFile(work, bytes, kMaxBytes);
    const host::Status removed = helper_.Files().RemoveOwn(work);
    return status ? removed : status;
  }

  host::Status AddPage(const Shown& shown, const std::string& text) {
    const int ownDpi = shown.facts.dpi > 0 ? shown.facts.dpi : kDefaultDpi;
    const double scale = kPointsPerInch / (options_.dpi > 0 ? options_.dpi : ownDpi);
    const base::Size size = shown.facts.Upright();
    PdfWriter::Page page{.picture = shown.number,
                         .orientation = shown.facts.orientation,
                         .width = size.width * scale,
                         .height = size.height * scale};
    SheetHeader header;
    if (!text.empty() && DrawHeader(text, size, header)) {
      if (host::Status added = writer_.AddStencil(StencilOf(header.text), page.stencil); !added) return added;
      page.left = header.place.left * scale;
      page.bottom = page.height - (header.place.top + header.place.height) * scale;
      page.stencilWidth = header.place.width * scale;
      page.stencilHeight = header.place.height * scale;
    }
    return writer_.AddPage(page);
  }

  Helper& helper_;
  BindOptions options_;
  PdfWriter writer_;
  std::optional<Shown> back_;
  int sheets_ = 0;
};

}  // namespace

std::unique_ptr<SheetBinder> MakePdfBinder(Helper& helper, const BindOptions& options, host::Draft& draft) {
  return std::make_unique<PdfBinder>(helper, options, draft);
}

}  // namespace quillon::helpers
