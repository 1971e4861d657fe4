// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "job/settings/geometry.h"

#include <algorithm>
#include <cstdint>
#include <limits>
#include <string>

#include "base/number_text.h"
#include "base/rounding.h"

namespace quillon::job {
namespace {

using base::R;

constexpr double kMinZoomPercent = 10;
constexpr double kMaxZoomPercent = 500;
constexpr double kMinZoomSide = 32;
constexpr double kMaxZoomSide = 30000;

void MoveNegative(double& margin, double& sum) {
  if (margin >= 0) return;
  sum += margin;
  margin = 0;
}

// For a fixed frame with equal proportions: the margins are percent although the unit in use is pixels.
base::Rect ProportionalRectangle(const CutGeometry& p, const Overhang& overhang, base::Size picture) {
  const double W = picture.width;
  const double H = picture.height;
  base::Rect cut;
  if (p.ChFull && overhang.OverH != 0) {
    cut.left = R(p.ML * W / 100);
    cut.width = R((100 - p.ML) * W / 100);
    cut.height = picture.height;
  } else if (p.ChFull && overhang.OverV != 0) {
    cut.top = R(p.MT * H / 100);
    cut.width = picture.width;
    cut.height = R((100 - p.MT) * H / 100);
  } else {
    cut.left = R((p.ML / 100) * W);
    cut.top = R((p.MT / 100) * H);
    cut.width = R((W - cut.left) - (p.MR / 100) * W);
    cut.height = R((H - cut.top) - (p.MB / 100) * H);
  }
  return cut;
}

base::Rect PixelRectangle(const CutGeometry& p, base::Size picture, Pass pass) {
  const bool remainders = p.ChFixCut || (pass == Pass::First && !p.AdvancedOptionsLoaded);
  base::Rect cut;
  cut.left = R(p.ML);
  cut.top = R(p.MT);
  cut.width = R(remainders ? (static_cast<double>(picture.width) - cut.left) - p.FixW : p.TSmalS2);
  cut.height = R(remainders ? (static_cast<double>(picture.height) - cut.top) - p.FixH : p.TSmalS3);
  return cut;
}

base::Rect PercentRectangle(const CutGeometry& p, base::Size picture) {
  const double W = picture.width;
  const double H = picture.height;
  base::Rect cut;
  cut.left = R((p.ML / 100) * W);
  cut.top = R((p.MT / 100) * H);
  cut.width = R(((100 - p.ML - p.MR) / 100) * W);
  cut.height = R(((100 - p.MT - p.MB) / 100) * H);
  return cut;
}

PreviewFrame AsFrame(const base::Rect& rect) {
  return {static_cast<double>(rect.left), static_cast<double>(rect.top), static_cast<double>(rect.width),
          static_cast<double>(rect.height)};
}

base::Rect Rounded(const PreviewFrame& frame) { return {R(frame.left), R(frame.top), R(frame.width), R(frame.height)}; }

// A text of CmbZoom in plain characters. "w,h" is a pair; with "%" or without a comma it is a percentage.
struct ZoomText {
  bool pair = false;
  std::string_view width;
  std::string_view height;
};

ZoomText ReadZoomText(std::string_view text) {
  const auto comma = text.find(',');
  if (comma == std::string_view::npos || text.find('%') != std::string_view::npos) return {};
  return {true, text.substr(0, comma), text.substr(comma + 1)};
}

// Returns the number that the text spells, if it has no minus sign.
std::optional<double> ZoomNumber(std::string_view text) {
  const auto number = base::ParseNumber(text);
  return number && text.find('-') == std::string_view::npos ? number : std::nullopt;
}

std::optional<double> ZoomSide(std::string_view text) {
  return text.find(',') == std::string_view::npos ? ZoomNumber(text) : std::nullopt;
}

int LimitedSide(std::string_view text, double highest) {
  return R(std::clamp(ZoomSide(text).value_or(base::LeadingNumber(text)), kMinZoomSide, highest));
}

// Returns the percentage; a comma and what follows it may stand after the "%".
std::optional<double> ZoomPercent(std::string_view text) {
  const std::size_t sign = text.find('%');
  if (sign == std::string_view::npos) return ZoomNumber(text);
  const std::size_t rest = text.find_first_not_of(' ', sign + 1);
  const bool ends = rest == std::string_view::npos || text[rest] == ',';
  return ends ? ZoomNumber(text.substr(0, sign)) : std::nullopt;
}

}  // namespace

int CmToPixels(float cm, int dpi) {
  const auto inches = static_cast<float>(static_cast<double>(cm) * 0.3937);
  return R(static_cast<double>(inches) * dpi);
}

Overhang PopOverhang(CutGeometry& geometry) {
  Overhang overhang;
  if (!geometry.ChFixCut) return overhang;
  MoveNegative(geometry.MT, overhang.OverV);
  MoveNegative(geometry.ML, overhang.OverH);
  MoveNegative(geometry.MR, overhang.OverH);
  MoveNegative(geometry.MB, overhang.OverV);
  return overhang;
}

CountingValues ValuesThatCount(const CutGeometry& p) {
  constexpr std::array kAll{true, true, true, true};
  constexpr std::array kLeftAndTop{true, true, false, false};
  CountingValues counting;
  if (p.Exact()) {
    counting.fixedSize = true;
    if (!p.PadsToExact() && p.CmbAnchor == kAnchorByMargins) counting.margins = kLeftAndTop;
  } else if (p.ChAsFramed) {
    counting.centred = true;
    counting.fixedSize = p.ChFixCut;
    if (!p.ChFixCut) counting.margins = kAll;
    if (p.ChFixCut && !p.ChAutoCenter) counting.margins = kLeftAndTop;
  } else if (!p.ChCutA || (p.ChFixCut && p.ChAutoZoom)) {
    counting.margins = kAll;
  } else {
    counting.margins = kLeftAndTop;
    counting.fixedSize = p.ChFixCut || !p.AdvancedOptionsLoaded;
    counting.keptSize = !counting.fixedSize;
  }
  return counting;
}

PreviewFrame FrameOf(const CutGeometry& geometry, base::Size picture) {
  if (geometry.Exact()) return AsFrame(ExactRectangle(geometry, picture));
  const double W = picture.width;
  const double H = picture.height;
  const double ML = geometry.ML;
  const double MT = geometry.MT;
  const double MR = geometry.MR;
  const double MB = geometry.MB;
  PreviewFrame frame{ML, MT, W - ML - MR, H - MT - MB};
  if (!geometry.ChCutA) frame = {W * ML / 100, H * MT / 100, W * (100 - ML - MR) / 100, H * (100 - MT - MB) / 100};
  if (geometry.ChFixCut) {
    frame.width = geometry.FixW;
    frame.height = geometry.FixH;
  }
  if (geometry.ChAutoCenter) {
    frame.left = (W - frame.width) / 2;
    frame.top = (H - frame.height) / 2;
  }
  return frame;
}

base::Rect ExactRectangle(const CutGeometry& p, base::Size picture) {
  if (p.PadsToExact()) return {0, 0, picture.width, picture.height};
  const Fit fit = FitToSize({p.FixW, p.FixH}, picture.width, picture.height);
  base::Rect cut{0, 0, std::max(1, fit.FitW), std::max(1, fit.FitH)};
  const int spareWidth = std::max(0, picture.width - cut.width);
  const int spareHeight = std::max(0, picture.height - cut.height);
  if (p.CmbAnchor == kAnchorByMargins) {
    cut.left = std::clamp(R(p.ChCutA ? p.ML : p.ML / 100 * picture.width), 0, spareWidth);
    cut.top = std::clamp(R(p.ChCutA ? p.MT : p.MT / 100 * picture.height), 0, spareHeight);
  } else {
    const int column = p.CmbAnchor % 3;
    const int row = p.CmbAnchor / 3;
    cut.left = R(spareWidth * column / 2.0);
    cut.top = R(spareHeight * row / 2.0);
  }
  return cut;
}

base::Rect CutRectangle(const CutGeometry& geometry, const Overhang& overhang, base::Size picture, Pass pass) {
  if (geometry.SkipCutThisImage) return {0, 0, picture.width, picture.height};
  if (geometry.Exact()) return ExactRectangle(geometry, picture);
  if (geometry.ChAsFramed) return Rounded(FrameOf(geometry, picture));
  if (!geometry.ChCutA) return PercentRectangle(geometry, picture);
  const bool proportional = geometry.ChFixCut && geometry.ChAutoZoom;
  return proportional ? ProportionalRectangle(geometry, overhang, picture) : PixelRectangle(geometry, picture, pass);
}

base::Rect PlacedRectangle(CutGeometry geometry, base::Size picture, Pass pass) {
  const Overhang overhang = PopOverhang(geometry);
  return CutRectangle(geometry, overhang, picture, pass);
}

// In 64 bits, because margins may be beyond all sizes.
bool Overlap(const base::Rect& cut, base::Size picture) {
  const auto meets = [](std::int64_t begin, std::int64_t length, int side) {
    return begin < side && begin + length > 0;
  };
  return meets(cut.left, cut.width, picture.width) && meets(cut.top, cut.height, picture.height);
}

std::string NothingInText(const std::string& what, const base::Rect& cut, base::Size picture) {
  if (cut.Empty()) return what + "的宽或高小于 1 像素（" + base::SizeText({cut.width, cut.height}) + "）";
  if (picture.Empty() || Overlap(cut, picture)) return {};
  return what + "整个在图片之外（左 " + std::to_string(cut.left) + "，上 " + std::to_string(cut.top) + "，图片 " +
         base::SizeText(picture) + "）";
}

bool NeedRotate(int width, int height, int rule, double angle) {
  if (angle == 0) return false;
  switch (rule) {
    case 1:
    case 2:
      return width > height;
    case 3:
    case 4:
      return height > width;
    case 5:
      return true;
    default:
      return false;
  }
}

std::optional<double> PreRotation(int entry, base::Size picture, double ownAngle) {
  const bool wide = picture.width > picture.height;
  const bool tall = picture.width < picture.height;
  switch (entry) {
    case 1:
      return wide ? std::optional(90.0) : std::nullopt;
    case 2:
      return wide ? std::optional(-90.0) : std::nullopt;
    case 3:
      return tall ? std::optional(90.0) : std::nullopt;
    case 4:
      return tall ? std::optional(-90.0) : std::nullopt;
    case 5:
      return ownAngle;
    default:
      return std::nullopt;
  }
}

Fit FitToSize(base::Size picture, int FixW, int FixH) {
  if (picture.Empty()) return {};
  const double r = static_cast<double>(picture.width) / picture.height;
  Fit fit;
  fit.FitW = FixW;
  fit.FitH = R(fit.FitW / r);
  if (fit.FitH > FixH) {
    fit.FitH = FixH;
    fit.FitW = R(fit.FitH * r);
  }
  fit.offsetX = R((static_cast<double>(FixW) - fit.FitW) / 2);
  fit.offsetY = R((static_cast<double>(FixH) - fit.FitH) / 2);
  return fit;
}

BoardResolution ResolutionOfBoard(bool fixedCut, int outDpi, int sourceDpi, int screenDpi) {
  if (fixedCut) return {outDpi > 0 ? outDpi : screenDpi, 1};
  const int dpi = sourceDpi > 0 ? sourceDpi : screenDpi;
  return {dpi, outDpi > 0 && dpi > 0 ? static_cast<double>(outDpi) / dpi : 1};
}

Board BoardPixels(const std::array<double, 4>& millimetres, int dpi, double k) {
  const auto pixels = [&](double mm) { return R(CmToPixels(static_cast<float>(mm / 10), dpi) * k); };
  return {pixels(millimetres[0]), pixels(millimetres[1]), pixels(millimetres[2]), pixels(millimetres[3])};
}

base::Size ExtendedSize(Extend extend, int FixW, int FixH, const Board& board) {
  const double beside = static_cast<double>(board.left) + board.right;
  const double above = static_cast<double>(board.top) + board.bottom;
  if (extend == Extend::Right) return {R(FixH + beside), R(FixW + above)};
  return {R(FixH + above), R(FixW + beside)};
}

bool IsZoomText(std::string_view text) {
  const std::string plain = base::ToHalfWidth(text);
  const ZoomText zoom = ReadZoomText(plain);
  if (zoom.pair) return ZoomSide(zoom.width) && ZoomSide(zoom.height);
  return ZoomPercent(plain).has_value();
}

std::optional<base::Size> ZoomedSize(std::string_view given, base::Size picture, ZoomTime time) {
  const std::string text = base::ToHalfWidth(given);
  const ZoomText zoom = ReadZoomText(text);
  if (zoom.pair) {
    const double highest =
        time == ZoomTime::BeforeCut ? kMaxZoomSide : static_cast<double>(std::numeric_limits<int>::max());
    return base::Size{LimitedSide(zoom.width, kMaxZoomSide), LimitedSide(zoom.height, highest)};
  }
  const double percent = ZoomPercent(text).value_or(base::LeadingNumber(text));
  if (percent < kMinZoomPercent || percent > kMaxZoomPercent || percent == 100) return std::nullopt;
  return base::Size{R(percent * picture.width / 100), R(percent * picture.height / 100)};
}

}  // namespace quillon::job
