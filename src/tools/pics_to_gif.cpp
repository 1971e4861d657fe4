// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "tools/pics_to_gif.h"

#include "base/number_text.h"
#include "tools/command_lines.h"
#include "tools/expected_file.h"
#include "tools/keys.h"

namespace quillon::tools {
namespace {

constexpr const char* kHelper = "PicsToAniGif";
constexpr const char* kProgram = "PicsToAniGif.exe";
constexpr const char* kApplication = "PicsCut";
constexpr const char* kProgressKey = "PicsToGif";
constexpr int kRounds = 11;  // a virus scanner or a viewer may hold a file of the folder for a moment

// Empties the folder of frames that an earlier run may have left.
host::Status EmptyFolder(host::Files& files, const std::string& folder) {
  host::Status removed;
  for (int round = 0; round < kRounds; ++round) {
    removed = files.RemoveOwn(folder);
    if (removed) return files.MakeFolders(folder);
  }
  return removed;
}

std::string ListText(const std::vector<GifFrame>& frames) {
  std::string text;
  for (const GifFrame& frame : frames) {
    text += frame.picture + "\t" + std::to_string(frame.left) + "\t" + std::to_string(frame.top) + "\t" +
            std::to_string(frame.milliseconds) + "\r\n";
  }
  return text;
}

host::Status CheckNames(const std::vector<GifFrame>& frames, const std::string& out) {
  for (const GifFrame& frame : frames) {
    if (host::Status fits = CheckPaths(TextFormat::Tabs, kHelper, {frame.picture}); !fits) return fits;
  }
  return CheckPaths(TextFormat::Tabs, kHelper, {out});
}

}  // namespace

host::Status PicsToGif(Tools& tools, const std::vector<GifFrame>& frames, base::Size canvas, const std::string& out,
                       const std::function<void(int)>& show) {
  if (host::Status fits = CheckNames(frames, out); !fits) return fits;
  host::Files& files = tools.World().files;
  const std::string folder = tools.AppPath("GifTmp");
  if (host::Status empty = EmptyFolder(files, folder); !empty) return empty;
  if (host::Status listed = files.Save(tools.AppPath("Gif.txt"), ListText(frames)); !listed) return listed;
  std::vector<std::string> sources;
  sources.reserve(frames.size());
  for (const GifFrame& frame : frames) sources.push_back(frame.picture);
  const ExpectedFile expected(tools, out, sources);
  if (!WriteKey(tools.World(), kProgressKey, "0", kApplication)) return CommandNotWritten(kHelper);
  if (tools.EnsureAndStart(kHelper, GifText(tools.App(), canvas, out)) != host::kStarted) return NotStarted(kHelper);
  const WaitResult waited = tools.Wait(kProgram, [&] {
    show(base::ParseInteger(ReadKey(tools.World(), kProgressKey, kApplication)).value_or(0));
    return false;
  });
  static_cast<void>(files.RemoveOwn(folder));
  return expected.Result(waited, "没有得到动态Gif", IsPicture);
}

}  // namespace quillon::tools
