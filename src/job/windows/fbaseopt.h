// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <array>
#include <string>

#include "controls/control.h"
#include "controls/values.h"
#include "controls/window.h"
#include "job/settings/lists.h"

namespace quillon::job {

class Program;

// The advanced options. They have no effect until the window was loaded once (Flags::AdvancedOptionsLoaded). Closing
// the window hides it, so its values stay.
class FBaseOpt : public controls::Window {
 public:
  explicit FBaseOpt(Program& program);

  controls::Frame FrameRotate{*this, "FrameRotate", {.caption = "旋转"}};
  controls::ComboBox CmbRotate{*this, "CmbRotate", Inside(FrameRotate, "旋转规则："), RotateRules(), 0};
  controls::TextBox TAngle{*this,
                           "TAngle",
                           DisabledInside(FrameRotate, "角度：", "-180-+180，正值逆时针"),
                           "0",
                           controls::Content::Number,
                           {-180, 180}};
  controls::CheckBox ChRotateCut{*this, "ChRotateCut", Inside(FrameRotate, "先旋转后裁剪")};
  controls::CheckBox ChRecover{*this, "ChRecover",
                               DisabledInside(FrameRotate, "还原", "先旋转再裁剪，裁剪之后再旋转回来还原")};
  controls::Frame FrameZoom{*this, "FrameZoom", {.caption = "缩放"}};
  controls::ComboBox CmbZoom{
      *this,         "CmbZoom", Inside(FrameZoom, "缩放：", "自行指定等比缩放的比例，或者指定新的缩放尺寸"),
      ZoomEntries(), 0,         controls::Editable::Yes};
  controls::CheckBox ChZoomAndCut{*this, "ChZoomAndCut", Inside(FrameZoom, "先缩放后裁剪")};
  controls::CheckBox ChCutAndZoom{*this, "ChCutAndZoom", Inside(FrameZoom, "先裁剪后缩放")};
  controls::Frame FrameSize{*this, "FrameSize", {.caption = "裁剪方式"}};
  controls::CheckBox ChKeepCut{
      *this, "ChKeepCut",
      Inside(FrameSize, "保留裁剪",
             "裁剪后所得的图片尺寸都一样，即从图片中抠出一样尺寸大小的图，须指定裁剪的起点坐标")};
  controls::CheckBox ChAutoCenter{*this, "ChAutoCenter", Inside(FrameSize, "自动居中裁剪")};
  // The tag is set after a region run: until then the box disables menuNormalCut.
  controls::CheckBox ChMulCut{*this, "ChMulCut", Inside(FrameSize, "多区域裁剪", "每张底图要从中抠出几个区域出来")};
  controls::CheckBox ChMamal{*this, "ChMamal", Inside(FrameSize, "手动裁剪")};
  controls::CheckBox ChSplit{*this, "ChSplit", Inside(FrameSize, "图片分切")};
  controls::CheckBox ChFilter{*this, "ChFilter",
                              Inside(FrameSize, "过滤小图片", "忽略处理或加载小于等于指定尺寸的图片")};
  // (0), (1) thresholds of ChFilter in pixels; (2), (3) height and width of the fixed size in pixels; (4), (5) columns
  // and rows of ChSplit. A threshold or count beyond its limits is reset to its default.
  controls::ControlArray<controls::TextBox, 6> TSmalS{
      *this, "TSmalS", [this](controls::Window& window, std::string name, std::size_t index) {
        static constexpr std::array kCaptions{"最小宽：", "最小高：", "高：", "宽：", "分切列数：", "分切行数："};
        static constexpr std::array kTips{"", "", "抠出新图的高", "抠出的新图的宽", "", ""};
        static constexpr std::array kValues{"100", "100", "1800", "1000", "2", "2"};
        return controls::TextBox(
            window, std::move(name),
            index < 4 ? Inside(FrameSize, kCaptions[index], kTips[index]) : DisabledInside(FrameSize, kCaptions[index]),
            kValues[index], controls::Content::Integer, LimitsOf(index));
      }};
  controls::Frame FrameBoard{*this, "FrameBoard", {.caption = "边框(单位：mm)"}};
  controls::CheckBox ChAddBoard{*this, "ChAddBoard", Inside(FrameBoard, "裁剪后加边框")};
  controls::CheckBox ChFrmOnly{*this, "ChFrmOnly", Inside(FrameBoard, "仅边框")};
  controls::ControlArray<controls::TextBox, 4> TBoard{
      *this, "TBoard", [this](controls::Window& window, std::string name, std::size_t index) {
        static constexpr std::array kCaptions{"左：", "上：", "右：", "下："};
        return controls::TextBox(window, std::move(name), Inside(FrameBoard, kCaptions[index], "单位：mm"), "0",
                                 controls::Content::Number, {0, {}});
      }};
  controls::ColourBox PBoardColor{*this, "PBoardColor", Inside(FrameBoard, "边框颜色"), base::kWhite};
  controls::Frame FrameColour{*this, "FrameColour", {.caption = "颜色"}};
  controls::CheckBox ChToGray{*this, "ChToGray", Inside(FrameColour, "转灰度")};
  controls::CheckBox ChToWB{*this, "ChToWB", Inside(FrameColour, "黑白")};
  controls::CheckBox ChInvert{*this, "ChInvert", Inside(FrameColour, "反相")};
  controls::CheckBox ChToCMYK{*this, "ChToCMYK", Inside(FrameColour, "转CMYK")};
  controls::ComboBox CmbCMYK{
      *this, "CmbCMYK", Inside(FrameColour, "CMYK配置文件：", "设置您自己的RGB转CMYK配置文件"), {}};
  controls::CheckBox ChClsWhite{*this, "ChClsWhite", Inside(FrameColour, "去白边")};
  controls::CheckBox ChClsBlack{*this, "ChClsBlack", Inside(FrameColour, "去黑边")};
  controls::Frame FrameOutput{*this, "FrameOutput", {.caption = "输出"}};
  controls::ComboBox CmbExtCase{*this, "CmbExtCase", Inside(FrameOutput, "后缀名："), ExtensionCases(), 0};
  controls::ComboBox CmbDPI{*this, "CmbDPI", Inside(FrameOutput, "重设DPI：", "重设DPI，0表示默认，原图像尺寸不变"),
                            DpiEntries(), 0};
  controls::CheckBox ChKeepExif{*this, "ChKeepExif", Inside(FrameOutput, "保留Exif")};
  controls::CheckBox ChBig{*this, "ChBig", Inside(FrameOutput, "超大容量")};
  controls::CheckBox ChOmitFolds{*this, "ChOmitFolds", Inside(FrameOutput, "忽略已处理过的文件夹")};

