// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include <QFile>
#include <QGuiApplication>
#include <QIconEngine>
#include <QPainter>
#include <QPalette>
#include <QSvgRenderer>

#include "ui/kit/theme/theme.h"

// The linker drops the resources of a static library unless this runs. The macro has to be used outside of namespaces.
static void LinkIconFiles() { Q_INIT_RESOURCE(icons); }

namespace quillon::ui {
namespace {

QString PathOf(const QString& name) {
  LinkIconFiles();
  return QStringLiteral(":/quillon/icons/%1.svg").arg(name);
}

// Paints the drawing anew for each request, which is how an icon follows the palette.
class LineIconEngine : public QIconEngine {
 public:
  explicit LineIconEngine(QString name) : name_(std::move(name)) {
    QFile file(PathOf(name_));
    if (file.open(QIODevice::ReadOnly)) drawing_ = file.readAll();
  }

  void paint(QPainter* painter, const QRect& rect, QIcon::Mode mode, QIcon::State) override {
    const QPalette palette = QGuiApplication::palette();
    const bool off = mode == QIcon::Disabled;
    const QColor ink = palette.color(off ? QPalette::Disabled : QPalette::Active, QPalette::ButtonText);
    QByteArray drawing = drawing_;
    drawing.replace("currentColor", ink.name().toLatin1());
    drawing.replace("accentColor", (off ? ink : AccentInk(palette)).name().toLatin1());
    drawing.replace("dangerColor", (off ? ink : DangerInk(palette)).name().toLatin1());
    QSvgRenderer(drawing).render(painter, rect);
  }

  QPixmap pixmap(const QSize& size, QIcon::Mode mode, QIcon::State state) override {
    QPixmap pixels(size);
    pixels.fill(Qt::transparent);
    QPainter painter(&pixels);
    paint(&painter, QRect(QPoint(), size), mode, state);
    return pixels;
  }

  QIconEngine* clone() const override { return new LineIconEngine(name_); }

 private:
  QString name_;
  QByteArray drawing_;
};

}  // namespace

QIcon LineIcon(const QString& name) { return QIcon(new LineIconEngine(name)); }

QIcon ProgramIcon() {
  QSvgRenderer drawing(PathOf(QStringLiteral("quillon")));
  QIcon icon;
  for (const int side : {16, 32, 48, 128}) {
    QPixmap pixels(side, side);
    pixels.fill(Qt::transparent);
    QPainter painter(&pixels);
    drawing.render(&painter);
    painter.end();
    icon.addPixmap(pixels);
  }
  return icon;
}

}  // namespace quillon::ui
