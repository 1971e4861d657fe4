// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
// Every control of every window can be set and read back by its name, with a value that is not its default.
#include <gtest/gtest.h>

#include <set>

#include "base/path_text.h"
#include "cli/world.h"
#include "controls/grid.h"
#include "controls/values.h"

namespace quillon::cli {
namespace {

using controls::Control;
using controls::Kind;

// Returns a value that a user can set and that the control does not have; nothing if the control has no value.
std::optional<std::string> OtherValue(const Control& control) {
  switch (control.GetKind()) {
    case Kind::CheckBox:
    case Kind::Option:
      return control.Value() == "1" ? "0" : "1";
    case Kind::TextBox:
      return control.Value() == "41" ? "42" : "41";
    case Kind::ComboBox:
      return control.Items().empty() ? std::optional<std::string>() : control.Items().back();
    case Kind::ColourBox:
      return "66051";
    case Kind::Slider:
      if (control.MinText() == control.MaxText()) return std::nullopt;
      return control.Value() == control.MaxText() ? control.MinText() : control.MaxText();
    default:
      return std::nullopt;
  }
}

bool IsChosenFolder(const Control& control) {
  return control.Name() == "LInDir" || control.Name() == "LOutDir" || control.Name() == "LDir";
}

// Removes the handler, so that only setting and reading back is tested, and enables the control with its parents. A
// list that gets its entries from files gets some.
void Isolate(Control& control) {
  control.SetHandler({});
  if (auto* list = dynamic_cast<controls::ComboBox*>(&control); list && list->Items().empty()) {
    list->SetItems({"one", "two"});
  }
  for (Control* part = &control; part; part = part->Parent()) {
    part->SetEnabled(true);
    part->SetVisible(true);
  }
}

TEST(Reach, EveryValueGoesThereAndBack) {
  World world;
  world.Perform({});
  std::size_t settable = 0;
  for (const controls::Window* window : world.program.windows.All()) {
    for (Control* control : window->Controls()) {
      Isolate(*control);
      auto value = OtherValue(*control);
      if (IsChosenFolder(*control)) value = "/some/folder";
      if (!value) continue;
      ++settable;
      const std::string before = control->Text();
      const Outcome outcome =
          world.Perform({World::Set(control->FullName(), *value), World::Print(control->FullName())});
      EXPECT_EQ(outcome.exit, Exit::AllWritten) << control->FullName() << testing::PrintToString(outcome.notes);
      const Event print = world.recorder.Of(EventKind::Print).back();
      EXPECT_EQ(print.Text("control"), control->FullName());
      EXPECT_EQ(print.Text("text"), *value) << control->FullName();
      EXPECT_NE(print.Text("text"), before) << control->FullName();
      EXPECT_EQ(control->Text(), *value) << control->FullName();
    }
  }
  EXPECT_GT(settable, 60u);
}

TEST(Reach, ListsAcceptTheTextOfEveryEntry) {
  World world;
  world.Perform({});
  for (const controls::Window* window : world.program.windows.All()) {
    for (Control* control : window->Controls()) {
      if (control->GetKind() != Kind::ComboBox) continue;
      Isolate(*control);
      const std::vector<std::string> items = control->Items();
      for (std::size_t i = 0; i < items.size(); ++i) {
        const Outcome outcome = world.Perform({World::Set(control->FullName(), items[i])});
        EXPECT_EQ(outcome.exit, Exit::AllWritten) << control->FullName() << " " << items[i];
        EXPECT_EQ(control->Value(), std::to_string(i)) << control->FullName() << " " << items[i];
      }
    }
  }
}

TEST(Reach, EveryControlIsPrintedAndThoseWithoutAValueRefuse) {
  World world;
  world.Perform({});
  for (const controls::Window* window : world.program.windows.All()) {
    for (Control* control : window->Controls()) {
      EXPECT_EQ(world.Perform({World::Print(control->FullName())}).exit, Exit::AllWritten) << control->FullName();
      Isolate(*control);
      if (OtherValue(*control) || IsChosenFolder(*control) || control->GetKind() == Kind::Grid) continue;
      EXPECT_EQ(world.Perform({World::Set(control->FullName(), "1")}).exit, Exit::WrongArguments)
          << control->FullName();
    }
  }
}

TEST(Reach, NoTwoControlsShareAName) {
  World world;
  std::set<std::string> names;
  for (const controls::Window* window : world.program.windows.All()) {
    for (const Control* control : window->Controls()) {
      EXPECT_TRUE(names.insert(base::ToLowerAscii(control->FullName())).second) << control->FullName();
      EXPECT_EQ(world.program.windows.Find(control->FullName()), control);
    }
  }
}

}  // namespace
}  // namespace quillon::cli
