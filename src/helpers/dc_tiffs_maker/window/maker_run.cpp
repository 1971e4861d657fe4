// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "helpers/dc_tiffs_maker/window/maker_run.h"

#include <sys/prctl.h>
#include <unistd.h>

#include <QFile>
#include <csignal>

#include "base/path_text.h"
#include "tools/keys.h"

namespace quillon::helpers {
namespace {

// A separate application, so that its progress cannot be mistaken for the answer to an order of the program.
constexpr const char* kApplication = "DCTiffsMaker";
constexpr const char* kPrefix = "DCTiffsMaker: ";
constexpr int kPollInterval = 100;  // milliseconds

QString NameFrom(const std::string& path) { return QFile::decodeName(QByteArray::fromStdString(path)); }

// Runs in the new process, so only async-signal-safe calls are allowed. The process dies with its parent.
void DieWithParent(pid_t parent) {
  prctl(PR_SET_PDEATHSIG, SIGKILL);
  if (getppid() != parent) _exit(1);
}

// Returns the lines that the helper logged to its error output, without its name.
std::vector<std::string> LoggedErrors(const QByteArray& output) {
  std::vector<std::string> lines;
  for (const QByteArray& line : output.split('\n')) {
    if (line.startsWith(kPrefix)) lines.push_back(line.mid(static_cast<int>(qstrlen(kPrefix))).toStdString());
  }
  return lines;
}

}  // namespace

MakerRun::MakerRun(host::Host& world, std::string program, Listener listener)
    : world_(world),
      program_(std::move(program)),
      listener_(std::move(listener)),
      orderPath_(base::JoinPath(world.programFolder, "DCTiffsMaker-" + std::to_string(getpid()) + ".txt")) {
  process_.setProgram(NameFrom(program_));
  process_.setWorkingDirectory(NameFrom(world.programFolder));
  process_.setArguments({NameFrom(orderPath_)});
  process_.setStandardInputFile(QProcess::nullDevice());
  process_.setStandardOutputFile(QProcess::nullDevice());
  process_.setChildProcessModifier([parent = getpid()] { DieWithParent(parent); });
  timer_.setInterval(kPollInterval);
  QObject::connect(&timer_, &QTimer::timeout, &process_, [this] { Poll(); });
  QObject::connect(&process_, &QProcess::errorOccurred, &process_, [this](auto error) { OnError(error); });
  QObject::connect(&process_, &QProcess::finished, &process_,
                   [this](int code, auto status) { OnFinished(code, status); });
}

MakerRun::~MakerRun() {
  listener_ = {};
  Stop();
}

void MakerRun::Start(tools::OkList order) {
  running_ = true;
  stopped_ = false;
  lastProgress_.clear();
  target_ = order.target;
  order.application = kApplication;
  const std::optional<std::string> text = tools::OkListText(order);
  const host::Status written =
      text ? world_.files.Save(orderPath_, *text) : host::Status(host::Problem::Other, "文件名里有换行");
  if (!written) return End({Ending::NotStarted, written.Why(), {}});
  tools::WriteKey(world_, tools::key::kMakeTiffProg, "", kApplication);
  process_.start();
  timer_.start();
}

void MakerRun::Stop() {
  if (!running_) return;
  stopped_ = true;
  process_.kill();
  process_.waitForFinished(-1);
  if (running_) End({Ending::Stopped, {}, {}});
  // Removes the draft that the process was writing when it was killed.
  world_.files.SweepDrafts(base::SplitPath(target_).folder);
}

std::string MakerRun::ReadProgress() const { return tools::ReadKey(world_, tools::key::kMakeTiffProg, kApplication); }

void MakerRun::Poll() {
  std::string report = ReadProgress();
  if (report.empty() || report == lastProgress_) return;
  lastProgress_ = std::move(report);
  if (listener_.progress) listener_.progress(lastProgress_);
}

void MakerRun::OnError(QProcess::ProcessError error) {
  if (error != QProcess::FailedToStart) return;
  End({Ending::NotStarted, process_.errorString().toStdString(), {}});
}

void MakerRun::OnFinished(int code, QProcess::ExitStatus status) {
  MakerEnd end{Ending::Done, ReadProgress(), LoggedErrors(process_.readAllStandardError())};
  if (stopped_) {
    end.ending = Ending::Stopped;
  } else if (status == QProcess::CrashExit) {
    end.ending = Ending::Killed;
  } else if (code != 0) {
    end.ending = Ending::Failed;
    // The last line is the final error, even if the settings could not be written. The lines before it are pictures
    // that could not be read.
    if (!end.omitted.empty()) {
      if (end.report != "FullDisk") end.report = end.omitted.back();
      end.omitted.pop_back();
    }
  }
  End(end);
}

void MakerRun::End(const MakerEnd& end) {
  timer_.stop();
  running_ = false;
  // If it cannot be removed, the next start overwrites it.
  (void)world_.files.RemoveOwn(orderPath_);
  if (listener_.ended) listener_.ended(end);
}

}  // namespace quillon::helpers
