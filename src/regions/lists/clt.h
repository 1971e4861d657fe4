// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "regions/region.h"

namespace quillon::regions {

// A .clt file, which holds a region list. The first line is the unit: "R" for pixels, "D" for percent. Each further
// line is one region, its four margins with TABs between them.
struct CltFile {
  Unit unit = Unit::Percent;
  std::vector<std::string> lines;  // the regions, as bytes; not checked
};

// Returns the content of a .clt file. Lines end with CR LF.
std::string WriteClt(Unit unit, const std::vector<std::array<std::string, 4>>& rows);

// Parses the content of a .clt file. Never fails: any first line but "R" means percent, and every further line becomes
// a region. Lines end with CR LF, LF, CR or the end of the text. A UTF-8 byte order mark is skipped.
CltFile ReadClt(std::string_view text);

}  // namespace quillon::regions
