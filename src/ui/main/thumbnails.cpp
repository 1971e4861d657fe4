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

Thumbnails::Thumbnails(Reader reader, std::function<void()> loaded, QObject* parent)
    : QObject(parent), read_(std::move(reader)), loaded_(std::move(loaded)), pictures_(kKept), empty_(Centred({})) {
  thread_.setMaxThreadCount(1);
}

Thumbnails::~Thumbnails() {
  thread_.clear();
  thread_.waitForDone();
}

QPixmap Thumbnails::Of(const std::string& path) {
  if (const QPixmap* picture = pictures_.object(QByteArray::fromStdString(path))) return *picture;
  if (pending_.size() < kMost && pending_.insert(path).second) Load(path);
  return empty_;
}

void Thumbnails::Load(const std::string& path) {
  const int side = qRound(kSide * qGuiApp->devicePixelRatio());
  thread_.start([this, path, side] {
    const QImage picture = read_(path, {side, side});
    QMetaObject::invokeMethod(
        this, [this, path, picture] { Keep(path, picture); }, Qt::QueuedConnection);
  });
}

void Thumbnails::Keep(const std::string& path, const QImage& picture) {
  pending_.erase(path);
  pictures_.insert(QByteArray::fromStdString(path), new QPixmap(Centred(picture)));
  loaded_();
}

}  // namespace quillon::ui
