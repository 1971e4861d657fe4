// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/desktop/desktop.h"

#include "host/posix/posix_clock.h"
#include "host/posix/posix_disk.h"
#include "host/posix/posix_instance.h"
#include "host/posix/posix_processes.h"
#include "host/posix/posix_shell.h"
#include "host/posix/process_setup.h"
#include "host/posix/program_folder.h"
#include "host/posix/sqlite_journals.h"
#include "host/posix/sqlite_settings.h"
#include "ui/desktop/desktop_shell.h"
#include "ui/desktop/qt_boxes.h"
#include "ui/desktop/qt_host.h"

namespace quillon::ui {
namespace {

std::string MakeProgramFolder(host::Files& files) {
  const host::posix::ProgramFolderHints hints = host::posix::HintsOfThisProcess();
  std::string folder = host::posix::ChooseProgramFolder(files, hints);
  // An option that needs a file reports it missing, so an error here is not fatal.
  (void)host::posix::PrepareProgramFolder(files, folder, hints.executableFolder);
  return folder;
}

}  // namespace

struct Desktop::Parts {
  host::posix::PosixDisk disk;
  host::Files files{disk};
  std::string programFolder = MakeProgramFolder(files);
  QtBoxes boxes;
  QtDialogs dialogs;
  QtPump pump;
  host::posix::PosixClock clock;
  host::posix::SqliteSettings settings;
  host::posix::SqliteJournals journals;
  host::posix::PosixProcesses processes;
  host::posix::PosixShell plainShell;
  DesktopShell shell{plainShell};
  QtScreen screen;
  host::posix::PosixInstance instance{programFolder};
  host::Host host{boxes, dialogs, pump, clock, files, settings, processes, shell, screen, instance, programFolder};
};

Desktop::Desktop() : parts_(std::make_unique<Parts>()) { host::posix::IgnoreSignals(); }

Desktop::~Desktop() = default;

host::Host& Desktop::Host() { return parts_->host; }

host::Journals& Desktop::Journals() { return parts_->journals; }

void Desktop::SetOwner(QWidget* owner, std::function<void(const QString& line)> news) {
  parts_->boxes.SetOwner(owner);
  parts_->boxes.SetNews(std::move(news));
  parts_->dialogs.SetOwner(owner);
}

}  // namespace quillon::ui
