// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/main/thumbnails.h"

#include <QGuiApplication>
#include <QPainter>

namespace quillon::ui {
namespace {

constexpr int kKept = 400;         // pictures
constexpr std::size_t kMost = 60;  // waiting to be read; rows that are scrolled past ask again when they come back

// Returns the picture in the middle of a transparent square, so that the names beside it stand in one line.
QPixmap Centred(const QImage& picture) {
  const qreal ratio = qGuiApp->devicePixelRatio();
  const int side = qRound(Thumbnails::kSide * ratio);
  QPixmap square(side, side);
  square.fill(Qt::transparent);
  if (!picture.isNull()) {
    const QImage fitting = picture.scaled(side, side, Qt::KeepAspectRatio, Qt::SmoothTransformation);
    QPainter painter(&square);
    painter.drawImage((side - fitting.width()) / 2, (side - fitting.height()) / 2, fitting);
  }
  square.setDevicePixelRatio(ratio);
  return square;
}

}  // namespace

Thumbnails::Thumbnails(std::function<void()> loaded, QObject* parent)
    : QObject(parent), loaded_(std::move(loaded)), pictures_(kKept), empty_(Centred({})) {
  thread_.setMaxThreadCount(1);
}

Thumbnails::~Thumbnails() {
  thread_.clear();
  thread_.waitForDone();
}

void Thumbnails::Show(Reader reader) { read_ = std::move(reader); }

void Thumbnails::Hide() {
  read_ = nullptr;
  Forget();
}

void Thumbnails::Forget() {
  ++generation_;
  thread_.clear();
  pending_.clear();
  pictures_.clear();
}

QPixmap Thumbnails::Of(const std::string& path) {
  if (const QPixmap* picture = pictures_.object(QByteArray::fromStdString(path))) return *picture;
  if (read_ && pending_.size() < kMost && pending_.insert(path).second) Load(path);
  return empty_;
}

void Thumbnails::Load(const std::string& path) {
  const int side = qRound(kSide * qGuiApp->devicePixelRatio());
  thread_.start([this, path, side, read = read_, generation = generation_] {
    const QImage picture = read(path, {side, side});
    const auto keep = [this, path, picture, generation] {
      if (generation != generation_) return;
      pending_.erase(path);
      pictures_.insert(QByteArray::fromStdString(path), new QPixmap(Centred(picture)));
      loaded_();
    };
    QMetaObject::invokeMethod(this, keep, Qt::QueuedConnection);
  });
}

}  // namespace quillon::ui
