// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "regions/lists/multi_cut.h"

#include <optional>
#include <utility>

#include "base/path_text.h"
#include "base/utf8.h"
#include "job/cut/first_page.h"
#include "job/run/run_ledger.h"
#include "job/settings/cut_settings.h"
#include "job/work_files.h"

namespace quillon::regions {
namespace {

using job::Result;

constexpr const char* kFolderQuestion = "为每一张底图新建以底图文件名的新建文件夹并将裁剪的小图存入该文件夹中？";
constexpr const char* kDone = "处理完毕！要打开输出目录吗？";
constexpr const char* kStopped = "已停止，未处理";
constexpr const char* kRestStopped = "已停止，其余区域没有处理";
constexpr const char* kPdfPicture = "jpg";  // the type of the picture of which a pdf is made

// A doubled separator inside a path counts as one.
std::string WithoutDoubledSeparators(std::string path) {
  for (std::size_t at = path.find("//"); at != std::string::npos; at = path.find("//", at)) path.erase(at, 1);
  return path;
}

}  // namespace

MultiCut::MultiCut(job::Program& program, const RegionEditor& editor, std::function<void()> onStart)
    : program_(program), regions_(editor.List().All()), unit_(editor.GetUnit()), onStart_(std::move(onStart)) {}

job::RunNeeds MultiCut::Needs() const {
  job::RunNeeds needs;
  const bool pdf = job::Selected<job::OutType>(program_.form1.CmbOutType) == job::OutType::Pdf;
  if (program_.flags.ToCmyk || pdf) needs.ensured.push_back(job::Need::OutputTools);
  for (const job::Need need : {job::Need::Files, job::Need::OutputFolder}) needs.ensured.push_back(need);
  needs.disabled = {"FBaseOpt", "FGifCut", "FTiffOps", "FPdfOps", "FArray"};
  needs.inFolderRun = job::WindowUse::Disabled;
  return needs;
}

bool MultiCut::Prepare() {
  onStart_();
  return true;
}

void MultiCut::Begin(job::RunLedger& ledger) {
  ledger_ = &ledger;
  swept_.clear();
  job::Form1& form = program_.form1;
  form.MSF.SetEnabled(false);
  const job::CutSettings options = job::ReadCutSettings(program_);
  const bool pdf = job::Selected<job::OutType>(form.CmbOutType) == job::OutType::Pdf;
  const std::string type = job::CasedExtension(options.outType, options.extensionCase);
  extension_ = "." + type;
  conversions_ = {options.toCmyk, options.keepExif && program_.outputTools, pdf};
  workFile_ = program_.AppPath(std::string(job::work_files::kResultStem) + "." + (pdf ? kPdfPicture : type));
  perImageFolder_ = program_.Ask(kFolderQuestion, host::kYesNoQuestion) == host::Reply::Yes;
  prefetch_.emplace(program_.context,
                    [this](std::size_t, const std::string& path, base::Size size) { return Foresee(path, size); });
}

std::string MultiCut::ListText() const {
  std::string text = perImageFolder_ ? "folders" : "files";
  for (const Margins& margins : regions_) text.append("\n").append(RowText(margins));
  return text;
}

void MultiCut::Cut(const job::RunFile& file, const Report& report) {
  const Report* outer = std::exchange(report_, &report);
  if (file.row == 0) {
    CutUnlisted(file.path, std::to_string(file.number));
  } else {
    const job::FileRow& row = program_.files.Row(file.row - 1);
    const std::string images = std::to_string(program_.files.RowCount());
    CutSource({file.row, file.path, {row.width, row.height}, " 之" + std::to_string(file.row) + "/" + images});
  }
  report_ = outer;
}

void MultiCut::LargeMulCut(const std::string& path, const std::string& text) {
  if (!ledger_) return;
  const Report add = [this](const job::FileResult& result) { ledger_->Add(result); };
  const Report* outer = std::exchange(report_, &add);
  CutUnlisted(path, text);
  report_ = outer;
}

void MultiCut::CutUnlisted(const std::string& path, const std::string& text) {
  imaging::ImageFacts facts;
  if (!program_.images.ImageInfo(path, facts)) facts = {};
  CutSource({0, path, {facts.width, facts.height}, "，已处理" + text});
}

std::string MultiCut::Refusal(const Source& source) {
  if (!program_.host.files.IsFile(source.path)) return "找不到这个文件";
  imaging::ImageFacts facts;
  if (const host::Status read = program_.images.ImageInfo(source.path, facts); !read) return read.Why();
  if (conversions_.cmyk) {
    if (const host::Status usable = job::CheckCmykProfiles(program_); !usable) return usable.Why();
  }
  const base::Size now{facts.width, facts.height};
  if (now == source.size) return {};
  return "图片已被换成另一张（列表中 " + base::SizeText(source.size) + "，现在 " + base::SizeText(now) +
         "），请重新添加";
}

std::vector<std::string> MultiCut::Outputs(const std::string& path) const {
  const std::string name = base::SplitPath(path).name;
  const std::string stem = base::JoinPath(OutputFolder(name), name) + "_裁剪区域";
  std::vector<std::string> outputs;
  for (std::size_t number = 1; number <= regions_.size(); ++number) {
    outputs.push_back(stem + std::to_string(number) + extension_);
  }
  return outputs;
}

std::string MultiCut::OutputFolder(const std::string& baseName) const {
  const std::string top = program_.form1.LOutDir.Value();
  return perImageFolder_ ? base::JoinPath(top, baseName) : top;
}

std::vector<RegionCut> MultiCut::CutsOf(const std::string& path, base::Size size) const {
  const std::vector<std::string> outputs = Outputs(path);
  std::vector<RegionCut> cuts;
  for (std::size_t j = 0; j < regions_.size(); ++j) {
    cuts.push_back({BoxOf(regions_[j], unit_, size), conversions_.None() ? outputs[j] : workFile_});
  }
  return cuts;
}

imaging::FileWork MultiCut::WorkOf(const std::string& path, const std::vector<RegionCut>& cuts) const {
  const imaging::Exif exif = conversions_.exif ? imaging::Exif::Keep : imaging::Exif::Drop;
  return RegionWork(path, cuts, job::ReadCutSettings(program_).quality, imaging::Alpha::Kept, exif);
}

std::optional<imaging::FileWork> MultiCut::Foresee(const std::string& path, base::Size size) const {
  if (size.Empty() || job::TooSmall(size, job::ReadCutSettings(program_).smallest)) return std::nullopt;
  imaging::FileWork work = WorkOf(path, CutsOf(path, size));
  if (work.Empty()) return std::nullopt;
  return work;
}

void MultiCut::CutSource(const Source& source) {
  if (const base::Size least = job::ReadCutSettings(program_).smallest; job::TooSmall(source.size, least)) {
    ReportWithout(source, Result::Skipped, job::TooSmallText(least));
    return;
  }
  const std::string folder = OutputFolder(base::SplitPath(source.path).name);
  SweepDrafts(folder);
  std::string refusal = Refusal(source);
  if (const host::Status made = program_.host.files.MakeFolders(folder); refusal.empty() && !made) {
    refusal = "无法创建输出文件夹：" + made.Why();
  }
  if (!refusal.empty()) {
    ReportWithout(source, Result::None, refusal);
    return;
  }
  Made made = CutAll(source, CutsOf(source.path, source.size));
  if (!made.outputs.empty()) job::AddNote(made.notes, PagesNote(source.path));
  ReportRegions(source, made);
}

std::string MultiCut::PagesNote(const std::string& path) {
  imaging::ImageFacts facts;
  job::PagesOfFile pages;
  if (!program_.images.ImageInfo(path, facts)) return {};
  return job::CountPages(program_.images, path, facts.format, pages) ? pages.Note() : "";
}

void MultiCut::SweepDrafts(const std::string& folder) {
  if (folder == swept_) return;
  swept_ = folder;
  program_.host.files.SweepDrafts(folder);
}

MultiCut::Made MultiCut::CutAll(const Source& source, std::vector<RegionCut> cuts) {
  RegionSource::Options options{.extension = base::SplitPath(cuts.front().output).extension,
                                .quality = job::ReadCutSettings(program_).quality,
                                .exif = conversions_.exif ? imaging::Exif::Keep : imaging::Exif::Drop,
                                .work = WorkOf(source.path, cuts)};
  if (options.work.steps.size() > 1) options.decode = RegionSource::Decode::Once;
  RegionSource picture(program_.images, program_.saver, source.path, options);
  std::vector<std::string> outputs = Outputs(source.path);
  Made made;
  const auto add = [](std::string& whys, const std::string& why) { whys.append(whys.empty() ? "" : "；").append(why); };
  for (std::size_t j = 0; j < cuts.size(); ++j) {
    program_.host.pump.Turn();
    if (program_.flags.StopRequested) {
      add(made.failures, kRestStopped);
      break;
    }
    made.begun = true;
    ShowRegion(source, j + 1);
    const std::string why = CutRegion(picture, source, cuts[j], outputs[j], made.notes);
    if (why.empty()) {
      made.outputs.push_back(outputs[j]);
    } else {
      add(outputs[j].empty() ? made.kept : made.failures, "区域" + std::to_string(j + 1) + "：" + why);
    }
  }
  return made;
}

void MultiCut::ShowRegion(const Source& source, std::size_t number) {
  std::string status = program_.files.StatusText();
  status.append("  正在裁剪").append(std::to_string(number)).append("/").append(std::to_string(regions_.size()));
  program_.form1.LStatus.SetText(status + source.progress);
}

std::string MultiCut::CutRegion(RegionSource& picture, const Source& source, RegionCut& cut, std::string& output,
                                std::string& notes) {
  if (std::string why = job::NothingInText("区域", cut.box, source.size); !why.empty()) return why;
  // Another listed picture must not be overwritten.
  if (ledger_->IsOtherSource(output, source.path)) {
    return "会覆盖另一个文件 " + base::DisplayText(output) + "，已跳过";
  }
  const std::optional<std::string> place = ledger_->PlaceFor(source.path, output);
  if (!place) return "已有同名的文件 " + base::DisplayText(std::exchange(output, {})) + "，保留它，已跳过";
  if (*place != output && ledger_->Wrote(output)) job::AddNote(notes, job::TakenNameText(output, *place));
  output = *place;
  if (conversions_.None()) cut.output = output;
  std::optional<host::Files::ReplacedToTrash> replaced;
  if (ledger_->IsForeign(source.path, output)) replaced.emplace(program_.host.files, output);
  host::Status status;
  if (conversions_.None()) {
    status = picture.Cut(cut);
  } else {
    // Removed first, so that the save creates a file and does not wait for a sync.
    (void)program_.host.files.RemoveOwn(cut.output);
    status = picture.Cut(cut);
    if (status) status = Convert(source, cut, output, notes);
  }
  if (!status) ledger_->DiscardStaleOutput(source.path, output, status);
  return status ? std::string() : status.Why();
}

host::Status MultiCut::Convert(const Source& source, const RegionCut& cut, const std::string& output,
                               std::string& notes) {
  program_.host.pump.Turn();
  if (program_.flags.StopRequested) return {host::Problem::Stopped, kStopped};
  return job::FinishWork(program_, conversions_, source.path, cut.output, output, notes);
}

void MultiCut::ReportRegions(const Source& source, const Made& made) {
  if (!made.begun) return ReportWithout(source, Result::Skipped, kStopped);
  job::FileResult result{source.row, source.path, "", Result::None, made.failures};
  job::AddNote(result.why, made.notes);
  job::AddNote(result.why, made.kept);
  result.more = made.outputs;
  if (made.failures.empty() && made.outputs.empty()) {
    result.result = Result::Skipped;
  } else if (made.failures.empty()) {
    result.result = Result::Written;
    result.output = made.outputs.front();
    result.more.erase(result.more.begin());
  }
  (*report_)(std::move(result));
}

void MultiCut::ReportWithout(const Source& source, Result result, const std::string& why) {
  (*report_)({source.row, source.path, "", result, why});
}

job::RunEnd MultiCut::End(job::RunSource) {
  return {kDone, job::RunEnd::Then::OfferFolder, WithoutDoubledSeparators(program_.form1.LOutDir.Value()),
          job::RunEnd::Shown::AfterRun};
}

void MultiCut::Release() {
  ledger_ = nullptr;
  program_.form1.MSF.SetEnabled(true);
  program_.form1.LStatus.SetText(program_.files.StatusText());
}

}  // namespace quillon::regions
