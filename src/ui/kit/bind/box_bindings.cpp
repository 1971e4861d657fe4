// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/kit/bind/box_bindings.h"

#include <QAbstractItemView>
#include <QColorDialog>
#include <QComboBox>
#include <QLineEdit>
#include <QMimeData>
#include <QPainter>
#include <QPushButton>
#include <QSignalBlocker>
#include <QStyleOptionComboBox>
#include <QWheelEvent>

#include "ui/kit/bind/binding.h"
#include "ui/kit/bind/number_edit.h"
#include "ui/kit/text.h"
#include "ui/kit/theme/theme.h"

namespace quillon::ui {
namespace {

// A number box. The record parses the text and applies the limits.
class NumberBinding : public Binding {
 public:
  NumberBinding(controls::TextBox& box, Binder& binder, NumberEdit* edit)
      : Binding(box, binder, edit), box_(box), edit_(edit) {
    connect(edit, &QAbstractSpinBox::editingFinished, this, [this] { CommitTyped(); });
    edit->SetStepHandler([this](const QString& text) { Edit(Bytes(text)); });
  }

  void ShowValue() override { edit_->SetText(Shown(box_.Text())); }
  void ShowAppearance() override {
    ShowCommon(box_, *edit_);
    edit_->SetLimits(box_.GetLimits());
  }
  void CommitTyped() override {
    if (edit_->HasUnsentText()) Edit(Bytes(edit_->Text()));
  }

 private:
  controls::TextBox& box_;
  NumberEdit* edit_;
};

// A line of free text: a text box, or a label that shows a folder.
class LineBinding : public Binding {
 public:
  LineBinding(controls::Control& control, Binder& binder, QLineEdit* line)
      : Binding(control, binder, line), line_(line) {
    connect(line, &QLineEdit::editingFinished, this, [this] { CommitTyped(); });
  }

  void ShowValue() override {
    const QString text = Shown(Control().Value());
    if (line_->text() != text) line_->setText(text);
    line_->setModified(false);
  }
  void ShowAppearance() override {
    ShowCommon(Control(), *line_);
    if (Control().GetKind() != controls::Kind::Label) return;
    ShowValue();
    line_->setToolTip(line_->text());
  }
  void CommitTyped() override {
    if (line_->isModified()) Edit(Bytes(line_->text()));
  }
  void Put(const std::string& path) { Edit(path); }

 private:
  QLineEdit* line_;
};

// A combo box whose width does not depend on its entries and whose popup is as wide as they are.
class ListBox : public QComboBox {
 public:
  // Shows words after the chosen entry.
  void SetNote(const QString& note) {
    note_ = note;
    update();
  }

  ListBox() {
    setFocusPolicy(Qt::StrongFocus);
    setSizeAdjustPolicy(QComboBox::AdjustToMinimumContentsLengthWithIcon);
    setMinimumContentsLength(6);
    setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Fixed);
    setMaxVisibleItems(20);
  }

  void showPopup() override {
    view()->setMinimumWidth(view()->sizeHintForColumn(0) + 3 * fontMetrics().averageCharWidth());
    QComboBox::showPopup();
  }

 protected:
  // A wheel that scrolls the panel must not change the entry that it passes over.
  void wheelEvent(QWheelEvent* event) override {
    if (hasFocus()) {
      QComboBox::wheelEvent(event);
    } else {
      event->ignore();
    }
  }
  void initStyleOption(QStyleOptionComboBox* option) const override {
    QComboBox::initStyleOption(option);
    option->currentText += note_;
  }

 private:
  QString note_;
};

// A combo box. Its entries are replaced only if the record has changed them.
class ListBinding : public Binding {
 public:
  ListBinding(controls::ComboBox& box, Binder& binder, ListBox* list)
      : Binding(box, binder, list), box_(box), list_(list) {
    connect(list, &QComboBox::activated, this, [this](int index) { Edit(Bytes(list_->itemText(index))); });
    if (box.IsEditable()) {
      connect(list->lineEdit(), &QLineEdit::editingFinished, this, [this] { CommitTyped(); });
    }
  }

  void ShowValue() override {
    const QSignalBlocker quiet(list_);
    list_->setCurrentIndex(box_.Index());
    if (!box_.IsEditable()) return;
    list_->setEditText(Shown(box_.Text()));
    list_->lineEdit()->setModified(false);
  }

  void ShowAppearance() override {
    ShowCommon(box_, *list_);
    list_->SetNote(Shown(box_.Note()));
    QStringList items;
    for (const std::string& item : box_.Items()) items << Shown(item);
    if (items == shown_) return;
    shown_ = items;
    const QSignalBlocker quiet(list_);
    list_->clear();
    list_->addItems(items);
    ShowValue();
  }

