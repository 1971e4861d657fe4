// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "regions/lists/clt.h"

namespace quillon::regions {
namespace {

constexpr std::string_view kByteOrderMark = "\xEF\xBB\xBF";
constexpr std::string_view kPixels = "R";
constexpr std::string_view kPercent = "D";
constexpr std::string_view kLineEnd = "\r\n";

// Removes the first line from the text, with its line end, and returns it without the line end.
std::string_view ReadLine(std::string_view& text) {
  const std::size_t end = text.find_first_of(kLineEnd);
  const std::string_view line = text.substr(0, end);
  if (end == std::string_view::npos) {
    text = {};
  } else {
    text.remove_prefix(end + (text.substr(end).starts_with(kLineEnd) ? 2 : 1));
  }
  return line;
}

}  // namespace

std::string WriteClt(Unit unit, const std::vector<std::array<std::string, 4>>& rows) {
  std::string text(unit == Unit::Pixels ? kPixels : kPercent);
  text += kLineEnd;
  for (const auto& row : rows) text.append(RowText(row)).append(kLineEnd);
  return text;
}

CltFile ReadClt(std::string_view text) {
  if (text.starts_with(kByteOrderMark)) text.remove_prefix(kByteOrderMark.size());
  CltFile file;
  file.unit = ReadLine(text) == kPixels ? Unit::Pixels : Unit::Percent;
  while (!text.empty()) file.lines.emplace_back(ReadLine(text));
  return file;
}

}  // namespace quillon::regions
