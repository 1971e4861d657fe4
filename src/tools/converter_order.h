// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <array>
#include <optional>
#include <string>
#include <vector>

#include "base/rect.h"

namespace quillon::tools {

// The order files of PicCutConverter: text with one value a line. A field that is named after its line number has no
// known meaning, but its line must be written.

// Param.txt. The defaults are those of ZoomHuge and ConvertHuge.
struct ConverterOrder {
  bool OnlyZoom = false;       // the whole picture, scaled to size
  bool OnlyConverter = false;  // the whole picture in the target's format
  bool NeedZoomS = false;      // scaled to size if it is larger
  bool NeedZoomB = false;      // scaled to size if it is smaller
  std::string source;
  std::array<std::string, 3> paths6;
  std::array<bool, 2> flags9 = {};
  std::array<int, 4> numbers11 = {};
  bool flag15 = false;
  std::array<int, 3> numbers16 = {0, 0, 60};
  base::Size size;   // of the result or of the cut
  int quality = 98;  // of a JPEG
  std::string target;
  bool NeedConverter = false;
  base::Size least{32, 32};  // the minimum size of the source; a smaller one is refused
  std::array<int, 2> numbers26 = {};
  bool flag28 = false;
  bool CutPic = false;  // the rectangle of size at cutX, cutY
  int cutX = 0;
  int cutY = 0;
  bool PicRotate = false;
  int angle = 90;  // degrees, counter-clockwise
  std::array<int, 4> numbers34 = {};
  bool SpreadSy = false;
  std::array<int, 2> numbers39 = {};
  bool ToGray = false;
  int number42 = 30;
  bool CoupleArray = false;
  bool DrawTxtMode = false;
  bool BackSY = false;
  std::string text46;
  std::vector<std::string> items;  // with CoupleArray: parts of the source, see PartOf

  bool operator==(const ConverterOrder&) const = default;
};

// CoupleParam.txt: several parts of one source.
struct CoupleOrder {
  std::string source;
  std::string target;
  base::Size size;  // of each result; 0 keeps the size of the part
  int quality = 98;
  bool grey = false;
  int angle = 0;  // on one line with least, "#{angle}#{width}#{height}"
  base::Size least;
  std::vector<std::string> items;  // parts of the source, see PartOf

  bool operator==(const CoupleOrder&) const = default;
};

// Returns the part of the source that an item "#{x}#{y}#{width}#{height}" describes, in pixels; nullopt for any other
// text or an empty part.
std::optional<base::Rect> PartOf(const std::string& item);

// Returns the files that an order makes: its target, or, if it has parts, "<target>_01", "<target>_02" and so on with
// the extension of the target, in the order of the parts.
std::vector<std::string> TargetsOf(const ConverterOrder& order);
std::vector<std::string> TargetsOf(const CoupleOrder& order);

// Return the content of the order file; every line ends with a line feed. nullopt if a text contains a line break.
std::optional<std::string> OrderText(const ConverterOrder& order);
std::optional<std::string> OrderText(const CoupleOrder& order);

// Read the content of Param.txt and CoupleParam.txt, with line ends of either kind. nullopt for any other text.
std::optional<ConverterOrder> ParseOrder(const std::string& text);
std::optional<CoupleOrder> ParseCoupleOrder(const std::string& text);

}  // namespace quillon::tools
