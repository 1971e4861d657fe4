// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <functional>
#include <string>

#include "tools/command_lines.h"
#include "tools/tools.h"

// What QxImgTool does for the program. Its copy is put there before each run where it is missing. A status that is not
// fine says why the tool was not asked, or that the user ended it.
namespace quillon::tools {

inline constexpr const char* kImgTool = "QxImgTool";

// Page count and the size of the first page in pixels; zeros where the tool left no answer.
struct PdfPages {
  int count = 0;
  int width = 0;
  int height = 0;
};
host::Status CountPdfPages(Tools& tools, const std::string& pdf, int dpi, int quality, PdfPages& pages);

// The page count of a TIFF: by this process, and by the tool only where it finds none. 0 where neither does.
host::Status TiffPages(Tools& tools, const std::string& tiff, int& pages, int number = 1);

// 0 where the tool left no answer. The first page lies in \Tmp.jpg then; what lay there before is gone.
host::Status CountTiffPages(Tools& tools, const std::string& tiff, int& pages, int number = 1);

// Cuts all pages as they are drawn; show gets the progress text. The status is fine when out is a new pdf. What stood
// there before and was not replaced goes to the trash, unless it is pdf itself.
host::Status CutPdf(Tools& tools, const std::string& pdf, const std::string& out, const CutTexts& margins,
                    const std::function<void(const std::string&)>& show);

// Starts to split a pdf into pages and does not wait.
host::Status StartSplitPdf(Tools& tools, const std::string& pdf, const std::string& out);

// Starts to assemble pages that are still being made; compression as in MakeTiffText.
host::Status StartMakeTiff(Tools& tools, const std::string& pageFolder, const std::string& out,
                           const std::string& compression, int pages);
// Waits for that; show gets the size of out so far.
Waited WaitMakeTiff(Tools& tools, const std::string& out, const std::function<void(std::uint64_t)>& show);

// Hands pictures one by one to the tool that binds them into one pdf.
class BinderFeed {
 public:
  explicit BinderFeed(Tools& tools) : tools_(tools) {}

  // The first picture starts the tool with that text. Comes back when the tool has taken the picture, or at once when
  // it cannot hear of it. What else the tool answers is the failure.
  host::Status Give(const std::string& picture, const BindOrder& order);
  // Says that this was the last one; the tool writes the pdf and ends by itself.
  host::Status End();

 private:
  host::Status Start(const BindOrder& order);
  host::Status Taken();

  Tools& tools_;
  bool started_ = false;
};

}  // namespace quillon::tools
