// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/preview/preview_dock.h"

#include <QCloseEvent>
#include <QGridLayout>
#include <QGuiApplication>
#include <QLabel>
#include <QPushButton>
#include <QScreen>
#include <QScrollBar>
#include <QToolButton>
#include <QVBoxLayout>

#include "base/path_text.h"
#include "ui/kit/bind/elided_label.h"
#include "ui/kit/text.h"
#include "ui/kit/theme/theme.h"
#include "ui/preview/frame_keys.h"
#include "ui/preview/frame_mouse.h"
#include "ui/preview/frame_notice.h"
#include "ui/preview/key_overlay.h"
#include "ui/preview/preview_canvas.h"
#include "ui/preview/preview_loader.h"

namespace quillon::ui {
namespace {

constexpr int kPreviewLimit = 1600;   // longest side of the reduced picture, in pixels
constexpr int kLargestDetail = 6000;  // the same for an enlarged picture
constexpr int kBlinkMilliseconds = 600;
constexpr double kStepShare = 0.85;           // of the screen, for the window of the manual step
constexpr const char* kPlaceKey = "FCutPre";  // settings key of the geometry of that window

double PartOf(const controls::Slider& bar) {
  return bar.Max() > 0 ? static_cast<double>(bar.Position()) / bar.Max() : 0.5;
}

QHBoxLayout* Line(QWidget* owner) {
  auto* line = new QHBoxLayout(owner);
  line->setContentsMargins(kGap, 0, kGap, 0);
  line->setSpacing(kGap);
  return line;
}

}  // namespace

PreviewDock::PreviewDock(parts::Parts& parts, PreviewLoader& loader, QWidget* parent)
    : QDockWidget(parent),
      program_(parts.program),
      record_(parts.program.fCutPre),
      frame_(parts.regions.cutFrame),
      regions_(parts.regions.fMultCut),
      loader_(loader),
      binder_(record_),
      canvas_(new PreviewCanvas(record_.preview)),
      keys_(new KeyOverlay(*canvas_)),
      notice_(new FrameNotice(parts.program.form1)),
      file_(new ElidedLabel),
      size_(new QLabel),
      result_(new QLabel),
      zoom_(new QLabel) {
  setObjectName(Shown(record_.Name()));
  auto* content = new QWidget;
  auto* column = new QVBoxLayout(content);
  column->setContentsMargins(0, 0, 0, kGap / 2);
  column->setSpacing(kGap / 2);
  column->addWidget(MakeView(), 1);
  column->addWidget(notice_);
  column->addWidget(MakeButtons());
  column->addWidget(MakeZoom());
  column->addWidget(MakeDetails());
  setWidget(content);
  ConnectInput();
  ShowTitle();
  ShowDetails();
  OnPreview();
  ShowStep();
}

PreviewDock::~PreviewDock() {
  record_.Forget(token_);
  regions_.Forget(regionsToken_);
  record_.preview.SetObserver({});
  loader_.SetReceiver({});
}

QWidget* PreviewDock::MakeView() {
  auto* view = new QWidget;
  auto* grid = new QGridLayout(view);
  grid->setContentsMargins(0, 0, 0, 0);
  grid->setSpacing(0);
  auto* down = new QScrollBar(Qt::Vertical);
  auto* across = new QScrollBar(Qt::Horizontal);
  binder_.Join(record_.VS, down);
  binder_.Join(record_.HS, across);
  grid->addWidget(canvas_, 0, 0);
  grid->addWidget(down, 0, 1);
  grid->addWidget(across, 1, 0);
  return view;
}

QWidget* PreviewDock::MakeButtons() {
  buttons_ = new QWidget;
  auto* line = Line(buttons_);
  // These buttons do not get the focus by a click, so the space key keeps triggering CmdNext.
  const auto make = [this](controls::Button& button) {
    QWidget* widget = binder_.Make(button);
    widget->setFocusPolicy(Qt::TabFocus);
    return widget;
  };
  for (controls::Button* button : {&record_.CmdRot90, &record_.CmdRot270, &record_.CmdAddBoard}) {
    line->addWidget(make(*button));
  }
  line->addStretch(1);
  line->addWidget(make(record_.CmdNotCut));
  auto* next = static_cast<QPushButton*>(binder_.Make(record_.CmdNext));
  next->setDefault(true);
  line->addWidget(next);
  return buttons_;
}

QWidget* PreviewDock::MakeZoom() {
  auto* row = new QWidget;
  auto* line = Line(row);
  QWidget* slider = binder_.Make(record_.Slider1);
  line->addWidget(binder_.MakeLabel(record_.Slider1, slider));
  line->addWidget(slider, 1);
  zoom_->setMinimumWidth(fontMetrics().horizontalAdvance(QStringLiteral("800%")));
  line->addWidget(zoom_);
  line->addWidget(binder_.Make(record_.ChHideShow));
  auto* help = new QToolButton;
  help->setText(QStringLiteral("?"));
  help->setToolTip(QStringLiteral("快捷键(F1)"));
  help->setAccessibleName(QStringLiteral("快捷键"));
  help->setAutoRaise(true);
  connect(help, &QToolButton::clicked, keys_, [this] { keys_->Toggle(); });
  line->addWidget(help);
  return row;
}

QWidget* PreviewDock::MakeDetails() {
  auto* details = new QWidget;
  auto* line = Line(details);
  line->addWidget(file_, 1);
  line->addWidget(size_);
  line->addWidget(result_);
  return details;
}

void PreviewDock::ConnectInput() {
  new FrameMouse(*canvas_, record_, frame_, [this]() -> regions::RegionEditor* {
    const bool shown = regions_.Visible() && regions_.Editor().List().RowCount() > 0 && !frame_.Waiting();
    return shown ? &regions_.Editor() : nullptr;
  });
  new FrameKeys(*canvas_, frame_, [this] { keys_->Toggle(); });
  loader_.SetReceiver([this](const QImage& picture) { canvas_->SetPicture(picture); });
  record_.preview.SetObserver([this] { OnPreview(); });
  token_ = record_.Observe(
      [this](controls::Control& control, controls::Aspect) {
        ShowDetails();
        if (&control == &record_.CmdNext) ShowStep();
      },
      [this](controls::Window&) {
        ShowTitle();
        ShowStep();
        setVisible(record_.Visible());
      });
  regionsToken_ = regions_.Observe([this](controls::Control&, controls::Aspect) { ShowRegions(); },
                                   [this](controls::Window&) { ShowRegions(); });
  connect(this, &QDockWidget::topLevelChanged, this, [this] { ShowTitle(); });
  connect(
      canvas_, &PreviewCanvas::DetailWanted, this, [this](int side) { LoadDetail(side); }, Qt::QueuedConnection);
  connect(&blink_, &QTimer::timeout, this, [this] {
    // The frame does not blink while a batch cuts, when the preview shows nothing that can be edited.
    if (canvas_->isVisible() && (frame_.Waiting() || !program_.flags.Busy)) frame_.Timer1_Timer({});
  });
  blink_.start(kBlinkMilliseconds);
}

void PreviewDock::OnPreview() {
  const job::Preview& preview = record_.preview;
  // The same path may be shown again with other content, so showings are counted instead of comparing paths.
  if (shown_ != preview.Showings()) ShowNewPicture();
  loader_.Prefetch(preview.Upcoming(), QSize(kPreviewLimit, kPreviewLimit));
  if (glances_ != preview.Glances()) ShowGlance();
  if (preview.Result()) {
    const job::CutOutcome& outcome = preview.Result()->outcome;
    const QString size = QStringLiteral("裁出 %1 × %2").arg(outcome.size.width).arg(outcome.size.height);
    result_->setText(preview.Path().empty() ? QString() : outcome.why.empty() ? size : QStringLiteral("裁不出图"));
  }
  ShowNotice();
  ShowRegions();
  ShowView();
}

// The next picture appears as soon as the current one is done, even if its cut takes a while.
void PreviewDock::ShowGlance() {
  const job::Preview& preview = record_.preview;
  glances_ = preview.Glances();
  canvas_->SetGlance(glances_ ? loader_.Prefetched(preview.Upcoming(), QSize(kPreviewLimit, kPreviewLimit)) : QImage());
}

void PreviewDock::ShowNewPicture() {
  const job::Preview& preview = record_.preview;
  shown_ = preview.Showings();
  limit_ = kPreviewLimit;
  if (preview.Path().empty()) {
    canvas_->SetPicture({});
  } else {
    loader_.Load(preview.Path(), QSize(limit_, limit_));
  }
  const std::string& path = frame_.Asked().empty() ? preview.Path() : frame_.Asked();
  const base::PathParts parts = base::SplitPath(path);
  file_->setText(Shown(base::JoinPath("", parts.name, parts.extension)));
  file_->setToolTip(Shown(path));
  const base::Size size = preview.Picture();
  size_->setText(preview.Path().empty() ? QString() : QStringLiteral("%1 × %2").arg(size.width).arg(size.height));
}

// Loads an enlarged picture again with twice the pixels that are visible, so that further zooming rarely loads again.
void PreviewDock::LoadDetail(int side) {
  const base::Size whole = record_.preview.Picture();
  const int wanted = qMin(kLargestDetail, qMin(qMax(whole.width, whole.height), 2 * side));
  if (wanted <= limit_) return;
  limit_ = wanted;
  loader_.Load(record_.preview.Path(), QSize(limit_, limit_));
}

void PreviewDock::ShowNotice() {
  if (frame_.Dragging()) return;
  const job::Preview& preview = record_.preview;
  const bool framed = !preview.Path().empty() && preview.Result() && !regions_.Visible();
  const bool edited = frame_.Waiting() || !program_.flags.Busy;
  notice_->Show(framed && edited ? preview.Result()->notice : std::string());
  // At once, so that the next press of the mouse finds the picture where it is seen.
  widget()->layout()->activate();
}

void PreviewDock::ShowRegions() {
  if (!regions_.Visible() || frame_.Waiting()) {
    canvas_->SetRegions({}, std::nullopt);
    return;
  }
  const std::size_t selected = regions_.MSFlexGrid1.Selected();
  canvas_->SetRegions(regions_.Editor().Frames(), selected > 0 ? std::optional(selected - 1) : std::nullopt);
}

void PreviewDock::ShowView() {
  canvas_->SetView(frame_.Zoom(), PartOf(record_.HS), PartOf(record_.VS));
  canvas_->SetHandles(frame_.Editable());
  zoom_->setText(QStringLiteral("%1%").arg(record_.Slider1.Position()));
}

// The title lists the keys in brackets. There is room for them only while the window floats.
void PreviewDock::ShowTitle() {
  const QString title = Shown(record_.Title());
  setWindowTitle(isFloating() ? title : title.section(u'(', 0, 0));
}

void PreviewDock::ShowDetails() {
  for (QWidget* detail : std::initializer_list<QWidget*>{file_, size_, result_}) {
    detail->setVisible(!record_.ChHideShow.On());
  }
  ShowView();
}

// The window returns to its dock when the batch ends, not between two pictures.
void PreviewDock::ShowStep() {
  const bool idle = record_.Title() == job::kPreviewCaption;
  buttons_->setVisible(!idle || frame_.Waiting());
  if (frame_.Waiting() && !floated_ && !isFloating()) {
    floated_ = true;
    setFloating(true);
    PlaceFloating();
  } else if (idle && floated_) {
    floated_ = false;
    SavePlace();
    setFloating(false);
  }
  if (!frame_.Waiting()) return;
  raise();
  activateWindow();
  if (auto* next = findChild<QPushButton*>(Shown(record_.CmdNext.Name()))) next->setFocus();
}

// Uses the geometry of the last batch if it still lies on a screen, else most of the current screen.
void PreviewDock::PlaceFloating() {
  QRect room = screen()->availableGeometry();
  QRect place(QPoint(), room.size() * kStepShare);
  place.moveCenter(room.center());
  const QStringList kept = Shown(program_.Setting(kPlaceKey)).split(u' ');
  if (kept.size() == 4) {
    const QRect last(kept[0].toInt(), kept[1].toInt(), kept[2].toInt(), kept[3].toInt());
    const QScreen* there = QGuiApplication::screenAt(last.center());
    if (there && last.width() >= minimumSizeHint().width() && last.height() >= minimumSizeHint().height()) {
      room = there->availableGeometry();
      place = last & room;
    }
  }
  setGeometry(place);
}

void PreviewDock::SavePlace() {
  const QRect place = geometry();
  program_.SaveSetting(
      kPlaceKey,
      Bytes(QStringLiteral("%1 %2 %3 %4").arg(place.left()).arg(place.top()).arg(place.width()).arg(place.height())));
}

// Closing is a request to the record; the dock is hidden when the record is.
void PreviewDock::closeEvent(QCloseEvent* event) {
  event->ignore();
  record_.Close();
}

}  // namespace quillon::ui
