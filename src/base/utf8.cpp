// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "base/utf8.h"

#include <cstdint>

namespace quillon::base {
namespace {

bool IsContinuation(char byte) { return (static_cast<unsigned char>(byte) & 0xC0) == 0x80; }

std::size_t LengthByLead(unsigned char lead) {
  if (lead < 0x80) return 1;
  if (lead >= 0xC2 && lead <= 0xDF) return 2;
  if (lead >= 0xE0 && lead <= 0xEF) return 3;
  if (lead >= 0xF0 && lead <= 0xF4) return 4;
  return 0;
}

// Overlong forms, surrogates and values above U+10FFFF differ from valid sequences only in the second byte.
bool SecondByteFits(unsigned char lead, unsigned char second) {
  if (lead == 0xE0) return second >= 0xA0;
  if (lead == 0xED) return second <= 0x9F;
  if (lead == 0xF0) return second >= 0x90;
  if (lead == 0xF4) return second <= 0x8F;
  return true;
}

// Returns the length of the well-formed sequence at the start of the bytes, or 0 if there is none. bytes is not empty.
std::size_t SequenceLength(std::string_view bytes) {
  const auto lead = static_cast<unsigned char>(bytes[0]);
  const std::size_t length = LengthByLead(lead);
  if (length == 0 || length > bytes.size()) return 0;
  for (std::size_t i = 1; i < length; ++i) {
    if (!IsContinuation(bytes[i])) return 0;
  }
  if (length > 1 && !SecondByteFits(lead, static_cast<unsigned char>(bytes[1]))) return 0;
  return length;
}

// Returns the code point of the well-formed sequence of length bytes at the start of the bytes.
unsigned CodePoint(std::string_view bytes, std::size_t length) {
  const auto byte = [&](std::size_t i) { return static_cast<unsigned>(static_cast<unsigned char>(bytes[i])); };
  if (length == 1) return byte(0);
  unsigned value = byte(0) & (0xFFU >> (length + 1));
  for (std::size_t i = 1; i < length; ++i) value = value << 6 | (byte(i) & 0x3F);
  return value;
}

void AppendUnit(std::string& out, unsigned unit) {
  out += static_cast<char>(unit & 0xFF);
  out += static_cast<char>(unit >> 8);
}

}  // namespace

std::string DisplayText(std::string_view bytes) {
  std::string out;
  out.reserve(bytes.size());
  while (!bytes.empty()) {
    const std::size_t length = SequenceLength(bytes);
    if (length == 0) {
      out += "\uFFFD";
      bytes.remove_prefix(1);
    } else {
      out += bytes.substr(0, length);
      bytes.remove_prefix(length);
    }
  }
  return out;
}

bool IsUtf8(std::string_view bytes) {
  while (!bytes.empty()) {
    const std::size_t length = SequenceLength(bytes);
    if (length == 0) return false;
    bytes.remove_prefix(length);
  }
  return true;
}

std::string Utf16WithMark(std::string_view utf8) {
  std::string out = "\xFF\xFE";
  while (!utf8.empty()) {
    const std::size_t length = SequenceLength(utf8);
    if (length == 0) break;
    const unsigned value = CodePoint(utf8, length);
    if (value < 0x10000) {
      AppendUnit(out, value);
    } else {
      // Code points above the basic plane become a surrogate pair.
      AppendUnit(out, 0xD800 + ((value - 0x10000) >> 10));
      AppendUnit(out, 0xDC00 + ((value - 0x10000) & 0x3FF));
    }
    utf8.remove_prefix(length);
  }
  return out;
}

}  // namespace quillon::base
