// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <span>
#include <string>

#include "host/host.h"

// The program files of the helpers. In the program folder a helper X is installed as X.dll, its twin, and run as X.exe,
// a copy of the twin.
namespace quillon::tools {

// When the program of a helper is copied from its twin, and when it is removed again.
enum class Copied { Never, AtStart, WhenMissing };
enum class Removed { Never, AtExit, AfterRunAndAtExit };

struct Helper {
  const char* name;
  Copied copied;
  Removed removed;
};

// All helpers. QxBackImg and DCTiffsMaker have no twin; DCTiffsMaker is removed at exit nevertheless.
std::span<const Helper> Helpers();

// Return "<program folder>/X.dll" and "<program folder>/X.exe".
std::string TwinPath(const host::Host& host, const std::string& name);
std::string ProgramPath(const host::Host& host, const std::string& name);

// Copies the twin over the program. Fails, and leaves the program unchanged, if the twin is missing.
host::Status CopyTwin(host::Host& host, const std::string& name);
// Like CopyTwin, but only if the program is missing.
host::Status EnsureProgram(host::Host& host, const std::string& name);

// Removes the programs of all helpers that are removed at exit. One that cannot be removed stays.
void RemoveProgramsAtExit(host::Host& host);

}  // namespace quillon::tools
