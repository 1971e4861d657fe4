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

// A stencil that is laid over a page in red: rows from the top, eight pixels a byte, 1 for paint.
struct Stencil {
  int width = 0;
  int height = 0;
  std::string rows;
};

// Writes a PDF of pictures into a draft, page by page, and holds none of them. The first failure is kept and is the
// result of everything that follows.
class PdfWriter {
 public:
  explicit PdfWriter(host::Draft& draft);
  PdfWriter(const PdfWriter&) = delete;
  PdfWriter& operator=(const PdfWriter&) = delete;

  // A JPEG, byte for byte. Pages show it by the number that it gets.
  host::Status AddJpeg(std::string_view bytes, const JpegFacts& facts, int& number);
  host::Status AddStencil(const Stencil& stencil, int& number);

  struct Page {
    int picture = 0;   // fills the page
    double width = 0;  // 1/72 inch
    double height = 0;
    // A stencil over it: its number, 0 for none, its lower left corner and size.
    int stencil = 0;
    double left = 0;
    double bottom = 0;
    double stencilWidth = 0;
    double stencilHeight = 0;
  };
  host::Status AddPage(const Page& page);

  int Pages() const { return static_cast<int>(pages_.size()); }
  // Completes the file and reads it back. A file without pages fails.
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
