// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "job/fcutpre.h"

namespace quillon::job {

FCutPre::FCutPre() : Window("FCutPre", "裁剪框预览(空格键=下一张，Ctrl=本图扩边，Z=本图不裁剪)") {}

}  // namespace quillon::job
