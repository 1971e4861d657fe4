// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "tools/pic_handler.h"

#include "base/path_text.h"
#include "tools/command_lines.h"
#include "tools/expected_file.h"
#include "tools/keys.h"
#include "tools/tools.h"

namespace quillon::tools {
namespace {

constexpr const char* kName = "PicHandler";
constexpr float kPause = 0.2F;

// Waits until the helper exits. If it could not be started directly, it is started through the command interpreter;
// whether that worked shows only in the result.
WaitResult WaitForEnd(Tools& tools, const std::string& parameters, int started) {
  std::string program = std::string(kName) + ".exe";
  if (started != host::kStarted) {
    tools.World().shell.Start("CMD.exe", {"/c", program + ' ' + parameters}, tools.App());
    program = "CMD.exe";
  }
  PauseSeconds(tools.World(), kPause);
  return tools.Wait(program);
}

WaitResult Run(Tools& tools, const std::string& parameters) {
  return WaitForEnd(tools, parameters, tools.Start(kName, parameters));
}

}  // namespace

host::Status ConvertToCmyk(Tools& tools, const std::string& file, const FileValidator& validate) {
  if (host::Status fits = CheckPaths(TextFormat::Quotes, kName, {file, tools.App()}); !fits) return fits;
  const std::string extension = "." + base::SplitPath(file).extension;
  const std::string made = tools.AppPath("Tmp" + extension);
  const ExpectedFile expected(tools, made, {file});
  const WaitResult waited = Run(tools, CmykText(file, tools.App(), extension));
  host::Status status = expected.Result(waited, "转CMYK没有成功");
  if (status && !validate(made)) status = {host::Problem::Damaged, "转CMYK的结果已损坏"};
  if (status) status = tools.Saver().Copy(made, file, {.title = kTitle});
  static_cast<void>(tools.World().files.RemoveOwn(made));
  return status;
}

host::Status MakePdf(Tools& tools, const std::string& picture, const std::string& base, const std::string& text) {
  const std::string pdf = base + ".pdf";
  if (host::Status fits = CheckPaths(TextFormat::Quotes, kName, {picture, pdf}); !fits) return fits;
  const ExpectedFile expected(tools, pdf, {picture});
  const WaitResult waited = WaitForEnd(tools, text, tools.EnsureAndStart(kName, text));
  host::Status status = expected.Result(waited, "没有生成PDF");
  if (!status || IsWholePdf(tools.World().files, pdf)) return status;
  static_cast<void>(tools.World().files.Discard(pdf));
  return {host::Problem::Damaged, "生成的PDF已损坏"};
}

host::Status MakeCmykPreview(Tools& tools, const std::string& file, const std::string& profile, const std::string& out,
                             const std::string& systemFolder) {
  if (host::Status fits = CheckPaths(TextFormat::Quotes, kName, {file, profile, out, tools.App()}); !fits) return fits;
  const ExpectedFile expected(tools, out, {file});
  const std::string text = CmykPreviewText(file, tools.App(), profile, out);
  int started = tools.StartIn(systemFolder, kName, text);
  if (started != host::kStarted) started = tools.Start(kName, text);
  return expected.Result(WaitForEnd(tools, text, started), "没有生成CMYK预览", IsPicture);
}

}  // namespace quillon::tools
