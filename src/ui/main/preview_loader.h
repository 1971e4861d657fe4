// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QImage>
#include <QObject>
#include <QThreadPool>
#include <atomic>
#include <functional>
#include <string>

namespace quillon::ui {

// Fetches reduced pictures for the preview beside the event loop, since a very large one takes seconds. Only the one
// that was asked for last is handed over.
class PreviewLoader : public QObject {
 public:
  // Reads a picture reduced to at most limit a side; a null image where that fails. Runs on a thread of the loader.
  using Reader = std::function<QImage(const std::string& path, QSize limit)>;
  using Taker = std::function<void(const QImage& picture)>;

  explicit PreviewLoader(Reader reader, QObject* parent = nullptr);
  ~PreviewLoader() override;

  void SetTaker(Taker taker) { take_ = std::move(taker); }
  void Ask(const std::string& path, QSize limit);
  // Waits until nothing is being read; what was read is handed over in the next turn of the event loop.
  void Wait() { thread_.waitForDone(); }

 private:
  Reader read_;
  Taker take_;
  QThreadPool thread_;
  std::atomic<int> latest_ = 0;
};

}  // namespace quillon::ui
