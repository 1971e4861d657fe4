// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "regions/frame/decisions.h"

#include <algorithm>
#include <sstream>

#include "base/utf8.h"
#include "job/settings/cut_settings.h"

namespace quillon::regions {
namespace {

constexpr const char* kDecision = "decision";
constexpr const char* kBefore = "before";
constexpr const char* kAfter = "after";
constexpr char kParting = '\t';

}  // namespace

std::string TextOf(const Decision& decision) {
  std::string text;
  for (const std::string& margin : decision.margins) text += margin + kParting;
  return text + (decision.skip ? "Z" : "") + kParting + decision.steps;
}

std::optional<Decision> DecisionFrom(const std::string& text) {
  Decision decision;
  std::size_t at = 0;
  const auto next = [&]() -> std::string {
    if (at > text.size()) return {};
    const std::size_t end = text.find(kParting, at);
    const std::string part = text.substr(at, end - at);
    at = end == std::string::npos ? text.size() + 1 : end + 1;
    return part;
  };
  for (std::string& margin : decision.margins) margin = next();
  decision.skip = next() == "Z";
  if (at > text.size()) return std::nullopt;
  decision.steps = next();
  return decision;
}

std::string Decisions::JobText() const {
  const job::CutSettings options = job::ReadCutSettings(program_);
  std::string text = "manual\n" + options.outFolder + "\n" + options.outType + (options.over ? "\nover\n" : "\n");
  if (program_.flags.LargeCapacityMode) return text + program_.form1.LInDir.Value();
  for (std::size_t row = 0; row < program_.files.RowCount(); ++row) text += program_.files.Row(row).Path() + "\n";
  return text;
}

std::optional<host::FileStamp> Decisions::StampIn(const std::string& source, const char* key) const {
  std::string written = journal_->Get(source, key).value_or("");
  std::replace(written.begin(), written.end(), '/', ' ');  // as earlier versions wrote it
  std::istringstream text(written);
  host::FileStamp stamp;
  return text >> stamp ? std::optional(stamp) : std::nullopt;
}

void Decisions::WriteStamp(const std::string& source, const char* key) {
  std::ostringstream text;
  if (const auto stamp = StampOf(program_.host.files, source)) text << *stamp;
  journal_->Set(source, key, text.str());
}

std::size_t Decisions::FirstOpen() const {
  for (std::size_t row = 0; row < program_.files.RowCount(); ++row) {
    const std::string path = program_.files.Row(row).Path();
    if (!Of(path) && !CutInPlace(path)) return row + 1;
  }
  return 0;
}

bool Decisions::Begin() {
  begun_ = true;
  last_.clear();
  const job::Shard& shard = program_.shard;
  journal_ = program_.journals ? program_.journals->Open({JobText(), shard.index, shard.count}) : nullptr;
  if (!journal_ || journal_->Count(kDecision) == 0) return true;
  const std::size_t open = FirstOpen();
  std::string question = "上次的手动裁剪没有做完，已指定 " + std::to_string(journal_->Count(kDecision)) + " 张。";
  if (open > 0) {
    question +=
        "要从第 " + std::to_string(open) + " 张继续吗？\r\n" + base::DisplayText(program_.files.Row(open - 1).Path());
  } else {
    question += "要接着做吗？";
  }
  question += "\r\n是——继续，前面的按上次指定的裁剪框处理\r\n否——从头重新指定\r\n取消——不裁剪";
  const host::Reply reply = program_.Ask(question, host::kYesNoCancelQuestion);
  if (reply == host::Reply::No) {
    journal_->Clear();
    journal_->Commit();
  }
  return reply == host::Reply::Yes || reply == host::Reply::No;
}

std::optional<Decision> Decisions::Of(const std::string& source) const {
  if (!journal_) return std::nullopt;
  const auto before = StampIn(source, kBefore);
  const auto now = StampOf(program_.host.files, source);
  if (!before || !now || !UnchangedOverMounts(*before, *now)) return std::nullopt;
  const auto text = journal_->Get(source, kDecision);
  return text ? DecisionFrom(*text) : std::nullopt;
}

bool Decisions::CutInPlace(const std::string& source) const {
  if (!journal_) return false;
  const auto before = StampIn(source, kBefore);
  const auto now = StampOf(program_.host.files, source);
  if (!before || !now) return false;
  const auto after = StampIn(source, kAfter);
  // Replaced as a whole. On a disk that stores no change time, a cut of the same size looks like its source.
  if (after && after->inode != before->inode && UnchangedOverMounts(*after, *now)) return true;
  if (UnchangedOverMounts(*before, *now)) return false;
  if (journal_->Get(source, kAfter)) return after && UnchangedOverMounts(*after, *now);
  // If the power failed between the cut and this note of it, a changed source counts as cut.
  return job::ReadCutSettings(program_).over;
}

void Decisions::Decided(const std::string& source, const Decision& decision) {
  last_ = source;
  if (!journal_) return;
  WriteStamp(source, kBefore);
  journal_->Set(source, kDecision, TextOf(decision));
  journal_->Commit();
}

void Decisions::NoteCut() {
  if (journal_ && !last_.empty()) {
    WriteStamp(last_, kAfter);
    journal_->Commit();
  }
  last_.clear();
}

void Decisions::End(bool complete) {
  NoteCut();
  if (journal_ && complete) journal_->Remove();
  journal_.reset();
  begun_ = false;
}

}  // namespace quillon::regions
