// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
// Each control of the windows that hold parameters is read by one field of CutSettings, or is named here as no
// parameter of the cut.
#include <algorithm>
#include <cctype>
#include <iterator>
#include <map>
#include <set>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "job/settings/cut_settings.h"
#include "job/windows/options_fixture.h"

namespace quillon::job {
namespace {

using Names = std::set<std::string>;
using Fields = std::map<std::string, std::string>;

template <typename Number>
std::string Shown(Number value) {
  return std::to_string(value);
}
std::string Shown(const std::string& text) { return text; }

// Every field by its name. The bindings name all members, so that a new field does not compile until it is added here.
Fields FieldsOf(const CutGeometry& geometry) {
  const auto& [ML, MT, MR, MB, FixW, FixH, TSmalS2, TSmalS3, ChCutA, ChFixCut, ChAutoZoom, ChFull, loaded, skips,
               ChAsFramed, ChAutoCenter, ChExact, ChExactPad, CmbAnchor] = geometry;
  return {{"ML", Shown(ML)},
          {"MT", Shown(MT)},
          {"MR", Shown(MR)},
          {"MB", Shown(MB)},
          {"FixW", Shown(FixW)},
          {"FixH", Shown(FixH)},
          {"TSmalS2", Shown(TSmalS2)},
          {"TSmalS3", Shown(TSmalS3)},
          {"ChCutA", Shown(ChCutA)},
          {"ChFixCut", Shown(ChFixCut)},
          {"ChAutoZoom", Shown(ChAutoZoom)},
          {"ChFull", Shown(ChFull)},
          {"AdvancedOptionsLoaded", Shown(loaded)},
          {"SkipCutThisImage", Shown(skips)},
          {"ChAsFramed", Shown(ChAsFramed)},
          {"ChAutoCenter", Shown(ChAutoCenter)},
          {"ChExact", Shown(ChExact)},
          {"ChExactPad", Shown(ChExactPad)},
          {"CmbAnchor", Shown(CmbAnchor)}};
}

Fields FieldsOf(const CutSettings& settings) {
  const auto& [mode, geometry, outFolder, outType, over, keepFolders, quality, dpi, preset, padToSize, extendRight,
               logoOnly, manual, keepExif, blackWhite, toCmyk, smallest, frameOnly, omitFolders, extensionCase,
               zoomBefore, zoomAfter, zoom, rotateRule, angle, rotateCut, restore, toGray, invert, ownDpi, split,
               columns, rows, addBoard, boardMm, boardColour] = settings;
  Fields fields = FieldsOf(geometry);
  fields.insert({{"mode", std::to_string(static_cast<int>(mode))},
                 {"outFolder", Shown(outFolder)},
                 {"outType", Shown(outType)},
                 {"over", Shown(over)},
                 {"keepFolders", Shown(keepFolders)},
                 {"quality", Shown(quality)},
                 {"dpi", Shown(dpi)},
                 {"preset", Shown(preset)},
                 {"padToSize", Shown(padToSize)},
                 {"extendRight", Shown(extendRight)},
                 {"logoOnly", Shown(logoOnly)},
                 {"manual", Shown(manual)},
                 {"keepExif", Shown(keepExif)},
                 {"blackWhite", Shown(blackWhite)},
                 {"toCmyk", Shown(toCmyk)},
                 {"smallest.width", Shown(smallest.width)},
                 {"smallest.height", Shown(smallest.height)},
                 {"frameOnly", Shown(frameOnly)},
                 {"omitFolders", Shown(omitFolders)},
                 {"extensionCase", Shown(static_cast<int>(extensionCase))},
                 {"zoomBefore", Shown(zoomBefore)},
                 {"zoomAfter", Shown(zoomAfter)},
                 {"zoom", Shown(zoom)},
                 {"rotateRule", Shown(rotateRule)},
                 {"angle", Shown(angle)},
                 {"rotateCut", Shown(rotateCut)},
                 {"restore", Shown(restore)},
                 {"toGray", Shown(toGray)},
                 {"invert", Shown(invert)},
                 {"ownDpi", Shown(ownDpi)},
                 {"split", Shown(split)},
                 {"columns", Shown(columns)},
                 {"rows", Shown(rows)},
                 {"addBoard", Shown(addBoard)},
                 {"boardMm[0]", Shown(boardMm[0])},
                 {"boardMm[1]", Shown(boardMm[1])},
                 {"boardMm[2]", Shown(boardMm[2])},
                 {"boardMm[3]", Shown(boardMm[3])},
                 {"boardColour", Shown(boardColour.value)}});
  return fields;
}

struct Read {
  const char* control;
  const char* text;  // a user's edit that changes the control
  Names fields;
};

const std::vector<Read>& ReadControls() {
  static const std::vector<Read> kRead = {
      {"Form1.CmbCutMode", "4", {"mode"}},
      {"Form1.LOutDir", "/", {"outFolder"}},
      {"Form1.ChKeepDir", "1", {"keepFolders"}},
      {"Form1.ChOver", "1", {"over"}},
      {"Form1.TCutValue(0)", "11", {"ML"}},
      {"Form1.TCutValue(1)", "12", {"MT"}},
      {"Form1.TCutValue(2)", "13", {"MR"}},
      {"Form1.TCutValue(3)", "14", {"MB"}},
      {"Form1.ChCutA", "0", {"ChCutA"}},
      {"Form1.ChAsFramed", "1", {"ChAsFramed"}},
      {"Form1.ChFixCut", "1", {"ChFixCut"}},
      {"Form1.ChExact", "1", {"ChExact"}},
      {"Form1.ChExactPad", "1", {"ChExactPad"}},
      {"Form1.CmbAnchor", "0", {"CmbAnchor"}},
      {"Form1.ChAutoCenter", "1", {"ChAutoCenter"}},
      {"Form1.CmbKeepCut", "6", {"preset"}},
      {"Form1.TFixWH(0)", "123", {"FixW"}},
      {"Form1.TFixWH(1)", "124", {"FixH"}},
      {"Form1.ChFull", "1", {"ChFull"}},
      {"Form1.ChAutoZoom", "1", {"ChAutoZoom"}},
      {"Form1.ChAddToSize", "1", {"padToSize"}},
      {"Form1.ChMode1", "1", {"extendRight"}},
      {"Form1.CmbOutType", "png", {"outType"}},
      {"Form1.CmbDPI", "600", {"dpi"}},
      {"Form1.TQuality", "90", {"quality"}},
      {"FBaseOpt.CmbRotate", "5", {"rotateRule"}},
      {"FBaseOpt.TAngle", "30", {"angle"}},
      {"FBaseOpt.ChRotateCut", "1", {"rotateCut"}},
      {"FBaseOpt.ChRecover", "1", {"restore"}},
      {"FBaseOpt.CmbZoom", "50%", {"zoom"}},
      {"FBaseOpt.ChZoomAndCut", "1", {"zoomBefore"}},
      {"FBaseOpt.ChCutAndZoom", "1", {"zoomAfter"}},
      {"FBaseOpt.ChMamal", "1", {"manual"}},
      {"FBaseOpt.ChSplit", "1", {"split"}},
      // Without the filter there are no thresholds.
      {"FBaseOpt.ChFilter", "1", {"smallest.width", "smallest.height"}},
      {"FBaseOpt.TSmalS(0)", "101", {"smallest.width"}},
      {"FBaseOpt.TSmalS(1)", "102", {"smallest.height"}},
      // The fixed size is shown by both windows.
      {"FBaseOpt.TSmalS(2)", "103", {"TSmalS2"}},
      {"FBaseOpt.TSmalS(3)", "104", {"TSmalS3"}},
      {"FBaseOpt.TSmalS(4)", "3", {"columns"}},
      {"FBaseOpt.TSmalS(5)", "4", {"rows"}},
      {"FBaseOpt.ChAddBoard", "1", {"addBoard"}},
      {"FBaseOpt.ChFrmOnly", "1", {"frameOnly"}},
      {"FBaseOpt.TBoard(0)", "1", {"boardMm[0]"}},
      {"FBaseOpt.TBoard(1)", "2", {"boardMm[1]"}},
      {"FBaseOpt.TBoard(2)", "3", {"boardMm[2]"}},
      {"FBaseOpt.TBoard(3)", "4", {"boardMm[3]"}},
      {"FBaseOpt.PBoardColor", "#102030", {"boardColour"}},
      {"FBaseOpt.ChToGray", "1", {"toGray"}},
      {"FBaseOpt.ChToWB", "1", {"blackWhite"}},
      {"FBaseOpt.ChInvert", "1", {"invert"}},
      {"FBaseOpt.ChToCMYK", "1", {"toCmyk"}},
      {"FBaseOpt.CmbExtCase", "1", {"extensionCase"}},
      // Either CmbDPI sets the resolution; this one also has the cut made in memory.
      {"FBaseOpt.CmbDPI", "600", {"ownDpi", "dpi"}},
      {"FBaseOpt.ChKeepExif", "1", {"keepExif"}},
      {"FBaseOpt.ChOmitFolds", "1", {"omitFolders"}},
  };
  return kRead;
}

struct NoParameter {
  const char* control;
  const char* text;
  const char* why;
};

constexpr NoParameter kNoParameters[] = {
    {"Form1.LInDir", "/", "which files are read"},
    {"Form1.ChSubFold", "1", "which files are read"},
    {"Form1.ChBig", "1", "whether a run needs the list"},
    {"Form1.ChLarge", "1", "how the preview reads a huge picture"},
    {"Form1.ChBack", "1", "a spare control; a run clears it"},
    {"Form1.CmbCutStyle", "1", "the shape of the frame in the preview; a normal cut is rectangular"},
    {"Form1.ChJpgComp", "1", "whether TQuality can be edited"},
    {"Form1.ChCutAndArray", "1", "whether outputs go on sheets, decided once for a run"},
    {"FBaseOpt.ChKeepCut", "1", "shows ChFixCut"},
    {"FBaseOpt.ChAutoCenter", "1", "shows Form1.ChAutoCenter"},
    {"FBaseOpt.ChMulCut", "1", "opens the window of the region lists"},
    {"FBaseOpt.CmbCMYK", "0", "the conversion always uses Default.icm"},
    {"FBaseOpt.ChClsWhite", "1", "edges are removed by an engine of its own"},
    {"FBaseOpt.ChClsBlack", "1", "edges are removed by an engine of its own"},
    {"FBaseOpt.ChBig", "1", "shows Form1.ChBig"},
};

bool HoldsParameter(const controls::Control& control) {
  switch (control.GetKind()) {
    case controls::Kind::CheckBox:
    case controls::Kind::Option:
    case controls::Kind::TextBox:
    case controls::Kind::ComboBox:
    case controls::Kind::ColourBox:
    case controls::Kind::Slider:
      return true;
    case controls::Kind::Label:
      return static_cast<const controls::Label&>(control).IsEditable();
    default:
      return false;
  }
}

class ReadSettingsTest : public OpenOptionsTest {
 protected:
  // With a profile, so that the controls of CMYK have something to choose.
  void SetUp() override {
    WriteApp("ColorConfigs/Default.icm");
    OpenOptionsTest::SetUp();
  }

