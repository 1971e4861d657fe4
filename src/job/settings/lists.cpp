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

std::vector<std::string> OutTypes() { return {"jpg", "png", "gif", "tif", "bmp", "pdf"}; }

std::vector<std::string> DpiEntries() {
  return {"0",   "72",  "78",  "82",  "84",  "86",  "92",  "94",  "96",
          "120", "124", "156", "184", "192", "254", "300", "600", "1200"};
}

int DpiOf(const controls::ComboBox& list) { return base::ParseInteger(list.Text()).value_or(0); }

std::vector<std::string> RotateRules() {
  return {"不旋转保持原样",           "横向图选逆转90度后再裁剪", "横向图顺转90度后再裁剪",
          "纵向图选逆转90度后再裁剪", "纵向图顺转90度后再裁剪",   "旋转任一角度"};
}

std::vector<std::string> ZoomEntries() {
  return {"100%", "10%", "20%", "25%", "30%", "40%", "50%", "60%", "70%", "75%", "80%", "90%", "150%", "200%", "300%"};
}

std::vector<std::string> ExtensionCases() { return {"后缀名保持原样", "后缀名全大写", "后缀名全小写"}; }

std::vector<std::string> ListHeaders() {
  return {"  文 件 名  ", "类型", "文件路径", "宽/像素", "高/像素", "大小/Kb", "新大小/kb", "DPI"};
}

std::vector<std::string> CmykProfiles() {
  return {"Default.icm",          "EuroscaleCoated.icc",       "EuroscaleUncoated.icc",
          "JapanStandard.icc",    "Photoshop4DefaultCMYK.icc", "Photoshop5DefaultCMYK.icc",
          "USSheetfedCoated.icc", "USSheetfedUncoated.icc",    "USWebCoatedSWOP.icc",
          "USWebUncoated.icc",    "JapanColor2001Coated.icc",  "CoatedFOGRA39.icc",
          "ISOcoated_v2.icc",     "default_cmyk.icc"};
}

}  // namespace quillon::job
