// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "formats/tools/converter.h"

#include <utility>

#include "base/path_text.h"
#include "formats/tools/processes.h"
#include "formats/tools/twins.h"

namespace quillon::formats {
namespace {

constexpr const char* kName = "PicCutConverter";
constexpr const char* kProgram = "PicCutConverter.exe";
constexpr const char* kOrder = "Param.txt";
constexpr const char* kCoupleOrder = "CoupleParam.txt";
constexpr double kSecondsBetweenLooks = 0.005;

bool SameFile(const host::FileFacts& a, const host::FileFacts& b) {
  return a.inode == b.inode && a.device == b.device && a.changed == b.changed && a.size == b.size;
}

}  // namespace

Converter::Converter(host::Host& host, std::string systemFolder)
    : host_(host), systemFolder_(std::move(systemFolder)) {}

bool Converter::Present() const {
  const host::Files& files = host_.files;
  return files.IsFile(TwinPath(host_, kName)) || files.IsFile(ProgramPath(host_, kName));
}

bool Converter::RunConverter(const ConverterOrder& order) { return Run(OrderText(order), kOrder, order.target); }

bool Converter::RunConverter(const CoupleOrder& order) { return Run(OrderText(order), kCoupleOrder, order.target); }

bool Converter::ZoomHuge(const std::string& source, const std::string& target, int w, int h, int quality, int minW,
                         int minH, bool toGray) {
  ConverterOrder order;
  order.OnlyZoom = true;
  order.source = source;
  order.target = target;
  order.size = {w, h};
  order.quality = quality;
  order.least = {minW, minH};
  order.ToGray = toGray;
  return RunConverter(order);
}

bool Converter::ConvertHuge(const std::string& source, const std::string& target, int cutX, int cutY, int w, int h,
                            int quality, bool toGray, int minW, int minH, bool flagA, bool flagB, bool flagC) {
  ConverterOrder order;
  order.CutPic = true;
  order.source = source;
  order.target = target;
  order.cutX = cutX;
  order.cutY = cutY;
  order.size = {w, h};
  order.quality = quality;
  order.least = {minW, minH};
  order.ToGray = toGray;
  order.flags9 = {flagA, flagB};
  order.flag15 = flagC;
  return RunConverter(order);
}

bool Converter::Run(const std::optional<std::string>& text, const std::string& name, const std::string& target) {
  host::Files& files = host_.files;
  if (!text) return false;
  if (base::SplitPath(target).folder == host_.programFolder) static_cast<void>(files.RemoveOwn(target));
  const auto before = files.Look(target);
  for (const char* order : {kOrder, kCoupleOrder}) {
    static_cast<void>(files.RemoveOwn(base::JoinPath(host_.programFolder, order)));
  }
  if (files.Save(base::JoinPath(host_.programFolder, name), *text)) {
    static_cast<void>(EnsureProgram(host_, kName));
    Start();
    if (!ConverterFailed) AwaitEnd();
  }
  for (const char* order : {kCoupleOrder, kOrder}) {
    static_cast<void>(files.RemoveOwn(base::JoinPath(host_.programFolder, order)));
  }
  const auto after = files.Look(target);
  if (!after) return false;
  if (!before || !SameFile(*before, *after)) return true;
  static_cast<void>(files.Discard(target));
  return false;
}

// The second try takes the program that the system keeps, the third the one that is there once more.
void Converter::Start() {
  bool started = TryStart();
  if (!started) {
    CopyFromSystem();
    started = TryStart();
  }
  if (!started) {
    const std::string program = ProgramPath(host_, kName);
    static_cast<void>(host_.files.Copy(program, program));
    started = TryStart();
  }
  ConverterFailed = !started;
  if (!started) ++Retries;
}

bool Converter::TryStart() { return host_.shell.Start(kProgram, {}, host_.programFolder) == host::kStarted; }

void Converter::CopyFromSystem() {
  for (const char* extension : {"exe", "dll"}) {
    const std::string kept = base::JoinPath(systemFolder_, kName, extension);
    if (!host_.files.IsFile(kept)) continue;
    static_cast<void>(host_.files.Copy(kept, ProgramPath(host_, kName)));
    return;
  }
}

void Converter::AwaitEnd() {
  Busy = true;
  while (ProcessExists(host_, kProgram)) {
    host_.pump.Turn();
    host_.clock.Sleep(kSecondsBetweenLooks);
  }
  Busy = false;
}

}  // namespace quillon::formats
