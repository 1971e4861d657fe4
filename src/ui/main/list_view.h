// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "job/program.h"
#include "ui/kit/bind/binder.h"
#include "ui/kit/bind/grid_view.h"

namespace quillon::ui {

class FileListModel;

// The list of files, with a hint while it is empty.
class ListView : public GridView {
 public:
  ListView(job::Program& program, Binder& binder, QWidget* parent = nullptr);
  ~ListView() override;

  FileListModel& Model() const { return *model_; }

 protected:
  void paintEvent(QPaintEvent* event) override;
  void resizeEvent(QResizeEvent* event) override;

 private:
  void SizeColumns();
  void FitColumns();

  job::Program& program_;
  FileListModel* model_;
  int token_;
  int leastResult_ = 0;  // width of a result column without reasons
};

}  // namespace quillon::ui
