// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include <QApplication>
#include <QTimer>
#include <string>
#include <vector>

#include "host/posix/process_setup.h"
#include "job/program.h"
#include "parts/parts.h"
#include "ui/desktop/desktop.h"
#include "ui/desktop/hand_over.h"
#include "ui/kit/application.h"
#include "ui/main/main_window.h"

// quillon [FILE|FOLDER...]: opens the window and adds the named files to the list. If the program runs already, it adds
// them to the list of that window.
int main(int count, char** arguments) {
  quillon::host::posix::ReturnFreedMemory();
  QApplication application(count, arguments);
  quillon::ui::SetUp(application);
  const std::vector<std::string> files(arguments + (count > 0), arguments + count);

  quillon::ui::Desktop desktop;
  quillon::host::Host& host = desktop.Host();
  if (!files.empty() && !host.instance.Claim()) {
    if (!quillon::ui::HandOver(host.files, host.programFolder, files)) host.boxes.Beep();
    return 0;
  }
  quillon::job::Program program(host);
  quillon::parts::Parts parts(program);
  program.journals = &desktop.Journals();
  if (!program.Start()) return 0;
  program.form1.HideMissingEntries();
  quillon::ui::MainWindow window(parts);
  desktop.SetOwner(&window, [&window](const QString& line) { window.ShowNotice(line); });
  window.show();
  // After the first paint, so that the window shows how a long list grows.
  QTimer::singleShot(0, &window, [&] {
    if (!files.empty()) window.AddFiles(files);
  });
  const quillon::ui::HandOverWatch watch(host.files, host.programFolder, [&window](const auto& paths) {
    if (!window.AddFiles(paths)) return false;
    window.BringToFront();
    return true;
  });
  return QApplication::exec();
}
