// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include <array>
#include <optional>

#include "base/number_text.h"
#include "base/path_text.h"
#include "helpers/qx_img_tool/operations.h"
#include "helpers/qx_img_tool/pages.h"
#include "imaging/codecs/tiff_pages.h"

namespace quillon::helpers {
namespace {

using imaging::TiffCompression;

constexpr int kMaxPages = 100000;

std::optional<TiffCompression> CompressionOf(const std::string& word) {
  struct Known {
    const char* word;
    TiffCompression compression;
  };
  constexpr std::array kKnown{Known{"lzw", TiffCompression::Lzw}, Known{"ccitt3", TiffCompression::Group3},
                              Known{"ccitt4", TiffCompression::Group4}, Known{"rle", TiffCompression::PackBits},
                              Known{"noe", TiffCompression::None}};
  for (const Known& known : kKnown) {
    if (word == known.word) return known.compression;
  }
  return std::nullopt;
}

}  // namespace

host::Status MakeTiff(Helper& helper, const ToolOrder& order) {
  const std::optional<TiffCompression> compression = CompressionOf(order.Field(0));
  const int pages = base::ParseInteger(order.Field(2)).value_or(0);
  if (!compression || pages < 1 || pages > kMaxPages) return UsageError("压缩方式或页数");
  host::Files& files = helper.Files();
  return files.Save(order.output, [&](host::Draft& draft) {
    imaging::TiffPages tiff(draft, pages);
    FollowEnd end = FollowEnd::Part;
    const auto addPage = [&](int page) {
      const host::Status added =
          tiff.AddFile(files, base::JoinPath(order.input, PageName(page)), {.compression = *compression});
      // A page that cannot be read is omitted, as the program does; a full disk ends the run.
      return added.DiskFull() ? added : host::Status::Ok();
    };
    if (host::Status status = FollowPages(helper, order, {.pages = pages, .onPage = addPage}, end); !status) {
      return status;
    }
    const Complete complete = tiff.Count() == pages ? Complete::Yes : Complete::No;
    if (host::Status may = CheckReplace(helper, order.output, complete); !may) return may;
    return tiff.Finish();
  });
}

}  // namespace quillon::helpers
