// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QMainWindow>
#include <memory>
#include <vector>

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

// Form1 as a window: parameters on the left, the file list in the middle, the preview on the right.
// It also owns the windows of the other records and shows the progress of runs in its status bar.
class MainWindow : public QMainWindow {
 public:
  explicit MainWindow(parts::Parts& parts);
  ~MainWindow() override;

  // Adds named files and folders to the list, and selects and shows the first of them. Returns false if something runs.
  bool AddFiles(const std::vector<std::string>& paths);
  // Shows the window above those of other programs, as far as the desktop allows it.
  void BringToFront();
  // Shows a sentence in the status bar for a while.
  void ShowNotice(const QString& line);
  PreviewLoader& Loader() { return loader_; }
  // Returns the window of the advanced options, which is created at the first call.
  OptionsWindow& Options();
  // Returns the window of the record of a feature, or nullptr if that record has no window of its own.
  QWidget* WindowOf(const controls::Window& record) const;

 protected:
  void closeEvent(QCloseEvent* event) override;
  void dragEnterEvent(QDragEnterEvent* event) override;
  void dropEvent(QDropEvent* event) override;

 private:
  void BuildMenus();
  void AddViewMenu();
  QMenu* SortMenu();
  void ShowThumbnails(bool on);
  // Called when the record changes.
  void ShowTitle();
  // Restores ChAsFramed as the window was left. Only the window remembers it: a script states all its settings.
  void RestoreAsFramed();
  void ShowOptions();
  void FollowRecord();
  QPoint PlaceForOptions(const OptionsWindow& window) const;
  void Refused(const std::string& sentence);
  void QuitWhenEnded();
  // Ends the program as soon as nothing runs any more.
  void CloseAfterRun();

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
  std::vector<std::unique_ptr<ToolWindow>> featureWindows_;
  bool recordShown_ = true;
  std::unique_ptr<RunMonitor> monitor_;
};

// Returns a text that changes with size or times of a file; "" if there is no file.
std::string VersionOf(const host::Files& files, const std::string& path);

// Returns a reduced picture, neither side above limit; a null image if it cannot be read. May run on any thread.
QImage ReadPreview(imaging::Services& images, const std::string& path, QSize limit);

}  // namespace quillon::ui
