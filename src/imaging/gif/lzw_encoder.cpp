// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "imaging/gif/lzw_encoder.h"

#include <algorithm>

namespace quillon::imaging {
namespace {

constexpr unsigned kCodeShift = 12;
constexpr unsigned kMostWidth = 12;  // bits of a code

// Spreads a key of 20 bits over the slots; the multiplier is that of Fibonacci hashing.
std::size_t SlotOf(std::uint32_t key) { return key * 2654435769U >> 19; }

}  // namespace

void LzwEncoder::Begin(int codeBits) {
  codeBits_ = static_cast<unsigned>(std::clamp(codeBits, 2, 8));
  clear_ = 1U << codeBits_;
  width_ = codeBits_ + 1;
  prefix_ = kNone;
  added_ = 0;
  out_ += static_cast<char>(codeBits_);
  fillingBits_ = 0;
  unsigned code = clear_ + 2;
  for (unsigned width = width_; width <= kMostWidth; ++width) {
    for (; code < 1U << width; ++code) fillingBits_ += width;
  }
  Clear();
}

void LzwEncoder::Add(const unsigned char* pixels, std::size_t count) {
  std::size_t at = 0;
  if (prefix_ == kNone && count > 0) prefix_ = pixels[at++];
  std::uint32_t prefix = prefix_;
  for (; at < count; ++at) {
    const std::uint32_t key = prefix << 8 | pixels[at];
    std::size_t slot = SlotOf(key);
    while (slots_[slot] != kFree && slots_[slot] >> kCodeShift != key) slot = (slot + 1) % kSlots;
    if (slots_[slot] != kFree) {
      prefix = slots_[slot] & (kMostCodes - 1);
      continue;
    }
    Emit(prefix);
    prefix = pixels[at];
    if (next_ < kMostCodes) {
      slots_[slot] = key << kCodeShift | next_;
      if (next_++ == 1U << width_) ++width_;
    } else if (ServesBadly(added_ + at)) {
      Clear();
      begun_ = added_ + at;
    }
  }
  added_ += count;
  prefix_ = prefix;
}

void LzwEncoder::End() {
  if (prefix_ != kNone) {
    Emit(prefix_);
    // The decoder adds an entry for this code too, which may need a wider code.
    if (next_ < kMostCodes && next_++ == 1U << width_) ++width_;
  }
  Emit(clear_ + 1);
  while (bitCount_ > 0) {
    EmitByte(static_cast<unsigned char>(bits_));
    bits_ >>= 8;
    bitCount_ -= std::min(bitCount_, 8U);
  }
  if (blockSize_ > 0) {
    out_ += static_cast<char>(blockSize_);
    out_.append(reinterpret_cast<const char*>(block_.data()), blockSize_);
    blockSize_ = 0;
  }
  out_ += '\0';
}

void LzwEncoder::Clear() {
  Emit(clear_);
  std::fill(slots_.begin(), slots_.end(), kFree);
  width_ = codeBits_ + 1;
  next_ = clear_ + 2;
  begun_ = added_;
  filling_ = 0;
}

// A new dictionary would compress as well as this one did while it was filled.
bool LzwEncoder::ServesBadly(std::uint64_t pixel) {
  constexpr unsigned kStretch = 512;  // codes
  if (filling_ == 0) {
    filling_ = static_cast<double>(pixel - begun_) / fillingBits_;
    stretchBegun_ = pixel;
    stretchCodes_ = 0;
  }
  if (++stretchCodes_ < kStretch) return false;
  const double ratio = static_cast<double>(pixel - stretchBegun_) / (kStretch * double{kMostWidth});
  stretchBegun_ = pixel;
  stretchCodes_ = 0;
  return ratio < filling_;
}

void LzwEncoder::Emit(unsigned code) {
  bits_ |= code << bitCount_;
  bitCount_ += width_;
  while (bitCount_ >= 8) {
    EmitByte(static_cast<unsigned char>(bits_));
    bits_ >>= 8;
    bitCount_ -= 8;
  }
}

void LzwEncoder::EmitByte(unsigned char byte) {
  block_[blockSize_++] = byte;
  if (blockSize_ < block_.size()) return;
  out_ += static_cast<char>(blockSize_);
  out_.append(reinterpret_cast<const char*>(block_.data()), blockSize_);
  blockSize_ = 0;
}

}  // namespace quillon::imaging
