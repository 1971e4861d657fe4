// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "controls/windows.h"

#include <gtest/gtest.h>

#include "controls/values.h"

namespace quillon::controls {
namespace {

class TwoWindows : public testing::Test {
 protected:
  TwoWindows() {
    windows_.Add(main_);
    windows_.Add(options_);
  }

  Window main_{"Form1", ""};
  Window options_{"FBaseOpt", ""};
  CheckBox cut_{main_, "ChCutA", {}};
  TextBox margin_{main_, "TCutValue(0)", {}, "0"};
  CheckBox exif_{options_, "ChExif", {}};
  CheckBox sameName_{options_, "ChCutA", {}};
  Windows windows_;
};

TEST_F(TwoWindows, AreListedInOrder) { EXPECT_EQ(windows_.All(), (std::vector<Window*>{&main_, &options_})); }

TEST_F(TwoWindows, AreFoundByNameInAnyCase) {
  EXPECT_EQ(windows_.FindWindow("FBaseOpt"), &options_);
  EXPECT_EQ(windows_.FindWindow("form1"), &main_);
  EXPECT_EQ(windows_.FindWindow("Form2"), nullptr);
  EXPECT_EQ(windows_.FindWindow(""), nullptr);
}

TEST_F(TwoWindows, ReachEveryControlByItsFullName) {
  EXPECT_EQ(windows_.Find("Form1.TCutValue(0)"), &margin_);
  EXPECT_EQ(windows_.Find("fbaseopt.chexif"), &exif_);
  EXPECT_EQ(windows_.Find("FBaseOpt.ChCutA"), &sameName_);
}

TEST_F(TwoWindows, LookUpANameWithoutAWindowInTheMainOne) {
  EXPECT_EQ(windows_.Find("TCutValue(0)"), &margin_);
  EXPECT_EQ(windows_.Find("ChCutA"), &cut_);
  EXPECT_EQ(windows_.Find("ChExif"), nullptr);
}

TEST_F(TwoWindows, KnowNoOtherNames) {
  for (const char* name : {"", ".", "Form1.", ".ChCutA", "Form2.ChCutA", "Form1.ChExif", "Form1.Form1.ChCutA"}) {
    EXPECT_EQ(windows_.Find(name), nullptr) << name;
  }
}

TEST(Windows, WithoutAMainWindowNeedFullNames) {
  Window options("FBaseOpt", "");
  CheckBox exif(options, "ChExif", {});
  Windows windows;
  windows.Add(options);
  EXPECT_EQ(windows.Find("ChExif"), nullptr);
  EXPECT_EQ(windows.Find("FBaseOpt.ChExif"), &exif);
}

using Names = std::vector<std::string>;

TEST_F(TwoWindows, NameTheControlsNearestToAMistypedOne) {
  // Distances to "ChCutB": ChCutA 1 (in both windows), ChExif 4, TCutValue(0) 8.
  EXPECT_EQ(windows_.Nearest("ChCutB", 4),
            (Names{"Form1.ChCutA", "FBaseOpt.ChCutA", "FBaseOpt.ChExif", "Form1.TCutValue(0)"}));
  EXPECT_EQ(windows_.Nearest("tcutvalue0", 1), Names{"Form1.TCutValue(0)"});
}

TEST_F(TwoWindows, CompareTheWindowTooIfOneIsGiven) {
  EXPECT_EQ(windows_.Nearest("FBaseOpt.ChCutB", 1), Names{"FBaseOpt.ChCutA"});
  EXPECT_EQ(windows_.Nearest("Form1.ChCutB", 1), Names{"Form1.ChCutA"});
}

TEST_F(TwoWindows, NameNoMoreThanAsked) {
  EXPECT_EQ(windows_.Nearest("x", 0), Names());
  EXPECT_EQ(windows_.Nearest("x", 99).size(), 4u);
}

}  // namespace
}  // namespace quillon::controls
