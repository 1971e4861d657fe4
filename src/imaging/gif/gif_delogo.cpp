// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
//
// A player draws each frame on what the frames before it have left. Only a part of that canvas is needed here: the
// region and the ring of pixels around it (RingCanvas). A frame that touches the region is drawn there, the region is
// interpolated from the ring, and the interpolated colours are stored in the frame itself (FramePalette). The canvas
// keeps the source's own pixels, so that errors do not add up over the frames.
#include "imaging/gif/gif_delogo.h"

#include <algorithm>
#include <array>
#include <bit>
#include <bitset>
#include <cmath>
#include <limits>
#include <memory>
#include <optional>
#include <string>
#include <unordered_map>
#include <vector>

#include "imaging/faults.h"
#include "imaging/gif/gif_reader.h"
#include "imaging/gif/gif_writer.h"

namespace quillon::imaging {
namespace {

constexpr std::size_t kColours = 256;

struct Pixel {
  std::array<unsigned char, 3> rgb{};
  bool opaque = false;
};

Pixel ColourOf(const GifTable& table, int index) {
  Pixel pixel{.opaque = true};
  const auto at = static_cast<std::size_t>(index) * 3;
  if (at + 3 <= table.rgb.size())
    std::copy_n(table.rgb.begin() + static_cast<std::ptrdiff_t>(at), 3, pixel.rgb.begin());
  return pixel;
}

// The pixels of a part of the screen as a player shows them.
class RingCanvas {
 public:
  explicit RingCanvas(base::Rect area)
      : area_(area), pixels_(static_cast<std::size_t>(area.width) * static_cast<std::size_t>(area.height)) {}

  const base::Rect& Area() const { return area_; }
  // x and y are in pixels of the screen.
  Pixel& At(int x, int y) {
    return pixels_[static_cast<std::size_t>(y - area_.top) * static_cast<std::size_t>(area_.width) +
                   static_cast<std::size_t>(x - area_.left)];
  }

  // Draws a frame, after the one before it was disposed of. indices are those of its part in Area().
  void Draw(const GifFrame& frame, const GifTable& table, const std::vector<unsigned char>& indices) {
    Dispose();
    last_ = Intersection(frame.area, area_);
    disposal_ = frame.control ? frame.control->Disposal() : GifDisposal::Unspecified;
    if (disposal_ == GifDisposal::Previous) before_ = pixels_;
    const int transparent = frame.control ? frame.control->Transparent().value_or(-1) : -1;
    std::size_t next = 0;
    for (int y = last_.top; y < last_.top + last_.height; ++y) {
      for (int x = last_.left; x < last_.left + last_.width; ++x, ++next) {
        if (indices[next] != transparent) At(x, y) = ColourOf(table, indices[next]);
      }
    }
  }

 private:
  void Dispose() {
    if (disposal_ == GifDisposal::Previous) pixels_ = before_;
    if (disposal_ != GifDisposal::Background) return;
    for (int y = last_.top; y < last_.top + last_.height; ++y) {
      for (int x = last_.left; x < last_.left + last_.width; ++x) At(x, y) = {};
    }
  }

  base::Rect area_;
  std::vector<Pixel> pixels_;
  std::vector<Pixel> before_;
  base::Rect last_;
  GifDisposal disposal_ = GifDisposal::Unspecified;
};

// Mixes colours by weights.
class Mixture {
 public:
  void Add(const Pixel& pixel, int distance) {
    if (!pixel.opaque) return;
    const double weight = 1.0 / distance;
    for (std::size_t i = 0; i < 3; ++i) sum_[i] += weight * pixel.rgb[i];
    weight_ += weight;
  }
  Pixel Result() const {
    Pixel pixel{.opaque = weight_ > 0};
    for (std::size_t i = 0; pixel.opaque && i < 3; ++i)
      pixel.rgb[i] = static_cast<unsigned char>(std::lround(sum_[i] / weight_));
    return pixel;
  }

