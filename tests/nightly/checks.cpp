// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "nightly/checks.h"

#include <csignal>
#include <filesystem>

namespace quillon::nightly {
namespace {

namespace fs = std::filesystem;

constexpr int kAllWritten = 0;
constexpr int kSomeWithout = 1;
constexpr int kStepRefused = 2;
constexpr int kStopped = 3;

const std::string* Find(const Tree& tree, const std::string& path) {
  const auto found = tree.find(path);
  return found == tree.end() ? nullptr : &found->second;
}

bool Same(const Tree& a, const Tree& b, const std::string& path) {
  const std::string* first = Find(a, path);
  const std::string* second = Find(b, path);
  return first && second && *first == *second;
}

// A file that was written with a remark, such as tags that could not be copied, may have other bytes.
std::vector<std::string> WithRemarks(const Call& call) {
  std::vector<std::string> outputs;
  for (const auto& [key, end] : call.ends) {
    if (end.result == "written" && !end.why.empty()) {
      outputs.insert(outputs.end(), end.outputs.begin(), end.outputs.end());
    }
  }
  return outputs;
}

bool EndsInOneOf(const std::vector<std::string>& paths, const std::string& path) {
  for (const std::string& whole : paths) {
    if (whole.ends_with("/" + path)) return true;
  }
  return false;
}

// glib ends the process if it gets no memory. Without memory for its message it calls itself until the stack is full.
// The loader exits with 127.
bool EndedByLibrary(const Call& call) {
  return call.signal == SIGABRT || call.signal == SIGTRAP || call.signal == SIGSEGV || call.exit == 127;
}

Problems CheckEnds(const Place& place, const Expected& expected, const Tree& now, const Call& call) {
  Problems problems;
  const auto inside = [&](const std::string& path) { return fs::path(path).lexically_relative(place.Root()).native(); };
  for (const auto& [key, end] : call.ends) {
    if (end.result == "none" && !HoldsChinese(end.why)) problems.push_back(end.source + " has no reason: " + end.why);
    if (end.result == "none" && call.exit == kAllWritten)
      problems.push_back("exit 0 although " + end.source + " failed");
    if (end.result != "written" || !end.why.empty()) continue;
    for (const std::string& output : end.outputs) {
      if (!Same(now, expected.after, inside(output))) problems.push_back("not as written: " + output);
    }
  }
  return problems;
}

}  // namespace

Problems CheckNothingLost(const Expected& expected, const Tree& now, const Call& call) {
  Problems problems;
  for (const auto& [path, content] : expected.before) {
    if (!Find(now, path)) {
      if (Find(expected.after, path)) problems.push_back("lost: " + path);
    } else if (!Same(now, expected.before, path) && !Same(now, expected.after, path)) {
      problems.push_back("source is neither the old nor the new one: " + path);
    }
  }
  const std::vector<std::string> remarked = WithRemarks(call);
  for (const auto& [path, content] : WithoutDrafts(now)) {
    if (Find(expected.before, path) || EndsInOneOf(remarked, path)) continue;
    if (!Find(expected.after, path)) {
      problems.push_back("unknown file: " + path);
    } else if (!Same(now, expected.after, path)) {
      problems.push_back("torn output: " + path);
    }
  }
  return problems;
}

Problems CheckReport(const Place& place, const Expected& expected, const Tree& now, const Call& call, MayEnd mayEnd) {
  Problems problems;
  if (call.hung) problems.emplace_back("did not end");
  if (call.orphaned) problems.emplace_back("left a process running");
  const bool killed = mayEnd == MayEnd::ByKill && call.signal == SIGKILL;
  const bool aborted = mayEnd == MayEnd::ByAbort && EndedByLibrary(call);
  if (call.hung || killed || aborted) return problems;
  if (call.signal != 0) problems.push_back("ended by signal " + std::to_string(call.signal));
  if (call.signal == 0 && (call.exit < kAllWritten || call.exit > kStopped)) {
    problems.push_back("exit " + std::to_string(call.exit));
  }
  if (call.exit == kAllWritten && WithRemarks(call).empty() && WithoutDrafts(now) != expected.after) {
    problems.emplace_back("exit 0, but not all was written");
  }
  if ((call.exit == kSomeWithout || call.exit == kStepRefused) && !HoldsChinese(call.events + call.errors)) {
    problems.push_back("exit " + std::to_string(call.exit) + " without a reason: " + call.errors);
  }
  const Problems more = CheckEnds(place, expected, now, call);
  problems.insert(problems.end(), more.begin(), more.end());
  return problems;
}

Problems CheckNextCall(const Place& place, const Flow& flow, const Expected& expected, const Call& call) {
  Problems problems;
  if (call.exit != kAllWritten) problems.push_back("the next call ends with " + std::to_string(call.exit));
  const Tree now = ReadTree(place.Root(), {"in", "out"});
  for (const std::string& draft : DraftsIn(now)) problems.push_back("a draft remains: " + draft);
  if (flow.next == Next::MakesAll) {
    for (const auto& [path, content] : expected.after) {
      if (!Same(now, expected.after, path)) problems.push_back("the next call did not make " + path);
    }
  }
  std::vector<std::string> empty = {"tmp"};
  if (flow.next == Next::MakesAll) empty.emplace_back("config/quillon/journals");
  for (const std::string& folder : empty) {
    std::error_code none;
    for (const fs::directory_entry& left : fs::directory_iterator(place.Root() + "/" + folder, none)) {
      problems.push_back("left: " + folder + "/" + left.path().filename().native());
    }
  }
  return problems;
}

}  // namespace quillon::nightly
