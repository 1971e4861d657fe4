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
  std::uint32_t type = 0;   // type number of TIFF; may be unknown
  std::uint64_t count = 0;  // number of values
  std::uint64_t at = 0;     // offset of the first value
  std::uint64_t size = 0;   // bytes of all values; 0 for an unknown type; may reach beyond the file
};

// Reads the directories of a TIFF structure in its byte order: a TIFF or BigTIFF file, or an EXIF block.
// The structure may come from an untrusted file; nothing outside its bytes is read.
class TiffTags {
 public:
  // Returns nothing if the bytes do not start with a TIFF header. bytes has to outlive the object.
  static std::optional<TiffTags> Open(Bytes& bytes);

  // Returns the entries of the directory at an offset, at most 4096.
  // Returns nothing if there are more or if the table does not lie inside the bytes.
  std::optional<std::vector<TiffEntry>> Directory(std::uint64_t at) const;
  // Returns the offset of the first directory.
  std::uint64_t First() const { return first_; }
  // Returns true for BigTIFF, whose counts and offsets have 8 bytes.
  bool Wide() const { return wide_; }

  // Returns true if all values of the entry lie inside the bytes.
  bool Holds(const TiffEntry& entry) const;
  // Returns the value of an entry with exactly one unsigned integer; nothing for any other.
  std::optional<std::uint64_t> Integer(const TiffEntry& entry) const;
  // Returns the first value of an entry of unsigned rationals; nothing for other types and for a denominator of 0.
  std::optional<double> Rational(const TiffEntry& entry) const;
  // Returns all values with every number converted to little-endian order.
  // Returns nothing if they exceed limit bytes or do not lie inside the bytes.
  std::optional<std::string> Values(const TiffEntry& entry, std::uint64_t limit) const;

 private:
  explicit TiffTags(Bytes& bytes) : bytes_(&bytes) {}
  bool Number(std::uint64_t at, int size, std::uint64_t& value) const;

  Bytes* bytes_;
  bool big_ = false;   // big-endian
  bool wide_ = false;  // BigTIFF
  std::uint64_t first_ = 0;
};

// Returns the bytes of one number of a type, which is the unit of its byte order: 4 for a rational, which has two.
// Returns 0 for an unknown type.
int TiffNumberSize(std::uint32_t type);

}  // namespace quillon::imaging
