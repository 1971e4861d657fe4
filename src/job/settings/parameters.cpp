// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "job/settings/parameters.h"

#include "job/program.h"

namespace quillon::job {

CutParameters ReadCutParameters(const Program& program) {
  const Form1& form = program.form1;
  CutParameters parameters;
  parameters.ML = form.TCutValue[0].Number();
  parameters.MT = form.TCutValue[1].Number();
  parameters.MR = form.TCutValue[2].Number();
  parameters.MB = form.TCutValue[3].Number();
  parameters.FixW = program.flags.FixW;
  parameters.FixH = program.flags.FixH;
  parameters.TSmalS2 = program.fBaseOpt.TSmalS[2].Number();
  parameters.TSmalS3 = program.fBaseOpt.TSmalS[3].Number();
  parameters.ChCutA = form.ChCutA.On();
  parameters.ChFixCut = form.ChFixCut.On();
  parameters.ChAutoZoom = form.ChAutoZoom.On();
  parameters.ChFull = form.ChFull.On();
  parameters.AdvancedOptionsLoaded = program.flags.AdvancedOptionsLoaded;
  parameters.SkipCutThisImage = program.flags.SkipCutThisImage;
  return parameters;
}

}  // namespace quillon::job
