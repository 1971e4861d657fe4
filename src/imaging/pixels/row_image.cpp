// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "imaging/pixels/row_image.h"

#include <new>

namespace quillon::imaging {
namespace {

using host::Status;
using vips::VImage;

// Rows cached between threads, so that they do not wait for each other at every row.
constexpr int kRowsAtOnce = 16;
// The data of an image that keeps its tiles.
constexpr const char* kTiles = "quillon-tiles";

// The reader of a generated image; deleted with the image.
template <class Rows>
struct Reader {
  std::shared_ptr<Rows> rows;
  std::shared_ptr<ReadFault> fault;
  int next = 0;
};

int Failed(ReadFault& fault, Status status) {
  fault.Set(std::move(status));
  vips_error("quillon", "rows cannot be read");
  return -1;
}

// Runs read, which returns a Status. Its callers are called by libvips, which is C: an exception would end the program.
template <class Read>
Status WithoutExceptions(Read read) {
  try {
    return read();
  } catch (const std::bad_alloc&) {
    return fault::OutOfMemory();
  }
}

int GenerateSpans(VipsRegion* out, void*, void*, void* reader, gboolean*) {
  auto& self = *static_cast<Reader<RowSource>*>(reader);
  const VipsRect& area = out->valid;
  for (int y = area.top; y < area.top + area.height; ++y) {
    Status status = WithoutExceptions(
        [&] { return self.rows->ReadSpan(y, area.left, area.width, VIPS_REGION_ADDR(out, area.left, y)); });
    if (!status) return Failed(*self.fault, std::move(status));
  }
  return 0;
}

int GenerateRows(VipsRegion* out, void*, void*, void* reader, gboolean*) {
  auto& self = *static_cast<Reader<RowStream>*>(reader);
  const VipsRect& area = out->valid;
  for (int y = area.top; y < area.top + area.height; ++y, ++self.next) {
    if (y != self.next || area.left != 0) return Failed(*self.fault, fault::DamagedPicture());
    Status status = WithoutExceptions([&] { return self.rows->ReadRow(VIPS_REGION_ADDR(out, 0, y)); });
    if (!status) return Failed(*self.fault, std::move(status));
  }
  return 0;
}

using Tiles = std::shared_ptr<const TileStore>;

int GenerateTiles(VipsRegion* out, void*, void*, void* tiles, gboolean*) {
  const VipsRect& area = out->valid;
  const base::Rect rect{area.left, area.top, area.width, area.height};
  const Status status = WithoutExceptions([&] {
    return (*static_cast<const Tiles*>(tiles))
        ->Read(rect, VIPS_REGION_ADDR(out, area.left, area.top), VIPS_REGION_LSKIP(out));
  });
  if (status) return 0;
  vips_error("quillon", "tiles cannot be read");
  return -1;
}

VipsInterpretation InterpretationOf(const RowFacts& facts) {
  const bool deep = facts.bits == 16;
  switch (facts.layout) {
    case RowLayout::Grey:
      return deep ? VIPS_INTERPRETATION_GREY16 : VIPS_INTERPRETATION_B_W;
    case RowLayout::Rgb:
      return deep ? VIPS_INTERPRETATION_RGB16 : VIPS_INTERPRETATION_sRGB;
    case RowLayout::Cmyk:
      break;
  }
  return VIPS_INTERPRETATION_CMYK;
}

template <class Rows>
VImage Generated(std::shared_ptr<Rows> rows, int height, std::shared_ptr<ReadFault> fault, VipsGenerateFn generate) {
  const RowFacts& facts = rows->Facts();
  VImage image(vips_image_new());
  vips_image_init_fields(image.get_image(), facts.size.width, height, facts.Channels(),
                         facts.bits == 16 ? VIPS_FORMAT_USHORT : VIPS_FORMAT_UCHAR, VIPS_CODING_NONE,
                         InterpretationOf(facts), 1, 1);
  auto reader = std::make_unique<Reader<Rows>>(Reader<Rows>{std::move(rows), std::move(fault)});
  auto* kept = reader.release();
  g_object_set_data_full(G_OBJECT(image.get_image()), "quillon-rows", kept,
                         [](gpointer data) { delete static_cast<Reader<Rows>*>(data); });
  if (vips_image_pipelinev(image.get_image(), VIPS_DEMAND_STYLE_THINSTRIP, nullptr) != 0 ||
      vips_image_generate(image.get_image(), nullptr, generate, nullptr, nullptr, kept) != 0) {
    throw vips::VError();
  }
  return image;
}

}  // namespace

VImage ImageOfRows(std::shared_ptr<RowSource> rows, std::shared_ptr<ReadFault> fault) {
  const int height = rows->Facts().size.height;
  return Generated(std::move(rows), height, std::move(fault), GenerateSpans);
}

VImage ImageOfRows(std::shared_ptr<RowStream> rows, int count, std::shared_ptr<ReadFault> fault) {
  VImage image = Generated(std::move(rows), count, std::move(fault), GenerateRows);
  // libvips marks images this way that can be read only once. Operations that read out of order cache rows then.
  image.set(VIPS_META_SEQUENTIAL, 1);
  return image.sequential(VImage::option()->set("tile_height", kRowsAtOnce));
}

VImage ImageOfTiles(std::shared_ptr<const TileStore> tiles, const VImage& like) {
  VImage image(vips_image_new());
  VipsImage* made = image.get_image();
  vips_image_init_fields(made, like.width(), like.height(), like.bands(), like.format(), VIPS_CODING_NONE,
                         like.interpretation(), 1, 1);
  auto* kept = new Tiles(std::move(tiles));
  g_object_set_data_full(G_OBJECT(made), kTiles, kept, [](gpointer data) { delete static_cast<Tiles*>(data); });
  if (vips_image_pipelinev(made, VIPS_DEMAND_STYLE_SMALLTILE, nullptr) != 0 ||
      vips_image_generate(made, nullptr, GenerateTiles, nullptr, nullptr, kept) != 0) {
    throw vips::VError();
  }
  return image;
}

bool IsImageOfTiles(const VImage& image) { return g_object_get_data(G_OBJECT(image.get_image()), kTiles) != nullptr; }

}  // namespace quillon::imaging
