// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "job/list/file_list.h"
#include "ui/kit/bind/grid_model.h"

namespace quillon::ui {

class Thumbnails;

// The rows of the file list, with one more column: what the last run made of each file.
// Rows without output are shown in the warning colour, with the reason as text and tooltip.
class FileListModel : public GridModel {
 public:
  FileListModel(controls::Grid& grid, const job::FileList& files, QObject* parent = nullptr)
      : GridModel(grid, parent), files_(files) {}

  int columnCount(const QModelIndex& parent = {}) const override;
  QVariant data(const QModelIndex& index, int role) const override;
  QVariant headerData(int section, Qt::Orientation orientation, int role) const override;

  // Shows small pictures beside the names; nullptr shows none. Not owned.
  void SetThumbnails(Thumbnails* thumbnails);
  // Called when a small picture was read.
  void ShowThumbnails();

  // Returns the number of the added column, the last one.
  int ResultColumn() const { return GridModel::columnCount(); }

 protected:
  bool Precedes(std::size_t row, std::size_t other, int column) const override;

 private:
  const job::FileList& files_;
  Thumbnails* thumbnails_ = nullptr;
};

}  // namespace quillon::ui
