// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
//
// Runs a command that writes its events as JSON lines, and appends one line to a file: seconds from the start to the
// first file event, resident memory in KB at file number EARLY and at file number LATE, and seconds in all.
//
// usage: watch_run RESULTFILE EARLY LATE COMMAND [ARGUMENT...]
#include <sys/wait.h>
#include <unistd.h>

#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <string>

namespace {

constexpr const char* kFileEvent = "\"event\":\"file\"";

double Now() { return std::chrono::duration<double>(std::chrono::steady_clock::now().time_since_epoch()).count(); }

long ResidentKb(pid_t process) {
  std::FILE* in = std::fopen(("/proc/" + std::to_string(process) + "/statm").c_str(), "r");
  long size = 0;
  long resident = 0;
  if (in && std::fscanf(in, "%ld %ld", &size, &resident) != 2) resident = 0;
  if (in) std::fclose(in);
  return resident * (sysconf(_SC_PAGESIZE) / 1024);
}

}  // namespace

int main(int argc, char** argv) {
  if (argc < 5) {
    std::fprintf(stderr, "usage: watch_run RESULTFILE EARLY LATE COMMAND [ARGUMENT...]\n");
    return 2;
  }
  const long early = std::atol(argv[2]);
  const long late = std::atol(argv[3]);
  int ends[2];
  if (pipe(ends) != 0) return 2;
  const double begin = Now();
  const pid_t child = fork();
  if (child == 0) {
    dup2(ends[1], STDOUT_FILENO);
    close(ends[0]);
    close(ends[1]);
    execvp(argv[4], argv + 4);
    _exit(127);
  }
  close(ends[1]);
  std::FILE* events = fdopen(ends[0], "r");
  double first = 0;
  long kbEarly = 0;
  long kbLate = 0;
  long files = 0;
  char* line = nullptr;
  std::size_t room = 0;
  while (getline(&line, &room, events) > 0) {
    if (!std::strstr(line, kFileEvent)) continue;
    if (++files == 1) first = Now() - begin;
    if (files == early) kbEarly = ResidentKb(child);
    if (files == late) kbLate = ResidentKb(child);
  }
  std::free(line);
  std::fclose(events);
  int status = 0;
  waitpid(child, &status, 0);
  std::FILE* out = std::fopen(argv[1], "a");
  if (!out) return 2;
  std::fprintf(out, "%.4f %ld %ld %.4f\n", first, kbEarly, kbLate, Now() - begin);
  std::fclose(out);
  return WIFEXITED(status) ? WEXITSTATUS(status) : 1;
}
