// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
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
// Processes in the place of one that may die in a row without having handled a file.
constexpr int kMostInVain = 3;

const char* const kWritten = ResultName(job::Result::Written);
const char* const kNone = ResultName(job::Result::None);

bool AcceptsValue(const std::string& option) {
  const auto& options = Options();
  return std::any_of(options.begin(), options.end(),
                     [&](const Option& one) { return option == one.name && *one.argument != '\0'; });
}

}  // namespace

struct Workers::Member {
  std::size_t number = 0;
  job::Shard shard;
  std::unique_ptr<Worker> worker;
  std::size_t handled = 0;  // sources that were told of
  std::string underWay;
  bool finished = false;  // its end event has come
  bool gone = false;
  int exit = 0;
  Progress progress;       // of the process that runs now
  int inVain = 0;          // processes in a row that handled no file
  std::size_t before = 0;  // files that earlier ones in its place have handled
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
  begun_ = clock_.Seconds();
  if (!records_.Complete()) return GiveUp();
  for (std::size_t i = 0; i < plan_.jobs; ++i) {
    auto member = std::make_unique<Member>();
    member->number = i;
    member->shard = plan_.shard.Part(i, plan_.jobs);
    Start(*member, Recovering::No);
    members_.push_back(std::move(member));
  }
  const auto running = [](const auto& member) { return !member->gone; };
  while (std::any_of(members_.begin(), members_.end(), running)) {
    if (stopping_() && !std::exchange(signalled_, true)) Signal();
    WaitForSome();
    ShowProgress();
  }
  sums_.seconds = clock_.Seconds() - begun_;
  const Exit exit = Sum();
  if (exit == Exit::AllWritten || exit == Exit::SomeWithout) {
    DropOlder();
    RemoveJournals();
  }
  sums_.stopped = exit == Exit::Stopped;
  reporter_.Tell(EndEvent(sums_));
  reporter_.Finish(sums_);
  return exit;
}

Exit Workers::GiveUp() {
  std::fprintf(stderr, "quillon-batch: 无法在临时文件夹中记录处理进度：%s\n", base::DisplayText(folder_).c_str());
  reporter_.Tell(EndEvent(sums_));
  reporter_.Finish(sums_);
  return Exit::SomeWithout;
}

void Workers::Start(Member& member, Recovering recovering) {
  const std::vector<std::string> arguments = WorkerArguments(arguments_, member.shard);
  const auto out = [this, &member](const std::string& line) { ReadLine(member, line); };
  const auto err = [this](const std::string& line) {
    if (said_.insert(line).second) std::fprintf(stderr, "%s\n", line.c_str());
  };
  member.before = member.handled;
  member.progress = {};
  member.finished = false;
  const std::lock_guard lock(mutex_);
  const WorkerPlace place{LeftOutPath(member), recovering, member.shard.among};
  member.worker = std::make_unique<Worker>(program_, arguments, place, out, err);
}

std::string Workers::LeftOutPath(const Member& member) const {
  return base::JoinPath(folder_, "done-" + std::to_string(member.number));
}

// What all have handled: the sources of others are none of its share anyway.
bool Workers::SaveLeftOut(const Member& member) {
  const auto fill = [this](host::Draft& draft) {
    host::Status status;
    records_.EachSource([&](const std::string& source, job::Wrote wrote) {
      const std::string entry = (wrote == job::Wrote::Yes ? kWroteMark : kOtherMark) + source;
      if (status) status = draft.Write(entry.c_str(), entry.size() + 1);
    });
    return status;
  };
  return records_.Complete() && files_.Save(LeftOutPath(member), fill);
}

void Workers::Signal() {
  const std::lock_guard lock(mutex_);
  for (const auto& member : members_) {
    if (member->worker && member->worker->Id() > 0) kill(member->worker->Id(), SIGTERM);
  }
}

void Workers::WaitForSome() {
  std::vector<pollfd> waits;
  std::vector<Member*> owners;
  for (const auto& member : members_) {
    if (member->gone) continue;
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
    if (!member->gone && !member->worker->Open()) ReadEnd(*member);
  }
}

void Workers::ReadLine(Member& member, const std::string& text) {
  const WorkerLine line = ReadWorkerLine(text);
  if (line.begun) member.underWay = *line.begun;
  if (line.older) ReadOlder(*line.older);
  if (line.journal) {
    partsTaken_.insert(*line.journal);
    partsDone_.erase(*line.journal);
  }
  if (line.journalDone) partsDone_.insert(*line.journalDone);
  if (line.progress) member.progress = *line.progress;
  if (line.event) ReadEvent(member, *line.event);
}

void Workers::ReadEvent(Member& member, const Event& event) {
  switch (event.kind) {
    case EventKind::File:
      ReadFileEvent(member, event);
      break;
    case EventKind::End:
      member.finished = true;
      break;
    case EventKind::Title:
      break;
    case EventKind::Box:
      reporter_.Tell(event);
      break;
    default:
      if (member.number == 0) reporter_.Tell(event);
  }
}

