// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "helpers/pdf/pdf_writer.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdio>

#include "base/number_text.h"
#include "helpers/pdf/draft_io.h"

namespace quillon::helpers {
namespace {

constexpr int kCatalog = 1;
constexpr int kPages = 2;
constexpr double kLongestSide = 14400;  // the limit of PDF, in units; longer pages use larger units

// Returns a number with at most four decimal places.
std::string Number(double value) { return base::NumberText(std::round(value * 1e4) / 1e4); }

std::string Reference(int number) { return std::to_string(number) + " 0 R"; }

const char* DeviceOf(int components) {
  return components == 1 ? "/DeviceGray" : components == 3 ? "/DeviceRGB" : "/DeviceCMYK";
}

std::string SizeEntries(int width, int height) {
  return "/Type/XObject/Subtype/Image/Width " + std::to_string(width) + "/Height " + std::to_string(height);
}

// Returns the matrix that draws the unit square of a picture upright, as large as the page. The rows of the picture
// begin at the upper edge of the square; the y axis of a page points upwards.
std::array<double, 6> UprightMatrix(int orientation, double width, double height) {
  switch (orientation) {
    case 2:
      return {-width, 0, 0, height, width, 0};
    case 3:
      return {-width, 0, 0, -height, width, height};
    case 4:
      return {width, 0, 0, -height, 0, height};
    case 5:
      return {0, -height, -width, 0, width, height};
    case 6:
      return {0, -height, width, 0, 0, height};
    case 7:
      return {0, height, width, 0, 0, 0};
    case 8:
      return {0, height, -width, 0, width, 0};
    default:
      return {width, 0, 0, height, 0, 0};
  }
}

}  // namespace

PdfWriter::PdfWriter(host::Draft& draft) : draft_(draft), offsets_(kPages, 0) { Emit("%PDF-1.6\n%\xE2\xE3\xCF\xD3\n"); }

void PdfWriter::Emit(std::string_view text) {
  if (result_) result_ = draft_.Write(text.data(), text.size());
  at_ += text.size();
}

int PdfWriter::NewNumber() {
  offsets_.push_back(0);
  return static_cast<int>(offsets_.size());
}

void PdfWriter::Begin(int number) {
  offsets_[static_cast<std::size_t>(number) - 1] = at_;
  Emit(std::to_string(number) + " 0 obj\n");
}

void PdfWriter::EmitStream(int number, const std::string& entries, std::string_view bytes) {
  Begin(number);
  Emit("<<" + entries + "/Length " + std::to_string(bytes.size()) + ">>\nstream\n");
  Emit(bytes);
  Emit("\nendstream\nendobj\n");
}

int PdfWriter::ProfileNumber(const JpegFacts& facts) {
  if (facts.profile.empty()) return 0;
  if (facts.profile != profile_) {
    profile_ = facts.profile;
    profileNumber_ = NewNumber();
    EmitStream(profileNumber_, "/N " + std::to_string(facts.components) + "/Alternate" + DeviceOf(facts.components),
               profile_);
  }
  return profileNumber_;
}

host::Status PdfWriter::AddJpeg(std::string_view bytes, const JpegFacts& facts, int& number) {
  const int profile = ProfileNumber(facts);
  const std::string space =
      profile > 0 ? "[/ICCBased " + Reference(profile) + "]" : std::string(DeviceOf(facts.components));
  const char* decode = facts.inverted ? "/Decode[1 0 1 0 1 0 1 0]" : "";
  number = NewNumber();
  EmitStream(number,
             SizeEntries(facts.width, facts.height) + "/ColorSpace" + space + "/BitsPerComponent 8" + decode +
                 "/Filter/DCTDecode",
             bytes);
  return result_;
}

host::Status PdfWriter::AddStencil(const Stencil& stencil, int& number) {
  number = NewNumber();
  EmitStream(number, SizeEntries(stencil.width, stencil.height) + "/ImageMask true/BitsPerComponent 1/Decode[1 0]",
             stencil.rows);
  return result_;
}

host::Status PdfWriter::AddPage(const Page& page) {
  const double unit = std::max(1.0, std::ceil(std::max(page.width, page.height) / kLongestSide));
  const auto scaled = [&](double value) { return Number(value / unit); };
  std::string content = "q ";
  for (const double value : UprightMatrix(page.orientation, page.width, page.height)) content += scaled(value) + " ";
  content += "cm /P Do Q\n";
  std::string resources = "/P " + Reference(page.picture);
  if (page.stencil > 0) {
    content += "q 1 0 0 rg " + scaled(page.stencilWidth) + " 0 0 " + scaled(page.stencilHeight) + " " +
               scaled(page.left) + " " + scaled(page.bottom) + " cm /S Do Q\n";
    resources += "/S " + Reference(page.stencil);
  }
  const int contents = NewNumber();
  EmitStream(contents, "", content);
  const int number = NewNumber();
  Begin(number);
  Emit("<</Type/Page/Parent " + Reference(kPages) + "/MediaBox[0 0 " + scaled(page.width) + " " + scaled(page.height) +
       "]" + (unit > 1 ? "/UserUnit " + Number(unit) : "") + "/Contents " + Reference(contents) +
       "/Resources<</XObject<<" + resources + ">>>>>>\nendobj\n");
  pages_.push_back(number);
  return result_;
}

void PdfWriter::EmitIndex() {
  const std::uint64_t index = at_;
  const std::string count = std::to_string(offsets_.size() + 1);
  Emit("xref\n0 " + count + "\n0000000000 65535 f \n");
  for (const std::uint64_t offset : offsets_) {
    std::string digits = std::to_string(offset);
    digits.insert(0, 10 - std::min<std::size_t>(10, digits.size()), '0');
    Emit(digits + " 00000 n \n");
  }
  Emit("trailer\n<</Size " + count + "/Root " + Reference(kCatalog) + ">>\nstartxref\n" + std::to_string(index) +
       "\n%%EOF\n");
}

host::Status PdfWriter::Finish() {
  if (!result_) return result_;
  if (pages_.empty()) return {host::Problem::Other, "没有可以保存的页面"};
  Begin(kPages);
  Emit("<</Type/Pages/Count " + std::to_string(pages_.size()) + "/Kids[");
  for (const int page : pages_) Emit(Reference(page) + "\n");
  Emit("]>>\nendobj\n");
  Begin(kCatalog);
  Emit("<</Type/Catalog/Pages " + Reference(kPages) + ">>\nendobj\n");
  EmitIndex();
  return result_ ? CheckPdf(draft_, Pages()) : result_;
}

}  // namespace quillon::helpers
