// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/preview/preview_canvas.h"

#include <QPainter>
#include <cmath>

#include "ui/kit/theme/flat_paint.h"
#include "ui/kit/theme/theme.h"
#include "ui/preview/frame_painter.h"

// What is drawn comes from three places: the picture is set by the loader, the frame and the border are read from the
// preview record at every paint, and zoom, scroll position and regions are set by the dock. Only the last two and the
// picture are stored here, so the canvas never disagrees with the record.
namespace quillon::ui {
namespace {

constexpr double kGripDistance = 7;  // pixels around a side of the frame in which it can be taken hold of
constexpr double kMillimetres = 25.4;
constexpr double kBadge = 22;

// Returns "1062 × 1630 px　89.9 × 138.0 mm", without millimetres if the resolution is not known.
QString SizeText(double width, double height, int dpi) {
  const QString pixels = QStringLiteral("%1 × %2 px").arg(qRound(width)).arg(qRound(height));
  if (dpi <= 0) return pixels;
  const auto mm = [dpi](double side) { return QString::number(side * kMillimetres / dpi, 'f', 1); };
  return pixels + QStringLiteral("　%1 × %2 mm").arg(mm(width), mm(height));
}

QRectF Room(const QWidget& canvas) { return QRectF(canvas.rect()).adjusted(kGap, kGap, -kGap, -kGap); }

}  // namespace

PreviewCanvas::PreviewCanvas(const job::Preview& preview, QWidget* parent) : QWidget(parent), preview_(preview) {
  setObjectName(QStringLiteral("previewCanvas"));
  setAccessibleName(QStringLiteral("预览"));
  setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Expanding);
  setMouseTracking(true);
  setFocusPolicy(Qt::StrongFocus);
}

void PreviewCanvas::SetPicture(const QImage& picture) {
  picture_ = picture;
  glance_ = {};
  shaped_ = {};
  update();
}

void PreviewCanvas::SetGlance(const QImage& picture) {
  glance_ = picture;
  update();
}

void PreviewCanvas::SetView(double zoom, double across, double down) {
  zoom_ = zoom;
  across_ = across;
  down_ = down;
  update();
}

void PreviewCanvas::SetHandles(bool handles) {
  handles_ = handles;
  update();
}

void PreviewCanvas::SetRegions(std::vector<job::PreviewFrame> regions, std::optional<std::size_t> picked) {
  regions_ = std::move(regions);
  picked_ = picked;
  update();
}

QRectF PreviewCanvas::Extent() const {
  const QRectF whole(0, 0, preview_.Picture().width, preview_.Picture().height);
  const job::PreviewBoard& board = preview_.Board();
  if (board.Empty()) return whole;
  const job::PreviewFrame& frame = CutFrame();
  // A wider border would make the picture too small to be recognised.
  const double most = 3 * qMax(whole.width(), whole.height());
  const auto side = [most](double width) { return qMin(width, most); };
  const QRectF framed(frame.left, frame.top, frame.width, frame.height);
  return whole.united(framed.adjusted(-side(board.left), -side(board.top), side(board.right), side(board.bottom)));
}

QRectF PreviewCanvas::ExtentRect() const {
  const QRectF room = Room(*this);
  QRectF shown(QPointF(), Extent().size().scaled(room.size(), Qt::KeepAspectRatio) * zoom_);
  shown.moveCenter(room.center());
  if (shown.width() > room.width()) shown.moveLeft(room.left() - (shown.width() - room.width()) * across_);
  if (shown.height() > room.height()) shown.moveTop(room.top() - (shown.height() - room.height()) * down_);
  return shown;
}

QRectF PreviewCanvas::PictureRect() const {
  const QSizeF whole(preview_.Picture().width, preview_.Picture().height);
  if (picture_.isNull() || whole.isEmpty()) return {};
  const QRectF extent = Extent();
  const QRectF shown = ExtentRect();
  const double scale = shown.width() / extent.width();
  return {shown.topLeft() - extent.topLeft() * scale, whole * scale};
}

