// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "job/cut/output_name.h"

#include "base/path_text.h"

namespace quillon::job {

std::string CasedExtension(const std::string& extension, ExtensionCase wanted) {
  switch (wanted) {
    case ExtensionCase::Upper:
      return base::ToUpperAscii(extension);
    case ExtensionCase::Lower:
      return base::ToLowerAscii(extension);
    case ExtensionCase::Keep:
      break;
  }
  return extension;
}

std::string MakeOutputName(host::Files& files, const std::string& source, const std::string& outFolder,
                           KeepFolders keepFolders, Overwrite overwrite, const std::string& type,
                           ExtensionCase extensionCase) {
  const base::PathParts parts = base::SplitPath(source);
  const bool over = overwrite == Overwrite::Yes;
  const std::string extension = CasedExtension(over ? parts.extension : type, extensionCase);
  if (over) return base::WithoutPsd(base::JoinPath(parts.folder, parts.name, extension));

  const std::string name = parts.folder.substr(parts.folder.rfind('/') + 1);
  std::string folder = outFolder;
  if (keepFolders == KeepFolders::Yes) {
    folder = base::JoinPath(outFolder, name);
    // A folder that cannot be made shows when the file is saved.
    static_cast<void>(files.MakeFolders(folder));
  }
  return base::WithoutPsd(base::JoinPath(folder, name, extension));
}

}  // namespace quillon::job
