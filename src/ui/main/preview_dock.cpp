// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/main/preview_dock.h"

#include <QCloseEvent>
#include <QLabel>
#include <QVBoxLayout>

#include "base/path_text.h"
#include "ui/bind/elided_label.h"
#include "ui/main/preview_canvas.h"
#include "ui/main/preview_loader.h"
#include "ui/text.h"
#include "ui/theme/metrics.h"

namespace quillon::ui {
namespace {

constexpr int kPreviewLimit = 1600;

}  // namespace

PreviewDock::PreviewDock(job::FCutPre& record, PreviewLoader& loader, QWidget* parent)
    : QDockWidget(parent),
      record_(record),
      loader_(loader),
      binder_(record),
      canvas_(new PreviewCanvas(record.preview)),
      details_(new QWidget),
      file_(new ElidedLabel),
      size_(new QLabel) {
  setObjectName(Shown(record.Name()));
  auto* content = new QWidget;
  auto* column = new QVBoxLayout(content);
  column->setContentsMargins(0, 0, 0, kGap / 2);
  column->setSpacing(kGap / 2);
  column->addWidget(canvas_, 1);

  auto* line = new QHBoxLayout(details_);
  line->setContentsMargins(kGap, 0, kGap, 0);
  line->setSpacing(kGap);
  line->addWidget(file_, 1);
  line->addWidget(size_);
  line->addWidget(binder_.Make(record.ChHideShow));
  column->addWidget(details_);
  setWidget(content);

  loader_.SetTaker([this](const QImage& picture) { canvas_->SetPicture(picture); });
  record_.preview.SetObserver([this] { OnPreview(); });
  token_ = record_.Observe([this](controls::Control&, controls::Aspect) { ShowDetails(); },
                           [this](controls::Window&) {
                             ShowTitle();
                             setVisible(record_.Visible());
                           });
  connect(this, &QDockWidget::topLevelChanged, this, [this] { ShowTitle(); });
  ShowTitle();
  ShowDetails();
  OnPreview();
}

PreviewDock::~PreviewDock() {
  record_.Forget(token_);
  record_.preview.SetObserver({});
  loader_.SetTaker({});
}

void PreviewDock::OnPreview() {
  const job::Preview& preview = record_.preview;
  if (shown_ != preview.Showings()) {
    shown_ = preview.Showings();
    if (preview.Path().empty()) {
      canvas_->SetPicture({});
    } else {
      loader_.Ask(preview.Path(), QSize(kPreviewLimit, kPreviewLimit));
    }
    const base::PathParts parts = base::SplitPath(preview.Path());
    file_->setText(Shown(base::JoinPath("", parts.name, parts.extension)));
    file_->setToolTip(Shown(preview.Path()));
    const base::Size size = preview.Picture();
    size_->setText(preview.Path().empty() ? QString() : QStringLiteral("%1 × %2").arg(size.width).arg(size.height));
  }
  canvas_->update();
}

// Docked there is room for the name of the window; floating it tells the keys too.
void PreviewDock::ShowTitle() {
  const QString title = Shown(record_.Title());
  setWindowTitle(isFloating() ? title : title.section(u'(', 0, 0));
}

void PreviewDock::ShowDetails() {
  file_->setVisible(!record_.ChHideShow.On());
  size_->setVisible(!record_.ChHideShow.On());
}

// Closing is the record's business; the dock follows it.
void PreviewDock::closeEvent(QCloseEvent* event) {
  event->ignore();
  record_.Close();
}

}  // namespace quillon::ui
