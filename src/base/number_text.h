// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace quillon::base {

// Returns the number that the whole text spells, or nullopt if it is not a number.
// Accepted: an optional sign, decimal digits with an optional point or decimal comma, blanks around all of it.
// Full-width digits, signs, points and commas count as their ASCII forms, and so does the Chinese full stop.
// An exponent is refused, and so is a comma that may separate thousands: "1,5" is 1.5, "1,500" is no number.
// A value that overflows or underflows a double is not a number.
std::optional<double> ParseNumber(std::string_view text);

// A unit that a user may type after a number.
enum class Unit { None, Pixel, Millimetre, Centimetre, Inch, Percent };

// A number with its unit.
struct Measure {
  double value = 0;
  Unit unit = Unit::None;
};

// Returns a number by the rules of ParseNumber and the unit after it, with or without blanks between the two.
// Units: px, mm, cm, in and their Chinese names, ", and %; upper and lower case do not matter.
// Returns nullopt if the text is anything else.
std::optional<Measure> ParseMeasure(std::string_view text);

// Returns the integer that the whole text spells: an optional sign and digits, with blanks around them.
// Returns nullopt if the text is not an integer or does not fit an int.
std::optional<int> ParseInteger(std::string_view text);

// Returns the number at the start of the text, which may have a point and an exponent; "12px" gives 12.
// Returns 0 if the text does not start with a number, as "" and "abc" do not.
double LeadingNumber(std::string_view text);

// Returns the shortest decimal text that reads back as the same double.
// Never uses an exponent if the absolute value is below 1e15. Both zeros, the infinities and NaN give "0".
std::string NumberText(double value);

// Returns the number as people read it: with at most six significant digits, but with all digits before the point.
std::string ShortNumberText(double value);

// Returns the text with the full-width ASCII forms (U+FF01..U+FF5E) and the ideographic space replaced by ASCII.
// All other bytes are copied unchanged, valid UTF-8 or not.
std::string ToHalfWidth(std::string_view text);

}  // namespace quillon::base
