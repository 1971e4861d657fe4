// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "tools/converter_order.h"

#include <charconv>
#include <string_view>

#include "base/path_text.h"

namespace quillon::tools {
namespace {

// Reads "#1#2#3" with exactly as many integers as numbers has elements.
template <std::size_t kCount>
bool ParseMarked(std::string_view text, std::array<int, kCount>& numbers) {
  for (int& number : numbers) {
    if (!text.starts_with('#')) return false;
    text.remove_prefix(1);
    const auto [stopped, error] = std::from_chars(text.data(), text.data() + text.size(), number);
    if (error != std::errc()) return false;
    text.remove_prefix(static_cast<std::size_t>(stopped - text.data()));
  }
  return text.empty();
}

// Returns the target itself if there are no parts.
std::vector<std::string> Numbered(const std::string& target, std::size_t parts) {
  if (parts == 0) return {target};
  const base::PathParts names = base::SplitPath(target);
  std::vector<std::string> targets;
  for (std::size_t number = 1; number <= parts; ++number) {
    targets.push_back(base::JoinPath(names.folder, base::NumberedName(names.name, number, parts), names.extension));
  }
  return targets;
}

// Writes one value a line. Has the same methods as Reader, so that VisitLines can list the lines once for both.
class Writer {
 public:
  void Text(std::string_view value) {
    valid_ = valid_ && value.find('\n') == std::string_view::npos && value.find('\r') == std::string_view::npos;
    text_ += value;
    text_ += '\n';
  }
  void Flag(bool& value) { Text(value ? "True" : "False"); }
  void Flag(std::string_view key, bool& value) { Text(std::string(key) + (value ? "True" : "False")); }
  void Number(int& value) { Text(std::to_string(value)); }
  void Marked(std::array<int*, 3> values) {
    std::string line;
    for (const int* value : values) line += "#" + std::to_string(*value);
    Text(line);
  }

  std::optional<std::string> Finish() { return valid_ ? std::optional(std::move(text_)) : std::nullopt; }

 private:
  std::string text_;
  bool valid_ = true;
};

// Reads the same values back. After the first invalid line the values are meaningless and Good() is false.
class Reader {
 public:
  explicit Reader(std::string_view text) : left_(text) {}

  void Text(std::string& value) {
    const std::size_t end = left_.find('\n');
    if (end == std::string_view::npos) {
      good_ = false;
      return;
    }
    value = left_.substr(0, end);
    if (value.ends_with('\r')) value.pop_back();
    left_.remove_prefix(end + 1);
  }
  void Flag(bool& value) { Flag("", value); }
  void Flag(std::string_view key, bool& value) {
    std::string line;
    Text(line);
    value = line == std::string(key) + "True";
    good_ = good_ && (value || line == std::string(key) + "False");
  }
  void Number(int& value) {
    std::string line;
    Text(line);
    const char* end = line.data() + line.size();
    const auto [stopped, error] = std::from_chars(line.data(), end, value);
    good_ = good_ && error == std::errc() && stopped == end;
  }

  void Marked(std::array<int*, 3> values) {
    std::string line;
    Text(line);
    std::array<int, 3> numbers{};
    good_ = good_ && ParseMarked(line, numbers);
    for (std::size_t i = 0; i < values.size(); ++i) *values[i] = numbers[i];
  }

  bool Good() const { return good_; }
  bool AtEnd() const { return left_.empty(); }

 private:
  std::string_view left_;
  bool good_ = true;
};

// Passes every value to lines, in the order of the file. Used for writing and for reading.
template <class Lines>
void VisitLines(Lines& lines, ConverterOrder& order) {
  lines.Flag("OnlyZoom=", order.OnlyZoom);
  lines.Flag("OnlyConverter=", order.OnlyConverter);
  lines.Flag("NeedZoomS=", order.NeedZoomS);
  lines.Flag("NeedZoomB=", order.NeedZoomB);
  lines.Text(order.source);
  for (std::string& path : order.paths6) lines.Text(path);
  for (bool& flag : order.flags9) lines.Flag(flag);
  for (int& number : order.numbers11) lines.Number(number);
  lines.Flag(order.flag15);
  for (int& number : order.numbers16) lines.Number(number);
  lines.Number(order.size.width);
  lines.Number(order.size.height);
  lines.Number(order.quality);
  lines.Text(order.target);
  lines.Flag("NeedConverter=", order.NeedConverter);
  lines.Number(order.least.width);
  lines.Number(order.least.height);
  for (int& number : order.numbers26) lines.Number(number);
  lines.Flag(order.flag28);
  lines.Flag("CutPic=", order.CutPic);
  lines.Number(order.cutX);
  lines.Number(order.cutY);
  lines.Flag("PicRotate=", order.PicRotate);
  lines.Number(order.angle);
  for (int& number : order.numbers34) lines.Number(number);
  lines.Flag("SpreadSy=", order.SpreadSy);
  for (int& number : order.numbers39) lines.Number(number);
  lines.Flag("ToGray=", order.ToGray);
  lines.Number(order.number42);
  lines.Flag("CoupleArray=", order.CoupleArray);
  lines.Flag("DrawTxtMode=", order.DrawTxtMode);
  lines.Flag("BackSY=", order.BackSY);
  lines.Text(order.text46);
}

template <class Lines>
void VisitLines(Lines& lines, CoupleOrder& order) {
  lines.Text(order.source);
  lines.Text(order.target);
  lines.Number(order.size.width);
  lines.Number(order.size.height);
  lines.Number(order.quality);
  lines.Flag(order.grey);
  lines.Marked({&order.angle, &order.least.width, &order.least.height});
}

}  // namespace

std::optional<std::string> OrderText(const ConverterOrder& order) {
  Writer writer;
  ConverterOrder written = order;
  VisitLines(writer, written);
  if (order.CoupleArray) {
    for (const std::string& item : order.items) writer.Text(item);
  }
  return writer.Finish();
}

std::optional<std::string> OrderText(const CoupleOrder& order) {
  Writer writer;
  CoupleOrder written = order;
  VisitLines(writer, written);
  for (const std::string& item : order.items) writer.Text(item);
  return writer.Finish();
}

std::optional<ConverterOrder> ParseOrder(const std::string& text) {
  Reader reader(text);
  ConverterOrder order;
  VisitLines(reader, order);
  while (reader.Good() && order.CoupleArray && !reader.AtEnd()) reader.Text(order.items.emplace_back());
  return reader.Good() && reader.AtEnd() ? std::optional(std::move(order)) : std::nullopt;
}

std::optional<CoupleOrder> ParseCoupleOrder(const std::string& text) {
  Reader reader(text);
  CoupleOrder order;
  VisitLines(reader, order);
  while (reader.Good() && !reader.AtEnd()) reader.Text(order.items.emplace_back());
  return reader.Good() ? std::optional(std::move(order)) : std::nullopt;
}

std::optional<base::Rect> PartOf(const std::string& item) {
  std::array<int, 4> numbers{};
  if (!ParseMarked(item, numbers)) return std::nullopt;
  const base::Rect part{numbers[0], numbers[1], numbers[2], numbers[3]};
  return part.Empty() ? std::nullopt : std::optional(part);
}

std::vector<std::string> TargetsOf(const ConverterOrder& order) {
  return Numbered(order.target, order.CoupleArray ? order.items.size() : 0);
}

std::vector<std::string> TargetsOf(const CoupleOrder& order) { return Numbered(order.target, order.items.size()); }

}  // namespace quillon::tools
