// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "controls/window.h"

#include <gtest/gtest.h>

#include "controls/probe.h"
#include "controls/values.h"

namespace quillon::controls {
namespace {

class Counting : public Window {
 public:
  Counting() : Window("FBaseOpt", "高级选项") {}
  int loads = 0;

 protected:
  void OnLoad() override { ++loads; }
};

TEST(Window, StartsUnloadedAndHidden) {
  const Counting window;
  EXPECT_EQ(window.Name(), "FBaseOpt");
  EXPECT_EQ(window.Title(), "高级选项");
  EXPECT_FALSE(window.Loaded());
  EXPECT_FALSE(window.Visible());
  EXPECT_EQ(window.loads, 0);
}

TEST(Window, LoadsOnceWhateverIsDoneToIt) {
  Counting window;
  window.Load();
  EXPECT_TRUE(window.Loaded());
  EXPECT_FALSE(window.Visible());
  window.Load();
  window.Show();
  window.Hide();
  window.Show();
  EXPECT_EQ(window.loads, 1);
}

TEST(Window, IsLoadedByItsFirstShow) {
  Counting window;
  window.Show();
  EXPECT_TRUE(window.Visible());
  EXPECT_EQ(window.loads, 1);
}

TEST(Window, UnloadedItLoadsAgainAndKeepsItsValues) {
  Counting window;
  TextBox text(window, "T", {}, "1");
  window.Unload();
  EXPECT_EQ(window.loads, 0);
  window.Show();
  text.SetText("2");
  window.Unload();
  EXPECT_FALSE(window.Loaded());
  EXPECT_FALSE(window.Visible());
  window.Show();
  EXPECT_EQ(window.loads, 2);
  EXPECT_EQ(text.Value(), "2");
}

TEST(Window, HideKeepsAllValues) {
  Counting window;
  TextBox text(window, "T", {}, "1");
  window.Show();
  text.SetText("2");
  window.Hide();
  EXPECT_FALSE(window.Visible());
  EXPECT_TRUE(window.Loaded());
  window.Show();
  EXPECT_EQ(text.Value(), "2");
}

TEST(Window, CloseHides) {
  Counting window;
  window.Show();
  window.Close();
  EXPECT_FALSE(window.Visible());
}

TEST(Window, NotifiesOfTitleLoadingAndVisibilityOnlyWhenTheyChange) {
  Counting window;
  Probe probe(window);
  window.SetTitle("新标题");
  EXPECT_EQ(window.Title(), "新标题");
  EXPECT_EQ(probe.Drain(), Notes(1, "window FBaseOpt"));
  window.Load();
  EXPECT_EQ(probe.Drain(), Notes(1, "window FBaseOpt"));
  window.Show();
  EXPECT_EQ(probe.Drain(), Notes(1, "window FBaseOpt"));
  window.Hide();
  EXPECT_EQ(probe.Drain(), Notes(1, "window FBaseOpt"));
  window.SetTitle("新标题");
  window.Load();
  window.Hide();
  EXPECT_EQ(probe.Drain(), Notes());
}

TEST(Window, FindsControlsByNameInAnyCase) {
  Counting window;
  TextBox first(window, "TCutValue(0)", {}, "");
  TextBox second(window, "TCutValue(1)", {}, "");
  EXPECT_EQ(window.Find("TCutValue(1)"), &second);
  EXPECT_EQ(window.Find("tcutvalue(0)"), &first);
  EXPECT_EQ(window.Find("TCUTVALUE(0)"), &first);
  for (const char* name : {"", "TCutValue", "TCutValue(2)", " TCutValue(0)"}) EXPECT_EQ(window.Find(name), nullptr);
}

TEST(Window, NotifiesEveryObserverUntilItIsForgotten) {
  Counting window;
  CheckBox box(window, "ChA", {});
  int first = 0;
  int second = 0;
  const int token = window.Observe([&](Control&, Aspect) { ++first; });
  window.Observe([&](Control& control, Aspect aspect) {
    EXPECT_EQ(&control, &box);
    EXPECT_EQ(aspect, Aspect::Value);
    ++second;
  });
  box.Set(true);
  window.Forget(token);
  box.Set(false);
  EXPECT_EQ(first, 1);
  EXPECT_EQ(second, 2);
}

TEST(Window, NotifiesAnObserverOfOneControlOfNoOther) {
  Counting window;
  CheckBox box(window, "ChA", {});
  CheckBox other(window, "ChB", {});
  std::vector<Aspect> seen;
  const int token = window.Observe(box, [&](Control& control, Aspect aspect) {
    EXPECT_EQ(&control, &box);
    seen.push_back(aspect);
  });
  other.Set(true);
  window.SetTitle("another title");
  EXPECT_TRUE(seen.empty());
  box.Set(true);
  box.SetEnabled(false);
  EXPECT_EQ(seen, (std::vector{Aspect::Value, Aspect::Appearance}));
  window.Forget(token);
  box.Set(false);
  EXPECT_EQ(seen.size(), 2u);
}

TEST(Window, ForgetsAnUnknownTokenQuietly) {
  Counting window;
  int notified = 0;
  window.Observe([&](Control&, Aspect) { ++notified; });
  window.Forget(99);
  CheckBox(window, "ChA", {}).Set(true);
  EXPECT_EQ(notified, 1);
}

TEST(Window, ObserverMayForgetItselfAndOthersWhileItIsNotified) {
  Counting window;
  CheckBox box(window, "ChA", {});
  std::vector<int> notified;
  int tokens[3] = {};
  const auto observer = [&](int index) {
    return [&, index](Control&, Aspect) {
      notified.push_back(index);
      if (index != 1) return;
      for (const int token : tokens) window.Forget(token);
    };
  };
  for (int i = 0; i < 3; ++i) tokens[i] = window.Observe(observer(i));
  box.Set(true);
  EXPECT_EQ(notified, (std::vector<int>{0, 1}));
  box.Set(false);
  EXPECT_EQ(notified, (std::vector<int>{0, 1}));
}

TEST(Window, ObserverMayForgetInsideANestedNotification) {
  Counting window;
  CheckBox outer(window, "ChA", {});
  CheckBox inner(window, "ChB", {});
  int notified = 0;
  int token = 0;
  token = window.Observe([&](Control& control, Aspect) {
    ++notified;
    if (&control == &outer) inner.Set(true);
    if (&control == &inner) window.Forget(token);
  });
  outer.Set(true);
  EXPECT_EQ(notified, 2);
  outer.Set(false);
  EXPECT_EQ(notified, 2);
}

TEST(Window, ObserverMayAddAnother) {
  Counting window;
  CheckBox box(window, "ChA", {});
  int late = 0;
  bool added = false;
  window.Observe([&](Control&, Aspect) {
    if (!std::exchange(added, true)) window.Observe([&](Control&, Aspect) { ++late; });
  });
  box.Set(true);
  late = 0;
  box.Set(false);
  EXPECT_EQ(late, 1);
}

TEST(Window, ObserverWithoutAWindowPartHearsControlsOnly) {
  Counting window;
  CheckBox box(window, "ChA", {});
  int notified = 0;
  window.Observe([&](Control&, Aspect) { ++notified; });
  window.Show();
  EXPECT_EQ(notified, 0);
  box.Set(true);
  EXPECT_EQ(notified, 1);
}

}  // namespace
}  // namespace quillon::controls
