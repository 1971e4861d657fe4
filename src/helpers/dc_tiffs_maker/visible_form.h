// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

namespace quillon::helpers {

// Whether this is a person's call, with a number of files or without anything, and there is a display to show a window
// on.
bool WantsWindow(int count, char** arguments);

// Shows the window, with the order of "OkList.txt" where there is one, until it is closed; gives the exit code.
int ShowWindow(int count, char** arguments);

}  // namespace quillon::helpers