 private:
  std::array<double, 3> sum_{};
  double weight_ = 0;
};

// Returns the colour of a pixel of region, from the ring around it; not opaque if the ring has no colour.
Pixel Interpolated(RingCanvas& canvas, base::Rect region, int x, int y) {
  const base::Rect& ring = canvas.Area();
  const int right = region.left + region.width;
  const int bottom = region.top + region.height;
  Mixture mixture;
  if (ring.left < region.left) mixture.Add(canvas.At(region.left - 1, y), x - region.left + 1);
  if (ring.left + ring.width > right) mixture.Add(canvas.At(right, y), right - x);
  if (ring.top < region.top) mixture.Add(canvas.At(x, region.top - 1), y - region.top + 1);
  if (ring.top + ring.height > bottom) mixture.Add(canvas.At(x, bottom), bottom - y);
  return mixture.Result();
}

// The table of a frame that gets new colours. Those that look alike, with the same upper five bits, count as one.
class FramePalette {
 public:
  // used are the indices that must stay as they are; transparent, or -1, is never given to a colour.
  FramePalette(const GifTable& table, const std::bitset<kColours>& used, int transparent)
      : table_(table), used_(used), transparent_(transparent) {
    if (transparent >= 0) used_.set(static_cast<std::size_t>(transparent));
    table_.sorted = false;
    table_.rgb.resize(kColours * 3);
  }

  void Count(const Pixel& pixel) {
    Bucket& bucket = buckets_[KeyOf(pixel)];
    ++bucket.count;
    for (std::size_t i = 0; i < 3; ++i) bucket.sum[i] += pixel.rgb[i];
  }

  // Gives free entries to the colours that were counted, those of most pixels first, and finds an entry for each.
  void Assign() {
    std::vector<Bucket*> order;
    for (auto& [key, bucket] : buckets_) order.push_back(&bucket);
    std::sort(order.begin(), order.end(), [](const Bucket* a, const Bucket* b) {
      return a->count != b->count ? a->count > b->count : a->sum > b->sum;
    });
    std::size_t free = 0;
    for (Bucket* bucket : order) {
      while (free < kColours && used_[free]) ++free;
      if (free == kColours) {
        bucket->index = Nearest(bucket->Mean());
        continue;
      }
      bucket->index = static_cast<unsigned char>(free);
      used_.set(free);
      const auto mean = bucket->Mean();
      std::copy(mean.begin(), mean.end(), table_.rgb.begin() + static_cast<std::ptrdiff_t>(free * 3));
    }
  }

  unsigned char IndexOf(const Pixel& pixel) { return buckets_[KeyOf(pixel)].index; }
  const GifTable& Table() const { return table_; }

 private:
  struct Bucket {
    std::uint64_t count = 0;
    std::array<std::uint64_t, 3> sum{};
    unsigned char index = 0;

    std::array<unsigned char, 3> Mean() const {
      std::array<unsigned char, 3> mean{};
      for (std::size_t i = 0; i < 3; ++i) mean[i] = static_cast<unsigned char>((sum[i] + count / 2) / count);
      return mean;
    }
  };

  static int KeyOf(const Pixel& pixel) {
    return (pixel.rgb[0] >> 3) << 10 | (pixel.rgb[1] >> 3) << 5 | pixel.rgb[2] >> 3;
  }

  unsigned char Nearest(const std::array<unsigned char, 3>& wanted) const {
    int best = 0;
    int least = std::numeric_limits<int>::max();
    for (int index = 0; index < static_cast<int>(kColours); ++index) {
      if (index == transparent_) continue;
      const Pixel entry = ColourOf(table_, index);
      int distance = 0;
      for (std::size_t i = 0; i < 3; ++i) distance += (entry.rgb[i] - wanted[i]) * (entry.rgb[i] - wanted[i]);
      if (distance >= least) continue;
      least = distance;
      best = index;
    }
    return static_cast<unsigned char>(best);
  }

