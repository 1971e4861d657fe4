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

// Its own, so that nothing here is taken for the answer to an order of the program.
constexpr const char* kApplication = "DCTiffsMaker";
constexpr const char* kPrefix = "DCTiffsMaker: ";
constexpr int kLookEvery = 100;  // milliseconds

QString NameFrom(const std::string& path) { return QFile::decodeName(QByteArray::fromStdString(path)); }

// In the new process. Only calls that are safe there.
void EndWith(pid_t parent) {
  prctl(PR_SET_PDEATHSIG, SIGKILL);
  if (getppid() != parent) _exit(1);
}

// The lines of the error output, without the helper's name.
std::vector<std::string> Complaints(const QByteArray& output) {
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
  process_.setChildProcessModifier([parent = getpid()] { EndWith(parent); });
  timer_.setInterval(kLookEvery);
  QObject::connect(&timer_, &QTimer::timeout, &process_, [this] { Look(); });
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
  lastTold_.clear();
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
  // What the process was writing when it was ended.
  world_.files.SweepDrafts(base::SplitPath(target_).folder);
}

std::string MakerRun::Told() const { return tools::ReadKey(world_, tools::key::kMakeTiffProg, kApplication); }

void MakerRun::Look() {
  std::string told = Told();
  if (told.empty() || told == lastTold_) return;
  lastTold_ = std::move(told);
  if (listener_.told) listener_.told(lastTold_);
}

void MakerRun::OnError(QProcess::ProcessError error) {
  if (error != QProcess::FailedToStart) return;
  End({Ending::NotStarted, process_.errorString().toStdString(), {}});
}

void MakerRun::OnFinished(int code, QProcess::ExitStatus status) {
  MakerEnd end{Ending::Done, Told(), Complaints(process_.readAllStandardError())};
  if (stopped_) {
    end.ending = Ending::Stopped;
  } else if (status == QProcess::CrashExit) {
    end.ending = Ending::Killed;
  } else if (code != 0) {
    end.ending = Ending::Failed;
    // The last line tells what it ended with, also where the store could not be written.
    if (!end.leftOut.empty()) {
      if (end.told != "FullDisk") end.told = end.leftOut.back();
      end.leftOut.pop_back();
    }
  }
  End(end);
}

void MakerRun::End(const MakerEnd& end) {
  timer_.stop();
  running_ = false;
  // One that stays is replaced by the next.
  (void)world_.files.RemoveOwn(orderPath_);
  if (listener_.ended) listener_.ended(end);
}

}  // namespace quillon::helpers
