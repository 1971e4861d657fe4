// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <exception>
#include <string>

#include <qpdf/QPDF.hh>
#include <qpdf/QPDFExc.hh>
#include <qpdf/QPDFPageObjectHelper.hh>

#include "helpers/pdf/page_box.h"
#include "host/files/files.h"

namespace quillon::helpers {

// What kept a PDF from being read.
host::Status DamagedPdf();
host::Status StatusOf(const QPDFExc& failure);

// Opens a PDF whose password is empty. The file is read when objects are asked for; throws as qpdf does.
host::Status OpenPdf(const host::Files& files, const std::string& path, QPDF& pdf);

// Runs work, which returns a Status; what qpdf throws becomes one.
template <class Work>
host::Status PdfGuarded(Work work) {
  try {
    return work();
  } catch (const QPDFExc& failure) {
    return StatusOf(failure);
  } catch (const std::bad_alloc&) {
    return {host::Problem::TooLarge, "内存不足"};
  } catch (const std::exception&) {
    return DamagedPdf();
  }
}

// The visible part of a page: its crop box within its media box, inherited ones too. A page without a usable media box
// counts as a letter sheet, as viewers have it.
PageBox VisibleBox(QPDFPageObjectHelper& page);
// A box of a page, nothing where it has no usable one.
std::optional<PageBox> BoxOfPage(QPDFPageObjectHelper& page, const char* key);
// Clockwise quarter turns after which a page is shown.
int QuarterTurnsOf(QPDFPageObjectHelper& page);
// The size of a unit in 1/72 inch, 1 where none is told.
double UserUnitOf(QPDFPageObjectHelper& page);

}  // namespace quillon::helpers
