// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <string>
#include <vector>

namespace quillon::helpers {

// The files that the order of a helper names. Paths that do not exist are ignored.
struct HandedFiles {
  std::vector<std::string> sources = {};  // may be read; a folder with everything in it
  std::vector<std::string> results = {};  // may be created or replaced: their folders may be read and written
  std::string tool = {};                  // the only program that may be started, searched in $PATH; "" for none
};

// Restricts this process, and all that it starts, to the handed files, to its own folders, which it may write, and to
// what every program reads: installed programs and libraries, fonts, devices such as /dev/null, /proc. Whatever else is
// opened, created, renamed, removed or executed fails with EACCES; only names, sizes and times remain visible.
// A tool that is a script may start every installed program, because nobody knows which ones it needs.
// Skipped if the kernel does not support Landlock. Applies to this thread and those that it starts, so it must be
// called before the first thread is started.
void AllowOnly(const HandedFiles& handed, const std::vector<std::string>& ownFolders);

// Returns true if AllowOnly has an effect on this system.
bool FileAccessIsLimited();

}  // namespace quillon::helpers
