// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "imaging/gif/gif_reader.h"

#include <gif_lib.h>

#include <algorithm>
#include <bit>
#include <utility>

#include "imaging/faults.h"
#include "imaging/metadata/picture_format.h"

namespace quillon::imaging {
namespace {

using host::Problem;

constexpr const char* kCutOff = "的数据中断，文件不完整";
constexpr int kControlLabel = 0xF9;
constexpr int kPlainTextLabel = 0x01;
// A code has at most 12 bits and stands for less than 4096 pixels; shorter codes stand for fewer pixels a bit.
constexpr std::uint64_t kMostPixelsPerByte = 4096 * 8 / 12 + 1;

Status BadFrame(int number, const std::string& what) {
  return {Problem::Damaged, "GIF 第 " + std::to_string(number) + " 帧" + what};
}

const char* NameOf(Format format) {
  switch (format) {
    case Format::Jpeg:
      return "JPEG";
    case Format::Png:
      return "PNG";
    case Format::Tiff:
      return "TIFF";
    case Format::Bmp:
      return "BMP";
    case Format::Psd:
      return "PSD";
    default:
      return nullptr;
  }
}

Status CheckFormat(Bytes& bytes) {
  if (bytes.Size() == 0) return fault::EmptyFile();
  std::array<char, 16> start{};
  const std::size_t known = static_cast<std::size_t>(std::min<std::uint64_t>(bytes.Size(), start.size()));
  if (!bytes.ReadAt(0, start.data(), known)) return fault::DamagedPicture();
  const Format format = FormatOf({start.data(), known});
  if (format == Format::Gif) return Status::Ok();
  const char* name = NameOf(format);
  return {Problem::Unsupported, name ? std::string("这不是 GIF 文件，内容是 ") + name : "这不是 GIF 文件"};
}

GifTable TableOf(const ColorMapObject* map) {
  GifTable table;
  if (!map) return table;
  table.sorted = map->SortFlag;
  table.rgb.reserve(static_cast<std::size_t>(map->ColorCount) * 3);
  for (int i = 0; i < map->ColorCount; ++i) {
    const GifColorType& colour = map->Colors[i];
    for (const GifByteType sample : {colour.Red, colour.Green, colour.Blue}) table.rgb += static_cast<char>(sample);
  }
  return table;
}

}  // namespace

int GifTable::Bits() const { return rgb.empty() ? 0 : std::bit_width(rgb.size() / 3 - 1); }

int GifReader::OnRead(GifFileType* file, unsigned char* out, int size) {
  auto& self = *static_cast<GifReader*>(file->UserData);
  const std::uint64_t left = self.bytes_.Size() - self.at_;
  const std::size_t count = static_cast<std::size_t>(std::min<std::uint64_t>(left, static_cast<std::uint64_t>(size)));
  self.ranOut_ = count < static_cast<std::size_t>(size);
  if (count == 0 || !self.bytes_.ReadAt(self.at_, out, count)) return 0;
  self.at_ += count;
  self.last_ = out[count - 1];
  return static_cast<int>(count);
}

Status GifReader::Open(Bytes& bytes, const Limits& limits, std::unique_ptr<GifReader>& out) {
  if (Status known = CheckFormat(bytes); !known) return known;
  std::unique_ptr<GifReader> reader(new GifReader(bytes, limits));
  int error = 0;
  reader->file_ = DGifOpen(reader.get(), OnRead, &error);
  if (!reader->file_ && error == D_GIF_ERR_NOT_ENOUGH_MEM) return fault::OutOfMemory();
  if (!reader->file_) {
    return reader->ranOut_ ? Status(Problem::Damaged, "GIF 文件不完整：文件头或颜色表中断") : fault::DamagedPicture();
  }
  if (Status screen = reader->ReadScreen(); !screen) return screen;
  out = std::move(reader);
  return Status::Ok();
}

GifReader::~GifReader() {
  int ignored = 0;
  if (file_) DGifCloseFile(file_, &ignored);
}

Status GifReader::ReadScreen() {
  constexpr std::uint64_t kFlags = 10;  // offset of the flags, after signature and size
  screen_.size = {file_->SWidth, file_->SHeight};
  if (!bytes_.ReadAt(kFlags, screen_.raw.data(), screen_.raw.size())) return fault::DamagedPicture();
  screen_.table = TableOf(file_->SColorMap);
  return Status::Ok();
}

Status GifReader::CutOff() const {
  if (!ranOut_) return fault::DamagedPicture();
  return BadFrame(frame_.number, kCutOff);
}

Status GifReader::Next(Block& block) {
  for (;;) {
    GifRecordType type = UNDEFINED_RECORD_TYPE;
    const bool end = AtEnd();
    if (!end && DGifGetRecordType(file_, &type) == GIF_ERROR) {
      if (file_->Error == D_GIF_ERR_WRONG_RECORD && last_ == 0) continue;
      return fault::DamagedPicture();
    }
    if (end || type == TERMINATE_RECORD_TYPE) {
      block = Block::End;
      if (frame_.number == 0) return {Problem::Damaged, "GIF 文件里没有任何一帧"};
      // A control extension without its frame, and no trailer either.
      return end && control_ ? BadFrame(frame_.number + 1, kCutOff) : Status::Ok();
    }
    if (type == IMAGE_DESC_RECORD_TYPE) {
      block = Block::Frame;
      return ReadFrameHead();
    }
    bool passedOn = false;
    if (Status read = ReadExtension(passedOn); !read) return read;
    block = Block::Extension;
    if (passedOn) return Status::Ok();
  }
}

Status GifReader::ReadFrameHead() {
  const int number = frame_.number + 1;
  frame_ = {.number = number};
  frame_.control = std::exchange(control_, std::nullopt);
  // DGifGetImageDesc would also keep the head of every frame in memory.
  const bool read = DGifGetImageHeader(file_) == GIF_OK;
  if (!read && (ranOut_ || file_->Error == D_GIF_ERR_NOT_ENOUGH_MEM)) return CutOff();
  // The code size is the last byte of the head. giflib refuses more than 8 bits.
  frame_.codeBits = last_;
  if (!read || frame_.codeBits == 0) {
    return BadFrame(number, "的编码位数无效（" + std::to_string(frame_.codeBits) + "）");
  }
  const GifImageDesc& image = file_->Image;
  frame_.area = {image.Left, image.Top, image.Width, image.Height};
  frame_.interlaced = image.Interlace;
  frame_.table = TableOf(image.ColorMap);
  if (Status fits = CheckFrame(); !fits) return fits;
  return frame_.area.Empty() ? SkipPixels() : Status::Ok();
}

Status GifReader::CheckFrame() const {
  if (frame_.table.rgb.empty() && screen_.table.rgb.empty()) return BadFrame(frame_.number, "没有颜色表");
  if (frame_.area.Empty()) return Status::Ok();
  if (!WithinLimits(frame_.area.width, frame_.area.height, limits_)) return fault::SidesTooLarge();
  const auto pixels = static_cast<std::uint64_t>(frame_.area.width) * static_cast<std::uint64_t>(frame_.area.height);
  const std::uint64_t left = bytes_.Size() - at_;
  return pixels / kMostPixelsPerByte <= left ? Status::Ok() : BadFrame(frame_.number, "的尺寸超过文件所能容纳的数据");
}

// giflib leaves the data of a frame without pixels unread.
Status GifReader::SkipPixels() {
  for (;;) {
    GifByteType* data = nullptr;
    if (DGifGetCodeNext(file_, &data) == GIF_ERROR) return CutOff();
    if (!data) return Status::Ok();
  }
}

Status GifReader::ReadRow(unsigned char* out) {
  return DGifGetLine(file_, out, frame_.area.width) == GIF_OK ? Status::Ok() : CutOff();
}

Status GifReader::ReadPart(base::Rect part, std::vector<unsigned char>& out) {
  if (IsLarge(part.width, part.height, limits_)) return fault::OutOfMemory();
  const auto width = static_cast<std::size_t>(part.width);
  out.resize(width * static_cast<std::size_t>(part.height));
  std::vector<unsigned char> row(static_cast<std::size_t>(frame_.area.width));
  GifRowOrder order(frame_.area.height, frame_.interlaced);
  for (int count = 0; count < frame_.area.height; ++count) {
    if (Status read = ReadRow(row.data()); !read) return read;
    const int y = order.Next() - part.top;
    if (y < 0 || y >= part.height) continue;
    std::copy_n(row.begin() + part.left, width, out.begin() + static_cast<std::ptrdiff_t>(width) * y);
  }
  return Status::Ok();
}

Status GifReader::ReadExtension(bool& passedOn) {
  GifByteType* data = nullptr;
  if (DGifGetExtension(file_, &label_, &data) == GIF_ERROR) return fault::DamagedPicture();
  part_ = data ? std::string_view(reinterpret_cast<const char*>(data) + 1, data[0]) : std::string_view();
  passedOn = label_ != kControlLabel && label_ != kPlainTextLabel;
  if (passedOn) return Status::Ok();
  control_.reset();  // a plain text uses up the control before it
  if (label_ == kControlLabel && part_.size() >= 4) {
    control_.emplace();
    std::copy_n(part_.begin(), control_->raw.size(), reinterpret_cast<char*>(control_->raw.data()));
  }
  return SkipParts();
}

Status GifReader::NextPart() {
  GifByteType* data = nullptr;
  if (DGifGetExtensionNext(file_, &data) == GIF_ERROR) return fault::DamagedPicture();
  part_ = data ? std::string_view(reinterpret_cast<const char*>(data) + 1, data[0]) : std::string_view();
  return Status::Ok();
}

Status GifReader::SkipParts() {
  while (!part_.empty()) {
    if (Status next = NextPart(); !next) return next;
  }
  return Status::Ok();
}

int GifRowOrder::Next() {
  constexpr std::array<int, 4> kStart = {0, 4, 2, 1};
  constexpr std::array<int, 4> kStep = {8, 8, 4, 2};
  const int row = row_;
  row_ += step_;
  while (step_ > 1 && row_ >= height_ && pass_ < 3) {
    ++pass_;
    row_ = kStart[static_cast<std::size_t>(pass_)];
    step_ = kStep[static_cast<std::size_t>(pass_)];
  }
  return row;
}

}  // namespace quillon::imaging
