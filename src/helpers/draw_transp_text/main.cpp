// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "helpers/runtime/helper.h"

// The PNG tool checks that this helper exists but never starts it.
int main(int count, char** arguments) {
  return quillon::helpers::RunHelper("DrawTranspText", count, arguments, [](quillon::helpers::Helper&) {
    return quillon::helpers::UsageError("没有可以执行的操作");
  });
}
