// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <functional>
#include <string>

#include "tools/command_lines.h"
#include "tools/tools.h"

// Calls to QxImgTool. Its program file is copied into the program folder before each run if it is missing.
// A failed status means that the tool could not be asked, or that the user stopped it.
namespace quillon::tools {

inline constexpr const char* kImgTool = "QxImgTool";

// The page count, and the size of the first page in pixels. All are 0 if the tool left no answer. Fails with the
// sentence of the tool, for example about a password.
struct PdfPages {
  int count = 0;
  int width = 0;
  int height = 0;
};
host::Status CountPdfPages(Tools& tools, const std::string& pdf, int dpi, int quality, PdfPages& pages);

// Gives the page count of a TIFF. Counted in this process; the tool is asked only if that finds no page. 0 if both
// fail.
host::Status TiffPages(Tools& tools, const std::string& tiff, int& pages, int number = 1);

// Gives the page count as the tool reports it, 0 if it left no answer. The tool writes the first page to {App}/Tmp.jpg;
// a file from before is removed.
host::Status CountTiffPages(Tools& tools, const std::string& tiff, int& pages, int number = 1);

// Cuts all pages of a PDF. show is called with the progress text.
// Succeeds if out is a new PDF. An older file at out that was not replaced is moved to the trash, unless it is pdf
// itself.
host::Status CutPdf(Tools& tools, const std::string& pdf, const std::string& out, const CutTexts& margins,
                    const std::function<void(const std::string&)>& show);

// Starts to split a PDF into pages and returns without waiting.
host::Status StartSplitPdf(Tools& tools, const std::string& pdf, const std::string& out);

// Starts to assemble pages while they are still being written. compression is as in MakeTiffText.
host::Status StartMakeTiff(Tools& tools, const std::string& pageFolder, const std::string& out,
                           const std::string& compression, int pages);
// Waits for that. show is called with the size of out so far, in bytes.
WaitResult WaitMakeTiff(Tools& tools, const std::string& out, const std::function<void(std::uint64_t)>& show);

// Feeds pictures one by one to the tool, which binds them into one PDF.
class BinderFeed {
 public:
  explicit BinderFeed(Tools& tools) : tools_(tools) {}

  // Adds a picture. The first one starts the tool with the text of order.
  // Returns when the tool has accepted the picture, or fails at once if the settings cannot be written. Any other
  // answer of the tool is the text of the failure.
  host::Status Add(const std::string& picture, const BindOrder& order);
  // Reports that there are no more pictures. The tool then writes the PDF and exits by itself.
  host::Status End();

 private:
  host::Status Start(const BindOrder& order);
  host::Status WaitUntilAccepted();

  Tools& tools_;
  bool started_ = false;
};

}  // namespace quillon::tools
