// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "job/run_journal.h"

#include <sstream>
#include <utility>

#include "job/cut_ledger.h"
#include "job/program.h"

namespace quillon::job {
namespace {

using host::FileFacts;

// Keys. A source that is to be overwritten is written down as begun, every finished one as done; an output tells from
// which source it came.
constexpr const char* kBegun = "begun";
constexpr const char* kDone = "done";
constexpr const char* kFrom = "from";

constexpr int kYesNoCancelQuestion = 35;

struct Stamp {
  std::uint64_t size = 0;
  std::int64_t modified = 0;
  std::uint64_t inode = 0;

  bool operator==(const Stamp&) const = default;
};

Stamp StampOf(const FileFacts& facts) { return {facts.size, facts.modified, facts.inode}; }

std::ostream& operator<<(std::ostream& out, const Stamp& stamp) {
  return out << stamp.size << ' ' << stamp.modified << ' ' << stamp.inode;
}

std::istream& operator>>(std::istream& in, Stamp& stamp) { return in >> stamp.size >> stamp.modified >> stamp.inode; }

struct Done {
  Stamp source;
  Stamp output;
  std::string path;
};

std::string TextOf(const Done& done) {
  std::ostringstream text;
  text << done.source << ' ' << done.output << '\n' << done.path;
  return text.str();
}

std::optional<Done> ReadDone(const std::string& text) {
  std::istringstream in(text);
  Done done;
  if (!(in >> done.source >> done.output) || in.get() != '\n') return std::nullopt;
  done.path = text.substr(static_cast<std::size_t>(in.tellg()));
  return done;
}

bool IsParameter(const controls::Control& control) {
  switch (control.GetKind()) {
    case controls::Kind::CheckBox:
    case controls::Kind::Option:
    case controls::Kind::TextBox:
    case controls::Kind::ComboBox:
    case controls::Kind::ColourBox:
    case controls::Kind::Slider:
      return true;
    default:
      return false;
  }
}

}  // namespace

RunJournal::RunJournal(Program& program, std::string driver, std::vector<std::string> windows)
    : program_(program), driver_(std::move(driver)), windows_(std::move(windows)) {}

std::string RunJournal::JobText() const {
  const Share& share = program_.share;
  std::ostringstream text;
  text << driver_ << '\n' << share.index << '/' << share.count << '\n';
  text << program_.form1.LInDir.Value() << '\n' << program_.form1.LOutDir.Value() << '\n';
  for (const std::string& name : windows_) {
    const controls::Window* window = program_.windows.FindWindow(name);
    if (!window || !window->Loaded()) continue;
    for (const controls::Control* control : window->Controls()) {
      if (IsParameter(*control)) text << control->FullName() << '=' << control->Value() << '\n';
    }
  }
  return text.str();
}

bool RunJournal::Begin() {
  job_ = JobText();
  if (program_.journals) journal_ = program_.journals->Open(job_);
  if (!journal_) return true;
  const std::size_t done = journal_->Count(kDone);
  if (done == 0 && journal_->Count(kBegun) == 0) return true;
  const host::Reply reply = program_.Ask("上次的这项任务没有做完，已写好 " + std::to_string(done) +
                                             " 个文件。要接着处理吗？\r\n是——接着处理，已写好的不再处理\r\n"
                                             "否——全部重新处理\r\n取消——不处理",
                                         kYesNoCancelQuestion);
  if (reply == host::Reply::No) journal_->Clear();
  return reply == host::Reply::Yes || reply == host::Reply::No;
}

bool RunJournal::Stands(const std::string& source) {
  if (!journal_) return false;
  const std::string doneText = journal_->Get(source, kDone).value_or("");
  const std::string begunText = doneText.empty() ? journal_->Get(source, kBegun).value_or("") : std::string();
  if (doneText.empty() && begunText.empty()) return false;
  const host::Files& files = program_.host.files;
  const auto now = files.Look(source);
  if (!now) return false;
  if (!doneText.empty()) {
    const auto done = ReadDone(doneText);
    const auto output = done ? files.Look(done->path) : std::nullopt;
    if (!output || StampOf(*output) != done->output) return false;
    return done->path == source || StampOf(*now) == done->source;
  }
  // Replaced as a whole: that is what a finished cut does to its source.
  std::istringstream in(begunText);
  Stamp before;
  return in >> before && now->inode != before.inode;
}

void RunJournal::Begun(const std::string& source, const std::vector<std::string>& next) {
  if (!journal_) return;
  const host::Files& files = program_.host.files;
  before_ = files.Look(source);
  if (!program_.form1.ChOver.On() || intended_.contains(source)) return;
  intended_.clear();
  std::vector<std::string> all = next;
  all.push_back(source);
  for (const std::string& path : all) {
    intended_.insert(path);
    const auto facts = files.Look(path);
    // What an earlier part of the job has overwritten is not touched again.
    if (!facts || (path != source && Stands(path))) continue;
    std::ostringstream text;
    text << StampOf(*facts);
    journal_->Set(path, kBegun, text.str());
    // What was done does not hold any more.
    if (journal_->Get(path, kDone)) journal_->Set(path, kDone, "");
  }
  journal_->Commit();
}

void RunJournal::Ended(const FileResult& result) {
  if (journal_ && before_ && result.result == Result::Written)
    made_.push_back({result.source, *before_, result.output});
}

void RunJournal::Commit(const CutLedger& ledger) {
  if (!journal_) return;
  const std::vector<Made> made = std::exchange(made_, {});
  if (JobText() != job_) return;
  for (const Made& one : made) {
    if (ledger.WroteFrom(one.output, one.source)) WriteDown(one);
  }
  journal_->Commit();
}

void RunJournal::WriteDown(const Made& made) {
  const auto output = program_.host.files.Look(made.output);
  if (!output) return;
  journal_->Set(made.source, kDone, TextOf({StampOf(made.before), StampOf(*output), made.output}));
  if (made.output != made.source) journal_->Set(made.output, kFrom, made.source);
}

std::string RunJournal::SourceOf(const std::string& output) {
  return journal_ ? journal_->Get(output, kFrom).value_or("") : std::string();
}

void RunJournal::End(const CutLedger& ledger, bool complete) {
  if (!journal_) return;
  if (complete) {
    journal_->Remove();
    journal_.reset();
  } else {
    Commit(ledger);
  }
}

std::optional<std::string> RunJournal::Get(const std::string& source, const std::string& key) {
  return journal_ ? journal_->Get(source, key) : std::nullopt;
}

void RunJournal::Set(const std::string& source, const std::string& key, const std::string& value) {
  if (journal_) journal_->Set(source, key, value);
}

}  // namespace quillon::job
