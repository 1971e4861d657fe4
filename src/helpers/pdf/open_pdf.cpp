// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "helpers/pdf/open_pdf.h"

#include <cmath>

namespace quillon::helpers {
namespace {

constexpr PageBox kLetter{0, 0, 612, 792};
constexpr double kMaxUserUnit = 75000;

}  // namespace

host::Status DamagedPdf() { return {host::Problem::Damaged, "文件已损坏"}; }

host::Status StatusOf(const QPDFExc& failure) {
  switch (failure.getErrorCode()) {
    case qpdf_e_password:
      return {host::Problem::Denied, "文件有密码保护"};
    case qpdf_e_unsupported:
      return {host::Problem::Unsupported, "不支持这种Pdf文件"};
    case qpdf_e_system:
      return {host::Problem::Other, "文件无法读取"};
    default:
      return DamagedPdf();
  }
}

host::Status OpenPdf(const host::Files& files, const std::string& path, QPDF& pdf) {
  const auto facts = files.Stat(path);
  if (!facts) return {host::Problem::Missing, "文件不存在"};
  if (facts->kind != host::FileKind::File) return {host::Problem::Unsupported, "这不是Pdf文件"};
  if (facts->size == 0) return {host::Problem::Damaged, "文件是空的"};
  pdf.setSuppressWarnings(true);
  pdf.processFile(path.c_str());
  return host::Status::Ok();
}

std::optional<PageBox> BoxOfPage(QPDFPageObjectHelper& page, const char* key) {
  QPDFObjectHandle array = page.getAttribute(key, false);
  if (!array.isArray() || array.getArrayNItems() < 4) return std::nullopt;
  std::array<double, 4> corners{};
  for (int i = 0; i < 4; ++i) {
    QPDFObjectHandle number = array.getArrayItem(i);
    if (!number.isNumber()) return std::nullopt;
    corners[static_cast<std::size_t>(i)] = number.getNumericValue();
  }
  return BoxOf(corners);
}

PageBox VisibleBox(QPDFPageObjectHelper& page) {
  const PageBox media = BoxOfPage(page, "/MediaBox").value_or(kLetter);
  const std::optional<PageBox> crop = BoxOfPage(page, "/CropBox");
  return crop ? Common(media, *crop).value_or(media) : media;
}

int QuarterTurnsOf(QPDFPageObjectHelper& page) {
  QPDFObjectHandle rotate = page.getAttribute("/Rotate", false);
  return rotate.isInteger() ? QuarterTurns(rotate.getIntValueAsInt()) : 0;
}

double UserUnitOf(QPDFPageObjectHelper& page) {
  QPDFObjectHandle unit = page.getObjectHandle().getKey("/UserUnit");
  const double value = unit.isNumber() ? unit.getNumericValue() : 1;
  return value > 0 && value <= kMaxUserUnit ? value : 1;
}

}  // namespace quillon::helpers
