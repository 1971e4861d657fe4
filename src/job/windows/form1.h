// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <array>
#include <string>

#include "controls/control.h"
#include "controls/grid.h"
#include "controls/values.h"
#include "controls/window.h"
#include "job/settings/geometry.h"
#include "job/settings/lists.h"

namespace quillon::job {

class Program;

// The program's title; also its application key in the settings.
inline constexpr const char* kTitle = "Quillon";
// The texts of the folder labels until a folder is chosen.
inline constexpr const char* kNoInputFolder = "输入目录未指定";
inline constexpr const char* kNoOutputFolder = "输出目录未指定";
// Why MenuStop is disabled between runs.
inline constexpr const char* kNothingRuns = "当前没有可以终止的操作";

// The limits of the width and height of a fixed cut, in pixels.
inline constexpr controls::Limits kFixedSideLimits{1, 500000, controls::Beyond::Refused};

// The name of the user guide, in the program folder or among the installed documents.
inline constexpr const char* kGuide = "用户手册.md";

// The main window: the shared cut parameters, the file list and the menus that start a batch. The order of the members
// is the order in which the window shows them.
class Form1 : public controls::Window {
 public:
  explicit Form1(Program& program);

  // --- Menus, in the order of the menu bar.
  controls::Menu MenuFiles{*this, "MenuFiles", {.caption = "文件"}};
  controls::Menu MenuAddFiles{*this, "MenuAddFiles", Inside(MenuFiles, "添加文件..."), "Ctrl+O"};
  controls::Menu MenuReadFiles{*this, "MenuReadFiles", Inside(MenuFiles, "读取输入目录"), "Ctrl+R"};
  controls::Menu MenuInputDir{*this, "MenuInputDir", Inside(MenuFiles, "选择输入目录..."), "Ctrl+I"};
  controls::Menu MenuOutDir{*this, "MenuOutDir", Inside(MenuFiles, "选择输出目录..."), "Ctrl+D"};
  controls::Menu MenuOpenOutDir{*this, "MenuOpenOutDir", Inside(MenuFiles, "打开输出目录"), "Ctrl+E"};
  controls::Menu MenuExit{*this, "MenuExit", Inside(MenuFiles, "退出"), "Ctrl+Q"};
  controls::Menu MenuList{*this, "MenuList", {.caption = "列表"}};
  controls::Menu MenuDelSelected{*this, "MenuDelSelected", Inside(MenuList, "删除选中行"), "Del"};
  controls::Menu MenuClearList{*this, "MenuClearList", Inside(MenuList, "清空列表"), "Ctrl+L"};
  controls::Menu MenuOtherOptions{*this, "MenuOtherOptions", {.caption = "选项"}};
  controls::Menu MenuBaseOptions{*this, "MenuBaseOptions", Inside(MenuOtherOptions, "高级选项"), "F4"};
  controls::Menu MenuGifCutOps{*this, "MenuGifCutOps", DisabledInside(MenuOtherOptions, "动态Gif裁剪选项"),
                               "Ctrl+Shift+1"};
  controls::Menu MenuPngCutOps{*this, "MenuPngCutOps", DisabledInside(MenuOtherOptions, "透明Png裁剪选项"),
                               "Ctrl+Shift+2"};
  controls::Menu MenuPdfOps{*this, "MenuPdfOps", DisabledInside(MenuOtherOptions, "Pdf页面裁剪选项"), "Ctrl+Shift+3"};
  controls::Menu MenuPenHui{*this, "MenuPenHui", DisabledInside(MenuOtherOptions, "喷绘大图拼头裁剪选项"),
                            "Ctrl+Shift+4"};
  controls::Menu MenuTifCutOps{*this, "MenuTifCutOps", DisabledInside(MenuOtherOptions, "多页Tiff裁剪选项"),
                               "Ctrl+Shift+5"};
  controls::Menu MenuCut{*this, "MenuCut", {.caption = "裁剪", .enabled = false}};
  controls::Menu menuNormalCut{*this, "menuNormalCut", Inside(MenuCut, "普通裁剪"), "F5"};
  controls::Menu MenuGifCut{*this, "MenuGifCut", DisabledInside(MenuCut, "动态Gif裁剪"), "Ctrl+1"};
  controls::Menu MenuPngCut{*this, "MenuPngCut", DisabledInside(MenuCut, "透明Png裁剪"), "Ctrl+2"};
  controls::Menu MenuPdfCut{*this, "MenuPdfCut", DisabledInside(MenuCut, "Pdf页面裁剪"), "Ctrl+3"};
  controls::Menu MenuPenHuiCut{*this, "MenuPenHuiCut", DisabledInside(MenuCut, "喷绘大图拼头裁剪"), "Ctrl+4"};
  controls::Menu MenuTiffCut{*this, "MenuTiffCut", DisabledInside(MenuCut, "多页Tiff裁剪"), "Ctrl+5"};
  controls::Menu MenuColorCut{*this, "MenuColorCut", DisabledInside(MenuCut, "颜色块裁剪"), "Ctrl+6"};
  // An entry of its own, since a run disables MenuCut with all its entries.
  controls::Menu MenuStop{*this, "MenuStop", {.caption = "终止", .enabled = false}, "Esc"};
  controls::Menu MenuOther{*this, "MenuOther", {.caption = "其他"}};
  controls::Menu MenuChSizeFormat{*this, "MenuChSizeFormat", Inside(MenuOther, "压缩、缩放和转换格式"), "Ctrl+Shift+Z"};
  controls::Menu MenuExtentAndCut{*this, "MenuExtentAndCut", Inside(MenuOther, "图片扩边"), "Ctrl+Shift+E"};
  controls::Menu MenuUnitConvert{*this, "MenuUnitConvert", DisabledInside(MenuOther, "像素英寸厘米转换器"), "Ctrl+U"};
  controls::Menu MenuMulCut{*this, "MenuMulCut", Inside(MenuOther, "多区域裁剪"), "Ctrl+M"};
  controls::Menu MenuCutTime{*this, "MenuCutTime", Inside(MenuOther, "图片定时裁剪"), "Ctrl+T"};
  controls::Menu MenuHelp{*this, "MenuHelp", {.caption = "帮助"}};
  controls::Menu MenuGuide{*this, "MenuGuide", Inside(MenuHelp, "使用说明"), "F1"};
  controls::Menu MenuAbout{*this, "MenuAbout", Inside(MenuHelp, "关于"), "Shift+F1"};

