// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/kit/theme/flat_style.h"

#include <QPainter>
#include <QStyleFactory>
#include <QStyleOption>

#include "ui/kit/theme/flat_paint.h"
#include "ui/kit/theme/theme.h"

// Colours are mixed from those of the palette, never named, so that the same code draws both palettes. Disabled parts
// are painted with the Disabled group; all others with the Active group, so that a window in the background keeps its
// colours.
namespace quillon::ui {
namespace {

constexpr int kScrollBar = 12;
// A list of a million rows must not shrink the handle to a line.
constexpr int kShortestHandle = 32;

bool Has(const QStyleOption* option, QStyle::StateFlag flag) { return option->state & flag; }

QColor FieldFill(const QStyleOption& option) {
  return option.palette.color(Has(&option, QStyle::State_Enabled) ? QPalette::Active : QPalette::Disabled,
                              QPalette::Base);
}

QColor ArrowInk(const QStyleOption& option, bool enabled) {
  return option.palette.color(enabled ? QPalette::Active : QPalette::Disabled, QPalette::Text);
}

void DrawCheckBox(const QStyleOption* option, QPainter* painter) {
  const bool on = Has(option, QStyle::State_On);
  const bool enabled = Has(option, QStyle::State_Enabled);
  QColor fill = FieldFill(*option);
  QColor outline = OutlineInk(*option);
  QColor ink = option->palette.color(QPalette::Active, QPalette::HighlightedText);
  if (on && enabled) {
    fill = option->palette.color(QPalette::Active, QPalette::Highlight);
    if (!Has(option, QStyle::State_HasFocus)) outline = fill;
  } else if (on) {
    ink = option->palette.color(QPalette::Disabled, QPalette::Text);
  }
  PaintBox(*painter, option->rect, fill, outline, 3);
  if (on) PaintTick(*painter, option->rect, ink);
}

void DrawPushButton(const QStyleOption* option, QPainter* painter) {
  const QColor text = option->palette.color(QPalette::Active, QPalette::ButtonText);
  QColor fill = option->palette.color(QPalette::Active, QPalette::Button);
  const auto* button = qstyleoption_cast<const QStyleOptionButton*>(option);
  // The default button is marked by its outline.
  const bool lead = button && (button->features & QStyleOptionButton::DefaultButton);
  if (Has(option, QStyle::State_Sunken)) {
    fill = Blend(fill, text, 0.14);
  } else if (Has(option, QStyle::State_MouseOver) && Has(option, QStyle::State_Enabled)) {
    fill = Blend(fill, text, 0.06);
  }
  const QColor outline = lead ? option->palette.color(QPalette::Active, QPalette::Highlight) : OutlineInk(*option);
  PaintBox(*painter, option->rect, fill, outline);
}

// A tool button is flat unless it is pressed, checked or under the pointer.
void DrawToolButton(const QStyleOption* option, QPainter* painter) {
  if (!Has(option, QStyle::State_Enabled)) return;
  const bool down = Has(option, QStyle::State_Sunken) || Has(option, QStyle::State_On);
  if (!down && !Has(option, QStyle::State_MouseOver)) return;
  const QColor window = option->palette.color(QPalette::Active, QPalette::Window);
  const QColor text = option->palette.color(QPalette::Active, QPalette::WindowText);
  PaintBox(*painter, option->rect, Blend(window, text, down ? 0.16 : 0.08), {});
}

void DrawHeader(const QStyleOption* option, QPainter* painter) {
  const QColor window = option->palette.color(QPalette::Active, QPalette::Window);
  const QColor line = Blend(window, option->palette.color(QPalette::Active, QPalette::WindowText), 0.14);
  painter->fillRect(option->rect, window);
  painter->fillRect(QRect(option->rect.left(), option->rect.bottom(), option->rect.width(), 1), line);
  painter->fillRect(QRect(option->rect.right(), option->rect.top() + 5, 1, option->rect.height() - 10), line);
}

void DrawMenuBarItem(const QStyleOption* option, QPainter* painter, const QStyle& style) {
  const auto* item = qstyleoption_cast<const QStyleOptionMenuItem*>(option);
  if (!item) return;
  const QColor window = option->palette.color(QPalette::Active, QPalette::Window);
  const QColor text = option->palette.color(QPalette::Active, QPalette::WindowText);
  painter->fillRect(option->rect, window);
  const bool chosen = Has(option, QStyle::State_Selected) && Has(option, QStyle::State_Enabled);
  if (chosen) PaintBox(*painter, option->rect, Blend(window, text, 0.1), {});
  style.drawItemText(painter, option->rect, Qt::AlignCenter | Qt::TextShowMnemonic | Qt::TextSingleLine,
                     option->palette, Has(option, QStyle::State_Enabled), item->text, QPalette::WindowText);
}

void DrawProgressGroove(const QStyleOption* option, QPainter* painter) {
  const QColor window = option->palette.color(QPalette::Active, QPalette::Window);
  PaintBox(*painter, option->rect, Blend(window, option->palette.color(QPalette::Active, QPalette::WindowText), 0.12),
           {});
}

}  // namespace

FlatStyle::FlatStyle() : QProxyStyle(QStyleFactory::create(QStringLiteral("Fusion"))) {
  setObjectName(QStringLiteral("flat"));
}

int FlatStyle::pixelMetric(PixelMetric metric, const QStyleOption* option, const QWidget* widget) const {
  switch (metric) {
    case PM_ScrollBarExtent:
      return kScrollBar;
    case PM_ScrollBarSliderMin:
      return kShortestHandle;
    case PM_IndicatorWidth:
    case PM_IndicatorHeight:
      return 16;
    case PM_FocusFrameHMargin:
      return 5;
    case PM_HeaderMargin:
      return 6;
    case PM_ToolBarItemMargin:
      return 4;
    default:
      return QProxyStyle::pixelMetric(metric, option, widget);
  }
}

int FlatStyle::styleHint(StyleHint hint, const QStyleOption* option, const QWidget* widget,
                         QStyleHintReturn* data) const {
  // Fusion opens the list of a combo box over it; below it is what users of other programs expect.
  if (hint == SH_ComboBox_Popup) return 0;
  return QProxyStyle::styleHint(hint, option, widget, data);
}

void FlatStyle::drawPrimitive(PrimitiveElement element, const QStyleOption* option, QPainter* painter,
                              const QWidget* widget) const {
  switch (element) {
    case PE_IndicatorCheckBox:
      return DrawCheckBox(option, painter);
    case PE_PanelLineEdit:
      if (const auto* frame = qstyleoption_cast<const QStyleOptionFrame*>(option); frame && frame->lineWidth > 0) {
        PaintBox(*painter, option->rect, FieldFill(*option), OutlineInk(*option));
      }
      return;
    // PE_PanelLineEdit has painted the frame already.
    case PE_FrameLineEdit:
      return;
    case PE_PanelButtonCommand:
      return DrawPushButton(option, painter);
    case PE_PanelButtonTool:
      return DrawToolButton(option, painter);
    case PE_IndicatorDockWidgetResizeHandle:
    case PE_PanelStatusBar:
    case PE_FrameStatusBarItem:
      return;
    default:
      QProxyStyle::drawPrimitive(element, option, painter, widget);
  }
}

void FlatStyle::drawControl(ControlElement element, const QStyleOption* option, QPainter* painter,
                            const QWidget* widget) const {
  switch (element) {
    case CE_HeaderSection:
    case CE_HeaderEmptyArea:
      return DrawHeader(option, painter);
    case CE_MenuBarItem:
      return DrawMenuBarItem(option, painter, *proxy());
    case CE_ProgressBarGroove:
      return DrawProgressGroove(option, painter);
    case CE_ToolBar:
    case CE_MenuBarEmptyArea: {
      painter->fillRect(option->rect, option->palette.color(QPalette::Window));
      if (element == CE_MenuBarEmptyArea) return;
      const QColor line =
          Blend(option->palette.color(QPalette::Window), option->palette.color(QPalette::WindowText), 0.14);
      painter->fillRect(QRect(option->rect.left(), option->rect.bottom(), option->rect.width(), 1), line);
      return;
    }
    default:
      QProxyStyle::drawControl(element, option, painter, widget);
  }
}

void FlatStyle::drawComplexControl(ComplexControl control, const QStyleOptionComplex* option, QPainter* painter,
                                   const QWidget* widget) const {
  switch (control) {
    case CC_SpinBox:
      return DrawSpinBox(option, painter, widget);
    case CC_ComboBox:
      return DrawComboBox(option, painter, widget);
    case CC_ScrollBar:
      return DrawScrollBar(option, painter, widget);
    default:
      QProxyStyle::drawComplexControl(control, option, painter, widget);
  }
}

void FlatStyle::DrawSpinBox(const QStyleOptionComplex* option, QPainter* painter, const QWidget* widget) const {
  const auto* spin = qstyleoption_cast<const QStyleOptionSpinBox*>(option);
  if (!spin) return;
  PaintBox(*painter, option->rect, FieldFill(*option), OutlineInk(*option));
  for (const bool up : {true, false}) {
    const QRect area = subControlRect(CC_SpinBox, option, up ? SC_SpinBoxUp : SC_SpinBoxDown, widget);
    const bool able = Has(option, State_Enabled) &&
                      (spin->stepEnabled & (up ? QAbstractSpinBox::StepUpEnabled : QAbstractSpinBox::StepDownEnabled));
    const bool held = option->activeSubControls == (up ? SC_SpinBoxUp : SC_SpinBoxDown) && able;
    if (held) {
      const QColor text = option->palette.color(QPalette::Active, QPalette::Text);
      painter->fillRect(area.adjusted(0, 1, -2, -1), Blend(FieldFill(*option), text, 0.1));
    }
    PaintArrow(*painter, QRectF(area), up ? ArrowDirection::Up : ArrowDirection::Down, ArrowInk(*option, able));
  }
}

void FlatStyle::DrawComboBox(const QStyleOptionComplex* option, QPainter* painter, const QWidget* widget) const {
  const auto* combo = qstyleoption_cast<const QStyleOptionComboBox*>(option);
  if (!combo) return;
  const bool enabled = Has(option, State_Enabled);
  PaintBox(*painter, option->rect, FieldFill(*option), OutlineInk(*option));
  const QRect area = subControlRect(CC_ComboBox, option, SC_ComboBoxArrow, widget);
  PaintArrow(*painter, QRectF(area), ArrowDirection::Down, ArrowInk(*option, enabled));
}

void FlatStyle::DrawScrollBar(const QStyleOptionComplex* option, QPainter* painter, const QWidget* widget) const {
  const QPalette& palette = option->palette;
  const QColor window = palette.color(QPalette::Active, QPalette::Window);
  const QColor text = palette.color(QPalette::Active, QPalette::WindowText);
  painter->fillRect(option->rect, window);
  const auto* slider = qstyleoption_cast<const QStyleOptionSlider*>(option);
  if (!slider || slider->minimum == slider->maximum) return;
  const QRectF handle = subControlRect(CC_ScrollBar, option, SC_ScrollBarSlider, widget);
  const bool held = option->activeSubControls & SC_ScrollBarSlider;
  PaintBox(*painter, handle.adjusted(3, 3, -3, -3), Blend(window, text, held ? 0.45 : 0.24), {}, 3);
}

}  // namespace quillon::ui
