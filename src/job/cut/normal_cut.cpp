// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "job/cut/normal_cut.h"

#include "job/cut/cut_file.h"
#include "job/cut/cut_prefetch.h"
#include "job/cut/large_normal_cut.h"
#include "job/program.h"
#include "job/run/folder_run.h"
#include "job/run/run_guard.h"

namespace quillon::job {
NormalCut::NormalCut(Program& program) : program_(program) {}

void NormalCut::Run() {
  const RunGuard guard(program_.context);
  if (!guard) return;
  if (!ResourcesThere() || !InputThere() || !OutputThere()) return;
  Form1& form = program_.form1;
  EndHelpers();
  program_.flags.BackWorkerStarted = false;
  const bool withArray = form.ChCutAndArray.On();
  PrepareCanvas(withArray);
  form.ChBack.Set(false);
  if (withArray && !PrepareSheets()) return;

  const bool large = program_.flags.LargeCapacityMode;
  CutRun run(program_, large ? 0 : program_.files.RowCount());
  run.withArray = withArray;
  run.pdf = Selected<OutType>(form.CmbOutType) == OutType::Pdf;
  if (run.pdf) Select(form.CmbOutType, OutType::Jpg);
  program_.SaveFolders();
  const std::vector<std::string> hidden = HideWindows();

  const bool omits = ReadCutSettings(program_).omitFolders;
  bool ran = true;
  if (large) {
    ran = RunFolder(run, omits);
  } else {
    RunList(run, omits);
  }
  ShowWindows(hidden);
  if (program_.manualFrame) program_.manualFrame->Rest();
  if (ran && program_.observer) program_.observer->RunEnded(run.ledger.Totals());
}

void NormalCut::RunList(CutRun& run, bool omits) {
  RunFrame frame(program_.context, WindowUse::Disabled);
  run.omitted.Clear();
  if (omits) run.omitted.Read();
  if (program_.observer) program_.observer->RunStarted(run.ledger.Totals().planned);
  const double start = program_.host.clock.Seconds();
  CutRows(run);
  run.ledger.Flush();
  run.ledger.NoteEnd(program_.host.clock.Seconds() - start, program_.flags.StopRequested);
  ReportEnd(run);
  EndHelpers();
  frame.End();
  if (omits) WriteOmittedFolders(run);
}

bool NormalCut::RunFolder(CutRun& run, bool omits) {
  LargeNormalCut driver(run);
  FolderRun folder(program_.context, run.ledger, driver);
  if (!folder.Begin()) return false;
  run.omitted.Clear();
  if (omits) run.omitted.Read();
  folder.Walk();
  if (omits) WriteOmittedFolders(run);
  EndHelpers();
  return true;
}

void NormalCut::CutRows(CutRun& run) {
  CutPrefetch forecast(run);
  const std::size_t total = program_.files.RowCount();
  for (std::size_t row = 1; row <= total; ++row) {
    if (!program_.flags.StopRequested) program_.host.pump.Turn();
    const std::string path = program_.files.Row(row - 1).Path();
    host::Status answered;
    if (!program_.flags.StopRequested) answered = program_.disks.AskForCut(path);
    if (program_.flags.StopRequested) {
      run.ledger.Add({row, path, "", Result::Skipped, "已停止，未处理"});
      continue;
    }
    if (!answered) {
      run.ledger.Add({row, path, "", Result::None, answered.Why()});
      continue;
    }
    program_.form1.ShowStatus("  正在处理..." + std::to_string(row) + "/" + std::to_string(total));
    program_.form1.MSF.Select(row);
    forecast.Prefetch(row);
    if (program_.observer) program_.observer->FileBegun(path);
    run.ledger.Add(CutOneFile(run, row, path));
  }
}

}  // namespace quillon::job
