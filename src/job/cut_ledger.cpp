// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "job/cut_ledger.h"

#include <utility>

#include "base/path_text.h"
#include "base/utf8.h"
#include "imaging/older_result.h"
#include "imaging/unchanged.h"
#include "job/program.h"

namespace quillon::job {

CutLedger::CutLedger(Program& program, std::size_t planned) : program_(program), open_(planned == 0) {
  totals_.planned = planned;
}

std::optional<CutLedger::Origin> CutLedger::Find(const std::string& output) const {
  const auto found = outputs_.find(output);
  if (found != outputs_.end()) return found->second;
  if (!recall_ || !program_.host.files.IsFile(output)) return std::nullopt;
  const std::string source = recall_(output);
  return source.empty() ? std::nullopt : std::optional(Origin{0, source});
}

void CutLedger::Add(const FileResult& result) {
  if (open_) ++totals_.planned;
  if (result.result == Result::Written) {
    ++results_;
    Register(result.output, result);
    for (const std::string& output : result.more) Register(output, result);
    ++totals_.written;
  } else {
    ++(result.result == Result::None ? totals_.none : totals_.skipped);
  }
  ShowResult(result);
  if (program_.observer) program_.observer->FileDone(result);
}

void CutLedger::Register(const std::string& output, const FileResult& result) {
  const auto earlier = Find(output);
  if (earlier && earlier->source != result.source) {
    TakeBack(output, *earlier, "输出文件与 " + base::DisplayText(result.source) + " 的同名，已被后者覆盖");
  }
  outputs_[output] = {result.row, result.source, result.more.empty() ? 0 : results_};
}

void CutLedger::ShowResult(const FileResult& result) {
  if (result.row == 0) return;
  std::uint64_t newBytes = 0;
  if (result.result == Result::Written) {
    if (const auto output = program_.host.files.Look(result.output)) newBytes = output->size;
    for (const std::string& more : result.more) {
      if (const auto output = program_.host.files.Look(more)) newBytes += output->size;
    }
  }
  program_.files.SetResult(result.row - 1, result.result, result.why, newBytes);
}

void CutLedger::TakeBack(const std::string& output, const Origin& origin, const std::string& why) {
  outputs_.erase(output);
  if (origin.several != 0) {
    std::erase_if(outputs_, [&](const auto& other) { return other.second.several == origin.several; });
  }
  --totals_.written;
  ++totals_.none;
  const FileResult lost{origin.row, origin.source, "", Result::None, why};
  ShowResult(lost);
  if (program_.observer) program_.observer->FileLost(lost, output);
}

std::string CutLedger::SourceOf(const std::string& output) const {
  const auto found = outputs_.find(output);
  return found == outputs_.end() ? std::string() : found->second.source;
}

bool CutLedger::WroteFrom(const std::string& output, const std::string& source) const {
  return SourceOf(output) == source;
}

bool CutLedger::IsOtherSource(const std::string& path, const std::string& own) {
  const host::Files& files = program_.host.files;
  if (!files.Look(path) || files.SameFile(path, own)) return false;
  return isSource_ ? isSource_(path) : IsListed(path);
}

bool CutLedger::IsListed(const std::string& path) {
  const host::Files& files = program_.host.files;
  const auto facts = files.Look(path);
  if (!facts) return false;
  if (!sources_) {
    sources_.emplace();
    for (std::size_t row = 0; row < program_.files.RowCount(); ++row) {
      if (const auto source = files.Look(program_.files.Row(row).Path())) {
        sources_->emplace(source->device, source->inode);
      }
    }
  }
  return sources_->contains({facts->device, facts->inode});
}

void CutLedger::NoteFailed(const std::string& source, const std::string& output, const host::Status& failure) {
  const host::Files& files = program_.host.files;
  if (!imaging::PassesForResult(files, source, output, failure)) return;
  if (const auto facts = files.Look(output)) older_.push_back({source, output, *facts});
}

// What has changed since then is no older file any more, whoever wrote it.
void CutLedger::Drop(const Older& older) {
  if (program_.disks.Silent(older.output)) return;
  const auto now = program_.host.files.Look(older.output);
  if (!now || !imaging::Unchanged(*now, older.facts)) return;
  const auto written = Find(older.output);
  if ((written && written->source != older.source) || IsOtherSource(older.output, older.source)) return;
  if (!program_.share.Whole()) {
    if (program_.observer) program_.observer->OlderLeft(older.output);
    return;
  }
  // Where no trash takes it, it stays: a file of the user is never simply removed.
  static_cast<void>(program_.host.files.Discard(older.output));
}

void CutLedger::DiscardAtEnd(std::size_t row, std::string source, std::string output) {
  discards_.push_back({{row, std::move(source)}, std::move(output)});
}

void CutLedger::Settle() {
  for (const Older& older : std::exchange(older_, {})) Drop(older);
  for (const host::LateFailure& failure : program_.host.files.Settle()) {
    const auto found = outputs_.find(failure.path);
    if (found == outputs_.end()) continue;
    const Origin origin = found->second;
    TakeBack(failure.path, origin, "输出文件没有写到磁盘上：" + failure.status.Why());
  }
  for (const Discard& discard : discards_) {
    program_.host.pump.Turn();
    DiscardSource(discard);
  }
  discards_.clear();
}

// A pdf was looked at whole when it was made.
host::Status CutLedger::ReadBack(const std::string& output) {
  if (base::SplitPath(output).extension == "pdf") return host::Status::Ok();
  imaging::Image picture;
  host::Status status = program_.images.LoadImageFromFile(output, picture);
  program_.images.DisposeImage(picture);
  return status;
}

// The source is all there is if the output cannot be read back.
void CutLedger::DiscardSource(const Discard& discard) {
  const auto written = outputs_.find(discard.output);
  if (written == outputs_.end() || written->second.source != discard.origin.source) return;
  host::Status status = ReadBack(discard.output);
  if (!status) {
    TakeBack(discard.output, Origin(written->second), "输出文件读不回来，源文件已保留：" + status.Why());
    return;
  }
  status = program_.host.files.Discard(discard.origin.source);
  if (status || discard.origin.row == 0) return;
  ShowResult({discard.origin.row, discard.origin.source, discard.output, Result::Written,
              "输出已写好，源文件没能移入回收站：" + status.Why()});
}

void CutLedger::NoteEnd(double seconds, bool stopped) {
  totals_.seconds = seconds;
  totals_.stopped = stopped;
}

}  // namespace quillon::job
