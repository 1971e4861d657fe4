// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QTimer>

#include "job/program.h"
#include "job/windows/foreseen_list.h"
#include "ui/kit/bind/binder.h"
#include "ui/kit/bind/grid_view.h"
#include "ui/main/outcome_watch.h"
#include "ui/main/thumbnails.h"

namespace quillon::ui {

class FileListModel;

// The file list, with a hint while it is empty.
class ListView : public GridView {
 public:
  ListView(job::Program& program, Binder& binder, QWidget* parent = nullptr);
  ~ListView() override;

  // Calls counted when the rows that give no file were counted anew.
  void SetOutcomeReceiver(OutcomeWatch::OnCounted counted);
  // Shows small pictures beside the names, or none.
  void ShowThumbnails(Thumbnails::Reader reader);
  void HideThumbnails();
  // Reads the small pictures anew, since a run may have replaced the files.
  void RenewThumbnails();
  // Sorts the view by a column, the other way round if it is sorted by that one already; -1: not at all.
  void SortBy(int column);
  // Lets runs handle the rows in the order that the view shows, and keeps it when another column is sorted.
  void KeepOrder();

 protected:
  void OnUserSelection() override;
  void paintEvent(QPaintEvent* event) override;
  void resizeEvent(QResizeEvent* event) override;

 private:
  void PreviewSelected();
  // Sets the initial widths.
  void SizeColumns();
  // Gives the free width to the folder and result columns.
  void FitColumns();

  job::Program& program_;
  job::ForeseenList foreseen_;
  FileListModel* model_;
  OutcomeWatch outcomes_;
  Thumbnails thumbnails_;
  QTimer pause_;  // runs while the user may still be moving through the list
  int token_;
  int minResultWidth_ = 0;  // width of the result column without reasons, in pixels
};

}  // namespace quillon::ui
