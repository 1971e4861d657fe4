// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "helpers/pdf/draft_io.h"

#include <array>
#include <cstdio>
#include <memory>
#include <stdexcept>

#include "helpers/pdf/open_pdf.h"

namespace quillon::helpers {

void DraftPipeline::write(const unsigned char* data, std::size_t size) {
  if (result_) result_ = draft_.Write(data, size);
  if (!result_) throw std::runtime_error("the draft cannot be written");
}

std::size_t DraftSource::read(char* out, std::size_t length) {
  last_offset = at_;
  if (!draft_.Seek(static_cast<std::uint64_t>(at_))) throw std::runtime_error("the draft cannot be read");
  std::size_t total = 0;
  while (total < length) {
    const std::int64_t count = draft_.Read(out + total, length - total);
    if (count < 0) throw std::runtime_error("the draft cannot be read");
    if (count == 0) break;
    total += static_cast<std::size_t>(count);
  }
  at_ += static_cast<qpdf_offset_t>(total);
  return total;
}

void DraftSource::seek(qpdf_offset_t offset, int whence) {
  const auto size = static_cast<qpdf_offset_t>(draft_.Size());
  at_ = (whence == SEEK_SET ? 0 : whence == SEEK_CUR ? at_ : size) + offset;
  if (at_ < 0) throw std::runtime_error("seek before the beginning");
}

void DraftSource::unreadCh(char) { --at_; }

qpdf_offset_t DraftSource::findAndSkipNextEOL() {
  std::array<char, 4096> block{};
  for (;;) {
    const qpdf_offset_t begin = at_;
    const std::size_t count = read(block.data(), block.size());
    if (count == 0) return at_;
    const std::string_view text(block.data(), count);
    const std::size_t end = text.find_first_of("\r\n");
    if (end == std::string_view::npos) continue;
    at_ = begin + static_cast<qpdf_offset_t>(end);
    const qpdf_offset_t found = at_;
    char next = '\r';
    while (next == '\r' || next == '\n') {
      if (read(&next, 1) == 0) return found;
    }
    unreadCh(next);
    return found;
  }
}

host::Status CheckPdf(host::Draft& draft, int pages) {
  const host::Status wrong{host::Problem::Other, "Pdf保存失败"};
  const host::Status checked = PdfGuarded([&] {
    QPDF pdf;
    pdf.setSuppressWarnings(true);
    pdf.processInputSource(std::make_shared<DraftSource>(draft));
    const bool whole = static_cast<int>(pdf.getAllPages().size()) == pages && !pdf.anyWarnings();
    return whole ? host::Status::Ok() : wrong;
  });
  return checked ? checked : wrong;
}

}  // namespace quillon::helpers
