// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include <array>
#include <cstdint>
#include <cstring>

#include "imaging/codecs/encode.h"
#include "imaging/faults.h"
#include "imaging/io/bytes.h"

namespace quillon::imaging {

Status CheckOutput(Encoder encoder, host::Draft& draft) {
  const std::uint64_t size = draft.Size();
  std::array<unsigned char, 12> head{};
  std::array<unsigned char, 12> tail{};
  if (size < head.size() || !ReadDraft(draft, 0, head.data(), head.size()) ||
      !ReadDraft(draft, size - tail.size(), tail.data(), tail.size())) {
    return fault::NotSaved();
  }
  const auto little = [&](std::size_t at) {
    return std::uint64_t{head[at]} | std::uint64_t{head[at + 1]} << 8 | std::uint64_t{head[at + 2]} << 16 |
           std::uint64_t{head[at + 3]} << 24;
  };
  bool whole = false;
  switch (encoder) {
    case Encoder::Jpeg:
      whole = head[0] == 0xFF && head[1] == 0xD8 && tail[10] == 0xFF && tail[11] == 0xD9;
      break;
    case Encoder::Png:
      whole = std::memcmp(head.data(), "\x89PNG\r\n\x1A\n", 8) == 0 &&
              std::memcmp(tail.data(), "\0\0\0\0IEND\xAE\x42\x60\x82", 12) == 0;
      break;
    case Encoder::Gif:
      whole = std::memcmp(head.data(), "GIF8", 4) == 0 && tail[11] == 0x3B;
      break;
    case Encoder::Bmp:
      whole = head[0] == 'B' && head[1] == 'M' && little(2) == size;
      break;
    case Encoder::Tiff:
      // The directory is written after the pixels, so its offset proves that the file is complete.
      // A BigTIFF stores the offset elsewhere and is not checked further.
      whole = std::memcmp(head.data(), "II+\0", 4) == 0 ||
              (std::memcmp(head.data(), "II*\0", 4) == 0 && little(4) >= 8 && little(4) < size);
      break;
  }
  return whole ? Status::Ok() : fault::NotSaved();
}

}  // namespace quillon::imaging
