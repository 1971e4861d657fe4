// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/tiffs_maker/show.h"

#include <QApplication>
#include <QFile>

#include "ui/application.h"
#include "ui/host/qt_boxes.h"
#include "ui/tiffs_maker/tiffs_window.h"

namespace quillon::ui {

int ShowTiffsWindow(int count, char** arguments, host::Host& world, const formats::OkList& order,
                    const std::string& note) {
  QApplication application(count, arguments);
  SetUp(application);
  QApplication::setQuitOnLastWindowClosed(true);
  QtBoxes boxes;
  QtDialogs dialogs;
  host::Host seen{boxes,           dialogs,     world.pump,   world.clock,    world.files,        world.settings,
                  world.processes, world.shell, world.screen, world.instance, world.programFolder};
  TiffsWindow window(seen, order, note, QFile::encodeName(QCoreApplication::applicationFilePath()).toStdString());
  boxes.SetOwner(&window);
  dialogs.SetOwner(&window);
  window.show();
  return QApplication::exec();
}

}  // namespace quillon::ui
