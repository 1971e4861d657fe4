// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <memory>
#include <string>

#include "imaging/limits.h"
#include "imaging/rows/row_source.h"
#include "imaging/types.h"

namespace quillon::imaging {

// Displayed: grey stays grey, CMYK and YCCK become ink, everything else RGB. AsStored: samples in the colour space of
// the file, whatever the layout calls them, with the chroma of every pixel. YccAsStored: so YCbCr alone (which
// RowFacts::ycc tells), all else displayed.
enum class JpegColours { Displayed, AsStored, YccAsStored };

// Opens a JPEG to be decoded row by row. It is decoded at 1/shrink of its size (1, 2, 4 or 8; sides rounded up). A
// picture is only held whole when it is progressive. Warnings of the decoder about the picture's data are damage, and
// so is a missing end.
Status OpenJpegRows(const std::string& path, int shrink, const Limits& limits, std::shared_ptr<RowStream>& out,
                    JpegColours colours = JpegColours::Displayed);

}  // namespace quillon::imaging
