// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "helpers/qx_back_img/back_server.h"

namespace quillon::helpers {
namespace {

host::Status Execute(Helper& helper) { return BackServer(helper).Serve(); }

}  // namespace
}  // namespace quillon::helpers

int main(int count, char** arguments) {
  using namespace quillon::helpers;
  return RunHelper("QxBackImg", count, arguments, Execute, {.seconds = kSecondsOfABatch});
}