  GifTable table_;
  std::bitset<kColours> used_;
  int transparent_;
  std::unordered_map<int, Bucket> buckets_;
};

// Returns the last index that no pixel uses.
std::optional<int> LastFree(const std::bitset<kColours>& used) {
  for (int index = static_cast<int>(kColours) - 1; index >= 0; --index) {
    if (!used[static_cast<std::size_t>(index)]) return index;
  }
  return std::nullopt;
}

Status NoColourLeft(int frame) {
  return {host::Problem::Unsupported,
          "GIF 第 " + std::to_string(frame) + " 帧的图标周围没有颜色，颜色表也没有空位，去不掉图标"};
}

class LogoRemover {
 public:
  LogoRemover(GifReader& reader, base::Rect region, base::Rect ring, const ByteSink& sink)
      : reader_(reader), region_(region), canvas_(ring), writer_(sink) {}

  Status Run() {
    if (Status written = writer_.WriteScreen(reader_.Screen(), reader_.Screen().size); !written) return written;
    for (;;) {
      GifReader::Block block{};
      if (Status next = reader_.Next(block); !next) return next;
      if (block == GifReader::Block::End) return writer_.Finish();
      const Status done = block == GifReader::Block::Frame ? PassFrame() : writer_.CopyExtension(reader_);
      if (!done) return done;
    }
  }

 private:
  Status PassFrame() {
    const bool touches = !Intersection(reader_.Frame().area, region_).Empty();
    return touches ? PaintFrame() : CopyFrame();
  }

  const GifTable& Table() const {
    return reader_.Frame().table.rgb.empty() ? reader_.Screen().table : reader_.Frame().table;
  }

  // The pixels of the ring are kept on the way.
  Status CopyFrame() {
    const GifFrame& frame = reader_.Frame();
    const base::Rect seen = Intersection(frame.area, canvas_.Area());
    const auto width = static_cast<std::size_t>(seen.width);
    ring_.resize(width * static_cast<std::size_t>(seen.height));
    pixels_.resize(static_cast<std::size_t>(frame.area.width));
    if (Status begun = writer_.BeginFrame(frame); !begun) return begun;
    GifRowOrder order(frame.area.height, frame.interlaced);
    for (int count = 0; count < frame.area.height && !frame.area.Empty(); ++count) {
      if (Status read = reader_.ReadRow(pixels_.data()); !read) return read;
      if (Status written = writer_.WriteRow(pixels_.data(), frame.area.width); !written) return written;
      const int y = order.Next() + frame.area.top - seen.top;
      if (y < 0 || y >= seen.height) continue;
      std::copy_n(pixels_.begin() + (seen.left - frame.area.left), width,
                  ring_.begin() + static_cast<std::ptrdiff_t>(width) * y);
    }
    canvas_.Draw(frame, Table(), ring_);
    return writer_.EndFrame();
  }

  Status PaintFrame() {
    const GifFrame& frame = reader_.Frame();
    if (Status read = reader_.ReadPart({0, 0, frame.area.width, frame.area.height}, pixels_); !read) return read;
    const base::Rect seen = Intersection(frame.area, canvas_.Area());
    ring_.clear();
    for (int y = seen.top; y < seen.top + seen.height; ++y) {
      const auto row = pixels_.begin() + static_cast<std::ptrdiff_t>(Offset(seen.left, y));
      ring_.insert(ring_.end(), row, row + seen.width);
    }
    canvas_.Draw(frame, Table(), ring_);
    GifFrame painted = frame;
    painted.interlaced = false;
    painted.codeBits = std::bit_width(kColours - 1);
    if (Status done = Paint(painted); !done) return done;
    if (Status begun = writer_.BeginFrame(painted); !begun) return begun;
    for (std::size_t at = 0; at < pixels_.size(); at += static_cast<std::size_t>(frame.area.width)) {
      if (Status written = writer_.WriteRow(&pixels_[at], frame.area.width); !written) return written;
    }
    return writer_.EndFrame();
  }