  void CommitTyped() override {
    if (box_.IsEditable() && list_->lineEdit()->isModified()) Edit(Bytes(list_->currentText()));
  }

 private:
  controls::ComboBox& box_;
  ListBox* list_;
  QStringList shown_;
};

// A colour button.
class ColourBinding : public Binding {
 public:
  ColourBinding(controls::ColourBox& box, Binder& binder, QPushButton* button)
      : Binding(box, binder, button), box_(box), button_(button) {
    connect(button, &QPushButton::clicked, this, [this] { Pick(); });
  }

  void ShowValue() override {
    // A transparent margin on the right keeps the swatch away from the text.
    constexpr QSize kSwatch(32, 16);
    const QSize whole = kSwatch + QSize(kGap / 2, 0);
    QPixmap icon(whole * button_->devicePixelRatioF());
    icon.setDevicePixelRatio(button_->devicePixelRatioF());
    icon.fill(Qt::transparent);
    QPainter painter(&icon);
    painter.setPen(button_->palette().color(QPalette::Mid));
    painter.setBrush(Colour());
    painter.drawRect(QRectF(QPointF(), kSwatch).adjusted(0.5, 0.5, -0.5, -0.5));
    painter.end();
    button_->setIconSize(whole);
    button_->setIcon(icon);
    button_->setText(Colour().name().toUpper());
  }

  void ShowAppearance() override {
    ShowCommon(box_, *button_);
    button_->setAccessibleName(Shown(box_.Caption()));
  }

 private:
  QColor Colour() const { return {box_.Colour().Red(), box_.Colour().Green(), box_.Colour().Blue()}; }

  void Pick() {
    const QPointer<QObject> alive(this);
    const QColor colour =
        QColorDialog::getColor(Colour(), button_, Shown(box_.Caption()), QColorDialog::DontUseNativeDialog);
    if (alive && colour.isValid()) Edit(Bytes(colour.name()));
  }

  controls::ColourBox& box_;
  QPushButton* button_;
};

// A line onto which a folder can be dropped.
class PathLine : public QLineEdit {
 public:
  void SetDropHandler(std::function<void(const std::string&)> handler) { onDrop_ = std::move(handler); }

 protected:
  // The text may be the note that no folder is chosen. Selecting it lets a typed path replace it.
  void focusInEvent(QFocusEvent* event) override {
    QLineEdit::focusInEvent(event);
    QMetaObject::invokeMethod(this, &QLineEdit::selectAll, Qt::QueuedConnection);
  }
  void dragEnterEvent(QDragEnterEvent* event) override {
    if (PathsOf(*event->mimeData()).empty()) {
      QLineEdit::dragEnterEvent(event);
    } else {
      event->acceptProposedAction();
    }
  }
  void dropEvent(QDropEvent* event) override {
    const std::vector<std::string> paths = PathsOf(*event->mimeData());
    if (paths.empty()) {
      QLineEdit::dropEvent(event);
    } else {
      event->acceptProposedAction();
      if (onDrop_) onDrop_(paths.front());
    }
  }

 private:
  std::function<void(const std::string&)> onDrop_;
};

}  // namespace

QWidget* MakeTextBox(controls::TextBox& box, Binder& binder) {
  if (box.GetContent() == controls::Content::Any) {
    auto* line = new QLineEdit;
    binder.Attach(new LineBinding(box, binder, line));
    return line;
  }
  auto* edit = new NumberEdit;
  binder.Attach(new NumberBinding(box, binder, edit));
  return edit;
}

QWidget* MakeComboBox(controls::ComboBox& box, Binder& binder) {
  auto* list = new ListBox;
  list->setEditable(box.IsEditable());
  if (box.IsEditable()) {
    list->setInsertPolicy(QComboBox::NoInsert);
    list->setCompleter(nullptr);
  }
  binder.Attach(new ListBinding(box, binder, list));
  return list;
}

QWidget* MakeColourBox(controls::ColourBox& box, Binder& binder) {
  auto* button = new QPushButton;
  button->setAutoDefault(false);  // Enter in another field must not open the dialog
  binder.Attach(new ColourBinding(box, binder, button));
  return button;
}

QWidget* MakePathBox(controls::Label& label, Binder& binder) {
  auto* line = new PathLine;
  auto* binding = new LineBinding(label, binder, line);
  line->SetDropHandler([binding](const std::string& path) { binding->Put(path); });
  binder.Attach(binding);
  return line;
}

}  // namespace quillon::ui
