// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <string>

#include "host/files/files.h"
#include "host/status.h"
#include "imaging/services.h"

namespace quillon::job {

// Returns whether files of this format can have several pages or frames.
inline bool CanHoldSeveral(imaging::Format format) {
  using imaging::Format;
  return format == Format::Gif || format == Format::Png || format == Format::Tiff;
}

// The pages or frames of a picture file. A cut of this program reads the first one alone.
struct PagesOfFile {
  imaging::Format format = imaging::Format::Unknown;
  int count = 1;

  bool Several() const { return count > 1; }
  // Returns a note for a result beside the source, such as "源文件有 8 页，只取第一页"; "" for a single page.
  std::string Note() const;
  // Returns why a result must not replace the source, which would lose all pages but the first. Names the cut mode that
  // keeps them. "" for a single page.
  std::string Refusal() const;
  bool operator==(const PagesOfFile&) const = default;
};

// Counts the pages of a picture whose format ImageInfo has found. Unless the format can hold several, no file is read.
// Fails if the file cannot be read. If its structure is damaged, the count is 1: the cut reports the damage.
host::Status CountPages(imaging::Services& images, const std::string& path, imaging::Format format, PagesOfFile& pages);

// Stores the format of a picture and its number of pages, as a cut will find them. May be called from any thread. Fails
// if the file cannot be read.
host::Status FindPages(const host::Files& files, const std::string& path, PagesOfFile& pages);

}  // namespace quillon::job
