// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstdint>

#include "imaging/codecs/open_picture.h"
#include "imaging/types.h"

namespace quillon::imaging {

// What a work holds, in bytes; rounded up rather than down.
struct WorkMemory {
  std::int64_t working = 0;  // at its peak, with what is passed on in memory
  std::int64_t results = 0;  // outputs of kinds that may be as large as their pixels; nothing for a jpeg

  std::int64_t Total() const { return working + results; }
};

// By the source, of which only the head has been read, and the sizes that the steps name.
WorkMemory MemoryFor(const FileWork& work, const OpenedPicture& source);

}  // namespace quillon::imaging
