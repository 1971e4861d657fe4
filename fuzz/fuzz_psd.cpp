// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
//
// Any bytes as a PSD file: opening returns a status. If it succeeds, every span of every row is read or fails, without
// access to other memory.
#include <cstdint>
#include <memory>
#include <string>

#include "fuzz_pictures.h"
#include "imaging/codecs/readers.h"

namespace imaging = quillon::imaging;
using quillon::fuzz::ReadRows;
using quillon::fuzz::Require;
using quillon::fuzz::SmallLimits;

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  auto bytes = std::make_shared<imaging::MemoryBytes>(std::string(reinterpret_cast<const char*>(data), size));
  std::shared_ptr<imaging::RowSource> rows;
  const imaging::Status status = imaging::OpenPsd(bytes, SmallLimits(), rows);
  Require(static_cast<bool>(status) == (rows != nullptr));
  Require(status.Why().empty() == static_cast<bool>(status));
  if (rows) ReadRows(*rows);
  return 0;
}
