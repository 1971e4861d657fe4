// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
//
// A companion of the program that measures files by MediaInfo. Each file is measured in a process that can open nothing
// else, with little memory and time: a file that misleads MediaInfo ends this process and nothing more.
#include <unistd.h>

#include <optional>
#include <string>

#include "helpers/media_info/media_info_report.h"
#include "helpers/runtime/file_requests.h"
#include "helpers/runtime/helper.h"

namespace quillon::helpers {
namespace {

constexpr unsigned kSecondsOfOneMeasure = 5;
constexpr Permissions kPermissions{.memory = std::uint64_t{512} << 20, .seconds = kSecondsOfABatch};

// Answers "width height", "none" if MediaInfo reports no size, or "damaged".
std::string Measured(MediaInfoReport& report, int file) {
  base::Size size;
  const host::Status status = report.Measure(file, size);
  if (status) return std::to_string(size.width) + " " + std::to_string(size.height);
  return status.GetProblem() == host::Problem::Unsupported ? "none" : "damaged";
}

host::Status Execute(Helper&) {
  MediaInfoReport report;
  BlockEverythingElse();
  while (const std::optional<int> file = NextFile()) {
    AllowTime(kSecondsOfOneMeasure);
    const std::string answer = Measured(report, *file);
    close(*file);
    Answer(answer);
  }
  return host::Status::Ok();
}

}  // namespace
}  // namespace quillon::helpers

int main(int count, char** arguments) {
  return quillon::helpers::RunHelper("MediaInfoT", count, arguments, quillon::helpers::Execute,
                                     quillon::helpers::kPermissions);
}