  // Of both windows, by control.
  Fields Values() const {
    Fields values;
    for (const controls::Window* window : {static_cast<const controls::Window*>(&form), &WindowOfOptions()}) {
      for (const controls::Control* control : window->Controls()) values[control->FullName()] = control->Value();
    }
    return values;
  }
  const controls::Window& WindowOfOptions() const { return options; }

  static Names Changed(const Fields& before, const Fields& after) {
    Names names;
    for (const auto& [name, value] : before) {
      if (after.at(name) != value) names.insert(name);
    }
    return names;
  }

  // What changes when a user edits the control; its couplings change others along with it.
  struct Change {
    Names controls;
    Names fields;
  };
  Change Edit(const std::string& name, const std::string& text) {
    controls::Control* control = program.windows.Find(name);
    EXPECT_NE(control, nullptr) << name;
    if (!control) return {};
    control->SetEnabled(true);
    const Fields values = Values();
    const Fields fields = FieldsOf(ReadCutSettings(program));
    const controls::EditResult result = control->UserEdit(text);
    EXPECT_TRUE(result.Accepted()) << name << ": " << result.refusal;
    return {Changed(values, Values()), Changed(fields, FieldsOf(ReadCutSettings(program)))};
  }

  static Names FieldsReadFrom(const Names& controls) {
    Names fields;
    for (const Read& read : ReadControls()) {
      if (controls.contains(read.control)) fields.insert(read.fields.begin(), read.fields.end());
    }
    return fields;
  }
};

TEST_F(ReadSettingsTest, EveryControlIsAParameterOrIsNamedAsNone) {
  Names known;
  for (const Read& read : ReadControls()) EXPECT_TRUE(known.insert(read.control).second) << read.control;
  for (const NoParameter& none : kNoParameters) EXPECT_TRUE(known.insert(none.control).second) << none.control;
  Names there;
  for (const controls::Window* window : {static_cast<const controls::Window*>(&form), &WindowOfOptions()}) {
    for (const controls::Control* control : window->Controls()) {
      if (HoldsParameter(*control)) there.insert(control->FullName());
    }
  }
  EXPECT_EQ(known, there);
}

TEST_F(ReadSettingsTest, EveryFieldIsReadFromAControlOrAFlag) {
  Names read = {"AdvancedOptionsLoaded", "SkipCutThisImage", "logoOnly"};
  for (const Read& one : ReadControls()) read.insert(one.fields.begin(), one.fields.end());
  Names there;
  for (const auto& [name, value] : FieldsOf(CutSettings())) there.insert(name);
  EXPECT_EQ(read, there);
}

class EachReadControl : public ReadSettingsTest, public ::testing::WithParamInterface<Read> {};

TEST_P(EachReadControl, ChangesItsFieldsAndNoOther) {
  const auto& [control, text, fields] = GetParam();
  if (std::string(control).starts_with("FBaseOpt.TSmalS")) Put("FBaseOpt.ChFilter", "1");
  const Change change = Edit(control, text);
  EXPECT_TRUE(change.controls.contains(control)) << control << " keeps its value";
  for (const std::string& field : fields) EXPECT_TRUE(change.fields.contains(field)) << control << " / " << field;
  const Names readable = FieldsReadFrom(change.controls);
  for (const std::string& field : change.fields) EXPECT_TRUE(readable.contains(field)) << control << " / " << field;
}

std::string NameOf(const std::string& control) {
  std::string name;
  std::copy_if(control.begin(), control.end(), std::back_inserter(name),
               [](unsigned char c) { return std::isalnum(c); });
  return name;
}

INSTANTIATE_TEST_SUITE_P(Settings, EachReadControl, ::testing::ValuesIn(ReadControls()),
                         [](const auto& row) { return NameOf(row.param.control); });

class EachOtherControl : public ReadSettingsTest, public ::testing::WithParamInterface<NoParameter> {};

TEST_P(EachOtherControl, ChangesNoFieldOfItsOwn) {
  const auto& [control, text, why] = GetParam();
  const Change change = Edit(control, text);
  const Names readable = FieldsReadFrom(change.controls);
  for (const std::string& field : change.fields)
    EXPECT_TRUE(readable.contains(field)) << control << " / " << field << ": " << why;
}

INSTANTIATE_TEST_SUITE_P(Settings, EachOtherControl, ::testing::ValuesIn(kNoParameters),
                         [](const auto& row) { return NameOf(row.param.control); });

TEST_F(ReadSettingsTest, TheGeometryIsReadAnewAlone) {
  const CutSettings before = ReadCutSettings(program);
  Put("TCutValue(0)", "17");
  Put("ChOver", "1");
  CutSettings after = before;
  after.geometry = ReadCutGeometry(program);
  EXPECT_EQ(Changed(FieldsOf(before), FieldsOf(after)), Names{"ML"});
  EXPECT_EQ(FieldsOf(after.geometry), FieldsOf(ReadCutSettings(program).geometry));
}

}  // namespace
}  // namespace quillon::job
