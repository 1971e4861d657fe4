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

// Loads reduced pictures for the preview on one background thread, since a very large picture takes seconds.
// Only the result of the latest Load is delivered. One more picture can be prefetched.
class PreviewLoader : public QObject {
 public:
  // Reads a picture with sides of at most limit; returns a null image if it cannot. Runs on the thread of the loader.
  using Reader = std::function<QImage(const std::string& path, QSize limit)>;
  // Receives the picture, or a null image, on the thread of the window.
  using Receiver = std::function<void(const QImage& picture)>;
  // Returns a text that changes when the file gets another content. Runs on any thread.
  using Version = std::function<std::string(const std::string& path)>;

  explicit PreviewLoader(Reader reader, QObject* parent = nullptr);
  ~PreviewLoader() override;

  void SetReceiver(Receiver receiver) { receive_ = std::move(receiver); }
  void SetVersion(Version version) { version_ = std::move(version); }
  // Loads a picture and delivers it later, or at once if it was prefetched with this limit and the file is unchanged.
  void Load(const std::string& path, QSize limit);
  // Loads a picture that will probably be needed next. An empty path drops the prefetched picture.
  void Prefetch(const std::string& path, QSize limit);
  // Returns the prefetched picture if it is ready and its file unchanged, else a null image. It remains prefetched.
  QImage Prefetched(const std::string& path, QSize limit);
  // Waits until nothing is being read. Results are delivered in the next turn of the event loop.
  void Wait() { thread_.waitForDone(); }

 private:
  struct PrefetchedPicture {
    std::string path;
    std::string version;
    QSize limit;
    QImage picture;

    bool Is(const std::string& wanted, const std::string& now, QSize size) const {
      return path == wanted && version == now && limit == size;
    }
  };

  std::string VersionOf(const std::string& path) const { return version_ ? version_(path) : std::string(); }
  // As Prefetched, and drops the picture.
  QImage PopPrefetched(const std::string& path, QSize limit);

  Reader read_;
  Receiver receive_;
  Version version_;
  QThreadPool thread_;
  std::atomic<int> latest_ = 0;  // number of the latest Load; older ones are not delivered
  std::mutex mutex_;             // guards prefetched_
  PrefetchedPicture prefetched_;
};

}  // namespace quillon::ui
