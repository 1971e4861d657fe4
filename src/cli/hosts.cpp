// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "cli/hosts.h"

#include <algorithm>

#include "cli/manual_steps.h"
#include "cli/replies.h"
#include "host/files/paths.h"

namespace quillon::cli {
namespace {

constexpr const char* kDiskFull = "盘空间不足";
// Seconds before a retry, in which somebody can free space on a full disk.
constexpr double kRetryPause = 0.5;

bool Holds(const std::string& text, const std::string& part) { return text.find(part) != std::string::npos; }

}  // namespace

BatchBoxes::BatchBoxes(const std::vector<Answer>& answers, Reporter& reporter, host::Clock& clock, Stopping stopping)
    : answers_(answers), reporter_(reporter), clock_(clock), stopping_(std::move(stopping)) {}

host::Reply BatchBoxes::Choose(const host::Box& box) const {
  const auto buttons = host::ButtonsOf(box.type);
  const auto offered = [&](host::Reply reply) {
    return std::find(buttons.begin(), buttons.end(), reply) != buttons.end();
  };
  // A failed retry asks again, so a program that answers Retry while it is stopping might never end.
  if (stopping_() && offered(host::Reply::Retry) && offered(host::Reply::Cancel)) return host::Reply::Cancel;
  for (auto answer = answers_.rbegin(); answer != answers_.rend(); ++answer) {
    if (!Holds(box.text, answer->text)) continue;
    const auto reply = ReplyNamed(answer->reply);
    if (reply && offered(*reply)) return *reply;
  }
  if (Holds(box.text, kDiskFull) && offered(host::Reply::Cancel)) return host::Reply::Cancel;
  return host::DefaultOf(box.type);
}

host::Reply BatchBoxes::Show(const host::Box& box) {
  const host::Reply reply = Choose(box);
  reporter_.Report(BoxEvent(box, reply));
  if (reply == host::Reply::Retry) clock_.Sleep(kRetryPause);
  return reply;
}

void BatchBoxes::Beep() { reporter_.Report(BeepEvent()); }

BatchDialogs::BatchDialogs(const std::vector<Answer>& answers, std::string folder, Reporter& reporter)
    : answers_(answers), folder_(std::move(folder)), reporter_(reporter) {}

std::vector<std::string> BatchDialogs::Paths(const std::string& title, const std::string& filter) const {
  std::vector<std::string> paths;
  for (const Answer& answer : answers_) {
    if (!Holds(title, answer.text) && !Holds(filter, answer.text)) continue;
    // The same answers are meant for boxes and manual steps too; what names a button there is no path.
    if (answer.reply.empty() || ReplyNamed(answer.reply) || ManualSteps::IsButton(answer.reply)) continue;
    paths.push_back(host::AbsolutePath(answer.reply, folder_));
  }
  return paths;
}

std::vector<std::string> BatchDialogs::OpenFiles(const std::string& title, const std::string& filter,
                                                 host::Choice choice) {
  std::vector<std::string> paths = Paths(title, filter);
  if (choice == host::Choice::One && paths.size() > 1) paths.erase(paths.begin(), paths.end() - 1);
  reporter_.Report(FilesDialogEvent(title, filter, paths));
  return paths;
}

std::string BatchDialogs::OpenFile(const host::FileQuestion& question) {
  const std::vector<std::string> paths = OpenFiles(question.title, question.filter, host::Choice::One);
  return paths.empty() ? std::string() : paths.front();
}

std::string BatchDialogs::SaveFile(const host::FileQuestion& question) { return OpenFile(question); }

std::optional<std::string> BatchDialogs::ChooseFolder(const std::string& title, const std::string&) {
  const std::vector<std::string> paths = Paths(title, "");
  const std::string answer = paths.empty() ? std::string() : paths.back();
  reporter_.Report(FolderDialogEvent(title, answer));
  return paths.empty() ? std::nullopt : std::optional(answer);
}

int BatchShell::Start(const std::string& program, const std::vector<std::string>& arguments,
                      const std::string& folder) {
  started_ = true;
  if (prepare_) prepare_();
  return shell_.Start(program, arguments, folder);
}

void BatchShell::OpenFolder(const std::string& folder) { reporter_.Report(OpenEvent("folder", folder)); }

void BatchShell::Reveal(const std::string& file) { reporter_.Report(OpenEvent("file", file)); }

void BatchShell::OpenBrowser(const std::string& address) { reporter_.Report(OpenEvent("address", address)); }

std::vector<host::ProcessFacts> BatchProcesses::Running() {
  return shell_.Started() ? processes_.Running() : std::vector<host::ProcessFacts>();
}

void BatchProcesses::EndAll() {
  for (const host::ProcessFacts& helper : Running()) processes_.End(helper.id);
}

std::string LazySettings::Get(const std::string& application, const std::string& section, const std::string& key) {
  if (!store_ && exists_()) store_ = make_();
  return store_ ? store_->Get(application, section, key) : std::string();
}

bool LazySettings::Set(const std::string& application, const std::string& section, const std::string& key,
                       const std::string& value) {
  Open();
  return store_->Set(application, section, key, value);
}

void LazySettings::Open() {
  if (!store_) store_ = make_();
}

}  // namespace quillon::cli
