// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "job/windows/typed_length.h"

#include "base/rounding.h"
#include "job/program.h"
#include "job/settings/geometry.h"

namespace quillon::job {
namespace {

using base::Unit;
using controls::Converted;

constexpr double kCentimetresOfInch = 2.54;
constexpr const char* kNoPicture = "还没有预览的图片，不能用百分比";

double Centimetres(const base::Measure& measure) {
  if (measure.unit == Unit::Inch) return measure.value * kCentimetresOfInch;
  return measure.unit == Unit::Millimetre ? measure.value / 10 : measure.value;
}

int SideOnShow(const Program& program, Along along) {
  const Preview& preview = program.fCutPre.preview;
  if (preview.Path().empty()) return 0;
  return along == Along::Width ? preview.Picture().width : preview.Picture().height;
}

}  // namespace

Converted ToPixels(const Program& program, const base::Measure& measure, Along along) {
  if (measure.unit == Unit::None || measure.unit == Unit::Pixel) return {measure.value};
  if (measure.unit == Unit::Percent) {
    const int side = SideOnShow(program, along);
    if (side <= 0) return {0, kNoPicture};
    return {static_cast<double>(base::R(side * measure.value / 100))};
  }
  const Flags& flags = program.flags;
  const int dpi = flags.OutDpi != 0 ? flags.OutDpi : flags.ScreenDpi;
  return {static_cast<double>(CmToPixels(static_cast<float>(Centimetres(measure)), dpi))};
}

Converted ToMargin(const Program& program, const base::Measure& measure, Along along) {
  if (program.form1.MarginsInPixels()) return ToPixels(program, measure, along);
  if (measure.unit == Unit::None || measure.unit == Unit::Percent) return {measure.value};
  const int side = SideOnShow(program, along);
  if (side <= 0) return {0, "还没有预览的图片，不能换算成百分比"};
  return {ToPixels(program, measure, along).value * 100 / side};
}

Converted ToMillimetres(const base::Measure& measure) {
  if (measure.unit == Unit::None) return {measure.value};
  if (measure.unit == Unit::Pixel || measure.unit == Unit::Percent) return {0, "只接受长度，例如 3mm、0.3cm、0.1in"};
  return {Centimetres(measure) * 10};
}

void AcceptUnits(Program& program) {
  for (std::size_t i = 0; i < program.form1.TCutValue.Size(); ++i) {
    const Along along = i % 2 == 0 ? Along::Width : Along::Height;
    program.form1.TCutValue[i].SetUnits(
        [&program, along](const base::Measure& measure) { return ToMargin(program, measure, along); });
  }
  const auto pixels = [&program](controls::TextBox& box, Along along) {
    box.SetUnits([&program, along](const base::Measure& measure) { return ToPixels(program, measure, along); });
  };
  pixels(program.form1.TFixWH[0], Along::Width);
  pixels(program.form1.TFixWH[1], Along::Height);
  pixels(program.fBaseOpt.TSmalS[0], Along::Width);
  pixels(program.fBaseOpt.TSmalS[1], Along::Height);
  pixels(program.fBaseOpt.TSmalS[2], Along::Height);
  pixels(program.fBaseOpt.TSmalS[3], Along::Width);
  for (controls::TextBox& box : program.fBaseOpt.TBoard) box.SetUnits(ToMillimetres);
}

}  // namespace quillon::job
