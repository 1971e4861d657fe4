// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "host/posix/program_folder.h"

#include <unistd.h>

#include <climits>
#include <functional>
#include <vector>

#include "base/path_text.h"
#include "host/files/file_stamp.h"
#include "host/files/paths.h"
#include "host/posix/environment.h"

namespace quillon::host::posix {
namespace {

constexpr const char* kProfiles = "ColorConfigs";

// Returns the folders with the files of an installed program, which are siblings of the executable's folder.
std::vector<std::string> InstalledBeside(const Files& files, const std::string& executableFolder) {
  std::vector<std::string> folders;
  const std::string prefix = base::SplitPath(executableFolder).folder;
  for (const char* place : {"lib/quillon", "share/quillon"}) {
    std::string folder = base::JoinPath(prefix, place);
    if (files.IsFolder(folder)) folders.push_back(std::move(folder));
  }
  return folders;
}

bool IsSystemFolder(const std::string& folder) {
  const std::string path = folder + "/";
  return path.starts_with("/usr/") || path.starts_with("/bin/") || path.starts_with("/sbin/");
}

// Returns true for the files that belong to a portable program; all others in its folder are work files.
bool IsProgramFile(const Files& files, const std::string& folder, const std::string& name) {
  const base::PathParts parts = base::SplitPath(name);
  const std::string extension = base::ToLowerAscii(parts.extension);
  // A helper "x.exe" with an "x.dll" beside it is created from that file when it is needed, so it need not be copied.
  if (extension == "exe") return !files.IsFile(base::JoinPath(folder, parts.name, "dll"));
  return extension == "dll" || extension == "ini";
}

using Filter = std::function<bool(const FolderEntry&)>;

// The user may edit .ini files; all other files follow the installed ones.
bool UpToDate(const Files& files, const std::string& from, const std::string& to) {
  if (from.ends_with(".ini") && files.IsFile(to)) return true;
  const auto source = files.Stat(from);
  const auto standing = files.Stat(to);
  return source && standing && SameContent(*source, *standing);
}

void KeepFirst(Status& first, Status next) {
  if (first && !next) first = std::move(next);
}

Status Fill(Files& files, const std::string& from, const std::string& to, const Filter& filter) {
  std::vector<FolderEntry> entries;
  Status status = files.ListFolder(from, [&](const FolderEntry& entry) {
    if (filter(entry)) entries.push_back(entry);
    return true;
  });
  KeepFirst(status, files.MakeFolders(to));
  for (const FolderEntry& entry : entries) {
    const std::string source = base::JoinPath(from, entry.name);
    const std::string target = base::JoinPath(to, entry.name);
    if (entry.kind == FileKind::Folder) {
      KeepFirst(status, Fill(files, source, target, [](const FolderEntry&) { return true; }));
    } else if (entry.kind == FileKind::File && !UpToDate(files, source, target)) {
      KeepFirst(status, files.Copy(source, target));
    }
  }
  return status;
}

}  // namespace

ProgramFolderHints HintsOfThisProcess() {
  char executable[PATH_MAX];
  const ssize_t length = readlink("/proc/self/exe", executable, sizeof executable);
  const std::string path(executable, length > 0 ? static_cast<std::size_t>(length) : 0);
  return {Environment("QUILLON_APP"), base::SplitPath(path).folder, BaseFolder("XDG_DATA_HOME", ".local/share")};
}

std::string ChooseProgramFolder(const Files& files, const ProgramFolderHints& hints) {
  if (!hints.configured.empty()) return AbsolutePath(hints.configured);
  const std::string& own = hints.executableFolder;
  const bool installed = own.empty() || IsSystemFolder(own) || !InstalledBeside(files, own).empty();
  if (!installed && access(own.c_str(), W_OK | X_OK) == 0) return own;
  return base::JoinPath(hints.dataHome, "quillon");
}

Status PrepareProgramFolder(Files& files, const std::string& programFolder, const std::string& executableFolder) {
  if (Status made = files.MakeFolders(programFolder); !made) return made;
  files.SweepDrafts(programFolder);
  if (files.SameFile(programFolder, executableFolder)) return Status::Ok();
  Status status;
  const std::vector<std::string> installed = InstalledBeside(files, executableFolder);
  for (const std::string& folder : installed) {
    KeepFirst(status, Fill(files, folder, programFolder, [](const FolderEntry&) { return true; }));
  }
  if (!installed.empty() || IsSystemFolder(executableFolder)) return status;
  KeepFirst(status, Fill(files, executableFolder, programFolder, [&](const FolderEntry& entry) {
              if (entry.kind == FileKind::Folder) return entry.name == kProfiles;
              return IsProgramFile(files, executableFolder, entry.name);
            }));
  return status;
}

}  // namespace quillon::host::posix
