// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <optional>
#include <string>
#include <vector>

namespace quillon::helpers::testing {

// A page of a PDF to be made. Texts are PDF values; "" leaves the entry out.
struct PdfPage {
  std::string media = "[0 0 200 100]";
  std::string crop = "";
  std::string rotate = "";
  std::string unit = "";
  std::string text = "Hello";  // drawn at the middle
  std::string extra = "";      // further entries
};

enum class Lock { None, Password };

// Entries of the tree's root, which pages inherit, come from `inherited`. Every page has a link to the first one, and
// the outline leads to the last one.
void MakePdf(const std::string& path, const std::vector<PdfPage>& pages, const std::string& inherited = "",
             Lock lock = Lock::None);

// One page that a JPEG of that many pixels fills.
void MakeScan(const std::string& path, const std::string& jpeg, int width, int height, double points);

// What another reader sees.
int PagesOf(const std::string& path);  // 0 if it is not a valid PDF
// An entry of a page as text, "null" if there is none.
std::string Entry(const std::string& path, int page, const std::string& key);
// The bytes of the picture that a page shows, as they are stored.
std::string StoredPicture(const std::string& path, int page, const std::string& name = "/P");
std::string PictureEntry(const std::string& path, int page, const std::string& key, const std::string& name = "/P");
int OutlineEntries(const std::string& path);
int LinksOf(const std::string& path, int page);
// The text on a page as Poppler finds it, and the size of the page as it is seen, in points.
std::string TextOf(const std::string& path, int page);
struct Seen {
  double width = 0;
  double height = 0;
};
Seen SeenSize(const std::string& path, int page);

}  // namespace quillon::helpers::testing
