// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "imaging/jpeg/jpeg_pixels.h"

#include <new>

#include "imaging/faults.h"
#include "imaging/jpeg/jpeg_reader.h"
#include "imaging/metadata/exif_block.h"

namespace quillon::imaging {
namespace {

// Everything that a jump out of libjpeg could leave behind is a member.
class JpegStream : public RowStream {
 public:
  JpegStream(JpegColours colours, const ReadControl& control) : colours_(colours), reader_(errors_, control) {}

  Status Open(const std::string& path, int shrink, const Limits& limits) {
    if (Status opened = reader_.Open(path, limits); !opened) return opened;
    if (!errors_.Guard([&] { reader_.ChooseOutput(Colours(), shrink); })) return errors_.Result();
    SetFacts();
    return Status::Ok();
  }

  const RowFacts& Facts() const override { return facts_; }

  // Rows before the first one that is wanted need not be transformed.
  Status SkipRows(int count) override {
    if (started_ || count >= facts_.size.height) return RowStream::SkipRows(count);
    const bool skipped = errors_.Guard([this, count] {
      Start();
      reader_.SkipRows(count);
    });
    return skipped ? Status::Ok() : errors_.Result();
  }

  Status ReadRow(unsigned char* out) override {
    row_ = out;
    const bool read = errors_.Guard([this] {
      if (!started_) Start();
      reader_.ReadRows(&row_, 1);
      if (reader_.Info().output_scanline == reader_.Info().output_height) reader_.CheckRest();
    });
    if (!read) return errors_.Result();
    if (inverted_) {
      const std::size_t samples = std::size_t{4} * static_cast<unsigned>(facts_.size.width);
      for (std::size_t i = 0; i < samples; ++i) out[i] = static_cast<unsigned char>(255 - out[i]);
    }
    return Status::Ok();
  }

 private:
  J_COLOR_SPACE Colours() const {
    const J_COLOR_SPACE stored = reader_.Info().jpeg_color_space;
    if (colours_ == JpegColours::AsStored) return stored;
    if (colours_ == JpegColours::YccAsStored && stored == JCS_YCbCr) return stored;
    switch (stored) {
      case JCS_GRAYSCALE:
        return JCS_GRAYSCALE;
      case JCS_CMYK:
      case JCS_YCCK:
        return JCS_CMYK;
      default:
        return JCS_RGB;
    }
  }

  void SetFacts() {
    const jpeg_decompress_struct& info = reader_.Info();
    const JpegHead& head = reader_.Head();
    facts_.size = {static_cast<int>(info.output_width), static_cast<int>(info.output_height)};
    facts_.layout = static_cast<RowLayout>(info.out_color_components);
    facts_.ycc = info.out_color_space == JCS_YCbCr;
    facts_.dpi = head.Dpi();
    facts_.profile = head.Profile();
    facts_.exif = head.exif;
    facts_.orientation = ReadExif(head.exif).orientation;
    if (reader_.SeveralScans()) facts_.held = reader_.BytesHeld();
    // With this marker, inks are stored as what they leave of the paper's white.
    inverted_ = colours_ != JpegColours::AsStored && head.adobe && facts_.layout == RowLayout::Cmyk;
  }

  // Only the first row needs the memory of a decoder that runs.
  void Start() {
    reader_.StartRows();
    started_ = true;
  }

  const JpegColours colours_;
  JpegErrors errors_;
  JpegReader reader_;
  RowFacts facts_;
  bool inverted_ = false;
  bool started_ = false;
  JSAMPROW row_ = nullptr;
};

Status ReadTiles(RowStream& rows, JpegPixels& out) {
  std::vector<unsigned char> row(static_cast<std::size_t>(out.size.width) * out.components);
  for (int y = 0; y < out.size.height; ++y) {
    if (Status read = rows.ReadRow(row.data()); !read) return read;
    if (Status added = out.tiles->Append(row.data(), row.size(), 1); !added) return added;
  }
  return Status::Ok();
}

Status ReadSamples(RowStream& rows, JpegPixels& out) {
  const std::size_t row = static_cast<std::size_t>(out.size.width) * out.components;
  out.samples.resize(row * static_cast<std::size_t>(out.size.height));
  for (unsigned char* place = out.samples.data(); place != out.samples.data() + out.samples.size(); place += row) {
    if (Status read = rows.ReadRow(place); !read) return read;
  }
  return Status::Ok();
}

}  // namespace

Status OpenJpegRows(const std::string& path, int shrink, const Limits& limits, std::shared_ptr<RowStream>& out,
                    JpegColours colours, const ReadControl& control) {
  auto rows = std::make_shared<JpegStream>(colours, control);
  if (Status status = rows->Open(path, shrink, limits); !status) return status;
  out = std::move(rows);
  return Status::Ok();
}

Status JpegPixels::Read(const base::Rect& area, unsigned char* out, std::size_t step) const {
  if (tiles) return tiles->Read(area, out, step);
  const std::size_t row = static_cast<std::size_t>(size.width) * components;
  const unsigned char* from =
      samples.data() + row * static_cast<unsigned>(area.top) + static_cast<std::size_t>(area.left) * components;
  for (int y = 0; y < area.height; ++y, from += row, out += step) {
    std::copy_n(from, static_cast<std::size_t>(area.width) * components, out);
  }
  return Status::Ok();
}

Status DecodeJpeg(const host::Files& files, const std::string& path, const Limits& limits, JpegPixels& out,
                  const ReadControl& control, const std::vector<base::Rect>& areas) {
  std::shared_ptr<RowStream> rows;
  if (Status opened = OpenJpegRows(path, 1, limits, rows, JpegColours::AsStored, control); !opened) return opened;
  const RowFacts& facts = rows->Facts();
  out.size = facts.size;
  out.components = static_cast<std::size_t>(facts.Channels());
  if (!FitsMemory(facts.size.width, facts.size.height, facts.Channels(), limits)) return fault::OutOfMemory();
  try {
    if (IsLarge(out.size.width, out.size.height, limits)) {
      out.tiles = TileStore::Create(files, out.size, facts.Channels());
      if (out.tiles && !areas.empty()) out.tiles->KeepOnly(areas);
    }
    return out.tiles ? ReadTiles(*rows, out) : ReadSamples(*rows, out);
  } catch (const std::bad_alloc&) {
    return fault::OutOfMemory();
  }
}

}  // namespace quillon::imaging
