// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <string>

#include "host/files/files.h"
#include "job/settings/cut_settings.h"

// Names and folders of outputs.
namespace quillon::job {

// Returns extension in the wanted case; only ASCII letters change.
std::string CasedExtension(const std::string& extension, ExtensionCase wanted);

// Returns the extension of the output of a source with that extension.
std::string OutputExtension(const CutSettings& settings, const std::string& sourceExtension);

// Returns the path of the output of the listed file folder/name; makes no folder. With keepFolders it lies below the
// output folder as the source does below its root or drive; with over it lies beside the source.
std::string OutputPath(const CutSettings& settings, const std::string& folder, const std::string& name,
                       const std::string& outExtension);

enum class KeepFolders { No, Yes };
enum class Overwrite { No, Yes };

// Returns the path under which a rescued output is saved. With overwrite: the source with the extension in the wanted
// case. Without: named after the source's parent folder P, as outFolder/P.type, or outFolder/P/P.type (the folder is
// made) when folders are kept; several sources of one folder have the same name, and that is intended. ".psd" in the
// name becomes ".jpg": see base::WithoutPsd.
std::string MakeOutputName(host::Files& files, const std::string& source, const std::string& outFolder,
                           KeepFolders keepFolders, Overwrite overwrite, const std::string& type,
                           ExtensionCase extensionCase);

// These decide by the letters of the extension, in upper or lower case.
bool IsPsd(const std::string& extension);
bool IsGif(const std::string& extension);
bool IsJpeg(const std::string& extension);

}  // namespace quillon::job
