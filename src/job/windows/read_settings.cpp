// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
// The only source that reads the parameters of a cut from the windows and flags. It is not in the room settings, which
// includes no window.
#include "base/number_text.h"
#include "job/program.h"
#include "job/settings/cut_settings.h"

namespace quillon::job {
namespace {

void ReadSize(const FBaseOpt& window, CutSettings& settings) {
  if (window.ChFilter.On()) settings.smallest = {window.TSmalS[0].Integer(), window.TSmalS[1].Integer()};
  settings.columns = window.TSmalS[4].Integer();
  settings.rows = window.TSmalS[5].Integer();
  const bool pieces = settings.columns > 1 || settings.rows > 1;
  settings.split = window.ChSplit.On() && !settings.frameOnly && pieces;
}

void ReadChanges(const FBaseOpt& window, const Flags& flags, CutSettings& settings) {
  settings.zoomBefore = window.ChZoomAndCut.On() && !settings.frameOnly;
  settings.zoomAfter = flags.CutThenZoom && !settings.frameOnly;
  settings.zoom = window.CmbZoom.Text();
  settings.rotateRule = settings.frameOnly ? 0 : window.CmbRotate.Index();
  settings.angle = window.TAngle.Number();
  settings.rotateCut = window.ChRotateCut.On();
  settings.restore = window.ChRecover.On();
  settings.toGray = window.ChToGray.On();
  settings.blackWhite = flags.ToBlackWhite;
  settings.invert = window.ChInvert.On();
}

void ReadBorder(const FBaseOpt& window, CutSettings& settings) {
  settings.addBoard = window.ChAddBoard.On();
  for (std::size_t i = 0; i < settings.boardMm.size(); ++i) settings.boardMm[i] = window.TBoard[i].Number();
  settings.boardColour = window.PBoardColor.Colour();
}

void ReadAdvanced(const FBaseOpt& window, const Flags& flags, CutSettings& settings) {
  settings.frameOnly = window.ChFrmOnly.On();
  settings.omitFolders = window.ChOmitFolds.On();
  settings.extensionCase = Selected<ExtensionCase>(window.CmbExtCase);
  settings.ownDpi = base::LeadingNumber(window.CmbDPI.Text()) > 0;
  ReadSize(window, settings);
  ReadChanges(window, flags, settings);
  ReadBorder(window, settings);
}

// A result of an exact size is not turned back or scaled again. It is padded by a border without width.
void ApplyExactSize(CutSettings& settings) {
  if (!settings.geometry.Exact() || settings.frameOnly) return;
  settings.zoomAfter = false;
  settings.restore = false;
  if (!settings.geometry.PadsToExact() || settings.addBoard) return;
  settings.addBoard = true;
  settings.boardMm = {};
}

}  // namespace

CutSettings ReadCutSettings(const Program& program) {
  const Form1& form = program.form1;
  const Flags& flags = program.flags;
  CutSettings settings;
  settings.geometry = ReadCutGeometry(program);
  settings.outFolder = form.LOutDir.Value();
  settings.outType = form.CmbOutType.Text();
  settings.over = form.ChOver.On();
  settings.keepFolders = form.ChKeepDir.On();
  settings.quality = form.TQuality.Integer();
  settings.dpi = flags.OutDpi;
  settings.preset = form.CmbKeepCut.Index();
  settings.padToSize = form.ChAddToSize.On();
  settings.extendRight = form.ChMode1.On();
  settings.manual = flags.ManualCutMode;
  settings.keepExif = flags.KeepExif;
  settings.toCmyk = flags.ToCmyk;
  if (flags.AdvancedOptionsLoaded) ReadAdvanced(program.fBaseOpt, flags, settings);
  ApplyExactSize(settings);
  return settings;
}

CutGeometry ReadCutGeometry(const Program& program) {
  const Form1& form = program.form1;
  const FBaseOpt& options = program.fBaseOpt;
  const Flags& flags = program.flags;
  return {.ML = form.TCutValue[0].Number(),
          .MT = form.TCutValue[1].Number(),
          .MR = form.TCutValue[2].Number(),
          .MB = form.TCutValue[3].Number(),
          .FixW = flags.FixW,
          .FixH = flags.FixH,
          .TSmalS2 = options.TSmalS[2].Number(),
          .TSmalS3 = options.TSmalS[3].Number(),
          .ChCutA = form.ChCutA.On(),
          .ChFixCut = form.ChFixCut.On(),
          .ChAutoZoom = form.ChAutoZoom.On(),
          .ChFull = form.ChFull.On(),
          .AdvancedOptionsLoaded = flags.AdvancedOptionsLoaded,
          .SkipCutThisImage = flags.SkipCutThisImage,
          .ChAsFramed = form.ChAsFramed.On(),
          .ChAutoCenter = form.ChAutoCenter.On(),
          .ChExact = form.ChExact.On(),
          .ChExactPad = form.ChExactPad.On(),
          .CmbAnchor = form.CmbAnchor.Index()};
}

}  // namespace quillon::job
