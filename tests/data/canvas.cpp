// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "canvas.h"

#include <algorithm>
#include <cmath>

namespace quillon::samples {
namespace {

std::uint32_t Hash(std::uint32_t value) {
  value ^= value >> 16;
  value *= 0x7FEB352Du;
  value ^= value >> 15;
  value *= 0x846CA68Bu;
  return value ^ (value >> 16);
}

std::uint8_t Mix(std::uint8_t below, std::uint8_t above, double cover) {
  return static_cast<std::uint8_t>(std::lround(below + (above - below) * cover));
}

// Height of a ridge at x, -1..1: waves of falling size.
double Ridge(double x, unsigned seed) {
  double height = 0;
  double size = 0.5;
  double frequency = 3;
  for (unsigned i = 0; i < 6; ++i) {
    height += size * std::sin(x * frequency + 6.2832 * Canvas::Random(seed * 16 + i));
    size *= 0.5;
    frequency *= 2.1;
  }
  return height;
}

void PutNumber(std::vector<unsigned char>& out, std::size_t at, std::uint32_t value, int bytes) {
  for (int i = 0; i < bytes; ++i) out[at + static_cast<std::size_t>(i)] = static_cast<unsigned char>(value >> (8 * i));
}

}  // namespace

Canvas::Canvas(int width, int height, Pixel ground)
    : width_(width),
      height_(height),
      clear_(ground.alpha == 0),
      pixels_(static_cast<std::size_t>(width) * static_cast<std::size_t>(height), ground) {}

double Canvas::Random(unsigned seed) { return Hash(seed + 0x9E3779B9u) / 4294967296.0; }

void Canvas::Blend(int x, int y, Pixel colour, double cover) {
  if (x < 0 || y < 0 || x >= width_ || y >= height_ || cover <= 0) return;
  cover = std::min(cover, 1.0);
  Pixel& pixel = pixels_[static_cast<std::size_t>(y) * static_cast<std::size_t>(width_) + static_cast<std::size_t>(x)];
  // Over a clear pixel the colour stands alone and only its cover is mixed in.
  const double strength = pixel.alpha == 0 ? 1.0 : cover;
  pixel.red = Mix(pixel.red, colour.red, strength);
  pixel.green = Mix(pixel.green, colour.green, strength);
  pixel.blue = Mix(pixel.blue, colour.blue, strength);
  pixel.alpha = Mix(pixel.alpha, 255, cover);
}

void Canvas::Gradient(Pixel top, Pixel bottom) {
  for (int y = 0; y < height_; ++y) {
    const double part = height_ > 1 ? static_cast<double>(y) / (height_ - 1) : 0;
    const Pixel colour = {Mix(top.red, bottom.red, part), Mix(top.green, bottom.green, part),
                          Mix(top.blue, bottom.blue, part)};
    Box(0, y, width_, 1, colour);
  }
}

void Canvas::Ellipse(double x, double y, double radiusX, double radiusY, Pixel colour) {
  for (int row = static_cast<int>(y - radiusY) - 1; row <= y + radiusY + 1; ++row) {
    for (int column = static_cast<int>(x - radiusX) - 1; column <= x + radiusX + 1; ++column) {
      const double reach = std::hypot((column + 0.5 - x) / radiusX, (row + 0.5 - y) / radiusY);
      Blend(column, row, colour, (1 - reach) * std::min(radiusX, radiusY) + 0.5);
    }
  }
}

void Canvas::Glow(double x, double y, double radius, Pixel colour, double strength) {
  for (int row = static_cast<int>(y - radius); row <= y + radius; ++row) {
    for (int column = static_cast<int>(x - radius); column <= x + radius; ++column) {
      const double reach = std::hypot(column - x, row - y) / radius;
      Blend(column, row, colour, strength * (1 - reach * reach));
    }
  }
}

void Canvas::Box(int left, int top, int width, int height, Pixel colour) {
  for (int y = top; y < top + height; ++y) {
    for (int x = left; x < left + width; ++x) Blend(x, y, colour, 1);
  }
}

void Canvas::Hills(double level, double rise, Pixel colour, unsigned seed) {
  for (int x = 0; x < width_; ++x) {
    const double top = height_ * (level + rise * Ridge(static_cast<double>(x) / width_, seed));
    for (int y = static_cast<int>(top); y < height_; ++y) {
      // Slopes grow lighter downwards, as in haze.
      const double haze = 0.25 * (y - top) / height_;
      const Pixel shade = {Mix(colour.red, 255, haze), Mix(colour.green, 255, haze), Mix(colour.blue, 255, haze)};
      Blend(x, y, shade, y - top + 1);
    }
  }
}

void Canvas::Writing(int left, int top, int width, int size, Pixel colour, unsigned seed) {
  const int stroke = std::max(1, size / 10);
  unsigned mark = seed * 4096;
  for (int x = left; x + size <= left + width; x += size * 5 / 4) {
    if (Random(++mark) < 0.08) continue;  // a blank between words
    for (int i = 0; i < 3; ++i) {
      const int across = static_cast<int>(Random(++mark) * (size - stroke));
      const int down = static_cast<int>(Random(++mark) * (size - stroke));
      Box(x, top + across, size, stroke, colour);
      Box(x + down, top, stroke, size, colour);
    }
  }
}

void Canvas::Grain(int amount, unsigned seed) {
  std::uint32_t place = Hash(seed);
  const auto noisy = [&](std::uint8_t value) {
    const int shift = static_cast<int>(Hash(++place) % static_cast<std::uint32_t>(2 * amount + 1)) - amount;
    return static_cast<std::uint8_t>(std::clamp(value + shift, 0, 255));
  };
  for (Pixel& pixel : pixels_) {
    pixel.red = noisy(pixel.red);
    pixel.green = noisy(pixel.green);
    pixel.blue = noisy(pixel.blue);
  }
}

std::vector<unsigned char> Canvas::Bytes() const {
  std::vector<unsigned char> bytes;
  bytes.reserve(pixels_.size() * 4);
  for (const Pixel& pixel : pixels_) {
    bytes.insert(bytes.end(), {pixel.red, pixel.green, pixel.blue});
    if (clear_) bytes.push_back(pixel.alpha);
  }
  return bytes;
}

std::vector<unsigned char> Canvas::BmpBytes() const {
  constexpr std::size_t kHead = 54;
  const std::size_t width = static_cast<std::size_t>(width_);
  const std::size_t rowBytes = (width * 3 + 3) / 4 * 4;
  std::vector<unsigned char> bytes(kHead + rowBytes * static_cast<std::size_t>(height_));
  bytes[0] = 'B';
  bytes[1] = 'M';
  PutNumber(bytes, 2, static_cast<std::uint32_t>(bytes.size()), 4);
  PutNumber(bytes, 10, kHead, 4);
  PutNumber(bytes, 14, 40, 4);
  PutNumber(bytes, 18, static_cast<std::uint32_t>(width_), 4);
  PutNumber(bytes, 22, static_cast<std::uint32_t>(height_), 4);
  PutNumber(bytes, 26, 1, 2);
  PutNumber(bytes, 28, 24, 2);
  PutNumber(bytes, 38, 11811, 4);  // pixels a metre
  PutNumber(bytes, 42, 11811, 4);
  for (std::size_t y = 0; y < static_cast<std::size_t>(height_); ++y) {
    unsigned char* row = bytes.data() + kHead + (static_cast<std::size_t>(height_) - 1 - y) * rowBytes;
    for (std::size_t x = 0; x < width; ++x) {
      const Pixel& pixel = pixels_[y * width + x];
      row[x * 3] = pixel.blue;
      row[x * 3 + 1] = pixel.green;
      row[x * 3 + 2] = pixel.red;
    }
  }
  return bytes;
}

}  // namespace quillon::samples
