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

// The host interfaces of quillon-batch: a desktop without a screen, on which the answers of the command line stand for
// the user.

// Returns true after the program was asked to stop.
using Stopping = std::function<bool()>;

// Answers message boxes and reports each box and beep as an event.
//
// An answer fits if the box contains its text and has a button for its reply. The last given answer that fits is used.
// If none fits, the box gets its default button, and a question about a full disk gets Cancel.
// While the program is stopping, a box with Retry and Cancel gets Cancel.
class BatchBoxes final : public host::Boxes {
 public:
  BatchBoxes(const std::vector<Answer>& answers, Reporter& reporter, host::Clock& clock, Stopping stopping);

  // Sleeps for half a second before it returns Retry.
  host::Reply Show(const host::Box& box) override;
  void Beep() override;

 private:
  host::Reply Choose(const host::Box& box) const;

  const std::vector<Answer>& answers_;
  Reporter& reporter_;
  host::Clock& clock_;
  Stopping stopping_;
};

// Answers file and folder dialogs with paths and reports each dialog as an event.
//
// An answer fits if the title or the filter of the dialog contains its text and its reply is a path, not the name of a
// reply or button. A dialog for several files returns the paths of all answers that fit, in the order given; any other
// dialog returns the last. If none fits, nothing is chosen. Relative paths are resolved against folder.
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

// Starts helper programs through another shell. Folders, files and addresses are not opened, only reported as events.
// prepare is called before every start.
class BatchShell final : public host::Shell {
 public:
  BatchShell(host::Shell& shell, Reporter& reporter, std::function<void()> prepare = {})
      : shell_(shell), reporter_(reporter), prepare_(std::move(prepare)) {}

  int Start(const std::string& program, const std::vector<std::string>& arguments, const std::string& folder) override;
  // A companion reads neither settings nor files, so nothing is prepared for it, and it needs no search to be ended.
  std::unique_ptr<host::Companion> StartCompanion(const std::string& program) override {
    return shell_.StartCompanion(program);
  }
  void OpenFolder(const std::string& folder) override;
  void Reveal(const std::string& file) override;
  void OpenBrowser(const std::string& address) override;

  // True if a helper was started, whether it still runs or not.
  bool Started() const { return started_; }

 private:
  host::Shell& shell_;
  Reporter& reporter_;
  std::function<void()> prepare_;
  bool started_ = false;
};

// The helper processes of this run. Before the first start the list is empty and /proc is not searched, because a
// search is slow and nothing can be found.
class BatchProcesses final : public host::Processes {
 public:
  BatchProcesses(host::Processes& processes, const BatchShell& shell) : processes_(processes), shell_(shell) {}

  std::vector<host::ProcessFacts> Running() override;
  bool End(int id) override { return processes_.End(id); }
  // Ends every helper that still runs. Called once at the end of the run.
  void EndAll();

 private:
  host::Processes& processes_;
  const BatchShell& shell_;
};

// A screen without a desktop, so that results do not depend on the machine: without a desktop size there is no preview
// size that would limit the margins. Always 96 dots per inch.
class BatchScreen final : public host::Screen {
 public:
  base::Size DesktopSize() override { return {}; }
  int Dpi() override { return 96; }
  std::string Wallpaper() override { return {}; }
};

// Never refuses: any number of runs can run at the same time.
class BatchInstance final : public host::Instance {
 public:
  bool Claim() override { return true; }
};

// A message pump that calls one function at each turn.
class BatchPump final : public host::Pump {
 public:
  // Replaces the function; an empty one stops the calls.
  void OnTurn(std::function<void()> act) { act_ = std::move(act); }
  void Turn() override {
    if (act_) act_();
  }

 private:
  std::function<void()> act_;
};

// The settings of one run. The store is created when the first value is saved or the first helper is started; a run
// that does neither has no store on disk. Until then every value is "".
class LazySettings final : public host::Settings {
 public:
  using Make = std::function<std::unique_ptr<host::Settings>()>;
  // make creates or opens the store. exists returns true if another process has created it.
  LazySettings(Make make, std::function<bool()> exists) : make_(std::move(make)), exists_(std::move(exists)) {}

  std::string Get(const std::string& application, const std::string& section, const std::string& key) override;
  bool Set(const std::string& application, const std::string& section, const std::string& key,
           const std::string& value) override;
  // Creates the store, so that helpers find it. Does nothing if it is open.
  void Open();

 private:
  Make make_;
  std::function<bool()> exists_;
  std::unique_ptr<host::Settings> store_;
};

}  // namespace quillon::cli
