// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "cli/parse.h"

#include <gtest/gtest.h>

#include <map>

#include "cli/options.h"

namespace quillon::cli {
namespace {

std::optional<std::string> NoScript(const std::string&) { return std::nullopt; }

Parsed Parse(const std::vector<std::string>& arguments) { return ParseArguments(arguments, "/here", NoScript); }

// Steps as short texts: "set NAME=VALUE", "click NAME", "files a|b".
std::vector<std::string> StepTexts(const Plan& plan) {
  static const char* const kVerbs[] = {"set", "open", "close", "click", "print", "files"};
  std::vector<std::string> all;
  for (const Step& step : plan.steps) {
    std::string text = std::string(kVerbs[static_cast<int>(step.verb)]) + " " + step.name;
    if (step.verb == Verb::Set) text += "=" + step.value;
    for (const std::string& file : step.files) text += (text.back() == ' ' ? "" : "|") + file;
    all.push_back(text);
  }
  return all;
}

struct Case {
  std::vector<std::string> arguments;
  std::vector<std::string> steps;
};

class Accepted : public testing::TestWithParam<Case> {};

TEST_P(Accepted, GivesTheSteps) {
  const Parsed parsed = Parse(GetParam().arguments);
  EXPECT_EQ(parsed.error, "");
  EXPECT_EQ(StepTexts(parsed.plan), GetParam().steps);
}

INSTANTIATE_TEST_SUITE_P(
    Arguments, Accepted,
    testing::Values(
        Case{{}, {}}, Case{{"--set", "ChCutA=0"}, {"set ChCutA=0"}}, Case{{"--set=ChCutA=0"}, {"set ChCutA=0"}},
        Case{{"--set", "LOutDir="}, {"set LOutDir="}}, Case{{"--set", "A=b=c"}, {"set A=b=c"}},
        Case{{"--set", "TCutValue(0)=-5"}, {"set TCutValue(0)=-5"}}, Case{{"--set", "A=--x"}, {"set A=--x"}},
        Case{{"--set", "A=[1,2]"}, {"set A=[1,2]"}},
        // Options of all kinds keep their order, files come first.
        Case{{"--print", "A", "--set", "B=1", "x", "--click", "C", "--set", "D=2", "--open", "E", "--close", "E"},
             {"files /here/x", "print A", "set B=1", "click C", "set D=2", "open E", "close E"}},
        Case{{"--out", "o"}, {"set Form1.LOutDir=/here/o"}}, Case{{"--out=/o/"}, {"set Form1.LOutDir=/o"}},
        Case{{"a", "/b", "./c", "d/"}, {"files /here/a|/b|/here/c|/here/d"}},
        Case{{"--", "--set", "-x", "--"}, {"files /here/--set|/here/-x|/here/--"}},
        Case{{"a", "--json", "--", "b"}, {"files /here/a|/here/b"}},
        Case{{"-", "++", "+", "a b", "%d", "[1]", "[a,b].jpg", "{}", "/help"},
             {"files /here/-|/here/++|/here/+|/here/a b|/here/%d|/here/[1]|/here/[a,b].jpg|/here/{}|/help"}},
        Case{{"a\nb", "\xC3\x28\xFF", "图片"}, {"files /here/a\nb|/here/\xC3\x28\xFF|/here/图片"}},
        Case{{"--click", "-strange"}, {"click -strange"}}, Case{{"--print", "--set"}, {"print --set"}}));

struct Wrong {
  std::vector<std::string> arguments;
  std::string error;
};

class Refused : public testing::TestWithParam<Wrong> {};

TEST_P(Refused, NamesWhatIsWrong) { EXPECT_EQ(Parse(GetParam().arguments).error, GetParam().error); }

INSTANTIATE_TEST_SUITE_P(
    Arguments, Refused,
    testing::Values(Wrong{{"--sett", "a=1"}, "不认识的选项 --sett"}, Wrong{{"-x"}, "不认识的选项 -x"},
                    Wrong{{"a", "-5"}, "不认识的选项 -5"}, Wrong{{"--set"}, "--set 后面缺少内容"},
                    Wrong{{"--json", "--print"}, "--print 后面缺少内容"},
                    Wrong{{"--out=", "a.jpg"}, "--out 后面不能是空的"}, Wrong{{"--out", ""}, "--out 后面不能是空的"},
                    Wrong{{"--click", ""}, "--click 后面不能是空的"}, Wrong{{"--json=1"}, "--json 后面不能有内容"},
                    Wrong{{"--set", "ChCutA"}, "--set ChCutA：应写成 NAME=VALUE"},
                    Wrong{{"--jobs", "0"}, "--jobs 0：应是 1 到 256 的整数"},
                    Wrong{{"--jobs", "257"}, "--jobs 257：应是 1 到 256 的整数"},
                    Wrong{{"--jobs", "2x"}, "--jobs 2x：应是 1 到 256 的整数"},
                    Wrong{{"--shard", "0/3"}, "--shard 0/3：应写成 I/N，I 从 1 到 N，N 不大于 1000000"},
                    Wrong{{"--shard", "4/3"}, "--shard 4/3：应写成 I/N，I 从 1 到 N，N 不大于 1000000"},
                    Wrong{{"--shard", "1"}, "--shard 1：应写成 I/N，I 从 1 到 N，N 不大于 1000000"},
                    Wrong{{"--shard", "1/"}, "--shard 1/：应写成 I/N，I 从 1 到 N，N 不大于 1000000"},
                    Wrong{{"--shard", "-1/2"}, "--shard -1/2：应写成 I/N，I 从 1 到 N，N 不大于 1000000"},
                    Wrong{{"--on-existing", "ask"}, "--on-existing ask：应是 replace、rename 或 skip"},
                    Wrong{{"--set", "=1"}, "--set =1：应写成 NAME=VALUE"},
                    Wrong{{"--answer", "确定"}, "--answer 确定：应写成 TEXT=REPLY"}, Wrong{{""}, "文件名不能是空的"},
                    Wrong{{"--script", "no.json"}, "无法读取脚本文件 no.json"}));

TEST(ParseArguments, ReadsAnswersAndFlags) {
  const Parsed parsed = Parse({"--answer", "要打开=No", "--json", "--answer", "=Yes", "--answer", "a=/x=y", "--trace"});
  EXPECT_EQ(parsed.error, "");
  ASSERT_EQ(parsed.plan.answers.size(), 3u);
  EXPECT_EQ(parsed.plan.answers[0], (Answer{"要打开", "No", "--answer 要打开=No"}));
  EXPECT_EQ(parsed.plan.answers[1], (Answer{"", "Yes", "--answer =Yes"}));
  EXPECT_EQ(parsed.plan.answers[2], (Answer{"a", "/x=y", "--answer a=/x=y"}));
  EXPECT_TRUE(parsed.plan.json);
  EXPECT_TRUE(parsed.plan.trace);
  EXPECT_FALSE(parsed.plan.help);
  EXPECT_FALSE(parsed.plan.version);
  EXPECT_FALSE(parsed.plan.listControls);
}

TEST(ParseArguments, ReadsShardsAndJobs) {
  const Plan plan = Parse({"--shard", "2/5", "--jobs", "8"}).plan;
  EXPECT_EQ(plan.shard.index, 1u);
  EXPECT_EQ(plan.shard.count, 5u);
  EXPECT_EQ(plan.shard.base, "/here");
  EXPECT_EQ(plan.jobs, 8u);
  EXPECT_TRUE(Parse({}).plan.shard.Whole());
  EXPECT_EQ(Parse({}).plan.jobs, 1u);
  EXPECT_EQ(ParseArguments({"--shard", "1/2"}, "/", NoScript).plan.shard.base, "");
}

TEST(ParseArguments, ReadsWhatToDoWithExistingOutputs) {
  using job::OnExisting;
  EXPECT_EQ(Parse({}).plan.onExisting, OnExisting::Replace);
  EXPECT_EQ(Parse({"--on-existing", "replace"}).plan.onExisting, OnExisting::Replace);
  EXPECT_EQ(Parse({"--on-existing", "rename"}).plan.onExisting, OnExisting::Rename);
  EXPECT_EQ(Parse({"--on-existing=skip"}).plan.onExisting, OnExisting::Skip);
}

TEST(ParseArguments, KnowsEveryFlagOnItsOwn) {
  EXPECT_TRUE(Parse({"--help"}).plan.help);
  EXPECT_TRUE(Parse({"-h"}).plan.help);
  EXPECT_TRUE(Parse({"--version"}).plan.version);
  EXPECT_TRUE(Parse({"--list-controls"}).plan.listControls);
  const Plan plain = Parse({"a"}).plan;
  EXPECT_FALSE(plain.json || plain.trace || plain.help || plain.version || plain.listControls);
}

// The parser accepts every option of the table, with or without a value as the table says.
TEST(ParseArguments, ReadsTheOptionsOfTheTable) {
  const std::map<std::string, std::string> values{{"N", "2"}, {"I/N", "1/2"}, {"HOW", "skip"}};
  const auto script = [](const std::string&) { return std::optional<std::string>("{}"); };
  for (const Option& option : Options()) {
    std::vector<std::string> arguments{option.name};
    const std::string form = option.argument;
    if (!form.empty()) arguments.push_back(values.contains(form) ? values.at(form) : "A=B");
    EXPECT_EQ(ParseArguments(arguments, "/here", script).error, "") << option.name;
  }
}

TEST(ParseArguments, InsertsTheStepsOfAScriptAtItsPosition) {
  const auto script = [](const std::string& path) {
    EXPECT_EQ(path, "s.json");
    return std::optional<std::string>(R"({"steps": [{"click": "M"}], "answers": {"t": "Ok"}})");
  };
  const Parsed parsed =
      ParseArguments({"--set", "A=1", "--script", "s.json", "--print", "B", "--answer", "u=No"}, "/here", script);
  EXPECT_EQ(StepTexts(parsed.plan), (std::vector<std::string>{"set A=1", "click M", "print B"}));
  ASSERT_EQ(parsed.plan.answers.size(), 2u);
  EXPECT_EQ(parsed.plan.answers[0].text, "t");
  EXPECT_EQ(parsed.plan.answers[1].text, "u");
}

TEST(ParseArguments, RemembersTheOriginOfAStep) {
  EXPECT_EQ(Parse({"--set", "A=1"}).plan.steps.at(0).place, "--set A=1");
  EXPECT_EQ(Parse({"--click", "M"}).plan.steps.at(0).place, "--click M");
}

}  // namespace
}  // namespace quillon::cli
