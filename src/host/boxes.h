// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <optional>
#include <string>
#include <vector>

namespace quillon::host {

// Answers of a message box, with the numbers that box types are told in.
enum class Reply { Ok = 1, Cancel = 2, Abort = 3, Retry = 4, Ignore = 5, Yes = 6, No = 7 };

// The title of every box.
inline constexpr const char* kBoxTitle = "消息";

// A message box. Type is the sum of: buttons 0 OK, 1 OK/Cancel, 2 Abort/Retry/Ignore, 3 Yes/No/Cancel, 4 Yes/No,
// 5 Retry/Cancel; icon 16 stop, 32 question, 48 exclamation, 64 information; default button 0 first, 256 second,
// 512 third.
struct Box {
  std::string text;
  int type = 0;
  std::string title = kBoxTitle;
};

// The buttons of a type, in order, and the one that Enter presses.
std::vector<Reply> ButtonsOf(int type);
Reply DefaultOf(int type);

// Shows boxes and beeps. Show returns when the user has answered; a closed box counts as Cancel, or as its default
// where it has no Cancel.
class Boxes {
 public:
  virtual ~Boxes() = default;
  virtual Reply Show(const Box& box) = 0;
  virtual void Beep() = 0;
};

enum class Choice { One, Many };

// What a dialog for one file begins with.
struct FileQuestion {
  std::string title;
  std::string filter;
  std::string folder;
  std::string name;
};

// Dialogs for files and folders. Filters are written "name|*.a;*.b|name|*.c"; nothing chosen is empty.
class Dialogs {
 public:
  virtual ~Dialogs() = default;
  virtual std::vector<std::string> OpenFiles(const std::string& title, const std::string& filter, Choice choice) = 0;
  // One file to read, or a name to write under, asked for with the name that is offered; "" where nothing was chosen.
  virtual std::string OpenFile(const FileQuestion& question) = 0;
  virtual std::string SaveFile(const FileQuestion& question) = 0;
  virtual std::optional<std::string> ChooseFolder(const std::string& title, const std::string& initial) = 0;
};

}  // namespace quillon::host
