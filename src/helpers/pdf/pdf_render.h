// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <memory>
#include <string>

#include "host/status.h"
#include "imaging/image.h"

namespace quillon::helpers {

// Renders the pages of a PDF without a password.
class PdfRenderer {
 public:
  PdfRenderer();
  ~PdfRenderer();
  PdfRenderer(const PdfRenderer&) = delete;
  PdfRenderer& operator=(const PdfRenderer&) = delete;

  host::Status Open(const std::string& path);
  int Pages() const;
  // Renders a page, counted from 0, on white as displayed. The picture is tagged with dpi, but rendered at dpi * scale.
  // Fails with TooLarge above 120 million pixels.
  host::Status Render(int page, double dpi, double scale, imaging::Image& out) const;

 private:
  struct Parts;
  std::unique_ptr<Parts> parts_;
};

}  // namespace quillon::helpers
