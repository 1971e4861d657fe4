// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
//
// The yardstick: the shortest sensible libjpeg-turbo loop, one thread, that cuts a share off every side of JPEG files.
// YCbCr passes through, only the needed columns are decoded, rows above are skipped and rows below left alone.
// Nothing is checked, kept or made safe.
//
// usage: plain_loop PERCENT QUALITY OUTFOLDER FILE...
#include <cstdio>
#include <cstdlib>
#include <string>
#include <vector>

#include <jpeglib.h>

namespace {

void Cut(const char* source, const std::string& destination, int percent, int quality) {
  FILE* in = std::fopen(source, "rb");
  FILE* out = std::fopen(destination.c_str(), "wb");
  if (!in || !out) std::exit(2);
  jpeg_error_mgr errors;
  jpeg_decompress_struct decoder{};
  decoder.err = jpeg_std_error(&errors);
  jpeg_create_decompress(&decoder);
  jpeg_stdio_src(&decoder, in);
  jpeg_read_header(&decoder, TRUE);
  decoder.out_color_space = decoder.jpeg_color_space;

  const int left = static_cast<int>(decoder.image_width) * percent / 100;
  const int top = static_cast<int>(decoder.image_height) * percent / 100;
  const int width = static_cast<int>(decoder.image_width) - 2 * left;
  const int height = static_cast<int>(decoder.image_height) - 2 * top;

  jpeg_start_decompress(&decoder);
  JDIMENSION start = static_cast<JDIMENSION>(left);
  JDIMENSION count = static_cast<JDIMENSION>(width);
  jpeg_crop_scanline(&decoder, &start, &count);
  if (top > 0) jpeg_skip_scanlines(&decoder, static_cast<JDIMENSION>(top));

  jpeg_compress_struct encoder{};
  encoder.err = &errors;
  jpeg_create_compress(&encoder);
  jpeg_stdio_dest(&encoder, out);
  encoder.image_width = static_cast<JDIMENSION>(width);
  encoder.image_height = static_cast<JDIMENSION>(height);
  encoder.input_components = decoder.output_components;
  encoder.in_color_space = decoder.out_color_space;
  jpeg_set_defaults(&encoder);
  jpeg_set_quality(&encoder, quality, TRUE);
  jpeg_start_compress(&encoder, TRUE);
  std::vector<JSAMPLE> row(static_cast<std::size_t>(decoder.output_width) * decoder.output_components);
  const std::size_t skip = (static_cast<JDIMENSION>(left) - start) * decoder.output_components;
  for (int y = 0; y < height; ++y) {
    JSAMPROW whole = row.data();
    jpeg_read_scanlines(&decoder, &whole, 1);
    JSAMPROW part = row.data() + skip;
    jpeg_write_scanlines(&encoder, &part, 1);
  }
  jpeg_finish_compress(&encoder);
  jpeg_destroy_compress(&encoder);
  jpeg_destroy_decompress(&decoder);
  std::fclose(in);
  if (std::fclose(out) != 0) std::exit(2);
}

}  // namespace

int main(int argc, char** argv) {
  if (argc < 5) {
    std::fprintf(stderr, "usage: plain_loop PERCENT QUALITY OUTFOLDER FILE...\n");
    return 2;
  }
  for (int i = 4; i < argc; ++i) {
    const std::string source = argv[i];
    const std::string destination = std::string(argv[3]) + "/" + source.substr(source.rfind('/') + 1);
    Cut(argv[i], destination, std::atoi(argv[1]), std::atoi(argv[2]));
  }
  return 0;
}
