// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <functional>
#include <memory>
#include <ostream>
#include <stop_token>
#include <string>
#include <thread>
#include <vector>

#include "helpers/helper_process.h"

struct sqlite3;

namespace quillon::helpers::testing {

// One job of a helper, as the program gives it. Each has the picture "a.jpg", 600 x 400, in its folder.
struct Job {
  const char* helper;
  // Lays the input out and gives the parameters.
  std::function<std::vector<std::string>(const HelperFolder& app)> prepare;
  // The resulting file in the program folder; "" if the answer is the only result.
  const char* target;
  // The answer in the settings after the job is done; key is "" if there is no answer.
  const char* key = "";
  const char* answer = "";
  const char* application = "Quillon";
  // Returns true if a finished target is valid, for targets that are not the same every time.
  std::function<bool(const std::string& path)> whole = {};
  // The program's side of the talk while the helper works, until it is done or to stop.
  std::function<void(const HelperFolder& app, const std::stop_token& stop)> talk = {};
  // A server stays when it is done.
  bool serves = false;
};

// Jobs that a helper does by itself, and those that follow a key of the store.
const std::vector<Job>& Jobs();
const std::vector<Job>& Followers();

// Starts a job, with the program's side of it.
struct Started {
  pid_t helper = -1;
  std::shared_ptr<std::jthread> program;
};
Started Start(const HelperFolder& app, const Job& job, const std::vector<std::string>& parameters);
// Waits until it is done; a server is ended then.
Ran Finish(const HelperFolder& app, const Job& job, const Started& started);
// Ends it at once.
void Kill(const HelperFolder& app, const Started& started);

// One that is writing into the store and does not come to an end.
class StoreHolder {
 public:
  explicit StoreHolder(const HelperFolder& app);
  ~StoreHolder() { LetGo(); }
  StoreHolder(const StoreHolder&) = delete;
  StoreHolder& operator=(const StoreHolder&) = delete;

  void LetGo();

 private:
  sqlite3* store_ = nullptr;
};

inline void PrintTo(const Job& job, std::ostream* out) { *out << job.helper; }

}  // namespace quillon::helpers::testing
