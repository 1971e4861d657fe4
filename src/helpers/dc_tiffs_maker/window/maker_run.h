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

// Has a process of its own make a TIFF: writes the order into the program folder, starts the program on it and follows
// what it says of its progress. The process ends with this object, however that ends.
class MakerRun {
 public:
  struct Listener {
    std::function<void(const std::string& told)> told;  // whenever the progress says something new
    std::function<void(const MakerEnd& end)> ended;     // once for each start
  };

  // program is the helper, started with the path of an order as its one argument.
  MakerRun(host::Host& world, std::string program, Listener listener);
  ~MakerRun();
  MakerRun(const MakerRun&) = delete;
  MakerRun& operator=(const MakerRun&) = delete;

  // The application of the order is put in here.
  void Start(tools::OkList order);
  // Ends the process at once; what it had not finished leaves nothing.
  void Stop();
  bool Running() const { return running_; }

 private:
  void Look();
  void OnError(QProcess::ProcessError error);
  void OnFinished(int code, QProcess::ExitStatus status);
  void End(const MakerEnd& end);
  std::string Told() const;

  host::Host& world_;
  std::string program_;
  Listener listener_;
  std::string orderPath_;
  std::string target_;
  std::string lastTold_;
  bool running_ = false;
  bool stopped_ = false;
  QProcess process_;
  QTimer timer_;
};

}  // namespace quillon::helpers
