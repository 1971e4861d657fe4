// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <string>
#include <utility>
#include <vector>

#include "base/rect.h"

// JPEG files made and read with plain libjpeg calls, as the reference that the JPEG path is compared with.
namespace quillon::imaging::testing {

enum class Colours { Grey, YCbCr, Rgb, Cmyk, AdobeCmyk, Ycck };

// Samples of a picture, interleaved, in its own colour space.
struct Pixels {
  base::Size size;
  int components = 0;
  std::vector<unsigned char> samples;

  int At(int x, int y, int component) const {
    return samples[(static_cast<std::size_t>(y) * static_cast<std::size_t>(size.width) + static_cast<std::size_t>(x)) *
                       static_cast<std::size_t>(components) +
                   static_cast<std::size_t>(component)];
  }
  bool operator==(const Pixels&) const = default;
};

// Hundreds: progressive, each coefficient of each component in two scans of its own, which are 380 for three
// components.
enum class Scans { One, Progressive, PerComponent, Hundreds };

struct MakeOptions {
  Colours colours = Colours::YCbCr;
  std::pair<int, int> luma = {2, 2};  // sampling factors of Y (and K); the others have 1, 1
  int quality = 95;
  Scans scans = Scans::One;
  bool arithmetic = false;
  int restartRows = 0;
  int densityUnit = 0;
  int density = 1;
  bool jfif = true;
  std::vector<std::pair<int, std::string>> segments;  // marker, payload
};

int ComponentsOf(Colours colours);

// Smooth waves with an edge, different in every component, so that any shift or mix-up of neighbours shows.
Pixels TestPicture(base::Size size, Colours colours);

std::string MakeJpeg(const Pixels& pixels, const MakeOptions& options);

// What a reader finds in a file.
struct ReadResult {
  Pixels pixels;
  int colourSpace = 0;  // J_COLOR_SPACE of the file
  std::vector<std::pair<int, int>> sampling;
  bool jfif = false;
  bool adobe = false;
  int densityUnit = 0;
  int densityX = 0;
  int densityY = 0;
  int warnings = 0;
  std::vector<std::pair<int, std::string>> segments;  // APP1 and APP2
};

// Decodes the whole file without colour conversion; throws std::runtime_error.
ReadResult ReadJpeg(const std::string& bytes);

// A component as it is stored, with the samples that fill up its last blocks.
struct Plane {
  base::Size size;    // of the picture's own samples
  base::Size padded;  // of all samples
  std::vector<unsigned char> samples;

  int At(int x, int y) const {
    return samples[static_cast<std::size_t>(y) * static_cast<std::size_t>(padded.width) + static_cast<std::size_t>(x)];
  }
};

// Decodes the components without upsampling.
std::vector<Plane> ReadPlanes(const std::string& bytes);

// Encodes components as they are, sampled as options say; padded has to be whole blocks.
std::string MakeJpegOfPlanes(base::Size size, const std::vector<Plane>& planes, const MakeOptions& options);

// Returns the rectangle; pixels outside the picture get the given white.
Pixels CutPixels(const Pixels& whole, base::Rect rect, const std::vector<int>& white);

}  // namespace quillon::imaging::testing