QSizeF PreviewCanvas::Hidden() const {
  if (PictureRect().isEmpty()) return {0, 0};
  return (ExtentRect().size() - Room(*this).size()).expandedTo(QSizeF(0, 0));
}

void PreviewCanvas::Shape() {
  const double angle = preview_.Angle();
  if (!shaped_.isNull() && angle_ == angle && upright_ == preview_.Upright()) return;
  angle_ = angle;
  upright_ = preview_.Upright();
  shaped_ = picture_;
  scaled_ = {};
  if (angle == 0) return;
  const QSize upright =
      QSize(upright_.width, upright_.height).scaled(picture_.size(), Qt::KeepAspectRatio).expandedTo(QSize(1, 1));
  const QImage turned = picture_.scaled(upright, Qt::IgnoreAspectRatio, Qt::SmoothTransformation)
                            .transformed(QTransform().rotate(-angle), Qt::SmoothTransformation);
  shaped_ = QImage(turned.size(), QImage::Format_RGB32);
  shaped_.fill(Qt::white);
  QPainter(&shaped_).drawImage(0, 0, turned);
}

QRectF PreviewCanvas::Placed(const job::PreviewFrame& frame) const {
  const QRectF shown = PictureRect();
  if (shown.isEmpty()) return {};
  const double across = shown.width() / preview_.Picture().width;
  const double down = shown.height() / preview_.Picture().height;
  return {shown.left() + frame.left * across, shown.top() + frame.top * down, frame.width * across,
          frame.height * down};
}

QRectF PreviewCanvas::FrameRect() const { return Placed(preview_.PictureFrame()); }

QRectF PreviewCanvas::ResultRect() const { return Placed(CutFrame()); }

const job::PreviewFrame& PreviewCanvas::CutFrame() const {
  return preview_.Result() ? preview_.Result()->cut : preview_.PictureFrame();
}

regions::Point PreviewCanvas::PlaceAt(const QPointF& point) const {
  const QRectF shown = PictureRect();
  if (shown.isEmpty()) return {};
  return {(point.x() - shown.left()) * preview_.Picture().width / shown.width(),
          (point.y() - shown.top()) * preview_.Picture().height / shown.height()};
}

// A frame over the whole picture has no room to move, so a press inside it starts a new frame.
std::optional<regions::Grip> PreviewCanvas::GripAt(const QPointF& point) const {
  const QRectF frame = FrameRect();
  if (frame.width() <= 0 || frame.height() <= 0) return std::nullopt;
  if (!frame.adjusted(-kGripDistance, -kGripDistance, kGripDistance, kGripDistance).contains(point))
    return std::nullopt;
  const auto side = [](double at, double first, double second) {
    if (std::abs(at - second) <= kGripDistance) return 1;
    return std::abs(at - first) <= kGripDistance ? -1 : 0;
  };
  const regions::Grip grip{side(point.x(), frame.left(), frame.right()), side(point.y(), frame.top(), frame.bottom())};
  const base::Size picture = preview_.Picture();
  const job::PreviewFrame& own = preview_.PictureFrame();
  const bool whole = own.width >= picture.width && own.height >= picture.height;
  if (grip == regions::Grip() && whole) return std::nullopt;
  return grip;
}

QRectF PreviewCanvas::RegionBadge(std::size_t region) const {
  const QRectF frame = Placed(regions_[region]);
  return {frame.left(), frame.top(), qMin(kBadge, qMax(frame.width(), 1.0)), qMin(kBadge, qMax(frame.height(), 1.0))};
}

std::optional<std::size_t> PreviewCanvas::RegionAt(const QPointF& point) const {
  // The last region is painted on top, so it is tested first.
  for (std::size_t i = regions_.size(); i-- > 0;) {
    const QRectF frame = Placed(regions_[i]);
    const bool near = frame.adjusted(-kGripDistance, -kGripDistance, kGripDistance, kGripDistance).contains(point);
    const bool inside = frame.adjusted(kGripDistance, kGripDistance, -kGripDistance, -kGripDistance).contains(point);
    if (RegionBadge(i).contains(point) || (near && !inside) || (near && picked_ == i)) return i;
  }
  return std::nullopt;
}

