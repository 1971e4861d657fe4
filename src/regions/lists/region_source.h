// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <string>

#include "imaging/services.h"

namespace quillon::regions {

// One region of a source and where it goes. The type of the file is its extension.
struct RegionCut {
  base::Rect box;
  std::string output;
};

// A picture that regions are cut out of.
class RegionSource {
 public:
  // Once: the picture is decoded now and all cuts come from that, unless memory does not hold it. ForEach: each cut
  // reads the file. Either way gives the same results. extension is that of the outputs.
  enum class Decode { Once, ForEach };
  // Transparency that is kept is kept by png and gif, which can hold it.
  RegionSource(imaging::Services& images, std::string path, const std::string& extension, Decode decode,
               imaging::Alpha alpha = imaging::Alpha::Kept);

  // How decoding went; fine where each cut reads the file.
  const host::Status& Opened() const { return opened_; }
  // As CropToFile; the failure of Opened() where there is one.
  host::Status Cut(const RegionCut& cut, int quality);

 private:
  imaging::Services& images_;
  std::string path_;
  imaging::Alpha alpha_;
  imaging::CutSource picture_;
  host::Status opened_;
};

}  // namespace quillon::regions
