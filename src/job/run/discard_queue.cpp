// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "job/run/discard_queue.h"

#include <algorithm>
#include <utility>

#include "base/path_text.h"
#include "imaging/services.h"

namespace quillon::job {

void DiscardQueue::Drain(const std::vector<host::LateFailure>& lost, const IsDue& isDue, const OnKept& onKept) {
  for (const Source& source : std::exchange(sources_, {})) {
    context_.host.pump.Turn();
    if (!isDue(source)) continue;
    if (const host::Status read = Stands(source, lost); !read) {
      onKept(source, Kept::OutputLost, read);
    } else if (HasChanged(source)) {
      onKept(source, Kept::Changed, read);
    } else if (const host::Status discarded = context_.host.files.Discard(source.path); !discarded) {
      onKept(source, Kept::NotDiscarded, discarded);
    }
  }
}

bool DiscardQueue::HasChanged(const Source& source) const {
  if (!source.stamp) return false;
  const auto now = StampOf(context_.host.files, source.path);
  return !now || !Unchanged(*source.stamp, *now);
}

host::Status DiscardQueue::Stands(const Source& source, const std::vector<host::LateFailure>& lost) {
  for (const std::string& output : source.outputs) {
    const auto late = std::find_if(lost.begin(), lost.end(), [&](const auto& one) { return one.path == output; });
    if (late != lost.end()) return late->status;
    if (host::Status read = ReadBack(output); !read) return read;
  }
  return host::Status::Ok();
}

// A pdf was read completely when it was made.
host::Status DiscardQueue::ReadBack(const std::string& output) {
  if (base::SplitPath(output).extension == "pdf") return host::Status::Ok();
  imaging::Image picture;
  host::Status status = context_.images.LoadImageFromFile(output, picture);
  context_.images.DisposeImage(picture);
  return status;
}

}  // namespace quillon::job
