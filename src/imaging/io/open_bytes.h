// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <memory>
#include <string>

#include "host/files/files.h"
#include "imaging/io/bytes.h"

namespace quillon::imaging {

// Opens the bytes of a picture file as control wants them read; control.content replaces the file.
// Unsupported: a folder or a device, which is not opened. Damaged: the file has no bytes.
host::Status OpenBytes(const host::Files& files, const std::string& path, const ReadControl& control,
                       std::shared_ptr<Bytes>& bytes);

}  // namespace quillon::imaging
