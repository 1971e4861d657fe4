// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <sys/types.h>

#include <string>
#include <vector>

#include "host/testing/temp_folder.h"

namespace quillon::cli {

// How a process ended, and everything that it wrote.
struct Ran {
  int exit = -1;  // -1 if a signal ended it
  int signal = 0;
  std::string out;
  std::string err;
};

enum class ErrorsTo { File, Terminal };
// SmallPipe: a pipe that holds one page, so that a run with many events cannot end before they are read.
enum class OutTo { Pipe, SmallPipe, FullDevice };

// One call of the program, with a folder for temporary files of its own.
class BatchProcess {
 public:
  explicit BatchProcess(const std::vector<std::string>& arguments, const std::string& folder = "/",
                        ErrorsTo errors = ErrorsTo::File, OutTo out = OutTo::Pipe);
  // For a call that shares the temporary folder of another call.
  BatchProcess(const std::vector<std::string>& arguments, const std::string& folder, const std::string& temporary);
  ~BatchProcess();
  BatchProcess(const BatchProcess&) = delete;
  BatchProcess& operator=(const BatchProcess&) = delete;

  // Reads stdout up to a line that contains the text. Returns false if stdout ends before.
  bool ReadTo(const std::string& text);
  void Signal(int signal) const;
  // Sends several signals so that the process finds them all at once. Returns when it has received them.
  void SignalTogether(const std::vector<int>& signals) const;
  // Returns the processes that it has started and that still run.
  std::vector<pid_t> Children() const;
  // Returns the most memory that the process has held at once so far, in MB; 0 if it has ended.
  int PeakMemory() const;
  // Sends the signal again and again until the process has ended, without reading what it writes.
  Ran Insist(int signal);
  Ran Wait();
  // Waits with the reading end of stdout closed.
  Ran WaitUnheard();

  // Returns the entries that it has left in the folder for temporary files so far.
  std::vector<std::string> Temporaries() const;
  const std::string& TemporaryFolder() const { return temporary_; }

 private:
  void Start(const std::vector<std::string>& arguments, const std::string& folder, ErrorsTo errors, OutTo out);
  bool ReadMore();
  void SetEnd(int status);

  host::testing::TempFolder own_;
  std::string temporary_;
  pid_t process_ = -1;
  int out_ = -1;
  int terminal_ = -1;
  Ran ran_;
};

Ran RunProgram(const std::vector<std::string>& arguments, const std::string& folder = "/");

}  // namespace quillon::cli
