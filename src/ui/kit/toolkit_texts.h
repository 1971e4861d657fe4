// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QTranslator>

namespace quillon::ui {

// The toolkit's own words in Chinese: those of its file and colour dialogs, of text menus and of docked windows. The
// translations that come with the toolkit are a package of their own, which need not be there.
class ToolkitTexts : public QTranslator {
 public:
  using QTranslator::QTranslator;

  bool isEmpty() const override { return false; }
  QString translate(const char* context, const char* source, const char* disambiguation, int n) const override;
};

}  // namespace quillon::ui
