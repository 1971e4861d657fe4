// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "controls/windows.h"

#include <algorithm>
#include <utility>

#include "base/path_text.h"

namespace quillon::controls {
namespace {

// The Levenshtein distance: the number of insertions, removals and replacements of bytes that turn a into b. Computed
// row by row; row[j] is the distance from the part of a read so far to the first j bytes of b.
std::size_t EditDistance(std::string_view a, std::string_view b) {
  std::vector<std::size_t> row(b.size() + 1);
  for (std::size_t j = 0; j <= b.size(); ++j) row[j] = j;
  for (std::size_t i = 1; i <= a.size(); ++i) {
    std::size_t diagonal = std::exchange(row[0], i);
    for (std::size_t j = 1; j <= b.size(); ++j) {
      const std::size_t replaced = diagonal + (a[i - 1] == b[j - 1] ? 0 : 1);
      diagonal = std::exchange(row[j], std::min({row[j] + 1, row[j - 1] + 1, replaced}));
    }
  }
  return row[b.size()];
}

}  // namespace

Window* Windows::FindWindow(std::string_view name) const {
  const std::string wanted = base::ToLowerAscii(name);
  for (Window* window : windows_) {
    if (base::ToLowerAscii(window->Name()) == wanted) return window;
  }
  return nullptr;
}

Control* Windows::Find(std::string_view name) const {
  const auto point = name.find('.');
  if (point == std::string_view::npos) {
    const Window* main = FindWindow("Form1");
    return main ? main->Find(name) : nullptr;
  }
  const Window* window = FindWindow(name.substr(0, point));
  return window ? window->Find(name.substr(point + 1)) : nullptr;
}

std::vector<std::string> Windows::Nearest(std::string_view name, std::size_t count) const {
  const bool full = name.find('.') != std::string_view::npos;
  const std::string wanted = base::ToLowerAscii(name);
  std::vector<std::pair<std::size_t, std::string>> ranked;
  for (const Window* window : windows_) {
    for (const Control* control : window->Controls()) {
      const std::string candidate = base::ToLowerAscii(full ? control->FullName() : control->Name());
      ranked.emplace_back(EditDistance(wanted, candidate), control->FullName());
    }
  }
  std::stable_sort(ranked.begin(), ranked.end(), [](const auto& a, const auto& b) { return a.first < b.first; });
  if (ranked.size() > count) ranked.resize(count);
  std::vector<std::string> names;
  names.reserve(ranked.size());
  for (auto& [distance, candidate] : ranked) names.push_back(std::move(candidate));
  return names;
}

}  // namespace quillon::controls
