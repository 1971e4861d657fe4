// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "cli/report/json_io.h"

#include <algorithm>
#include <nlohmann/json.hpp>
#include <set>

#include "base/number_text.h"
#include "base/utf8.h"
#include "host/files/paths.h"

namespace quillon::cli {
namespace {

using Json = nlohmann::ordered_json;

// Returns the line, from 1, of a place in the text.
std::size_t LineOf(const std::string& text, std::size_t byte) {
  const auto end = text.begin() + static_cast<std::ptrdiff_t>(std::min(byte, text.size()));
  return 1 + static_cast<std::size_t>(std::count(text.begin(), end, '\n'));
}

// Reads a script value by value and keeps the first error. place_ says where the reader is, for messages.
class ScriptReader {
 public:
  ScriptReader(std::string file, const std::string& folder) : file_(std::move(file)), folder_(folder) {}

  void Read(const Json& script) {
    place_ = file_;
    if (!script.is_object()) return Fail("应是一个对象 {\"steps\": [...]}");
    for (const auto& [key, value] : script.items()) {
      if (key == "steps") {
        ReadSteps(value);
      } else if (key == "answers") {
        ReadAnswers(value);
      } else {
        Fail("不认识的键 \"" + key + "\"");
      }
      place_ = file_;
    }
  }

  void Fail(const std::string& why) {
    if (parsed_.error.empty()) parsed_.error = place_ + "：" + why;
  }

  Parsed& Result() { return parsed_; }

 private:
  void ReadSteps(const Json& steps) {
    if (!steps.is_array()) return Fail("\"steps\" 应是一个列表");
    for (std::size_t i = 0; i < steps.size(); ++i) {
      place_ = file_ + " 第 " + std::to_string(i + 1) + " 步";
      if (!steps[i].is_object() || steps[i].size() != 1) {
        Fail("每一步应是只有一个键的对象");
        continue;
      }
      ReadStep(steps[i].begin().key(), steps[i].begin().value());
    }
  }

  void ReadStep(const std::string& verb, const Json& value) {
    if (verb == "set") {
      ReadSet(value);
    } else if (verb == "files") {
      Step step{Verb::Files, "", "", {}, place_};
      for (const std::string& file : Texts(value)) step.files.push_back(host::AbsolutePath(file, folder_));
      parsed_.plan.steps.push_back(std::move(step));
    } else if (verb == "print") {
      for (std::string& name : Texts(value)) Add(Verb::Print, std::move(name));
    } else if (verb == "open") {
      Add(Verb::Open, Text(value));
    } else if (verb == "close") {
      Add(Verb::Close, Text(value));
    } else if (verb == "click") {
      Add(Verb::Click, Text(value));
    } else if (verb == "out") {
      Add(Verb::Set, "Form1.LOutDir", host::AbsolutePath(Text(value), folder_));
    } else {
      Fail("不认识的步骤 \"" + verb + "\"");
    }
  }

  void ReadSet(const Json& value) {
    if (!value.is_object()) return Fail("\"set\" 应是一个对象 {\"控件\": 值}");
    for (const auto& [name, entry] : value.items()) Add(Verb::Set, name, ValueText(entry));
  }

  void ReadAnswers(const Json& value) {
    place_ = file_ + " 的 answers";
    if (!value.is_object()) return Fail("应是一个对象 {\"文字\": \"回答\"}");
    for (const auto& [text, replies] : value.items()) {
      for (std::string& reply : Texts(replies)) parsed_.plan.answers.push_back({text, std::move(reply), place_});
    }
  }

  void Add(Verb verb, std::string name, std::string value = {}) {
    parsed_.plan.steps.push_back({verb, std::move(name), std::move(value), {}, place_});
  }

  // Returns what a user would type for the value: "1" for true, "12.5" for 12.5.
  std::string ValueText(const Json& value) {
    if (value.is_boolean()) return value.get<bool>() ? "1" : "0";
    if (value.is_number_integer()) return value.dump();
    if (value.is_number()) return base::NumberText(value.get<double>());
    return Checked(value);
  }

