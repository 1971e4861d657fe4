// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "imaging/gif/gif_film.h"

#include <gif_lib.h>

#include <algorithm>
#include <array>
#include <cstring>

#include "imaging/little_files.h"

namespace quillon::imaging::testing {
namespace {

// Codes of one width, with a clear code before the width would grow.
std::string Uncompressed(const std::vector<unsigned char>& pixels, int codeBits) {
  const unsigned clear = 1U << codeBits;
  std::string data;
  unsigned bits = 0;
  int count = 0;
  const auto emit = [&](unsigned code) {
    bits |= code << count;
    for (count += codeBits + 1; count >= 8; count -= 8, bits >>= 8) data += static_cast<char>(bits);
  };
  for (std::size_t i = 0; i < pixels.size(); ++i) {
    if (i % (clear - 2) == 0) emit(clear);
    emit(pixels[i]);
  }
  emit(clear + 1);
  if (count > 0) data += static_cast<char>(bits);
  std::string out(1, static_cast<char>(codeBits));
  for (std::size_t at = 0; at < data.size(); at += 255) {
    const std::string block = data.substr(at, 255);
    out += Little(block.size(), 1) + block;
  }
  return out + std::string(1, '\0');
}

std::vector<unsigned char> Stored(const FilmFrame& frame) {
  if (!frame.interlaced) return frame.indices;
  std::vector<unsigned char> out;
  const auto width = static_cast<std::size_t>(frame.area.width);
  for (const auto& [start, step] : {std::pair{0, 8}, {4, 8}, {2, 4}, {1, 2}}) {
    for (int y = start; y < frame.area.height; y += step) {
      const auto row = frame.indices.begin() + static_cast<std::ptrdiff_t>(width) * y;
      out.insert(out.end(), row, row + static_cast<std::ptrdiff_t>(width));
    }
  }
  return out;
}

std::string Number(int value) { return Little(static_cast<unsigned long>(value), 2); }

int ReadFrom(GifFileType* file, GifByteType* out, int size) {
  auto& rest = *static_cast<std::string_view*>(file->UserData);
  const std::size_t count = std::min(rest.size(), static_cast<std::size_t>(size));
  std::memcpy(out, rest.data(), count);
  rest.remove_prefix(count);
  return static_cast<int>(count);
}

void Draw(const SavedImage& image, const GraphicsControlBlock& control, const ColorMapObject* colours,
          base::Size screen, std::vector<std::uint32_t>& canvas) {
  const GifImageDesc& area = image.ImageDesc;
  for (int y = 0; y < area.Height; ++y) {
    for (int x = 0; x < area.Width; ++x) {
      const int index = image.RasterBits[y * area.Width + x];
      const int left = area.Left + x;
      const int top = area.Top + y;
      if (index == control.TransparentColor || left >= screen.width || top >= screen.height) continue;
      const GifColorType colour = index < colours->ColorCount ? colours->Colors[index] : GifColorType{};
      canvas[static_cast<std::size_t>(top * screen.width + left)] = 0xFF000000U | colour.Red |
                                                                    static_cast<unsigned>(colour.Green) << 8 |
                                                                    static_cast<unsigned>(colour.Blue) << 16;
    }
  }
}

void Clear(const GifImageDesc& area, base::Size screen, std::vector<std::uint32_t>& canvas) {
  for (int y = area.Top; y < std::min(area.Top + area.Height, screen.height); ++y) {
    for (int x = area.Left; x < std::min(area.Left + area.Width, screen.width); ++x) {
      canvas[static_cast<std::size_t>(y * screen.width + x)] = 0;
    }
  }
}

std::string Text(const ExtensionBlock& block) {
  return {reinterpret_cast<const char*>(block.Bytes), static_cast<std::size_t>(block.ByteCount)};
}

void PlayFrames(GifFileType& file, Played& played) {
  std::vector<std::uint32_t> canvas(static_cast<std::size_t>(file.SWidth * file.SHeight), 0);
  for (int i = 0; i < file.ImageCount; ++i) {
    const SavedImage& image = file.SavedImages[i];
    GraphicsControlBlock control{0, false, 0, NO_TRANSPARENT_COLOR};
    DGifSavedExtensionToGCB(&file, i, &control);
    for (int e = 0; e < image.ExtensionBlockCount; ++e) {
      const ExtensionBlock& block = image.ExtensionBlocks[e];
      if (block.Function == COMMENT_EXT_FUNC_CODE) played.comments.push_back(Text(block));
      if (block.Function == APPLICATION_EXT_FUNC_CODE) played.applications.push_back(Text(block));
    }
    const std::vector<std::uint32_t> before = canvas;
    const ColorMapObject* colours = image.ImageDesc.ColorMap ? image.ImageDesc.ColorMap : file.SColorMap;
    Draw(image, control, colours, played.screen, canvas);
    played.frames.push_back({canvas, control.DelayTime, control.DisposalMode});
    if (control.DisposalMode == DISPOSE_BACKGROUND) Clear(image.ImageDesc, played.screen, canvas);
    if (control.DisposalMode == DISPOSE_PREVIOUS) canvas = before;
  }
}

int Pick(std::mt19937& random, int from, int to) { return std::uniform_int_distribution<int>(from, to)(random); }

FilmFrame RandomFrame(std::mt19937& random, base::Size screen, int screenBits) {
  FilmFrame frame;
  frame.area = {Pick(random, 0, screen.width + 2), Pick(random, 0, screen.height + 2),
                Pick(random, 1, screen.width + 4), Pick(random, 1, screen.height + 4)};
  frame.tableBits = screenBits == 0 || Pick(random, 0, 2) == 0 ? Pick(random, 1, 8) : 0;
  const int bits = frame.tableBits > 0 ? frame.tableBits : screenBits;
  frame.codeBits = std::clamp(bits + Pick(random, 0, 1), 2, 8);
  frame.interlaced = Pick(random, 0, 2) == 0;
  frame.control = Pick(random, 0, 4) > 0;
  frame.disposal = Pick(random, 0, 3);
  frame.delay = Pick(random, 0, 300);
  if (Pick(random, 0, 1) == 0) frame.transparent = Pick(random, 0, (1 << bits) - 1);
  const int pixels = frame.area.width * frame.area.height;
  while (static_cast<int>(frame.indices.size()) < pixels) {
    const auto index = static_cast<unsigned char>(Pick(random, 0, (1 << bits) - 1));
    const int run = std::min(Pick(random, 1, 9), pixels - static_cast<int>(frame.indices.size()));
    frame.indices.insert(frame.indices.end(), static_cast<std::size_t>(run), index);
  }
  return frame;
}

}  // namespace

std::string FilmTable(int bits, int number) {
  std::string table;
  for (int i = 0; i < 1 << bits; ++i) {
    table += Little(static_cast<unsigned long>(i * 37 + number * 11), 1) +
             Little(static_cast<unsigned long>(i * 91 + number), 1) + Little(static_cast<unsigned long>(i), 1);
  }
  return table;
}

FilmFrame PlainFrame(base::Rect area, unsigned char index, int delay) {
  FilmFrame frame{.area = area, .delay = delay};
  frame.indices.assign(static_cast<std::size_t>(area.width) * static_cast<std::size_t>(area.height), index);
  return frame;
}

std::string Application(const std::string& name, const std::string& part) {
  return "!\xFF" + Little(name.size(), 1) + name + Little(part.size(), 1) + part + Little(0, 1);
}

std::string Comment(const std::string& text) { return "!\xFE" + Little(text.size(), 1) + text + Little(0, 1); }

std::string FilmBytes(const FilmFrame& frame, int number) {
  std::string out;
  if (frame.control) {
    out += "!\xF9\4" + Little(static_cast<unsigned long>(frame.disposal << 2 | (frame.transparent >= 0 ? 1 : 0)), 1) +
           Number(frame.delay) + Little(static_cast<unsigned long>(std::max(frame.transparent, 0)), 1) + Little(0, 1);
  }
  out += "," + Number(frame.area.left) + Number(frame.area.top) + Number(frame.area.width) + Number(frame.area.height);
  out += Little(static_cast<unsigned long>((frame.tableBits > 0 ? 0x80 | (frame.tableBits - 1) : 0) |
                                           (frame.interlaced ? 0x40 : 0)),
                1);
  if (frame.tableBits > 0) out += FilmTable(frame.tableBits, number);
  return out + Uncompressed(Stored(frame), frame.codeBits);
}

std::string FilmBytes(const Film& film) {
  std::string out = "GIF89a" + Number(film.screen.width) + Number(film.screen.height);
  out += Little(static_cast<unsigned long>(film.tableBits > 0 ? 0xF0 | (film.tableBits - 1) : 0x70), 1) +
         Little(static_cast<unsigned long>(film.background), 1) + Little(0, 1);
  if (film.tableBits > 0) out += FilmTable(film.tableBits, 0);
  out += film.extensions;
  int number = 0;
  for (const FilmFrame& frame : film.frames) out += FilmBytes(frame, ++number);
  return out + film.end;
}

Film RandomFilm(std::mt19937& random) {
  Film film{.screen = {Pick(random, 1, 40), Pick(random, 1, 40)}, .tableBits = Pick(random, 0, 8)};
  film.background = film.tableBits > 0 ? Pick(random, 0, (1 << film.tableBits) - 1) : 0;
  const int frames = Pick(random, 1, 6);
  for (int i = 0; i < frames; ++i) film.frames.push_back(RandomFrame(random, film.screen, film.tableBits));
  return film;
}

std::optional<Played> Play(const std::string& bytes) {
  std::string_view rest = bytes;
  int error = 0;
  GifFileType* file = DGifOpen(&rest, ReadFrom, &error);
  if (!file) return std::nullopt;
  std::optional<Played> played;
  if (DGifSlurp(file) == GIF_OK) {
    played.emplace();
    played->screen = {file->SWidth, file->SHeight};
    PlayFrames(*file, *played);
  }
  DGifCloseFile(file, &error);
  return played;
}

}  // namespace quillon::imaging::testing
