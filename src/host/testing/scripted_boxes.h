// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <deque>
#include <functional>
#include <optional>
#include <string>
#include <vector>

#include "host/boxes.h"

namespace quillon::host::testing {

// Answers message boxes as scripted and records them.
class ScriptedBoxes final : public Boxes {
 public:
  struct Shown {
    Box box;
    Reply reply;
  };

  // Scripts a reply for the next times boxes whose text contains textHolds; 0 means all of them.
  // Replies are tried in the order of the calls. A box without a matching reply gets its default button.
  // A reply that is not a button of the box throws std::logic_error when the box is shown.
  void Answer(const std::string& textHolds, Reply reply, int times = 0);
  // Called before each box is answered.
  void OnShow(std::function<void(const Box&)> act) { act_ = std::move(act); }

  const std::vector<Shown>& All() const { return shown_; }
  // The number of shown boxes whose text contains the given one.
  int Count(const std::string& textHolds) const;
  int Beeps() const { return beeps_; }
  // Clears the record; scripted replies stay.
  void Forget();

  Reply Show(const Box& box) override;
  void Beep() override { ++beeps_; }

 private:
  struct Script {
    std::string textHolds;
    Reply reply;
    int left;  // -1: no end
  };

  Reply Choose(const Box& box);

  std::vector<Script> scripts_;
  std::function<void(const Box&)> act_;
  std::vector<Shown> shown_;
  int beeps_ = 0;
};

// Answers dialogs with the scripted choices in order. Once they are used up, nothing is chosen.
class ScriptedDialogs final : public Dialogs {
 public:
  struct Asked {
    std::string title;
    std::string filterOrInitial;
  };

  void ChooseFiles(std::vector<std::string> files) { files_.push_back(std::move(files)); }
  void ChooseFolderNext(std::optional<std::string> folder) { folders_.push_back(std::move(folder)); }
  const std::vector<Asked>& All() const { return asked_; }
  // The questions for a single file, in order.
  const std::vector<FileQuestion>& Questions() const { return questions_; }

  std::vector<std::string> OpenFiles(const std::string& title, const std::string& filter, Choice choice) override;
  std::string OpenFile(const FileQuestion& question) override;
  std::string SaveFile(const FileQuestion& question) override;
  std::optional<std::string> ChooseFolder(const std::string& title, const std::string& initial) override;

 private:
  std::deque<std::vector<std::string>> files_;
  std::deque<std::optional<std::string>> folders_;
  std::vector<Asked> asked_;
  std::vector<FileQuestion> questions_;
};

}  // namespace quillon::host::testing
