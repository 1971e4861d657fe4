// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "regions/lists/region_source.h"

#include <utility>

#include "base/path_text.h"

namespace quillon::regions {

RegionSource::RegionSource(imaging::Services& images, const host::Saver& saver, std::string path,
                           const std::string& extension, Decode decode, imaging::Alpha alpha)
    : images_(images), saver_(saver), path_(std::move(path)), alpha_(alpha) {
  if (decode == Decode::ForEach) return;
  opened_ = images_.OpenForCuts(path_, imaging::EncoderFor(extension), picture_);
  if (opened_.GetProblem() == host::Problem::TooLarge) opened_ = host::Status::Ok();
}

host::Status RegionSource::Cut(const RegionCut& cut, int quality) {
  if (!opened_) return opened_;
  imaging::CropRequest request;
  request.source = path_;
  request.destination = cut.output;
  request.rect = cut.box;
  request.encoder = imaging::EncoderFor(base::SplitPath(cut.output).extension);
  request.quality = quality;
  const bool holdsAlpha = request.encoder == imaging::Encoder::Png || request.encoder == imaging::Encoder::Gif;
  request.alpha = holdsAlpha ? alpha_ : imaging::Alpha::OnWhite;
  return saver_.Save(cut.output, [&] { return images_.CropToFile(picture_, request); });
}

}  // namespace quillon::regions
