// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <vector>

#include "arch/source.h"

namespace quillon::arch {

inline constexpr int kTinyLines = 25;
inline constexpr int kTinyShare = 8;  // percent
inline constexpr int kFilesOfFolder = 40;

// The rules for the tree. Each checks one file and decides itself whether it applies to it.

// A folder of src/ includes itself and what lies below it, by a path from src/.
Breaches CheckLayers(const Source& source);
// Inside a library, a room includes itself and the rooms below it.
Breaches CheckRooms(const Source& source);
// Each heavy library is named in the folders that wrap it and nowhere else.
Breaches CheckLibraries(const Source& source);
// System headers that only one platform has stay in the folders that are about that platform.
Breaches CheckPlatform(const Source& source);
// The real world, host/posix, is wired up by programs and tests; scripted doubles, host/testing, serve tests alone.
Breaches CheckWiring(const Source& source);
// Files are made, changed, renamed and removed by host/ alone.
Breaches CheckWrites(const Source& source);
// The files of the program folder are named in job/work_files.h, with their owners. Helpers name those of their
// handshake.
Breaches CheckWorkFiles(const Source& source);
// Lines per file and per function.
Breaches CheckSizes(const Source& source);
// The two lines at the head that name owner and licence.
Breaches CheckLicence(const Source& source);
// No tabs, no blanks at line ends, one newline at the end, no carriage returns, no words that mark unfinished work.
Breaches CheckText(const Source& source);
// Names of files; header guards; no using-directives in headers; tests are named *_test.cpp.
Breaches CheckNames(const Source& source);

// Over all files: at most kTinyShare percent of the files of src/ have kTinyLines lines or less.
Breaches CheckTinyFiles(const std::vector<Source>& tree);
// Over all files: no folder of src/ holds more than kFilesOfFolder files of code.
Breaches CheckFolders(const std::vector<Source>& tree);
// Over all files: a header that includes a heavy library is not included from other libraries.
Breaches CheckHeavyHeaders(const std::vector<Source>& tree);

}  // namespace quillon::arch
