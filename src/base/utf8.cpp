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

// Overlong forms, surrogates and values beyond U+10FFFF differ from good ones in the second byte.
bool SecondByteFits(unsigned char lead, unsigned char second) {
  if (lead == 0xE0) return second >= 0xA0;
  if (lead == 0xED) return second <= 0x9F;
  if (lead == 0xF0) return second >= 0x90;
  if (lead == 0xF4) return second <= 0x8F;
  return true;
}

// Length of the well-formed sequence at the head of the bytes, 0 if there is none.
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

}  // namespace quillon::base
