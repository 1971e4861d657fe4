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

// The failure of a PDF that cannot be read.
host::Status DamagedPdf();
host::Status StatusOf(const QPDFExc& failure);

// Opens a PDF without a password. Objects are read from the file on demand. Throws the exceptions of qpdf.
host::Status OpenPdf(const host::Files& files, const std::string& path, QPDF& pdf);

// Runs work, which returns a Status, and converts the exceptions of qpdf to a Status.
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

// Returns the visible part of a page: its crop box, clipped to its media box; both may be inherited. A page without a
// usable media box counts as US Letter, as in common viewers.
PageBox VisibleBox(QPDFPageObjectHelper& page);
// Returns a box of a page, nullopt if it has no usable one.
std::optional<PageBox> BoxOfPage(QPDFPageObjectHelper& page, const char* key);
// Returns the clockwise quarter turns by which a page is rotated for display, 0 to 3.
int QuarterTurnsOf(QPDFPageObjectHelper& page);
// Returns the size of a unit of the page in 1/72 inch, 1 if none is given.
double UserUnitOf(QPDFPageObjectHelper& page);

}  // namespace quillon::helpers
