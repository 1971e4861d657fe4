// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
//
// CLI11 splits the arguments into options and values; this file gives them their meaning. The order of steps matters
// ("--set" acts on the clicks after it), so the options are read back in the order of the command line. Misuse() checks
// beforehand what CLI11 accepts or reports unclearly.
#include "cli/parse.h"

#include <CLI/App.hpp>
#include <CLI/Config.hpp>
#include <CLI/Formatter.hpp>
#include <algorithm>
#include <charconv>
#include <map>

#include "cli/options.h"
#include "cli/report/json_io.h"
#include "host/files/paths.h"

namespace quillon::cli {
namespace {

constexpr const char* kUnknown = "不认识的选项 ";

Verb VerbOf(const std::string& option) {
  if (option == "--open") return Verb::Open;
  if (option == "--close") return Verb::Close;
  if (option == "--click") return Verb::Click;
  if (option == "--print") return Verb::Print;
  return Verb::Set;
}

constexpr std::size_t kMostShares = 1'000'000;
constexpr std::size_t kMostJobs = 256;

// Returns the number if text consists of digits alone and the number is from 1 to most.
std::optional<std::size_t> WholeNumber(const std::string& text, std::size_t most) {
  std::size_t number = 0;
  const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), number);
  const bool whole = error == std::errc() && end == text.data() + text.size();
  return whole && number >= 1 && number <= most ? std::optional(number) : std::nullopt;
}

// Builds the plan option by option, in the order of the command line. Keeps the first error.
class Builder {
 public:
  Builder(const std::string& folder, const ReadText& readText) : folder_(folder), readText_(readText) {}

  void ReadOption(const std::string& option, const std::string& value) {
    const std::string place = option + " " + value;
    if (option == "--set") {
      ReadSet(value, place);
    } else if (option == "--answer") {
      ReadAnswer(value, place);
    } else if (option == "--script") {
      ReadScript(value);
    } else if (option == "--shard") {
      ReadShard(value);
    } else if (option == "--jobs") {
      ReadJobs(value);
    } else if (option == "--on-existing") {
      ReadOnExisting(value);
    } else if (value.empty()) {
      Fail(option + " 后面不能是空的");
    } else if (option == "--out") {
      parsed_.plan.steps.push_back({Verb::Set, "Form1.LOutDir", host::AbsolutePath(value, folder_), {}, place});
    } else {
      parsed_.plan.steps.push_back({VerbOf(option), value, "", {}, place});
    }
  }

  // Reads the arguments that are no known option: files and folders, the separator "--", and mistyped options.
  void ReadRest(const std::vector<std::string>& rest) {
    Step files{Verb::Files, "", "", {}, "文件"};
    bool onlyFiles = false;
    for (const std::string& item : rest) {
      if (!onlyFiles && item == "--") {
        onlyFiles = true;
      } else if (!onlyFiles && item.size() > 1 && item[0] == '-') {
        Fail(kUnknown + item);
      } else if (item.empty()) {
        Fail("文件名不能是空的");
      } else {
        files.files.push_back(host::AbsolutePath(item, folder_));
      }
    }
    auto& steps = parsed_.plan.steps;
    if (!files.files.empty()) steps.insert(steps.begin(), std::move(files));
  }

  void Fail(const std::string& error) {
    if (parsed_.error.empty()) parsed_.error = error;
  }

  Parsed& Result() { return parsed_; }

 private:
  void ReadSet(const std::string& value, const std::string& place) {
    auto pair = SplitAssignment(value);
    if (!pair || pair->first.empty()) return Fail(place + "：应写成 NAME=VALUE");
    parsed_.plan.steps.push_back({Verb::Set, std::move(pair->first), std::move(pair->second), {}, place});
  }

  void ReadAnswer(const std::string& value, const std::string& place) {
    auto pair = SplitAssignment(value);
    if (!pair) return Fail(place + "：应写成 TEXT=REPLY");
    parsed_.plan.answers.push_back({std::move(pair->first), std::move(pair->second), place});
  }

  void ReadScript(const std::string& file) {
    const auto text = readText_(file);
    if (!text) return Fail("无法读取脚本文件 " + file);
    Parsed script = ParseScript(*text, file, folder_);
    if (!script.error.empty()) return Fail(script.error);
    auto& plan = parsed_.plan;
    std::move(script.plan.steps.begin(), script.plan.steps.end(), std::back_inserter(plan.steps));
    std::move(script.plan.answers.begin(), script.plan.answers.end(), std::back_inserter(plan.answers));
  }

