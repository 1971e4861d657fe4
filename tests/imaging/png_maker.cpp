// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "imaging/png_maker.h"

#include <algorithm>
#include <stdexcept>

#include <png.h>
#include <zlib.h>

#include "imaging/little_files.h"

namespace quillon::imaging::testing {
namespace {

int ChannelsOf(int type) { return type == 2 ? 3 : type == 4 ? 2 : type == 6 ? 4 : 1; }

// Packs samples, the most significant bit first.
class RowPacker {
 public:
  explicit RowPacker(int bits) : bits_(bits) {}
  void Put(unsigned value) {
    if (bits_ == 16) {
      row_.push_back(static_cast<png_byte>(value >> 8));
      row_.push_back(static_cast<png_byte>(value & 0xFF));
      return;
    }
    held_ = held_ << bits_ | value;
    filled_ += bits_;
    if (filled_ == 8) Flush();
  }
  std::vector<png_byte> Row() {
    if (filled_ > 0) {
      held_ <<= 8 - filled_;
      Flush();
    }
    return std::move(row_);
  }

 private:
  void Flush() {
    row_.push_back(static_cast<png_byte>(held_));
    held_ = 0;
    filled_ = 0;
  }

  const int bits_;
  unsigned held_ = 0;
  int filled_ = 0;
  std::vector<png_byte> row_;
};

std::vector<png_byte> MakeRow(const PngKind& kind, int y) {
  const int channels = ChannelsOf(kind.type);
  const unsigned most = (1U << kind.bits) - 1;
  const unsigned values = kind.type == 3 && kind.colours > 0 ? static_cast<unsigned>(kind.colours) : most + 1;
  RowPacker packer(kind.bits);
  for (int x = 0; x < kind.size.width; ++x) {
    for (int c = 0; c < channels; ++c) {
      unsigned value = static_cast<unsigned>(x * 977 + y * 3571 + c * 7919 + x * y * 13) % values;
      if (!kind.key.empty() && x % 3 == 0) value = static_cast<unsigned>(kind.key[static_cast<std::size_t>(c)]);
      // In the upper 8 bits of 16 this equals the key.
      if (!kind.key.empty() && x % 5 == 0) value = static_cast<unsigned>(kind.key[static_cast<std::size_t>(c)]) ^ 1U;
      packer.Put(value);
    }
  }
  return packer.Row();
}

void Append(png_structp png, png_bytep data, std::size_t size) {
  static_cast<std::string*>(png_get_io_ptr(png))->append(reinterpret_cast<const char*>(data), size);
}

void SetColours(png_structp png, png_infop info, const PngKind& kind) {
  if (kind.type == 3) {
    std::vector<png_color> palette(static_cast<std::size_t>(kind.colours > 0 ? kind.colours : 1 << kind.bits));
    for (std::size_t i = 0; i < palette.size(); ++i) {
      palette[i] = {static_cast<png_byte>(i * 37), static_cast<png_byte>(i * 91 + 5), static_cast<png_byte>(255 - i)};
    }
    png_set_PLTE(png, info, palette.data(), static_cast<int>(palette.size()));
    const std::vector<png_byte> alphas(kind.alphas.begin(), kind.alphas.end());
    if (!alphas.empty()) png_set_tRNS(png, info, alphas.data(), static_cast<int>(alphas.size()), nullptr);
  } else if (!kind.key.empty()) {
    png_color_16 key{};
    key.gray = key.red = static_cast<png_uint_16>(kind.key.front());
    if (kind.key.size() == 3) key.green = static_cast<png_uint_16>(kind.key[1]);
    if (kind.key.size() == 3) key.blue = static_cast<png_uint_16>(kind.key[2]);
    png_set_tRNS(png, info, nullptr, 0, &key);
  }
}

// Returns the bytes of data of the chunk at that offset.
std::size_t SizeAt(const std::string& png, std::size_t at) {
  std::size_t size = 0;
  for (std::size_t i = 0; i < 4; ++i) size = size << 8 | static_cast<unsigned char>(png[at + i]);
  return size;
}

[[noreturn]] void Fail(png_structp, png_const_charp message) { throw std::runtime_error(message); }

}  // namespace

std::string MakePng(const PngKind& kind) {
  std::string out;
  png_structp png = png_create_write_struct(PNG_LIBPNG_VER_STRING, nullptr, Fail, nullptr);
  png_infop info = png_create_info_struct(png);
  png_set_write_fn(png, &out, Append, nullptr);
  png_set_IHDR(png, info, static_cast<png_uint_32>(kind.size.width), static_cast<png_uint_32>(kind.size.height),
               kind.bits, kind.type, kind.interlaced ? PNG_INTERLACE_ADAM7 : PNG_INTERLACE_NONE,
               PNG_COMPRESSION_TYPE_DEFAULT, PNG_FILTER_TYPE_DEFAULT);
  SetColours(png, info, kind);
  png_write_info(png, info);
  const int passes = png_set_interlace_handling(png);
  for (int pass = 0; pass < passes; ++pass) {
    for (int y = 0; y < kind.size.height; ++y) png_write_row(png, MakeRow(kind, y).data());
  }
  png_write_end(png, info);
  png_destroy_write_struct(&png, &info);
  return out;
}

std::string PngChunkOf(const std::string& type, const std::string& data) {
  const std::string body = type + data;
  const uLong sum = crc32(0, reinterpret_cast<const Bytef*>(body.data()), static_cast<uInt>(body.size()));
  return Big(data.size(), 4) + body + Big(sum, 4);
}

std::size_t ChunkAt(const std::string& png, const std::string& type) {
  const std::size_t found = png.find(type);
  return found == std::string::npos ? found : found - 4;
}

std::string WithChunks(const std::string& png, const std::string& before, const std::string& chunks) {
  std::string more = png;
  return more.insert(ChunkAt(png, before), chunks);
}

std::string WithWrongChecksum(std::string png, const std::string& type) {
  const std::size_t at = ChunkAt(png, type);
  png[at + 8 + SizeAt(png, at)] ^= 1;
  return png;
}

std::string WithRightChecksums(std::string png) {
  for (std::size_t at = 8; at + 12 <= png.size();) {
    const std::size_t size = SizeAt(png, at);
    if (size > png.size() - at - 12) break;
    const auto* body = reinterpret_cast<const Bytef*>(png.data()) + at + 4;
    png.replace(at + 8 + size, 4, Big(crc32(0, body, static_cast<uInt>(size + 4)), 4));
    at += size + 12;
  }
  return png;
}

std::string PngOfRows(base::Size size, int bits, int type, const std::string& chunks, const std::string& rows) {
  uLongf length = compressBound(static_cast<uLong>(rows.size()));
  std::string deflated(length, '\0');
  compress2(reinterpret_cast<Bytef*>(deflated.data()), &length, reinterpret_cast<const Bytef*>(rows.data()),
            static_cast<uLong>(rows.size()), 9);
  deflated.resize(length);
  const std::string head = Big(static_cast<unsigned>(size.width), 4) + Big(static_cast<unsigned>(size.height), 4) +
                           static_cast<char>(bits) + static_cast<char>(type) + std::string(3, '\0');
  return "\x89PNG\r\n\x1A\n" + PngChunkOf("IHDR", head) + chunks + PngChunkOf("IDAT", deflated) +
         PngChunkOf("IEND", "");
}

}  // namespace quillon::imaging::testing
