// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "job/run/discard_queue.h"

#include <algorithm>
#include <utility>

#include "base/path_text.h"
#include "imaging/services.h"

namespace quillon::job {

void DiscardQueue::Drain(const std::vector<host::LateFailure>& lost, const Judge& judge, const Discarded& discarded) {
  for (const Source& source : std::exchange(sources_, {})) {
    context_.host.pump.Turn();
    const host::Status read = Stands(source, lost);
    if (judge(source, read) == Verdict::Discard && read) discarded(source, context_.host.files.Discard(source.path));
  }
}

host::Status DiscardQueue::Stands(const Source& source, const std::vector<host::LateFailure>& lost) {
  for (const std::string& output : source.outputs) {
    const auto late = std::find_if(lost.begin(), lost.end(), [&](const auto& one) { return one.path == output; });
    if (late != lost.end()) return late->status;
    if (host::Status read = ReadBack(output); !read) return read;
  }
  return host::Status::Ok();
}

// A pdf was read whole when it was made.
host::Status DiscardQueue::ReadBack(const std::string& output) {
  if (base::SplitPath(output).extension == "pdf") return host::Status::Ok();
  imaging::Image picture;
  host::Status status = context_.images.LoadImageFromFile(output, picture);
  context_.images.DisposeImage(picture);
  return status;
}

}  // namespace quillon::job
