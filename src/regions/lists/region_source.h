// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <string>
#include <vector>

#include "host/saver.h"
#include "imaging/services.h"

namespace quillon::regions {

// One region of a source and the file that it becomes. The extension of the path is the type of the file.
struct RegionCut {
  base::Rect box;  // in pixels; may reach out of the picture
  std::string output;
};

// The crops of all regions of the picture at path that have an area, as RegionSource::Cut() asks for them. Empty if
// none has. quality is that of jpegs, 0..100. With Alpha::Kept, png and gif outputs keep transparency; other types
// cannot hold it and are drawn on white. exif says whether the EXIF block of the source is copied.
imaging::FileWork RegionWork(const std::string& path, const std::vector<RegionCut>& cuts, int quality,
                             imaging::Alpha alpha = imaging::Alpha::Kept, imaging::Exif exif = imaging::Exif::Drop);

// A picture out of which several regions are cut.
class RegionSource {
 public:
  // Once: the constructor decodes the picture, and all cuts use the result. If it does not fit into memory, each cut
  // reads the file instead. ForEach: each cut reads the file. The results are the same.
  enum class Decode { Once, ForEach };

  struct Options {
    std::string extension;  // of the outputs
    Decode decode = Decode::ForEach;
    int quality = 80;  // see RegionWork(), like alpha and exif
    imaging::Alpha alpha = imaging::Alpha::Kept;
    imaging::Exif exif = imaging::Exif::Drop;
    // The RegionWork() of this picture. If exactly this was prefetched, nothing is decoded.
    imaging::FileWork work = {};
  };

  // saver asks about a full disk.
  RegionSource(imaging::Services& images, const host::Saver& saver, std::string path, const Options& options);

  // Returns the failure of the decoding; Ok if each cut reads the file. Stopped if a stop request came, or the disk did
  // not respond, while work that was prefetched was waited for.
  const host::Status& Opened() const { return opened_; }
  // Writes one region, as Services::CropToFile() does. Returns the failure of Opened() if there is one.
  host::Status Cut(const RegionCut& cut);

 private:
  imaging::Services& images_;
  const host::Saver& saver_;
  std::string path_;
  int quality_;
  imaging::Alpha alpha_;
  imaging::Exif exif_;
  imaging::CutSource picture_;  // empty if each cut reads the file
  host::Status opened_;
};

}  // namespace quillon::regions
