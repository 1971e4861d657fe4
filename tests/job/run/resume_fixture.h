// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <filesystem>

#include "host/posix/sqlite_journals.h"
#include "job/cut_fixture.h"

namespace quillon::job {

inline constexpr const char* kQuestion = "上次的这项任务没有做完";

// Pictures of 40 x 30 that lose their left half, in a large-capacity run that is broken off.
class ResumeTest : public CutTest {
 protected:
  void SetUp() override {
    CutTest::SetUp();
    program.journals = &journals;
    Put("ChBig", "1");
    Put("ChSubFold", "1");
    Put("LInDir", world.folder.Path("in"));
    Margins(50, 0, 0, 0);
    for (int i = 0; i < 6; ++i) Make(std::to_string(i) + ".png", 40, 30);
  }
  // Runs and stops after so many files.
  void StopAfter(std::size_t files) {
    recorder.done.clear();
    recorder.onFileDone = [this, files](const FileResult&) { flags.StopRequested = recorder.done.size() >= files; };
    Cut();
    recorder.onFileDone = {};
    EXPECT_TRUE(Totals().stopped);
    first = recorder.done;
    recorder.done.clear();
    world.boxes.Forget();
  }
  // Stops after so many files and leaves the journal as it was on disk at that moment, between two checkpoints. This is
  // what a kill leaves.
  void KillAfter(std::size_t files) {
    const std::string journal = world.folder.Path("journals");
    const std::string copy = world.folder.Path("copy");
    recorder.done.clear();
    recorder.onFileDone = [&](const FileResult&) {
      if (recorder.done.size() == files) std::filesystem::copy(journal, copy);
      flags.StopRequested = recorder.done.size() == files;
    };
    Cut();
    recorder.onFileDone = {};
    std::filesystem::remove_all(journal);
    std::filesystem::rename(copy, journal);
  }
  void Answer(host::Reply reply) { world.boxes.Answer(kQuestion, reply, 1); }
  std::size_t Count(Result result) const {
    return static_cast<std::size_t>(std::count_if(recorder.done.begin(), recorder.done.end(),
                                                  [&](const FileResult& file) { return file.result == result; }));
  }
  std::string Results() const {
    std::string all;
    for (const FileResult& file : recorder.done) {
      all += file.source + ": " + (file.result == Result::Written ? "written" : file.why) + "; ";
    }
    return all;
  }
  std::vector<std::string> Texts() const {
    std::vector<std::string> texts;
    for (const auto& shown : world.boxes.All()) texts.push_back(shown.box.text);
    return texts;
  }
  std::vector<std::string> Journals() const {
    std::vector<std::string> names = world.folder.Names("journals");
    std::erase_if(names, [](const std::string& name) { return !name.ends_with(".db"); });
    return names;
  }

  host::posix::SqliteJournals journals{world.folder.Path("journals")};
  std::vector<FileResult> first;
};

}  // namespace quillon::job
