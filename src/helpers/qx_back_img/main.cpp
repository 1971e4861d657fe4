// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include <algorithm>
#include <array>
#include <string>
#include <vector>

#include "base/number_text.h"
#include "base/path_text.h"
#include "base/rounding.h"
#include "helpers/runtime/helper.h"
#include "imaging/services.h"
#include "tools/back_image.h"

namespace quillon::helpers {
namespace {

// Loads and cuts pictures by commands that arrive one by one in a settings value:
//
// - load|<file>|0: the picture is loaded and written to the lane (see tools::LanePath).
// - cut|<picture>|<x>|<y>|<width>|<height>|<out>|<quality>: the rectangle is written to out in the format of its
//   extension.
//
// Each command is answered with "1", even if it failed; only the file that it leaves shows the result. Some callers
// order the words differently: 0|load|<file>, 0|<file>|load and <quality>|<picture>|cut|<x>|<y>|<width>|<height>|<out>.
class BackServer {
 public:
  explicit BackServer(Helper& helper);

  // The fields of the parameter text are the application, the key, the file and the first command. Serves as long as a
  // program runs in the program folder, otherwise until no command has come for half an hour or the folder is gone.
  host::Status Serve();

 private:
  host::Status Execute(const std::string& command);
  host::Status Load(const std::string& file);
  host::Status Cut(const std::string& picture, const std::vector<std::string>& numbers, const std::string& out,
                   const std::string& quality);

  Helper& helper_;
  imaging::Services services_;
};

constexpr double kPollInterval = 0.005;  // seconds
constexpr const char* kDone = "1";
constexpr int kQuality = 80;

std::vector<std::string> Split(const std::string& text, char separator) {
  std::vector<std::string> parts;
  std::size_t from = 0;
  for (std::size_t end; (end = text.find(separator, from)) != std::string::npos; from = end + 1) {
    parts.push_back(text.substr(from, end - from));
  }
  parts.push_back(text.substr(from));
  return parts;
}

BackServer::BackServer(Helper& helper) : helper_(helper), services_(helper.Files(), helper.World().programFolder) {}

host::Status BackServer::Serve() {
  const std::vector<std::string> fields = helper_.Fields();
  if (fields.size() != 4) return UsageError("需要四个字段");
  const std::string& application = fields[0];
  const std::string& key = fields[1];
  std::string command = fields[3];
  for (IdleTimeout timeout(helper_); !timeout.Expired();) {
    if (command.empty() || command == kDone) {
      helper_.World().clock.Sleep(kPollInterval);
    } else {
      if (const host::Status done = Execute(command); !done) LogError("QxBackImg", done.Why());
      helper_.Set(application, key, kDone);
      timeout.Restart();
    }
    if (!helper_.Files().IsFolder(helper_.World().programFolder)) break;
    command = helper_.Get(application, key);
  }
  return host::Status::Ok();
}

host::Status BackServer::Execute(const std::string& command) {
  const std::vector<std::string> words = Split(command, '|');
  if (words.size() == 3) {
    if (words[0] == "load" || words[2] == "load") return Load(words[1]);
    if (words[1] == "load") return Load(words[2]);
  }
  if (words.size() == 8) {
    if (words[0] == "cut") return Cut(words[1], {words.begin() + 2, words.begin() + 6}, words[6], words[7]);
    if (words[2] == "cut") return Cut(words[1], {words.begin() + 3, words.begin() + 7}, words[7], words[0]);
  }
  return UsageError("不认识的命令");
}

host::Status BackServer::Load(const std::string& file) {
  const std::string lane = tools::LanePath(helper_.World());
  imaging::Image image;
  host::Status status = services_.LoadImageFromFile(file, image);
  if (status) status = services_.PutImageOnClipBoard(image);
  // Removes an older picture, which would look like the answer to this command.
  if (!status) static_cast<void>(helper_.Files().RemoveOwn(lane));
  return status;
}

host::Status BackServer::Cut(const std::string& picture, const std::vector<std::string>& numbers,
                             const std::string& out, const std::string& quality) {
  std::array<int, 4> box{};
  for (std::size_t i = 0; i < box.size(); ++i) {
    const std::optional<double> number = base::ParseNumber(numbers[i]);
    if (!number) return UsageError("不是数：" + numbers[i]);
    box[i] = base::R(*number);
  }
  imaging::CropRequest request{.source = picture, .destination = out, .rect = {box[0], box[1], box[2], box[3]}};
  request.encoder = imaging::EncoderFor(base::SplitPath(out).extension);
  request.quality = base::ParseInteger(quality).value_or(kQuality);
  request.exif = imaging::Exif::Keep;
  return services_.CropToFile(request);
}

host::Status Execute(Helper& helper) { return BackServer(helper).Serve(); }

}  // namespace
}  // namespace quillon::helpers

// It may read and write all files, because the later commands name files that it does not know yet when it starts.
int main(int count, char** arguments) {
  namespace helpers = quillon::helpers;
  return helpers::RunHelper("QxBackImg", count, arguments, helpers::Execute, {.seconds = helpers::kSecondsOfABatch});
}
