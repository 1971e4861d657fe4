// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
//
// Any bytes as the database of the settings: it is read or replaced, and a value that is stored is there for others.
#include <string>

#include "fuzz_file.h"
#include "fuzz_pictures.h"
#include "host/posix/sqlite_settings.h"

namespace host = quillon::host;
using quillon::fuzz::InputFolder;
using quillon::fuzz::Require;

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  quillon::fuzz::ClearInputFolder();
  quillon::fuzz::WriteInput(InputFolder() + "/settings.db", data, size);
  host::posix::SqliteSettings settings(InputFolder(), 0);
  static_cast<void>(settings.Get("Quillon", "Default", "LOutDir"));
  Require(settings.Set("Quillon", "Default", "LInDir", "value"));
  Require(settings.Get("Quillon", "Default", "LInDir") == "value");
  host::posix::SqliteSettings other(InputFolder(), 0);
  Require(other.Get("Quillon", "Default", "LInDir") == "value");
  return 0;
}
