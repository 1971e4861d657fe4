// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "helpers/pdf/jpeg_facts.h"
#include "host/files/files.h"

namespace quillon::helpers {

// A bitmap that is painted over a page in red: rows from the top, eight pixels a byte, 1 paints.
struct Stencil {
  int width = 0;
  int height = 0;
  std::string rows;
};

// Writes a PDF of pictures into a draft, page by page, without keeping them in memory. After a failure every call
// returns that failure.
class PdfWriter {
 public:
  explicit PdfWriter(host::Draft& draft);
  PdfWriter(const PdfWriter&) = delete;
  PdfWriter& operator=(const PdfWriter&) = delete;

  // Embeds a JPEG byte for byte and gives its object number, by which pages refer to it.
  host::Status AddJpeg(std::string_view bytes, const JpegFacts& facts, int& number);
  host::Status AddStencil(const Stencil& stencil, int& number);

  struct Page {
    int picture = 0;      // number of the JPEG that fills the page
    int orientation = 1;  // of the JPEG, 1..8; it is drawn upright
    double width = 0;     // of the upright page, 1/72 inch
    double height = 0;
    // A stencil on top: its number, 0 for none, its lower left corner and its size.
    int stencil = 0;
    double left = 0;
    double bottom = 0;
    double stencilWidth = 0;
    double stencilHeight = 0;
  };
  host::Status AddPage(const Page& page);

  int Pages() const { return static_cast<int>(pages_.size()); }
  // Completes the file and reads it back. Fails if there are no pages.
  host::Status Finish();

 private:
  int NewNumber();
  void Begin(int number);
  void Emit(std::string_view text);
  void EmitStream(int number, const std::string& entries, std::string_view bytes);
  int ProfileNumber(const JpegFacts& facts);
  void EmitIndex();

  host::Draft& draft_;
  host::Status result_;
  std::uint64_t at_ = 0;
  std::vector<std::uint64_t> offsets_;  // of object i + 1
  std::vector<int> pages_;
  std::string profile_;  // the last one, and its object
  int profileNumber_ = 0;
};

}  // namespace quillon::helpers
