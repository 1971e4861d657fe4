// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <string>

#include "job/settings/collaborators.h"

// Collaborators that are there and do nothing, for tests of what depends on their being there.
namespace quillon::job {

class IdleFrame final : public ManualFrame {
 public:
  std::string Ask(const ManualPicture&, const std::string&) override { return {}; }
  void Shown() override {}
  host::Status ClonePicture(imaging::Image&) override { return {}; }
  void Rest() override {}
};

class IdleSheets final : public Sheets {
 public:
  bool Prepare() override { return true; }
  bool OnBackSide() const override { return false; }
  void Place(const std::string&) override {}
  void Finish() override {}
  void Listed(const std::string&, int) override {}
};

class IdleTools final : public OutputTools {
 public:
  host::Status ToCmyk(const std::string&) override { return {}; }
  host::Status CopyExif(const std::string&, const std::string&) override { return {}; }
  host::Status ToPdf(const std::string&, const std::string&) override { return {}; }
};

}  // namespace quillon::job
