// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <memory>

#include "base/rect.h"
#include "host/files/files.h"
#include "imaging/io/bytes.h"
#include "imaging/limits.h"

namespace quillon::imaging {

// Cuts rect out of a PNG and writes it as a PNG of 8-bit RGBA, row by row; only an interlaced picture is held. What
// lies outside the picture is transparent. rect is in stored pixels and not empty.
//
// The ICC profile, the density and the orientation are those of the source; everything else that it states is dropped.
//
// Damage is looked for in all of the file. Rows below rect are not decoded; their checksums are compared. A failure may
// come after some bytes were written. The output is not checked.
//
// Failures of the file: see PngReader::Open.
host::Status CutPng(std::shared_ptr<Bytes> bytes, base::Rect rect, const Limits& limits, host::Draft& draft);

}  // namespace quillon::imaging
