// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "regions/frame/decision.h"

namespace quillon::regions {
namespace {

constexpr char kParting = '\t';

}  // namespace

std::string TextOf(const Decision& decision) {
  std::string text;
  for (const std::string& margin : decision.margins) text += margin + kParting;
  text += (decision.skip ? "Z" : "") + std::string(1, kParting) + decision.steps;
  return decision.changes.empty() ? text : text + kParting + decision.changes;
}

std::optional<Decision> DecisionFrom(const std::string& text) {
  Decision decision;
  std::size_t at = 0;
  const auto next = [&]() -> std::string {
    if (at > text.size()) return {};
    const std::size_t end = text.find(kParting, at);
    const std::string part = text.substr(at, end - at);
    at = end == std::string::npos ? text.size() + 1 : end + 1;
    return part;
  };
  for (std::string& margin : decision.margins) margin = next();
  decision.skip = next() == "Z";
  if (at > text.size()) return std::nullopt;
  decision.steps = next();
  decision.changes = next();
  return decision;
}

}  // namespace quillon::regions
