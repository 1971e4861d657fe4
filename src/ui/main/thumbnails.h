// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QCache>
#include <QObject>
#include <QPixmap>
#include <QThreadPool>
#include <functional>
#include <set>
#include <string>

namespace quillon::ui {

// Small pictures of the rows on show. They are read on one background thread when they are first asked for; the last
// few hundred are kept.
class Thumbnails : public QObject {
 public:
  // Reads a picture with sides of at most limit; returns a null image if it cannot. Runs on the background thread.
  using Reader = std::function<QImage(const std::string& path, QSize limit)>;

  // loaded is called on the thread of the window after a picture was read.
  explicit Thumbnails(std::function<void()> loaded, QObject* parent = nullptr);
  // Waits for the picture that is being read.
  ~Thumbnails() override;

  void Show(Reader reader);
  // Reads no more pictures. Does not wait for the one that is being read, which an unresponsive disk may keep for long.
  void Hide();
  bool Shown() const { return read_ != nullptr; }
  // Drops all pictures, so that they are read again when they are asked for.
  void Forget();

  // The side of the square that a picture fits in, in pixels of the window.
  static constexpr int kSide = 56;

  // Returns the picture, or a transparent one of the same size until it is read or if it cannot be read.
  QPixmap Of(const std::string& path);

 private:
  void Load(const std::string& path);

  Reader read_;  // none while hidden
  std::function<void()> loaded_;
  QThreadPool thread_;
  QCache<QByteArray, QPixmap> pictures_;
  std::set<std::string> pending_;
  int generation_ = 0;  // of the pictures; one that was begun before the last Forget is dropped
  QPixmap empty_;
};

}  // namespace quillon::ui
