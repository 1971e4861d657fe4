// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
//
// Any text as an order of the converter: an order that is parsed and written as text again parses to the same order.
#include <cstdint>
#include <cstdlib>
#include <string>

#include "tools/converter_order.h"

namespace tools = quillon::tools;

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const auto order = tools::ParseOrder(std::string(reinterpret_cast<const char*>(data), size));
  if (!order) return 0;
  const auto text = tools::OrderText(*order);
  if (text && tools::ParseOrder(*text) != order) std::abort();
  return 0;
}
