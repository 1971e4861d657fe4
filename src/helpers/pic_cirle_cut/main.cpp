// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include <array>

#include "base/number_text.h"
#include "base/path_text.h"
#include "helpers/runtime/helper.h"
#include "imaging/pixels/ellipse.h"
#include "imaging/services.h"

namespace quillon::helpers {
namespace {

// Fields: source, target, and the box of the ellipse: x, y, width and height in pixels of the source.
host::Status Execute(Helper& helper) {
  const std::vector<std::string> fields = helper.Fields();
  if (fields.size() != 6) return UsageError("需要六个字段");
  std::array<int, 4> box{};
  for (std::size_t i = 0; i < box.size(); ++i) {
    const std::optional<int> number = base::ParseInteger(fields[i + 2]);
    if (!number) return UsageError("不是整数：" + fields[i + 2]);
    box[i] = *number;
  }
  if (base::ToLowerAscii(base::SplitPath(fields[1]).extension) != "png") {
    return UsageError("目标文件必须是png");
  }
  helper.AllowOnly({.sources = {fields[0]}, .results = {fields[1]}});
  imaging::Services services(helper.Files(), helper.World().programFolder);
  imaging::Image source;
  imaging::Image shape;
  if (host::Status loaded = services.LoadImageFromFile(fields[0], source); !loaded) return loaded;
  if (host::Status cut = imaging::CutEllipse(source, {box[0], box[1], box[2], box[3]}, {}, shape); !cut) return cut;
  return services.SaveImageToPngFile(shape, fields[1]);
}

}  // namespace
}  // namespace quillon::helpers

int main(int count, char** arguments) {
  return quillon::helpers::RunHelper("PicCirleCut", count, arguments, quillon::helpers::Execute);
}