void Workers::ReadFileEvent(Member& member, const Event& event) {
  if (event.Find("lost")) return ReadLost(event);
  const std::string source = event.Text("source");
  if (source == member.underWay) member.underWay.clear();
  const job::Wrote wrote = event.Text("output").empty() ? job::Wrote::No : job::Wrote::Yes;
  if (records_.NoteHandled(source, wrote)) ++member.handled;
  ReadOutputs(source, event);
  Count(event.Text("result"), 1);
  reporter_.Tell(event);
}

// An output that was told of as written does not stand after all. Where another worker has taken it, that was told.
void Workers::ReadLost(const Event& event) {
  const std::string output = event.Text("lost");
  if (records_.SourceOf(output) != event.Text("source")) return;
  records_.NoteMade(output, "");
  Count(kWritten, -1);
  Count(kNone, 1);
  reporter_.Tell(event);
}

// A written output is that of its source alone; others are only known to be none of an earlier run.
void Workers::ReadOutputs(const std::string& source, const Event& event) {
  const std::string output = event.Text("output");
  if (event.Text("result") == kWritten) {
    const std::string other = records_.SourceOf(output).value_or("");
    if (!other.empty() && other != source) {
      Count(kWritten, -1);
      ReportLost(other, "输出文件与 " + base::DisplayText(source) + " 的同名，已被后者覆盖");
    }
    records_.NoteMade(output, source);
  } else if (!output.empty() && !records_.SourceOf(output)) {
    records_.NoteMade(output, "");
  }
  if (const auto* more = std::get_if<std::vector<std::string>>(event.Find("more"))) {
    for (const std::string& one : *more) records_.NoteMade(one, "");
  }
}

void Workers::ReadOlder(const std::string& path) {
  if (const auto facts = files_.Stat(path)) staleOutputs_.push_back({path, *facts});
}

void Workers::ReportLost(const std::string& source, const std::string& why) {
  Count(kNone, 1);
  reporter_.Tell(FileEvent({0, source, "", job::Result::None, why}));
}

void Workers::Count(const std::string& result, int step) {
  std::size_t& sum = result == kWritten ? sums_.written : result == kNone ? sums_.none : sums_.skipped;
  sum += static_cast<std::size_t>(step);
}

// A process that ends without its end event has died.
void Workers::ReadEnd(Member& member) {
  const WorkerEnd end = member.worker->Wait();
  someDied_ = someDied_ || !member.finished;
  member.gone = member.finished || end.exit >= 0;
  member.exit = end.exit;
  // What stops one stops the run.
  if (end.exit == static_cast<int>(Exit::Stopped) && !std::exchange(signalled_, true)) Signal();
  if (member.gone) return;
  const std::string how = end.signal > 0 ? "（信号 " + std::to_string(end.signal) + "）" : "";
  const std::string source = std::exchange(member.underWay, {});
  if (!source.empty()) {
    if (records_.NoteHandled(source, job::Wrote::No)) ++member.handled;
    ReportLost(source, "处理进程意外结束" + how + "，这个文件可能没有处理完");
  }
  member.exit = static_cast<int>(Exit::SomeWithout);
  const bool progressed = member.handled > member.before;
  member.inVain = progressed ? 0 : member.inVain + 1;
  // None may take its place that would not know what is done: it would cut overwritten sources again.
  member.gone = Ending() || member.inVain >= kMostInVain || !SaveLeftOut(member);
  if (!member.gone) {
    Start(member, Recovering::Yes);
  } else if (!Ending()) {
    ReportUnfinished(member, how);
  }
}

// What lies in a folder only a worker finds out.
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
  if (now - shown_ < kShowEvery) return;
  shown_ = now;
  Progress all;
  all.running = true;
  all.seconds = now - begun_;
  bool known = true;
  for (const auto& member : members_) {
    all.done += member->handled;
    all.planned += member->before + member->progress.planned;
    known = known && (member->gone || member->progress.planned > 0);
  }
  if (!known) all.planned = 0;
  reporter_.Show(all);
}

void Workers::DropOlder() {
  if (staleOutputs_.empty() || someDied_ || !plan_.shard.Whole() || !records_.Complete()) return;
  for (const Older& older : staleOutputs_) {
    const auto now = files_.Stat(older.path);
    if (!now || !host::Unchanged(*now, older.facts)) continue;
    const bool ours = records_.SourceOf(older.path) || records_.Handled(older.path);
    if (!ours) static_cast<void>(files_.Discard(older.path));
  }
  static_cast<void>(files_.Flush());
}

// One who broke off would find only its own when the run is continued, and the others would do everything again.
void Workers::RemoveJournals() {
  const bool all = std::all_of(members_.begin(), members_.end(), [](const auto& member) { return member->finished; });
  if (!all || partsDone_ != partsTaken_) return;
  for (const host::JobPart& part : partsDone_) {
    if (const auto journal = journals_.Open(part)) journal->Remove();
  }
}

Exit Workers::Sum() const {
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
