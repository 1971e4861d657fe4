// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstdint>
#include <string>
#include <variant>
#include <vector>

#include "controls/control.h"
#include "host/boxes.h"
#include "job/settings/run_report.h"

namespace quillon::cli {

enum class EventKind { Box, Dialog, Title, Beep, Open, Print, Change, File, End };

// What a field holds; nothing where the value does not exist.
using FieldValue = std::variant<std::monostate, bool, std::int64_t, double, std::string, std::vector<std::string>>;

struct Field {
  std::string name;
  FieldValue value;
};

// One thing that happened and that the caller of the program hears of.
struct Event {
  EventKind kind = EventKind::Beep;
  std::vector<Field> fields;

  // The field of that name; nullptr where the event has none.
  const FieldValue* Find(const std::string& name) const;
  // The text of a field, "" where it is none.
  std::string Text(const std::string& name) const;
};

// Name and fields of each kind, as documented.
struct EventFormat {
  EventKind kind;
  const char* name;
  std::vector<std::string> fields;
  std::vector<std::string> atTimes = {};  // fields that not every event of the kind has
};
const std::vector<EventFormat>& EventFormats();
const EventFormat& FormatOf(EventKind kind);

// Sums of everything that a call of the program did.
struct Summary {
  std::size_t written = 0;
  std::size_t none = 0;
  std::size_t skipped = 0;
  double seconds = 0;
  bool stopped = false;
};

Event BoxEvent(const host::Box& box, host::Reply answer);
Event FilesDialogEvent(const std::string& title, const std::string& filter, const std::vector<std::string>& answer);
Event FolderDialogEvent(const std::string& title, const std::string& answer);
// A button of the manual step was pressed for a picture.
Event FrameEvent(const std::string& picture, const std::string& button);
Event TitleEvent(const std::string& window, const std::string& text);
Event BeepEvent();
// kind is "folder", "file" or "address".
Event OpenEvent(const std::string& kind, const std::string& path);
Event PrintEvent(const controls::Control& control);
Event ChangeEvent(const controls::Control& control);
Event FileEvent(const job::FileResult& file);
// A file that was told as written with this output, which does not stand after all.
Event LostEvent(const job::FileResult& file, const std::string& output);
Event EndEvent(const Summary& summary);

// "written", "none", "skipped".
const char* ResultName(job::Result result);

}  // namespace quillon::cli
