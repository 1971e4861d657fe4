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

// Row streams that transform another row stream. Each holds a few rows, never the whole picture.
namespace quillon::imaging {

// Reads another stream ahead on a thread of its own, so that decoding overlaps with what the consumer does.
// At most 64 rows are read ahead. A read error is returned when the missing row is requested.
// The destructor stops the thread and waits for the row that is being read.
class PrefetchedRows final : public RowStream {
 public:
  explicit PrefetchedRows(std::shared_ptr<RowStream> from);
  ~PrefetchedRows() override;
  PrefetchedRows(const PrefetchedRows&) = delete;
  PrefetchedRows& operator=(const PrefetchedRows&) = delete;

  const RowFacts& Facts() const override { return from_->Facts(); }
  host::Status ReadRow(unsigned char* out) override;

 private:
  static constexpr int kRowsPerBlock = 16;
  static constexpr int kBlocks = 4;

  // A batch of rows, and the error that the row after them failed with, if any.
  struct Block {
    std::vector<unsigned char> rows;
    int count = 0;
    host::Status status;
  };

  // Fills blocks until the rows end, a row fails, or a stop is requested. Runs on the thread.
  void Work(const std::stop_token& stop);
  // Reads at most most rows into block. Catches lack of memory, since an exception must not leave the thread.
  void Fill(Block& block, int most);

  std::shared_ptr<RowStream> from_;
  std::size_t rowBytes_;
  std::array<Block, kBlocks> blocks_;
  std::mutex mutex_;
  std::condition_variable_any changed_;
  int filled_ = 0;    // blocks that the thread has filled so far
  int consumed_ = 0;  // blocks that the consumer has returned so far
  int row_ = 0;       // next row in the block that the consumer reads
  std::jthread thread_;
};

// The rows and columns of another stream that lie in rect, which lies inside the picture.
// Rows above rect are skipped. Rows below it are not read, so damage there goes unnoticed.
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

// Another stream reduced to size with the Lanczos kernel. The rows have 8 bits and no alpha.
// Only the first used.height rows and used.width columns contribute. The remaining rows are read with the last row of
// the result, so that damage in them is found.
// Neither side of size is 0 or larger than that of used.
class ScaledRows final : public RowStream {
 public:
  ScaledRows(std::shared_ptr<RowStream> from, base::Size used, base::Size size);

  const RowFacts& Facts() const override { return facts_; }
  host::Status ReadRow(unsigned char* out) override;

 private:
  // Upper bound of the result rows that one source row contributes to: the kernel spans six of them.
  static constexpr int kSums = 8;

  // Reads one source row and adds it, weighted, to every result row that it contributes to.
  host::Status AddRow();
  // Applies the horizontal kernel to a finished sum and rounds to bytes.
  void WriteRow(const float* sums, unsigned char* out) const;
  std::vector<float>& SumsOf(int row) { return sums_[static_cast<std::size_t>(row % kSums)]; }

  std::shared_ptr<RowStream> from_;
  RowFacts facts_;
  base::Size used_;
  LanczosAxis across_;
  LanczosAxis down_;
  std::vector<unsigned char> bytes_;            // one source row as read
  std::vector<float> row_;                      // its used columns
  std::array<std::vector<float>, kSums> sums_;  // ring of unfinished result rows, still as wide as used
  int read_ = 0;                                // source rows read so far
  int next_ = 0;                                // result row that is returned next
};

}  // namespace quillon::imaging
