// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "base/path_text.h"
#include "helpers/runtime/child.h"
#include "helpers/runtime/helper.h"

namespace quillon::helpers {
namespace {

// Arguments: "/c", then one argument with the name of a helper program in this folder and, after a blank, its parameter
// text. The helper runs to its end. If it is missing or must not run, its twin is run instead.
host::Status Execute(Helper& helper) {
  const std::vector<std::string> arguments = helper.Fields();
  if (arguments.size() != 2 || arguments[0] != "/c") return UsageError("需要 /c 和一条命令");
  const std::string& command = arguments[1];
  const std::size_t blank = command.find(' ');
  const std::string program = command.substr(0, blank);
  if (program.empty() || program.find('/') != std::string::npos) return UsageError("只能运行程序文件夹里的程序");
  std::vector<std::string> words{helper.AppPath(program)};
  if (blank != std::string::npos) words.push_back(command.substr(blank + 1));
  ProgramResult result = RunProgram(words);
  if (!result.started) {
    words[0] = helper.AppPath(base::SplitPath(program).name + ".dll");
    result = RunProgram(words);
  }
  return result ? host::Status::Ok() : host::Status{host::Problem::Other, "命令没有成功：" + program};
}

}  // namespace
}  // namespace quillon::helpers

// The command interpreter through which the program runs a helper that it cannot start directly.
int main(int count, char** arguments) {
  namespace helpers = quillon::helpers;
  // The helper that it runs has its own limits and its own access to files.
  return helpers::RunHelper("CMD", count, arguments, helpers::Execute,
                            {.seconds = helpers::kSecondsOfABatch, .starts = helpers::Starts::Helpers});
}
