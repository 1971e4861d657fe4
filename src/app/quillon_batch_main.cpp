// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "cli/cli.h"
#include "host/posix/process_setup.h"

// quillon-batch: runs a cut from the command line; see cli/cli.h.
int main(int count, char** arguments) {
  quillon::host::posix::ReturnFreedMemory();
  return quillon::cli::RunBatch(std::vector<std::string>(arguments + (count > 0), arguments + count));
}
