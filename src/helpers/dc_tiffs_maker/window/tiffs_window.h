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

// The window of DCTiffsMaker: pictures in their order, where the TIFF goes and how it is made. The making itself is a
// process of its own.
class TiffsWindow : public QDialog {
 public:
  // Shows the order as it stands; what the window has no field for is carried along. note says how it came about.
  // program makes the TIFF.
  TiffsWindow(host::Host& world, tools::OkList order, const std::string& note, std::string program);

  // The order as it is shown now.
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

  // Files and the pictures of folders.
  void Admit(const std::vector<std::string>& paths);
  bool MayReplace(const std::string& target);
  void OnTold(const std::string& told);
  void OnEnded(const MakerEnd& end);
  void Say(const std::string& sentence, Mood mood);
  void InkWords();
  void Refresh();

  host::Host& world_;
  tools::OkList order_;     // with what is not shown
  std::string mayReplace_;  // the target that the dialog has asked about
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
  std::vector<QWidget*> inputs_;  // not to be touched during a run
  MakerRun run_;
};

}  // namespace quillon::helpers
