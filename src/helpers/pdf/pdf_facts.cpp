// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "helpers/pdf/pdf_facts.h"

#include <algorithm>

#include <qpdf/QPDFPageDocumentHelper.hh>

#include "helpers/pdf/open_pdf.h"

namespace quillon::helpers {
namespace {

constexpr double kPointsPerInch = 72;

double SideOf(QPDFObjectHandle& image, const char* key) {
  QPDFObjectHandle side = image.getDict().getKey(key);
  return side.isInteger() ? static_cast<double>(side.getIntValue()) : 0;
}

double ImageDpi(QPDFPageObjectHelper& page, const PdfPageFacts& facts) {
  double longest = 0;
  for (auto& [name, image] : page.getImages()) {
    longest = std::max({longest, SideOf(image, "/Width"), SideOf(image, "/Height")});
  }
  return longest * kPointsPerInch / std::max(facts.width, facts.height);
}

PdfPageFacts FactsOf(QPDFPageObjectHelper& page) {
  const PageBox box = VisibleBox(page);
  PdfPageFacts facts;
  facts.unit = UserUnitOf(page);
  facts.width = box.Width() * facts.unit;
  facts.height = box.Height() * facts.unit;
  if (QuarterTurnsOf(page) % 2 != 0) std::swap(facts.width, facts.height);
  facts.imageDpi = ImageDpi(page, facts);
  return facts;
}

}  // namespace

host::Status ReadPdfFacts(const host::Files& files, const std::string& path, std::vector<PdfPageFacts>& pages) {
  return PdfGuarded([&] {
    QPDF pdf;
    if (host::Status opened = OpenPdf(files, path, pdf); !opened) return opened;
    std::vector<PdfPageFacts> found;
    for (QPDFPageObjectHelper& page : QPDFPageDocumentHelper(pdf).getAllPages()) found.push_back(FactsOf(page));
    if (found.empty()) return DamagedPdf();
    pages = std::move(found);
    return host::Status::Ok();
  });
}

}  // namespace quillon::helpers
