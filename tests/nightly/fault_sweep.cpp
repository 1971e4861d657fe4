// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
//
// Runs every flow again and again, each time with one fault at another call, and checks after each run that nothing was
// lost and that the report is true; then lets the next call clear up, and checks that too.
//
// usage: fault_sweep PROGRAMS LIBRARY WORK MOST FLOW KIND...
//   PROGRAMS  folder of quillon-batch and the helpers
//   LIBRARY   libfault_calls.so
//   WORK      a folder for the runs and problems.txt; a fault is set at every file below it
//   MOST      calls that are tried for each flow and fault, spread evenly; 0 for each call; =N for the Nth alone
//   FLOW      name of a flow, or "all"
//   KIND      calls, kills or memory
//
// Writes one line for each flow and fault: what, tried, fired and failures, separated by tabs. Exits with 1 if there
// were failures.
#include <fcntl.h>
#include <sys/mman.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <chrono>
#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <set>

#include "cli/pictures.h"
#include "nightly/call.h"
#include "nightly/checks.h"
#include "nightly/fault_state.h"
#include "nightly/flows.h"
#include "nightly/tree.h"

namespace quillon::nightly {
namespace {

namespace fs = std::filesystem;

struct Fault {
  const char* kind;
  const char* name;
  CallClass callClass;
  FaultMode mode;
  int error;
};

constexpr Fault kFaults[] = {{"calls", "EIO once", kAnyCall, FaultMode::FailOnce, EIO},
                             {"calls", "EIO for ever", kAnyCall, FaultMode::FailForEver, EIO},
                             {"calls", "ENOSPC once", kSpaceCall, FaultMode::FailOnce, ENOSPC},
                             {"calls", "ENOSPC for ever", kSpaceCall, FaultMode::FailForEver, ENOSPC},
                             {"calls", "EACCES once", kPathCall, FaultMode::FailOnce, EACCES},
                             {"calls", "EACCES for ever", kPathCall, FaultMode::FailForEver, EACCES},
                             {"calls", "EINTR once", kInterruptible, FaultMode::FailOnce, EINTR},
                             {"kills", "kill", kAnyCall, FaultMode::Kill, 0},
                             {"memory", "no memory once", kAllocation, FaultMode::FailOnce, ENOMEM},
                             {"memory", "no memory for ever", kAllocation, FaultMode::FailForEver, ENOMEM}};

// The state of the preloaded library, as this process sees it.
class SharedState {
 public:
  explicit SharedState(const Place& place) {
    const int handle = open(place.FaultFile().c_str(), O_RDWR | O_CREAT | O_TRUNC | O_CLOEXEC, 0600);
    if (handle < 0 || ftruncate(handle, sizeof(FaultState)) < 0) std::abort();
    void* const mapped = mmap(nullptr, sizeof(FaultState), PROT_READ | PROT_WRITE, MAP_SHARED, handle, 0);
    close(handle);
    if (mapped == MAP_FAILED) std::abort();
    state_ = static_cast<FaultState*>(mapped);
    std::snprintf(state_->root, sizeof state_->root, "%s", place.Root().c_str());
  }
  void Arm(const Fault& fault, FaultMode mode, std::uint64_t at) {
    state_->calls = 0;
    state_->fired = 0;
    state_->at = at;
    state_->mode = mode;
    state_->callClass = fault.callClass;
    state_->error = fault.error;
    std::memset(state_->name, 0, sizeof state_->name);
    std::memset(state_->path, 0, sizeof state_->path);
  }
  const FaultState& operator*() const { return *state_; }

 private:
  FaultState* state_ = nullptr;
};

struct Row {
  std::uint64_t calls = 0;  // that the flow makes
  int tried = 0;
  int fired = 0;
  int failures = 0;
};

class Sweep {
 public:
  Sweep(Place place, const std::string& most)
      : place_(std::move(place)), most_(most), problems_(place_.work + "/problems.txt") {}

  // Returns false if an undisturbed run is not as it should be.
  bool Prepare(const Flow& flow) {
    expected_ = {};
    for (const std::string& name : flow.pictures) expected_.before["in/" + name] = Seed(name);
    more_ = flow.more;
    Start();
    const Call call = RunCall(place_, flow, Faults::Off);
    expected_.after = Now();
    const int wanted = flow.ends == Ends::Interrupted ? 3 : 0;
    if (call.exit == wanted && expected_.after != expected_.before && DraftsIn(expected_.after).empty()) return true;
    problems_ << flow.name << ": an undisturbed run ends with " << call.exit << ": " << call.errors << call.events;
    return false;
  }

  Row Try(const Flow& flow, const Fault& fault) {
    Row row;
    row.calls = CountCalls(flow, fault);
    for (const std::uint64_t at : Chosen(row.calls)) {
      ++row.tried;
      const Problems problems = TryOne(flow, fault, at);
      if ((*state_).fired > 0) ++row.fired;
      if (problems.empty()) continue;
      ++row.failures;
      problems_ << flow.name << ", " << fault.name << ", call " << at << " " << first_ << ":\n";
      for (const std::string& problem : problems) problems_ << "  " << problem << "\n";
      problems_.flush();
    }
    return row;
  }

 private:
  static const std::vector<std::string>& Folders() {
    static const std::vector<std::string> kFolders = {"in", "out", "tmp", "config", "data", "home"};
    return kFolders;
  }

