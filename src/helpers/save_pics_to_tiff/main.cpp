// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "helpers/save_pics_to_tiff/tiff_order.h"

// Carries out the order in "Ops.txt" of the program folder. Without one there is nothing to do: the program starts it
// so to see whether it can be started.
int main(int count, char** arguments) {
  namespace helpers = quillon::helpers;
  return helpers::RunHelper("SavePicsToTiff", count, arguments, helpers::RunTiffOrder,
                            {.seconds = helpers::kSecondsOfABatch});
}