  // Replaces the pixels of the region, and the table of the frame. Pixels for which the ring has no colour become
  // transparent; what lies below them was painted in an earlier frame.
  Status Paint(GifFrame& painted) {
    const base::Rect part = Intersection(painted.area, region_);
    const std::vector<Pixel> colours = ColoursFor(part);
    std::bitset<kColours> used = UsedOutside(part);
    std::optional<int> transparent = painted.control ? painted.control->Transparent() : std::nullopt;
    const bool leavesHoles = std::any_of(colours.begin(), colours.end(), [](const Pixel& p) { return !p.opaque; });
    if (leavesHoles && !transparent) {
      transparent = LastFree(used);
      if (!transparent) return NoColourLeft(painted.number);
      if (!painted.control) painted.control.emplace();
      painted.control->SetTransparent(static_cast<unsigned char>(*transparent));
    }
    FramePalette palette(Table(), used, transparent.value_or(-1));
    for (const Pixel& colour : colours) {
      if (colour.opaque) palette.Count(colour);
    }
    palette.Assign();
    auto colour = colours.begin();
    for (int y = part.top; y < part.top + part.height; ++y) {
      for (int x = part.left; x < part.left + part.width; ++x, ++colour) {
        pixels_[Offset(x, y)] = colour->opaque ? palette.IndexOf(*colour) : static_cast<unsigned char>(*transparent);
      }
    }
    painted.table = palette.Table();
    return Status::Ok();
  }

  std::vector<Pixel> ColoursFor(base::Rect part) {
    std::vector<Pixel> colours;
    for (int y = part.top; y < part.top + part.height; ++y) {
      for (int x = part.left; x < part.left + part.width; ++x) colours.push_back(Interpolated(canvas_, region_, x, y));
    }
    return colours;
  }

  std::bitset<kColours> UsedOutside(base::Rect part) const {
    const base::Rect& area = reader_.Frame().area;
    std::bitset<kColours> used;
    for (int y = area.top; y < area.top + area.height; ++y) {
      for (int x = area.left; x < area.left + area.width; ++x) {
        const bool inside = x >= part.left && x < part.left + part.width && y >= part.top && y < part.top + part.height;
        if (!inside) used.set(pixels_[Offset(x, y)]);
      }
    }
    return used;
  }

  // Returns the place in pixels_ of a pixel of the screen that lies in the frame.
  std::size_t Offset(int x, int y) const {
    const base::Rect& area = reader_.Frame().area;
    return static_cast<std::size_t>(y - area.top) * static_cast<std::size_t>(area.width) +
           static_cast<std::size_t>(x - area.left);
  }

  GifReader& reader_;
  base::Rect region_;
  RingCanvas canvas_;
  GifWriter writer_;
  std::vector<unsigned char> pixels_;  // of the frame, or one row of it
  std::vector<unsigned char> ring_;    // of the part of the frame on the canvas
};

}  // namespace

Status RemoveLogo(Bytes& bytes, base::Rect region, const Limits& limits, const ByteSink& sink) {
  std::unique_ptr<GifReader> reader;
  if (Status opened = GifReader::Open(bytes, limits, reader); !opened) return opened;
  const base::Rect screen{0, 0, reader->Screen().size.width, reader->Screen().size.height};
  const base::Rect visible = Intersection(region, screen);
  if (visible.Empty()) return fault::EmptyRectangle();
  if (visible == screen) return {host::Problem::Other, "要去掉的图标占满了整个画面"};
  const base::Rect ring =
      Intersection({visible.left - 1, visible.top - 1, visible.width + 2, visible.height + 2}, screen);
  if (IsLarge(ring.width, ring.height, limits)) return fault::OutOfMemory();
  return LogoRemover(*reader, visible, ring, sink).Run();
}

}  // namespace quillon::imaging
