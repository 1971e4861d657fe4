// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <string>

#include "base/rect.h"
#include "imaging/services.h"

// What the job needs of parts built above it. In a program without one of them, the options that need it ask the
// missing-resource question instead.
namespace quillon::job {

// A picture at which the manual step waits.
struct ManualPicture {
  std::string listedPath;        // its name in questions and answers
  std::string source;            // the file to show: the listed one, or a work file made of it
  const imaging::Image& turned;  // the picture if a rule has turned it already, else no image
  int part = 0;                  // the page or frame of the file that is shown, from 0
  // Why the picture cannot be turned or padded before it is cut; "" if it can.
  std::string whyNotTurned = {};
};

// The manual step: the user places the frame on each picture before it is cut.
class ManualFrame {
 public:
  virtual ~ManualFrame() = default;
  // Shows the picture and waits until the user has answered. Stores the answer in the flags (ManualStepDone,
  // SkipCutThisImage, ManualRotated, ManualAngle, CurrentImagePath) and in TCutValue.
  // Returns the decision as text that only the frame reads, "" if the run was stopped or CurrentImagePath is empty.
  // Does not wait if earlier is such a text: that decision is applied again. "" is none.
  virtual std::string Ask(const ManualPicture& picture, const std::string& earlier) = 0;
  // Returns why the last turn of the picture that was asked about failed; success if it did not.
  virtual host::Status LastTurn() const { return {}; }
  // Called when the preview shows another picture, also while no run asks.
  virtual void Shown() = 0;
  // Copies the picture on show, for drivers that go on working on it.
  virtual host::Status ClonePicture(imaging::Image& out) = 0;
  // Called when the batch has ended.
  virtual void Rest() = 0;
};

// The sheets on which cut pictures are placed.
class Sheets {
 public:
  virtual ~Sheets() = default;
  virtual bool Prepare() = 0;
  virtual bool OnBackSide() const = 0;
  virtual void Place(const std::string& cut) = 0;
  virtual void Finish() = 0;
  // Called when a file was added to the list while the window of the sheets is loaded.
  virtual void Listed(const std::string& path, int count) = 0;
};

// The helper programs that finish an output.
class OutputTools {
 public:
  virtual ~OutputTools() = default;
  // Converts the picture to CMYK. If that fails, the file is unchanged.
  virtual host::Status ToCmyk(const std::string& file) = 0;
  virtual host::Status CopyExif(const std::string& source, const std::string& target) = 0;
  // Makes a pdf of the picture; both are work files of the program. If that fails, there is no pdf.
  virtual host::Status ToPdf(const std::string& picture, const std::string& pdf) = 0;
};

// The pages or frames of a file.
struct Pages {
  int count = 0;         // 0 if they cannot be counted
  base::Size first;      // size of the first page of a pdf, in pixels at the given resolution; empty for other files
  std::string why = {};  // why they cannot be counted, "" if they can or nobody knows
};

// Counts the pages of the files that modes 1 (gif), 3 (pdf) and 5 (tiff) list.
class PageCounter {
 public:
  virtual ~PageCounter() = default;
  virtual Pages Count(int mode, const std::string& path, int dpi) = 0;
};

}  // namespace quillon::job
