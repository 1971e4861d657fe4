// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace quillon::base {

// Returns the number that the whole text spells, or nullopt if it is not a number.
// Accepted: an optional sign, decimal digits with an optional point, an optional exponent, blanks around all of it.
// Full-width digits, signs and points count as their ASCII forms.
// A value that overflows or underflows a double is not a number.
std::optional<double> ParseNumber(std::string_view text);

// Returns the integer that the whole text spells, by the rules of ParseNumber but without a point or an exponent.
// Returns nullopt if the text is not an integer or does not fit an int.
std::optional<int> ParseInteger(std::string_view text);

// Returns the number at the start of the text, by the rules of ParseNumber; "12px" gives 12.
// Returns 0 if the text does not start with a number, as "" and "abc" do not.
double LeadingNumber(std::string_view text);

// Returns the shortest decimal text that reads back as the same double.
// Never uses an exponent if the absolute value is below 1e15. Both zeros, the infinities and NaN give "0".
std::string NumberText(double value);

// Returns the text with the full-width ASCII forms (U+FF01..U+FF5E) and the ideographic space replaced by ASCII.
// All other bytes are copied unchanged, valid UTF-8 or not.
std::string ToHalfWidth(std::string_view text);

}  // namespace quillon::base
