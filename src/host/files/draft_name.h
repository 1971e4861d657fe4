// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

namespace quillon::host {

// The name of a draft of a file: ".<name>.quillon-<serial>". Serials that differ by less than 36^6 give names that
// differ. The name in the middle is cut to what longest leaves of it, at the end of a character.
std::string DraftName(std::string_view name, std::uint64_t serial, std::size_t longest);

// Whether draft can be the name of a draft of a file of that name.
bool IsDraftOf(std::string_view name, std::string_view draft);

}  // namespace quillon::host
