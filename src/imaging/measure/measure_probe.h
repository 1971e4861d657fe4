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

// One MediaInfo object for many files. One thread at a time may use it.
//
// The file is opened here and its bytes are passed on instead of its name: MediaInfo would read numbered names as one
// image sequence, converts names to wide text by the locale (which fails for names that are no text there), and detects
// the kind of a file more slowly than the first bytes do.
class MeasureProbe {
 public:
  MeasureProbe();
  ~MeasureProbe();
  MeasureProbe(const MeasureProbe&) = delete;
  MeasureProbe& operator=(const MeasureProbe&) = delete;

  // An open file and its first bytes, which are enough for most pictures. An unresponsive disk blocks here, before the
  // MediaInfo object is in use.
  class Source {
   public:
    // Fails with Missing, Denied or another failure of the system.
    host::Status Open(const std::string& path);

   private:
    friend MeasureProbe;
    struct Close {
      void operator()(std::FILE* file) const { std::fclose(file); }
    };

    std::unique_ptr<std::FILE, Close> file_;
    std::uint64_t length_ = 0;
    std::vector<unsigned char> block_;  // the bytes that were read last
    std::size_t count_ = 0;             // how many bytes of block_ are in use
  };

  // Stores the size in pixels; on failure size is unchanged. Fails as the system does if the file cannot be read, with
  // Unsupported if no size is reported, with Damaged if a side is 0.
  host::Status Measure(Source& source, base::Size& size);

 private:
  struct Parts;
  std::unique_ptr<Parts> parts_;
};

// Reads the size from a report: the text between "Width" and "pixels", then after the next "Height"; blanks and the
// colon are removed, so that "3 840 pixels" is 3840. Returns false if there is no such text or it is no number.
bool SizeFromReport(std::wstring_view report, base::Size& size);

}  // namespace quillon::imaging
