// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "job/run/run_journal.h"

#include <algorithm>
#include <sstream>
#include <utility>

#include "base/path_text.h"
#include "job/list/disk_monitor.h"
#include "job/list/run_context.h"
#include "job/run/run_ledger.h"

namespace quillon::job {
namespace {

using host::FileStamp;

// Keys of the records; see the header. An empty value means that there is no record.
constexpr const char* kBegun = "begun";
constexpr const char* kDone = "done";
constexpr const char* kFrom = "from";
constexpr const char* kStamp = "stamp";
constexpr const char* kMeant = "meant";
constexpr const char* kBeside = "beside";
constexpr const char* kEnded = "ended";
constexpr const char* kPartial = "partial";

constexpr const char* kInUse = "这项任务正由另一个程序处理，或者它的记录现在无法读取，请稍后再试";

constexpr const char* kNoRecords =
    "无法读写这项任务的记录：如果上次没有做完，或者这次中断，已覆盖的原文件会再裁一次。要处理吗？"
    "\r\n是——处理\r\n否——不处理";

// A done record. Its text has the stamp of the source, and for each output its stamp and path, ended by a zero byte.
struct Done {
  FileStamp source;
  std::vector<std::pair<FileStamp, std::string>> outputs;
};

std::string TextOf(const Done& done) {
  std::ostringstream text;
  text << done.source;
  for (const auto& [stamp, path] : done.outputs) text << ' ' << stamp << ' ' << path << '\0';
  return text.str();
}

// Returns no outputs if the text is not valid.
Done ReadDone(const std::string& text) {
  std::istringstream in(text);
  Done done;
  in >> done.source;
  FileStamp stamp;
  std::string path;
  while (in >> stamp && in.get() == ' ' && std::getline(in, path, '\0')) done.outputs.emplace_back(stamp, path);
  return done;
}

// Returns whether an output of a done record exists unchanged.
bool OutputStands(const host::Files& files, const std::pair<FileStamp, std::string>& output) {
  const auto now = StampOf(files, output.second);
  return now && UnchangedOverMounts(output.first, *now);
}

bool OutputsStand(const host::Files& files, const Done& done) {
  return !done.outputs.empty() && std::all_of(done.outputs.begin(), done.outputs.end(),
                                              [&](const auto& output) { return OutputStands(files, output); });
}

std::string ConflictingSplitQuestion(std::uint64_t count) {
  const std::string before = std::to_string(count);
  const std::string how =
      count > 1 ? "当时分成 " + before + " 份处理，这次分得不同，认不出哪些文件已经处理过。要接着处理，请仍分成 " +
                      before + " 份：用 --jobs " + before + "，或者与上次相同的 --shard 和 --jobs"
                : "当时没有分份，这次分了份，认不出哪些文件已经处理过。要接着处理，请不带 --jobs 和 --shard 运行";
  return "上次的这项任务没有做完，" + how +
         "。这次先不处理吗？\r\n是——不处理\r\n否——全部重新处理，已覆盖的原文件会再裁一次";
}

}  // namespace

RunJournal::RunJournal(const RunContext& context, std::string driver, std::vector<std::string> windows)
    : context_(context), driver_(std::move(driver)), windows_(std::move(windows)) {}

std::string RunJournal::JobText() const { return driver_ + '\n' + context_.window.Parameters(windows_); }

host::JobPart RunJournal::OwnPart(const std::string& job) const {
  return {job, context_.shard.index, context_.shard.count};
}

bool RunJournal::BeginFolder() {
  job_ = JobText();
  // The own journal is opened first, so that of two runs that start together at least one sees the other.
  if (!OpenOwn()) return false;
  if (context_.journals && !NoConflictingSplit()) return false;
  if (!journal_) return !context_.journals || !context_.window.Overwrites() || AskWithoutRecords();
  if (context_.flags.ManualCutMode) AdoptDecisions();
  if (context_.recovering && !StopsForTorn()) return true;
  if (!Empty()) return AskToResume(FolderQuestion());
  journal_->Clear();  // it only has origins of outputs
  return true;
}

// Returns false if another program works on the job, or its journal cannot be read; the user has been informed then.
// The journal stays closed if none can be kept.
bool RunJournal::OpenOwn() {
  if (!context_.journals) return true;
  const host::JobPart own = OwnPart(job_);
  journal_ = context_.journals->Open(own);
  if (journal_ || !context_.journals->FindUnfinished(job_, [&](const auto& part) { return part == own; })) return true;
  context_.Ask(kInUse);
  return false;
}

// The lost records may have listed overwritten sources, so the user decides whether these may be cut again.
bool RunJournal::StopsForTorn() const { return Torn() && context_.window.Overwrites(); }

bool RunJournal::Torn() const { return !journal_->Get("", host::kTornKey).value_or("").empty(); }

// A run that is broken off, now or before, could not be continued: its overwritten sources would be cut again.
bool RunJournal::AskWithoutRecords() {
  return context_.Ask(kNoRecords, host::kYesNoQuestion + host::kSecondIsDefault) == host::Reply::Yes;
}

// Returns false if the user wants no run.
bool RunJournal::AskToResume(const std::string& question) {
  const int type = StopsForTorn() ? host::kYesNoCancelQuestion + host::kThirdIsDefault : host::kYesNoCancelQuestion;
  const host::Reply reply = context_.Ask(question, type);
  if (reply == host::Reply::No) journal_->Clear();
  if (reply == host::Reply::Yes && Torn()) journal_->Set("", host::kTornKey, "");
  return reply == host::Reply::Yes || reply == host::Reply::No;
}

// Returns how the question to resume begins.
std::string RunJournal::Interrupted(const std::string& unfinished) const {
  if (!StopsForTorn()) return unfinished;
  return "这项任务上次的记录已经损坏，有一部分读不出来，不知道哪些原文件已经覆盖过。按读得出的记录";
}

std::string RunJournal::FolderQuestion() {
  const std::size_t decided = Decisions();
  std::string text = Interrupted("上次的这项任务没有做完") + "，已写好 " + std::to_string(CountDone()) + " 个文件";
  if (decided > 0) text += "，已指定 " + std::to_string(decided) + " 张";
  text += "。要接着处理吗？\r\n是——接着处理，已写好的不再处理";
  if (StopsForTorn()) text += "，其余的都处理，其中已覆盖的原文件会再裁一次";
  if (decided > 0) text += "，其余已指定的按上次指定的裁剪框处理";
  text += "\r\n否——全部重新处理";
  if (decided > 0) text += "，从头重新指定";
  if (context_.window.Overwrites()) text += "，已覆盖的原文件会再裁一次";
  return text + "\r\n取消——不处理";
}

// An overwritten source counts as soon as it is replaced, even if no checkpoint has recorded it as done yet.
std::size_t RunJournal::CountDone() {
  std::size_t count = 0;
  const auto done = [this](const std::string& source) { return !journal_->Get(source, kDone).value_or("").empty(); };
  journal_->Each(kDone, [&](const std::string& source) { count += done(source) ? 1 : 0; });
  journal_->Each(kBegun, [&](const std::string& source) { count += !done(source) && Stands(source) ? 1 : 0; });
  return count;
}

bool RunJournal::Empty() {
  const auto none = [this](const char* key) { return journal_->Count(key) == 0; };
  return none(kDone) && none(kBegun) && none(kMeant) && none(kEnded) && none(kDecision) && !Torn();
}

// Returns true if no unfinished run split the same files into a different number of shards. Its records are in journals
// that this run does not open. All processes of a call must get the same answer, so that either all of them start or
// none.
bool RunJournal::NoConflictingSplit() {
  const Shard call = context_.shard.OfCall();
  const auto conflicting = [&](const host::JobPart& part) {
    return part.count != context_.shard.count && call.Overlaps({part.index, part.count, ""});
  };
  const auto unfinished = context_.journals->FindUnfinished(job_, conflicting);
  if (!unfinished) return true;
  if (context_.Ask(ConflictingSplitQuestion(unfinished->count), host::kYesNoQuestion) != host::Reply::No) return false;
  if (context_.journals->Forget(job_, conflicting)) return true;
  context_.Ask(kInUse);
  return false;
}

bool RunJournal::Stands(const std::string& source) {
  if (!journal_) return false;
  const std::string doneText = journal_->Get(source, kDone).value_or("");
  const std::string begunText = doneText.empty() ? journal_->Get(source, kBegun).value_or("") : std::string();
  if (doneText.empty() && begunText.empty()) return false;
  const host::Files& files = context_.host.files;
  const auto now = StampOf(files, source);
  if (!doneText.empty()) {
    const Done done = ReadDone(doneText);
    if (!OutputsStand(files, done)) return false;
    if (!now) return !files.Stat(source);
    return done.outputs.front().second == source || SameContent(done.source, *now);
  }
  if (!now) return false;
  // A finished cut replaces its source by another file.
  std::istringstream in(begunText);
  FileStamp before;
  return in >> before && !SameFileOverMounts(before, *now);
}

void RunJournal::NoteEnding(const FileResult& result) {
  std::ostringstream text;
  if (before_) text << StampOf(*before_) << ' ' << result.why;
  journal_->Set(result.source, kEnded, text.str());
}

std::optional<std::string> RunJournal::WhyEnded(const std::string& source) const {
  std::istringstream text(journal_ ? journal_->Get(source, kEnded).value_or("") : std::string());
  FileStamp before;
  std::string why;
  if (!(text >> before) || !std::getline(text >> std::ws, why, '\0')) return std::nullopt;
  const auto now = StampOf(context_.host.files, source);
  return now && UnchangedOverMounts(before, *now) ? std::optional(why) : std::nullopt;
}

void RunJournal::EachHandled(const std::function<void(const std::string& source)>& visit) {
  if (!journal_) return;
  const auto answers = [this](const std::string& source) {
    context_.host.pump.Turn();
    return !context_.Stopped() && static_cast<bool>(context_.disks.AskFolder(base::SplitPath(source).folder));
  };
  const auto visitStanding = [&](const std::string& source) {
    if (answers(source) && Stands(source)) visit(source);
  };
  journal_->Each(kDone, visitStanding);
  journal_->Each(kBegun, visitStanding);
  // A killed run removed the source but did not record it.
  journal_->Each(kMeant, [&](const std::string& output) {
    const std::string source = journal_->Get(output, kMeant).value_or("");
    if (source.empty() || !answers(source)) return;
    const host::Files& files = context_.host.files;
    if (!files.Stat(source) && files.Stat(output)) visit(source);
  });
}

std::vector<std::string> RunJournal::OutputsOf(const std::string& source) {
  std::vector<std::string> paths;
  const std::string text = journal_ ? journal_->Get(source, kDone).value_or("") : std::string();
  for (const auto& [stamp, path] : ReadDone(text).outputs) paths.push_back(path);
  return paths;
}

std::string RunJournal::MadeOf(const std::string& path) {
  if (!journal_) return {};
  if (std::string source = SourceOf(path); !source.empty()) {
    const Done done = ReadDone(journal_->Get(source, kDone).value_or(""));
    const auto output =
        std::find_if(done.outputs.begin(), done.outputs.end(), [&](const auto& one) { return one.second == path; });
    if (output != done.outputs.end() && OutputStands(context_.host.files, *output)) return source;
    // Another file has the name now.
    if (!IsMeant(path)) journal_->Set(path, kFrom, "");
  }
  return journal_->Get(path, kMeant).value_or("");
}

bool RunJournal::Begun(const std::string& source, const std::vector<std::string>& next, const Foreseen& foreseen) {
  if (!journal_) return true;
  before_ = context_.host.files.Stat(source);
  if (intended_.contains(source)) return true;
  intended_.clear();
  std::size_t names = Intend(source, foreseen(source));
  if (names == 0) return true;
  for (const std::string& path : next) {
    if (names >= kIntendedAtOnce) break;
    // Results of an earlier part of the job are not handled again.
    if (!Stands(path) && MadeOf(path).empty()) names += Intend(path, foreseen(path));
  }
  return journal_->Commit();
}

bool RunJournal::IsMeant(const std::string& output) const {
  return !journal_->Get(output, kMeant).value_or("").empty();
}

// Returns the number of names checked. An existing file that no run has made belongs to the user and is not recorded.
std::size_t RunJournal::Intend(const std::string& source, const std::vector<std::string>& outputs) {
  const host::Files& files = context_.host.files;
  const auto before = files.Stat(source);
  if (!before || outputs.empty()) return 0;
  Intent& intent = intended_[source];
  for (const std::string& output : outputs) {
    const auto there = files.Stat(output);
    // The source itself, even if it cannot be read now: as a name that is meant for a result it would never be cut.
    if (output == source || (there && SameFile(*there, *before))) {
      intent.inPlace = true;
      std::ostringstream text;
      text << StampOf(*before);
      journal_->Set(source, kBegun, text.str());
      continue;
    }
    const std::string maker = there ? MadeOf(output) : std::string();
    if (there && maker.empty()) continue;
    if (!there) intent.fresh.push_back(output);
    if (maker == source) intent.staleOutputs.push_back(output);
    if (!IsMeant(output)) journal_->Set(output, kMeant, source);
  }
  // The done record is no longer valid.
  if (journal_->Get(source, kDone)) journal_->Set(source, kDone, "");
  return outputs.size();
}

std::vector<std::string> RunJournal::StaleOutputs(const std::string& source) const {
  const auto intent = intended_.find(source);
  return intent == intended_.end() ? std::vector<std::string>() : intent->second.staleOutputs;
}

// Forgets the intent of a source that got no output.
void RunJournal::Drop(const std::string& source, const Intent& intent) {
  if (intent.inPlace) journal_->Set(source, kBegun, "");
  for (const std::string& output : intent.fresh) {
    if (context_.host.files.Stat(output)) continue;
    journal_->Set(output, kMeant, "");
    if (!BesideOf(output).empty()) journal_->Set(output, kBeside, "");
  }
}

std::string RunJournal::BesideOf(const std::string& output) const {
  return journal_ ? journal_->Get(output, kBeside).value_or("") : std::string();
}

void RunJournal::NoteBeside(const std::string& source, const std::string& output) {
  if (!journal_) return;
  intended_[source].fresh.push_back(output);
  if (BesideOf(output) == source) return;
  journal_->Set(output, kMeant, source);
  journal_->Set(output, kBeside, source);
  // If it cannot be written, a resumed run gives its output another name.
  static_cast<void>(journal_->Commit());
}

void RunJournal::Ended(const std::string& source, const std::vector<FileResult>& results) {
  if (!journal_) return;
  const auto intent = intended_.extract(source);
  Made made{source, before_, {}, before_.has_value()};
  for (const FileResult& result : results) {
    if (result.endedRun) NoteEnding(result);
    if (result.result == Result::Written) {
      made.written = true;
      made.outputs.push_back(result.output);
    } else {
      made.complete = false;
    }
    made.outputs.insert(made.outputs.end(), result.more.begin(), result.more.end());
  }
  if (!made.complete && intent) Drop(source, intent.mapped());
  if (!made.outputs.empty()) made_.push_back(std::move(made));
}

void RunJournal::Commit(const RunLedger& ledger) {
  if (!journal_) return;
  const std::vector<Made> made = std::exchange(made_, {});
  const bool sameJob = made.empty() || JobText() == job_;
  for (const Made& one : made) {
    const auto stands = [&](const std::string& output) { return ledger.WroteFrom(output, one.source); };
    if (sameJob && one.complete && std::all_of(one.outputs.begin(), one.outputs.end(), stands)) {
      WriteDown(one, ledger);
    } else {
      WriteOrigins(one, ledger);
    }
  }
  // Without these records the files are merely handled again: of an overwritten source, Begun has recorded enough.
  static_cast<void>(journal_->Commit());
}

// The ledger forgets these outputs. Their origins are kept, so that it never discards them as stale outputs of another
// source.
void RunJournal::WriteOrigins(const Made& made, const RunLedger& ledger) {
  for (const std::string& output : made.outputs) {
    if (output == made.source || !ledger.WroteFrom(output, made.source)) continue;
    if (const auto stamp = ledger.StampOfOutput(output)) WriteOrigin(made, output, *stamp);
  }
}

void RunJournal::WriteOrigin(const Made& made, const std::string& output, const FileStamp& stamp) {
  std::ostringstream text;
  text << stamp;
  journal_->Set(output, kFrom, made.source);
  journal_->Set(output, kStamp, text.str());
  if (IsPartial(output) == made.written) journal_->Set(output, kPartial, made.written ? "" : made.source);
}

bool RunJournal::IsPartial(const std::string& output) const {
  return journal_ && !journal_->Get(output, kPartial).value_or("").empty();
}

// The stamps are those of the moment when the outputs were written: one that was changed since does not stand.
void RunJournal::WriteDown(const Made& made, const RunLedger& ledger) {
  Done done{StampOf(*made.before), {}};
  for (const std::string& output : made.outputs) {
    const auto stamp = ledger.StampOfOutput(output);
    if (!stamp || !context_.host.files.Stat(output)) return;
    done.outputs.emplace_back(*stamp, output);
    if (output == made.source) continue;
    WriteOrigin(made, output, *stamp);
    if (IsMeant(output)) journal_->Set(output, kMeant, "");
  }
  journal_->Set(made.source, kDone, TextOf(done));
}

std::string RunJournal::SourceOf(const std::string& output) {
  return journal_ ? journal_->Get(output, kFrom).value_or("") : std::string();
}

std::optional<FileStamp> RunJournal::StampOfOutput(const std::string& output) {
  return journal_ ? StampIn(output, kStamp) : std::nullopt;
}

void RunJournal::End(const RunLedger& ledger, bool complete) {
  if (!journal_) return;
  for (const auto& [source, intent] : intended_) Drop(source, intent);
  Commit(ledger);
  if (complete) journal_->Remove();
  journal_.reset();
}

}  // namespace quillon::job
