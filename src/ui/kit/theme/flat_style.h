// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QProxyStyle>

namespace quillon::ui {

// Draws controls with the palettes of the program: flat, with outlines that are visible on light and dark backgrounds.
// What is not overridden here is drawn by Fusion.
class FlatStyle : public QProxyStyle {
 public:
  FlatStyle();

  int pixelMetric(PixelMetric metric, const QStyleOption* option, const QWidget* widget) const override;
  void drawPrimitive(PrimitiveElement element, const QStyleOption* option, QPainter* painter,
                     const QWidget* widget) const override;
  void drawControl(ControlElement element, const QStyleOption* option, QPainter* painter,
                   const QWidget* widget) const override;
  void drawComplexControl(ComplexControl control, const QStyleOptionComplex* option, QPainter* painter,
                          const QWidget* widget) const override;
  int styleHint(StyleHint hint, const QStyleOption* option, const QWidget* widget,
                QStyleHintReturn* data) const override;

 private:
  // Parts of drawComplexControl.
  void DrawSpinBox(const QStyleOptionComplex* option, QPainter* painter, const QWidget* widget) const;
  void DrawComboBox(const QStyleOptionComplex* option, QPainter* painter, const QWidget* widget) const;
  void DrawScrollBar(const QStyleOptionComplex* option, QPainter* painter, const QWidget* widget) const;
};

}  // namespace quillon::ui
