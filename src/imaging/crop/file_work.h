// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstdint>
#include <functional>

#include "imaging/crop/file_requests.h"

namespace quillon::imaging {

struct WorkHooks {
  // Called once, before anything large is allocated: the bytes of working memory, which are free again at the end, and
  // the bytes of results, if these are larger than a jpeg. If it returns false, the work fails with Stopped.
  std::function<bool(std::int64_t working, std::int64_t results)> admit;
  // Returns a draft for the next output.
  std::function<host::Draft&()> output;
};

// Does a work without writing files. The outputs have the same bytes as the files of the single operations. Several
// crops of one source share its decoded picture. Fails if any step fails; the drafts must then be dropped.
Status DoWork(const FileWork& work, const PictureInput& input, const WorkHooks& hooks);

}  // namespace quillon::imaging
