// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
// The arguments of workers and the lines that they send.
#include "cli/workers/worker_lines.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "cli/report/json_io.h"
#include "cli/workers/workers.h"

namespace quillon::cli {
namespace {

TEST(WorkerLines, CarryEveryEvent) {
  const std::string odd("\xD6\xD0\n\x01", 4);
  const std::vector<Event> events{
      BoxEvent({"text", 36}, host::Reply::No),
      FilesDialogEvent("title", "filter", {"/a", odd}),
      FolderDialogEvent("title", ""),
      TitleEvent("Form1", "  正在处理"),
      BeepEvent(),
      OpenEvent("folder", odd),
      FileEvent({3, odd, "/out", job::Result::Written, ""}),
      FileEvent({0, "/a", "/out/1", job::Result::Written, "", {"/out/2", odd}}),
      EndEvent({1, 2, 3, 4.5, false}),
  };
  for (const Event& event : events) {
    const WorkerLine line = ReadWorkerLine(JsonLine(event));
    ASSERT_TRUE(line.event) << JsonLine(event);
    EXPECT_EQ(JsonLine(*line.event), JsonLine(event));
    EXPECT_FALSE(line.started || line.staleOutput || line.progress);
  }
  EXPECT_EQ(ReadWorkerLine(JsonLine(events[6])).event->Text("source"), odd);
}

TEST(WorkerLines, CarryTheCurrentFileJournalsAndProgress) {
  const std::string odd("/a\xFF\n", 4);
  EXPECT_EQ(ReadWorkerLine(StartedLine(odd)).started, odd);
  EXPECT_EQ(ReadWorkerLine(StaleOutputLine(odd)).staleOutput, odd);
  const host::JobPart part{odd, 3, 12};
  EXPECT_EQ(ReadWorkerLine(JournalLine(part)).journal, part);
  EXPECT_EQ(ReadWorkerLine(JournalDoneLine(part)).journalDone, part);
  Progress progress;
  progress.done = 7;
  progress.planned = 90;
  const auto read = ReadWorkerLine(ProgressLine(progress)).progress;
  ASSERT_TRUE(read);
  EXPECT_EQ(read->done, 7u);
  EXPECT_EQ(read->planned, 90u);
}

TEST(WorkerLines, NothingElseIsAccepted) {
  for (const char* text : {"", "no json", "[]", "{}", R"({"event":"other"})", R"({"event":"file"})", "7"}) {
    const WorkerLine line = ReadWorkerLine(text);
    EXPECT_FALSE(line.event || line.started || line.staleOutput || line.progress) << text;
  }
}

TEST(WorkerArguments, AreThoseOfTheCallWithAShard) {
  using Words = std::vector<std::string>;
  const job::Shard shard{4, 6, ""};
  EXPECT_EQ(WorkerArguments({"--jobs", "2", "--json", "--set", "ChOver=1", "--shard=1/3", "--trace", "a.jpg"}, shard),
            (Words{"--json", "--shard=5/6", "--set", "ChOver=1", "--trace", "a.jpg"}));
  EXPECT_EQ(WorkerArguments({"--jobs=2", "--shard", "1/3", "--", "--json", "--jobs"}, shard),
            (Words{"--json", "--shard=5/6", "--", "--json", "--jobs"}));
  EXPECT_EQ(WorkerArguments({"--print", "--jobs", "--click", "--"}, shard),
            (Words{"--json", "--shard=5/6", "--print", "--jobs", "--click", "--"}));
}

}  // namespace
}  // namespace quillon::cli
