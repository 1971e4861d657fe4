// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include <gtest/gtest.h>

#include <memory>

#include "cli/world.h"
#include "ui/user_hand.h"

namespace quillon::ui {
namespace {

using controls::Control;

struct State {
  std::string name, value, text, caption;
  bool enabled, visible;
  bool operator==(const State&) const = default;
};

std::ostream& operator<<(std::ostream& out, const State& state) {
  return out << state.name << "=" << state.value << " (" << state.text << ", " << state.caption << ")"
             << (state.enabled ? "" : " off") << (state.visible ? "" : " hidden");
}

std::vector<State> StateOf(const job::Program& program) {
  std::vector<State> all;
  for (const controls::Window* window : program.windows.All()) {
    for (const Control* control : window->Controls()) {
      all.push_back({control->FullName(), control->Value(), control->Text(), control->Caption(), control->Enabled(),
                     control->Visible()});
    }
  }
  return all;
}

void ExpectAlike(const job::Program& one, const job::Program& other) {
  const std::vector<State> ones = StateOf(one);
  const std::vector<State> others = StateOf(other);
  ASSERT_EQ(ones.size(), others.size());
  for (std::size_t i = 0; i < ones.size(); ++i) EXPECT_EQ(ones[i], others[i]);
}

// Enables a control, whatever disables it.
void Enable(Control& control) {
  for (Control* one = &control; one; one = one->Parent()) {
    one->SetEnabled(true);
    one->SetVisible(true);
  }
}

// Returns the names of all controls with a value.
std::vector<std::string> TakingNames() {
  UiWorld ui;
  std::vector<std::string> names;
  for (const controls::Window* window : ui.program.windows.All()) {
    for (const Control* control : window->Controls()) {
      if (!OtherText(*control, "/").empty()) names.push_back(control->FullName());
    }
  }
  return names;
}

// --- Each control gets another value in three ways: by the user in the window, as an edit of the record, and as a step
// of quillon-batch. All controls of all windows must be equal afterwards.

class Worlds {
 public:
  Worlds() {
    batch_.Perform({{.verb = cli::Verb::Open, .name = "FBaseOpt"}});
    batch_.program.fCutPre.Show();
    plainWorld_.screen.size = kNoDesktop;
    plain_.Start();
    plain_.fBaseOpt.Show();
    plain_.fCutPre.Show();
    ui_.program.fCutPre.Show();
    for (job::Program* program : {&ui_.program, &plain_, &batch_.program}) program->form1.LOutDir.SetText("/");
  }

  // As quillon-batch does it.
  static constexpr base::Size kNoDesktop{};

  UiWorld ui_{kNoDesktop};
  host::testing::TestHost plainWorld_;
  job::Program plain_{plainWorld_.host};
  parts::Parts plainSuite_{plain_};
  cli::World batch_;
};

TEST(RoundTrip, ByWindowRecordAndBatchIsTheSame) {
  const std::vector<std::string> names = TakingNames();
  EXPECT_GE(names.size(), 60u);
  int changed = 0;
  for (const std::string& name : names) {
    SCOPED_TRACE(name);
    Worlds worlds;
    Control& inWindow = *worlds.ui_.program.windows.Find(name);
    Control& inRecord = *worlds.plain_.windows.Find(name);
    Control& inBatch = *worlds.batch_.program.windows.Find(name);
    for (Control* control : {&inWindow, &inRecord, &inBatch}) Enable(*control);
    const std::string before = inRecord.Text();
    const std::string text = OtherText(inRecord, worlds.plainWorld_.folder.Path());

    Put(worlds.ui_, inWindow, text);
    EXPECT_TRUE(inRecord.UserEdit(text).Accepted());
    worlds.batch_.Perform({{.verb = cli::Verb::Set, .name = name, .value = text}});

    ExpectAlike(worlds.ui_.program, worlds.plain_);
    ExpectAlike(worlds.batch_.program, worlds.plain_);
    const bool edited =
        inRecord.GetKind() == controls::Kind::ComboBox && static_cast<const controls::ComboBox&>(inRecord).IsEditable();
    EXPECT_EQ(ShownValue(worlds.ui_, inWindow), edited ? inRecord.Text() : inRecord.Value());
    changed += inRecord.Text() != before;
  }
  // The record resets the rest at once, since its engines and resources are missing in this test.
  EXPECT_GE(changed, static_cast<int>(names.size()) * 3 / 4);
}

TEST(RoundTrip, TheProgramsOwnChangesAreShown) {
  UiWorld ui;
  ui.program.fCutPre.Show();
  for (const std::string& name : TakingNames()) {
    SCOPED_TRACE(name);
    Control& control = *ui.program.windows.Find(name);
    control.SetHandler({});
    Enable(control);
    const std::string text = OtherText(control, ui.world.folder.Path());
    ASSERT_TRUE(control.UserEdit(text).Accepted());
    const bool edited =
        control.GetKind() == controls::Kind::ComboBox && static_cast<controls::ComboBox&>(control).IsEditable();
    EXPECT_EQ(ShownValue(ui, control), edited ? control.Text() : control.Value());
  }
}

}  // namespace
}  // namespace quillon::ui
