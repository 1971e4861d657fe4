// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "helpers/exif/tiff_data.h"

#include <tiffio.h>

#include <algorithm>
#include <array>
#include <cstring>
#include <memory>
#include <vector>

namespace quillon::helpers {
namespace {

// A file in memory, as libtiff reads one.
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

}  // namespace

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

}  // namespace quillon::helpers
