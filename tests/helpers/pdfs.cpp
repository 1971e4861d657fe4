// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "helpers/pdfs.h"

#include <poppler/cpp/poppler-document.h>
#include <poppler/cpp/poppler-page.h>

#include <exception>
#include <fstream>
#include <memory>
#include <qpdf/QPDF.hh>
#include <qpdf/QPDFOutlineDocumentHelper.hh>
#include <qpdf/QPDFPageDocumentHelper.hh>
#include <qpdf/QPDFPageObjectHelper.hh>
#include <qpdf/QPDFWriter.hh>
#include <sstream>

namespace quillon::helpers::testing {
namespace {

using Handle = QPDFObjectHandle;

std::string Entries(const PdfPage& page) {
  std::string text;
  const auto add = [&](const char* key, const std::string& value) {
    if (!value.empty()) text += std::string(key) + " " + value;
  };
  add("/MediaBox", page.media);
  add("/CropBox", page.crop);
  add("/Rotate", page.rotate);
  add("/UserUnit", page.unit);
  return text + page.extra;
}

QPDFPageObjectHelper PageOf(QPDF& pdf, const std::string& path, int page) {
  pdf.setSuppressWarnings(true);
  pdf.processFile(path.c_str());
  return QPDFPageDocumentHelper(pdf).getAllPages().at(static_cast<std::size_t>(page));
}

Handle PictureOf(QPDFPageObjectHelper& page, const std::string& name) {
  return page.getAttribute("/Resources", false).getKey("/XObject").getKey(name);
}

std::unique_ptr<poppler::document> Opened(const std::string& path) {
  return std::unique_ptr<poppler::document>(poppler::document::load_from_file(path));
}

}  // namespace

void MakePdf(const std::string& path, const std::vector<PdfPage>& pages, const std::string& inherited, Lock lock) {
  QPDF pdf;
  pdf.emptyPDF();
  const Handle font = pdf.makeIndirectObject(Handle::parse("<</Type/Font/Subtype/Type1/BaseFont/Helvetica>>"));
  QPDFPageDocumentHelper document(pdf);
  for (const PdfPage& page : pages) {
    Handle object = pdf.makeIndirectObject(Handle::parse("<</Type/Page" + Entries(page) + ">>"));
    const std::string content = "BT /F 12 Tf 90 48 Td (" + page.text + ") Tj ET";
    object.replaceKey("/Contents", Handle::newStream(&pdf, content));
    Handle resources = Handle::parse("<</Font<<>>>>");
    resources.getKey("/Font").replaceKey("/F", font);
    object.replaceKey("/Resources", resources);
    document.addPage(QPDFPageObjectHelper(object), false);
  }
  const Handle root = pdf.getRoot().getKey("/Pages");
  for (auto& [key, value] : Handle::parse("<<" + inherited + ">>").getDictAsMap()) {
    Handle(root).replaceKey(key, value);
  }
  const std::vector<Handle> all = pdf.getAllPages();
  for (Handle page : all) {
    Handle link = pdf.makeIndirectObject(Handle::parse("<</Type/Annot/Subtype/Link/Rect[10 10 50 50]>>"));
    link.replaceKey("/Dest", Handle::newArray({all.front(), Handle::newName("/Fit")}));
    page.replaceKey("/Annots", Handle::newArray({link}));
  }
  if (!all.empty()) {
    Handle outlines = pdf.makeIndirectObject(Handle::parse("<</Type/Outlines/Count 1>>"));
    Handle entry = pdf.makeIndirectObject(Handle::parse("<</Title(Last)>>"));
    entry.replaceKey("/Parent", outlines);
    entry.replaceKey("/Dest", Handle::newArray({all.back(), Handle::newName("/Fit")}));
    outlines.replaceKey("/First", entry);
    outlines.replaceKey("/Last", entry);
    pdf.getRoot().replaceKey("/Outlines", outlines);
  }
  QPDFWriter writer(pdf, path.c_str());
  if (lock == Lock::Password) {
    writer.setR6EncryptionParameters("user", "owner", true, true, true, true, true, true, qpdf_r3p_full, true);
  }
  writer.write();
}

void MakeScan(const std::string& path, const std::string& jpeg, int width, int height, double points) {
  QPDF pdf;
  pdf.emptyPDF();
  std::ifstream file(jpeg, std::ios::binary);
  std::stringstream bytes;
  bytes << file.rdbuf();
  Handle image = Handle::newStream(&pdf, bytes.str());
  image.replaceDict(Handle::parse("<</Type/XObject/Subtype/Image/ColorSpace/DeviceRGB/BitsPerComponent 8/Width " +
                                  std::to_string(width) + "/Height " + std::to_string(height) + "/Filter/DCTDecode>>"));
  const double high = points * height / width;
  const std::string sides = std::to_string(points) + " " + std::to_string(high);
  Handle page = pdf.makeIndirectObject(Handle::parse("<</Type/Page/MediaBox[0 0 " + sides + "]>>"));
  page.replaceKey("/Contents", Handle::newStream(&pdf, "q " + std::to_string(points) + " 0 0 " + std::to_string(high) +
                                                           " 0 0 cm /I Do Q"));
  Handle resources = Handle::parse("<</XObject<<>>>>");
  resources.getKey("/XObject").replaceKey("/I", image);
  page.replaceKey("/Resources", resources);
  QPDFPageDocumentHelper(pdf).addPage(QPDFPageObjectHelper(page), false);
  QPDFWriter writer(pdf, path.c_str());
  writer.setStreamDataMode(qpdf_s_preserve);
  writer.write();
}

int PagesOf(const std::string& path) {
  try {
    QPDF pdf;
    pdf.setSuppressWarnings(true);
    pdf.processFile(path.c_str());
    const int pages = static_cast<int>(pdf.getAllPages().size());
    return pdf.anyWarnings() ? 0 : pages;
  } catch (const std::exception&) {
    return 0;
  }
}

std::string Entry(const std::string& path, int page, const std::string& key) {
  QPDF pdf;
  return PageOf(pdf, path, page).getObjectHandle().getKey(key).unparseResolved();
}

std::string StoredPicture(const std::string& path, int page, const std::string& name) {
  QPDF pdf;
  QPDFPageObjectHelper shown = PageOf(pdf, path, page);
  const auto data = PictureOf(shown, name).getRawStreamData();
  return {reinterpret_cast<const char*>(data->getBuffer()), data->getSize()};
}

std::string PictureEntry(const std::string& path, int page, const std::string& key, const std::string& name) {
  QPDF pdf;
  QPDFPageObjectHelper shown = PageOf(pdf, path, page);
  return PictureOf(shown, name).getDict().getKey(key).unparse();
}

int OutlineEntries(const std::string& path) {
  QPDF pdf;
  PageOf(pdf, path, 0);
  QPDFOutlineDocumentHelper outlines(pdf);
  int leading = 0;
  for (QPDFOutlineObjectHelper& entry : outlines.getTopLevelOutlines()) leading += entry.getDestPage().isPageObject();
  return leading;
}

int LinksOf(const std::string& path, int page) {
  QPDF pdf;
  int links = 0;
  for (QPDFAnnotationObjectHelper& link : PageOf(pdf, path, page).getAnnotations("/Link")) {
    links += link.getObjectHandle().getKey("/Dest").getArrayItem(0).isPageObject();
  }
  return links;
}

std::string TextOf(const std::string& path, int page) {
  const auto document = Opened(path);
  const std::unique_ptr<poppler::page> shown(document ? document->create_page(page) : nullptr);
  if (!shown) return "";
  const poppler::byte_array text = shown->text().to_utf8();
  return {text.begin(), text.end()};
}

Seen SeenSize(const std::string& path, int page) {
  const auto document = Opened(path);
  const std::unique_ptr<poppler::page> shown(document ? document->create_page(page) : nullptr);
  if (!shown) return {};
  const poppler::rectf box = shown->page_rect();
  const bool turned =
      shown->orientation() == poppler::page::landscape || shown->orientation() == poppler::page::seascape;
  return turned ? Seen{box.height(), box.width()} : Seen{box.width(), box.height()};
}

}  // namespace quillon::helpers::testing
