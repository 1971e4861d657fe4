// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
// The manual step of a batch: how a picture is shown, turned, widened and left.
#include <algorithm>

#include "formats/tools/back_image.h"
#include "regions/cut_frame.h"

namespace quillon::regions {
namespace {

constexpr const char* kWaiting = "裁剪框预览    请人工指定本张图的裁剪框，指定完毕之后单击【下一张】或【本图不裁剪】";
constexpr const char* kWaitingForNext = "裁剪框预览    请人工指定本张图的裁剪框，指定完毕之后单击【下一张】";
constexpr const char* kBetween = "裁剪框预览";
constexpr const char* kRotateQuestion = "确定旋转？\r\n是——旋转\r\n否——旋转，下次不再提示";
constexpr int kYesNoCancelQuestion = 35;
constexpr const char* kAgreed = "1";
constexpr const char* kGrownOnce = "每张图片只扩边一次";
constexpr int kWorkQuality = 98;
constexpr int kLargestShown = 8000;
constexpr double kSecondsBetweenTurns = 0.005;
// Steps of a decision.
constexpr char kTurnedLeft = 'A';
constexpr char kTurnedRight = 'Q';
constexpr char kGrown = 'S';

// A side above the limit is brought down to it, the other follows.
base::Size Reduced(base::Size size) {
  const int longer = std::max(size.width, size.height);
  const auto side = [&](int pixels) {
    return std::max(1, static_cast<int>(static_cast<long long>(pixels) * kLargestShown / longer));
  };
  return {side(size.width), side(size.height)};
}

}  // namespace

job::ManualFrame::Answer CutFrame::Ask(const std::string& source, const imaging::Image& turned) {
  job::Flags& flags = program_.flags;
  const std::string listed = ListedSource(source);
  flags.CurrentImagePath = source;
  flags.ManualStepDone = false;
  flags.SkipCutThisImage = false;
  steps_.clear();
  if (!decisions_.Begun() && !decisions_.Begin()) {
    flags.StopRequested = true;
    return Answer::Given;
  }
  decisions_.NoteCut();
  if (decisions_.CutInPlace(listed)) return Answer::CutBefore;
  UpdateImage(source, turned);
  if (const auto decision = decisions_.Of(listed)) {
    Replay(*decision);
    return Answer::Given;
  }
  const std::size_t row = program_.form1.MSF.Selected();
  const bool more = row > 0 && row < program_.files.RowCount();
  Preview().SetUpcoming(more ? program_.files.Row(row).Path() : std::string());
  WriteBack();
  Wait();
  if (flags.ManualStepDone) decisions_.Decided(listed, Decided());
  return Answer::Given;
}

void CutFrame::Wait() {
  job::Flags& flags = program_.flags;
  job::FCutPre& window = Window();
  waiting_ = true;
  EnableForPicture();
  window.SetTitle(window.CmdNotCut.OwnEnabled() ? kWaiting : kWaitingForNext);
  window.Show();
  while (!flags.ManualStepDone && !flags.StopRequested) {
    program_.host.pump.Turn();
    if (!flags.ManualStepDone) program_.host.clock.Sleep(kSecondsBetweenTurns);
  }
  EndWait();
}

std::string CutFrame::ListedSource(const std::string& source) const {
  const std::size_t row = program_.form1.MSF.Selected();
  const bool listed = row > 0 && row <= program_.files.RowCount() && !program_.flags.LargeCapacityMode;
  return listed ? program_.files.Row(row - 1).Path() : source;
}

Decision CutFrame::Decided() const {
  Decision decision;
  for (std::size_t i = 0; i < decision.margins.size(); ++i) {
    decision.margins[i] = program_.form1.TCutValue[i].Value();
  }
  decision.skip = program_.flags.SkipCutThisImage;
  decision.steps = steps_;
  return decision;
}

void CutFrame::Replay(const Decision& decision) {
  for (const char step : decision.steps) {
    if (step == kTurnedLeft) Turn(90);
    if (step == kTurnedRight) Turn(-90);
    if (step == kGrown) Grow();
  }
  for (std::size_t i = 0; i < decision.margins.size(); ++i) program_.form1.TCutValue[i].SetText(decision.margins[i]);
  program_.flags.SkipCutThisImage = decision.skip;
  program_.flags.ManualStepDone = true;
}

void CutFrame::EnableForPicture() {
  job::FCutPre& window = Window();
  const bool studio = job::IsStudioPreset(program_.form1.CmbKeepCut.Index());
  const bool turned = program_.flags.ImageRotated || program_.flags.ManualRotated;
  window.CmdNext.SetEnabled(true);
  window.CmdNotCut.SetEnabled(!(Fixed() && studio), "这种预设的每一张都要裁剪");
  window.CmdAddBoard.SetEnabled(Ratio().has_value(), "没有固定尺寸或预设，不知道要扩成什么比例");
  window.CmdAddBoard.SetTag("");
  for (controls::Button* button : {&window.CmdRot90, &window.CmdRot270})
    button->SetEnabled(!turned, "这张图片已经按旋转规则转过");
  for (controls::Slider* slider : {&window.Slider1, &window.HS, &window.VS}) slider->SetEnabled(true);
}

void CutFrame::EndWait() {
  job::FCutPre& window = Window();
  waiting_ = false;
  drag_ = Drag::None;
  window.SetTitle(kBetween);
  window.LockButtons();
  for (controls::Slider* slider : {&window.Slider1, &window.HS, &window.VS}) {
    slider->SetEnabled(false, "正在裁剪这一张");
  }
}

void CutFrame::Rest() {
  decisions_.End(!program_.flags.StopRequested);
  job::FCutPre& window = Window();
  window.SetTitle(job::kPreviewCaption);
  for (controls::Button* button : {&window.CmdRot90, &window.CmdRot270}) button->SetTag("");
  for (controls::Slider* slider : {&window.Slider1, &window.HS, &window.VS}) slider->SetEnabled(true);
  Preview().SetUpcoming("");
}

// What does not load here is tried by the server beside the program.
host::Status CutFrame::ClonePicture(imaging::Image& out) {
  const std::string& path = program_.flags.CurrentImagePath;
  host::Status loaded = program_.images.LoadImageFromFile(path, out);
  if (loaded || !program_.host.files.IsFile(path)) return loaded;
  if (!formats::LoadThroughBackImg(tools_, path, program_.flags.BackWorkerStarted)) return loaded;
  return program_.images.CreateImageFromClipBoard(out);
}

void CutFrame::UpdateImage(const std::string& path, const imaging::Image& image) {
  imaging::ImageFacts facts;
  facts.dpi = 1;
  const bool measured = static_cast<bool>(program_.images.ImageInfo(path, facts));
  if (imaging::Image served; !measured && !image && ClonePicture(served)) {
    UpdateImage(path, served);
    return;
  }
  if (!measured) facts = {};
  if (image) facts = {program_.images.GetImageWidth(image), program_.images.GetImageHeight(image), facts.dpi};
  const base::Size size{facts.width, facts.height};
  Preview().SetDpi(facts.dpi);
  program_.ShowPicture(size.Empty() ? std::string() : ShownFile(path, image, size), size);
}

// Only to be looked at: the cut takes the whole picture.
std::string CutFrame::ShownFile(const std::string& path, const imaging::Image& image, base::Size size) {
  const std::string copy = OtherWorkFile(path);
  if (image && path != program_.AppPath("Tmp.jpg")) {
    const host::Status saved = program_.images.SaveImageToJpgFile(image, copy, kWorkQuality, imaging::Exif::Drop);
    return saved ? copy : path;
  }
  if (std::max(size.width, size.height) <= kLargestShown) return path;
  const base::Size shown = Reduced(size);
  formats::Converter& worker = program_.converter;
  const bool made =
      worker.Present()
          ? worker.ZoomHuge(path, copy, shown.width, shown.height, kWorkQuality, size.width, size.height, false)
          : static_cast<bool>(program_.images.ZoomPic(path, copy, shown.width, shown.height));
  return made ? copy : path;
}

std::string CutFrame::OtherWorkFile(const std::string& path) const {
  const std::string first = program_.AppPath("Tmp.jpg");
  return path == first ? program_.AppPath("Tmp2.jpg") : first;
}

// --- Leaving the picture

void CutFrame::CmdNext_Click() {
  if (!Window().CmdNext.OwnEnabled()) return;
  Window().CmdNext.SetEnabled(false);
  Window().CmdAddBoard.SetTag("");
  program_.flags.ManualStepDone = true;
}

void CutFrame::CmdNotCut_Click() {
  if (!Window().CmdNotCut.OwnEnabled()) return;
  Window().CmdNotCut.SetEnabled(false);
  program_.flags.SkipCutThisImage = true;
  program_.flags.ManualStepDone = true;
}

// --- Turning

// Either button that was agreed to once stands for both.
bool CutFrame::MayRotate() {
  job::FCutPre& window = Window();
  if (!window.CmdRot90.Tag().empty()) return true;
  const host::Reply reply = program_.Ask(kRotateQuestion, kYesNoCancelQuestion);
  if (reply == host::Reply::No) {
    for (controls::Button* button : {&window.CmdRot90, &window.CmdRot270}) button->SetTag(kAgreed);
  }
  return reply != host::Reply::Cancel;
}

void CutFrame::Rotate(double angle) {
  if (waiting_ && MayRotate()) Turn(angle);
}

void CutFrame::Turn(double angle) {
  imaging::Services& images = program_.images;
  job::Flags& flags = program_.flags;
  imaging::Image picture;
  if (!ClonePicture(picture)) return;
  const int dpi = images.GetImageResolution(picture);
  if (!images.RotateImage(picture, angle, base::kWhite)) return;
  images.SetImageResolution(picture, dpi);
  const std::string work = program_.AppPath("Tmp.jpg");
  if (!images.SaveImageToJpgFile(picture, work, kWorkQuality, imaging::Exif::Keep)) return;
  flags.CurrentImagePath = work;
  flags.ManualRotated = true;
  flags.ManualAngle += angle;
  steps_ += angle > 0 ? kTurnedLeft : kTurnedRight;
  UpdateImage(work, {});
  WriteBack();
}

// --- Widening

void CutFrame::CmdAddBoard_Click() {
  controls::Button& button = Window().CmdAddBoard;
  if (!waiting_) return;
  if (!button.Tag().empty()) {
    program_.host.boxes.Beep();
    button.SetEnabled(false, kGrownOnce);
    return;
  }
  Grow();
}

void CutFrame::Grow() {
  controls::Button& button = Window().CmdAddBoard;
  const std::string source = program_.flags.CurrentImagePath;
  imaging::ImageFacts facts;
  facts.dpi = 1;
  const std::optional<double> ratio = Ratio();
  if (!ratio || !program_.images.ImageInfo(source, facts)) return;
  const base::Size picture{facts.width, facts.height};
  const base::Size total = GrownToRatio(picture, *ratio);
  if (total == picture) return;
  imaging::BorderRequest board;
  board.source = source;
  board.destination = OtherWorkFile(source);
  board.offsetX = (total.width - picture.width) / 2;
  board.offsetY = (total.height - picture.height) / 2;
  board.total = total;
  board.image = board.drawn = picture;
  board.quality = kWorkQuality;
  board.dpi = facts.dpi;
  board.exif = imaging::Exif::Keep;
  if (!program_.images.AddBoardToFile(board)) {
    button.SetEnabled(false, kGrownOnce);
    program_.flags.CurrentImagePath.clear();
    CmdNext_Click();
    return;
  }
  steps_ += kGrown;
  program_.flags.CurrentImagePath = board.destination;
  UpdateImage(board.destination, {});
  WriteBack();
  button.SetTag(kAgreed);
  button.SetEnabled(false, kGrownOnce);
}

}  // namespace quillon::regions
