// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "cli/report/event.h"

#include <algorithm>
#include <cmath>

#include "base/number_text.h"
#include "cli/replies.h"
#include "controls/grid.h"

namespace quillon::cli {
namespace {

// Returns a limit of a control as a number; std::monostate if the control has no such limit.
FieldValue Limit(const std::string& text) {
  const auto number = base::ParseNumber(text);
  return number ? FieldValue(*number) : FieldValue();
}

// Returns the entries of a list, or the rows of a grid with tabs between the cells.
std::vector<std::string> ItemsOf(const controls::Control& control) {
  const auto* grid = dynamic_cast<const controls::Grid*>(&control);
  if (!grid) return control.Items();
  std::vector<std::string> rows;
  for (std::size_t row = 0; row < grid->RowCount(); ++row) {
    std::string text;
    for (std::size_t column = 0; column < grid->Headers().size(); ++column) {
      text += (column ? "\t" : "") + grid->Cell(row, column);
    }
    rows.push_back(std::move(text));
  }
  return rows;
}

double Thousandths(double seconds) { return std::round(seconds * 1000) / 1000; }

std::int64_t Count(std::size_t count) { return static_cast<std::int64_t>(count); }

std::vector<std::string> LinesOf(std::string_view text) {
  std::vector<std::string> lines;
  while (!text.empty()) {
    const std::size_t end = std::min(text.find_first_of("\r\n"), text.size());
    if (end > 0) lines.emplace_back(text.substr(0, end));
    text.remove_prefix(std::min(end + 1, text.size()));
  }
  return lines;
}

std::string OneLine(std::string_view text) {
  std::string joined;
  for (const std::string& line : LinesOf(text)) joined += (joined.empty() ? "" : " ") + line;
  return joined;
}

// Returns the line up to the sentence before its question, if it ends with one.
std::string WithoutQuestion(const std::string& line) {
  if (!line.ends_with("？") && !line.ends_with("?")) return line;
  std::size_t end = 0;
  for (const std::string_view mark : {"。", "！"}) {
    const std::size_t at = line.rfind(mark);
    if (at != std::string::npos) end = std::max(end, at + mark.size());
  }
  return line.substr(0, end);
}

}  // namespace

const std::vector<EventFormat>& EventFormats() {
  static const std::vector<EventFormat> formats{
      {EventKind::Box, "box", {"text", "type", "title", "answer"}},
      {EventKind::Dialog, "dialog", {"kind", "title", "filter", "answer"}},
      {EventKind::Title, "title", {"text", "window"}},
      {EventKind::Beep, "beep", {}},
      {EventKind::Open, "open", {"path", "kind"}},
      {EventKind::Print, "print", {"control", "value", "text", "enabled", "visible", "items", "min", "max"}},
      {EventKind::Change, "change", {"control", "value"}},
      {EventKind::File, "file", {"source", "output", "result", "why"}, {"more", "lost"}},
      {EventKind::End, "end", {"written", "none", "skipped", "seconds"}},
  };
  return formats;
}

const EventFormat& FormatOf(EventKind kind) {
  return *std::find_if(EventFormats().begin(), EventFormats().end(),
                       [kind](const EventFormat& format) { return format.kind == kind; });
}

const FieldValue* Event::Find(const std::string& name) const {
  for (const Field& field : fields) {
    if (field.name == name) return &field.value;
  }
  return nullptr;
}

std::string Event::Text(const std::string& name) const {
  const FieldValue* value = Find(name);
  const auto* text = value ? std::get_if<std::string>(value) : nullptr;
  return text ? *text : std::string();
}

Event BoxEvent(const host::Box& box, host::Reply answer) {
  return {EventKind::Box,
          {{"text", box.text},
           {"type", std::int64_t{box.type}},
           {"title", box.title},
           {"answer", std::string(NameOf(answer))}}};
}

Event FilesDialogEvent(const std::string& title, const std::string& filter, const std::vector<std::string>& answer) {
  return {EventKind::Dialog,
          {{"kind", std::string("files")}, {"title", title}, {"filter", filter}, {"answer", answer}}};
}

Event FolderDialogEvent(const std::string& title, const std::string& answer) {
  return {EventKind::Dialog,
          {{"kind", std::string("folder")}, {"title", title}, {"filter", std::string()}, {"answer", answer}}};
}

Event FrameEvent(const std::string& picture, const std::string& button) {
  return {EventKind::Dialog,
          {{"kind", std::string("frame")}, {"title", picture}, {"filter", std::string()}, {"answer", button}}};
}

Event TitleEvent(const std::string& window, const std::string& text) {
  return {EventKind::Title, {{"text", text}, {"window", window}}};
}

Event BeepEvent() { return {EventKind::Beep, {}}; }

Event OpenEvent(const std::string& kind, const std::string& path) {
  return {EventKind::Open, {{"path", path}, {"kind", kind}}};
}

Event PrintEvent(const controls::Control& control) {
  return {EventKind::Print,
          {{"control", control.FullName()},
           {"value", control.Value()},
           {"text", control.Text()},
           {"enabled", control.Enabled()},
           {"visible", control.Visible()},
           {"items", ItemsOf(control)},
           {"min", Limit(control.MinText())},
           {"max", Limit(control.MaxText())}}};
}

Event ChangeEvent(const controls::Control& control) {
  return {EventKind::Change, {{"control", control.FullName()}, {"value", control.Value()}}};
}

std::string ReasonIn(std::string_view box) {
  std::string reason;
  for (const std::string& line : LinesOf(box)) {
    const std::string kept = WithoutQuestion(line);
    if (!kept.empty()) reason += (reason.empty() ? "" : " ") + kept;
  }
  return reason;
}

Event FileEvent(const job::FileResult& file) {
  Event event{EventKind::File,
              {{"source", file.source},
               {"output", file.output},
               {"result", std::string(ResultName(file.result))},
               {"why", OneLine(file.why)}}};
  if (!file.more.empty()) event.fields.push_back({"more", file.more});
  return event;
}

Event LostEvent(const job::FileResult& file, const std::string& output) {
  Event event = FileEvent(file);
  event.fields.push_back({"lost", output});
  return event;
}

Event EndEvent(const Summary& summary) {
  return {EventKind::End,
          {{"written", Count(summary.written)},
           {"none", Count(summary.none)},
           {"skipped", Count(summary.skipped)},
           {"seconds", Thousandths(summary.seconds)}}};
}

const char* ResultName(job::Result result) {
  switch (result) {
    case job::Result::Written:
      return "written";
    case job::Result::Skipped:
      return "skipped";
    case job::Result::None:
      break;
  }
  return "none";
}

}  // namespace quillon::cli