  std::string Text(const Json& value) {
    std::string text = Checked(value);
    if (text.empty()) Fail("不能是空的");
    return text;
  }

  std::string Checked(const Json& value) {
    if (!value.is_string()) {
      Fail(value.is_primitive() ? "应是一段文字：" + value.dump() : "应是一段文字，不是列表或对象");
      return {};
    }
    auto text = value.get<std::string>();
    if (text.find('\0') != std::string::npos) Fail("文字不能含有空字符");
    return text;
  }

  std::vector<std::string> Texts(const Json& value) {
    if (!value.is_array()) return {Text(value)};
    std::vector<std::string> texts;
    for (const Json& entry : value) texts.push_back(Text(entry));
    return texts;
  }

  std::string file_;
  const std::string& folder_;
  std::string place_;
  Parsed parsed_;
};

// Finds a key that occurs twice in one object. The JSON library keeps the last one without an error, so that a step or
// setting of the user would be lost. There is one set of keys for each object that is open.
class DuplicateKeys {
 public:
  bool Accept(Json::parse_event_t event, const Json& value) {
    if (event == Json::parse_event_t::object_start) keys_.emplace_back();
    if (event == Json::parse_event_t::object_end) keys_.pop_back();
    if (event == Json::parse_event_t::key && !keys_.back().insert(value.get<std::string>()).second && first_.empty()) {
      first_ = value.get<std::string>();
    }
    return true;
  }
  const std::string& First() const { return first_; }

 private:
  std::vector<std::set<std::string>> keys_;
  std::string first_;
};

// Writes one field into the object of an event. If its text is not UTF-8, the exact bytes go into the object `bytes`.
struct FieldWriter {
  const std::string& name;
  Json& object;
  Json& bytes;

  void operator()(std::monostate) const { object[name] = nullptr; }
  void operator()(bool value) const { object[name] = value; }
  void operator()(std::int64_t value) const { object[name] = value; }
  void operator()(double value) const { object[name] = value; }
  void operator()(const std::string& value) const {
    object[name] = base::DisplayText(value);
    if (!base::IsUtf8(value)) bytes[name] = Hex(value);
  }
  void operator()(const std::vector<std::string>& values) const {
    Json shown = Json::array();
    Json hex = Json::array();
    for (const std::string& value : values) {
      shown.push_back(base::DisplayText(value));
      hex.push_back(Hex(value));
    }
    object[name] = std::move(shown);
    if (!std::all_of(values.begin(), values.end(), base::IsUtf8)) bytes[name] = std::move(hex);
  }
};

}  // namespace

std::string Hex(const std::string& bytes) {
  static constexpr char kDigits[] = "0123456789abcdef";
  std::string hex;
  for (const char c : bytes) {
    const auto byte = static_cast<unsigned char>(c);
    hex += kDigits[byte >> 4];
    hex += kDigits[byte & 15];
  }
  return hex;
}

Parsed ParseScript(const std::string& text, const std::string& file, const std::string& folder) {
  ScriptReader reader(file, folder);
  DuplicateKeys duplicates;
  try {
    const Json script = Json::parse(
        text, [&](int, Json::parse_event_t event, const Json& value) { return duplicates.Accept(event, value); });
    reader.Read(script);
    if (!duplicates.First().empty()) reader.Result().error = file + "：键 \"" + duplicates.First() + "\" 出现了两次";
  } catch (const Json::parse_error& error) {
    reader.Result().error = file + " 第 " + std::to_string(LineOf(text, error.byte)) + " 行：不是正确的 JSON";
  }
  return std::move(reader.Result());
}

std::string JsonLine(const Event& event) {
  Json object;
  Json bytes;
  object["event"] = FormatOf(event.kind).name;
  for (const Field& field : event.fields) std::visit(FieldWriter{field.name, object, bytes}, field.value);
  if (!bytes.empty()) object["bytes"] = std::move(bytes);
  return object.dump();
}

}  // namespace quillon::cli
