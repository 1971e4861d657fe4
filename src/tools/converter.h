// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "tools/converter_order.h"
#include "tools/tools.h"

namespace quillon::tools {

// Zooms, converts and cuts pictures that are too large for this process with the helper PicCutConverter, so that
// running out of memory cannot end the program.
// Handles one order at a time: an order that a handler gives while another one is in progress is refused.
class Converter {
 public:
  // If the program is missing in the program folder, it is copied from systemFolder.
  explicit Converter(Tools& tools, std::string systemFolder = kSystemFolder);

  // Returns true if there is a helper to start.
  bool Present() const;

  // Writes the order file, starts the helper (at most three attempts) and waits until no process of its name runs.
  // Returns true if all its files (TargetsOf) were written and are pictures.
  // An older file at a target that was not replaced is moved to the trash, or deleted if it is in the program folder;
  // it stays if the user stopped the helper or if it is the source.
  // No order file remains.
  bool RunConverter(const ConverterOrder& order);
  bool RunConverter(const CoupleOrder& order);

  // Scales source to w x h pixels. Fails if source is smaller than minW x minH.
  bool ZoomHuge(const std::string& source, const std::string& target, int w, int h, int quality, int minW, int minH,
                bool toGray);
  // Cuts the rectangle of w x h pixels at cutX, cutY, clipped to source. The flags are written on the lines 9, 10 and
  // 15.
  bool ConvertHuge(const std::string& source, const std::string& target, int cutX, int cutY, int w, int h, int quality,
                   bool toGray, int minW = 32, int minH = 32, bool flagA = false, bool flagB = false,
                   bool flagC = false);

  bool ConverterFailed = false;  // the last order could not be started
  int Retries = 0;               // orders that could not be started
  bool Busy = false;             // an order is in progress

 private:
  bool Run(const std::optional<std::string>& text, const std::string& name, const std::vector<std::string>& sources,
           const std::vector<std::string>& targets);
  WaitResult Perform(const std::string& name, const std::string& text);
  void RemoveOrders();
  void Start();
  bool TryStart();
  void CopyFromSystem();

  Tools& tools_;
  std::string systemFolder_;
};

}  // namespace quillon::tools
