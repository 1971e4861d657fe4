// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QImage>
#include <QObject>
#include <QThreadPool>
#include <atomic>
#include <functional>
#include <mutex>
#include <string>

namespace quillon::ui {

// Fetches reduced pictures for the preview beside the event loop, since a very large one takes seconds. Only the one
// that was asked for last is handed over. One more picture can be fetched early.
class PreviewLoader : public QObject {
 public:
  // Reads a picture reduced to at most limit a side; a null image where that fails. Runs on a thread of the loader.
  using Reader = std::function<QImage(const std::string& path, QSize limit)>;
  using Taker = std::function<void(const QImage& picture)>;
  // What a file is now: another text once it holds something else. Runs on any thread.
  using Version = std::function<std::string(const std::string& path)>;

  explicit PreviewLoader(Reader reader, QObject* parent = nullptr);
  ~PreviewLoader() override;

  void SetTaker(Taker taker) { take_ = std::move(taker); }
  void SetVersion(Version version) { version_ = std::move(version); }
  // A picture that was fetched early, and has not changed since, is handed over at once.
  void Ask(const std::string& path, QSize limit);
  // Reads a picture that is likely to be asked for next; "" forgets it.
  void Fetch(const std::string& path, QSize limit);
  // That picture once it is there, to be looked at before it is asked for; a null image else.
  QImage Fetched(const std::string& path, QSize limit);
  // Waits until nothing is being read; what was read is handed over in the next turn of the event loop.
  void Wait() { thread_.waitForDone(); }

 private:
  struct Early {
    std::string path;
    std::string version;
    QSize limit;
    QImage picture;

    bool Is(const std::string& wanted, const std::string& now, QSize size) const {
      return path == wanted && version == now && limit == size;
    }
  };

  std::string VersionOf(const std::string& path) const { return version_ ? version_(path) : std::string(); }
  QImage PopEarly(const std::string& path, QSize limit);

  Reader read_;
  Taker take_;
  Version version_;
  QThreadPool thread_;
  std::atomic<int> latest_ = 0;
  std::mutex mutex_;
  Early early_;
};

}  // namespace quillon::ui
