// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
//
// Any bytes as the file of a journal: it opens, all its records are listed, and from then on it keeps what is stored. A
// journal whose bytes are not those of a whole one is marked as torn.
#include <string>

#include "fuzz_file.h"
#include "fuzz_pictures.h"
#include "host/posix/sqlite_journals.h"

namespace host = quillon::host;
using quillon::fuzz::InputFolder;
using quillon::fuzz::Require;

namespace {

// Returns the path of the journal of the job.
std::string PathOfJournal() {
  quillon::fuzz::ClearInputFolder();
  const auto journal = host::posix::SqliteJournals(InputFolder()).Open({"job"});
  Require(journal != nullptr);
  std::string path;
  for (const auto& entry : std::filesystem::directory_iterator(InputFolder())) {
    if (entry.path().extension() == ".db") path = entry.path().native();
  }
  Require(!path.empty());
  return path;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  static const std::string kPath = PathOfJournal();
  quillon::fuzz::ClearInputFolder();
  quillon::fuzz::WriteInput(kPath, data, size);
  host::posix::SqliteJournals journals(InputFolder());
  {
    const auto journal = journals.Open({"job"});
    Require(journal != nullptr);
    if (size < 512) Require(journal->Get("", host::kTornKey).has_value());
    journal->Each("k", [&](const std::string& file) { Require(journal->Get(file, "k").has_value()); });
    journal->Set("a", "k", "value");
    journal->Commit();
  }
  const auto journal = journals.Open({"job"});
  Require(journal && journal->Get("a", "k") == "value");
  return 0;
}
