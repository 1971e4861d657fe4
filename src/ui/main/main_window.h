// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QMainWindow>
#include <memory>

#include "parts/parts.h"
#include "ui/kit/bind/binder.h"
#include "ui/main/run_monitor.h"
#include "ui/preview/preview_loader.h"

namespace quillon::ui {

class ListView;
class OptionsWindow;
class ParameterPanel;
class PreviewDock;
class StatusStrip;
class ToolWindow;

// Form1 on the screen: parameters on the left, the list in the middle, the preview on the right.
class MainWindow : public QMainWindow {
 public:
  explicit MainWindow(parts::Parts& parts);
  ~MainWindow() override;

  PreviewLoader& Loader() { return loader_; }
  // The window of the advanced options; it is made when it is first wanted.
  OptionsWindow& Options();
  // The window of a record that stands beside this one, nullptr where the record has no such window.
  QWidget* Beside(const controls::Window& record) const;

 protected:
  void closeEvent(QCloseEvent* event) override;
  void dragEnterEvent(QDragEnterEvent* event) override;
  void dropEvent(QDropEvent* event) override;

 private:
  void BuildMenus();
  void AddViewMenu();
  void ShowTitle();
  void ShowOptions();
  void FollowRecord();
  QPoint PlaceForOptions(const OptionsWindow& window) const;
  void Refused(const std::string& sentence);
  void QuitWhenEnded();

  job::Program& program_;
  job::Form1& form_;
  PreviewLoader loader_;
  Binder binder_;
  int token_;
  int optionsToken_;
  ListView* list_ = nullptr;
  PreviewDock* preview_ = nullptr;
  StatusStrip* status_ = nullptr;
  OptionsWindow* options_ = nullptr;
  ToolWindow* regions_ = nullptr;
  std::unique_ptr<ToolWindow> timed_;
  bool recordShown_ = true;
  std::unique_ptr<RunMonitor> monitor_;
};

// What a file is now, by its size and times; "" for none.
std::string VersionOf(const host::Files& files, const std::string& path);

// A picture as the preview draws it.
QImage ReadPreview(imaging::Services& images, const std::string& path, QSize limit);

}  // namespace quillon::ui
