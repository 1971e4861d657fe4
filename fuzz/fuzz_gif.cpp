// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
//
// Any bytes that begin as a GIF file does: its header is read and the rows of its first frame are decoded or fail.
// There are rows, whose size need not be that of the header.
#include "fuzz_loader.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  return quillon::fuzz::LoadPicture(quillon::imaging::Format::Gif, data, size);
}
