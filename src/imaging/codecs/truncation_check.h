// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "imaging/codecs/vips_loader.h"
#include "imaging/io/bytes.h"

namespace quillon::imaging {

// Whether a file reaches as far as its own structure says, as far as its decoder does not find out by itself: the end
// chunk of a png, the trailer of a gif, the values that describe the first page of a tiff. Other formats pass.
bool ReachesItsEnd(Format format, Bytes& bytes);

}  // namespace quillon::imaging
