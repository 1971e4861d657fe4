// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "job/cut/cut_plan.h"

#include <memory>
#include <utility>
#include <vector>

#include "base/path_text.h"
#include "base/rect.h"
#include "job/cut/cut_steps.h"
#include "job/work_files.h"

namespace quillon::job {
namespace {

using host::Status;

// Predicts the steps of one file without executing them.
class Foresight {
 public:
  Foresight(const CutFile& known, base::Size size) : file_(known.run, known.row, known.listedPath) {
    file_.settings = known.settings;
    file_.OutExt = known.OutExt;
    file_.W = size.width;
    file_.H = size.height;
  }

  std::optional<CutPlan> Run() {
    const bool foreseen = ZoomBefore() && TurnBefore() && Cut() && Border();
    if (!foreseen || plan_.work.Empty()) return std::nullopt;
    return std::move(plan_);
  }

 private:
  const CutSettings& Settings() const { return file_.settings; }
  base::Size Size() const { return {file_.W, file_.H}; }
  void SetSize(base::Size size) {
    file_.W = size.width;
    file_.H = size.height;
  }

  bool ZoomBefore() {
    const auto size = SizeBeforeCut(Settings(), Size());
    if (!size) return true;
    if (!FitsZoomed(*size)) return false;
    const std::string zoomed = file_.program.AppPath(work_files::kZoomedSource);
    plan_.work.steps.emplace_back(imaging::ZoomRequest{file_.Src, zoomed, *size, file_.ExifWish()});
    file_.Src = zoomed;
    SetSize(*size);
    return true;
  }

  // A picture that is loaded has the size from before the rotation. Returns false if the output will not be written
  // under the predicted name.
  bool TurnBefore() {
    loaded_ = Size();
    const double angle = RuleAngle(Settings(), Size());
    if (angle != 0) Turn(angle);
    file_.turnedFirst = angle != 0;
    PredictTarget(file_);
    return !file_.run.ledger.KeepsExisting(file_.listedPath, ResultPath(file_));
  }

  void Turn(double angle) {
    steps_.emplace_back(imaging::RotateStep{angle, base::kWhite});
    SetSize(base::TurnedSize(Size(), angle));
    file_.RestoreAngle = -angle;
  }

  bool Cut() {
    if (Settings().frameOnly) return true;
    (void)FindRectangle(file_);
    const bool effects = EffectsApply(Settings()) && !OnlyOwnDpi(file_);
    if (effects) ApplyEffects();
    if (NothingToCut(file_)) return false;
    return effects || NeedsMemory(file_) ? CutInMemory() : CutToFile();
  }

  void ApplyEffects() {
    if (const double angle = AngleOfCut(Settings(), file_.RestoreAngle, Size()); angle != 0) {
      Turn(angle);
      PlaceRectangle(file_, Pass::AfterRotation);
    }
    const CutSettings& options = Settings();
    if (options.toGray) steps_.emplace_back(imaging::GreyStep{});
    if (options.blackWhite) steps_.emplace_back(imaging::ThresholdStep{kThresholdLevel});
    if (options.invert) steps_.emplace_back(imaging::InvertStep{});
  }

  bool CutInMemory() {
    const CutSettings& options = Settings();
    base::Size size{file_.rect.width, file_.rect.height};
    steps_.emplace_back(imaging::CutStep{file_.rect});
    if (const double angle = file_.RestoreAngle; angle != 0 && options.restore) {
      steps_.emplace_back(imaging::RotateStep{angle, options.boardColour, imaging::Turn::Back});
      size = base::TurnedSize(size, angle);
      file_.RestoreAngle = 0;
    }
    if (const auto zoomed = SizeAfterCut(Settings(), size)) {
      steps_.emplace_back(imaging::ResampleStep{*zoomed});
      size = *zoomed;
    }
    return AddEffects(file_.target, size,
                      {file_.CutQuality(), options.blackWhite, file_.ExifWish(), file_.OrientOfCut()});
  }

  // Returns false for a type that SaveByType does not know; the steps then save by the encoder.
  bool AddEffects(const std::string& destination, base::Size size, const imaging::SaveOptions& save) {
    const auto encoder = imaging::EncoderOfType(base::ToLowerAscii(file_.OutExt));
    if (!encoder) return false;
    imaging::EffectsRequest request{file_.Src, destination, loaded_, std::move(steps_)};
    request.dpi = Settings().dpi;
    request.encoder = *encoder;
    request.save = save;
    plan_.work.steps.emplace_back(std::move(request));
    Leave(destination, size);
    return true;
  }

