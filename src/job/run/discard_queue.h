// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstddef>
#include <functional>
#include <string>
#include <vector>

#include "host/files/files.h"
#include "host/status.h"
#include "job/list/run_context.h"

namespace quillon::job {

// Sources that are discarded once everything made of them stands: written, synced, reopened and decoded to its end. A
// source is all there is until then, so it stays wherever any of that fails.
class DiscardQueue {
 public:
  struct Source {
    std::size_t row = 0;  // of the list, 0 without one
    std::string path;
    std::vector<std::string> outputs;
  };
  enum class Verdict { Keep, Discard };
  // Decides on a source; read is the failure of its first output that does not stand, or ok. A source is kept in any
  // case if read is a failure.
  using Judge = std::function<Verdict(const Source& source, const host::Status& read)>;
  // Called for each source that was to be discarded, with how that went.
  using Discarded = std::function<void(const Source& source, const host::Status& status)>;

  explicit DiscardQueue(const RunContext& context) : context_(context) {}

  void Add(Source source) { sources_.push_back(std::move(source)); }
  std::size_t Size() const { return sources_.size(); }

  // Empties the queue in the order of Add, with a turn of the pump before each source. Call right after
  // host::Files::Flush, which has returned `lost`.
  void Drain(const std::vector<host::LateFailure>& lost, const Judge& judge, const Discarded& discarded);

 private:
  host::Status Stands(const Source& source, const std::vector<host::LateFailure>& lost);
  host::Status ReadBack(const std::string& output);

  const RunContext& context_;
  std::vector<Source> sources_;
};

}  // namespace quillon::job
