// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "job/windows/file_intake.h"

#include <algorithm>
#include <set>
#include <utility>

#include "base/path_text.h"
#include "base/utf8.h"
#include "host/files/paths.h"
#include "job/list/result_records.h"
#include "job/program.h"
#include "job/run/run_guard.h"
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

constexpr int kGifMode = 1;
constexpr int kPdfMode = 3;
constexpr int kTiffMode = 5;
constexpr int kDefaultPageDpi = 72;

// Decides which files become rows of the list. The mode is that of CmbCutMode when the rule is made.
class AdmissionRule {
 public:
  explicit AdmissionRule(Program& program);

  // Returns false if the mode counts pages and the program lacks the page counter. Then it has asked the
  // missing-resource question and selected the first mode.
  bool Ready();
  // Measures the file and adds its row, or reports why not. A file without a size is named in the status panel and
  // reported to the observer; the first one also shows a box.
  void Admit(const std::string& path, Reached reached);
  // Returns the text of the status panel about the files without a size and the pictures that ChFilter has skipped; ""
  // if there are none.
  std::string LeftOutText() const;
  // Returns whether a file without a size was met.
  bool Refused() const { return refused_ > 0; }

 private:
  bool CountsPages() const;
  // Measures the file, and counts its pages or frames. Returns why that failed, "" if it did not. The sides are 0 if
  // the file could not be measured.
  std::string Measure(const std::string& path, FileRow& row);
  // Names the file as not listed.
  void Name(const std::string& path, const std::string& why);
  void Refuse(const std::string& path, const std::string& why);

  Program& program_;
  int mode_;
  std::size_t refused_ = 0;
  std::string firstRefused_;  // name and reason
  std::size_t filtered_ = 0;
};

AdmissionRule::AdmissionRule(Program& program) : program_(program), mode_(program.form1.CmbCutMode.Index()) {}

bool AdmissionRule::CountsPages() const { return mode_ == kGifMode || mode_ == kPdfMode || mode_ == kTiffMode; }

bool AdmissionRule::Ready() {
  if (!CountsPages() || program_.context.window.Ensure(Need::PageCounter)) return true;
  program_.form1.CmbCutMode.Select(0);
  return false;
}

std::string AdmissionRule::LeftOutText() const {
  std::string text;
  if (refused_ == 1) text = "  未加入：" + firstRefused_;
  if (refused_ > 1) text = "  未加入 " + std::to_string(refused_) + " 个，第一个是：" + firstRefused_;
  if (filtered_ == 0) return text;
  const base::Size least = ReadCutSettings(program_).smallest;
  return text + "  过滤小图片：" + std::to_string(filtered_) + " 张不足 " + std::to_string(least.width) + "x" +
         std::to_string(least.height) + " 像素，未加入";
}

void AdmissionRule::Name(const std::string& path, const std::string& why) {
  if (program_.observer) program_.observer->FileNotListed(path, why);
  if (refused_++ > 0) return;
  firstRefused_ = base::DisplayText(path) + "（" + why + "）";
  program_.form1.LStatus.SetText(program_.files.StatusText() + LeftOutText());
}

void AdmissionRule::Refuse(const std::string& path, const std::string& why) {
  const bool first = refused_ == 0;
  Name(path, why);
  if (first) program_.host.boxes.Show({.text = kNoSize, .notice = "未加入：" + firstRefused_});
}

// The decoders know nothing of a pdf; its size is that of its first page, as the page counter gives it.
std::string AdmissionRule::Measure(const std::string& path, FileRow& row) {
  imaging::ImageFacts facts;
  host::Status measured;
  if (mode_ != kPdfMode) measured = program_.images.ImageInfo(path, facts, imaging::Want::SizeAndDpi);
  if (!measured) facts = {};
  const int pageDpi = program_.flags.OutDpi > 0 ? program_.flags.OutDpi : kDefaultPageDpi;
  const Pages pages = CountsPages() ? program_.pageCounter->Count(mode_, path, pageDpi) : Pages();
  if (mode_ == kPdfMode) facts = {pages.first.width, pages.first.height, pageDpi};
  row.width = facts.width;
  row.height = facts.height;
  row.dpi = facts.dpi;
  row.pages = pages.count;
  return measured ? pages.why : measured.Why();
}

