// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/desktop/hand_over.h"

#include <QCoreApplication>
#include <algorithm>
#include <sstream>

#include "base/path_text.h"
#include "host/files/paths.h"
#include "ui/kit/text.h"

namespace quillon::ui {
namespace {

constexpr std::string_view kPrefix = "handed-over-";
constexpr int kPauseMilliseconds = 200;

}  // namespace

bool HandOver(host::Files& files, const std::string& programFolder, const std::vector<std::string>& paths) {
  std::string text;
  for (const std::string& path : paths) text += host::AbsolutePath(path) + '\0';
  const std::string name = std::string(kPrefix) + std::to_string(QCoreApplication::applicationPid());
  return static_cast<bool>(files.Save(base::JoinPath(programFolder, name), text));
}

HandOverWatch::HandOverWatch(host::Files& files, std::string programFolder, Receiver receiver)
    : files_(files), programFolder_(std::move(programFolder)), receiver_(std::move(receiver)) {
  pause_.setSingleShot(true);
  pause_.setInterval(kPauseMilliseconds);
  QObject::connect(&pause_, &QTimer::timeout, &pause_, [this] { Collect(); });
  QObject::connect(&watcher_, &QFileSystemWatcher::directoryChanged, &pause_, [this] {
    if (!pause_.isActive()) pause_.start();
  });
  watcher_.addPath(Shown(programFolder_));
  pause_.start();
}

std::vector<std::string> HandOverWatch::Pending() const {
  std::vector<std::string> found;
  const host::Status listed = files_.ListFolder(programFolder_, [&](const host::FolderEntry& entry) {
    if (entry.name.starts_with(kPrefix)) found.push_back(base::JoinPath(programFolder_, entry.name));
    return true;
  });
  if (!listed) found.clear();
  std::sort(found.begin(), found.end());
  return found;
}

void HandOverWatch::Collect() {
  for (const std::string& file : Pending()) {
    std::string text;
    if (!files_.ReadFile(file, text)) continue;
    std::vector<std::string> paths;
    std::istringstream lines(text);
    for (std::string path; std::getline(lines, path, '\0');) paths.push_back(path);
    if (!receiver_(paths)) return pause_.start();
    static_cast<void>(files_.RemoveOwn(file));
  }
}

}  // namespace quillon::ui
