// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <string>

#include <vector>

#include "tools/converter_order.h"
#include "tools/tools.h"

namespace quillon::tools {

// Pictures too large for this process are zoomed, converted and cut by the helper PicCutConverter, so that a failure of
// memory cannot take the program down. One order at a time: another one, from a handler that the pump let in, is not
// carried out.
class Converter {
 public:
  // A program that the program folder has lost is taken from systemFolder.
  explicit Converter(Tools& tools, std::string systemFolder = kSystemFolder);

  // Whether there is a helper to start.
  bool Present() const;

  // Writes the order file, starts the helper up to three times and waits until no process of its name runs or the user
  // stops it. True when all its files were made (TargetsOf) and are pictures; what stood there before and was not
  // replaced goes to the trash, or from the program folder for good, unless the user stopped it or it is the source. No
  // order file is left behind.
  bool RunConverter(const ConverterOrder& order);
  bool RunConverter(const CoupleOrder& order);

  // source scaled to w x h. A source that is smaller than minW x minH makes no target.
  bool ZoomHuge(const std::string& source, const std::string& target, int w, int h, int quality, int minW, int minH,
                bool toGray);
  // The rectangle of w x h at cutX, cutY, as far as it lies inside source. The flags stand on the lines 9, 10 and 15.
  bool ConvertHuge(const std::string& source, const std::string& target, int cutX, int cutY, int w, int h, int quality,
                   bool toGray, int minW = 32, int minH = 32, bool flagA = false, bool flagB = false,
                   bool flagC = false);

  bool ConverterFailed = false;  // the last order could not be started
  int Retries = 0;               // orders that could not be started
  bool Busy = false;             // an order is under way

 private:
  bool Run(const std::optional<std::string>& text, const std::string& name, const std::vector<std::string>& sources,
           const std::vector<std::string>& targets);
  Waited Perform(const std::string& name, const std::string& text);
  void RemoveOrders();
  void Start();
  bool TryStart();
  void CopyFromSystem();

  Tools& tools_;
  std::string systemFolder_;
};

}  // namespace quillon::tools
