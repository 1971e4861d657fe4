// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "job/run/list_run.h"

#include <algorithm>
#include <optional>
#include <set>
#include <utility>

#include "base/utf8.h"
#include "job/list/disk_monitor.h"
#include "job/run/folder_run.h"
#include "job/run/run_guard.h"

namespace quillon::job {
namespace {

constexpr const char* kBeyondLink = "在指向文件夹的链接里：覆盖原图时不处理，以免改动别处的图片";

void ShowEnd(const RunContext& context, const RunEnd& end) {
  if (end.text.empty() || context.flags.CloseRequested) return;
  const bool asks = end.then == RunEnd::Then::OfferFolder;
  const host::Reply reply = context.Ask(end.text, asks ? host::kYesNoQuestion : 0);
  if (asks && reply == host::Reply::Yes) context.host.shell.OpenFolder(end.folder);
  if (end.then == RunEnd::Then::RevealFolder) context.host.shell.Reveal(end.folder);
}

// Asks for what the driver needs, each once. Returns false if something is still missing. The user may change options
// while a question is open, so the needs are read again after each.
bool EnsureNeeds(const RunContext& context, const RunDriver& driver) {
  std::set<Need> met;
  while (true) {
    const std::vector<Need> needs = driver.Needs().ensured;
    const auto next = std::find_if(needs.begin(), needs.end(), [&](Need need) { return !met.contains(need); });
    if (next == needs.end()) return true;
    if (!context.window.Ensure(*next)) return false;
    met.insert(*next);
  }
}

// Returns false if the user cancels the run.
bool RunFolder(const RunContext& context, RunLedger& ledger, RunJournal& journal, RunDriver& driver) {
  FolderRun folder(context, ledger, journal, driver);
  if (!folder.Begin()) return false;
  driver.Start();
  folder.Walk();
  return true;
}

// Performs a prepared run and restores the windows. Returns what is left to show; nothing if the user cancels the run.
std::optional<RunEnd> RunInFrame(const RunContext& context, RunDriver& driver, const RunNeeds& needs, RunSource source,
                                 RunLedger& ledger, RunJournal& journal) {
  const WindowsAside aside(context, needs.hidden, needs.disabled);
  const bool list = source == RunSource::List;
  std::optional<RunFrame> frame;
  if (list || needs.inFolderRun == WindowUse::Disabled) frame.emplace(context, WindowUse::Disabled);
  driver.UseJournal(journal);
  driver.Begin(ledger);
  if (list) {
    driver.Start();
    ListRun(context, ledger, journal, driver, needs).Run();
  } else if (!RunFolder(context, ledger, journal, driver)) {
    return std::nullopt;
  }
  RunEnd end = driver.End(source);
  if (end.shown == RunEnd::Shown::InRun) ShowEnd(context, std::exchange(end, {}));
  driver.Leave();
  frame.reset();
  driver.Finish();
  return end;
}

}  // namespace

ListRun::ListRun(const RunContext& context, RunLedger& ledger, RunJournal& journal, RunDriver& driver,
                 const RunNeeds& needs)
    : context_(context), ledger_(ledger), journal_(journal), driver_(driver), needs_(needs), results_(context) {}

void ListRun::Run() {
  context_.files.ForgetResults();
  if (context_.observer) context_.observer->RunStarted(ledger_.Totals().planned);
  const double start = context_.host.clock.Seconds();
  if (needs_.decisions && !journal_.BeginList()) context_.flags.StopRequested = true;
  const std::size_t rows = context_.files.RowCount();
  for (std::size_t row = 1; row <= rows; ++row) HandleRow(row);
  driver_.EndPrefetch();
  ledger_.Flush();
  journal_.End(ledger_, !context_.Stopped());
  ledger_.NoteEnd(context_.host.clock.Seconds() - start, context_.Stopped());
}

void ListRun::HandleRow(std::size_t row) {
  if (!context_.Stopped()) context_.host.pump.Turn();
  const RunFile file{row, context_.files.Row(row - 1).Path(), row};
  host::Status answered;
  if (!context_.Stopped()) answered = context_.disks.AskForCut(file.path);
  if (context_.Stopped()) {
    ledger_.Add(
        {.row = file.row, .source = file.path, .result = Result::Skipped, .why = "已停止，未处理", .reached = false});
    return;
  }
  if (!answered) {
    ReportWithout(file, Result::None, answered.Why());
    return;
  }
  if (const std::string why = WhyNotReplaced(row); !why.empty()) {
    ReportWithout(file, Result::Skipped, why);
    return;
  }
  if (!driver_.ShowsProgress()) {
    const std::string rows = std::to_string(context_.files.RowCount());
    context_.window.ShowStatus("  正在处理..." + std::to_string(row) + "/" + rows);
  }
  context_.window.SelectRow(row);
  driver_.PrefetchFrom(row);
  if (context_.observer) context_.observer->FileBegun(file.path);
  const bool overwrites = driver_.BesideSources();
  const auto before = overwrites ? host::StampOf(context_.host.files, file.path) : std::nullopt;
  driver_.Cut(file, [&](const FileResult& result) {
    if (overwrites && result.result == Result::Written) NoteReplaced(file, before);
    ledger_.Add(result);
    if (results_.Kept()) results_.Note(result);
  });
}

std::string ListRun::WhyNotReplaced(std::size_t row) {
  if (!driver_.BesideSources()) return {};
  const FileRow& file = context_.files.Row(row - 1);
  if (file.reached == Reached::ByFolderLink) return kBeyondLink;
  const auto now = host::StampOf(context_.host.files, file.Path());
  const auto first = now ? replaced_.find({now->device, now->inode}) : replaced_.end();
  if (first == replaced_.end() || !SameContent(first->second.stamp, *now)) return {};
  const std::string name = context_.files.Row(first->second.row - 1).Path();
  // The driver detects a name that is listed twice.
  if (name == file.Path()) return {};
  return "和“" + base::DisplayText(name) + "”是同一个文件，已经处理过，不再裁一次";
}

void ListRun::NoteReplaced(const RunFile& file, const std::optional<host::FileStamp>& before) {
  for (const auto& stamp : {before, host::StampOf(context_.host.files, file.path)}) {
    if (stamp) replaced_[{stamp->device, stamp->inode}] = {*stamp, file.row};
  }
}

void ListRun::ReportWithout(const RunFile& file, Result result, const std::string& why) {
  ledger_.Add({file.row, file.path, "", result, why});
}

void StartRun(const RunContext& context, RunDriver& driver) {
  const RunGuard guard(context);
  if (!guard) return;
  if (!EnsureNeeds(context, driver) || !driver.Prepare()) return;

  const RunNeeds needs = driver.Needs();
  const RunSource source = context.flags.LargeCapacityMode ? RunSource::Folder : RunSource::List;
  RunLedger ledger(context, source == RunSource::Folder ? 0 : context.files.RowCount());
  RunJournal journal(context, driver.Name(), driver.Windows());
  context.window.SaveFolders();
  const std::optional<RunEnd> end = RunInFrame(context, driver, needs, source, ledger, journal);
  context.window.SelectRow(context.files.RowCount() > 0 ? 1 : 0);
  driver.Release();
  if (!end) return;
  ShowEnd(context, *end);
  if (context.observer) context.observer->RunEnded(ledger.Totals());
}

}  // namespace quillon::job