  bool CutToFile() {
    imaging::CropRequest request = FileCrop(file_);
    if (request.encoder == imaging::Encoder::Gif) request = imaging::Services::AsGif(request);
    const std::string destination = request.destination;
    plan_.work.steps.emplace_back(std::move(request));
    Leave(destination, {file_.rect.width, file_.rect.height});
    return true;
  }

  bool Border() {
    const CutSettings& options = Settings();
    if (!options.addBoard) return !options.frameOnly;
    file_.latestFile = plan_.output;
    file_.latestSize = plan_.size;
    const std::string bordered = file_.WorkFileBeside(work_files::kResultStem, BorderSource(file_));
    if (options.frameOnly && options.padToSize) {
      const Fit fit = FitToSize(Size(), options.geometry.FixW, options.geometry.FixH);
      const base::Size canvas{options.geometry.FixW, options.geometry.FixH};
      steps_.emplace_back(imaging::PlaceStep{canvas, {fit.offsetX, fit.offsetY, fit.FitW, fit.FitH}});
      return AddEffects(bordered, canvas, {options.quality, options.blackWhite, file_.ExifWish()});
    }
    if (options.padToSize) file_.settings.boardColour = base::kWhite;
    imaging::BorderRequest request = BorderFor(file_, bordered, file_.RestoreAngle != 0 ? Turned::Yes : Turned::No);
    const base::Size total = request.total;
    plan_.work.steps.emplace_back(std::move(request));
    Leave(bordered, total);
    return true;
  }

  void Leave(const std::string& path, base::Size size) {
    plan_.output = path;
    plan_.size = size;
    plan_.encoder = imaging::EncoderFor(file_.OutExt);
  }

  CutFile file_;
  base::Size loaded_;
  std::vector<imaging::PixelStep> steps_;
  CutPlan plan_;
};

Status Save(CutFile& file, const CutPlan& plan, std::string content) {
  if (Status kept = KeepReplacedSource(file); !kept) return kept;
  // A work file of an earlier picture may be removed: it is no result.
  if (plan.output != file.Dst) (void)file.program.host.files.RemoveOwn(plan.output);
  const auto shared = std::make_shared<const std::string>(std::move(content));
  return file.program.saver.Save(plan.output,
                                 [&] { return file.program.images.SavePrefetched(shared, plan.output, plan.encoder); });
}

Prefetched GiveUp(CutFile& file, const Status& status) {
  (void)Fail(file, status);
  return Prefetched::FileDone;
}

}  // namespace

bool CutPlan::PlainCrop() const {
  return work.steps.size() == 1 && std::holds_alternative<imaging::CropRequest>(work.steps.front());
}

bool IsForeseeable(const CutRun& run, const CutSettings& settings) {
  const bool waits = settings.manual || settings.omitFolders || run.withArray;
  return !run.program.recovering && !waits && !settings.split;
}

std::optional<CutPlan> ForeseeCut(const CutFile& file, base::Size size) {
  if (size.Empty() || TooSmall(size, file.settings.smallest)) return std::nullopt;
  return Foresight(file, size).Run();
}

Prefetched UsePrefetched(CutFile& file) {
  if (!IsForeseeable(file.run, file.settings)) return Prefetched::None;
  const base::Size size{file.W, file.H};
  const std::optional<CutPlan> plan = ForeseeCut(file, size);
  if (!plan || plan->PlainCrop()) return Prefetched::None;
  std::optional<imaging::Services::PrefetchedFiles> ready;
  const Status waited = file.program.images.PopPrefetched(plan->work, ready);
  if (!waited) return GiveUp(file, waited);
  if (!ready) return Prefetched::None;
  if (NameOutput(file) == Step::FileDone) return Prefetched::FileDone;
  // The wait gave the window its turns, so that the parameters may have changed.
  file.program.host.pump.Turn();
  const std::optional<CutPlan> now = ForeseeCut(file, size);
  if (!now || now->work != plan->work) return Prefetched::None;
  WhitenPaddedBoard(file);
  const Status saved = Save(file, *plan, std::move(ready->front()));
  if (EndsFile(saved)) return GiveUp(file, saved);
  if (!saved) return Prefetched::None;
  file.latestFile = plan->output;
  file.latestSize = plan->size;
  return StopHere(file) == Step::FileDone ? Prefetched::FileDone : Prefetched::Used;
}

}  // namespace quillon::job
