// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include <algorithm>
#include <array>
#include <cerrno>
#include <cstring>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "base/path_text.h"
#include "helpers/orders/gif_order.h"
#include "helpers/runtime/child.h"
#include "helpers/runtime/helper.h"
#include "imaging/crop/frame_requests.h"
#include "imaging/io/bytes.h"
#include "tools/keys.h"

namespace quillon::helpers {
namespace {

// A file, and the plain name in the program folder under which FFmpeg reads or writes it.
struct WorkCopy {
  std::string path;
  std::string name;
};

// An FFmpeg command line that reads and writes only files with plain names in the program folder, because FFmpeg
// interprets other names as URLs or as patterns of numbers.
struct MediaOrder {
  std::vector<std::string> words;  // with the plain names
  std::vector<WorkCopy> inputs;    // must be copied there before
  WorkCopy output;                 // must be copied from there afterwards; path is "" if the last word is no file
  std::string forbidden;           // a word that refers to a file elsewhere, "" if there is none
};

// Returns stem with the extension of path, if that consists of letters and digits only.
std::string PlainName(const std::string& stem, const std::string& path) {
  const std::string extension = base::SplitPath(path).extension;
  const bool plain = std::all_of(extension.begin(), extension.end(), [](char sign) {
    return (sign >= '0' && sign <= '9') || (sign >= 'a' && sign <= 'z') || (sign >= 'A' && sign <= 'Z');
  });
  return plain && !extension.empty() ? stem + "." + extension : stem;
}

// Returns true if a word that is passed unchanged refers to a file outside of the program folder, even as a URL.
bool RefersElsewhere(const std::string& word) {
  return word.starts_with('/') || word.starts_with("../") || word.find("/../") != std::string::npos ||
         word.find(":/") != std::string::npos || word.find(":..") != std::string::npos;
}

MediaOrder ReadMediaOrder(const std::vector<std::string>& words) {
  MediaOrder order{.words = words};
  for (std::size_t i = 0; i < words.size(); ++i) {
    const bool input = i > 0 && words[i - 1] == "-i";
    const bool whole = words[i].starts_with('/');
    if (input && whole) {
      order.inputs.push_back({words[i], PlainName("CutMediaIn" + std::to_string(order.inputs.size() + 1), words[i])});
      order.words[i] = order.inputs.back().name;
    } else if (i + 1 == words.size() && whole) {
      order.output = {words[i], PlainName("CutMediaOut", words[i])};
      order.words[i] = order.output.name;
    } else if (!input && RefersElsewhere(words[i])) {
      order.forbidden = words[i];
    }
  }
  return order;
}

constexpr const char* kTool = "ffmpeg";

// Returns the failure that the output of FFmpeg describes.
host::Status FailureOf(const ProgramResult& result) {
  if (!result.started) return {host::Problem::Other, "无法运行 ffmpeg"};
  const bool full = result.output.find(std::strerror(ENOSPC)) != std::string::npos;
  return full ? host::Status::FromErrno(ENOSPC) : host::Status(host::Problem::Other, result.output);
}

// FFmpeg finds its inputs in the program folder, so that nothing else need be readable.
host::Status Run(Helper& helper, const MediaOrder& order) {
  host::Files& files = helper.Files();
  for (const WorkCopy& input : order.inputs) {
    if (host::Status put = files.CopyOwn(input.path, helper.AppPath(input.name)); !put) return put;
  }
  HandedFiles handed{.tool = kTool};
  if (!order.output.path.empty()) handed.results = {order.output.path};
  helper.AllowOnly(handed);
  std::vector<std::string> command{kTool, "-nostdin", "-hide_banner", "-loglevel", "error"};
  command.insert(command.end(), order.words.begin(), order.words.end());
  const ProgramResult result = RunProgram(command);
  if (!result) return FailureOf(result);
  if (order.output.path.empty()) return host::Status::Ok();
  return files.Copy(helper.AppPath(order.output.name), order.output.path);
}

// Returns whether the file begins as a GIF does.
bool IsGif(const std::string& path) {
  std::shared_ptr<imaging::FileBytes> bytes;
  std::array<char, 4> start{};
  return imaging::FileBytes::Open(path, bytes) && bytes->ReadAt(0, start.data(), start.size()) &&
         std::string_view(start.data(), start.size()) == "GIF8";
}

// FFmpeg would lose the number of repetitions, the last delay, local colour tables and transparency.
host::Status ChangeFrames(Helper& helper, const GifOrder& order) {
  helper.AllowOnly({.sources = {order.source}, .results = {order.target}});
  const auto change = order.kind == GifOrder::Kind::Cut ? imaging::CropFrames : imaging::PaintOverFrames;
  return helper.Files().Save(order.target, [&](host::Draft& draft) {
    return change({helper.Files(), {}}, {.source = order.source, .rect = order.window}, draft);
  });
}

// The last argument is the output; it is written under a plain name and copied to its path after FFmpeg has succeeded.
// The frames of a GIF are changed without FFmpeg.
host::Status RunOrder(Helper& helper) {
  if (const std::optional<GifOrder> gif = ReadGifOrder(helper.Words()); gif && IsGif(gif->source)) {
    return ChangeFrames(helper, *gif);
  }
  const MediaOrder order = ReadMediaOrder(helper.Words());
  if (order.words.empty()) return UsageError("没有FFmpeg的参数");
  if (!order.forbidden.empty()) return UsageError("不能直接读写 " + order.forbidden);
  const host::Status status = Run(helper, order);
  for (const WorkCopy& input : order.inputs) {
    static_cast<void>(helper.Files().RemoveOwn(helper.AppPath(input.name)));
  }
  if (!order.output.path.empty()) static_cast<void>(helper.Files().RemoveOwn(helper.AppPath(order.output.name)));
  return status;
}

// The parameter text holds the arguments of FFmpeg. The program reads the first line of a failure from the settings.
host::Status Execute(Helper& helper) {
  const host::Status done = RunOrder(helper);
  const std::string why = done.DiskFull() ? tools::kFullDisk : done.Why().substr(0, done.Why().find('\n'));
  if (!done) helper.Set(tools::kTitle, tools::key::kCutMedia, why);
  return done;
}

}  // namespace
}  // namespace quillon::helpers

int main(int count, char** arguments) {
  namespace helpers = quillon::helpers;
  // The limit applies to the sum of all threads of FFmpeg, and a film may be long.
  return helpers::RunHelper("CutMedia", count, arguments, helpers::Execute,
                            {.seconds = helpers::kSecondsOfABatch, .starts = helpers::Starts::OneTool});
}
