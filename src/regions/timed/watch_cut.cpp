// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "regions/timed/watch_cut.h"

#include <utility>

#include "base/path_text.h"
#include "job/cut/first_page.h"
#include "job/run/run_ledger.h"
#include "job/settings/cut_settings.h"
#include "job/work_files.h"

namespace quillon::regions {
namespace {

using host::Problem;
using job::FileResult;
using job::Result;
using job::Retry;

// Returns whether a failure means that the file is incomplete or gone, so that it may be tried again.
bool NotWhole(const host::Status& status) {
  const Problem problem = status.GetProblem();
  return problem == Problem::Damaged || problem == Problem::Unsupported || problem == Problem::Missing;
}

// Fails for a region that would be only white, because it lies wholly outside the picture.
host::Status CheckInside(const RegionCut& cut, base::Size picture) {
  const std::string why = job::NothingInText("区域", cut.box, picture);
  return why.empty() ? host::Status::Ok() : host::Status(Problem::Other, why);
}

}  // namespace

WatchCut::WatchCut(job::Program& program, WatchCutOptions options)
    : program_(program),
      options_(std::move(options)),
      prefetch_(program.context,
                [this](std::size_t, const std::string& path, base::Size size) { return Foresee(path, size); }) {}

void WatchCut::Cut(const job::RunFile& file, const Report& report) {
  imaging::ImageFacts facts;
  const host::Status measured = program_.images.ImageInfo(file.path, facts);
  const base::Size size{facts.width, facts.height};
  if (!measured || size.Empty()) {
    FileResult result = Failed(file.path, measured ? host::Status(Problem::Damaged, job::kNoSize) : measured);
    if (result.retry == Retry::Never) result.retry = Retry::OnceChanged;
    report(std::move(result));
  } else if (IsSmall(size)) {
    report({0, file.path, "", Result::Skipped, "按“忽略小图片”跳过"});
  } else if (!options_.regions.empty()) {
    job::PagesOfFile pages;
    const host::Status counted = job::CountPages(program_.images, file.path, facts.format, pages);
    if (!counted) return report(Failed(file.path, counted));
    // The original would leave the folder.
    report(pages.Several() ? FileResult{0, file.path, "", Result::None, pages.Refusal()} : CutPicture(file, size));
  }
}

FileResult WatchCut::CutPicture(const job::RunFile& file, base::Size size) {
  const std::vector<RegionCut> cuts = CutsOf(file.path, size);
  std::vector<std::string> outputs;
  if (!options_.several) {
    FileResult result{0, file.path, file.path, Result::Written, ""};
    const host::Status status = CutInPlace(file, cuts.front(), size, result.why);
    return status ? result : Failed(file.path, status);
  }
  if (const host::Status status = CutBeside(file, cuts, size, outputs); !status) return Failed(file.path, status);
  ledger_->DiscardAtEnd({0, file.path, outputs, file.settled});
  FileResult result{0, file.path, outputs.front(), Result::Written, ""};
  result.more.assign(outputs.begin() + 1, outputs.end());
  return result;
}

FileResult WatchCut::Failed(const std::string& path, const host::Status& status) const {
  FileResult result{0, path, "", Result::None, status.Why()};
  if (NotWhole(status)) result.retry = Retry::OnceChanged;
  // If the watch was not stopped, the disk does not respond.
  if (status.GetProblem() == Problem::Stopped && !program_.flags.StopRequested) result.retry = Retry::Soon;
  return result;
}

bool WatchCut::IsSmall(base::Size size) const {
  if (!options_.sizeFilter) return false;
  const bool narrow = size.width <= options_.smallWidth;
  const bool low = size.height <= options_.smallHeight;
  return options_.both ? narrow && low : narrow || low;
}

std::vector<RegionCut> WatchCut::CutsOf(const std::string& path, base::Size size) const {
  const base::PathParts parts = base::SplitPath(path);
  std::vector<RegionCut> cuts;
  for (std::size_t i = 0; i < options_.regions.size(); ++i) {
    const std::string name = parts.name + "_" + std::to_string(i + 1);
    cuts.push_back(
        {BoxOf(options_.regions[i], options_.unit, size),
         options_.several ? base::JoinPath(parts.folder, name, parts.extension) : AsidePath(parts.extension)});
  }
  return cuts;
}

std::string WatchCut::AsidePath(const std::string& extension) const {
  return program_.AppPath(std::string(job::work_files::kResultStem) + "." + extension);
}

imaging::FileWork WatchCut::WorkOf(const std::string& path, const std::vector<RegionCut>& cuts) const {
  const imaging::Alpha alpha = options_.fast ? imaging::Alpha::OnWhite : imaging::Alpha::Kept;
  return RegionWork(path, cuts, job::ReadCutSettings(program_).quality, alpha);
}

std::optional<imaging::FileWork> WatchCut::Foresee(const std::string& path, base::Size size) const {
  if (size.Empty() || IsSmall(size)) return std::nullopt;
  imaging::FileWork work = WorkOf(path, CutsOf(path, size));
  if (work.Empty()) return std::nullopt;
  return work;
}

// If the fast decode fails, uses the other one.
RegionSource WatchCut::Open(const std::string& path, const std::vector<RegionCut>& cuts) const {
  using Decode = RegionSource::Decode;
  RegionSource::Options options{.extension = base::SplitPath(path).extension,
                                .quality = job::ReadCutSettings(program_).quality,
                                .work = WorkOf(path, cuts)};
  if (options_.fast) {
    options.decode = Decode::Once;
    options.alpha = imaging::Alpha::OnWhite;
    RegionSource fast(program_.images, program_.saver, path, options);
    if (fast.Opened()) return fast;
    options.alpha = imaging::Alpha::Kept;
    options.work = {};
  }
  options.decode = options_.several ? Decode::Once : Decode::ForEach;
  return {program_.images, program_.saver, path, options};
}

// Cuts into a work file first, so that a source that another program has replaced meanwhile is not overwritten.
host::Status WatchCut::CutInPlace(const job::RunFile& file, const RegionCut& cut, base::Size size, std::string& note) {
  if (host::Status inside = CheckInside(cut, size); !inside) return inside;
  const host::Status made = Open(file.path, {cut}).Cut(cut);
  if (!made) return made;
  if (job::ReadCutSettings(program_).keepExif && program_.outputTools) {
    const host::Status copied = program_.outputTools->CopyExif(file.path, cut.output);
    if (!copied) note = "Exif没有保留：" + copied.Why();
  }
  const auto now = StampOf(program_.host.files, file.path);
  if (!now || !file.settled || !Unchanged(*file.settled, *now)) return {Problem::Damaged, "图片在裁剪期间被改动"};
  const host::Files::ReplacedToTrash original(program_.host.files, file.path);
  return program_.saver.Deliver(cut.output, file.path);
}

host::Status WatchCut::CutBeside(const job::RunFile& file, const std::vector<RegionCut>& cuts, base::Size size,
                                 std::vector<std::string>& outputs) {
  RegionSource picture = Open(file.path, cuts);
  if (!picture.Opened()) return picture.Opened();
  host::Status failure;
  for (const RegionCut& cut : cuts) {
    program_.host.pump.Turn();
    if (program_.flags.StopRequested) return {Problem::Stopped, "已停止，未处理完"};
    const host::Files::ReplacedToTrash earlier(program_.host.files, cut.output);
    host::Status made = CheckInside(cut, size);
    if (made) made = picture.Cut(cut);
    if (made) outputs.push_back(cut.output);
    if (!made && failure) failure = made;
  }
  return failure;
}

}  // namespace quillon::regions
