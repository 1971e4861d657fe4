// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
//
// Cuts an animated GIF as the helper for media does: through a draft that is synced and renamed. Without arguments it
// only starts and ends, which shows how much memory an idle program has.
//
// usage: gif_loop [LEFT TOP WIDTH HEIGHT SOURCE DESTINATION]
#include <cstdio>
#include <cstdlib>

#include "host/files/files.h"
#include "host/posix/posix_disk.h"
#include "imaging/crop/frame_requests.h"

int main(int argc, char** argv) {
  using namespace quillon;
  if (argc != 1 && argc != 7) {
    std::fprintf(stderr, "usage: gif_loop [LEFT TOP WIDTH HEIGHT SOURCE DESTINATION]\n");
    return 2;
  }
  host::posix::PosixDisk disk;
  host::Files files(disk);
  if (argc == 1) return 0;
  const base::Rect window{std::atoi(argv[1]), std::atoi(argv[2]), std::atoi(argv[3]), std::atoi(argv[4])};
  const host::Status cut = files.Save(argv[6], [&](host::Draft& draft) {
    return imaging::CropFrames({files, {}}, {.source = argv[5], .rect = window}, draft);
  });
  if (!cut) std::fprintf(stderr, "%s\n", cut.Why().c_str());
  return cut && files.Flush().empty() ? 0 : 1;
}
