// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "tools/tiff_order.h"

#include "base/number_text.h"
#include "base/path_text.h"
#include "base/utf8.h"
#include "tools/lasting_wait.h"
#include "tools/processes.h"
#include "tools/short_path.h"
#include "tools/tools.h"
#include "tools/twins.h"

namespace quillon::tools {
namespace {

constexpr const char* kName = "SavePicsToTiff";
constexpr const char* kProgram = "SavePicsToTiff.exe";
constexpr const char* kOrder = "Ops.txt";
constexpr float kCountTime = 0.6F;
constexpr float kGrowthTime = 0.2F;
constexpr std::uint64_t kMostBytes = 64U << 20;

constexpr const char* kNoRuntime =
    "本机需要先安装Microsoft Net Framework 3.5或以上版本运行环境方能使用本功能！\r\n要立即下载Net3.5安装包吗？";
constexpr const char* kRuntimeUrl = "https://quillon.example/download/net35";
constexpr int kMostNumber = 9;

std::string FreeShortPath(const host::Files& files, const std::string& target) {
  for (int number = 1; number <= kMostNumber; ++number) {
    std::string path = tools::ShortPath(target, number);
    if (path == target || !files.Stat(path)) return path;
  }
  return "";
}

}  // namespace

int TiffOrders::TiffOrder(const std::string& target, bool& firstFlag, const std::string& mode, const std::string& image,
                          Finish finish) {
  if (finish == Finish::No && firstFlag) {
    Begin(target, mode);
    firstFlag = false;
  }
  if (!image.empty() && mode != kCount) AddLine(image);
  if (finish == Finish::No && mode != kCount) return 0;
  firstFlag = true;
  if (!Submit()) return 0;
  WaitForTool();
  static_cast<void>(tools_.World().files.RemoveOwn(ProgramPath(tools_.World(), kName)));
  const int count = mode_ == kCount ? ReadCount() : 0;
  static_cast<void>(tools_.World().files.RemoveOwn(tools_.AppPath(kOrder)));
  return count;
}

// A file that will be created gets its short name. A short name exists only for an existing file, so one is created for
// a moment; if that fails, the tool will fail too. A file that will be read keeps its name.
void TiffOrders::Begin(const std::string& target, const std::string& mode) {
  host::Files& files = tools_.World().files;
  mode_ = mode;
  out_ = mode == kCount ? target : FreeShortPath(files, target);
  if (!files.Stat(target) && files.Copy(tools_.AppPath("BasePdf.dll"), target)) {
    static_cast<void>(files.RemoveOwn(target));
  }
  lines_.clear();
  refused_.clear();
  AddLine(out_);
  AddLine(mode);
}

void TiffOrders::AddLine(const std::string& line) {
  if (base::IsUtf8(line) && line.find_first_of("\r\n") == std::string::npos) {
    lines_ += line + "\r\n";
  } else {
    refused_.push_back(line);
  }
}

bool TiffOrders::Submit() {
  if (out_.empty() || (!refused_.empty() && refused_.front() == out_)) return false;
  host::Host& world = tools_.World();
  const std::string order = base::Utf16WithMark(lines_);
  lines_.clear();
  host::Status written = world.files.Save(tools_.AppPath(kOrder), order);
  // A program that kept the file open a moment ago may have closed it.
  if (!written) written = world.files.Save(tools_.AppPath(kOrder), order);
  if (!written) return false;
  // If the twin is missing, the copy of an earlier run is used, or there is nothing to start.
  static_cast<void>(CopyTwin(world, kName));
  if (tools_.Start(kName, "") == host::kStarted) return true;
  if (world.files.IsFile(ProgramPath(world, kName))) AskForRuntime();
  static_cast<void>(world.files.RemoveOwn(tools_.AppPath(kOrder)));
  return false;
}

void TiffOrders::AskForRuntime() {
  if (tools_.World().boxes.Show({kNoRuntime, host::kYesNoQuestion}) != host::Reply::Yes) return;
  tools_.World().shell.OpenBrowser(kRuntimeUrl);
}

void TiffOrders::WaitForTool() {
  LastingWait lasting(tools_, kProgram);
  while (ProcessExists(tools_.World(), kProgram)) {
    lasting.Update();
    if (mode_ == kCount) {
      PauseSeconds(tools_.World(), kCountTime);
      EndProcess(tools_.World(), kProgram);
    } else {
      EndUnlessGrowing();
    }
    if (tools_.Stopped()) {
      EndProcess(tools_.World(), kProgram);
      break;
    }
  }
  // Removes the unfinished drafts of a tool that was ended.
  tools_.World().files.SweepDrafts(base::SplitPath(out_).folder);
}

void TiffOrders::EndUnlessGrowing() {
  const host::Files& files = tools_.World().files;
  const std::uint64_t before = files.SizeWithDrafts(out_);
  PauseSeconds(tools_.World(), kGrowthTime);
  if (files.SizeWithDrafts(out_) <= before) EndProcess(tools_.World(), kProgram);
}

int TiffOrders::ReadCount() const {
  std::string text;
  if (!tools_.World().files.ReadFile(tools_.AppPath(kOrder), text, kMostBytes)) return 0;
  // The tool may write any encoding. Digits are the same in all of them, except for the zero bytes of UTF-16.
  std::string line;
  for (const char sign : text.substr(0, text.find('\n'))) {
    if (sign >= '0' && sign <= '9') {
      line += sign;
    } else if (sign != '\0' && sign != '\r' && sign != '\xFF' && sign != '\xFE') {
      return 0;
    }
  }
  return base::ParseInteger(line).value_or(0);
}

}  // namespace quillon::tools
