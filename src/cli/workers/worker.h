// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <sys/types.h>

#include <cstdint>
#include <functional>
#include <string>
#include <vector>

namespace quillon::cli {

// Set for a worker process: a file that names the sources it is to leave out, each behind a mark that tells whether a
// result of it stands, and ended by a zero byte; there is none where it is the first in its place.
inline constexpr const char* kWorkerVariable = "QUILLON_BATCH_WORKER";
inline constexpr char kWroteMark = '+';
inline constexpr char kOtherMark = '-';
// Set for one that takes the place of a dead worker: see job::Program::recovering.
inline constexpr const char* kRecoveringVariable = "QUILLON_BATCH_RECOVERING";

// How many workers the call has, set for each of them.
inline constexpr const char* kAmongVariable = "QUILLON_BATCH_AMONG";

enum class Recovering { No, Yes };

// What a worker is told by its variables.
struct WorkerPlace {
  std::string leftOut;
  Recovering recovering = Recovering::No;
  std::uint64_t among = 1;
};

// How a worker process ended.
struct WorkerEnd {
  int exit = -1;   // -1 where a signal ended it or it never began
  int signal = 0;  // 0 where none did
};

// One worker: a program, as a rule this one once more, in a process of its own that is no part of the terminal's group,
// so that a Ctrl-C reaches it only through us, and that is asked to stop when we are gone.
class Worker {
 public:
  using ReadLine = std::function<void(const std::string& line)>;

  // Starts it; out and err are given its lines while Read is called.
  Worker(const std::string& program, const std::vector<std::string>& arguments, const WorkerPlace& place, ReadLine out,
         ReadLine err);
  // Ends the process at once if it still runs.
  ~Worker();
  Worker(const Worker&) = delete;
  Worker& operator=(const Worker&) = delete;

  pid_t Id() const { return process_; }
  // The ends to read from, -1 once closed.
  int Out() const { return out_.handle; }
  int Err() const { return err_.handle; }
  // Takes what is there to be read from that end.
  void Read(int handle);
  bool Open() const { return out_.handle >= 0 || err_.handle >= 0; }
  // To be called once both ends are closed.
  WorkerEnd Wait();

 private:
  struct End {
    int handle = -1;
    std::string rest;  // a line that has not come to its end
    ReadLine take;
  };

  static void ReadFrom(End& end);

  pid_t process_ = -1;
  End out_;
  End err_;
};

}  // namespace quillon::cli
