// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstdint>

#include "imaging/codecs/open_picture.h"
#include "imaging/types.h"

namespace quillon::imaging {

// The memory that a work needs, in bytes; estimated too high rather than too low.
struct WorkMemory {
  std::int64_t working = 0;  // at its peak, including outputs that are passed on in memory
  std::int64_t results = 0;  // outputs in formats that may be as large as their pixels; 0 for a jpeg
};

// Estimates from the head of the source and the sizes in the requests.
WorkMemory MemoryFor(const FileWork& work, const OpenedPicture& source);

}  // namespace quillon::imaging
