// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
//
// Goes through pictures in the manual cut as a user does. For each "next" but the last it measures after how many
// milliseconds the next picture is painted, and after how many it waits for its frame (the cut is between the two).
//
// usage: next_picture OUTFOLDER PICTURE...
#include <QApplication>
#include <QPaintEvent>
#include <QTimer>
#include <algorithm>
#include <chrono>
#include <cstdio>
#include <optional>
#include <string>
#include <vector>

#include "job/program.h"
#include "job/windows/file_intake.h"
#include "parts/parts.h"
#include "ui/desktop/desktop.h"
#include "ui/kit/application.h"
#include "ui/main/main_window.h"
#include "ui/preview/preview_canvas.h"

namespace {

using quillon::ui::PreviewCanvas;

constexpr QSize kFetchedLimit(1600, 1600);
constexpr int kTickMilliseconds = 5;

double Now() {
  return std::chrono::duration<double, std::milli>(std::chrono::steady_clock::now().time_since_epoch()).count();
}

// Calls onPainted after the canvas was painted.
class Application : public QApplication {
 public:
  using QApplication::QApplication;

  bool notify(QObject* receiver, QEvent* event) override {
    const bool paint = event->type() == QEvent::Paint && qobject_cast<PreviewCanvas*>(receiver);
    const bool done = QApplication::notify(receiver, event);
    if (paint && onPainted) onPainted();
    return done;
  }

  std::function<void()> onPainted;
};

struct Times {
  double seen = 0;
  double ready = 0;
};

class User {
 public:
  User(quillon::parts::Parts& parts, quillon::ui::MainWindow& window)
      : program_(parts.program), frame_(parts.regions.cutFrame), window_(window) {}

  const std::vector<Times>& Taken() const { return taken_; }

  void Painted() {
    if (!pressed_) return;
    const bool glance = Canvas().Glances();
    const bool waiting = frame_.Waiting() && !program_.flags.ManualStepDone && Canvas().HasPicture();
    if (now_.seen == 0 && (glance || waiting)) now_.seen = Now() - *pressed_;
    if (!waiting) return;
    now_.ready = Now() - *pressed_;
    taken_.push_back(now_);
    pressed_.reset();
  }

  void Tick() {
    if (QWidget* box = QApplication::activeModalWidget()) {
      box->close();
      return;
    }
    if (pressed_ || !frame_.Waiting() || !Canvas().HasPicture()) return;
    const std::string& upcoming = program_.fCutPre.preview.Upcoming();
    const bool last = upcoming.empty();
    if (!last && window_.Loader().Prefetched(upcoming, kFetchedLimit).isNull()) return;
    if (!last) pressed_ = Now();
    now_ = {};
    program_.fCutPre.CmdNext.UserClick();
  }

 private:
  PreviewCanvas& Canvas() const { return *window_.findChild<PreviewCanvas*>(); }

  quillon::job::Program& program_;
  quillon::regions::CutFrame& frame_;
  quillon::ui::MainWindow& window_;
  std::optional<double> pressed_;
  Times now_;
  std::vector<Times> taken_;
};

void Put(quillon::job::Program& program, const char* name, const std::string& value) {
  quillon::controls::Control* control = program.windows.Find(name);
  if (control && control->UserEdit(value).Accepted()) return;
  std::fprintf(stderr, "%s cannot be set\n", name);
  std::exit(1);
}

void PrintRow(const char* what, std::vector<double> times) {
  std::sort(times.begin(), times.end());
  std::printf("| %s | %.0f | %.0f | %.0f |\n", what, times.front(), times[times.size() / 2], times.back());
}

}  // namespace

int main(int count, char** arguments) {
  Application application(count, arguments);
  if (count < 4) {
    std::fprintf(stderr, "usage: next_picture OUTFOLDER PICTURE PICTURE...\n");
    return 2;
  }
  quillon::ui::SetUp(application);
  quillon::ui::Desktop desktop;
  quillon::job::Program program(desktop.Host());
  quillon::parts::Parts parts(program);
  program.journals = &desktop.Journals();
  if (!program.Start()) return 1;
  quillon::ui::MainWindow window(parts);
  desktop.SetOwner(&window);
  window.show();
  program.fBaseOpt.Load();
  Put(program, "LOutDir", arguments[1]);
  Put(program, "ChCutA", "0");
  for (const char* margin : {"TCutValue(0)", "TCutValue(1)", "TCutValue(2)", "TCutValue(3)"})
    Put(program, margin, "10");
  Put(program, "FBaseOpt.ChMamal", "1");

  User user(parts, window);
  QTimer ticks;
  QObject::connect(&ticks, &QTimer::timeout, [&] { user.Tick(); });
  ticks.start(kTickMilliseconds);
  application.onPainted = [&] { user.Painted(); };
  program.Intake().Admit(std::vector<std::string>(arguments + 2, arguments + count));
  program.form1.menuNormalCut.UserClick();
  application.onPainted = {};

  std::vector<double> seen;
  std::vector<double> ready;
  for (const Times& times : user.Taken()) {
    seen.push_back(times.seen);
    ready.push_back(times.ready);
  }
  if (seen.empty()) return 1;
  std::printf("| milliseconds after \"next\" (%zu times) | least | median | most |\n|---|---|---|---|\n", seen.size());
  PrintRow("the next picture is painted", seen);
  PrintRow("it waits for its frame, the one before it being cut", ready);
  return 0;
}
