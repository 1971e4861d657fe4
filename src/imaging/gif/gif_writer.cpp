// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "imaging/gif/gif_writer.h"

namespace quillon::imaging {
namespace {

constexpr std::size_t kBuffer = std::size_t{64} << 10;
constexpr int kTableFlag = 0x80;

}  // namespace

Status GifWriter::WriteScreen(const GifScreen& screen, base::Size size) {
  buffer_ += "GIF89a";
  Number(size.width);
  Number(size.height);
  buffer_.append(reinterpret_cast<const char*>(screen.raw.data()), screen.raw.size());
  buffer_ += screen.table.rgb;
  return Flush(kBuffer);
}

Status GifWriter::CopyExtension(GifReader& reader) {
  buffer_ += '!';
  buffer_ += static_cast<char>(reader.Label());
  while (!reader.Part().empty()) {
    buffer_ += static_cast<char>(reader.Part().size());
    buffer_ += reader.Part();
    if (Status written = Flush(kBuffer); !written) return written;
    if (Status next = reader.NextPart(); !next) return next;
  }
  buffer_ += '\0';
  return Flush(kBuffer);
}

Status GifWriter::BeginFrame(const GifFrame& frame) {
  constexpr int kInterlaced = 0x40;
  constexpr int kSorted = 0x20;
  if (frame.control) {
    buffer_ += std::string_view("!\xF9\4", 3);
    buffer_.append(reinterpret_cast<const char*>(frame.control->raw.data()), frame.control->raw.size());
    buffer_ += '\0';
  }
  buffer_ += ',';
  for (const int value : {frame.area.left, frame.area.top, frame.area.width, frame.area.height}) Number(value);
  int flags = frame.interlaced ? kInterlaced : 0;
  if (!frame.table.rgb.empty()) flags |= kTableFlag | (frame.table.sorted ? kSorted : 0) | (frame.table.Bits() - 1);
  buffer_ += static_cast<char>(flags);
  buffer_ += frame.table.rgb;
  encoder_.Begin(frame.codeBits);
  return Flush(kBuffer);
}

Status GifWriter::WriteRow(const unsigned char* indices, int count) {
  encoder_.Add(indices, static_cast<std::size_t>(count));
  return Flush(kBuffer);
}

Status GifWriter::EndFrame() {
  encoder_.End();
  return Flush(kBuffer);
}

Status GifWriter::Finish() {
  buffer_ += ';';
  return Flush(1);
}

void GifWriter::Number(int value) {
  buffer_ += static_cast<char>(value & 0xFF);
  buffer_ += static_cast<char>(value >> 8 & 0xFF);
}

Status GifWriter::Flush(std::size_t atLeast) {
  if (!status_ || buffer_.size() < atLeast) return status_;
  status_ = sink_(buffer_.data(), buffer_.size());
  buffer_.clear();
  return status_;
}

}  // namespace quillon::imaging