  // --- Frame1 holds all parameters; Frame2 the margins, with the unit in its caption.
  controls::Frame Frame1{*this, "Frame1", {.caption = "参数"}};
  controls::Label LInDir{*this, "LInDir", Inside(Frame1, kNoInputFolder), controls::Editable::Yes};
  controls::Label LOutDir{*this, "LOutDir", Inside(Frame1, kNoOutputFolder), controls::Editable::Yes};
  controls::CheckBox ChSubFold{*this, "ChSubFold", Inside(Frame1, "含子文件夹")};
  controls::CheckBox ChKeepDir{*this, "ChKeepDir", Inside(Frame1, "保留源目录结构")};
  controls::CheckBox ChOver{*this, "ChOver", Inside(Frame1, "覆盖原文件")};
  controls::CheckBox ChBig{*this, "ChBig",
                           Inside(Frame1, "超大容量", "一次性处理几十万以上时，文件列表容纳不下时启用本功能")};
  controls::CheckBox ChLarge{*this, "ChLarge", Inside(Frame1, "超大图")};
  controls::CheckBox ChBack{*this, "ChBack", Inside(Frame1, "备用")};
  controls::Frame Frame2{*this, "Frame2", Inside(Frame1, "裁剪参数(单位：%)：")};
  controls::ControlArray<controls::TextBox, 4> TCutValue{
      *this, "TCutValue", [this](controls::Window& window, std::string name, std::size_t index) {
        static constexpr std::array kCaptions{"左：", "上：", "右：", "下："};
        static constexpr std::array kValues{"0", "0", "0", "5"};
        return controls::TextBox(window, std::move(name), Inside(Frame2, kCaptions[index]), kValues[index],
                                 controls::Content::Number);
      }};
  controls::CheckBox ChCutA{*this, "ChCutA", Inside(Frame1, "绝对裁剪")};
  controls::CheckBox ChAsFramed{
      *this, "ChAsFramed",
      Inside(Frame1, "按预览框裁剪", "裁剪结果就是预览中的框，宽、高不再当作右边、下边要去掉的像素")};
  controls::ComboBox CmbCutMode{*this, "CmbCutMode", Inside(Frame1, "裁剪模式："), CutModes(), 0};
  controls::ComboBox CmbCutStyle{*this, "CmbCutStyle", Inside(Frame1, "裁剪形状："), CutStyles(), 0};
  controls::CheckBox ChFixCut{*this, "ChFixCut", DisabledInside(Frame1, "固定裁剪")};
  controls::ComboBox CmbKeepCut{*this, "CmbKeepCut", Inside(Frame1, "固定尺寸："), PresetTexts(), 0};
  controls::ControlArray<controls::TextBox, 2> TFixWH{
      *this, "TFixWH", [this](controls::Window& window, std::string name, std::size_t index) {
        return controls::TextBox(
            window, std::move(name),
            index == 0 ? DisabledInside(Frame1, "宽：", "像素") : DisabledInside(Frame1, "高：", "像素"),
            index == 0 ? "1062" : "1630", controls::Content::Integer, kFixedSideLimits);
      }};
  controls::CheckBox ChExact{
      *this, "ChExact",
      DisabledInside(Frame1, "成品尺寸", "结果正好是“宽”×“高”像素：取同一比例的最大一块，再缩放到这个尺寸")};
  controls::CheckBox ChExactPad{*this, "ChExactPad",
                                DisabledInside(Frame1, "不裁，补边", "整张图片缩放到成品尺寸之内，四周用边框颜色补足")};
  controls::ComboBox CmbAnchor{*this, "CmbAnchor", DisabledInside(Frame1, "取图位置："), Anchors(), kAnchorCentre};
  controls::CheckBox ChAutoCenter{*this, "ChAutoCenter", Inside(Frame1, "居中裁剪")};
  controls::CheckBox ChFull{*this, "ChFull", Inside(Frame1, "自动顶格")};
  controls::CheckBox ChAutoZoom{*this, "ChAutoZoom", Inside(Frame1, "等比缩放")};
  controls::CheckBox ChAddToSize{*this, "ChAddToSize", DisabledInside(Frame1, "补白为指定尺寸")};
  controls::CheckBox ChMode1{*this, "ChMode1",
                             Inside(Frame1, "右扩边补齐", "发生旋转时的扩边模式，启用则右扩边，否则是底扩边")};
  controls::ComboBox CmbOutType{*this, "CmbOutType", Inside(Frame1, "输出类型："), OutTypes(), 0};
  controls::ComboBox CmbDPI{*this, "CmbDPI", Inside(Frame1, "重设DPI：", "重设DPI，0表示默认，原图像尺寸不变"),
                            DpiEntries(), 0};
  controls::CheckBox ChJpgComp{*this, "ChJpgComp", Inside(Frame1, "压缩")};
  controls::TextBox TQuality{
      *this,
      "TQuality",
      DisabledInside(Frame1, "品质：", "30-99，值越小，文件大小越小，但图像清晰度和品质越差，反之则反之"),
      "80",
      controls::Content::Integer,
      {30, 99}};
  controls::CheckBox ChCutAndArray{*this, "ChCutAndArray", DisabledInside(Frame1, "裁剪后拼版")};

