// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
//
// The JPEG cut alone, one thread, without listing, job or safe writing: what it costs beside plain_loop.
//
// usage: cut_loop PERCENT QUALITY OUTFOLDER FILE...
#include <cstdio>
#include <cstdlib>
#include <string>

#include <jpeglib.h>

#include "imaging/jpeg/jpeg_cut.h"

namespace {

using quillon::base::Rect;
using quillon::imaging::Status;

Rect RectOf(const char* source, int percent) {
  std::FILE* in = std::fopen(source, "rb");
  if (!in) std::exit(2);
  jpeg_error_mgr errors;
  jpeg_decompress_struct decoder{};
  decoder.err = jpeg_std_error(&errors);
  jpeg_create_decompress(&decoder);
  jpeg_stdio_src(&decoder, in);
  jpeg_read_header(&decoder, TRUE);
  const int width = static_cast<int>(decoder.image_width);
  const int height = static_cast<int>(decoder.image_height);
  jpeg_destroy_decompress(&decoder);
  std::fclose(in);
  const int left = width * percent / 100;
  const int top = height * percent / 100;
  return {left, top, width - 2 * left, height - 2 * top};
}

int Cut(const char* source, const std::string& destination, int percent, int quality) {
  std::FILE* out = std::fopen(destination.c_str(), "wb");
  if (!out) std::exit(2);
  const Status status = quillon::imaging::CutJpeg(
      source, RectOf(source, percent), quality, 0, quillon::imaging::Exif::Drop, quillon::imaging::Limits{},
      [out](const void* data, std::size_t size) {
        return std::fwrite(data, 1, size, out) == size ? Status::Ok() : Status(quillon::host::Problem::Other, "write");
      });
  std::fclose(out);
  if (status) return 0;
  std::fprintf(stderr, "%s: %s\n", source, status.Why().c_str());
  return 1;
}

}  // namespace

int main(int argc, char** argv) {
  if (argc < 5) {
    std::fprintf(stderr, "usage: cut_loop PERCENT QUALITY OUTFOLDER FILE...\n");
    return 2;
  }
  int failed = 0;
  for (int i = 4; i < argc; ++i) {
    const std::string source = argv[i];
    failed += Cut(argv[i], std::string(argv[3]) + "/" + source.substr(source.rfind('/') + 1), std::atoi(argv[1]),
                  std::atoi(argv[2]));
  }
  return failed ? 1 : 0;
}
