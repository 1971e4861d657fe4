// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "job/settings/lists.h"

#include <gtest/gtest.h>

#include "job/settings/geometry.h"

namespace quillon::job {
namespace {

struct PresetRow {
  const char* text;
  int width;  // pixels at 300 dpi; 0 if there is no size
  int height;
};

// The pixels are cm * 0.3937 * 300 = cm * 118.11, rounded.
constexpr PresetRow kRows[] = {
    {"自定义", 0, 0},
    {"A版 13.8cmx9.0cm", 1630, 1063},
    {"B版 14.8cmx10cm", 1748, 1181},
    {"C版 9.0cmx10.0cm", 1063, 1181},
    {"D版 10.0cmx9.0cm", 1181, 1063},
    {"不裁剪，居中补白", 0, 0},
    {"1寸 2.5cmx3.5cm", 295, 413},
    {"大1寸/身份证大头照 3.3cmx2.2cm", 390, 260},
    {"彩色小1寸 2.7cmx3.8cm", 319, 449},
    {"彩色大1寸 3.5cmx4.5cm", 413, 531},
    {"2寸 3.5cmx5.3cm", 413, 626},
    {"小2寸/护照 4.8cmx3.3cm", 567, 390},
    {"大二寸 4.0cmx5.5cm", 472, 650},
    {"5寸 5.0cmx3.5cm", 591, 413},
    {"6寸 6.0cmx4.0cm", 709, 472},
    {"7寸 7.0cmx5.0cm", 827, 591},
    {"8寸 8.0cmx6.0cm", 945, 709},
    {"10寸 10.0cmx8.0cm", 1181, 945},
    {"12寸 12.0cmx10.0cm", 1417, 1181},
    {"15寸 15.0cmx10.0cm", 1772, 1181},
    {"身份证 8.56cmx5.40cm", 1011, 638},
    {"身份证照 2.2cmx3.2cm", 260, 378},
    {"身份证照 2.6cmx3.2cm", 307, 378},
    {"银行卡 8.56cmx5.40cm", 1011, 638},
    {"工作证 8.54cmx5.4cm", 1009, 638},
    {"工作证 9.0cmx9.0cm", 1063, 1063},
    {"工作证 15.0cmx10.0cm", 1772, 1181},
    {"中国护照照 3.3cmx4.8cm", 390, 567},
    {"普通证件照 3.3cmx4.8cm", 390, 567},
    {"港澳通行证照 3.3cmx4.8cm", 390, 567},
    {"美国签证照 5.0cmx5.0cm", 591, 591},
    {"日本签证照 4.5cmx4.5cm", 531, 531},
    {"毕业生照 3.3cmx4.8cm", 390, 567},
    {"驾照证件照 2.1cmx2.6cm", 248, 307},
    {"驾照证件照 2.2cmx3.2cm", 260, 378},
    {"行车证照 6.0cmx9.1cm", 709, 1075},
    {"IC卡 8.5cmx5.4cm", 1004, 638},
};

TEST(Presets, AreThese) {
  const std::vector<std::string> texts = PresetTexts();
  ASSERT_EQ(texts.size(), std::size(kRows));
  for (std::size_t i = 0; i < texts.size(); ++i) {
    EXPECT_EQ(texts[i], kRows[i].text);
    const auto size = ParsePreset(texts[i]);
    ASSERT_EQ(size.has_value(), kRows[i].width != 0) << texts[i];
    if (!size) continue;
    EXPECT_EQ(CmToPixels(size->first, 300), kRows[i].width) << texts[i];
    EXPECT_EQ(CmToPixels(size->second, 300), kRows[i].height) << texts[i];
  }
}

TEST(Presets, ATextWithoutASizeHasNone) {
  for (const char* text : {"", "自定义", "A版 ", "A版 9.0cm", "A版 cmxcm", "9.0cmx9.0cm", "A版 axb"}) {
    EXPECT_FALSE(ParsePreset(text)) << text;
  }
}

TEST(Presets, StudioPresetsAreTheFirstFive) {
  for (int entry = -1; entry < 37; ++entry) EXPECT_EQ(IsStudioPreset(entry), entry >= 1 && entry <= 5) << entry;
}

}  // namespace
}  // namespace quillon::job