  // Returns the numbers of the calls that are tried.
  std::vector<std::uint64_t> Chosen(std::uint64_t calls) const {
    if (most_.starts_with("=")) return {std::strtoull(most_.c_str() + 1, nullptr, 10)};
    const std::uint64_t most = std::strtoull(most_.c_str(), nullptr, 10);
    const std::uint64_t step = most == 0 ? 1 : std::max<std::uint64_t>(1, (calls + most - 1) / most);
    std::vector<std::uint64_t> chosen;
    for (std::uint64_t at = 1 + step / 2; at <= calls; at += step) chosen.push_back(at);
    return chosen;
  }

  Tree Now() const { return ReadTree(place_.Root(), {"in", "out"}); }

  void Start() {
    Tree tree = expected_.before;
    tree.insert(more_.begin(), more_.end());
    WriteTree(place_.Root(), tree, Folders());
  }

  // Returns the picture of that name: the same drawing in the format of the name, made by the program itself.
  std::string Seed(const std::string& name) {
    constexpr int kWidth = 64;
    constexpr int kHeight = 48;
    const std::string type = name.substr(name.rfind('.') + 1);
    if (type == "bmp") return cli::BmpPicture(kWidth, kHeight);
    if (seeds_.count(type) > 0) return seeds_[type];
    WriteTree(place_.Root(), {{"in/seed.bmp", cli::BmpPicture(kWidth, kHeight)}}, Folders());
    Flow flow;
    flow.program = "quillon-batch";
    flow.arguments = {"--json",   "--set",   "CmbOutType=" + type, "--set",
                      "ChCutA=0", "--set",   "TCutValue(3)=0",     "--out",
                      "out",      "--click", "menuNormalCut",      "in/seed.bmp"};
    RunCall(place_, flow, Faults::Off);
    seeds_[type] = Now()["out/seed." + type];
    return seeds_[type];
  }

  std::uint64_t CountCalls(const Flow& flow, const Fault& fault) {
    Start();
    state_.Arm(fault, FaultMode::Count, 0);
    RunCall(place_, flow, Faults::On);
    return (*state_).calls;
  }

  Problems TryOne(const Flow& flow, const Fault& fault, std::uint64_t at) {
    Start();
    state_.Arm(fault, fault.mode, at);
    const Call call = RunCall(place_, flow, Faults::On);
    first_ = std::string((*state_).name) + " " + (*state_).path;
    const Tree now = Now();
    Problems problems = CheckNothingLost(expected_, now, call);
    const MayEnd mayEnd = fault.mode == FaultMode::Kill    ? MayEnd::ByKill
                          : fault.callClass == kAllocation ? MayEnd::ByAbort
                                                           : MayEnd::ByItself;
    Append(problems, CheckReport(place_, expected_, now, call, mayEnd));
    if (fault.callClass == kInterruptible && WithoutDrafts(now) != expected_.after) {
      problems.emplace_back("a signal kept it from its work");
    }
    AgeTemporaries();
    const Flow next = NextOf(flow, now, call);
    Append(problems, CheckNextCall(place_, next, expected_, RunCall(place_, next, Faults::Off)));
    return problems;
  }

  // A private folder without its lock may be one that another call is just creating, unless it is old.
  void AgeTemporaries() const {
    for (const fs::directory_entry& entry : fs::directory_iterator(place_.Root() + "/tmp")) {
      fs::last_write_time(entry.path(), fs::file_time_type::clock::now() - std::chrono::hours(1));
    }
  }

  // The same call again, unless that would rightly cut sources a second time: a job that is complete is forgotten, also
  // if some of its files failed.
  Flow NextOf(const Flow& flow, const Tree& now, const Call& call) const {
    const bool overwrites = std::any_of(expected_.before.begin(), expected_.before.end(), [&](const auto& file) {
      const auto after = expected_.after.find(file.first);
      return after != expected_.after.end() && after->second != file.second;
    });
    const bool resumes = flow.next == Next::MakesAll && (!overwrites || (call.signal != 0 && now != expected_.after));
    if (resumes) return flow;
    Flow next = ReadingFlow();
    next.next = Next::ReadsFolder;
    return next;
  }

  static void Append(Problems& problems, const Problems& more) {
    problems.insert(problems.end(), more.begin(), more.end());
  }

  Place place_;
  std::string most_;
  std::ofstream problems_;
  SharedState state_{place_};
  std::map<std::string, std::string> seeds_;
  Expected expected_;
  Tree more_;
  std::string first_;  // the call that failed first
};

int RunSweep(const std::vector<std::string>& words) {
  Place place{fs::absolute(words[0]).native(), fs::absolute(words[1]).native(), fs::absolute(words[2]).native()};
  fs::create_directories(place.work);
  const std::set<std::string> kinds(words.begin() + 5, words.end());
  Sweep sweep(place, words[3]);
  int failures = 0;
  for (const Flow& flow : AllFlows(place.Root())) {
    if (words[4] != "all" && words[4] != flow.name) continue;
    const bool sound = sweep.Prepare(flow);
    for (const Fault& fault : kFaults) {
      if (kinds.count(fault.kind) == 0) continue;
      Row row;
      if (sound) row = sweep.Try(flow, fault);
      if (!sound || row.fired == 0) ++row.failures;
      failures += row.failures;
      std::printf("%s, %s (%llu calls)\t%d\t%d\t%d\n", flow.name.c_str(), fault.name,
                  static_cast<unsigned long long>(row.calls), row.tried, row.fired, row.failures);
      std::fflush(stdout);
    }
  }
  return failures == 0 ? 0 : 1;
}

}  // namespace
}  // namespace quillon::nightly

int main(int count, char** arguments) {
  if (count < 7) {
    std::fprintf(stderr, "usage: fault_sweep PROGRAMS LIBRARY WORK MOST FLOW KIND...\n");
    return 2;
  }
  return quillon::nightly::RunSweep({arguments + 1, arguments + count});
}
