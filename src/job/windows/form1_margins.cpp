// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
// The margins of Form1, their unit, and the frame over the preview that follows them.
#include <array>
#include <cmath>
#include <utility>

#include "base/number_text.h"
#include "job/program.h"
#include "job/settings/cut_settings.h"
#include "job/windows/form1.h"
#include "job/windows/preview.h"

namespace quillon::job {
namespace {

constexpr const char* kPixelCaption = "裁剪参数(单位：像素)：";
constexpr const char* kPercentCaption = "裁剪参数(单位：%)：";
constexpr const char* kPercentTooltip = "相对裁剪模式下，最大不能超过90%";
constexpr double kMaxPercent = 90;

// Left and right are measured along the width, top and bottom along the height.
int SideOf(base::Size size, std::size_t margin) { return margin % 2 == 0 ? size.width : size.height; }

PreviewFrame WholePicture(base::Size picture) {
  return {0, 0, static_cast<double>(picture.width), static_cast<double>(picture.height)};
}

// Returns the distances of the frame from the edges of the picture in pixels, in the order of TCutValue.
std::array<double, 4> OffsetsOf(const PreviewFrame& frame, base::Size picture) {
  return {frame.left, frame.top, picture.width - frame.left - frame.width, picture.height - frame.top - frame.height};
}

// Returns the whole part of an offset. Arithmetic may have lost less than a millionth of a pixel, which is made up for.
double WholePixels(double offset) { return std::floor(offset + 1e-6); }

}  // namespace

void Form1::TCutValue_Change(std::size_t index) {
  controls::TextBox& box = TCutValue[index];
  const double value = box.Number();
  const bool live = program_.flags.HandlersLive;
  if (value < 0) {
    if (live) program_.host.boxes.Beep();
    box.SetNumber(0);
  } else if (live && box.GetLimits().max && value > *box.GetLimits().max) {
    program_.host.boxes.Beep();
    box.SetNumber(*box.GetLimits().max);
  } else {
    ShowFrame();
  }
}

void Form1::ShowMarginLimits() {
  const base::Size preview{program_.flags.PreviewImageWidth, program_.flags.PreviewImageHeight};
  for (std::size_t i = 0; i < TCutValue.Size(); ++i) {
    controls::Limits limits{0, kMaxPercent};
    if (MarginsInPixels()) limits.max = preview.Empty() ? std::nullopt : std::optional<double>(SideOf(preview, i));
    TCutValue[i].SetLimits(limits);
  }
}

void Form1::ShowFrame() {
  Preview& preview = program_.fCutPre.preview;
  const base::Size picture = preview.Picture();
  const CutSettings settings = ReadCutSettings(program_);
  PreviewFrame frame = FrameOf(settings.geometry, picture);
  if (settings.frameOnly) frame = WholePicture(picture);
  preview.SetPictureFrame(picture.Empty() ? PreviewFrame{} : frame);
  ShowResult(settings.geometry);
  for (std::size_t i = 0; i < TCutValue.Size(); ++i) {
    const bool known = MarginsInPixels() && !picture.Empty();
    const std::string share =
        known ? base::ShortNumberText(TCutValue[i].Number() * 100 / SideOf(picture, i)) + "%" : "";
    TCutValue[i].SetTooltip(MarginsInPixels() ? share : kPercentTooltip);
  }
  program_.ShowEffects();
}

void Form1::ShowResult(const CutGeometry& geometry) {
  Preview& preview = program_.fCutPre.preview;
  preview.SetResult(ResultOnShow(program_, geometry));
  preview.SetBoard(BoardAroundCut(program_, preview));
}

bool Form1::MarginsInPixels() const { return ChCutA.On() && Selected<CutMode>(CmbCutMode) != CutMode::Pdf; }

void Form1::ShowUnit() {
  if (std::exchange(pixelsShown_, MarginsInPixels()) == MarginsInPixels()) return;
  Frame2.SetCaption(MarginsInPixels() ? kPixelCaption : kPercentCaption);
  ConvertMargins();
}

void Form1::ChCutA_Click() {
  ShowUnit();
  ChFixCut.Set(false);
  ChCutAndArray.Set(false);
  program_.ShowAvailability();
  ShowFrame();
}

// Converts the values so that the frame on show does not move. Keeps them while the window opens, because there is no
// frame yet.
void Form1::ConvertMargins() {
  ShowMarginLimits();
  const base::Size picture = program_.fCutPre.preview.Picture();
  if (!program_.flags.HandlersLive || picture.Empty()) return;
  const std::array offsets = OffsetsOf(program_.fCutPre.preview.PictureFrame(), picture);
  for (std::size_t i = 0; i < TCutValue.Size(); ++i) {
    TCutValue[i].SetNumber(MarginsInPixels() ? WholePixels(offsets[i]) : offsets[i] * 100 / SideOf(picture, i));
  }
}

bool Form1::CanUsePercent() const {
  const Preview& preview = program_.fCutPre.preview;
  if (!MarginsInPixels() || ChFixCut.On() || preview.Picture().Empty()) return false;
  const std::array offsets = OffsetsOf(preview.PictureFrame(), preview.Picture());
  for (std::size_t i = 0; i < offsets.size(); ++i) {
    if (!(offsets[i] >= 0 && offsets[i] * 100 <= kMaxPercent * SideOf(preview.Picture(), i))) return false;
  }
  return true;
}

void Form1::TFixWH_Change(std::size_t index) {
  program_.flags.FixW = TFixWH[0].Integer();
  program_.flags.FixH = TFixWH[1].Integer();
  if (program_.fBaseOpt.Loaded()) program_.fBaseOpt.AcceptFixedSize(TFixWH[0].Value(), TFixWH[1].Value());
  if (auto* pixels = dynamic_cast<controls::TextBox*>(program_.windows.Find("FConverter.TPexil"))) {
    pixels->SetText(TFixWH[index].Value());
  }
  ShowFrame();
}

void Form1::ChAutoCenter_Click() {
  program_.fBaseOpt.ChAutoCenter.Set(ChAutoCenter.On());
  ShowFrame();
}

}  // namespace quillon::job
