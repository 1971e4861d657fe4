// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
//
// Any text as an order of the converter: what is read comes back as it was.
#include <cstdint>
#include <cstdlib>
#include <string>

#include "formats/tools/converter_order.h"

namespace formats = quillon::formats;

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const auto order = formats::ParseOrder(std::string(reinterpret_cast<const char*>(data), size));
  if (!order) return 0;
  const auto text = formats::OrderText(*order);
  if (text && formats::ParseOrder(*text) != order) std::abort();
  return 0;
}
