// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "job/cut/first_page.h"

#include <memory>

#include "imaging/io/open_bytes.h"
#include "imaging/measure/frame_count.h"
#include "imaging/measure/measure.h"

namespace quillon::job {
namespace {

using imaging::Format;

// "源文件有 8 页" or "源文件有 8 帧".
std::string CountText(const PagesOfFile& pages) {
  return "源文件有 " + std::to_string(pages.count) + (pages.format == Format::Tiff ? " 页" : " 帧");
}

const char* FirstText(Format format) { return format == Format::Tiff ? "只取第一页" : "只取第一帧"; }

// An animated png has no mode of its own.
const char* ModeText(Format format) {
  if (format == Format::Tiff) return "；请用模式 5";
  return format == Format::Gif ? "；请用模式 1" : "；请输出到别的文件夹";
}

// A file whose structure is damaged counts as one page.
host::Status UnlessDamaged(const host::Status& counted) {
  const host::Problem problem = counted.GetProblem();
  const bool damaged = problem == host::Problem::Damaged || problem == host::Problem::Unsupported;
  return damaged ? host::Status::Ok() : counted;
}

}  // namespace

std::string PagesOfFile::Note() const { return Several() ? CountText(*this) + "，" + FirstText(format) : ""; }

std::string PagesOfFile::Refusal() const {
  return Several() ? CountText(*this) + "，普通裁剪" + FirstText(format) + "，未覆盖" + ModeText(format) : "";
}

host::Status CountPages(imaging::Services& images, const std::string& path, Format format, PagesOfFile& pages) {
  pages = {format};
  if (!CanHoldSeveral(format)) return host::Status::Ok();
  return UnlessDamaged(images.FramesIn(path, pages.count));
}

host::Status FindPages(const host::Files& files, const std::string& path, PagesOfFile& pages) {
  pages = {};
  std::shared_ptr<imaging::Bytes> bytes;
  if (host::Status opened = imaging::OpenBytes(files, path, {}, bytes); !opened) return UnlessDamaged(opened);
  imaging::HeaderFacts header;
  imaging::ReadHeader(*bytes, header);
  pages.format = header.format;
  return CanHoldSeveral(header.format) ? UnlessDamaged(imaging::CountFrames(*bytes, pages.count)) : host::Status::Ok();
}

}  // namespace quillon::job
