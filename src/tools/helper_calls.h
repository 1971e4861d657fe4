// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <functional>
#include <initializer_list>
#include <string>
#include <vector>

#include "base/rect.h"
#include "tools/tools.h"

// Helpers that are started once for each task: one function call starts the helper, waits for it and checks its result.
namespace quillon::tools {

// Copies the descriptive metadata (Exif) of source to target with TessaExifHandler.
// Waits at most 20 seconds; a helper that takes longer keeps running.
// Succeeds if target was rewritten. Otherwise target is unchanged and the failure says why, as far as it is known.
host::Status CopyExif(Tools& tools, const std::string& source, const std::string& target);

// Makes the TIFF file out with DCTiffsMaker, by the order in the file list (see OkListText).
// Waits until the helper reports "True" or exits. The timeout is two seconds for each page, and for at least one page;
// in every case the helper is ended afterwards. show is called with the progress texts of the helper.
// Succeeds if out is a new file. Fails with DiskFull if the helper reports a full disk.
// An older file at out that was not replaced is moved to the trash, unless it is one of pictures, the sources.
host::Status RunTiffsMaker(Tools& tools, const std::string& list, const std::vector<std::string>& pictures,
                           const std::string& out, int pages, const std::function<void(const std::string&)>& show);

// Gives the text that QxBackOCRer recognises in a picture; "" if it found nothing or left no answer.
// Waits without a timeout.
host::Status RecogniseText(Tools& tools, const std::string& picture, std::string& text);

// Writes the ellipse inside box to target as a picture of its own with PicCirleCut. Succeeds if target is a new file.
// An older file at target is replaced, or moved to the trash if the helper fails, unless it is source itself.
host::Status CutCircle(Tools& tools, const std::string& source, const std::string& target, const base::Rect& box);

// Runs CutMedia with FFmpeg arguments in one text, in which paths are quoted; paths lists them for the check.
// Returns the failure that the helper reports: DiskFull, or Damaged with its sentence. A helper that was killed reports
// none, so that the caller must check whether the output exists.
host::Status RunCutMedia(Tools& tools, const std::string& parameters, std::initializer_list<std::string> paths);

}  // namespace quillon::tools
