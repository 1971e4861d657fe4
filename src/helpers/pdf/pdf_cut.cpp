// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "helpers/pdf/pdf_cut.h"

#include <qpdf/QPDFPageDocumentHelper.hh>
#include <qpdf/QPDFWriter.hh>

#include "helpers/pdf/draft_io.h"
#include "helpers/pdf/open_pdf.h"

namespace quillon::helpers {
namespace {

constexpr int kDigits = 4;  // decimal places of page boxes

QPDFObjectHandle ArrayOf(const PageBox& box) {
  std::vector<QPDFObjectHandle> numbers;
  for (const double value : {box.left, box.bottom, box.right, box.top}) {
    numbers.push_back(QPDFObjectHandle::newReal(value, kDigits, true));
  }
  return QPDFObjectHandle::newArray(numbers);
}

void CutPage(QPDFPageObjectHelper& page, const Margins& margins) {
  const PageBox left = Trimmed(VisibleBox(page), margins, QuarterTurnsOf(page));
  QPDFObjectHandle object = page.getObjectHandle();
  for (const char* key : {"/BleedBox", "/TrimBox", "/ArtBox"}) {
    if (!object.hasKey(key)) continue;
    const std::optional<PageBox> box = BoxOfPage(page, key);
    const std::optional<PageBox> kept = box ? Common(*box, left) : std::nullopt;
    if (kept) {
      object.replaceKey(key, ArrayOf(*kept));
    } else {
      object.removeKey(key);
    }
  }
  object.replaceKey("/MediaBox", ArrayOf(left));
  object.replaceKey("/CropBox", ArrayOf(left));
}

host::Status Write(QPDF& pdf, int pages, host::Draft& draft) {
  DraftPipeline pipeline(draft);
  const host::Status written = PdfGuarded([&] {
    QPDFWriter writer(pdf);
    writer.setStreamDataMode(qpdf_s_preserve);
    writer.setOutputPipeline(&pipeline);
    writer.write();
    return host::Status::Ok();
  });
  if (!pipeline.Result()) return pipeline.Result();
  return written ? CheckPdf(draft, pages) : written;
}

}  // namespace

host::Status CutPdf(host::Files& files, const std::string& source, const std::string& target, const Margins& margins,
                    const std::function<void(int, int)>& progress) {
  return PdfGuarded([&] {
    QPDF pdf;
    if (host::Status opened = OpenPdf(files, source, pdf); !opened) return opened;
    std::vector<QPDFPageObjectHelper> pages = QPDFPageDocumentHelper(pdf).getAllPages();
    if (pages.empty()) return DamagedPdf();
    const int count = static_cast<int>(pages.size());
    int done = 0;
    for (QPDFPageObjectHelper& page : pages) {
      CutPage(page, margins);
      progress(++done, count);
    }
    if (pdf.anyWarnings() && files.SameFile(source, target)) return DamagedPdf();
    return files.Save(target, [&](host::Draft& draft) { return Write(pdf, count, draft); });
  });
}

}  // namespace quillon::helpers
