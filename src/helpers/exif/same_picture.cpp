// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "helpers/exif/same_picture.h"

#include <tiffio.h>

#include <algorithm>
#include <array>
#include <cstdint>
#include <cstring>
#include <memory>
#include <string>
#include <vector>

namespace quillon::helpers {
namespace {

// A file in memory, with the callbacks through which libtiff reads it.
struct Memory {
  std::string_view bytes;
  std::uint64_t at = 0;

  static Memory& Of(thandle_t handle) { return *static_cast<Memory*>(handle); }
  static tmsize_t Read(thandle_t handle, void* out, tmsize_t size) {
    Memory& self = Of(handle);
    const std::uint64_t from = std::min<std::uint64_t>(self.at, self.bytes.size());
    const std::uint64_t count = std::min<std::uint64_t>(static_cast<std::uint64_t>(size), self.bytes.size() - from);
    std::memcpy(out, self.bytes.data() + from, count);
    self.at = from + count;
    return static_cast<tmsize_t>(count);
  }
  static tmsize_t Write(thandle_t, void*, tmsize_t) { return -1; }
  static toff_t Seek(thandle_t handle, toff_t offset, int whence) {
    Memory& self = Of(handle);
    if (whence == SEEK_SET) self.at = offset;
    if (whence == SEEK_CUR) self.at += offset;
    if (whence == SEEK_END) self.at = self.bytes.size() + offset;
    return self.at;
  }
  static int Close(thandle_t) { return 0; }
  static toff_t Size(thandle_t handle) { return Of(handle).bytes.size(); }
};

int Silent(TIFF*, void*, const char*, const char*, va_list) { return 1; }

struct CloseTiff {
  void operator()(TIFF* tiff) const { TIFFClose(tiff); }
};

std::unique_ptr<TIFF, CloseTiff> OpenTiff(Memory& memory) {
  TIFFOpenOptions* options = TIFFOpenOptionsAlloc();
  TIFFOpenOptionsSetErrorHandlerExtR(options, Silent, nullptr);
  TIFFOpenOptionsSetWarningHandlerExtR(options, Silent, nullptr);
  std::unique_ptr<TIFF, CloseTiff> tiff(TIFFClientOpenExt("memory", "rm", &memory, Memory::Read, Memory::Write,
                                                          Memory::Seek, Memory::Close, Memory::Size, nullptr, nullptr,
                                                          options));
  TIFFOpenOptionsFree(options);
  return tiff;
}

void AddCoding(TIFF* tiff, std::string& all) {
  for (const std::uint32_t tag : {TIFFTAG_IMAGEWIDTH, TIFFTAG_IMAGELENGTH}) {
    std::uint32_t value = 0;
    TIFFGetField(tiff, tag, &value);
    all += std::to_string(value) + ' ';
  }
  for (const std::uint32_t tag : {TIFFTAG_BITSPERSAMPLE, TIFFTAG_SAMPLESPERPIXEL, TIFFTAG_COMPRESSION,
                                  TIFFTAG_PHOTOMETRIC, TIFFTAG_FILLORDER, TIFFTAG_PLANARCONFIG, TIFFTAG_SAMPLEFORMAT}) {
    std::uint16_t value = 0;
    TIFFGetFieldDefaulted(tiff, tag, &value);
    all += std::to_string(value) + ' ';
  }
  std::uint32_t size = 0;
  void* tables = nullptr;
  if (TIFFGetField(tiff, TIFFTAG_JPEGTABLES, &size, &tables)) all.append(static_cast<const char*>(tables), size);
}

bool AddData(TIFF* tiff, std::uint64_t most, std::string& all) {
  const bool tiled = TIFFIsTiled(tiff) != 0;
  const std::uint32_t parts = tiled ? TIFFNumberOfTiles(tiff) : TIFFNumberOfStrips(tiff);
  std::vector<char> data;
  for (std::uint32_t part = 0; part < parts; ++part) {
    const std::uint64_t size = TIFFGetStrileByteCount(tiff, part);
    if (size > most) return false;
    data.resize(size);
    const auto length = static_cast<tmsize_t>(size);
    const tmsize_t got =
        tiled ? TIFFReadRawTile(tiff, part, data.data(), length) : TIFFReadRawStrip(tiff, part, data.data(), length);
    if (got != length) return false;
    all += std::to_string(size) + ':';
    all.append(data.data(), data.size());
  }
  return parts > 0;
}

// Appends the coded data of all pages of a TIFF and the values that are needed to decode it. Returns false if a page
// cannot be read.
bool TiffPictures(std::string_view bytes, std::string& all) {
  Memory memory{bytes};
  const auto tiff = OpenTiff(memory);
  if (!tiff) return false;
  do {
    AddCoding(tiff.get(), all);
    if (!AddData(tiff.get(), bytes.size(), all)) return false;
  } while (TIFFReadDirectory(tiff.get()) != 0);
  return true;
}

using namespace std::string_view_literals;

unsigned Byte(std::string_view bytes, std::size_t at) { return static_cast<unsigned char>(bytes[at]); }

// Prefixes each part with its length, so that the boundary between two parts cannot shift unnoticed.
void Add(std::string& all, std::string_view part) {
  all += std::to_string(part.size()) + ':';
  all += part;
}

// Application segments and comments do not change the samples, except for the Adobe marker (EE), which defines the
// colour transform.
bool IsDescription(unsigned marker) { return (marker >= 0xE0 && marker <= 0xED) || marker == 0xEF || marker == 0xFE; }

bool JpegPicture(std::string_view bytes, std::string& all) {
  constexpr unsigned kScan = 0xDA;
  std::size_t at = 2;
  while (at + 4 <= bytes.size() && Byte(bytes, at) == 0xFF) {
    const unsigned marker = Byte(bytes, at + 1);
    if (marker == 0xFF) {
      ++at;
      continue;
    }
    if (marker == kScan) {
      Add(all, bytes.substr(at));
      return true;
    }
    const std::size_t size = 2 + (Byte(bytes, at + 2) << 8 | Byte(bytes, at + 3));
    if (size < 4 || at + size > bytes.size()) return false;
    if (!IsDescription(marker)) Add(all, bytes.substr(at, size));
    at += size;
  }
  return false;
}

bool PngPicture(std::string_view bytes, std::string& all) {
  static constexpr std::array kParts = {"IHDR"sv, "PLTE"sv, "tRNS"sv, "IDAT"sv};
  for (std::size_t at = 8; at + 12 <= bytes.size();) {
    const std::size_t size =
        std::size_t{Byte(bytes, at)} << 24 | Byte(bytes, at + 1) << 16 | Byte(bytes, at + 2) << 8 | Byte(bytes, at + 3);
    if (size > bytes.size() - at - 12) return false;
    const std::string_view name = bytes.substr(at + 4, 4);
    if (name == "IEND") return true;
    for (const std::string_view part : kParts) {
      if (name == part) Add(all, bytes.substr(at, size + 12));
    }
    at += size + 12;
  }
  return false;
}

bool PictureOf(std::string_view bytes, std::string& all) {
  if (bytes.starts_with("\xFF\xD8")) return JpegPicture(bytes, all);
  if (bytes.starts_with("\x89PNG\r\n\x1A\n")) return PngPicture(bytes, all);
  if (bytes.starts_with("II") || bytes.starts_with("MM")) return TiffPictures(bytes, all);
  return false;
}

}  // namespace

bool SamePicture(std::string_view before, std::string_view after) {
  std::string a;
  std::string b;
  return PictureOf(before, a) && PictureOf(after, b) && a == b;
}

}  // namespace quillon::helpers
