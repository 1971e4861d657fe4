// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <string>

#include <qpdf/InputSource.hh>
#include <qpdf/Pipeline.hh>

#include "host/files/files.h"

namespace quillon::helpers {

// The output of qpdf into a draft. Throws std::runtime_error at the first failure; Result() returns that failure.
class DraftPipeline final : public Pipeline {
 public:
  explicit DraftPipeline(host::Draft& draft) : Pipeline("draft", nullptr), draft_(draft) {}

  void write(const unsigned char* data, std::size_t size) override;
  void finish() override {}
  const host::Status& Result() const { return result_; }

 private:
  host::Draft& draft_;
  host::Status result_;
};

// The input of qpdf from a finished draft.
class DraftSource final : public InputSource {
 public:
  explicit DraftSource(host::Draft& draft) : draft_(draft) {}

  qpdf_offset_t findAndSkipNextEOL() override;
  const std::string& getName() const override { return name_; }
  qpdf_offset_t tell() override { return at_; }
  void seek(qpdf_offset_t offset, int whence) override;
  void rewind() override { at_ = 0; }
  std::size_t read(char* out, std::size_t length) override;
  void unreadCh(char ch) override;

 private:
  host::Draft& draft_;
  std::string name_ = "draft";
  qpdf_offset_t at_ = 0;
};

// Checks that a finished draft is an undamaged PDF with that many pages.
host::Status CheckPdf(host::Draft& draft, int pages);

}  // namespace quillon::helpers
