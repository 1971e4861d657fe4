// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "formats/formats.h"

#include "formats/gif/gif_driver.h"
#include "formats/png/png_driver.h"
#include "job/run/list_run.h"

namespace quillon::formats {

Formats::Formats(job::Program& program) : pageCounter(program), fGifCut(program), fPngCut(program) {
  program.windows.Add(fGifCut);
  program.windows.Add(fPngCut);
  program.modes.insert({job::CutMode::Gif, job::CutMode::Png});
  program.form1.MenuGifCut.SetHandler([this, &program] {
    GifCut driver(program, fGifCut);
    StartRun(program.context, driver);
  });
  program.form1.MenuPngCut.SetHandler([&program] {
    PngModeCut driver(program);
    StartRun(program.context, driver);
  });
}

}  // namespace quillon::formats