QString PreviewCanvas::FrameText() const {
  const std::optional<job::PreviewResult>& result = preview_.Result();
  const job::PreviewFrame& frame = preview_.PictureFrame();
  if (!result) return SizeText(frame.width, frame.height, preview_.Dpi());
  const job::CutOutcome& outcome = result->outcome;
  if (!outcome.why.empty()) return QStringLiteral("裁不出图");
  const QString size = SizeText(outcome.size.width, outcome.size.height, outcome.dpi);
  return outcome.pieces > 1 ? QStringLiteral("%1 张 ").arg(outcome.pieces) + size : size;
}

void PreviewCanvas::PaintPicture(QPainter& painter, const QRectF& shown) {
  Shape();
  const double ratio = devicePixelRatioF();
  painter.setRenderHint(QPainter::SmoothPixmapTransform);
  if (zoom_ <= 1) {
    const QSize pixels = (shown.size() * ratio).toSize().expandedTo(QSize(1, 1));
    // Scaling smoothly is slow, and the frame is repainted with every move of the mouse.
    if (scaled_.size() != pixels) {
      scaled_ = QPixmap::fromImage(shaped_.scaled(pixels, Qt::IgnoreAspectRatio, Qt::SmoothTransformation));
      scaled_.setDevicePixelRatio(ratio);
    }
    painter.drawPixmap(shown, scaled_, QRectF(QPointF(), QSizeF(pixels)));
    return;
  }
  // Only the visible part of an enlarged picture is scaled.
  const QRectF visible = shown.intersected(QRectF(rect()));
  const double across = shaped_.width() / shown.width();
  const double down = shaped_.height() / shown.height();
  painter.drawImage(visible, shaped_,
                    QRectF((visible.left() - shown.left()) * across, (visible.top() - shown.top()) * down,
                           visible.width() * across, visible.height() * down));
  const double wanted = qMax(shown.width(), shown.height()) * ratio;
  if (wanted > 1.2 * qMax(shaped_.width(), shaped_.height())) emit DetailWanted(static_cast<int>(wanted));
}

void PreviewCanvas::PaintRegions(QPainter& painter) const {
  for (std::size_t i = 0; i < regions_.size(); ++i) {
    PaintRegion(painter, {Placed(regions_[i]), RegionBadge(i), static_cast<int>(i) + 1, picked_ == i});
  }
}

void PreviewCanvas::paintEvent(QPaintEvent*) {
  QPainter painter(this);
  if (Glances()) {
    const QRectF room = Room(*this);
    QRectF place(QPointF(), QSizeF(glance_.size()).scaled(room.size(), Qt::KeepAspectRatio));
    place.moveCenter(room.center());
    painter.setRenderHint(QPainter::SmoothPixmapTransform);
    painter.drawImage(place, glance_);
    return;
  }
  const QRectF shown = PictureRect();
  if (shown.isEmpty()) {
    PaintDropHint(painter, *this);
    return;
  }
  PaintPicture(painter, shown);
  painter.setClipRect(rect());
  if (!regions_.empty()) {
    PaintRegions(painter);
    return;
  }
  FrameDrawing drawing{shown, ResultRect(), preview_.Shape(), preview_.BorderStyle() != 0, FrameText()};
  drawing.handles = handles_;
  drawing.second = preview_.SecondLook();
  drawing.visible = rect();
  const job::PreviewBoard& board = preview_.Board();
  const double scale = shown.width() / preview_.Picture().width;
  drawing.board = QMarginsF(board.left, board.top, board.right, board.bottom) * scale;
  drawing.boardColour = QColor(board.colour.Red(), board.colour.Green(), board.colour.Blue());
  if (preview_.Result() && !preview_.Result()->notice.empty()) drawing.asked = FrameRect();
  PaintFrame(painter, drawing);
}

}  // namespace quillon::ui
