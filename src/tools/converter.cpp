// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "tools/converter.h"

#include <utility>

#include "base/path_text.h"
#include "tools/expected_file.h"
#include "tools/twins.h"

namespace quillon::tools {
namespace {

constexpr const char* kName = "PicCutConverter";
constexpr const char* kProgram = "PicCutConverter.exe";
constexpr const char* kOrder = "Param.txt";
constexpr const char* kCoupleOrder = "CoupleParam.txt";

}  // namespace

Converter::Converter(Tools& tools, std::string systemFolder) : tools_(tools), systemFolder_(std::move(systemFolder)) {}

bool Converter::Present() const {
  host::Host& world = tools_.World();
  return world.files.IsFile(TwinPath(world, kName)) || world.files.IsFile(ProgramPath(world, kName));
}

bool Converter::RunConverter(const ConverterOrder& order) {
  const auto& [first, second, third] = order.paths6;
  return Run(OrderText(order), kOrder, {order.source, first, second, third}, TargetsOf(order));
}

bool Converter::RunConverter(const CoupleOrder& order) {
  return Run(OrderText(order), kCoupleOrder, {order.source}, TargetsOf(order));
}

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

bool Converter::Run(const std::optional<std::string>& text, const std::string& name,
                    const std::vector<std::string>& sources, const std::vector<std::string>& targets) {
  if (!text || Busy) return false;
  std::vector<ExpectedFile> expected;
  expected.reserve(targets.size());
  for (const std::string& target : targets) expected.emplace_back(tools_, target, sources);
  Busy = true;
  const WaitResult waited = Perform(name, *text);
  Busy = false;
  bool made = true;
  for (const ExpectedFile& file : expected)
    made = static_cast<bool>(file.Result(waited, "没有得到处理后的图片", IsPicture)) && made;
  return made;
}

WaitResult Converter::Perform(const std::string& name, const std::string& text) {
  RemoveOrders();
  WaitResult waited = WaitResult::Exited;
  if (tools_.World().files.Save(tools_.AppPath(name), text)) {
    static_cast<void>(EnsureProgram(tools_.World(), kName));
    Start();
    if (!ConverterFailed) waited = tools_.Wait(kProgram);
  }
  RemoveOrders();
  return waited;
}

void Converter::RemoveOrders() {
  for (const char* order : {kCoupleOrder, kOrder}) {
    static_cast<void>(tools_.World().files.RemoveOwn(tools_.AppPath(order)));
  }
}

// The second attempt uses the program from the system folder, the third repeats it.
void Converter::Start() {
  bool started = TryStart();
  if (!started) {
    CopyFromSystem();
    started = TryStart();
  }
  if (!started) started = TryStart();
  ConverterFailed = !started;
  if (!started) ++Retries;
}

bool Converter::TryStart() { return tools_.Start(kName, "") == host::kStarted; }

void Converter::CopyFromSystem() {
  for (const char* extension : {"exe", "dll"}) {
    const std::string kept = base::JoinPath(systemFolder_, kName, extension);
    host::Host& world = tools_.World();
    if (!world.files.IsFile(kept)) continue;
    static_cast<void>(world.files.Copy(kept, ProgramPath(world, kName)));
    return;
  }
}

}  // namespace quillon::tools
