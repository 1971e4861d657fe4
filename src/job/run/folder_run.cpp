// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "job/run/folder_run.h"

#include <utility>

#include "base/path_text.h"
#include "imaging/services.h"
#include "job/list/disk_monitor.h"
#include "job/run/run_guard.h"

namespace quillon::job {
namespace {

// A resumed run repeats at most this much; a run holds at most this many results in memory.
constexpr std::size_t kFilesPerCheckPoint = 500;
constexpr double kSecondsPerCheckPoint = 2;
// Far more than a walk plans for measuring.
constexpr std::size_t kRememberedSizes = 1000;

constexpr const char* kUnrecorded = "无法写入这项任务的记录（磁盘可能已满），没有覆盖原图，已停止";

// While it exists, the image services remember few sizes, because a walk visits each file only once.
class FewSizes {
 public:
  explicit FewSizes(imaging::Services& images) : images_(images) { images_.RememberSizes(kRememberedSizes); }
  ~FewSizes() { images_.RememberSizes(imaging::kSizesRemembered); }
  FewSizes(const FewSizes&) = delete;
  FewSizes& operator=(const FewSizes&) = delete;

 private:
  imaging::Services& images_;
};

// Returns the folder of path; "" for the root.
std::string FolderOf(const std::string& path) { return path == "/" ? std::string() : base::SplitPath(path).folder; }

}  // namespace

FolderRun::FolderRun(const RunContext& context, RunLedger& ledger, RunJournal& journal, RunDriver& driver)
    : context_(context), ledger_(ledger), journal_(journal), driver_(driver), root_(Root()), rule_(Rule()) {
  ledger_.ReadSourcesFrom([this](const std::string& path) { return IsSource(path); });
}

FolderRun::~FolderRun() {
  ledger_.ReadSourcesFrom({});
  ledger_.RecallBy({});
  ledger_.RecordBesides({});
}

bool FolderRun::Begin() {
  const bool resultsMeet = !driver_.BesideSources() && context_.window.OutputFolder() == root_;
  if (resultsMeet && !context_.shard.Whole()) {
    context_.Ask(kSharedOutput);
    return false;
  }
  return journal_.BeginFolder();
}

// Results are recognised by path. If the output folder is the input folder, its name is used for both.
std::string FolderRun::Root() const {
  const std::string in = context_.window.InputFolder();
  const std::string out = context_.window.OutputFolder();
  return !driver_.BesideSources() && context_.host.files.SameFile(in, out) ? out : in;
}

// Read once at the start; later changes in the window do not count.
WalkRule FolderRun::Rule() const {
  WalkRule rule;
  rule.subfolders = context_.window.SubfolderChoice();
  if (context_.window.Overwrites()) rule.links = Links::Refused;
  rule.accepts = [filter = context_.window.Filter()](const std::string& name) { return FitsFilter(filter, name); };
  rule.shard = context_.shard;
  const std::string out = context_.window.OutputFolder();
  if (!driver_.BesideSources() && out != root_ && context_.host.files.IsFolder(out)) rule.leftOut = out;
  rule.byFolder = context_.window.OmitsFolders();
  return rule;
}

void FolderRun::Walk() {
  const RunFrame frame(context_, WindowUse::Usable);
  const FewSizes sizes(context_.images);
  context_.window.ClearList();
  if (context_.observer) context_.observer->RunStarted(0);
  if (journal_.Kept()) RecallFromJournal();
  // Handled sources are passed to the driver now, because the walk may find them late or never.
  if (rule_.byFolder) journal_.EachHandled([this](const std::string& source) { driver_.HandledBefore(source); });
  const double start = checked_ = context_.host.clock.Seconds();
  bool complete = false;
  {
    const FileCount count(context_.host.files, root_, rule_, context_.doneElsewhere);
    FileWalk walk(context_, rule_);
    const WalkEnd end = walk.Run({root_}, [&](const std::string& path) {
      HandleNext(walk, path);
      ReportCount(count);
      return !context_.Stopped();
    });
    complete = end == WalkEnd::Complete && walk.ReachedAll() && reachedAll_;
    context_.leftToOthers += walk.LeftToOthers();
  }
  driver_.EndPrefetch();
  ledger_.Flush();
  journal_.End(ledger_, complete);
  ledger_.NoteEnd(context_.host.clock.Seconds() - start, context_.Stopped());
  // The list may have been filled while the window was usable.
  if (context_.window.Overwrites()) context_.window.ClearList();
}

// Lets the ledger find in the journal what it does not keep in memory.
void FolderRun::RecallFromJournal() {
  ledger_.RecallBy([this](const std::string& output) { return OriginOf(output); });
  ledger_.RecordBesides(
      {.of = [this](const std::string& output) { return journal_.BesideOf(output); },
       .note = [this](const std::string& source, const std::string& output) { journal_.NoteBeside(source, output); }});
}

void FolderRun::HandleNext(const FileWalk& walk, const std::string& path) {
  const host::Status answered = context_.disks.AskForCut(path);
  if (context_.Stopped()) return;
  context_.window.ShowStatus("  已处理..." + std::to_string(++number_));
  if (context_.observer) context_.observer->FileBegun(path);
  if (!answered) {
    reachedAll_ = false;
    ledger_.Add({0, path, "", Result::None, answered.Why()});
  } else if (journal_.Stands(path)) {
    ReportStanding(path);
  } else if (IsResult(path)) {
    ledger_.Add({0, path, "", Result::Skipped, "是这项任务写出的结果，不再处理"});
  } else if (const auto why = journal_.WhyEnded(path)) {
    ledger_.Add({0, path, "", Result::None, "上次处理到这个文件就停了，这次跳过：" + *why});
  } else {
    Handle(walk, path);
  }
  const double now = context_.host.clock.Seconds();
  const bool due = ++unchecked_ >= kFilesPerCheckPoint || now - checked_ >= kSecondsPerCheckPoint;
  if (due && journal_.Kept()) CheckPoint();
}

void FolderRun::ReportStanding(const std::string& path) {
  driver_.HandledBefore(path);
  std::vector<std::string> outputs = journal_.OutputsOf(path);
  FileResult result{0, path, "", Result::Skipped, "上次已经处理好"};
  if (!outputs.empty()) {
    result.output = outputs.front();
    result.more.assign(outputs.begin() + 1, outputs.end());
  }
  ledger_.Add(result);
}

std::optional<RunLedger::Origin> FolderRun::OriginOf(const std::string& output) {
  std::string source = journal_.SourceOf(output);
  if (source.empty()) return std::nullopt;
  return RunLedger::Origin{
      .source = std::move(source), .counted = !journal_.IsPartial(output), .stamp = journal_.StampOfOutput(output)};
}

bool FolderRun::IsResult(const std::string& path) {
  if (!rule_.leftOut.empty()) return false;
  return !ledger_.SourceOf(path).empty() || !journal_.MadeOf(path).empty();
}

// The walk could find the outputs, or a file that a killed part has written would be taken for the user's and kept.
bool FolderRun::RecordsOutputs() const { return rule_.leftOut.empty() || ledger_.KeepsForeign(); }

// Discards outputs of an earlier part before they are made again, so that none remains if this fails. An output
// that this run has written stays.
void FolderRun::DiscardStaleOutputs(const std::string& source) {
  for (const std::string& output : journal_.StaleOutputs(source)) {
    if (ledger_.SourceOf(output).empty()) static_cast<void>(context_.host.files.Discard(output));
  }
}

void FolderRun::Handle(const FileWalk& walk, const std::string& path) {
  if (const std::size_t reach = driver_.Lookahead(); reach > 0) {
    std::vector<std::string> next = walk.Upcoming(reach - 1);
    next.insert(next.begin(), path);
    driver_.Prefetch(next);
  }
  const bool recorded =
      journal_.Begun(path, walk.Upcoming(RunJournal::kIntendedAtOnce), [this](const std::string& source) {
        return RecordsOutputs() ? driver_.Outputs(source) : std::vector<std::string>();
      });
  if (!recorded && context_.window.Overwrites()) {
    StopUnrecorded(path);
    return;
  }
  DiscardStaleOutputs(path);
  std::vector<FileResult> results;
  driver_.Cut({0, path, number_}, [&](FileResult result) { results.push_back(std::move(result)); });
  journal_.Ended(path, results);
  for (const FileResult& result : results) ledger_.Add(result);
}

// A run that is broken off later would cut the source again if it were replaced now.
void FolderRun::StopUnrecorded(const std::string& path) {
  ledger_.Add({0, path, "", Result::None, kUnrecorded});
  context_.flags.StopRequested = true;
  context_.Ask(kUnrecorded);
}

// Commits what is synced and drops it from memory.
void FolderRun::CheckPoint() {
  ledger_.Flush();
  journal_.Commit(ledger_);
  ledger_.Forget();
  unchecked_ = 0;
  checked_ = context_.host.clock.Seconds();
}

void FolderRun::ReportCount(const FileCount& count) {
  if (countReported_ || !context_.observer) return;
  const auto planned = count.Result();
  if (!planned) return;
  countReported_ = true;
  context_.observer->RunPlanned(*planned);
}

bool FolderRun::IsSource(const std::string& path) const {
  if (!rule_.accepts(path.substr(path.rfind('/') + 1))) return false;
  const host::Files& files = context_.host.files;
  std::string folder = FolderOf(path);
  const bool direct = files.SameFile(folder, root_);
  if (direct || rule_.subfolders == Subfolders::No) return direct;
  for (; !folder.empty(); folder = FolderOf(folder)) {
    if (!rule_.leftOut.empty() && files.SameFile(folder, rule_.leftOut)) return false;
    if (files.SameFile(folder, root_)) return true;
  }
  return false;
}

}  // namespace quillon::job
