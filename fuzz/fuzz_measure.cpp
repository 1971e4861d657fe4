// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
//
// Any bytes as the header of a file: the answer has both sides or none, is the same a second time, and costs few reads.
#include <cstdint>
#include <memory>
#include <string>

#include "fuzz_pictures.h"
#include "imaging/codecs/vips_loader.h"
#include "imaging/measure/measure.h"

namespace imaging = quillon::imaging;
using quillon::fuzz::Require;

namespace {

// Counts reads. The longest chain of chunks and a directory of the longest tables stay far below the bound.
class CountedBytes final : public imaging::Bytes {
 public:
  explicit CountedBytes(const std::shared_ptr<const std::string>& content) : bytes_(content) {}
  std::uint64_t Size() const override { return bytes_.Size(); }
  bool ReadAt(std::uint64_t offset, void* out, std::size_t size) override {
    constexpr int kMostReads = 30'000;
    Require(++reads_ < kMostReads);
    return bytes_.ReadAt(offset, out, size);
  }

 private:
  imaging::MemoryBytes bytes_;
  int reads_ = 0;
};

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const auto content = std::make_shared<const std::string>(reinterpret_cast<const char*>(data), size);
  imaging::HeaderFacts first;
  imaging::HeaderFacts second;
  CountedBytes bytes(content);
  const imaging::HeaderKind kind = imaging::ReadHeader(bytes, first);
  imaging::MemoryBytes again(content);
  Require(imaging::ReadHeader(again, second) == kind);
  Require(first.size == second.size && first.dpi == second.dpi);
  Require(first.size.Empty() == (first.size == quillon::base::Size{}));
  Require(first.dpi >= 0 && first.dpi <= 166'459);  // 65535 a centimetre
  for (const imaging::Format format : {imaging::Format::Png, imaging::Format::Gif, imaging::Format::Tiff}) {
    static_cast<void>(imaging::CanHold(format, again, {60'000, 60'000}));
  }
  return 0;
}
