// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "host/testing/scripted_boxes.h"

#include <algorithm>
#include <stdexcept>

namespace quillon::host::testing {
namespace {

bool Holds(const std::string& text, const std::string& part) { return text.find(part) != std::string::npos; }

}  // namespace

void ScriptedBoxes::Answer(const std::string& textHolds, Reply reply, int times) {
  scripts_.push_back({textHolds, reply, times == 0 ? -1 : times});
}

int ScriptedBoxes::Count(const std::string& textHolds) const {
  return static_cast<int>(std::count_if(shown_.begin(), shown_.end(),
                                        [&](const Shown& shown) { return Holds(shown.box.text, textHolds); }));
}

void ScriptedBoxes::Forget() {
  shown_.clear();
  beeps_ = 0;
}

Reply ScriptedBoxes::Choose(const Box& box) {
  for (Script& script : scripts_) {
    if (script.left == 0 || !Holds(box.text, script.textHolds)) continue;
    const auto buttons = ButtonsOf(box.type);
    if (std::find(buttons.begin(), buttons.end(), script.reply) == buttons.end()) {
      throw std::logic_error("no such button on the box: " + box.text);
    }
    if (script.left > 0) --script.left;
    return script.reply;
  }
  return DefaultOf(box.type);
}

Reply ScriptedBoxes::Show(const Box& box) {
  if (act_) act_(box);
  const Reply reply = Choose(box);
  shown_.push_back({box, reply});
  return reply;
}

std::vector<std::string> ScriptedDialogs::OpenFiles(const std::string& title, const std::string& filter,
                                                    Choice choice) {
  asked_.push_back({title, filter});
  if (files_.empty()) return {};
  std::vector<std::string> files = std::move(files_.front());
  files_.pop_front();
  if (choice == Choice::One && files.size() > 1) files.resize(1);
  return files;
}

std::string ScriptedDialogs::OpenFile(const FileQuestion& question) {
  questions_.push_back(question);
  const std::vector<std::string> files = OpenFiles(question.title, question.filter, Choice::One);
  return files.empty() ? std::string() : files.front();
}

std::string ScriptedDialogs::SaveFile(const FileQuestion& question) { return OpenFile(question); }

std::optional<std::string> ScriptedDialogs::ChooseFolder(const std::string& title, const std::string& initial) {
  asked_.push_back({title, initial});
  if (folders_.empty()) return std::nullopt;
  std::optional<std::string> folder = std::move(folders_.front());
  folders_.pop_front();
  return folder;
}

}  // namespace quillon::host::testing
