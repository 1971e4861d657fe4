// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstddef>
#include <functional>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "host/files/file_stamp.h"
#include "host/files/files.h"
#include "host/status.h"
#include "job/list/run_context.h"

namespace quillon::job {

// Sources to be discarded after all their outputs are written, synced, reopened and fully decoded. If any of that
// fails, the source stays.
class DiscardQueue {
 public:
  struct Source {
    std::size_t row = 0;  // of the list; 0 if there is no list
    std::string path;
    std::vector<std::string> outputs;
    // The stamp of the source when it was read. If given, a source that has changed since then is kept.
    std::optional<host::FileStamp> stamp = {};
  };
  // Returns whether the source is still to be discarded. Called before its outputs are read, because that is slow.
  using IsDue = std::function<bool(const Source& source)>;
  // Why a source was not discarded.
  enum class Kept {
    OutputLost,   // the status is the error of its first lost output
    Changed,      // the status is Ok
    NotDiscarded  // the status is the error of the trash
  };
  using OnKept = std::function<void(const Source& source, Kept reason, const host::Status& status)>;

  explicit DiscardQueue(const RunContext& context) : context_(context) {}

  void Add(Source source) { sources_.push_back(std::move(source)); }
  std::size_t Size() const { return sources_.size(); }

  // Empties the queue in the order of Add, with a turn of the pump before each source. Call right after
  // host::Files::Flush; lost is what it returned.
  void Drain(const std::vector<host::LateFailure>& lost, const IsDue& isDue, const OnKept& onKept);

 private:
  host::Status Stands(const Source& source, const std::vector<host::LateFailure>& lost);
  host::Status ReadBack(const std::string& output);
  bool HasChanged(const Source& source) const;

  const RunContext& context_;
  std::vector<Source> sources_;
};

}  // namespace quillon::job
