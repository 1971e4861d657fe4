// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <array>
#include <condition_variable>
#include <memory>
#include <mutex>
#include <stop_token>
#include <thread>
#include <vector>

#include "imaging/rows/lanczos.h"
#include "imaging/rows/row_source.h"

// Steps between a stream of rows and what takes them, each a stream of rows itself. None holds more than some rows.
namespace quillon::imaging {

// The rows of another stream, which are read some ahead on a thread of their own, so that what takes them works
// meanwhile. A failure comes with the row that it keeps away.
class RowsAhead final : public RowStream {
 public:
  explicit RowsAhead(std::shared_ptr<RowStream> from);
  ~RowsAhead() override;
  RowsAhead(const RowsAhead&) = delete;
  RowsAhead& operator=(const RowsAhead&) = delete;

  const RowFacts& Facts() const override { return from_->Facts(); }
  host::Status ReadRow(unsigned char* out) override;

 private:
  static constexpr int kRowsABlock = 16;
  static constexpr int kBlocks = 4;

  // Rows that were read, and what the next one failed with.
  struct Block {
    std::vector<unsigned char> rows;
    int count = 0;
    host::Status status;
  };

  void Work(const std::stop_token& stop);
  void Fill(Block& block, int most);

  std::shared_ptr<RowStream> from_;
  std::size_t rowBytes_;
  std::array<Block, kBlocks> blocks_;
  std::mutex mutex_;
  std::condition_variable_any changed_;
  int filled_ = 0;  // blocks handed over so far
  int taken_ = 0;   // blocks given back so far
  int row_ = 0;     // in the block that is being taken
  std::jthread thread_;
};

// A part of the rows of another stream. Those above it are skipped, what lies beside and below is not looked at. rect
// lies inside of them.
class PartRows final : public RowStream {
 public:
  PartRows(std::shared_ptr<RowStream> from, base::Rect rect);

  const RowFacts& Facts() const override { return facts_; }
  host::Status ReadRow(unsigned char* out) override;

 private:
  std::shared_ptr<RowStream> from_;
  RowFacts facts_;
  base::Rect rect_;
  std::vector<unsigned char> row_;
  bool begun_ = false;
};

// Rows of 8 bits without alpha, scaled down to size by the Lanczos kernel. Of the rows of the other stream, the first
// used.height and their first used.width pixels count; the others are read all the same, so that damage there is
// found. No side of size is 0 or larger than that of used.
class ScaledRows final : public RowStream {
 public:
  ScaledRows(std::shared_ptr<RowStream> from, base::Size used, base::Size size);

  const RowFacts& Facts() const override { return facts_; }
  host::Status ReadRow(unsigned char* out) override;

 private:
  // A row of the source counts for so many rows of the result at most.
  static constexpr int kSums = 8;

  host::Status AddRow();
  void WriteRow(const float* sums, unsigned char* out) const;
  std::vector<float>& SumsOf(int row) { return sums_[static_cast<std::size_t>(row % kSums)]; }

  std::shared_ptr<RowStream> from_;
  RowFacts facts_;
  base::Size used_;
  LanczosAxis across_;
  LanczosAxis down_;
  std::vector<unsigned char> bytes_;  // a row of the source
  std::vector<float> row_;
  std::array<std::vector<float>, kSums> sums_;  // rows of the result that are begun, as wide as the source
  int read_ = 0;
  int next_ = 0;
};

}  // namespace quillon::imaging
