// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

namespace quillon::host::posix {

// From now on blocks of 4 MB and more go back to the system as soon as they are freed. By itself the C library
// keeps, for every thread, as much as twice the largest block that was freed so far (64 MB at most), in the belief that
// it will be wanted again. Called once by a program that works on pictures, before it starts threads.
void ReturnFreedMemory();

}  // namespace quillon::host::posix
