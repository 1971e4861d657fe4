// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstdint>
#include <initializer_list>
#include <string>
#include <string_view>

namespace quillon::imaging::testing {

// Builds the bytes of a file piece by piece.
class ByteText {
 public:
  ByteText& Text(std::string_view text) {
    bytes_ += text;
    return *this;
  }
  ByteText& U8(std::initializer_list<int> values) {
    for (const int value : values) bytes_ += static_cast<char>(value);
    return *this;
  }
  ByteText& Little16(std::uint32_t value) { return Little(value, 2); }
  ByteText& Little32(std::uint32_t value) { return Little(value, 4); }
  ByteText& Big16(std::uint32_t value) { return Big(value, 2); }
  ByteText& Big32(std::uint32_t value) { return Big(value, 4); }
  ByteText& Zeros(std::size_t count) {
    bytes_.append(count, '\0');
    return *this;
  }
  const std::string& Bytes() const { return bytes_; }
  std::size_t Size() const { return bytes_.size(); }

 private:
  ByteText& Little(std::uint32_t value, int size) {
    for (int i = 0; i < size; ++i) bytes_ += static_cast<char>(value >> (8 * i) & 0xFF);
    return *this;
  }
  ByteText& Big(std::uint32_t value, int size) {
    for (int i = size - 1; i >= 0; --i) bytes_ += static_cast<char>(value >> (8 * i) & 0xFF);
    return *this;
  }

  std::string bytes_;
};

}  // namespace quillon::imaging::testing
