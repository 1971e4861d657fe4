// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <array>
#include <optional>
#include <string>
#include <vector>

#include "base/rect.h"

namespace quillon::tools {

// The order files of PicCutConverter, texts of one value a line. Fields named after their line have no meaning of their
// own; their places are kept.

// Param.txt. The defaults are those of ZoomHuge and ConvertHuge.
struct ConverterOrder {
  bool OnlyZoom = false;       // the whole picture, scaled to size
  bool OnlyConverter = false;  // the whole picture in the target's format
  bool NeedZoomS = false;      // scaled to size where it is larger
  bool NeedZoomB = false;      // scaled to size where it is smaller
  std::string source;
  std::array<std::string, 3> paths6;
  std::array<bool, 2> flags9 = {};
  std::array<int, 4> numbers11 = {};
  bool flag15 = false;
  std::array<int, 3> numbers16 = {0, 0, 60};
  base::Size size;   // of the result or of the cut
  int quality = 98;  // of a jpeg
  std::string target;
  bool NeedConverter = false;
  base::Size least{32, 32};  // a source that is smaller on a side is not the one that was meant
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

// CoupleParam.txt: one source, several parts of it.
struct CoupleOrder {
  std::string source;
  std::string target;
  base::Size size;  // of each result; 0 leaves it as it was cut
  int quality = 98;
  bool grey = false;
  int angle = 0;  // with least on one line, "#{angle}#{width}#{height}"
  base::Size least;
  std::vector<std::string> items;  // parts of the source, see PartOf

  bool operator==(const CoupleOrder&) const = default;
};

// The item that names a part of the source: "#{x}#{y}#{width}#{height}". Nothing for another text or an empty part.
std::optional<base::Rect> PartOf(const std::string& item);

// The files that an order makes: its target; where it names parts, "<target>_01" and on instead, with the target's
// extension, in their order.
std::vector<std::string> TargetsOf(const ConverterOrder& order);
std::vector<std::string> TargetsOf(const CoupleOrder& order);

// Every line ends with a line feed. Nothing when a text holds one itself, which the file could not carry.
std::optional<std::string> OrderText(const ConverterOrder& order);
std::optional<std::string> OrderText(const CoupleOrder& order);

// Read Param.txt and CoupleParam.txt back, with line ends of either kind. Nothing for any other text.
std::optional<ConverterOrder> ParseOrder(const std::string& text);
std::optional<CoupleOrder> ParseCoupleOrder(const std::string& text);

}  // namespace quillon::tools