  // --- The list and the status panel beneath it.
  controls::Grid MSF{
      *this,
      "MSF",
      {.caption = "文件列表",
       .tooltip = "双击预览当前行；支持文件拖放(Win7,Win10以管理员权限运行和兼容模式下则不支持文件拖放)；右键清空列表"},
      ListHeaders()};
  controls::Label LStatus{*this, "LStatus", {}};

  // --- Handlers, by control.
  void TCutValue_Change(std::size_t index);
  void ChCutA_Click();
  void ChFixCut_Click();
  void CmbKeepCut_Click();
  void TFixWH_Change(std::size_t index);
  void CmbCutMode_Click();
  void CmbCutStyle_Click();
  void CmbDPI_Click();
  void CmbOutType_Click();
  void ChAutoCenter_Click();
  void ChCutAndArray_Click();
  void ChBig_Click();
  void ChLarge_Click();
  void TQuality_Change();
  void LInDir_Change();
  void LOutDir_Change();
  void MenuStop_Click();
  void MenuOpenOutDir_Click();
  void MenuGuide_Click();
  void MenuAbout_Click();

  // Called by the user's close button and MenuExit: asks, cleans up and ends the program; see Program::Unload. While a
  // run or a listing is in progress (Flags::Busy) it asks whether to stop that; the program then ends after it, see
  // Flags::CloseRequested.
  void Close() override;

  // Shows the text in front of the title; "" shows the plain title.
  void ShowStatus(const std::string& statusText) { SetTitle(statusText + kTitle); }

  // BeginRun clears StopRequested, disables Frame1 and the menus, and enables MenuStop. EndRun enables them again,
  // restores the title and disables MenuStop.
  void BeginRun();
  void EndRun();

  // Returns the entry that starts the driver of the chosen mode, nullptr if the mode has none.
  controls::Menu* MenuOfMode();

  // Hides the menu entries of windows and drivers that this program does not have. Only a program with a window calls
  // it: scripts are answered with a reason.
  void HideMissingEntries();

  // Sets the limits of TCutValue by the unit in use and the picture in the preview.
  // Returns whether TCutValue is in pixels; else it is in per cent, as always in mode 3.
  bool MarginsInPixels() const;
  void ShowMarginLimits();
  // Returns whether ChCutA can be switched off without moving the frame on show. Per cent ends a fixed cut, and with it
  // the preset, its resolution and ChOver; and a margin is at most 90 %.
  bool CanUsePercent() const;
  // Places the frame in the preview by the parameters, and shows each margin in per cent of the picture in its tooltip.
  void ShowFrame();
  // Shows in the preview what a cut by that geometry gives.
  void ShowResult(const CutGeometry& geometry);

 private:
  void ConnectParameters();
  void ConnectMenus();
  void ConnectWindows();
  // Opens a window, or asks the missing-resource question if the program has none of that name.
  void OpenWindow(const std::string& name);
  // Returns false if the program lacks something that the presets switch on.
  bool ApplyStudioPreset();
  void ApplyBorderPreset(int entry);
  // Enables ChFrmOnly if there is a border that can stand alone.
  void FreeFrameOnly();
  // Called when the unit of the margins may have changed.
  void ShowUnit();
  void ConvertMargins();
  bool ModeIsThere(CutMode mode);

  Program& program_;
  bool firstPresetSeen_ = false;   // entry 1 of CmbKeepCut was chosen before
  bool scannedPdfsNoted_ = false;  // mode 3 was chosen before
  bool pixelsShown_ = false;       // the unit of the margins as Frame2 names it
  int lastPreset_ = kCustomSize;
};

}  // namespace quillon::job
