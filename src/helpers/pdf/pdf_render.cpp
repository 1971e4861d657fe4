// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "helpers/pdf/pdf_render.h"

#include <cstring>
#include <vector>

#include <poppler/cpp/poppler-document.h>
#include <poppler/cpp/poppler-image.h>
#include <poppler/cpp/poppler-page-renderer.h>
#include <poppler/cpp/poppler-page.h>

#include "base/rounding.h"
#include "imaging/pixels/raw_pixels.h"

namespace quillon::helpers {
namespace {

constexpr std::size_t kBands = 3;
constexpr double kPointsPerInch = 72;
constexpr double kMaxPixels = 120e6;

void Silence(const std::string&, void*) {}

// Returns the rows without padding.
std::vector<unsigned char> RowsOf(const poppler::image& image) {
  const std::size_t row = static_cast<std::size_t>(image.width()) * kBands;
  std::vector<unsigned char> rows(row * static_cast<std::size_t>(image.height()));
  for (int y = 0; y < image.height(); ++y) {
    std::memcpy(rows.data() + static_cast<std::size_t>(y) * row,
                image.const_data() + static_cast<std::ptrdiff_t>(y) * image.bytes_per_row(), row);
  }
  return rows;
}

}  // namespace

struct PdfRenderer::Parts {
  std::unique_ptr<poppler::document> document;
};

PdfRenderer::PdfRenderer() : parts_(std::make_unique<Parts>()) { poppler::set_debug_error_function(Silence, nullptr); }
PdfRenderer::~PdfRenderer() = default;

host::Status PdfRenderer::Open(const std::string& path) {
  parts_->document.reset(poppler::document::load_from_file(path));
  if (!parts_->document) return {host::Problem::Damaged, "文件已损坏"};
  if (parts_->document->is_locked()) return {host::Problem::Denied, "文件有密码保护"};
  return host::Status::Ok();
}

int PdfRenderer::Pages() const { return parts_->document ? parts_->document->pages() : 0; }

host::Status PdfRenderer::Render(int page, double dpi, double scale, imaging::Image& out) const {
  const host::Status failed{host::Problem::Damaged, "页面无法显示"};
  if (!parts_->document) return failed;
  const std::unique_ptr<poppler::page> drawn(parts_->document->create_page(page));
  if (!drawn) return failed;
  const poppler::rectf box = drawn->page_rect();
  const double pixelsPerPoint = dpi * scale / kPointsPerInch;
  const double pixels = box.width() * box.height() * pixelsPerPoint * pixelsPerPoint;
  if (!(pixels <= kMaxPixels)) return {host::Problem::TooLarge, "页面太大"};
  poppler::page_renderer renderer;
  renderer.set_image_format(poppler::image::format_rgb24);
  renderer.set_render_hint(poppler::page_renderer::antialiasing);
  renderer.set_render_hint(poppler::page_renderer::text_antialiasing);
  const poppler::image image = renderer.render_page(drawn.get(), dpi * scale, dpi * scale);
  if (!image.is_valid()) return failed;
  return imaging::ImageOfRgb({image.width(), image.height()}, RowsOf(image), base::R(dpi), out);
}

}  // namespace quillon::helpers
