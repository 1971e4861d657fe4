// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "job/settings/presets.h"

#include "base/number_text.h"

namespace quillon::job {

std::vector<std::string> PresetTexts() {
  return {"自定义",
          "A版 13.8cmx9.0cm",
          "B版 14.8cmx10cm",
          "C版 9.0cmx10.0cm",
          "D版 10.0cmx9.0cm",
          "不裁剪，居中补白",
          "1寸 2.5cmx3.5cm",
          "大1寸/身份证大头照 3.3cmx2.2cm",
          "彩色小1寸 2.7cmx3.8cm",
          "彩色大1寸 3.5cmx4.5cm",
          "2寸 3.5cmx5.3cm",
          "小2寸/护照 4.8cmx3.3cm",
          "大二寸 4.0cmx5.5cm",
          "5寸 5.0cmx3.5cm",
          "6寸 6.0cmx4.0cm",
          "7寸 7.0cmx5.0cm",
          "8寸 8.0cmx6.0cm",
          "10寸 10.0cmx8.0cm",
          "12寸 12.0cmx10.0cm",
          "15寸 15.0cmx10.0cm",
          "身份证 8.56cmx5.40cm",
          "身份证照 2.2cmx3.2cm",
          "身份证照 2.6cmx3.2cm",
          "银行卡 8.56cmx5.40cm",
          "工作证 8.54cmx5.4cm",
          "工作证 9.0cmx9.0cm",
          "工作证 15.0cmx10.0cm",
          "中国护照照 3.3cmx4.8cm",
          "普通证件照 3.3cmx4.8cm",
          "港澳通行证照 3.3cmx4.8cm",
          "美国签证照 5.0cmx5.0cm",
          "日本签证照 4.5cmx4.5cm",
          "毕业生照 3.3cmx4.8cm",
          "驾照证件照 2.1cmx2.6cm",
          "驾照证件照 2.2cmx3.2cm",
          "行车证照 6.0cmx9.1cm",
          "IC卡 8.5cmx5.4cm"};
}

std::optional<PresetSize> ParsePreset(std::string_view text) {
  const auto blank = text.find(' ');
  if (blank == std::string_view::npos) return std::nullopt;
  std::string size(text.substr(blank + 1));
  for (auto unit = size.find("cm"); unit != std::string::npos; unit = size.find("cm")) size.erase(unit, 2);
  const auto cross = size.find('x');
  if (cross == std::string::npos) return std::nullopt;
  const auto first = base::ParseNumber(std::string_view(size).substr(0, cross));
  const auto second = base::ParseNumber(std::string_view(size).substr(cross + 1));
  if (!first || !second) return std::nullopt;
  return PresetSize{static_cast<float>(*first), static_cast<float>(*second)};
}

}  // namespace quillon::job
