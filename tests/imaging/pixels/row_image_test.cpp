// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "imaging/pixels/row_image.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <new>

namespace quillon::imaging {
namespace {

using host::Problem;
using host::Status;

constexpr int kWidth = 40;
constexpr int kHeight = 200;

RowFacts FactsOfRows() {
  RowFacts facts;
  facts.size = {kWidth, kHeight};
  facts.layout = RowLayout::Grey;
  return facts;
}

// Memory runs out at the middle row, as it does if a reader allocates late.
class LateStream final : public RowStream {
 public:
  const RowFacts& Facts() const override { return facts_; }
  Status ReadRow(unsigned char* out) override {
    if (++rows_ == kHeight / 2) throw std::bad_alloc();
    std::fill_n(out, kWidth, static_cast<unsigned char>(7));
    return Status::Ok();
  }

 private:
  RowFacts facts_ = FactsOfRows();
  int rows_ = 0;
};

class LateSource final : public RowSource {
 public:
  const RowFacts& Facts() const override { return facts_; }
  Status ReadSpan(int y, int, int width, unsigned char* out) override {
    if (y == kHeight / 2) throw std::bad_alloc();
    std::fill_n(out, width, static_cast<unsigned char>(7));
    return Status::Ok();
  }

 private:
  RowFacts facts_ = FactsOfRows();
};

TEST(RowImage, LackOfMemoryInAReaderIsAFailureAndNotTheEnd) {
  EnsureVips();
  const auto failure = [](const std::shared_ptr<ReadFault>& fault, vips::VImage image) {
    EXPECT_THROW((void)image.copy_memory(), vips::VError);
    return fault->Get().GetProblem();
  };
  const Problem outOfMemory = fault::OutOfMemory().GetProblem();
  const auto ofStream = std::make_shared<ReadFault>();
  EXPECT_EQ(failure(ofStream, ImageOfRows(std::make_shared<LateStream>(), kHeight, ofStream)), outOfMemory);
  const auto ofSource = std::make_shared<ReadFault>();
  EXPECT_EQ(failure(ofSource, ImageOfRows(std::make_shared<LateSource>(), ofSource)), outOfMemory);
}

}  // namespace
}  // namespace quillon::imaging
