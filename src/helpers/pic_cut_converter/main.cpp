// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "helpers/pic_cut_converter/converter_orders.h"

int main(int count, char** arguments) {
  return quillon::helpers::RunHelper("PicCutConverter", count, arguments, quillon::helpers::RunConverterOrder);
}