void AdmissionRule::Admit(const std::string& path, Reached reached) {
  Flags& flags = program_.flags;
  flags.InfoWidth = flags.InfoHeight = "0";
  FileRow row;
  row.reached = reached;
  const std::string why = Measure(path, row);
  flags.InfoWidth = std::to_string(row.width);
  flags.InfoHeight = std::to_string(row.height);
  const base::Size size{row.width, row.height};

  if (!why.empty() && size.Empty() && mode_ != kPdfMode) return Refuse(path, why);
  if (!why.empty()) {
    program_.host.boxes.Beep();
    return Name(path, why);
  }
  if (size.width == 0 || size.height == 0) return Refuse(path, "图片的宽或高为 0");
  if (const base::Size least = ReadCutSettings(program_).smallest; TooSmall(size, least)) {
    ++filtered_;
    if (program_.observer) program_.observer->FileFilteredOut(path, TooSmallText(least));
    return;
  }
  if (const auto file = program_.host.files.Stat(path)) row.bytes = file->size;
  program_.files.Grow(size, row.bytes);
  if (CountsPages() && mode_ != kPdfMode && row.pages <= 1) {
    const char* single = mode_ == kGifMode ? "只有一帧，没有加入列表" : "只有一页，没有加入列表";
    if (program_.observer) program_.observer->FileFilteredOut(path, single);
    program_.host.boxes.Beep();
    return;
  }
  program_.files.AppendPath(path, std::move(row));
  if (flags.ArrayLoaded && program_.sheets) program_.sheets->Listed(path, 1);
}

// Leaves results of earlier runs out of a listing of folders. Files that were named themselves are listed.
class ResultFilter {
 public:
  ResultFilter(const Program& program, const std::vector<std::string>& roots)
      : program_(program), records_(program.context), named_(roots.begin(), roots.end()) {}

  bool LeavesOut(const std::string& path) {
    if (named_.contains(path) || !records_.Contains(path)) return false;
    ++leftOut_;
    if (program_.observer) program_.observer->FileFilteredOut(path, "是以前写到输出目录的结果，没有加入列表");
    return true;
  }
  // Reports an output folder that is listed or contains results, and returns the text of the status panel about it; ""
  // if there is nothing to report.
  std::string ReportFolder() const {
    const std::string out = program_.form1.LOutDir.Value();
    std::string what;
    if (leftOut_ > 0) {
      what = "输出目录中以前写出的结果：" + std::to_string(leftOut_) + " 个，未加入";
    } else if (IsNamed()) {
      what = "列出的文件夹就是输出目录，结果和原图在一起";
    }
    if (what.empty()) return {};
    if (program_.observer) program_.observer->FolderNoted(out, what);
    return "  " + what;
  }

 private:
  // Returns whether a named folder is the output folder.
  bool IsNamed() const {
    const auto same = [this](const std::string& folder) {
      return named_.contains(folder) && program_.host.files.RealPath(folder) == records_.Folder();
    };
    return !records_.Folder().empty() &&
           std::any_of(program_.listedFolders.begin(), program_.listedFolders.end(), same);
  }

  const Program& program_;
  ResultRecords records_;
  std::set<std::string> named_;
  std::size_t leftOut_ = 0;
};

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

void FileIntake::MenuAddFiles_Click() {
  if (const RunGuard guard(program_.context); guard) AddFiles();
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
  const RunGuard guard(program_.context);
  if (!guard) return;
  if (!EnsureInputDir()) return;
  const Subfolders subfolders = program_.form1.ChSubFold.On() ? Subfolders::Yes : Subfolders::No;
  List({program_.form1.LInDir.Value()}, subfolders, Progress::Reading);
  ShowFirstRow();
}

void FileIntake::MSF_OLEDragDrop(const std::vector<std::string>& items) {
  if (items.empty()) return;
  const RunGuard guard(program_.context);
  if (!guard) return;
  const host::Reply reply = program_.Ask(kDropQuestion, kDropQuestionType);
  if (reply != host::Reply::Yes && reply != host::Reply::No) return;
  if (reply == host::Reply::Yes) {
    program_.files.Clear();
    program_.ShowNoPicture();
  }
  std::vector<std::string> roots;
  std::copy_if(items.begin(), items.end(), std::back_inserter(roots),
               [this](const std::string& item) { return Accepts(item) || FolderExists(item); });
  if (List(roots, Subfolders::Yes, Progress::Reading)) program_.Ask(kDropped);
  ShowFirstRow();
}

