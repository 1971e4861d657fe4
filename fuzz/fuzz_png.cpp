// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
//
// Any bytes that begin as a PNG file does: its header is read and its rows are decoded or fail. The size of the
// header is that of the rows.
#include "fuzz_loader.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  return quillon::fuzz::LoadPicture(quillon::imaging::Format::Png, data, size);
}
