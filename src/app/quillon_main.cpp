// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include <QApplication>
#include <QTimer>
#include <string>
#include <vector>

#include "host/posix/process_setup.h"
#include "job/program.h"
#include "job/windows/file_intake.h"
#include "parts/parts.h"
#include "ui/desktop/desktop.h"
#include "ui/kit/application.h"
#include "ui/main/main_window.h"

// quillon [FILE|FOLDER...]: opens the window and adds the named files to the list.
int main(int count, char** arguments) {
  quillon::host::posix::ReturnFreedMemory();
  QApplication application(count, arguments);
  quillon::ui::SetUp(application);
  const std::vector<std::string> files(arguments + (count > 0), arguments + count);

  quillon::ui::Desktop desktop;
  quillon::job::Program program(desktop.Host());
  quillon::parts::Parts parts(program);
  program.journals = &desktop.Journals();
  if (!program.Start()) return 0;
  quillon::ui::MainWindow window(parts);
  desktop.SetOwner(&window, [&window](const QString& line) { window.ShowNotice(line); });
  window.show();
  // After the first paint, so that the window shows how a long list grows.
  QTimer::singleShot(0, &window, [&] {
    if (files.empty()) return;
    program.Intake().Admit(files);
    program.form1.MSF.Select(1);
    program.Intake().MSF_DblClick();
  });
  return QApplication::exec();
}
