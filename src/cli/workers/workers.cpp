// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
//
// How workers work
//
// The parent starts --jobs processes of this same program with its own arguments, except that each gets --json and a
// --shard of its own. A shard is chosen by a hash of the relative path, so the processes agree on who handles a file
// without talking to each other. Each worker has its own program folder, journal and helpers; they share nothing but
// the output folder.
//
// A worker writes JSON lines to stdout: the events of --json, and lines for the parent alone (worker_lines.h), such as
// the source that it is about to handle. The parent is one thread that polls all pipes. It passes events on, counts
// results, and records every source and output in a scratch file (FileRecords), which also shows if two workers wrote
// the same output.
//
// A worker that is ended by a signal before it has sent its end event has died. Its current file is reported as left
// without output, because it may be what killed the worker. The parent writes a list of all sources that are handled
// and starts a replacement with the same shard, which leaves these sources out. A replacement does not prefetch and
// names every source before it handles it, so that the next death is attributed to one file. After a few deaths in a
// row without a handled file the parent gives the shard up. Without a complete list there is no replacement at all,
// because it would cut overwritten sources again. A worker that exits by itself is never replaced.
//
// A worker cannot know whether another one writes the output that it could not make, or whether the whole job is done.
// So workers neither discard stale outputs nor remove their journals; they report both, and the parent does it at the
// end, if all workers came to theirs.
#include "cli/workers/workers.h"

#include <poll.h>

#include <algorithm>
#include <csignal>
#include <cstdio>
#include <utility>

#include "base/path_text.h"
#include "base/utf8.h"
#include "cli/options.h"
#include "cli/workers/worker_lines.h"
#include "host/files/file_stamp.h"

