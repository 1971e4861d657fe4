// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "job/list/file_intake_admission.h"

#include <utility>

#include "base/utf8.h"
#include "job/list/file_intake.h"
#include "job/program.h"
#include "job/settings/cut_settings.h"

namespace quillon::job {
namespace {

constexpr int kGifMode = 1;
constexpr int kPdfMode = 3;
constexpr int kTiffMode = 5;
constexpr int kDefaultPageDpi = 72;

}  // namespace

AdmissionRule::AdmissionRule(Program& program) : program_(program), mode_(program.form1.CmbCutMode.Index()) {}

bool AdmissionRule::CountsPages() const { return mode_ == kGifMode || mode_ == kPdfMode || mode_ == kTiffMode; }

bool AdmissionRule::Ready() {
  if (!CountsPages() || program_.pageCounter) return true;
  program_.AskMissingResource();
  program_.form1.CmbCutMode.Select(0);
  return false;
}

std::string AdmissionRule::FilterText() const {
  if (filtered_ == 0) return {};
  const base::Size least = ReadCutSettings(program_).smallest;
  return "  过滤小图片：" + std::to_string(filtered_) + " 张不足 " + std::to_string(least.width) + "x" +
         std::to_string(least.height) + " 像素，未加入";
}

void AdmissionRule::Refuse(const std::string& path, const std::string& why) {
  program_.form1.LStatus.SetText(program_.files.StatusText() + "  未加入：" + base::DisplayText(path) + "（" + why +
                                 "）");
  if (program_.observer) program_.observer->FileNotListed(path, why);
  if (!std::exchange(asked_, true)) program_.Ask(kNoSize);
}

Admission AdmissionRule::Admit(const std::string& path) {
  Flags& flags = program_.flags;
  flags.InfoWidth = flags.InfoHeight = "0";
  imaging::ImageFacts facts;
  const host::Status measured = program_.images.ImageInfo(path, facts, imaging::Want::SizeAndDpi);
  if (!measured) facts = {};
  const int pageDpi = flags.OutDpi > 0 ? flags.OutDpi : kDefaultPageDpi;
  const Pages pages = CountsPages() ? program_.pageCounter->Count(mode_, path, pageDpi) : Pages();
  if (mode_ == kPdfMode) facts = {pages.first.width, pages.first.height, pageDpi};
  flags.InfoWidth = std::to_string(facts.width);
  flags.InfoHeight = std::to_string(facts.height);

  FileRow row;
  row.width = facts.width;
  row.height = facts.height;
  row.dpi = facts.dpi;
  row.pages = pages.count;

  if (facts.width == 0 || facts.height == 0) {
    Refuse(path, measured ? "图片的宽或高为 0" : measured.Why());
    return Admission::Ended;
  }
  if (const base::Size least = ReadCutSettings(program_).smallest; TooSmall({facts.width, facts.height}, least)) {
    ++filtered_;
    if (program_.observer) program_.observer->FileFilteredOut(path, TooSmallText(least));
    return Admission::PassedOver;
  }
  if (const auto file = program_.host.files.Stat(path)) row.bytes = file->size;
  program_.files.Grow({facts.width, facts.height}, row.bytes);
  if (CountsPages() && mode_ != kPdfMode && row.pages <= 1) {
    program_.host.boxes.Beep();
    return Admission::PassedOver;
  }
  program_.files.AppendPath(path, std::move(row));
  if (flags.ArrayLoaded && program_.sheets) program_.sheets->Listed(path, 1);
  return Admission::Added;
}

}  // namespace quillon::job
