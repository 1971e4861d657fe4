// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "job/settings/cut_settings.h"

#include <initializer_list>

#include "base/path_text.h"

namespace quillon::job {
namespace {

// Returns the part of the folder that is kept below the output folder. A drive in front of it is dropped.
std::string WithoutDrive(const std::string& folder) {
  return folder.size() >= 2 && folder[1] == ':' ? folder.substr(2) : folder;
}

bool HasExtension(const std::string& extension, std::initializer_list<const char*> wanted) {
  const std::string lower = base::ToLowerAscii(extension);
  for (const char* one : wanted) {
    if (lower == one) return true;
  }
  return false;
}

}  // namespace

bool TooSmall(base::Size picture, base::Size thresholds) {
  return !picture.Empty() && (picture.width < thresholds.width || picture.height < thresholds.height);
}

std::string TooSmallText(base::Size thresholds) {
  return "宽或高不足 " + std::to_string(thresholds.width) + "x" + std::to_string(thresholds.height) +
         " 像素，按“过滤小图片”跳过";
}

bool EffectsApply(const CutSettings& settings) {
  if (settings.frameOnly) return false;
  return settings.rotateCut || settings.zoomBefore || settings.toGray || settings.blackWhite || settings.invert ||
         settings.ownDpi;
}

double RuleAngle(const CutSettings& settings, base::Size picture) {
  return PreRotation(settings.rotateRule, picture, settings.angle).value_or(0);
}

double TurnAngle(const CutSettings& settings, base::Size picture) {
  const double angle = RuleAngle(settings, picture);
  if (angle != 0) return angle;
  const bool turns = settings.rotateCut && NeedRotate(picture.width, picture.height, kOwnAngle, settings.angle);
  return turns ? settings.angle : 0;
}

std::string CasedExtension(const std::string& extension, ExtensionCase wanted) {
  switch (wanted) {
    case ExtensionCase::Upper:
      return base::ToUpperAscii(extension);
    case ExtensionCase::Lower:
      return base::ToLowerAscii(extension);
    case ExtensionCase::Keep:
      break;
  }
  return extension;
}

std::string OutputExtension(const CutSettings& settings, const std::string& sourceExtension) {
  std::string extension = settings.outType;
  if (settings.over) extension = IsPsd(sourceExtension) ? "jpg" : sourceExtension;
  return CasedExtension(extension, settings.extensionCase);
}

std::string OutputPath(const CutSettings& settings, const std::string& folder, const std::string& name,
                       const std::string& outExtension) {
  if (settings.over) return base::JoinPath(folder, name, outExtension);
  const std::string root = settings.outFolder == "/" ? std::string() : settings.outFolder;
  const std::string below = settings.keepFolders ? root + WithoutDrive(folder) : settings.outFolder;
  return base::JoinPath(below, name, outExtension);
}

std::string MakeOutputName(host::Files& files, const std::string& source, const std::string& outFolder,
                           KeepFolders keepFolders, Overwrite overwrite, const std::string& type,
                           ExtensionCase extensionCase) {
  const base::PathParts parts = base::SplitPath(source);
  const bool over = overwrite == Overwrite::Yes;
  const std::string extension = CasedExtension(over ? parts.extension : type, extensionCase);
  if (over) return base::WithoutPsd(base::JoinPath(parts.folder, parts.name, extension));

  const std::string name = parts.folder.substr(parts.folder.rfind('/') + 1);
  std::string folder = outFolder;
  if (keepFolders == KeepFolders::Yes) {
    folder = base::JoinPath(outFolder, name);
    // If the folder cannot be created, the save reports it.
    static_cast<void>(files.MakeFolders(folder));
  }
  return base::WithoutPsd(base::JoinPath(folder, name, extension));
}

bool IsPsd(const std::string& extension) { return HasExtension(extension, {"psd"}); }

bool IsGif(const std::string& extension) { return HasExtension(extension, {"gif"}); }

bool IsJpeg(const std::string& extension) { return HasExtension(extension, {"jpg", "jpeg", "jpe", "jfif"}); }

}  // namespace quillon::job
