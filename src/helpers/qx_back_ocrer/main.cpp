// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include <cstdlib>

#include "helpers/qx_back_ocrer/recognition.h"

namespace quillon::helpers {
namespace {

constexpr const char* kKey = "OCRRes";

host::Status Execute(Helper& helper) {
  Recognition order;
  if (host::Status parsed = ParseRecognition(helper.Parameters(), order); !parsed) return parsed;
  helper.Set(order.application, kKey, "");
  // Tesseract's threads wait for each other more than they work.
  setenv("OMP_THREAD_LIMIT", "1", 1);
  std::string text;
  const host::Status recognised = Recognise(helper, order.picture, text);
  helper.Set(order.application, kKey, recognised ? text : recognised.Why());
  return recognised;
}

}  // namespace
}  // namespace quillon::helpers

int main(int count, char** arguments) {
  return quillon::helpers::RunHelper("QxBackOCRer", count, arguments, quillon::helpers::Execute);
}
