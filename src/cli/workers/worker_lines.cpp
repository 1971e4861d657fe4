// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "cli/workers/worker_lines.h"

#include <cstdint>
#include <nlohmann/json.hpp>

#include "cli/report/json_io.h"

namespace quillon::cli {
namespace {

using Json = nlohmann::ordered_json;

constexpr const char* kStarted = "started";
constexpr const char* kStaleOutput = "staleOutput";
constexpr const char* kJournal = "journal";
constexpr const char* kJournalDone = "journalDone";
constexpr const char* kProgress = "progress";

// Only for digits that Hex() has written.
int Digit(char c) { return c <= '9' ? c - '0' : c - 'a' + 10; }

std::string Bytes(const std::string& hex) {
  std::string bytes;
  for (std::size_t i = 0; i + 1 < hex.size(); i += 2)
    bytes += static_cast<char>(Digit(hex[i]) * 16 + Digit(hex[i + 1]));
  return bytes;
}

std::optional<std::string> BytesOf(const Json& object, const char* key) {
  return object.contains(key) ? std::optional(Bytes(object[key].get<std::string>())) : std::nullopt;
}

std::vector<std::string> Texts(const Json& list) {
  std::vector<std::string> texts;
  for (const Json& one : list) texts.push_back(one.get<std::string>());
  return texts;
}

FieldValue ValueOf(const Json& value) {
  if (value.is_boolean()) return value.get<bool>();
  if (value.is_number_integer()) return value.get<std::int64_t>();
  if (value.is_number()) return value.get<double>();
  if (value.is_string()) return value.get<std::string>();
  if (value.is_array()) return Texts(value);
  return std::monostate();
}

// Returns the exact bytes of a text or of a list of texts.
FieldValue TrueBytes(const Json& hex) {
  if (hex.is_string()) return Bytes(hex.get<std::string>());
  std::vector<std::string> texts = Texts(hex);
  for (std::string& text : texts) text = Bytes(text);
  return texts;
}

// The reverse of JsonLine(). Throws a Json::exception if a field of the event is missing.
std::optional<Event> EventOf(const Json& object) {
  const std::string name = object.value("event", "");
  for (const EventFormat& format : EventFormats()) {
    if (name != format.name) continue;
    Event event{format.kind, {}};
    const auto read = [&](const std::string& field) {
      const bool bytes = object.contains("bytes") && object["bytes"].contains(field);
      event.fields.push_back({field, bytes ? TrueBytes(object["bytes"][field]) : ValueOf(object.at(field))});
    };
    for (const std::string& field : format.fields) read(field);
    for (const std::string& field : format.optional) {
      if (object.contains(field)) read(field);
    }
    return event;
  }
  return std::nullopt;
}

std::optional<host::JobPart> PartOf(const Json& object, const char* key) {
  if (!object.contains(key)) return std::nullopt;
  const Json& part = object[key];
  return host::JobPart{Bytes(part.at(0).get<std::string>()), part.at(1).get<std::uint64_t>(),
                       part.at(2).get<std::uint64_t>()};
}

std::string LineOf(const char* key, const std::string& bytes) { return Json{{key, Hex(bytes)}}.dump(); }

std::string LineOf(const char* key, const host::JobPart& part) {
  return Json{{key, Json::array({Hex(part.job), part.index, part.count})}}.dump();
}

WorkerLine LineOf(const Json& object) {
  WorkerLine line;
  if (!object.is_object()) return line;
  line.event = EventOf(object);
  line.started = BytesOf(object, kStarted);
  line.staleOutput = BytesOf(object, kStaleOutput);
  line.journal = PartOf(object, kJournal);
  line.journalDone = PartOf(object, kJournalDone);
  if (object.contains(kProgress)) {
    line.progress.emplace();
    line.progress->done = object[kProgress].at(0).get<std::size_t>();
    line.progress->planned = object[kProgress].at(1).get<std::size_t>();
  }
  return line;
}

}  // namespace

std::string StartedLine(const std::string& source) { return LineOf(kStarted, source); }

std::string StaleOutputLine(const std::string& path) { return LineOf(kStaleOutput, path); }

std::string JournalLine(const host::JobPart& part) { return LineOf(kJournal, part); }

std::string JournalDoneLine(const host::JobPart& part) { return LineOf(kJournalDone, part); }

std::string ProgressLine(const Progress& progress) {
  return Json{{kProgress, Json::array({progress.done, progress.planned})}}.dump();
}

WorkerLine ReadWorkerLine(const std::string& line) {
  // A worker that is killed may leave half a line.
  try {
    return LineOf(Json::parse(line));
  } catch (const Json::exception&) {
    return {};
  }
}

}  // namespace quillon::cli
