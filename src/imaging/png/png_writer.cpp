// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "imaging/png/png_writer.h"

#include <algorithm>
#include <array>
#include <csetjmp>
#include <cstdlib>
#include <limits>
#include <utility>

#include <zlib.h>

#include "base/rounding.h"
#include "imaging/faults.h"
#include "imaging/metadata/exif_block.h"

// How the filter of a row is chosen: a filter replaces each byte by its difference from a prediction, and the smaller
// these differences are, the better deflate packs them. Their sum is computed for each filter, but only over a part of
// the row, since neighbouring pixels rarely disagree about the best filter. libpng then applies that filter alone.
//
// How Photo chooses: the first rows are written twice into nothing, and the smaller way is used for the picture.
namespace quillon::imaging {
namespace {

using host::Status;

constexpr double kMetresPerInch = 0.0254;
// Levels and memory of zlib. On filtered photographs level 2 is quicker than level 3 and, as a rule, not larger.
constexpr int kFlatLevel = 3;
constexpr int kFilteredLevel = 2;
constexpr int kMostMemory = 9;  // gives larger blocks of data, for which fewer tables of codes are written
constexpr std::size_t kDataChunk = std::size_t{64} << 10;  // bytes of an IDAT chunk
// Of so many pixels of a row, the first ones are compared to choose a filter.
constexpr std::size_t kSampleStep = 128;
constexpr std::size_t kSampled = 32;
constexpr std::array<int, 5> kFilters = {PNG_FILTER_NONE, PNG_FILTER_SUB, PNG_FILTER_UP, PNG_FILTER_AVG,
                                         PNG_FILTER_PAETH};
// The rows that wait for the choice of a compression: so many, or fewer if they are long.
constexpr std::size_t kTrialRows = 24;
constexpr std::size_t kTrialBytes = std::size_t{1} << 20;

// Counts what is written.
class CountingDraft final : public host::Draft {
 public:
  Status Write(const void*, std::size_t size) override {
    size_ += size;
    return Status::Ok();
  }
  Status Seek(std::uint64_t) override { return fault::NotSaved(); }
  std::int64_t Read(void*, std::size_t) override { return -1; }
  std::uint64_t Size() const override { return size_; }

