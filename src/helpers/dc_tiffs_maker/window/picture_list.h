// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QListWidget>
#include <functional>
#include <string>
#include <vector>

namespace quillon::helpers {

// The pictures of an order, one a row, to be put in order by hand. Paths stay the bytes that they are.
class PictureList : public QListWidget {
 public:
  explicit PictureList(QWidget* parent = nullptr);

  void Add(const std::vector<std::string>& paths);
  std::vector<std::string> Paths() const;
  void RemoveChosen();
  enum class Way { Up, Down };
  void MoveChosen(Way way);
  // Told of the files and folders that were dropped on the list.
  void SetDropHandler(std::function<void(const std::vector<std::string>&)> handler) { onDrop_ = std::move(handler); }

 protected:
  void dragEnterEvent(QDragEnterEvent* event) override;
  void dragMoveEvent(QDragMoveEvent* event) override;
  void dropEvent(QDropEvent* event) override;
  void keyPressEvent(QKeyEvent* event) override;
  void paintEvent(QPaintEvent* event) override;

 private:
  bool StepChosen(int row, int to);

  std::function<void(const std::vector<std::string>&)> onDrop_;
};

}  // namespace quillon::helpers
