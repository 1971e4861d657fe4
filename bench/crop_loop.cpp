// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
//
// The yardstick for parts of huge pictures: skips to the rectangle, decodes its columns, encodes it as it is. Nothing
// is checked, kept or made safe. A rectangle of no size only decodes the whole picture; with "least" it decodes as
// little of it as the library can, grey and at an eighth of the size, which leaves hardly more than to read the
// coefficients.
//
// usage: crop_loop LEFT TOP WIDTH HEIGHT QUALITY SOURCE DESTINATION [least]
#include <cstdio>
#include <cstdlib>
#include <vector>

#include <jpeglib.h>

namespace {

struct Rect {
  JDIMENSION left, top, width, height;
};

void DecodeAll(jpeg_decompress_struct& decoder) {
  jpeg_start_decompress(&decoder);
  std::vector<JSAMPLE> row(static_cast<std::size_t>(decoder.output_width) * decoder.output_components);
  JSAMPROW whole = row.data();
  while (decoder.output_scanline < decoder.output_height) jpeg_read_scanlines(&decoder, &whole, 1);
}

void Cut(jpeg_decompress_struct& decoder, const Rect& rect, int quality, FILE* out) {
  jpeg_start_decompress(&decoder);
  JDIMENSION start = rect.left;
  JDIMENSION count = rect.width;
  jpeg_crop_scanline(&decoder, &start, &count);
  if (rect.top > 0) jpeg_skip_scanlines(&decoder, rect.top);
  jpeg_compress_struct encoder{};
  encoder.err = decoder.err;
  jpeg_create_compress(&encoder);
  jpeg_stdio_dest(&encoder, out);
  encoder.image_width = rect.width;
  encoder.image_height = rect.height;
  encoder.input_components = decoder.output_components;
  encoder.in_color_space = decoder.out_color_space;
  jpeg_set_defaults(&encoder);
  jpeg_set_quality(&encoder, quality, TRUE);
  jpeg_start_compress(&encoder, TRUE);
  std::vector<JSAMPLE> row(static_cast<std::size_t>(decoder.output_width) * decoder.output_components);
  for (JDIMENSION y = 0; y < rect.height; ++y) {
    JSAMPROW whole = row.data();
    jpeg_read_scanlines(&decoder, &whole, 1);
    JSAMPROW part = row.data() + static_cast<std::size_t>(rect.left - start) * decoder.output_components;
    jpeg_write_scanlines(&encoder, &part, 1);
  }
  jpeg_finish_compress(&encoder);
  jpeg_destroy_compress(&encoder);
}

}  // namespace

int main(int argc, char** argv) {
  if (argc != 8 && argc != 9) {
    std::fprintf(stderr, "usage: crop_loop LEFT TOP WIDTH HEIGHT QUALITY SOURCE DESTINATION [least]\n");
    return 2;
  }
  const auto number = [&](int i) { return static_cast<JDIMENSION>(std::atoi(argv[i])); };
  const Rect rect{number(1), number(2), number(3), number(4)};
  FILE* in = std::fopen(argv[6], "rb");
  FILE* out = std::fopen(argv[7], "wb");
  if (!in || !out) return 2;
  jpeg_error_mgr errors;
  jpeg_decompress_struct decoder{};
  decoder.err = jpeg_std_error(&errors);
  jpeg_create_decompress(&decoder);
  jpeg_stdio_src(&decoder, in);
  jpeg_read_header(&decoder, TRUE);
  decoder.out_color_space = decoder.jpeg_color_space;
  if (argc == 9) {
    decoder.out_color_space = JCS_GRAYSCALE;
    decoder.scale_denom = 8;
  }
  rect.width > 0 ? Cut(decoder, rect, std::atoi(argv[5]), out) : DecodeAll(decoder);
  jpeg_destroy_decompress(&decoder);
  std::fclose(in);
  return std::fclose(out) == 0 ? 0 : 2;
}
