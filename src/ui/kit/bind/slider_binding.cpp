// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/kit/bind/slider_binding.h"

#include <QAbstractSlider>
#include <QSignalBlocker>

#include "ui/kit/bind/binding.h"
#include "ui/kit/text.h"

namespace quillon::ui {
namespace {

class SliderBinding : public Binding {
 public:
  SliderBinding(controls::Slider& slider, Binder& binder, QAbstractSlider* widget)
      : Binding(slider, binder, widget), slider_(slider), widget_(widget) {
    connect(widget, &QAbstractSlider::valueChanged, this, [this](int value) { Edit(std::to_string(value)); });
  }

  void ShowValue() override {
    const QSignalBlocker quiet(widget_);
    widget_->setValue(slider_.Position());
  }

  void ShowLook() override {
    const QSignalBlocker quiet(widget_);
    ShowCommon(slider_, *widget_);
    widget_->setRange(slider_.Min(), slider_.Max());
    widget_->setAccessibleName(Shown(slider_.Caption()));
  }

 private:
  controls::Slider& slider_;
  QAbstractSlider* widget_;
};

}  // namespace

void JoinSlider(controls::Slider& slider, Binder& binder, QAbstractSlider* widget) {
  widget->setObjectName(Shown(slider.Name()));
  binder.Attach(new SliderBinding(slider, binder, widget));
}

}  // namespace quillon::ui
