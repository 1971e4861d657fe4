// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "imaging/rows/row_steps.h"

#include <algorithm>
#include <new>
#include <utility>

#include "imaging/faults.h"

// How PrefetchedRows works: the thread and the consumer share a ring of blocks. filled_ counts the blocks that the
// thread completed, consumed_ those that the consumer finished with, so the difference is the number of blocks in use
// and the index into the ring is the count modulo its size. A block belongs to one side at a time, which is why its
// rows are read and written outside the lock.
//
// How ScaledRows works: the vertical sums are built while source rows arrive, and the horizontal kernel runs once on
// each finished sum. Memory is a few rows, whatever the reduction factor.
namespace quillon::imaging {
namespace {

using host::Status;

std::size_t RowBytesOf(const RowFacts& facts) {
  return static_cast<std::size_t>(facts.size.width) * static_cast<unsigned>(facts.PixelBytes());
}

// The channel count is a template parameter so that the compiler unrolls the inner loop.
template <int kChannels>
void SumAcross(const LanczosAxis& axis, int width, const float* row, unsigned char* out) {
  for (int x = 0; x < width; ++x) {
    const LanczosAxis::Taps taps = axis.At(x);
    const float* from = row + static_cast<std::ptrdiff_t>(taps.first) * kChannels;
    std::array<float, kChannels> sums{};
    for (int k = 0; k < taps.count; ++k, from += kChannels) {
      for (int channel = 0; channel < kChannels; ++channel) sums[channel] += taps.weights[k] * from[channel];
    }
    for (const float sum : sums) {
      const float raised = std::clamp(sum, 0.0F, 255.0F) + 0.5F;
      *out++ = static_cast<unsigned char>(raised);
    }
  }
}

}  // namespace

Status RowStream::SkipRows(int count) {
  std::vector<unsigned char> row(RowBytesOf(Facts()));
  for (int i = 0; i < count; ++i) {
    if (Status status = ReadRow(row.data()); !status) return status;
  }
  return Status::Ok();
}

PrefetchedRows::PrefetchedRows(std::shared_ptr<RowStream> from)
    : from_(std::move(from)), rowBytes_(RowBytesOf(from_->Facts())) {
  for (Block& block : blocks_) block.rows.resize(rowBytes_ * kRowsPerBlock);
  thread_ = std::jthread([this](const std::stop_token& stop) { Work(stop); });
}

// The members that the thread uses are destroyed after this, so the thread has to end first.
PrefetchedRows::~PrefetchedRows() {
  thread_.request_stop();
  thread_.join();
}

void PrefetchedRows::Work(const std::stop_token& stop) {
  int left = from_->Facts().size.height;
  bool failed = false;
  while (left > 0 && !failed) {
    std::unique_lock lock(mutex_);
    if (!changed_.wait(lock, stop, [this] { return filled_ - consumed_ < kBlocks; })) return;
    Block& block = blocks_[static_cast<std::size_t>(filled_ % kBlocks)];
    lock.unlock();
    Fill(block, std::min(left, kRowsPerBlock));
    left -= block.count;
    failed = !block.status;
    lock.lock();
    ++filled_;
    lock.unlock();
    changed_.notify_all();
  }
}

void PrefetchedRows::Fill(Block& block, int most) {
  block.count = 0;
  try {
    while (block.count < most) {
      block.status = from_->ReadRow(block.rows.data() + rowBytes_ * static_cast<unsigned>(block.count));
      if (!block.status) return;
      ++block.count;
    }
  } catch (const std::bad_alloc&) {
    block.status = fault::OutOfMemory();
  }
}

Status PrefetchedRows::ReadRow(unsigned char* out) {
  std::unique_lock lock(mutex_);
  changed_.wait(lock, [this] { return filled_ > consumed_; });
  lock.unlock();
  const Block& block = blocks_[static_cast<std::size_t>(consumed_ % kBlocks)];
  // The block stays current after an error, so that every further call returns the error again.
  if (row_ == block.count) return block.status;
  std::copy_n(block.rows.data() + rowBytes_ * static_cast<unsigned>(row_), rowBytes_, out);
  ++row_;
  if (row_ < block.count || !block.status) return Status::Ok();
  row_ = 0;
  lock.lock();
  ++consumed_;
  lock.unlock();
  changed_.notify_all();
  return Status::Ok();
}

PartRows::PartRows(std::shared_ptr<RowStream> from, base::Rect rect)
    : from_(std::move(from)), facts_(from_->Facts()), rect_(rect), row_(RowBytesOf(facts_)) {
  facts_.size = {rect.width, rect.height};
}

Status PartRows::ReadRow(unsigned char* out) {
  if (!begun_ && rect_.top > 0) {
    if (Status skipped = from_->SkipRows(rect_.top); !skipped) return skipped;
  }
  begun_ = true;
  if (Status status = from_->ReadRow(row_.data()); !status) return status;
  const auto pixelBytes = static_cast<std::size_t>(facts_.PixelBytes());
  std::copy_n(row_.data() + static_cast<std::size_t>(rect_.left) * pixelBytes, RowBytesOf(facts_), out);
  return Status::Ok();
}

ScaledRows::ScaledRows(std::shared_ptr<RowStream> from, base::Size used, base::Size size)
    : from_(std::move(from)),
      facts_(from_->Facts()),
      used_(used),
      across_(used.width, size.width),
      down_(used.height, size.height),
      bytes_(RowBytesOf(facts_)),
      row_(static_cast<std::size_t>(used.width) * static_cast<unsigned>(facts_.Channels())) {
  facts_.size = size;
  for (std::vector<float>& sums : sums_) sums.resize(row_.size());
}

Status ScaledRows::ReadRow(unsigned char* out) {
  const LanczosAxis::Taps taps = down_.At(next_);
  const bool last = next_ + 1 == facts_.size.height;
  // The last row also reads the rows that do not contribute; see the class.
  const int needed = last ? from_->Facts().size.height : taps.first + taps.count;
  while (read_ < needed) {
    if (Status added = AddRow(); !added) return added;
  }
  std::vector<float>& sums = SumsOf(next_);
  WriteRow(sums.data(), out);
  std::fill(sums.begin(), sums.end(), 0.0F);
  ++next_;
  return Status::Ok();
}

Status ScaledRows::AddRow() {
  if (Status status = from_->ReadRow(bytes_.data()); !status) return status;
  const int at = read_++;
  if (at >= used_.height) return Status::Ok();
  std::copy_n(bytes_.data(), row_.size(), row_.data());
  for (int i = next_; i < facts_.size.height; ++i) {
    const LanczosAxis::Taps taps = down_.At(i);
    if (taps.first > at) break;
    if (at >= taps.first + taps.count) continue;
    const float weight = taps.weights[at - taps.first];
    float* sums = SumsOf(i).data();
    for (std::size_t x = 0; x < row_.size(); ++x) sums[x] += weight * row_[x];
  }
  return Status::Ok();
}

void ScaledRows::WriteRow(const float* sums, unsigned char* out) const {
  switch (facts_.Channels()) {
    case 1:
      return SumAcross<1>(across_, facts_.size.width, sums, out);
    case 3:
      return SumAcross<3>(across_, facts_.size.width, sums, out);
    default:
      return SumAcross<4>(across_, facts_.size.width, sums, out);
  }
}

}  // namespace quillon::imaging
