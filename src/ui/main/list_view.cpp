// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/main/list_view.h"

#include <QHeaderView>
#include <QPainter>

#include "ui/main/file_list_model.h"
#include "ui/main/hint.h"
#include "ui/theme/metrics.h"

namespace quillon::ui {
namespace {

// Widths of the columns in digits; a column is never narrower than its header.
constexpr int kDigits[] = {16, 4, 14, 6, 6, 8, 8, 4, 6};

constexpr int kPath = 2;  // takes what room there is

}  // namespace

ListView::ListView(job::Program& program, Binder& binder, QWidget* parent)
    : GridView(program.form1.MSF, parent),
      program_(program),
      model_(new FileListModel(program.form1.MSF, program.files, this)) {
  Use(model_);
  binder.Join(program.form1.MSF, this);
  setAccessibleName(QStringLiteral("文件列表"));
  setFrameShape(QFrame::NoFrame);
  SizeColumns();
  connect(model_, &QAbstractItemModel::rowsRemoved, this, [this] { ShowSelection(); });
  token_ = program_.form1.Observe([this](controls::Control& control, controls::Aspect aspect) {
    if (&control == &program_.form1.MSF && aspect == controls::Aspect::Value) ShowSelection();
  });
}

ListView::~ListView() { program_.form1.Forget(token_); }

void ListView::SizeColumns() {
  const int digit = fontMetrics().horizontalAdvance(u'0');
  for (int column = 0; column < model_->columnCount(); ++column) {
    const int wanted = column < static_cast<int>(std::size(kDigits)) ? kDigits[column] * digit : 0;
    setColumnWidth(column, qMax(wanted + kGap, horizontalHeader()->sectionSizeHint(column)));
  }
  horizontalHeader()->setMinimumSectionSize(5 * kGap);
  horizontalHeader()->setSectionResizeMode(kPath, QHeaderView::Stretch);
}

void ListView::paintEvent(QPaintEvent* event) {
  GridView::paintEvent(event);
  if (model_->rowCount() > 0) return;
  QPainter painter(viewport());
  PaintDropHint(painter, *viewport(), QStringLiteral("也可以从“文件”菜单添加；双击一行即可预览"));
}

}  // namespace quillon::ui