  // Shows the fixed size of Form1.TFixWH, (3) the width and (2) the height, without writing it back there.
  void AcceptFixedSize(const std::string& width, const std::string& height);

 protected:
  void OnLoad() override;

 private:
  static controls::Limits LimitsOf(std::size_t sizeBox);
  void ConnectHandlers();
  void ConnectChecks();
  void CmbRotate_Click();
  void TAngle_Change();
  void ChRotateCut_Click();
  void CmbZoom_Change();
  void ChZoomAndCut_Click();
  void ChCutAndZoom_Click();
  void ChMulCut_Click();
  void ChMamal_Click();
  void ChSplit_Click();
  void TSmalS_Change(std::size_t index);
  void MirrorFixedSize();
  void ChAddBoard_Click();
  void ChFrmOnly_Click();
  void TBoard_Change(std::size_t index);
  void ChToGray_Click();
  void ChToWB_Click();
  void ChToCMYK_Click();
  void ChClsEdge_Click(controls::CheckBox& box, controls::CheckBox& other);
  void CmbDPI_Click();
  void ChKeepExif_Click();
  void ChAutoCenter_Click();
  void ChBig_Click();

  void ClearProcessing();
  void ApplyFlags();
  // Clears box and asks the missing-resource question if it is on but what it needs is not available. Returns whether
  // it did.
  bool Lacks(controls::CheckBox& box, bool available);
  // Clears box if it is on in a mode that works on pages or frames. Returns whether it did.
  bool ClearInPagedMode(controls::CheckBox& box);

  Program& program_;
  bool mirroring_ = false;  // the fixed size is being passed between the two windows
};

}  // namespace quillon::job
