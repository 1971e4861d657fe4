// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "job/program.h"

#include <algorithm>
#include <cstdint>
#include <optional>

#include "base/path_text.h"
#include "base/rounding.h"
#include "job/cut/normal_cut.h"
#include "job/run/list_run.h"
#include "job/run/run_guard.h"
#include "job/windows/file_intake.h"
#include "job/windows/preview.h"
#include "job/windows/run_window.h"
#include "job/windows/typed_length.h"
#include "job/work_files.h"
#include "tools/media_info.h"
#include "tools/processes.h"
#include "tools/twins.h"

namespace quillon::job {
namespace {

constexpr const char* kSection = "Default";
constexpr const char* kMissingResource =
    "本机缺失资源文件，请使用最新安装包覆盖安装之后再行使用本功能！\r\n要立即下载安装包吗？";
constexpr int kMissingResourceType = host::kOkCancelButtons + host::kStopIcon;
constexpr const char* kInstallerKey = "InstallerUrl";
constexpr const char* kInstallerUrl = "https://quillon.example/download";
constexpr const char* kCloseQuestion = "关闭程序？";
constexpr int kCloseType = host::kOkCancelButtons + host::kInformationIcon;

// A white square as a 24-bit BMP.
std::string WhiteBmp(std::uint32_t side) {
  constexpr std::uint32_t kHeader = 54;
  const std::uint32_t row = side * 3;
  const std::uint32_t stride = (row + 3) / 4 * 4;
  std::string bytes(kHeader + stride * side, '\0');
  const auto put = [&](std::size_t at, std::uint32_t value) {
    for (std::size_t i = 0; i < 4; ++i) bytes[at + i] = static_cast<char>(value >> (8 * i) & 0xFF);
  };
  bytes.replace(0, 2, "BM");
  put(2, kHeader + stride * side);
  put(10, kHeader);
  put(14, kHeader - 14);
  put(18, side);
  put(22, side);
  put(26, 1 | 24 << 16);  // one plane, 24 bits a pixel
  put(34, stride * side);
  for (std::uint32_t y = 0; y < side; ++y) bytes.replace(kHeader + y * stride, row, row, '\xFF');
  return bytes;
}

// The title shows the helper that is waited for, until the wait ends.
tools::ToolsOwner OwnerOf(Program& program) {
  return {[&program] { return program.flags.StopRequested; }, [&program] { program.flags.StopRequested = true; },
          [&program, before = std::string()](const std::string& helper) mutable {
            if (helper.empty()) {
              program.form1.SetTitle(before);
            } else {
              before = program.form1.Title();
              program.form1.ShowStatus("  正在等待 " + helper + "...（可用“终止”结束它）");
            }
          }};
}

// Waits for prefetched work and for disks keep the message pump running.
host::WaitHooks HooksOf(Program& program) {
  return {[&program] { program.host.pump.Turn(); }, [&program] { return program.flags.StopRequested; },
          [&program] { return program.host.clock.Seconds(); }};
}

// A thread that measures may be abandoned and outlive the program, so it owns everything it uses.
imaging::Measurer::OtherKinds OtherKindsOf(const Program& program) {
  return [info = std::make_shared<tools::MediaInfo>(program.host.shell, program.host.programFolder)](
             const std::string& path, const auto& keepWaiting, base::Size& size) {
    return info->Measure(path, keepWaiting, size);
  };
}

}  // namespace

Program::Program(host::Host& hostIn)
    : runWindow_(std::make_unique<ProgramWindow>(*this)),
      host(hostIn),
      diskThread(HooksOf(*this)),
      saver(
          hostIn.boxes, hostIn.files, [this] { flags.StopRequested = true; }, &diskThread),
      images(hostIn.files, hostIn.programFolder, &diskThread, {}, OtherKindsOf(*this)),
      tools(hostIn, OwnerOf(*this)),
      converter(tools),
      form1(*this),
      fBaseOpt(*this),
      files(form1.MSF),
      context{host,     images, disks,        windows,       *runWindow_, files,         flags,     observer,
              journals, shard,  leftToOthers, doneElsewhere, recovering,  listedFolders, onExisting},
      disks(context),
      documents(QUILLON_DOCUMENTS),
      intake_(std::make_unique<FileIntake>(*this)) {
  windows.Add(form1);
  windows.Add(fBaseOpt);
  windows.Add(fCutPre);
  flags.FixW = form1.TFixWH[0].Integer();
  flags.FixH = form1.TFixWH[1].Integer();
  AcceptUnits(*this);
  ShowAvailability();
}

Program::~Program() = default;

bool Program::Unload() {
  if (ended_) return true;
  if (!flags.CloseRequested && Ask(kCloseQuestion, kCloseType) != host::Reply::Ok) return false;
  // Removal errors are ignored: the next start creates the files again.
  static_cast<void>(host.files.RemoveOwn(AppPath(work_files::kPdfPages)));
  images.DisposeImage(flags.FirstImageHandle);
  images.ImageWizardShutDown();
  tools::RemoveProgramsAtExit(host);
  tools::KillProcessByName(host, "PicCirleCut.exe");
  tools::KillProcessByName(host, "QxImgTool.exe");
  ended_ = true;
  return true;
}

host::Reply Program::Ask(const std::string& text, int type) { return host.boxes.Show({text, type}); }

void Program::AskMissingResource() {
  if (Ask(kMissingResource, kMissingResourceType) != host::Reply::Ok) return;
  const std::string url = Setting(kInstallerKey);
  host.shell.OpenBrowser(url.empty() ? kInstallerUrl : url);
}

void Program::RunNormalCut() {
  NormalCut driver(*this);
  StartRun(context, driver);
}

void Program::ShowInPreview(const std::string& path) {
  imaging::ImageFacts facts;
  if (path.empty() || !images.ImageInfo(path, facts, imaging::Want::SizeAndDpi)) return;
  const base::Size size{facts.width, facts.height};
  if (size.Empty()) return;
  flags.CurrentImagePath = path;
  fCutPre.preview.SetDpi(facts.dpi);
  previewFollows_ = true;
  Present(PreviewSource(path, size), size);
}

// Returns the file to show. With ChLarge, a picture that is too large for the preview is reduced into a work file in
// the program folder.
std::string Program::PreviewSource(const std::string& path, base::Size size) {
  constexpr int kMostSide = 6000;
  const int longer = std::max(size.width, size.height);
  if (!form1.ChLarge.On() || longer <= kMostSide) return path;
  const double scale = static_cast<double>(kMostSide) / longer;
  const auto capped = [&](int side) { return std::max(1, base::R(side * scale)); };
  const std::string reduced = AppPath(work_files::kShownPicture);
  return Reduce(path, size, reduced, {capped(size.width), capped(size.height)}) ? reduced : path;
}

// If nothing runs, claims the run itself, so that it can be stopped and nothing else starts.
bool Program::Reduce(const std::string& path, base::Size size, const std::string& target, base::Size to) {
  constexpr int kQuality = 98;
  std::optional<RunGuard> guard;
  if (!flags.Busy) {
    guard.emplace(context);
    form1.BeginRun();
  }
  const bool made = converter.ZoomHuge(path, target, to.width, to.height, kQuality, size.width, size.height, false);
  if (guard) form1.EndRun();
  return made;
}

void Program::ShowPicture(const std::string& path, base::Size size) {
  previewFollows_ = false;
  Present(path, size);
}

void Program::Present(const std::string& path, base::Size size) {
  fCutPre.preview.ShowPicture(path, size);
  if (manualFrame) manualFrame->Shown();
  ShowAsCut();
}

void Program::ShowAsCut() {
  Preview& preview = fCutPre.preview;
  if (previewFollows_) {
    const CutShape shape = ShapeBeforeCut(*this, preview.Original());
    preview.Reshape(shape.size, shape.angle);
  }
  flags.PreviewImageWidth = preview.Picture().width;
  flags.PreviewImageHeight = preview.Picture().height;
  form1.ShowMarginLimits();
  form1.ShowFrame();
}

// Writes the bytes itself, so that the start does not have to load the image library.
void Program::WriteCanvas() {
  // A failure is reported later, by the operation that finds no canvas.
  static_cast<void>(host.files.Save(AppPath(work_files::kCanvas), WhiteBmp(50)));
}

bool Program::ShowWindow(const std::string& name) {
  controls::Window* window = windows.FindWindow(name);
  if (window) window->Show();
  return window != nullptr;
}

void Program::HideWindow(const std::string& name) {
  if (controls::Window* window = windows.FindWindow(name)) window->Hide();
}

std::string Program::Setting(const std::string& key) { return host.settings.Get(kTitle, kSection, key); }

void Program::SaveSetting(const std::string& key, const std::string& value) {
  host.settings.Set(kTitle, kSection, key, value);
}

void Program::SaveFolders() {
  SaveSetting("LOutDir", form1.LOutDir.Value());
  SaveSetting("LInDir", form1.LInDir.Value());
}

std::string Program::AppPath(const std::string& name) const { return base::JoinPath(host.programFolder, name); }

}  // namespace quillon::job
