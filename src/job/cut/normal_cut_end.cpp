// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "job/cut/cut_run.h"
#include "job/cut/normal_cut.h"
#include "job/program.h"
#include "tools/processes.h"

namespace quillon::job {
namespace {}  // namespace

void NormalCut::ReportEnd(const CutRun& run) {
  const std::string outFolder = program_.form1.LOutDir.Value();
  if (run.withArray) {
    program_.sheets->Finish();
    program_.Ask("处理完毕！");
    program_.host.shell.Reveal(outFolder);
    return;
  }
  const std::string done = "处理完毕！失败：" + std::to_string(run.failed);
  if (program_.form1.ChOver.On()) {
    program_.Ask(done);
  } else if (program_.Ask(done + "\r\n要打开输出目录吗？", host::kYesNoQuestion) == host::Reply::Yes) {
    program_.host.shell.OpenFolder(outFolder);
  }
}

void NormalCut::EndHelpers() {
  for (const char* name : {"QxImgTool.exe", "QxBackImg.exe"}) tools::KillProcessByName(program_.host, name);
}

void NormalCut::WriteOmittedFolders(CutRun& run) {
  const host::Status written = run.omitted.WriteBack();
  if (!written) program_.Ask("已处理文件夹的记录没有保存：" + written.Why());
}

void NormalCut::ShowWindows(const std::vector<std::string>& hidden) {
  for (const std::string& name : hidden) program_.windows.FindWindow(name)->Show();
  program_.fCutPre.ChHideShow.SetVisible(true);
  if (program_.files.RowCount() > 0) program_.form1.MSF.Select(1);
}

}  // namespace quillon::job
