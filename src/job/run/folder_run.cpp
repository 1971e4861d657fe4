// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "job/run/folder_run.h"

#include <utility>

#include "base/path_text.h"
#include "job/list/file_intake.h"
#include "job/list/stoppable_frame.h"
#include "job/settings/cut_settings.h"

namespace quillon::job {
namespace {

// Between two checkpoints: what a broken run does again, and what a run holds in memory.
constexpr std::size_t kFilesPerCheckPoint = 500;
constexpr double kSecondsPerCheckPoint = 2;
// Far more than a walk measures ahead.
constexpr std::size_t kRememberedSizes = 1000;

// Keeps few sizes for as long as it lives: no file of a walk is measured a second time.
class FewSizes {
 public:
  explicit FewSizes(imaging::Services& images) : images_(images) { images_.RememberSizes(kRememberedSizes); }
  ~FewSizes() { images_.RememberSizes(imaging::kSizesRemembered); }
  FewSizes(const FewSizes&) = delete;
  FewSizes& operator=(const FewSizes&) = delete;

 private:
  imaging::Services& images_;
};

// The folder that path lies in; "" for the root.
std::string FolderOf(const std::string& path) { return path == "/" ? std::string() : base::SplitPath(path).folder; }

}  // namespace

FolderRun::FolderRun(Program& program, RunLedger& ledger, FileDriver& driver)
    : program_(program),
      ledger_(ledger),
      driver_(driver),
      journal_(program, driver.Name(), driver.Windows()),
      root_(Root()),
      rule_(Rule()) {
  ledger_.ReadSourcesFrom([this](const std::string& path) { return IsSource(path); });
}

FolderRun::~FolderRun() {
  ledger_.ReadSourcesFrom({});
  ledger_.RecallBy({});
}

bool FolderRun::Begin() {
  const bool resultsMeet = !driver_.BesideSources() && program_.form1.LOutDir.Value() == root_;
  if (resultsMeet && !program_.shard.Whole()) {
    program_.Ask(kSharedOutput);
    return false;
  }
  return journal_.Begin();
}

// Results are known again by their names: where they go to the input folder itself it is called as they are.
std::string FolderRun::Root() const {
  const Form1& form = program_.form1;
  const std::string in = form.LInDir.Value();
  const std::string out = form.LOutDir.Value();
  return !driver_.BesideSources() && program_.host.files.SameFile(in, out) ? out : in;
}

// The mode is that of the start, whatever the window shows later.
WalkRule FolderRun::Rule() const {
  const Form1& form = program_.form1;
  WalkRule rule;
  rule.subfolders = form.ChSubFold.On() ? Subfolders::Yes : Subfolders::No;
  rule.accepts = [filter = program_.Intake().Filter()](const std::string& name) {
    return FileIntake::FitsFilter(filter, name);
  };
  rule.shard = program_.shard;
  const std::string out = form.LOutDir.Value();
  if (!driver_.BesideSources() && out != root_ && program_.host.files.IsFolder(out)) rule.leftOut = out;
  rule.byFolder = ReadCutSettings(program_).omitFolders;
  return rule;
}

void FolderRun::Walk() {
  const StoppableFrame frame(program_);
  const FewSizes sizes(program_.images);
  program_.Intake().Clear();
  if (program_.observer) program_.observer->RunStarted(0);
  if (journal_.Kept()) ledger_.RecallBy([this](const std::string& output) { return journal_.SourceOf(output); });
  // The walk may come upon them late, or no more.
  if (rule_.byFolder) journal_.EachHandled([this](const std::string& source) { driver_.HandledBefore(source); });
  const double start = checked_ = program_.host.clock.Seconds();
  bool complete = false;
  {
    const FileCount count(program_.host.files, root_, rule_, program_.doneElsewhere);
    FileWalk walk(program_, rule_);
    const WalkEnd end = walk.Run({root_}, [&](const std::string& path) {
      HandleNext(walk, path);
      ReportCount(count);
      return !program_.flags.StopRequested;
    });
    complete = end == WalkEnd::Complete && walk.ReachedAll() && reachedAll_;
    program_.leftToOthers += walk.LeftToOthers();
  }
  ledger_.Flush();
  journal_.End(ledger_, complete);
  ledger_.NoteEnd(program_.host.clock.Seconds() - start, program_.flags.StopRequested);
  // The window was usable meanwhile.
  if (program_.form1.ChOver.On()) program_.Intake().Clear();
}

void FolderRun::HandleNext(const FileWalk& walk, const std::string& path) {
  const host::Status answered = program_.disks.AskForCut(path);
  if (program_.flags.StopRequested) return;
  program_.form1.ShowStatus("  已处理..." + std::to_string(++number_));
  if (program_.observer) program_.observer->FileBegun(path);
  if (!answered) {
    reachedAll_ = false;
    ledger_.Add({0, path, "", Result::None, answered.Why()});
  } else if (journal_.Stands(path)) {
    ReportStanding(path);
  } else if (IsResult(path)) {
    ledger_.Add({0, path, "", Result::Skipped, "是这项任务写出的结果，不再处理"});
  } else {
    Handle(walk, path);
  }
  const double now = program_.host.clock.Seconds();
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

bool FolderRun::IsResult(const std::string& path) {
  if (!rule_.leftOut.empty()) return false;
  return !ledger_.SourceOf(path).empty() || !journal_.MadeOf(path).empty();
}

// It is made anew, and where its place is taken nothing goes there.
void FolderRun::DiscardOlder(const std::string& source) {
  for (const std::string& output : journal_.Older(source)) {
    if (ledger_.SourceOf(output).empty()) static_cast<void>(program_.host.files.Discard(output));
  }
}

void FolderRun::Handle(const FileWalk& walk, const std::string& path) {
  if (const std::size_t reach = driver_.Lookahead(); reach > 0) {
    std::vector<std::string> next = walk.Upcoming(reach - 1);
    next.insert(next.begin(), path);
    driver_.Prefetch(next);
  }
  journal_.Begun(path, walk.Upcoming(RunJournal::kIntendedAtOnce), [this](const std::string& source) {
    return rule_.leftOut.empty() ? driver_.Outputs(source) : std::vector<std::string>();
  });
  DiscardOlder(path);
  std::vector<FileResult> results;
  driver_.Cut(path, number_, results);
  journal_.Ended(path, results);
  for (const FileResult& result : results) ledger_.Add(result);
}

// What stands on disk is written down, and need not be held in memory any more.
void FolderRun::CheckPoint() {
  ledger_.Flush();
  journal_.Commit(ledger_);
  ledger_.Forget();
  unchecked_ = 0;
  checked_ = program_.host.clock.Seconds();
}

void FolderRun::ReportCount(const FileCount& count) {
  if (countTold_ || !program_.observer) return;
  const auto planned = count.Result();
  if (!planned) return;
  countTold_ = true;
  program_.observer->RunPlanned(*planned);
}

bool FolderRun::IsSource(const std::string& path) const {
  if (!rule_.accepts(path.substr(path.rfind('/') + 1))) return false;
  const host::Files& files = program_.host.files;
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
