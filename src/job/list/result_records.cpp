// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "job/list/result_records.h"

#include <algorithm>
#include <sstream>

#include "base/path_text.h"
#include "host/files/file_stamp.h"
#include "job/list/disk_monitor.h"

namespace quillon::job {
namespace {

constexpr const char* kStamp = "result";
constexpr double kSecondsPerCommit = 2;

bool IsBelow(const std::string& path, const std::string& folder) {
  return path == folder || path.starts_with(folder == "/" ? folder : folder + "/");
}

// Returns the real path of the output folder if results in it could be listed, else "".
std::string ListedOutputFolder(const RunContext& context) {
  if (context.window.Overwrites() || !context.shard.Whole()) return {};
  const std::string out = context.window.OutputFolder();
  const auto contains = [&](const std::string& folder) { return IsBelow(out, folder); };
  if (std::none_of(context.listedFolders.begin(), context.listedFolders.end(), contains)) return {};
  return context.disks.AskFolder(out) ? context.host.files.RealPath(out).value_or("") : std::string();
}

}  // namespace

ResultRecords::ResultRecords(const RunContext& context) : context_(context), real_(ListedOutputFolder(context)) {
  if (!real_.empty() && context.journals) journal_ = context.journals->Open({"results\n" + real_});
  committedAt_ = context.host.clock.Seconds();
}

ResultRecords::~ResultRecords() {
  if (journal_) static_cast<void>(journal_->Commit());
}

void ResultRecords::Note(const FileResult& result) {
  if (result.result != Result::Written) return;
  NoteOutput(result.output);
  for (const std::string& output : result.more) NoteOutput(output);
  const double now = context_.host.clock.Seconds();
  if (now - committedAt_ < kSecondsPerCommit) return;
  static_cast<void>(journal_->Commit());
  committedAt_ = now;
}

void ResultRecords::NoteOutput(const std::string& output) {
  const auto name = BelowFolder(output);
  const auto stamp = StampOf(context_.host.files, output);
  if (!name || !stamp) return;
  std::ostringstream text;
  text << *stamp;
  journal_->Set(*name, kStamp, text.str());
}

bool ResultRecords::Contains(const std::string& path) {
  if (!journal_) return false;
  const auto name = BelowFolder(path);
  std::istringstream text(name ? journal_->Get(*name, kStamp).value_or("") : std::string());
  host::FileStamp recorded;
  if (!(text >> recorded)) return false;
  const auto now = StampOf(context_.host.files, path);
  return now && UnchangedOverMounts(recorded, *now);
}

// Returns the path relative to the output folder; nullopt if it is outside.
std::optional<std::string> ResultRecords::BelowFolder(const std::string& path) {
  const std::string::size_type slash = path.rfind('/');
  if (slash == std::string::npos) return std::nullopt;
  const std::string folder = path.substr(0, std::max<std::string::size_type>(slash, 1));
  if (folder != lastFolder_) {
    lastFolder_ = folder;
    lastReal_ = context_.host.files.RealPath(folder).value_or("");
  }
  if (lastReal_.empty() || !IsBelow(lastReal_, real_)) return std::nullopt;
  return lastReal_.substr(real_.size()) + path.substr(slash);
}

}  // namespace quillon::job