void FileIntake::Admit(const std::vector<std::string>& items) {
  const RunGuard guard(program_.context);
  if (!guard) return;
  std::vector<std::string> roots;
  for (const std::string& item : items) {
    const std::string path = host::AbsolutePath(item);
    host::FileFacts facts;
    host::Status found = DiskAnswers(path);
    if (found) found = program_.host.files.Find(path, facts);
    const bool missing = found.GetProblem() == host::Problem::Missing;
    const bool folder = found && facts.kind == host::FileKind::Folder;
    // Others list only their part of a folder. One that cannot be reached from here alone may have a part for us.
    const bool maybeFolder = folder || (!found && !missing && !Accepts(path));
    if (!maybeFolder && !(found ? OwnsFile(path) : IsOurs(path))) {
      ++program_.leftToOthers;
    } else if (missing) {
      ReportNotListed(path, "找不到这个文件或文件夹");
    } else if (!found) {
      ReportNotListed(path, found.Why());
    } else if (folder || Accepts(path)) {
      roots.push_back(path);
    } else {
      ReportNotListed(path, "当前裁剪模式不支持这种文件");
    }
  }
  List(roots, Subfolders::Yes, Progress::Reading);
}

bool FileIntake::IsOurs(const std::string& path) const {
  return OwnShard().OwnsNamed(path) && !program_.doneElsewhere.contains(path);
}

bool FileIntake::OwnsFile(const std::string& path) const {
  if (program_.shard.Whole() || !program_.form1.ChOver.On()) return IsOurs(path);
  const host::Files& files = program_.host.files;
  const std::string base = files.RealPath(program_.shard.base).value_or("");
  return OwnShard().OwnsReal(files.RealPath(path).value_or(path), base) && !program_.doneElsewhere.contains(path);
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
  if (program_.form1.ChOver.On()) rule.links = Links::Refused;
  rule.accepts = [this](const std::string& name) { return Accepts(name); };
  // Other workers may have started: files in the output folder are results.
  if (!program_.shard.Whole() && !program_.form1.ChOver.On() && OutDirExists()) {
    rule.leftOut = program_.form1.LOutDir.Value();
  }
  return rule;
}

