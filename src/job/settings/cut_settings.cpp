// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "job/settings/cut_settings.h"

namespace quillon::job {

bool TooSmall(base::Size picture, base::Size thresholds) {
  return !picture.Empty() && (picture.width < thresholds.width || picture.height < thresholds.height);
}

std::string TooSmallText(base::Size thresholds) {
  return "宽或高不足 " + std::to_string(thresholds.width) + "x" + std::to_string(thresholds.height) +
         " 像素，按“过滤小图片”跳过";
}

bool EffectsApply(const CutSettings& settings) {
  if (settings.frameOnly) return false;
  return settings.rotateCut || settings.zoomBefore || settings.toGray || settings.blackWhite || settings.invert ||
         settings.ownDpi;
}

double RuleAngle(const CutSettings& settings, base::Size picture) {
  return PreRotation(settings.rotateRule, picture, settings.angle).value_or(0);
}

double TurnAngle(const CutSettings& settings, base::Size picture) {
  const double angle = RuleAngle(settings, picture);
  if (angle != 0) return angle;
  const bool turns = settings.rotateCut && NeedRotate(picture.width, picture.height, kOwnAngle, settings.angle);
  return turns ? settings.angle : 0;
}

}  // namespace quillon::job
