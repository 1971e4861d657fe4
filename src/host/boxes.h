// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <optional>
#include <string>
#include <vector>

namespace quillon::host {

// The answers of a message box.
enum class Reply { Ok = 1, Cancel = 2, Abort = 3, Retry = 4, Ignore = 5, Yes = 6, No = 7 };

// The title of every box.
inline constexpr const char* kBoxTitle = "消息";

// The parts of a box type. A type is the sum of one number of each group; scripts read it as a number, so none of them
// may change.
// The buttons, 0 if none is named: OK alone.
inline constexpr int kOkCancelButtons = 1;
inline constexpr int kAbortRetryIgnoreButtons = 2;
inline constexpr int kYesNoCancelButtons = 3;
inline constexpr int kYesNoButtons = 4;
inline constexpr int kRetryCancelButtons = 5;
inline constexpr int kButtonsMask = 0xF;
// The icon, 0 if none is named: no icon.
inline constexpr int kStopIcon = 16;
inline constexpr int kQuestionIcon = 32;
inline constexpr int kExclamationIcon = 48;
inline constexpr int kInformationIcon = 64;
inline constexpr int kIconMask = 0xF0;
// The button that Enter presses, 0 if none is named: the first.
inline constexpr int kSecondIsDefault = 256;
inline constexpr int kThirdIsDefault = 512;

// The types of the questions that are asked in several places.
inline constexpr int kOkCancelQuestion = kOkCancelButtons + kQuestionIcon;
inline constexpr int kYesNoQuestion = kYesNoButtons + kQuestionIcon;
inline constexpr int kYesNoCancelQuestion = kYesNoCancelButtons + kQuestionIcon;
inline constexpr int kOkCancelDefaultCancel = kOkCancelButtons + kExclamationIcon + kSecondIsDefault;

// A message box.
struct Box {
  std::string text;
  int type = 0;
  std::string title = kBoxTitle;
  std::string notice = {};  // what a window shows in its status bar instead of the text, if it shows no box
};

// Returns whether the box only brings news: it has one button and no icon.
inline bool NeedsNoAnswer(const Box& box) { return box.type == 0; }

// Returns the buttons of a type, in the order in which they are shown.
std::vector<Reply> ButtonsOf(int type);
// Returns the button that Enter presses; the first if the type names one that it does not have.
Reply DefaultOf(int type);

// Shows boxes and beeps.
class Boxes {
 public:
  virtual ~Boxes() = default;
  // Returns when the user has answered. A box that is closed counts as Cancel, or as its default button if it has no
  // Cancel.
  virtual Reply Show(const Box& box) = 0;
  virtual void Beep() = 0;
};

enum class Choice { One, Many };

// What a dialog for one file shows when it opens.
struct FileQuestion {
  std::string title;
  std::string filter;
  std::string folder;
  std::string name;
};

// Dialogs for files and folders. A filter is written "name|*.a;*.b|name|*.c". The result is empty if the user chose
// nothing.
class Dialogs {
 public:
  virtual ~Dialogs() = default;
  virtual std::vector<std::string> OpenFiles(const std::string& title, const std::string& filter, Choice choice) = 0;
  // Asks for one file to read.
  virtual std::string OpenFile(const FileQuestion& question) = 0;
  // Asks for a name to write under; question.name is offered.
  virtual std::string SaveFile(const FileQuestion& question) = 0;
  virtual std::optional<std::string> ChooseFolder(const std::string& title, const std::string& initial) = 0;
};

}  // namespace quillon::host
