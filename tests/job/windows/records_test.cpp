// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
// How the windows open: every control with its caption, tooltip, value, entries and limits.
#include <set>
#include <vector>

#include "job/program_fixture.h"

namespace quillon::job {
namespace {

using Texts = std::vector<std::string>;
using controls::Kind;

class RecordsTest : public StartedTest {
 protected:
  const controls::Control& At(const std::string& name) {
    const controls::Control* control = program.windows.Find(name);
    if (!control) throw std::runtime_error("no control " + name);
    return *control;
  }
};

struct Field {
  const char* name;
  Kind kind;
  const char* caption;
  const char* value;
};

TEST_F(RecordsTest, MainWindowFields) {
  const Field fields[] = {
      {"LInDir", Kind::Label, "输入目录未指定", "输入目录未指定"},
      {"LOutDir", Kind::Label, "输出目录未指定", "输出目录未指定"},
      {"TCutValue(0)", Kind::TextBox, "左：", "0"},
      {"TCutValue(1)", Kind::TextBox, "上：", "0"},
      {"TCutValue(2)", Kind::TextBox, "右：", "0"},
      {"TCutValue(3)", Kind::TextBox, "下：", "5"},
      {"Frame2", Kind::Frame, "裁剪参数(单位：像素)：", "裁剪参数(单位：像素)："},
      {"ChCutA", Kind::CheckBox, "绝对裁剪", "1"},
      {"ChAsFramed", Kind::CheckBox, "按预览框裁剪", "0"},
      {"ChFixCut", Kind::CheckBox, "固定裁剪", "0"},
      {"ChExact", Kind::CheckBox, "成品尺寸", "0"},
      {"ChExactPad", Kind::CheckBox, "不裁，补边", "0"},
      {"CmbAnchor", Kind::ComboBox, "取图位置：", "4"},
      {"TFixWH(0)", Kind::TextBox, "宽：", "1062"},
      {"TFixWH(1)", Kind::TextBox, "高：", "1630"},
      {"CmbKeepCut", Kind::ComboBox, "固定尺寸：", "0"},
      {"ChAutoCenter", Kind::CheckBox, "居中裁剪", "0"},
      {"ChFull", Kind::CheckBox, "自动顶格", "0"},
      {"ChAutoZoom", Kind::CheckBox, "等比缩放", "0"},
      {"ChAddToSize", Kind::CheckBox, "补白为指定尺寸", "0"},
      {"ChMode1", Kind::CheckBox, "右扩边补齐", "0"},
      {"CmbCutStyle", Kind::ComboBox, "裁剪形状：", "0"},
      {"CmbCutMode", Kind::ComboBox, "裁剪模式：", "0"},
      {"CmbOutType", Kind::ComboBox, "输出类型：", "0"},
      {"CmbDPI", Kind::ComboBox, "重设DPI：", "0"},
      {"TQuality", Kind::TextBox, "品质：", "80"},
      {"ChJpgComp", Kind::CheckBox, "压缩", "0"},
      {"ChKeepDir", Kind::CheckBox, "保留源目录结构", "0"},
      {"ChOver", Kind::CheckBox, "覆盖原文件", "0"},
      {"ChSubFold", Kind::CheckBox, "含子文件夹", "0"},
      {"ChBig", Kind::CheckBox, "超大容量", "0"},
      {"ChLarge", Kind::CheckBox, "超大图", "0"},
      {"ChBack", Kind::CheckBox, "备用", "0"},
      {"ChCutAndArray", Kind::CheckBox, "裁剪后拼版", "0"},
      {"MSF", Kind::Grid, "文件列表", "0"},
      {"LStatus", Kind::Label, "", ""},
  };
  for (const Field& field : fields) {
    const controls::Control& control = At(field.name);
    EXPECT_EQ(control.GetKind(), field.kind) << field.name;
    EXPECT_EQ(control.Caption(), field.caption) << field.name;
    EXPECT_EQ(control.Value(), field.value) << field.name;
  }
}

TEST_F(RecordsTest, OptionFields) {
  const Field fields[] = {
      {"FBaseOpt.CmbExtCase", Kind::ComboBox, "后缀名：", "0"},
      {"FBaseOpt.CmbRotate", Kind::ComboBox, "旋转规则：", "0"},
      {"FBaseOpt.TAngle", Kind::TextBox, "角度：", "0"},
      {"FBaseOpt.ChRotateCut", Kind::CheckBox, "先旋转后裁剪", "0"},
      {"FBaseOpt.ChRecover", Kind::CheckBox, "还原", "0"},
      {"FBaseOpt.ChFrmOnly", Kind::CheckBox, "仅边框", "0"},
      {"FBaseOpt.ChAutoCenter", Kind::CheckBox, "自动居中裁剪", "0"},
      {"FBaseOpt.ChAddBoard", Kind::CheckBox, "裁剪后加边框", "0"},
      {"FBaseOpt.TBoard(0)", Kind::TextBox, "左：", "0"},
      {"FBaseOpt.TBoard(1)", Kind::TextBox, "上：", "0"},
      {"FBaseOpt.TBoard(2)", Kind::TextBox, "右：", "0"},
      {"FBaseOpt.TBoard(3)", Kind::TextBox, "下：", "0"},
      {"FBaseOpt.PBoardColor", Kind::ColourBox, "边框颜色", "16777215"},
      {"FBaseOpt.ChClsWhite", Kind::CheckBox, "去白边", "0"},
      {"FBaseOpt.ChClsBlack", Kind::CheckBox, "去黑边", "0"},
      {"FBaseOpt.TSmalS(0)", Kind::TextBox, "最小宽：", "100"},
      {"FBaseOpt.TSmalS(1)", Kind::TextBox, "最小高：", "100"},
      {"FBaseOpt.TSmalS(2)", Kind::TextBox, "高：", "1800"},
      {"FBaseOpt.TSmalS(3)", Kind::TextBox, "宽：", "1000"},
      {"FBaseOpt.TSmalS(4)", Kind::TextBox, "分切列数：", "2"},
      {"FBaseOpt.TSmalS(5)", Kind::TextBox, "分切行数：", "2"},
      {"FBaseOpt.ChSplit", Kind::CheckBox, "图片分切", "0"},
      {"FBaseOpt.ChKeepCut", Kind::CheckBox, "保留裁剪", "0"},
      {"FBaseOpt.ChMulCut", Kind::CheckBox, "多区域裁剪", "0"},
      {"FBaseOpt.ChFilter", Kind::CheckBox, "过滤小图片", "0"},
      {"FBaseOpt.CmbZoom", Kind::ComboBox, "缩放：", "0"},
      {"FBaseOpt.ChZoomAndCut", Kind::CheckBox, "先缩放后裁剪", "0"},
      {"FBaseOpt.ChCutAndZoom", Kind::CheckBox, "先裁剪后缩放", "0"},
      {"FBaseOpt.CmbDPI", Kind::ComboBox, "重设DPI：", "0"},
      {"FBaseOpt.ChInvert", Kind::CheckBox, "反相", "0"},
      {"FBaseOpt.ChKeepExif", Kind::CheckBox, "保留Exif", "0"},
      {"FBaseOpt.ChToWB", Kind::CheckBox, "黑白", "0"},
      {"FBaseOpt.ChToGray", Kind::CheckBox, "转灰度", "0"},
      {"FBaseOpt.ChBig", Kind::CheckBox, "超大容量", "0"},
      {"FBaseOpt.ChMamal", Kind::CheckBox, "手动裁剪", "0"},
      {"FBaseOpt.ChToCMYK", Kind::CheckBox, "转CMYK", "0"},
      {"FBaseOpt.CmbCMYK", Kind::ComboBox, "CMYK配置文件：", "-1"},
      {"FBaseOpt.ChOmitFolds", Kind::CheckBox, "忽略已处理过的文件夹", "0"},
  };
  for (const Field& field : fields) {
    const controls::Control& control = At(field.name);
    EXPECT_EQ(control.GetKind(), field.kind) << field.name;
    EXPECT_EQ(control.Caption(), field.caption) << field.name;
    EXPECT_EQ(control.Value(), field.value) << field.name;
  }
}

TEST_F(RecordsTest, Tooltips) {
  const std::pair<const char*, const char*> tips[] = {
      {"ChMode1", "发生旋转时的扩边模式，启用则右扩边，否则是底扩边"},
      {"CmbDPI", "重设DPI，0表示默认，原图像尺寸不变"},
      {"TQuality", "30-99，值越小，文件大小越小，但图像清晰度和品质越差，反之则反之"},
      {"ChBig", "一次性处理几十万以上时，文件列表容纳不下时启用本功能"},
      {"MSF", "双击预览当前行；支持文件拖放(Win7,Win10以管理员权限运行和兼容模式下则不支持文件拖放)；右键清空列表"},
      {"FBaseOpt.TAngle", "-180-+180，正值逆时针"},
      {"FBaseOpt.ChRecover", "先旋转再裁剪，裁剪之后再旋转回来还原"},
      {"FBaseOpt.TBoard(0)", "单位：mm"},
      {"FBaseOpt.TBoard(3)", "单位：mm"},
      {"FBaseOpt.TSmalS(3)", "抠出的新图的宽"},
      {"FBaseOpt.TSmalS(2)", "抠出新图的高"},
      {"FBaseOpt.ChKeepCut", "裁剪后所得的图片尺寸都一样，即从图片中抠出一样尺寸大小的图，须指定裁剪的起点坐标"},
      {"FBaseOpt.ChMulCut", "每张底图要从中抠出几个区域出来"},
      {"FBaseOpt.ChFilter", "忽略处理或加载小于等于指定尺寸的图片"},
      {"FBaseOpt.CmbZoom", "自行指定等比缩放的比例，或者指定新的缩放尺寸"},
      {"FBaseOpt.CmbCMYK", "设置您自己的RGB转CMYK配置文件"},
      {"FCutPre.ChHideShow", "显示/隐藏按钮和右侧、底部滚动条，方便确定裁剪框"},
  };
  for (const auto& [name, tip] : tips) EXPECT_EQ(At(name).Tooltip(), tip) << name;
}

TEST_F(RecordsTest, Entries) {
  const Texts dpi = {"0",   "72",  "78",  "82",  "84",  "86",  "92",  "94",  "96",
                     "120", "124", "156", "184", "192", "254", "300", "600", "1200"};
  const std::pair<const char*, Texts> lists[] = {
      {"CmbCutStyle", {"矩形裁剪", "正方形裁剪", "椭圆形裁剪", "圆形裁剪", "圆角矩形裁剪", "圆角正方形裁剪"}},
      {"CmbCutMode",
       {"0-普通裁剪", "1-动态Gif裁剪", "2-透明Png裁剪", "3-Pdf页面裁剪", "4-喷绘大图拼头裁剪", "5-多页Tiff裁剪",
        "6-颜色块裁剪", "7-视频裁剪", "8-音频裁剪"}},
      {"CmbOutType", {"jpg", "png", "gif", "tif", "bmp", "pdf"}},
      {"CmbDPI", dpi},
      {"FBaseOpt.CmbDPI", dpi},
      {"FBaseOpt.CmbExtCase", {"后缀名保持原样", "后缀名全大写", "后缀名全小写"}},
      {"FBaseOpt.CmbRotate",
       {"不旋转保持原样", "横向图选逆转90度后再裁剪", "横向图顺转90度后再裁剪", "纵向图选逆转90度后再裁剪",
        "纵向图顺转90度后再裁剪", "旋转任一角度"}},
  };
  for (const auto& [name, entries] : lists) EXPECT_EQ(At(name).Items(), entries) << name;
  EXPECT_EQ(At("CmbKeepCut").Items(), PresetTexts());
  EXPECT_EQ(At("FBaseOpt.CmbZoom").Text(), "100%");
  EXPECT_TRUE(options.CmbZoom.IsEditable());
  const Texts headers = {"  文 件 名  ", "类型", "文件路径", "宽/像素", "高/像素", "大小/Kb", "新大小/kb", "DPI"};
  EXPECT_EQ(form.MSF.Headers(), headers);
}

TEST_F(RecordsTest, Limits) {
  const std::tuple<const char*, const char*, const char*> limits[] = {
      {"TCutValue(0)", "0", "640"},    {"TCutValue(1)", "0", "480"}, {"TCutValue(2)", "0", "640"},
      {"TCutValue(3)", "0", "480"},    {"TQuality", "30", "99"},     {"FBaseOpt.TAngle", "-180", "180"},
      {"FBaseOpt.TBoard(0)", "0", ""}, {"TFixWH(0)", "1", "500000"}, {"FBaseOpt.TSmalS(2)", "1", "500000"},
  };
  for (const auto& [name, min, max] : limits) {
    EXPECT_EQ(At(name).MinText(), min) << name;
    EXPECT_EQ(At(name).MaxText(), max) << name;
  }
}

TEST_F(RecordsTest, NumberBoxesAcceptNumbersOnly) {
  for (const char* name : {"TCutValue(0)", "FBaseOpt.TBoard(1)"}) {
    EXPECT_TRUE(program.windows.Find(name)->UserEdit("2.5").Accepted()) << name;
    EXPECT_FALSE(program.windows.Find(name)->UserEdit("abc").Accepted()) << name;
    EXPECT_EQ(Value(name), "2.5");
  }
  for (const char* name : {"FBaseOpt.TSmalS(0)", "FBaseOpt.TSmalS(2)"}) {
    EXPECT_FALSE(program.windows.Find(name)->UserEdit("2.5").Accepted()) << name;
    EXPECT_TRUE(program.windows.Find(name)->UserEdit("120").Accepted()) << name;
  }
}

TEST_F(RecordsTest, WindowsAndTitles) {
  ASSERT_EQ(program.windows.All().size(), 3U);
  EXPECT_EQ(program.windows.FindWindow("Form1")->Title(), "Quillon");
  EXPECT_EQ(program.windows.FindWindow("FBaseOpt")->Title(), "高级选项");
  EXPECT_EQ(program.windows.FindWindow("FCutPre")->Title(), "裁剪框预览(空格键=下一张，Ctrl=本图扩边，Z=本图不裁剪)");
}

TEST_F(RecordsTest, AllParametersLieInFrame1) {
  for (const char* name : {"LInDir", "LOutDir", "ChSubFold", "ChCutA", "CmbCutMode", "CmbKeepCut", "TFixWH(1)",
                           "CmbOutType", "CmbDPI", "TQuality", "ChCutAndArray", "Frame2"}) {
    EXPECT_EQ(At(name).Parent(), &form.Frame1) << name;
  }
  for (const controls::TextBox& box : form.TCutValue) EXPECT_EQ(box.Parent(), &form.Frame2);
  EXPECT_EQ(form.MSF.Parent(), nullptr);
}

TEST_F(RecordsTest, TheMenuBar) {
  const std::pair<const char*, const char*> menus[] = {
      {"MenuFiles", "文件"}, {"MenuList", "列表"},  {"MenuOtherOptions", "选项"}, {"MenuCut", "裁剪"},
      {"MenuStop", "终止"},  {"MenuOther", "其他"}, {"MenuHelp", "帮助"}};
  Texts tops;
  for (const controls::Control* control : form.Controls()) {
    if (control->GetKind() == Kind::Menu && !control->Parent()) tops.push_back(control->Name());
  }
  ASSERT_EQ(tops.size(), std::size(menus));
  for (std::size_t i = 0; i < tops.size(); ++i) {
    EXPECT_EQ(tops[i], menus[i].first);
    EXPECT_EQ(At(tops[i]).Caption(), menus[i].second);
  }
}

TEST_F(RecordsTest, EveryMenuEntryHasACaptionAndAShortcutOfItsOwn) {
  std::set<std::string> shortcuts;
  for (const controls::Control* control : form.Controls()) {
    if (control->GetKind() != Kind::Menu) continue;
    EXPECT_FALSE(control->Caption().empty()) << control->Name();
    const bool top = !control->Parent() && control != &form.MenuStop;
    const std::string& shortcut = static_cast<const controls::Menu*>(control)->Shortcut();
    EXPECT_EQ(shortcut.empty(), top) << control->Name();
    if (!top) {
      EXPECT_TRUE(shortcuts.insert(shortcut).second) << control->Name() << " " << shortcut;
    }
  }
}

TEST_F(RecordsTest, OpenedWithWhatTheDefaultsAllow) {
  const char* disabled[] = {"TFixWH(0)",          "TFixWH(1)",          "ChAddToSize",
                            "TQuality",           "ChCutAndArray",      "MenuStop",
                            "MenuGifCut",         "MenuGifCutOps",      "MenuPngCut",
                            "MenuPngCutOps",      "MenuPdfCut",         "MenuPdfOps",
                            "MenuPenHui",         "MenuPenHuiCut",      "MenuTiffCut",
                            "MenuTifCutOps",      "MenuColorCut",       "FBaseOpt.TAngle",
                            "FBaseOpt.ChRecover", "FBaseOpt.TSmalS(4)", "FBaseOpt.TSmalS(5)",
                            "FCutPre.CmdNext",    "FCutPre.CmdNotCut",  "FCutPre.CmdAddBoard",
                            "FCutPre.CmdRot90",   "FCutPre.CmdRot270",  "ChExact",
                            "ChExactPad",         "CmbAnchor"};
  const std::set<std::string> expected(std::begin(disabled), std::end(disabled));
  for (const controls::Window* window : program.windows.All()) {
    for (const controls::Control* control : window->Controls()) {
      const std::string name = window == &form ? control->Name() : control->FullName();
      EXPECT_EQ(control->Enabled(), !expected.contains(name)) << name;
      // There is nothing to scroll before a picture is larger than its room.
      EXPECT_EQ(control->Visible(), name != "FCutPre.HS" && name != "FCutPre.VS") << name;
    }
  }
}

TEST_F(RecordsTest, ProfilesAreOfferedOnceTheirFilesAreThere) {
  WriteApp("ColorConfigs/Photoshop5DefaultCMYK.icc");
  WriteApp("ColorConfigs/Default.icm");
  WriteApp("ColorConfigs/Unlisted.icc");
  options.Load();
  EXPECT_EQ(options.CmbCMYK.Items(), (Texts{"Default.icm", "Photoshop5DefaultCMYK.icc"}));
  EXPECT_EQ(options.CmbCMYK.Text(), "Default.icm");
}

TEST_F(RecordsTest, EveryNamedProfileCanBeOffered) {
  const Texts names{"Default.icm",          "EuroscaleCoated.icc",       "EuroscaleUncoated.icc",
                    "JapanStandard.icc",    "Photoshop4DefaultCMYK.icc", "Photoshop5DefaultCMYK.icc",
                    "USSheetfedCoated.icc", "USSheetfedUncoated.icc",    "USWebCoatedSWOP.icc",
                    "USWebUncoated.icc",    "JapanColor2001Coated.icc",  "CoatedFOGRA39.icc",
                    "ISOcoated_v2.icc",     "default_cmyk.icc"};
  for (const std::string& name : names) WriteApp("ColorConfigs/" + name);
  options.Load();
  EXPECT_EQ(options.CmbCMYK.Items(), names);
}

}  // namespace
}  // namespace quillon::job
