// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstdint>
#include <cstdio>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

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

  // A file opened for it, and its first bytes: most pictures need no more. A disk that does not answer is met here,
  // before the object is taken.
  class Source {
   public:
    // Missing, Denied or another system failure.
    host::Status Open(const std::string& path);

   private:
    friend MeasureProbe;
    struct Close {
      void operator()(std::FILE* file) const { std::fclose(file); }
    };

    std::unique_ptr<std::FILE, Close> file_;
    std::uint64_t length_ = 0;
    std::vector<unsigned char> block_;  // read last
    std::size_t count_ = 0;             // bytes in it
  };

  // Size in pixels. A system failure when it cannot be read; Unsupported when no size is reported; Damaged when it is
  // zero. size is set on success only.
  host::Status Measure(Source& source, base::Size& size);

 private:
  struct Parts;
  std::unique_ptr<Parts> parts_;
};

// Takes the size from a report: the text between "Width" and "pixels", then from the next "Height" on; blanks and the
// colon are removed, so "3 840 pixels" is 3840. False when there is no such text or it is no number.
bool SizeFromReport(std::wstring_view report, base::Size& size);

}  // namespace quillon::imaging
