// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "helpers/runtime/headless_host.h"

#include <algorithm>
#include <optional>

#include "host/posix/posix_clock.h"
#include "host/posix/posix_disk.h"
#include "host/posix/posix_processes.h"
#include "host/posix/posix_shell.h"
#include "host/posix/sqlite_settings.h"

namespace quillon::helpers {
namespace {

class QuietBoxes final : public host::Boxes {
 public:
  host::Reply Show(const host::Box& box) override {
    const auto buttons = host::ButtonsOf(box.type);
    for (const host::Reply reply : {host::Reply::Cancel, host::Reply::No}) {
      if (std::find(buttons.begin(), buttons.end(), reply) != buttons.end()) return reply;
    }
    return host::DefaultOf(box.type);
  }
  void Beep() override {}
};

class NoDialogs final : public host::Dialogs {
 public:
  std::vector<std::string> OpenFiles(const std::string&, const std::string&, host::Choice) override { return {}; }
  std::string OpenFile(const host::FileQuestion&) override { return {}; }
  std::string SaveFile(const host::FileQuestion&) override { return {}; }
  std::optional<std::string> ChooseFolder(const std::string&, const std::string&) override { return std::nullopt; }
};

class NoPump final : public host::Pump {
 public:
  void Turn() override {}
};

class NoScreen final : public host::Screen {
 public:
  base::Size DesktopSize() override { return {}; }
  int Dpi() override { return 96; }
  std::string Wallpaper() override { return {}; }
};

class AnyInstance final : public host::Instance {
 public:
  bool Claim() override { return true; }
};

// Opens the settings at the first use, because many runs do not need them.
class LazySettings final : public host::Settings {
 public:
  explicit LazySettings(std::string programFolder) : programFolder_(std::move(programFolder)) {}

  std::string Get(const std::string& application, const std::string& section, const std::string& key) override {
    return Store().Get(application, section, key);
  }
  bool Set(const std::string& application, const std::string& section, const std::string& key,
           const std::string& value) override {
    return Store().Set(application, section, key, value);
  }

 private:
  host::Settings& Store() {
    if (!store_) store_.emplace(host::posix::SettingsFolder(programFolder_));
    return *store_;
  }

  std::string programFolder_;
  std::optional<host::posix::SqliteSettings> store_;
};

}  // namespace

struct HeadlessHost::Parts {
  explicit Parts(const std::string& programFolder)
      : settings(programFolder), host{boxes,     dialogs, pump,   clock,    files,        settings,
                                      processes, shell,   screen, instance, programFolder} {}

  host::posix::PosixDisk disk;
  host::Files files{disk};
  QuietBoxes boxes;
  NoDialogs dialogs;
  NoPump pump;
  host::posix::PosixClock clock;
  LazySettings settings;
  host::posix::PosixProcesses processes;
  host::posix::PosixShell shell;
  NoScreen screen;
  AnyInstance instance;
  host::Host host;
};

HeadlessHost::HeadlessHost(const std::string& programFolder) : parts_(std::make_unique<Parts>(programFolder)) {}

HeadlessHost::~HeadlessHost() = default;

host::Host& HeadlessHost::Host() { return parts_->host; }

}  // namespace quillon::helpers
