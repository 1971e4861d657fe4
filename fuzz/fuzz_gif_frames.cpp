// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
//
// Four bytes that choose a window, and any bytes that begin as a GIF file does: every frame is cut to the window, or
// the cut fails with a reason. The result has as many frames as the source, and is its own result when it is cut once
// more.
#include <cstdint>
#include <string>

#include "fuzz_pictures.h"
#include "imaging/gif/gif_cut.h"
#include "imaging/io/bytes.h"
#include "imaging/measure/frame_count.h"

namespace imaging = quillon::imaging;
namespace base = quillon::base;
using quillon::fuzz::Require;
using quillon::fuzz::SmallLimits;

namespace {

imaging::Status Cut(const std::string& content, base::Rect window, std::string& out) {
  imaging::MemoryBytes bytes(content);
  const imaging::Status status = imaging::CutGif(bytes, window, SmallLimits(), [&](const void* data, std::size_t size) {
    out.append(static_cast<const char*>(data), size);
    return imaging::Status::Ok();
  });
  Require(status.Why().empty() == static_cast<bool>(status));
  return status;
}

int Frames(const std::string& content) {
  imaging::MemoryBytes bytes(content);
  int frames = 0;
  Require(static_cast<bool>(imaging::CountFrames(bytes, frames)));
  return frames;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  constexpr std::size_t kChoice = 4;
  if (size < kChoice) return -1;
  const std::string content(reinterpret_cast<const char*>(data) + kChoice, size - kChoice);
  if (!content.starts_with("GIF8")) return -1;
  const base::Rect window{data[0] % 64, data[1] % 64, data[2] + 1, data[3] + 1};
  std::string cut;
  if (!Cut(content, window, cut)) return 0;
  Require(Frames(cut) == Frames(content));
  std::string again;
  Require(static_cast<bool>(Cut(cut, {0, 0, 65535, 65535}, again)));
  Require(again == cut);
  return 0;
}
