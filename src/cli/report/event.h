// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <variant>
#include <vector>

#include "controls/control.h"
#include "host/boxes.h"
#include "job/settings/run_report.h"

namespace quillon::cli {

enum class EventKind { Box, Dialog, Title, Beep, Open, Print, Change, File, End };

// The value of a field. std::monostate stands for a value that does not exist and becomes null in JSON.
using FieldValue = std::variant<std::monostate, bool, std::int64_t, double, std::string, std::vector<std::string>>;

struct Field {
  std::string name;
  FieldValue value;
};

// One event for the caller of the program. Texts are bytes: names of files need not be UTF-8.
struct Event {
  EventKind kind = EventKind::Beep;
  std::vector<Field> fields;

  // Returns the field with that name, nullptr if there is none.
  const FieldValue* Find(const std::string& name) const;
  // Returns the text of a field; "" if there is no such field or it is no text.
  std::string Text(const std::string& name) const;
};

// The name and the fields of one kind of event. docs/quillon-batch.md documents the same, and a test compares the two.
struct EventFormat {
  EventKind kind;
  const char* name;                        // the value of "event" in JSON
  std::vector<std::string> fields;         // every event of this kind has them, in this order
  std::vector<std::string> optional = {};  // only some events of this kind have them
};
// Returns one entry for each EventKind.
const std::vector<EventFormat>& EventFormats();
const EventFormat& FormatOf(EventKind kind);

// The sums of everything that one call of the program did.
struct Summary {
  std::size_t written = 0;
  std::size_t none = 0;
  std::size_t skipped = 0;
  double seconds = 0;    // the time of all runs
  bool stopped = false;  // some run was stopped
};

// Constructors of events, one for each kind or variant.

Event BoxEvent(const host::Box& box, host::Reply answer);
Event FilesDialogEvent(const std::string& title, const std::string& filter, const std::vector<std::string>& answer);
Event FolderDialogEvent(const std::string& title, const std::string& answer);
// A dialog event: the manual step of the picture was answered with the button.
Event FrameEvent(const std::string& picture, const std::string& button);
Event TitleEvent(const std::string& window, const std::string& text);
Event BeepEvent();
// kind is "folder", "file" or "address".
Event OpenEvent(const std::string& kind, const std::string& path);
Event PrintEvent(const controls::Control& control);
Event ChangeEvent(const controls::Control& control);
// Returns what the text of a box says, in one line and without the question that it asks.
std::string ReasonIn(std::string_view box);

Event FileEvent(const job::FileResult& file);
// A file event for a source that was reported as written, but whose output was lost afterwards. It has the further
// field "lost": the path of that output.
Event LostEvent(const job::FileResult& file, const std::string& output);
Event EndEvent(const Summary& summary);

// Returns "written", "none" or "skipped".
const char* ResultName(job::Result result);

}  // namespace quillon::cli
