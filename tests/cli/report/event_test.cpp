// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "cli/report/event.h"

#include <gtest/gtest.h>

#include <set>

#include "cli/replies.h"
#include "cli/report/json_io.h"
#include "controls/grid.h"
#include "controls/values.h"
#include "controls/window.h"

namespace quillon::cli {
namespace {

class Rows final : public controls::GridSource {
 public:
  std::size_t RowCount() const override { return 2; }
  std::string Cell(std::size_t row, std::size_t column) const override {
    return std::to_string(row) + "-" + std::to_string(column);
  }
};

struct Probe : controls::Window {
  Probe() : Window("Probe", "") {}
  controls::TextBox TQuality{*this, "TQuality", {}, "80", controls::Content::Integer, {30, 99.5}};
  controls::ComboBox CmbType{*this, "CmbType", {}, {"jpg", "png"}, 1};
  controls::CheckBox ChOff{*this, "ChOff", {.caption = "", .enabled = false, .visible = false}, true};
  controls::Frame Frame1{*this, "Frame1", {.caption = "参数"}};
  controls::Grid MSF{*this, "MSF", {}, {"a", "b", "c"}};
};

std::vector<std::string> Names(const Event& event) {
  std::vector<std::string> names;
  for (const Field& field : event.fields) names.push_back(field.name);
  return names;
}

TEST(Event, EveryKindHasTheFieldsOfItsFormat) {
  Probe probe;
  const std::vector<Event> events{BoxEvent({"t", 1}, host::Reply::Ok),
                                  FilesDialogEvent("t", "f", {"a"}),
                                  FolderDialogEvent("t", "a"),
                                  TitleEvent("Form1", "t"),
                                  BeepEvent(),
                                  OpenEvent("folder", "/a"),
                                  PrintEvent(probe.TQuality),
                                  ChangeEvent(probe.TQuality),
                                  FileEvent({}),
                                  EndEvent({})};
  std::set<EventKind> kinds;
  for (const Event& event : events) {
    kinds.insert(event.kind);
    EXPECT_EQ(Names(event), FormatOf(event.kind).fields) << FormatOf(event.kind).name;
  }
  EXPECT_EQ(kinds.size(), EventFormats().size());
}

TEST(JsonLine, WritesABox) {
  EXPECT_EQ(JsonLine(BoxEvent({"要打开输出目录吗？", 4, "消息"}, host::Reply::No)),
            R"({"event":"box","text":"要打开输出目录吗？","type":4,"title":"消息","answer":"No"})");
}

TEST(JsonLine, WritesDialogs) {
  EXPECT_EQ(JsonLine(FilesDialogEvent("添加", "Png|*.png", {"/a b", "/c"})),
            R"({"event":"dialog","kind":"files","title":"添加","filter":"Png|*.png","answer":["/a b","/c"]})");
  EXPECT_EQ(JsonLine(FolderDialogEvent("选择", "/o")),
            R"({"event":"dialog","kind":"folder","title":"选择","filter":"","answer":"/o"})");
}

TEST(JsonLine, WritesTitleBeepOpenAndChange) {
  Probe probe;
  EXPECT_EQ(JsonLine(TitleEvent("Form1", "  x")), R"({"event":"title","text":"  x","window":"Form1"})");
  EXPECT_EQ(JsonLine(BeepEvent()), R"({"event":"beep"})");
  EXPECT_EQ(JsonLine(OpenEvent("folder", "/o")), R"({"event":"open","path":"/o","kind":"folder"})");
  EXPECT_EQ(JsonLine(ChangeEvent(probe.CmbType)), R"({"event":"change","control":"Probe.CmbType","value":"1"})");
}

TEST(JsonLine, WritesControls) {
  Probe probe;
  EXPECT_EQ(JsonLine(PrintEvent(probe.TQuality)),
            R"({"event":"print","control":"Probe.TQuality","value":"80","text":"80","enabled":true,"visible":true,)"
            R"("items":[],"min":30.0,"max":99.5})");
  EXPECT_EQ(JsonLine(PrintEvent(probe.CmbType)),
            R"({"event":"print","control":"Probe.CmbType","value":"1","text":"png","enabled":true,"visible":true,)"
            R"("items":["jpg","png"],"min":null,"max":null})");
  EXPECT_EQ(JsonLine(PrintEvent(probe.Frame1)),
            R"({"event":"print","control":"Probe.Frame1","value":"参数","text":"参数","enabled":true,"visible":true,)"
            R"("items":[],"min":null,"max":null})");
  EXPECT_EQ(JsonLine(PrintEvent(probe.ChOff)),
            R"({"event":"print","control":"Probe.ChOff","value":"1","text":"1","enabled":false,"visible":false,)"
            R"("items":[],"min":null,"max":null})");
}

TEST(JsonLine, WritesTheRowsOfAGrid) {
  Probe probe;
  const Rows rows;
  probe.MSF.SetSource(&rows);
  EXPECT_EQ(JsonLine(PrintEvent(probe.MSF)),
            R"({"event":"print","control":"Probe.MSF","value":"2","text":"2","enabled":true,"visible":true,)"
            R"("items":["0-0\t0-1\t0-2","1-0\t1-1\t1-2"],"min":null,"max":null})");
}

TEST(JsonLine, WritesFilesAndTheEnd) {
  EXPECT_EQ(JsonLine(FileEvent({3, "/a.jpg", "/o/a.jpg", job::Result::Written, ""})),
            R"({"event":"file","source":"/a.jpg","output":"/o/a.jpg","result":"written","why":""})");
  EXPECT_EQ(JsonLine(FileEvent({0, "/a.jpg", "", job::Result::None, "坏了"})),
            R"({"event":"file","source":"/a.jpg","output":"","result":"none","why":"坏了"})");
  EXPECT_EQ(JsonLine(FileEvent({0, "/a.jpg", "", job::Result::Skipped, "略过"})),
            R"({"event":"file","source":"/a.jpg","output":"","result":"skipped","why":"略过"})");
  EXPECT_EQ(JsonLine(EndEvent({5, 1, 2, 0.50049, false})),
            R"({"event":"end","written":5,"none":1,"skipped":2,"seconds":0.5})");
}

TEST(JsonLine, ShowsNamesThatAreNoTextAndGivesTheirBytes) {
  EXPECT_EQ(JsonLine(FileEvent({1, "/\xD6\xD0.jpg", "/o/x.jpg", job::Result::Written, ""})),
            "{\"event\":\"file\",\"source\":\"/\uFFFD\uFFFD.jpg\",\"output\":\"/o/x.jpg\",\"result\":\"written\","
            "\"why\":\"\",\"bytes\":{\"source\":\"2fd6d02e6a7067\"}}");
  EXPECT_EQ(JsonLine(FilesDialogEvent("t", "", {"/a", "\xFF"})),
            "{\"event\":\"dialog\",\"kind\":\"files\",\"title\":\"t\",\"filter\":\"\",\"answer\":[\"/a\",\"\uFFFD\"],"
            "\"bytes\":{\"answer\":[\"2f61\",\"ff\"]}}");
}

TEST(JsonLine, StaysOneLineWhateverANameHolds) {
  const std::string line = JsonLine(FileEvent({1, "/a\nb\"\\\t\x01.jpg", "", job::Result::None, ""}));
  EXPECT_EQ(line.find('\n'), std::string::npos);
  EXPECT_NE(line.find(R"("/a\nb\"\\\t\u0001.jpg")"), std::string::npos) << line;
}

TEST(ReplyNames, HoldEveryReplyInBothLanguages) {
  const std::vector<std::pair<std::string, host::Reply>> expected{
      {"Ok", host::Reply::Ok},         {"确定", host::Reply::Ok},     {"Cancel", host::Reply::Cancel},
      {"取消", host::Reply::Cancel},   {"Yes", host::Reply::Yes},     {"是", host::Reply::Yes},
      {"No", host::Reply::No},         {"否", host::Reply::No},       {"Retry", host::Reply::Retry},
      {"重试", host::Reply::Retry},    {"Abort", host::Reply::Abort}, {"终止", host::Reply::Abort},
      {"Ignore", host::Reply::Ignore}, {"忽略", host::Reply::Ignore}, {"yes", host::Reply::Yes},
      {"CANCEL", host::Reply::Cancel}};
  for (const auto& [text, reply] : expected) EXPECT_EQ(ReplyNamed(text), reply) << text;
  EXPECT_EQ(ReplyNamed("Yess"), std::nullopt);
  EXPECT_EQ(ReplyNamed(""), std::nullopt);
  EXPECT_STREQ(NameOf(host::Reply::Retry), "Retry");
}

TEST(Event, AReasonIsOneLineAndNoQuestion) {
  const std::pair<const char*, const char*> cases[] = {
      {"", ""},
      {"图片已损坏", "图片已损坏"},
      {"本机缺失资源文件！\r\n要立即下载安装包吗？", "本机缺失资源文件！"},
      {"第一行\r\n第二行\n", "第一行 第二行"},
      {"前一句。后一句", "前一句。后一句"},
      {"要继续吗？", ""},
      {"磁盘已满。继续?", "磁盘已满。"},
      {"目录不存在：/a？b！c\r\n要新建吗？", "目录不存在：/a？b！c"},
  };
  for (const auto& [text, reason] : cases) EXPECT_EQ(ReasonIn(text), reason) << text;
  EXPECT_EQ(FileEvent({.source = "/a.jpg", .why = "一\r\n二"}).Text("why"), "一 二");
  EXPECT_EQ(FileEvent({.source = "/a.jpg", .why = "和“甲？.jpg”相同"}).Text("why"), "和“甲？.jpg”相同");
}

}  // namespace
}  // namespace quillon::cli
