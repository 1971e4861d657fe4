// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <string>

#include "host/status.h"
#include "job/program.h"

// What the helper programs do to a finished picture before it gets the name of its output. The picture is a work file
// until DeliverWork copies it. What an output lacks although it is written is added to notes.
namespace quillon::job {

// The conversions that a run asks for, in their order.
struct Conversions {
  bool cmyk = false;  // ChToCMYK
  bool exif = false;  // ChKeepExif
  bool pdf = false;   // CmbOutType

  bool None() const { return !cmyk && !exif && !pdf; }
};

// Appends a note. A note that is there already is not repeated.
void AddNote(std::string& notes, const std::string& note);

// Fails unless both profiles of a conversion to CMYK exist and can be used. The reason names the profile.
host::Status CheckCmykProfiles(Program& program);

// Converts the picture. Fails if the disk is full or the run is stopped. After any other failure the picture is as
// before, and there is a note. A format that cannot hold CMYK gives a note too.
host::Status WorkToCmyk(Program& program, const std::string& picture, std::string& notes);

// Copies the Exif data of source to the picture. A failure is a note.
void CopyExifToWork(Program& program, const std::string& source, const std::string& picture, std::string& notes);

// Makes a pdf of the picture, and sets picture to it. The picture itself is removed.
host::Status WorkToPdf(Program& program, std::string& picture);

// Copies the picture to its output and removes it. title is that of the question about a full disk.
host::Status DeliverWork(Program& program, const std::string& picture, const std::string& output, const char* title);

// Makes all conversions and delivers the picture.
host::Status FinishWork(Program& program, const Conversions& wanted, const std::string& exifSource, std::string picture,
                        const std::string& output, std::string& notes);

}  // namespace quillon::job
