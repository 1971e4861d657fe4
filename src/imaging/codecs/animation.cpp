// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "imaging/codecs/animation.h"

#include <cstring>

#include "imaging/codecs/encode.h"
#include "imaging/codecs/open_picture.h"
#include "imaging/limits.h"
#include "imaging/pixels/colours.h"
#include "imaging/pixels/draft_target.h"
#include "imaging/pixels/geometry.h"
#include "imaging/pixels/picture.h"
#include "imaging/pixels/row_image.h"

namespace quillon::imaging {
namespace {

using vips::VImage;

constexpr int kSide = 65535;
constexpr int kBands = 4;

// Presents the frames as one tall picture, which is how libvips saves an animation. Each frame is decoded when its
// first row is requested.
class FrameRows : public RowStream {
 public:
  FrameRows(const host::Files& files, const std::vector<Frame>& frames, base::Size canvas, const Limits& limits,
            const std::function<void(int)>& done)
      : files_(files), frames_(frames), canvas_(canvas), limits_(limits), done_(done) {
    facts_.size = {canvas.width, canvas.height * static_cast<int>(frames.size())};
    facts_.alpha = true;
  }

  const RowFacts& Facts() const override { return facts_; }

  Status ReadRow(unsigned char* out) override {
    const int row = next_ % canvas_.height;
    if (row == 0) {
      if (Status status = LoadFrame(static_cast<std::size_t>(next_ / canvas_.height)); !status) return status;
    }
    const std::size_t size = static_cast<std::size_t>(canvas_.width) * kBands;
    std::memcpy(out, pixels_.data() + static_cast<std::size_t>(row) * size, size);
    ++next_;
    return Status::Ok();
  }

 private:
  Status LoadFrame(std::size_t number) {
    done_(static_cast<int>(number));
    OpenedPicture opened;
    const Status status = Guarded(fault::DamagedPicture(), [&] { return Decode(frames_[number], opened); });
    return ReadStatus(opened, status);
  }

  Status Decode(const Frame& frame, OpenedPicture& opened) {
    if (Status open = OpenPicture(files_, frame.path, limits_, {}, opened); !open) return open;
    const RowFacts& facts = opened.Facts();
    if (!FitsMemory(facts.size.width, facts.size.height, facts.PixelBytes(), limits_)) return fault::OutOfMemory();
    Picture picture;
    if (Status read = ReadWhole(opened, picture); !read) return read;
    picture.pixels = picture.pixels.copy_memory();
    const VImage shown = AsRgb(EightBit(Displayed(picture).pixels));
    const VImage withAlpha = HasAlpha(shown) ? shown : shown.bandjoin_const({255});
    const base::Rect visible = base::Intersection({frame.left, frame.top, withAlpha.width(), withAlpha.height()},
                                                  {0, 0, canvas_.width, canvas_.height});
    pixels_.assign(static_cast<std::size_t>(canvas_.width) * static_cast<unsigned>(canvas_.height) * kBands, 0);
    if (visible.Empty()) return Status::Ok();
    const VImage placed =
        withAlpha.extract_area(visible.left - frame.left, visible.top - frame.top, visible.width, visible.height)
            .embed(visible.left, visible.top, canvas_.width, canvas_.height);
    std::size_t size = 0;
    const std::unique_ptr<void, decltype(&g_free)> bytes(placed.write_to_memory(&size), g_free);
    const auto* from = static_cast<const unsigned char*>(bytes.get());
    pixels_.assign(from, from + size);
    return Status::Ok();
  }

  const host::Files& files_;
  const std::vector<Frame>& frames_;
  base::Size canvas_;
  const Limits& limits_;
  const std::function<void(int)>& done_;
  RowFacts facts_;
  std::vector<unsigned char> pixels_;
  int next_ = 0;
};

Status Save(const VImage& film, const std::vector<Frame>& frames, int height, host::Draft& draft) {
  VImage image = film.copy();
  std::vector<int> delays;
  delays.reserve(frames.size());
  for (const Frame& frame : frames) delays.push_back(frame.milliseconds);
  image.set(VIPS_META_PAGE_HEIGHT, height);
  image.set("delay", delays);
  image.set("loop", 0);
  DraftTarget target(draft);
  try {
    image.gifsave_target(target.Target());
  } catch (const vips::VError&) {
    if (target.Result()) throw;
    vips_error_clear();
  }
  return target.Result();
}

}  // namespace

Status WriteAnimation(const host::Files& files, const std::vector<Frame>& frames, base::Size canvas,
                      const Limits& limits, const std::function<void(int)>& done, host::Draft& draft) {
  if (frames.empty()) return fault::NoImage();
  if (canvas.Empty()) return fault::EmptyRectangle();
  const auto height = static_cast<std::int64_t>(frames.size()) * canvas.height;
  if (canvas.width > kSide || canvas.height > kSide || height > VIPS_MAX_COORD) return fault::ResultTooLarge();
  if (!FitsMemory(canvas.width, canvas.height, kBands, limits)) return fault::OutOfMemory();
  const auto readFault = std::make_shared<ReadFault>();
  const Status status = Guarded(fault::NotSaved(), [&] {
    const auto rows = std::make_shared<FrameRows>(files, frames, canvas, limits, done);
    const VImage film = ImageOfRows(std::static_pointer_cast<RowStream>(rows), static_cast<int>(height), readFault);
    if (Status saved = Save(film, frames, canvas.height, draft); !saved) return saved;
    return CheckOutput(Encoder::Gif, draft);
  });
  // The saver may report success although a frame failed and ended the rows early.
  if (const Status failure = readFault->Get(); !failure) return failure;
  if (status) done(static_cast<int>(frames.size()));
  return status;
}

}  // namespace quillon::imaging
