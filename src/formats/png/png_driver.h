// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <optional>
#include <string>

#include "formats/format_cut.h"
#include "job/cut/cut_steps.h"

namespace quillon::formats {

// Cut mode 2: cuts PNG files and keeps their transparency. What lies outside a source is transparent. The result is
// saved in place of the output at once; a source is replaced when the result is complete.
class PngModeCut final : public FormatCut {
 public:
  explicit PngModeCut(job::Program& program) : FormatCut(program, job::CutMode::Png) {}

  std::string Name() const override { return "PngCut"; }

 protected:
  std::string FitRectangle(job::CutFile& file) const override;
  std::optional<imaging::FileRequest> RequestFor(const job::CutFile& file) const override { return Request(file); }
  // A picture of another kind is never replaced by a png, nor an animated png by its first frame.
  job::Step CheckSource(job::CutFile& file) override;
  host::Status CutPicture(job::CutFile& file, std::string& made) override;
  const char* WhyNotTurned() const override { return "透明Png裁剪只裁剪，不能旋转或扩边"; }

 private:
  static imaging::PngCutRequest Request(const job::CutFile& file);
};

}  // namespace quillon::formats
