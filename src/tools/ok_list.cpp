// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "tools/ok_list.h"

#include <string_view>

namespace quillon::tools {
namespace {

// Writes one value a line. Texts that a line cannot hold make the result invalid.
class Lines {
 public:
  void Text(std::string_view value) {
    valid_ = valid_ && value.find_first_of(std::string_view("\n\r\0", 3)) == std::string_view::npos;
    text_ += value;
    text_ += '\n';
  }
  void Number(int value) { Text(std::to_string(value)); }
  void Check(bool value) { Text(value ? "1" : "0"); }
  void Option(bool value) { Text(value ? "True" : "False"); }

  std::optional<std::string> Finish() { return valid_ ? std::optional(std::move(text_)) : std::nullopt; }

 private:
  std::string text_;
  bool valid_ = true;
};

}  // namespace

std::optional<std::string> OkListText(const OkList& list) {
  Lines lines;
  lines.Text(list.application);
  lines.Text(list.target);
  lines.Check(list.compress);
  lines.Number(list.quality);
  lines.Check(list.colour);
  lines.Check(list.grey);
  lines.Check(list.resize);
  lines.Number(list.width);
  lines.Number(list.height);
  lines.Check(list.cut);
  for (const int margin : {list.left, list.right, list.top, list.bottom}) lines.Number(margin);
  lines.Option(list.cutByRule);
  lines.Text(list.cutRule);
  lines.Check(list.matchCase);
  lines.Option(list.cutAll);
  lines.Check(list.headFirst);
  lines.Check(list.verify);
  lines.Text(list.headRule);
  lines.Number(list.dpi);
  lines.Check(list.adjust);
  lines.Number(list.brightness);
  lines.Number(list.contrast);
  lines.Check(list.adjustHeads);
  lines.Check(list.sharpen);
  for (const std::string& picture : list.pictures) lines.Text(picture);
  return lines.Finish();
}

}  // namespace quillon::tools
