// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "cli/cli.h"

#include <unistd.h>

#include <charconv>
#include <cstdio>
#include <cstdlib>
#include <exception>
#include <filesystem>
#include <memory>

#include "base/path_text.h"
#include "base/utf8.h"
#include "cli/hosts.h"
#include "cli/manual_steps.h"
#include "cli/options.h"
#include "cli/parse.h"
#include "cli/private_folder.h"
#include "cli/report/out_stream.h"
#include "cli/runner.h"
#include "cli/stop_signals.h"
#include "cli/workers/worker_journals.h"
#include "cli/workers/workers.h"
#include "host/posix/environment.h"
#include "host/posix/posix_clock.h"
#include "host/posix/posix_disk.h"
#include "host/posix/posix_processes.h"
#include "host/posix/posix_shell.h"
#include "host/posix/process_setup.h"
#include "host/posix/program_folder.h"
#include "host/posix/sqlite_journals.h"
#include "host/posix/sqlite_settings.h"
#include "parts/parts.h"

namespace quillon::cli {
namespace {

constexpr std::uint64_t kLongestScript = 16u << 20;  // bytes

void PrintError(const std::string& sentence) {
  std::fprintf(stderr, "quillon-batch: %s\n", base::DisplayText(sentence).c_str());
}

std::optional<std::string> ReadScript(const std::string& path) {
  host::posix::PosixDisk disk;
  const host::Files files(disk);
  std::string text;
  return files.ReadFile(path, text, kLongestScript) ? std::optional(text) : std::nullopt;
}

// One call of the program: the host implementations, and the job::Program that runs on them.
//
// A call is either a single run, or the parent of several workers (--jobs), or one of these workers. A worker is the
// same executable with a variable set in its environment; it differs only in how it reports (WorkerReporter), in its
// journals (WorkerJournals) and in the files that it leaves out (DoneElsewhere).
//
// The members are constructed in their order: the signals first, because only threads that are started later inherit
// the blocked signals, and every other member before those that refer to it.
class Session {
 public:
  Session(const Plan& plan, std::vector<std::string> arguments, std::string folder)
      : plan_(plan),
        arguments_(std::move(arguments)),
        private_(disk_, files_),
        reporter_(MakeReporter(plan)),
        boxes_(plan.answers, *reporter_, clock_, [this] { return signals_.Stopping(); }),
        dialogs_(plan.answers, std::move(folder), *reporter_),
        settings_([this] { return std::make_unique<host::posix::SqliteSettings>(private_.Path()); },
                  [this] { return files_.IsFile(private_.Path() + "/settings.db"); }),
        shell_(realShell_, *reporter_, [this] { settings_.Open(); }) {}

  Exit Run() {
    const auto hints = host::posix::HintsOfThisProcess();
    executableFolder_ = hints.executableFolder;
    if (const host::Status made = private_.Make(TemporaryBase(), hints.executableFolder); !made) {
      PrintError("无法准备临时文件夹 " + TemporaryBase() + "：" + made.Why());
      return Exit::SomeWithout;
    }
    signals_.OnSecondSignal([this] {
      private_.Remove();
      std::_Exit(static_cast<int>(Exit::Stopped));
    });
    const Exit exit = plan_.jobs > 1 ? RunWorkers() : RunHere();
    return exit == Exit::AllWritten && reporter_->EventsLost() ? Exit::SomeWithout : exit;
  }

 private:
  static bool IsWorker() { return !host::posix::Environment(kWorkerVariable).empty(); }

  static std::unique_ptr<Reporter> MakeReporter(const Plan& plan) {
    if (IsWorker()) return std::make_unique<WorkerReporter>(stdout, stderr);
    if (plan.json) return std::make_unique<JsonReporter>(stdout, stderr);
    return std::make_unique<TextReporter>(stdout, stderr, isatty(STDERR_FILENO) ? Terminal::Yes : Terminal::No);
  }

  Exit RunHere() {
    const Outcome outcome = Perform();
    signals_.OnSecondSignal({});
    for (const std::string& note : outcome.notes) PrintError(note);
    return outcome.exit;
  }

  Exit RunWorkers() {
    Workers workers(plan_, arguments_, private_.Path(), files_, journals_, clock_, *reporter_,
                    [this] { return signals_.Stopping(); });
    signals_.OnSecondSignal([&] {
      workers.Signal();
      private_.Remove();
      std::_Exit(static_cast<int>(Exit::Stopped));
    });
    const Exit exit = workers.Run();
    signals_.OnSecondSignal({});
    return exit;
  }

