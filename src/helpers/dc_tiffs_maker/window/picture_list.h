// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QListWidget>
#include <functional>
#include <string>
#include <vector>

namespace quillon::helpers {

// The pictures of an order, one in each row, which the user can reorder. Paths are kept as bytes.
class PictureList : public QListWidget {
 public:
  explicit PictureList(QWidget* parent = nullptr);

  void Add(const std::vector<std::string>& paths);
  std::vector<std::string> Paths() const;
  // Removes the selected rows, or moves each of them by one row past its unselected neighbour.
  void RemoveSelected();
  enum class Direction { Up, Down };
  void MoveSelected(Direction direction);
  // Called with the paths of files and folders that are dropped on the list.
  void SetDropHandler(std::function<void(const std::vector<std::string>&)> handler) { onDrop_ = std::move(handler); }

 protected:
  void dragEnterEvent(QDragEnterEvent* event) override;
  void dragMoveEvent(QDragMoveEvent* event) override;
  void dropEvent(QDropEvent* event) override;
  void keyPressEvent(QKeyEvent* event) override;
  void paintEvent(QPaintEvent* event) override;

 private:
  bool MoveRow(int row, int to);

  std::function<void(const std::vector<std::string>&)> onDrop_;
};

}  // namespace quillon::helpers
