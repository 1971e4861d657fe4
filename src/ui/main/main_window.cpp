// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/main/main_window.h"

#include <QApplication>
#include <QCloseEvent>
#include <QComboBox>
#include <QListView>
#include <QMenu>
#include <QMenuBar>
#include <QMimeData>
#include <QScreen>
#include <QSplitter>
#include <QStandardItemModel>
#include <QTimer>
#include <set>
#include <sstream>

#include "host/files/file_stamp.h"
#include "job/windows/file_intake.h"
#include "ui/kit/record_window.h"
#include "ui/kit/text.h"
#include "ui/kit/theme/theme.h"
#include "ui/main/command_bars.h"
#include "ui/main/list_view.h"
#include "ui/main/parameter_panel.h"
#include "ui/main/status_strip.h"
#include "ui/options/options_window.h"
#include "ui/preview/preview_dock.h"
#include "ui/regions/regions_window.h"
#include "ui/timed/timed_window.h"

namespace quillon::ui {
namespace {

constexpr QSize kOpeningSize(1280, 760);
constexpr const char* kAsFramedKey = "ChAsFramed";
constexpr const char* kThumbnailsKey = "ListThumbnails";
constexpr int kPreviewWidth = 38 * kGap;

using MakeWindow = std::unique_ptr<ToolWindow> (*)(parts::Parts& parts, const Binder::Refusal& refused, QWidget* main);

// The windows of the features, a line for each. They show and hide themselves with their records.
constexpr MakeWindow kFeatureWindows[] = {
    [](parts::Parts& parts, const Binder::Refusal& refused, QWidget* main) -> std::unique_ptr<ToolWindow> {
      return std::make_unique<RegionsWindow>(parts.regions.fMultCut, refused, main);
    },
    [](parts::Parts& parts, const Binder::Refusal& refused, QWidget*) -> std::unique_ptr<ToolWindow> {
      return std::make_unique<TimedWindow>(parts.regions.fCutTime, refused);
    },
    [](parts::Parts& parts, const Binder::Refusal& refused, QWidget* main) -> std::unique_ptr<ToolWindow> {
      return std::make_unique<RecordWindow>(parts.formats.fGifCut, refused, main);
    },
    [](parts::Parts& parts, const Binder::Refusal& refused, QWidget* main) -> std::unique_ptr<ToolWindow> {
      return std::make_unique<RecordWindow>(parts.formats.fPngCut, refused, main);
    },
};

// Does not offer the modes whose drivers the program lacks. Neither mouse nor keys reach a disabled entry.
void HideMissingModes(QComboBox& list, const std::set<job::CutMode>& modes) {
  auto* view = qobject_cast<QListView*>(list.view());
  auto* entries = qobject_cast<QStandardItemModel*>(list.model());
  for (int entry = 0; entry <= static_cast<int>(job::CutMode::Tiff); ++entry) {
    const bool there = modes.contains(static_cast<job::CutMode>(entry));
    if (view) view->setRowHidden(entry, !there);
    if (entries) entries->item(entry)->setEnabled(there);
  }
}

}  // namespace

MainWindow::MainWindow(parts::Parts& parts)
    : program_(parts.program),
      form_(program_.form1),
      loader_([&program = program_](const std::string& path, QSize limit) {
        return ReadPreview(program.images, path, limit);
      }),
      binder_(program_.form1, [this](const std::string& sentence) { Refused(sentence); }) {
  loader_.SetVersion([&files = program_.host.files](const std::string& path) { return VersionOf(files, path); });
  setObjectName(Shown(form_.Name()));
  setWindowIcon(ProgramIcon());
  setAcceptDrops(true);
  setContextMenuPolicy(Qt::NoContextMenu);
  BuildMenus();
  auto* bar = new ToolBar(form_, binder_);
  addToolBar(bar);

  auto* middle = new QSplitter(Qt::Horizontal);
  auto* panel = new ParameterPanel(form_, binder_);
  if (auto* modes = panel->findChild<QComboBox*>(Shown(form_.CmbCutMode.Name()))) {
    HideMissingModes(*modes, program_.modes);
  }
  list_ = new ListView(program_, binder_);
  list_->SetOutcomeReceiver([bar](std::size_t rows, std::size_t withoutFile) { bar->ShowForeseen(rows, withoutFile); });
  middle->addWidget(panel);
  middle->addWidget(list_);
  middle->setStretchFactor(1, 1);
  middle->setChildrenCollapsible(false);
  middle->setHandleWidth(1);
  setCentralWidget(middle);

  if (program_.Setting(kThumbnailsKey) == "1") findChild<QAction*>(QStringLiteral("viewThumbnails"))->setChecked(true);
  preview_ = new PreviewDock(parts, loader_, this);
  preview_->setAllowedAreas(Qt::LeftDockWidgetArea | Qt::RightDockWidgetArea);
  addDockWidget(Qt::RightDockWidgetArea, preview_);
  preview_->setVisible(program_.fCutPre.Visible());

  status_ = new StatusStrip(form_, binder_);
  setStatusBar(status_);
  monitor_ = std::make_unique<RunMonitor>(
      program_.host.clock, [this](const RunFigures& figures) { status_->ShowRun(figures); },
      [this](const job::RunTotals& totals) {
        status_->ShowSummary(totals);
        list_->RenewThumbnails();
      });
  program_.observer = monitor_.get();

  const auto refused = [this](const std::string& sentence) { Refused(sentence); };
  for (const MakeWindow make : kFeatureWindows) featureWindows_.push_back(make(parts, refused, this));

  RestoreAsFramed();
  token_ = form_.Observe(
      [this](controls::Control& control, controls::Aspect aspect) {
        const bool framed = &control == &form_.ChAsFramed && aspect == controls::Aspect::Value;
        if (framed) program_.SaveSetting(kAsFramedKey, form_.ChAsFramed.Value());
      },
      [this](controls::Window&) {
        ShowTitle();
        FollowRecord();
      });
  optionsToken_ = program_.fBaseOpt.Observe({}, [this](controls::Window&) { ShowOptions(); });
  ShowTitle();
  ShowOptions();
  resize(kOpeningSize.boundedTo(screen()->availableSize()));
  resizeDocks({preview_}, {kPreviewWidth}, Qt::Horizontal);
}

MainWindow::~MainWindow() {
  program_.observer = nullptr;
  form_.Forget(token_);
  program_.fBaseOpt.Forget(optionsToken_);
  // Widgets call the binder and the loader, so they are deleted before these members.
  delete options_;
  featureWindows_.clear();
  delete preview_;
  delete takeCentralWidget();
}

void MainWindow::RestoreAsFramed() {
  if (program_.Setting(kAsFramedKey) == "1") form_.ChAsFramed.Set(true);
}

void MainWindow::BuildMenus() {
  BuildMenuBar(form_, binder_, *this);
  AddViewMenu();
  connect(ActionOf(form_.MenuExit, *this), &QAction::triggered, this, [this] { QuitWhenEnded(); });
}

// Not part of the record: it brings back a preview that was closed, and keeps the order of the list.
void MainWindow::AddViewMenu() {
  auto* view = new QMenu(QStringLiteral("视图"), this);
  QAction* preview = view->addAction(QStringLiteral("预览窗口"));
  preview->setObjectName(QStringLiteral("viewPreview"));
  preview->setCheckable(true);
  preview->setShortcut(QKeySequence(QStringLiteral("F3")));
  addAction(preview);
  connect(view, &QMenu::aboutToShow, preview, [this, preview] { preview->setChecked(program_.fCutPre.Visible()); });
  connect(preview, &QAction::triggered, this, [this] {
    if (program_.fCutPre.Visible()) {
      program_.fCutPre.Hide();
    } else {
      program_.fCutPre.Show();
    }
  });
  view->addSeparator();
  view->addMenu(SortMenu());
  QAction* order = view->addAction(QStringLiteral("按显示的顺序裁剪"), this, [this] { list_->KeepOrder(); });
  order->setShortcut(QKeySequence(QStringLiteral("Ctrl+Shift+O")));
  addAction(order);
  order->setObjectName(QStringLiteral("viewKeepOrder"));
  order->setToolTip(QStringLiteral("单击列表的标题只改变显示的顺序；本命令把裁剪的顺序也改成这样"));
  connect(view, &QMenu::aboutToShow, order, [this, order] { order->setEnabled(list_->Model().IsSorted()); });
  view->setToolTipsVisible(true);
  QAction* thumbnails = view->addAction(QStringLiteral("列表中显示缩略图"));
  thumbnails->setObjectName(QStringLiteral("viewThumbnails"));
  thumbnails->setCheckable(true);
  thumbnails->setShortcut(QKeySequence(QStringLiteral("Ctrl+Shift+T")));
  addAction(thumbnails);
  connect(thumbnails, &QAction::toggled, this, [this](bool on) { ShowThumbnails(on); });
  menuBar()->insertMenu(ActionOf(form_.MenuHelp, *this), view);
}

// The same as a click on a header, for the keyboard. The headers depend on the cut mode.
QMenu* MainWindow::SortMenu() {
  auto* sorts = new QMenu(QStringLiteral("列表排序"), this);
  sorts->setObjectName(QStringLiteral("viewSort"));
  connect(sorts, &QMenu::aboutToShow, this, [this, sorts] {
    sorts->clear();
    const QAbstractItemModel& rows = list_->Model();
    for (int column = 0; column < rows.columnCount(); ++column) {
      sorts->addAction(rows.headerData(column, Qt::Horizontal).toString(), this,
                       [this, column] { list_->SortBy(column); });
    }
    sorts->addSeparator();
    sorts->addAction(QStringLiteral("不排序"), this, [this] { list_->SortBy(-1); });
  });
  return sorts;
}

// The choice is remembered.
void MainWindow::ShowThumbnails(bool on) {
  if (on) {
    list_->ShowThumbnails(
        [&images = program_.images](const std::string& path, QSize limit) { return ReadPreview(images, path, limit); });
  } else {
    list_->HideThumbnails();
  }
  program_.SaveSetting(kThumbnailsKey, on ? "1" : "0");
}

// During a run the title is a status text followed by the program name. The status bar repeats the status.
void MainWindow::ShowTitle() {
  const QString title = Shown(form_.Title());
  setWindowTitle(title);
  QString activity = title;
  activity.chop(title.endsWith(QString::fromLatin1(job::kTitle)) ? qsizetype(qstrlen(job::kTitle)) : 0);
  status_->ShowActivity(activity.trimmed());
}

OptionsWindow& MainWindow::Options() {
  if (!options_) {
    options_ = new OptionsWindow(
        program_.fBaseOpt, [this](const std::string& sentence) { Refused(sentence); }, this);
  }
  return *options_;
}

QWidget* MainWindow::WindowOf(const controls::Window& record) const {
  for (const auto& window : featureWindows_) {
    if (window->objectName() == Shown(record.Name())) return window.get();
  }
  return nullptr;
}

// The timed cut hides the main window while it watches.
void MainWindow::FollowRecord() {
  if (recordShown_ == form_.Visible()) return;
  recordShown_ = form_.Visible();
  if (!program_.Ended()) setVisible(recordShown_);
}

void MainWindow::ShowOptions() {
  const bool visible = program_.fBaseOpt.Visible();
  if (!visible && !options_) return;
  const bool first = !options_;
  OptionsWindow& window = Options();
  if (first) window.move(PlaceForOptions(window));
  window.setVisible(visible);
}

// Places the options over the list and clear of the preview, if there is room, since the preview shows their effect.
QPoint MainWindow::PlaceForOptions(const OptionsWindow& window) const {
  QPoint place = list_->mapToGlobal(QPoint(3 * kGap, 6 * kGap));
  if (preview_->isVisible() && !preview_->isFloating()) {
    const int free = preview_->mapToGlobal(QPoint(0, 0)).x() - window.width() - kGap;
    place.setX(qMax(mapToGlobal(QPoint(kGap, 0)).x(), qMin(place.x(), free)));
  }
  return place;
}

bool MainWindow::AddFiles(const std::vector<std::string>& paths) {
  if (program_.flags.Busy) return false;
  const std::size_t before = program_.files.RowCount();
  program_.Intake().Admit(paths);
  if (program_.files.RowCount() > before) {
    form_.MSF.Select(before + 1);
    program_.Intake().MSF_DblClick();
  }
  return true;
}

void MainWindow::BringToFront() {
  if (!isVisible()) return;  // the timed cut has hidden it
  setWindowState((windowState() & ~Qt::WindowMinimized) | Qt::WindowActive);
  raise();
  activateWindow();
  QApplication::alert(this);
}

void MainWindow::ShowNotice(const QString& line) { status_->ShowNotice(line); }

void MainWindow::Refused(const std::string& sentence) {
  program_.host.boxes.Beep();
  status_->ShowNotice(Shown(sentence));
}

void MainWindow::QuitWhenEnded() {
  if (!program_.Ended()) return;
  hide();
  QCoreApplication::quit();
}

// The record may ask a question and refuse. The window closes only when the program has ended.
void MainWindow::closeEvent(QCloseEvent* event) {
  binder_.CommitTyped();
  if (!program_.Ended()) form_.Close();
  event->setAccepted(program_.Ended());
  if (program_.flags.CloseRequested) CloseAfterRun();
  QuitWhenEnded();
}

// The run ends in its own handler, which is still on the stack here.
void MainWindow::CloseAfterRun() {
  constexpr int kPollMilliseconds = 50;
  if (program_.Ended()) return;
  if (!program_.flags.Busy) {
    form_.Close();
    return QuitWhenEnded();
  }
  QTimer::singleShot(kPollMilliseconds, this, [this] { CloseAfterRun(); });
}

void MainWindow::dragEnterEvent(QDragEnterEvent* event) {
  if (form_.MenuAddFiles.Enabled() && !PathsOf(*event->mimeData()).empty()) event->acceptProposedAction();
}

// Files are added after this event, since adding may show a box and the program that the files come from waits for the
// event to finish.
void MainWindow::dropEvent(QDropEvent* event) {
  event->acceptProposedAction();
  QTimer::singleShot(0, this, [this, paths = PathsOf(*event->mimeData())] {
    binder_.CommitTyped();
    program_.Intake().MSF_OLEDragDrop(paths);
  });
}

std::string VersionOf(const host::Files& files, const std::string& path) {
  std::ostringstream version;
  if (const auto stamp = StampOf(files, path)) version << *stamp;
  return version.str();
}

QImage ReadPreview(imaging::Services& images, const std::string& path, QSize limit) {
  imaging::Services::Preview preview;
  if (!images.LoadPreview(path, {limit.width(), limit.height()}, preview) || preview.size.Empty()) return {};
  const qsizetype stride = qsizetype{3} * preview.size.width;
  return QImage(preview.rgb.data(), preview.size.width, preview.size.height, stride, QImage::Format_RGB888).copy();
}

}  // namespace quillon::ui
