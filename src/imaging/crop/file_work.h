// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstdint>
#include <functional>

#include "imaging/crop/file_requests.h"

namespace quillon::imaging {

struct WorkHooks {
  // Asked once, before anything large is allocated: working bytes, which are given back at the end, and bytes of
  // results that are larger than a jpeg. false ends the work with Stopped.
  std::function<bool(std::int64_t working, std::int64_t results)> admit;
  // A draft for the next output.
  std::function<host::Draft&()> output;
};

// Does a work without writing a file: the outputs are the bytes that the operations write one by one. Several cuts of
// one source share its decode. Fails if any step fails; what was written then means nothing.
Status DoWork(const FileWork& work, const PictureInput& input, const WorkHooks& hooks);

}  // namespace quillon::imaging
