// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <memory>

namespace quillon::imaging {

struct CutSourceData;

// A picture decoded for several cuts, or none.
class CutSource {
 public:
  CutSource();
  explicit CutSource(std::unique_ptr<CutSourceData> data);
  ~CutSource();
  CutSource(CutSource&&) noexcept;
  CutSource& operator=(CutSource&&) noexcept;

  const CutSourceData* Data() const { return data_.get(); }

 private:
  std::unique_ptr<CutSourceData> data_;
};

}  // namespace quillon::imaging
