// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "job/run/run_ledger.h"

#include <utility>

#include "base/path_text.h"
#include "base/utf8.h"
#include "host/files/stale_output.h"
#include "imaging/services.h"
#include "job/list/disk_monitor.h"
#include "job/list/file_list.h"
#include "job/list/run_context.h"

namespace quillon::job {
namespace {

constexpr const char* kExistingChoices =
    "\r\n要替换吗？这次运行中再遇到同名的文件，都按这次的回答处理"
    "\r\n是——替换，原有的文件移到回收站"
    "\r\n否——都保留，新写的另取名字，如“照片(2).jpg”"
    "\r\n取消——保留原有的文件，跳过这张图片";

}  // namespace

RunLedger::RunLedger(const RunContext& context, std::size_t planned)
    : context_(context), open_(planned == 0), onExisting_(context.onExisting), discards_(context) {
  totals_.planned = planned;
}

std::optional<RunLedger::Origin> RunLedger::Find(const std::string& output) const {
  const auto found = outputs_.find(output);
  if (found != outputs_.end()) return found->second;
  if (!recall_ || !context_.host.files.IsFile(output)) return std::nullopt;
  return recall_(output);
}

void RunLedger::Add(const FileResult& result) {
  if (open_) ++totals_.planned;
  ++results_;
  revoked_.clear();
  switch (result.result) {
    case Result::Written:
      Register(result.output, result);
      ++totals_.written;
      break;
    case Result::None:
      ++totals_.none;
      break;
    case Result::Skipped:
      ++totals_.skipped;
      break;
  }
  // A skipped source has no outputs of this run, but one without a result may have some.
  if (result.result != Result::Skipped) {
    for (const std::string& output : result.more) Register(output, result);
  }
  ShowResult(result);
  if (context_.observer) context_.observer->FileDone(result);
}

void RunLedger::Register(const std::string& output, const FileResult& result) {
  const auto earlier = Find(output);
  if (earlier && earlier->source != result.source) {
    Revoke(output, *earlier, "输出文件与 " + base::DisplayText(result.source) + " 的同名，已被后者覆盖");
  }
  const std::size_t several = result.more.empty() ? 0 : results_;
  outputs_[output] = {result.row, result.source, several, result.result == Result::Written,
                      host::StampOf(context_.host.files, output)};
}

void RunLedger::ShowResult(const FileResult& result) {
  if (result.row == 0) return;
  std::uint64_t newBytes = 0;
  if (result.result == Result::Written) {
    if (const auto output = context_.host.files.Stat(result.output)) newBytes = output->size;
    for (const std::string& more : result.more) {
      if (const auto output = context_.host.files.Stat(more)) newBytes += output->size;
    }
  }
  context_.files.SetResult(result.row - 1, result.result, result.why, newBytes);
}

void RunLedger::Revoke(const std::string& output, const Origin& origin, const std::string& why) {
  outputs_.erase(output);
  if (!origin.counted || !revoked_.insert(origin.source).second) return;
  if (origin.several != 0) {
    std::erase_if(outputs_, [&](const auto& other) { return other.second.several == origin.several; });
  }
  --totals_.written;
  ++totals_.none;
  const FileResult lost{origin.row, origin.source, "", Result::None, why};
  ShowResult(lost);
  if (context_.observer) context_.observer->FileLost(lost, output);
  if (noteLate_) noteLate_(origin.source, why);
}

std::string RunLedger::SourceOf(const std::string& output) const {
  const auto found = outputs_.find(output);
  return found == outputs_.end() ? std::string() : found->second.source;
}

std::optional<host::FileStamp> RunLedger::StampOfOutput(const std::string& output) const {
  const auto found = outputs_.find(output);
  return found == outputs_.end() ? std::nullopt : found->second.stamp;
}

bool RunLedger::WroteFrom(const std::string& output, const std::string& source) const {
  return SourceOf(output) == source;
}

bool RunLedger::IsOtherSource(const std::string& path, const std::string& own) {
  const host::Files& files = context_.host.files;
  if (!files.Stat(path) || files.SameFile(path, own)) return false;
  return isSource_ ? isSource_(path) : IsListed(path);
}

bool RunLedger::IsListed(const std::string& path) {
  const host::Files& files = context_.host.files;
  const auto facts = files.Stat(path);
  if (!facts) return false;
  if (!sources_) {
    sources_.emplace();
    for (std::size_t row = 0; row < context_.files.RowCount(); ++row) {
      if (const auto source = files.Stat(context_.files.Row(row).Path())) sources_->insert(IdOf(*source));
    }
  }
  return sources_->contains(IdOf(*facts));
}

bool RunLedger::IsForeign(const std::string& source, const std::string& output) const {
  const host::Files& files = context_.host.files;
  const auto now = host::StampOf(files, output);
  if (!now) return files.Stat(output) && !Find(output) && !files.SameFile(output, source);
  if (files.SameFile(output, source)) return false;
  const auto written = Find(output);
  return !written || !written->stamp || !UnchangedOverMounts(*written->stamp, *now);
}

std::optional<std::string> RunLedger::PlaceFor(const std::string& source, const std::string& output) {
  if (!context_.host.files.IsFile(output)) return output;
  if (IsTaken(source, output)) return FreeName(source, output);
  if (!IsForeign(source, output)) return output;
  if (onExisting_ == OnExisting::Ask) AskAboutExisting(output);
  if (onExisting_ == OnExisting::Skip) return std::nullopt;
  return onExisting_ == OnExisting::Rename ? FreeName(source, output) : output;
}

bool RunLedger::KeepsExisting(const std::string& source, const std::string& output) const {
  return IsTaken(source, output) || (KeepsForeign() && IsForeign(source, output));
}

bool RunLedger::IsTaken(const std::string& source, const std::string& output) const {
  const auto found = besides_.find(output);
  const std::string owner = found != besides_.end() ? found->second
                            : besideRecords_.of     ? besideRecords_.of(output)
                                                    : std::string();
  return !owner.empty() && owner != source && context_.host.files.IsFile(output);
}

// Returns "<name>(<number>).<extension>" in the same folder, with the first number from 2 of which there is no file, or
// only one that this run, or a killed part of it, has made from the same source.
std::string RunLedger::FreeName(const std::string& source, const std::string& output) {
  const base::PathParts parts = base::SplitPath(output);
  for (std::size_t number = 2;; ++number) {
    std::string free = base::JoinPath(parts.folder, parts.name + "(" + std::to_string(number) + ")", parts.extension);
    const bool own = WroteFrom(free, source) || (besideRecords_.of && besideRecords_.of(free) == source);
    if (!own && context_.host.files.Stat(free)) continue;
    if (besideRecords_.note) {
      besideRecords_.note(source, free);
    } else {
      besides_[free] = source;
    }
    return free;
  }
}

void RunLedger::AskAboutExisting(const std::string& output) {
  const std::string question = "已有同名的文件，不是这次写出的：" + base::DisplayText(output) + kExistingChoices;
  switch (context_.Ask(question, host::kYesNoCancelQuestion)) {
    case host::Reply::Yes:
      onExisting_ = OnExisting::Replace;
      break;
    case host::Reply::No:
      onExisting_ = OnExisting::Rename;
      break;
    default:
      onExisting_ = OnExisting::Skip;
  }
}

void RunLedger::DiscardStaleOutput(const std::string& source, const std::string& output, const host::Status& failure) {
  const host::Files& files = context_.host.files;
  if (!host::MayLeaveStaleOutput(failure) || outputs_.contains(output)) return;
  // A stopped run does not wait for disks any more.
  const bool answers = context_.Stopped() ? !context_.disks.Silent(output)
                                          : static_cast<bool>(context_.disks.AskFolder(base::SplitPath(output).folder));
  if (!answers || !host::WouldBeStaleOutput(files, source, output, failure)) return;
  const auto written = Find(output);
  if (written ? written->source != source : KeepsForeign()) return;
  if (IsOtherSource(output, source)) return;
  if (!context_.shard.Whole()) {
    if (context_.observer) context_.observer->StaleOutputLeft(output);
    return;
  }
  // If it cannot be moved to a trash, it stays: a file of the user is never removed.
  static_cast<void>(context_.host.files.Discard(output));
}

void RunLedger::Flush() {
  const std::vector<host::LateFailure> lost = context_.disks.Flush();
  for (const host::LateFailure& failure : lost) {
    const auto found = outputs_.find(failure.path);
    if (found == outputs_.end()) continue;
    const Origin origin = found->second;
    Revoke(failure.path, origin, "输出文件没有写到磁盘上：" + failure.status.Why());
  }
  discards_.Drain(
      lost, [this](const auto& source) { return IsDue(source); },
      [this](const auto& source, auto reason, const host::Status& status) { ReportKept(source, reason, status); });
}

// A source stays if its output was lost meanwhile, or another source has overwritten it.
bool RunLedger::IsDue(const DiscardQueue::Source& source) const {
  const auto written = outputs_.find(source.outputs.front());
  return written != outputs_.end() && written->second.source == source.path;
}

void RunLedger::ReportKept(const DiscardQueue::Source& source, DiscardQueue::Kept reason, const host::Status& status) {
  const std::string& output = source.outputs.front();
  if (reason == DiscardQueue::Kept::OutputLost) {
    Revoke(output, Origin(outputs_.at(output)), "输出文件读不回来，源文件已保留：" + status.Why());
    return;
  }
  const std::string why = reason == DiscardQueue::Kept::Changed ? std::string("图片在裁剪期间被改动，源文件已保留")
                                                                : "输出已写好，源文件没能移入回收站：" + status.Why();
  ShowResult({source.row, source.path, output, Result::Written, why});
  if (noteLate_) noteLate_(source.path, why);
}

std::string TakenNameText(const std::string& output, const std::string& place) {
  const auto name = [](const std::string& path) { return base::DisplayText(path.substr(path.rfind('/') + 1)); };
  return "“" + name(output) + "”已是这次写出的另一张图片，另存为“" + name(place) + "”";
}

void RunLedger::NoteEnd(double seconds, bool stopped) {
  totals_.seconds = seconds;
  totals_.stopped = stopped;
}

}  // namespace quillon::job
