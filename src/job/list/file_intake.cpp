// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "job/list/file_intake.h"

#include <algorithm>
#include <utility>

#include "base/path_text.h"
#include "base/utf8.h"
#include "host/files/absolute_path.h"
#include "job/list/file_intake_admission.h"
#include "job/list/run_guard.h"
#include "job/list/stoppable_frame.h"
#include "job/program.h"
#include "job/settings/cut_settings.h"

namespace quillon::job {
namespace {

constexpr const char* kAddingTitle = "  添加文件列表中...";
constexpr const char* kReadingTitle = "  文件自动读取中...已读取：";
constexpr const char* kListed = "文件列表添加完毕！";
constexpr const char* kDropped = "文件拖放添加完毕！";
constexpr const char* kClearQuestion = "确定清空已加载的文件列表？";
constexpr const char* kDropQuestion =
    "注意：拖放操作会同时加载子文件夹中的文件！如果文件数太多(超2—8万)，\r\n"
    "列表可能会被撑爆哟！如是，请开启“大容量”功能。每次拖放将清除\r\n"
    "现有列表记录，拖放完毕后请勿重复拖放，可采用【添加】功能再添加。\r\n"
    "是——拖放文件，清除原文件列表\r\n"
    "否——拖放文件，附加在原文件列表之后（切记勿重复拖放已加载的文件或文件夹，否则可能出异常！）\r\n"
    "取消——放弃拖放";
constexpr int kDropQuestionType = host::kYesNoCancelButtons + host::kExclamationIcon + host::kThirdIsDefault;
constexpr double kSecondsBetweenTitles = 0.1;

constexpr const char* kImageFilter =
    "支持的类型|*.jpg;*.jpeg;*.bmp;*.dib;*jpe;*.jfif;*.gif;*.tif;*.tiff;*.png;*.psd|"
    "图片文件(*.jpg,*.jpeg,*.jpe,*.jfif)|*.jpg;*.jpeg;*.jpe;*.jfif|图片文件(*.bmp,*.dib)|"
    "*.bmp;*.dib|图片文件(*.gif)|*.gif|图片文件(*.tif,*.tiff)|*.tif;*.tiff|图片文件(*.png)|*.png|PSD文件|*.psd";

}  // namespace

FileIntake::FileIntake(Program& program) : program_(program) {}

std::string FileIntake::Filter() const {
  switch (program_.form1.CmbCutMode.Index()) {
    case 1:
      return "动态gif|*.gif";
    case 2:
      return "Png|*.png";
    case 3:
      return "Pdf|*.pdf";
    case 5:
      return "多页tif|*.tif;*.tiff";
    default:
      return kImageFilter;
  }
}

bool FileIntake::Accepts(const std::string& path) const { return FitsFilter(Filter(), path); }

bool FileIntake::FitsFilter(const std::string& filter, const std::string& path) {
  const std::string extension = base::ToLowerAscii(base::SplitPath(path).extension);
  return !extension.empty() && base::ToLowerAscii(filter).find("." + extension) != std::string::npos;
}

void FileIntake::MenuAddFiles_Click() {
  if (const RunGuard guard(program_); guard) AddFiles();
}

void FileIntake::AddFiles() {
  program_.form1.ShowStatus(kAddingTitle);
  const std::vector<std::string> chosen = program_.host.dialogs.OpenFiles("添加文件", Filter(), host::Choice::Many);
  program_.form1.ShowStatus("");
  if (chosen.empty()) return;
  if (List(chosen, Subfolders::No, Progress::Adding)) program_.Ask(kListed);
  ShowFirstRow();
}

void FileIntake::MenuReadFiles_Click() {
  const RunGuard guard(program_);
  if (!guard) return;
  if (!InputDirExists()) {
    WarnInputDir();
    ChooseInputDir();
    if (!InputDirExists()) return;
  }
  const Subfolders subfolders = program_.form1.ChSubFold.On() ? Subfolders::Yes : Subfolders::No;
  List({program_.form1.LInDir.Value()}, subfolders, Progress::Reading);
  ShowFirstRow();
}

void FileIntake::MSF_OLEDragDrop(const std::vector<std::string>& items) {
  if (items.empty()) return;
  const RunGuard guard(program_);
  if (!guard) return;
  const host::Reply reply = program_.Ask(kDropQuestion, kDropQuestionType);
  if (reply != host::Reply::Yes && reply != host::Reply::No) return;
  if (reply == host::Reply::Yes) program_.files.Clear();
  std::vector<std::string> roots;
  std::copy_if(items.begin(), items.end(), std::back_inserter(roots),
               [this](const std::string& item) { return Accepts(item) || FolderExists(item); });
  if (List(roots, Subfolders::Yes, Progress::Reading)) program_.Ask(kDropped);
  ShowFirstRow();
}

void FileIntake::Admit(const std::vector<std::string>& items) {
  const RunGuard guard(program_);
  if (!guard) return;
  std::vector<std::string> roots;
  for (const std::string& item : items) {
    const std::string path = host::AbsolutePath(item);
    const host::Status answered = DiskAnswers(path);
    const auto facts = answered ? program_.host.files.Stat(path) : std::nullopt;
    const bool folder = facts && facts->kind == host::FileKind::Folder;
    if (!folder && !IsOurs(path)) {
      ++program_.leftToOthers;
    } else if (!answered) {
      ReportNotListed(path, answered.Why());
    } else if (!facts) {
      ReportNotListed(path, "找不到这个文件或文件夹");
    } else if (folder || Accepts(path)) {
      roots.push_back(path);
    } else {
      ReportNotListed(path, "当前裁剪模式不支持这种文件");
    }
  }
  List(roots, Subfolders::Yes, Progress::Reading, WithoutSize::PassedOver);
}

bool FileIntake::IsOurs(const std::string& path) const {
  return OwnShard().OwnsNamed(path) && !program_.doneElsewhere.contains(path);
}

bool FileIntake::SharesFolders() const {
  return !program_.shard.Whole() && (walked_ || program_.flags.LargeCapacityMode);
}

WalkRule FileIntake::OwnShard() const {
  WalkRule rule;
  rule.shard = program_.shard;
  rule.byFolder = ReadCutSettings(program_).omitFolders;
  return rule;
}

WalkRule FileIntake::Rule(Subfolders subfolders) const {
  WalkRule rule = OwnShard();
  rule.subfolders = subfolders;
  rule.accepts = [this](const std::string& name) { return Accepts(name); };
  // Others may have begun to cut already: what lies there are results.
  if (!program_.shard.Whole() && !program_.form1.ChOver.On() && OutDirExists()) {
    rule.leftOut = program_.form1.LOutDir.Value();
  }
  return rule;
}

std::vector<std::string> FileIntake::Shareable(const std::vector<std::string>& roots) {
  if (program_.shard.Whole()) return roots;
  const host::Files& files = program_.host.files;
  const std::string out = program_.form1.LOutDir.Value();
  const bool used = !program_.form1.ChOver.On() && OutDirExists();
  std::vector<std::string> shareable;
  for (const std::string& root : roots) {
    const bool folder = files.IsFolder(root);
    walked_ = walked_ || folder;
    if (!folder || !used || !files.SameFile(root, out)) {
      shareable.push_back(root);
    } else if (IsOurs(root)) {
      ReportNotListed(root, kSharedOutput);
    } else {
      ++program_.leftToOthers;
    }
  }
  return shareable;
}

void FileIntake::ReportNotListed(const std::string& path, const std::string& why) {
  if (program_.observer) program_.observer->FileNotListed(path, why);
}

void FileIntake::ReportTakenUp(const std::string& path) {
  if (program_.recovering && program_.observer) program_.observer->FileBegun(path);
}

bool FileIntake::List(const std::vector<std::string>& roots, Subfolders subfolders, Progress progress,
                      WithoutSize withoutSize) {
  AdmissionRule rule(program_);
  if (!rule.Ready()) return false;
  Form1& form = program_.form1;
  bool refused = false;
  {
    const StoppableFrame frame(program_);
    std::size_t read = 0;
    double told = -kSecondsBetweenTitles;
    const auto tell = [&] {
      const double now = program_.host.clock.Seconds();
      if (now - told < kSecondsBetweenTitles && now >= told) return;
      told = now;
      program_.form1.ShowStatus(progress == Progress::Adding ? kAddingTitle : kReadingTitle + std::to_string(read));
      ShowStatusPanel();
    };
    FileWalk walk(program_, Rule(subfolders));
    const WalkEnd end = walk.Run(Shareable(roots), [&](const std::string& path) {
      ReportTakenUp(path);
      if (const host::Status answered = program_.disks.AskFile(path); !answered) {
        if (!program_.flags.StopRequested) ReportNotListed(path, answered.Why());
        return !program_.flags.StopRequested;
      }
      refused = rule.Admit(path) == Admission::Ended && withoutSize == WithoutSize::EndsListing;
      ++read;
      if (!refused) tell();
      return !refused;
    });
    ReportTakenUp("");
    program_.leftToOthers += walk.LeftToOthers();
    if (refused) return false;
    ShowStatusPanel();
    form.LStatus.SetText(form.LStatus.Value() + rule.FilterText());
    return end == WalkEnd::Complete;
  }
}

void FileIntake::ShowFirstRow() {
  if (program_.files.RowCount() > 0) program_.ShowInPreview(program_.files.Row(0).Path());
}

void FileIntake::ShowStatusPanel() { program_.form1.LStatus.SetText(program_.files.StatusText()); }

// What has no name of a picture is a folder, and may be where a disk begins.
host::Status FileIntake::DiskAnswers(const std::string& item) const {
  return Accepts(item) ? program_.disks.AskFile(item) : program_.disks.AskFolder(item);
}

bool FileIntake::FolderExists(const std::string& folder) const {
  return program_.disks.AskFolder(folder) && program_.host.files.IsFolder(folder);
}

// The folder in a label, or the label's own text where none was chosen yet.
void FileIntake::WarnFolder(const char* what, const std::string& caption) {
  std::string text = caption + "！";
  if (caption != kNoInputFolder && caption != kNoOutputFolder) {
    const char* why = program_.disks.AskFolder(caption) ? "不存在：" : "没有响应：";
    text = what + (why + base::DisplayText(caption));
  }
  program_.Ask(text, host::kStopIcon);
}

bool FileIntake::InputDirExists() const { return FolderExists(program_.form1.LInDir.Value()); }

bool FileIntake::OutDirExists() const { return FolderExists(program_.form1.LOutDir.Value()); }

void FileIntake::WarnInputDir() { WarnFolder("输入目录", program_.form1.LInDir.Value()); }

void FileIntake::WarnOutDir() { WarnFolder("输出目录", program_.form1.LOutDir.Value()); }

void FileIntake::MenuInputDir_Click() {
  if (const RunGuard guard(program_); guard) ChooseInputDir();
}

void FileIntake::MenuOutDir_Click() {
  if (const RunGuard guard(program_); guard) ChooseOutDir();
}

void FileIntake::ChooseInputDir() {
  const std::string initial = InputDirExists() ? program_.form1.LInDir.Value() : std::string();
  const auto folder = program_.host.dialogs.ChooseFolder("请选择输入目录", initial);
  if (!folder) return;
  program_.form1.LInDir.SetText(*folder);
  program_.SaveSetting("LInDir", program_.form1.LInDir.Value());
}

void FileIntake::ChooseOutDir() {
  const std::string initial = OutDirExists() ? program_.form1.LOutDir.Value() : std::string();
  const auto folder = program_.host.dialogs.ChooseFolder("请选择输出目录", initial);
  if (!folder) return;
  program_.form1.LOutDir.SetText(*folder);
  program_.SaveSetting("LOutDir", program_.form1.LOutDir.Value());
}

void FileIntake::MenuClearList_Click() {
  const RunGuard guard(program_);
  if (!guard || program_.files.RowCount() == 0) return;
  if (program_.Ask(kClearQuestion, host::kOkCancelDefaultCancel) != host::Reply::Ok) return;
  Clear();
}

void FileIntake::Clear() {
  program_.files.Clear();
  ShowStatusPanel();
}

void FileIntake::MenuDelSelected_Click() {
  const RunGuard guard(program_);
  const std::size_t selected = program_.form1.MSF.Selected();
  if (!guard || selected == 0) return;
  program_.files.Remove(selected - 1);
  ShowStatusPanel();
}

void FileIntake::MSF_DblClick() {
  const std::size_t selected = program_.form1.MSF.Selected();
  if (selected > 0) program_.ShowInPreview(program_.files.Row(selected - 1).Path());
}

}  // namespace quillon::job
