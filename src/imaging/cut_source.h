// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <memory>

namespace quillon::imaging {

struct CutSourceData;

// Owns what Services::OpenForCuts has made ready for several crops of the same file, or is empty: the picture, decoded
// once, or the finished crops if they were prefetched.
// The results do not depend on it: a crop without it decodes the file again and writes the same bytes.
class CutSource {
 public:
  CutSource();
  explicit CutSource(std::shared_ptr<const CutSourceData> data);
  ~CutSource();
  CutSource(CutSource&&) noexcept;
  CutSource& operator=(CutSource&&) noexcept;

  // Returns nullptr if the source is empty.
  const std::shared_ptr<const CutSourceData>& Data() const { return data_; }

 private:
  std::shared_ptr<const CutSourceData> data_;
};

}  // namespace quillon::imaging
