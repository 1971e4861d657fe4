// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "helpers/dc_tiffs_maker/window/show.h"

#include <QApplication>
#include <QFile>

#include "helpers/dc_tiffs_maker/window/tiffs_window.h"
#include "ui/desktop/qt_boxes.h"
#include "ui/kit/application.h"

namespace quillon::helpers {

int ShowTiffsWindow(int count, char** arguments, host::Host& world, const tools::OkList& order,
                    const std::string& note) {
  QApplication application(count, arguments);
  ui::SetUp(application);
  QApplication::setQuitOnLastWindowClosed(true);
  ui::QtBoxes boxes;
  ui::QtDialogs dialogs;
  host::Host seen{boxes,           dialogs,     world.pump,   world.clock,    world.files,        world.settings,
                  world.processes, world.shell, world.screen, world.instance, world.programFolder};
  TiffsWindow window(seen, order, note, QFile::encodeName(QCoreApplication::applicationFilePath()).toStdString());
  boxes.SetOwner(&window);
  dialogs.SetOwner(&window);
  window.show();
  return QApplication::exec();
}

}  // namespace quillon::helpers
