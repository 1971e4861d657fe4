// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <string>

namespace quillon::job {

class Program;

enum class Admission {
  Added,
  PassedOver,  // left out by the filter of small pictures or for its page count
  Ended        // has no size; adding ends here, unless the caller goes on
};

// The rule by which a file becomes a row of the list, for the mode that CmbCutMode shows when it is made.
class AdmissionRule {
 public:
  explicit AdmissionRule(Program& program);

  // Asks the missing-resource question, leaves the mode and answers false where the mode counts pages and the program
  // has nothing to count them with.
  bool Ready();
  // Measures the file and adds its row, or tells why not. A file without a size ends the adding, unless the caller goes
  // on; the first is answered with the message, the status panel and the observer name each.
  Admission Admit(const std::string& path);
  // What the status panel tells of the pictures that ChFilter left out, "" where it left out none.
  std::string FilterText() const;

 private:
  bool CountsPages() const;
  void Refuse(const std::string& path, const std::string& why);

  Program& program_;
  int mode_;
  bool asked_ = false;
  std::size_t filtered_ = 0;
};

}  // namespace quillon::job
