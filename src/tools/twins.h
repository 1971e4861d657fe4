// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <span>
#include <string>

#include "host/host.h"

// Helper programs lie in the program folder as X.dll, their twin, and run as X.exe, a copy of it.
namespace quillon::tools {

// When the program of a helper is put beside its twin, and when it is removed again.
enum class Copied { Never, AtStart, WhenMissing };
enum class Removed { Never, AtExit, AfterRunAndAtExit };

struct Helper {
  const char* name;
  Copied copied;
  Removed removed;
};

// All helpers. QxBackImg and DCTiffsMaker have no twin; DCTiffsMaker is removed at exit all the same.
std::span<const Helper> Helpers();

// "<program folder>/X.dll" and "<program folder>/X.exe".
std::string TwinPath(const host::Host& host, const std::string& name);
std::string ProgramPath(const host::Host& host, const std::string& name);

// Copies the twin onto the program, whatever stood there; a missing twin leaves it as it is and fails.
host::Status CopyTwin(host::Host& host, const std::string& name);
// As CopyTwin, where the program is missing.
host::Status EnsureProgram(host::Host& host, const std::string& name);

// Removes the programs of all helpers that go at exit, in their order; one that cannot be removed stays.
void RemoveProgramsAtExit(host::Host& host);

}  // namespace quillon::tools
