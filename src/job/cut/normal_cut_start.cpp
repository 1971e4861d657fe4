// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "job/cut/normal_cut.h"
#include "job/program.h"
#include "job/settings/cut_settings.h"

namespace quillon::job {

// Options are refused where they are chosen, but a part may also have been taken away since.
bool NormalCut::ResourcesThere() {
  const Flags& flags = program_.flags;
  const Form1& form = program_.form1;
  const bool pdf = Selected<OutType>(form.CmbOutType) == OutType::Pdf;
  const bool missing = (flags.ManualCutMode && !program_.manualFrame) ||
                       (form.ChCutAndArray.On() && !program_.sheets) ||
                       ((flags.ToCmyk || pdf) && !program_.outputTools);
  if (missing) program_.AskMissingResource();
  return !missing;
}

bool NormalCut::InputThere() {
  return program_.context.window.Ensure(program_.flags.LargeCapacityMode ? Need::InputFolder : Need::ListedFiles);
}

bool NormalCut::OutputThere() {
  const bool needed = !program_.form1.ChOver.On() || program_.form1.ChCutAndArray.On();
  return !needed || program_.context.window.Ensure(Need::OutputFolder);
}

// The canvas serves the border and the sheets. A run without one still cuts, so a failure here is passed over.
void NormalCut::PrepareCanvas(bool withArray) {
  const bool border = program_.flags.AdvancedOptionsLoaded && program_.fBaseOpt.ChAddBoard.On();
  if (!border && !withArray) return;
  program_.WriteCanvas();
  const std::string path = program_.AppPath("Canvas.bmp");
  (void)program_.images.ZoomPic(path, path, program_.flags.FixW, program_.flags.FixH);
}

bool NormalCut::PrepareSheets() { return program_.sheets->Prepare(); }

std::vector<std::string> NormalCut::HideWindows() {
  std::vector<std::string> hidden;
  for (const char* name : {"FGifCut", "FBaseOpt", "FCutPre", "FTiffOps", "FPdfOps", "FArray"}) {
    if (name == std::string("FCutPre") && program_.flags.ManualCutMode) continue;
    controls::Window* window = program_.windows.FindWindow(name);
    if (!window || !window->Loaded() || !window->Visible()) continue;
    window->Hide();
    hidden.emplace_back(name);
  }
  return hidden;
}

}  // namespace quillon::job
