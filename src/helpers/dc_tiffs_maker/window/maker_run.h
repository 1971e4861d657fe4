// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QProcess>
#include <QTimer>
#include <functional>
#include <string>

#include "helpers/dc_tiffs_maker/window/verdict.h"
#include "host/host.h"
#include "tools/ok_list.h"

namespace quillon::helpers {

// Makes a TIFF in a separate process: writes the order into the program folder, starts the helper with it and polls its
// progress. The process is killed when this object is destroyed or the program ends in any way.
class MakerRun {
 public:
  struct Listener {
    std::function<void(const std::string& report)> progress;  // when the progress text has changed
    std::function<void(const MakerEnd& end)> ended;           // once for each start
  };

  // program is the path of the helper. It is started with the path of an order as its only argument.
  MakerRun(host::Host& world, std::string program, Listener listener);
  ~MakerRun();
  MakerRun(const MakerRun&) = delete;
  MakerRun& operator=(const MakerRun&) = delete;

  // Starts the helper. The application of the order is overwritten.
  void Start(tools::OkList order);
  // Kills the process. Nothing remains of an unfinished TIFF.
  void Stop();
  bool Running() const { return running_; }

 private:
  void Poll();
  void OnError(QProcess::ProcessError error);
  void OnFinished(int code, QProcess::ExitStatus status);
  void End(const MakerEnd& end);
  std::string ReadProgress() const;

  host::Host& world_;
  std::string program_;
  Listener listener_;
  std::string orderPath_;
  std::string target_;
  std::string lastProgress_;
  bool running_ = false;
  bool stopped_ = false;
  QProcess process_;
  QTimer timer_;
};

}  // namespace quillon::helpers
