// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace quillon::base {

// The whole text as a finite decimal number: optional sign, digits with an optional point, optional exponent, blanks
// around it allowed, full-width digits, signs and points taken as their ASCII twins. Anything else is no number, and so
// is a value too large or too small for a double.
std::optional<double> ParseNumber(std::string_view text);

// The whole text as a whole number that fits int; rules as ParseNumber, no fraction, no exponent.
std::optional<int> ParseInteger(std::string_view text);

// The number at the head of the text, by the same rules; 0 where there is none: "12px" is 12, "" and "abc" are 0.
double LeadingNumber(std::string_view text);

// The shortest decimal text that reads back as the same number; never an exponent for values below 1e15 in size. Both
// zeros, the infinities and NaN give "0".
std::string NumberText(double value);

// Full-width forms of the ASCII characters (U+FF01..U+FF5E) and the ideographic blank become ASCII;
// all other bytes stay.
std::string ToHalfWidth(std::string_view text);

}  // namespace quillon::base
