// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "regions/lists/multi_cut.h"

#include <optional>
#include <utility>

#include "base/path_text.h"
#include "base/utf8.h"
#include "job/run/run_ledger.h"
#include "job/settings/cut_settings.h"

namespace quillon::regions {
namespace {

using job::Result;

constexpr const char* kFolderQuestion = "为每一张底图新建以底图文件名的新建文件夹并将裁剪的小图存入该文件夹中？";
constexpr const char* kDone = "处理完毕！要打开输出目录吗？";

std::string SizeText(base::Size size) { return std::to_string(size.width) + "x" + std::to_string(size.height); }

std::string EmptyBoxText(const base::Rect& box) {
  return "区域的宽或高小于 1 像素（" + std::to_string(box.width) + "x" + std::to_string(box.height) + "）";
}

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
  needs.ensured = {job::Need::Files, job::Need::OutputFolder};
  needs.resultsPerFile = regions_.size();
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
  job::Form1& form = program_.form1;
  form.MSF.SetEnabled(false);
  if (job::Selected<job::OutType>(form.CmbOutType) == job::OutType::Pdf) {
    job::Select(form.CmbOutType, job::OutType::Jpg);
  }
  const job::CutSettings options = job::ReadCutSettings(program_);
  extension_ = "." + job::CasedExtension(options.outType, options.extensionCase);
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
  const base::Size now{facts.width, facts.height};
  if (now == source.size) return {};
  return "图片已被换成另一张（列表中 " + SizeText(source.size) + "，现在 " + SizeText(now) + "），请重新添加";
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
  std::vector<std::string> outputs = Outputs(path);
  std::vector<RegionCut> cuts;
  for (std::size_t j = 0; j < regions_.size(); ++j) {
    cuts.push_back({BoxOf(regions_[j], unit_, size), std::move(outputs[j])});
  }
  return cuts;
}

std::optional<imaging::FileWork> MultiCut::Foresee(const std::string& path, base::Size size) const {
  const job::CutSettings settings = job::ReadCutSettings(program_);
  if (size.Empty() || job::TooSmall(size, settings.smallest)) return std::nullopt;
  imaging::FileWork work = RegionWork(path, CutsOf(path, size), settings.quality);
  if (work.Empty()) return std::nullopt;
  return work;
}

void MultiCut::CutSource(const Source& source) {
  if (const base::Size least = job::ReadCutSettings(program_).smallest; job::TooSmall(source.size, least)) {
    ReportAll(source, Result::Skipped, job::TooSmallText(least));
    return;
  }
  const std::string folder = OutputFolder(base::SplitPath(source.path).name);
  std::string refusal = Refusal(source);
  if (const host::Status made = program_.host.files.MakeFolders(folder); refusal.empty() && !made) {
    refusal = "无法创建输出文件夹：" + made.Why();
  }
  if (!refusal.empty()) {
    ReportAll(source, Result::None, refusal);
    return;
  }
  CutAll(source, CutsOf(source.path, source.size));
}

void MultiCut::CutAll(const Source& source, std::vector<RegionCut> cuts) {
  const std::string normal = program_.files.StatusText();
  const int quality = job::ReadCutSettings(program_).quality;
  RegionSource::Options options{.extension = base::SplitPath(cuts.front().output).extension,
                                .quality = quality,
                                .work = RegionWork(source.path, cuts, quality)};
  if (options.work.steps.size() > 1) options.decode = RegionSource::Decode::Once;
  RegionSource picture(program_.images, program_.saver, source.path, options);
  std::string whys;
  for (std::size_t j = 0; j < cuts.size(); ++j) {
    program_.host.pump.Turn();
    if (program_.flags.StopRequested) {
      ReportRegion(source, "", Result::Skipped, "已停止，未处理");
      continue;
    }
    const std::string number = std::to_string(j + 1);
    std::string status = normal;
    status.append("  正在裁剪").append(number).append("/").append(std::to_string(cuts.size()));
    program_.form1.LStatus.SetText(status + source.progress);
    // Reported again for each region, because an observer may read a result as the end of the picture.
    if (j > 0 && program_.observer) program_.observer->FileBegun(source.path);
    const std::string why = CutRegion(picture, source, cuts[j]);
    const bool skipped = cuts[j].output.empty();
    const Result missing = skipped ? Result::Skipped : Result::None;
    ReportRegion(source, cuts[j].output, why.empty() ? Result::Written : missing, why);
    if (!why.empty() && !skipped) whys.append(whys.empty() ? "区域" : "；区域").append(number).append("：").append(why);
  }
  MarkRow(source, whys);
}

std::string MultiCut::CutRegion(RegionSource& picture, const Source& source, RegionCut& cut) {
  if (cut.box.Empty()) return EmptyBoxText(cut.box);
  // Another listed picture must not be overwritten.
  if (ledger_->IsOtherSource(cut.output, source.path)) {
    return "会覆盖另一个文件 " + base::DisplayText(cut.output) + "，已跳过";
  }
  if (const auto place = ledger_->PlaceFor(source.path, cut.output)) {
    cut.output = *place;
  } else {
    return "已有同名的文件 " + base::DisplayText(std::exchange(cut.output, {})) + "，保留它，已跳过";
  }
  std::optional<host::Files::ReplacedToTrash> replaced;
  if (ledger_->IsForeign(source.path, cut.output)) replaced.emplace(program_.host.files, cut.output);
  const host::Status status = picture.Cut(cut);
  if (!status) ledger_->DiscardStaleOutput(source.path, cut.output, status);
  return status ? std::string() : status.Why();
}

void MultiCut::ReportRegion(const Source& source, const std::string& output, Result result, const std::string& why) {
  (*report_)({source.row, source.path, result == Result::Written ? output : "", result, why});
}

void MultiCut::ReportAll(const Source& source, Result result, const std::string& why) {
  for (std::size_t j = 0; j < regions_.size(); ++j) ReportRegion(source, "", result, why);
}

// A row counts as without output if any of its regions has none.
void MultiCut::MarkRow(const Source& source, const std::string& why) {
  if (source.row > 0 && !why.empty()) program_.files.SetResult(source.row - 1, Result::None, why, 0);
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
