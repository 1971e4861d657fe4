// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <sys/types.h>

#include <cstdint>
#include <functional>
#include <string>
#include <vector>

namespace quillon::cli {

// Set in every worker process: the path of the done list, a file of the sources that the worker must leave out. The
// file exists only for a worker that replaces a dead one. Each entry is a mark, the path of the source and a zero byte;
// the mark says whether the source has an output.
inline constexpr const char* kWorkerVariable = "QUILLON_BATCH_WORKER";
inline constexpr char kWroteMark = '+';
inline constexpr char kOtherMark = '-';

// Set to "1" in a worker that replaces a dead one; see job::Program::recovering.
inline constexpr const char* kRecoveringVariable = "QUILLON_BATCH_RECOVERING";

// Set in every worker process: the number of workers of its call.
inline constexpr const char* kAmongVariable = "QUILLON_BATCH_AMONG";

enum class Recovering { No, Yes };

// What the environment of a worker says.
struct WorkerContext {
  std::string doneList;  // a path
  Recovering recovering = Recovering::No;
  std::uint64_t among = 1;  // number of workers of the call
};

// How a worker process ended.
struct WorkerEnd {
  int exit = -1;   // the exit code; -1 if a signal ended the process or it never started
  int signal = 0;  // the signal that ended it; 0 if none did
};

// A worker process: as a rule this very program once more.
//
// It has a process group of its own, so that a Ctrl-C in the terminal reaches it only through the parent, which stops
// all workers in an orderly way. The kernel sends it SIGHUP when the parent dies, which asks it to stop.
class Worker {
 public:
  using OnLine = std::function<void(const std::string& line)>;

  // Starts the process. out and err are called, from within Read(), with each line that it writes to stdout and stderr.
  // If the process cannot be started, there is nothing to read and Wait() returns exit code -1 or 127.
  Worker(const std::string& program, const std::vector<std::string>& arguments, const WorkerContext& context,
         OnLine out, OnLine err);
  // Kills the process if it still runs.
  ~Worker();
  Worker(const Worker&) = delete;
  Worker& operator=(const Worker&) = delete;

  // Returns the process id; -1 after Wait() or if the process could not be started.
  pid_t Id() const { return process_; }
  // Return the file descriptors to poll; -1 after the end of the stream.
  int Out() const { return out_.handle; }
  int Err() const { return err_.handle; }
  // Reads one block from Out() or Err(). Blocks until there is something to read.
  void Read(int handle);
  // Returns true until both streams have ended.
  bool Open() const { return out_.handle >= 0 || err_.handle >= 0; }
  // Waits for the process. Must be called after both streams have ended, or it may block for long.
  WorkerEnd Wait();

 private:
  // The reading end of a pipe.
  struct End {
    int handle = -1;
    std::string rest;  // the beginning of a line whose end was not read yet
    OnLine onLine;
  };

  static void ReadFrom(End& end);

  pid_t process_ = -1;
  End out_;
  End err_;
};

}  // namespace quillon::cli
