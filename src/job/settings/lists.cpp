// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "job/settings/lists.h"

#include "base/number_text.h"

namespace quillon::job {

std::vector<std::string> CutModes() {
  return {"0-普通裁剪",     "1-动态Gif裁剪", "2-透明Png裁剪", "3-Pdf页面裁剪", "4-喷绘大图拼头裁剪",
          "5-多页Tiff裁剪", "6-颜色块裁剪",  "7-视频裁剪",    "8-音频裁剪"};
}

std::vector<std::string> CutStyles() {
  return {"矩形裁剪", "正方形裁剪", "椭圆形裁剪", "圆形裁剪", "圆角矩形裁剪", "圆角正方形裁剪"};
}

std::vector<std::string> Anchors() {
  return {"左上", "上中", "右上", "左中", "居中", "右中", "左下", "下中", "右下", "按左、上边距"};
}

std::vector<std::string> OutTypes() { return {"jpg", "png", "gif", "tif", "bmp", "pdf"}; }

std::vector<std::string> DpiEntries() {
  return {"0",   "72",  "78",  "82",  "84",  "86",  "92",  "94",  "96",
          "120", "124", "156", "184", "192", "254", "300", "600", "1200"};
}

int DpiOf(const controls::ComboBox& list) { return base::ParseInteger(list.Text()).value_or(0); }

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

std::vector<std::string> RotateRules() {
  return {"不旋转保持原样",           "横向图选逆转90度后再裁剪", "横向图顺转90度后再裁剪",
          "纵向图选逆转90度后再裁剪", "纵向图顺转90度后再裁剪",   "旋转任一角度"};
}

std::vector<std::string> ZoomEntries() {
  return {"100%", "10%", "20%", "25%", "30%", "40%", "50%", "60%", "70%", "75%", "80%", "90%", "150%", "200%", "300%"};
}

std::vector<std::string> ExtensionCases() { return {"后缀名保持原样", "后缀名全大写", "后缀名全小写"}; }

std::vector<std::string> ListHeaders(CutMode mode) {
  const bool pages = mode == CutMode::Pdf || mode == CutMode::Tiff;
  const char* sixth = mode == CutMode::Gif ? "Gif帧数" : pages ? "页数" : "新大小/kb";
  return {"  文 件 名  ", "类型", "文件路径", "宽/像素", "高/像素", "大小/Kb", sixth, "DPI"};
}

std::vector<std::string> CmykProfiles() {
  return {"Default.icm",          "EuroscaleCoated.icc",       "EuroscaleUncoated.icc",
          "JapanStandard.icc",    "Photoshop4DefaultCMYK.icc", "Photoshop5DefaultCMYK.icc",
          "USSheetfedCoated.icc", "USSheetfedUncoated.icc",    "USWebCoatedSWOP.icc",
          "USWebUncoated.icc",    "JapanColor2001Coated.icc",  "CoatedFOGRA39.icc",
          "ISOcoated_v2.icc",     "default_cmyk.icc"};
}

}  // namespace quillon::job