 private:
  std::uint64_t size_ = 0;
};

// Returns the bytes of these rows as a file.
std::uint64_t SizeWith(PngCompression compression, const RowFacts& facts, const std::vector<unsigned char>& rows) {
  const std::size_t rowBytes = static_cast<std::size_t>(facts.size.width) * static_cast<unsigned>(facts.PixelBytes());
  RowFacts part = facts;
  part.size.height = static_cast<int>(rows.size() / rowBytes);
  CountingDraft draft;
  PngWriter writer(draft);
  bool written = static_cast<bool>(writer.Begin(part, {.compression = compression}));
  for (std::size_t at = 0; written && at < rows.size(); at += rowBytes) {
    written = static_cast<bool>(writer.WriteRow(rows.data() + at));
  }
  return written && writer.Finish() ? draft.Size() : std::numeric_limits<std::uint64_t>::max();
}

bool ChoosesFilters(PngCompression compression) { return compression >= PngCompression::Noisy; }

int ColourTypeOf(const RowFacts& facts) {
  const int colours = facts.layout == RowLayout::Grey ? PNG_COLOR_TYPE_GRAY : PNG_COLOR_TYPE_RGB;
  return facts.alpha ? colours | PNG_COLOR_MASK_ALPHA : colours;
}

// Returns the prediction of the Paeth filter: the neighbour that is nearest to left + up - corner.
int Paeth(int left, int up, int corner) {
  const int toLeft = std::abs(up - corner);
  const int toUp = std::abs(left - corner);
  const int toCorner = std::abs(up + left - 2 * corner);
  if (toLeft <= toUp && toLeft <= toCorner) return left;
  return toUp <= toCorner ? up : corner;
}

unsigned Cost(int difference) {
  return static_cast<unsigned>(std::abs(static_cast<int>(static_cast<signed char>(difference))));
}

}  // namespace

PngDensity DensityOfDpi(int dpi) {
  if (dpi <= 0) return {};
  const auto perMetre = static_cast<std::uint32_t>(base::R(dpi / kMetresPerInch));
  return {perMetre, perMetre, true};
}

// libpng reports errors by longjmp. A jump skips destructors, so everything with one is a member, and what Guard runs
// has no locals that need destruction.
PngWriter::PngWriter(host::Draft& draft) : draft_(draft) {
  const auto onError = [](png_structp png, png_const_charp) { png_longjmp(png, 1); };
  png_ = png_create_write_struct(PNG_LIBPNG_VER_STRING, nullptr, onError, [](png_structp, png_const_charp) {});
  if (png_) info_ = png_create_info_struct(png_);
}

PngWriter::~PngWriter() { png_destroy_write_struct(&png_, &info_); }

template <class Work>
bool PngWriter::Guard(Work work) {
  if (setjmp(png_jmpbuf(png_)) != 0) return false;
  work();
  return true;
}

Status PngWriter::Failure() const { return result_ ? fault::NotSaved() : result_; }

void PngWriter::OnWrite(png_structp png, png_bytep data, std::size_t size) {
  PngWriter& self = *static_cast<PngWriter*>(png_get_io_ptr(png));
  self.result_ = self.draft_.Write(data, size);
  if (!self.result_) png_longjmp(png, 1);
}

void PngWriter::WriteHead(const RowFacts& facts, const PngHeader& header) {
  png_set_write_fn(png_, this, OnWrite, [](png_structp) {});
  // libpng then drops a profile that it considers invalid, instead of failing.
  png_set_benign_errors(png_, 1);
  png_set_IHDR(png_, info_, static_cast<png_uint_32>(facts.size.width), static_cast<png_uint_32>(facts.size.height),
               facts.bits, ColourTypeOf(facts), PNG_INTERLACE_NONE, PNG_COMPRESSION_TYPE_DEFAULT,
               PNG_FILTER_TYPE_DEFAULT);
  if (compression_ != PngCompression::Standard) {
    png_set_compression_level(png_, ChoosesFilters(compression_) ? kFilteredLevel : kFlatLevel);
    png_set_compression_mem_level(png_, kMostMemory);
    png_set_compression_buffer_size(png_, kDataChunk);
    // For PNG_NO_FILTERS libpng would use all of them.
    png_set_filter(png_, PNG_FILTER_TYPE_BASE, ChoosesFilters(compression_) ? PNG_ALL_FILTERS : PNG_FILTER_NONE);
  }
  const PngDensity& density = header.density;
  if (density.across > 0 && density.down > 0) {
    const int unit = density.metre ? PNG_RESOLUTION_METER : PNG_RESOLUTION_UNKNOWN;
    png_set_pHYs(png_, info_, density.across, density.down, unit);
  }
  if (!header.profile.empty()) {
    png_set_iCCP(png_, info_, "icc", PNG_COMPRESSION_TYPE_BASE,
                 reinterpret_cast<png_const_bytep>(header.profile.data()),
                 static_cast<png_uint_32>(header.profile.size()));
  }
  if (!header.exif.empty()) {
    auto* exif = reinterpret_cast<png_bytep>(const_cast<char*>(header.exif.data()));
    png_set_eXIf_1(png_, info_, static_cast<png_uint_32>(header.exif.size()), exif);
  }
  png_write_info(png_, info_);
  if (facts.bits == 16) png_set_swap(png_);
}

Status PngWriter::Begin(const RowFacts& facts, const PngHeader& header) {
  if (!info_) return fault::OutOfMemory();
  facts_ = facts;
  compression_ = header.compression;
  rowBytes_ = static_cast<std::size_t>(facts.size.width) * static_cast<unsigned>(facts.PixelBytes());
  if (ChoosesFilters(compression_)) above_.assign(rowBytes_, 0);
  return Guard([&] { WriteHead(facts, header); }) ? Status::Ok() : Failure();
}

int PngWriter::BestFilter(const unsigned char* row) const {
  std::array<unsigned, kFilters.size()> sums{};
  const auto pixelBytes = static_cast<std::size_t>(facts_.PixelBytes());
  const unsigned char* above = above_.data();
  for (std::size_t first = pixelBytes; first < rowBytes_; first += kSampleStep * pixelBytes) {
    const std::size_t end = std::min(rowBytes_, first + kSampled * pixelBytes);
    for (std::size_t i = first; i < end; ++i) {
      const int value = row[i];
      const int left = row[i - pixelBytes];
      const int up = above[i];
      sums[0] += Cost(value);
      sums[1] += Cost(value - left);
      sums[2] += Cost(value - up);
      sums[3] += Cost(value - (left + up) / 2);
      sums[4] += Cost(value - Paeth(left, up, above[i - pixelBytes]));
    }
  }
  return kFilters[static_cast<std::size_t>(std::min_element(sums.begin(), sums.end()) - sums.begin())];
}

Status PngWriter::WriteRow(const unsigned char* row) {
  if (compression_ != PngCompression::Photo) return WriteFiltered(row);
  waiting_.insert(waiting_.end(), row, row + rowBytes_);
  return waiting_.size() < std::min(kTrialRows * rowBytes_, kTrialBytes) ? Status::Ok() : WriteWaiting();
}

Status PngWriter::WriteWaiting() {
  const std::uint64_t noisy = SizeWith(PngCompression::Noisy, facts_, waiting_);
  const std::uint64_t smooth = SizeWith(PngCompression::Smooth, facts_, waiting_);
  compression_ = smooth < noisy ? PngCompression::Smooth : PngCompression::Noisy;
  const std::vector<unsigned char> rows = std::exchange(waiting_, {});
  for (std::size_t at = 0; at < rows.size(); at += rowBytes_) {
    if (Status written = WriteFiltered(rows.data() + at); !written) return written;
  }
  return Status::Ok();
}

Status PngWriter::WriteFiltered(const unsigned char* row) {
  const bool chooses = ChoosesFilters(compression_);
  const int filter = chooses ? BestFilter(row) : PNG_FILTER_NONE;
  const bool written = Guard([&] {
    if (!begun_ && compression_ == PngCompression::Smooth) png_set_compression_strategy(png_, Z_RLE);
    // libpng keeps the rows above only if the filters that are set before its first row need them.
    if (begun_ && chooses) png_set_filter(png_, PNG_FILTER_TYPE_BASE, filter);
    png_write_row(png_, row);
  });
  begun_ = true;
  if (chooses) std::copy_n(row, rowBytes_, above_.begin());
  return written ? Status::Ok() : Failure();
}

Status PngWriter::Finish() {
  if (!waiting_.empty()) {
    if (Status written = WriteWaiting(); !written) return written;
  }
  return Guard([this] { png_write_end(png_, info_); }) ? Status::Ok() : Failure();
}

Status WritePng(RowStream& rows, const PictureTags& tags, host::Draft& draft) {
  const RowFacts& facts = rows.Facts();
  const PngHeader header{
      .profile = tags.profile, .exif = MinimalExif(tags.orientation, 0), .density = DensityOfDpi(tags.dpi)};
  PngWriter writer(draft);
  if (Status begun = writer.Begin(facts, header); !begun) return begun;
  std::vector<unsigned char> row(static_cast<std::size_t>(facts.size.width) *
                                 static_cast<unsigned>(facts.PixelBytes()));
  for (int y = 0; y < facts.size.height; ++y) {
    if (Status read = rows.ReadRow(row.data()); !read) return read;
    if (Status written = writer.WriteRow(row.data()); !written) return written;
  }
  return writer.Finish();
}

}  // namespace quillon::imaging
