// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include <gtest/gtest.h>

#include "cli/report/json_io.h"

namespace quillon::cli {
namespace {

Parsed Parse(const std::string& text) { return ParseScript(text, "job.json", "/here"); }

TEST(ParseScript, ReadsEveryVerb) {
  const Parsed parsed = Parse(R"js({"steps": [
    {"files": ["a.jpg", "/b"]},
    {"set": {"ChCutA": false, "ChOver": true, "TCutValue(1)": 12.5, "TCutValue(0)": 10, "LOutDir": "o"}},
    {"open": "FBaseOpt"}, {"close": "FBaseOpt"}, {"out": "o"}, {"click": "menuNormalCut"},
    {"print": ["LStatus", "MSF"]}, {"print": "ChCutA"}, {"files": "c"}]})js");
  EXPECT_EQ(parsed.error, "");
  const std::vector<Step> expected{
      {Verb::Files, "", "", {"/here/a.jpg", "/b"}, "job.json 第 1 步"},
      {Verb::Set, "ChCutA", "0", {}, "job.json 第 2 步"},
      {Verb::Set, "ChOver", "1", {}, "job.json 第 2 步"},
      {Verb::Set, "TCutValue(1)", "12.5", {}, "job.json 第 2 步"},
      {Verb::Set, "TCutValue(0)", "10", {}, "job.json 第 2 步"},
      {Verb::Set, "LOutDir", "o", {}, "job.json 第 2 步"},
      {Verb::Open, "FBaseOpt", "", {}, "job.json 第 3 步"},
      {Verb::Close, "FBaseOpt", "", {}, "job.json 第 4 步"},
      {Verb::Set, "Form1.LOutDir", "/here/o", {}, "job.json 第 5 步"},
      {Verb::Click, "menuNormalCut", "", {}, "job.json 第 6 步"},
      {Verb::Print, "LStatus", "", {}, "job.json 第 7 步"},
      {Verb::Print, "MSF", "", {}, "job.json 第 7 步"},
      {Verb::Print, "ChCutA", "", {}, "job.json 第 8 步"},
      {Verb::Files, "", "", {"/here/c"}, "job.json 第 9 步"},
  };
  EXPECT_EQ(parsed.plan.steps, expected);
}

TEST(ParseScript, ReadsAnswersInTheirOrder) {
  const Parsed parsed = Parse(R"({"answers": {"要打开": "No", "添加文件": ["/a.jpg", "/b.jpg"]}})");
  EXPECT_EQ(parsed.error, "");
  const std::string place = "job.json 的 answers";
  const std::vector<Answer> expected{
      {"要打开", "No", place}, {"添加文件", "/a.jpg", place}, {"添加文件", "/b.jpg", place}};
  EXPECT_EQ(parsed.plan.answers, expected);
}

TEST(ParseScript, AnEmptyOneDoesNothing) {
  EXPECT_EQ(Parse("{}").error, "");
  EXPECT_TRUE(Parse("{}").plan.steps.empty());
}

struct Wrong {
  std::string text;
  std::string error;
};

class WrongScript : public testing::TestWithParam<Wrong> {};

TEST_P(WrongScript, IsRefusedWithItsPlace) { EXPECT_EQ(Parse(GetParam().text).error, GetParam().error); }

INSTANTIATE_TEST_SUITE_P(
    Scripts, WrongScript,
    testing::Values(Wrong{"", "job.json 第 1 行：不是正确的 JSON"},
                    Wrong{"{\n\"steps\": [\n{]}", "job.json 第 3 行：不是正确的 JSON"},
                    Wrong{"{} x", "job.json 第 1 行：不是正确的 JSON"},
                    Wrong{"{\"steps\": \"\xFF\"}", "job.json 第 1 行：不是正确的 JSON"},
                    Wrong{"[]", "job.json：应是一个对象 {\"steps\": [...]}"},
                    Wrong{R"({"stepz": []})", "job.json：不认识的键 \"stepz\""},
                    Wrong{R"({"steps": {}})", "job.json：\"steps\" 应是一个列表"},
                    Wrong{R"({"steps": [{"open": "A"}, {"clik": "M"}]})", "job.json 第 2 步：不认识的步骤 \"clik\""},
                    Wrong{R"({"steps": [{}]})", "job.json 第 1 步：每一步应是只有一个键的对象"},
                    Wrong{R"({"steps": ["click"]})", "job.json 第 1 步：每一步应是只有一个键的对象"},
                    Wrong{R"({"steps": [{"open": "A", "click": "B"}]})",
                          "job.json 第 1 步：每一步应是只有一个键的对象"},
                    Wrong{R"({"steps": [{"click": 5}]})", "job.json 第 1 步：应是一段文字：5"},
                    Wrong{R"({"steps": [{"click": ""}]})", "job.json 第 1 步：不能是空的"},
                    Wrong{R"({"steps": [{"files": [null]}]})", "job.json 第 1 步：应是一段文字：null"},
                    Wrong{R"({"steps": [{"files": ["a\u0000b"]}]})", "job.json 第 1 步：文字不能含有空字符"},
                    Wrong{R"({"steps": [{"set": ["A=1"]}]})", "job.json 第 1 步：\"set\" 应是一个对象 {\"控件\": 值}"},
                    Wrong{R"({"steps": [{"set": {"A": {}}}]})", "job.json 第 1 步：应是一段文字，不是列表或对象"},
                    Wrong{R"({"steps": [{"set": {"A": 1, "A": 2}}]})", "job.json：键 \"A\" 出现了两次"},
                    Wrong{R"({"steps": [{"click": "M"}], "steps": []})", "job.json：键 \"steps\" 出现了两次"},
                    Wrong{R"({"answers": ["a"]})", "job.json 的 answers：应是一个对象 {\"文字\": \"回答\"}"},
                    Wrong{R"({"answers": {"a": 1}})", "job.json 的 answers：应是一段文字：1"}));

TEST(ParseScript, OneNameInTwoStepsIsFine) {
  EXPECT_EQ(Parse(R"({"steps": [{"set": {"A": 1}}, {"set": {"A": 2}}]})").error, "");
}

// A deep nest must not bring the reader down.
TEST(ParseScript, SurvivesDeepNesting) {
  const std::string deep = std::string(100000, '[') + std::string(100000, ']');
  EXPECT_NE(Parse(R"({"steps": )" + deep + "}").error, "");
  EXPECT_NE(Parse(R"({"steps": [{"click": )" + deep + "}]}").error, "");
  EXPECT_NE(Parse(R"({"steps": [{"set": {"A": )" + deep + "}}]}").error, "");
}

}  // namespace
}  // namespace quillon::cli
