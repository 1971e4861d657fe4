// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <memory>
#include <string_view>

#include "base/rect.h"
#include "host/status.h"

namespace quillon::helpers {

// One MediaInfo object for many files.
//
// It gets the bytes of a file instead of its name: MediaInfo would read numbered names as one image sequence, and
// converts names to wide text by the locale, which fails for names that are no text there.
class MediaInfoReport {
 public:
  MediaInfoReport();
  ~MediaInfoReport();
  MediaInfoReport(const MediaInfoReport&) = delete;
  MediaInfoReport& operator=(const MediaInfoReport&) = delete;

  // Stores the size in pixels of the picture in an open file, which stays open; on failure size is unchanged.
  // Fails as the system does if the file cannot be read, with Unsupported if no size is reported, with Damaged if a
  // side is 0. A file that was made for it can make MediaInfo compute for ever.
  host::Status Measure(int file, base::Size& size);

 private:
  struct Parts;
  std::unique_ptr<Parts> parts_;
};

// Reads the size from a report: the text between "Width" and "pixels", then after the next "Height"; blanks and the
// colon are removed, so that "3 840 pixels" is 3840. Returns false if there is no such text or it is no number.
bool SizeFromReport(std::wstring_view report, base::Size& size);

}  // namespace quillon::helpers
