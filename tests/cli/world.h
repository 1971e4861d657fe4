// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <string>
#include <vector>

#include "cli/hosts.h"
#include "cli/pictures.h"
#include "cli/recorder.h"
#include "cli/runner.h"
#include "host/testing/test_host.h"
#include "parts/parts.h"

namespace quillon::cli {

// A started program on scripted host interfaces, driven by a Runner. Boxes are answered from `answers`.
class World {
 public:
  explicit World(Trace trace = Trace::No) : trace_(trace) {}

  host::testing::TestHost test;
  std::vector<Answer> answers;
  bool stopping = false;
  Recorder recorder;
  BatchBoxes boxes{answers, recorder, test.clock, [this] { return stopping; }};
  BatchDialogs dialogs{answers, test.folder.Path(), recorder};
  BatchShell shell{test.shell, recorder};
  BatchScreen screen;
  BatchPump pump;
  host::Host host{boxes,
                  dialogs,
                  pump,
                  test.clock,
                  test.files,
                  test.settings,
                  test.processes,
                  shell,
                  screen,
                  test.instance,
                  test.host.programFolder};
  job::Program program{host};
  parts::Parts suite{program};

  Outcome Perform(const std::vector<Step>& steps) {
    if (!watch_) {
      program.Start();
      watch_ = std::make_unique<RunListener>(program, recorder, trace_);
      pump.OnTurn([this] {
        test.clock.Advance(0.01);
        if (stopping) program.flags.StopRequested = true;
        if (onTurn) onTurn();
        watch_->Turn();
      });
    }
    Plan plan;
    plan.steps = steps;
    plan.answers = answers;
    plan.listControls = listControls;
    Runner runner(program, *watch_, recorder, [this] { return stopping; });
    return runner.Perform(plan);
  }
  std::function<void()> onTurn;
  bool listControls = false;

  std::string Picture(const std::string& name, int width = 40, int height = 30) const {
    return test.folder.Write(name, BmpPicture(width, height));
  }
  // An output folder that is there.
  Step Out() {
    test.folder.Write("out/.keep", "");
    return Set("Form1.LOutDir", test.folder.Path("out"));
  }

  // Margins in percent: 5 off the bottom.
  static Step Percent() { return Set("ChCutA", "0"); }
  static Step Set(const std::string& name, const std::string& value) {
    return {Verb::Set, name, value, {}, "--set " + name + "=" + value};
  }
  static Step Files(std::vector<std::string> files) { return {Verb::Files, "", "", std::move(files), "文件"}; }
  static Step Click(const std::string& name) { return {Verb::Click, name, "", {}, "--click " + name}; }
  static Step Print(const std::string& name) { return {Verb::Print, name, "", {}, "--print " + name}; }
  static Step Open(const std::string& name) { return {Verb::Open, name, "", {}, "--open " + name}; }
  static Step Close(const std::string& name) { return {Verb::Close, name, "", {}, "--close " + name}; }

  // Returns the values of the print events, in order.
  std::vector<std::string> Printed() const {
    std::vector<std::string> values;
    for (const Event& event : recorder.Of(EventKind::Print)) values.push_back(event.Text("value"));
    return values;
  }
  // "name result" of the file events, in order.
  std::vector<std::string> FileResults() const {
    std::vector<std::string> results;
    for (const Event& event : recorder.Of(EventKind::File)) {
      const std::string source = event.Text("source");
      results.push_back(source.substr(source.rfind('/') + 1) + " " + event.Text("result"));
    }
    return results;
  }

 private:
  Trace trace_;
  std::unique_ptr<RunListener> watch_;
};

}  // namespace quillon::cli
