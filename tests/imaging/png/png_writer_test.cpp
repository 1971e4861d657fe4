// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "imaging/png/png_writer.h"

#include <gtest/gtest.h>

#include "imaging/io/bytes.h"
#include "imaging/pictures.h"
#include "imaging/png/png_reader.h"

namespace quillon::imaging {
namespace {

using namespace testing;

using Rows = std::vector<unsigned char>;

constexpr base::Size kSize{200, 90};

RowFacts FactsOf(base::Size size) {
  RowFacts facts;
  facts.size = size;
  facts.alpha = true;
  return facts;
}

std::string Written(const Rows& rows, base::Size size, PngCompression compression) {
  MemoryDraft draft([](std::int64_t) { return host::Status::Ok(); });
  PngWriter writer(draft);
  EXPECT_TRUE(writer.Begin(FactsOf(size), {.compression = compression}));
  const std::size_t rowBytes = static_cast<std::size_t>(size.width) * 4;
  for (std::size_t at = 0; at < rows.size(); at += rowBytes) EXPECT_TRUE(writer.WriteRow(rows.data() + at));
  EXPECT_TRUE(writer.Finish());
  return draft.Release();
}

Rows Decoded(const std::string& png) {
  PngReader reader(std::make_shared<MemoryBytes>(png), {});
  EXPECT_TRUE(reader.Open());
  const base::Size& size = reader.Facts().size;
  const std::size_t rowBytes = static_cast<std::size_t>(size.width) * 4;
  Rows rows(rowBytes * static_cast<std::size_t>(size.height));
  for (std::size_t at = 0; at < rows.size(); at += rowBytes) EXPECT_TRUE(reader.ReadRow(rows.data() + at));
  EXPECT_TRUE(reader.CheckRest());
  return rows;
}

// Slopes that filters flatten, without or with noise.
Rows Slopes(base::Size size, unsigned noise) {
  Rows rows;
  unsigned random = 7;
  for (int y = 0; y < size.height; ++y) {
    for (int x = 0; x < size.width; ++x) {
      for (int c = 0; c < 4; ++c) {
        random = random * 1664525U + 1013904223U;
        const unsigned more = noise > 0 ? (random >> 16) % noise : 0;
        rows.push_back(static_cast<unsigned char>((x * (c + 2) + y * (5 - c)) / 3 + static_cast<int>(more)));
      }
    }
  }
  return rows;
}

constexpr PngCompression kAll[] = {PngCompression::Standard, PngCompression::Flat, PngCompression::Noisy,
                                   PngCompression::Smooth, PngCompression::Photo};

TEST(PngWriter, EveryCompressionKeepsThePixels) {
  for (const unsigned noise : {0U, 3U, 200U}) {
    for (const base::Size size : {kSize, base::Size{1, 1}, base::Size{1, 90}, base::Size{300, 1}, base::Size{9, 24}}) {
      const Rows rows = Slopes(size, noise);
      for (const PngCompression compression : kAll) {
        EXPECT_TRUE(Decoded(Written(rows, size, compression)) == rows) << size.width << " x " << size.height;
      }
    }
  }
}

TEST(PngWriter, FiltersOfAllRowsAreUsed) {
  // Each row differs from the one above, so only the rows of a filtered picture are alike.
  const Rows rows = Slopes(kSize, 0);
  const std::size_t flat = Written(rows, kSize, PngCompression::Flat).size();
  EXPECT_LT(Written(rows, kSize, PngCompression::Noisy).size() * 4, flat);
  EXPECT_LT(Written(rows, kSize, PngCompression::Photo).size() * 4, flat);
}

TEST(PngWriter, APhotoIsWrittenInTheSmallerWay) {
  constexpr base::Size kFew{400, 20};
  for (const unsigned noise : {0U, 2U, 5U, 200U}) {
    const Rows rows = Slopes(kFew, noise);
    const auto size = [&](PngCompression compression) { return Written(rows, kFew, compression).size(); };
    EXPECT_EQ(size(PngCompression::Photo), std::min(size(PngCompression::Noisy), size(PngCompression::Smooth)));
  }
}

TEST(PngWriter, TheFirstErrorOfTheDraftIsReturned) {
  const Rows rows = Slopes(kSize, 200);
  const auto result = [&](std::int64_t room) {
    std::int64_t left = room;
    MemoryDraft draft([&](std::int64_t bytes) {
      left -= bytes;
      return left >= 0 ? host::Status::Ok() : host::Status(host::Problem::DiskFull, "full");
    });
    PngWriter writer(draft);
    host::Status status = writer.Begin(FactsOf(kSize), {.compression = PngCompression::Photo});
    for (std::size_t at = 0; status && at < rows.size(); at += 800) status = writer.WriteRow(rows.data() + at);
    return status ? writer.Finish() : status;
  };
  EXPECT_EQ(result(4).GetProblem(), host::Problem::DiskFull);
  EXPECT_EQ(result(40).GetProblem(), host::Problem::DiskFull);
  EXPECT_EQ(result(2000).GetProblem(), host::Problem::DiskFull);
  EXPECT_TRUE(result(1 << 20));
}

}  // namespace
}  // namespace quillon::imaging
