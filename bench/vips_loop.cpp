// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
//
// A peer: the same cut as plain_loop by a small libvips program, one process, sequential access.
//
// usage: vips_loop PERCENT QUALITY OUTFOLDER FILE...
#include <cstdio>
#include <cstdlib>
#include <string>

#include <vips/vips.h>

namespace {

bool Cut(const char* source, const std::string& destination, int percent, int quality) {
  VipsImage* image = vips_image_new_from_file(source, "access", VIPS_ACCESS_SEQUENTIAL, nullptr);
  if (!image) return false;
  const int left = image->Xsize * percent / 100;
  const int top = image->Ysize * percent / 100;
  VipsImage* part = nullptr;
  bool done = vips_extract_area(image, &part, left, top, image->Xsize - 2 * left, image->Ysize - 2 * top, nullptr) == 0;
  done = done && vips_jpegsave(part, destination.c_str(), "Q", quality, nullptr) == 0;
  g_object_unref(image);
  if (part) g_object_unref(part);
  return done;
}

}  // namespace

int main(int argc, char** argv) {
  if (argc < 5 || vips_init(argv[0]) != 0) {
    std::fprintf(stderr, "usage: vips_loop PERCENT QUALITY OUTFOLDER FILE...\n");
    return 2;
  }
  int failed = 0;
  for (int i = 4; i < argc; ++i) {
    const std::string source = argv[i];
    const std::string destination = std::string(argv[3]) + "/" + source.substr(source.rfind('/') + 1);
    if (!Cut(argv[i], destination, std::atoi(argv[1]), std::atoi(argv[2]))) ++failed;
  }
  vips_shutdown();
  return failed ? 1 : 0;
}
