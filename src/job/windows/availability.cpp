// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
// Decides which controls can be used and whose values have an effect, in one place. It depends only on the values of
// the parameters, not on the order in which they were set. A control that cannot be used or has no effect shows the
// reason.
#include <initializer_list>
#include <string>

#include "job/program.h"
#include "job/settings/cut_settings.h"
#include "job/settings/mode_rectangle.h"

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
  const auto mode = Selected<CutMode>(form.CmbCutMode);
  const bool unscaled = mode == CutMode::Gif || mode == CutMode::Png;
  const bool exact = form.ChExact.On() && !free && !unscaled;
  Allow(form.ChAsFramed, {{frameOnly || pads, kFrameOnly}, {exact, "“成品尺寸”已决定裁剪框"}});
  Allow(form.ChExact, {{unscaled, "本裁剪模式不缩放图片"},
                       {percent, kNeedsPixels},
                       {free, kNeedsFixedCut},
                       {pads, kStudio},
                       {frameOnly, kFrameOnly}});
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

// --- Values that have an effect on a normal cut, or on one of the modes that only cut

constexpr const char* kIdle = "本项不起作用：";

void ShowEffect(controls::Control& control, bool counts, const std::string& whyNot, std::string meaning = {}) {
  control.SetEffect(counts ? controls::Effect::Counts : controls::Effect::None,
                    counts ? std::move(meaning) : kIdle + whyNot);
}

// Returns what decides instead of a margin that has no effect.
std::string InsteadOfMargin(const CutSettings& settings, std::size_t margin) {
  const CutGeometry& geometry = settings.geometry;
  const bool side = margin < 2;  // left or top
  const bool across = margin % 2 == 0;
  if (settings.frameOnly) return kFrameOnly;
  if (geometry.PadsToExact()) return "补边时用整张图片";
  if (geometry.Exact()) return side ? "“取图位置”决定取哪一块" : "“成品尺寸”决定取多大一块";
  if (geometry.ChAsFramed) return side ? "“居中裁剪”决定框的位置" : "框的大小由“宽”“高”决定";
  if (ValuesThatCount(geometry).keptSize) return "裁出的大小由高级选项的“保留裁剪”决定";
  return across ? "右边按“宽”去掉" : "下边按“高”去掉";
}

// Returns what the fixed width (side 0) or height (side 1) is, if it has an effect.
std::string MeaningOfSize(const CutSettings& settings, std::size_t side) {
  const CutGeometry& geometry = settings.geometry;
  const bool across = side == 0;
  if (settings.frameOnly || geometry.Exact()) return across ? "成品的宽" : "成品的高";
  if (geometry.ChAsFramed) return across ? "裁剪框的宽" : "裁剪框的高";
  if (geometry.ChAutoZoom && !CutsOnly(settings.mode)) return across ? "边框之内的宽" : "边框之内的高";
  return across ? "右边要去掉的像素" : "下边要去掉的像素";
}

void ShowEffectOfSizes(Form1& form, FBaseOpt& options, const CutSettings& settings, const CountingValues& counting) {
  const bool bordered = settings.addBoard && settings.geometry.ChFixCut;
  const bool counts = settings.frameOnly ? settings.padToSize : counting.fixedSize || bordered;
  const std::string instead = settings.frameOnly         ? kFrameOnly
                              : counting.keptSize        ? "裁出的大小由高级选项的“保留裁剪”决定"
                              : CutsOnly(settings.mode)  ? "没有启用“固定裁剪”，四边按填的数值裁"
                              : settings.geometry.ChCutA ? "四边按百分比裁"
                                                         : "按百分比裁剪";
  for (std::size_t side = 0; side < form.TFixWH.Size(); ++side)
    ShowEffect(form.TFixWH[side], counts, instead, MeaningOfSize(settings, side));
  // The two windows mirror the size crosswise: the box for the height gives the width.
  const bool kept = counting.keptSize && !settings.frameOnly;
  ShowEffect(options.TSmalS[2], kept || counts, instead, kept ? "裁出的图片横向的像素" : MeaningOfSize(settings, 1));
  ShowEffect(options.TSmalS[3], kept || counts, instead, kept ? "裁出的图片纵向的像素" : MeaningOfSize(settings, 0));
}

