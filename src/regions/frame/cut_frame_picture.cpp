// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
//
// The picture in the frame: how it is shown, turned and padded.
//
// What is shown need not be the file that is cut. A huge picture is shown as a reduced copy, and a picture that the
// options turn as a turned copy; both are only for the screen. A turn or padding by the user makes a new file, which
// CurrentImagePath names from then on and which is cut. A turn writes Tmp.jpg; copies and padded pictures use that one
// of Tmp.jpg and Tmp2.jpg which is not the picture on show, so that no step overwrites the file that it reads.
#include <algorithm>

#include "base/path_text.h"
#include "job/settings/cut_settings.h"
#include "job/work_files.h"
#include "regions/frame/cut_frame.h"
#include "tools/back_image.h"

namespace quillon::regions {
namespace {

constexpr const char* kRotateQuestion = "确定旋转？\r\n是——旋转\r\n否——旋转，下次不再提示";
constexpr const char* kAgreed = "1";
constexpr const char* kPaddedOnce = "每张图片只扩边一次";
constexpr int kWorkQuality = 98;     // JPEG quality of work files
constexpr int kLargestShown = 8000;  // pixels of the longer side

// Returns the size with the longer side at the limit and the same aspect ratio. Sides are rounded down, to at least 1.
base::Size Reduced(base::Size size) {
  const int longer = std::max(size.width, size.height);
  const auto side = [&](int pixels) {
    return std::max(1, static_cast<int>(static_cast<long long>(pixels) * kLargestShown / longer));
  };
  return {side(size.width), side(size.height)};
}

}  // namespace

// A picture that cannot be loaded in this process is loaded by the helper QxBackImg, which may crash without harm.
host::Status CutFrame::ClonePicture(imaging::Image& out) {
  const std::string& path = program_.flags.CurrentImagePath;
  host::Status loaded = program_.images.LoadImageFromFile(path, out);
  if (loaded || !program_.host.files.IsFile(path)) return loaded;
  if (!tools::LoadThroughBackImg(program_.tools, path, program_.flags.BackWorkerStarted)) return loaded;
  return program_.images.CreateImageFromClipBoard(out);
}

void CutFrame::UpdateImage(const std::string& path, const imaging::Image& image) {
  imaging::ImageFacts facts;
  const bool measured = static_cast<bool>(program_.images.ImageInfo(path, facts, imaging::Want::SizeAndDpi));
  // What cannot be measured may still be loaded by the helper; its picture has a size.
  if (imaging::Image served; !measured && !image && ClonePicture(served)) {
    UpdateImage(path, served);
    return;
  }
  if (!measured) facts = {};
  if (!image && measured) {
    if (imaging::Image turned = TurnedByOptions({facts.width, facts.height})) {
      UpdateImage(path, turned);
      return;
    }
  }
  if (image) facts = {program_.images.GetImageWidth(image), program_.images.GetImageHeight(image), facts.dpi};
  const base::Size size{facts.width, facts.height};
  Preview().SetDpi(facts.dpi);
  program_.ShowPicture(size.Empty() ? std::string() : ShownFile(path, image, size), size);
}

imaging::Image CutFrame::TurnedByOptions(base::Size size) {
  job::Flags& flags = program_.flags;
  const double angle = job::TurnAngle(job::ReadCutSettings(program_), size);
  imaging::Image picture;
  if (flags.ManualRotated || angle == 0) return {};
  if (!ClonePicture(picture) || !program_.images.RotateImage(picture, angle, base::kWhite)) return {};
  flags.ImageRotated = true;
  return picture;
}

// The copies are only for the screen: the cut reads the file itself. If a copy cannot be made, the file is shown.
std::string CutFrame::ShownFile(const std::string& path, const imaging::Image& image, base::Size size) {
  const std::string copy = OtherWorkFile(path);
  if (image) {
    return SaveWorkCopy(image, copy, imaging::Exif::Drop) ? copy : path;
  }
  if (std::max(size.width, size.height) <= kLargestShown) return path;
  const base::Size shown = Reduced(size);
  tools::Converter& worker = program_.converter;
  const bool made =
      worker.Present()
          ? worker.ZoomHuge(path, copy, shown.width, shown.height, kWorkQuality, size.width, size.height, false)
          : static_cast<bool>(program_.saver.Save(
                copy, [&] { return program_.images.ZoomPic(path, copy, shown.width, shown.height); }));
  return made ? copy : path;
}

host::Status CutFrame::SaveWorkCopy(const imaging::Image& image, const std::string& path, imaging::Exif exif) {
  return program_.saver.Save(path, [&] { return program_.images.SaveImageToJpgFile(image, path, kWorkQuality, exif); });
}

std::string CutFrame::OtherWorkFile(const std::string& path) const {
  const std::string first = program_.AppPath(job::work_files::kShownPicture);
  return path == first ? program_.AppPath(job::work_files::kOtherShownPicture) : first;
}

// --- Turning

// Asks before the first turn. "No" means: turn, and do not ask again at this button; the tag remembers that.
bool CutFrame::MayRotate(controls::Button& button) {
  if (!button.Tag().empty()) return true;
  const host::Reply reply = program_.Ask(kRotateQuestion, host::kYesNoCancelQuestion);
  if (reply == host::Reply::No) button.SetTag(kAgreed);
  return reply != host::Reply::Cancel;
}

void CutFrame::Rotate(controls::Button& button, double angle) {
  if (waiting_ && MayLoseOutput() && MayRotate(button)) lastTurn_ = Turn(angle);
}

// A picture of that type has no output unless it has the type of the output; see job::AskForFrame. Cancel keeps the
// picture as it is.
bool CutFrame::MayLoseOutput() {
  const std::string work = base::SplitPath(job::work_files::kShownPicture).extension;
  const job::CutSettings options = job::ReadCutSettings(program_);
  const std::string output = base::ToLowerAscii(job::OutputExtension(options, base::SplitPath(asked_).extension));
  if (work == output) return true;
  const std::string question =
      "旋转或扩边之后的图片是 " + work + "，输出类型是 " + output + "，这一张就没有输出。仍然继续？";
  return program_.Ask(question, host::kOkCancelQuestion) == host::Reply::Ok;
}

// If the turn fails, the picture stays as it is on show.
host::Status CutFrame::Turn(double angle) {
  imaging::Services& images = program_.images;
  job::Flags& flags = program_.flags;
  imaging::Image picture;
  if (host::Status cloned = ClonePicture(picture); !cloned) return cloned;
  const int dpi = images.GetImageResolution(picture);
  if (host::Status turned = images.RotateImage(picture, angle, base::kWhite); !turned) return turned;
  images.SetImageResolution(picture, dpi);
  const std::string work = program_.AppPath(job::work_files::kShownPicture);
  if (host::Status saved = SaveWorkCopy(picture, work, imaging::Exif::Keep); !saved) return saved;
  flags.CurrentImagePath = work;
  flags.ManualRotated = true;
  flags.ManualAngle += angle;
  steps_ += angle > 0 ? kTurnedLeft : kTurnedRight;
  UpdateImage(work, {});
  WriteBack();
  return host::Status::Ok();
}

// --- Padding

void CutFrame::CmdAddBoard_Click() {
  controls::Button& button = Window().CmdAddBoard;
  if (!waiting_) return;
  if (!button.Tag().empty()) {
    program_.host.boxes.Beep();
    button.SetEnabled(false, kPaddedOnce);
    return;
  }
  if (MayLoseOutput()) PadToRatio();
}

void CutFrame::PadToRatio() {
  controls::Button& button = Window().CmdAddBoard;
  const std::string source = program_.flags.CurrentImagePath;
  imaging::ImageFacts facts;
  const std::optional<double> ratio = Ratio();
  if (!ratio || !program_.images.ImageInfo(source, facts, imaging::Want::SizeAndDpi)) return;
  const base::Size picture{facts.width, facts.height};
  const base::Size total = PaddedToRatio(picture, *ratio);
  if (total == picture) return;
  imaging::BorderRequest board;
  board.source = source;
  board.destination = OtherWorkFile(source);
  board.offsetX = (total.width - picture.width) / 2;
  board.offsetY = (total.height - picture.height) / 2;
  board.total = total;
  board.image = board.drawn = picture;
  board.quality = kWorkQuality;
  board.dpi = facts.dpi;
  board.exif = imaging::Exif::Keep;
  if (!program_.saver.Save(board.destination, [&] { return program_.images.AddBoardToFile(board); })) {
    // Without a path the run passes the picture over.
    button.SetEnabled(false, kPaddedOnce);
    program_.flags.CurrentImagePath.clear();
    CmdNext_Click();
    return;
  }
  steps_ += kGrown;
  program_.flags.CurrentImagePath = board.destination;
  UpdateImage(board.destination, {});
  WriteBack();
  button.SetTag(kAgreed);
  button.SetEnabled(false, kPaddedOnce);
}

}  // namespace quillon::regions
