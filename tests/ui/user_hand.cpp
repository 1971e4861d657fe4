// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/user_hand.h"

#include <gtest/gtest.h>

#include <QAbstractSlider>
#include <QColorDialog>
#include <QLabel>
#include <QMessageBox>
#include <QPushButton>
#include <QTimer>
#include <algorithm>

#include "base/number_text.h"
#include "ui/kit/bind/number_edit.h"

namespace quillon::ui {
namespace {

std::string OtherNumber(const controls::TextBox& box) {
  for (const int candidate : {7, 50, 3, 1}) {
    const controls::Limits& limits = box.GetLimits();
    if ((limits.min && candidate < *limits.min) || (limits.max && candidate > *limits.max)) continue;
    if (base::NumberText(candidate) != box.Value()) return base::NumberText(candidate);
  }
  return {};
}

void TypeOver(QWidget* widget, const std::string& text) {
  widget->setFocus();
  QTest::keyClick(widget, Qt::Key_A, Qt::ControlModifier);
  QTest::keyClick(widget, Qt::Key_Delete);
  QTest::keyClicks(widget, QString::fromStdString(text));
  QTest::keyClick(widget, Qt::Key_Return);
}

void Choose(QComboBox* list, const QString& text) {
  list->setFocus();
  const int index = list->findText(text);
  const int step = index > list->currentIndex() ? 1 : -1;
  // With the keyboard every entry on the way would be chosen, so the entry is clicked.
  list->setCurrentIndex(index - step);
  QTest::keyClick(list, step > 0 ? Qt::Key_Down : Qt::Key_Up);
}

void PickColour(QPushButton* button, const QColor& colour) {
  QTimer::singleShot(0, button, [colour] {
    auto* dialog = dynamic_cast<QColorDialog*>(QApplication::activeModalWidget());
    ASSERT_NE(dialog, nullptr);
    dialog->setCurrentColor(colour);
    dialog->accept();
  });
  button->click();
}

}  // namespace

std::string OtherText(const controls::Control& control, const std::string& folder) {
  switch (control.GetKind()) {
    case controls::Kind::CheckBox:
    case controls::Kind::Option:
      return control.Value() == "1" ? "0" : "1";
    case controls::Kind::TextBox:
      return OtherNumber(static_cast<const controls::TextBox&>(control));
    case controls::Kind::ComboBox: {
      const auto& list = static_cast<const controls::ComboBox&>(control);
      if (list.IsEditable()) return "75%";
      const int count = static_cast<int>(list.Items().size());
      return count < 2 ? std::string() : list.Items()[static_cast<std::size_t>((list.Index() + 1) % count)];
    }
    case controls::Kind::ColourBox:
      return "#336699";
    case controls::Kind::Slider: {
      const auto& slider = static_cast<const controls::Slider&>(control);
      if (slider.Min() == slider.Max()) return {};
      return std::to_string(slider.Position() < slider.Max() ? slider.Position() + 1 : slider.Position() - 1);
    }
    case controls::Kind::Label:
      return static_cast<const controls::Label&>(control).IsEditable() ? folder : std::string();
    default:
      return {};
  }
}

void Put(UiWorld& ui, controls::Control& control, const std::string& text) {
  if (auto* number = ui.Find<NumberEdit>(control)) {
    TypeOver(number, text);
  } else if (auto* list = ui.Find<QComboBox>(control)) {
    if (list->isEditable()) {
      TypeOver(list->lineEdit(), text);
    } else {
      Choose(list, QString::fromStdString(text));
    }
  } else if (auto* slider = ui.Find<QAbstractSlider>(control)) {
    slider->setValue(std::stoi(text));
  } else if (auto* line = ui.Find<QLineEdit>(control)) {
    TypeOver(line, text);
  } else if (control.GetKind() == controls::Kind::ColourBox) {
    PickColour(ui.Find<QPushButton>(control), QColor(QString::fromStdString(text)));
  } else if (auto* button = ui.Find<QAbstractButton>(control)) {
    button->click();
  } else {
    ADD_FAILURE() << control.FullName() << " has no widget that takes a value";
  }
  UiWorld::Turn();
}

std::string ShownValue(UiWorld& ui, const controls::Control& control) {
  if (auto* number = ui.Find<NumberEdit>(control)) return number->Text().toStdString();
  if (auto* list = ui.Find<QComboBox>(control)) {
    return list->isEditable() ? list->currentText().toStdString() : std::to_string(list->currentIndex());
  }
  if (auto* slider = ui.Find<QAbstractSlider>(control)) return std::to_string(slider->value());
  if (auto* line = ui.Find<QLineEdit>(control)) return line->text().toStdString();
  if (auto* button = ui.Find<QAbstractButton>(control)) {
    if (control.GetKind() != controls::Kind::ColourBox) return button->isChecked() ? "1" : "0";
    const QColor colour(button->text());
    return std::to_string(colour.red() | (colour.green() << 8) | (colour.blue() << 16));
  }
  if (auto* label = ui.Find<QLabel>(control)) return label->text().toStdString();
  ADD_FAILURE() << control.FullName() << " has no widget that shows a value";
  return {};
}

void AnswerNextBox(const QString& button) {
  QTimer::singleShot(0, qApp, [button] {
    auto* box = dynamic_cast<QMessageBox*>(QApplication::activeModalWidget());
    ASSERT_NE(box, nullptr);
    const QList<QAbstractButton*> all = box->buttons();
    const auto found =
        std::find_if(all.begin(), all.end(), [&button](const auto* one) { return one->text() == button; });
    ASSERT_NE(found, all.end());
    (*found)->click();
  });
}

}  // namespace quillon::ui