void ShowEffectOfCentring(Form1& form, FBaseOpt& options, const CutSettings& settings, bool centred) {
  const bool moves = centred || settings.manual || !form.ChAutoCenter.On();
  const char* instead = settings.geometry.Exact() ? "“取图位置”决定取哪一块" : "自动裁剪按四边的数值，它只移动画的框";
  for (controls::CheckBox* box : {&form.ChAutoCenter, &options.ChAutoCenter}) {
    box->SetEffect(moves ? controls::Effect::AsEnabled : controls::Effect::None,
                   moves ? "" : kIdle + std::string(instead));
  }
}

// Boxes of the fixed cut that change the result only together with others.
void ShowEffectOfFixedCut(Form1& form, const CutSettings& settings) {
  const CutGeometry& geometry = settings.geometry;
  const auto show = [&](controls::CheckBox& box, bool counts, const char* whyNot) {
    const char* why = settings.frameOnly        ? kFrameOnly
                      : CutsOnly(settings.mode) ? "本裁剪模式不缩放图片，也不加边框"
                      : !geometry.ChFixCut      ? "只用于“固定裁剪”"
                      : geometry.Exact()        ? kExact
                      : counts                  ? ""
                                                : whyNot;
    box.SetEffect(*why == '\0' ? controls::Effect::AsEnabled : controls::Effect::None,
                  *why == '\0' ? "" : kIdle + std::string(why));
  };
  const char* asFramed = "“按预览框裁剪”已决定裁剪框";
  show(form.ChAutoZoom, !geometry.ChAsFramed, asFramed);
  show(form.ChFull, !geometry.ChAsFramed && geometry.ChAutoZoom,
       geometry.ChAsFramed ? asFramed : "只和“等比缩放”一起改变裁剪；启用时，预览中的框不能移动");
  const bool extends = settings.addBoard && (settings.preset == kPresetC || settings.preset == kPresetD);
  show(form.ChMode1, extends, "只用于 C 版、D 版的边框，而且图片发生旋转");
}

// Without "压缩" the quality is written too.
void ShowEffectOfQuality(Form1& form) {
  const auto type = Selected<OutType>(form.CmbOutType);
  const bool jpeg = type == OutType::Jpg || type == OutType::Pdf;
  ShowEffect(form.TQuality, jpeg, "只有 jpg 和 pdf 按品质写入",
             form.ChJpgComp.On() ? "" : "没有启用“压缩”，也按这个品质写入");
}

// The list may state another resolution than the one that is written.
void ShowWrittenDpi(controls::ComboBox& list, int written) {
  const bool same = DpiOf(list) == written;
  list.SetNote(same ? "" : written == 0 ? "（不改）" : "（写入 " + std::to_string(written) + "）");
}

}  // namespace

void Program::ShowEffects() {
  ShowWrittenDpi(form1.CmbDPI, flags.OutDpi);
  ShowWrittenDpi(fBaseOpt.CmbDPI, fBaseOpt.Loaded() ? flags.OutDpi : DpiOf(fBaseOpt.CmbDPI));
  const auto mode = Selected<CutMode>(form1.CmbCutMode);
  if (mode != CutMode::Normal && !CutsOnly(mode)) {
    for (controls::Window* window :
         {static_cast<controls::Window*>(&form1), static_cast<controls::Window*>(&fBaseOpt)}) {
      for (controls::Control* control : window->Controls()) control->SetEffect(controls::Effect::AsEnabled);
    }
    return;
  }
  const CutSettings settings = ReadCutSettings(*this);
  const CountingValues counting = ValuesOfMode(mode, settings.geometry);
  for (std::size_t margin = 0; margin < form1.TCutValue.Size(); ++margin) {
    ShowEffect(form1.TCutValue[margin], counting.margins[margin] && !settings.frameOnly,
               InsteadOfMargin(settings, margin));
  }
  ShowEffectOfSizes(form1, fBaseOpt, settings, counting);
  ShowEffectOfCentring(form1, fBaseOpt, settings, counting.centred);
  ShowEffectOfFixedCut(form1, settings);
  ShowEffectOfQuality(form1);
}

void Program::ShowAvailability() {
  const bool frameOnly = fBaseOpt.ChFrmOnly.On() && form1.CmbKeepCut.Index() != kFrameOnlyPreset;
  ShowModes(form1, fBaseOpt);
  ShowParameters(form1, frameOnly, flags.LargeCapacityMode);
  ShowOptions(fBaseOpt, form1, frameOnly);
  ShowEffects();
}

}  // namespace quillon::job
