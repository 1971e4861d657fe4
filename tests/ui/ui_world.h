// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QAbstractButton>
#include <QApplication>
#include <QComboBox>
#include <QLineEdit>
#include <QTest>
#include <string>
#include <vector>

#include "host/testing/test_host.h"
#include "parts/parts.h"
#include "ui/kit/text.h"
#include "ui/main/main_window.h"
#include "ui/options/options_window.h"

namespace quillon::ui {

// A started program on a simulated host, with its windows on an offscreen display. The advanced options are open, so
// that every control of every window can be reached.
struct UiWorld {
  // asFramed is the remembered setting of ChAsFramed, "" for none.
  explicit UiWorld(base::Size desktop = {1920, 1080}, const std::string& asFramed = "")
      : program(world.host), window(Started(desktop, asFramed)) {
    window.resize(1280, 800);
    window.show();
    program.fBaseOpt.Show();
    Turn();
  }

  static void Turn() {
    QCoreApplication::sendPostedEvents();
    QCoreApplication::processEvents();
  }

  // Returns the widget or action of a control in the window of its record.
  template <typename T>
  T* Find(const controls::Control& control) {
    return Holder(control).findChild<T*>(Shown(control.Name()));
  }

  QWidget& Holder(const controls::Control& control) {
    if (&control.GetWindow() == &program.fBaseOpt) return window.Options();
    if (&control.GetWindow() == &program.fCutPre) return *window.findChild<QWidget*>(QStringLiteral("FCutPre"));
    QWidget* beside = window.WindowOf(control.GetWindow());
    return beside ? *beside : window;
  }

  // Adds a row to the list; the file need not exist.
  void List(const std::string& path, int width = 400, int height = 300) {
    job::FileRow row;
    row.width = width;
    row.height = height;
    row.bytes = 1024;
    program.files.AppendPath(path, row);
  }

  host::testing::TestHost world;
  job::Program program;
  parts::Parts suite{program};
  MainWindow window;

 private:
  parts::Parts& Started(base::Size desktop, const std::string& asFramed) {
    world.screen.size = desktop;
    program.SaveSetting("ChAsFramed", asFramed);
    program.Start();
    return suite;
  }
};

inline bool IsBox(const controls::Control& control) {
  return control.GetKind() == controls::Kind::TextBox || control.GetKind() == controls::Kind::ComboBox;
}

}  // namespace quillon::ui
