// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "imaging/pixels/resample.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <limits>
#include <memory>
#include <type_traits>

#include "imaging/rows/lanczos.h"

// The resampling runs as two custom libvips operations, Down (rows) and Across (columns), and the rotation as one
// (TurnStep). Each is a Step: it owns its source image and fills one region of its result at a time, so any part of a
// huge picture can be computed without the rest. Down writes floats, so that the value of a sample is rounded only
// once, by Across.
namespace quillon::imaging {
namespace {

using vips::VImage;

constexpr int kBandsMax = 4;
constexpr int kRowsAtOnce = 16;

template <class Sample>
Sample Rounded(float value) {
  if constexpr (std::is_floating_point_v<Sample>) {
    return value;
  } else {
    constexpr float kMost = std::numeric_limits<Sample>::max();
    const float raised = std::clamp(value, 0.0F, kMost) + 0.5F;
    return static_cast<Sample>(raised);
  }
}

// An operation of a pipeline. The object lives as long as the image that it computes.
struct Step {
  explicit Step(const VImage& from) : source(from) {}
  Step(const Step&) = delete;
  Step& operator=(const Step&) = delete;
  virtual ~Step() = default;
  // Computes the valid area of out from a region of the source. Returns 0, or -1 after an error.
  virtual int Fill(VipsRegion* out, VipsRegion* in) const = 0;

  VImage source;
};

int Generate(VipsRegion* out, void* in, void*, void* step, gboolean*) {
  return static_cast<const Step*>(step)->Fill(out, static_cast<VipsRegion*>(in));
}

VImage ImageOf(std::unique_ptr<Step> step, base::Size size, VipsBandFormat format, VipsDemandStyle style) {
  VipsImage* from = step->source.get_image();
  VImage image(vips_image_new());
  VipsImage* made = image.get_image();
  if (vips_image_pipelinev(made, style, from, nullptr) != 0) throw vips::VError();
  made->Xsize = size.width;
  made->Ysize = size.height;
  made->BandFmt = format;
  Step* kept = step.release();
  g_object_set_data_full(G_OBJECT(made), "quillon-step", kept, [](gpointer data) { delete static_cast<Step*>(data); });
  if (vips_image_generate(made, vips_start_one, Generate, vips_stop_one, from, kept) != 0) throw vips::VError();
  return image;
}

// Computes rows of floats, each the weighted sum of source rows.
template <class Sample>
struct Down : Step {
  Down(const VImage& from, int height) : Step(from), axis(from.height(), height) {}

  int Fill(VipsRegion* out, VipsRegion* in) const override {
    const VipsRect& area = out->valid;
    const LanczosAxis::Taps top = axis.At(area.top);
    const LanczosAxis::Taps last = axis.At(area.top + area.height - 1);
    const VipsRect needed{area.left, top.first, area.width, last.first + last.count - top.first};
    if (vips_region_prepare(in, &needed) != 0) return -1;
    const int samples = area.width * out->im->Bands;
    for (int y = area.top; y < area.top + area.height; ++y) {
      auto* to = reinterpret_cast<float*>(VIPS_REGION_ADDR(out, area.left, y));
      std::fill_n(to, samples, 0.0F);
      const LanczosAxis::Taps taps = axis.At(y);
      for (int k = 0; k < taps.count; ++k) {
        const auto* row = reinterpret_cast<const Sample*>(VIPS_REGION_ADDR(in, area.left, taps.first + k));
        const float weight = taps.weights[k];
        for (int x = 0; x < samples; ++x) to[x] += weight * static_cast<float>(row[x]);
      }
    }
    return 0;
  }

  LanczosAxis axis;
};

// Computes columns, each the weighted sum of the columns of the source row, which is in floats.
template <class Sample>
struct Across : Step {
  Across(const VImage& from, int width) : Step(from), axis(from.width(), width) {}

  int Fill(VipsRegion* out, VipsRegion* in) const override {
    const VipsRect& area = out->valid;
    const LanczosAxis::Taps left = axis.At(area.left);
    const LanczosAxis::Taps last = axis.At(area.left + area.width - 1);
    const VipsRect needed{left.first, area.top, last.first + last.count - left.first, area.height};
    if (vips_region_prepare(in, &needed) != 0) return -1;
    switch (out->im->Bands) {
      case 1:
        return Rows<1>(out, in);
      case 2:
        return Rows<2>(out, in);
      case 3:
        return Rows<3>(out, in);
      default:
        return Rows<4>(out, in);
    }
  }

