// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "host/status.h"

// The failures of pictures, each with its one sentence.
namespace quillon::imaging::fault {

host::Status NoImage();         // an operation on no image
host::Status EmptyFile();       // Damaged: no byte in it
host::Status NotAFile();        // Unsupported: a folder, a device
host::Status NotAPicture();     // Unsupported: content of no known format
host::Status UnreadKind();      // Unsupported: a known format of a kind that is not read
host::Status DamagedPicture();  // Damaged: cut off or corrupt
host::Status SidesTooLarge();   // TooLarge: sides or pixels above the limits
host::Status OutOfMemory();     // TooLarge: decoded size above the limits, or memory ran out
host::Status ResultTooLarge();  // TooLarge: more than the format written can hold
host::Status EmptyRectangle();  // Other: nothing to cut
host::Status NoSize();          // Other: a picture without area was to be made
host::Status UnknownType();     // Unsupported: no type to save as
host::Status NotSaved();        // Other: the encoder failed, or its result did not pass the check
host::Status NoProfile();       // Missing: no such profile
host::Status NotAProfile();     // Unsupported: no profile of the colours wanted, or a damaged one

}  // namespace quillon::imaging::fault