  void ReadShard(const std::string& value) {
    const auto slash = value.find('/');
    const auto index = WholeNumber(value.substr(0, slash), kMostShares);
    const auto count = slash == std::string::npos ? std::nullopt : WholeNumber(value.substr(slash + 1), kMostShares);
    if (!index || !count || *index > *count) {
      return Fail("--shard " + value + "：应写成 I/N，I 从 1 到 N，N 不大于 " + std::to_string(kMostShares));
    }
    parsed_.plan.shard = {*index - 1, *count, folder_ == "/" ? "" : folder_};
  }

  void ReadJobs(const std::string& value) {
    const auto jobs = WholeNumber(value, kMostJobs);
    if (!jobs) return Fail("--jobs " + value + "：应是 1 到 " + std::to_string(kMostJobs) + " 的整数");
    parsed_.plan.jobs = *jobs;
  }

  void ReadOnExisting(const std::string& value) {
    using job::OnExisting;
    static const std::map<std::string, OnExisting> ways{
        {"replace", OnExisting::Replace}, {"rename", OnExisting::Rename}, {"skip", OnExisting::Skip}};
    const auto way = ways.find(value);
    if (way == ways.end()) return Fail("--on-existing " + value + "：应是 replace、rename 或 skip");
    parsed_.plan.onExisting = way->second;
  }

  const std::string& folder_;
  const ReadText& readText_;
  Parsed parsed_;
};

void Define(CLI::App& app) {
  app.set_help_flag();
  app.allow_extras();
  for (const Option& option : Options()) {
    const std::string name = option.name == std::string("--help") ? "-h,--help" : option.name;
    if (*option.argument) {
      app.add_option(name)->expected(1)->multi_option_policy(CLI::MultiOptionPolicy::TakeAll);
    } else {
      app.add_flag(name)->disable_flag_override();
    }
  }
}

// Passes the options to the builder in the order of the command line. parse_order() names an option once for each use,
// and results() holds the values of all its uses; `used` counts how many of them were read.
void ReadOptions(const CLI::App& app, Builder& builder) {
  std::map<const CLI::Option*, std::size_t> used;
  for (const CLI::Option* option : app.parse_order()) {
    if (option->get_items_expected_max() == 0) continue;
    builder.ReadOption("--" + option->get_lnames().front(), option->results().at(used[option]++));
  }
}

const Option* OptionNamed(const std::string& name) {
  for (const Option& option : Options()) {
    if (name == option.name) return &option;
  }
  return nullptr;
}

// Returns a sentence about the misuses that CLI11 accepts or reports unclearly: a missing last value, an empty "--out="
// (CLI11 would use the next argument as its value), and a flag with a value. "" if there is none.
std::string Misuse(const std::vector<std::string>& arguments) {
  for (std::size_t i = 0; i < arguments.size() && arguments[i] != "--"; ++i) {
    const auto equals = arguments[i].find('=');
    const Option* option = OptionNamed(arguments[i].substr(0, equals));
    if (!option) continue;
    const bool needsValue = *option->argument;
    if (!needsValue && equals != std::string::npos) return std::string(option->name) + " 后面不能有内容";
    if (!needsValue) continue;
    if (equals == arguments[i].size() - 1) return std::string(option->name) + " 后面不能是空的";
    if (equals == std::string::npos && ++i == arguments.size()) return std::string(option->name) + " 后面缺少内容";
  }
  return {};
}

}  // namespace

std::optional<std::pair<std::string, std::string>> SplitAssignment(const std::string& text) {
  const auto equals = text.find('=');
  if (equals == std::string::npos) return std::nullopt;
  return std::pair(text.substr(0, equals), text.substr(equals + 1));
}

Parsed ParseArguments(const std::vector<std::string>& arguments, const std::string& folder, const ReadText& readText) {
  Builder builder(folder, readText);
  CLI::App app;
  Define(app);
  builder.Fail(Misuse(arguments));
  if (!builder.Result().error.empty()) return std::move(builder.Result());
  // CLI11 treats a bare "++" as a separator of its own, so that a file of this name is passed as "./++".
  std::vector<std::string> reversed(arguments.rbegin(), arguments.rend());
  std::replace(reversed.begin(), reversed.end(), std::string("++"), std::string("./++"));
  try {
    app.parse(std::move(reversed));
  } catch (const CLI::ParseError& error) {
    builder.Fail(std::string("参数有误：") + error.what());
    return std::move(builder.Result());
  }
  Plan& plan = builder.Result().plan;
  plan.help = app.count("--help") > 0;
  plan.version = app.count("--version") > 0;
  plan.json = app.count("--json") > 0;
  plan.trace = app.count("--trace") > 0;
  plan.listControls = app.count("--list-controls") > 0;
  ReadOptions(app, builder);
  builder.ReadRest(app.remaining());
  return std::move(builder.Result());
}

}  // namespace quillon::cli
