// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include <gtest/gtest.h>

#include <QApplication>
#include <memory>

#include "ui/kit/application.h"

namespace quillon::ui {
namespace {

// One application for all tests of a process, without a screen.
class QtEnvironment : public ::testing::Environment {
 public:
  void SetUp() override {
    if (qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM")) qputenv("QT_QPA_PLATFORM", "offscreen");
    if (qEnvironmentVariableIsEmpty("QUILLON_THEME")) qputenv("QUILLON_THEME", "light");
    application_ = std::make_unique<QApplication>(count_, arguments_);
    QApplication::setQuitOnLastWindowClosed(false);
    quillon::ui::SetUp(*application_);
  }
  void TearDown() override { application_.reset(); }

 private:
  int count_ = 1;
  char name_[8] = "test_ui";
  char* arguments_[2] = {name_, nullptr};
  std::unique_ptr<QApplication> application_;
};

[[maybe_unused]] const auto* const kEnvironment = ::testing::AddGlobalTestEnvironment(new QtEnvironment);

}  // namespace
}  // namespace quillon::ui
