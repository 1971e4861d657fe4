// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "host/status.h"

// The errors of the imaging library. Each function returns a Status with the problem named beside it and its one
// Chinese sentence for the user, so that the same failure reads the same in every list and report.
namespace quillon::imaging::fault {

host::Status NoImage();         // Other: an operation on an empty Image
host::Status EmptyFile();       // Damaged: the file has no bytes
host::Status NotAFile();        // Unsupported: a folder or a device
host::Status NotAPicture();     // Unsupported: the content has no known format
host::Status UnreadKind();      // Unsupported: a known format in a variant that cannot be decoded
host::Status DamagedPicture();  // Damaged: truncated or corrupt
host::Status SidesTooLarge();   // TooLarge: sides or pixels exceed the limits
host::Status OutOfMemory();     // TooLarge: decoded size exceeds the limit, or an allocation failed
host::Status ResultTooLarge();  // TooLarge: the output format cannot store a picture of this size
host::Status EmptyRectangle();  // Other: the crop rectangle is empty
host::Status NoSize();          // Other: the result would have no pixels
host::Status UnknownType();     // Unsupported: no encoder for this type
host::Status NotSaved();        // Other: the encoder failed, or its output did not pass CheckOutput
host::Status NoProfile();       // Missing: the profile does not exist
host::Status NotAProfile();     // Unsupported: the profile is damaged or for other colours

}  // namespace quillon::imaging::fault