  template <int kBands>
  int Rows(VipsRegion* out, VipsRegion* in) const {
    const VipsRect& area = out->valid;
    for (int y = area.top; y < area.top + area.height; ++y) {
      auto* to = reinterpret_cast<Sample*>(VIPS_REGION_ADDR(out, area.left, y));
      const auto* row = reinterpret_cast<const float*>(VIPS_REGION_ADDR(in, in->valid.left, y));
      for (int x = area.left; x < area.left + area.width; ++x) {
        const LanczosAxis::Taps taps = axis.At(x);
        const float* from = row + static_cast<std::ptrdiff_t>(taps.first - in->valid.left) * kBands;
        std::array<float, kBands> sums{};
        for (int k = 0; k < taps.count; ++k, from += kBands) {
          for (int b = 0; b < kBands; ++b) sums[b] += taps.weights[k] * from[b];
        }
        for (int b = 0; b < kBands; ++b) *to++ = Rounded<Sample>(sums[b]);
      }
    }
    return 0;
  }

  LanczosAxis axis;
};

template <class Sample>
VImage ScaledAs(const VImage& pixels, base::Size size) {
  VImage rows = ImageOf(std::make_unique<Down<Sample>>(pixels, size.height), {pixels.width(), size.height},
                        VIPS_FORMAT_FLOAT, VIPS_DEMAND_STYLE_THINSTRIP);
  // libvips computes strips on several threads and would request source rows out of order.
  if (rows.get_typeof(VIPS_META_SEQUENTIAL) != 0) {
    rows = rows.sequential(VImage::option()->set("tile_height", kRowsAtOnce));
  }
  return ImageOf(std::make_unique<Across<Sample>>(rows, size.width), size, pixels.format(),
                 VIPS_DEMAND_STYLE_THINSTRIP);
}

// Weights of the six samples around a position between two samples, tabulated for 2048 positions. The step is so fine
// that its error disappears in the rounding of the samples.
class Weights {
 public:
  static constexpr int kTaps = 6;

  Weights() {
    for (int i = 0; i <= kSteps; ++i) {
      double sum = 0;
      std::array<double, kTaps> exact{};
      for (int k = 0; k < kTaps; ++k) sum += exact[k] = Lanczos(k - 2 - static_cast<double>(i) / kSteps);
      for (int k = 0; k < kTaps; ++k) table_[i][k] = static_cast<float>(exact[k] / sum);
    }
  }

  const float* At(double fraction) const {
    const double raised = fraction * kSteps + 0.5;
    return table_[static_cast<int>(raised)].data();
  }

 private:
  static constexpr int kSteps = 2048;
  std::array<std::array<float, kTaps>, kSteps + 1> table_{};
};

// Computes a rotated canvas: each pixel is mapped back to the source and interpolated there.
template <class Sample>
struct TurnStep : Step {
  TurnStep(const VImage& from, double radians, base::Size canvas, const std::vector<double>& outside)
      : Step(from),
        cosine(std::cos(radians)),
        sine(std::sin(radians)),
        middleX((canvas.width - 1) / 2.0),
        middleY((canvas.height - 1) / 2.0),
        sourceX((from.width() - 1) / 2.0),
        sourceY((from.height() - 1) / 2.0) {
    for (std::size_t b = 0; b < kBandsMax; ++b) background[b] = static_cast<float>(outside[b % outside.size()]);
  }

  struct Point {
    double x;
    double y;
  };

  // Maps a canvas pixel to the source. Rows count downwards, so this rotates clockwise to the eye.
  // Pixel centres lie at integer coordinates.
  Point SourceOf(int x, int y) const {
    const double dx = x - middleX;
    const double dy = y - middleY;
    return {sourceX + cosine * dx - sine * dy, sourceY + sine * dx + cosine * dy};
  }

  // Returns the part of the source that an area of the canvas depends on, including all taps, clamped to the source.
  VipsRect Needed(const VipsRect& area) const {
    const int right = area.left + area.width - 1;
    const int bottom = area.top + area.height - 1;
    const Point corners[] = {SourceOf(area.left, area.top), SourceOf(right, area.top), SourceOf(area.left, bottom),
                             SourceOf(right, bottom)};
    const auto [left, rightmost] = std::minmax({corners[0].x, corners[1].x, corners[2].x, corners[3].x});
    const auto [top, lowest] = std::minmax({corners[0].y, corners[1].y, corners[2].y, corners[3].y});
    const auto inside = [](double at, int size) { return static_cast<int>(std::clamp(at, 0.0, size - 1.0)); };
    const int x = inside(std::floor(left) - 3, source.width());
    const int y = inside(std::floor(top) - 3, source.height());
    return {x, y, inside(std::ceil(rightmost) + 3, source.width()) - x + 1,
            inside(std::ceil(lowest) + 3, source.height()) - y + 1};
  }

