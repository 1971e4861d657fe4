// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "helpers/dc_tiffs_maker/tiff_maker.h"

#include <array>

#include "helpers/dc_tiffs_maker/ok_list.h"
#include "imaging/codecs/tiff_pages.h"
#include "imaging/pixels/adjust.h"
#include "imaging/services.h"
#include "tools/keys.h"

namespace quillon::helpers {
namespace {

using imaging::TiffCompression;

constexpr std::array kQualities{92, 70, 50};

std::string NameOf(const std::string& path) { return path.substr(path.rfind('/') + 1); }

class Maker {
 public:
  Maker(Helper& helper, const OkList& order)
      : helper_(helper), order_(order), services_(helper.Files(), helper.World().programFolder) {}

  host::Status Make() {
    return helper_.Files().Save(order_.target, [&](host::Draft& draft) {
      imaging::TiffPages tiff(draft, static_cast<int>(order_.pictures.size()));
      host::Status first;
      int number = 0;
      for (const std::string& picture : order_.pictures) {
        ReportProgress(++number);
        const host::Status added = AddPicture(picture, tiff);
        if (added.DiskFull()) return added;
        if (!added) LogError("DCTiffsMaker", NameOf(picture) + "：" + added.Why());
        if (first) first = added;
      }
      if (!first && (tiff.Count() == 0 || helper_.Files().Stat(order_.target))) return first;
      return tiff.Finish();
    });
  }

 private:
  void ReportProgress(int number) {
    helper_.Set(order_.application, tools::key::kMakeTiffProg,
                "Tiff压制中，" + std::to_string(number) + "/" + std::to_string(order_.pictures.size()));
  }

  host::Status AddPicture(const std::string& picture, imaging::TiffPages& tiff) {
    int pages = 0;
    imaging::Image image;
    if (!imaging::CountTiffPages(helper_.Files(), picture, pages)) {
      if (host::Status loaded = services_.LoadImageFromFile(picture, image); !loaded) return loaded;
      return AddPage(picture, image, tiff);
    }
    for (int page = 0; page < pages; ++page) {
      host::Status done = imaging::LoadTiffPage(helper_.Files(), picture, page, {}, image);
      if (done) done = AddPage(picture, image, tiff);
      if (!done) return done;
    }
    return host::Status::Ok();
  }

  host::Status AddPage(const std::string& picture, imaging::Image& image, imaging::TiffPages& tiff) {
    if (host::Status prepared = Prepare(picture, image); !prepared) return prepared;
    const bool blackWhite = !order_.colour && !order_.grey;
    const TiffCompression kept = order_.compress ? TiffCompression::Jpeg : TiffCompression::Lzw;
    return tiff.Add(image, {.compression = blackWhite ? TiffCompression::Group4 : kept,
                            .quality = kQualities[static_cast<std::size_t>(order_.quality)],
                            .dpi = order_.dpi});
  }

  host::Status Prepare(const std::string& picture, imaging::Image& image) {
    const bool head = NameMatches(picture, order_.headRule, Case::Sensitive);
    host::Status done;
    if (order_.adjust && (head || !order_.adjustHeads)) {
      done = imaging::AdjustBrightnessAndContrast(image, order_.brightness, order_.contrast);
    }
    if (done && !order_.colour) done = services_.ConvertImageToGrayMode(image);
    if (done && IsCut(picture)) done = Cut(image);
    if (done && order_.resize && order_.width > 0 && order_.height > 0) {
      done = services_.ResampleImage(image, order_.width, order_.height);
    }
    if (done && order_.sharpen) done = imaging::Sharpen(image);
    return done;
  }

  bool IsCut(const std::string& picture) const {
    if (!order_.cut) return false;
    const Case letterCase = order_.matchCase ? Case::Sensitive : Case::Insensitive;
    return order_.cutAll || !order_.cutByRule || NameMatches(picture, order_.cutRule, letterCase);
  }

  // If the margins leave nothing of a picture, it is not cropped.
  host::Status Cut(imaging::Image& image) {
    const base::Rect left{order_.left, order_.top, services_.GetImageWidth(image) - order_.left - order_.right,
                          services_.GetImageHeight(image) - order_.top - order_.bottom};
    return left.Empty() ? host::Status::Ok() : services_.CutImage(image, left);
  }

  Helper& helper_;
  const OkList& order_;
  imaging::Services services_;
};

// Checks that the saved file exists and is a TIFF, if the order asks for it.
host::Status Verify(Helper& helper, const OkList& order) {
  int pages = 0;
  return order.verify ? imaging::CountTiffPages(helper.Files(), order.target, pages) : host::Status::Ok();
}

}  // namespace

host::Status MakeTiffByList(Helper& helper, const std::string& path) {
  OkList order;
  if (host::Status read = ReadOkList(helper.Files(), path, order); !read) {
    // The order file names the settings that receive the report. Without it nobody can be notified.
    if (!order.application.empty()) helper.Set(order.application, tools::key::kMakeTiffProg, read.Why());
    return read;
  }
  helper.AllowOnly({.sources = order.pictures, .results = {order.target}});
  if (order.headFirst) MoveHeadsFirst(order);
  host::Status made = Maker(helper, order).Make();
  if (made) made = Verify(helper, order);
  helper.Set(order.application, tools::key::kMakeTiffProg,
             made              ? "True"
             : made.DiskFull() ? tools::kFullDisk
                               : made.Why());
  return made;
}

}  // namespace quillon::helpers
