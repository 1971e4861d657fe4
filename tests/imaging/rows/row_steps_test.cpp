// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "imaging/rows/row_steps.h"

#include <gtest/gtest.h>

#include <algorithm>

#include "imaging/pictures.h"
#include "imaging/pixels/picture.h"
#include "imaging/pixels/resample.h"

namespace quillon::imaging {
namespace {

using namespace testing;

// The rows of a sheet. Reading row failing, if it is given, fails.
class SheetRows final : public RowStream {
 public:
  explicit SheetRows(Sheet sheet, int failing = -1) : sheet_(std::move(sheet)), failing_(failing) {
    facts_.size = {sheet_.width, sheet_.height};
    facts_.layout = sheet_.bands == 1 ? RowLayout::Grey : sheet_.bands == 3 ? RowLayout::Rgb : RowLayout::Cmyk;
  }

  const RowFacts& Facts() const override { return facts_; }
  Status ReadRow(unsigned char* out) override {
    if (next_ == failing_) return {host::Problem::Damaged, "torn"};
    const auto from = sheet_.values.begin() + std::ptrdiff_t{next_} * sheet_.width * sheet_.bands;
    std::transform(from, from + std::ptrdiff_t{sheet_.width} * sheet_.bands, out,
                   [](int value) { return static_cast<unsigned char>(value); });
    ++next_;
    return Status::Ok();
  }
  int Read() const { return next_; }

 private:
  Sheet sheet_;
  int failing_;
  RowFacts facts_;
  int next_ = 0;
};

Sheet ReadAll(RowStream& rows) {
  const RowFacts& facts = rows.Facts();
  Sheet sheet{facts.size.width, facts.size.height, facts.Channels(), {}};
  std::vector<unsigned char> row(static_cast<std::size_t>(facts.size.width) *
                                 static_cast<unsigned>(facts.PixelBytes()));
  for (int y = 0; y < facts.size.height; ++y) {
    EXPECT_TRUE(rows.ReadRow(row.data())) << y;
    sheet.values.insert(sheet.values.end(), row.begin(), row.end());
  }
  return sheet;
}

TEST(PrefetchedRows, AreTheRowsOfTheStream) {
  for (const int height : {1, 15, 16, 17, 64, 65, 200}) {
    const Sheet sheet = PhotoLike(7, height, 3);
    PrefetchedRows ahead(std::make_shared<SheetRows>(sheet));
    EXPECT_EQ(ReadAll(ahead), sheet) << height;
  }
}

TEST(PrefetchedRows, AFailureComesInItsPlaceAndStays) {
  for (const int failing : {0, 5, 16, 100}) {
    PrefetchedRows ahead(std::make_shared<SheetRows>(PhotoLike(7, 120, 1), failing));
    std::vector<unsigned char> row(7);
    for (int y = 0; y < failing; ++y) ASSERT_TRUE(ahead.ReadRow(row.data())) << y;
    EXPECT_EQ(ahead.ReadRow(row.data()).Why(), "torn") << failing;
    EXPECT_EQ(ahead.ReadRow(row.data()).Why(), "torn") << failing;
  }
}

TEST(PrefetchedRows, ReadsNoFurtherThanSomeBlocks) {
  auto rows = std::make_shared<SheetRows>(PhotoLike(3, 10000, 1));
  {
    PrefetchedRows ahead(rows);
    std::vector<unsigned char> row(3);
    ASSERT_TRUE(ahead.ReadRow(row.data()));
  }
  EXPECT_LE(rows->Read(), 100);
}

TEST(PartRows, AreTheRectangle) {
  const Sheet sheet = PhotoLike(50, 40, 3);
  for (const base::Rect rect : {base::Rect{0, 0, 50, 40}, {7, 11, 20, 13}, {49, 39, 1, 1}, {0, 0, 1, 40}}) {
    auto rows = std::make_shared<SheetRows>(sheet);
    PartRows part(rows, rect);
    EXPECT_EQ(ReadAll(part), Part(sheet, rect));
    EXPECT_EQ(rows->Read(), rect.top + rect.height);
  }
  PartRows torn(std::make_shared<SheetRows>(sheet, 5), {0, 10, 1, 1});
  std::vector<unsigned char> row(3);
  EXPECT_EQ(torn.ReadRow(row.data()).Why(), "torn");
}

TEST(ScaledRows, AreThoseOfTheLanczosKernel) {
  EnsureVips();
  for (const int bands : {1, 3, 4}) {
    const Sheet sheet = PhotoLike(91, 67, bands);
    const auto kind = bands == 1   ? VIPS_INTERPRETATION_B_W
                      : bands == 3 ? VIPS_INTERPRETATION_sRGB
                                   : VIPS_INTERPRETATION_CMYK;
    for (const base::Size size : {base::Size{91, 67}, {90, 67}, {91, 30}, {60, 44}, {13, 9}, {1, 1}}) {
      ScaledRows scaled(std::make_shared<SheetRows>(sheet), {91, 67}, size);
      const Sheet expected = FromVips(LanczosScaled(ToVips(sheet, kind), size));
      // Sums in another order may round to a neighbouring value.
      EXPECT_LE(Difference(ReadAll(scaled), expected), size.width > 1 ? 1 : 2) << bands << " " << size.width;
    }
  }
}

TEST(ScaledRows, OnlyWhatIsUsedCountsAndAllIsRead) {
  EnsureVips();
  const Sheet sheet = PhotoLike(50, 40, 3);
  auto rows = std::make_shared<SheetRows>(sheet);
  ScaledRows scaled(rows, {49, 38}, {20, 20});
  const Sheet expected = FromVips(LanczosScaled(ToVips(Part(sheet, {0, 0, 49, 38})), {20, 20}));
  EXPECT_LE(Difference(ReadAll(scaled), expected), 1);
  EXPECT_EQ(rows->Read(), 40);
}

TEST(ScaledRows, AFailureBelowWhatIsUsedIsSeen) {
  ScaledRows scaled(std::make_shared<SheetRows>(PhotoLike(50, 40, 3), 39), {50, 39}, {10, 2});
  std::vector<unsigned char> row(30);
  EXPECT_TRUE(scaled.ReadRow(row.data()));
  EXPECT_EQ(scaled.ReadRow(row.data()).Why(), "torn");
}

}  // namespace
}  // namespace quillon::imaging