namespace quillon::cli {
namespace {

constexpr int kWaitMilliseconds = 100;
constexpr double kShowEvery = 0.1;  // seconds
// So many processes of one shard may die in a row without having handled a file.
constexpr int kMostDeathsWithoutProgress = 3;

const char* const kWritten = ResultName(job::Result::Written);
const char* const kNone = ResultName(job::Result::None);

bool AcceptsValue(const std::string& option) {
  const auto& options = Options();
  return std::any_of(options.begin(), options.end(),
                     [&](const Option& one) { return option == one.name && *one.argument != '\0'; });
}

}  // namespace

// One shard and the process that handles it now. A process that dies is replaced, the member stays.
struct Workers::Member {
  std::size_t number = 0;  // from 0
  job::Shard shard;
  std::unique_ptr<Worker> worker;
  std::size_t handled = 0;        // sources that its processes have reported
  std::string currentFile;        // the source that the process has started, "" if none
  bool finished = false;          // the process has sent its end event
  bool ended = false;             // the process has ended and is not replaced
  int exit = 0;                   // its exit code, once ended
  Progress progress;              // of the process that runs now
  int deathsWithoutProgress = 0;  // processes in a row that died and handled no file
  std::size_t handledBefore = 0;  // of `handled`, what earlier processes did
};

Workers::Workers(const Plan& plan, std::vector<std::string> arguments, std::string folder, host::Files& files,
                 host::Journals& journals, host::Clock& clock, Reporter& reporter, Stopping stopping,
                 std::string program)
    : plan_(plan),
      arguments_(std::move(arguments)),
      folder_(std::move(folder)),
      files_(files),
      journals_(journals),
      clock_(clock),
      reporter_(reporter),
      stopping_(std::move(stopping)),
      program_(std::move(program)),
      records_(base::JoinPath(folder_, "records")) {}

Workers::~Workers() = default;

Exit Workers::Run() {
  startedAt_ = clock_.Seconds();
  if (!records_.Complete()) return GiveUp();
  for (std::size_t i = 0; i < plan_.jobs; ++i) {
    auto member = std::make_unique<Member>();
    member->number = i;
    member->shard = plan_.shard.Part(i, plan_.jobs);
    Start(*member, Recovering::No);
    members_.push_back(std::move(member));
  }
  const auto running = [](const auto& member) { return !member->ended; };
  while (std::any_of(members_.begin(), members_.end(), running)) {
    if (stopping_() && !std::exchange(stopRequested_, true)) Signal();
    PollWorkers();
    ShowProgress();
  }
  sums_.seconds = clock_.Seconds() - startedAt_;
  const Exit exit = FinalExit();
  if (exit == Exit::AllWritten || exit == Exit::SomeWithout) {
    DiscardStaleOutputs();
    RemoveJournals();
  }
  sums_.stopped = exit == Exit::Stopped;
  reporter_.Report(EndEvent(sums_));
  reporter_.Finish(sums_);
  return exit;
}

// Ends a run that cannot record its files, before any worker is started.
Exit Workers::GiveUp() {
  std::fprintf(stderr, "quillon-batch: 无法在临时文件夹中记录处理进度：%s\n", base::DisplayText(folder_).c_str());
  reporter_.Report(EndEvent(sums_));
  reporter_.Finish(sums_);
  return Exit::SomeWithout;
}

void Workers::Start(Member& member, Recovering recovering) {
  const std::vector<std::string> arguments = WorkerArguments(arguments_, member.shard);
  const auto out = [this, &member](const std::string& line) { HandleLine(member, line); };
  const auto err = [this](const std::string& line) {
    if (printedLines_.insert(line).second) std::fprintf(stderr, "%s\n", line.c_str());
  };
  member.handledBefore = member.handled;
  member.progress = {};
  member.finished = false;
  const WorkerContext context{DoneListPath(member), recovering, member.shard.among};
  const std::lock_guard lock(mutex_);
  member.worker = std::make_unique<Worker>(program_, arguments, context, out, err);
}

std::string Workers::DoneListPath(const Member& member) const {
  return base::JoinPath(folder_, "done-" + std::to_string(member.number));
}

// Saves all sources that any worker has handled. Those of other shards do no harm: the worker leaves them out anyway.
// Returns false if a record is missing or the list cannot be saved.
bool Workers::SaveDoneList(const Member& member) {
  const auto fill = [this](host::Draft& draft) {
    host::Status status;
    records_.EachSource([&](const std::string& source, job::Wrote wrote) {
      const std::string entry = (wrote == job::Wrote::Yes ? kWroteMark : kOtherMark) + source;
      if (status) status = draft.Write(entry.c_str(), entry.size() + 1);
    });
    return status;
  };
  return records_.Complete() && files_.Save(DoneListPath(member), fill);
}

void Workers::Signal() {
  const std::lock_guard lock(mutex_);
  for (const auto& member : members_) {
    if (member->worker && member->worker->Id() > 0) kill(member->worker->Id(), SIGTERM);
  }
}

void Workers::PollWorkers() {
  std::vector<pollfd> waits;
  std::vector<Member*> owners;
  for (const auto& member : members_) {
    if (member->ended) continue;
    for (const int handle : {member->worker->Out(), member->worker->Err()}) {
      if (handle < 0) continue;
      waits.push_back({handle, POLLIN, 0});
      owners.push_back(member.get());
    }
  }
  if (!waits.empty()) poll(waits.data(), waits.size(), kWaitMilliseconds);
  for (std::size_t i = 0; i < waits.size(); ++i) {
    if (waits[i].revents != 0) owners[i]->worker->Read(waits[i].fd);
  }
  for (const auto& member : members_) {
    if (!member->ended && !member->worker->Open()) HandleExit(*member);
  }
}

void Workers::HandleLine(Member& member, const std::string& text) {
  const WorkerLine line = ReadWorkerLine(text);
  if (line.started) member.currentFile = *line.started;
  if (line.staleOutput) AddStaleOutput(*line.staleOutput);
  if (line.journal) {
    openedJournals_.insert(*line.journal);
    doneJournals_.erase(*line.journal);
  }
  if (line.journalDone) doneJournals_.insert(*line.journalDone);
  if (line.progress) member.progress = *line.progress;
  if (line.event) HandleEvent(member, *line.event);
}

void Workers::HandleEvent(Member& member, const Event& event) {
  switch (event.kind) {
    case EventKind::File:
      HandleFileEvent(member, event);
      break;
    case EventKind::End:
      member.finished = true;
      break;
    case EventKind::Title:
      break;
    case EventKind::Box:
      reporter_.Report(event);
      break;
    default:
      if (member.number == 0) reporter_.Report(event);
  }
}

void Workers::HandleFileEvent(Member& member, const Event& event) {
  if (event.Find("lost")) return HandleLostEvent(event);
  const std::string source = event.Text("source");
  if (source == member.currentFile) member.currentFile.clear();
  const job::Wrote wrote = event.Text("output").empty() ? job::Wrote::No : job::Wrote::Yes;
  if (records_.NoteHandled(source, wrote)) ++member.handled;
  RecordOutputs(source, event);
  Count(event.Text("result"), 1);
  reporter_.Report(event);
}

// An output that was reported as written was lost afterwards. If another worker has written it meanwhile, the loss of
// the first one was reported then, and this event is dropped.
void Workers::HandleLostEvent(const Event& event) {
  const std::string output = event.Text("lost");
  if (records_.SourceOf(output) != event.Text("source")) return;
  records_.NoteOutput(output, "");
  Count(kWritten, -1);
  Count(kNone, 1);
  reporter_.Report(event);
}

// A written output belongs to its source; if another source had written it before, that one loses it. Further outputs
// ("more") and outputs of skipped files are recorded without a source: they only must not count as stale.
void Workers::RecordOutputs(const std::string& source, const Event& event) {
  const std::string output = event.Text("output");
  if (event.Text("result") == kWritten) {
    const std::string other = records_.SourceOf(output).value_or("");
    if (!other.empty() && other != source) {
      Count(kWritten, -1);
      ReportLost(other, "输出文件与 " + base::DisplayText(source) + " 的同名，已被后者覆盖");
    }
    records_.NoteOutput(output, source);
  } else if (!output.empty() && !records_.SourceOf(output)) {
    records_.NoteOutput(output, "");
  }
  if (const auto* more = std::get_if<std::vector<std::string>>(event.Find("more"))) {
    for (const std::string& one : *more) records_.NoteOutput(one, "");
  }
}

void Workers::AddStaleOutput(const std::string& path) {
  if (const auto facts = files_.Stat(path)) staleOutputs_.push_back({path, *facts});
}

void Workers::ReportLost(const std::string& source, const std::string& why) {
  Count(kNone, 1);
  reporter_.Report(FileEvent({0, source, "", job::Result::None, why}));
}

void Workers::Count(const std::string& result, int step) {
  std::size_t& sum = result == kWritten ? sums_.written : result == kNone ? sums_.none : sums_.skipped;
  sum += static_cast<std::size_t>(step);
}

// Called when both streams of a process have ended. Decides whether the process is replaced.
void Workers::HandleExit(Member& member) {
  const WorkerEnd end = member.worker->Wait();
  someWorkerDied_ = someWorkerDied_ || !member.finished;
  member.ended = member.finished || end.exit >= 0;
  // A process that was killed after its end event has reported all its files, so that the sums decide.
  member.exit = member.finished && end.exit < 0 ? static_cast<int>(Exit::AllWritten) : end.exit;
  // If one worker was stopped, all are stopped.
  if (end.exit == static_cast<int>(Exit::Stopped) && !std::exchange(stopRequested_, true)) Signal();
  if (member.ended) return;
  const std::string how = end.signal > 0 ? "（信号 " + std::to_string(end.signal) + "）" : "";
  const std::string source = std::exchange(member.currentFile, {});
  if (!source.empty()) {
    if (records_.NoteHandled(source, job::Wrote::No)) ++member.handled;
    ReportLost(source, "处理进程意外结束" + how + "，这个文件可能没有处理完");
  }
  member.exit = static_cast<int>(Exit::SomeWithout);
  const bool progressed = member.handled > member.handledBefore;
  member.deathsWithoutProgress = progressed ? 0 : member.deathsWithoutProgress + 1;
  // A replacement that does not know what is done would cut overwritten sources again.
  member.ended = Ending() || member.deathsWithoutProgress >= kMostDeathsWithoutProgress || !SaveDoneList(member);
  if (!member.ended) {
    Start(member, Recovering::Yes);
  } else if (!Ending()) {
    ReportUnfinished(member, how);
  }
}

// Reports the named files of a shard that is given up. Of a named folder only the folder is reported: the parent does
// not list it, so it does not know which of its files belong to the shard.
void Workers::ReportUnfinished(Member& member, const std::string& how) {
  const std::string what = "第 " + std::to_string(member.number + 1) + " 个处理进程意外结束" + how;
  std::fprintf(stderr, "quillon-batch: %s，它的文件没有处理完\n", what.c_str());
  for (const Step& step : plan_.steps) {
    for (const std::string& path : step.files) {
      const bool folder = files_.IsFolder(path);
      if (!folder && (!member.shard.OwnsNamed(path) || !records_.NoteHandled(path, job::Wrote::No))) continue;
      ReportLost(path, what + (folder ? "，其中由它负责的文件没有处理完" : "，这个文件没有处理"));
    }
  }
}

void Workers::ShowProgress() {
  const double now = clock_.Seconds();
  if (now - lastShown_ < kShowEvery) return;
  lastShown_ = now;
  Progress all;
  all.running = true;
  all.seconds = now - startedAt_;
  bool known = true;
  for (const auto& member : members_) {
    all.done += member->handled;
    all.planned += member->handledBefore + member->progress.planned;
    known = known && (member->ended || member->progress.planned > 0);
  }
  if (!known) all.planned = 0;
  reporter_.Show(all);
}

// A file that was changed since it was reported is not discarded: somebody else has written it.
void Workers::DiscardStaleOutputs() {
  if (staleOutputs_.empty() || someWorkerDied_ || !plan_.shard.Whole() || !records_.Complete()) return;
  for (const StaleOutput& stale : staleOutputs_) {
    const auto now = files_.Stat(stale.path);
    if (!now || !host::Unchanged(*now, stale.facts)) continue;
    const bool ours = records_.SourceOf(stale.path) || records_.Handled(stale.path);
    if (!ours) static_cast<void>(files_.Discard(stale.path));
  }
  static_cast<void>(files_.Flush());
}

// If one worker has not done its part, the journals of all must stay: in the continued run the others would find none
// and do everything again.
void Workers::RemoveJournals() {
  const bool all = std::all_of(members_.begin(), members_.end(), [](const auto& member) { return member->finished; });
  if (!all || doneJournals_ != openedJournals_) return;
  for (const host::JobPart& part : doneJournals_) {
    if (const auto journal = journals_.Open(part)) journal->Remove();
  }
}

Exit Workers::FinalExit() const {
  bool some = sums_.none > 0;
  bool stopped = stopping_();
  for (const auto& member : members_) {
    if (member->exit == static_cast<int>(Exit::WrongArguments)) return Exit::WrongArguments;
    stopped = stopped || member->exit == static_cast<int>(Exit::Stopped);
    some = some || member->exit != 0;
  }
  if (stopped) return Exit::Stopped;
  return some ? Exit::SomeWithout : Exit::AllWritten;
}

std::vector<std::string> WorkerArguments(const std::vector<std::string>& arguments, const job::Shard& shard) {
  std::vector<std::string> own{"--json",
                               "--shard=" + std::to_string(shard.index + 1) + "/" + std::to_string(shard.count)};
  for (std::size_t i = 0; i < arguments.size(); ++i) {
    const std::string& argument = arguments[i];
    if (argument == "--") {
      own.insert(own.end(), arguments.begin() + static_cast<std::ptrdiff_t>(i), arguments.end());
      break;
    }
    // The value of an option may look like an option itself, so it is copied or dropped together with its option.
    const bool dropped = argument == "--jobs" || argument == "--shard";
    const bool valueFollows = AcceptsValue(argument) && i + 1 < arguments.size();
    if (argument == "--json" || argument.starts_with("--jobs=") || argument.starts_with("--shard=")) continue;
    if (!dropped) own.push_back(argument);
    if (valueFollows && !dropped) own.push_back(arguments[i + 1]);
    if (valueFollows) ++i;
  }
  return own;
}

}  // namespace quillon::cli
