// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "job/settings/cut_settings.h"

#include "base/number_text.h"
#include "base/path_text.h"
#include "job/program.h"
#include "job/settings/geometry.h"
#include "job/settings/lists.h"

namespace quillon::job {
namespace {

void ReadAdvanced(const Program& program, CutSettings& options) {
  const FBaseOpt& window = program.fBaseOpt;
  options.frameOnly = window.ChFrmOnly.On();
  options.omitFolders = window.ChOmitFolds.On();
  options.extensionCase = static_cast<job::ExtensionCase>(window.CmbExtCase.Index());
  options.zoomBefore = window.ChZoomAndCut.On() && !options.frameOnly;
  options.zoomAfter = (window.ChCutAndZoom.On() || program.flags.CutThenZoom) && !options.frameOnly;
  options.zoom = window.CmbZoom.Text();
  options.rotateRule = options.frameOnly ? 0 : window.CmbRotate.Index();
  options.angle = window.TAngle.Number();
  options.rotateCut = window.ChRotateCut.On();
  options.restore = window.ChRecover.On();
  options.toGray = window.ChToGray.On();
  options.threshold = window.ChToWB.On();
  options.invert = window.ChInvert.On();
  options.ownDpi = base::LeadingNumber(window.CmbDPI.Text()) > 0;
  options.columns = window.TSmalS[4].Integer();
  options.rows = window.TSmalS[5].Integer();
  options.split = window.ChSplit.On() && !options.frameOnly && (options.columns > 1 || options.rows > 1);
  options.addBoard = window.ChAddBoard.On();
  for (std::size_t i = 0; i < options.boardMm.size(); ++i) options.boardMm[i] = window.TBoard[i].Number();
  options.boardColour = window.PBoardColor.Colour();
}

// The folder below which a source keeps its structure: a drive in front is dropped.
std::string WithoutDrive(const std::string& folder) {
  return folder.size() >= 2 && folder[1] == ':' ? folder.substr(2) : folder;
}

bool HasExtension(const std::string& extension, std::initializer_list<const char*> wanted) {
  const std::string lower = base::ToLowerAscii(extension);
  for (const char* one : wanted) {
    if (lower == one) return true;
  }
  return false;
}

}  // namespace

CutSettings ReadCutSettings(const Program& program) {
  const Form1& form = program.form1;
  const Flags& flags = program.flags;
  CutSettings options;
  options.outFolder = form.LOutDir.Value();
  options.outType = form.CmbOutType.Text();
  options.over = form.ChOver.On();
  options.keepFolders = form.ChKeepDir.On();
  options.quality = form.TQuality.Integer();
  options.dpi = flags.OutDpi;
  options.preset = form.CmbKeepCut.Index();
  options.fixedSize = form.ChFixCut.On();
  options.padToSize = form.ChAddToSize.On();
  options.extendRight = form.ChMode1.On();
  options.FixW = flags.FixW;
  options.FixH = flags.FixH;
  options.manual = flags.ManualCutMode;
  options.keepExif = flags.KeepExif;
  options.blackWhite = flags.ToBlackWhite;
  options.toCmyk = flags.ToCmyk;
  options.smallest = FilterThresholds(program);
  if (flags.AdvancedOptionsLoaded) ReadAdvanced(program, options);
  return options;
}

base::Size FilterThresholds(const Program& program) {
  const FBaseOpt& window = program.fBaseOpt;
  if (!program.flags.AdvancedOptionsLoaded || !window.ChFilter.On()) return {};
  return {window.TSmalS[0].Integer(), window.TSmalS[1].Integer()};
}

bool TooSmall(base::Size picture, base::Size thresholds) {
  return !picture.Empty() && (picture.width < thresholds.width || picture.height < thresholds.height);
}

std::string TooSmallText(base::Size thresholds) {
  return "宽或高不足 " + std::to_string(thresholds.width) + "x" + std::to_string(thresholds.height) +
         " 像素，按“过滤小图片”跳过";
}

bool EffectsApply(const CutSettings& options) {
  if (options.frameOnly) return false;
  return options.rotateCut || options.zoomBefore || options.toGray || options.threshold || options.invert ||
         options.ownDpi;
}

double RuleAngle(const CutSettings& options, base::Size picture) {
  return PreRotation(options.rotateRule, picture, options.angle).value_or(0);
}

double TurnAngle(const CutSettings& options, base::Size picture) {
  const double angle = RuleAngle(options, picture);
  if (angle != 0) return angle;
  const bool turns = options.rotateCut && NeedRotate(picture.width, picture.height, kOwnAngle, options.angle);
  return turns ? options.angle : 0;
}

std::string OutputExtension(const CutSettings& options, const std::string& sourceExtension) {
  std::string extension = options.outType;
  if (options.over) extension = IsPsd(sourceExtension) ? "jpg" : sourceExtension;
  return job::CasedExtension(extension, options.extensionCase);
}

std::string OutputPath(const CutSettings& options, const std::string& folder, const std::string& name,
                       const std::string& outExtension) {
  if (options.over) return base::JoinPath(folder, name, outExtension);
  const std::string root = options.outFolder == "/" ? std::string() : options.outFolder;
  const std::string below = options.keepFolders ? root + WithoutDrive(folder) : options.outFolder;
  return base::JoinPath(below, name, outExtension);
}

bool IsPsd(const std::string& extension) { return HasExtension(extension, {"psd"}); }

bool IsGif(const std::string& extension) { return HasExtension(extension, {"gif"}); }

bool IsJpeg(const std::string& extension) { return HasExtension(extension, {"jpg", "jpeg", "jpe", "jfif"}); }

}  // namespace quillon::job