  // Returns the share, 0 to 1, of a canvas pixel that lies on the source along one axis.
  static float Covered(double at, int size) {
    return static_cast<float>(std::clamp(std::min(at + 1, size - at), 0.0, 1.0));
  }

  int Fill(VipsRegion* out, VipsRegion* in) const override {
    const VipsRect& area = out->valid;
    const VipsRect needed = Needed(area);
    if (vips_region_prepare(in, &needed) != 0) return -1;
    const int bands = out->im->Bands;
    for (int y = area.top; y < area.top + area.height; ++y) {
      auto* to = reinterpret_cast<Sample*>(VIPS_REGION_ADDR(out, area.left, y));
      for (int x = area.left; x < area.left + area.width; ++x, to += bands) Pixel(SourceOf(x, y), in, bands, to);
    }
    return 0;
  }

  void Pixel(Point at, VipsRegion* in, int bands, Sample* to) const {
    const float covered = Covered(at.x, source.width()) * Covered(at.y, source.height());
    std::array<float, kBandsMax> sums{};
    if (covered > 0) Interpolate(at, in, bands, sums);
    for (int b = 0; b < bands; ++b) to[b] = Rounded<Sample>(background[b] + (sums[b] - background[b]) * covered);
  }

  void Interpolate(Point at, VipsRegion* in, int bands, std::array<float, kBandsMax>& sums) const {
    const double left = std::floor(at.x);
    const double top = std::floor(at.y);
    const float* across = weights.At(at.x - left);
    const float* down = weights.At(at.y - top);
    std::array<int, Weights::kTaps> columns{};
    for (int k = 0; k < Weights::kTaps; ++k) {
      columns[k] = (std::clamp(static_cast<int>(left) + k - 2, 0, source.width() - 1) - in->valid.left) * bands;
    }
    for (int j = 0; j < Weights::kTaps; ++j) {
      const int y = std::clamp(static_cast<int>(top) + j - 2, 0, source.height() - 1);
      const auto* row = reinterpret_cast<const Sample*>(VIPS_REGION_ADDR(in, in->valid.left, y));
      for (int b = 0; b < bands; ++b) {
        float sum = 0;
        for (int k = 0; k < Weights::kTaps; ++k) sum += across[k] * static_cast<float>(row[columns[k] + b]);
        sums[b] += down[j] * sum;
      }
    }
  }

  double cosine;
  double sine;
  double middleX;
  double middleY;
  double sourceX;
  double sourceY;
  std::array<float, kBandsMax> background{};
  Weights weights;
};

// Calls work with a value of the sample type of the pixels, from which it deduces its template argument.
template <class Work>
VImage BySample(const VImage& pixels, Work work) {
  switch (pixels.format()) {
    case VIPS_FORMAT_UCHAR:
      return work(static_cast<unsigned char>(0));
    case VIPS_FORMAT_USHORT:
      return work(static_cast<unsigned short>(0));
    default:
      return work(0.0F);
  }
}

}  // namespace

// The kernel holds 6 x factor rows at once. Averaging blocks first bounds that at no visible loss.
VImage LanczosScaled(const VImage& pixels, base::Size size) {
  constexpr int kMostByKernel = 16;
  const int across = std::max(1, pixels.width() / size.width / kMostByKernel);
  const int down = std::max(1, pixels.height() / size.height / kMostByKernel);
  const VImage reduced = across > 1 || down > 1 ? pixels.shrink(across, down) : pixels;
  return BySample(reduced, [&](auto sample) { return ScaledAs<decltype(sample)>(reduced, size); });
}

VImage LanczosTurned(const VImage& pixels, double radians, base::Size canvas, const std::vector<double>& background) {
  return BySample(pixels, [&](auto sample) {
    return ImageOf(std::make_unique<TurnStep<decltype(sample)>>(pixels, radians, canvas, background), canvas,
                   pixels.format(), VIPS_DEMAND_STYLE_SMALLTILE);
  });
}

}  // namespace quillon::imaging
