// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <memory>
#include <string>
#include <string_view>

#include "base/rect.h"
#include "host/status.h"

namespace quillon::imaging {

// One MediaInfo object, used again and again, by one thread at a time.
//
// The file is opened here and its bytes are handed over, rather than its name: MediaInfo takes numbered names for one
// image sequence, turns names into wide text by the locale (which fails for names that are not text there), and finds
// out the kind of a file slower than by its first bytes.
class MeasureProbe {
 public:
  MeasureProbe();
  ~MeasureProbe();
  MeasureProbe(const MeasureProbe&) = delete;
  MeasureProbe& operator=(const MeasureProbe&) = delete;

  // Size in pixels. Missing, Denied or another system failure when it cannot be read; Unsupported when no size is
  // reported; Damaged when it is zero. size is set on success only.
  host::Status Measure(const std::string& path, base::Size& size);

 private:
  struct Parts;
  std::unique_ptr<Parts> parts_;
};

// Takes the size from a report: the text between "Width" and "pixels", then from the next "Height" on; blanks and the
// colon are removed, so "3 840 pixels" is 3840. False when there is no such text or it is no number.
bool SizeFromReport(std::wstring_view report, base::Size& size);

}  // namespace quillon::imaging
