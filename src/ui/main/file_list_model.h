// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "job/list/file_list.h"
#include "job/windows/foreseen_list.h"
#include "ui/kit/bind/grid_model.h"

namespace quillon::ui {

class Thumbnails;

// The rows of the file list, with two more columns: the size that a cut with the present settings gives, and what the
// last run made of each file. Rows without output are shown in the warning colour, with the reason as text and tooltip.
class FileListModel : public GridModel {
 public:
  FileListModel(controls::Grid& grid, const job::FileList& files, const job::ForeseenList& foreseen,
                QObject* parent = nullptr)
      : GridModel(grid, parent), files_(files), foreseen_(foreseen) {}

  int columnCount(const QModelIndex& parent = {}) const override;
  QVariant data(const QModelIndex& index, int role) const override;
  QVariant headerData(int section, Qt::Orientation orientation, int role) const override;

  // Shows small pictures beside the names; nullptr shows none. Not owned.
  void SetThumbnails(Thumbnails* thumbnails);
  // Called when a small picture was read.
  void ShowThumbnails();

  // Return the numbers of the added columns, the last two.
  int OutcomeColumn() const { return GridModel::columnCount(); }
  int ResultColumn() const { return OutcomeColumn() + 1; }

  // Called when the settings have changed; the view asks for the rows that it shows.
  void ShowOutcomes();

 protected:
  RowOrder OrderOf(int column) const override;

 private:
  // Returns the order of a column that the grid itself has.
  bool Precedes(const job::FileRow& row, const job::FileRow& other, int column) const;
  QVariant OutcomeData(std::size_t row, int role) const;

  const job::FileList& files_;
  const job::ForeseenList& foreseen_;
  Thumbnails* thumbnails_ = nullptr;
};

// Returns "413×626", "6 张 200×150" for a split, or that there is no file.
QString OutcomeText(const job::CutOutcome& outcome);
// Returns the reason if there is no file, else the size of the finished file in pixels and, if its resolution is known,
// in millimetres.
QString OutcomeTip(const job::CutOutcome& outcome);

}  // namespace quillon::ui
