// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
//
// Decisions by hand: the part of the run journal for runs with a manual frame, over a folder or over the list.
#include <algorithm>
#include <sstream>
#include <utility>

#include "base/utf8.h"
#include "job/list/file_list.h"
#include "job/list/run_context.h"
#include "job/run/run_journal.h"

namespace quillon::job {
namespace {

using host::FileStamp;

// Keys of the records; see the header.
constexpr const char* kBefore = "before";
constexpr const char* kAfter = "after";

}  // namespace

std::string RunJournal::DecisionJob(const std::string& files) const {
  const RunWindow& window = context_.window;
  const char* over = window.Overwrites() ? "\nover\n" : "\n";
  return "manual\n" + window.OutputFolder() + "\n" + window.OutputType() + over + files;
}

std::string RunJournal::ListText() const {
  std::string text;
  for (std::size_t row = 0; row < context_.files.RowCount(); ++row) text += context_.files.Row(row).Path() + "\n";
  return text;
}

bool RunJournal::BeginList() {
  job_ = DecisionJob(ListText());
  if (!OpenOwn()) return false;
  if (!journal_) return true;
  if (StopsForTorn()) return AskToResume(ListQuestion());
  return Decisions() == 0 || context_.recovering || AskToResume(ListQuestion());
}

std::string RunJournal::ListQuestion() {
  std::string text = Interrupted("上次的手动裁剪没有做完") + "，已指定 " + std::to_string(Decisions()) + " 张。";
  if (const std::size_t row = FirstUndecided(); row > 0) {
    const std::string path = base::DisplayText(context_.files.Row(row - 1).Path());
    text += "要从第 " + std::to_string(row) + " 张继续吗？\r\n" + path;
  } else {
    text += "要接着做吗？";
  }
  return text + "\r\n是——继续，前面的按上次指定的裁剪框处理\r\n否——从头重新指定\r\n取消——不裁剪";
}

// Returns the first row, from 1, without a decision; 0 if there is none.
std::size_t RunJournal::FirstUndecided() {
  for (std::size_t row = 0; row < context_.files.RowCount(); ++row) {
    const std::string path = context_.files.Row(row).Path();
    if (!StandingDecision(path) && !CutAsDecided(path)) return row + 1;
  }
  return 0;
}

// Earlier versions kept the decisions of a run over a folder in a journal of their own. They become records of this
// one.
void RunJournal::AdoptDecisions() {
  const host::JobPart old = OwnPart(DecisionJob(context_.window.InputFolder()));
  if (!context_.journals->FindUnfinished(old.job, [&](const auto& part) { return part == old; })) return;
  const auto journal = context_.journals->Open(old);
  if (!journal) return;
  journal->Each(kDecision, [&](const std::string& source) {
    for (const char* key : {kDecision, kBefore, kAfter}) {
      if (const auto value = journal->Get(source, key)) journal_->Set(source, key, *value);
    }
  });
  static_cast<void>(journal_->Commit());
  journal->Remove();
}

std::optional<FileStamp> RunJournal::StampIn(const std::string& source, const char* key) const {
  std::string written = journal_->Get(source, key).value_or("");
  std::replace(written.begin(), written.end(), '/', ' ');  // as earlier versions wrote it
  std::istringstream text(written);
  FileStamp stamp;
  return text >> stamp ? std::optional(stamp) : std::nullopt;
}

// Stores an empty value if the file does not exist.
void RunJournal::WriteStamp(const std::string& source, const char* key) {
  std::ostringstream text;
  if (const auto stamp = StampOf(context_.host.files, source)) text << *stamp;
  journal_->Set(source, key, text.str());
}

std::optional<std::string> RunJournal::StandingDecision(const std::string& source) const {
  if (!journal_) return std::nullopt;
  const auto before = StampIn(source, kBefore);
  const auto now = StampOf(context_.host.files, source);
  if (!before || !now || !UnchangedOverMounts(*before, *now)) return std::nullopt;
  return journal_->Get(source, kDecision);
}

std::optional<std::string> RunJournal::DecisionOn(const std::string& source) {
  auto decision = StandingDecision(source);
  if (decision) decided_ = source;
  return decision;
}

bool RunJournal::CutAsDecided(const std::string& source) const {
  if (!journal_) return false;
  const auto before = StampIn(source, kBefore);
  const auto now = StampOf(context_.host.files, source);
  if (!before || !now) return false;
  const auto after = StampIn(source, kAfter);
  // Checked first, because on a disk that stores no change time, a cut of the same size looks like its source. Earlier
  // versions also stored the stamp of a source that was not replaced.
  if (after && *after != *before && UnchangedOverMounts(*after, *now)) return true;
  if (UnchangedOverMounts(*before, *now) || journal_->Get(source, kAfter)) return false;
  // The power may have failed between the cut and its record, so a changed source counts as cut.
  return context_.window.Overwrites();
}

void RunJournal::StoreDecision(const std::string& source, const std::string& decision) {
  decided_ = source;
  if (!journal_) return;
  WriteStamp(source, kBefore);
  journal_->Set(source, kDecision, decision);
  static_cast<void>(journal_->Commit());
}

void RunJournal::NoteDecidedCut(const std::string& source) {
  if (std::exchange(decided_, {}) != source || !journal_) return;
  WriteStamp(source, kAfter);
  static_cast<void>(journal_->Commit());
}

}  // namespace quillon::job
