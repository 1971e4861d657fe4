// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "formats/gif/gif_driver.h"

#include "base/path_text.h"
#include "formats/gif/gif_math.h"
#include "job/cut/cut_outcome.h"
#include "job/cut/cut_steps.h"
#include "job/work_files.h"
#include "tools/helper_calls.h"

namespace quillon::formats {
namespace {

using host::Problem;
using host::Status;

// The work file of the first pass. It stays until the next file, so that a palette of one file is never used for
// another one.
constexpr const char* kPalette = "paletten.png";

// Removes what an earlier file has left under the name. A folder there is none of the program's.
Status ClearWorkFile(host::Files& files, const std::string& path) {
  if (!files.IsFolder(path)) return files.RemoveOwn(path);
  return {Problem::Denied, "程序文件夹里的“" + base::SplitPath(path).name + "." + base::SplitPath(path).extension +
                               "”是文件夹，请先移走"};
}

}  // namespace

job::Step GifCut::CheckSource(job::CutFile& file) {
  const bool gif = file.format == imaging::Format::Gif;
  return gif ? job::Step::Next : Fail(file, "文件内容不是 gif，本模式只裁动态Gif");
}

void GifCut::Begin(job::RunLedger& ledger) {
  highQuality_ = options_.HighQuality();
  removesLogo_ = options_.RemovesLogo();
  logoFramed_ = options_.LogoFramed();
  FormatCut::Begin(ledger);
}

std::string GifCut::FitRectangle(job::CutFile& file) const {
  base::Rect& rect = file.rect;
  const base::Size picture{file.W, file.H};
  if (removesLogo_) {
    if (!(file.settings.manual ? options_.LogoFramed() : logoFramed_)) return job::kFrameTheLogoText;
    if (!rect.Empty()) rect = LogoRegion(rect, picture);
    return rect.Empty() ? job::kFrameTheLogoText : "";
  }
  if (std::string why = job::NothingToCutText(rect, picture); !why.empty()) return why;
  return job::OutsideText(rect, picture);
}

Status GifCut::CutPicture(job::CutFile& file, std::string& made) {
  job::Program& program = GetProgram();
  made = program.AppPath(job::work_files::kCutFrames);
  const Status run = program.saver.Save(made, [&] { return RunHelper(file, made); });
  return run ? Check(file, made) : run;
}

// The first pass may fail: the second one needs its palette only if the frames cannot be cut without colours, and then
// reports that there is none.
Status GifCut::RunHelper(const job::CutFile& file, const std::string& target) {
  tools::Tools& tools = GetProgram().tools;
  if (Status cleared = ClearWorkFile(GetProgram().host.files, target); !cleared) return cleared;
  const std::string palette = GetProgram().AppPath(kPalette);
  const auto run = [&](const std::string& text) { return tools::RunCutMedia(tools, text, {file.Src, target}); };
  if (!highQuality_) return run(CropText(file.Src, file.rect, target));
  if (Status cleared = ClearWorkFile(GetProgram().host.files, palette); !cleared) return cleared;
  if (Status first = run(PaletteText(file.Src, palette)); job::EndsFile(first)) return first;
  return run(removesLogo_ ? PaletteLogoText(file.Src, palette, file.rect, target)
                          : PaletteCropText(file.Src, palette, file.rect, target));
}

Status GifCut::Check(const job::CutFile& file, const std::string& target) const {
  imaging::Services& images = GetProgram().images;
  int expected = 0;
  const Status counted = images.FramesIn(file.Src, expected);
  // What is wrong with the source says more than a missing result.
  if (!counted) return counted;
  if (!GetProgram().host.files.IsFile(target)) return {Problem::Damaged, "CutMedia 没有得到结果，Gif 可能已损坏"};
  imaging::ImageFacts facts;
  if (Status measured = images.ImageInfo(target, facts); !measured) return measured;
  const base::Size wanted = removesLogo_ ? base::Size{file.W, file.H} : base::Size{file.rect.width, file.rect.height};
  const base::Size size{facts.width, facts.height};
  if (size != wanted)
    return {Problem::Damaged, "结果是 " + base::SizeText(size) + " 像素，应为 " + base::SizeText(wanted)};
  int frames = 0;
  if (Status read = images.FramesIn(target, frames); !read) return read;
  if (frames != expected) {
    return {Problem::Damaged, "结果有 " + std::to_string(frames) + " 帧，应为 " + std::to_string(expected) + " 帧"};
  }
  return Status::Ok();
}

}  // namespace quillon::formats
