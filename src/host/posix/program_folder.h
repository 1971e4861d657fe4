// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <string>

#include "host/files/files.h"

namespace quillon::host::posix {

// What decides where the program folder is.
struct ProgramFolderHints {
  std::string told;              // $QUILLON_APP
  std::string executableFolder;  // where this program lies, links resolved
  std::string dataHome;          // the user's folder for data of programs
};

// The hints of this process.
ProgramFolderHints HintsOfThisProcess();

// The program folder, without a trailing separator; it need not be there yet. The told one wins. Else it is the
// executable's own folder where that is writable (portable layout), and "quillon" in dataHome where it is not or where
// the program is installed: it lies below /usr or /bin, or has lib/quillon or share/quillon beside its folder.
std::string ChooseProgramFolder(const Files& files, const ProgramFolderHints& hints);

// Makes the program folder, sweeps the drafts of a killed run and, where it is not the executable's own folder, fills
// it from the installed files; a file of the same size and time is not copied again, an .ini file is never replaced,
// and what else lies there stays.
// From an installed program everything in lib/quillon and share/quillon comes along; from a portable one the helper
// programs, the .ini files and the colour profiles, but none of its work files. Goes on past files that cannot be
// copied and gives the first failure.
Status PrepareProgramFolder(Files& files, const std::string& programFolder, const std::string& executableFolder);

}  // namespace quillon::host::posix