std::vector<std::string> FileIntake::Shareable(const std::vector<std::string>& roots) {
  const std::string out = program_.form1.LOutDir.Value();
  const bool shared = !program_.shard.Whole() && !program_.form1.ChOver.On() && OutDirExists();
  std::vector<std::string> shareable;
  for (const std::string& root : roots) {
    const bool folder =
        !Accepts(root) ? FolderExists(root) : !program_.shard.Whole() && program_.host.files.IsFolder(root);
    if (folder) program_.listedFolders.insert({root, program_.host.files.RealPath(root).value_or(root)});
    if (!folder || !shared || !program_.host.files.SameFile(root, out)) {
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

void FileIntake::ReportBegun(const std::string& path) {
  if (program_.recovering && program_.observer) program_.observer->FileBegun(path);
}

bool FileIntake::List(const std::vector<std::string>& roots, Subfolders subfolders, Progress progress) {
  AdmissionRule rule(program_);
  if (!rule.Ready()) return false;
  Form1& form = program_.form1;
  const std::vector<std::string> shareable = Shareable(roots);
  ResultFilter results(program_, shareable);
  {
    const RunFrame frame(program_.context, WindowUse::Usable);
    std::size_t read = 0;
    double shownAt = -kSecondsBetweenTitles;
    const auto showProgress = [&] {
      const double now = program_.host.clock.Seconds();
      if (now - shownAt < kSecondsBetweenTitles && now >= shownAt) return;
      shownAt = now;
      program_.form1.ShowStatus(progress == Progress::Adding ? kAddingTitle : kReadingTitle + std::to_string(read));
      ShowStatusPanel();
    };
    FileWalk walk(program_.context, Rule(subfolders));
    const WalkEnd end = walk.Run(shareable, [&](const std::string& path) {
      ReportBegun(path);
      if (const host::Status answered = program_.disks.AskFile(path); !answered) {
        if (!program_.flags.StopRequested) ReportNotListed(path, answered.Why());
        return !program_.flags.StopRequested;
      }
      if (results.LeavesOut(path)) return true;
      rule.Admit(path, walk.How());
      ++read;
      showProgress();
      return true;
    });
    ReportBegun("");
    program_.leftToOthers += walk.LeftToOthers();
    ShowStatusPanel();
    form.LStatus.SetText(form.LStatus.Value() + rule.LeftOutText() + results.ReportFolder());
    return end == WalkEnd::Complete && !rule.Refused();
  }
}

void FileIntake::ShowFirstRow() {
  if (program_.files.RowCount() > 0) program_.ShowInPreview(program_.files.Row(0).Path());
}

void FileIntake::ShowStatusPanel() { program_.form1.LStatus.SetText(program_.files.StatusText()); }

// A name without a picture extension is treated as a folder.
host::Status FileIntake::DiskAnswers(const std::string& item) const {
  return Accepts(item) ? program_.disks.AskFile(item) : program_.disks.AskFolder(item);
}

bool FileIntake::FolderExists(const std::string& folder) const {
  return program_.disks.AskFolder(folder) && program_.host.files.IsFolder(folder);
}

// caption: the folder of a label, or its first text if no folder was chosen.
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

bool FileIntake::EnsureListedFiles() {
  if (program_.files.RowCount() > 0) return true;
  program_.Ask("请先添加文件列表！");
  AddFiles();
  return program_.files.RowCount() > 0;
}

bool FileIntake::EnsureInputDir() {
  if (InputDirExists()) return true;
  WarnInputDir();
  ChooseInputDir();
  return InputDirExists();
}

bool FileIntake::EnsureOutDir() {
  if (OutDirExists()) return true;
  const std::optional<bool> made = OfferMissingOutDir();
  if (made.value_or(false)) return true;
  if (!made) WarnOutDir();
  ChooseOutDir();
  return OutDirExists();
}

std::optional<bool> FileIntake::OfferMissingOutDir() {
  const std::string folder = program_.form1.LOutDir.Value();
  if (folder == kNoOutputFolder || !program_.disks.AskFolder(folder) || program_.host.files.Stat(folder)) return {};
  const std::string question = "输出目录不存在：" + base::DisplayText(folder) + "\r\n要新建这个文件夹吗？";
  if (program_.Ask(question, host::kYesNoQuestion + host::kSecondIsDefault) != host::Reply::Yes) return false;
  const host::Status made = program_.host.files.MakeFolders(folder);
  if (!made) program_.Ask("文件夹没有建成：" + made.Why(), host::kStopIcon);
  return static_cast<bool>(made);
}

void FileIntake::MenuInputDir_Click() {
  if (const RunGuard guard(program_.context); guard) ChooseInputDir();
}

void FileIntake::MenuOutDir_Click() {
  if (const RunGuard guard(program_.context); guard) ChooseOutDir();
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
  const RunGuard guard(program_.context);
  if (!guard || program_.files.RowCount() == 0) return;
  if (program_.Ask(kClearQuestion, host::kOkCancelDefaultCancel) != host::Reply::Ok) return;
  Clear();
  program_.ShowNoPicture();
}

void FileIntake::Clear() {
  program_.files.Clear();
  ShowStatusPanel();
}

// The row that is shown after the deleted ones is selected, so that deleting again goes on there.
void FileIntake::MenuDelSelected_Click() {
  const RunGuard guard(program_.context);
  controls::Grid& grid = program_.form1.MSF;
  std::vector<std::size_t> rows = grid.Selection();
  if (!guard || rows.empty()) return;
  std::size_t next = grid.NextInView(rows);
  next -= static_cast<std::size_t>(std::lower_bound(rows.begin(), rows.end(), next) - rows.begin());
  for (std::size_t& row : rows) --row;
  const std::string& onShow = program_.fCutPre.preview.Path();
  const bool shown =
      std::any_of(rows.begin(), rows.end(), [&](std::size_t row) { return program_.files.Row(row).Path() == onShow; });
  program_.files.Remove(rows);
  grid.Select(next);
  ShowStatusPanel();
  if (!shown) return;
  if (program_.files.RowCount() > 0) {
    MSF_DblClick();
  } else {
    program_.ShowNoPicture();
  }
}

void FileIntake::ReorderList(const std::vector<std::size_t>& order) {
  if (const RunGuard guard(program_.context); guard) program_.files.Reorder(order);
}

void FileIntake::MSF_DblClick() {
  const std::size_t selected = program_.form1.MSF.Selected();
  if (selected > 0) program_.ShowInPreview(program_.files.Row(selected - 1).Path());
}

}  // namespace quillon::job
