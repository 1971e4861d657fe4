// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "nightly/call.h"

#include <fcntl.h>
#include <sys/prctl.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <chrono>
#include <csignal>
#include <cstdlib>
#include <fstream>
#include <nlohmann/json.hpp>
#include <sstream>
#include <thread>

namespace quillon::nightly {
namespace {

using Clock = std::chrono::steady_clock;
using Json = nlohmann::json;

// A call needs a fraction of a second. The limits are far above, so that they do not depend on the load.
constexpr auto kLongestCall = std::chrono::seconds(120);
constexpr auto kLongestOrphan = std::chrono::seconds(30);
// A watch that cannot read its folder retries until it is interrupted.
constexpr auto kLongestWatch = std::chrono::seconds(10);
constexpr auto kPoll = std::chrono::milliseconds(2);

std::string ReadText(const std::string& path) {
  std::ostringstream text;
  text << std::ifstream(path, std::ios::binary).rdbuf();
  return text.str();
}

std::size_t FileEvents(const std::string& path) {
  const std::string text = ReadText(path);
  std::size_t count = 0;
  for (std::size_t at = 0; (at = text.find("\"event\":\"file\"", at)) != std::string::npos; ++at) ++count;
  return count;
}

// Becomes the program. Never returns.
[[noreturn]] void Become(const Place& place, const Flow& flow, Faults faults) {
  const std::string root = place.Root();
  const auto redirect = [](int handle, const std::string& path, int flags) {
    dup2(open(path.c_str(), flags, 0600), handle);
  };
  redirect(0, "/dev/null", O_RDONLY);
  redirect(1, place.work + "/events", O_WRONLY | O_CREAT | O_TRUNC);
  redirect(2, place.work + "/errors", O_WRONLY | O_CREAT | O_TRUNC);
  setpgid(0, 0);
  for (const auto& [name, folder] : {std::pair("TMPDIR", "tmp"), std::pair("XDG_CONFIG_HOME", "config"),
                                     std::pair("XDG_DATA_HOME", "data"), std::pair("HOME", "home")}) {
    setenv(name, (root + "/" + folder).c_str(), 1);
  }
  if (faults == Faults::On) {
    setenv(kStateVariable, place.FaultFile().c_str(), 1);
    setenv("LD_PRELOAD", place.library.c_str(), 1);
  }
  std::string program = place.programs + "/" + flow.program;
  std::vector<std::string> words = flow.arguments;
  std::vector<char*> pointers{program.data()};
  for (std::string& word : words) pointers.push_back(word.data());
  pointers.push_back(nullptr);
  if (chdir(root.c_str()) == 0) execv(program.c_str(), pointers.data());
  _exit(127);
}

void SetEnd(Call& call, int status) {
  if (WIFEXITED(status)) call.exit = WEXITSTATUS(status);
  if (WIFSIGNALED(status)) call.signal = WTERMSIG(status);
}

// Waits for the program itself, and interrupts a watch that has reported all its pictures.
void WaitForIt(const Place& place, const Flow& flow, Faults faults, pid_t process, Call& call) {
  const Clock::time_point start = Clock::now();
  bool interrupted = flow.ends == Ends::Itself;
  int status = 0;
  while (waitpid(process, &status, WNOHANG) == 0) {
    const auto passed = Clock::now() - start;
    const bool late = faults == Faults::On && passed > kLongestWatch;
    if (!interrupted && (late || FileEvents(place.work + "/events") >= flow.pictures.size())) {
      kill(process, SIGINT);
      interrupted = true;
    }
    if (passed > kLongestCall && !call.hung) {
      call.hung = true;
      kill(-process, SIGKILL);
    }
    std::this_thread::sleep_for(kPoll);
  }
  SetEnd(call, status);
}

// Waits for what the program has left running; those processes have become children of this one.
void WaitForOrphans(pid_t group, Call& call) {
  const Clock::time_point start = Clock::now();
  for (;;) {
    const pid_t ended = waitpid(-1, nullptr, WNOHANG);
    if (ended < 0) return;
    if (ended > 0) continue;
    if (Clock::now() - start > kLongestOrphan && !call.orphaned) {
      call.orphaned = true;
      kill(-group, SIGKILL);
    }
    if (Clock::now() - start > 2 * kLongestOrphan) return;
    std::this_thread::sleep_for(kPoll);
  }
}

void ReadEvents(Call& call) {
  std::istringstream lines(call.events);
  for (std::string line; std::getline(lines, line);) {
    const Json event = Json::parse(line, nullptr, false);
    if (event.is_discarded() || event.value("event", "") != "file") continue;
    FileEnd end{event.value("source", ""), event.value("result", ""), event.value("why", ""), {}};
    const std::string output = event.value("output", "");
    if (!output.empty()) end.outputs.push_back(output);
    if (event.contains("more")) {
      for (const Json& more : event["more"]) end.outputs.push_back(more.get<std::string>());
    }
    call.ends.erase({end.source, event.value("lost", "")});
    call.ends[{end.source, output}] = end;
  }
}

}  // namespace

Call RunCall(const Place& place, const Flow& flow, Faults faults) {
  prctl(PR_SET_CHILD_SUBREAPER, 1);
  for (const char* name : {"events", "errors"}) std::ofstream(place.work + "/" + name, std::ios::trunc).close();
  Call call;
  const pid_t process = fork();
  if (process == 0) Become(place, flow, faults);
  WaitForIt(place, flow, faults, process, call);
  WaitForOrphans(process, call);
  call.events = ReadText(place.work + "/events");
  call.errors = ReadText(place.work + "/errors");
  ReadEvents(call);
  return call;
}

bool HoldsChinese(const std::string& text) {
  // U+4000 to U+9FFF in UTF-8.
  return std::any_of(text.begin(), text.end(), [](char byte) {
    return static_cast<unsigned char>(byte) >= 0xE4 && static_cast<unsigned char>(byte) <= 0xE9;
  });
}

}  // namespace quillon::nightly
