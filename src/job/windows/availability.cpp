// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
// Decides which controls can be used, in one place. It depends only on the values of the parameters, not on
// the order in which they were set. A control that cannot be used shows the reason.
#include <initializer_list>
#include <string>

#include "job/program.h"

namespace quillon::job {
namespace {

constexpr const char* kFrameOnly = "仅边框模式不做任何裁剪和处理";
constexpr const char* kStudio = "所选的固定尺寸已指定本项";
constexpr const char* kNeedsPixels = "请先启用“绝对裁剪”";
constexpr const char* kNeedsFixedCut = "请先启用“固定裁剪”";
constexpr const char* kNeedsExact = "请先启用“成品尺寸”";
constexpr const char* kExact = "“成品尺寸”已决定结果的大小";
constexpr const char* kNeedsRotation = "请先选择旋转规则或启用“先旋转后裁剪”";

// A condition that makes a control unusable, and the reason that the user reads.
struct Obstacle {
  bool applies;
  std::string why;
};

// Disables the control if an obstacle applies; the first one that does gives the reason.
void Allow(controls::Control& control, std::initializer_list<Obstacle> obstacles) {
  for (const Obstacle& obstacle : obstacles) {
    if (obstacle.applies) return control.SetEnabled(false, obstacle.why);
  }
  control.SetEnabled(true);
}

std::string Wants(CutMode mode) { return "请先把裁剪模式选为“" + CutModes()[static_cast<std::size_t>(mode)] + "”"; }

void ShowModes(Form1& form, const FBaseOpt& options) {
  const auto mode = Selected<CutMode>(form.CmbCutMode);
  const auto only = [mode](CutMode wanted, std::initializer_list<controls::Menu*> menus) {
    for (controls::Menu* menu : menus) Allow(*menu, {{mode != wanted, Wants(wanted)}});
  };
  only(CutMode::Gif, {&form.MenuGifCut, &form.MenuGifCutOps});
  only(CutMode::Png, {&form.MenuPngCut, &form.MenuPngCutOps});
  only(CutMode::Pdf, {&form.MenuPdfCut, &form.MenuPdfOps});
  only(CutMode::PenHui, {&form.MenuPenHui, &form.MenuPenHuiCut});
  only(CutMode::Tiff, {&form.MenuTiffCut, &form.MenuTifCutOps});
  only(CutMode::Colour, {&form.MenuColorCut});
  only(CutMode::Normal, {&form.MenuChSizeFormat, &form.MenuExtentAndCut});
  const bool normal = mode == CutMode::Normal;
  const bool regionsWait = options.ChMulCut.On() && options.ChMulCut.Tag().empty();
  Allow(form.menuNormalCut,
        {{!normal, Wants(CutMode::Normal)}, {regionsWait, "已启用“多区域裁剪”，请在多区域裁剪窗口中开始裁剪"}});
  const bool paged = mode == CutMode::Pdf || mode == CutMode::Tiff;
  Allow(form.MenuBaseOptions, {{!normal && !paged, "本裁剪模式没有高级选项"}});
  Allow(form.CmbOutType, {{!normal && mode != CutMode::Tiff, "输出类型由裁剪模式决定"}});
  Allow(form.CmbCutStyle, {{mode == CutMode::PenHui, "本裁剪模式只做矩形裁剪"}});
}

void ShowParameters(Form1& form, bool frameOnly, bool listless) {
  const int preset = form.CmbKeepCut.Index();
  const bool percent = !form.ChCutA.On();
  const bool free = !form.ChFixCut.On();
  const bool pads = preset == kFrameOnlyPreset;
  Allow(form.MenuUnitConvert, {{percent, kNeedsPixels}, {preset != kCustomSize, "固定尺寸选为“自定义”时可用"}});
  Allow(form.MenuReadFiles, {{listless, "已启用“超大容量”，不使用文件列表"}});
  Allow(form.ChFixCut, {{percent, kNeedsPixels}, {frameOnly, kFrameOnly}});
  Allow(form.ChCutAndArray, {{percent, kNeedsPixels}, {free, kNeedsFixedCut}});
  const bool sized = preset != kCustomSize && !form.ChAddToSize.On();
  for (controls::TextBox& side : form.TFixWH) {
    Allow(side, {{free, kNeedsFixedCut}, {sized, "尺寸由所选的固定尺寸决定"}});
  }
  const bool exact = form.ChExact.On() && !free;
  Allow(form.ChAsFramed, {{frameOnly || pads, kFrameOnly}, {exact, "“成品尺寸”已决定裁剪框"}});
  Allow(form.ChExact, {{percent, kNeedsPixels}, {free, kNeedsFixedCut}, {pads, kStudio}, {frameOnly, kFrameOnly}});
  Allow(form.ChExactPad, {{!exact, kNeedsExact}});
  Allow(form.CmbAnchor, {{!exact, kNeedsExact}, {form.ChExactPad.On(), "补边时整张图片居中"}});
  Allow(form.ChAddToSize, {{!pads, "只用于固定尺寸“不裁剪，居中补白”"}});
  Allow(form.ChAutoZoom, {{IsStudioPreset(preset), kStudio}});
  Allow(form.ChAutoCenter, {{pads, kStudio}});
  Allow(form.TQuality, {{!form.ChJpgComp.On(), "请先启用“压缩”"}});
}

void ShowOptions(FBaseOpt& options, const Form1& form, bool frameOnly) {
  const int preset = form.CmbKeepCut.Index();
  const bool studio = IsStudioPreset(preset);
  Allow(options.ChAutoCenter, {{preset == kFrameOnlyPreset, kStudio}});
  Allow(options.ChAddBoard, {{studio, kStudio}});
  for (controls::CheckBox* box : {&options.ChMamal, &options.ChMulCut, &options.ChCutAndZoom, &options.ChZoomAndCut,
                                  &options.ChSplit, &options.ChToWB, &options.ChKeepExif}) {
    const bool scaled = box == &options.ChCutAndZoom && form.ChExact.On() && form.ChFixCut.On();
    Allow(*box, {{studio, kStudio}, {frameOnly, kFrameOnly}, {scaled, kExact}});
  }
  for (controls::Control* control :
       {static_cast<controls::Control*>(&options.ChClsWhite), static_cast<controls::Control*>(&options.ChClsBlack),
        static_cast<controls::Control*>(&options.ChToGray), static_cast<controls::Control*>(&options.ChInvert),
        static_cast<controls::Control*>(&options.ChToCMYK), static_cast<controls::Control*>(&options.ChRotateCut),
        static_cast<controls::Control*>(&options.CmbRotate)}) {
    Allow(*control, {{frameOnly, kFrameOnly}});
  }
  Allow(options.ChKeepCut, {{form.ChFixCut.On(), "“固定裁剪”启用时，本项随之启用"}, {frameOnly, kFrameOnly}});
  const int rule = options.CmbRotate.Index();
  const bool turns = options.ChRotateCut.On();
  Allow(options.TAngle, {{frameOnly, kFrameOnly},
                         {rule > 0 && rule != kOwnAngle, "角度由旋转规则决定"},
                         {rule != kOwnAngle && !turns, "请先选择“旋转任一角度”或启用“先旋转后裁剪”"}});
  const bool exact = form.ChExact.On() && form.ChFixCut.On();
  Allow(options.ChRecover, {{frameOnly, kFrameOnly}, {rule <= 0 && !turns, kNeedsRotation}, {exact, kExact}});
  for (const std::size_t count : {4, 5}) Allow(options.TSmalS[count], {{!options.ChSplit.On(), "请先启用“图片分切”"}});
}

}  // namespace

void Program::ShowAvailability() {
  const bool frameOnly = fBaseOpt.ChFrmOnly.On() && form1.CmbKeepCut.Index() != kFrameOnlyPreset;
  ShowModes(form1, fBaseOpt);
  ShowParameters(form1, frameOnly, flags.LargeCapacityMode);
  ShowOptions(fBaseOpt, form1, frameOnly);
}

}  // namespace quillon::job
