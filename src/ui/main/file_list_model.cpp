// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/main/file_list_model.h"

#include <QApplication>
#include <cstdint>
#include <optional>
#include <tuple>
#include <utility>
#include <vector>

#include "base/path_text.h"
#include "ui/kit/text.h"
#include "ui/kit/theme/theme.h"
#include "ui/main/thumbnails.h"

namespace quillon::ui {
namespace {

constexpr int kFirstNumber = 3;  // columns from here on hold numbers: width, height, sizes, resolution
constexpr double kMillimetres = 25.4;

bool NotWritten(const job::FileRow& row) { return row.result != job::Result::Written; }
bool Done(const job::FileRow& row) { return row.result == job::Result::Written && row.newBytes > 0; }

QString ResultText(const job::FileRow& row) {
  if (Done(row)) return QStringLiteral("✓");
  if (!NotWritten(row)) return {};
  const QString mark = row.result == job::Result::Skipped ? QStringLiteral("– ") : QStringLiteral("✗ ");
  return mark + Shown(row.why);
}

// Returns the pixels of the finished file; 0 if there is none, or if it is not known.
std::int64_t PixelsOf(const std::optional<job::CutOutcome>& outcome) {
  return outcome ? std::int64_t{outcome->size.width} * outcome->size.height : 0;
}

QString ShownSize(base::Size size) { return QStringLiteral("%1×%2").arg(size.width).arg(size.height); }

}  // namespace

int FileListModel::columnCount(const QModelIndex& parent) const {
  return parent.isValid() ? 0 : GridModel::columnCount() + 2;
}

QVariant FileListModel::headerData(int section, Qt::Orientation orientation, int role) const {
  if (role == Qt::TextAlignmentRole && orientation == Qt::Horizontal && section >= kFirstNumber) {
    return section < ResultColumn() ? QVariant(Qt::AlignRight | Qt::AlignVCenter) : QVariant();
  }
  if (role == Qt::DisplayRole && orientation == Qt::Horizontal && section == ResultColumn()) {
    return QStringLiteral("结果");
  }
  if (role == Qt::DisplayRole && orientation == Qt::Horizontal && section == OutcomeColumn()) {
    return QStringLiteral("将裁出");
  }
  const QVariant words = GridModel::headerData(section, orientation, role);
  return role == Qt::DisplayRole ? QVariant(words.toString().trimmed()) : words;
}

void FileListModel::SetThumbnails(Thumbnails* thumbnails) {
  thumbnails_ = thumbnails;
  ShowThumbnails();
}

void FileListModel::ShowThumbnails() {
  if (rowCount() > 0) emit dataChanged(index(0, 0), index(rowCount() - 1, 0), {Qt::DecorationRole});
}

// Names in natural order, numbers by their values, sizes by their pixels; results by kind and then by reason.
GridModel::RowOrder FileListModel::OrderOf(int column) const {
  if (column != OutcomeColumn()) {
    return [this, column](std::size_t row, std::size_t other) {
      return Precedes(files_.Row(row), files_.Row(other), column);
    };
  }
  std::vector<std::int64_t> pixels(files_.RowCount());
  for (std::size_t row = 0; row < pixels.size(); ++row) pixels[row] = PixelsOf(foreseen_.Of(row));
  return [pixels = std::move(pixels)](std::size_t row, std::size_t other) { return pixels[row] < pixels[other]; };
}

bool FileListModel::Precedes(const job::FileRow& a, const job::FileRow& b, int column) const {
  if (column == ResultColumn()) return std::tie(a.result, a.why) < std::tie(b.result, b.why);
  switch (column) {
    case 0:
      return base::NaturalLess(a.name, b.name);
    case 1:
      return base::NaturalLess(a.extension, b.extension);
    case 2:
      return base::NaturalLess(*a.folder, *b.folder);
    case 3:
      return a.width < b.width;
    case 4:
      return a.height < b.height;
    case 5:
      return a.bytes < b.bytes;
    case 6:
      return std::pair(a.newBytes, a.pages) < std::pair(b.newBytes, b.pages);
    case 7:
      return a.dpi < b.dpi;
    default:
      return false;
  }
}

QVariant FileListModel::data(const QModelIndex& index, int role) const {
  const std::optional<std::size_t> at = SourceRow(index);
  if (!at || *at >= files_.RowCount()) return {};
  const job::FileRow& row = files_.Row(*at);
  const bool result = index.column() == ResultColumn();
  if (index.column() == OutcomeColumn()) return OutcomeData(*at, role);
  switch (role) {
    case Qt::DisplayRole:
      return result ? QVariant(ResultText(row)) : GridModel::data(index, role);
    case Qt::DecorationRole:
      if (!thumbnails_ || index.column() != 0) return {};
      return thumbnails_->Of(row.Path());
    case Qt::ToolTipRole:
      return NotWritten(row) ? Shown(row.why) : Shown(row.Path());
    case Qt::ForegroundRole:
      if (NotWritten(row)) return WarningInk(QApplication::palette());
      return result ? QVariant(GoodInk(QApplication::palette())) : QVariant();
    case Qt::TextAlignmentRole:
      if (result || index.column() < kFirstNumber) return {};
      return QVariant(Qt::AlignRight | Qt::AlignVCenter);
    default:
      return {};
  }
}

QVariant FileListModel::OutcomeData(std::size_t row, int role) const {
  if (role == Qt::TextAlignmentRole) return QVariant(Qt::AlignRight | Qt::AlignVCenter);
  if (role != Qt::DisplayRole && role != Qt::ToolTipRole && role != Qt::ForegroundRole) return {};
  const std::optional<job::CutOutcome> outcome = foreseen_.Of(row);
  if (!outcome) {
    const bool byHand = foreseen_.DecidedBy() == job::ForeseenList::By::Hand;
    if (role == Qt::ForegroundRole || !byHand) return {};
    return role == Qt::DisplayRole ? QStringLiteral("手动") : QStringLiteral("手动裁剪时由裁剪框决定");
  }
  if (role == Qt::DisplayRole) return OutcomeText(*outcome);
  if (role == Qt::ToolTipRole) return OutcomeTip(*outcome);
  return outcome->why.empty() ? QVariant() : QVariant(DangerInk(QApplication::palette()));
}

void FileListModel::ShowOutcomes() {
  if (rowCount() == 0) return;
  emit dataChanged(index(0, OutcomeColumn()), index(rowCount() - 1, OutcomeColumn()));
  if (SortColumn() == OutcomeColumn()) SortSoon();
}

QString OutcomeText(const job::CutOutcome& outcome) {
  if (!outcome.why.empty()) return QStringLiteral("裁不出图");
  const QString size = ShownSize(outcome.size);
  return outcome.pieces > 1 ? QStringLiteral("%1 张 %2").arg(outcome.pieces).arg(size) : size;
}

QString OutcomeTip(const job::CutOutcome& outcome) {
  if (!outcome.why.empty()) return Shown(outcome.why);
  const QString pixels = QStringLiteral("%1 × %2 像素").arg(outcome.size.width).arg(outcome.size.height);
  if (outcome.dpi <= 0) return pixels;
  const auto mm = [&outcome](int side) { return QString::number(side * kMillimetres / outcome.dpi, 'f', 1); };
  return pixels + QStringLiteral("，%1 × %2 毫米（%3 DPI）")
                      .arg(mm(outcome.size.width), mm(outcome.size.height))
                      .arg(outcome.dpi);
}

}  // namespace quillon::ui
