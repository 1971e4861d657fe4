// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <string>
#include <vector>

#include "formats/format_cut.h"
#include "formats/gif/fgifcut.h"

namespace quillon::formats {

// Cut mode 1: cuts every frame of animated GIFs with the helper CutMedia. MenuGifCut over the list is one run; the
// same object handles a file of a large-capacity run.
//
// The helper always writes the work file Tmp.gif, which is removed before each file, so that the result of one file is
// never mistaken for that of another. It is checked (size, number of frames) and then copied to the output.
class GifCut final : public FormatCut {
 public:
  GifCut(job::Program& program, const FGifCut& options) : FormatCut(program, job::CutMode::Gif), options_(options) {}

  void Begin(job::RunLedger& ledger) override;
  std::string Name() const override { return "GifCut"; }
  std::vector<std::string> Windows() const override { return {"Form1", "FBaseOpt", "FGifCut"}; }

 protected:
  // CutMedia would make a gif of 256 colours of another picture, which must not replace it.
  job::Step CheckSource(job::CutFile& file) override;
  std::string FitRectangle(job::CutFile& file) const override;
  host::Status CutPicture(job::CutFile& file, std::string& made) override;
  const char* WhyNotTurned() const override { return "动态Gif的每一帧都要裁，不能旋转或扩边"; }

 private:
  // Runs CutMedia once, with a high quality twice.
  host::Status RunHelper(const job::CutFile& file, const std::string& target);
  // Fails unless the work file has the frames of the source, in the size that the options give.
  host::Status Check(const job::CutFile& file, const std::string& target) const;

  const FGifCut& options_;
  // Of the options, read at the start like all settings.
  bool highQuality_ = false;
  bool removesLogo_ = false;
  bool logoFramed_ = false;
};

}  // namespace quillon::formats
