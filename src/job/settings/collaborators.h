// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <string>

#include "base/rect.h"
#include "imaging/services.h"

// What the job needs of parts built above it. A program without one of them answers the options that need it with the
// missing-resource question.
namespace quillon::job {

// The manual step: each picture goes through the frame window before it is cut.
class ManualFrame {
 public:
  virtual ~ManualFrame() = default;
  // Shows the picture and waits until the user has answered; the answer is in the flags (ManualStepDone,
  // SkipCutThisImage, ManualRotated, ManualAngle, CurrentImagePath) and in TCutValue. turned is the picture as a rule
  // has turned it already, no image where none did. CutBefore: nothing is to be done, an earlier part of this run has
  // cut the source in its place.
  enum class Answer { Given, CutBefore };
  virtual Answer Ask(const std::string& source, const imaging::Image& turned) = 0;
  // Another picture is on show, here or at rest.
  virtual void Shown() = 0;
  // The picture on show, for drivers that go on working on it.
  virtual host::Status ClonePicture(imaging::Image& out) = 0;
  // The batch has ended.
  virtual void Rest() = 0;
};

// The sheets that cut pictures are placed on.
class Sheets {
 public:
  virtual ~Sheets() = default;
  virtual bool Prepare() = 0;
  virtual bool OnBackSide() const = 0;
  virtual void Place(const std::string& cut) = 0;
  virtual void Finish() = 0;
  // A file was added to the list while the window of the sheets is loaded.
  virtual void Listed(const std::string& path, int count) = 0;
};

// The helper programs that finish an output.
class OutputTools {
 public:
  virtual ~OutputTools() = default;
  // Turns the colours of the picture into ink; where that fails it stays as it was.
  virtual host::Status ToCmyk(const std::string& file) = 0;
  virtual host::Status CopyExif(const std::string& source, const std::string& target) = 0;
  // Makes a pdf of the picture; both are files of the program's own. What failed leaves no pdf.
  virtual host::Status ToPdf(const std::string& picture, const std::string& pdf) = 0;
};

// The pages or frames of a file; 0 where none can be told.
struct Pages {
  int count = 0;
  base::Size first;  // of a pdf in pixels at the resolution asked for; empty for others
};

// Counts the pages of the files that modes 1 (gif), 3 (pdf) and 5 (tiff) list.
class PageCounter {
 public:
  virtual ~PageCounter() = default;
  virtual Pages Count(int mode, const std::string& path, int dpi) = 0;
};

}  // namespace quillon::job
