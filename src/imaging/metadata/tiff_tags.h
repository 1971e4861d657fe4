// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "imaging/io/bytes.h"

namespace quillon::imaging {

// One entry of a directory of a TIFF structure.
struct TiffEntry {
  std::uint32_t tag = 0;
  std::uint32_t type = 0;   // as TIFF numbers them; other numbers have no size
  std::uint64_t count = 0;  // of values
  std::uint64_t at = 0;     // of the first value
  std::uint64_t size = 0;   // bytes of all values, 0 for a type that is not known; may reach beyond the file
};

// Reads the directories of a TIFF structure (a TIFF or BigTIFF file, an EXIF block) in its byte order. It may come from
// strangers: nothing outside of the bytes is read.
class TiffTags {
 public:
  // Nothing when the bytes do not begin as a TIFF structure. bytes has to outlive the object.
  static std::optional<TiffTags> Open(Bytes& bytes);

  // The entries of the directory at that offset; nothing when it does not lie inside.
  std::optional<std::vector<TiffEntry>> Directory(std::uint64_t at) const;
  std::uint64_t First() const { return first_; }
  bool Wide() const { return wide_; }

  // Whether all values lie inside the bytes.
  bool Holds(const TiffEntry& entry) const;
  // The value of an entry of one whole number; nothing for any other.
  std::optional<std::uint64_t> Integer(const TiffEntry& entry) const;
  // The first value of an entry of unsigned rationals; nothing for any other, and for a divisor of 0.
  std::optional<double> Rational(const TiffEntry& entry) const;
  // All values with every number in little-endian order; nothing when they are not inside or above limit bytes.
  std::optional<std::string> Values(const TiffEntry& entry, std::uint64_t limit) const;

 private:
  explicit TiffTags(Bytes& bytes) : bytes_(&bytes) {}
  bool Number(std::uint64_t at, int size, std::uint64_t& value) const;

  Bytes* bytes_;
  bool big_ = false;   // byte order
  bool wide_ = false;  // BigTIFF
  std::uint64_t first_ = 0;
};

// Bytes of one number of a type, as far as byte order goes (a rational has two); 0 when the type is not known.
int TiffNumberSize(std::uint32_t type);

}  // namespace quillon::imaging
