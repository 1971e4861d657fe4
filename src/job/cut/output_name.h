// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <string>

#include "host/files/files.h"

namespace quillon::job {

enum class KeepFolders { No, Yes };
enum class Overwrite { No, Yes };
enum class ExtensionCase { Keep, Upper, Lower };

// extension in the wanted case (ASCII letters only).
std::string CasedExtension(const std::string& extension, ExtensionCase wanted);

// The path under which a rescued output is saved. With overwrite: the source with the extension in the wanted case.
// Without: named after the source's parent folder P, as outFolder/P.type, or outFolder/P/P.type (the folder is made)
// when folders are kept; several sources of one folder meet in one name, and that is intended. The name is
// base::WithoutPsd.
std::string MakeOutputName(host::Files& files, const std::string& source, const std::string& outFolder,
                           KeepFolders keepFolders, Overwrite overwrite, const std::string& type,
                           ExtensionCase extensionCase);

}  // namespace quillon::job
