// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "regions/timed/folder_watch.h"

#include <algorithm>
#include <array>
#include <utility>

#include "base/path_text.h"
#include "base/utf8.h"
#include "job/cut/cut_file.h"
#include "job/work_files.h"

namespace quillon::regions {
namespace {

using host::Problem;
using job::DiscardQueue;
using job::Result;

// Sources that are discarded together, so that one wait for the disk does for all of them.
constexpr std::size_t kDiscardedTogether = 32;

struct TypeFilter {
  const char* item;
  std::array<const char*, 7> extensions;
};

constexpr std::array<TypeFilter, 6> kTypes{{
    {"jpg/bmp/png/gif/tif常用类型", {"jpg", "jpeg", "bmp", "png", "gif", "tif", "tiff"}},
    {"*.jpg/jpeg", {"jpg", "jpeg"}},
    {"*.gif", {"gif"}},
    {"*.bmp", {"bmp"}},
    {"*.png", {"png"}},
    {"*.tif/tiff", {"tif", "tiff"}},
}};

// Whether a failure says that the file is not whole, or not there any more, so that it was not really tried.
bool NotWhole(const host::Status& status) {
  const Problem problem = status.GetProblem();
  return problem == Problem::Damaged || problem == Problem::Unsupported || problem == Problem::Missing;
}

}  // namespace

std::vector<std::string> WatchTypes() {
  std::vector<std::string> items;
  items.reserve(kTypes.size());
  for (const TypeFilter& type : kTypes) items.emplace_back(type.item);
  return items;
}

bool PassesType(int type, const std::string& name) {
  if (type < 0 || type >= static_cast<int>(kTypes.size()) || name.starts_with('.')) return false;
  const std::string extension = base::ToLowerAscii(base::SplitPath(name).extension);
  const auto& extensions = kTypes[static_cast<std::size_t>(type)].extensions;
  return std::any_of(extensions.begin(), extensions.end(), [&](const char* one) { return one && extension == one; });
}

FolderWatch::FolderWatch(job::Program& program, WatchOptions options, WatchHooks hooks)
    : program_(program),
      options_(std::move(options)),
      hooks_(std::move(hooks)),
      looks_(program.host, options_.folder,
             [this](const std::string& name) { return PassesType(options_.type, name); }),
      ledger_(program.context, 0),
      discards_(program.context) {}

std::string FolderWatch::PathOf(const std::string& name) const { return base::JoinPath(options_.folder, name); }

void FolderWatch::Round() {
  const std::vector<std::string> ready = looks_.Poll();
  if (toldMissing_ != !looks_.FolderThere()) {
    toldMissing_ = !looks_.FolderThere();
    hooks_.note(toldMissing_ ? "工作目录打不开，恢复之后自动继续：" + base::DisplayText(options_.folder)
                             : std::string());
  }
  for (const std::string& name : ready) {
    if (!hooks_.goesOn()) break;
    Work(name);
    if (discards_.Size() >= kDiscardedTogether) DiscardSources();
    program_.host.pump.Turn();
  }
  DiscardSources();
  ledger_.Forget();
}

void FolderWatch::Work(const std::string& name) {
  const std::string path = PathOf(name);
  const std::optional<host::FileStamp> stamp = looks_.StampOf(name);
  imaging::ImageFacts facts;
  if (!stamp || !program_.images.ImageInfo(path, facts) || facts.width < 1 || facts.height < 1) {
    looks_.Refuse(name);
    return;
  }
  if (IsSmall(facts)) {
    looks_.Take(name);
    Report(name, Result::Skipped, "按“忽略小图片”跳过", "");
    return;
  }
  const std::vector<RegionCut> cuts = CutsOf(path, {facts.width, facts.height});
  host::Status status;
  if (!cuts.empty()) status = options_.several ? CutBeside(name, *stamp, cuts) : CutInPlace(path, *stamp, cuts.front());
  if (NotWhole(status)) {
    looks_.Refuse(name);
    return;
  }
  looks_.Take(name);
  if (!status) {
    Report(name, Result::None, status.Why(), "");
  } else if (!options_.several) {
    Report(name, Result::Written, "", path);
  }
}

bool FolderWatch::IsSmall(const imaging::ImageFacts& facts) const {
  if (!options_.sizeFilter) return false;
  const bool narrow = facts.width <= options_.smallWidth;
  const bool low = facts.height <= options_.smallHeight;
  return options_.both ? narrow && low : narrow || low;
}

std::vector<RegionCut> FolderWatch::CutsOf(const std::string& path, base::Size size) const {
  const base::PathParts parts = base::SplitPath(path);
  std::vector<RegionCut> cuts;
  for (std::size_t i = 0; i < options_.regions.size(); ++i) {
    const std::string name = options_.several ? parts.name + "_" + std::to_string(i + 1) : parts.name;
    cuts.push_back(
        {BoxOf(options_.regions[i], options_.unit, size), base::JoinPath(parts.folder, name, parts.extension)});
  }
  return cuts;
}

// A picture that cannot be loaded for the fast way goes the other one.
RegionSource FolderWatch::Open(const std::string& path) const {
  using Decode = RegionSource::Decode;
  RegionSource::Options options{.extension = base::SplitPath(path).extension};
  if (options_.fast) {
    options.decode = Decode::Once;
    options.alpha = imaging::Alpha::OnWhite;
    RegionSource fast(program_.images, program_.saver, path, options);
    if (fast.Opened()) return fast;
    options.alpha = imaging::Alpha::Kept;
  }
  options.decode = options_.several ? Decode::Once : Decode::ForEach;
  return {program_.images, program_.saver, path, options};
}

bool FolderWatch::IsStill(const std::string& path, const host::FileStamp& stamp) const {
  const auto now = StampOf(program_.host.files, path);
  return now && Unchanged(stamp, *now);
}

// Cut aside first: a source that another program has replaced meanwhile is not written over.
host::Status FolderWatch::CutInPlace(const std::string& path, const host::FileStamp& stamp, const RegionCut& cut) {
  const std::string work =
      program_.AppPath(std::string(job::work_files::kResultStem) + "." + base::SplitPath(path).extension);
  const host::Status made = Open(path).Cut({cut.box, work}, program_.form1.TQuality.Integer());
  if (!made) return made;
  if (!IsStill(path, stamp)) return {Problem::Damaged, "图片在裁剪期间被改动"};
  return program_.saver.Copy(work, path);
}

host::Status FolderWatch::CutBeside(const std::string& name, const host::FileStamp& stamp,
                                    const std::vector<RegionCut>& cuts) {
  RegionSource picture = Open(PathOf(name));
  if (!picture.Opened()) return picture.Opened();
  DiscardQueue::Source source{0, PathOf(name), {}};
  host::Status failure;
  for (const RegionCut& cut : cuts) {
    program_.host.pump.Turn();
    if (program_.flags.StopRequested) return {Problem::Stopped, "已停止，未处理完"};
    host::Status made = cut.box.Empty() ? host::Status() : MakeRoom(cut.output);
    if (made) made = picture.Cut(cut, program_.form1.TQuality.Integer());
    if (made) source.outputs.push_back(cut.output);
    if (!made && failure) failure = made;
  }
  if (failure) {
    stamps_[source.path] = stamp;
    discards_.Add(std::move(source));
  }
  return failure;
}

// What stands under the name of a region is not ours to write over.
host::Status FolderWatch::MakeRoom(const std::string& target) {
  if (!program_.host.files.Stat(target)) return host::Status::Ok();
  host::Status gone = program_.host.files.Discard(target);
  if (gone) return gone;
  return {Problem::Denied, "同名文件无法移入回收站：" + base::DisplayText(target)};
}

void FolderWatch::DiscardSources() {
  if (discards_.Size() == 0) return;
  discards_.Drain(
      program_.host.files.Flush(), [this](const auto& source, const host::Status& read) { return Judge(source, read); },
      [this](const auto& source, const host::Status& gone) {
        if (!gone) hooks_.note("源文件没能移入回收站：" + base::DisplayText(source.path) + "：" + gone.Why());
      });
  stamps_.clear();
}

DiscardQueue::Verdict FolderWatch::Judge(const DiscardQueue::Source& source, const host::Status& read) {
  const std::string name = source.path.substr(source.path.rfind('/') + 1);
  if (!read) {
    Report(name, Result::None, "裁出的文件读不回来，源文件已保留", "");
    return DiscardQueue::Verdict::Keep;
  }
  Report(name, Result::Written, "", source.outputs.front());
  if (IsStill(source.path, stamps_.at(source.path))) return DiscardQueue::Verdict::Discard;
  hooks_.note(base::DisplayText(name) + "：图片在裁剪期间被改动，源文件已保留");
  return DiscardQueue::Verdict::Keep;
}

void FolderWatch::Report(const std::string& name, Result result, const std::string& why, const std::string& output) {
  const std::size_t written = ledger_.Totals().written + (result == Result::Written ? 1 : 0);
  hooks_.counted(written);
  if (result == Result::None) hooks_.note(base::DisplayText(name) + "：" + why);
  ledger_.Add({0, PathOf(name), output, result, why});
}

}  // namespace quillon::regions
