// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <string>

#include "host/files/files.h"

namespace quillon::host::posix {

// The inputs that decide which folder is the program folder.
struct ProgramFolderHints {
  std::string configured;        // $QUILLON_APP
  std::string executableFolder;  // the folder of this program, links resolved
  std::string dataHome;          // the user's folder for application data
};

// Returns the hints of this process.
ProgramFolderHints HintsOfThisProcess();

// Returns the program folder, without a trailing separator. It may not exist yet. The first that applies:
// - the configured folder,
// - the folder of the executable if it is writable and the program is not installed (portable layout),
// - "quillon" in dataHome.
// The program counts as installed if it is below /usr, /bin or /sbin, or if its folder has lib/quillon or share/quillon
// as a sibling.
std::string ChooseProgramFolder(const Files& files, const ProgramFolderHints& hints);

// Creates the program folder, removes drafts of killed runs and, unless it is the folder of the executable, fills it
// from the installed files.
// A file with the same size and time is not copied again, an existing .ini file is never replaced, and other files
// stay.
// An installed program provides everything in lib/quillon and share/quillon; a portable one provides its helper
// programs, .ini files and colour profiles, but none of its work files.
// Files that cannot be copied are skipped; the first failure is returned.
Status PrepareProgramFolder(Files& files, const std::string& programFolder, const std::string& executableFolder);

}  // namespace quillon::host::posix
