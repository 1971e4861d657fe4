// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <string>
#include <vector>

#include "tools/tools.h"

namespace quillon::tools {

enum class Finish { No, Yes };

// Orders to SavePicsToTiff, which stand in Ops.txt: the target, the mode, and a picture a line.
class TiffOrders {
 public:
  explicit TiffOrders(Tools& tools) : tools_(tools) {}

  // The modes in use.
  static constexpr const char* kSaveNew = "SaveNew";  // a new tiff of the pictures
  static constexpr const char* kCount = "1";          // count the pages of the target

  // Each call adds image to the order; firstFlag set begins a new one and is cleared. With Finish::Yes, and at once for
  // kCount, the order goes to the tool, and firstFlag is set again. A new tiff appears under a short name of target
  // (NewTiff). The tool is ended when its result stops growing for 0.2 seconds, and in any case 0.6 seconds after
  // it began to count. The page count for kCount, else 0.
  int TiffOrder(const std::string& target, bool& firstFlag, const std::string& mode, const std::string& image,
                Finish finish);

  // Pictures of the last order whose names it cannot carry; they are not in the new tiff. Where the target's own name
  // is one of them, nothing is ordered.
  const std::vector<std::string>& Refused() const { return refused_; }

  // Where the tool puts the new tiff of the last order: the target itself where it is short enough, else the first of
  // its short names, numbered 1 to 9, that no file has. "" where all of them are taken; then nothing is ordered.
  const std::string& NewTiff() const { return out_; }

 private:
  void Begin(const std::string& target, const std::string& mode);
  void AddLine(const std::string& line);
  bool Hand();
  void AskForRuntime();
  void Await();
  void AwaitGrowth();
  int ReadCount() const;

  Tools& tools_;
  std::string lines_;
  std::vector<std::string> refused_;
  std::string mode_;
  std::string out_;
};

}  // namespace quillon::tools