  // Returns the number of workers of the call that this worker belongs to; 1 if this is not a worker or the variable
  // does not fit the shard.
  std::uint64_t Among() const {
    const std::string text = host::posix::Environment(kAmongVariable);
    std::uint64_t among = 1;
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), among);
    const bool valid = IsWorker() && error == std::errc() && among > 0 && plan_.shard.count % among == 0;
    return valid ? among : 1;
  }

  // Reads the sources that this worker leaves out: those which the workers of the run had handled when an earlier
  // worker with the same shard died. Empty for any other process.
  job::DoneElsewhere ReadDoneList() const {
    job::DoneElsewhere handled;
    std::string names;
    const std::string list = host::posix::Environment(kWorkerVariable);
    if (list.empty() || !files_.ReadFile(list, names)) return handled;
    for (std::size_t begin = 0, end; (end = names.find('\0', begin)) != std::string::npos; begin = end + 1) {
      const job::Wrote wrote = names[begin] == kWroteMark ? job::Wrote::Yes : job::Wrote::No;
      handled.emplace(names.substr(begin + 1, end - begin - 1), wrote);
    }
    return handled;
  }

  Outcome Perform() {
    host::posix::PosixProcesses running(private_.Path());
    BatchProcesses processes(running, shell_);
    host::Host world{boxes_,    dialogs_, pump_,   clock_,    files_,         settings_,
                     processes, shell_,   screen_, instance_, private_.Path()};
    WorkerJournals workerJournals(journals_, *reporter_);
    Outcome outcome;
    {
      job::Program program(world);
      program.shard = plan_.shard;
      if (files_.IsFile(base::JoinPath(executableFolder_, job::kGuide))) program.documents = executableFolder_;
      program.shard.among = Among();
      program.onExisting = plan_.onExisting;
      const parts::Parts parts(program);
      program.journals = IsWorker() ? static_cast<host::Journals*>(&workerJournals) : &journals_;
      program.doneElsewhere = ReadDoneList();
      program.recovering = !host::posix::Environment(kRecoveringVariable).empty();
      program.Start();
      RunListener listener(program, *reporter_, plan_.json && plan_.trace ? Trace::Yes : Trace::No);
      ManualSteps manual(program, parts.regions.cutFrame, plan_.answers, *reporter_);
      pump_.OnTurn([&] {
        if (signals_.Stopping()) program.flags.StopRequested = true;
        manual.Turn();
        listener.Turn();
      });
      Runner runner(program, listener, *reporter_, [this] { return signals_.Stopping(); });
      outcome = runner.Perform(plan_);
      pump_.OnTurn({});
    }
    processes.EndAll();
    return outcome;
  }

  const Plan& plan_;
  std::vector<std::string> arguments_;
  // The parent of a worker passes each wish on once, and insists with a second signal.
  StopSignals signals_{IsWorker() ? StopSignals::kEachCounts : StopSignals::kSameWish};
  host::posix::PosixDisk disk_;
  host::Files files_{disk_};
  PrivateFolder private_;
  std::string executableFolder_;
  std::unique_ptr<Reporter> reporter_;
  host::posix::PosixClock clock_;
  BatchBoxes boxes_;
  BatchDialogs dialogs_;
  BatchPump pump_;
  LazySettings settings_;
  host::posix::SqliteJournals journals_;
  host::posix::PosixShell realShell_;
  BatchShell shell_;
  BatchScreen screen_;
  BatchInstance instance_;
};

}  // namespace

int RunBatch(const std::vector<std::string>& arguments) {
  host::posix::IgnoreSignals();
  std::setvbuf(stdout, nullptr, _IONBF, 0);
  std::error_code error;
  const std::string folder = std::filesystem::current_path(error).native();
  const Parsed parsed = ParseArguments(arguments, folder, ReadScript);
  if (!parsed.error.empty()) {
    PrintError(parsed.error);
    return static_cast<int>(Exit::WrongArguments);
  }
  const Plan& plan = parsed.plan;
  if (plan.help || plan.version) {
    OutStream out(stdout, stderr);
    out.Write(plan.help ? HelpText() : VersionText());
    return static_cast<int>(out.Lost() ? Exit::SomeWithout : Exit::AllWritten);
  }
  if (plan.steps.empty() && !plan.listControls) {
    PrintError("没有要做的事；用法见 quillon-batch --help");
    return static_cast<int>(Exit::WrongArguments);
  }
  try {
    return static_cast<int>(Session(plan, arguments, folder).Run());
  } catch (const std::exception& failure) {
    PrintError(std::string("运行中断：") + failure.what());
    return static_cast<int>(Exit::SomeWithout);
  }
}

}  // namespace quillon::cli
