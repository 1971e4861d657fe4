// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "cli/plan.h"
#include "cli/report/reporter.h"
#include "host/host.h"

namespace quillon::cli {

// True once somebody wants the program to stop.
using Stopping = std::function<bool()>;

// Answers boxes from the given answers: of those whose text the box holds, and whose reply is one of its buttons, the
// last given. A box without one takes its default button, a question about a full disk Cancel. While the program is
// stopping nothing is tried again. Every box and beep is told.
class BatchBoxes final : public host::Boxes {
 public:
  BatchBoxes(const std::vector<Answer>& answers, Reporter& reporter, host::Clock& clock, Stopping stopping);

  host::Reply Show(const host::Box& box) override;
  void Beep() override;

 private:
  host::Reply Choose(const host::Box& box) const;

  const std::vector<Answer>& answers_;
  Reporter& reporter_;
  host::Clock& clock_;
  Stopping stopping_;
};

// Answers dialogs with the paths given for them: of the answers whose text the title or the filter holds, all for a
// choice of many files, else the last given. The name of a reply, and no answer at all, choose nothing.
class BatchDialogs final : public host::Dialogs {
 public:
  BatchDialogs(const std::vector<Answer>& answers, std::string folder, Reporter& reporter);

  std::vector<std::string> OpenFiles(const std::string& title, const std::string& filter, host::Choice choice) override;
  std::string OpenFile(const host::FileQuestion& question) override;
  std::string SaveFile(const host::FileQuestion& question) override;
  std::optional<std::string> ChooseFolder(const std::string& title, const std::string& initial) override;

 private:
  std::vector<std::string> Paths(const std::string& title, const std::string& filter) const;

  const std::vector<Answer>& answers_;
  std::string folder_;
  Reporter& reporter_;
};

// Starts helpers as another shell does; folders, files and addresses are only told. prepare runs before every start.
class BatchShell final : public host::Shell {
 public:
  BatchShell(host::Shell& shell, Reporter& reporter, std::function<void()> prepare = {})
      : shell_(shell), reporter_(reporter), prepare_(std::move(prepare)) {}

  int Start(const std::string& program, const std::vector<std::string>& arguments, const std::string& folder) override;
  void OpenFolder(const std::string& folder) override;
  void Reveal(const std::string& file) override;
  void OpenBrowser(const std::string& address) override;

  // Whether any helper was ever started.
  bool Started() const { return started_; }

 private:
  host::Shell& shell_;
  Reporter& reporter_;
  std::function<void()> prepare_;
  bool started_ = false;
};

// The helpers of this run: none before the first start, so that the system is not searched for them, then those that
// another look finds.
class BatchProcesses final : public host::Processes {
 public:
  BatchProcesses(host::Processes& processes, const BatchShell& shell) : processes_(processes), shell_(shell) {}

  std::vector<host::ProcessFacts> Running() override;
  bool End(int id) override { return processes_.End(id); }
  void EndAll();

 private:
  host::Processes& processes_;
  const BatchShell& shell_;
};

// No desktop, so that a run does not depend on where it runs: there is no preview box either whose size would limit the
// margins. 96 dots per inch.
class BatchScreen final : public host::Screen {
 public:
  base::Size DesktopSize() override { return {}; }
  int Dpi() override { return 96; }
  std::string Wallpaper() override { return {}; }
};

// Any number of runs may go side by side.
class BatchInstance final : public host::Instance {
 public:
  bool Claim() override { return true; }
};

// Gives the caller a turn whenever the program pumps.
class BatchPump final : public host::Pump {
 public:
  void OnTurn(std::function<void()> act) { act_ = std::move(act); }
  void Turn() override {
    if (act_) act_();
  }

 private:
  std::function<void()> act_;
};

// The settings of one run: a store that is made when the first value is kept or a helper is to share it, so that a run
// that keeps none and starts no helper has no store at all. Until then every value is empty.
class LazySettings final : public host::Settings {
 public:
  using Make = std::function<std::unique_ptr<host::Settings>()>;
  // exists tells whether another process made the store meanwhile.
  LazySettings(Make make, std::function<bool()> exists) : make_(std::move(make)), exists_(std::move(exists)) {}

  std::string Get(const std::string& application, const std::string& section, const std::string& key) override;
  bool Set(const std::string& application, const std::string& section, const std::string& key,
           const std::string& value) override;
  // Makes the store, so that helpers find it.
  void Open();

 private:
  Make make_;
  std::function<bool()> exists_;
  std::unique_ptr<host::Settings> store_;
};

}  // namespace quillon::cli
