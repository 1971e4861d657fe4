// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/main/list_view.h"

#include <QHeaderView>
#include <QPainter>
#include <QStyledItemDelegate>

#include "job/windows/file_intake.h"
#include "ui/kit/theme/flat_paint.h"
#include "ui/kit/theme/theme.h"
#include "ui/main/file_list_model.h"

namespace quillon::ui {
namespace {

// Column widths in digits. A column is never narrower than its header.
constexpr int kDigits[] = {9, 4, 9, 5, 5, 7, 7, 4, 10, 6};
constexpr int kPath = 2;
constexpr int kLeastPathDigits = 4;  // if reasons need the width; the user can widen it
constexpr int kPauseMilliseconds = 150;

// Elides a sentence at its end; the view elides paths in the middle.
class SentenceDelegate : public QStyledItemDelegate {
 public:
  using QStyledItemDelegate::QStyledItemDelegate;

 protected:
  void initStyleOption(QStyleOptionViewItem* option, const QModelIndex& index) const override {
    QStyledItemDelegate::initStyleOption(option, index);
    option->textElideMode = Qt::ElideRight;
  }
};

}  // namespace

ListView::ListView(job::Program& program, Binder& binder, QWidget* parent)
    : GridView(program.form1.MSF, parent),
      program_(program),
      foreseen_(program),
      model_(new FileListModel(program.form1.MSF, program.files, foreseen_, this)),
      outcomes_(program, foreseen_),
      thumbnails_([this] { model_->ShowThumbnails(); }) {
  Use(model_);
  outcomes_.Follow(*model_);
  binder.Join(program.form1.MSF, this);
  setAccessibleName(QStringLiteral("文件列表"));
  setFrameShape(QFrame::NoFrame);
  setSelectionMode(QAbstractItemView::ExtendedSelection);
  pause_.setSingleShot(true);
  pause_.setInterval(kPauseMilliseconds);
  connect(&pause_, &QTimer::timeout, this, [this] { PreviewSelected(); });
  setItemDelegateForColumn(model_->ResultColumn(), new SentenceDelegate(this));
  // Beside the name, so that the reasons stay in sight.
  // The rows in sight alone decide how wide a column is, however long the list.
  horizontalHeader()->setResizeContentsPrecision(0);
  horizontalHeader()->moveSection(model_->ResultColumn(), 1);
  SizeColumns();
  // After the columns were sized: with a sort indicator each would be wider.
  horizontalHeader()->setSortIndicator(-1, Qt::AscendingOrder);
  horizontalHeader()->setSortIndicatorClearable(true);
  setSortingEnabled(true);
  connect(model_, &QAbstractItemModel::dataChanged, this,
          [this](const QModelIndex&, const QModelIndex&, const QList<int>& roles) {
            if (!roles.contains(Qt::DecorationRole)) FitColumns();
          });
  connect(model_, &QAbstractItemModel::rowsRemoved, this, [this] { ShowSelection(); });
  program_.form1.MSF.SetViewOrder([this] { return model_->Order(); });
  token_ = program_.form1.Observe([this](controls::Control& control, controls::Aspect aspect) {
    if (&control == &program_.form1.MSF && aspect == controls::Aspect::Value) ShowSelection();
  });
}

ListView::~ListView() {
  program_.form1.MSF.SetViewOrder({});
  program_.form1.Forget(token_);
}

void ListView::OnUserSelection() { pause_.start(); }

// A run shows the pictures that it handles itself. A picture that cannot be read must not leave another one on show.
void ListView::PreviewSelected() {
  const std::size_t row = program_.form1.MSF.Selected();
  if (program_.flags.Busy || row == 0 || row > program_.files.RowCount()) return;
  const job::Preview& preview = program_.fCutPre.preview;
  const std::string path = program_.files.Row(row - 1).Path();
  if (path == preview.Path()) return;
  const int showings = preview.Showings();
  program_.ShowInPreview(path);
  if (preview.Showings() == showings) program_.ShowNoPicture();
}

void ListView::ShowThumbnails(Thumbnails::Reader reader) {
  if (thumbnails_.Shown()) return;
  thumbnails_.Show(std::move(reader));
  setIconSize({Thumbnails::kSide, Thumbnails::kSide});
  verticalHeader()->setDefaultSectionSize(Thumbnails::kSide + kGap);
  setColumnWidth(0, columnWidth(0) + Thumbnails::kSide + kGap);
  model_->SetThumbnails(&thumbnails_);
  FitColumns();
}

void ListView::HideThumbnails() {
  if (!thumbnails_.Shown()) return;
  model_->SetThumbnails(nullptr);
  thumbnails_.Hide();
  verticalHeader()->setDefaultSectionSize(fontMetrics().height() + kGap);
  setColumnWidth(0, columnWidth(0) - Thumbnails::kSide - kGap);
  FitColumns();
}

void ListView::RenewThumbnails() {
  if (!thumbnails_.Shown()) return;
  thumbnails_.Forget();
  model_->ShowThumbnails();
}

void ListView::SortBy(int column) {
  const QHeaderView& headers = *horizontalHeader();
  const bool again = column >= 0 && headers.sortIndicatorSection() == column;
  const bool turned = again && headers.sortIndicatorOrder() == Qt::AscendingOrder;
  sortByColumn(column, turned ? Qt::DescendingOrder : Qt::AscendingOrder);
}

void ListView::KeepOrder() {
  if (!model_->IsSorted()) return;
  model_->Flush();
  const std::vector<std::size_t> order = model_->Order();
  sortByColumn(-1, Qt::AscendingOrder);
  program_.Intake().ReorderList(order);
}

void ListView::SetOutcomeReceiver(OutcomeWatch::OnCounted counted) {
  outcomes_.SetReceivers([this] { model_->ShowOutcomes(); }, std::move(counted));
}

void ListView::SizeColumns() {
  const int digit = fontMetrics().horizontalAdvance(u'0');
  for (int column = 0; column < model_->columnCount(); ++column) {
    const int wanted = column < static_cast<int>(std::size(kDigits)) ? kDigits[column] * digit : 0;
    setColumnWidth(column, qMax(wanted + kGap, horizontalHeader()->sectionSizeHint(column)));
  }
  minResultWidth_ = columnWidth(model_->ResultColumn());
}

// The folder column gets the free width. The result column grows to show reasons, up to a third of the view, even if
// columns at the right are then out of sight.
void ListView::FitColumns() {
  const int result = model_->ResultColumn();
  int room = viewport()->width();
  for (int column = 0; column < result; ++column) room -= column == kPath ? 0 : columnWidth(column);
  const int least = kLeastPathDigits * fontMetrics().horizontalAdvance(u'0') + kGap;
  const int reasons = qMin(sizeHintForColumn(result), viewport()->width() / 3);
  setColumnWidth(result, qMax(minResultWidth_, reasons));
  setColumnWidth(kPath, qMax(least, room - columnWidth(result)));
}

void ListView::resizeEvent(QResizeEvent* event) {
  GridView::resizeEvent(event);
  FitColumns();
}

void ListView::paintEvent(QPaintEvent* event) {
  GridView::paintEvent(event);
  if (model_->rowCount() > 0) return;
  QPainter painter(viewport());
  PaintDropHint(painter, *viewport(), QStringLiteral("也可以从“文件”菜单添加；选中一行即可预览"));
}

}  // namespace quillon::ui
