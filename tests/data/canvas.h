// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstdint>
#include <vector>

namespace quillon::samples {

struct Pixel {
  std::uint8_t red = 0;
  std::uint8_t green = 0;
  std::uint8_t blue = 0;
  std::uint8_t alpha = 255;
};

// A picture to draw on. Positions and lengths are pixels from the left upper corner; what lies outside is not drawn.
// Everything random is a hash of its seed and place, so that a picture is the same at each run.
class Canvas {
 public:
  Canvas(int width, int height, Pixel ground);

  int Width() const { return width_; }
  int Height() const { return height_; }
  // True when the ground is transparent.
  bool Clear() const { return clear_; }

  // From the top colour to the bottom colour.
  void Gradient(Pixel top, Pixel bottom);
  // Filled shapes with an edge softened over one pixel.
  void Ellipse(double x, double y, double radiusX, double radiusY, Pixel colour);
  void Disc(double x, double y, double radius, Pixel colour) { Ellipse(x, y, radius, radius, colour); }
  // A disc of light that fades to its edge; strength 0..1 at the centre.
  void Glow(double x, double y, double radius, Pixel colour, double strength);
  void Box(int left, int top, int width, int height, Pixel colour);
  // A ridge filled down to the bottom edge; level and rise are parts of the height.
  void Hills(double level, double rise, Pixel colour, unsigned seed);
  // One line of strokes that look like square characters from afar.
  void Writing(int left, int top, int width, int size, Pixel colour, unsigned seed);
  // Noise of up to amount in either direction on each colour.
  void Grain(int amount, unsigned seed);

  // 0 up to 1, by the seed alone.
  static double Random(unsigned seed);

  // Rows from the top, three bytes a pixel, or four if the ground is clear.
  std::vector<unsigned char> Bytes() const;
  // A whole BMP file of 24 bits at 300 dots per inch.
  std::vector<unsigned char> BmpBytes() const;

 private:
  void Blend(int x, int y, Pixel colour, double cover);

  int width_;
  int height_;
  bool clear_;
  std::vector<Pixel> pixels_;
};

}  // namespace quillon::samples
