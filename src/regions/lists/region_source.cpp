// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "regions/lists/region_source.h"

#include <utility>

#include "base/path_text.h"

namespace quillon::regions {
namespace {

imaging::CropRequest CropOf(const std::string& path, const RegionCut& cut, int quality, imaging::Alpha alpha,
                            imaging::Exif exif) {
  imaging::CropRequest request;
  request.source = path;
  request.destination = cut.output;
  request.rect = cut.box;
  request.encoder = imaging::EncoderFor(base::SplitPath(cut.output).extension);
  request.quality = quality;
  request.exif = exif;
  const bool holdsAlpha = request.encoder == imaging::Encoder::Png || request.encoder == imaging::Encoder::Gif;
  request.alpha = holdsAlpha ? alpha : imaging::Alpha::OnWhite;
  return request;
}

}  // namespace

imaging::FileWork RegionWork(const std::string& path, const std::vector<RegionCut>& cuts, int quality,
                             imaging::Alpha alpha, imaging::Exif exif) {
  imaging::FileWork work;
  for (const RegionCut& cut : cuts) {
    if (!cut.box.Empty()) work.steps.emplace_back(CropOf(path, cut, quality, alpha, exif));
  }
  return work;
}

RegionSource::RegionSource(imaging::Services& images, const host::Saver& saver, std::string path,
                           const Options& options)
    : images_(images),
      saver_(saver),
      path_(std::move(path)),
      quality_(options.quality),
      alpha_(options.alpha),
      exif_(options.exif) {
  if (options.decode == Decode::ForEach) return;
  opened_ = images_.OpenForCuts(path_, imaging::EncoderFor(options.extension), picture_, options.work);
  if (opened_.GetProblem() == host::Problem::TooLarge) opened_ = host::Status::Ok();
}

host::Status RegionSource::Cut(const RegionCut& cut) {
  if (!opened_) return opened_;
  const imaging::CropRequest request = CropOf(path_, cut, quality_, alpha_, exif_);
  return saver_.Save(cut.output, [&] { return images_.CropToFile(picture_, request); });
}

}  // namespace quillon::regions
