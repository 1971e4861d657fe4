// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "helpers/runtime/helper.h"

namespace quillon::helpers {

// How long a helper that runs beside the program waits for its next sign: for as long as a program runs in its folder,
// and half an hour where none does.
class Patience {
 public:
  explicit Patience(Helper& helper);

  // There was a sign.
  void Renew();
  bool Over();

 private:
  host::Host& world_;
  double last_;
};

}  // namespace quillon::helpers
