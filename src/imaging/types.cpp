// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "imaging/types.h"

#include "base/path_text.h"

namespace quillon::imaging {

Encoder EncoderFor(const std::string& extension) {
  const std::string lower = base::ToLowerAscii(extension);
  if (lower == "png") return Encoder::Png;
  if (lower == "gif") return Encoder::Gif;
  if (lower == "tif" || lower == "tiff") return Encoder::Tiff;
  if (lower == "bmp" || lower == "dib") return Encoder::Bmp;
  return Encoder::Jpeg;
}

std::optional<Encoder> EncoderOfType(const std::string& type) {
  struct Known {
    const char* part;
    Encoder encoder;
  };
  constexpr Known kKnown[] = {{"jp", Encoder::Jpeg},
                              {"png", Encoder::Png},
                              {"gif", Encoder::Gif},
                              {"tif", Encoder::Tiff},
                              {"bmp", Encoder::Bmp}};
  const std::string lower = base::ToLowerAscii(type);
  for (const Known& known : kKnown) {
    if (lower.find(known.part) != std::string::npos) return known.encoder;
  }
  return std::nullopt;
}

const std::string& SourceOf(const FileRequest& request) {
  return std::visit([](const auto& each) -> const std::string& { return each.source; }, request);
}

const std::string& DestinationOf(const FileRequest& request) {
  return std::visit([](const auto& each) -> const std::string& { return each.destination; }, request);
}

bool FileWork::PassedOn(std::size_t step) const {
  return step + 1 < steps.size() && SourceOf(steps[step + 1]) == DestinationOf(steps[step]);
}

}  // namespace quillon::imaging
