// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <string>
#include <vector>

#include "tools/tools.h"

namespace quillon::tools {

enum class Finish { No, Yes };

// Collects orders for SavePicsToTiff in Ops.txt (the target, the mode and one line for each picture) and runs them.
class TiffOrders {
 public:
  explicit TiffOrders(Tools& tools) : tools_(tools) {}

  // The modes.
  static constexpr const char* kCount = "1";  // count the pages of the target

  // Adds image to the order. If firstFlag is true, a new order is started first and the flag is cleared.
  // With Finish::Yes, and always for kCount, the order is run and firstFlag is set again.
  // The new TIFF appears under a short name of target (see NewTiff).
  // The tool is ended when its result has not grown for 0.2 seconds; when it counts, after 0.6 seconds.
  // Returns the page count for kCount, otherwise 0.
  int TiffOrder(const std::string& target, bool& firstFlag, const std::string& mode, const std::string& image,
                Finish finish);

  // The pictures of the last order whose names the order file cannot hold; the new TIFF does not contain them. If the
  // name of the target is one of them, the tool is not run.
  const std::vector<std::string>& Refused() const { return refused_; }

  // The path of the new TIFF of the last order: target itself if its name is short enough, otherwise the first of its
  // short names, numbered 1 to 9, that does not exist. "" if all of them exist; the tool is not run then.
  const std::string& NewTiff() const { return out_; }

 private:
  void Begin(const std::string& target, const std::string& mode);
  void AddLine(const std::string& line);
  bool Submit();
  void AskForRuntime();
  void WaitForTool();
  void EndUnlessGrowing();
  int ReadCount() const;

  Tools& tools_;
  std::string lines_;
  std::vector<std::string> refused_;
  std::string mode_;
  std::string out_;
};

}  // namespace quillon::tools
