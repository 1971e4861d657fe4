// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
// The documents are a contract: they are compared with the tables of the program, in both directions.
#include <gtest/gtest.h>

#include <fstream>
#include <regex>
#include <set>
#include <sstream>

#include "build_paths.h"
#include "cli/options.h"
#include "cli/plan.h"
#include "cli/replies.h"
#include "cli/report/event.h"
#include "cli/report/json_io.h"
#include "host/testing/test_host.h"
#include "job/program.h"

namespace quillon::cli {
namespace {

std::string ReadSource(const std::string& path) {
  std::ifstream file(std::string(QUILLON_SOURCE_DIR) + "/" + path, std::ios::binary);
  std::ostringstream text;
  text << file.rdbuf();
  EXPECT_FALSE(text.str().empty()) << path;
  return text.str();
}

const std::string& Document() {
  static const std::string text = ReadSource("docs/quillon-batch.md");
  return text;
}

// The part of the document under a heading, up to the next one.
std::string Section(const std::string& heading) {
  const auto begin = Document().find("\n" + heading + "\n");
  if (begin == std::string::npos) return {};
  const auto end = Document().find("\n#", begin + heading.size() + 2);
  return Document().substr(begin, end - begin);
}

// The cells of the rows of a section's table, without its head.
std::vector<std::vector<std::string>> Table(const std::string& heading) {
  std::vector<std::vector<std::string>> rows;
  std::istringstream lines(Section(heading));
  for (std::string line; std::getline(lines, line);) {
    if (!line.starts_with("|")) continue;
    std::vector<std::string> cells;
    std::istringstream text(line.substr(1));
    for (std::string cell; std::getline(text, cell, '|');) {
      const auto first = cell.find_first_not_of(' ');
      cells.push_back(first == std::string::npos ? "" : cell.substr(first, cell.find_last_not_of(' ') + 1 - first));
    }
    rows.push_back(std::move(cells));
  }
  if (rows.size() < 2) return {};
  return {rows.begin() + 2, rows.end()};
}

// All texts in `code` marks.
std::vector<std::string> Codes(const std::string& text) {
  static const std::regex code("`([^`]+)`");
  std::vector<std::string> codes;
  for (std::sregex_iterator it(text.begin(), text.end(), code), end; it != end; ++it) codes.push_back((*it)[1]);
  return codes;
}

std::set<std::string> OptionNames() {
  std::set<std::string> names;
  for (const Option& option : Options()) names.insert(option.name);
  return names;
}

std::set<std::string> Found(const std::string& text, const std::string& pattern) {
  const std::regex wanted(pattern);
  std::set<std::string> found;
  for (std::sregex_iterator it(text.begin(), text.end(), wanted), end; it != end; ++it)
    found.insert("--" + (*it)[1].str());
  return found;
}

TEST(Contract, ListsTheOptions) {
  std::vector<std::string> documented;
  for (const auto& row : Table("## Options")) {
    ASSERT_EQ(row.size(), 3u);
    documented.push_back(Codes(row[0]).at(0) + " " + (row[1].empty() ? "" : Codes(row[1]).at(0)));
  }
  std::vector<std::string> known;
  for (const Option& option : Options()) known.push_back(std::string(option.name) + " " + option.argument);
  EXPECT_EQ(documented, known);
}

TEST(Contract, ListsTheEventsWithTheirFields) {
  std::vector<std::pair<std::string, std::vector<std::string>>> documented;
  for (const auto& row : Table("## Events")) documented.emplace_back(Codes(row.at(0)).at(0), Codes(row.at(1)));
  std::vector<std::pair<std::string, std::vector<std::string>>> known;
  for (const EventFormat& format : EventFormats()) known.emplace_back(format.name, format.fields);
  EXPECT_EQ(documented, known);
}

TEST(Contract, ListsTheReplies) {
  std::vector<std::pair<std::string, std::string>> documented;
  for (const auto& row : Table("### Replies")) documented.emplace_back(Codes(row.at(0)).at(0), Codes(row.at(1)).at(0));
  std::vector<std::pair<std::string, std::string>> known;
  for (const ReplyName& name : ReplyNames()) known.emplace_back(name.name, name.chinese);
  EXPECT_EQ(documented, known);
}

TEST(Contract, ListsTheExitCodes) {
  std::vector<std::string> documented;
  for (const auto& row : Table("## Exit codes")) documented.push_back(row.at(0));
  std::vector<std::string> known;
  for (const Exit code : {Exit::AllWritten, Exit::SomeWithout, Exit::WrongArguments, Exit::Stopped}) {
    known.push_back(std::to_string(static_cast<int>(code)));
  }
  EXPECT_EQ(documented, known);
}

TEST(Contract, ListsTheResultsOfAFile) {
  for (const job::Result result : {job::Result::Written, job::Result::None, job::Result::Skipped}) {
    EXPECT_NE(Section("## Events").find("`" + std::string(ResultName(result)) + "`"), std::string::npos);
  }
}

// The script in the document contains every verb that the text names, and the program accepts it.
TEST(Contract, ShowsAScriptThatWorks) {
  const std::string section = Section("## Scripts");
  const auto begin = section.find("```json\n") + 8;
  const std::string script = section.substr(begin, section.find("```", begin) - begin);
  EXPECT_EQ(ParseScript(script, "doc", "/").error, "");
  const auto text = section.find("Each step holds one verb: ");
  ASSERT_NE(text, std::string::npos);
  for (const std::string& verb : Codes(section.substr(text, section.find('.', text) - text))) {
    EXPECT_NE(script.find("{\"" + verb + "\": "), std::string::npos) << verb;
  }
}

// The page about many machines names only options that exist, and the program accepts its job.
TEST(ManyMachines, ShowsWhatWorks) {
  const std::string page = ReadSource("docs/many-machines.md");
  const auto begin = page.find("```json\n") + 8;
  const Parsed job = ParseScript(page.substr(begin, page.find("```", begin) - begin), "page", "/");
  EXPECT_EQ(job.error, "");
  host::testing::TestHost world;
  const job::Program program(world.host);
  for (const Step& step : job.plan.steps) EXPECT_NE(program.windows.Find(step.name), nullptr) << step.name;
  for (std::size_t at = 0; (at = page.find("quillon-batch --", at)) != std::string::npos; ++at) {
    const std::string line = page.substr(at, page.find('\n', at) - at);
    for (const std::string& option : Found(line, "--([a-z-]+)")) {
      EXPECT_TRUE(OptionNames().contains(option)) << line;
    }
  }
}

TEST(Help, ListsEveryOptionReplyAndExitCode) {
  const std::string help = HelpText();
  for (const Option& option : Options()) {
    EXPECT_NE(help.find(std::string("\n  ") + option.name + " " + option.argument), std::string::npos) << option.name;
  }
  EXPECT_EQ(Found(help, "--([a-z-]+)"), OptionNames());
  for (const ReplyName& name : ReplyNames()) {
    EXPECT_NE(help.find(std::string(name.name) + "（" + name.chinese + "）"), std::string::npos) << name.name;
  }
  for (const char* code : {"0 ", "1 ", "2 ", "3 "}) EXPECT_NE(help.find(code, help.find("退出码")), std::string::npos);
}

TEST(Help, ShowsAScriptThatWorks) {
  const std::string help = HelpText();
  const auto begin = help.find("{\"steps\"");
  ASSERT_NE(begin, std::string::npos);
  const auto end = help.find("\n\n", begin);
  EXPECT_EQ(ParseScript(help.substr(begin, end - begin), "help", "/").error, "");
}

TEST(ManPage, ListsTheOptions) {
  const std::string page = std::regex_replace(ReadSource("docs/quillon-batch.1"), std::regex(R"(\\-)"), "-");
  const std::string options =
      page.substr(page.find(".SH OPTIONS"), page.find(".SH SCRIPTS") - page.find(".SH OPTIONS"));
  EXPECT_EQ(Found(options, R"(\n\.B[IR]? (?:-h ", " )?--([a-z-]+))"), OptionNames());
  for (const Option& option : Options()) {
    if (*option.argument) {
      EXPECT_NE(options.find(std::string(option.name) + " \" " + option.argument + "\""), std::string::npos)
          << option.name;
    }
  }
}

TEST(ManPage, ListsEventsRepliesAndExitCodes) {
  const std::string page = ReadSource("docs/quillon-batch.1");
  const std::string events = page.substr(page.find(".SH EVENTS"));
  for (const EventFormat& format : EventFormats())
    EXPECT_NE(events.find(format.name), std::string::npos) << format.name;
  for (const ReplyName& name : ReplyNames()) EXPECT_NE(page.find(name.name), std::string::npos) << name.name;
  for (const char* code : {"\n.B 0\n", "\n.B 1\n", "\n.B 2\n", "\n.B 3\n"})
    EXPECT_NE(page.find(code), std::string::npos);
  const auto begin = page.find("{\"steps\"");
  EXPECT_EQ(ParseScript(page.substr(begin, page.find(".fi", begin) - begin), "man", "/").error, "");
}

TEST(Completions, OfferTheOptions) {
  const std::string bash = ReadSource("packaging/completions/quillon-batch.bash");
  const auto list = bash.find("$'--set");
  ASSERT_NE(list, std::string::npos);
  EXPECT_EQ(Found(bash.substr(list, bash.find('\n', list) - list), "--([a-z-]+)"), OptionNames());

  const std::string zsh = ReadSource("packaging/completions/_quillon-batch");
  const std::string arguments = zsh.substr(zsh.find("_arguments"));
  EXPECT_EQ(Found(arguments, "--([a-z-]+)[\\[}]"), OptionNames());

  const std::string fish = ReadSource("packaging/completions/quillon-batch.fish");
  EXPECT_EQ(Found(fish, "-l ([a-z-]+)"), OptionNames());
  for (const Option& option : Options()) {
    const std::string name = std::string(option.name).substr(2);
    const bool takesValue =
        fish.find("-l " + name + " -x") != std::string::npos || fish.find("-l " + name + " -r") != std::string::npos;
    EXPECT_EQ(takesValue, *option.argument != 0) << name;
    EXPECT_EQ(zsh.find("--" + name + "[") != std::string::npos && zsh.find("'*--" + name + "[") != std::string::npos,
              *option.argument != 0)
        << name;
  }
}

}  // namespace
}  // namespace quillon::cli
