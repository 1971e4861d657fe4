// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QDialog>
#include <string>
#include <vector>

#include "helpers/dc_tiffs_maker/window/maker_run.h"
#include "host/host.h"
#include "tools/ok_list.h"

class QCheckBox;
class QComboBox;
class QLabel;
class QLayout;
class QLineEdit;
class QProgressBar;
class QPushButton;
class QSpinBox;

namespace quillon::helpers {

class PictureList;

// The window of DCTiffsMaker: the pictures in their order, the target and the options. Each TIFF is made by a separate
// process.
class TiffsWindow : public QDialog {
 public:
  // Shows an order. Values without a field in the window are kept. note is shown in the status line. program is the
  // path of the helper that makes the TIFF.
  TiffsWindow(host::Host& world, tools::OkList order, const std::string& note, std::string program);

  // Returns the order as the window shows it now.
  tools::OkList Order() const;

 protected:
  void changeEvent(QEvent* event) override;
  void closeEvent(QCloseEvent* event) override;
  void reject() override;

 private:
  QLayout* MakeList();
  QLayout* MakeFields();
  QLayout* MakeEnds();
  QPushButton* Button(const QString& text, void (TiffsWindow::*act)());
  void Show(const tools::OkList& order);

  void AddFiles();
  void AddFolder();
  void Remove();
  void Up();
  void Down();
  void Clear();
  void Browse();
  void Start();
  void Stop();

  // Adds files, and the pictures of folders.
  void AddPaths(const std::vector<std::string>& paths);
  bool MayReplace(const std::string& target);
  void OnProgress(const std::string& report);
  void OnEnded(const MakerEnd& end);
  void ShowStatus(const std::string& sentence, Mood mood);
  void UpdateColours();
  void Refresh();

  host::Host& world_;
  tools::OkList order_;     // including the values that are not shown
  std::string mayReplace_;  // the target that the user agreed to replace in the dialog
  PictureList* list_;
  QLabel* count_;
  QLineEdit* target_;
  QComboBox* colours_;
  QCheckBox* compress_;
  QComboBox* quality_;
  QSpinBox* dpi_;
  QLabel* further_ = nullptr;
  QProgressBar* bar_;
  QLabel* status_ = nullptr;
  Mood mood_ = Mood::Plain;
  QPushButton* start_;
  QPushButton* stop_;
  std::vector<QWidget*> inputs_;  // disabled during a run
  MakerRun run_;
};

}  // namespace quillon::helpers
