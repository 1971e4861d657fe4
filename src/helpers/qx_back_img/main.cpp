// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "helpers/qx_back_img/back_server.h"

namespace quillon::helpers {
namespace {

host::Status Execute(Helper& helper) { return BackServer(helper).Serve(); }

}  // namespace
}  // namespace quillon::helpers

int main(int count, char** arguments) {
  namespace helpers = quillon::helpers;
  return helpers::RunHelper("QxBackImg", count, arguments, helpers::Execute, {.seconds = helpers::kSecondsOfABatch});
}
